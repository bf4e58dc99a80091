#include "hodograph/rings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "picture/clip.h"
#include "picture/text_width.h"

namespace vexa::hodograph {
namespace {

constexpr int kRingPoints = 180;
constexpr double kAlmost = 1e-6;
constexpr double kRingGap = 4 * kUnitsPerPixel;  // around a label

std::vector<Point> Ring(Point center, double radius) {
  std::vector<Point> points;
  for (int i = 0; i <= kRingPoints; ++i) {
    const double angle = Radians(360.0 * i / kRingPoints);
    points.push_back({center.X + radius * std::sin(angle), center.Y - radius * std::cos(angle)});
  }
  return points;
}

void DrawClipped(Picture& page, std::string_view tag, const std::vector<Point>& points,
                 const Rect& frame, const Pen& pen) {
  for (std::vector<Point>& piece : ClipPolyline(points, frame)) {
    page.Add(tag, Polyline{.Points = std::move(piece), .Stroke = pen});
  }
}

// The half axes for the labels, the best first: long, and not crossed by the trace.
std::array<Point, 4> LabelledWays(const HodographMapping& at, const std::vector<Point>& trace) {
  constexpr double kNear = 220;
  const auto room = [&](Point way) {
    if (way.X != 0) return way.X > 0 ? at.Frame.Right - at.Center.X : at.Center.X - at.Frame.Left;
    return way.Y > 0 ? at.Frame.Bottom - at.Center.Y : at.Center.Y - at.Frame.Top;
  };
  const auto worth = [&](Point way) {
    const auto crossed = std::ranges::count_if(trace, [&](const Point& place) {
      const Point off{place.X - at.Center.X, place.Y - at.Center.Y};
      return off.X * way.X + off.Y * way.Y > 0 && std::fabs(off.X * way.Y - off.Y * way.X) < kNear;
    });
    return std::min(room(way), at.Frame.Width() / 2) - kNear * static_cast<double>(crossed);
  };
  std::array<Point, 4> ways = {{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
  std::ranges::stable_sort(ways, std::greater<>(), worth);
  return ways;
}

// The same for a single label: aslant between the axes, of which none then runs through it.
std::array<Point, 4> AslantWays(const HodographMapping& at, const std::vector<Point>& trace) {
  const double part = std::sqrt(0.5);
  std::array<Point, 4> ways = {{{part, part}, {-part, part}, {-part, -part}, {part, -part}}};
  const auto nearTrace = [&](Point way) {
    return std::ranges::count_if(trace, [&](const Point& place) {
      return (place.X - at.Center.X) * way.X > 0 && (place.Y - at.Center.Y) * way.Y > 0;
    });
  };
  std::ranges::stable_sort(ways, {}, nearTrace);
  return ways;
}

// Where a ring's label begins: on the best half axis that the ring still crosses, off the trace;
// over the trace on the best of all only.
std::optional<Point> LabelPlace(const HodographMapping& at, std::span<const Point> ways,
                                double shift, double radius, double width, LabelRoom& room) {
  for (const bool overTrace : {false, true}) {
    for (const Point& way : ways) {
      const Point ring{at.Center.X + way.X * radius, at.Center.Y + way.Y * radius};
      const double left = ring.X - shift;
      const Rect place{left - kRingGap, ring.Y - kRingText / 2, left + width + kRingGap / 3,
                       ring.Y + kRingText / 2};
      const bool isLegible = room.IsOffLines(place) || (overTrace && &way == ways.data());
      if (!room.IsFree(place) || !isLegible) continue;
      room.Take(place);
      return Point{left, ring.Y};
    }
  }
  return std::nullopt;
}

double FarthestCorner(const HodographMapping& at) {
  const double across = std::max(at.Center.X - at.Frame.Left, at.Frame.Right - at.Center.X);
  const double down = std::max(at.Center.Y - at.Frame.Top, at.Frame.Bottom - at.Center.Y);
  return std::hypot(across, down);
}

}  // namespace

double KnotsOf(double shown, SpeedUnits units) {
  return units == SpeedUnits::Knots ? shown : shown / kKnotToMs;
}

double RingStep(double speed) {
  constexpr std::array<double, 3> kFactors = {2, 2.5, 2};  // 2, 5, 10, 20, 50, 100...
  double step = 1;
  for (std::size_t i = 0; 5.5 * step < speed; ++i) step *= kFactors[i % kFactors.size()];
  return step;
}

double RingLabelShift(double value) {
  return value >= 100 ? 65 : value >= 10 ? 45 : 25;
}

void DrawRings(Picture& page, const HodographMapping& at, const Rings& rings, const Inks& inks,
               const std::vector<Point>& trace, LabelRoom& room) {
  const Rect& frame = at.Frame;
  DrawClipped(page, "axis", {{frame.Left, at.Center.Y}, {frame.Right, at.Center.Y}}, frame,
              inks.Axis);
  DrawClipped(page, "axis", {{at.Center.X, frame.Top}, {at.Center.X, frame.Bottom}}, frame,
              inks.Axis);
  const double perShown = at.Scale * KnotsOf(1, rings.Units);
  const double farthest = rings.Outer > 0 ? rings.Outer : FarthestCorner(at) / perShown;
  const std::array<Point, 4> ways =
      rings.LabelOnce ? AslantWays(at, trace) : LabelledWays(at, trace);
  std::vector<double> values;
  for (int i = 1; i * rings.Step < farthest + kAlmost; ++i) values.push_back(i * rings.Step);
  // A fixed limit between two steps has its own ring.
  if (rings.Outer > 0 && (values.empty() || values.back() < rings.Outer - kAlmost)) {
    values.push_back(rings.Outer);
  }
  for (const double value : values) {
    const bool outer = rings.Outer > 0 && value > rings.Outer - kAlmost;
    DrawClipped(page, "ring", Ring(at.Center, value * perShown), frame,
                outer ? inks.OuterRing : inks.Ring);
  }
  // A single label goes to the second ring: the innermost stands in the thick of the winds.
  if (rings.LabelOnce && values.size() > 1) std::swap(values[0], values[1]);
  for (const double value : values) {
    std::string text = Mask(value, "##0");
    if (rings.LabelOnce) text += rings.Units == SpeedUnits::Knots ? " kts" : " m/s";
    const double width = TextWidth(text, kRingText);
    const double shift = rings.LabelOnce ? width / 2 : RingLabelShift(value) * kDisplayUnit;
    const std::optional<Point> place = LabelPlace(at, ways, shift, value * perShown, width, room);
    if (!place) continue;
    page.Add(
        "ring label",
        Label{
            .At = *place, .Text = text, .Size = kRingText, .Ink = inks.Faint, .Halo = inks.Paper});
    if (rings.LabelOnce) break;
  }
}

}  // namespace vexa::hodograph
