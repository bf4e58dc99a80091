#include "analysis/vapor_table.h"

#include <cmath>

namespace vexa::analysis {
namespace {

void FillLadder(VaporFormula formula, double* pressures, double* slopes) {
  for (int i = 0; i < VaporLadders::kRungs; ++i) {
    const double tempK = VaporLadders::kColdest + VaporLadders::kRung * i;
    const VaporPoint point = SaturationAt(formula, tempK, std::log(tempK));
    pressures[i] = point.Pressure;
    slopes[i] = point.Pressure * point.LogSlope * VaporLadders::kRung;
  }
}

}  // namespace

VaporLadders MakeVaporLadders() {
  constexpr int kIce = VaporLadders::kRungs;
  VaporLadders ladders;
  FillLadder(VaporFormula::Water, ladders.Pressures.data(), ladders.Slopes.data());
  FillLadder(VaporFormula::Ice, ladders.Pressures.data() + kIce, ladders.Slopes.data() + kIce);
  return ladders;
}

VaporPoint VaporBeyondLadder(VaporFormula formula, double tempK) {
  return tempK > 1 ? SaturationAt(formula, tempK, std::log(tempK))
                   : VaporPoint{.Pressure = SatVapor(tempK - kKelvinOffset)};
}

}  // namespace vexa::analysis
