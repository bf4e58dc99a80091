#include "hodograph/mapping.h"

#include <algorithm>

namespace vexa::hodograph {
namespace {

constexpr double kLeastSpan = 20;    // kt across the frame
constexpr double kUsedShare = 0.84;  // of the frame, by the winds

}  // namespace

HodographMapping CenteredOn(const Rect& frame, const analysis::WindVector& reference,
                            double edgeSpeed) {
  const double half = std::min(frame.Width(), frame.Height()) / 2;
  return {frame,
          {(frame.Left + frame.Right) / 2, (frame.Top + frame.Bottom) / 2},
          reference,
          half / std::max(edgeSpeed, kLeastSpan / 2)};
}

HodographMapping FittedTo(const Rect& frame, const analysis::WindVector& reference,
                          const std::vector<analysis::WindVector>& winds) {
  analysis::WindVector least = reference;
  analysis::WindVector most = reference;
  for (const analysis::WindVector& wind : winds) {
    least = {std::min(least.U, wind.U), std::min(least.V, wind.V)};
    most = {std::max(most.U, wind.U), std::max(most.V, wind.V)};
  }
  const double acrossUnits = kUsedShare * frame.Width();
  const double downUnits = kUsedShare * frame.Height();
  HodographMapping at{frame, {}, reference, 1};
  at.Scale = std::min(acrossUnits / std::max(most.U - least.U, kLeastSpan),
                      downUnits / std::max(most.V - least.V, kLeastSpan));
  // The middle of the winds comes to the middle of the frame.
  at.Center.X = (frame.Left + frame.Right) / 2 + at.Scale * ((least.U + most.U) / 2 - reference.U);
  at.Center.Y = (frame.Top + frame.Bottom) / 2 - at.Scale * ((least.V + most.V) / 2 - reference.V);
  return at;
}

}  // namespace vexa::hodograph
