// Records of the CARDS archive (TD-6300). Their headings are known, the layout of their levels is
// not: such a file is told from the others and refused with what its heading says.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsCards(const SourceText& source);
std::optional<Fault> DecodeCards(const SourceText& source, LoadContext& context,
                                 SoundingRecord& into);

}  // namespace vexa::ingest
