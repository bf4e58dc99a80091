#include "diagram/plot_state.h"

#include <cmath>
#include <cstddef>
#include <utility>

#include "analysis/index_table.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "picture/clip.h"

namespace vexa::diagram {

void DrawText(Picture& page, std::string_view tag, Point at, std::string text, Color ink,
              double size, AnchorX across, AnchorY down) {
  page.Add(tag, Label{.At = at,
                      .Text = std::move(text),
                      .Across = across,
                      .Down = down,
                      .Size = size,
                      .Ink = ink});
}

void DrawTextOver(Plot& plot, std::string_view tag, Point at, std::string text, Color ink,
                  double size, AnchorX across, AnchorY down) {
  plot.Page.Add(tag, Label{.At = at,
                           .Text = std::move(text),
                           .Across = across,
                           .Down = down,
                           .Size = size,
                           .Ink = ink,
                           .Halo = plot.Inks.Paper});
}

void DrawSegment(Picture& page, std::string_view tag, Point from, Point to, const Pen& pen) {
  page.Add(tag, Polyline{.Points = {from, to}, .Stroke = pen});
}

void DrawInFrame(Plot& plot, std::string_view tag, const std::vector<Point>& points,
                 const Pen& pen) {
  for (std::vector<Point>& piece : ClipPolyline(points, plot.At.Frame())) {
    plot.Page.Add(tag, Polyline{.Points = std::move(piece), .Stroke = pen});
  }
}

std::vector<Point> Isobar(const DiagramMapping& at, double press) {
  const Rect& frame = at.Frame();
  if (at.Type() != DiagramType::Tephigram) {
    const double y = at.YOf(press);
    return {{frame.Left, y}, {frame.Right, y}};
  }
  std::vector<Point> points;
  const double span = at.TempMax() - at.TempMin();
  for (double temp = at.TempMin() - 1.5 * span; temp <= at.TempMax() + span;
       temp += at.IsZoomed() ? 1 : 4) {
    if (temp > -kKelvinOffset + 40) points.push_back(at.ToPoint(temp, press));
  }
  return points;
}

namespace {

std::optional<double> EdgeY(const DiagramMapping& at, double press, double x) {
  const Rect& frame = at.Frame();
  const double y = at.IsobarY(press, x);
  if (y < frame.Top - 1 || y > frame.Bottom + 1) return std::nullopt;
  return y;
}

}  // namespace

std::optional<double> LeftEdgeY(const DiagramMapping& at, double press) {
  return EdgeY(at, press, at.Frame().Left);
}

std::optional<double> RightEdgeY(const DiagramMapping& at, double press) {
  return EdgeY(at, press, at.Frame().Right);
}

namespace {

// How far points lie from the straight line between two others.
class OffLine {
 public:
  OffLine(Point from, Point to) : from_(from), dx_(to.X - from.X), dy_(to.Y - from.Y) {
    length_ = std::sqrt(dx_ * dx_ + dy_ * dy_);
  }
  double operator()(Point at) const {
    const double x = at.X - from_.X;
    const double y = at.Y - from_.Y;
    if (length_ == 0) return std::sqrt(x * x + y * y);
    return std::fabs(x * dy_ - y * dx_) / length_;
  }

 private:
  Point from_;
  double dx_;
  double dy_;
  double length_ = 0;
};

}  // namespace

// After Douglas and Peucker (1973): of a part, the point farthest from its straight line stays.
std::vector<Point> Thinned(std::vector<Point> points) {
  constexpr double kNear = 2;  // drawing units
  if (points.size() < 3) return points;
  std::vector<bool> kept(points.size(), false);
  kept.front() = kept.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> parts = {{0, points.size() - 1}};
  while (!parts.empty()) {
    const auto [first, last] = parts.back();
    parts.pop_back();
    std::size_t farthest = first;
    double most = kNear;
    const OffLine offLine(points[first], points[last]);
    for (std::size_t i = first + 1; i < last; ++i) {
      const double off = offLine(points[i]);
      if (off <= most) continue;
      most = off;
      farthest = i;
    }
    if (farthest == first) continue;
    kept[farthest] = true;
    parts.emplace_back(first, farthest);
    parts.emplace_back(farthest, last);
  }
  std::size_t count = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (kept[i]) points[count++] = points[i];
  }
  points.resize(count);
  return points;
}

double ShownHeight(const Plot& plot, double height) {
  return plot.Set().Heights == HeightMode::Agl ? height - plot.Sounding().ElevM : height;
}

std::string ShownHeightText(const Plot& plot, double height) {
  return HeightText(ShownHeight(plot, height), plot.Units.Height) +
         (plot.Set().Heights == HeightMode::Agl ? " AGL" : "");
}

std::string PressureUnit(const Plot& plot) {
  return " " + std::string(analysis::PressureWord(plot.Set().Pressure));
}

std::string HeightText(double height, LengthUnits units) {
  return LengthText(height, units);
}

}  // namespace vexa::diagram
