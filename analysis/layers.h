// Levels and layers of the temperature profile: inversions, the mixed layer, freezing levels and
// tropopauses.
#pragma once

#include <optional>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/level_profile.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

/// Tropopauses, lowest first: from 500 hPa up, where the lapse rate to the next level and the mean
/// lapse rates to all levels within 2 km do not exceed 2 K/km; a further one above a layer whose
/// mean lapse rates over 1 km exceed 3 K/km. WMO (1957). A sounding that ends inside the 2 km must
/// reach 1 km.
std::vector<LevelPoint> FindTropopauses(const LevelProfile& levels);

/// Inversions at least 20 hPa thick or 2.5 °C strong, lowest first, with their kinds;
/// AWS/TR-79/006.
std::vector<Inversion> FindInversions(const LevelProfile& levels,
                                      const std::vector<LevelPoint>& tropopauses);

/// Where the temperature passes 0 °C, linear in ln p, lowest first. Neighbouring levels at exactly
/// 0 °C count once.
std::vector<LevelPoint> FindFreezingLevels(const LevelProfile& levels);

/// Fall of the temperature, or of the virtual temperature, with height between two heights in m
/// above sea level, C/km; kNone where the sounding has none at one of them.
double MeanLapseRate(const LevelProfile& levels, double low, double high,
                     Quantity quantity = Quantity::Temp);

/// The well-mixed layer above the ground (parcel method, Seibert et al. 2000): up to where θ passes
/// the smallest θ of the lowest 25 hPa by 0.5 K; none when it is less than 150 m deep.
std::optional<MixedLayer> FindMixedLayer(const WindProfile& winds, const LevelProfile& levels);

}  // namespace vexa::analysis
