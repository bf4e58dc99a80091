// A grid in which levels are edited: what is wrong is marked at the cell and said at the row, rows
// are pasted from a spreadsheet.
#pragma once

#include <functional>
#include <QTableWidget>
#include <string>
#include <vector>

#include "program/edit_table.h"

namespace vexa {

class EditGrid : public QTableWidget {
 public:
  EditGrid(LevelKind kind, const SoundingRecord& record, QWidget* parent);

  const EditTable& Table() const { return table_; }
  const std::vector<TableProblem>& Problems() const { return problems_; }
  /// Called whenever cells have changed.
  void OnEdited(std::function<void()> edited) { edited_ = std::move(edited); }

  void InsertAbove();
  void DeleteSelected();
  void PasteText(const QString& text);
  QString SelectedText() const;
  /// Puts a row of these texts in its place; why not, if not.
  std::optional<Fault> AddInOrder(const std::vector<std::string>& texts);
  /// Makes a cell the current one and brings it into view.
  void GoTo(int row, int column);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  /// Tab goes from cell to cell and leaves the grid behind its last one, Shift+Tab ahead of its
  /// first.
  bool focusNextPrevChild(bool next) override;
  /// The same while a cell is typed into; behind a last row that holds something a new one begins.
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  bool IsAtEnd(bool next) const;
  void Fill();
  void Mark();
  void Changed();

  EditTable table_;
  std::vector<TableProblem> problems_{};
  std::function<void()> edited_{};
};

}  // namespace vexa
