#include "app/severe_table_window.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "app/qt_text.h"
#include "app/remark_label.h"
#include "core/files.h"
#include "core/numbers.h"
#include "display/sheet.h"

namespace vexa {
namespace {

using analysis::SevereRow;
using analysis::SevereWhen;

constexpr int kSteps = 3;

// One threshold as it is edited: a number, or a range "5000-12000".
QString LimitText(const SevereRow& row, std::size_t step) {
  const analysis::SevereEntry& entry =
      analysis::SevereEntries()[static_cast<std::size_t>(row.Entry) - 1];
  std::string text = Shortest(row.Limits.From[step]);
  if (entry.When == SevereWhen::Within) text += " to " + Shortest(row.Limits.To[step]);
  return ToQString(text);
}

bool ReadLimit(SevereRow& row, std::size_t step, const std::string& text) {
  const std::size_t to = text.find(" to ");
  const auto from = ParseNumber(text.substr(0, to));
  if (!from) return false;
  row.Limits.From[step] = *from;
  if (to == std::string::npos) return true;
  const auto end = ParseNumber(text.substr(to + 4));
  if (!end) return false;
  row.Limits.To[step] = *end;
  return true;
}

QString SenseText(SevereWhen when) {
  switch (when) {
    case SevereWhen::Above:
      return QStringLiteral("at least");
    case SevereWhen::Below:
      return QStringLiteral("at most");
    case SevereWhen::Within:
      return QStringLiteral("within");
    case SevereWhen::Never:
      break;
  }
  return {};
}

}  // namespace

SevereTableWindow::SevereTableWindow(const analysis::SevereTable& table,
                                     std::function<void(const analysis::SevereTable&)> accepted,
                                     QWidget* parent)
    : EditorDialog(parent), table_(table), accepted_(std::move(accepted)) {
  setObjectName(QStringLiteral("SevereTable"));
  setWindowTitle(QStringLiteral("Severe Weather Table"));
  auto* layout = new QVBoxLayout(this);
  BuildTable(*layout);
  BuildRowButtons(*layout);
  BuildFileButtons(*layout);
  remark_ = new RemarkLabel(this);
  remark_->setObjectName(QStringLiteral("SevereRemark"));
  layout->addWidget(remark_);
  auto* buttons = new QDialogButtonBox(
      QDialogButtonBox::Ok | QDialogButtonBox::Apply | QDialogButtonBox::Cancel, this);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    if (Apply()) accept();
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this,
          [this] { Apply(); });
  Fill();
  resize(720, 540);
}

void SevereTableWindow::BuildTable(QVBoxLayout& layout) {
  auto* head = new QHBoxLayout;
  auto* titleLabel = new QLabel(QStringLiteral("&Title"), this);
  title_ = new QLineEdit(this);
  titleLabel->setBuddy(title_);
  head->addWidget(titleLabel);
  head->addWidget(title_);
  layout.addLayout(head);

  rows_ = new QTableWidget(0, 2 + kSteps, this);
  rows_->setObjectName(QStringLiteral("SevereRows"));
  rows_->setTabKeyNavigation(false);  // Tab goes on to the buttons, arrow keys go from cell to cell
  rows_->setHorizontalHeaderLabels({QStringLiteral("Index"), QStringLiteral("Severe"),
                                    QStringLiteral("Yellow"), QStringLiteral("Orange"),
                                    QStringLiteral("Red")});
  rows_->setSelectionBehavior(QAbstractItemView::SelectRows);
  rows_->setSelectionMode(QAbstractItemView::SingleSelection);
  rows_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  layout.addWidget(rows_);
  connect(rows_, &QTableWidget::cellChanged, this,
          [this](int row, int column) { ReadCell(row, column); });
  connect(title_, &QLineEdit::textEdited, this,
          [this](const QString& text) { table_.Title = text.toStdString(); });
}

void SevereTableWindow::AddButton(const QString& text, QHBoxLayout& into,
                                  std::function<void()> does) {
  auto* made = new QPushButton(text, this);
  made->setAutoDefault(false);
  connect(made, &QPushButton::clicked, this, std::move(does));
  into.addWidget(made);
}

void SevereTableWindow::BuildRowButtons(QVBoxLayout& layout) {
  auto* change = new QHBoxLayout;
  offered_ = new QComboBox(this);
  offered_->setObjectName(QStringLiteral("OfferedEntries"));
  offered_->setAccessibleName(QStringLiteral("Entry to add"));
  for (std::size_t i = 0; i < analysis::SevereEntries().size(); ++i) {
    const int number = static_cast<int>(i) + 1;
    if (!analysis::IsSevereEntry(number)) continue;
    offered_->addItem(ToQString(analysis::SevereEntries()[i].Text), number);
  }
  change->addWidget(offered_, 1);
  AddButton(QStringLiteral("&Add"), *change, [this] { Add(); });
  AddButton(QStringLiteral("Re&move"), *change, [this] { Remove(); });
  AddButton(QStringLiteral("&Up"), *change, [this] { Move(-1); });
  AddButton(QStringLiteral("&Down"), *change, [this] { Move(1); });
  layout.addLayout(change);
}

