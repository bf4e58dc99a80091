#include "app/map_window.h"

#include <cmath>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <utility>

#include "app/drag_view.h"
#include "app/qt_text.h"
#include "core/numbers.h"

namespace vexa {
namespace {

constexpr double kMapNotch = 1.25;    // by which a notch of the wheel enlarges
constexpr double kMapButton = 1.6;    // and a button
constexpr double kClickPixels = 4;    // less than that is no drag
constexpr double kLeastPerKm = 0.25;  // units of the page to a kilometre ...
constexpr double kMostPerKm = 1200;   // ... between which a map is of use

}  // namespace

MapWindow::MapWindow(Program& program, const DisplayRow& row, Events events, QWidget* parent)
    : PlainDisplayWindow(program, row, std::move(events), parent) {
  AddButton("cmdLarger", "+", "Enlarge the map (wheel)",
            [this] { Enlarge(kMapButton, std::nullopt); });
  AddButton("cmdSmaller", "\u2212", "Show more of the globe (wheel)",
            [this] { Enlarge(1 / kMapButton, std::nullopt); });
  AddButton("cmdWhole", "&Whole area", "Show all stations", [this] { ShowAll(); });
  told_ = new QLabel(this);
  told_->setObjectName(QStringLiteral("lblMapReadout"));
  told_->setTextFormat(Qt::PlainText);
  told_->setWordWrap(true);  // a long text takes more lines before the window grows
  told_->setMinimumWidth(1);
  ControlLine().addWidget(told_, 4);
  view_->OnPointer([this](const std::optional<vexa::Point>& at) {
    if (at) Tell(TextAt(*at));
  });
  view_->OnWheel = [this](vexa::Point at, double notches) {
    Enlarge(std::pow(kMapNotch, notches), at);
  };
  view_->OnPress = [this](vexa::Point at, QPointF widget) {
    pressed_ = widget;
    at_ = at;
    hasMoved_ = false;
    isGrasped_ = Grasp(at);
    return true;
  };
  view_->OnDrag = [this](std::optional<vexa::Point> at, QPointF widget) {
    const QPointF way = widget - pressed_;
    hasMoved_ = hasMoved_ || std::hypot(way.x(), way.y()) >= kClickPixels;
    if (!at || !hasMoved_) return;
    const vexa::Point last = std::exchange(at_, *at);
    if (isGrasped_) return DragTo(*at);
    frame_ = frame_.Moved(at->X - last.X, at->Y - last.Y);
    isWhole_ = false;
    Draw();
  };
  view_->OnRelease = [this] {
    if (std::exchange(isGrasped_, false)) Release(at_, hasMoved_);
  };
}

void MapWindow::AddButton(const char* name, const char* text, const char* tip,
                          std::function<void()> does) {
  // That of a sign alone is no wider than it: the line is full on a small screen.
  const QString caption = QString::fromUtf8(text);
  QAbstractButton* button = nullptr;
  if (caption.size() == 1) {
    button = new QToolButton(this);
    button->setText(caption);
    button->setFocusPolicy(Qt::StrongFocus);
  } else {
    auto* wide = new QPushButton(caption, this);
    wide->setAutoDefault(false);
    button = wide;
  }
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(QString::fromUtf8(tip));
  button->setAccessibleName(QString::fromUtf8(tip));
  connect(button, &QAbstractButton::clicked, this, std::move(does));
  ControlLine().addWidget(button);
}

Picture MapWindow::Drawn(const Surface& on) {
  map::AreaMap drawn = Map(on, isWhole_ || !frame_.IsValid() ? nullptr : &frame_);
  frame_ = std::move(drawn.At);
  return std::move(drawn.Page);
}

void MapWindow::Enlarge(double factor, std::optional<vexa::Point> about) {
  if (!frame_.IsValid()) return;
  const double perKm = frame_.PerKm() * factor;
  if (perKm < kLeastPerKm || perKm > kMostPerKm) return;
  const Rect& on = frame_.On();
  const vexa::Point middle{(on.Left + on.Right) / 2, (on.Top + on.Bottom) / 2};
  frame_ = frame_.Enlarged(factor, about.value_or(middle));
  isWhole_ = false;
  Draw();
}

void MapWindow::ShowAll() {
  isWhole_ = true;
  Draw();
}

void MapWindow::Tell(const std::string& text) {
  told_->setText(ToQString(text));
}

std::string MapWindow::TextAt(vexa::Point at) const {
  const std::optional<map::Place> place =
      frame_.On().Contains(at) ? frame_.ToPlace(at) : std::nullopt;
  return place ? "Lat: " + Mask(place->Lat, "#0.00") + "  Lon: " + Mask(place->Lon, "##0.00")
               : std::string();
}

}  // namespace vexa
