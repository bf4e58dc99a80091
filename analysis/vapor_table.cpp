#include "analysis/vapor_table.h"

#include <cmath>

namespace vexa::analysis {
namespace {

VaporLadder MakeLadder(VaporFormula formula) {
  VaporLadder ladder;
  for (std::size_t i = 0; i < VaporLadder::kRungs; ++i) {
    const double tempK = VaporLadder::kColdest + VaporLadder::kRung * static_cast<double>(i);
    const VaporPoint point = SaturationAt(formula, tempK, std::log(tempK));
    ladder.Nodes[i] = {point.Pressure, point.Pressure * point.LogSlope * VaporLadder::kRung};
  }
  return ladder;
}

}  // namespace

std::array<VaporLadder, 2> MakeVaporLadders() {
  return {MakeLadder(VaporFormula::Water), MakeLadder(VaporFormula::Ice)};
}

VaporPoint VaporBeyondLadder(VaporFormula formula, double tempK) {
  return tempK > 1 ? SaturationAt(formula, tempK, std::log(tempK))
                   : VaporPoint{.Pressure = SatVapor(tempK - kKelvinOffset)};
}

}  // namespace vexa::analysis
