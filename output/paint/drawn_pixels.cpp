#include "output/paint/drawn_pixels.h"

#include <algorithm>
#include <cstring>
#include <QPainter>
#include <QRectF>

namespace vexa::paint {
namespace {

// The first pixel from there on that is no paper. Paper is compared as blocks of memory.
int BehindPaper(const QRgb* row, int from, int width, const std::vector<QRgb>& blank) {
  const int block = static_cast<int>(blank.size());
  while (from + block <= width &&
         std::memcmp(row + from, blank.data(), blank.size() * sizeof(QRgb)) == 0) {
    from += block;
  }
  while (from < width && row[from] == blank.front()) ++from;
  return from;
}

}  // namespace

DrawnPixels::DrawnPixels(const QImage& image, QRgb paper)
    : paper_(paper), ratio_(image.devicePixelRatio()), left_(image.width()) {
  constexpr std::size_t kBlock = 16;
  const std::vector<QRgb> blank(kBlock, paper);
  for (int y = 0; y < image.height(); ++y) {
    AddRow(reinterpret_cast<const QRgb*>(image.constScanLine(y)), image.width(), blank);
    if (runs_.empty()) {
      rowEnds_.clear();
      top_ = y + 1;
    }
  }
  const auto isBare = [this](std::size_t row) {
    return row > 0 && rowEnds_[row] == rowEnds_[row - 1];
  };
  while (!rowEnds_.empty() && isBare(rowEnds_.size() - 1)) rowEnds_.pop_back();
  runs_.shrink_to_fit();
  rowEnds_.shrink_to_fit();
  pixels_.shrink_to_fit();
}

void DrawnPixels::AddRow(const QRgb* row, int width, const std::vector<QRgb>& blank) {
  for (int at = BehindPaper(row, 0, width, blank); at < width;) {
    const int end = static_cast<int>(std::find(row + at, row + width, paper_) - row);
    runs_.push_back({at, end - at});
    pixels_.insert(pixels_.end(), row + at, row + end);
    left_ = std::min(left_, at);
    right_ = std::max(right_, end);
    at = BehindPaper(row, end, width, blank);
  }
  rowEnds_.push_back(runs_.size());
}

void DrawnPixels::DrawOn(QPainter& painter, const QPointF& at) const {
  if (runs_.empty()) return;
  constexpr int kRows = 16;  // of a strip, which stays near the processor
  QImage strip(right_ - left_, kRows, QImage::Format_RGB32);
  strip.setDevicePixelRatio(ratio_);
  const QRgb* pixel = pixels_.data();
  std::size_t run = 0;
  const int height = static_cast<int>(rowEnds_.size());
  for (int first = 0; first < height; first += kRows) {
    const int rows = std::min(kRows, height - first);
    strip.fill(paper_);
    for (int row = 0; row < rows; ++row) {
      auto* const line = reinterpret_cast<QRgb*>(strip.scanLine(row));
      for (; run < rowEnds_[static_cast<std::size_t>(first + row)]; ++run) {
        std::copy_n(pixel, runs_[run].Count, line + runs_[run].Left - left_);
        pixel += runs_[run].Count;
      }
    }
    painter.drawImage(at + QPointF(left_, top_ + first) / ratio_, strip,
                      QRectF(0, 0, strip.width(), rows));
  }
}

}  // namespace vexa::paint
