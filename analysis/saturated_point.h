// The saturated adiabat's equation and its slope at one point: what the searches along saturated
// adiabats share. They work on ln θe, which is nearly linear in temperature where air is cold and
// keeps Newton steps short where it is warm.
#pragma once

#include <cmath>
#include <numbers>

#include "analysis/moist_air.h"
#include "core/units.h"

namespace vexa::analysis {

/// The two formulas without the rule that chooses between them: each goes on smoothly past 0 °C.
enum class VaporFormula { Water, Ice };

struct VaporPoint {
  double Pressure = 0;  // hPa
  double LogSlope = 0;  // d ln e / dT, 1/K
};

/// Vapour pressure and its slope at a temperature in K well above absolute zero; the same terms as
/// SatVapor without its guards.
inline VaporPoint SaturationAt(VaporFormula formula, double tempK, double logTempK) {
  constexpr double kLn10 = std::numbers::ln10;
  constexpr double kT0 = kKelvinOffset;
  constexpr double kLogT0 = 5.610057704092888;  // ln 273.16
  const double inverse = 1 / tempK;
  const double ratio = kT0 * inverse;
  if (formula == VaporFormula::Ice) {
    const double log = kLn10 * (-9.09685 * (ratio - 1) + 0.87682 * (1 - tempK / kT0) + 0.78614) +
                       3.56654 * (logTempK - kLogT0);
    const double slope = kLn10 * (9.09685 * ratio * inverse - 0.87682 / kT0) + 3.56654 * inverse;
    return {std::exp(log), slope};
  }
  const double cold = std::exp(kLn10 * -8.2969 * (tempK / kT0 - 1));
  const double warm = std::exp(kLn10 * 4.76955 * (1 - ratio));
  const double log = kLn10 * (10.79574 * (1 - ratio) + 1.50475e-4 * (1 - cold) +
                              0.42873e-3 * (warm - 1) + 0.78614) -
                     5.028 * (logTempK - kLogT0);
  const double slope =
      kLn10 * (10.79574 * ratio * inverse + 1.50475e-4 * cold * kLn10 * 8.2969 / kT0 +
               0.42873e-3 * warm * kLn10 * 4.76955 * ratio * inverse) -
      5.028 * inverse;
  return {std::exp(log), slope};
}

struct AdiabatPoint {
  double LogThetaE = 0;  // ln of θe in K
  double Slope = 0;      // its derivative by temperature, 1/K
  VaporPoint Vapor{};
};

/// ln θe and its slope where the vapour pressure, below press, is known.
///
/// logPoisson  0.2856 · ln(1000 / press)
inline AdiabatPoint AdiabatWith(const VaporPoint& vapor, double tempK, double logTempK,
                                double press, double logPoisson) {
  AdiabatPoint point;
  point.Vapor = vapor;
  const double inverse = 1 / tempK;
  const double dryShare = 1 / (press - vapor.Pressure);
  const double mixing = kEpsilon * vapor.Pressure * dryShare;
  const double latent = kLatentFactor * mixing * inverse;
  point.LogThetaE = logTempK + logPoisson + latent;
  point.Slope = inverse + latent * (press * dryShare * vapor.LogSlope - inverse);
  return point;
}

/// Which formula holds at a temperature in °C over a reference.
inline VaporFormula FormulaAt(SaturationOver over, double temp) {
  return over == SaturationOver::Ice && temp <= 0 ? VaporFormula::Ice : VaporFormula::Water;
}

}  // namespace vexa::analysis
