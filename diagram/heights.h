// Everything on the page that tells a height: the surface line, the right-hand scale, the labels
// of the pressure lines, the standard atmosphere, freezing level, tropopause and custom lines.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// The station's pressure as a line with the ground below it.
void DrawSurfaceLine(Plot& plot);

/// Elevation, density altitude and QNH at the surface line.
void DrawSurfaceLabel(Plot& plot);

/// The standard atmosphere's curve and its heights, "ISA …", beside their pressures.
void ICAOlabels(Plot& plot);

/// Height lines across the frame, "FT (x1000)" or "KM", where the Y-grid is in heights.
void DrawHeightAxis(Plot& plot);

/// Heights as the first scale at the left edge, with their lines: for a layout that thinks in them.
void DrawLeadingHeights(Plot& plot);

/// The scale at the right edge: thousands of feet, kilometres or miles, above sea level or ground.
void DrawHeightScale(Plot& plot);

void DrawFreezingAndTropopause(Plot& plot);
void DrawCustomLines(Plot& plot);

/// Height of each labelled mandatory level beside its pressure. stopShort leaves out the topmost,
/// where titles of further soundings stand.
void PrsHgtLabel(Plot& plot, bool stopShort);

}  // namespace vexa::diagram
