// The program's own data dumps, text and spreadsheet, read back as soundings. Their levels carry
// pressure, height, temperatures and wind in the units that the dump's column names state.
#pragma once

#include <optional>
#include <vector>

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsLevelDump(const SourceText& source);
std::optional<Fault> DecodeLevelDump(const SourceText& source, LoadContext& context,
                                     SoundingRecord& into);
std::vector<SourceEntry> ListLevelDump(const SourceText& source);

}  // namespace vexa::ingest
