#include "app/cross_section_window.h"

#include <QAction>
#include <QActionGroup>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

#include "app/cross_section_x.h"
#include "app/drag_view.h"
#include "app/qt_text.h"
#include "app/section_dialogs.h"
#include "app/widget_surface.h"
#include "core/files.h"
#include "core/numbers.h"

namespace vexa {
namespace {

using crosssection::FieldRow;
using crosssection::SectionKind;

constexpr QSize kSmallestSection(760, 520);
constexpr QSize kMini(380, 300);
constexpr const char* kDatasetFilter = "Cross-Section DataSets (*.SEC)|*.SEC|All Files (*.*)|*.*";

}  // namespace

CrossSectionWindow::CrossSectionWindow(Program& program, const DisplayRow& row, Events events,
                                       QWidget* parent)
    : DisplayWindow(program, row, std::move(events), parent) {
  room_ = view_;
  room_->installEventFilter(this);
  readout_ = new QLabel(this);
  readout_->setObjectName(QStringLiteral("lblReadout"));
  readout_->setTextFormat(Qt::PlainText);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setMenuBar(BuildMenus());
  auto* parts = new QHBoxLayout;
  parts->addWidget(BuildSelector());
  parts->addWidget(view_, 1);
  layout->addLayout(parts, 1);
  layout->addWidget(readout_);
  view_->OnPointer([this](const std::optional<Point>& at) { Read(at); });
  view_->OnPress = [this](Point at, QPointF) {
    ShowMini(field_ ? ColumnAt(SectionViewOf(program_).Of, plot_.At, at) : std::nullopt);
    return false;
  };
  const crosssection::SectionState& state = SectionViewOf(program_).State;
  resize(QSize(state.Width, state.Height)
             .boundedTo(screen()->availableSize() - QSize(20, 40))
             .expandedTo(kSmallestSection));
  if (program_.Listed.Size() < 2) commands::RestoreSection(program_);
  Follow();
}

CrossSectionWindow::~CrossSectionWindow() {
  view_->OnPointer({});
  view_->OnPress = {};
  if (miniView_ != nullptr) miniView_->Show(nullptr);
}

void CrossSectionWindow::Add(QMenu& menu, const char* name, const char* caption, const char* key,
                             std::function<void()> does) {
  QAction* action = menu.addAction(QString::fromUtf8(caption));
  action->setObjectName(QString::fromLatin1(name));
  action->setShortcut(QKeySequence(QString::fromLatin1(key)));
  connect(action, &QAction::triggered, this, std::move(does));
}

QMenuBar* CrossSectionWindow::BuildMenus() {
  auto* bar = new QMenuBar(this);
  FillFileMenu(*bar->addMenu(QStringLiteral("&File")));
  FillSectionMenu(*bar->addMenu(QStringLiteral("&Section")));
  FillOptionsMenu(*bar->addMenu(QStringLiteral("&Options")));
  return bar;
}

void CrossSectionWindow::FillFileMenu(QMenu& file) {
  Add(file, "mnuOpen", "&Open DataSet...", "Ctrl+O", [this] { Open(); });
  Add(file, "mnuEditDataSet", "&Edit DataSet...", "", [this] { Edit(); });
  Add(file, "mnuSaveDataSet", "&Save DataSet...", "Ctrl+Shift+S", [this] { Save(); });
  recent_ = file.addMenu(QStringLiteral("&Recent DataSet"));
  recent_->menuAction()->setObjectName(QStringLiteral("mnuRecentFile"));
  Add(file, "mnuAutoLoad", "Auto-&Load This Cross-Section", "", [this] {
    commands::AutoLoadSection(program_);
    ShowControls();
  });
  autoLoad_ = file.actions().last();
  autoLoad_->setCheckable(true);
  Add(file, "mnuUpdateSection", "&Update Cross-Section...", "", [this] {
    const int added = commands::UpdateSection(program_);
    Changed();
    readout_->setText(ToQString(Shortest(added) + " soundings were added."));
  });
  update_ = file.actions().last();
  file.addSeparator();
  Add(file, "mnuCopy", "&Copy Image to ClipBoard", "", [this] { Press("mnuCopyPicture"); });
  Add(file, "mnuSaveImage", "Save &Image to File...", "", [this] { Press("mnuSavePicture"); });
  Add(file, "mnuPrint", "&Print Image...", "", [this] { Press("mnuPrintPicture"); });
  Add(file, "mnuListing", "Lis&ting...", "", [this] { Press("mnuPictureListing"); });
  file.addSeparator();
  Add(file, "mnuClose", "Cl&ose", "", [this] { close(); });
}

void CrossSectionWindow::FillSectionMenu(QMenu& section) {
  Add(section, "mnuCrossSectionX", "S&oundings and Time Span...", "F7",
      [this] { ShowSoundings(); });
  auto* kinds = new QActionGroup(this);
  const auto addKind = [&](const char* name, const char* caption, SectionKind kind) {
    Add(section, name, caption, "", [this, kind] {
      commands::ChooseKind(program_, kind);
      Changed();
    });
    QAction* action = section.actions().last();
    action->setCheckable(true);
    kinds->addAction(action);
    return action;
  };
  along_ = addKind("mnuDistance", "&Distance", SectionKind::Distance);
  inTime_ = addKind("mnuTime", "&Time", SectionKind::Time);
  Add(section, "FlipTime", "&Reverse", "Ctrl+R", [this] {
    commands::TurnSection(program_);
    Changed();
  });
  Add(section, "cmdInterpolate", "&Automatic Sounding Interpolation", "", [this] {
    commands::InterpolateSection(program_, interpolate_->isChecked());
    Changed();
  });
  interpolate_ = section.actions().last();
  interpolate_->setCheckable(true);
  Add(section, "TransferToSounding", "Show &Sounding in the Main Window", "Return",
      [this] { Transfer(); });
  Add(section, "TransferToAreaMapPlot", "Area &Map...", "Ctrl+M", [this] {
    SectionView& view = SectionViewOf(program_);
    view.OnMap = under_ ? view.Of.Columns[*under_].Order : 0;
    events_.Open("AreaMapForm", "");
    events_.Changed({.View = true});
  });
}

void CrossSectionWindow::FillOptionsMenu(QMenu& options) {
  Add(options, "mnuDiagramX", "&Diagram Options...", "F8", [this] {
    auto* form = new DiagramX(
        SectionViewOf(program_).Set,
        [this](const crosssection::SectionOptions& set) {
          SectionViewOf(program_).Set = set;
          Changed();
        },
        this);
    form->setAttribute(Qt::WA_DeleteOnClose);
    form->show();
  });
  Add(options, "mnuIntervalSet", "&Interval Settings...", "", [this] {
    const SectionView& view = SectionViewOf(program_);
    auto* form = new IntervalSet(
        view.Intervals, ContextOf(view.Of, view.Set),
        [this](const crosssection::IntervalSettings& set) {
          SectionViewOf(program_).Intervals = set;
          Changed();
        },
        this);
    form->setAttribute(Qt::WA_DeleteOnClose);
    form->show();
  });
  Add(options, "mnuRedraw", "&Redraw Analyses", "F5", [this] { Changed(); });
}

// A button for each field of the table.
QWidget* CrossSectionWindow::BuildSelector() {
  auto* inside = new QWidget(this);
  inside->setObjectName(QStringLiteral("ToolXSection"));
  auto* grid = new QGridLayout(inside);
  grid->setContentsMargins(4, 4, 4, 4);
  grid->setSpacing(3);
  int count = 0;
  for (const FieldRow& field : crosssection::Fields()) {
    auto* button = new QPushButton(ToQString(field.Short), inside);
    button->setObjectName(ToQString("cmd" + std::string(field.Code)));
    button->setAccessibleName(ToQString(field.Button));
    button->setToolTip(ToQString(field.Button));
    button->setCheckable(true);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, code = field.Code] { Choose(code); });
    buttons_[field.Code] = button;
    grid->addWidget(button, count / 2, count % 2);
    ++count;
  }
  grid->setRowStretch(count / 2 + 1, 1);
  auto* around = new QScrollArea(this);
  around->setWidget(inside);
  around->setWidgetResizable(true);
  around->setFrameShape(QFrame::NoFrame);
  around->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  around->setFixedWidth(inside->sizeHint().width() +
                        around->verticalScrollBar()->sizeHint().width());
  return around;
}

