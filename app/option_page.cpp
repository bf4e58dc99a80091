#include "app/option_page.h"

#include "core/letter_case.h"

#include <cctype>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

namespace vexa {
namespace {

// Letters of the form's own buttons.
constexpr char kApplyLetter = 'a';
constexpr char kDefaultsLetter = 'd';

}  // namespace

OptionPage::OptionPage(std::vector<OptionField> fields, PageEvents events, QWidget* parent)
    : QScrollArea(parent),
      fields_(std::move(fields)),
      events_(std::move(events)),
      letters_{kApplyLetter, kDefaultsLetter} {
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  auto* content = new QWidget(this);
  auto* whole = new QVBoxLayout(content);
  QFormLayout* column = nullptr;
  const std::string* box = nullptr;
  for (const OptionField& field : fields_) {
    if (box == nullptr || *box != field.Box) {
      box = &field.Box;
      QWidget* in = content;
      if (!box->empty()) in = new QGroupBox(ToQString(*box), content);
      column = box->empty() ? new QFormLayout() : new QFormLayout(in);
      if (box->empty()) {
        whole->addLayout(column);
      } else {
        whole->addWidget(in);
      }
    }
    AddField(field, *column);
  }
  whole->addStretch(1);
  setWidget(content);
  ShowValues();
}

std::string_view OptionPage::UnitOf(const RowInfo& row) const {
  return row.Unit == "hPa" ? std::string_view(events_.PressureUnit) : row.Unit;
}

void OptionPage::AddField(const OptionField& field, QFormLayout& column) {
  const std::size_t index = controls_.size();
  RowInfo row = *field.Row;
  row.Unit = UnitOf(row);
  const auto refuse = [this, index] {
    const RowInfo& refused = *fields_[index].Row;
    events_.Refused(
        ToQString(std::string(refused.Caption) + " takes " + Accepts(refused) +
                  (refused.Unit.empty() ? "" : " " + std::string(UnitOf(refused))) + "."),
        controls_[index].Widget);
  };
  const auto enter = [this, index, refuse](const std::string& text) {
    const bool taken = fields_[index].Read(text);
    if (taken) {
      events_.Changed();
    } else {
      refuse();
    }
    ShowValues();
  };
  controls_.push_back(MakeOptionControl(row, {enter, refuse, events_.Swatch}, widget()));
  OptionControl& control = controls_.back();
  const QString caption = Lettered(row.Caption);
  if (control.ShowsCaption) {
    control.Name(caption);
    column.addRow(control.Widget);
    labels_.push_back(nullptr);
    return;
  }
  auto* label = new QLabel(caption);
  label->setToolTip(ToQString(row.Hint));
  label->setBuddy(control.Widget);
  column.addRow(label, control.Widget);
  labels_.push_back(label);
}

QString OptionPage::Lettered(std::string_view caption) {
  std::string text;
  bool isMarked = false;
  for (const char c : caption) {
    const char letter = Lower(c);
    if (!isMarked && std::isalnum(static_cast<unsigned char>(c)) != 0 &&
        letters_.insert(letter).second) {
      text += '&';
      isMarked = true;
    }
    text += c;
    if (c == '&') text += c;
  }
  return ToQString(text);
}

void OptionPage::ShowValues() {
  for (std::size_t i = 0; i < controls_.size(); ++i) {
    controls_[i].Show(fields_[i].Write());
    const bool matters = fields_[i].Matters();
    controls_[i].Widget->setEnabled(matters);
    if (labels_[i] != nullptr) labels_[i]->setEnabled(matters);
  }
}

void OptionPage::RestoreDefaults() {
  for (const OptionField& field : fields_) field.Restore();
  ShowValues();
}

}  // namespace vexa
