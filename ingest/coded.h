// Coded upper-air messages: TEMP and PILOT from land, ships, mobile stations and dropsondes, parts
// A to D, singly or in bulletins. All parts of one station and time become one sounding.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsCoded(const SourceText& source);

std::vector<SourceEntry> ListCoded(const SourceText& source);

/// Parts of one station within three hours belong together. Month and year come from a date in the
/// file's name, as in "72712_20220713_00z.txt"; without one the time stays unknown.
std::optional<Fault> DecodeCoded(const SourceText& source, LoadContext& context,
                                 SoundingRecord& into);

}  // namespace vexa::ingest
