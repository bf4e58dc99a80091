// Moist air for loops over columns: formulas of moist_air.h without a branch or a call.
#pragma once

#include "analysis/moist_air.h"
#include "analysis/vapor_table.h"
#include "core/units.h"

namespace vexa::analysis {

/// What Condense gives.
inline double CondensedTemp(double temp, double dewpt) {
  const double depression = temp - dewpt;
  return temp - depression * (1.2185 + 0.001278 * temp +
                              depression * (-0.00219 + 1.173e-5 * depression - 5.2e-6 * temp));
}

/// What VirtualTemp gives.
inline double VirtualTempOf(double temp, double mixingRatio) {
  return (temp + kKelvinOffset) * (1 + mixingRatio / kEpsilon) / (1 + mixingRatio) - kKelvinOffset;
}

/// Vapour pressures from the table over one reference. A loop takes it by value: what it refers to
/// is then known not to change.
class ColumnVapor {
 public:
  explicit ColumnVapor(SaturationOver over)
      : pressures_(VaporTable().Pressures.data()),
        slopes_(VaporTable().Slopes.data()),
        toIce_(over == SaturationOver::Ice ? VaporLadders::kRungs : 0) {}

  struct Point {
    double Pressure = 0;  // hPa
    double Slope = 0;     // hPa/K
  };

  /// At a temperature in °C, which is also given in K and lies on the ladder.
  Point At(double temp, double tempK) const {
    const double place = (tempK - VaporLadders::kColdest) / VaporLadders::kRung;
    const int rung = static_cast<int>(place);
    const int ladder = temp <= 0 ? toIce_ : 0;
    const VaporRise found = BetweenRungs(pressures_, slopes_, ladder + rung, place - rung);
    return {found.Pressure, found.Slope / VaporLadders::kRung};
  }

 private:
  const double* pressures_;
  const double* slopes_;
  int toIce_;
};

}  // namespace vexa::analysis
