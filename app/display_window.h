// A window that shows one display of the current sounding, and follows it. A page that would become
// unreadable on a small screen keeps its size and is scrolled.
#pragma once

#include <optional>
#include <QDialog>

#include "picture/picture.h"
#include "program/displays.h"

class QScrollArea;

namespace vexa {

class DiagramView;

class DisplayWindow : public QDialog {
 public:
  DisplayWindow(const Program& program, const DisplayRow& row, QWidget* parent);

  /// Draws the display anew.
  void Follow();
  const Picture& Page() const { return picture_; }
  DiagramView& View() { return *view_; }

 private:
  void Point(const std::optional<vexa::Point>& at);

  const Program& program_;
  const DisplayRow& row_;
  Picture picture_{};
  DiagramView* view_ = nullptr;
  QScrollArea* around_ = nullptr;
};

}  // namespace vexa
