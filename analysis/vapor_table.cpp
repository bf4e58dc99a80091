#include "analysis/vapor_table.h"

#include <array>
#include <cmath>

namespace vexa::analysis {
namespace {

constexpr double kColdest = 120;  // K
constexpr double kRung = 0.125;   // K
constexpr std::size_t kRungs = 2241;

struct Node {
  double Pressure = 0;  // hPa
  double Slope = 0;     // hPa per rung
};
using Ladder = std::array<Node, kRungs>;

Ladder MakeLadder(VaporFormula formula) {
  Ladder ladder;
  for (std::size_t i = 0; i < kRungs; ++i) {
    const double tempK = kColdest + kRung * static_cast<double>(i);
    const VaporPoint point = SaturationAt(formula, tempK, std::log(tempK));
    ladder[i] = {point.Pressure, point.Pressure * point.LogSlope * kRung};
  }
  return ladder;
}

const Ladder& LadderOf(VaporFormula formula) {
  static const std::array<Ladder, 2> kLadders = {MakeLadder(VaporFormula::Water),
                                                 MakeLadder(VaporFormula::Ice)};
  return kLadders[static_cast<std::size_t>(formula)];
}

}  // namespace

VaporPoint TabledVapor(VaporFormula formula, double tempK) {
  const double place = (tempK - kColdest) / kRung;
  if (!(place >= 0 && place < static_cast<double>(kRungs - 1))) {
    return tempK > 1 ? SaturationAt(formula, tempK, std::log(tempK))
                     : VaporPoint{.Pressure = SatVapor(tempK - kKelvinOffset)};
  }
  const auto rung = static_cast<std::size_t>(place);
  const double u = place - static_cast<double>(rung);
  const Node& a = LadderOf(formula)[rung];
  const Node& b = LadderOf(formula)[rung + 1];
  const double rise = b.Pressure - a.Pressure;
  const double c2 = 3 * rise - 2 * a.Slope - b.Slope;
  const double c3 = a.Slope + b.Slope - 2 * rise;
  const double pressure = a.Pressure + u * (a.Slope + u * (c2 + u * c3));
  const double slope = a.Slope + u * (2 * c2 + 3 * u * c3);
  return {pressure, slope / (kRung * pressure)};
}

}  // namespace vexa::analysis
