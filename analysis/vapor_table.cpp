#include "analysis/vapor_table.h"

#include <cmath>

namespace vexa::analysis {
namespace {

VaporRise AtRung(VaporFormula formula, int rung) {
  const double tempK = VaporLadders::kColdest + VaporLadders::kRung * rung;
  const VaporPoint point = SaturationAt(formula, tempK, std::log(tempK));
  return {point.Pressure, point.Pressure * point.LogSlope * VaporLadders::kRung};
}

void FillLadder(VaporFormula formula, VaporRung* rungs) {
  VaporRise low = AtRung(formula, 0);
  for (int i = 0; i < VaporLadders::kRungs; ++i) {
    const VaporRise high = AtRung(formula, i + 1);
    const double rise = high.Pressure - low.Pressure;
    rungs[i] = {low.Pressure, low.Slope, 3 * rise - 2 * low.Slope - high.Slope,
                low.Slope + high.Slope - 2 * rise};
    low = high;
  }
}

}  // namespace

VaporLadders MakeVaporLadders() {
  VaporLadders ladders;
  FillLadder(VaporFormula::Water, ladders.Rungs.data());
  FillLadder(VaporFormula::Ice, ladders.Rungs.data() + VaporLadders::kRungs);
  return ladders;
}

VaporPoint VaporBeyondLadder(VaporFormula formula, double tempK) {
  return tempK > 1 ? SaturationAt(formula, tempK, std::log(tempK))
                   : VaporPoint{.Pressure = SatVapor(tempK - kKelvinOffset)};
}

}  // namespace vexa::analysis
