// Heights, temperatures, pressures and winds as texts in the units of the options, for panels and
// reports; "--" for what there is not.
#pragma once

#include <string>

#include "analysis/interpolate.h"
#include "core/choices.h"

namespace vexa::analysis {

/// The direction that a wind comes from as texts show it everywhere: whole degrees, 360 for north.
std::string DirectionText(double degrees);
/// The same where winds stand among others, on the diagram's page: "005", "360".
std::string ThreeDigits(double degrees);

/// A temperature with its unit: "-5.1 C", "22.8 F"; "--" where there is none.
std::string TempText(double celsius, TempUnits units);

class ShownUnits {
 public:
  /// heights  what heights count from
  /// ground   m above mean sea level; kNone where not known, heights are above the sea then
  ShownUnits(const UnitSettings& units, HeightMode heights, double ground)
      : units_(units), heights_(heights), ground_(ground) {}

  std::string Height(double height) const;  // m above mean sea level
  std::string Depth(double meters) const;   // a length of its own
  std::string Temp(double celsius) const;
  std::string Motion(const WindVector& vector) const;  // kt: "217/30 kts"

 private:
  const UnitSettings& units_;
  HeightMode heights_;
  double ground_;
};

}  // namespace vexa::analysis
