// The sounding's own levels as they are printed: pressure levels on the left, wind levels beside
// them, each list in its own order.
#pragma once

#include "output/listings.h"

namespace vexa::output {

/// The table with its two lines of headings; temperatures, heights and speeds in the units of the
/// options, "--" for what was not observed.
ListingLines SoundingDataTable(const ListingSource& from);

}  // namespace vexa::output
