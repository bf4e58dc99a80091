// Cloud layers from the dew-point depression, the water they hold and the lightning they threaten.
#pragma once

#include <vector>

#include "analysis/analysis.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

/// The height, m above sea level, up to which the surface layer's stability holds for clouds and
/// icing: the sounding's own when its supplementary record names one, else 3281 ft above ground.
double BoundaryLayerTop(const SoundingRecord& sounding);

/// Cloud layers, lowest first, up to 500 m above the first tropopause. Their limits in dew-point
/// depression widen with cold as ice-saturated air dries against water (AWS/TR-79/006). A table
/// that the user drew up (CloudMode other than "AUTO") stands instead; CloudOption "NO" gives none.
std::vector<CloudDeck> FindClouds(const SoundingRecord& sounding, const AnalysisResults& results,
                                  const AnalysisSettings& options);

/// The cloud-layer table of automatic analysis: two letters, base and top in hundreds of feet above
/// ground, amount code 1 to 3.
Levels<CloudLayer> CloudTable(const std::vector<CloudDeck>& clouds, double ground);

/// Air lifted without mixing from a cloud base, hPa and °C.
class LiftedCloud {
 public:
  LiftedCloud(double basePress, double baseTemp, SaturationOver over)
      : basePress_(basePress), base_(ThetaPoint(basePress, baseTemp, over)), over_(over) {}

  /// Its liquid water at a pressure, g/m³.
  double Water(double press) const;

 private:
  double basePress_;
  PointThermo base_;
  SaturationOver over_;
};

/// The share of it that mixing leaves at a height in km above the base: Warner (1955) for
/// stratiform clouds, Skatskii (1965) for cumuliform ones, none for cirriform ones.
double EntrainmentFactor(CloudFamily family, double heightKm);

/// Lightning potential of the cloud layers: within 5 or 8 °C of freezing in broken clouds, down to
/// -20 °C in a cumulonimbus (FAA Aeronautical Information Manual 7-1).
std::vector<AirLayer> FindLightning(const LevelProfile& levels,
                                    const std::vector<CloudDeck>& clouds);

}  // namespace vexa::analysis
