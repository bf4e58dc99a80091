#include "diagram/sounding_plot.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "diagram/advection_strip.h"
#include "diagram/analysis_marks.h"
#include "diagram/extra_lines.h"
#include "diagram/grid.h"
#include "diagram/heights.h"
#include "diagram/page_regions.h"
#include "diagram/plot_state.h"
#include "diagram/scaling.h"
#include "diagram/title_text.h"
#include "diagram/traces.h"
#include "diagram/usual_bands.h"
#include "diagram/wind_column.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

constexpr std::string_view kTephigramWarning =
    " This data can only be displayed on the Skew-T / Log-P and Emagram diagrams.   (The "
    "Tephigram's upper level is preset at 100 mb.)";

// The mapping that this sounding asks for, with room for those beside it.
DiagramMapping OwnScale(const Plot& plot, DiagramChoice choice) {
  const ViewSettings& set = plot.Set();
  TempRange range = ChooseTempRange(plot.Sounding(), set, choice, plot.Where.Frame);
  if (plot.HasOthers() && plot.In.OthersScaling == Scaling::Auto) {
    for (const OverlaySounding& other : plot.In.Others) {
      if (other.Sounding == nullptr) continue;
      if (choice.Type != DiagramType::Tephigram) {
        choice.TopPress = std::min(choice.TopPress, ChooseDiagram(*other.Sounding, set).TopPress);
      }
      const TempRange its = ChooseTempRange(*other.Sounding, set, choice, plot.Where.Frame);
      range = {std::min(range.Min, its.Min), std::max(range.Max, its.Max)};
    }
  }
  return {choice.Type, plot.Where.Frame, range.Min, range.Max, choice.TopPress};
}

// The top pressure with which the layout's depth fills the diagram, whole tens of hPa; 0 where it
// shows all.
double TopForDepth(const Plot& plot) {
  const double depth = plot.Where.Asks.Depth;
  if (depth <= 0 || plot.Results().Levels.Count() < 2) return 0;
  const double press = analysis::GetPRESS(plot.Results().Levels, plot.Sounding().ElevM + depth);
  return HasHeight(press) ? std::floor(press / 10) * 10 : 0;
}

void ConfigureDiagram(Plot& plot) {
  const ViewSettings& set = plot.Set();
  DiagramChoice choice = ChooseDiagram(plot.Sounding(), set);
  if (choice.BeyondTephigram && set.TephigramWarning) plot.Warning = kTephigramWarning;
  plot.Where = PlaceRegions(plot);
  if (set.AutoMbSelect && choice.Type != DiagramType::Tephigram) {
    choice.TopPress = std::max(choice.TopPress, TopForDepth(plot));
  }
  const DiagramMapping* held = plot.In.Scale;
  plot.At = held != nullptr && held->Type() == choice.Type ? held->In(plot.Where.Frame)
                                                           : OwnScale(plot, choice);
  if (plot.In.Zoom) plot.At = plot.At.Zoomed(*plot.In.Zoom);
  plot.GridLabels = LabelRoom(plot.Where.Frame);
  plot.Inks = PaletteFor(set);
  plot.Page = Picture(plot.In.On.Width, plot.In.On.Height, plot.Inks.Paper);
}

// A sounding's title and place as one line of an overlay or a comparison.
std::string OtherTitle(const SoundingRecord& sounding, const ViewSettings& set) {
  std::string text = SoundingTitle(sounding, set);
  if (!sounding.LatHemi.empty()) {
    const auto size = [](double degrees) {
      return Mask(degrees < 0 ? -degrees : degrees, "###0.0");
    };
    text += " // " + size(sounding.LatSigned) + sounding.LatHemi + " " + size(sounding.LonSigned) +
            sounding.LonHemi;
  }
  return text;
}

// What a comparison says in a line of either sounding, without units where there is little room.
std::string MainIndices(const analysis::AnalysisResults& results, const ViewSettings& set,
                        bool units) {
  std::string text;
  for (const std::string_view label : {"CAPE total", "CIN total", "LI", "KI", "TT"}) {
    const analysis::IndexRow* row = analysis::FindIndex(label);
    const auto index = std::ranges::find(results.Indices, row, &analysis::IndexValue::Row);
    if (row == nullptr || index == results.Indices.end()) continue;
    const std::string_view name = Trim(row->Label);
    const analysis::ShownIndex shown = analysis::ShowIndex(*index, analysis::UnitsOf(set, kNone));
    text += text.empty() ? " // " : units ? "  " : " ";
    text += std::string(units ? name : name.substr(0, name.find(' '))) + " ";
    text += units ? shown.Text() : std::string(shown.Bound) + shown.Number;
  }
  return text;
}

