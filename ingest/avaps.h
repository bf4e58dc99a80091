// Raw dropsonde files: four rows a second on the way down, among rows of the aircraft.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsAvaps(const SourceText& source);
/// Rows of the sonde in free fall, without the first seconds, in which it adapts to the air. The
/// heights are those of the satellite receiver.
std::optional<Fault> DecodeAvaps(const SourceText& source, LoadContext& context,
                                 SoundingRecord& into);

}  // namespace vexa::ingest
