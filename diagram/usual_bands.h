// The spread of what is usual behind the sounding: bands from the 10th to the 90th percentile with
// the median, broken where too few ascents reach.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Bands of temperature and dew point, by option.
void DrawUsualTemps(Plot& plot);

/// By option the band of the wind speed in the column of winds, with the sounding's own speed, on a
/// scale that begins at the column's left edge and is told at its foot.
void DrawUsualWinds(Plot& plot, const Rect& column);

}  // namespace vexa::diagram
