// The background of the diagram: isotherms, isobars, dry and saturation adiabats, mixing-ratio
// lines, the tephigram's isentropes, their labels and reference lines.
#pragma once

#include <span>

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Isotherms at the chosen interval and unit, the axis labels below (and above) the frame.
void DrawIsotherms(Plot& plot);

/// Dry adiabats: T = θ / (1000/p)^0.2856 − 273.16, joined by straight segments. On the tephigram
/// these are the isentropes, labelled every 10 K.
void DrawDryAdiabats(Plot& plot);
void DrawSaturationAdiabats(Plot& plot);
void DrawMixingRatioLines(Plot& plot);
/// Their values, over the ground and where no trace runs.
void DrawMixingRatioLabels(Plot& plot);

/// The unit of the temperature axis beside its labels.
void DrawTemperatureUnits(Plot& plot);

/// Isobars from 1050 up to the top with their labels.
void DrawPressureLines(Plot& plot);

/// The levels that every station reports, hPa, from the ground up.
std::span<const int> MandatoryPressures();
bool IsMandatory(double press);

}  // namespace vexa::diagram
