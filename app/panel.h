// A panel beside the diagram that follows the sounding while it is shown. Its contents are made when
// it is first shown: few starts need them.
#pragma once

#include <QDockWidget>

namespace vexa {

class Panel : public QDockWidget {
 public:
  using QDockWidget::QDockWidget;

  void setVisible(bool visible) override {
    if (visible && widget() == nullptr) Build();
    QDockWidget::setVisible(visible);
  }

  /// Fills in the values of the sounding in work, while it is shown.
  virtual void Follow() = 0;

 private:
  virtual void Build() = 0;  // sets the widget
};

}  // namespace vexa
