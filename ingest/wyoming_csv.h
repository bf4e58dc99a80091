// The comma-separated form of the University of Wyoming's soundings: a time and a position a level.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsWyomingCsv(const SourceText& source);
std::vector<int> WyomingCsvBeginnings(const SourceText& source);
std::optional<Fault> DecodeWyomingCsv(const SourceText& source, LoadContext& context,
                                      SoundingRecord& into);

}  // namespace vexa::ingest
