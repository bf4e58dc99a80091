// Cutting lines and polygons at a rectangle, so that no painter needs to know what a plot area is.
#pragma once

#include <vector>

#include "picture/picture.h"

namespace vexa {

/// Whether a point lies anywhere: numbers that are none draw nothing.
bool IsFinite(Point at);

/// The pieces of a polyline that lie inside the rectangle.
std::vector<std::vector<Point>> ClipPolyline(const std::vector<Point>& points, const Rect& to);

/// The pieces of a polyline that lie outside it.
std::vector<std::vector<Point>> CutOut(const std::vector<Point>& points, const Rect& of);

/// A polygon cut at the rectangle; empty when nothing of it lies inside.
std::vector<Point> ClipPolygon(const std::vector<Point>& ring, const Rect& to);

}  // namespace vexa
