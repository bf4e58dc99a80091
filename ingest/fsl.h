// Rawinsonde text of the archive and server for radiosondes and model profiles: columns of seven
// characters, every line opened by its type.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsFsl(const SourceText& source);
std::vector<SourceEntry> ListFsl(const SourceText& source);
std::optional<Fault> DecodeFsl(const SourceText& source, LoadContext& context,
                               SoundingRecord& into);

}  // namespace vexa::ingest
