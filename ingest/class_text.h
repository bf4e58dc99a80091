// CLASS files and the EOL form that followed them: labels, three lines of column names, units and
// dashes, and a row for every second or pressure step. Ascents and dropsondes.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsClassText(const SourceText& source);
std::vector<SourceEntry> ListClassText(const SourceText& source);
/// The title's time is the nominal one; the launch itself becomes a note where it differs.
std::optional<Fault> DecodeClassText(const SourceText& source, LoadContext& context,
                                     SoundingRecord& into);

}  // namespace vexa::ingest
