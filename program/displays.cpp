#include "program/displays.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "core/files.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "diagram/sounding_plot.h"
#include "display/weather.h"
#include "hodograph/hodogram_plot.h"
#include "hodograph/wind_table.h"
#include "program/forecast_display.h"
#include "program/front_displays.h"
#include "program/hodogram_controls.h"
#include "program/hodograph_commands.h"
#include "program/needs.h"
#include "program/section_display.h"
#include "program/section_map.h"
#include "program/settings_commands.h"
#include "program/view_commands.h"
#include "program/wave_displays.h"

namespace vexa {
namespace {

using diagram::MultiMode;

template <MultiMode kMode>
Picture Diagram(const DisplayInput& from, const Surface& on) {
  std::optional<diagram::SoundingPlot> plot = PlotShown(from.In, from.Set, on, {}, kMode);
  return plot ? std::move(plot->Page) : Picture{};
}

Picture Hodograph(const DisplayInput& from, const Surface& on) {
  return hodograph::PlotHodograph(HodographOf(from.In, from.Set), on).Page;
}

std::vector<std::string> Winds(const Program& program) {
  hodograph::WindTable table = hodograph::ListWinds(HodographOf(program, program.Set));
  std::ranges::move(table.Rows, std::back_inserter(table.Header));
  return table.Header;
}

Picture Hodogram(const DisplayInput& from, const Surface& on) {
  return hodograph::PlotHodogram(hodograph::MakeHodogram(from.In.Current.Record, from.Set),
                                 from.In.Settings.Hodogram3D, on);
}

template <display::Sheet (*kFill)(const display::Shown&)>
Picture Sheet(const DisplayInput& from, const Surface& on) {
  return display::DrawSheet(
      kFill({from.In.Current.Record, from.In.Results, from.Set, from.In.Severe}), from.Set, on);
}

constexpr DisplayRow kDisplays[] = {
    {.Id = "Sounding",
     .Title = "Sounding",
     .Plot = Diagram<MultiMode::Single>,
     .Needs = NeedsLevels,
     .Options = "Diagram/Tab 1"},
    {.Id = "Overlay",
     .Title = "Sounding Overlay",
     .Plot = Diagram<MultiMode::Overlay>,
     .Needs = NeedsOverlay,
     .Mode = MultiMode::Overlay},
    {.Id = "Compare",
     .Title = "Sounding Comparison",
     .Plot = Diagram<MultiMode::Compare>,
     .Needs = NeedsComparison,
     .Mode = MultiMode::Compare},
    {.Id = "SvrWx",
     .Title = "Severe Weather",
     .Plot = Sheet<display::SevereWeatherSheet>,
     .Needs = NeedsSounding,
     .Entry = "mnuSevereWx",
     .Caption = "Se&vere Weather",
     .Hint = "The severe-weather table of this sounding",
     .Lacking = "(severe weather)",
     .Topic = "severe"},
    {.Id = "Winter",
     .Title = "Winter Weather",
     .Plot = Sheet<display::WinterWeatherSheet>,
     .Needs = NeedsSounding,
     .Entry = "mnuWinter",
     .Caption = "&Winter Weather",
     .Hint = "Precipitation type, snow and icing of this sounding",
     .Lacking = "(winter weather)",
     .Topic = "winter"},
    {.Id = "LayerAnalyzer",
     .Title = "Layer Analyzer",
     .Plot = PlotLayers,
     .Needs = NeedsSounding,
     .Entry = "mnuScale",
     .Caption = "&Layer Analyzer",
     .Hint = "Inversions, clouds, icing, turbulence, contrails and ducts",
     .Lacking = "(layer analyzer)",
     .Topic = "layers"},
    {.Id = "Hodofront",
     .Title = "Frontal Analysis",
     .Plot = PlotFrontDisplay,
     .Needs = NeedsLevels,
     .Entry = "mnuHodoFront",
     .Caption = "&Frontal Analysis",
     .Hint = "Fronts from the turning of the wind",
     .Lacking = "(frontal analysis)",
     .Also = "fronts",
     .Heading = "HODO-FRONT",
     .Topic = "fronts",
     .Listing = ListFronts,
     .Controls = FrontControls},
    {.Id = "FrontSeries",
     .Title = "Front Height in Time",
     .Plot = PlotFrontTimes,
     .Needs = NeedsFrontTimes,
     .Entry = "mnuFrontSeries",
     .Caption = "Front Height in &Time",
     .Hint = "Fronts of the soundings of this station that were opened together",
     .Lacking = "(front height in time)",
     .Heading = "FRONT HEIGHT IN TIME",
     .Topic = "fronts",
     .Listing = ListFrontTimes,
     .Mode = MultiMode::Overlay},
    {.Id = "Hodograph",
     .Title = "Hodograph",
     .Plot = Hodograph,
     .Needs = NeedsLevels,
     .Entry = "mnuHodograph",
     .Caption = "&Hodograph",
     .Hint = "Winds, storm motion and helicity",
     .Lacking = "(hodograph)",
     .Key = "Ctrl+H",
     .Toggles = true,
     .Topic = "hodograph",
     .Options = "Diagram/Tab 6",
     .Listing = Winds},
    {.Id = "Hodogram3D",
     .Title = "3-D Trajectory Diagram",
     .Plot = Hodogram,
     .Needs = NeedsLevels,
     .Entry = "mnuHodogram",
     .Caption = "Hodo&gram (3-D)",
     .Hint = "The way of the balloon in three dimensions",
     .Lacking = "(hodogram)",
     .Key = "Ctrl+G",
     .Toggles = true,
     .Also = "hodogram",
     .Heading = "HODOGRAM",
     .Topic = "hodogram",
     .Options = "Diagram/Tab 6",
     .Controls = HodogramControls,
     .Drag = TurnHodogram},
    {.Id = "MountainWave",
     .Title = "Mountain Wave",
     .Plot = PlotMountainWave,
     .Needs = NeedsSounding,
     .Entry = "mnuWave",
     .Caption = "&Mountain Wave",
     .Hint = "Lee waves behind the mountains of the station",
     .Lacking = "(mountain wave)",
     .Heading = "MOUNTAIN WAVE",
     .Topic = "waves"},
    {.Id = "WaveSweep",
     .Title = "Mountain Wave: Axis and Width of the Ridge",
     .Plot = PlotWaveSweep,
     .Needs = NeedsSounding,
     .Entry = "mnuWaveSweep",
     .Caption = "Mountain Wave S&weep",
     .Hint = "How the strongest wave hangs on the ridge's axis and width",
     .Lacking = "(mountain wave)",
     .Heading = "MOUNTAIN WAVE",
     .Topic = "waves"},
    {.Id = "WaveSeries",
     .Title = "Mountain Wave: Soundings in Turn",
     .Plot = PlotWaveSeries,
     .Needs = NeedsSeveral,
     .Entry = "mnuWaveSeries",
     .Caption = "Mountain Wave Se&ries",
     .Hint = "The strongest wave of each sounding that was opened together",
     .Lacking = "(mountain wave)",
     .Heading = "MOUNTAIN WAVE",
     .Topic = "waves",
     .Mode = MultiMode::Overlay},
    {.Id = "CrossSection",
     .Title = "Cross-Section",
     .Plot = PlotCrossSection,
     .Needs = NeedsSection,
     .Entry = "mnuCross",
     .Caption = "&Cross-Section",
     .Hint = "The soundings opened together side by side, along a line or in time",
     .Lacking = "(cross-section)",
     .Heading = "CROSS-SECTION",
     .Topic = "crosssection",
     .Listing = ListCrossSection},
    {.Id = "AreaMapForm",
     .Title = "Area Map Sounding Display",
     .Plot = PlotSectionMap,
     .Needs = NeedsSection,
     .Entry = "mnuAreaMap",
     .Caption = "&Area Map",
     .Hint = "The stations of the cross-section on a map, with their winds",
     .Lacking = "(area map)",
     .Also = "AreaMap",
     .Heading = "AREA MAP",
     .Topic = "crosssection",
     .Controls = SectionMapControls},
    {.Id = "Soaring",
     .Title = "Soaring",
     .Plot = Sheet<display::SoaringSheet>,
     .Needs = NeedsSounding,
     .Entry = "mnuSoaring",
     .Caption = "S&oaring",
     .Hint = "Thermals of the day",
     .Lacking = "(soaring)",
     .Topic = "soaring"},
    {.Id = "ForecastHodo",
     .Title = "Forecast Hodograph",
     .Plot = PlotForecastHodo,
     .Needs = NeedsSounding,
     .Entry = "mnuForecast",
     .Caption = "F&orecast",
     .Hint = "The sounding hours ahead, from the air upwind",
     .Lacking = "(forecast)",
     .After = "mnuAnalyze",
     .Also = "forecast",
     .Heading = "FORECAST",
     .Topic = "forecast",
     .Listing = ListForecast},
    {.Id = "ForecastMap",
     .Title = "Forecast Map",
     .Plot = PlotForecastMap,
     .Needs = NeedsSounding,
     .Entry = "mnuForecastMap",
     .Caption = "Forecast Map",
     .Hint = "The soundings around the station and which lie upwind",
     .Lacking = "(forecast)",
     .After = "mnuForecast",
     .Heading = "FORECAST MAP",
     .Topic = "forecast"},
};

}  // namespace

std::span<const DisplayRow> AllDisplays() {
  return kDisplays;
}

const DisplayRow* FindDisplay(std::span<const DisplayRow> displays, std::string_view id) {
  const auto row = std::ranges::find(displays, id, &DisplayRow::Id);
  return row == displays.end() ? nullptr : &*row;
}

const DisplayRow* DisplayNamed(std::span<const DisplayRow> displays, std::string_view word) {
  const auto row = std::ranges::find_if(displays, [word](const DisplayRow& one) {
    return one.Plot != nullptr && (SameText(one.Id, word) || SameText(one.Also, word));
  });
  return row == displays.end() ? nullptr : &*row;
}

std::vector<std::string_view> DisplayNames(std::span<const DisplayRow> displays) {
  std::vector<std::string_view> names;
  for (const DisplayRow& row : displays) {
    if (row.Plot != nullptr) names.push_back(row.Id);
  }
  return names;
}

std::string LackOf(const DisplayRow& row, const Program& program) {
  if (row.Plot == nullptr) return std::string(row.Id) + " is not in this version";
  const std::string_view lack = row.Needs == nullptr ? "" : row.Needs(program);
  return lack.empty() ? std::string() : std::string(row.Id) + ' ' + std::string(lack);
}

Picture DrawDisplay(const DisplayRow& row, const Program& program, const Surface& on) {
  return DrawDisplay(row, program, on, program.Set);
}

Picture DrawDisplay(const DisplayRow& row, const Program& program, const Surface& on,
                    const Options& set) {
  return row.Plot({program, set}, on);
}

const DisplayRow& DiagramNow(const Program& program) {
  const auto mode = program.Others.empty() ? MultiMode::Single : program.View.Mode;
  return *std::ranges::find(program.DisplayTable, mode, &DisplayRow::Mode);
}

std::string PictureName(const Program& program, std::string_view display) {
  std::string name = TextFromPath(PathFromText(program.Current.FileName).stem());
  if (name.empty()) name = "sounding";
  if (const int index = program.Doc.IndexInFile(); index > 0) name += "_" + Shortest(index + 1);
  if (!display.empty()) name.append("_").append(display);
  std::ranges::replace(name, '.', '_');
  return name;
}

void OpenDisplay(Program& program, const DisplayRow& row) {
  program.Displays.SetUp(row.Id, !(row.Toggles && program.Displays.IsUp(row.Id)));
}

}  // namespace vexa
