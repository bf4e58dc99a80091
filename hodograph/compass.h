// The sixteen points of the compass by their names.
#pragma once

#include <string_view>

namespace vexa::hodograph {

/// "N" for whole degrees around 0 and 360, then "NNE", "NE" … "NNW" in sectors of 22.5 degrees.
std::string_view CompassName(int degrees);

}  // namespace vexa::hodograph
