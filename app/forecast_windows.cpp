#include "app/forecast_windows.h"

#include <algorithm>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include "app/drag_view.h"
#include "app/qt_text.h"
#include "app/sounding_window.h"
#include "app/widget_surface.h"
#include "core/files.h"
#include "core/numbers.h"
#include "forecast/listings.h"

namespace vexa {
namespace {

using forecast::ForecastMode;
using forecast::Spread;

constexpr QSize kUsualForecast(1120, 820);
constexpr QSize kUsualMap(900, 720);
constexpr QSize kAround(20, 40);  // the window's frame

QString BrowseForFolder(QWidget* parent, const char* title, const QString& from) {
  return QFileDialog::getExistingDirectory(parent, QString::fromUtf8(title), from);
}

std::string FolderShown(const Program& program) {
  const std::string& chosen = program.Displays.Of<ForecastView>().Set.SaveFolder;
  return chosen.empty() ? TextFromPath(program.Where.Forecast) : chosen;
}

QString AutoSaveCaption(bool isOn) {
  return isOn ? QStringLiteral("Auto-save ON  (Click to turn OFF)")
              : QStringLiteral("Auto-save OFF");
}

}  // namespace

ForecastHodo::ForecastHodo(Program& program, const DisplayRow& row, Events events, QWidget* parent)
    : DisplayWindow(program, row, std::move(events), parent) {
  room_ = view_;
  room_->installEventFilter(this);
  status_ = new QLabel(this);
  status_->setObjectName(QStringLiteral("lblStatus"));
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  lists_ = new QPlainTextEdit(this);
  lists_->setObjectName(QStringLiteral("lstSoundings"));
  lists_->setAccessibleName(QStringLiteral("Nearby and upwind soundings"));
  lists_->setReadOnly(true);
  lists_->setTabChangesFocus(true);
  lists_->setLineWrapMode(QPlainTextEdit::NoWrap);
  lists_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  constexpr int kRowsShown = 9;  // two near, none upwind
  lists_->setMinimumHeight(kRowsShown * lists_->fontMetrics().lineSpacing());
  auto* upper = new QWidget(this);
  auto* parts = new QHBoxLayout(upper);
  parts->setContentsMargins(0, 0, 0, 0);
  parts->addWidget(BuildForm());
  parts->addWidget(view_, 1);
  auto* split = new QSplitter(Qt::Vertical, this);
  split->addWidget(upper);
  split->addWidget(lists_);
  split->setStretchFactor(0, 3);
  split->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 4);
  layout->addWidget(split, 1);
  layout->addWidget(status_);
  resize(kUsualForecast.boundedTo(screen()->availableSize() - kAround));
  Follow();
}

ForecastHodo::~ForecastHodo() = default;

QPushButton* ForecastHodo::AddButton(const char* name, const char* caption,
                                     std::function<void()> does) {
  auto* button = new QPushButton(QString::fromUtf8(caption), this);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, std::move(does));
  return button;
}

QLineEdit* ForecastHodo::AddEntry(const char* name, const char* caption, Entry entry) {
  auto* line = new QLineEdit(this);
  line->setObjectName(QString::fromLatin1(name));
  line->setAccessibleName(QString::fromUtf8(caption));
  line->setMaximumWidth(90);
  entry.Line = line;
  const std::size_t at = entries_.size();
  entries_.push_back(std::move(entry));
  connect(line, &QLineEdit::editingFinished, this, [this, at] { Take(entries_[at]); });
  return line;
}

// A refused entry is told and the value before it stays.
void ForecastHodo::Take(Entry& entry) {
  const std::string text = entry.Line->text().trimmed().toStdString();
  if (text == entry.Text()) return;
  const std::optional<Box> box = entry.Take(text);
  const QSignalBlocker silent(entry.Line);
  entry.Line->setText(ToQString(entry.Text()));
  if (box && program_.Current.Ask != nullptr) program_.Current.Ask->Ask(*box);
  SaveForecastSettings(program_);
}

