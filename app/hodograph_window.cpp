#include "app/hodograph_window.h"

#include <algorithm>
#include <QCheckBox>
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
#include <QStringList>
#include <QVBoxLayout>
#include <QtMath>
#include <utility>

#include "app/drag_view.h"
#include "app/option_control.h"
#include "app/widget_surface.h"
#include "config/catalogue.h"
#include "core/numbers.h"
#include "core/units.h"
#include "hodograph/analysis_panel.h"
#include "hodograph/wind_table.h"
#include "program/hodograph_commands.h"

namespace vexa {
namespace {

constexpr QSize kSmallest(780, 560);  // fits a screen of 800 x 600

constexpr int kWide = 1000;        // pixels, of a window with the controls beside the plot
constexpr int kControlShare = 4;   // of the height, for the controls below it: one in so many
constexpr int kColumnWidth = 430;  // pixels, of the controls
constexpr int kSwitchRow = 2;      // below the boxes of frame, rings and depth
constexpr int kSwitchColumns = 3;

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

Box StormRelativeBox() {
  return {.Title = "Storm-Relative Wind Mode ...",
          .Text =
              "Wind vectors are not interactive on this screen.\n"
              "Interactive winds are only functional with the Ground-Relative Mode,\n"
              "However, the Storm-Motion vector (when plotted) is interactive.",
          .Icon = BoxIcon::Information};
}

double SpeedFactor(const Options& options) {
  return options.Speed == SpeedUnits::Knots ? 1 : kKnotToMs;
}

}  // namespace

HodographWindow::HodographWindow(Program& program, const DisplayRow& row, Events events,
                                 QWidget* parent)
    : DisplayWindow(program, row, std::move(events), parent) {
  room_ = view_;
  room_->installEventFilter(this);
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
  auto* whole = new QHBoxLayout(this);
  whole->setContentsMargins(0, 0, 0, 0);
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
  whole->addWidget(parts);
  BuildDragging();
  LoadCompared(program_);
  resize(QSize(1280, 720).boundedTo(screen()->availableSize()).expandedTo(kSmallest));
  if (width() < kWide) {
    // Beside the controls the plot would be too small to read: they scroll below it.
    parts->setOrientation(Qt::Vertical);
    parts->setSizes({height() - height() / kControlShare, height() / kControlShare});
    return;
  }
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
  direction_ = MakeNumberBox(*FindOption("Manual storm direction"), group);
  direction_->setObjectName(QStringLiteral("txtDirection"));
  direction_->setWrapping(true);
  direction_->setDecimals(0);
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
    events_.Changed(SetMotionMode(program_, static_cast<Scaling>(index)));
    Follow();
  });
  connect(mover_, &QComboBox::activated, this, [this](int index) {
    events_.Changed(ChooseMover(program_, static_cast<StormMover>(index)));
  });
  connect(hold_, &QCheckBox::clicked, this, [this](bool hold) {
    events_.Changed(HoldStormMotion(program_, hold));
    Follow();
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
    program_.Settings.Hodograph.*setting = on;
    events_.Changed({.View = true});
  });
  const int place = static_cast<int>(switches_.size());
  into.addWidget(box, kSwitchRow + place / kSwitchColumns, place % kSwitchColumns);
  switches_.emplace_back(box, setting);
  return box;
}

