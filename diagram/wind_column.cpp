#include "diagram/wind_column.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "analysis/interpolate.h"
#include "analysis/shown_units.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "diagram/grid.h"
#include "diagram/wind_symbol.h"

namespace vexa::diagram {
namespace {

struct PlacedWind {
  double Y = 0;
  double Height = 0;  // m above mean sea level
  double Press = 0;
  analysis::Wind Value{};
  bool Stays = false;  // however much is thinned
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
    if (y) placed.push_back({*y, height, press, {sounding.WindDir(i), sounding.WindSpd(i)}});
  }
  return placed;
}

// The winds that a forecaster looks for by name: the lowest, the strongest, and those of the
// mandatory levels.
void MarkThoseThatStay(std::vector<PlacedWind>& winds) {
  constexpr double kSameLevel = 0.01;  // of the pressure, some 80 m
  if (winds.empty()) return;
  winds.front().Stays = true;
  std::ranges::max_element(winds, {}, [](const PlacedWind& wind) {
    return wind.Value.Spd;
  })->Stays = true;
  for (const int press : MandatoryPressures()) {
    const auto apart = [press](const PlacedWind& wind) { return std::fabs(wind.Press - press); };
    const auto nearest = std::ranges::min_element(winds, {}, apart);
    if (apart(*nearest) <= kSameLevel * press) nearest->Stays = true;
  }
}

Reach ReachOf(const PlacedWind& wind, const ViewSettings& options) {
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
  explicit Lanes(int count) : last_(static_cast<std::size_t>(count)) {}

  /// The lane of the next wind: 0 in the middle, 1 to the right, -1 to the left; empty where none
  /// is free.
  std::optional<int> Place(const Reach& reach) {
    constexpr std::array kOrder = {0, 1, -1};
    for (std::size_t i = 0; i < last_.size(); ++i) {
      if (reach.Top < last_[i].Bottom && last_[i].Top < reach.Bottom) continue;
      last_[i] = reach;
      return kOrder[i];
    }
    last_[0] = reach;
    return std::nullopt;
  }

 private:
  std::vector<Reach> last_;
};

// Three lanes fit, but a column that has three symbols abreast all the way up is hard to read.
constexpr int kLanes = 3;
constexpr int kEasyLanes = 2;

// "th" as the column's caption has it for any number but one.
std::string RatioCaption(int ratio) {
  return "Plotted every " + Shortest(ratio) + " th wind";
}

}  // namespace

int WindRatio(const std::vector<Reach>& reaches, int option, bool hasLanes) {
  if (option > 0) return option;
  const int count = static_cast<int>(reaches.size());
  for (int ratio = 1; ratio < count; ++ratio) {
    Lanes lanes(hasLanes ? kEasyLanes : 1);
    int drawn = 0;
    int crowded = 0;
    for (int i = 0; i < count; i += ratio) {
      ++drawn;
      if (!lanes.Place(reaches[static_cast<std::size_t>(i)])) ++crowded;
    }
    if (4 * crowded <= drawn) return ratio;
  }
  return std::max(count, 1);
}

void DrawWindColumn(Plot& plot) {
  const ViewSettings set = SymbolOptions(plot.Set(), plot.Sounding());
  std::vector<PlacedWind> winds = PlaceWinds(plot);
  MarkThoseThatStay(winds);
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
  std::vector<Reach> reaches;
  reaches.reserve(winds.size());
  for (const PlacedWind& wind : winds) reaches.push_back(ReachOf(wind, set));
  const WindSymbolSize size = SizeOf(set.BarbSize);
  // The largest symbols fill the column: there are no lanes beside the middle.
  const double lane = 1.35 * size.Shaft;
  const bool hasLanes = lane < column.Width() / 2;
  const int ratio = WindRatio(reaches, set.WindPlotRatio, hasLanes);
  Lanes lanes(hasLanes ? kLanes : 1);
  double lowest = column.Bottom;
  for (std::size_t i = 0; i < winds.size(); ++i) {
    const PlacedWind& wind = winds[i];
    const Reach& reach = reaches[i];
    if (!wind.Stays && i % static_cast<std::size_t>(ratio) != 0) continue;
    const std::optional<int> place = lanes.Place(reach);
    lowest = std::max(lowest, reach.Bottom);
    const double wanted = x + place.value_or(0) * lane;
    const double foot = FootX(wanted, SymbolExtent(wind.Value, set));
    if (foot != x) {
      DrawSegment(plot.Page, "wind lane", {x, wind.Y}, {foot, wind.Y}, plot.Inks.Isobar);
    }
    DrawWindSymbol(plot.Page, {foot, wind.Y}, wind.Value, set, plot.Inks.Wind);
    plot.Page.AddHotSpot({{column.Left, wind.Y - size.Spacing, column.Right, wind.Y + size.Spacing},
                          "wind",
                          HeightText(ShownHeight(plot, wind.Height), plot.Units.Height) + ": " +
                              analysis::DirectionText(wind.Value.Dir) + "/" +
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
