// Values as the program shows them: lengths, temperatures and speeds in the units of the options,
// with their words, and times.
#pragma once

#include <string>
#include <string_view>

#include "core/choices.h"
#include "core/sounding_record.h"
#include "core/units.h"

namespace vexa {

/// A length in m, a temperature in °C and a speed in knots in the units asked for.
inline double ShownIn(double meters, LengthUnits units) {
  return units == LengthUnits::Feet ? FeetFromMeters(meters) : meters;
}
double ShownIn(double celsius, TempUnits units);
inline double ShownIn(double knots, SpeedUnits units) {
  return units == SpeedUnits::MetersPerSecond ? knots * kKnotToMs : knots;
}

constexpr std::string_view UnitWord(LengthUnits units) {
  return units == LengthUnits::Feet ? "ft" : "m";
}
constexpr std::string_view UnitWord(SpeedUnits units) {
  return units == SpeedUnits::MetersPerSecond ? "m/s" : "kts";
}

/// A whole number with its unit: "1250 m", "4101 ft".
std::string LengthText(double meters, LengthUnits units);

/// "1999-05-03 12:00"; empty where the time is not known.
std::string TimeText(const ObservationTime& time);
/// The same for programs: "1999-05-03T12:00Z".
std::string IsoTimeText(const ObservationTime& time);

}  // namespace vexa
