#include "app/station_editor.h"

#include <algorithm>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "app/qt_text.h"
#include "app/remark_label.h"
#include "core/numbers.h"

namespace vexa {
namespace {

constexpr int kMostFound = 500;

}  // namespace

StationEditor::StationEditor(const StationList& list,
                             std::function<std::optional<Fault>(const StationList&)> accepted,
                             QWidget* parent)
    : EditorDialog(parent), list_(list), accepted_(std::move(accepted)) {
  setObjectName(QStringLiteral("StationEditor"));
  setWindowTitle(QStringLiteral("Edit Station Locator File"));
  auto* layout = new QVBoxLayout(this);
  search_ = new QLineEdit(this);
  search_->setObjectName(QStringLiteral("StationSearch"));
  search_->setPlaceholderText(QStringLiteral("Number, identifier, name or region"));
  connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) { Search(text); });
  layout->addWidget(search_);

  auto* middle = new QHBoxLayout;
  found_ = new QListWidget(this);
  found_->setObjectName(QStringLiteral("StationsFound"));
  found_->setAccessibleName(QStringLiteral("Stations found"));
  connect(found_, &QListWidget::currentRowChanged, this, [this] { ShowChosen(); });
  middle->addWidget(found_, 1);
  auto* form = new QFormLayout;
  for (int i = 0; i < kStationFields; ++i) {
    const auto field = static_cast<StationField>(i);
    auto* line = new QLineEdit(this);
    connect(line, &QLineEdit::editingFinished, this, [this, field, line] {
      const auto fault = CheckStationField(field, line->text().toStdString());
      if (line->isModified()) Say(fault ? fault->Detail : "");
    });
    form->addRow(ToQString(Text(field)), line);
    fields_.push_back(line);
  }
  middle->addLayout(form, 1);
  layout->addLayout(middle, 1);

  auto* change = new QHBoxLayout;
  const auto button = [&](const QString& caption, void (StationEditor::*does)()) {
    auto* made = new QPushButton(caption, this);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, does);
    change->addWidget(made);
  };
  button(QStringLiteral("&Add as New"), &StationEditor::AddStation);
  button(QStringLiteral("&Change"), &StationEditor::ChangeStation);
  button(QStringLiteral("&Delete"), &StationEditor::DeleteStation);
  change->addStretch(1);
  layout->addLayout(change);

  remark_ = new RemarkLabel(this);
  remark_->setObjectName(QStringLiteral("StationRemark"));
  layout->addWidget(remark_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    if (const auto fault = accepted_(list_)) return Say("not saved: " + fault->Detail);
    accept();
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
  Say(Shortest(list_.Count()) + " stations");
  resize(760, 480);
}

void StationEditor::Search(const QString& text) {
  {
    const QSignalBlocker silent(found_);
    found_->clear();
    for (const Station* station : SearchStations(list_, text.toStdString(), kMostFound)) {
      auto* item = new QListWidgetItem(ToQString(StationCaption(*station)), found_);
      item->setData(Qt::UserRole, station->Number);
    }
    found_->setCurrentRow(found_->count() > 0 ? 0 : -1);
  }
  ShowChosen();
}

void StationEditor::ShowChosen() {
  const QListWidgetItem* item = found_->currentItem();
  const Station* station = item == nullptr ? nullptr : list_.Find(item->data(Qt::UserRole).toInt());
  chosen_ = station == nullptr ? -1 : station->Number;
  // What was typed may become a new station; what was found before is not wanted any more.
  const bool isTyped = std::ranges::any_of(fields_, &QLineEdit::isModified);
  if (station == nullptr && isTyped) return;
  const StationTexts texts = station == nullptr ? StationTexts{} : TextsOf(*station);
  for (std::size_t i = 0; i < fields_.size(); ++i) fields_[i]->setText(ToQString(texts[i]));
}

Outcome<Station> StationEditor::FromFields() const {
  StationTexts texts;
  for (std::size_t i = 0; i < fields_.size(); ++i) texts[i] = fields_[i]->text().toStdString();
  return StationFrom(texts);
}

void StationEditor::Do(std::string_view done, std::optional<Fault> fault, const QString& search) {
  if (fault) return Say(fault->Detail);
  ++edits_;
  search_->setText(search);
  Search(search);
  Say(done);
}

std::string StationEditor::Typed() const {
  std::string text = Shortest(edits_);
  for (const QLineEdit* field : fields_) {
    if (field->isModified()) text += '\n' + field->text().toStdString();
  }
  return text;
}

void StationEditor::AddStation() {
  const Outcome<Station> station = FromFields();
  if (!station) return Say(station.Error().Detail);
  Do("added", list_.Add(station.Value()), fields_.front()->text());
}

void StationEditor::ChangeStation() {
  if (chosen_ < 0) return Say("choose a station first");
  const Outcome<Station> station = FromFields();
  if (!station) return Say(station.Error().Detail);
  Do("changed", list_.Change(chosen_, station.Value()), fields_.front()->text());
}

void StationEditor::DeleteStation() {
  if (chosen_ < 0) return Say("choose a station first");
  Do("deleted", list_.Delete(chosen_), search_->text());
}

void StationEditor::Say(std::string_view text) {
  remark_->setText(ToQString(text));
}

}  // namespace vexa
