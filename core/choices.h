// Choices that users make by a word: enumerations whose words stand beside them, in the order of
// the enumerators, as files and the settings report spell them; and the units in which values are
// shown.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vexa {

enum class PressureUnits { Mb, Hpa, InHg };
enum class LengthUnits { Meter, Feet };
enum class HeightMode { Msl, Agl };
enum class TempUnits { Celsius, Fahrenheit, Kelvin };
enum class PotentialTempUnits { Kelvin, Celsius };
enum class SpeedUnits { Knots, MetersPerSecond };
enum class Scaling { Auto, Manual };

constexpr auto Words(PressureUnits) {
  return std::to_array<std::string_view>({"mb", "hPa", "in Hg"});
}
constexpr auto Words(LengthUnits) {
  return std::to_array<std::string_view>({"METER", "FEET"});
}
constexpr auto Words(HeightMode) {
  return std::to_array<std::string_view>({"MSL", "AGL"});
}
constexpr auto Words(TempUnits) {
  return std::to_array<std::string_view>({"C", "F", "K"});
}
constexpr auto Words(PotentialTempUnits) {
  return std::to_array<std::string_view>({"K", "C"});
}
constexpr auto Words(SpeedUnits) {
  return std::to_array<std::string_view>({"KNOTS", "M/S"});
}
constexpr auto Words(Scaling) {
  return std::to_array<std::string_view>({"AUTO", "MANUAL"});
}

/// An enumerator's word.
template <class E>
constexpr std::string_view Word(E value) {
  return Words(E{})[static_cast<std::size_t>(value)];
}

/// The units in which panels, sheets and listings show what was computed.
struct UnitSettings {
  PressureUnits Pressure = PressureUnits::Mb;
  HeightMode Heights = HeightMode::Msl;
  SpeedUnits Speed = SpeedUnits::Knots;
  LengthUnits ThermoHeight = LengthUnits::Meter;
  TempUnits ThermoTemp = TempUnits::Celsius;
  bool operator==(const UnitSettings&) const = default;
};

}  // namespace vexa