void HodographWindow::BuildPlotting(QVBoxLayout& column) {
  auto* group = new QGroupBox(QStringLiteral("Plot"), this);
  auto* grid = new QGridLayout(group);
  frame_ = WordBox<HodoOrigin>("cboFrame", group);
  rings_ = WordBox<RingScaling>("cboRings", group);
  connect(frame_, &QComboBox::activated, this, [this](int index) {
    program_.Settings.Hodograph.Frame = static_cast<HodoOrigin>(index);
    events_.Changed({.View = true});
  });
  connect(rings_, &QComboBox::activated, this, [this](int index) {
    program_.Settings.Hodograph.Rings = static_cast<RingScaling>(index);
    events_.Changed({.View = true});
  });
  grid->addWidget(frame_, 0, 0);
  grid->addWidget(rings_, 0, 1);
  limit_ = new QDoubleSpinBox(group);
  limit_->setObjectName(QStringLiteral("txtLimit"));
  limit_->setDecimals(0);
  limit_->setSingleStep(10);
  limit_->setKeyboardTracking(false);
  connect(limit_, &QDoubleSpinBox::valueChanged, this, [this](double shown) {
    program_.Settings.Hodograph.RingLimit = shown / SpeedFactor(program_.Set);
    events_.Changed({.View = true});
  });
  grid->addWidget(limit_, 0, 2);
  BuildDepth(*grid);
  AddSwitch(*grid, "chkNoSMplot", QStringLiteral("No storm vectors"), &HodographSettings::NoSMplot);
  AddSwitch(*grid, "chkSkipPlot", QStringLiteral("No trace"), &HodographSettings::SkipPlot);
  AddSwitch(*grid, "chkFloat", QStringLiteral("FLOAT"), &HodographSettings::Float);
  AddSwitch(*grid, "chkHelicity", QStringLiteral("Helicity Contours"),
            &HodographSettings::HelicityContours);
  AddSwitch(*grid, "chkMbe", QStringLiteral("MBE Vector"), &HodographSettings::MbeVector);
  AddSwitch(*grid, "chkCaptionAtTop", QStringLiteral("Caption at top"),
            &HodographSettings::CaptionAtTop);
  column.addWidget(group);
}

// The depth belongs to the options: the small hodograph of the diagram and the trajectory obey it
// too.
void HodographWindow::BuildDepth(QGridLayout& into) {
  auto* caption = new QLabel(QStringLiteral("Depth"), this);
  depthMode_ = WordBox<HodoDepth>("cboDepth", this);
  caption->setBuddy(depthMode_);
  depth_ = MakeNumberBox(*FindOption("Depth limit"), this);
  depth_->setObjectName(QStringLiteral("txtDepth"));
  connect(depthMode_, &QComboBox::activated, this, [this](int index) {
    program_.Set.HodoDepthMode = static_cast<HodoDepth>(index);
    events_.Changed({.View = true});
  });
  connect(depth_, &QDoubleSpinBox::valueChanged, this, [this](double km) {
    program_.Set.HodoDepthLimitKm = km;
    events_.Changed({.View = true});
  });
  into.addWidget(caption, 1, 0);
  into.addWidget(depthMode_, 1, 1);
  into.addWidget(depth_, 1, 2);
}

void HodographWindow::BuildComparison(QVBoxLayout& column) {
  auto* group = new QGroupBox(QStringLiteral("Compare"), this);
  auto* grid = new QGridLayout(group);
  compare_ = WordBox<CompareTraces>("cboCompare", group);
  connect(compare_, &QComboBox::activated, this, [this](int index) {
    program_.Settings.Hodograph.Compare = static_cast<CompareTraces>(index);
    events_.Changed({.View = true});
  });
  grid->addWidget(compare_, 0, 0);
  for (int slot = 1; slot <= hodograph::kComparisonSlots; ++slot) {
    auto* keep = new QPushButton(QStringLiteral("Keep as #%1").arg(slot), group);
    keep->setObjectName(QStringLiteral("cmdCompare%1").arg(slot));
    connect(keep, &QPushButton::clicked, this, [this, slot] {
      KeepCompared(program_, slot);
      Follow();
    });
    auto* empty = new QPushButton(QStringLiteral("Empty #%1").arg(slot), group);
    empty->setObjectName(QStringLiteral("cmdEmpty%1").arg(slot));
    connect(empty, &QPushButton::clicked, this, [this, slot] {
      EmptyCompared(program_, slot);
      Follow();
    });
    grid->addWidget(keep, 0, slot);
    grid->addWidget(empty, 1, slot);
  }
  column.addWidget(group);
}

