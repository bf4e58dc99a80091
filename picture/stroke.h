// What painters must agree on for a picture to look the same on every surface: how long dashes
// are, how wide a halo is and where a page lies in a frame of other proportions.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "picture/picture.h"

namespace vexa {

/// Dashes and gaps of a line style in drawing units, in turn; none for a solid line.
class DashPattern {
 public:
  /// width  of the pen as it is drawn; below kLeastDashUnit the dashes shrink no further
  DashPattern(LineStyle style, double width);
  std::span<const double> Lengths() const { return {lengths_.data(), count_}; }

 private:
  std::array<double, 4> lengths_{};
  std::size_t count_ = 0;
};

/// The dashes of a line one by one, for a painter that draws solid lines faster than dashed ones.
std::vector<std::vector<Point>> Dashes(const std::vector<Point>& line, const DashPattern& pattern);

inline constexpr double kLeastDashUnit = 12;  // drawing units

/// Share of the letter size by which a halo stands out on every side.
inline constexpr double kHaloShare = 0.16;

/// How a page is put into a rectangle: scaled alike both ways, in its middle.
struct PageFit {
  double Scale = 0;  // rectangle's units per drawing unit; 0 when either has no extent
  double Left = 0;   // of the page, in the rectangle's units
  double Top = 0;
};
PageFit FitPage(double pageWidth, double pageHeight, const Rect& into);

}  // namespace vexa
