// What falls in winter, how much snow a millimetre of water makes, and where squalls and dendrites
// form.
#pragma once

#include "analysis/analysis.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

/// Precipitation type by the energies of the warm and cold layers below 500 hPa (Bourgouin 2000,
/// Wea. Forecasting 15, 583), snow ratio (Kuchera), snow squall parameter (Banacos, Loconto and
/// DeVoir 2014), thicknesses and the zone of dendritic growth between -12 and -18 °C. Reads the
/// levels and clouds of the results.
WinterResults AnalyseWinter(const AnalysisResults& results);

/// The type by the energies alone, J/kg; pellets and freezing rain need the warm layer aloft.
std::string_view PrecipitationType(double warmSurface, double cold, double warmAloft);

/// Snow to liquid by the largest temperature, °C, between the ground and 500 hPa.
double SnowRatio(double warmest);

}  // namespace vexa::analysis
