// The soundings of a cross-section: which of those that are loaded it takes, the span of time it is
// of, and what is kept of it as a dataset.
#pragma once

#include <functional>
#include <optional>
#include <QDialog>

#include "program/section_display.h"

class QLabel;
class QLineEdit;
class QListWidget;

namespace vexa {

class CrossSectionX : public QDialog {
 public:
  /// changed  the section is another one;  save  keeps it as a dataset
  CrossSectionX(Program& program, std::function<void()> changed, std::function<void()> save,
                QWidget* parent);

 private:
  void ShowAll();
  void CheckAll(bool on);
  void Apply();
  std::optional<ObservationTime> TimeIn(QLineEdit& line, bool& isWrong);

  Program& program_;
  std::function<void()> changed_;
  QListWidget* list_ = nullptr;
  QLineEdit* from_ = nullptr;
  QLineEdit* until_ = nullptr;
  QLabel* told_ = nullptr;
};

}  // namespace vexa
