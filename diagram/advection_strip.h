// A column beside the diagram that tells layer by layer how fast the wind warms or cools the air.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Bars from the column's axis, warm ones to the right and cold ones to the left, each over the
/// depth of its layer, with their numbers where these have room.
void DrawAdvectionStrip(Plot& plot);

}  // namespace vexa::diagram
