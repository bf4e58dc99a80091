#include "hodograph/rings.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "picture/clip.h"

namespace vexa::hodograph {
namespace {

constexpr int kRingPoints = 180;
constexpr double kAlmost = 1e-6;

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

// The half axis that carries the labels: long, and not crossed by the trace.
Point LabelledWay(const HodographMapping& at, const std::vector<Point>& trace) {
  constexpr double kNear = 220;
  const std::pair<double, Point> ways[] = {{at.Frame.Right - at.Center.X, {1, 0}},
                                           {at.Center.X - at.Frame.Left, {-1, 0}},
                                           {at.Frame.Bottom - at.Center.Y, {0, 1}},
                                           {at.Center.Y - at.Frame.Top, {0, -1}}};
  const auto worth = [&](const std::pair<double, Point>& candidate) {
    const auto& [room, way] = candidate;
    const auto crossed = std::ranges::count_if(trace, [&, to = way](const Point& place) {
      const Point off{place.X - at.Center.X, place.Y - at.Center.Y};
      return off.X * to.X + off.Y * to.Y > 0 && std::fabs(off.X * to.Y - off.Y * to.X) < kNear;
    });
    return std::min(room, at.Frame.Width() / 2) - kNear * static_cast<double>(crossed);
  };
  return std::ranges::max_element(ways, {}, worth)->second;
}

double FarthestCorner(const HodographMapping& at) {
  const double across = std::max(at.Center.X - at.Frame.Left, at.Frame.Right - at.Center.X);
  const double down = std::max(at.Center.Y - at.Frame.Top, at.Frame.Bottom - at.Center.Y);
  return std::hypot(across, down);
}

}  // namespace

double Shown(double knots, SpeedUnits units) {
  return units == SpeedUnits::Knots ? knots : knots * kKnotToMs;
}

double KnotsOf(double shown, SpeedUnits units) {
  return units == SpeedUnits::Knots ? shown : shown / kKnotToMs;
}

double RingStep(double speed) {
  double step = 1;
  for (const double factor : {2.0, 2.5, 2.0, 2.0, 2.5, 2.0}) {  // 2, 5, 10, 20, 50, 100
    if (5.5 * step >= speed) break;
    step *= factor;
  }
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
  const Point way = LabelledWay(at, trace);
  std::vector<double> values;
  for (int i = 1; i * rings.Step < farthest + kAlmost; ++i) values.push_back(i * rings.Step);
  // A fixed limit between two steps has its own ring.
  if (rings.Outer > 0 && (values.empty() || values.back() < rings.Outer - kAlmost)) {
    values.push_back(rings.Outer);
  }
  for (const double value : values) {
    const double radius = value * perShown;
    const bool outer = rings.Outer > 0 && value > rings.Outer - kAlmost;
    DrawClipped(page, "ring", Ring(at.Center, radius), frame, outer ? inks.OuterRing : inks.Ring);
    if (!rings.Labels) continue;
    const std::string text = Mask(value, "##0");
    const Point ring{at.Center.X + way.X * radius, at.Center.Y + way.Y * radius};
    const double left = ring.X - RingLabelShift(value) * kDisplayUnit;
    const Rect place{left, ring.Y - kRingText / 2, left + TextWidth(text.size(), kRingText),
                     ring.Y + kRingText / 2};
    if (!room.IsFree(place)) continue;
    room.Take(place);
    page.Add("ring label", Label{.At = {left, ring.Y},
                                 .Text = text,
                                 .Size = kRingText,
                                 .Ink = inks.Faint,
                                 .Halo = inks.Paper});
  }
}

}  // namespace vexa::hodograph
