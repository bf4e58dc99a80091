// Mountain waves as JSON, for the analysis of a sounding and for the command of their own.
#pragma once

#include "analysis/analysis.h"
#include "core/sounding_record.h"
#include "mountainwave/wave_model.h"
#include "report/json.h"

namespace vexa::report {

/// The waves of one sounding with their mountains; with every level that was tried when asked for.
Json WavesJson(const mountainwave::WaveResults& waves, const mountainwave::Site& site,
               bool withInterfaces);

}  // namespace vexa::report
