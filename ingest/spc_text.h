// The text form of the Storm Prediction Center's sounding archive: a title between %TITLE% and
// %RAW%, then rows of pressure, height, temperature, dew point, direction and speed up to %END%.
#pragma once

#include "ingest/decoder.h"

namespace vexa::ingest {

bool IsSpcText(const SourceText& source);
std::vector<int> SpcTextBeginnings(const SourceText& source);
std::optional<Fault> DecodeSpcText(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into);

}  // namespace vexa::ingest
