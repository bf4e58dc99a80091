#include "app/section_dialogs.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "app/qt_text.h"
#include "core/numbers.h"

namespace vexa {

using crosssection::FieldRow;
using crosssection::IntervalSettings;
using crosssection::SectionOptions;

DiagramX::DiagramX(const SectionOptions& options, std::function<void(const SectionOptions&)> apply,
                   QWidget* parent)
    : QDialog(parent), set_(options), before_(options), apply_(std::move(apply)) {
  setObjectName(QStringLiteral("DiagramX"));
  setWindowTitle(QStringLiteral("Cross-Section Diagram Options"));
  auto* tabs = new QTabWidget(this);
  std::map<std::string_view, QFormLayout*> forms;
  for (const SettingRow<SectionOptions>& row : crosssection::SectionOptionRows()) {
    QFormLayout*& form = forms[row.Place];
    if (form == nullptr) {
      auto* page = new QWidget(tabs);
      form = new QFormLayout(page);
      tabs->addTab(page, ToQString(row.Place));
    }
    const OptionControl control = MakeOptionControl(
        row, {.Entered = [this, &row](const std::string& text) { row.Read(set_, text); }}, this);
    shows_.emplace_back([this, &row, control] { control.Show(row.Write(set_)); });
    if (control.ShowsCaption) {
      control.Name(ToQString(row.Caption));
      form->addRow(control.Widget);
    } else {
      form->addRow(ToQString(row.Caption), control.Widget);
    }
  }
  ShowAll();
  auto* buttons = new QDialogButtonBox(this);
  auto* take = buttons->addButton(QStringLiteral("Apply"), QDialogButtonBox::ApplyRole);
  take->setObjectName(QStringLiteral("cmdApply"));
  auto* undo = buttons->addButton(QStringLiteral("UNDO"), QDialogButtonBox::ResetRole);
  undo->setObjectName(QStringLiteral("cmdUndo"));
  buttons->addButton(QDialogButtonBox::Close);
  connect(take, &QPushButton::clicked, this, [this] { apply_(set_); });
  connect(undo, &QPushButton::clicked, this, [this] {
    set_ = before_;
    ShowAll();
    apply_(set_);
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tabs);
  layout->addWidget(buttons);
}

void DiagramX::ShowAll() {
  for (const auto& show : shows_) show();
}

IntervalSet::IntervalSet(const IntervalSettings& intervals,
                         const crosssection::FieldContext& context,
                         std::function<void(const IntervalSettings&)> apply, QWidget* parent)
    : QDialog(parent), apply_(std::move(apply)) {
  setObjectName(QStringLiteral("IntervalSet"));
  setWindowTitle(QStringLiteral("Interval Settings"));
  auto* inside = new QWidget(this);
  auto* form = new QFormLayout(inside);
  for (const FieldRow& field : crosssection::Fields()) {
    if (field.Kind != crosssection::FieldKind::Contoured) continue;
    auto* line = new QLineEdit(inside);
    line->setObjectName(ToQString("txt" + std::string(field.Code)));
    line->setPlaceholderText(ToQString(Shortest(UsualInterval(field, context))));
    if (const auto chosen = intervals.Chosen.find(field.Code); chosen != intervals.Chosen.end()) {
      line->setText(ToQString(Shortest(chosen->second)));
    }
    const std::string unit = UnitOf(field, context);
    form->addRow(ToQString(std::string(field.Button) + (unit.empty() ? "" : " (" + unit + ")")),
                 line);
    lines_[std::string(field.Code)] = line;
  }
  auto* around = new QScrollArea(this);
  around->setWidget(inside);
  around->setWidgetResizable(true);
  auto* buttons = new QDialogButtonBox(
      QDialogButtonBox::Apply | QDialogButtonBox::Close | QDialogButtonBox::RestoreDefaults, this);
  connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this,
          [this] { Apply(); });
  connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this, [this] {
    for (const auto& [code, line] : lines_) line->clear();
    Apply();
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(around);
  layout->addWidget(buttons);
  resize(360, 480);
}

// What is no interval keeps the focus and is told beside it; nothing is taken then.
void IntervalSet::Apply() {
  IntervalSettings set;
  for (const auto& [code, line] : lines_) {
    const std::string text = line->text().trimmed().toStdString();
    line->setToolTip({});
    if (text.empty()) continue;
    const Outcome<double> interval = crosssection::IntervalFrom(text);
    if (!interval) {
      line->setToolTip(ToQString(interval.Error().Detail));
      line->selectAll();
      line->setFocus();
      return;
    }
    set.Chosen[code] = interval.Value();
  }
  apply_(set);
}

}  // namespace vexa
