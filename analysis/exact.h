// Differences beside limits. What is reported in tenths has differences in tenths, but not in
// binary: 28.4 - 15.4 is a little less than 13, and 9.3 - 7.3 a little more than 2.
#pragma once

#include "core/numbers.h"

namespace vexa::analysis {

/// The value without what binary arithmetic adds to it, so that a limit that is met counts as met.
inline double Exact(double difference) {
  constexpr int kExactDecimals = 6;
  return Rounded(difference, kExactDecimals);
}

}  // namespace vexa::analysis
