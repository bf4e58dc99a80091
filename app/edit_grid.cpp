#include "app/edit_grid.h"

#include <algorithm>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <set>
#include <utility>

#include "app/qt_text.h"

namespace vexa {
namespace {

const QColor kProblemCell(255, 160, 160);
const QColor kProblemRow(255, 235, 215);

}  // namespace

EditGrid::EditGrid(LevelKind kind, const SoundingRecord& record, QWidget* parent)
    : QTableWidget(parent), table_(kind, record) {
  QStringList captions;
  for (const std::string_view caption : table_.Captions()) captions << ToQString(caption);
  setColumnCount(table_.Columns());
  setHorizontalHeaderLabels(captions);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  setTabKeyNavigation(true);
  connect(this, &QTableWidget::cellChanged, this, [this](int row, int column) {
    table_.Set(row, column, item(row, column)->text().toStdString());
    Changed();
  });
  Fill();
}

void EditGrid::Fill() {
  const QSignalBlocker silent(this);
  setRowCount(table_.Rows());
  for (int row = 0; row < table_.Rows(); ++row) {
    for (int column = 0; column < table_.Columns(); ++column) {
      setItem(row, column, new QTableWidgetItem(ToQString(table_.Text(row, column))));
    }
  }
  Mark();
}

void EditGrid::Mark() {
  const QSignalBlocker silent(this);
  problems_ = table_.Problems();
  auto problem = problems_.begin();
  for (int row = 0; row < rowCount(); ++row) {
    const bool isWrong = problem != problems_.end() && problem->Row == row;
    const QString reason = isWrong ? ToQString(problem->Reason) : QString();
    for (int column = 0; column < columnCount(); ++column) {
      QTableWidgetItem* cell = item(row, column);
      const QString text = ToQString(table_.Text(row, column));
      if (cell->text() != text) cell->setText(text);
      const bool isCell = isWrong && problem->Column == column;
      cell->setBackground(isCell ? QBrush(kProblemCell) : isWrong ? QBrush(kProblemRow) : QBrush());
      cell->setForeground(isWrong ? QBrush(Qt::black) : QBrush());
      cell->setToolTip(reason);
    }
    if (isWrong) ++problem;
  }
}

void EditGrid::Changed() {
  Mark();
  if (edited_) edited_();
}

void EditGrid::InsertAbove() {
  const int row = std::max(currentRow(), 0);
  table_.Insert(row);
  Fill();
  GoTo(row, 0);
  if (edited_) edited_();
}

void EditGrid::DeleteSelected() {
  std::set<int, std::greater<>> rows;
  for (const QModelIndex& index : selectedIndexes()) rows.insert(index.row());
  if (rows.empty()) return;
  for (const int row : rows) table_.Erase(row);
  const int next = std::min(*rows.rbegin(), table_.Rows() - 1);
  Fill();
  if (next >= 0) GoTo(next, 0);
  if (edited_) edited_();
}

void EditGrid::PasteText(const QString& text) {
  table_.Paste(std::max(currentRow(), 0), std::max(currentColumn(), 0), text.toStdString());
  Fill();
  if (edited_) edited_();
}

QString EditGrid::SelectedText() const {
  int first = rowCount();
  int last = -1;
  for (const QModelIndex& index : selectedIndexes()) {
    first = std::min(first, index.row());
    last = std::max(last, index.row());
  }
  return last < 0 ? QString() : ToQString(table_.Copy(first, last - first + 1));
}

std::optional<Fault> EditGrid::AddInOrder(const std::vector<std::string>& texts) {
  const Outcome<int> row = table_.AddInOrder(texts);
  if (!row) return row.Error();
  Fill();
  GoTo(row.Value(), 0);
  if (edited_) edited_();
  return std::nullopt;
}

void EditGrid::GoTo(int row, int column) {
  setCurrentCell(row, column);
  scrollToItem(item(row, column), QAbstractItemView::PositionAtCenter);
  setFocus();
}

bool EditGrid::IsAtEnd(bool next) const {
  return next ? currentRow() == rowCount() - 1 && currentColumn() == columnCount() - 1
              : currentRow() <= 0 && currentColumn() <= 0;
}

bool EditGrid::focusNextPrevChild(bool next) {
  if (rowCount() == 0 || IsAtEnd(next)) return QWidget::focusNextPrevChild(next);
  return QTableWidget::focusNextPrevChild(next);
}

// The toolkit would go on from the last cell to the first and type over what is there.
void EditGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const bool next = hint == QAbstractItemDelegate::EditNextItem;
  const bool leaves = (next || hint == QAbstractItemDelegate::EditPreviousItem) && IsAtEnd(next);
  QTableWidget::closeEditor(editor, leaves ? QAbstractItemDelegate::NoHint : hint);
  if (!leaves) return;
  const int last = table_.Rows() - 1;
  if (!next || table_.IsBlank(last)) {
    QWidget::focusNextPrevChild(next);
    return;
  }
  table_.Insert(last + 1);
  Fill();
  GoTo(last + 1, 0);
  edit(currentIndex());
  if (edited_) edited_();
}

void EditGrid::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Paste)) {
    PasteText(QApplication::clipboard()->text());
  } else if (event->matches(QKeySequence::Copy)) {
    QApplication::clipboard()->setText(SelectedText());
  } else if (event->matches(QKeySequence::Delete) && selectionModel()->selectedRows().size() > 0) {
    DeleteSelected();
  } else {
    QTableWidget::keyPressEvent(event);
  }
}

}  // namespace vexa
