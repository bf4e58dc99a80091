// Saturation vapour pressure for loops over thousands of levels: SatVapor and its slope on a ladder
// of temperatures, between which a cubic goes. Relative to the formula within 1.2e-9 from 170 K up,
// 3e-7 from 130 K and 3e-6 at the cold end.
#pragma once

#include <array>

#include "analysis/saturated_point.h"

namespace vexa::analysis {

/// The cubic from a rung to the next, by the share of the way: its four numbers lie together, so
/// that a temperature costs one piece of memory.
struct VaporRung {
  double Pressure = 0;  // hPa
  double Slope = 0;     // hPa per rung
  double Bend = 0;
  double Twist = 0;
};

/// The ladders of water and ice, one behind the other.
struct VaporLadders {
  static constexpr double kColdest = 120;  // K
  static constexpr double kRung = 0.125;   // K
  static constexpr int kRungs = 2240;

  alignas(64) std::array<VaporRung, static_cast<std::size_t>(2 * kRungs)> Rungs{};
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
inline VaporRise AboveRung(const VaporRung& rung, double share) {
  return {rung.Pressure + share * (rung.Slope + share * (rung.Bend + share * rung.Twist)),
          rung.Slope + share * (2 * rung.Bend + 3 * share * rung.Twist)};
}

/// What lies beyond the ladder, from the formula itself.
VaporPoint VaporBeyondLadder(VaporFormula formula, double tempK);

/// Vapour pressure, hPa, and d ln e / dT of one of the formulas at a temperature in K; outside the
/// ladder of 120 to 400 K from the formula itself.
inline VaporPoint TabledVapor(VaporFormula formula, double tempK) {
  const double place = (tempK - VaporLadders::kColdest) / VaporLadders::kRung;
  if (!(place >= 0 && place < VaporLadders::kRungs)) return VaporBeyondLadder(formula, tempK);
  const int rung = static_cast<int>(place);
  const int first = formula == VaporFormula::Ice ? VaporLadders::kRungs : 0;
  const VaporRise at =
      AboveRung(VaporTable().Rungs[static_cast<std::size_t>(first + rung)], place - rung);
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
