// The export of sounding data: `DataDump` chooses the soundings and the kind of file, the
// `DataDumpOptions` window units and blocks. A numbered range of files is exported one by one and
// can be stopped between two.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "output/data_dump.h"
#include "program/program.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;

namespace vexa {

class DataDumpOptionsWindow : public QDialog {
 public:
  DataDumpOptionsWindow(const DumpOptions& dump, QWidget* parent);

  /// The seven selections as the controls have them.
  DumpOptions Chosen() const;

 private:
  QComboBox* height_ = nullptr;
  QComboBox* reference_ = nullptr;
  QComboBox* speed_ = nullptr;
  QComboBox* temp_ = nullptr;
  QComboBox* water_ = nullptr;
  QCheckBox* formatBlock_ = nullptr;
  QCheckBox* significant_ = nullptr;
};

class DataDumpWindow : public QDialog {
 public:
  DataDumpWindow(Program& program, QWidget* parent);

  /// The files that the range counts.
  void SetFiles(std::vector<std::string> files);
  void Export();

  void reject() override;

 private:
  void BuildControls();
  void ChooseFiles();
  void ChooseOptions();
  void ShowControls();
  void ExportRangeOfFiles();
  output::DumpKind Kind() const;

  Program& program_;
  std::vector<std::string> files_{};
  bool isRunning_ = false;
  QRadioButton* thisOne_ = nullptr;
  QRadioButton* range_ = nullptr;
  QLineEdit* first_ = nullptr;
  QLineEdit* last_ = nullptr;
  QListWidget* list_ = nullptr;
  QComboBox* kind_ = nullptr;
  QLabel* step_ = nullptr;
  QProgressBar* bar_ = nullptr;
  QPushButton* export_ = nullptr;
  QPushButton* choose_ = nullptr;
};

}  // namespace vexa
