// Units and factors of the mountain waves, which have their own: they turn kilometres into nautical
// miles by a rounded factor that is not the inverse of 1.852. Lengths of mountains are therefore
// kept in feet and nautical miles and never converted back and forth.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "core/choices.h"

namespace vexa::mountainwave {

inline constexpr double kPi = 3.1415929794311523;  // single precision, a little too large: keep
inline constexpr double kNauticalMilesPerKm = 0.539593;  // not 1/1.852: keep
inline constexpr double kNauticalMilesPerMile = 0.868391;
inline constexpr double kKmPerFoot = 0.0003048;
inline constexpr double kMsPerFpm = 0.00508;

enum class WaveDistance { NauticalMiles, Kilometers, Miles };
enum class VerticalUnits { FeetPerMinute, MetersPerSecond };

constexpr auto Words(WaveDistance) {
  return std::to_array<std::string_view>({"nm", "km", "mi"});
}
constexpr auto Words(VerticalUnits) {
  return std::to_array<std::string_view>({"fpm", "m/s"});
}
inline std::string_view Word(WaveDistance units) {
  return Words(units)[static_cast<std::size_t>(units)];
}
inline std::string_view Word(VerticalUnits units) {
  return Words(units)[static_cast<std::size_t>(units)];
}

/// In what the form, the diagram and the listing show and take values.
struct WaveUnits {
  LengthUnits Height = LengthUnits::Feet;
  WaveDistance Distance = WaveDistance::NauticalMiles;
  VerticalUnits Vertical = VerticalUnits::FeetPerMinute;
  SpeedUnits Wind = SpeedUnits::Knots;
  bool operator==(const WaveUnits&) const = default;
};

inline constexpr WaveUnits kEnglishUnits{};
inline constexpr WaveUnits kMetricUnits{LengthUnits::Meter, WaveDistance::Kilometers,
                                        VerticalUnits::MetersPerSecond,
                                        SpeedUnits::MetersPerSecond};

double FromKm(double km, WaveDistance units);
double FromNauticalMiles(double nm, WaveDistance units);
double ToNauticalMiles(double distance, WaveDistance units);
double FromMs(double speedMs, VerticalUnits units);
/// "2.3 m/s", "453 fpm".
std::string VelocityText(double speedMs, const WaveUnits& units);
double ToFeet(double height, LengthUnits units);

}  // namespace vexa::mountainwave
