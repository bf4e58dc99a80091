// No-value markers: the numbers that stand where a quantity is not available. They are the
// currency of the named routines and of the files; code tests them by name, never by literal.
#pragma once

#include <cmath>

namespace vexa {

inline constexpr double kMissing = 999.9;     // value not available; compared as float
inline constexpr double kNone = -999;         // no level, no index, unknown elevation in files
inline constexpr double kNotReached = 99999;  // height not reached; end of station files

/// True for the marker of a quantity that is not available, compared in single precision.
inline bool IsMissing(double value) {
  return static_cast<float>(value) == static_cast<float>(kMissing);
}

/// True for any no-value marker of a temperature, moisture, wind or index value, and for values
/// that are not finite. Not for heights: 9999 m is a real height (use HasHeight).
inline bool NotAvailable(double value) {
  return !std::isfinite(value) || std::fabs(value - kMissing) < 0.05 || value >= 9998 ||
         value <= -998.5;
}

/// True for a height that is a height: neither kNone nor kNotReached.
inline bool HasHeight(double height) {
  return std::isfinite(height) && height != kNone && height != kNotReached;
}

}  // namespace vexa