void ForecastHodo::BuildLayers(QGridLayout& form) {
  const auto add = [&](int row, const char* check, const char* name, const char* caption,
                       bool forecast::ForecastSettings::*uses,
                       double forecast::ForecastSettings::*depth) {
    auto* box = new QCheckBox(QString::fromUtf8(caption), this);
    box->setObjectName(QString::fromLatin1(check));
    connect(box, &QCheckBox::clicked, this, [this, uses](bool on) {
      ForecastViewOf(program_).Set.*uses = on;
      SaveForecastSettings(program_);
    });
    shows_.emplace_back([this, box, uses] { box->setChecked(ForecastViewOf(program_).Set.*uses); });
    form.addWidget(box, row, 0);
    form.addWidget(
        AddEntry(name, caption,
                 {.Text = [this, depth] { return Shortest(ForecastViewOf(program_).Set.*depth); },
                  .Take =
                      [this, depth](std::string_view text) {
                        return forecast::EnterDepth(text, ForecastViewOf(program_).Set.*depth);
                      }}),
        row, 1);
    form.addWidget(new QLabel(QStringLiteral("m, AGL"), this), row, 2);
  };
  add(1, "chkMainLayer", "txtMainLayer", "&Main-Layer", &forecast::ForecastSettings::UsesMain,
      &forecast::ForecastSettings::MainDepth);
  add(2, "chkBoundaryLayer", "txtBoundaryLayer", "&Boundary-Layer",
      &forecast::ForecastSettings::UsesBoundary, &forecast::ForecastSettings::BoundaryDepth);
}

void ForecastHodo::BuildSurface(QGridLayout& form) {
  const auto add = [&](int row, const char* caption, QLineEdit* line, const char* unit) {
    auto* label = new QLabel(QString::fromUtf8(caption), this);
    label->setBuddy(line);
    form.addWidget(label, row, 0);
    form.addWidget(line, row, 1);
    form.addWidget(new QLabel(QString::fromUtf8(unit), this), row, 2);
  };
  const auto set = [this]() -> forecast::ForecastSettings& { return ForecastViewOf(program_).Set; };
  add(3, "Search &radius:",
      AddEntry("txtRadius", "Search radius",
               {.Text = [set] { return Shortest(set().RadiusKm); },
                .Take =
                    [this, set](std::string_view text) {
                      auto box = forecast::EnterRadius(text, set().RadiusKm);
                      if (!box) FollowForecast(program_).IsSearched = false;
                      return box;
                    }}),
      "km");
  add(4, "&Percentage:",
      AddEntry("txtPercentage", "Percentage",
               {.Text = [set] { return Shortest(set().Percentage); },
                .Take =
                    [set](std::string_view text) {
                      return forecast::EnterPercentage(text, set().Percentage);
                    }}),
      "%");
  add(5,
      "Surface Temp &change (\xC2\xB0"
      "C/hr):",
      AddEntry("txtSurface", "Surface Temp change",
               {.Text = [set] { return Shortest(set().SurfaceChange); },
                .Take =
                    [set](std::string_view text) {
                      return forecast::EnterSurfaceChange(text, set().SurfaceChange);
                    }}),
      "");
}