// A title with what belongs behind it: the title gives way, down to its first words, then the
// units behind it do.
std::string TitleWith(const std::string& title, const std::string& whole, const std::string& brief,
                      double room) {
  constexpr double kLeastTitle = 24 * kMarkText / 2;
  const bool isWide =
      room - TextWidth(whole, kMarkText) >= std::min(kLeastTitle, TextWidth(title, kMarkText));
  const std::string& behind = isWide ? whole : brief;
  const double left = std::max(room - TextWidth(behind, kMarkText), 0.0);
  return Elided(Elided(title, kMarkText, left) + behind, kMarkText, room);
}

// Titles of overlaid and compared soundings stand in the place of the legend, in their own colours,
// side by side where the page is wide.
void DrawOtherTitles(Plot& plot) {
  const Rect* region = plot.Where.Find("legend");
  if (!plot.HasOthers() || region == nullptr) return;
  const bool compare = plot.In.Mode == MultiMode::Compare;
  constexpr double kRow = 18 * kUnitsPerPixel;
  constexpr double kGap = 16 * kUnitsPerPixel;
  const int count = compare ? 2 : 1 + static_cast<int>(plot.In.Others.size());
  const int rows = std::max(1, static_cast<int>(region->Height() / kRow + 0.01));
  const int columns = (count + rows - 1) / rows;
  const double width = region->Width() / columns;
  int number = 1;
  const auto line = [&](const SoundingRecord& sounding, const analysis::AnalysisResults* results,
                        Color ink) {
    const bool hasIndices = compare && results != nullptr;
    const auto behind = [&](bool units) {
      return hasIndices ? MainIndices(*results, plot.Set(), units) : std::string();
    };
    const std::string title = (compare ? "#" + Shortest(number) + " - " : std::string()) +
                              OtherTitle(sounding, plot.Set());
    DrawText(plot.Page, "other title",
             {region->Left + (number - 1) / rows * width,
              region->Top + ((number - 1) % rows + 0.5) * kRow},
             TitleWith(title, behind(true), behind(false), width - kGap), ink, kMarkText);
    ++number;
  };
  line(plot.Sounding(), &plot.Results(), plot.Inks.Temperature.Ink);
  for (const OverlaySounding& other : plot.In.Others) {
    if (compare && number > 2) break;
    if (other.Sounding != nullptr) {
      line(*other.Sounding, other.Results, OverlayPen(plot.Inks, number - 1).Ink);
    }
  }
}

void SetUpUnits(Plot& plot) {
  const ViewSettings& set = plot.Set();
  plot.Units.Height = set.GpmUnits;
  plot.Units.Speed = set.Speed;
  plot.Units.SpeedLabel = set.Speed == SpeedUnits::Knots ? "kts" : "m/s";
}

// The page before has the same grid, and nothing else as its ground.
bool HasGridBefore(const Plot& plot) {
  if (plot.In.Before == nullptr || !plot.In.Before->Grid || plot.HasOthers()) return false;
  const GridDrawn& grid = *plot.In.Before->Grid;
  return grid.At == plot.At && grid.Set == plot.Set();
}

void DrawTemperatureGrid(Plot& plot) {
  if (HasGridBefore(plot)) {
    for (const Item& item : plot.In.Before->Page.Ground()) plot.Page.Add(item);
    plot.GridLabels = plot.In.Before->Grid->Labels;
    plot.MixingRatios = plot.In.Before->Grid->MixingRatios;
    plot.Page.EndGround();
    return;
  }
  DrawMixingRatioLines(plot);
  DrawSaturationAdiabats(plot);
  DrawDryAdiabats(plot);
  DrawIsotherms(plot);
  plot.Page.EndGround();
}

void DrawTitles(Plot& plot) {
  DrawTitle(plot);
  DrawTemperatureUnits(plot);
  const Rect* wind = plot.Where.Find("wind");
  if (wind == nullptr) return;
  DrawText(plot.Page, "wind unit",
           {(wind->Left + wind->Right) / 2, plot.Where.Frame.Top - 12 * kUnitsPerPixel},
           std::string(plot.Units.SpeedLabel), plot.Inks.Ink, kSmallText, AnchorX::Center);
}

