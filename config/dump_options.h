// Units and blocks of the data export.
#pragma once

#include <array>
#include <string_view>

#include "core/choices.h"

namespace vexa {

enum class DumpHeight { Meters, Feet };
enum class DumpTemp { Celsius, Fahrenheit };
enum class DumpWater { Centimeters, Inches };

constexpr auto Words(DumpHeight) {
  return std::to_array<std::string_view>({"M", "FT"});
}
constexpr auto Words(DumpTemp) {
  return std::to_array<std::string_view>({"C", "F"});
}
constexpr auto Words(DumpWater) {
  return std::to_array<std::string_view>({"cm", "in"});
}

struct DumpOptions {
  DumpHeight Height = DumpHeight::Meters;
  HeightMode Reference = HeightMode::Msl;
  SpeedUnits Speed = SpeedUnits::Knots;
  DumpTemp Temp = DumpTemp::Celsius;
  DumpWater Water = DumpWater::Centimeters;
  bool FormatBlock = true;
  bool SignificantOnly = false;
  bool operator==(const DumpOptions&) const = default;
};

}  // namespace vexa