QWidget* ForecastHodo::BuildForm() {
  auto* panel = new QWidget(this);
  auto* column = new QVBoxLayout(panel);
  auto* form = new QGridLayout;
  const auto addChoice = [&](int row, const char* name, const char* caption, auto words,
                             auto forecast::ForecastSettings::*member) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromLatin1(name));
    for (const std::string_view word : words) box->addItem(ToQString(word));
    auto* label = new QLabel(QString::fromUtf8(caption), this);
    label->setBuddy(box);
    box->setAccessibleName(label->text().remove(QLatin1Char('&')));
    connect(box, &QComboBox::activated, this, [this, member](int at) {
      auto& value = ForecastViewOf(program_).Set.*member;
      value = static_cast<std::remove_reference_t<decltype(value)>>(at);
      SaveForecastSettings(program_);
    });
    shows_.emplace_back([this, box, member] {
      box->setCurrentIndex(static_cast<int>(ForecastViewOf(program_).Set.*member));
    });
    form->addWidget(label, row, 0);
    form->addWidget(box, row, 1, 1, 2);
  };
  addChoice(0, "cboMode", "M&ode:", Words(ForecastMode{}), &forecast::ForecastSettings::Mode);
  BuildLayers(*form);
  BuildSurface(*form);
  addChoice(6, "cboSpread", "Spread up&wards:", Words(Spread{}),
            &forecast::ForecastSettings::SurfaceSpread);
  column->addLayout(form);
  BuildSteps(*column);
  column->addStretch(1);
  auto* around = new QScrollArea(this);
  around->setWidget(panel);
  around->setWidgetResizable(true);
  around->setFrameShape(QFrame::NoFrame);
  around->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  around->setFixedWidth(panel->sizeHint().width() + 24);
  return around;
}

void ForecastHodo::BuildSteps(QVBoxLayout& column) {
  auto* about = new QLabel(QStringLiteral("&Edit optional sounding description:"), this);
  description_ = new QLineEdit(this);
  description_->setObjectName(QStringLiteral("txtDescription"));
  description_->setMaxLength(kMaxTitle);
  about->setBuddy(description_);
  connect(description_, &QLineEdit::textEdited, this, [this](const QString& text) {
    ForecastViewOf(program_).Description = text.trimmed().toStdString();
  });
  column.addWidget(about);
  column.addWidget(description_);
  column.addWidget(AddButton("cmdFolder", "Search &in folder...", [this] {
    ForecastView& view = ForecastViewOf(program_);
    const QString chosen =
        BrowseForFolder(this, "Folder of soundings to search", ToQString(view.Set.SearchFolder));
    if (chosen.isEmpty()) return;
    view.Set.SearchFolder = chosen.toStdString();
    view.IsSearched = false;
    SaveForecastSettings(program_);
    ShowState();
  }));
  column.addWidget(AddButton("cmdSearch", "&Search for soundings", [this] {
    commands::SearchSoundings(program_);
    Changed({.View = true});
  }));
  column.addWidget(AddButton("cmdMap", "Forecast m&ap...", [this] {
    if (!ForecastViewOf(program_).IsSearched) commands::SearchSoundings(program_);
    ShowState();
    events_.Open("ForecastMap", "");
  }));
  column.addWidget(
      AddButton("cmdForecast", "&Forecast", [this] { Changed(commands::StepForecast(program_)); }));
  auto* line = new QHBoxLayout;
  auto* label = new QLabel(QStringLiteral("&Hour shown:"), this);
  hour_ = new QSpinBox(this);
  hour_->setObjectName(QStringLiteral("spnHour"));
  hour_->setSuffix(QStringLiteral(" hrs"));
  hour_->setKeyboardTracking(false);
  label->setBuddy(hour_);
  connect(hour_, &QSpinBox::valueChanged, this, [this](int hour) {
    Changed(commands::ShowForecastHour(program_, static_cast<std::size_t>(hour)));
  });
  line->addWidget(label);
  line->addWidget(hour_);
  column.addLayout(line);
  column.addWidget(AddButton("cmdRestart", "&New series",
                             [this] { Changed(commands::RestartForecast(program_)); }));
  autoSave_ = AddButton("cmdAutoSave", "", [this] {
    forecast::ForecastSettings& set = ForecastViewOf(program_).Set;
    if (!set.AutoSave) return events_.Open("ForecastAutoSave", "");
    set.AutoSave = false;
    SaveForecastSettings(program_);
    ShowState();
  });
  column.addWidget(autoSave_);
}

void ForecastHodo::Changed(Changes changes) {
  if (changes.Any()) events_.Changed(changes);
  Follow();
}

void ForecastHodo::Follow() {
  FollowForecast(program_);
  ShowState();
  Draw();
}

