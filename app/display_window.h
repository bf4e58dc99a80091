// The window of a display: its picture, composed for the room that it has, and the controls of its
// row. It follows the sounding; its own menu saves, copies and prints the picture, shows what it
// says as a text, and leads to its options.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <string_view>
#include <vector>

#include "picture/picture.h"
#include "program/displays.h"

class QHBoxLayout;
class QPushButton;
class QScrollArea;

namespace vexa {

class DragView;

class DisplayWindow : public QWidget {
 public:
  struct Events {
    std::function<void(Changes)> Changed{};  // draws anew what a change made stale
    std::function<void()> Closed{};          // by the user
    std::function<void(std::string_view window, std::string_view at)> Open{};
  };
  DisplayWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent);

  /// Draws the state of the program.
  virtual void Follow() = 0;
  virtual const Picture& Page() const = 0;
  DragView& View() { return *view_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  /// The picture has another room.
  virtual void Compose() = 0;
  /// Escape closes the window unless it stops something that is under way.
  virtual void Escape() { close(); }

  Program& program_;
  const DisplayRow& row_;
  Events events_;
  DragView* view_ = nullptr;  // in the window's layout by the one that builds it
  QWidget* room_ = nullptr;   // whose size the picture is composed for
};

/// A display that has nothing but its row.
class PlainDisplayWindow : public DisplayWindow {
 public:
  PlainDisplayWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent);

  void Follow() override;
  const Picture& Page() const override { return page_; }

 protected:
  void Compose() override { Draw(); }
  void hideEvent(QHideEvent* event) override;
  void Escape() override;
  /// The picture for its room.
  virtual Picture Drawn(const Surface& on);
  void Draw();
  /// Where the row's controls stand, with room behind them.
  QHBoxLayout& ControlLine() { return *line_; }

 private:
  QWidget* MakeControl(const ControlRow& control);
  QPushButton* MakeMotion(const ControlRow& control);
  void Use(const ControlRow& control, double value);
  void Pointed(const std::optional<vexa::Point>& at);
  bool Key(int key);
  void StopMotion();

  Picture page_{};
  QScrollArea* around_ = nullptr;
  QHBoxLayout* line_ = nullptr;
  QPointF grabbed_{};
  std::vector<std::function<void()>> showValues_{};  // of the controls
  QTimer frames_{};
  QElapsedTimer sinceFrame_{};
  QPushButton* moving_ = nullptr;  // while a motion runs
};

/// The window of a display: one of its own where it has more than its row says, else a plain one.
std::unique_ptr<DisplayWindow> MakeDisplayWindow(Program& program, const DisplayRow& row,
                                                 DisplayWindow::Events events, QWidget* parent);

}  // namespace vexa
