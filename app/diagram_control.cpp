#include "app/diagram_control.h"

#include <algorithm>
#include <cmath>
#include <QApplication>
#include <QCursor>
#include <QGestureEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QWheelEvent>
#include <utility>

#include "app/diagram_view.h"
#include "app/zoom_cursor.h"
#include "diagram/cursor_marks.h"
#include "diagram/palette.h"
#include "program/sounding_loop.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

constexpr double kGripPixels = 9;
constexpr double kWheelFactor = 1.25;  // for a notch of the wheel
constexpr double kNotch = 120;         // the toolkit's measure of one
constexpr double kLeastRegion = 150;   // drawing units; less is a click

Rect Spanned(Point a, Point b) {
  return {std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y)};
}

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::Gesture:
    case QEvent::NativeGesture:
    case QEvent::KeyPress:
      return true;
    default:
      return false;
  }
}

}  // namespace

DiagramControl::DiagramControl(Program& program, DiagramView& view,
                               std::function<void(Changes)> show,
                               std::function<void(const std::string&)> status)
    : program_(program), view_(view), show_(std::move(show)), status_(std::move(status)) {
  view_.installEventFilter(this);
  view_.grabGesture(Qt::PinchGesture);
  loop_.setSingleShot(true);
  connect(&loop_, &QTimer::timeout, this, [this] { Tick(); });
}

DiagramControl::~DiagramControl() {
  view_.ShowOver(nullptr);
}

void DiagramControl::ChooseRegion() {
  choosing_ = true;
  view_.setCursor(ZoomCursor(program_.Where.Root));
  status_("Drag over the region to zoom into; ESC leaves the diagram as it is.");
}

void DiagramControl::EndChoosing() {
  choosing_ = false;
  view_.setCursor(Qt::CrossCursor);
}

bool DiagramControl::Escape() {
  if (drag_) {
    const Silenced quiet = program_.Doc.Quiet();
    const Changes changes = std::exchange(drag_, {})->TakeBack(program_);
    grip_.reset();
    pressed_.reset();
    show_(changes);
    return true;
  }
  if (program_.View.Looping) {
    StopLoop(program_);
    show_({.View = true});
    return true;
  }
  const bool used = choosing_ || program_.View.Cursor.At;
  EndChoosing();
  pressed_.reset();
  program_.View.Cursor.At.reset();
  program_.View.Cursor.Choosing.reset();
  ShowCursor();
  return used;
}

void DiagramControl::Follow() {
  ShowCursor();
  const bool looping = program_.View.Looping;
  if (looping && !loop_.isActive()) {
    loop_.start(static_cast<int>(std::lround(program_.Set.System.MovieTime * 1000)));
  }
  if (!looping) loop_.stop();
  // A loop that ended while its picture was drawn has left its hold time on it.
  if (looped_ && !looping) QTimer::singleShot(0, this, [this] { show_({.View = true}); });
  looped_ = looping;
}

void DiagramControl::Tick() {
  show_(StepLoop(program_));
  if (program_.View.Looping && !loop_.isActive()) Follow();
}

void DiagramControl::ShowCursor() {
  if (!choosing_ && view_.cursor().shape() != Qt::CrossCursor) view_.setCursor(Qt::CrossCursor);
  if (!program_.Plot) {
    view_.ShowOver(nullptr);
    return;
  }
  const diagram::Palette palette = diagram::PaletteFor(program_.Set);
  marks_ =
      diagram::CursorMarks(program_.Plot->Page, program_.Plot->Mapping, program_.Current.Record,
                           CursorShown(program_), palette.Ink, palette.Paper);
  view_.ShowOver(&marks_);
}

bool DiagramControl::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &view_ || !program_.Plot) return false;
  if (!program_.Gate.IsOpen() && IsInput(event->type())) {
    // What is being drawn would not show it, and would be out of date itself.
    if (event->type() == QEvent::MouseButtonRelease) pressed_.reset();
    return true;
  }
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      return Press(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
      return Move(*static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
      return Release(*static_cast<QMouseEvent*>(event));
    case QEvent::Wheel:
      return Wheel(*static_cast<QWheelEvent*>(event));
    case QEvent::Gesture:
    case QEvent::NativeGesture:
      return Pinch(*event);
    case QEvent::KeyPress:
      return Key(*static_cast<QKeyEvent*>(event));
    default:
      return false;
  }
}

bool DiagramControl::Press(const QMouseEvent& event) {
  const std::optional<Point> at = view_.PageAt(event.position());
  if (!at || !program_.Gate.IsOpen() || drag_) return false;
  const bool middle = event.button() == Qt::MiddleButton;
  if (!middle && event.button() != Qt::LeftButton) return false;
  pressed_ = at;
  pressedAt_ = event.position();
  panning_ = middle;
  grip_.reset();
  if (!middle && !choosing_) {
    grip_ = CursorTTorTD(program_, *at, kGripPixels * view_.UnitsPerPixel());
  }
  return false;  // the view takes the focus
}

