#include "app/display_window.h"

#include <algorithm>
#include <cmath>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCursor>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolTip>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "app/area_map_form.h"
#include "app/cross_section_window.h"
#include "app/drag_view.h"
#include "app/forecast_windows.h"
#include "app/front_window.h"
#include "app/hodograph_window.h"
#include "app/mountain_wave.h"
#include "app/output_actions.h"
#include "app/qt_text.h"
#include "app/widget_surface.h"
#include "display/sheet.h"
#include "program/readout.h"

namespace vexa {
namespace {

constexpr QSize kFrame(20, 40);  // around the window
constexpr QSize kUsual(960, 760);
constexpr int kFrameMs = 16;  // of a motion

}  // namespace

DisplayWindow::DisplayWindow(Program& program, const DisplayRow& row, Events events,
                             QWidget* parent)
    : QWidget(parent, Qt::Window), program_(program), row_(row), events_(std::move(events)) {
  setObjectName(ToQString(row.Id));
  setWindowTitle(ToQString(row.Title));
  view_ = new DragView(this);
  view_->setAccessibleName(ToQString(row.Title));
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  escape->setObjectName(QStringLiteral("EscapeKey"));
  connect(escape, &QShortcut::activated, this, [this] { Escape(); });
}

void DisplayWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  if (events_.Closed) events_.Closed();
}

bool DisplayWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && watched == room_ && isVisible()) Compose();
  return QWidget::eventFilter(watched, event);
}

PlainDisplayWindow::PlainDisplayWindow(Program& program, const DisplayRow& row, Events events,
                                       QWidget* parent)
    : DisplayWindow(program, row, std::move(events), parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  view_->OnPointer([this](const std::optional<vexa::Point>& at) { Pointed(at); });
  view_->OnPress = [this](vexa::Point, QPointF at) {
    grabbed_ = at;
    return row_.Drag != nullptr;
  };
  view_->OnDrag = [this](std::optional<vexa::Point>, QPointF at) {
    const QPointF moved = at - std::exchange(grabbed_, at);
    row_.Drag(program_, moved.x(), moved.y());
    Draw();
  };
  view_->OnKey = [this](int key) { return Key(key); };
  around_ = new QScrollArea(this);
  around_->setWidget(view_);
  around_->setWidgetResizable(true);
  around_->setFrameShape(QFrame::NoFrame);
  layout->addWidget(around_, 1);
  line_ = new QHBoxLayout;
  if (row.Controls != nullptr) {
    line_->setContentsMargins(4, 2, 4, 2);
    for (const ControlRow& control : row.Controls()) line_->addWidget(MakeControl(control));
    line_->addStretch(1);
  }
  layout->addLayout(line_);
  room_ = around_->viewport();
  room_->installEventFilter(this);
  resize(kUsual.boundedTo(screen()->availableSize() - kFrame));
  Follow();
  view_->setFocus();
}

QPushButton* PlainDisplayWindow::MakeMotion(const ControlRow& control) {
  auto* button = new QPushButton(ToQString(control.Text), this);
  connect(button, &QPushButton::clicked, this, [this, button, &control] {
    if (moving_ != nullptr && moving_ != button) moving_->click();
    if (std::exchange(moving_, nullptr) == button) {
      frames_.stop();
      return button->setText(ToQString(control.Text));
    }
    moving_ = button;
    button->setText(ToQString(control.WhileOn));
    frames_.disconnect(this);
    connect(&frames_, &QTimer::timeout, this,
            [this, &control] { Use(control, static_cast<double>(sinceFrame_.restart())); });
    sinceFrame_.start();
    frames_.start(kFrameMs);
  });
  return button;
}

QWidget* PlainDisplayWindow::MakeControl(const ControlRow& control) {
  QWidget* made = nullptr;
  switch (control.Kind) {
    case ControlKind::Button: {
      auto* button = new QPushButton(ToQString(control.Text), this);
      button->setAutoRepeat(true);
      connect(button, &QPushButton::clicked, this, [this, &control] { Use(control, 1); });
      made = button;
      break;
    }
    case ControlKind::Motion:
      made = MakeMotion(control);
      break;
    case ControlKind::Switch: {
      auto* box = new QCheckBox(ToQString(control.Text), this);
      connect(box, &QCheckBox::clicked, this, [this, &control](bool on) { Use(control, on); });
      showValues_.emplace_back(
          [this, box, &control] { box->setChecked(control.Get(program_) != 0); });
      made = box;
      break;
    }
    case ControlKind::Choice: {
      auto* box = new QComboBox(this);
      for (const std::string_view word : control.Words) box->addItem(ToQString(word));
      connect(box, &QComboBox::activated, this, [this, &control](int at) { Use(control, at); });
      showValues_.emplace_back(
          [this, box, &control] { box->setCurrentIndex(static_cast<int>(control.Get(program_))); });
      made = box;
      break;
    }
    case ControlKind::Number: {
      auto* box = new QDoubleSpinBox(this);
      box->setRange(control.Least, control.Most);
      box->setSuffix(ToQString(control.Unit));
      box->setKeyboardTracking(false);
      connect(box, &QDoubleSpinBox::valueChanged, this,
              [this, &control](double value) { Use(control, value); });
      showValues_.emplace_back([this, box, &control] {
        const QSignalBlocker silent(box);
        box->setValue(control.Get(program_));
      });
      made = box;
      break;
    }
  }
  made->setObjectName(ToQString(control.Name));
  made->setAccessibleName(ToQString(control.Text));
  return made;
}

