#include "diagram/wind_column.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <string>

#include "analysis/interpolate.h"
#include "analysis/shown_units.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "diagram/grid.h"
#include "diagram/palette.h"
#include "diagram/usual_bands.h"
#include "diagram/wind_symbol.h"
#include "picture/shapes.h"

namespace vexa::diagram {
namespace {

struct PlacedWind {
  double Y = 0;
  double Height = 0;  // m above mean sea level
  double Press = 0;
  analysis::Wind Value{};
};

std::vector<PlacedWind> PlaceWinds(const Plot& plot, const SoundingRecord& sounding,
                                   const analysis::AnalysisResults& results) {
  std::vector<PlacedWind> placed;
  // Above all levels nothing is looked up: that would take longest.
  const bool isLookedUp = results.Levels.Count() >= 2;
  const double highest = isLookedUp ? std::ranges::max(results.Levels.Height.Values()) : 0;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (!sounding.HasWind(i)) continue;
    const double height = sounding.WindHgt(i);
    if (isLookedUp && height > highest + analysis::kHeightRounding) continue;
    const double press = analysis::GetPRESS(results.Levels, height);
    if (!HasHeight(press) || !plot.InRange(press)) continue;
    const std::optional<double> y = RightEdgeY(plot.At, press);
    if (y) placed.push_back({*y, height, press, {sounding.WindDir(i), sounding.WindSpd(i)}});
  }
  return placed;
}

// The winds that a forecaster looks for by name, those first that have to be seen most: the lowest,
// the strongest, and those of the mandatory levels.
std::vector<std::size_t> NamedWinds(const std::vector<PlacedWind>& winds) {
  constexpr double kSameLevel = 0.01;  // of the pressure, some 80 m
  if (winds.empty()) return {};
  const auto place = [&](auto wind) { return static_cast<std::size_t>(wind - winds.begin()); };
  std::vector<std::size_t> named = {
      0, place(std::ranges::max_element(winds, {},
                                        [](const PlacedWind& wind) { return wind.Value.Spd; }))};
  for (const int press : MandatoryPressures()) {
    const auto apart = [press](const PlacedWind& wind) { return std::fabs(wind.Press - press); };
    const auto nearest = std::ranges::min_element(winds, {}, apart);
    if (apart(*nearest) <= kSameLevel * press) named.push_back(place(nearest));
  }
  return named;
}

Reach ReachOf(const PlacedWind& wind, const ViewSettings& options) {
  const Rect extent = SymbolExtent(wind.Value, options);
  const double margin = 0.3 * SizeOf(options.BarbSize).Spacing;
  return {wind.Y + extent.Top - margin, wind.Y + extent.Bottom + margin};
}

// The axis of the symbols, moved for one that would leave the column.
double FootX(double axis, const Rect& extent, const Rect& column) {
  const double least = column.Left - extent.Left;
  const double most = column.Right - extent.Right;
  return least <= most ? std::clamp(axis, least, most) : (least + most) / 2;
}

// The same up and down, for one that would leave the column at its end.
double FootY(double y, const Rect& extent, const Rect& column) {
  const double least = column.Top - std::min(0.0, extent.Top);
  const double most = column.Bottom - std::max(0.0, extent.Bottom);
  return least <= most ? std::clamp(y, least, most) : y;
}

// The second sounding of a comparison, with winds to draw; null when there is none.
const OverlaySounding* Second(const Plot& plot) {
  if (plot.In.Mode != MultiMode::Compare || plot.In.Others.empty()) return nullptr;
  const OverlaySounding& other = plot.In.Others.front();
  return other.Sounding != nullptr && other.Results != nullptr ? &other : nullptr;
}

std::vector<bool> ChooseFrom(const std::vector<PlacedWind>& winds, const ViewSettings& set) {
  std::vector<Reach> reaches;
  reaches.reserve(winds.size());
  for (const PlacedWind& wind : winds) reaches.push_back(ReachOf(wind, set));
  return ChooseWinds(reaches, NamedWinds(winds), set.WindPlotRatio);
}

// The compared sounding's winds on an axis of their own, in the ink of its traces.
void DrawSecondWinds(Plot& plot, const OverlaySounding& other, const Rect& room) {
  const ViewSettings set = SymbolOptions(plot.Set(), *other.Sounding);
  Pen pen = plot.Inks.Wind;
  pen.Ink = OverlayPen(plot.Inks, 1).Ink;
  if (other.IsFaint) pen.Ink = FaintInk(plot.Inks, pen.Ink);
  const double x = (room.Left + room.Right) / 2;
  DrawSegment(plot.Page, "other wind axis", {x, room.Top}, {x, room.Bottom},
              {pen.Ink, plot.Inks.Isobar.Width, LineStyle::Dash});
  const std::vector<PlacedWind> winds = PlaceWinds(plot, *other.Sounding, *other.Results);
  if (winds.empty()) return;
  const std::vector<bool> chosen = ChooseFrom(winds, set);
  for (std::size_t i = 0; i < winds.size(); ++i) {
    if (!chosen[i]) continue;
    const Rect extent = SymbolExtent(winds[i].Value, set);
    const Point foot{FootX(x, extent, room), FootY(winds[i].Y, extent, room)};
    DrawWindSymbol(plot.Page, foot, winds[i].Value, set, pen);
  }
}

// "th" as the column's caption has it for any number but one.
std::string RatioCaption(int ratio) {
  return "Plotted every " + Shortest(ratio) + " th wind";
}

}  // namespace

