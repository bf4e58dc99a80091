// The coasts, borders and state lines that come with the program.
#pragma once

#include <string_view>
#include <vector>

#include "map/lines.h"

namespace vexa {

/// Read once, when they are first asked for; none where the file is not there or is damaged: a map
/// without them is a map all the same.
const std::vector<map::MapLine>& ShippedMapLines();

inline constexpr std::string_view kMapOrigin =
    "Coasts and borders: Natural Earth; state lines: US Census Bureau";

}  // namespace vexa
