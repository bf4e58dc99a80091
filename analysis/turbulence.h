// Turbulence and wind shear between neighbouring winds. Shear is in knots per 1000 ft, the
// low-level kind in knots per 100 ft.
#pragma once

#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/profile_walk.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

/// What lies between two winds.
struct WindPair {
  AirPlace Low{};
  AirPlace High{};
  double Difference = 0;  // kt, of the vectors
  double Shear = 0;       // kt per 1000 ft
  double Richardson = kMissing;
  double Lapse = 0;  // °C per km
};

/// Shear, lapse rate and Richardson number (g/θ)(Δθ/Δz)/(ΔV/Δz)² of the layers between winds; 999
/// where the winds are the same. With a least thickness, m, winds nearer than that to the one below
/// are passed over; winds above the highest, m, too.
std::vector<WindPair> PairWinds(const WindProfile& winds, const LevelProfile& levels,
                                double leastThickness, double highest = 1e9);

/// Clear-air turbulence above 2000 ft over the ground: by shear alone (AFGWC/TN-79/001), or by
/// shear and Richardson number (FAA AC 00-30).
Intensity CatOf(CatType type, double shear, double richardson);
std::vector<AirLayer> FindCat(const std::vector<WindPair>& pairs, double ground, CatType type);

/// Turbulence above 40000 ft or above the tropopause, where jumps of the lapse rate raise it
/// (Waco 1970).
std::vector<AirLayer> FindHighCat(const std::vector<WindPair>& pairs,
                                  const std::vector<LevelPoint>& tropopauses);

/// m above ground, up to which wind shear counts as low: 2000 ft.
inline constexpr double kLowShearDepth = 609.6;

/// Wind shear below 2000 ft over the ground (ICAO Doc 9817).
std::vector<AirLayer> FindLowShear(const std::vector<WindPair>& pairs, double ground);

/// Words for mountain-wave turbulence by vertical speed, m/s (ICAO Annex 3): short ones for
/// sections ("LGT") and long ones for diagrams ("LIGHT"); empty below 0.5 m/s.
struct WaveWord {
  Intensity Class = Intensity::None;
  std::string_view Short{};
  std::string_view Long{};
};
WaveWord WaveTurbulence(double verticalSpeed);

}  // namespace vexa::analysis
