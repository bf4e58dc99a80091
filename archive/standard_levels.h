// A sounding at fixed pressures, as the catalogue keeps it for climatologies and for finding what
// is alike: temperature, dew point and wind, each within half a tenth.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/analysis.h"

namespace vexa::archive {

inline constexpr std::array<int, 20> kStandardPress = {1000, 925, 850, 800, 750, 700, 650,
                                                       600,  550, 500, 450, 400, 350, 300,
                                                       250,  200, 150, 100, 70,  50};  // hPa

/// The values at one pressure; none outside the sounding and where nothing was observed.
struct StandardLevel {
  std::optional<double> Temp{};   // °C
  std::optional<double> Dewpt{};  // °C
  std::optional<double> U{};      // kt, as analysis::Components
  std::optional<double> V{};      // kt
};
using StandardLevels = std::array<StandardLevel, kStandardPress.size()>;

/// Linear in ln p between the levels; winds by components in height.
StandardLevels LevelsOf(const analysis::AnalysisResults& results);

/// In tenths, two bytes a value, and back. Bytes of another length give none of the values.
std::string Packed(const StandardLevels& levels);
StandardLevels Unpacked(std::string_view bytes);

}  // namespace vexa::archive
