// Winds of coded messages that the winds around them do not bear out.
#pragma once

#include <string>
#include <vector>

#include "core/sounding_record.h"

namespace vexa::ingest {

/// Notes each wind that stands out from the line between its neighbours and from both of them as
/// few winds of sixty stations do: its pressure, its height or one of its own figures may be
/// garbled. All winds stay.
///
/// returns  how many were noted
int TellStrayWinds(const SoundingRecord& record, std::vector<std::string>& notes);

}  // namespace vexa::ingest
