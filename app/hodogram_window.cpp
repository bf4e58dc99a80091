#include "app/hodogram_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QString>
#include <QVBoxLayout>
#include <utility>

#include "app/drag_view.h"

namespace vexa {
namespace {

constexpr QSize kSmallest(780, 560);  // fits a screen of 800 x 600

constexpr int kFrameMs = 16;
constexpr double kDegreesPerPixel = 0.4;

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

HodogramWindow::HodogramWindow(Program& program, std::function<void()> closed, QWidget* parent)
    : QWidget(parent, Qt::Window), program_(program), closed_(std::move(closed)) {
  setObjectName(QStringLiteral("Hodogram3D"));
  setWindowTitle(QStringLiteral("3-D Trajectory Diagram"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  view_ = new DragView(this);
  column->addWidget(view_, 1);
  BuildControls();
  view_->OnPress = [this](Point, QPointF at) {
    grabbed_ = at;
    return true;
  };
  view_->OnDrag = [this](std::optional<Point>, QPointF at) {
    const QPointF moved = at - std::exchange(grabbed_, at);
    Turn(-kDegreesPerPixel * moved.x(), kDegreesPerPixel * moved.y());
  };
  view_->OnKey = [this](int key) { return Key(key); };
  connect(&frames_, &QTimer::timeout, this, [this] {
    // By the time that has passed: a slow machine turns as fast, in fewer frames.
    const Hodogram3DSettings& set = program_.Hodogram;
    Turn(set.Step * static_cast<double>(sinceFrame_.restart()) / set.RotationMs, 0);
  });
  resize(QSize(960, 760).boundedTo(screen()->availableSize()).expandedTo(kSmallest));
}

void HodogramWindow::BuildControls() {
  auto* row = new QHBoxLayout;
  struct Button {
    const char* name;
    const char* text;
    double azimuth;
    double tilt;
  };
  const Button buttons[] = {{"cmdLeft", "Left", -1, 0},
                            {"cmdRight", "Right", 1, 0},
                            {"cmdUp", "Up", 0, 1},
                            {"cmdDown", "Down", 0, -1}};
  for (const Button& button : buttons) {
    auto* widget = new QPushButton(QString::fromLatin1(button.text), this);
    widget->setObjectName(QString::fromLatin1(button.name));
    widget->setAutoRepeat(true);
    connect(widget, &QPushButton::clicked, this, [this, button] {
      const double step = program_.Hodogram.Step;
      Turn(step * button.azimuth, step * button.tilt);
    });
    row->addWidget(widget);
  }
  rotate_ = new QPushButton(QStringLiteral("rotate"), this);
  rotate_->setObjectName(QStringLiteral("cmdRotate"));
  connect(rotate_, &QPushButton::clicked, this, [this] { Rotate(!frames_.isActive()); });
  row->addWidget(rotate_);
  auto* distance = new QComboBox(this);
  distance->setObjectName(QStringLiteral("cboDistance"));
  for (const std::string_view word : Words(DistanceUnits{})) distance->addItem(ToQString(word));
  distance->setCurrentIndex(static_cast<int>(program_.Hodogram.Distance));
  connect(distance, &QComboBox::activated, this, [this](int index) {
    program_.Hodogram.Distance = static_cast<DistanceUnits>(index);
    Draw();
  });
  row->addWidget(distance);
  auto* north = new QCheckBox(QStringLiteral("North"), this);
  north->setObjectName(QStringLiteral("chkNorth"));
  north->setChecked(program_.Hodogram.NorthPointer);
  connect(north, &QCheckBox::clicked, this, [this](bool on) {
    program_.Hodogram.NorthPointer = on;
    Draw();
  });
  row->addWidget(north);
  row->addStretch(1);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

bool HodogramWindow::Key(int key) {
  const double step = program_.Hodogram.Step;
  switch (key) {
    case Qt::Key_Left:
      Turn(-step, 0);
      return true;
    case Qt::Key_Right:
      Turn(step, 0);
      return true;
    case Qt::Key_Up:
      Turn(0, step);
      return true;
    case Qt::Key_Down:
      Turn(0, -step);
      return true;
    case Qt::Key_Escape:
      Rotate(false);
      return true;
    default:
      return false;
  }
}

void HodogramWindow::Turn(double azimuth, double tilt) {
  program_.Hodogram = hodograph::Turned(program_.Hodogram, azimuth, tilt);
  Draw();
}

void HodogramWindow::Draw() {
  view_->Show(nullptr);
  page_ = hodograph::PlotHodogram(hodogram_, program_.Hodogram);
  view_->Show(&page_);
}

void HodogramWindow::ShowState() {
  hodogram_ = hodograph::MakeHodogram(program_.Current.Record, program_.Set);
  Draw();
}

void HodogramWindow::Rotate(bool on) {
  rotate_->setText(on ? QStringLiteral("STOP-Rotation") : QStringLiteral("rotate"));
  if (!on) return frames_.stop();
  sinceFrame_.start();
  frames_.start(kFrameMs);
}

void HodogramWindow::hideEvent(QHideEvent* event) {
  Rotate(false);
  QWidget::hideEvent(event);
}

void HodogramWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  closed_();
}

}  // namespace vexa
