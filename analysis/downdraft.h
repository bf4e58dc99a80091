// Air that sinks saturated from a dry level aloft to the ground and the energy it gains.
#pragma once

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "analysis/pressure_grid.h"

namespace vexa::analysis {

/// Downdraft energy, J/kg, of the levels up to 6000 m above sea level (2000 m above ground where
/// the station stands above 4000 m): the level that gives the most ("best", by whole hPa), or the
/// one of the smallest equivalent potential temperature ("fast", by the sounding's levels). Emanuel
/// (1994); Gilmore and Wicker (1998). Negative sums count as 0.
Downdraft FindDowndraft(const LevelProfile& levels, const PressureGrid& grid,
                        const AnalysisSettings& options, AdiabatTable& table);

}  // namespace vexa::analysis
