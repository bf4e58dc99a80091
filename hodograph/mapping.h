// Where a wind stands on the hodograph and which wind a place stands for. Winds are drawn in the
// direction into which they blow: a west wind to the right, a south wind upwards.
#pragma once

#include <vector>

#include "analysis/interpolate.h"
#include "picture/picture.h"

namespace vexa::hodograph {

struct HodographMapping {
  Rect Frame{};
  Point Center{};                    // of the rings
  analysis::WindVector Reference{};  // the wind there: calm, or the storm's motion
  double Scale = 1;                  // drawing units per knot, the same both ways

  Point ToPoint(const analysis::WindVector& wind) const {
    return {Center.X - Scale * (wind.U - Reference.U), Center.Y + Scale * (wind.V - Reference.V)};
  }
  analysis::WindVector ToWind(Point at) const {
    return {Reference.U - (at.X - Center.X) / Scale, Reference.V + (at.Y - Center.Y) / Scale};
  }
};

/// The mapping with the rings in the middle of the frame and a speed in knots at its edge.
HodographMapping CenteredOn(const Rect& frame, const analysis::WindVector& reference,
                            double edgeSpeed);

/// The mapping under which all of these winds and the reference fill the frame, wherever the
/// rings' centre comes to stand.
HodographMapping FittedTo(const Rect& frame, const analysis::WindVector& reference,
                          const std::vector<analysis::WindVector>& winds);

}  // namespace vexa::hodograph
