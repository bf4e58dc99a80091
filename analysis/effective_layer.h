// The effective inflow layer: the air from which a storm can draw, found by lifting level after
// level.
#pragma once

#include "analysis/analysis.h"
#include "analysis/pressure_grid.h"

namespace vexa::analysis {

/// A level feeds a storm when its air, lifted, gains this much …
inline constexpr double kFeedingCape = 100;  // J/kg
/// … and has met no more resistance than this by then.
inline constexpr double kFeedingCin = -250;  // J/kg

/// From the lowest level that feeds, within the search depth of the options, up through all that
/// follow; Thompson, Mead and Edwards (2007), Wea. Forecasting 22, 102. Levels at least 5 hPa apart
/// are tried, those between them where the layer begins and ends. None where even the most unstable
/// parcel has too little CAPE.
EffectiveLayer FindEffectiveLayer(const LevelProfile& levels, const PressureGrid& grid,
                                  const AnalysisSettings& options, const ParcelAscent& mostUnstable,
                                  AdiabatTable& table);

}  // namespace vexa::analysis
