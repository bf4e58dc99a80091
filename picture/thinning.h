// Lines with fewer points than they came with.
#pragma once

#include <vector>

#include "picture/picture.h"

namespace vexa {

/// Without points that lie no further than a distance from the line through those that stay: the
/// first, the last and, in between, points of the line itself. A line that turns back keeps its
/// turn to within that distance.
std::vector<Point> Thinned(std::vector<Point> points, double near);

}  // namespace vexa
