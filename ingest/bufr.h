// BUFR messages of radiosondes: TEMP and PILOT with and without the drift of the balloon, second by
// second or at standard and significant levels. What a message is follows from its elements, not
// from its category, which differs between centres.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsBufr(const SourceText& source);
std::vector<SourceEntry> ListBufr(const SourceText& source);
std::optional<Fault> DecodeBufr(const SourceText& source, LoadContext& context,
                                SoundingRecord& into);

}  // namespace vexa::ingest
