#include "app/display_window.h"

#include <algorithm>
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
  // As large as a screen of 800 x 600 has room for, in the shape of the page.
  constexpr double kWidth = 780;
  constexpr double kHeight = 560;
  const double scale = std::min(kWidth / picture_.Width(), kHeight / picture_.Height());
  resize(static_cast<int>(picture_.Width() * scale), static_cast<int>(picture_.Height() * scale));
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
