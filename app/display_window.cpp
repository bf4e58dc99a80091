#include "app/display_window.h"

#include <QCursor>
#include <QToolTip>
#include <QVBoxLayout>
#include <string>

#include "app/diagram_view.h"
#include "app/qt_text.h"
#include "program/readout.h"

namespace vexa {

DisplayWindow::DisplayWindow(const Program& program, const DisplayRow& row, QWidget* parent)
    : QDialog(parent), program_(program), row_(row) {
  setObjectName(ToQString(row.Name));
  setWindowTitle(ToQString(row.Title));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  view_ = new DiagramView(this);
  view_->setAccessibleName(ToQString(row.Title));
  view_->OnPointer([this](const std::optional<vexa::Point>& at) { Point(at); });
  layout->addWidget(view_);
  Follow();
  constexpr int kHeight = 620;  // fits a screen of 800 x 600 with its frame taken off by the system
  const double share = picture_.Height() > 0 ? picture_.Width() / picture_.Height() : 1;
  resize(qMin(static_cast<int>(kHeight * share), 1100), kHeight);
}

void DisplayWindow::Follow() {
  picture_ = DrawDisplay(row_, program_);
  view_->Show(&picture_);
}

void DisplayWindow::Point(const std::optional<vexa::Point>& at) {
  if (!at) return;
  for (const HotSpot& spot : picture_.HotSpots()) {
    if (!spot.Where.Contains(*at) || spot.Tag != display::kIndexSpot) continue;
    QToolTip::showText(QCursor::pos(), ToQString(ExplainIndex(program_, spot.Text)), view_);
    return;
  }
  QToolTip::hideText();
}

}  // namespace vexa
