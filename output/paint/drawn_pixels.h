// What is drawn on an image of paper: of a grid's some fifth of its pixels.
#pragma once

#include <cstddef>
#include <QImage>
#include <QPointF>
#include <QRgb>
#include <vector>

class QPainter;

namespace vexa::paint {

/// Keeps those pixels of an image that are not paper, 4 bytes for each and 8 for each run of them
/// in a row.
class DrawnPixels {
 public:
  DrawnPixels() = default;
  /// image  of Format_RGB32
  DrawnPixels(const QImage& image, QRgb paper);

  /// Puts the part of the image that holds all of them back, with the paper between them.
  ///
  /// at  of the image's left upper corner, at a whole pixel of what is painted on
  void DrawOn(QPainter& painter, const QPointF& at) const;

 private:
  struct Run {
    int Left = 0;
    int Count = 0;
  };

  void AddRow(const QRgb* row, int width, const std::vector<QRgb>& blank);

  QRgb paper_ = 0;
  double ratio_ = 1;        // device pixels of the image for one that is painted on
  int left_ = 0, top_ = 0;  // of the part
  int right_ = 0;           // excluded
  std::vector<Run> runs_{};
  std::vector<std::size_t> rowEnds_{};  // in runs_, from the top of the part on
  std::vector<QRgb> pixels_{};
};

}  // namespace vexa::paint
