// Parts A and C: the surface, the mandatory levels, tropopauses and wind maxima.
#pragma once

#include "ingest/coded_part.h"

namespace vexa::ingest {

/// Appends the levels of a part A or C. A level's code counts only where the codes go on in their
/// order and the groups between them are temperatures and winds: behind a damaged group this finds
/// the next level, and what was passed over is named in a note.
void ReadMandatoryLevels(const CodedReport& report, CodedPart& into);

}  // namespace vexa::ingest
