// The sounding itself: temperature and dew-point traces, the lifted parcel's curve, and the areas
// between parcel and environment.
#pragma once

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// CAPE and CIN of the chosen parcel as polygons between the two curves that the numbers were
/// summed over, and the parcel's curve itself.
void DrawParcel(Plot& plot);

/// Temperature and dew point of the sounding, and by option its wet bulb and virtual temperature.
/// Lines of moisture break where the dew point is missing.
void DrawTraces(Plot& plot);

/// "T", "Td" and "Reference" at the tops of their traces, off the lines and texts that stand there.
void NameTraces(Plot& plot);

/// The traces of the further soundings, each in its own pen: those that stand back, which come
/// before those of the first, or the others.
void DrawOtherTraces(Plot& plot, bool faint);

/// The reference sounding, dashed, with its title.
void DrawReferenceTraces(Plot& plot);

/// What the lines and areas of this picture mean, below the temperature axis.
void DrawLegend(Plot& plot);

/// Bars at the left edge that class each layer by its lapse: unstable, conditional, stable,
/// inversion.
void DrawStabilityBars(Plot& plot);

}  // namespace vexa::diagram
