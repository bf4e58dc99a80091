// Shows a finished picture at any size, in its own proportions, and tells where on its page the
// pointer is. The arrow keys move a cursor of their own over it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QPointF>
#include <QWidget>
#include <utility>

#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa {

namespace paint {
class KeptGround;
}

class DiagramView : public QWidget {
 public:
  explicit DiagramView(QWidget* parent = nullptr);
  ~DiagramView() override;

  /// The picture to show, or null; it must stay until the next one is set.
  void Show(const Picture* picture);
  /// A picture of the same page over it, or null; it must stay as well.
  void ShowOver(const Picture* over);
  /// Is told the pointer's place on the page, or nothing when it leaves the picture.
  /// Where the pointer or the cursor of the keys stands on the page.
  const std::optional<Point>& Pointed() const { return told_; }
  /// What the pointer rests on may have changed with the picture.
  void TellAgain();
  void OnPointer(std::function<void(std::optional<Point>)> pointed) {
    pointed_ = std::move(pointed);
  }
  /// Is told when the widget has another size.
  void OnResized(std::function<void()> resized) { resized_ = std::move(resized); }
  /// What a picture for the whole widget is composed for.
  Surface OwnSurface() const;
  /// True once the picture has been painted.
  void OnPainted(std::function<void()> done) { whenPainted_ = std::move(done); }

  /// Where a position of the widget lies on the page.
  std::optional<Point> PageAt(const QPointF& position) const;
  /// Where a place of the page lies on the widget; its corner without a picture.
  QPointF WidgetAt(Point at) const;

  /// Drawing units for a pixel of the widget; 0 without a picture.
  double UnitsPerPixel() const;

  QSize sizeHint() const override { return {1000, 750}; }
  QSize minimumSizeHint() const override { return {320, 240}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Tell(const std::optional<Point>& at);
  std::optional<Point> told_{};
  void MoveCursor(double dx, double dy);

  const Picture* picture_ = nullptr;
  const Picture* over_ = nullptr;
  std::unique_ptr<paint::KeptGround> ground_;
  std::optional<Point> cursor_{};  // of the arrow keys, on the page
  std::function<void(std::optional<Point>)> pointed_{};
  std::function<void()> whenPainted_{};
  std::function<void()> resized_{};
  bool painted_ = false;
};

}  // namespace vexa
