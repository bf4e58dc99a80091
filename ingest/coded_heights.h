// Coded messages give heights without their thousands: "383" at 850 hPa is 1383 m. Restores them
// level by level from the thickness of the air in between.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ingest/coded_part.h"
#include "ingest/height_finder.h"

namespace vexa::ingest {

/// Sets the heights of mandatory levels: of the possible ones the nearest to the height below plus
/// the thickness of the layer by the sounding's temperatures. One that misses this by more than
/// 300 m is garbled; it is left out with a note that names its group.
///
/// ground  m above mean sea level of the surface level, where the station is known; one that misses
///         the message's own heights by more than 300 m is another place's. That one, and one
///         that is not known, becomes what fits the heights of the message, with a note
/// returns the finder that knows these heights, for the winds in between
HeightFinder RestoreHeights(std::vector<CodedLevel>& levels, std::optional<double>& ground,
                            std::vector<std::string>& notes);

}  // namespace vexa::ingest
