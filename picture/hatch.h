// The slanted lines of a hatched area, cut at its rings. They are lines of the picture and not a
// pattern of the surface, so that they keep their distance on the screen, in files and in print.
#pragma once

#include <vector>

#include "picture/picture.h"

namespace vexa {

inline constexpr double kHatchDistance = 90;  // between neighbours, drawing units
inline constexpr double kHatchWidth = 14;     // of a line

struct HatchLine {
  Point From{};
  Point To{};
};

/// Lines at 45 degrees within the rings by the even-odd rule: rising to the right for Hatched,
/// falling for BackHatched, none for Plain. Neighbouring areas share the same lines.
std::vector<HatchLine> HatchLines(const std::vector<std::vector<Point>>& rings, FillStyle style);

}  // namespace vexa
