// Soundings of the Iowa archive: JSON profiles and the table of its request page.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsIemJson(const SourceText& source);
std::vector<SourceEntry> ListIemJson(const SourceText& source);
std::optional<Fault> DecodeIemJson(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into);

bool IsIemTable(const SourceText& source);
std::vector<SourceEntry> ListIemTable(const SourceText& source);
std::optional<Fault> DecodeIemTable(const SourceText& source, LoadContext& context,
                                    SoundingRecord& into);

}  // namespace vexa::ingest
