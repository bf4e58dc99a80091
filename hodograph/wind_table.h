// The listing of the winds level by level: pressure, height above sea level and above ground, wind,
// the thermal wind of the layer below the level and the component normal to a front.
#pragma once

#include <string>
#include <vector>

#include "hodograph/hodograph_plot.h"

namespace vexa::hodograph {

struct WindTable {
  std::vector<std::string> Header{};
  std::vector<std::string> Rows{};
};

/// One row per level with a wind, lowest first, or highest first when inverted. Without a front the
/// column of the normal component reads "--".
WindTable ListWinds(const HodographInput& input);

/// Header and rows as the file has them, CR LF after each line.
std::string TableText(const WindTable& table);

}  // namespace vexa::hodograph
