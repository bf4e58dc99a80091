#include "output/paint/painter.h"

#include <algorithm>
#include <cmath>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <utility>
#include <variant>

#include "output/paint/paint.h"
#include "picture/clip.h"
#include "picture/hatch.h"
#include "picture/stroke.h"

namespace vexa::paint {
namespace {

constexpr double kHairlinePt = 0.24;  // on paper; a screen's hairline is one of its pixels

}  // namespace

Painter::Painter(QPainter& painter, KeptFonts* fonts)
    : painter_(painter), fonts_(fonts == nullptr ? own_ : *fonts), keepsFonts_(fonts != nullptr) {
  const QTransform& device = painter.deviceTransform();
  const QPaintEngine* engine = painter.paintEngine();
  isRaster_ = engine != nullptr && engine->type() == QPaintEngine::Raster;
  snaps_ =
      isRaster_ && device.type() <= QTransform::TxScale && device.m11() > 0 && device.m22() > 0;
  device_ = device;
  toDevice_ = std::hypot(device.m11(), device.m12());
  dpi_ = std::max(1, painter.device()->logicalDpiY());
  if (!(toDevice_ > 0)) toDevice_ = 1;
  // Logical units are inches by the logical resolution, device pixels by the transform.
  hairline_ = std::max(1 / toDevice_, kHairlinePt / kPointsPerInch * dpi_);
}

void Painter::Page(const Picture& picture, const QRectF& target, Part part) {
  const PageFit fit = FitPage(picture.Width(), picture.Height(),
                              {target.left(), target.top(), target.right(), target.bottom()});
  if (fit.Scale <= 0) return;
  const Placed outer =
      std::exchange(page_, {fit.Scale, fit.Left, fit.Top, {picture.Width(), picture.Height()}});
  const QRectF page(At({0, 0}), QSizeF(picture.Width() * fit.Scale, picture.Height() * fit.Scale));
  painter_.save();
  painter_.setClipRect(page, Qt::IntersectClip);
  if (part != Part::Rest) painter_.fillRect(page, ToColor(picture.Paper()));
  ForgetState();
  const std::span<const Item> ground = picture.Ground();
  std::span<const Item> items = picture.Items();
  if (part == Part::Ground) items = ground;
  if (part == Part::Rest) items = items.subspan(ground.size());
  for (const Item& item : items) {
    std::visit([this](const auto& shape) { Draw(shape); }, item.Shape);
  }
  painter_.restore();
  ForgetState();
  page_ = outer;
}

void Painter::ForgetState() {
  pen_.reset();
  brush_.reset();
  font_ = nullptr;
}

// Pens and brushes are set only where they differ from the item's before.
bool Painter::SetPen(const Pen& pen) {
  const bool draws = pen.Width > 0 && pen.Ink.Alpha != 0;
  const Pen wanted = draws ? pen : Pen{};
  if (pen_ != wanted) {
    pen_ = wanted;
    painter_.setPen(draws ? ToPen(pen) : QPen(Qt::NoPen));
  }
  return draws;
}

// On a screen a line of about a pixel is a line of one: those are drawn ten times faster.
double Painter::DrawnWidth(const Pen& pen) const {
  const double width = std::max(pen.Width * page_.Scale, hairline_);
  return snaps_ && width * toDevice_ < kAboutOnePixel ? 1 / toDevice_ : width;
}

QPen Painter::ToPen(const Pen& pen) const {
  const double width = DrawnWidth(pen);
  QPen made(ToColor(pen.Ink), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  const DashPattern dashes(pen.Style, width / page_.Scale);
  if (!dashes.Lengths().empty()) {
    QList<qreal> pattern;
    for (const double length : dashes.Lengths()) pattern.append(length * page_.Scale / width);
    made.setDashPattern(pattern);
    made.setCapStyle(Qt::FlatCap);
  } else if (width * toDevice_ < kAboutOnePixel) {
    made.setCapStyle(Qt::FlatCap);  // too thin to show its ends
    made.setJoinStyle(Qt::BevelJoin);
  }
  return made;
}

void Painter::SetBrush(Color ink) {
  if (brush_ == ink) return;
  brush_ = ink;
  if (ink.Alpha == 0) {
    painter_.setBrush(Qt::NoBrush);
  } else {
    painter_.setBrush(ToColor(ink));
  }
}

void Painter::Antialias(bool on) {
  if (painter_.testRenderHint(QPainter::Antialiasing) != on) {
    painter_.setRenderHint(QPainter::Antialiasing, on);
  }
}

void Painter::Draw(const Area& area) {
  const bool isPlain = area.Fill.Style == FillStyle::Plain;
  const Color fill = isPlain ? area.Fill.Ink : Color{0, 0, 0, 0};
  const bool strokes = SetPen(area.Stroke);
  Antialias(true);
  if (strokes || fill.Alpha != 0) {
    SetBrush(fill);
    if (area.Rings.size() == 1) {
      painter_.drawPolygon(ToPolygon(area.Rings.front()), Qt::OddEvenFill);
    } else {
      QPainterPath path;
      path.setFillRule(Qt::OddEvenFill);
      for (const std::vector<Point>& ring : area.Rings) {
        path.addPolygon(ToPolygon(ring));
        path.closeSubpath();
      }
      painter_.drawPath(path);
    }
  }
  if (!isPlain && area.Fill.Ink.Alpha != 0) Hatch(area);
}

void Painter::Hatch(const Area& area) {
  const std::vector<HatchLine> lines = HatchLines(area.Rings, area.Fill.Style);
  QList<QLineF> drawn;
  drawn.reserve(static_cast<qsizetype>(lines.size()));
  for (const HatchLine& line : lines) drawn.append(QLineF(At(line.From), At(line.To)));
  if (SetPen({area.Fill.Ink, kHatchWidth, LineStyle::Solid})) painter_.drawLines(drawn);
}

void Painter::Draw(const Circle& circle) {
  if (!IsFinite(circle.Center) || !(circle.Radius > 0) || !std::isfinite(circle.Radius)) return;
  const bool strokes = SetPen(circle.Stroke);
  if (!strokes && circle.Fill.Ink.Alpha == 0) return;
  SetBrush(circle.Fill.Ink);
  Antialias(true);
  const double radius = circle.Radius * page_.Scale;
  painter_.drawEllipse(At(circle.Center), radius, radius);
}

void Painter::Draw(const Inset& inset) {
  if (inset.Content.Get() == nullptr) return;
  Page(*inset.Content.Get(), QRectF(At({inset.Place.Left, inset.Place.Top}),
                                    At({inset.Place.Right, inset.Place.Bottom})));
}

}  // namespace vexa::paint
