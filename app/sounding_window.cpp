#include "app/sounding_window.h"

#include <algorithm>
#include <map>
#include <memory>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPalette>
#include <QProgressBar>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QString>
#include <QTimer>
#include <QToolTip>
#include <QUrl>
#include <QWidget>
#include <string>
#include <string_view>

#include "app/analysis_dock.h"
#include "app/config_window.h"
#include "app/data_windows.h"
#include "app/diagram_control.h"
#include "app/diagram_view.h"
#include "app/display_window.h"
#include "app/edit_actions.h"
#include "app/elided_label.h"
#include "app/help_window.h"
#include "app/hodogram_window.h"
#include "app/hodograph_window.h"
#include "app/loop_window.h"
#include "app/menu_hints.h"
#include "app/option_control.h"
#include "app/output_actions.h"
#include "app/parcel_dock.h"
#include "app/screenshot.h"
#include "app/severe_table_window.h"
#include "app/shortcut_memory.h"
#include "app/sounding_chooser.h"
#include "app/surface_window.h"
#include "core/error_report.h"
#include "core/files.h"
#include "program/displays.h"
#include "program/edit_commands.h"
#include "program/listed_soundings.h"
#include "program/menu.h"
#include "program/readout.h"
#include "program/session_commands.h"
#include "program/session_memory.h"
#include "program/settings_commands.h"
#include "program/sounding_loop.h"

