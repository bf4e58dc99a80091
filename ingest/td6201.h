// Fixed-width records of the older United States archive, TD-6201: a head of 32 characters, then 36
// for each level, on one line or several.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsTd6201(const SourceText& source);
std::vector<SourceEntry> ListTd6201(const SourceText& source);
std::optional<Fault> DecodeTd6201(const SourceText& source, LoadContext& context,
                                  SoundingRecord& into);

}  // namespace vexa::ingest
