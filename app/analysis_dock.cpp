#include "app/analysis_dock.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTableWidget>
#include <QTableWidgetItem>
#include <QVBoxLayout>

#include "analysis/index_table.h"
#include "app/qt_text.h"
#include "core/numbers.h"
#include "display/shown_texts.h"
#include "program/readout.h"

namespace vexa {
namespace {

enum IndexColumn { kLabel, kValue, kRank, kName, kColumns };

// Asks for its explanation only when the pointer rests on it.
class ValueItem : public QTableWidgetItem {
 public:
  ValueItem(const Program& program, const analysis::IndexRow& row, const QString& text)
      : QTableWidgetItem(text), program_(program), row_(row) {
    setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  }

  QVariant data(int role) const override {
    if (role == Qt::ToolTipRole) return ToQString(HotInfo(program_, row_.Label));
    return QTableWidgetItem::data(role);
  }

 private:
  const Program& program_;
  const analysis::IndexRow& row_;
};

}  // namespace

AnalysisDock::AnalysisDock(const Program& program, QWidget* parent)
    : Panel(QStringLiteral("Analysis"), parent), program_(program) {
  setObjectName(QStringLiteral("InfoPanel"));
}

void AnalysisDock::Build() {
  auto* inside = new QWidget(this);
  auto* layout = new QVBoxLayout(inside);
  search_ = new QLineEdit(inside);
  search_->setPlaceholderText(QStringLiteral("Search"));
  search_->setClearButtonEnabled(true);
  search_->setAccessibleName(QStringLiteral("Search among the indices"));
  layout->addWidget(search_);
  auto* splitter = new QSplitter(Qt::Vertical, inside);
  table_ = new QTableWidget(0, kColumns, splitter);
  table_->setObjectName(QStringLiteral("IndexTable"));
  table_->setHorizontalHeaderLabels({QStringLiteral("Index"), QStringLiteral("Value"),
                                     QStringLiteral("Usual"), QStringLiteral("Name")});
  table_->verticalHeader()->hide();
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
  table_->setAlternatingRowColors(true);
  table_->setTabKeyNavigation(false);
  table_->horizontalHeader()->setStretchLastSection(true);
  explanation_ = new QPlainTextEdit(splitter);
  explanation_->setObjectName(QStringLiteral("IndexExplanation"));
  explanation_->setReadOnly(true);
  explanation_->setLineWrapMode(QPlainTextEdit::NoWrap);
  explanation_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  explanation_->setAccessibleName(QStringLiteral("How the chosen index came about"));
  explanation_->setPlaceholderText(QStringLiteral("Choose an index to see how it came about."));
  splitter->setStretchFactor(0, 3);
  splitter->setStretchFactor(1, 1);
  layout->addWidget(splitter);
  inside->setMinimumWidth(360);
  setWidget(inside);
  connect(search_, &QLineEdit::textChanged, this, [this](const QString& words) { Search(words); });
  connect(table_, &QTableWidget::currentCellChanged, this,
          [this](int row, int, int, int) { ExplainRow(row); });
}

void AnalysisDock::Follow() {
  if (!isVisibleTo(parentWidget())) return;
  const std::vector<analysis::IndexValue>& indices = program_.Results.Indices;
  const int current = table_->currentRow();
  table_->setRowCount(static_cast<int>(indices.size()));
  const diagram::Usual* usual = program_.Usual.Shown();
  table_->setColumnHidden(kRank, usual == nullptr);
  for (int i = 0; i < table_->rowCount(); ++i) {
    const analysis::IndexValue& index = indices[static_cast<std::size_t>(i)];
    const std::string value = display::WithPowers(
        analysis::ShownValue(index, program_.Set, program_.Current.Record.ElevM));
    const diagram::UsualRank* rank = usual == nullptr ? nullptr : usual->Find(*index.Row);
    const QString texts[] = {
        ToQString(Trim(index.Row->Label)), ToQString(value),
        rank == nullptr ? QString() : QStringLiteral("%1%").arg(rank->Percentile),
        ToQString(index.Row->Name)};
    for (int column = 0; column < kColumns; ++column) {
      table_->setItem(i, column, new ValueItem(program_, *index.Row, texts[column]));
    }
    for (const int column : {kValue, kRank}) {
      table_->item(i, column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
  }
  if (current < 0) table_->resizeColumnsToContents();
  Search(search_->text());
  ExplainRow(current);
}

void AnalysisDock::Search(const QString& words) {
  for (int i = 0; i < table_->rowCount(); ++i) {
    const bool found = table_->item(i, kLabel)->text().contains(words, Qt::CaseInsensitive) ||
                       table_->item(i, kName)->text().contains(words, Qt::CaseInsensitive);
    table_->setRowHidden(i, !found);
  }
}

void AnalysisDock::ExplainRow(int row) {
  const bool exists = row >= 0 && row < table_->rowCount() && table_->item(row, kLabel) != nullptr;
  const std::string label = exists ? table_->item(row, kLabel)->text().toStdString() : "";
  explanation_->setPlainText(exists ? ToQString(HotInfo(program_, label)) : QString());
}

}  // namespace vexa