void CrossSectionWindow::Choose(std::string_view code) {
  commands::ChooseField(program_, code);
  Changed();
}

void CrossSectionWindow::Changed() {
  SaveSectionSettings(program_);
  ShowControls();
  Draw();
}

void CrossSectionWindow::Follow() {
  FollowSoundings(program_);
  ShowControls();
  Draw();
}

void CrossSectionWindow::ShowControls() {
  const SectionView& view = SectionViewOf(program_);
  for (const auto& [code, button] : buttons_) button->setChecked(code == view.State.Field);
  autoLoad_->setChecked(view.State.AutoLoad);
  autoLoad_->setEnabled(view.IsDataset || view.State.AutoLoad);
  inTime_->setChecked(view.Of.Kind == SectionKind::Time);
  along_->setChecked(view.Of.Kind == SectionKind::Distance);
  update_->setEnabled(view.Of.Kind == SectionKind::Time);
  interpolate_->setChecked(view.Interpolates);
  setWindowTitle(ToQString(view.Of.Name.empty() ? std::string("Cross-Section from Sounding")
                                                : "Cross-Section - " + view.Of.Name));
  recent_->clear();
  for (const std::string& dataset : view.State.Recent) {
    if (dataset.empty()) continue;
    recent_->addAction(ToQString(dataset), this, [this, dataset] {
      if (commands::OpenDataset(program_, PathFromText(dataset))) Changed();
    });
  }
  recent_->setEnabled(!recent_->isEmpty());
  std::string text = view.Why;
  for (const std::string& remark : view.Remarks) text += (text.empty() ? "" : "  ") + remark;
  readout_->setText(ToQString(text));
}

