#include "analysis/shown_units.h"

#include <string_view>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr std::string_view kNothing = "--";

}  // namespace

std::string ShownUnits::Height(double height) const {
  if (!HasHeight(height)) return std::string(kNothing);
  const bool isAbove = heights_ == HeightMode::Agl && HasHeight(ground_);
  return isAbove ? Depth(height - ground_) + " AGL" : Depth(height);
}

std::string ShownUnits::Depth(double meters) const {
  if (!HasHeight(meters)) return std::string(kNothing);
  const bool feet = options_.ThermoHeight == LengthUnits::Feet;
  return Mask(feet ? FeetFromMeters(meters) : meters, "####0") + (feet ? " ft" : " m");
}

std::string ShownUnits::Temp(double celsius) const {
  if (NotAvailable(celsius)) return std::string(kNothing);
  switch (options_.ThermoTemp) {
    case TempUnits::Fahrenheit:
      return Mask(FahrenheitFromCelsius(celsius), "##0.0") + " F";
    case TempUnits::Kelvin:
      return Mask(celsius + kKelvinOffset, "##0.0") + " K";
    case TempUnits::Celsius:
      break;
  }
  return Mask(celsius, "##0.0") + " C";
}

std::string ShownUnits::Motion(const WindVector& vector) const {
  const Wind wind = FromComponents(vector);
  const bool metric = options_.Speed == SpeedUnits::MetersPerSecond;
  return Mask(wind.Dir, "000") + "/" + Mask(metric ? wind.Spd * kKnotToMs : wind.Spd, "##0") +
         (metric ? " m/s" : " kts");
}

}  // namespace vexa::analysis
