#include "diagram/page_regions.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "diagram/analysis_marks.h"
#include "diagram/panel.h"
#include "diagram/title_text.h"
#include "diagram/wind_symbol.h"
#include "picture/surface.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

// Room around the frame for its axes.
constexpr double kPressRoom = Px(40);
constexpr double kHeightRoom = Px(50);
constexpr double kHeightsFrom = Px(500);  // width of a region in which heights have room
constexpr double kScaleRoom = Px(42);
constexpr double kEdgeRoom = Px(16);
constexpr double kHeadRoom = Px(34);
constexpr double kAxisRoom = Px(22);
constexpr double kSecondAxisRoom = Px(16);
constexpr double kCaptionRoom = Px(15);     // of the ground and the winds, under the axis
constexpr double kWidestCaption = Px(126);  // of the winds
constexpr double kLegendRow = Px(18);

constexpr Point kConfigurationAt{4690, 50};  // drawing units of the page

// Marks without a gutter take this much of the frame's right edge.
constexpr double kMarkRoom = Px(110);
constexpr double kMarkRoomAgl = Px(140);

const LayoutRow& LayoutOf(const PlotInput& input) {
  return input.Layout != nullptr ? *input.Layout : PageLayouts().front();
}

// The boxes of the caller and those of the diagram itself.
std::vector<PageBox> BoxesOf(const Plot& plot, double analysisWidth) {
  std::vector<PageBox> boxes = plot.In.Boxes;
  if (HasAnalysisBox(plot.In)) {
    boxes.push_back({.Name = "analysis", .MostHeight = AnalysisBoxHeight(plot, analysisWidth)});
  }
  return boxes;
}

bool HasWinds(const PlotInput& input) {
  const auto winds = [](const OverlaySounding& other) {
    return other.Sounding != nullptr && other.Sounding->NumWindLevels() > 0;
  };
  return input.Sounding.NumWindLevels() > 0 ||
         (input.Mode == MultiMode::Compare && std::ranges::any_of(input.Others, winds));
}

PageLayout CutFor(const Plot& plot, double analysisWidth = 0) {
  const PlotInput& input = plot.In;
  std::vector<RegionRow> rows = RowsFor(LayoutOf(input).Regions, BoxesOf(plot, analysisWidth));
  // Nobody misses the strip of a sounding without one.
  if (input.Advection.empty()) {
    std::erase_if(rows, [](const RegionRow& row) { return row.Name == kAdvectionRegion; });
  }
  // Nor the column of one without winds.
  if (!HasWinds(input)) {
    std::erase_if(rows, [](const RegionRow& row) { return row.Name == "wind"; });
  }
  for (RegionRow& row : rows) {
    if (row.Name == "wind") {
      // The symbols of the larger sizes reach further from their axis.
      row.LeastWidth = std::max(row.LeastWidth, 2.7 * SizeOf(input.Set.BarbSize).Shaft);
    } else if (row.Name == "marks") {
      row.LeastWidth = MarksWidth(input);
    } else if (row.Name == "legend") {
      row.LeastHeight = std::max(row.LeastHeight, kLegendRow * OtherTitleRows(input));
      if (input.Set.StabilityBars) row.LeastHeight = std::max(row.LeastHeight, 2 * kLegendRow);
    }
  }
  PageLayout layout = CutPage(input.On, rows);
  // In a wide column the analysis stands two abreast, and leaves room for others.
  const Rect* analysis = layout.Find("analysis");
  if (analysis == nullptr || analysisWidth > 0) return layout;
  const double narrow = AnalysisBoxHeight(plot, 0);
  if (AnalysisBoxHeight(plot, analysis->Width()) == narrow) return layout;
  return CutFor(plot, analysis->Width());
}

}  // namespace

int OtherTitleRows(const PlotInput& input) {
  if (input.Mode != MultiMode::Overlay && input.Mode != MultiMode::Compare) return 0;
  constexpr int kMostRows = 6;
  return std::min(1 + static_cast<int>(input.Others.size()), kMostRows);
}

