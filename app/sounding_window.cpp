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
#include <QResizeEvent>
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

#include "app/chrome.h"
#include "app/data_windows.h"
#include "app/diagram_control.h"
#include "app/diagram_view.h"
#include "app/display_window.h"
#include "app/drag_view.h"
#include "app/edit_actions.h"
#include "app/elided_label.h"
#include "app/help_window.h"
#include "app/menu_hints.h"
#include "app/mountain_forms.h"
#include "app/option_control.h"
#include "app/panel.h"
#include "app/shortcut_memory.h"
#include "app/sounding_chooser.h"
#include "app/start_page.h"
#include "app/tool_bar.h"
#include "app/window_table.h"
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
#include "program/wave_view.h"

namespace vexa {
namespace {

const QColor kFaultColor(255, 160, 160);
constexpr double kFirstShare = 0.85;     // of the screen, for the window at the first start
constexpr int kLeastPictureWidth = 640;  // pixels; a panel that would leave less floats over it
constexpr std::string_view kDontUnload = "Don't Unload";  // the status after Exit was taken back

}  // namespace

SoundingWindow::SoundingWindow(Program& program, WindowInteraction& interaction)
    : program_(program), interaction_(interaction), menu_(MenuTree(program.DisplayTable)) {
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

// Its parts live a little longer than it and must not report to it any more.
SoundingWindow::~SoundingWindow() {
  program_.ChooseSoundings = {};
  view_->OnPointer({});
  for (Panel* panel : panels_) panel->disconnect(this);
  interaction_.Attach(nullptr, {});
}

void SoundingWindow::BuildMenus() {
  std::map<std::string_view, QMenu*> menus;
  std::map<std::string_view, QActionGroup*> choices;
  auto* shortcuts = new ShortcutMemory(program_, this);
  auto* hints = new MenuHints(this);
  for (const MenuRow& row : menu_) {
    QMenu* in = row.In.empty() ? nullptr : menus.at(row.In);
    const QString caption = ToQString(row.Caption);
    if (in != nullptr && row.State.LineAbove) in->addSeparator();
    if (row.Does.IsMenu()) {
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
    entry->setCheckable(IsChecked(row, program_).has_value());
    if (entry->isCheckable() && !row.State.IsSwitch) {
      QActionGroup*& group = choices[row.In];
      if (group == nullptr) group = new QActionGroup(this);
      group->addAction(entry);
    }
    connect(entry, &QAction::triggered, this, [this, &row] { Run(row); });
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
  // Of many sizes that a drag of the window's edge has left waiting, the last is drawn.
  fit_.setSingleShot(true);
  fit_.setInterval(0);
  connect(&fit_, &QTimer::timeout, this, [this] { FitDiagram(); });
  view_->OnResized([this] { isVisible() ? fit_.start() : FitDiagram(); });
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
  panels_ = MakePanels(program_, *this);
  for (Panel* panel : panels_) {
    panel->hide();
    addDockWidget(Qt::RightDockWidgetArea, panel);
    connect(panel, &QDockWidget::visibilityChanged, this, [panel] { panel->Follow(); });
  }
  tools_ = new ToolBar(program_, *this);
  addToolBar(tools_);
  start_ = new StartPage(program_, *this, view_);
  view_->setFocus();
}

void SoundingWindow::OpenFiles(const std::vector<std::filesystem::path>& paths) {
  Show(OpenSoundings(program_, paths));
}

void SoundingWindow::Run(std::string_view entry) {
  if (const MenuRow* row = FindEntry(menu_, entry)) Run(*row);
}

void SoundingWindow::Run(const MenuRow& entry) {
  if (!IsEnabled(entry, program_)) return ShowStatus(HintOf(entry, program_));
  const Action& does = entry.Does;
  const bool isOurs = does.Run != nullptr || !does.Display.empty() || !does.Layout.empty();
  const Changes changes = isOurs ? RunCommand(program_, entry) : Changes{};
  if (!entry.Does.Opens.empty()) Open(entry.Does.Opens, entry.Does.At);
  if (isOurs) Show(changes);
  if (program_.Displays.IsUp(entry.Does.Display)) {
    displays_.at(entry.Does.Display)->raise();
    displays_.at(entry.Does.Display)->activateWindow();
  }
}

bool SoundingWindow::Open(std::string_view name, std::string_view at) {
  if (const WindowRow* row = FindWindow(name)) {
    if (row->WhileBusy || program_.Gate.IsOpen()) row->Open({program_, *this, row->Name, at});
    return true;
  }
  const auto entry = std::ranges::find_if(menu_, [name](const MenuRow& row) {
    const bool isOfDisplay = !row.Does.Display.empty() && row.Does.Display == name;
    return isOfDisplay || (row.Name == name && !row.Does.IsMenu());
  });
  if (entry == menu_.end() || !entry->Does.IsBuilt) return false;
  Run(*entry);
  return true;
}

void SoundingWindow::ToFront() {
  raise();
  activateWindow();
  view_->setFocus();
}

void SoundingWindow::TogglePanel(std::string_view name) {
  for (Panel* panel : panels_) {
    if (panel->objectName() != ToQString(name)) continue;
    panel->setVisible(!panel->isVisible());
    PlacePanels();
    panel->Follow();
  }
}

// A panel stands beside the picture where that keeps its least width, else it floats at the right
// edge, over the picture.
void SoundingWindow::PlacePanels() {
  for (Panel* panel : panels_) {
    const bool fits = width() - panel->sizeHint().width() >= kLeastPictureWidth;
    if (!panel->isVisible() || panel->isFloating() != fits) continue;
    panel->setFloating(!fits);
    if (fits) continue;
    const QSize size = panel->sizeHint().boundedTo(centralWidget()->size());
    panel->resize(size.width(), centralWidget()->height());
    const QPoint corner(centralWidget()->width() - panel->width(), 0);
    panel->move(centralWidget()->mapToGlobal(corner));
  }
}

// The window is made before its first sounding; the page for a start without one waits for that.
void SoundingWindow::setVisible(bool visible) {
  if (visible) start_->Follow();
  QMainWindow::setVisible(visible);
}

void SoundingWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  PlacePanels();
}

void SoundingWindow::FollowDisplays() {
  data_->Follow();
  for (Panel* panel : panels_) panel->Follow();
  for (const auto& [id, window] : displays_) {
    if (program_.Displays.IsUp(id)) window->Follow();
  }
  FollowWaveForms(*this);
}

void SoundingWindow::PlaceFirst() {
  const QRect room = screen()->availableGeometry();
  QRect place(QPoint(), room.size() * kFirstShare);
  place.moveCenter(room.center());
  setGeometry(place);
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

void SoundingWindow::LayOut() {
  layout()->activate();
  centralWidget()->layout()->activate();
  FitDiagram();
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
  for (const Panel* panel : panels_) {
    if (panel->isVisible()) names.push_back(panel->objectName().toStdString());
  }
  for (const DisplayRow& row : program_.DisplayTable) {
    if (program_.Displays.IsUp(row.Id)) names.emplace_back(row.Id);
  }
  if (const auto fault = WriteList(program_.Where.Root, kAnalysisMemory, names)) {
    program_.Doc.Report(*fault);
  }
}

void SoundingWindow::RestoreDisplays() {
  if (!program_.Set.System.AutoAnalysisLoad || program_.Current.FileName.empty()) return;
  for (const std::string& name :
       ReadList(program_.Where.Root, kAnalysisMemory, &program_.Notices)) {
    static_cast<void>(Open(name));  // a display of a later version is passed over
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
  FollowScreenColor(program_.Set);
  bar_->hide();
  setWindowTitle(ToQString(SoundingBanner(program_)));
  ComposeFor(program_, view_->OwnSurface());  // the window may have changed its size meanwhile
  view_->Show(program_.Plot ? &program_.Plot->Page : nullptr);
  control_->Follow();
  ShowDisplays();
  FollowDisplays();
  DisplaysCheck();
  const QSignalBlocker silent(sequence_);
  sequence_->setRange(0, std::max(0, static_cast<int>(program_.Listed.Size()) - 1));
  sequence_->setValue(static_cast<int>(program_.Listed.Now()));
  sequence_->setVisible(program_.Listed.Size() > 1);
  tools_->Follow();
  if (isVisible()) start_->Follow();
  sequence_->setToolTip(ToQString(ListedNeighbours(program_)));

  const std::string fault = FaultIndicator(program_);
  QPalette colors = QApplication::palette();
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

// Each display has one window, made when it is first wanted. None is taken down while an event of
// its own is still on its way.
void SoundingWindow::ShowDisplays() {
  for (const DisplayRow& row : program_.DisplayTable) {
    const bool isUp = program_.Displays.IsUp(row.Id);
    std::unique_ptr<DisplayWindow>& window = displays_[row.Id];
    if (isUp && window == nullptr) {
      window = MakeDisplayWindow(
          program_, row,
          {.Changed = [this](Changes changes) { Show(changes); },
           .Closed =
               [this, &row] {
                 program_.Displays.SetUp(row.Id, false);
                 DisplaysCheck();
               },
           .Open = [this](std::string_view name, std::string_view at) { Open(name, at); }},
          this);
    }
    if (window != nullptr && window->isVisible() != isUp) window->setVisible(isUp);
  }
}

DisplayWindow* SoundingWindow::Display(std::string_view id) {
  const auto at = displays_.find(id);
  return at == displays_.end() ? nullptr : at->second.get();
}

void SoundingWindow::DisplaysCheck() {
  for (const auto& [entry, row] : entries_) {
    entry->setEnabled(IsEnabled(*row, program_));
    entry->setStatusTip(ToQString(HintOf(*row, program_)));
    entry->setToolTip(entry->statusTip());
    if (const auto checked = IsChecked(*row, program_)) entry->setChecked(*checked);
    if (row->State.Shows == nullptr) continue;
    const std::string caption = row->State.Shows(program_);
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
    if (const auto fault = KeepWaveState(program_)) program_.Doc.Report(*fault);
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