void HodographWindow::BuildTable(QVBoxLayout& column) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(font.pointSizeF() * 0.9);
  const auto text = [&](const char* name) {
    auto* edit = new QPlainTextEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setReadOnly(true);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setFont(font);
    return edit;
  };
  // The header stays above the rows and goes sideways with them alone.
  tableHeader_ = text("WindTableHeader");
  tableHeader_->setFocusPolicy(Qt::NoFocus);
  tableHeader_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  tableHeader_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  constexpr int kHeaderLines = 2;
  const int frame = 2 * tableHeader_->frameWidth();
  tableHeader_->setFixedHeight(kHeaderLines * tableHeader_->fontMetrics().lineSpacing() + frame +
                               qCeil(2 * tableHeader_->document()->documentMargin()));
  table_ = text("WindTable");
  connect(table_->horizontalScrollBar(), &QScrollBar::valueChanged,
          tableHeader_->horizontalScrollBar(), &QScrollBar::setValue);
  auto* both = new QVBoxLayout;
  both->setSpacing(0);
  both->addWidget(tableHeader_);
  both->addWidget(table_, 1);
  column.addLayout(both, 1);
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
    program_.Settings.Hodograph.TableInverted = !program_.Settings.Hodograph.TableInverted;
    ShowTable();
  });
  grid->addWidget(invert, grid->count() / 3, grid->count() % 3);
  column.addLayout(grid);
}

void HodographWindow::BuildDragging() {
  view_->OnPointer([this](const std::optional<Point>& at) { ShowCursor(at); });
  view_->OnPress = [this](Point at, QPointF) { return TakeHold(at); };
  view_->OnDrag = [this](std::optional<Point> at, QPointF) {
    if (!at || !dragMapping_ || !dragMapping_->Frame.Contains(*at)) return;
    // Nothing may run in between, so that each picture follows its mouse move at once.
    const Silenced quiet = program_.Doc.Quiet();
    const analysis::WindVector to = dragMapping_->ToWind(*at);
    events_.Changed(windDrag_ ? windDrag_->SetWind(program_, to)
                              : EnterStormMotion(program_, analysis::FromComponents(to)));
  };
  view_->OnRelease = [this] {
    if (!dragMapping_) return;
    if (windDrag_) windDrag_->Finish(program_);
    EndDrag({.View = true});
  };
}

void HodographWindow::Escape() {
  if (!dragMapping_) return program_.Gate.IsOpen() ? DisplayWindow::Escape() : program_.Gate.Stop();
  const Silenced quiet = program_.Doc.Quiet();
  EndDrag(windDrag_ ? windDrag_->TakeBack(program_) : TakeBack(program_, beforeDrag_));
}

// The head of the storm vector, else a wind of the trace.
bool HodographWindow::TakeHold(Point at) {
  view_->setFocus();
  if (!program_.Gate.IsOpen()) return false;
  windDrag_.reset();
  if (!HitsStormVector(plot_, at)) {
    const std::optional<hodograph::ProfileWind> wind = FindWind(plot_, at);
    if (!wind) return false;
    if (plot_.StormRelative) {
      program_.Current.Ask->Ask(StormRelativeBox());
      return false;
    }
    windDrag_.emplace(program_, Grip{Dragged::Wind, wind->Level}, at);
  }
  dragMapping_ = plot_.Mapping;
  beforeDrag_ = EntryOf(program_);
  return true;
}

void HodographWindow::EndDrag(Changes changes) {
  windDrag_.reset();
  dragMapping_.reset();
  events_.Changed(changes);
  Follow();
}

void HodographWindow::Enter() {
  events_.Changed(EnterStormMotion(
      program_, {direction_->value(), speed_->value() / SpeedFactor(program_.Set)}));
}

void HodographWindow::Draw(const hodograph::HodographInput& input) {
  view_->Show(nullptr);  // the picture that it shows is about to go
  plot_ = hodograph::PlotHodograph(input, SurfaceOf(*view_));
  view_->Show(&plot_.Page);
  if (!program_.Settings.Hodograph.Float) return floating_->hide();
  QString text;
  for (const hodograph::PanelLine& line : AnalysisPanel(input)) {
    text += ToQString(line.Text) + QLatin1Char('\n');
  }
  floating_->setText(text);
  floating_->adjustSize();
  if (floating_->isVisible() || !isVisible()) return;
  const QPoint free(view_->width() - floating_->width(), view_->height() - floating_->height());
  floating_->move(view_->mapToGlobal(free));
  floating_->show();
}