void DrawSoundingData(Plot& plot) {
  DrawStabilityBars(plot);
  DrawUsualTemps(plot);
  DrawParcel(plot);
  DrawOtherTraces(plot, true);
  DrawTraces(plot);
  DrawOtherTraces(plot, false);
  DrawReferenceTraces(plot);
  DrawExtraLines(plot);
  DrawMixingRatioLabels(plot);
  if (!plot.HasOthers()) DrawLegend(plot);
}

void DrawIcaoAndHeightAxis(Plot& plot) {
  ICAOlabels(plot);
  if (!plot.Where.Asks.HeightsFirst) DrawHeightAxis(plot);
}

void DrawScale(Plot& plot) {
  DrawHeightScale(plot);
  DrawFreezingAndTropopause(plot);
  DrawCustomLines(plot);
  NameTraces(plot);
}

void DrawPressHeights(Plot& plot) {
  if (!plot.In.Lines.PressHeights) return;
  if (plot.Where.HasHeights && !plot.Where.Asks.HeightsFirst) PrsHgtLabel(plot, plot.HasOthers());
}

void DrawAnalyses(Plot& plot) {
  // With other soundings on the diagram the line stands alone.
  if (!plot.HasOthers()) DrawSurfaceLabel(plot);
  DrawLayerMarks(plot);
  DrawParcelLevels(plot);
  DrawMarkColumns(plot);
  DrawBoxes(plot);
  DrawStatus(plot);
}

void DrawFrame(Plot& plot) {
  const Rect& frame = plot.Where.Frame;
  plot.Page.Add("frame", Polyline{.Points = OutlineOf(frame), .Stroke = plot.Inks.Frame});
}

void DrawPressureAxis(Plot& plot) {
  if (plot.Where.Asks.HeightsFirst) DrawLeadingHeights(plot);
  DrawPressureLines(plot);
  DrawFrame(plot);
}

struct PlotStep {
  std::string_view Status;  // empty: the step goes on under the text before it
  void (*Draw)(Plot&);
  bool (*Applies)(const Plot&) = nullptr;  // null: always
};

// Without winds there is no column.
bool HasWindColumn(const Plot& plot) {
  return plot.Where.Find("wind") != nullptr;
}

// Each step draws over the ones before it.
constexpr PlotStep kPlotSteps[] = {
    {"Configuring sounding diagram . . .", ConfigureDiagram},
    {"", DrawOtherTitles},
    {"", SetUpUnits},
    {"Generating temperature grid lines . . .", DrawTemperatureGrid},
    {"", DrawSurfaceLine},
    {"", DrawTitles},
    {"", DrawPressureAxis},
    {"Loading sounding data arrays . . .", DrawSoundingData},
    {"Plotting wind data . . .", DrawWindColumn, HasWindColumn},
    {"", DrawIcaoAndHeightAxis},
    {"", DrawScale},
    {"", DrawPressHeights},
    {"", DrawInversions},
    {"", DrawFronts},
    {"", DrawAdvectionStrip},
    {"", DrawAnalyses},
};

constexpr std::string_view kTephigramStatus = "Creating tephigram grid lines . . .";

}  // namespace

std::optional<SoundingPlot> PlotSounding(const PlotInput& input, Progress progress) {
  Plot plot{.In = input};
  std::optional<GridDrawn> grid;
  for (const PlotStep& step : kPlotSteps) {
    if (step.Applies != nullptr && !step.Applies(plot)) continue;
    const bool tephigramGrid =
        step.Draw == DrawTemperatureGrid && plot.At.Type() == DiagramType::Tephigram;
    const std::string_view status = tephigramGrid ? kTephigramStatus : step.Status;
    const auto done =
        static_cast<double>(&step - kPlotSteps) / static_cast<double>(std::size(kPlotSteps));
    if (!status.empty() && !progress.Begin(status, done)) return std::nullopt;
    step.Draw(plot);
    if (step.Draw == DrawTemperatureGrid && !plot.HasOthers()) {
      grid = {plot.Set(), plot.At, plot.GridLabels, plot.MixingRatios};
    }
  }
  return SoundingPlot{std::move(plot.Page), plot.At, std::move(plot.Where.Page),
                      std::move(plot.Warning), std::move(grid)};
}

}  // namespace vexa::diagram
