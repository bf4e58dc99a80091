// The derived values of levels, some levels at a time: a block goes through every formula while its
// columns are still near, and no loop has a remainder.
#pragma once

#include <cstddef>

#include "analysis/moist_air.h"

namespace vexa::analysis {

/// Levels of a block. Columns hold whole blocks; what pads them is ordinary air.
inline constexpr std::size_t kBlockLevels = 32;

/// Columns from which values are derived, and those into which they go.
struct AirColumns {
  const double* Press;  // hPa
  const double* Temp;   // °C
  const double* Dewpt;  // °C

  double* LogPress;     // 0 where there is no pressure
  double* Theta;        // K
  double* MixingRatio;  // kg/kg
  double* VirtualTemp;  // °C
  double* RelHumidity;  // %
  double* ThetaE;       // K
  double* WetBulb;      // °C

  AirColumns From(std::size_t level) const {
    return {Press + level,  Temp + level,        Dewpt + level,       LogPress + level,
            Theta + level,  MixingRatio + level, VirtualTemp + level, RelHumidity + level,
            ThetaE + level, WetBulb + level};
  }
};

enum class WantedAir { VirtualTemp, All };

/// What level_profile.h says of each level, with the vapour pressures from the table; without θ, θe
/// and wet bulb where the virtual temperature alone is wanted.
///
/// returns  whether that is all; else LogPress and Theta alone hold of levels whose air is not
///          ordinary, and the wet bulb is not a number where the steps towards it were too few
bool DeriveAir(const AirColumns& columns, std::size_t blocks, SaturationOver over,
               WantedAir wanted);

/// Whether air is neither near absolute zero nor too dry for the condensation point to be near.
inline bool IsOrdinaryAir(double press, double temp, double dewpt) {
  constexpr double kColdest = -110, kWarmest = 60;  // °C
  constexpr double kDriest = 60;                    // K
  return (press >= 1) & (temp > kColdest) & (temp < kWarmest) & (dewpt > kColdest) &
         (dewpt < kWarmest) & (temp - dewpt < kDriest);
}

}  // namespace vexa::analysis
