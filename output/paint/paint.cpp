#include "output/paint/paint.h"

#include <algorithm>
#include <cmath>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <span>
#include <utility>
#include <vector>

#include "output/paint/painter.h"
#include "picture/picture.h"

namespace vexa::paint {

struct KeptGround::Kept {
  QImage Image{};    // what there is besides paper
  QPointF Left{};    // its left upper corner in the target
  double Ratio = 0;  // device pixels for one of the target
  QSizeF Target{};
  Color Paper{};
  double Width = 0;
  double Height = 0;
  std::vector<Item> Items{};

  bool Is(const Picture& picture, double ratio, const QSizeF& target) const {
    return ratio == Ratio && target == Target && picture.Paper() == Paper &&
           picture.Width() == Width && picture.Height() == Height &&
           std::ranges::equal(picture.Ground(), Items);
  }
  static std::unique_ptr<Kept> Of(const Picture& picture, double ratio, const QSizeF& target);
};

namespace {

// The part of an image of paper on which something is drawn, in its pixels.
QRect DrawnPart(const QImage& image, QRgb paper) {
  QRect part;
  for (int y = 0; y < image.height(); ++y) {
    const std::span row(reinterpret_cast<const QRgb*>(image.constScanLine(y)),
                        static_cast<std::size_t>(image.width()));
    const auto isDrawn = [paper](QRgb pixel) { return pixel != paper; };
    const auto first = std::ranges::find_if(row, isDrawn);
    if (first == row.end()) continue;
    const auto last = std::find_if(row.rbegin(), row.rend(), isDrawn);
    const auto left = static_cast<int>(first - row.begin());
    const auto right = static_cast<int>(row.rend() - last) - 1;
    part |= QRect(QPoint(left, y), QPoint(right, y));
  }
  return part;
}

}  // namespace

std::unique_ptr<KeptGround::Kept> KeptGround::Kept::Of(const Picture& picture, double ratio,
                                                       const QSizeF& target) {
  QImage image(static_cast<int>(std::ceil(target.width() * ratio)),
               static_cast<int>(std::ceil(target.height() * ratio)), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  const QColor paper = ToColor(picture.Paper());
  image.fill(paper);
  {
    QPainter fresh(&image);
    Painter(fresh).Page(picture, QRectF(QPointF(0, 0), target), Painter::Part::Ground);
  }
  const QRect drawn = DrawnPart(image, paper.rgb());
  const std::span<const Item> items = picture.Ground();
  return std::make_unique<Kept>(Kept{drawn.isEmpty() ? QImage() : image.copy(drawn),
                                     QPointF(drawn.topLeft()) / ratio,
                                     ratio,
                                     target,
                                     picture.Paper(),
                                     picture.Width(),
                                     picture.Height(),
                                     {items.begin(), items.end()}});
}

KeptGround::KeptGround() = default;
KeptGround::~KeptGround() = default;

void Paint(const Picture& picture, QPainter& painter, const QRectF& target, KeptGround* ground) {
  painter.save();
  Painter on(painter);
  const QTransform& device = painter.deviceTransform();
  // Kept pixels stand where the painted ones would only without turning, at whole pixels.
  const auto isWhole = [](double place) { return place == std::floor(place); };
  const bool keeps = ground != nullptr && on.IsRaster() && device.type() <= QTransform::TxScale &&
                     device.m11() == device.m22() && device.m11() > 0 &&
                     isWhole(device.dx() + target.left() * device.m11()) &&
                     isWhole(device.dy() + target.top() * device.m11());
  if (!keeps) {
    on.Page(picture, target);
    painter.restore();
    return;
  }
  const double ratio = device.m11();
  if (ground->kept_ == nullptr || !ground->kept_->Is(picture, ratio, target.size())) {
    ground->kept_ = KeptGround::Kept::Of(picture, ratio, target.size());
  }
  const KeptGround::Kept& kept = *ground->kept_;
  painter.fillRect(target, ToColor(picture.Paper()));
  if (!kept.Image.isNull()) painter.drawImage(target.topLeft() + kept.Left, kept.Image);
  on.Page(picture, target, Painter::Part::Rest);
  painter.restore();
}

QImage ToImage(const Picture& picture, int widthPx, int heightPx) {
  QImage image(widthPx, heightPx, QImage::Format_RGB32);
  if (image.isNull()) return image;
  image.fill(ToColor(picture.Paper()));
  QPainter painter(&image);
  Paint(picture, painter, QRectF(0, 0, widthPx, heightPx));
  return image;
}

}  // namespace vexa::paint
