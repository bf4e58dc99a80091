// Plain columns under a line that names quantities and units, as radiosonde programs, dropsonde
// reports and users' own scripts write them.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsColumns(const SourceText& source);
std::optional<Fault> DecodeColumns(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into);

}  // namespace vexa::ingest
