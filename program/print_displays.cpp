#include "program/print_displays.h"

#include <filesystem>
#include <optional>
#include <utility>

#include "diagram/sounding_plot.h"
#include "display/weather.h"
#include "hodograph/hodogram_plot.h"
#include "mountainwave/mountain_file.h"
#include "mountainwave/wave_plot.h"
#include "mountainwave/wave_sweep.h"
#include "program/hodograph_commands.h"
#include "program/settings_commands.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

using diagram::MultiMode;

template <MultiMode kMode>
Picture Diagram(const Program& program, const Options& set, const Surface& on) {
  std::optional<diagram::SoundingPlot> plot = PlotShown(program, set, on, {}, kMode);
  return plot ? std::move(plot->Page) : Picture{};
}

Picture Hodograph(const Program& program, const Options& set, const Surface& on) {
  return hodograph::PlotHodograph(HodographOf(program, set), on).Page;
}

Picture Hodogram(const Program& program, const Options& set, const Surface&) {
  return hodograph::PlotHodogram(hodograph::MakeHodogram(program.Current.Record, set),
                                 program.Hodogram);
}

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

Picture Waves(const Program& program, const Options& set, const Surface& on) {
  const SoundingRecord& sounding = program.Current.Record;
  const analysis::LevelProfile& levels = program.Results.Levels;
  const mountainwave::Site site = SiteOf(program);
  const mountainwave::WaveOptions options = WaveOptionsOf(set);
  const mountainwave::WaveResults waves = mountainwave::ComputeWaves(sounding, levels, site);
  return mountainwave::PlotWaves({{sounding, site, waves, options}, levels, set}, on).Page;
}

Picture WaveSweep(const Program& program, const Options& set, const Surface&) {
  const mountainwave::Air air = mountainwave::AirOf(program.Current.Record, program.Results.Levels);
  const mountainwave::Site site = SiteOf(program);
  const mountainwave::RidgeForm form =
      site ? mountainwave::FormOf(site->First, air.StationElev) : mountainwave::DefaultForm();
  return mountainwave::PlotSweep(mountainwave::SweepMountain(air, form.Relief, 72, 50), form,
                                 WaveOptionsOf(set).Units, set);
}

template <display::Sheet (*kFill)(const display::Shown&)>
Picture Sheet(const Program& program, const Options& set, const Surface& on) {
  return display::DrawSheet(kFill({program.Current.Record, program.Results, set, program.Severe}),
                            set, on);
}

bool HasSounding(const Program& program) {
  return program.Current.Record.NumTempLevels() > 0;
}
bool HasLevels(const Program& program) {
  return HasSounding(program) || program.Current.Record.NumWindLevels() > 0;
}
template <MultiMode kMode>
bool IsIn(const Program& program) {
  return HasSounding(program) && program.View.Mode == kMode && !program.Others.empty();
}

struct PrintRow {
  PrintDisplay Display{};
  bool (*IsThere)(const Program&) = nullptr;
};

constexpr PrintRow kRows[] = {
    {{"Sounding", Diagram<MultiMode::Single>}, HasLevels},
    {{"Overlay", Diagram<MultiMode::Overlay>}, IsIn<MultiMode::Overlay>},
    {{"Compare", Diagram<MultiMode::Compare>}, IsIn<MultiMode::Compare>},
    {{"Hodograph", Hodograph}, HasLevels},
    {{"Hodogram3D", Hodogram, "HODOGRAM"}, HasLevels},
    {{"SvrWx", Sheet<display::SevereWeatherSheet>}, HasSounding},
    {{"Winter", Sheet<display::WinterWeatherSheet>}, HasSounding},
    {{"LayerAnalyzer", Sheet<display::LayerSheet>}, HasSounding},
    {{"Soaring", Sheet<display::SoaringSheet>}, HasSounding},
    {{"MountainWave", Waves, "MOUNTAIN WAVE"}, HasSounding},
    {{"WaveSweep", WaveSweep, "MOUNTAIN WAVE"}, HasSounding},
};

}  // namespace

std::vector<PrintDisplay> PrintDisplays(const Program& program) {
  std::vector<PrintDisplay> there;
  for (const PrintRow& row : kRows) {
    if (row.IsThere(program)) there.push_back(row.Display);
  }
  return there;
}

Picture ShownDiagram(const Program& program, const Surface& on) {
  std::optional<diagram::SoundingPlot> plot = PlotShown(program, program.Set, on);
  return plot ? std::move(plot->Page) : Picture{};
}

std::vector<std::string_view> AllPrintDisplays() {
  std::vector<std::string_view> names;
  for (const PrintRow& row : kRows) names.push_back(row.Display.Name);
  return names;
}

std::optional<MultiMode> ModeOfDisplay(std::string_view name) {
  if (name == "Overlay") return MultiMode::Overlay;
  if (name == "Compare") return MultiMode::Compare;
  return std::nullopt;
}

std::string_view PrintHeading(std::string_view name) {
  for (const PrintRow& row : kRows) {
    if (row.Display.Name == name) return row.Display.Heading;
  }
  return {};
}

Options PrintOptions(const Program& program, bool darkLines) {
  Options set = program.Set;
  set.Screen = ScreenColor::White;
  if (darkLines) {
    set.Darklines = true;
    set.Scheme = ColorScheme::Darker;
  }
  return set;
}

}  // namespace vexa
