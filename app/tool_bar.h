// The slim tool bar: what is wanted often, as icons with texts. Its buttons are entries of the
// menu, so that they do, gray and tell what those do.
#pragma once

#include <QToolBar>

#include "program/program.h"

class QLabel;
class QMainWindow;

namespace vexa {

class ToolBar : public QToolBar {
 public:
  /// window  has the menu's entries
  ToolBar(const Program& program, QMainWindow& window);

  /// Shows which of the soundings that were opened together is in work: "3/8".
  void Follow();

 private:
  const Program& program_;
  QAction* place_ = nullptr;  // of the label, by which it is shown and hidden
  QLabel* label_ = nullptr;
};

}  // namespace vexa
