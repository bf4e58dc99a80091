// Coasts, borders and state lines as they come with the program, in a compact form of its own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "map/projection.h"

namespace vexa::map {

enum class LineKind { Coast, Border, State };

struct MapLine {
  LineKind Kind = LineKind::Coast;
  std::vector<Place> Points{};
};

/// The shipped file. Behind two lines of text, the first "VEXA MAP 1", the second the origin,
/// stands a record for each line: its kind (0 coast, 1 border, 2 state), the number of its points,
/// and their longitudes and latitudes in hundredths of a degree, each but the first as the step
/// from the one before. Numbers are in groups of seven bits, the lowest first, a set eighth bit
/// says that more follow; steps alternate 0, -1, 1, -2, ...
inline constexpr std::string_view kLinesFile = "VEXA.MAP";

/// Fault 62 with name and byte for a text that is no such file or is cut.
Outcome<std::vector<MapLine>> ReadLines(std::string_view bytes, std::string_view name);

}  // namespace vexa::map