void PlainDisplayWindow::Use(const ControlRow& control, double value) {
  const Changes changes = control.Set(program_, value);
  if (changes.Any()) {
    events_.Changed(changes);
  } else {
    Draw();
  }
}

void PlainDisplayWindow::Follow() {
  for (const auto& show : showValues_) show();
  Draw();
}

Picture PlainDisplayWindow::Drawn(const Surface& on) {
  return DrawDisplay(row_, program_, on);
}

void PlainDisplayWindow::Draw() {
  view_->Show(nullptr);  // the picture that it shows is about to go
  const Surface room = SurfaceOf(*room_);
  page_ = Drawn(room);
  // A page that does not fit comes higher than its room, and is scrolled.
  const double pixels = room_->height() * page_.Height() / room.Height;
  const bool isHigher = page_.Width() == room.Width && page_.Height() > room.Height;
  view_->setMinimumHeight(isHigher ? static_cast<int>(std::ceil(pixels)) : 0);
  view_->Show(&page_);
}

void PlainDisplayWindow::Pointed(const std::optional<vexa::Point>& at) {
  if (!at) return;
  const QPoint place = view_->WidgetAt(*at).toPoint();
  around_->ensureVisible(place.x(), place.y(), 0, 0);  // for the cursor of the arrow keys
  for (const HotSpot& spot : page_.HotSpots()) {
    if (!spot.Where.Contains(*at) || spot.Tag != display::kIndexSpot) continue;
    QToolTip::showText(QCursor::pos(), ToQString(HotInfo(program_, spot.Text)), view_);
    return;
  }
  QToolTip::hideText();
}

bool PlainDisplayWindow::Key(int key) {
  if (row_.Controls == nullptr) return false;
  const std::string name = QKeySequence(key).toString().toStdString();
  const auto controls = row_.Controls();
  const auto control = std::ranges::find(controls, name, &ControlRow::Key);
  if (name.empty() || control == controls.end()) return false;
  Use(*control, 1);
  return true;
}

void PlainDisplayWindow::StopMotion() {
  if (moving_ != nullptr) moving_->click();
}

void PlainDisplayWindow::Escape() {
  if (moving_ != nullptr) return StopMotion();
  DisplayWindow::Escape();
}

void PlainDisplayWindow::hideEvent(QHideEvent* event) {
  StopMotion();
  QWidget::hideEvent(event);
}

namespace {

template <class Window>
std::unique_ptr<DisplayWindow> Make(Program& program, const DisplayRow& row,
                                    DisplayWindow::Events events, QWidget* parent) {
  return std::make_unique<Window>(program, row, std::move(events), parent);
}

struct OwnWindow {
  std::string_view Id;
  std::unique_ptr<DisplayWindow> (*Make)(Program&, const DisplayRow&, DisplayWindow::Events,
                                         QWidget*);
};

constexpr OwnWindow kOwnWindows[] = {
    {"AreaMapForm", Make<AreaMapForm>},   {"CrossSection", Make<CrossSectionWindow>},
    {"ForecastHodo", Make<ForecastHodo>}, {"ForecastMap", Make<ForecastMap>},
    {"Hodograph", Make<HodographWindow>}, {"Hodofront", Make<FrontWindow>},
    {"MountainWave", Make<MountainWave>},
};

}  // namespace

std::unique_ptr<DisplayWindow> MakeDisplayWindow(Program& program, const DisplayRow& row,
                                                 DisplayWindow::Events events, QWidget* parent) {
  const auto* own = std::ranges::find(kOwnWindows, row.Id, &OwnWindow::Id);
  const auto make = own == std::end(kOwnWindows) ? Make<PlainDisplayWindow> : own->Make;
  std::unique_ptr<DisplayWindow> window = make(program, row, events, parent);
  AddDisplayMenu(*window, program, row, std::move(events.Open));
  return window;
}

}  // namespace vexa
