#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <QPainter>
#include <QVarLengthArray>
#include <utility>

#include "core/numbers.h"
#include "output/paint/painter.h"
#include "picture/clip.h"
#include "picture/stroke.h"
#include "picture/thinning.h"

namespace vexa::paint {
namespace {

constexpr double kThinnedPx = 0.35;  // how far a thinned line may lie off the whole one

}  // namespace

// Points that a screen cannot show are left out.
QPolygonF Painter::ToPolygon(const std::vector<Point>& points) const {
  std::vector<Point> kept;
  kept.reserve(points.size());
  std::ranges::copy_if(points, std::back_inserter(kept), IsFinite);
  if (snaps_) kept = Thinned(std::move(kept), kThinnedPx / (page_.Scale * toDevice_));
  QPolygonF polygon;
  polygon.reserve(static_cast<qsizetype>(kept.size()));
  for (const Point& point : kept) polygon.append(At(point));
  return polygon;
}

QPointF Painter::FromDevice(QPointF place) const {
  return {(place.x() - device_.dx()) / device_.m11(), (place.y() - device_.dy()) / device_.m22()};
}

// Lines of whole pixels are rectangles. The places are device pixels.
void Painter::FillAlongGrid(std::span<const QPointF> places, int width, QColor ink) {
  const QPointF half(width / 2.0, width / 2.0);
  Antialias(false);
  for (std::size_t i = 1; i < places.size(); ++i) {
    const QRectF span = QRectF(places[i - 1], places[i]).normalized();
    painter_.fillRect(
        QRectF(FromDevice(span.topLeft() - half), FromDevice(span.bottomRight() + half)), ink);
  }
}

// Dashed or translucent, where pieces put side by side would show.
void Painter::StrokeAlongGrid(std::span<const QPointF> places, int width, const Pen& stroke) {
  QVarLengthArray<QPointF, 5> points;
  for (const QPointF& place : places) points.append(FromDevice(place));
  QPen pen = ToPen(stroke);
  const double before = pen.widthF();
  pen.setWidthF(width / toDevice_);
  if (pen.style() == Qt::CustomDashLine) {  // lengths stay, in units of the new width
    QList<qreal> pattern = pen.dashPattern();
    for (qreal& length : pattern) length *= before / pen.widthF();
    pen.setDashPattern(pattern);
  } else {
    pen.setCapStyle(Qt::SquareCap);
    pen.setJoinStyle(Qt::MiterJoin);
  }
  pen_.reset();
  painter_.setPen(pen);
  painter_.drawPolyline(points.data(), static_cast<int>(points.size()));
}

// A line along the pixel grid would be smeared over two rows; it moves onto one. Its width, in
// device pixels, becomes whole for the purpose.
bool Painter::DrawAlongGrid(const Polyline& line) {
  if (!snaps_ || line.Points.size() < 2 || line.Points.size() > 5) return false;
  for (std::size_t i = 1; i < line.Points.size(); ++i) {
    const Point& a = line.Points[i - 1];
    const Point& b = line.Points[i];
    if ((a.X == b.X) == (a.Y == b.Y)) return false;
  }
  const int width = std::max(1, ToWhole(DrawnWidth(line.Stroke) * toDevice_));
  const double centre = width % 2 == 0 ? 0 : 0.5;
  const auto snap = [centre](double place) {
    return std::floor(place + (centre == 0 ? 0.5 : 0)) + centre;
  };
  QVarLengthArray<QPointF, 5> places;
  for (const Point& at : line.Points) {
    const QPointF place = device_.map(At(at));
    places.append({snap(place.x()), snap(place.y())});
  }
  if (line.Stroke.Style == LineStyle::Solid && line.Stroke.Ink.Alpha == 255) {
    FillAlongGrid(places, width, ToColor(line.Stroke.Ink));
    return true;
  }
  StrokeAlongGrid(places, width, line.Stroke);
  return true;
}

// An outline with joins costs a screen four times as much as its segments one by one. Each is
// longer by what closes the gap on the outer side of a bend; sharp bends get a disc. The ends of
// the line reach `over` further.
void Painter::AddSegments(const QPolygonF& points, double width, double over, Strokes& into) const {
  constexpr double kSharp = 1;           // tangent of half the bend
  const double seam = 0.75 / toDevice_;  // two half covered pixels would let the paper through
  bool isFirst = true;
  QPointF before;
  for (qsizetype i = 1; i < points.size(); ++i) {
    const QPointF way = points[i] - points[i - 1];
    const double length = std::sqrt(QPointF::dotProduct(way, way));
    if (!(length > 0)) continue;
    const QPointF along = way / length;
    double more = over;
    if (!isFirst) {
      // tan(a/2) = sin a / (1 + cos a)
      const double sine = std::abs(before.x() * along.y() - before.y() * along.x());
      const double bend = sine / std::max(1 + QPointF::dotProduct(before, along), 1e-9);
      if (bend > kSharp) into.Corners.push_back(points[i - 1]);
      more = bend > kSharp ? 0 : std::max(seam, bend * width / 2);
      into.Lines.back().setP2(into.Lines.back().p2() + more * before);
    }
    into.Lines.append(QLineF(points[i - 1] - more * along, points[i]));
    before = along;
    isFirst = false;
  }
  if (!isFirst) into.Lines.back().setP2(into.Lines.back().p2() + over * before);
}

void Painter::PutStrokes(const Strokes& strokes, double width) {
  QPen pen = painter_.pen();
  pen.setStyle(Qt::SolidLine);
  pen.setCapStyle(Qt::FlatCap);
  painter_.setPen(pen);
  painter_.drawLines(strokes.Lines);
  if (!strokes.Corners.empty()) {
    const QColor ink = pen.color();
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(ink);
    for (const QPointF& at : strokes.Corners) painter_.drawEllipse(at, width / 2, width / 2);
    brush_.reset();
  }
  pen_.reset();
}

// A line that leads far off the page has more dashes than can be counted.
bool Painter::StaysNear(const std::vector<Point>& line) const {
  return std::ranges::all_of(line, [this](Point at) {
    return IsFinite(at) && std::abs(at.X) < 3 * page_.Page.X && std::abs(at.Y) < 3 * page_.Page.Y;
  });
}

void Painter::Draw(const Polyline& line) {
  if (line.Stroke.Width <= 0 || line.Stroke.Ink.Alpha == 0) return;
  Antialias(true);
  if (DrawAlongGrid(line)) return;
  SetPen(line.Stroke);
  const double width = DrawnWidth(line.Stroke);
  const bool isSolid = line.Stroke.Style == LineStyle::Solid;
  const bool piecewise = snaps_ && line.Stroke.Ink.Alpha == 255 &&
                         width * toDevice_ >= kAboutOnePixel && (isSolid || StaysNear(line.Points));
  if (!piecewise) {
    const QPolygonF polygon = ToPolygon(line.Points);
    if (polygon.size() > 1) painter_.drawPolyline(polygon);
    return;
  }
  Strokes strokes;
  if (isSolid) {
    AddSegments(ToPolygon(line.Points), width, width / 2, strokes);
  } else {
    const DashPattern pattern(line.Stroke.Style, width / page_.Scale);
    for (const std::vector<Point>& dash : Dashes(line.Points, pattern)) {
      AddSegments(ToPolygon(dash), width, 0, strokes);
    }
  }
  if (!strokes.Lines.isEmpty()) PutStrokes(strokes, width);
}

}  // namespace vexa::paint