bool DiagramControl::Move(const QMouseEvent& event) {
  if (!pressed_ || event.buttons() == Qt::NoButton) return false;
  const std::optional<Point> at = view_.PageAt(event.position());
  if (!at) return false;
  if (choosing_) {
    program_.View.Cursor.Choosing = Spanned(*pressed_, *at);
    ShowCursor();
    return true;
  }
  const bool moved =
      (event.position() - pressedAt_).manhattanLength() >= QApplication::startDragDistance();
  if (drag_ || (grip_ && moved)) {
    if (!drag_) drag_.emplace(program_, *grip_, *pressed_);
    Drag(*at);
    return true;
  }
  if (!panning_ && !(moved && program_.View.Zoom)) return false;
  panning_ = true;
  const Point from = std::exchange(*pressed_, *at);
  show_(Pan(program_, at->X - from.X, at->Y - from.Y));
  return true;
}

// Nothing may run in between, so that each picture follows its mouse move at once.
void DiagramControl::Drag(Point to) {
  const Silenced quiet = program_.Doc.Quiet();
  show_(drag_->Move(program_, to));
  status_(drag_->Text(program_));
}

bool DiagramControl::Release(const QMouseEvent& event) {
  if (!pressed_) return false;
  const Point from = *std::exchange(pressed_, {});
  if (drag_) {
    drag_->Finish(program_);
    drag_.reset();
    show_({.View = true});
    return true;
  }
  if (choosing_) {
    EndChoosing();
    const std::optional<Rect> region = std::exchange(program_.View.Cursor.Choosing, {});
    const bool isClick = !region || std::max(region->Width(), region->Height()) < kLeastRegion;
    show_(isClick ? ZoomBy(program_, from, 2) : ZoomInSizer(program_, *region));
    ShowCursor();
    return true;
  }
  if (std::exchange(panning_, false) || event.button() != Qt::LeftButton) return false;
  CursorSetup(program_, from);
  ShowCursor();
  return false;
}

bool DiagramControl::Wheel(const QWheelEvent& event) {
  const std::optional<Point> at = view_.PageAt(event.position());
  if (!at || drag_ || event.angleDelta().y() == 0) return false;
  show_(ZoomBy(program_, *at, std::pow(kWheelFactor, event.angleDelta().y() / kNotch)));
  return true;
}

bool DiagramControl::Pinch(QEvent& event) {
  QPointF where;
  double factor = 1;
  if (event.type() == QEvent::NativeGesture) {
    const auto& native = static_cast<QNativeGestureEvent&>(event);
    if (native.gestureType() != Qt::ZoomNativeGesture) return false;
    where = native.position();
    factor = 1 + native.value();
  } else {
    auto& gestures = static_cast<QGestureEvent&>(event);
    const auto* pinch = static_cast<QPinchGesture*>(gestures.gesture(Qt::PinchGesture));
    if (pinch == nullptr) return false;
    where = view_.mapFromGlobal(pinch->centerPoint().toPoint());
    factor = pinch->scaleFactor();
    gestures.accept(Qt::PinchGesture);
  }
  const std::optional<Point> at = view_.PageAt(where);
  if (at && !drag_) show_(ZoomBy(program_, *at, factor));
  return true;
}

void DiagramControl::StepSounding(int step) {
  if (!drag_) show_(StepListed(program_, step));
}

bool DiagramControl::Key(const QKeyEvent& event) {
  const bool locked = program_.Doc.LockedLevel().has_value();
  const Rect& frame = program_.Plot->Mapping.Frame();
  const Point middle{(frame.Left + frame.Right) / 2, (frame.Top + frame.Bottom) / 2};
  switch (event.key()) {
    case Qt::Key_PageUp:
      StepSounding(-1);
      return true;
    case Qt::Key_PageDown:
      StepSounding(1);
      return true;
    case Qt::Key_Plus:
      show_(ZoomBy(program_, middle, kWheelFactor));
      return true;
    case Qt::Key_Minus:
      show_(ZoomBy(program_, middle, 1 / kWheelFactor));
      return true;
    case Qt::Key_L:
      status_(SwitchCursor(program_));
      if (program_.Settings.Window.Cursor == CursorMode::Locked) {
        CursorSetup(program_, view_.Pointed().value_or(middle));
      }
      ShowCursor();
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (!locked) return false;
      StepCursor(program_, event.key() == Qt::Key_Up ? 1 : -1);
      ShowCursor();
      return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
      // With Shift, and for a single sounding, the free cursor moves.
      if (!locked && (program_.Listed.Size() < 2 || event.modifiers() & Qt::ShiftModifier)) {
        return false;
      }
      StepSounding(event.key() == Qt::Key_Right ? 1 : -1);
      return true;
    default:
      return false;
  }
}

}  // namespace vexa
