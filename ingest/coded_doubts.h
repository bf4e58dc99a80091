// What of a coded message could be, but seldom is: it stays, and a note doubts it.
#pragma once

#include <string>
#include <vector>

#include "ingest/coded_air.h"

namespace vexa::ingest {

/// Names the levels beyond what all but a few of the reports of sixty stations have:
/// - a mandatory temperature more than 2.3 °C off the line between the significant ones,
/// - one that stands out between its neighbours where nothing else bears it out,
/// - one that all together (WeighTemps) puts more than 2 °C off,
/// - two between which the temperature falls faster than dry air can cool by rising,
/// - a tropopause that is no significant level, levels above the last mandatory one or 3 hPa,
/// - the last level of part D where its winds end one figure away,
/// - a last level far from the one beneath,
/// - heights of a layer that do not fit its temperatures.
///
/// air     of these levels
/// levels  with the winds
void TellDoubts(const HeldAir& air, const std::vector<CodedLevel>& levels,
                std::vector<std::string>& notes);

}  // namespace vexa::ingest
