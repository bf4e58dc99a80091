// The seven listings of the sounding in work, a page of the window each. It follows the sounding.
#pragma once

#include <QDialog>
#include <vector>

#include "output/listings.h"
#include "program/program.h"

class QPlainTextEdit;
class QTabWidget;

namespace vexa {

class ListingWindow : public QDialog {
 public:
  ListingWindow(Program& program, QWidget* parent);

  /// Makes the listings anew.
  void Follow();

 private:
  const output::ListingRow& Shown() const;

  Program& program_;
  QTabWidget* tabs_ = nullptr;
  std::vector<QPlainTextEdit*> texts_{};
};

}  // namespace vexa