Places PlaceRegions(const Plot& plot) {
  Places places;
  places.Page = CutFor(plot);
  places.Asks = LayoutOf(plot.In).Defaults;
  const DisplaySettings& set = plot.Set();
  const Rect region = *places.Find("diagram");
  // A page that is too small for its axes keeps half of itself for the frame.
  const double wide = std::min(1.0, region.Width() / Px(220));
  const double high = std::min(1.0, region.Height() / Px(170));
  places.HasHeights = plot.In.Lines.PressHeights && region.Width() >= kHeightsFrom;
  const bool hasScale = set.RightScale != HeightScale::None;
  places.Frame = {
      region.Left + wide * (kPressRoom + (places.HasHeights ? kHeightRoom : 0)),
      region.Top + high * kHeadRoom, region.Right - wide * (hasScale ? kScaleRoom : kEdgeRoom),
      region.Bottom -
          high * (kAxisRoom + kCaptionRoom + (set.TempDualScale ? kSecondAxisRoom : 0))};
  places.CaptionY = region.Bottom - kCaptionRoom / 2;
  if (const Rect* wind = places.Find("wind")) {
    places.CaptionReach = kWidestCaption - (wind->Right - region.Right);
  }
  places.PressLabelX = places.Frame.Left - Px(6);
  places.HeightLabelX = places.PressLabelX - Px(36);
  if (places.Find("marks") == nullptr) {
    places.MarkRoom = set.Heights == HeightMode::Agl ? kMarkRoomAgl : kMarkRoom;
    if (places.MarkRoom > places.Frame.Width() / 2) places.MarkRoom = 0;
  }
  return places;
}

namespace {

// Where the station stands and how high.
std::string PlaceText(const Plot& plot) {
  const std::string text = PositionText(plot.Sounding());
  if (text.empty() || plot.Sounding().ElevUnknown) return text;
  return text + "   " + HeightText(plot.Sounding().ElevM, plot.Units.Height);
}

}  // namespace

void DrawTitle(Plot& plot) {
  const Rect* region = plot.Where.Find("title");
  if (region == nullptr) return;
  const double y = region->Top + Px(13);
  const double width = region->Width();
  double used = 0;
  const std::string title = "VEXA  -  " + SoundingTitle(plot.Sounding(), plot.Set());
  if (!plot.Set().TitleAboveDiagram) {
    const Rect& frame = plot.Where.Frame;
    const double size = LetterSize(Type::Value);
    DrawTextOver(plot, "title", {frame.Left + Px(8), frame.Top + Px(14)},
                 Elided(title, size, frame.Width() - Px(16)), plot.Inks.Ink, size);
  } else {
    const FittedTitle fitted = FitTitle(title, width);
    used = TextWidth(fitted.Text, fitted.Size, true) + Px(20);
    plot.Page.Add("title", Label{.At = {region->Left, y},
                                 .Text = fitted.Text,
                                 .Size = fitted.Size,
                                 .Ink = plot.Inks.Ink,
                                 .Bold = true});
  }
  const std::string position = PlaceText(plot);
  if (!position.empty() && used + TextWidth(position, kAxisText) <= width) {
    DrawText(plot.Page, "position", {region->Right, y + Px(2)}, position, plot.Inks.Faint,
             kAxisText, AnchorX::Right);
  }
  // The caption of the configuration has a fixed place; a page that ends before it moves it left.
  const std::string& configuration = plot.In.Configuration;
  const double left = plot.Page.Width() - kPageMargin - TextWidth(configuration, kSmallText);
  if (configuration.empty() || left < kPageMargin) return;
  DrawText(plot.Page, "configuration", {std::min(kConfigurationAt.X, left), kConfigurationAt.Y},
           configuration, plot.Inks.Faint, kSmallText, AnchorX::Left, AnchorY::Top);
}

void DrawStatus(Plot& plot) {
  const Rect* region = plot.Where.Find("status");
  if (region == nullptr) return;
  const double y = (region->Top + region->Bottom) / 2;
  double room = region->Width();
  const auto right = [&](std::string_view tag, const std::string& whole) {
    if (whole.empty() || room <= 0) return;
    const std::string text = Elided(whole, kSmallText, room);
    DrawText(plot.Page, tag, {region->Left + room, y}, text, plot.Inks.Faint, kSmallText,
             AnchorX::Right);
    room -= (TextWidth(text, kSmallText) + 2 * kSmallText);
  };
  if (plot.In.LoopHoldTime) {
    right("hold time", "Image hold time: " + Mask(*plot.In.LoopHoldTime, "0.0") + " seconds.");
  }
  right("left out", LeftOutText(plot.Where.Page));
  const SoundingRecord& sounding = plot.Sounding();
  std::string text;
  if (!sounding.DataFormat.empty()) text = "Data type: " + sounding.DataFormat + "   ";
  int winds = 0;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) winds += sounding.HasWind(i) ? 1 : 0;
  text += Shortest(sounding.NumTempLevels()) + " levels, " + Shortest(winds) + " winds";
  if (TextWidth(text, kSmallText) > room) return;
  DrawText(plot.Page, "status", {region->Left, y}, std::move(text), plot.Inks.Faint, kSmallText);
}

void DrawBoxes(Plot& plot) {
  for (const PageBox& box : plot.In.Boxes) {
    const Rect* region = plot.Where.Find(box.Name);
    if (region != nullptr && box.Draw) box.Draw(plot.Page, *region);
  }
  InfoBoxx(plot);
}

}  // namespace vexa::diagram
