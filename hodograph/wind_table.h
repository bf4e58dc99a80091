// The listing of the winds level by level: pressure, height above sea level and above ground, wind,
// the thermal wind of the layer below the level and the component normal to a front.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hodograph/hodograph_plot.h"

namespace vexa::hodograph {

struct WindTable {
  std::vector<std::string> Header{};
  std::vector<std::string> Rows{};
};

/// One row per level with a wind, lowest first, or highest first when inverted.
///
/// frontNormal  direction in degrees into which the normal component counts as positive; without
///              one the column reads "--"
WindTable ListWinds(const HodographInput& input, std::optional<double> frontNormal = {});

/// Header and rows as the file has them, CR LF after each line.
std::string TableText(const WindTable& table);

}  // namespace vexa::hodograph
