#include "output/paint/paint.h"

#include <algorithm>
#include <cmath>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <span>
#include <vector>

#include "output/paint/drawn_pixels.h"
#include "output/paint/painter.h"
#include "picture/picture.h"

namespace vexa::paint {

struct KeptGround::Kept {
  DrawnPixels Pixels{};
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
  static std::unique_ptr<Kept> Of(const Picture& picture, double ratio, const QSizeF& target,
                                  KeptFonts& fonts);
};

std::unique_ptr<KeptGround::Kept> KeptGround::Kept::Of(const Picture& picture, double ratio,
                                                       const QSizeF& target, KeptFonts& fonts) {
  QImage image(static_cast<int>(std::ceil(target.width() * ratio)),
               static_cast<int>(std::ceil(target.height() * ratio)), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  const QColor paper = ToColor(picture.Paper());
  image.fill(paper);
  {
    QPainter fresh(&image);
    Painter(fresh, &fonts).Page(picture, QRectF(QPointF(0, 0), target), Painter::Part::Ground);
  }
  const std::span<const Item> items = picture.Ground();
  return std::make_unique<Kept>(Kept{DrawnPixels(image, paper.rgb()),
                                     ratio,
                                     target,
                                     picture.Paper(),
                                     picture.Width(),
                                     picture.Height(),
                                     {items.begin(), items.end()}});
}

KeptGround::KeptGround() : fonts_(std::make_unique<KeptFonts>()) {}
KeptGround::~KeptGround() = default;

void Paint(const Picture& picture, QPainter& painter, const QRectF& target, KeptGround* ground) {
  // A page has some ten sizes; a window that was made larger or smaller leaves those of before.
  constexpr std::size_t kMostFonts = 50;
  if (ground != nullptr && ground->fonts_->Fonts.size() > kMostFonts) ground->fonts_->Fonts.clear();
  painter.save();
  Painter on(painter, ground == nullptr ? nullptr : ground->fonts_.get());
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
    ground->kept_ = KeptGround::Kept::Of(picture, ratio, target.size(), *ground->fonts_);
  }
  const KeptGround::Kept& kept = *ground->kept_;
  painter.fillRect(target, ToColor(picture.Paper()));
  kept.Pixels.DrawOn(painter, target.topLeft());
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
