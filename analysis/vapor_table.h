// Saturation vapour pressure for loops over thousands of levels: SatVapor and its slope on a ladder
// of temperatures, between which a cubic goes. From 170 K up within 1e-9 of the formula, and within
// 1e-7 at the cold end.
#pragma once

#include <array>

#include "analysis/saturated_point.h"

namespace vexa::analysis {

struct VaporLadder {
  static constexpr double kColdest = 120;  // K
  static constexpr double kRung = 0.125;   // K
  static constexpr std::size_t kRungs = 2241;

  struct Node {
    double Pressure = 0;  // hPa
    double Slope = 0;     // hPa per rung
  };
  std::array<Node, kRungs> Nodes{};
};

/// Water's and ice's.
std::array<VaporLadder, 2> MakeVaporLadders();

inline const VaporLadder& LadderOf(VaporFormula formula) {
  static const std::array<VaporLadder, 2> kLadders = MakeVaporLadders();
  return kLadders[static_cast<std::size_t>(formula)];
}

/// What lies beyond the ladder, from the formula itself.
VaporPoint VaporBeyondLadder(VaporFormula formula, double tempK);

/// Vapour pressure, hPa, and d ln e / dT of one of the formulas at a temperature in K; outside the
/// ladder of 120 to 400 K from the formula itself.
inline VaporPoint TabledVapor(VaporFormula formula, double tempK) {
  const double place = (tempK - VaporLadder::kColdest) / VaporLadder::kRung;
  if (!(place >= 0 && place < static_cast<double>(VaporLadder::kRungs - 1))) {
    return VaporBeyondLadder(formula, tempK);
  }
  const auto rung = static_cast<std::size_t>(place);
  const double u = place - static_cast<double>(rung);
  const VaporLadder::Node* nodes = LadderOf(formula).Nodes.data() + rung;
  const VaporLadder::Node& a = nodes[0];
  const VaporLadder::Node& b = nodes[1];
  const double rise = b.Pressure - a.Pressure;
  const double c2 = 3 * rise - 2 * a.Slope - b.Slope;
  const double c3 = a.Slope + b.Slope - 2 * rise;
  const double pressure = a.Pressure + u * (a.Slope + u * (c2 + u * c3));
  const double slope = a.Slope + u * (2 * c2 + 3 * u * c3);
  return {pressure, slope / (VaporLadder::kRung * pressure)};
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
