// The day's thermals: how high they reach, what sets them off and how strongly they lift.
#pragma once

#include <optional>

#include "analysis/analysis.h"

namespace vexa::analysis {

struct SoaringSettings {
  std::optional<double> MaxTemp{};  // °C expected at the ground; else the 850 hPa air brought down
  double TriggerHeightFt = 3000;    // above ground
  int LiftEquation = 1;             // 1 index rule, ft/min; 2 convective velocity, m/s
};

/// Thermal index T - Tdry of every level (Higgins 1963), its heights of 0 and -3, the trigger
/// temperature (WMO TN 158), lift by the soaring index of the National Weather Service or the
/// convective velocity of Deardorff (1970). Where the day reaches the convective temperature the
/// thermals end at the cloud base.
SoaringResults AnalyseSoaring(const AnalysisResults& results, const SoaringSettings& settings);

}  // namespace vexa::analysis
