// BUFKIT files: forecast profiles of one place at many times.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsBufkit(const SourceText& source);
std::vector<SourceEntry> ListBufkit(const SourceText& source);
std::optional<Fault> DecodeBufkit(const SourceText& source, LoadContext& context,
                                  SoundingRecord& into);

}  // namespace vexa::ingest
