#include "app/config_window.h"

#include <algorithm>
#include <optional>
#include <QDialogButtonBox>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QStatusTipEvent>
#include <QTabWidget>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "analysis/index_table.h"
#include "app/remark_label.h"
#include "app/side_tabs.h"
#include "app/sounding_window.h"
#include "config/catalogue.h"
#include "diagram/palette.h"

namespace vexa {
namespace {

constexpr FormTab kProgramTabs[] = {
    {"Tab 1", "Program/Tab 1"},
    {"Tab 2", "Program/Tab 2"},
    {"Tab 3", "Program/Tab 3"},
    {"Other", "Program/Other", true},
};

constexpr FormTab kDiagramTabs[] = {
    {"Tab 1 - Format", "Diagram/Tab 1"},
    {"Tab 2 - Pres & Temp", "Diagram/Tab 2"},
    {"Tab 3 - Reference Lines", "Diagram/Tab 3"},
    {"Tab 4 - Sounding Data", "Diagram/Tab 4"},
    {"Tab 5 - Analyses Data", "Diagram/Tab 5"},
    {"Tab 6 - Hodo", "Diagram/Tab 6"},
    {"Tab 7 - Standard Atmosphere", "Diagram/Tab 7"},
    {"Tab 8 - Custom lines", "Diagram/Tab 8"},
};

constexpr FormTab kSystemTabs[] = {{"System", "System"}};

constexpr FormRow kForms[] = {
    {"Config", "PROGRAM CONFIGURATIONS", kProgramTabs},
    {"Diagram", "DIAGRAM OPTIONS", kDiagramTabs},
    {"System", "SYSTEM OPTIONS", kSystemTabs},
};

constexpr int kRetryMs = 20;
constexpr int kPreviewMs = 60;  // values that change in quick succession are drawn once
constexpr QSize kSize{780, 560};

// A literal ampersand would mark a letter.
QString TabCaption(std::string_view caption) {
  return ToQString(caption).replace('&', QStringLiteral("&&"));
}

template <class S>
OptionField FieldOf(const SettingRow<S>& row, S& settings, std::string box,
                    std::function<bool(std::string_view)> read) {
  return {&row,
          std::move(box),
          [&row, &settings] { return row.Write(settings); },
          std::move(read),
          [&row, &settings] { row.Read(settings, row.Write(S{})); },
          [&row, &settings] { return row.Matters == nullptr || row.Matters(settings); }};
}

void OpenForm(const Opening& opening) {
  auto* shown = new ConfigWindow(
      opening.In, *FindForm(opening.Name),
      [over = &opening.Over](Changes changes) { over->Show(changes); }, &opening.Over);
  shown->setAttribute(Qt::WA_DeleteOnClose);
  shown->ShowPage(opening.At);
  shown->open();
}

}  // namespace

std::span<const FormRow> OptionForms() {
  return kForms;
}

std::span<const WindowRow> FormWindows() {
  static constexpr WindowRow kRows[] = {
      {kForms[0].Name, OpenForm}, {kForms[1].Name, OpenForm}, {kForms[2].Name, OpenForm}};
  static_assert(std::size(kRows) == std::size(kForms));
  return kRows;
}

const FormRow* FindForm(std::string_view name) {
  const auto* form = std::ranges::find(kForms, name, &FormRow::Name);
  return form == std::end(kForms) ? nullptr : form;
}

std::string_view FormOfPage(std::string_view place) {
  for (const FormRow& form : kForms) {
    if (std::ranges::find(form.Tabs, place, &FormTab::Place) != form.Tabs.end()) return form.Name;
  }
  return {};
}

ConfigWindow::ConfigWindow(Program& program, const FormRow& form, std::function<void(Changes)> show,
                           QWidget* parent)
    : QDialog(parent),
      program_(program),
      show_(std::move(show)),
      opened_(CurrentSettings(program)),
      draft_(opened_),
      form_(form) {
  setObjectName(ToQString(form.Name));
  setWindowTitle(ToQString(form.Title));
  tabs_ = form.Tabs.size() > 1 ? new SideTabs(this) : new QTabWidget(this);
  for (const FormTab& tab : form.Tabs) {
    pages_.push_back(MakePage(tab));
    tabs_->addTab(pages_.back(), TabCaption(tab.Caption));
  }
  message_ = new RemarkLabel(this);
  message_->setObjectName(QStringLiteral("FormMessage"));
  message_->setMinimumHeight(2 * message_->fontMetrics().lineSpacing());
  BuildButtons();
  auto* whole = new QVBoxLayout(this);
  whole->addWidget(tabs_, 1);
  whole->addWidget(message_);
  whole->addWidget(buttons_);
  preview_ = new QTimer(this);
  preview_->setSingleShot(true);
  connect(preview_, &QTimer::timeout, this, [this] { Preview(); });
  for (QWidget* control : findChildren<QWidget*>()) control->installEventFilter(this);
  resize(kSize);
}

OptionPage* ConfigWindow::MakePage(const FormTab& tab) {
  std::vector<OptionField> fields;
  for (const OptionRow& row : Catalogue()) {
    if (row.Place != tab.Place) continue;
    const std::string box = row.Element > 0 ? "Line #" + std::to_string(row.Element) : "";
    fields.push_back(FieldOf(row, draft_.Set, box, [this, &row](std::string_view text) {
      return ChangeOption(draft_.Set, row, text);
    }));
  }
  if (tab.ShowsConfigurations) {
    for (const SettingRow<SystemSettings>& row : RowsOf(draft_.System)) {
      if (row.Hint.empty()) continue;  // not for forms
      fields.push_back(
          FieldOf(row, draft_.System, "Configurations",
                  [this, &row](std::string_view text) { return row.Read(draft_.System, text); }));
    }
  }
  PageEvents events;
  events.Changed = [this] { Edited(); };
  events.Refused = [this](const QString& text, QWidget* at) {
    Say(text, true);
    QToolTip::showText(at->mapToGlobal(QPoint(0, at->height())), text, at);
  };
  events.Swatch = [this](int index) {
    const Color color = diagram::PaletteFor(draft_.Set).Indexed[static_cast<std::size_t>(index)];
    return QColor(color.Red, color.Green, color.Blue);
  };
  events.PressureUnit = analysis::PressureWord(draft_.Set.Pressure);
  return new OptionPage(std::move(fields), std::move(events), this);
}

void ConfigWindow::BuildButtons() {
  using Buttons = QDialogButtonBox;
  buttons_ =
      new Buttons(Buttons::Ok | Buttons::Apply | Buttons::Cancel | Buttons::RestoreDefaults, this);
  buttons_->button(Buttons::Apply)->setText(QStringLiteral("&Apply"));
  buttons_->button(Buttons::RestoreDefaults)
      ->setText(QStringLiteral("Restore &Defaults of This Tab"));
  buttons_->button(Buttons::RestoreDefaults)->setObjectName(QStringLiteral("RestoreDefaults"));
  connect(buttons_, &Buttons::accepted, this, [this] { accept(); });
  connect(buttons_, &Buttons::rejected, this, [this] { reject(); });
  connect(buttons_->button(Buttons::Apply), &QPushButton::clicked, this, [this] { Apply(); });
  connect(buttons_->button(Buttons::RestoreDefaults), &QPushButton::clicked, this,
          [this] { RestoreDefaults(); });
}

// While a command draws, the settings that it draws from must stay; it is stopped, since what it
// draws is out of date.
template <class Then>
void ConfigWindow::WhenIdle(Then then) {
  if (program_.Gate.IsOpen()) return then();
  program_.Gate.Stop();
  QTimer::singleShot(kRetryMs, this, [this, then] { WhenIdle(then); });
}

void ConfigWindow::Edited() {
  const std::optional<Fault> wrong = CheckOptions(draft_.Set);
  for (const auto kind : {QDialogButtonBox::Ok, QDialogButtonBox::Apply}) {
    buttons_->button(kind)->setEnabled(!wrong);
  }
  Say(wrong ? ToQString(wrong->Detail + ".") : QString(), wrong.has_value());
  if (!wrong) preview_->start(kPreviewMs);
}

void ConfigWindow::Preview() {
  WhenIdle([this] {
    if (CheckOptions(draft_.Set)) return;
    if (const std::optional<Changes> changes = AdoptSettings(program_, draft_)) show_(*changes);
  });
}

void ConfigWindow::Apply() {
  WhenIdle([this] {
    preview_->stop();
    Preview();
    wasApplied_ = true;
    if (KeepSettings(program_)) Say(QStringLiteral("The settings have been saved."), false);
  });
}

void ConfigWindow::ShowPage(std::string_view place) {
  const auto tab = std::ranges::find(form_.Tabs, place, &FormTab::Place);
  if (tab != form_.Tabs.end()) tabs_->setCurrentIndex(static_cast<int>(tab - form_.Tabs.begin()));
}

void ConfigWindow::accept() {
  if (CheckOptions(draft_.Set)) return;
  WhenIdle([this] {
    preview_->stop();
    Preview();
    KeepSettings(program_);
    QDialog::accept();
  });
}

void ConfigWindow::reject() {
  WhenIdle([this] {
    preview_->stop();
    draft_ = opened_;
    Preview();
    if (wasApplied_) KeepSettings(program_);
    QDialog::reject();
  });
}

void ConfigWindow::RestoreDefaults() {
  pages_[static_cast<std::size_t>(tabs_->currentIndex())]->RestoreDefaults();
  Edited();
}

void ConfigWindow::Say(const QString& text, bool isWrong) {
  QPalette colors = palette();
  if (isWrong) colors.setColor(QPalette::WindowText, QColor(176, 0, 0));
  message_->setPalette(colors);
  message_->setText(text);
}

// Enter in a field takes the field's value, which may be refused; it does not close the form, too.
void ConfigWindow::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isEnter && qobject_cast<QPushButton*>(focusWidget()) == nullptr) {
    event->accept();
    return;
  }
  QDialog::keyPressEvent(event);
}

// Hints stand below the page, too, for those who come with the keyboard.
bool ConfigWindow::event(QEvent* event) {
  if (event->type() == QEvent::StatusTip) {
    const QString tip = static_cast<QStatusTipEvent*>(event)->tip();
    if (!tip.isEmpty() && !CheckOptions(draft_.Set)) Say(tip, false);
    return true;
  }
  return QDialog::event(event);
}

bool ConfigWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    const auto* control = qobject_cast<QWidget*>(watched);
    while (control != nullptr && control != this && control->statusTip().isEmpty()) {
      control = control->parentWidget();
    }
    const bool hasHint = control != nullptr && control != this;
    if (hasHint && !CheckOptions(draft_.Set)) Say(control->statusTip(), false);
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace vexa
