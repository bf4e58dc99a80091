#include "program/wave_displays.h"

#include <filesystem>

#include "mountainwave/mountain_file.h"
#include "mountainwave/wave_plot.h"
#include "mountainwave/wave_sweep.h"
#include "program/program.h"

namespace vexa {
namespace {

// The mountains of the sounding's station, from the program's folder where it has one.
mountainwave::Site SiteOf(const Program& program) {
  const std::filesystem::path& root = program.Where.Root;
  return mountainwave::SiteOf(program.Current.Record, root.empty()
                                                          ? std::filesystem::path{}
                                                          : root / mountainwave::kMountainFileName);
}

mountainwave::WaveOptions WaveOptionsOf(const Options& set) {
  mountainwave::WaveOptions options;
  const bool isEnglish = set.GpmUnits == LengthUnits::Feet;
  options.Units = isEnglish ? mountainwave::kEnglishUnits : mountainwave::kMetricUnits;
  options.Units.Wind = set.Speed;
  options.Scale = isEnglish ? mountainwave::WaveScale::Feet : mountainwave::WaveScale::Kilometers;
  return options;
}

}  // namespace

Picture PlotMountainWave(const DisplayInput& from, const Surface& on) {
  const Program& program = from.In;
  const SoundingRecord& sounding = program.Current.Record;
  const analysis::LevelProfile& levels = program.Results.Levels;
  const mountainwave::Site site = SiteOf(program);
  const mountainwave::WaveOptions options = WaveOptionsOf(from.Set);
  const mountainwave::WaveResults waves = mountainwave::ComputeWaves(sounding, levels, site);
  return mountainwave::PlotWaves({{sounding, site, waves, options}, levels, from.Set}, on).Page;
}

Picture PlotWaveSweep(const DisplayInput& from, const Surface& on) {
  const Program& program = from.In;
  const mountainwave::Air air = mountainwave::AirOf(program.Current.Record, program.Results.Levels);
  const mountainwave::Site site = SiteOf(program);
  const mountainwave::RidgeForm form =
      site ? mountainwave::FormOf(site->First, air.StationElev) : mountainwave::DefaultForm();
  return mountainwave::PlotSweep(mountainwave::SweepMountain(air, form.Relief, 72, 50), form,
                                 WaveOptionsOf(from.Set).Units, from.Set, on);
}

}  // namespace vexa
