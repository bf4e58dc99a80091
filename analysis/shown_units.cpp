#include "analysis/shown_units.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"

namespace vexa::analysis {
namespace {

constexpr std::string_view kNothing = "--";

}  // namespace

std::string DirectionText(double degrees) {
  const double whole = Rounded(degrees, 0);
  return Mask(whole == 0 ? 360 : whole, "##0");
}

std::string ThreeDigits(double degrees) {
  const std::string text = DirectionText(degrees);
  return std::string(3 - std::min<std::size_t>(text.size(), 3), '0') + text;
}

std::string TempText(double celsius, TempUnits units) {
  if (NotAvailable(celsius)) return std::string(kNothing);
  return Mask(ShownIn(celsius, units), "##0.0") + ' ' + std::string(Word(units));
}

std::string ShownUnits::Height(double height) const {
  if (!HasHeight(height)) return std::string(kNothing);
  const bool isAbove = heights_ == HeightMode::Agl && HasHeight(ground_);
  return isAbove ? Depth(height - ground_) + " AGL" : Depth(height);
}

std::string ShownUnits::Depth(double meters) const {
  if (!HasHeight(meters)) return std::string(kNothing);
  return LengthText(meters, units_.ThermoHeight);
}

std::string ShownUnits::Temp(double celsius) const {
  return TempText(celsius, units_.ThermoTemp);
}

std::string ShownUnits::Motion(const WindVector& vector) const {
  const Wind wind = FromComponents(vector);
  return DirectionText(wind.Dir) + "/" + Mask(ShownIn(wind.Spd, units_.Speed), "##0") + " " +
         std::string(UnitWord(units_.Speed));
}

}  // namespace vexa::analysis
