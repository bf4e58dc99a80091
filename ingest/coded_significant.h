// Parts B and D: the significant levels, counted through by their first two figures.
#pragma once

#include "ingest/coded_part.h"

namespace vexa::ingest {

/// Appends the significant temperatures of a part B or D and, behind 21212, its winds. The count of
/// the levels (00 for the surface, 11, 22, ... 99, 11, ...) and falling pressures tell where a
/// group is missing or too many; what is passed over is named in a note.
void ReadSignificantLevels(const CodedReport& report, CodedPart& into);

}  // namespace vexa::ingest
