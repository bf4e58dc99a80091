// The sheets of the weather displays, made from the results of the analysis.
#pragma once

#include "display/sheet.h"
#include "display/shown_texts.h"

namespace vexa::display {

/// The user's severe-weather table, each value marked by the step it reaches.
Sheet SevereWeatherSheet(const Shown& shown);

/// Precipitation type and its areas, snow, thicknesses, freezing levels, wind chill, icing.
Sheet WinterWeatherSheet(const Shown& shown);

/// Thermals of the day.
Sheet SoaringSheet(const Shown& shown);

/// Every layer that was found: inversions, clouds, icing, turbulence, contrails, ducts.
Sheet LayerSheet(const Shown& shown);

}  // namespace vexa::display
