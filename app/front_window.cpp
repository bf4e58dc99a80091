#include "app/front_window.h"

#include <algorithm>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/drag_view.h"
#include "app/option_page.h"
#include "app/qt_text.h"
#include "app/sounding_window.h"
#include "app/widget_surface.h"
#include "fronts/front_text.h"
#include "program/front_displays.h"

namespace vexa {
namespace {

constexpr std::string_view kFrontDisplay = "Hodofront";
constexpr std::size_t kFrontTableHead = 3;  // lines of the table's heading

/// A setting of the form and the box it stands in.
struct FrontField {
  std::string_view Key;
  const char* Box;
};

constexpr FrontField kFrontFields[] = {{"thermal wind interval", "Thermal wind"},
                                       {"thermal wind mode", "Thermal wind"},
                                       {"frontal slope", "Front"},
                                       {"gradient threshold", "Front"},
                                       {"angular threshold", "Front"},
                                       {"lower frontal limit", "Front"},
                                       {"advection threshold", "Front"},
                                       {"front speed unit", "Units"},
                                       {"distance unit", "Units"}};

std::vector<OptionField> FrontFieldsOf(Program& program) {
  HodographSettings& settings = program.Settings.Hodograph;
  std::vector<OptionField> fields;
  for (const FrontField& field : kFrontFields) {
    const auto rows = RowsOf(settings);
    const auto row = std::ranges::find(rows, field.Key, &RowInfo::Key);
    const SettingRow<HodographSettings>* at = &*row;
    fields.push_back({at, field.Box, [at, &settings] { return at->Write(settings); },
                      [at, &settings](std::string_view text) { return at->Read(settings, text); },
                      [at, &settings] { at->Read(settings, at->Write({})); },
                      [at, &settings] { return at->Matters == nullptr || at->Matters(settings); }});
  }
  return fields;
}

void OpenFrontForm(const Opening& opening) {
  opening.Over.Open(kFrontDisplay);
}

constexpr WindowRow kFrontRows[] = {
    {.Name = "HodoFrontForm", .Open = OpenFrontForm, .Press = "cmdFrontForm"}};

}  // namespace

std::span<const WindowRow> FrontWindows() {
  return kFrontRows;
}

HodoFrontForm::HodoFrontForm(Program& program, std::function<void(Changes)> changed,
                             QWidget* parent)
    : QDialog(parent), program_(program), changed_(std::move(changed)) {
  setObjectName(QStringLiteral("HodoFrontForm"));
  auto* whole = new QVBoxLayout(this);
  whole->addWidget(BuildControl());
  auto* middle = new QHBoxLayout;
  PageEvents events;
  events.Changed = [this] { changed_({.View = true}); };
  events.Refused = [this](const QString& text, QWidget*) { message_->setText(text); };
  settings_ = new OptionPage(FrontFieldsOf(program_), std::move(events), this);
  settings_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  settings_->setMinimumWidth(settings_->widget()->sizeHint().width() +
                             settings_->verticalScrollBar()->sizeHint().width());
  middle->addWidget(settings_, 2);
  middle->addWidget(BuildLayers(), 3);
  whole->addLayout(middle, 1);
  message_ = new QLabel(this);
  message_->setObjectName(QStringLiteral("FormMessage"));
  message_->setWordWrap(true);
  whole->addWidget(message_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  whole->addWidget(buttons);
  constexpr QSize kUsual(780, 560);
  resize(kUsual);
  Follow();
}

QWidget* HodoFrontForm::BuildControl() {
  auto* group = new QGroupBox(QStringLiteral("Control"), this);
  auto* line = new QHBoxLayout(group);
  automatic_ = new QRadioButton(QStringLiteral("&Automatic"), group);
  automatic_->setObjectName(QStringLiteral("optAutomatic"));
  automatic_->setToolTip(QStringLiteral("The strongest zone, with the slope of its kind"));
  manual_ = new QRadioButton(QStringLiteral("&Manual"), group);
  manual_->setObjectName(QStringLiteral("optManual"));
  manual_->setToolTip(QStringLiteral("The layers that are chosen, with the slope that is set"));
  hold_ = new QCheckBox(QStringLiteral("&hold"), group);
  hold_->setObjectName(QStringLiteral("chkFormHold"));
  hold_->setToolTip(QStringLiteral("Keeps the front while the data change"));
  imageMode_ = new QCheckBox(QStringLiteral("&Image Mode"), group);
  imageMode_->setObjectName(QStringLiteral("chkFormImageMode"));
  imageMode_->setToolTip(QStringLiteral("Layers are chosen on the picture, too"));
  connect(automatic_, &QRadioButton::clicked, this,
          [this] { changed_(SetFrontControl(program_, FrontControl::Automatic)); });
  connect(manual_, &QRadioButton::clicked, this,
          [this] { changed_(SetFrontControl(program_, FrontControl::Manual)); });
  connect(hold_, &QCheckBox::clicked, this, [this](bool on) { changed_(HoldFront(program_, on)); });
  connect(imageMode_, &QCheckBox::clicked, this, [this](bool on) {
    program_.Displays.Of<FrontState>().ImageMode = on;
    changed_({.View = true});
  });
  for (QWidget* control : std::initializer_list<QWidget*>{automatic_, manual_, hold_, imageMode_}) {
    line->addWidget(control);
  }
  line->addStretch(1);
  return group;
}

QWidget* HodoFrontForm::BuildLayers() {
  auto* group = new QGroupBox(QStringLiteral("Layers: the chosen ones become the front"), this);
  auto* column = new QVBoxLayout(group);
  layers_ = new QListWidget(group);
  layers_->setObjectName(QStringLiteral("FrontLayers"));
  layers_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  layers_->setSelectionMode(QAbstractItemView::ContiguousSelection);
  connect(layers_, &QListWidget::itemSelectionChanged, this, [this] {
    int first = layers_->count(), last = -1;
    for (const QListWidgetItem* item : layers_->selectedItems()) {
      first = std::min(first, layers_->row(item));
      last = std::max(last, layers_->row(item));
    }
    if (last < 0) return;
    changed_(ChooseFrontLayers(program_, static_cast<std::size_t>(first),
                               static_cast<std::size_t>(last)));
  });
  column->addWidget(layers_);
  return group;
}

void HodoFrontForm::ShowLayers() {
  const fronts::FrontResults results = FrontsOf(program_);
  const HodographSettings& window = program_.Settings.Hodograph;
  const std::vector<std::string> lines =
      fronts::LayerTable({results, window.Front, program_.Set, window.Distance});
  const QSignalBlocker silent(layers_);
  const int count = static_cast<int>(results.Layers.size());
  while (layers_->count() > count) delete layers_->takeItem(layers_->count() - 1);
  while (layers_->count() < count) layers_->addItem(QString());
  for (int i = 0; i < count; ++i) {
    const auto layer = static_cast<std::size_t>(i);
    const fronts::FrontLayer& one = results.Layers[layer];
    const bool isOfFront = results.Found && one.Base >= results.Found->Zone.Whole.Base - 1 &&
                           one.Top <= results.Found->Zone.Whole.Top + 1;
    QListWidgetItem* item = layers_->item(i);
    item->setText(ToQString(lines[kFrontTableHead + layer]));
    item->setToolTip(ToQString(Text(one.Why)));
    item->setSelected(isOfFront);
  }
}

void HodoFrontForm::Follow() {
  const bool isImageMode = program_.Displays.Of<FrontState>().ImageMode;
  setWindowTitle(isImageMode ? QStringLiteral("Manual Hodo-Front Control Image Mode")
                             : QStringLiteral("Manual Hodo-Front Control"));
  const FrontSettings& settings = program_.Settings.Hodograph.Front;
  (settings.Control == FrontControl::Automatic ? automatic_ : manual_)->setChecked(true);
  hold_->setChecked(settings.Hold && FrontZoneInForce(program_));
  imageMode_->setChecked(isImageMode);
  settings_->ShowValues();
  message_->clear();
  ShowLayers();
}

FrontWindow::FrontWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent)
    : PlainDisplayWindow(program, row, std::move(events), parent) {
  // The texts speak of a button above.
  auto* whole = static_cast<QVBoxLayout*>(layout());
  QLayoutItem* controls = whole->takeAt(whole->count() - 1);
  auto* more = new QPushButton(QStringLiteral("Settings..."), this);
  more->setObjectName(QStringLiteral("cmdFrontForm"));
  more->setToolTip(QStringLiteral("Frontal and thermal wind options (F8)"));
  connect(more, &QPushButton::clicked, this, [this] { OpenForm(); });
  auto* line = static_cast<QHBoxLayout*>(controls->layout());
  line->insertWidget(line->count() - 1, more);
  whole->insertItem(0, controls);
  auto* options = new QShortcut(QKeySequence(Qt::Key_F8), this);
  options->setObjectName(QStringLiteral("F8Key"));
  connect(options, &QShortcut::activated, this, [this] { OpenForm(); });
  view_->OnPress = [this](vexa::Point at, QPointF) { return Press(at); };
  view_->OnDrag = [this](std::optional<vexa::Point> at, QPointF) { DragOver(at); };
}

void FrontWindow::Follow() {
  PlainDisplayWindow::Follow();
  if (form_ != nullptr) form_->Follow();
}

void FrontWindow::OpenForm() {
  if (form_ == nullptr) {
    form_ = new HodoFrontForm(program_, events_.Changed, this);
  }
  form_->Follow();
  form_->show();
  form_->raise();
  form_->activateWindow();
}

bool FrontWindow::Press(vexa::Point at) {
  view_->setFocus();
  first_.reset();
  last_.reset();
  if (!program_.Displays.Of<FrontState>().ImageMode || !program_.Gate.IsOpen()) return false;
  first_ = LayerAt(PlotFrontsOf(program_, program_.Set, SurfaceOf(*room_)), at);
  if (!first_) return false;
  last_ = first_;
  events_.Changed(ChooseFrontLayers(program_, *first_, *first_));
  return true;
}

void FrontWindow::DragOver(std::optional<vexa::Point> at) {
  if (!at || !first_) return;
  const auto to = LayerAt(PlotFrontsOf(program_, program_.Set, SurfaceOf(*room_)), *at);
  if (!to || to == last_) return;
  last_ = to;
  events_.Changed(ChooseFrontLayers(program_, *first_, *to));
}

}  // namespace vexa