// The picture as its row draws it; what the pointer reads goes by the same mapping.
void CrossSectionWindow::Draw() {
  ShowMini(std::nullopt);
  const SectionView& view = SectionViewOf(program_);
  view_->Show(nullptr);  // the picture that it shows is about to go
  const Surface on = SurfaceOf(*room_);
  field_.reset();
  plot_ = {};
  const FieldRow* row = crosssection::FindField(view.State.Field);
  if (view.Why.empty() && !view.Of.Columns.empty()) {
    auto analysis = AnalyzeField(view.Of, row != nullptr ? *row : crosssection::Fields().front(),
                                 view.Set, view.Intervals);
    if (analysis) field_ = std::move(analysis.Value());
  }
  if (field_) {
    plot_ = crosssection::PlotSection({view.Of, view.Set, program_.Set, *field_}, on);
  } else {
    plot_.Page = PlotCrossSection({program_, program_.Set}, on);
  }
  view_->Show(&plot_.Page);
}

void CrossSectionWindow::Read(const std::optional<Point>& at) {
  const SectionView& view = SectionViewOf(program_);
  under_.reset();
  if (!at || !field_) return;
  under_ = ColumnAt(view.Of, plot_.At, *at);
  if (!under_) return;
  readout_->setText(
      ToQString(crosssection::SoundingLine(view.Of.Columns[*under_]) + "     " +
                ReadSection({view.Of, view.Set, program_.Set, *field_}, plot_.At, *at)));
}

std::optional<std::filesystem::path> CrossSectionWindow::ChosenDataset(const char* title) {
  if (program_.Current.Ask == nullptr) return std::nullopt;
  const auto chosen =
      program_.Current.Ask->ChooseFile({.Title = title,
                                        .Folder = TextFromPath(program_.Where.CrossSection),
                                        .Filter = kDatasetFilter});
  if (!chosen) return std::nullopt;
  return PathFromText(*chosen);
}

