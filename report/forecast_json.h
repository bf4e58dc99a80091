// A forecast's choices as JSON: for each hour where its air came from and what it was made of.
#pragma once

#include "forecast/series.h"
#include "report/json.h"

namespace vexa::report {

Json ForecastJson(const forecast::ForecastSeries& series);

}  // namespace vexa::report
