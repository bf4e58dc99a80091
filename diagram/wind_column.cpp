#include "diagram/wind_column.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "analysis/interpolate.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "diagram/wind_symbol.h"

namespace vexa::diagram {
namespace {

struct PlacedWind {
  double Y = 0;
  double Height = 0;  // m above mean sea level
  analysis::Wind Value{};
};

std::vector<PlacedWind> PlaceWinds(const Plot& plot) {
  const SoundingRecord& sounding = plot.Sounding();
  std::vector<PlacedWind> placed;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (!sounding.HasWind(i)) continue;
    const double height = sounding.WindHgt(i);
    const double press = analysis::GetPRESS(plot.Results().Levels, height);
    if (!HasHeight(press) || !plot.InRange(press)) continue;
    const std::optional<double> y = RightEdgeY(plot.At, press);
    if (y) placed.push_back({*y, height, {sounding.WindDir(i), sounding.WindSpd(i)}});
  }
  return placed;
}

/// How far a symbol reaches above and below, page positions.
struct Reach {
  double Top = 0;
  double Bottom = 0;
};

Reach ReachOf(const PlacedWind& wind, const Options& options) {
  const Rect extent = SymbolExtent(wind.Value, options);
  const double margin = 0.3 * SizeOf(options.BarbSize).Spacing;
  return {wind.Y + extent.Top - margin, wind.Y + extent.Bottom + margin};
}

// Where a symbol's foot stands so that the symbol keeps inside the column.
double FootX(double wanted, const Rect& extent) {
  const double least = kWindColumn.Left - extent.Left;
  const double most = kWindColumn.Right - extent.Right;
  return least <= most ? std::clamp(wanted, least, most) : (least + most) / 2;
}

/// Symbols that would still stand on one another step aside, to the right and to the left.
class Lanes {
 public:
  /// The lane of the next wind: 0 in the middle, 1 to the right, -1 to the left; the middle where
  /// none is free.
  int Place(const Reach& reach) {
    constexpr std::array kOrder = {0, 1, -1};
    for (std::size_t i = 0; i < kOrder.size(); ++i) {
      if (reach.Top < last_[i].Bottom && last_[i].Top < reach.Bottom) continue;
      last_[i] = reach;
      return kOrder[i];
    }
    last_[0] = reach;
    return 0;
  }

 private:
  std::array<Reach, 3> last_{};
};

// "th" as the column's caption has it for any number but one.
std::string RatioCaption(int ratio) {
  return "Plotted every " + Shortest(ratio) + " th wind";
}

}  // namespace

int WindRatio(const std::vector<double>& places, int option, double apart) {
  if (option > 0) return option;
  std::vector<double> sorted = places;
  std::ranges::sort(sorted);
  const int count = static_cast<int>(sorted.size());
  for (int ratio = 1; ratio < count; ++ratio) {
    int gaps = 0;
    int wide = 0;
    for (int i = ratio; i < count; i += ratio) {
      ++gaps;
      const auto here = static_cast<std::size_t>(i);
      if (sorted[here] - sorted[here - static_cast<std::size_t>(ratio)] >= apart) ++wide;
    }
    if (10 * wide >= 9 * gaps) return ratio;
  }
  return std::max(count, 1);
}

void DrawWindColumn(Plot& plot) {
  const Options set = SymbolOptions(plot.Set(), plot.Sounding());
  const std::vector<PlacedWind> winds = PlaceWinds(plot);
  if (winds.empty() || set.Winds == WindDisplay::None) return;
  const Rect& column = kWindColumn;
  const double x = (column.Left + column.Right) / 2;
  if (set.WindPlotsBox) {
    plot.Page.Add("wind box", Polyline{.Points = {{column.Left, column.Top},
                                                  {column.Right, column.Top},
                                                  {column.Right, column.Bottom},
                                                  {column.Left, column.Bottom},
                                                  {column.Left, column.Top}},
                                       .Stroke = plot.Inks.PanelFrame});
  }
  DrawSegment(plot.Page, "wind axis", {x, column.Top}, {x, column.Bottom}, plot.Inks.Isobar);
  std::vector<double> places;
  places.reserve(winds.size());
  for (const PlacedWind& wind : winds) places.push_back(wind.Y);
  const WindSymbolSize size = SizeOf(set.BarbSize);
  // The largest symbols fill the column: without lanes beside the middle they stand further apart.
  const double lane = 1.35 * size.Shaft;
  const bool hasLanes = lane < column.Width() / 2;
  const int ratio = WindRatio(places, set.WindPlotRatio, (hasLanes ? 2.2 : 3.2) * size.Spacing);
  Lanes lanes;
  double lowest = column.Bottom;
  for (std::size_t i = 0; i < winds.size(); i += static_cast<std::size_t>(ratio)) {
    const PlacedWind& wind = winds[i];
    const Reach reach = ReachOf(wind, set);
    lowest = std::max(lowest, reach.Bottom);
    const double wanted = hasLanes ? x + lanes.Place(reach) * lane : x;
    const double foot = FootX(wanted, SymbolExtent(wind.Value, set));
    if (foot != x) {
      DrawSegment(plot.Page, "wind lane", {x, wind.Y}, {foot, wind.Y}, plot.Inks.Isobar);
    }
    DrawWindSymbol(plot.Page, {foot, wind.Y}, wind.Value, set, plot.Inks.Wind);
    plot.Page.AddHotSpot({{column.Left, wind.Y - size.Spacing, column.Right, wind.Y + size.Spacing},
                          "wind",
                          HeightText(ShownHeight(plot, wind.Height), plot.Units.Height) + ": " +
                              Mask(wind.Value.Dir, "000") + "/" +
                              Mask(ShownSpeed(wind.Value.Spd, set.Speed),
                                   set.Speed == SpeedUnits::Knots ? "##0" : "##0.0") +
                              " " + std::string(plot.Units.SpeedLabel)});
  }
  if (ratio > 1) {
    const double below = std::clamp(lowest + 80, column.Bottom + 270, kPageHeight - 80);
    DrawText(plot.Page, "wind ratio", {x, below}, RatioCaption(ratio), plot.Inks.Faint,
             0.85 * kSmallText, AnchorX::Center);
  }
  // The limit of the winds: nothing is known above it.
  const double top = std::ranges::min_element(winds, {}, &PlacedWind::Y)->Y;
  DrawSegment(plot.Page, "wind limit", {column.Right - 130, top}, {column.Right, top},
              plot.Inks.HeightAxis);
  const double textY = top - column.Top > 120 ? top - 75 : top + 75;
  DrawText(plot.Page, "wind limit", {column.Right - 20, textY}, "Limit", plot.Inks.Faint,
           0.8 * kSmallText, AnchorX::Right);
}

}  // namespace vexa::diagram