void HodographWindow::Compose() {
  hodograph::HodographInput input = HodographOf(program_, program_.Set);
  input.Keep = dragMapping_;
  Draw(input);
}

void HodographWindow::Follow() {
  setWindowTitle(QStringLiteral("Hodograph - ") + ToQString(program_.Current.Record.StationTitle));
  Compose();
  ShowControls();
  ShowTable();
  // Told once, and not again at every redraw, where the folder cannot be written.
  std::string text =
      hodograph::TableText(hodograph::ListWinds(HodographOf(program_, program_.Set)));
  if (text == listed_) return;
  listed_ = std::move(text);
  SaveWindListings(program_);
}

void HodographWindow::ShowControls() {
  ShowWord(mode_, program_.Set.MotionMode);
  ShowWord(mover_, program_.Set.Mover);
  ShowWord(frame_, program_.Settings.Hodograph.Frame);
  ShowWord(rings_, program_.Settings.Hodograph.Rings);
  ShowWord(compare_, program_.Settings.Hodograph.Compare);
  const QSignalBlocker silentLimit(limit_);
  ShowSpeed(limit_, RowNamed(program_.Settings.Hodograph, "ring limit"),
            program_.Settings.Hodograph.RingLimit);
  limit_->setEnabled(program_.Settings.Hodograph.Rings == RingScaling::Limit);
  ShowWord(depthMode_, program_.Set.HodoDepthMode);
  const QSignalBlocker silentDepth(depth_);
  depth_->setValue(program_.Set.HodoDepthLimitKm);
  depth_->setEnabled(program_.Set.HodoDepthMode == HodoDepth::Limit);
  for (const auto& [box, setting] : switches_)
    box->setChecked(program_.Settings.Hodograph.*setting);
  hold_->setChecked(program_.Settings.Hodograph.Hold);
  hold_->setEnabled(program_.Results.Storm.Chosen().has_value());
  const QSignalBlocker silentDirection(direction_);
  const QSignalBlocker silentSpeed(speed_);
  analysis::Wind motion{program_.Set.ManualMotionDir, program_.Set.ManualMotionSpd};
  if (const auto& chosen = program_.Results.Storm.Chosen()) {
    motion = analysis::FromComponents(chosen->Motion);
  }
  direction_->setValue(motion.Dir);
  ShowSpeed(speed_, *FindOption("Manual storm speed"), motion.Spd);
}

// In the unit of the options, and within what the setting takes.
void HodographWindow::ShowSpeed(QDoubleSpinBox* box, const RowInfo& row, double knots) {
  const double factor = SpeedFactor(program_.Set);
  box->setRange(Rounded(row.Least * factor, box->decimals()),
                Rounded(row.Most * factor, box->decimals()));
  box->setSuffix(program_.Set.Speed == SpeedUnits::Knots ? QStringLiteral(" kts")
                                                         : QStringLiteral(" m/s"));
  box->setValue(knots * factor);
}

void HodographWindow::ShowTable() {
  const hodograph::WindTable table = hodograph::ListWinds(HodographOf(program_, program_.Set));
  const auto show = [](QPlainTextEdit& in, const std::vector<std::string>& lines) {
    QStringList text;
    for (const std::string& line : lines) text.append(ToQString(line));
    in.setPlainText(text.join(QLatin1Char('\n')));
  };
  // Blanks behind it, so that it can go as far sideways as rows beside a scroll bar.
  constexpr int kBehind = 8;
  std::vector<std::string> header = table.Header;
  for (std::string& line : header) line += std::string(kBehind, ' ');
  show(*tableHeader_, header);
  show(*table_, table.Rows);
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

}  // namespace vexa
