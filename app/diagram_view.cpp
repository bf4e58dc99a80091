#include "app/diagram_view.h"

#include <algorithm>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QResizeEvent>

#include "app/widget_surface.h"
#include "output/paint/paint.h"
#include "picture/stroke.h"

namespace vexa {
namespace {

constexpr double kCursorStep = 15;  // drawing units, a pixel of the smallest page
constexpr double kCursorStride = 150;

}  // namespace

DiagramView::DiagramView(QWidget* parent)
    : QWidget(parent), ground_(std::make_unique<paint::KeptGround>()) {
  setAccessibleName(QStringLiteral("Sounding diagram"));
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setCursor(Qt::CrossCursor);
}

DiagramView::~DiagramView() = default;

void DiagramView::Show(const Picture* picture) {
  picture_ = picture;
  painted_ = false;
  update();
}

void DiagramView::ShowOver(const Picture* over) {
  over_ = over;
  update();
}

double DiagramView::UnitsPerPixel() const {
  if (picture_ == nullptr) return 0;
  const PageFit fit = FitPage(picture_->Width(), picture_->Height(),
                              {0, 0, static_cast<double>(width()), static_cast<double>(height())});
  return fit.Scale > 0 ? 1 / fit.Scale : 0;
}

std::optional<Point> DiagramView::PageAt(const QPointF& position) const {
  if (picture_ == nullptr) return std::nullopt;
  const PageFit fit = FitPage(picture_->Width(), picture_->Height(),
                              {0, 0, static_cast<double>(width()), static_cast<double>(height())});
  if (fit.Scale <= 0) return std::nullopt;
  const Point at{(position.x() - fit.Left) / fit.Scale, (position.y() - fit.Top) / fit.Scale};
  if (!Rect{0, 0, picture_->Width(), picture_->Height()}.Contains(at)) return std::nullopt;
  return at;
}

QPointF DiagramView::WidgetAt(Point at) const {
  if (picture_ == nullptr) return {};
  const PageFit fit = FitPage(picture_->Width(), picture_->Height(),
                              {0, 0, static_cast<double>(width()), static_cast<double>(height())});
  return {fit.Left + at.X * fit.Scale, fit.Top + at.Y * fit.Scale};
}

Surface DiagramView::OwnSurface() const {
  return SurfaceOf(*this);
}

void DiagramView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (resized_) resized_();
}

void DiagramView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (picture_ == nullptr) {
    painter.fillRect(rect(), palette().window());
    return;
  }
  const Color paper = picture_->Paper();
  const PageFit page = FitPage(picture_->Width(), picture_->Height(),
                               {0, 0, static_cast<double>(width()), static_cast<double>(height())});
  if (page.Left > 0 || page.Top > 0) {  // while a page for the size of before is still shown
    painter.fillRect(rect(), QColor(paper.Red, paper.Green, paper.Blue));
  }
  paint::Paint(*picture_, painter, rect(), ground_.get());
  if (over_ != nullptr) paint::Paint(*over_, painter, rect());
  if (cursor_) {
    const PageFit fit =
        FitPage(picture_->Width(), picture_->Height(),
                {0, 0, static_cast<double>(width()), static_cast<double>(height())});
    const QPointF at(fit.Left + cursor_->X * fit.Scale, fit.Top + cursor_->Y * fit.Scale);
    constexpr double kArm = 9;
    painter.setPen(QPen(QColor(255 - paper.Red, 255 - paper.Green, 255 - paper.Blue), 1));
    painter.drawLine(at - QPointF(kArm, 0), at + QPointF(kArm, 0));
    painter.drawLine(at - QPointF(0, kArm), at + QPointF(0, kArm));
  }
  painter.end();
  if (!painted_) {
    painted_ = true;
    if (whenPainted_) whenPainted_();
  }
}

void DiagramView::Tell(const std::optional<Point>& at) {
  told_ = at;
  if (pointed_) pointed_(at);
}

void DiagramView::TellAgain() {
  Tell(told_);
}

void DiagramView::mouseMoveEvent(QMouseEvent* event) {
  if (cursor_) {
    cursor_.reset();
    update();
  }
  Tell(PageAt(event->position()));
}

void DiagramView::leaveEvent(QEvent*) {
  if (!cursor_) Tell(std::nullopt);
}

void DiagramView::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  if (!cursor_) return;
  cursor_.reset();
  Tell(std::nullopt);
  update();
}

void DiagramView::MoveCursor(double dx, double dy) {
  if (picture_ == nullptr) return;
  Point at = cursor_.value_or(Point{picture_->Width() / 2, picture_->Height() / 2});
  if (cursor_) {
    at.X = std::clamp(at.X + dx, 0.0, picture_->Width());
    at.Y = std::clamp(at.Y + dy, 0.0, picture_->Height());
  }
  cursor_ = at;
  Tell(cursor_);
  update();
}

void DiagramView::keyPressEvent(QKeyEvent* event) {
  const double step = event->modifiers() & Qt::ShiftModifier ? kCursorStride : kCursorStep;
  switch (event->key()) {
    case Qt::Key_Left:
      MoveCursor(-step, 0);
      break;
    case Qt::Key_Right:
      MoveCursor(step, 0);
      break;
    case Qt::Key_Up:
      MoveCursor(0, -step);
      break;
    case Qt::Key_Down:
      MoveCursor(0, step);
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace vexa
