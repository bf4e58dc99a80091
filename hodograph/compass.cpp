#include "hodograph/compass.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace vexa::hodograph {

std::string_view CompassName(int degrees) {
  constexpr std::array<std::string_view, 16> kNames = {"N",  "NNE", "NE", "ENE", "E",  "ESE",
                                                       "SE", "SSE", "S",  "SSW", "SW", "WSW",
                                                       "W",  "WNW", "NW", "NNW"};
  constexpr double kSector = 22.5;
  const int around = (degrees % 360 + 360) % 360;
  const auto sector = static_cast<std::size_t>((around + kSector / 2) / kSector);
  return kNames[sector % kNames.size()];
}

}  // namespace vexa::hodograph
