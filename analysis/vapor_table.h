// Saturation vapour pressure for loops over thousands of levels: SatVapor and its slope on a ladder
// of temperatures, between which a cubic goes. Relative to the formula within 1.2e-9 from 170 K up,
// 3e-7 from 130 K and 3e-6 at the cold end.
#pragma once

#include <array>

#include "analysis/saturated_point.h"

namespace vexa::analysis {

/// The ladders of water and ice, one behind the other.
struct VaporLadders {
  static constexpr double kColdest = 120;  // K
  static constexpr double kRung = 0.125;   // K
  static constexpr int kRungs = 2241;

  using Column = std::array<double, static_cast<std::size_t>(2 * kRungs)>;
  Column Pressures{};  // hPa
  Column Slopes{};     // hPa per rung
};

VaporLadders MakeVaporLadders();

inline const VaporLadders& VaporTable() {
  static const VaporLadders kLadders = MakeVaporLadders();
  return kLadders;
}

struct VaporRise {
  double Pressure = 0;  // hPa
  double Slope = 0;     // hPa per rung
};

/// The vapour a share of the way from a rung to the next.
///
/// pressures, slopes   the ladders' columns
inline VaporRise BetweenRungs(const double* pressures, const double* slopes, int rung,
                              double share) {
  const double low = pressures[rung];
  const double rise = pressures[rung + 1] - low;
  const double lowSlope = slopes[rung];
  const double highSlope = slopes[rung + 1];
  const double c2 = 3 * rise - 2 * lowSlope - highSlope;
  const double c3 = lowSlope + highSlope - 2 * rise;
  return {low + share * (lowSlope + share * (c2 + share * c3)),
          lowSlope + share * (2 * c2 + 3 * share * c3)};
}

/// What lies beyond the ladder, from the formula itself.
VaporPoint VaporBeyondLadder(VaporFormula formula, double tempK);

/// Vapour pressure, hPa, and d ln e / dT of one of the formulas at a temperature in K; outside the
/// ladder of 120 to 400 K from the formula itself.
inline VaporPoint TabledVapor(VaporFormula formula, double tempK) {
  const double place = (tempK - VaporLadders::kColdest) / VaporLadders::kRung;
  if (!(place >= 0 && place < VaporLadders::kRungs - 1)) return VaporBeyondLadder(formula, tempK);
  const int rung = static_cast<int>(place);
  const int first = formula == VaporFormula::Ice ? VaporLadders::kRungs : 0;
  const VaporLadders& table = VaporTable();
  const VaporRise at =
      BetweenRungs(table.Pressures.data(), table.Slopes.data(), first + rung, place - rung);
  return {at.Pressure, at.Slope / (VaporLadders::kRung * at.Pressure)};
}

/// What SatVapor gives, to 1e-9 of it.
inline double TabledSatVapor(double temp, SaturationOver over) {
  return TabledVapor(FormulaAt(over, temp), temp + kKelvinOffset).Pressure;
}

/// Mixing ratio, kg/kg, of air saturated at a temperature in °C: what ThetaPoint gives, to 1e-9 of
/// it.
inline double TabledMixingRatio(double press, double temp, SaturationOver over) {
  const double vapor = TabledSatVapor(temp, over);
  const double dry = press - vapor;
  return dry == 0 ? 0 : kEpsilon * vapor / dry;
}

}  // namespace vexa::analysis