std::vector<bool> ChooseWinds(const std::vector<Reach>& reaches,
                              const std::vector<std::size_t>& stays, int option) {
  std::vector<bool> chosen(reaches.size(), false);
  if (option > 0) {
    for (std::size_t i = 0; i < chosen.size(); i += static_cast<std::size_t>(option)) {
      chosen[i] = true;
    }
    for (const std::size_t i : stays) chosen[i] = true;
    return chosen;
  }
  // Only those that begin less than the longest reach above can meet one.
  std::multimap<double, std::size_t> byTop;  // the chosen ones
  double longest = 0;
  for (const Reach& reach : reaches) longest = std::max(longest, reach.Bottom - reach.Top);
  const auto choose = [&](std::size_t i, double nesting) {
    if (chosen[i]) return;
    const Reach& mine = reaches[i];
    for (auto at = byTop.lower_bound(mine.Top - longest);
         at != byTop.end() && at->first < mine.Bottom; ++at) {
      const Reach& its = reaches[at->second];
      const double shared = std::min(mine.Bottom, its.Bottom) - std::max(mine.Top, its.Top);
      if (shared > nesting * std::min(mine.Bottom - mine.Top, its.Bottom - its.Top)) return;
    }
    chosen[i] = true;
    byTop.emplace(mine.Top, i);
  };
  constexpr double kSamePlace = 0.9, kNesting = 0.15;  // of the smaller symbol
  for (const std::size_t i : stays) choose(i, kSamePlace);
  for (std::size_t i = 0; i < reaches.size(); ++i) choose(i, kNesting);
  return chosen;
}

void DrawWindColumn(Plot& plot) {
  const ViewSettings set = SymbolOptions(plot.Set(), plot.Sounding());
  const Rect* region = plot.Where.Find("wind");
  if (region == nullptr) return;
  const std::vector<PlacedWind> winds = PlaceWinds(plot, plot.Sounding(), plot.Results());
  const OverlaySounding* second = Second(plot);
  if ((winds.empty() && second == nullptr) || set.Winds == WindDisplay::None) return;
  const Rect column{region->Left, plot.Where.Frame.Top, region->Right, plot.Where.Frame.Bottom};
  // Numbers take the right part of the column, the winds of a compared sounding the right half.
  constexpr double kNumberRoom = 56 * kUnitsPerPixel;
  const bool hasNumbers = plot.Where.Asks.WindNumbers && second == nullptr;
  const double middle = (column.Left + column.Right) / 2;
  const double end = second != nullptr ? middle : column.Right - (hasNumbers ? kNumberRoom : 0);
  const Rect barbs{column.Left, column.Top, end, column.Bottom};
  const double x = (barbs.Left + barbs.Right) / 2;
  double lastNumber = 1e9;
  if (set.WindPlotsBox) {
    plot.Page.Add("wind box",
                  Polyline{.Points = OutlineOf(column), .Stroke = plot.Inks.PanelFrame});
  }
  if (second == nullptr) DrawUsualWinds(plot, barbs);
  DrawSegment(plot.Page, "wind axis", {x, column.Top}, {x, column.Bottom}, plot.Inks.Isobar);
  if (second != nullptr) {
    DrawSecondWinds(plot, *second, {middle, column.Top, column.Right, column.Bottom});
  }
  if (winds.empty()) return;
  const std::vector<bool> chosen = ChooseFrom(winds, set);
  const double half = SizeOf(set.BarbSize).Spacing;
  for (std::size_t i = 0; i < winds.size(); ++i) {
    if (!chosen[i]) continue;
    const PlacedWind& wind = winds[i];
    const Rect extent = SymbolExtent(wind.Value, set);
    const Point foot{FootX(x, extent, barbs), FootY(wind.Y, extent, barbs)};
    DrawWindSymbol(plot.Page, foot, wind.Value, set, plot.Inks.Wind);
    const std::string number = analysis::ThreeDigits(wind.Value.Dir) + "/" +
                               Mask(ShownSpeed(wind.Value.Spd, set.Speed),
                                    set.Speed == SpeedUnits::Knots ? "##0" : "##0.0");
    if (hasNumbers && std::fabs(lastNumber - wind.Y) > 1.1 * kSmallText) {
      DrawText(plot.Page, "wind number", {column.Right - 48, wind.Y}, number, plot.Inks.Ink,
               kSmallText, AnchorX::Right);
      lastNumber = wind.Y;
    }
    plot.Page.AddHotSpot({{column.Left, wind.Y - half, column.Right, wind.Y + half},
                          "wind",
                          HeightText(ShownHeight(plot, wind.Height), plot.Units.Height) + ": " +
                              number + " " + std::string(plot.Units.SpeedLabel)});
  }
  const auto drawn = static_cast<double>(std::ranges::count(chosen, true));
  const int ratio = ToWhole(static_cast<double>(winds.size()) / drawn);
  if (ratio > 1) {
    DrawText(plot.Page, "wind ratio", {column.Right, plot.Where.CaptionY}, RatioCaption(ratio),
             plot.Inks.Faint, kSmallText, AnchorX::Right);
  }
  // The limit of the winds: nothing is known above it. It is told beside the topmost symbol.
  const PlacedWind& last = *std::ranges::min_element(winds, {}, &PlacedWind::Y);
  const double top = last.Y;
  const Rect extent = SymbolExtent(last.Value, set);
  const bool isRight = extent.Right <= -extent.Left;
  const double edge = isRight ? barbs.Right : barbs.Left;
  const double inward = isRight ? -1 : 1;
  DrawSegment(plot.Page, "wind limit", {edge + inward * 130, top}, {edge, top},
              plot.Inks.HeightAxis);
  const double textY = top - column.Top > 120 ? top - 84 : top + 84;
  DrawText(plot.Page, "wind limit", {edge + inward * 20, textY}, "Limit", plot.Inks.Faint,
           kSmallText, isRight ? AnchorX::Right : AnchorX::Left);
}

}  // namespace vexa::diagram
