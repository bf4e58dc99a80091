// Saturation vapour pressure for loops over thousands of levels: SatVapor and its slope on a ladder
// of temperatures, between which a cubic goes. From 170 K up within 1e-9 of the formula, and within
// 1e-7 at the cold end.
#pragma once

#include "analysis/saturated_point.h"

namespace vexa::analysis {

/// Vapour pressure, hPa, and d ln e / dT of one of the formulas at a temperature in K; outside the
/// ladder of 120 to 400 K from the formula itself.
VaporPoint TabledVapor(VaporFormula formula, double tempK);

/// What SatVapor gives, to 1e-9 of it.
inline double TabledSatVapor(double temp, SaturationOver over) {
  return TabledVapor(FormulaAt(over, temp), temp + kKelvinOffset).Pressure;
}

}  // namespace vexa::analysis
