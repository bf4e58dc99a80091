#include "analysis/shown_units.h"

#include <string_view>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr std::string_view kNothing = "--";

}  // namespace

std::string DirectionText(double degrees) {
  const double whole = Rounded(degrees, 0);
  return Mask(whole == 0 ? 360 : whole, "##0");
}

std::string TempText(double celsius, TempUnits units) {
  if (NotAvailable(celsius)) return std::string(kNothing);
  double shown = celsius;
  if (units == TempUnits::Fahrenheit) shown = FahrenheitFromCelsius(celsius);
  if (units == TempUnits::Kelvin) shown = celsius + kKelvinOffset;
  return Mask(shown, "##0.0") + ' ' + std::string(Word(units));
}

std::string ShownUnits::Height(double height) const {
  if (!HasHeight(height)) return std::string(kNothing);
  const bool isAbove = heights_ == HeightMode::Agl && HasHeight(ground_);
  return isAbove ? Depth(height - ground_) + " AGL" : Depth(height);
}

std::string ShownUnits::Depth(double meters) const {
  if (!HasHeight(meters)) return std::string(kNothing);
  const bool feet = units_.ThermoHeight == LengthUnits::Feet;
  return Mask(feet ? FeetFromMeters(meters) : meters, "####0") + (feet ? " ft" : " m");
}

std::string ShownUnits::Temp(double celsius) const {
  return TempText(celsius, units_.ThermoTemp);
}

std::string ShownUnits::Motion(const WindVector& vector) const {
  const Wind wind = FromComponents(vector);
  const bool metric = units_.Speed == SpeedUnits::MetersPerSecond;
  return DirectionText(wind.Dir) + "/" + Mask(metric ? wind.Spd * kKnotToMs : wind.Spd, "##0") +
         (metric ? " m/s" : " kts");
}

}  // namespace vexa::analysis