void SevereTableWindow::BuildFileButtons(QVBoxLayout& layout) {
  auto* files = new QHBoxLayout;
  AddButton(QStringLiteral("&Save Table..."), *files, [this] {
    if (const auto path = AskForFile("Save Table", true)) SaveTo(*path);
  });
  AddButton(QStringLiteral("&Restore Table..."), *files, [this] {
    if (const auto path = AskForFile("Restore Table", false)) RestoreFrom(*path);
  });
  AddButton(QStringLiteral("De&faults"), *files, [this] {
    const std::string title = table_.Title;
    table_ = analysis::DefaultSevereTable();
    table_.Title = title;
    Fill();
  });
  files->addStretch(1);
  layout.addLayout(files);
}

void SevereTableWindow::Fill() {
  filling_ = true;
  title_->setText(ToQString(table_.Title));
  rows_->setRowCount(static_cast<int>(table_.Rows.size()));
  for (int i = 0; i < rows_->rowCount(); ++i) {
    const SevereRow& row = table_.Rows[static_cast<std::size_t>(i)];
    const analysis::SevereEntry& entry =
        analysis::SevereEntries()[static_cast<std::size_t>(row.Entry) - 1];
    const auto fixed = [&](int column, const QString& text) {
      auto* item = new QTableWidgetItem(text);
      item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
      rows_->setItem(i, column, item);
    };
    fixed(0, ToQString(entry.Text));
    fixed(1, SenseText(entry.When));
    for (int step = 0; step < kSteps; ++step) {
      auto* item = new QTableWidgetItem(LimitText(row, static_cast<std::size_t>(step)));
      const Color color = display::StressColor(static_cast<display::Stress>(step + 1));
      item->setBackground(QColor(color.Red, color.Green, color.Blue));
      item->setForeground(step == kSteps - 1 ? Qt::white : Qt::black);
      rows_->setItem(i, 2 + step, item);
    }
  }
  filling_ = false;
  Say({});
}

void SevereTableWindow::ReadCell(int row, int column) {
  if (filling_ || column < 2) return;
  SevereRow changed = table_.Rows[static_cast<std::size_t>(row)];
  const auto step = static_cast<std::size_t>(column) - 2;
  const std::string text = rows_->item(row, column)->text().toStdString();
  if (!ReadLimit(changed, step, text)) {
    Say(ToQString("\"" + text +
                  "\" is no threshold: a number is wanted, or a range \"5000 to "
                  "12000\""));
    const QSignalBlocker silent(rows_);
    rows_->item(row, column)->setText(LimitText(table_.Rows[static_cast<std::size_t>(row)], step));
    return;
  }
  table_.Rows[static_cast<std::size_t>(row)] = changed;
  Say(ToQString(analysis::CheckLimits(changed)));
}

void SevereTableWindow::Move(int step) {
  const int from = rows_->currentRow();
  const int to = from + step;
  if (from < 0 || to < 0 || to >= rows_->rowCount()) return;
  std::swap(table_.Rows[static_cast<std::size_t>(from)], table_.Rows[static_cast<std::size_t>(to)]);
  Fill();
  rows_->selectRow(to);
}

void SevereTableWindow::Add() {
  const int at = rows_->currentRow() < 0 ? rows_->rowCount() : rows_->currentRow() + 1;
  table_.Rows.insert(table_.Rows.begin() + at,
                     analysis::DefaultSevereRow(offered_->currentData().toInt()));
  Fill();
  rows_->selectRow(at);
}

void SevereTableWindow::Remove() {
  const int at = rows_->currentRow();
  if (at < 0) return;
  table_.Rows.erase(table_.Rows.begin() + at);
  Fill();
  rows_->selectRow(qMin(at, rows_->rowCount() - 1));
}

void SevereTableWindow::Say(const QString& text) {
  remark_->setText(text);
}

bool SevereTableWindow::Apply() {
  for (const SevereRow& row : table_.Rows) {
    const std::string wrong = analysis::CheckLimits(row);
    if (wrong.empty()) continue;
    const auto entry = static_cast<std::size_t>(row.Entry) - 1;
    Say(ToQString(std::string(analysis::SevereEntries()[entry].Text) + ": " + wrong));
    return false;
  }
  accepted_(table_);
  Keep();
  return true;
}

std::string SevereTableWindow::Typed() const {
  std::string text = table_.Title + '\n' + TypingIn(*rows_);
  for (int row = 0; row < rows_->rowCount(); ++row) {
    for (int column = 0; column < rows_->columnCount(); ++column) {
      text += rows_->item(row, column)->text().toStdString() + '\t';
    }
  }
  return text;
}

std::optional<std::filesystem::path> SevereTableWindow::AskForFile(std::string_view title,
                                                                   bool saving) const {
  if (User() == nullptr) return std::nullopt;
  const std::optional<std::string> name =
      User()->ChooseFile({.Title = std::string(title),
                          .Filter = "Tables (*.TBL)|*.TBL|All files (*)|*",
                          .Saving = saving});
  if (!name) return std::nullopt;
  return PathFromText(*name);
}

void SevereTableWindow::SaveTo(const std::filesystem::path& path) {
  const auto fault = analysis::SaveTable(path, table_);
  Say(ToQString(fault ? fault->Detail : "saved"));
}

void SevereTableWindow::RestoreFrom(const std::filesystem::path& path) {
  const auto restored = analysis::RestoreTable(path);
  if (!restored) {
    Say(ToQString(restored.Error().Detail));
    return;
  }
  table_ = restored.Value();
  Fill();
  Say(QStringLiteral("restored"));
}

}  // namespace vexa
