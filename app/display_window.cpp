#include "app/display_window.h"

#include <QCursor>
#include <QScreen>
#include <QScrollArea>
#include <QToolTip>
#include <QVBoxLayout>
#include <string>

#include "app/diagram_view.h"
#include "app/qt_text.h"
#include "program/readout.h"

namespace vexa {
namespace {

constexpr double kGoodLetter = 13;     // pixels, height of the letters
constexpr double kSmallestLetter = 8;  // that can be read
constexpr QSize kFrame(20, 40);        // around the window

// Of a page whose letters have this height.
QSize PageSize(const Picture& page, double letter) {
  const double scale = letter / display::kSheetText;
  return {static_cast<int>(page.Width() * scale), static_cast<int>(page.Height() * scale)};
}

}  // namespace

DisplayWindow::DisplayWindow(const Program& program, const DisplayRow& row, QWidget* parent)
    : QDialog(parent), program_(program), row_(row) {
  setObjectName(ToQString(row.Name));
  setWindowTitle(ToQString(row.Title));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  view_ = new DiagramView(this);
  view_->setAccessibleName(ToQString(row.Title));
  view_->OnPointer([this](const std::optional<vexa::Point>& at) { Point(at); });
  around_ = new QScrollArea(this);
  around_->setWidget(view_);
  around_->setWidgetResizable(true);
  around_->setFrameShape(QFrame::NoFrame);
  layout->addWidget(around_);
  Follow();
  const QSize room = screen()->availableSize() - kFrame;
  resize(PageSize(picture_, kGoodLetter).boundedTo(room));
  view_->setFocus();
}

void DisplayWindow::Follow() {
  picture_ = DrawDisplay(row_, program_);
  view_->setMinimumSize(PageSize(picture_, kSmallestLetter));
  view_->Show(&picture_);
}

void DisplayWindow::Point(const std::optional<vexa::Point>& at) {
  if (!at) return;
  const QPoint place = view_->WidgetAt(*at).toPoint();
  around_->ensureVisible(place.x(), place.y(), 0, 0);  // for the cursor of the arrow keys
  for (const HotSpot& spot : picture_.HotSpots()) {
    if (!spot.Where.Contains(*at) || spot.Tag != display::kIndexSpot) continue;
    QToolTip::showText(QCursor::pos(), ToQString(HotInfo(program_, spot.Text)), view_);
    return;
  }
  QToolTip::hideText();
}

}  // namespace vexa
