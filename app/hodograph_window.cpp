#include "app/hodograph_window.h"

#include <algorithm>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>
#include <utility>

#include "app/drag_view.h"
#include "core/numbers.h"
#include "core/units.h"
#include "hodograph/analysis_panel.h"
#include "hodograph/wind_table.h"
#include "program/hodograph_commands.h"
#include "program/hodograph_drag.h"

namespace vexa {
namespace {

constexpr QSize kSmallest(780, 560);  // fits a screen of 800 x 600

constexpr double kGripPixels = 9;
constexpr int kColumnWidth = 430;  // pixels, of the controls

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

template <class E>
QComboBox* WordBox(const char* name, QWidget* parent) {
  auto* box = new QComboBox(parent);
  box->setObjectName(QString::fromLatin1(name));
  for (const std::string_view word : Words(E{})) box->addItem(ToQString(word));
  return box;
}

template <class E>
void ShowWord(QComboBox* box, E value) {
  const QSignalBlocker silent(box);
  box->setCurrentIndex(static_cast<int>(value));
}

double SpeedFactor(const Options& options) {
  return options.Speed == SpeedUnits::Knots ? 1 : kKnotToMs;
}

}  // namespace

HodographWindow::HodographWindow(Program& program, std::function<void(Changes)> changed,
                                 std::function<void()> closed, QWidget* parent)
    : QWidget(parent, Qt::Window),
      program_(program),
      changed_(std::move(changed)),
      closed_(std::move(closed)) {
  setObjectName(QStringLiteral("Hodograph"));
  view_ = new DragView(this);
  cursor_ = new QLabel(view_);
  cursor_->setObjectName(QStringLiteral("CursorBox"));
  cursor_->setTextFormat(Qt::PlainText);
  cursor_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  cursor_->setAutoFillBackground(true);
  cursor_->setFrameShape(QFrame::Box);
  cursor_->setAttribute(Qt::WA_TransparentForMouseEvents);
  cursor_->hide();
  floating_ = new QLabel(this, Qt::Tool);
  floating_->setObjectName(QStringLiteral("FloatingPanel"));
  floating_->setTextFormat(Qt::PlainText);
  floating_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  floating_->setMargin(8);

  auto* side = new QWidget(this);
  auto* column = new QVBoxLayout(side);
  BuildMotion(*column);
  BuildPlotting(*column);
  BuildComparison(*column);
  BuildTable(*column);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  auto* around = new QScrollArea(this);  // the controls scroll where the screen is too low for them
  around->setWidget(side);
  around->setWidgetResizable(true);
  around->setFrameShape(QFrame::NoFrame);
  around->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  around->setMinimumWidth(side->minimumSizeHint().width() +
                          around->verticalScrollBar()->sizeHint().width());
  auto* parts = new QSplitter(this);
  parts->addWidget(view_);
  parts->addWidget(around);
  parts->setChildrenCollapsible(false);
  parts->setStretchFactor(0, 1);
  row->addWidget(parts);
  BuildDragging();
  LoadCompared(program_);
  resize(QSize(1280, 720).boundedTo(screen()->availableSize()).expandedTo(kSmallest));
  const int controls = std::max(around->minimumWidth(), std::min(kColumnWidth, width() / 3));
  parts->setSizes({width() - controls, controls});
}

HodographWindow::~HodographWindow() {
  view_->OnPointer({});
}

void HodographWindow::BuildMotion(QVBoxLayout& column) {
  auto* group = new QGroupBox(QStringLiteral("Storm motion"), this);
  auto* grid = new QGridLayout(group);
  mode_ = WordBox<Scaling>("cboMode", group);
  mover_ = WordBox<StormMover>("cboMover", group);
  direction_ = new QDoubleSpinBox(group);
  direction_->setObjectName(QStringLiteral("txtDirection"));
  direction_->setRange(1, 360);
  direction_->setWrapping(true);
  direction_->setDecimals(0);
  direction_->setSuffix(QStringLiteral(" deg"));
  speed_ = new QDoubleSpinBox(group);
  speed_->setObjectName(QStringLiteral("txtSpeed"));
  speed_->setDecimals(1);
  hold_ = new QCheckBox(QStringLiteral("hold"), group);
  hold_->setObjectName(QStringLiteral("chkHold"));
  for (QDoubleSpinBox* box : {direction_, speed_}) {
    box->setKeyboardTracking(false);
    connect(box, &QDoubleSpinBox::valueChanged, this, [this] { Enter(); });
  }
  connect(mode_, &QComboBox::activated, this, [this](int index) {
    changed_(SetMotionMode(program_, static_cast<Scaling>(index)));
    ShowState();
  });
  connect(mover_, &QComboBox::activated, this,
          [this](int index) { changed_(ChooseMover(program_, static_cast<StormMover>(index))); });
  connect(hold_, &QCheckBox::clicked, this, [this](bool hold) {
    changed_(HoldStormMotion(program_, hold));
    ShowState();
  });
  grid->addWidget(mode_, 0, 0);
  grid->addWidget(mover_, 0, 1);
  grid->addWidget(hold_, 0, 2);
  grid->addWidget(direction_, 1, 0);
  grid->addWidget(speed_, 1, 1);
  column.addWidget(group);
}

QCheckBox* HodographWindow::AddSwitch(QGridLayout& into, const char* name, const QString& text,
                                      bool HodographSettings::*setting) {
  auto* box = new QCheckBox(text, this);
  box->setObjectName(QString::fromLatin1(name));
  connect(box, &QCheckBox::clicked, this, [this, setting](bool on) {
    program_.Hodograph.*setting = on;
    changed_({.View = true});
  });
  const int place = static_cast<int>(switches_.size());
  into.addWidget(box, 1 + place / 2, place % 2);
  switches_.emplace_back(box, setting);
  return box;
}

void HodographWindow::BuildPlotting(QVBoxLayout& column) {
  auto* group = new QGroupBox(QStringLiteral("Plot"), this);
  auto* grid = new QGridLayout(group);
  frame_ = WordBox<HodoOrigin>("cboFrame", group);
  rings_ = WordBox<RingScaling>("cboRings", group);
  connect(frame_, &QComboBox::activated, this, [this](int index) {
    program_.Hodograph.Frame = static_cast<HodoOrigin>(index);
    changed_({.View = true});
  });
  connect(rings_, &QComboBox::activated, this, [this](int index) {
    program_.Hodograph.Rings = static_cast<RingScaling>(index);
    changed_({.View = true});
  });
  grid->addWidget(frame_, 0, 0);
  grid->addWidget(rings_, 0, 1);
  limit_ = new QDoubleSpinBox(group);
  limit_->setObjectName(QStringLiteral("txtLimit"));
  limit_->setDecimals(0);
  limit_->setRange(10, 500);
  limit_->setSingleStep(10);
  limit_->setSuffix(QStringLiteral(" kts"));
  limit_->setKeyboardTracking(false);
  connect(limit_, &QDoubleSpinBox::valueChanged, this, [this](double knots) {
    program_.Hodograph.RingLimit = knots;
    changed_({.View = true});
  });
  grid->addWidget(limit_, 0, 2);
  AddSwitch(*grid, "chkNoSMplot", QStringLiteral("No storm vectors"), &HodographSettings::NoSMplot);
  AddSwitch(*grid, "chkFloat", QStringLiteral("FLOAT"), &HodographSettings::Float);
  AddSwitch(*grid, "chkHelicity", QStringLiteral("Helicity Contours"),
            &HodographSettings::HelicityContours);
  AddSwitch(*grid, "chkMbe", QStringLiteral("MBE Vector"), &HodographSettings::MbeVector);
  column.addWidget(group);
}

void HodographWindow::BuildComparison(QVBoxLayout& column) {
  auto* group = new QGroupBox(QStringLiteral("Compare"), this);
  auto* grid = new QGridLayout(group);
  compare_ = WordBox<CompareTraces>("cboCompare", group);
  connect(compare_, &QComboBox::activated, this, [this](int index) {
    program_.Hodograph.Compare = static_cast<CompareTraces>(index);
    changed_({.View = true});
  });
  grid->addWidget(compare_, 0, 0);
  for (int slot = 1; slot <= hodograph::kComparisonSlots; ++slot) {
    auto* keep = new QPushButton(QStringLiteral("Keep as #%1").arg(slot), group);
    keep->setObjectName(QStringLiteral("cmdCompare%1").arg(slot));
    connect(keep, &QPushButton::clicked, this, [this, slot] {
      KeepCompared(program_, slot);
      ShowState();
    });
    auto* empty = new QPushButton(QStringLiteral("Empty #%1").arg(slot), group);
    empty->setObjectName(QStringLiteral("cmdEmpty%1").arg(slot));
    connect(empty, &QPushButton::clicked, this, [this, slot] {
      EmptyCompared(program_, slot);
      ShowState();
    });
    grid->addWidget(keep, 0, slot);
    grid->addWidget(empty, 1, slot);
  }
  column.addWidget(group);
}

void HodographWindow::BuildTable(QVBoxLayout& column) {
  table_ = new QPlainTextEdit(this);
  table_->setObjectName(QStringLiteral("WindTable"));
  table_->setReadOnly(true);
  table_->setLineWrapMode(QPlainTextEdit::NoWrap);
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(font.pointSizeF() * 0.9);
  table_->setFont(font);
  column.addWidget(table_, 1);
  struct Button {
    const char* name;
    const char* text;
    QAbstractSlider::SliderAction action;
  };
  const Button buttons[] = {
      {"cmdScrollUp", "Scroll UP", QAbstractSlider::SliderSingleStepSub},
      {"cmdScrollDn", "Scroll DN", QAbstractSlider::SliderSingleStepAdd},
      {"cmdPageUp", "Page UP", QAbstractSlider::SliderPageStepSub},
      {"cmdPageDn", "Page DN", QAbstractSlider::SliderPageStepAdd},
  };
  auto* grid = new QGridLayout;
  for (const Button& button : buttons) {
    auto* widget = new QPushButton(QString::fromLatin1(button.text), this);
    widget->setObjectName(QString::fromLatin1(button.name));
    connect(widget, &QPushButton::clicked, this,
            [this, action = button.action] { table_->verticalScrollBar()->triggerAction(action); });
    grid->addWidget(widget, grid->count() / 3, grid->count() % 3);
  }
  auto* invert = new QPushButton(QStringLiteral("INVERT"), this);
  invert->setObjectName(QStringLiteral("cmdInvert"));
  connect(invert, &QPushButton::clicked, this, [this] {
    program_.Hodograph.TableInverted = !program_.Hodograph.TableInverted;
    ShowTable();
  });
  grid->addWidget(invert, grid->count() / 3, grid->count() % 3);
  column.addLayout(grid);
}

void HodographWindow::BuildDragging() {
  view_->OnPointer([this](const std::optional<Point>& at) { ShowCursor(at); });
  view_->OnPress = [this](Point at, QPointF) {
    if (!program_.Gate.IsOpen()) return false;
    if (!HitsStormVector(plot_, at)) {
      windDrag_ = BeginWindDrag(program_, plot_, at, kGripPixels * view_->UnitsPerPixel());
      if (!windDrag_) return false;
    }
    dragMapping_ = plot_.Mapping;
    return true;
  };
  view_->OnDrag = [this](std::optional<Point> at, QPointF) {
    if (!at || !dragMapping_ || !dragMapping_->Frame.Contains(*at)) return;
    if (windDrag_) return DragWind(*at);
    dragged_ = analysis::FromComponents(dragMapping_->ToWind(*at));
    const StormDraft draft = DraftStorm(program_, *dragged_);
    Draw({.Sounding = program_.Current.Record,
          .Results = program_.Results,
          .Set = draft.Set,
          .Window = program_.Hodograph,
          .Compared = program_.Compared,
          .Draft = &draft.Storm,
          .Keep = dragMapping_});
  };
  view_->OnKey = [this](int key) {
    if (key != Qt::Key_Escape || !windDrag_) return false;
    const Silenced quiet(program_.Current);
    dragMapping_.reset();
    changed_(std::exchange(windDrag_, {})->TakeBack(program_));
    return true;
  };
  view_->OnRelease = [this] {
    dragMapping_.reset();
    if (auto wind = std::exchange(windDrag_, {})) {
      wind->Finish(program_);
      changed_({.View = true});
      return;
    }
    const std::optional<analysis::Wind> motion = std::exchange(dragged_, std::nullopt);
    if (!motion) return;
    changed_(EnterStormMotion(program_, *motion));
    ShowState();
  };
}

// The rings stay as they were, so that the point stays under the pointer.
void HodographWindow::DragWind(Point to) {
  const Silenced quiet(program_.Current);
  changed_(windDrag_->MoveWindTo(program_, analysis::FromComponents(dragMapping_->ToWind(to))));
}

void HodographWindow::Enter() {
  changed_(EnterStormMotion(program_,
                            {direction_->value(), speed_->value() / SpeedFactor(program_.Set)}));
}

void HodographWindow::Draw(const hodograph::HodographInput& input) {
  view_->Show(nullptr);  // the picture that it shows is about to go
  plot_ = hodograph::PlotHodograph(input);
  view_->Show(&plot_.Page);
  floating_->setVisible(isVisible() && program_.Hodograph.Float);
  if (!program_.Hodograph.Float) return;
  QString text;
  for (const hodograph::PanelLine& line : AnalysisPanel(input)) {
    text += ToQString(line.Text) + QLatin1Char('\n');
  }
  floating_->setText(text);
}

void HodographWindow::ShowState() {
  setWindowTitle(QStringLiteral("Hodograph - ") + ToQString(program_.Current.Record.StationTitle));
  hodograph::HodographInput input = HodographOf(program_);
  if (windDrag_) input.Keep = dragMapping_;
  Draw(input);
  ShowControls();
  ShowTable();
  // Told once, and not again at every redraw, where the folder cannot be written.
  std::string text = hodograph::TableText(hodograph::ListWinds(HodographOf(program_)));
  if (text == listed_) return;
  listed_ = std::move(text);
  SaveWindListings(program_);
}

void HodographWindow::ShowControls() {
  ShowWord(mode_, program_.Set.MotionMode);
  ShowWord(mover_, program_.Set.Mover);
  ShowWord(frame_, program_.Hodograph.Frame);
  ShowWord(rings_, program_.Hodograph.Rings);
  ShowWord(compare_, program_.Hodograph.Compare);
  const QSignalBlocker silentLimit(limit_);
  limit_->setValue(program_.Hodograph.RingLimit);
  limit_->setEnabled(program_.Hodograph.Rings == RingScaling::Limit);
  for (const auto& [box, setting] : switches_) box->setChecked(program_.Hodograph.*setting);
  hold_->setChecked(program_.Hodograph.Hold);
  hold_->setEnabled(program_.Results.Storm.Chosen().has_value());
  const QSignalBlocker silentDirection(direction_);
  const QSignalBlocker silentSpeed(speed_);
  const double factor = SpeedFactor(program_.Set);
  const bool knots = program_.Set.Speed == SpeedUnits::Knots;
  speed_->setRange(0, Rounded(200 * factor, 1));
  speed_->setSuffix(knots ? QStringLiteral(" kts") : QStringLiteral(" m/s"));
  analysis::Wind motion{program_.Set.ManualMotionDir, program_.Set.ManualMotionSpd};
  if (const auto& chosen = program_.Results.Storm.Chosen()) {
    motion = analysis::FromComponents(chosen->Motion);
  }
  direction_->setValue(motion.Dir);
  speed_->setValue(motion.Spd * factor);
}

void HodographWindow::ShowTable() {
  const hodograph::WindTable table = hodograph::ListWinds(HodographOf(program_));
  QString text;
  for (const auto* lines : {&table.Header, &table.Rows}) {
    for (const std::string& line : *lines) text += ToQString(line) + QLatin1Char('\n');
  }
  table_->setPlainText(text);
}

void HodographWindow::ShowCursor(const std::optional<Point>& at) {
  const hodograph::CursorBox box =
      at ? hodograph::ReadHodograph(plot_, *at, program_.Set) : hodograph::CursorBox{};
  cursor_->setVisible(!box.Cursor.empty());
  if (box.Cursor.empty()) return;
  cursor_->setText(ToQString(box.Cursor + "\n" + box.Wind));
  cursor_->adjustSize();
  cursor_->move(view_->width() - cursor_->width() - 12, view_->height() - cursor_->height() - 12);
}

void HodographWindow::hideEvent(QHideEvent* event) {
  floating_->hide();
  QWidget::hideEvent(event);
}

void HodographWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  closed_();
}

}  // namespace vexa
