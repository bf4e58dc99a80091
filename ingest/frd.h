// Dropsonde reports of hurricane research flights (FRD): labels of the mission, then a table whose
// rows are counted, with the seconds of the fall.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsFrd(const SourceText& source);
std::optional<Fault> DecodeFrd(const SourceText& source, LoadContext& context,
                               SoundingRecord& into);

}  // namespace vexa::ingest
