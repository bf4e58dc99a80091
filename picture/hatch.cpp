#include "picture/hatch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "picture/clip.h"

namespace vexa {
namespace {

constexpr std::size_t kMostLines = 10000;  // a page of 12 000 x 9 000 units has some 170

}  // namespace

std::vector<HatchLine> HatchLines(const std::vector<std::vector<Point>>& rings, FillStyle style) {
  std::vector<HatchLine> lines;
  if (style == FillStyle::Plain) return lines;
  // A line is a constant sum of x and y (rising to the right, y being downwards) or, mirrored, a
  // constant difference; what runs along it is x.
  const double sign = style == FillStyle::Hatched ? 1 : -1;
  const auto across = [sign](Point at) { return at.Y + sign * at.X; };

  double least = std::numeric_limits<double>::infinity();
  double most = -least;
  for (const std::vector<Point>& ring : rings) {
    for (const Point& at : ring) {
      if (!IsFinite(at)) return lines;
      least = std::min(least, across(at));
      most = std::max(most, across(at));
    }
  }
  const double step = kHatchDistance * std::sqrt(2.0);
  if (!(most > least) || (most - least) / step > static_cast<double>(kMostLines)) return lines;

  std::vector<double> crossings;
  for (double number = std::ceil(least / step); number * step <= most; ++number) {
    const double place = number * step;
    crossings.clear();
    for (const std::vector<Point>& ring : rings) {
      for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point& from = ring[i];
        const Point& to = ring[i + 1 == ring.size() ? 0 : i + 1];
        const double fromAcross = across(from);
        const double toAcross = across(to);
        if ((fromAcross < place) == (toAcross < place)) continue;
        const double share = (place - fromAcross) / (toAcross - fromAcross);
        crossings.push_back(from.X + share * (to.X - from.X));
      }
    }
    std::ranges::sort(crossings);
    for (std::size_t i = 1; i < crossings.size(); i += 2) {
      const double left = crossings[i - 1];
      const double right = crossings[i];
      if (right > left) {
        lines.push_back({{left, place - sign * left}, {right, place - sign * right}});
      }
    }
  }
  return lines;
}

}  // namespace vexa
