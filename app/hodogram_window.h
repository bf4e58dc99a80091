// The window of the trajectory in three dimensions: turned by buttons, arrow keys, the mouse and a
// timer.
#pragma once

#include <functional>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include "hodograph/hodogram_plot.h"
#include "program/program.h"

class QPushButton;

namespace vexa {

class DragView;

class HodogramWindow : public QWidget {
 public:
  HodogramWindow(Program& program, std::function<void()> closed, QWidget* parent);

  /// Draws the sounding in work.
  void ShowState();

  const Picture& Page() const { return page_; }
  DragView& View() { return *view_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildControls();
  void Turn(double azimuth, double tilt);
  void Draw();
  void Rotate(bool on);
  bool Key(int key);

  Program& program_;
  std::function<void()> closed_;
  hodograph::Hodogram hodogram_{};
  Picture page_{};
  DragView* view_ = nullptr;
  QPushButton* rotate_ = nullptr;
  QTimer frames_{};
  QElapsedTimer sinceFrame_{};
  QPointF grabbed_{};
};

}  // namespace vexa
