// What mouse, wheel, pinch and keys do on the diagram: choose a region, zoom, pan, place and step
// the cursor, drag the sounding's points, step through the list and run the loop's clock.
#pragma once

#include <functional>
#include <optional>
#include <QObject>
#include <QPointF>
#include <QTimer>
#include <string>

#include "picture/picture.h"
#include "program/level_drag.h"
#include "program/program.h"

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace vexa {

class DiagramView;

class DiagramControl : public QObject {
 public:
  /// show    draws what a change made stale, everywhere
  /// status  writes into the progress panel
  DiagramControl(Program& program, DiagramView& view, std::function<void(Changes)> show,
                 std::function<void(const std::string&)> status);
  ~DiagramControl() override;

  /// The next drag of the mouse chooses the region to zoom into.
  void ChooseRegion();
  /// Takes back what is under way: a drag, the choice of a region, the loop, a free cursor. False
  /// when there was nothing.
  bool Escape();
  /// Shows the state of the program: cursor and loop.
  void Follow();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Press(const QMouseEvent& event);
  bool Move(const QMouseEvent& event);
  bool Release(const QMouseEvent& event);
  bool Wheel(const QWheelEvent& event);
  bool Pinch(QEvent& event);
  bool Key(const QKeyEvent& event);
  void StepSounding(int step);
  void Drag(Point to);
  void ShowCursor();
  void EndChoosing();
  void Tick();

  Program& program_;
  DiagramView& view_;
  std::function<void(Changes)> show_;
  std::function<void(const std::string&)> status_;
  Picture marks_{};
  bool choosing_ = false;
  bool panning_ = false;
  std::optional<Point> pressed_{};  // where on the page the button went down
  QPointF pressedAt_{};             // the same on the widget
  std::optional<Grip> grip_{};
  std::optional<LevelDrag> drag_{};
  bool looped_ = false;
  QTimer loop_{};
};

}  // namespace vexa