namespace vexa {
namespace {

const QColor kFaultColor(255, 160, 160);
constexpr std::string_view kDontUnload = "Don't Unload";  // the status after Exit was taken back

}  // namespace

SoundingWindow::SoundingWindow(Program& program, WindowInteraction& interaction)
    : program_(program), interaction_(interaction) {
  setObjectName(QStringLiteral("Sounding"));
  setAcceptDrops(true);
  BuildMenus();
  BuildPanels();
  data_ = std::make_unique<DataWindows>(
      program, this,
      DataWindows::Events{
          .Changed = [this](Changes changes) { Show(changes); },
          .Open = [this](const std::vector<std::filesystem::path>& files) { OpenFiles(files); },
          .Entries = [this] { DisplaysCheck(); }});
  if (!interaction.Unattended()) {
    program.ChooseSoundings = [this](const std::vector<std::string>& titles) {
      return SoundingChooser::Ask(titles, this);
    };
  }
  interaction.Attach(
      this, [this](std::string_view text) { ShowStatus(text); },
      [this](double done) {
        bar_->setValue(static_cast<int>(bar_->maximum() * done));
        bar_->setVisible(done < 1);
      });
  auto* session = new QTimer(this);
  session->setInterval(kKeepSessionMs);
  connect(session, &QTimer::timeout, this, [this] {
    if (const auto fault = KeepSession(program_)) ShowStatus(fault->Detail);
  });
  session->start();
  ShowState();
}

// Its parts outlive it by a little, and must not report to it any more.
SoundingWindow::~SoundingWindow() {
  program_.ChooseSoundings = {};
  view_->OnPointer({});
  for (QDockWidget* dock :
       {static_cast<QDockWidget*>(dock_), static_cast<QDockWidget*>(parcels_)}) {
    dock->disconnect(this);
  }
  interaction_.Attach(nullptr, {});
}

void SoundingWindow::BuildMenus() {
  std::map<std::string_view, QMenu*> menus;
  std::map<std::string_view, QActionGroup*> choices;
  auto* shortcuts = new ShortcutMemory(program_, this);
  auto* hints = new MenuHints(this);
  for (const MenuRow& row : MenuTree()) {
    QMenu* in = row.In.empty() ? nullptr : menus.at(row.In);
    const QString caption = ToQString(row.Caption);
    if (in != nullptr && row.LineAbove) in->addSeparator();
    if (row.Does == Command::None) {
      QMenu* menu = in == nullptr ? menuBar()->addMenu(caption) : in->addMenu(caption);
      menu->setObjectName(ToQString(row.Name));
      menu->setToolTipsVisible(true);
      menu->installEventFilter(hints);
      menus[row.Name] = menu;
      continue;
    }
    QAction* entry = in == nullptr ? menuBar()->addAction(caption) : in->addAction(caption);
    entry->setObjectName(ToQString(row.Name));
    if (!row.Key.empty()) entry->setShortcut(QKeySequence(ToQString(row.Key)));
    if (row.IsChecked != nullptr) {
      entry->setCheckable(true);
    }
    if (row.IsChecked != nullptr && !row.IsSwitch) {
      QActionGroup*& group = choices[row.In];
      if (group == nullptr) group = new QActionGroup(this);
      group->addAction(entry);
    }
    connect(entry, &QAction::triggered, this, [this, does = row.Does] { Run(does); });
    shortcuts->Watch(entry);
    entries_.emplace_back(entry, &row);
  }
  new HelpKey(program_, this);
  auto* stop = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  stop->setObjectName(QStringLiteral("EscapeKey"));
  connect(stop, &QShortcut::activated, this, [this] {
    if (!control_->Escape()) program_.Gate.Stop();
  });
}

void SoundingWindow::BuildPanels() {
  auto* middle = new QWidget(this);
  auto* row = new QHBoxLayout(middle);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  view_ = new DiagramView(middle);
  view_->setObjectName(QStringLiteral("Diagram"));  // by which the help knows it
  view_->OnPointer([this](const std::optional<Point>& at) { ShowReadout(at); });
  view_->OnResized([this] { FitDiagram(); });
  control_ = std::make_unique<DiagramControl>(
      program_, *view_, [this](Changes changes) { Show(changes); },
      [this](const std::string& text) { ShowStatus(text); });
  sequence_ = new QScrollBar(Qt::Vertical, middle);
  sequence_->setObjectName(QStringLiteral("ScrollSoundings"));
  sequence_->setAccessibleName(QStringLiteral("Steps through the soundings that were opened"));
  sequence_->setFocusPolicy(Qt::TabFocus);
  sequence_->setPageStep(1);
  sequence_->setTracking(false);
  connect(sequence_, &QScrollBar::valueChanged, this,
          [this](int value) { Show(SequenceSounding(program_, static_cast<std::size_t>(value))); });
  row->addWidget(view_, 1);
  row->addWidget(sequence_);
  setCentralWidget(middle);

  progress_ = new ElidedLabel(this);
  progress_->setObjectName(QStringLiteral("ProgressPanel"));
  progress_->setTextFormat(Qt::PlainText);
  progress_->setAutoFillBackground(true);
  readout_ = new QLabel(this);
  readout_->setObjectName(QStringLiteral("CursorReadout"));
  readout_->setTextFormat(Qt::PlainText);
  statusBar()->addWidget(progress_, 1);
  bar_ = new QProgressBar(this);
  bar_->setObjectName(QStringLiteral("ProgressBar"));
  bar_->setMaximumWidth(160);
  bar_->hide();
  statusBar()->addPermanentWidget(bar_);
  statusBar()->addPermanentWidget(readout_);
  dock_ = new AnalysisDock(program_, this);
  addDockWidget(Qt::RightDockWidgetArea, dock_);
  dock_->hide();
  connect(dock_, &QDockWidget::visibilityChanged, this, [this] { dock_->Follow(); });
  parcels_ = new ParcelDock(program_, this);
  addDockWidget(Qt::RightDockWidgetArea, parcels_);
  parcels_->hide();
  connect(parcels_, &QDockWidget::visibilityChanged, this, [this] { parcels_->Follow(); });
  view_->setFocus();
}

void SoundingWindow::OpenFiles(const std::vector<std::filesystem::path>& paths) {
  Show(OpenSoundings(program_, paths));
}

void SoundingWindow::Run(Command command) {
  if (const FormRow* form = FindForm(command)) {
    ShowForm(*form);
  } else if (const DisplayRow* row = DisplayOf(command)) {
    OpenDisplay(*row);
  } else if (command == Command::SevereTable) {
    OpenSevereTable();
  } else if (const std::string_view topic = HelpTopicOf(command); !topic.empty()) {
    OpenHelp(program_, this).ShowTopic(topic);
  } else if (command == Command::SoundingDiagram) {
    raise();
    activateWindow();
    view_->setFocus();
    Show(RunCommand(program_, command));
  } else if (command == Command::Analyze) {
    dock_->setVisible(!dock_->isVisible());
    dock_->Follow();
  } else if (RunEditCommand(program_, command, this, [this](Changes changes) { Show(changes); })) {
  } else if (RunOnDiagram(command)) {
    return;
  } else if (!data_->Run(command) && !RunOutputCommand(program_, command, this, view_->size())) {
    Show(RunCommand(program_, command));
  }
}

// Commands that need the diagram's own controls; false for any other.
bool SoundingWindow::RunOnDiagram(Command command) {
  if (command == Command::Zoom) {
    control_->ChooseRegion();
  } else if (command == Command::FourParcels) {
    parcels_->setVisible(!parcels_->isVisible());
  } else if (command == Command::LoopOptions) {
    if (program_.Gate.IsOpen() && EditLoop(program_, this)) Show(StartLoop(program_));
  } else if (command == Command::SurfaceParcel) {
    if (!program_.Gate.IsOpen()) return true;
    auto* window = new SurfaceWindow(
        program_, [this](Changes changes) { Show(changes); }, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->open();
  } else {
    return false;
  }
  return true;
}

// One window for each display: opened again, it comes to the front.
void SoundingWindow::OpenDisplay(const DisplayRow& row) {
  QPointer<DisplayWindow>& window = displays_[&row];
  if (window.isNull()) {
    window = new DisplayWindow(program_, row, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    AddPictureMenu(*window, program_,
                   [shown = window.data()]() -> const Picture& { return shown->Page(); });
  }
  window->show();
  window->raise();
  window->activateWindow();
}

void SoundingWindow::OpenSevereTable() {
  SevereTableWindow window(
      program_.Severe,
      [this](const analysis::SevereTable& table) {
        program_.Severe = table;
        if (const auto fault = analysis::SaveTable(SevereTablePath(program_), table)) {
          ShowStatus(fault->Detail);
        }
        OtherDisplays();
      },
      this);
  window.AskThrough(program_.Current.Ask);
  window.exec();
}

void SoundingWindow::OtherDisplays() {
  data_->Follow();
  dock_->Follow();
  parcels_->Follow();
  for (const auto& [row, window] : displays_) {
    if (!window.isNull()) window->Follow();
  }
}

void SoundingWindow::ShowForm(const FormRow& form) {
  if (!program_.Gate.IsOpen()) return;
  auto* shown = new ConfigWindow(
      program_, form, [this](Changes changes) { Show(changes); }, this);
  shown->setAttribute(Qt::WA_DeleteOnClose);
  shown->open();
}

void SoundingWindow::PlaceAsBefore() {
  const MainWindowSettings& place = program_.Settings.Window;
  // The screen may have become smaller, or another one.
  const QRect room = screen()->availableGeometry();
  resize(QSize(place.Width, place.Height).boundedTo(room.size()));
  move(std::clamp(place.Left, room.left(), std::max(room.left(), room.right() - width() + 1)),
       std::clamp(place.Top, room.top(), std::max(room.top(), room.bottom() - height() + 1)));
  if (place.Maximized) setWindowState(windowState() | Qt::WindowMaximized);
}

void SoundingWindow::RememberPlace() {
  MainWindowSettings& place = program_.Settings.Window;
  const QRect whole = isMaximized() ? normalGeometry() : QRect(pos(), size());
  place.Maximized = isMaximized();
  place.Width = whole.width();
  place.Height = whole.height();
  place.Left = whole.left();
  place.Top = whole.top();
}

void SoundingWindow::RememberDisplays() {
  if (program_.Where.Root.empty()) return;
  std::vector<std::string> names;
  for (const QDockWidget* dock :
       {static_cast<const QDockWidget*>(dock_), static_cast<const QDockWidget*>(parcels_)}) {
    if (dock->isVisible()) names.push_back(dock->objectName().toStdString());
  }
  for (const auto& [row, window] : displays_) {
    if (!window.isNull() && window->isVisible()) names.emplace_back(row->Name);
  }
  if (program_.ShowsHodograph) names.push_back(hodograph_->objectName().toStdString());
  if (program_.ShowsHodogram) names.push_back(hodogram_->objectName().toStdString());
  if (const auto fault = WriteList(program_.Where.Root, kAnalysisMemory, names)) {
    program_.Doc.Report(*fault);
  }
}

void SoundingWindow::RestoreDisplays() {
  if (!program_.Set.System.AutoAnalysisLoad || program_.Current.FileName.empty()) return;
  for (const std::string& name :
       ReadList(program_.Where.Root, kAnalysisMemory, &program_.Notices)) {
    if (const Command command = CommandToShow(name); command != Command::None) Run(command);
  }
  if (QApplication::activeModalWidget() != nullptr) return;  // it stays on top
  raise();
  activateWindow();
}

void SoundingWindow::Show(Changes changes) {
  Refresh(program_, changes);
  if (!program_.Gate.IsOpen()) return;  // the command that runs will show its own result
  ShowState();
  if (program_.Leaving || program_.Gate.TakeDeferredClose()) {
    close();
    return;
  }
  const auto correct = [this] {
    OpenCorrection(program_, this, [this](Changes edited) { Show(edited); });
  };
  // At start the window comes up after its first sounding, and would cover the editor.
  if (isVisible()) {
    correct();
  } else {
    QTimer::singleShot(0, this, correct);
  }
}

void SoundingWindow::FitDiagram() {
  if (!ComposeFor(program_, view_->OwnSurface())) return;
  view_->Show(&program_.Plot->Page);
  control_->Follow();
  view_->TellAgain();
}

void SoundingWindow::ShowState() {
  bar_->hide();
  setWindowTitle(ToQString(SoundingBanner(program_)));
  ComposeFor(program_, view_->OwnSurface());  // the window may have changed its size meanwhile
  view_->Show(program_.Plot ? &program_.Plot->Page : nullptr);
  control_->Follow();
  OtherDisplays();
  DisplaysCheck();
  ShowDisplays();
  const QSignalBlocker silent(sequence_);
  sequence_->setRange(0, std::max(0, static_cast<int>(program_.Listed.Size()) - 1));
  sequence_->setValue(static_cast<int>(program_.Listed.Now()));
  sequence_->setVisible(program_.Listed.Size() > 1);
  sequence_->setToolTip(ToQString(ListedNeighbours(program_)));

  const std::string fault = FaultIndicator(program_);
  QPalette colors = statusBar()->palette();
  if (!fault.empty()) {
    colors.setColor(QPalette::Window, kFaultColor);
    colors.setColor(QPalette::WindowText, Qt::black);
  }
  progress_->setPalette(colors);
  progress_->setText(
      ToQString(TakeNotices(program_) + (fault.empty() ? LoadRemarks(program_) : fault)));
  progress_->setToolTip(ToQString(LoadRemarks(program_, "\n")));  // the line may be too short
  view_->TellAgain();
}

// A display that is up follows every change; one that was chosen opens. None is taken down while
// an event of its own is still on its way.
void SoundingWindow::ShowDisplays() {
  if (program_.ShowsHodograph && hodograph_ == nullptr) {
    hodograph_ = std::make_unique<HodographWindow>(
        program_, [this](Changes changes) { Show(changes); },
        [this] {
          program_.ShowsHodograph = false;
          DisplaysCheck();
        },
        this);
    AddPictureMenu(*hodograph_, program_,
                   [this]() -> const Picture& { return hodograph_->Plot().Page; });
  }
  if (program_.ShowsHodogram && hodogram_ == nullptr) {
    hodogram_ = std::make_unique<HodogramWindow>(
        program_,
        [this] {
          program_.ShowsHodogram = false;
          DisplaysCheck();
        },
        this);
    AddPictureMenu(*hodogram_, program_, [this]() -> const Picture& { return hodogram_->Page(); });
  }
  const auto show = [](auto& window, bool shown) {
    if (window == nullptr) return;
    if (shown) window->ShowState();
    if (window->isVisible() != shown) window->setVisible(shown);
  };
  show(hodograph_, program_.ShowsHodograph);
  show(hodogram_, program_.ShowsHodogram);
}

void SoundingWindow::DisplaysCheck() {
  for (const auto& [entry, row] : entries_) {
    entry->setEnabled(IsEnabled(*row, program_));
    entry->setStatusTip(ToQString(HintOf(*row, program_)));
    entry->setToolTip(entry->statusTip());
    if (row->IsChecked != nullptr) entry->setChecked(row->IsChecked(program_));
    if (row->Shows == nullptr) continue;
    const std::string caption = row->Shows(program_);
    entry->setText(ToQString(caption));
    entry->setVisible(!caption.empty());
  }
}

void SoundingWindow::ShowStatus(std::string_view text) {
  progress_->setText(ToQString(text));
}

void SoundingWindow::ShowReadout(const std::optional<Point>& at) {
  if (!program_.Gate.IsOpen()) return;
  const Readout readout = at ? ReadDiagram(program_, *at) : Readout{};
  std::string text;
  for (const std::string& part : {readout.Spot, readout.Grid, readout.Sounding}) {
    if (!text.empty() && !part.empty()) text += "     ";
    text += part;
  }
  readout_->setText(ToQString(text));
  if (readout.Tip.empty()) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(QCursor::pos(), ToQString(readout.Tip), view_);
  }
}

void SoundingWindow::closeEvent(QCloseEvent* event) {
  const bool mayClose = program_.Gate.MayClose();
  if (mayClose && !MayExit(program_)) {
    program_.Leaving = false;
    program_.Doc.SetStatus(kDontUnload);
    event->ignore();
  } else if (mayClose) {
    EndSession(program_);
    RememberPlace();
    RememberDisplays();
    KeepSettings(program_);
    event->accept();
  } else {
    event->ignore();
  }
}

namespace {

// A source that would move what is dragged keeps it.
void TakeCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

}  // namespace

void SoundingWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (program_.Gate.IsOpen() &&
      (event->mimeData()->hasText() || !FilesOf(*event->mimeData()).empty())) {
    TakeCopy(*event);
  }
}

void SoundingWindow::dropEvent(QDropEvent* event) {
  TakeCopy(*event);
  data_->OpenData(*event->mimeData());
}

}  // namespace vexa
