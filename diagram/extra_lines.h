// Lines that the user puts over the diagram from the menu: height correction, contrail threshold
// and the dry adiabat of the day's thermals.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Draws those that the plot's input asks for, each with its name.
void DrawExtraLines(Plot& plot);

/// Height of a pressure in the sounding above its height in the standard atmosphere, m: what a
/// pressure altitude has to be corrected by. Empty outside the sounding.
std::optional<double> HeightCorrectionAt(const Plot& plot, double press);

}  // namespace vexa::diagram