void ForecastHodo::ShowState() {
  const ForecastView& view = ForecastViewOf(program_);
  for (const auto& show : shows_) show();
  for (const Entry& entry : entries_) {
    if (!entry.Line->hasFocus()) entry.Line->setText(ToQString(entry.Text()));
  }
  if (!description_->hasFocus()) description_->setText(ToQString(view.Description));
  const QSignalBlocker silent(hour_);
  hour_->setRange(0, static_cast<int>(view.Series.Steps().size()));
  hour_->setValue(static_cast<int>(view.Shown));
  hour_->setEnabled(!view.Series.Steps().empty());
  // Turned on in the form that says where, turned off at once.
  autoSave_->setText(view.Set.AutoSave ? AutoSaveCaption(true) : AutoSaveCaption(false) + "...");
  autoSave_->setToolTip(view.Set.AutoSave ? "In " + ToQString(FolderShown(program_)) : QString());
  status_->setText(ToQString(ForecastStatus(view)));
  std::string text;
  for (const std::string& row : ListForecast(program_)) text += row + "\n";
  if (lists_->toPlainText() != ToQString(text)) lists_->setPlainText(ToQString(text));
}

void ForecastHodo::Draw() {
  view_->Show(nullptr);  // the picture that it shows is about to go
  page_ = PlotForecastHodo({program_, program_.Set}, SurfaceOf(*room_));
  view_->Show(&page_);
}

ForecastMap::ForecastMap(Program& program, const DisplayRow& row, Events events, QWidget* parent)
    : MapWindow(program, row, std::move(events), parent) {
  auto* bar = new QMenuBar(this);
  QMenu* upwind = bar->addMenu(QStringLiteral("&Upwind"));
  QAction* restore = upwind->addAction(QStringLiteral("&Restore"), this, [this] {
    commands::RestoreUpwind(program_);
    events_.Changed({.View = true});
    Follow();
  });
  restore->setObjectName(QStringLiteral("mnuRestoreUpwind"));
  layout()->setMenuBar(bar);
  view_->setToolTip(ToQString(std::string(Trim(forecast::kManualText)) +
                              "\nShift and a drag move the map, the wheel enlarges it."));
  Tell(std::string(Trim(forecast::kManualText)));
  resize(kUsualMap.boundedTo(screen()->availableSize() - kAround));
  Follow();
}

void ForecastMap::Follow() {
  FollowForecast(program_);
  MapWindow::Follow();
}

map::AreaMap ForecastMap::Map(const Surface& on, const map::MapFrame* frame) {
  return ForecastMapOf(program_, program_.Set, on, frame);
}

std::string ForecastMap::TextAt(vexa::Point at) const {
  const forecast::Region& around = program_.Displays.Of<ForecastView>().Series.Around();
  const auto under = around.Main ? NeighbourAt(around, Frame(), at) : std::nullopt;
  return under ? ListRow(around.Near[*under], *under + 1) : MapWindow::TextAt(at);
}

bool ForecastMap::Grasp(vexa::Point at) {
  const bool moves = View().PressedWith().testFlag(Qt::ShiftModifier);
  if (moves || !ForecastViewOf(program_).IsSearched || !Frame().IsValid()) return false;
  pressed_ = at;
  return true;
}

// The first drag boxes winds, the second draws the line from the station.
void ForecastMap::DragTo(vexa::Point at) {
  forecast::MapDrawing& drawing = ForecastViewOf(program_).Drawing;
  if (drawing.Boxed.empty()) {
    drawing.Box = Rect{pressed_.X, pressed_.Y, at.X, at.Y};
  } else {
    drawing.LineTo = at;
  }
  Draw();
}

