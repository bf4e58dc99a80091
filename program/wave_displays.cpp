#include "program/wave_displays.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "core/shown_values.h"
#include "mountainwave/wave_plot.h"
#include "mountainwave/wave_sweep.h"
#include "program/listed_soundings.h"
#include "program/program.h"
#include "program/wave_view.h"

namespace vexa {
namespace {

// The first mountain.
mountainwave::RidgeForm FormNow(const Program& program, const mountainwave::Air& air) {
  const mountainwave::Site site = MountainsNow(program);
  return site ? mountainwave::FormOf(site->First, air.StationElev) : mountainwave::DefaultForm();
}

}  // namespace

mountainwave::WavePlot PlotWavesOf(const DisplayInput& from, const ShownWaves& shown,
                                   const Surface& on) {
  const Program& program = from.In;
  return mountainwave::PlotWaves({shown.From(program.Current.Record), program.Results.Levels,
                                  from.Set, program.Displays.Of<WaveView>().State.RotorHints},
                                 on);
}

Picture PlotMountainWave(const DisplayInput& from, const Surface& on) {
  return PlotWavesOf(from, WavesNow(from.In, from.Set), on).Page;
}

std::vector<std::string> ListWaves(const Program& program) {
  const ShownWaves shown = WavesNow(program, program.Set);
  return mountainwave::WaveListing(shown.From(program.Current.Record));
}

Picture PlotWaveSweep(const DisplayInput& from, const Surface& on) {
  const Program& program = from.In;
  const mountainwave::Air air = mountainwave::AirOf(program.Current.Record, program.Results.Levels);
  const mountainwave::RidgeForm form = FormNow(program, air);
  return mountainwave::PlotSweep(mountainwave::SweepMountain(air, form.Relief), form,
                                 WaveOptionsOf(program, from.Set).Units, from.Set, on);
}

// The mountain is that of the sounding in work for all of them: only the air changes.
Picture PlotWaveSeries(const DisplayInput& from, const Surface& on) {
  const Program& program = from.In;
  constexpr std::size_t kMost = 120;  // columns that can be told apart
  const std::vector<SharedSounding> beside = SoundingsBeside(program, kMost - 1);
  std::vector<const SoundingRecord*> soundings{&program.Current.Record};
  for (const SharedSounding& other : beside) soundings.push_back(&other->Record());
  std::ranges::stable_sort(soundings, {}, [](const SoundingRecord* sounding) {
    const ObservationTime& at = sounding->Time;
    return std::tuple(at.Year, at.Month, at.Day, at.Hour, at.Minute);
  });
  const mountainwave::RidgeForm form =
      FormNow(program, mountainwave::AirOf(program.Current.Record, program.Results.Levels));
  std::vector<mountainwave::SeriesMember> members;
  for (const SoundingRecord* sounding : soundings) {
    const analysis::LevelProfile levels = analysis::DeriveLevels(*sounding, from.Set);
    const std::string time = TimeText(sounding->Time);
    members.push_back(mountainwave::MemberOf(mountainwave::AirOf(*sounding, levels),
                                             time.empty() ? sounding->StationTitle : time, form));
  }
  return mountainwave::PlotSeries(members, form, WaveOptionsOf(program, from.Set).Units, from.Set,
                                  on);
}

}  // namespace vexa
