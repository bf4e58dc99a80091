// Station files of the global radiosonde archive, version 2: fixed columns, many soundings a file.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsIgra(const SourceText& source);
std::vector<SourceEntry> ListIgra(const SourceText& source);
/// The archive's files of derived parameters look alike and are refused.
std::optional<Fault> DecodeIgra(const SourceText& source, LoadContext& context,
                                SoundingRecord& into);

}  // namespace vexa::ingest