void ForecastMap::Release(vexa::Point at, bool moved) {
  forecast::MapDrawing& drawing = ForecastViewOf(program_).Drawing;
  if (!moved) return;
  const forecast::Region& around = ForecastViewOf(program_).Series.Around();
  if (drawing.Boxed.empty()) {
    drawing.Box.reset();
    drawing.Boxed = NeighboursIn(around, Frame(), {pressed_.X, pressed_.Y, at.X, at.Y});
    drawing.Told = drawing.Boxed.empty() ? forecast::kBoxAgainText : forecast::kDragLineText;
    return Draw();
  }
  const std::optional<double> bearing = BearingTo(around, Frame(), at);
  const std::vector<std::size_t> boxed = std::exchange(drawing, {}).Boxed;
  if (bearing) commands::ChooseUpwindByHand(program_, boxed, *bearing);
  events_.Changed({.View = true});
  Draw();
}

void ForecastMap::Escape() {
  forecast::MapDrawing& drawing = ForecastViewOf(program_).Drawing;
  if (!drawing.Box && drawing.Boxed.empty()) return MapWindow::Escape();
  drawing = {};
  Draw();
}

ForecastAutoSave::ForecastAutoSave(Program& program, std::function<void()> changed, QWidget* parent)
    : QDialog(parent), program_(program), changed_(std::move(changed)) {
  setObjectName(QStringLiteral("ForecastAutoSave"));
  setWindowTitle(QStringLiteral("Forecast Auto-Save"));
  auto* label = new QLabel(QStringLiteral("&Forecast sounding data folder:"), this);
  folder_ = new QLineEdit(this);
  folder_->setObjectName(QStringLiteral("txtFolder"));
  folder_->setMinimumWidth(380);
  label->setBuddy(folder_);
  connect(folder_, &QLineEdit::editingFinished, this, [this] {
    if (folder_->text().toStdString() == FolderShown(program_)) return;
    ForecastViewOf(program_).Set.SaveFolder = folder_->text().trimmed().toStdString();
    SaveForecastSettings(program_);
    ShowState();
  });
  auto* browse = new QPushButton(QStringLiteral("&Browse..."), this);
  browse->setObjectName(QStringLiteral("cmdBrowse"));
  connect(browse, &QPushButton::clicked, this, [this] {
    const QString chosen =
        BrowseForFolder(this, "Browse for Forecast Sounding Data Folder", folder_->text());
    if (chosen.isEmpty()) return;
    ForecastViewOf(program_).Set.SaveFolder = chosen.toStdString();
    SaveForecastSettings(program_);
    ShowState();
  });
  switch_ = new QPushButton(this);
  switch_->setObjectName(QStringLiteral("cmdSwitch"));
  switch_->setCheckable(true);
  connect(switch_, &QPushButton::clicked, this, [this](bool on) {
    ForecastViewOf(program_).Set.AutoSave = on;
    SaveForecastSettings(program_);
    ShowState();
    changed_();
  });
  auto* about = new QLabel(
      QStringLiteral("Each hour is saved as a native sounding file, and all of them as a time "
                     "series (CSV) beside it."),
      this);
  about->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  auto* line = new QHBoxLayout;
  line->addWidget(folder_, 1);
  line->addWidget(browse);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(about);
  layout->addWidget(label);
  layout->addLayout(line);
  layout->addWidget(switch_);
  layout->addWidget(buttons);
  ShowState();
}

void ForecastAutoSave::ShowState() {
  const bool isOn = ForecastViewOf(program_).Set.AutoSave;
  folder_->setText(ToQString(FolderShown(program_)));
  switch_->setChecked(isOn);
  switch_->setText(AutoSaveCaption(isOn));
}

namespace {

void OpenForecastAutoSave(const Opening& opening) {
  auto* window = new ForecastAutoSave(
      opening.In, [over = &opening.Over] { over->FollowDisplays(); }, &opening.Over);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->open();
}

constexpr WindowRow kForecastWindows[] = {
    {.Name = "ForecastAutoSave", .Open = OpenForecastAutoSave}};

}  // namespace

std::span<const WindowRow> ForecastWindows() {
  return kForecastWindows;
}

}  // namespace vexa
