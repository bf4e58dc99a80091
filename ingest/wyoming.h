// Listings of the University of Wyoming's sounding server, as a web page, as plain text and as the
// bare table: columns of fixed width under a line of names and a line of units.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsWyoming(const SourceText& source);
std::vector<int> WyomingBeginnings(const SourceText& source);
std::optional<Fault> DecodeWyoming(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into);

}  // namespace vexa::ingest
