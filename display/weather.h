// The sheets of the weather displays, made from the results of the analysis.
#pragma once

#include "analysis/analysis.h"
#include "analysis/severe_table.h"
#include "core/sounding_record.h"
#include "display/sheet.h"

namespace vexa::display {

/// What a display is made from.
struct Shown {
  const SoundingRecord& Record;
  const analysis::AnalysisResults& Results;
  const Options& Set;
  const analysis::SevereTable& Severe;
};

/// The user's severe-weather table, each value marked by the step it reaches.
Sheet SevereWeatherSheet(const Shown& shown);

/// Precipitation type and its areas, snow, thicknesses, freezing levels, wind chill, icing.
Sheet WinterWeatherSheet(const Shown& shown);

/// Thermals of the day.
Sheet SoaringSheet(const Shown& shown);

/// Every layer that was found: inversions, clouds, icing, turbulence, contrails, ducts.
Sheet LayerSheet(const Shown& shown);

}  // namespace vexa::display
