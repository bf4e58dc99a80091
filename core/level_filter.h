// Thins soundings of high density: of the thousands of levels that come with a value every second
// the mandatory ones stay and those without which a line through the rest would miss a value by
// more than a tolerance.
#pragma once

#include <array>

#include "core/sounding_record.h"

namespace vexa {

/// How far a level that was left out may lie off the line between those that stayed. Narrower
/// than what observers call significant, because energies are sums over these lines: CAPE stays
/// within 2 %, or within 5 J/kg where there is little of it; twice the tolerance would not do.
struct FilterTolerance {
  double Temp = 0.3;   // °C
  double Dewpt = 0.5;  // °C
  double Wind = 2;     // knots, length of the vector difference
  // Parcels start near the ground, and their energies rise by 100 J/kg and more with each degree.
  double LowTemp = 0.1;    // °C, up to kLowDepth above the lowest level
  double LowDewpt = 0.15;  // °C
};
inline constexpr double kLowDepth = 300;  // hPa

/// The mandatory levels of coded messages, hPa.
inline constexpr std::array kMandatoryPress = {1000.0, 925.0, 850.0, 700.0, 500.0, 400.0, 300.0,
                                               250.0,  200.0, 150.0, 100.0, 70.0,  50.0,  30.0,
                                               20.0,   10.0,  7.0,   5.0,   3.0,   2.0,   1.0};

/// More levels than any coded message or listing of significant levels has.
inline constexpr int kHighDensityLevels = 250;

/// True for a sounding that is worth thinning.
bool IsHighDensity(const SoundingRecord& record);

/// The sounding with fewer levels, none of them changed.
///
/// Temperature levels stay: the lowest and the highest; those at mandatory pressures, or where
/// there is none the two around it, so that values there are the same to the digit; those next to
/// which a dew point ceases or begins; and, again and again, the one farthest off the line in ln p
/// between its neighbours, while beyond the tolerance. Wind levels stay: the lowest, the highest
/// and the strongest, those without a value, and by the same rule those off the line of the
/// components in height.
///
/// record  in order, as SortData leaves it
SoundingRecord FilterLevels(const SoundingRecord& record, const FilterTolerance& tolerance = {});

}  // namespace vexa
