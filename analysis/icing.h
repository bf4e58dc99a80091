// Airframe icing, from the water that clouds hold or by the forecaster's rules, and the icing of
// carburettors.
#pragma once

#include <vector>

#include "analysis/analysis.h"
#include "analysis/clouds.h"

namespace vexa::analysis {

/// Icing after Smith (1974) and Feddes (1974): the liquid water of the cloud layers, g/m³, against
/// the amount that is severe for their droplets. Words: class and "CLEAR", "MIXED" or "RIME".
std::vector<AirLayer> SmithFeddesIcing(const LevelProfile& levels,
                                       const std::vector<CloudDeck>& clouds, SaturationOver over);

/// Liquid water of a cloud layer: adiabatic, thinned by mixing and by freezing.
class CloudWater {
 public:
  CloudWater(const CloudDeck& deck, SaturationOver over);

  /// g/m³ at a level of the cloud, hPa, m and °C.
  double At(double press, double height, double temp) const;

 private:
  CloudFamily family_;
  double baseHeight_;  // m
  LiftedCloud air_;
};

/// Icing by temperature, dew-point depression and lapse rate (AWS/TR-80/001), with freezing rain
/// below a warm moist layer and one step more in a cumulonimbus.
std::vector<AirLayer> RuleIcing(const LevelProfile& levels, const std::vector<CloudDeck>& clouds);

/// Class of carburettor icing at a temperature and dew point, °C (Safety Sense Leaflet 14,
/// rounded).
Intensity CarburettorIcing(double temp, double dewpt);
std::vector<AirLayer> FindCarburettorIcing(const LevelProfile& levels);

}  // namespace vexa::analysis
