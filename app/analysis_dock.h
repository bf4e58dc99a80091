// The panel of all indices beside the diagram: a table that can be searched, each value with its
// explanation.
#pragma once

#include <string>
#include <vector>

#include "app/panel.h"
#include "program/program.h"

class QLineEdit;
class QTableWidget;
class QPlainTextEdit;

namespace vexa {

class AnalysisDock : public Panel {
 public:
  AnalysisDock(const Program& program, QWidget* parent);

  /// Fills in the values of the current sounding.
  void Follow() override;

 private:
  void Build() override;
  void Search(const QString& words);
  void ExplainRow(int row);

  const Program& program_;
  QLineEdit* search_ = nullptr;
  QTableWidget* table_ = nullptr;
  QPlainTextEdit* explanation_ = nullptr;
};

}  // namespace vexa
