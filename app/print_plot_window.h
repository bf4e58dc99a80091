// The print window, `PrintPlot`: what to print, on which paper, with a preview of every page. It
// prints to the printer that the platform's dialog chooses, or to a PDF file where there is none.
#pragma once

#include <filesystem>
#include <optional>
#include <QDialog>
#include <vector>

#include "core/fault.h"
#include "picture/picture.h"
#include "program/print_work.h"
#include "program/program.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace vexa {

class PrintPlotWindow : public QDialog {
 public:
  explicit PrintPlotWindow(Program& program, QWidget* parent = nullptr);

  /// What is chosen now, and its pages.
  PrintRequest Request() const;
  std::vector<Picture> Pages() const;

 private:
  void BuildControls();
  void ShowPreview();
  void Print();
  void PrintToFile();
  // Keeps the choices and prepares the chosen listings' files.
  std::optional<Fault> Prepare();

  Program& program_;
  QComboBox* display_ = nullptr;
  QComboBox* orientation_ = nullptr;
  QComboBox* paper_ = nullptr;
  QCheckBox* dataType_ = nullptr;
  QCheckBox* coordinates_ = nullptr;
  QCheckBox* darkLines_ = nullptr;
  QLineEdit* title_ = nullptr;
  QCheckBox* allListings_ = nullptr;
  QSpinBox* page_ = nullptr;
  QLabel* preview_ = nullptr;
  QPushButton* print_ = nullptr;
};

}  // namespace vexa
