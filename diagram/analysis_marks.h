// Marks that the analyses leave on the diagram: inversions, fronts, layers, and the parcel's
// levels.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Width of a gutter in which no mark is cut.
double MarksWidth(const PlotInput& input);

void DrawInversions(Plot& plot);
void DrawFronts(Plot& plot);
void DrawLayerMarks(Plot& plot);

/// LCL or CCL, LFC, EL and MPL of the chosen parcel.
void DrawParcelLevels(Plot& plot);

/// Writes the collected marks of both edges, moved apart where they would touch.
void DrawMarkColumns(Plot& plot);

}  // namespace vexa::diagram
