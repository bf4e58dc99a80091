#include "picture/stroke.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vexa {

DashPattern::DashPattern(LineStyle style, double width) {
  const double unit = std::max(width, kLeastDashUnit);
  switch (style) {
    case LineStyle::Solid:
      break;
    case LineStyle::Dash:
      lengths_ = {6 * unit, 4 * unit};
      count_ = 2;
      break;
    case LineStyle::Dots:
      lengths_ = {1.5 * unit, 3 * unit};
      count_ = 2;
      break;
    case LineStyle::DashDot:
      lengths_ = {8 * unit, 3 * unit, 1.5 * unit, 3 * unit};
      count_ = 4;
      break;
  }
}

std::vector<std::vector<Point>> Dashes(const std::vector<Point>& line, const DashPattern& pattern) {
  const std::span<const double> lengths = pattern.Lengths();
  if (lengths.empty() || line.empty()) return {line};
  std::vector<std::vector<Point>> dashes = {{line.front()}};
  std::size_t part = 0;  // of the pattern; dashes have even numbers
  double left = lengths[0];
  for (std::size_t i = 1; i < line.size(); ++i) {
    const Point from = line[i - 1];
    const Point to = line[i];
    const double length = std::hypot(to.X - from.X, to.Y - from.Y);
    double gone = 0;
    while (length - gone > left) {
      gone += left;
      const Point at{from.X + (to.X - from.X) * gone / length,
                     from.Y + (to.Y - from.Y) * gone / length};
      if (part % 2 == 0) {
        dashes.back().push_back(at);
      } else {
        dashes.push_back({at});
      }
      part = (part + 1) % lengths.size();
      left = lengths[part];
    }
    left -= length - gone;
    if (part % 2 == 0) dashes.back().push_back(to);
  }
  return dashes;
}

PageFit FitPage(double pageWidth, double pageHeight, const Rect& into) {
  if (!(pageWidth > 0 && pageHeight > 0 && into.Width() > 0 && into.Height() > 0)) return {};
  const double scale = std::min(into.Width() / pageWidth, into.Height() / pageHeight);
  return {scale, into.Left + (into.Width() - pageWidth * scale) / 2,
          into.Top + (into.Height() - pageHeight * scale) / 2};
}

}  // namespace vexa
