// The analysis box beside the diagram: the chosen parcel's levels and energies, and the three
// lifts side by side, in fixed-width lines.
#pragma once

#include <string_view>

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Kind of the hot spots that stand for an index; their text is its trimmed label.
inline constexpr std::string_view kIndexSpot = "index";

/// Draws the small hodograph, where one was passed in, and the analysis box below it.
void InfoBoxx(Plot& plot);

}  // namespace vexa::diagram
