#include "picture/stroke.h"

#include <algorithm>
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

PageFit FitPage(double pageWidth, double pageHeight, const Rect& into) {
  if (!(pageWidth > 0 && pageHeight > 0 && into.Width() > 0 && into.Height() > 0)) return {};
  const double scale = std::min(into.Width() / pageWidth, into.Height() / pageHeight);
  return {scale, into.Left + (into.Width() - pageWidth * scale) / 2,
          into.Top + (into.Height() - pageHeight * scale) / 2};
}

}  // namespace vexa