void CrossSectionWindow::Open() {
  const auto path = ChosenDataset("Open Cross-Section DataSet");
  if (path && commands::OpenDataset(program_, *path)) Changed();
}

void CrossSectionWindow::Edit() {
  const auto path = ChosenDataset("Edit Cross-Section DataSet");
  if (!path || !commands::OpenDataset(program_, *path, commands::DatasetUse::Edit)) return;
  Changed();
  ShowSoundings();
}

void CrossSectionWindow::ShowSoundings() {
  auto* form = new CrossSectionX(
      program_,
      [this] {
        Changed();
        events_.Changed({.View = true});  // the map
      },
      [this] { Save(); }, this);
  form->setAttribute(Qt::WA_DeleteOnClose);
  form->show();
}

void CrossSectionWindow::Press(const char* entry) {
  if (auto* action = findChild<QAction*>(QString::fromLatin1(entry))) action->trigger();
}

void CrossSectionWindow::ShowMini(std::optional<std::size_t> column) {
  miniOf_ = column;
  if (mini_ == nullptr) {
    if (!column) return;
    mini_ = new QFrame(view_);
    mini_->setObjectName(QStringLiteral("MiniSounding"));
    mini_->setFrameShape(QFrame::Box);
    mini_->setAutoFillBackground(true);
    miniView_ = new DiagramView(mini_);
    miniView_->setMinimumSize(kMini);
    auto* expand = new QPushButton(QStringLiteral("E&xpand in the Main Window"), mini_);
    expand->setObjectName(QStringLiteral("ExpandMiniSounding"));
    expand->setAutoDefault(false);
    connect(expand, &QPushButton::clicked, this, [this] {
      under_ = miniOf_;
      Transfer();
    });
    auto* layout = new QVBoxLayout(mini_);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(miniView_);
    layout->addWidget(expand);
    mini_->adjustSize();
  }
  mini_->setVisible(column.has_value());
  miniView_->Show(nullptr);
  if (!column) return;
  miniPage_ = MiniSounding(program_, *column, SurfaceOf(*miniView_));
  miniView_->Show(&miniPage_);
  // In the corner that is farther from its column.
  const double x = plot_.At.X(SectionViewOf(program_).Of.Columns[*column].X);
  const bool isLeft = x < (plot_.At.Frame().Left + plot_.At.Frame().Right) / 2;
  mini_->move(isLeft ? view_->width() - mini_->width() - 8 : 8, 8);
}

void CrossSectionWindow::Save() {
  if (program_.Current.Ask == nullptr || SectionViewOf(program_).Of.Columns.empty()) return;
  const auto chosen =
      program_.Current.Ask->ChooseFile({.Title = "Save Cross-Section DataSet",
                                        .Folder = TextFromPath(program_.Where.CrossSection),
                                        .Filter = kDatasetFilter,
                                        .Saving = true});
  if (!chosen) return;
  std::filesystem::path path = PathFromText(*chosen);
  if (!path.has_extension()) path += ".SEC";
  if (commands::SaveDataset(program_, path)) Changed();
}

void CrossSectionWindow::Transfer() {
  if (under_) events_.Changed(commands::TransferToSounding(program_, *under_));
}

// Stops what is being read; else it closes the window.
void CrossSectionWindow::Escape() {
  program_.Gate.IsOpen() ? DisplayWindow::Escape() : program_.Gate.Stop();
}

void CrossSectionWindow::closeEvent(QCloseEvent* event) {
  crosssection::SectionState& state = SectionViewOf(program_).State;
  state.Left = x();
  state.Top = y();
  state.Width = width();
  state.Height = height();
  SaveSectionSettings(program_);
  DisplayWindow::closeEvent(event);
}

}  // namespace vexa
