// Fronts as JSON, for the analysis of a sounding and for the command of their own.
#pragma once

#include "fronts/front_analysis.h"
#include "report/json.h"

namespace vexa::report {

/// The front that was found with its zone, and every zone; with every layer when asked for.
Json FrontsJson(const fronts::FrontResults& fronts, bool withLayers);

}  // namespace vexa::report
