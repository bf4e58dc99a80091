#include "output/paint/print.h"

#include <algorithm>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <string>

#include "core/numbers.h"
#include "output/paint/paint.h"
#include "output/paint/pdf.h"

namespace vexa::paint {
namespace {

Fault PrintingFailed(std::string reason) {
  return {kFaultPrinter, "PrintPages", std::move(reason)};
}

}  // namespace

bool SetPaper(QPagedPaintDevice& device, const Picture& page, double unitsPerPoint) {
  const double width = page.Width() / unitsPerPoint;
  const double height = page.Height() / unitsPerPoint;
  // Paper sizes stand upright; printers learn from the orientation how to turn them.
  const QSizeF upright(std::min(width, height), std::max(width, height));
  const auto turn = width > height ? QPageLayout::Landscape : QPageLayout::Portrait;
  const QPageSize paper(upright, QPageSize::Point, {}, QPageSize::FuzzyOrientationMatch);
  QPageLayout layout(paper, turn, QMarginsF(0, 0, 0, 0));
  layout.setMode(QPageLayout::FullPageMode);
  return device.setPageLayout(layout);
}

Fault PaperRefused() {
  return PrintingFailed(kSetPrinterFailed + Shortest(kFaultPrinter));
}

std::optional<Fault> PrintPages(std::span<const Picture> pages, double unitsPerPoint,
                                QPagedPaintDevice& device, Progress progress) {
  if (pages.empty()) return PrintingFailed("there is nothing to print");
  if (!SetPaper(device, pages.front(), unitsPerPoint)) return PaperRefused();
  QPainter painter;
  if (!painter.begin(&device)) return PrintingFailed("the printer cannot be opened");
  const std::string total = Shortest(static_cast<int>(pages.size()));
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const double done = static_cast<double>(i) / static_cast<double>(pages.size());
    if (!progress.Begin("Printing: " + Shortest(static_cast<int>(i) + 1) + " of " + total, done)) {
      return PrintingFailed(kPrintCancelled);
    }
    if (i > 0 && !device.newPage()) return PrintingFailed("a new page cannot be begun");
    Paint(pages[i], painter, QRectF(0, 0, device.width(), device.height()));
  }
  if (!painter.end()) return PrintingFailed("the printer did not take the pages");
  return std::nullopt;
}

Outcome<std::string> PagesAsPdf(std::span<const Picture> pages, double unitsPerPoint,
                                Progress progress) {
  return MakePdf(
      [&](QPdfWriter& writer) { return PrintPages(pages, unitsPerPoint, writer, progress); });
}

}  // namespace vexa::paint
