#include "mountainwave/wave_units.h"

#include "core/numbers.h"
#include "core/units.h"

namespace vexa::mountainwave {

double FromKm(double km, WaveDistance units) {
  if (units == WaveDistance::Kilometers) return km;
  return FromNauticalMiles(km * kNauticalMilesPerKm, units);
}

double FromNauticalMiles(double nm, WaveDistance units) {
  switch (units) {
    case WaveDistance::NauticalMiles:
      return nm;
    case WaveDistance::Kilometers:
      return nm * kKmPerNauticalMile;
    case WaveDistance::Miles:
      return nm / kNauticalMilesPerMile;
  }
  return nm;
}

double ToNauticalMiles(double distance, WaveDistance units) {
  switch (units) {
    case WaveDistance::NauticalMiles:
      return distance;
    case WaveDistance::Kilometers:
      return distance / kKmPerNauticalMile;
    case WaveDistance::Miles:
      return distance * kNauticalMilesPerMile;
  }
  return distance;
}

double FromMs(double speedMs, VerticalUnits units) {
  return units == VerticalUnits::FeetPerMinute ? speedMs / kMsPerFpm : speedMs;
}

std::string VelocityText(double speedMs, const WaveUnits& units) {
  const bool isFpm = units.Vertical == VerticalUnits::FeetPerMinute;
  return Mask(FromMs(speedMs, units.Vertical), isFpm ? "#####0" : "##0.0") + " " +
         std::string(Word(units.Vertical));
}

double ToFeet(double height, LengthUnits units) {
  return units == LengthUnits::Feet ? height : FeetFromMeters(height);
}

}  // namespace vexa::mountainwave
