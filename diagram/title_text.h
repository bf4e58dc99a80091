// The titles of soundings as the options want them.
#pragma once

#include <string>

#include "config/view_settings.h"
#include "core/sounding_record.h"

namespace vexa::diagram {

/// The sounding's title; with the month-year option a date at its end, "12Z 05 MAR 2024", becomes
/// "MAR 2024". A title without such a date gets month and year when the source gave the time.
std::string SoundingTitle(const SoundingRecord& sounding, const ViewSettings& options);

}  // namespace vexa::diagram
