// What listings show at each level beside the levels themselves, and what the refractivity among it
// tells: the ducts that trap radio waves. Also contrails, which ask each level the same way.
#pragma once

#include <vector>

#include "analysis/analysis.h"

namespace vexa::analysis {

/// Density, D-value, refractivity and precipitable water of every level. Refractivity after Smith
/// and Weintraub (1953), N = (77.6/T)(p + 4810 e/T); M = N + 0.157 z; potential refractivity after
/// Bean and Dutton (1966). Air above 300 hPa counts as dry where its dew point is missing.
LevelListing ListLevels(const LevelProfile& levels);

/// Refractivity, N units, from hPa, °C and vapour pressure in hPa.
double RefractivityOf(double press, double temp, double vapor);

/// Layers whose refractivity falls at least as steeply as the threshold, N per km (-157 traps),
/// with the height below at which the duct begins.
std::vector<Duct> FindDucts(const LevelProfile& levels, const LevelListing& listing,
                            double threshold);

/// Warmest temperature, °C, at which an engine leaves a contrail in air of a relative humidity in %
/// (Appleman 1953 with the numbers of Schumann 1996; factor of Schrader 1997 for low-bypass
/// engines); kMissing where the pressure, hPa, is too low.
double ContrailTemp(double press, double humidity);

/// Layers at 500 hPa and above that are cold enough, by the humidity of the level or, without one,
/// the given one in %. Value: °C below the threshold.
std::vector<AirLayer> FindContrails(const LevelProfile& levels, double humidity);

}  // namespace vexa::analysis
