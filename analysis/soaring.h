// The day's thermals: how high they reach, what sets them off and how strongly they lift.
#pragma once

#include "analysis/analysis.h"

namespace vexa::analysis {

/// Thermal index T - Tdry of every level (Higgins 1963); the thermals' top, where their potential
/// temperature stops exceeding the air's; the pilot's level, the highest below it with an index of
/// -3; the trigger temperature (WMO TN 158), lift by the soaring index of the National Weather
/// Service or the convective velocity of Deardorff (1970). Where the day reaches the convective
/// temperature the thermals end at the cloud base.
SoaringResults AnalyseSoaring(const AnalysisResults& results, const AnalysisSettings& settings);

}  // namespace vexa::analysis
