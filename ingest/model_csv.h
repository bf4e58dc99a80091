// Model profiles with labels "MEM =", "TIME =", "STID =" above comma-separated rows.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsModelCsv(const SourceText& source);
std::vector<SourceEntry> ListModelCsv(const SourceText& source);
std::optional<Fault> DecodeModelCsv(const SourceText& source, LoadContext& context,
                                    SoundingRecord& into);

}  // namespace vexa::ingest
