// The analysis box beside the diagram: the chosen parcel's levels and energies, and the three
// lifts side by side, in fixed-width lines.
#pragma once

#include <string>
#include <string_view>

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Kind of the hot spots that stand for an index; their text is its trimmed label.
inline constexpr std::string_view kIndexSpot = "index";

/// The options want the box and there is something to tell.
bool HasAnalysisBox(const PlotInput& input);

/// Draws the analysis box in its region; lines that find no room there are left out at its end.
void InfoBoxx(Plot& plot);

/// Height of the analysis box with all that the options ask for, in a column of this width.
double AnalysisBoxHeight(const Plot& plot, double width);

/// "35.20N  97.40W", empty where the position is not known.
std::string PositionText(const SoundingRecord& sounding);

}  // namespace vexa::diagram
