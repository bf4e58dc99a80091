// What stands behind the levels of a coded message: sections for instruments, clouds, regional and
// national groups. Only a few of them say something about the ascent.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::ingest {

/// "31313", "41414", "51515", "61616" or "62626".
bool IsSectionMark(std::string_view group);

/// Sentences, without the full stop, on what the sections behind the levels say: the time of the
/// release and the water's temperature (31313); of the regional groups of North America why an
/// ascent is lacking or doubtful, its stability index, heights extrapolated above its top and mean
/// winds (51515); the words of the national section and the remarks (61616, 62626). Regional groups
/// of other countries give none.
///
/// begin  of the groups behind the levels, among which temperatures may look like a section's mark
std::vector<std::string> RemarksIn(const std::vector<std::string>& groups, std::size_t begin);

}  // namespace vexa::ingest
