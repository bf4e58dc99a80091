#include "diagram/sounding_plot.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "core/numbers.h"
#include "diagram/analysis_marks.h"
#include "diagram/extra_lines.h"
#include "diagram/grid.h"
#include "diagram/heights.h"
#include "diagram/panel.h"
#include "diagram/plot_state.h"
#include "diagram/scaling.h"
#include "diagram/title_text.h"
#include "diagram/traces.h"
#include "diagram/wind_column.h"
#include "picture/label_room.h"

namespace vexa::diagram {
namespace {

constexpr std::string_view kTephigramWarning =
    " This data can only be displayed on the Skew-T / Log-P and Emagram diagrams.   (The "
    "Tephigram's upper level is preset at 100 mb.)";

// The mapping that this sounding asks for, with room for those beside it.
DiagramMapping OwnScale(const Plot& plot, DiagramChoice choice) {
  const ViewSettings& set = plot.Set();
  TempRange range = ChooseTempRange(plot.Sounding(), set, choice, kFrame);
  if (plot.HasOthers() && plot.In.OthersScaling == Scaling::Auto) {
    for (const OverlaySounding& other : plot.In.Others) {
      if (other.Sounding == nullptr) continue;
      if (choice.Type != DiagramType::Tephigram) {
        choice.TopPress = std::min(choice.TopPress, ChooseDiagram(*other.Sounding, set).TopPress);
      }
      const TempRange its = ChooseTempRange(*other.Sounding, set, choice, kFrame);
      range = {std::min(range.Min, its.Min), std::max(range.Max, its.Max)};
    }
  }
  return {choice.Type, kFrame, range.Min, range.Max, choice.TopPress};
}

void ConfigureDiagram(Plot& plot) {
  const ViewSettings& set = plot.Set();
  const DiagramChoice choice = ChooseDiagram(plot.Sounding(), set);
  if (choice.BeyondTephigram && set.TephigramWarning) plot.Warning = kTephigramWarning;
  const DiagramMapping* held = plot.In.Scale;
  plot.At = held != nullptr && held->Type() == choice.Type ? *held : OwnScale(plot, choice);
  if (plot.In.Zoom) plot.At = plot.At.Zoomed(*plot.In.Zoom);
  plot.Inks = PaletteFor(set);
  plot.Page = Picture(kPageWidth, kPageHeight, plot.Inks.Paper);
  if (!plot.In.Configuration.empty()) {
    DrawText(plot.Page, "configuration", kConfigurationAt, plot.In.Configuration, plot.Inks.Faint,
             kSmallText, AnchorX::Left, AnchorY::Top);
  }
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

// Titles of overlaid and compared soundings stand below the axis, in their own colours.
void DrawOtherTitles(Plot& plot) {
  if (!plot.HasOthers()) return;
  const bool compare = plot.In.Mode == MultiMode::Compare;
  constexpr int kRows = 3;
  constexpr double kFirstRow = 8590;
  constexpr double kRowStep = 150;
  const double width = kPanel.Left - kFrame.Left;
  const int count = compare ? 2 : 1 + static_cast<int>(plot.In.Others.size());
  const double column = width / std::max(1, (count + kRows - 1) / kRows);
  int number = 1;
  const auto line = [&](const SoundingRecord& sounding, Color ink) {
    const std::string text = (compare ? "#" + Shortest(number) + " - " : std::string()) +
                             OtherTitle(sounding, plot.Set());
    // Written smaller where the column is narrow.
    const double fitting = (column - 150) / TextWidth(text.size(), 1.12);
    DrawText(
        plot.Page, "other title",
        {kFrame.Left + (number - 1) / kRows * column, kFirstRow + (number - 1) % kRows * kRowStep},
        text, ink, std::min(kMarkText, fitting));
    ++number;
  };
  line(plot.Sounding(), plot.Inks.Temperature.Ink);
  for (const OverlaySounding& other : plot.In.Others) {
    if (compare && number > 2) break;
    if (other.Sounding != nullptr) {
      line(*other.Sounding, OverlayPen(plot.Inks, number - 1).Ink);
    }
  }
}

void SetUpUnits(Plot& plot) {
  const ViewSettings& set = plot.Set();
  plot.Units.Height = set.GpmUnits;
  plot.Units.Speed = set.Speed;
  plot.Units.SpeedLabel = set.Speed == SpeedUnits::Knots ? "kts" : "m/s";
}

void DrawTemperatureGrid(Plot& plot) {
  DrawMixingRatioLines(plot);
  DrawSaturationAdiabats(plot);
  DrawDryAdiabats(plot);
  DrawIsotherms(plot);
}

void DrawTitles(Plot& plot) {
  if (plot.Set().TitleAboveDiagram) {
    const std::string title = "VEXA  -  " + SoundingTitle(plot.Sounding(), plot.Set());
    // A long one is written smaller, clear of the head of the height scale.
    constexpr double kSize = 210;
    constexpr double kPerLetter = 0.6;  // of the size, bold
    const double letters = static_cast<double>(title.size());
    const double fitting = (kFrame.Right - kFrame.Left) / (kPerLetter * letters);
    plot.Page.Add("title", Label{.At = {kFrame.Left, 250},
                                 .Text = title,
                                 .Size = std::min(kSize, fitting),
                                 .Ink = plot.Inks.Ink,
                                 .Bold = true});
  }
  DrawTemperatureUnits(plot);
  DrawText(plot.Page, "wind unit", {(kWindColumn.Left + kWindColumn.Right) / 2, kFrame.Top - 330},
           std::string(plot.Units.SpeedLabel), plot.Inks.Ink, kSmallText, AnchorX::Center);
}

void DrawSoundingData(Plot& plot) {
  DrawStabilityBars(plot);
  DrawParcel(plot);
  DrawTraces(plot);
  DrawOtherTraces(plot);
  DrawReferenceTraces(plot);
  DrawExtraLines(plot);
  if (!plot.HasOthers()) DrawLegend(plot);
}

void DrawIcaoAndHeightAxis(Plot& plot) {
  ICAOlabels(plot);
  DrawHeightAxis(plot);
}

void DrawScale(Plot& plot) {
  DrawHeightScale(plot);
  DrawFreezingAndTropopause(plot);
  DrawCustomLines(plot);
}

void DrawPressHeights(Plot& plot) {
  if (!plot.In.Lines.PressHeights) return;
  PrsHgtLabel(plot, plot.HasOthers());
}

void DrawAnalyses(Plot& plot) {
  DrawLayerMarks(plot);
  DrawParcelLevels(plot);
  DrawMarkColumns(plot);
  InfoBoxx(plot);
  if (plot.In.LoopHoldTime) {
    DrawText(plot.Page, "hold time", {kFrame.Right, kFrame.Bottom + 480},
             "Image hold time: " + Mask(*plot.In.LoopHoldTime, "0.0") + " seconds.", plot.Inks.Ink,
             kAxisText, AnchorX::Right);
  }
}

void DrawFrame(Plot& plot) {
  const Rect& frame = kFrame;
  plot.Page.Add("frame", Polyline{.Points = {{frame.Left, frame.Top},
                                             {frame.Right, frame.Top},
                                             {frame.Right, frame.Bottom},
                                             {frame.Left, frame.Bottom},
                                             {frame.Left, frame.Top}},
                                  .Stroke = plot.Inks.Frame});
}

void DrawPressureAxis(Plot& plot) {
  DrawPressureLines(plot);
  DrawFrame(plot);
  // Over the isobars; with other soundings on the diagram the line stands alone.
  if (!plot.HasOthers()) DrawSurfaceLabel(plot);
}

struct PlotStep {
  std::string_view Status;  // empty: the step goes on under the text before it
  void (*Draw)(Plot&);
  bool (*Applies)(const Plot&) = nullptr;  // null: always
};

bool HasWinds(const Plot& plot) {
  return plot.Sounding().NumWindLevels() > 0;
}

// Each step draws over the ones before it.
constexpr PlotStep kSteps[] = {
    {"Configuring sounding diagram . . .", ConfigureDiagram},
    {"", DrawOtherTitles},
    {"", SetUpUnits},
    {"Generating temperature grid lines . . .", DrawTemperatureGrid},
    {"", DrawSurfaceLine},
    {"", DrawTitles},
    {"", DrawPressureAxis},
    {"Loading sounding data arrays . . .", DrawSoundingData},
    {"Plotting wind data . . .", DrawWindColumn, HasWinds},
    {"", DrawIcaoAndHeightAxis},
    {"", DrawScale},
    {"", DrawPressHeights},
    {"", DrawInversions},
    {"", DrawFronts},
    {"", DrawAnalyses},
};

constexpr std::string_view kTephigramStatus = "Creating tephigram grid lines . . .";

}  // namespace

std::optional<SoundingPlot> PlotSounding(const PlotInput& input, Progress progress) {
  Plot plot{.In = input};
  for (const PlotStep& step : kSteps) {
    if (step.Applies != nullptr && !step.Applies(plot)) continue;
    const bool tephigramGrid =
        step.Draw == DrawTemperatureGrid && plot.At.Type() == DiagramType::Tephigram;
    const std::string_view status = tephigramGrid ? kTephigramStatus : step.Status;
    const auto done = static_cast<double>(&step - kSteps) / static_cast<double>(std::size(kSteps));
    if (!status.empty() && !progress.Begin(status, done)) return std::nullopt;
    step.Draw(plot);
  }
  return SoundingPlot{std::move(plot.Page), plot.At, std::move(plot.Warning)};
}

}  // namespace vexa::diagram
