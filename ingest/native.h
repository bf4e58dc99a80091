// The program's own sounding file as one format among the others; core/raw_file.h reads it.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsNative(const SourceText& source);
std::optional<Fault> DecodeNative(const SourceText& source, LoadContext& context,
                                  SoundingRecord& into);

}  // namespace vexa::ingest
