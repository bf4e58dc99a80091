// A picture that can be dragged and answers keys: tells its window where on the page the button
// went down, where the pointer is meanwhile and where it was let go.
#pragma once

#include <functional>
#include <optional>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "app/diagram_view.h"

namespace vexa {

class DragView : public DiagramView {
 public:
  using DiagramView::DiagramView;

  /// Takes hold of what is under the pointer; false when there is nothing to drag.
  std::function<bool(Point page, QPointF widget)> OnPress{};
  std::function<void(std::optional<Point> page, QPointF widget)> OnDrag{};
  std::function<void()> OnRelease{};
  /// The wheel was turned over a place by so many notches, away from the user positive.
  std::function<void(Point page, double notches)> OnWheel{};
  /// True when the key was used.
  std::function<bool(int key)> OnKey{};

  /// The keys that were held when the button went down.
  Qt::KeyboardModifiers PressedWith() const { return pressedWith_; }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    const std::optional<Point> at = PageAt(event->position());
    pressedWith_ = event->modifiers();
    dragging_ =
        event->button() == Qt::LeftButton && at && OnPress && OnPress(*at, event->position());
    if (!dragging_) DiagramView::mousePressEvent(event);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    DiagramView::mouseMoveEvent(event);
    if (dragging_ && OnDrag) OnDrag(PageAt(event->position()), event->position());
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (!dragging_) return DiagramView::mouseReleaseEvent(event);
    dragging_ = false;
    if (OnRelease) OnRelease();
  }
  void wheelEvent(QWheelEvent* event) override {
    constexpr double kNotch = 120;  // of the angle's eighths of a degree
    const std::optional<Point> at = PageAt(event->position());
    if (!OnWheel || !at) return DiagramView::wheelEvent(event);
    OnWheel(*at, event->angleDelta().y() / kNotch);
    event->accept();
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (!OnKey || !OnKey(event->key())) DiagramView::keyPressEvent(event);
  }

 private:
  bool dragging_ = false;
  Qt::KeyboardModifiers pressedWith_{};
};

}  // namespace vexa
