// Where parcels come from: the surface, the mixed lowest layer or the most unstable level, and the
// convective condensation level with the temperature that sets air rising to it.
#pragma once

#include <vector>

#include "analysis/analysis.h"
#include "analysis/level_profile.h"
#include "analysis/parcel.h"

namespace vexa::analysis {

/// Level 1, or the lowest level within 100 hPa of it that has a dew point.
ParcelStart SurfaceParcel(const LevelProfile& levels);

/// Means over a layer, weighted by pressure: trapezoids between the levels, the upper end
/// interpolated. Levels without a dew point inside the layer are passed over for the mixing ratio.
struct LayerMean {
  double Theta = kMissing;        // K
  double MixingRatio = kMissing;  // kg/kg; missing when either end of the layer has none
  bool Exists() const { return !NotAvailable(Theta) && !NotAvailable(MixingRatio); }
};
LayerMean MeanOfLowestLayer(const LevelProfile& levels, double depth);

/// A parcel of mean potential temperature and mixing ratio at the surface pressure; Craven, Jewell
/// and Brooks (2002).
ParcelStart MeanLayerParcel(const LevelProfile& levels, const LayerMean& mean, SaturationOver over);

/// Every level within a depth in hPa above the surface that has a dew point, from below.
std::vector<ParcelStart> CandidateParcels(const LevelProfile& levels, double depth);

/// The level of the largest θe within the depth; the lowest wins a tie.
ParcelStart MostUnstableParcel(const LevelProfile& levels, double depth);

/// Going up from the surface, where the sounding's temperature first saturates air of the mean
/// mixing ratio; none when it never does.
CondensationPoint FindConvectiveCondensation(const LevelProfile& levels, const PressureGrid& grid,
                                             double mixingRatio, SaturationOver over);

}  // namespace vexa::analysis
