// The analysis box beside the diagram: the chosen parcel's levels and energies, and the three
// lifts side by side, in fixed-width lines.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Draws the small hodograph, where one was passed in, and the analysis box below it.
void DrawPanel(Plot& plot);

}  // namespace vexa::diagram
