// A panel beside the diagram that follows the sounding while it is shown.
#pragma once

#include <QDockWidget>

namespace vexa {

class Panel : public QDockWidget {
 public:
  using QDockWidget::QDockWidget;

  /// Fills in the values of the sounding in work.
  virtual void Follow() = 0;
};

}  // namespace vexa
