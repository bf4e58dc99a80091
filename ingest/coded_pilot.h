// PILOT reports: winds at mandatory pressures (parts A and C) and at heights (parts B and D).
#pragma once

#include "ingest/coded_part.h"

namespace vexa::ingest {

/// Appends the winds of a PILOT report. Heights are counted in 1000 ft by messages in knots and in
/// 300 m by the others; a height of 0 is the ground's. A heading says how many winds follow it:
/// where there are more or fewer, none of them is believed. Levels rise within a part; what does
/// not is left out. Notes say so.
void ReadPilot(const CodedReport& report, CodedPart& into);

}  // namespace vexa::ingest
