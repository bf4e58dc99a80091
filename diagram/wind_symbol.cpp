#include "diagram/wind_symbol.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/numbers.h"
#include "core/units.h"

namespace vexa::diagram {
namespace {

constexpr int kMostPennants = 20;  // beyond every wind; a symbol must not grow without end

Point Along(Point from, double degrees, double distance) {
  return {from.X + distance * std::sin(Radians(degrees)),
          from.Y - distance * std::cos(Radians(degrees))};
}

}  // namespace

WindSymbolSize SizeOf(WindSize size) {
  switch (size) {
    case WindSize::Huge:
      return {440, 60, 600, 140};
    case WindSize::Big:
      return {220, 30, 300, 70};
    case WindSize::Medium:
      return {140, 18, 200, 45};
    case WindSize::Small:
      return {80, 10, 100, 20};
  }
  return {};
}

double ShownSpeed(double knots, SpeedUnits units) {
  if (units == SpeedUnits::Knots) return ToWhole(knots + 0.001);
  return ToWhole(knots * 10 * kKnotToMsPlot) / 10.0;
}

FeatherCount CountFeathers(double knots, SpeedUnits units) {
  const double speed = ShownSpeed(knots, units);
  const double half = units == SpeedUnits::Knots ? 5 : 2.5;
  int halves = static_cast<int>(std::floor(std::min(speed / half, 10.0 * kMostPennants) + 0.5));
  FeatherCount count;
  count.Pennants = halves / 10;
  halves -= 10 * count.Pennants;
  count.Feathers = halves / 2;
  count.Halves = halves % 2;
  return count;
}

ViewSettings SymbolOptions(const ViewSettings& options, const SoundingRecord& sounding) {
  ViewSettings resolved = options;
  if (options.BarbHemisphere == Hemisphere::ByLatitude) {
    resolved.BarbHemisphere = sounding.IsSouthern() ? Hemisphere::Southern : Hemisphere::Northern;
  }
  return resolved;
}

bool FeathersOnRight(const ViewSettings& options) {
  switch (options.BarbFeathers) {
    case Feathers::Right:
      return true;
    case Feathers::Left:
      return false;
    case Feathers::Default:
      break;
  }
  return options.BarbHemisphere != Hemisphere::Southern;
}

namespace {

// Strong winds need a longer shaft than the size gives.
double ShaftLength(const WindSymbolSize& size, const FeatherCount& count) {
  const double needed =
      size.Spacing * (1.25 * count.Pennants + count.Feathers + count.Halves + 1.0);
  return std::max<double>(size.Shaft, needed);
}

double FeatherLean(const analysis::Wind& wind, const ViewSettings& options) {
  return wind.Dir + (FeathersOnRight(options) ? 1 : -1) * kFeatherAngle;
}

}  // namespace

Rect SymbolExtent(const analysis::Wind& wind, const ViewSettings& options) {
  const WindSymbolSize size = SizeOf(options.BarbSize);
  const Point tip =
      Along({0, 0}, wind.Dir, ShaftLength(size, CountFeathers(wind.Spd, options.Speed)));
  const Point feather = Along(tip, FeatherLean(wind, options), size.Feather);
  const double dot = options.WindDots ? size.Dot : 0;
  const auto [left, right] = std::minmax({-dot, dot, tip.X, feather.X});
  const auto [top, bottom] = std::minmax({-dot, dot, tip.Y, feather.Y});
  return {left, top, right, bottom};
}

void DrawWindSymbol(Picture& page, Point foot, const analysis::Wind& wind,
                    const ViewSettings& options, const Pen& pen) {
  if (options.Winds == WindDisplay::None) return;
  const WindSymbolSize size = SizeOf(options.BarbSize);
  const FeatherCount count = CountFeathers(wind.Spd, options.Speed);
  if (ShownSpeed(wind.Spd, options.Speed) < 0.5) {
    page.Add("calm", Circle{.Center = foot, .Radius = 0.9 * size.Spacing, .Stroke = pen});
    return;
  }
  if (options.WindDots) {
    page.Add("wind dot",
             Circle{.Center = foot, .Radius = static_cast<double>(size.Dot), .Fill = {pen.Ink}});
  }
  const double shaft = ShaftLength(size, count);
  const Point tip = Along(foot, wind.Dir, shaft);
  if (options.WindShafts) page.Add("wind shaft", Polyline{.Points = {foot, tip}, .Stroke = pen});

  const double lean = FeatherLean(wind, options);
  double at = shaft;  // distance of the next symbol from the foot
  const auto pennant = [&](double length, double width) {
    const Point outer = Along(foot, wind.Dir, at);
    const Point inner = Along(foot, wind.Dir, at - width);
    page.Add("wind pennant",
             Area{.Rings = {{outer, Along(outer, lean, length), inner}}, .Fill = {pen.Ink}});
  };
  const auto feather = [&](double length) {
    const Point root = Along(foot, wind.Dir, at);
    page.Add("wind feather", Polyline{.Points = {root, Along(root, lean, length)}, .Stroke = pen});
  };
  const bool flags = options.Winds == WindDisplay::Flags;
  for (int i = 0; i < count.Pennants; ++i, at -= 1.25 * size.Spacing) {
    pennant(size.Feather, size.Spacing);
  }
  if (count.Pennants > 0) at -= 0.15 * size.Spacing;
  for (int i = 0; i < count.Feathers; ++i, at -= size.Spacing) {
    flags ? pennant(0.7 * size.Feather, 0.8 * size.Spacing) : feather(size.Feather);
  }
  if (count.Halves > 0) {
    // A half feather alone stands a step in from the tip, so that it cannot be taken for a full
    // one.
    if (count.Pennants + count.Feathers == 0) at -= size.Spacing;
    flags ? pennant(0.4 * size.Feather, 0.8 * size.Spacing) : feather(0.5 * size.Feather);
  }
}

}  // namespace vexa::diagram
