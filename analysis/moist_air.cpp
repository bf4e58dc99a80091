#include "analysis/moist_air.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "analysis/column_air.h"
#include "analysis/saturated_point.h"
#include "analysis/vapor_table.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kLogGuard = 1e-11;        // stands in for the argument of a log that has none
constexpr double kMaxExponent = 709.7827;  // largest argument of exp in a double
constexpr double kMaxPowerOfTen = 300;
constexpr double kMaxLatent = 88;  // beyond it the latent-heat term counts as no value

double GuardedLog10(double argument) {
  return std::log10(argument > 0 ? argument : kLogGuard);
}

// LiftSat looks for T where θe rises with it: e(T) <= 0.3 p.
constexpr double kColdestLift = -120;  // °C
constexpr double kWarmestLift = 300;   // °C; e passes 0.3 p well below it at any pressure met
constexpr double kMostVapor = 0.3;
constexpr double kLiftWidth = 1e-7;     // K, where bisection has nothing left to halve
constexpr double kLiftAccuracy = 1e-4;  // K; a Newton step this short has converged quadratically

// Potential temperatures come from a temperature in single precision: keep.
float SinglePrecisionK(double temp) {
  return static_cast<float>(temp + kKelvinOffset);
}

}  // namespace

double SatVapor(double temp, SaturationOver over) {
  constexpr double kT0 = kKelvinOffset;
  const double tempK = std::max(temp + kKelvinOffset, 0.0);
  double power = 0;
  if (over == SaturationOver::Ice && temp <= 0) {
    // Goff & Gratch (1946); -9.09685 and 0.87682 are the program's own values: keep.
    const double first = tempK == 0 ? -9.09685 : -9.09685 * (kT0 / tempK - 1);
    const double ratio = tempK == 0 ? 0 : kT0 / tempK;
    power = first - 3.56654 * GuardedLog10(ratio) + 0.87682 * (1 - tempK / kT0) + 0.78614;
  } else {
    const double x = std::min(-8.2969 * (tempK / kT0 - 1), kMaxPowerOfTen);
    const double warmth = tempK < 1 ? 1 : 1 - kT0 / tempK;
    power = 10.79574 * warmth - 5.028 * GuardedLog10(tempK / kT0) +
            1.50475e-4 * (1 - std::pow(10.0, x)) +
            0.42873e-3 * (std::pow(10.0, 4.76955 * warmth) - 1) + 0.78614;
  }
  return std::exp(std::min(power * std::numbers::ln10, kMaxExponent));
}

double DryTheta(double press, double temp) {
  const float tempK = SinglePrecisionK(temp);
  if (!(press > 0) || !(tempK > 0)) return 0;
  return tempK * std::pow(kReferencePress / press, kPoisson);
}

PointThermo ThetaPoint(double press, double temp, SaturationOver over) {
  PointThermo point;
  if (!(press > 0)) return point;
  const float tempK = SinglePrecisionK(temp);
  point.VaporPressure = SatVapor(temp, over);
  const double dry = press - point.VaporPressure;
  point.MixingRatio = dry == 0 ? 0 : kEpsilon * point.VaporPressure / dry;
  point.Theta = DryTheta(press, temp);
  if (!(tempK > 0)) return point;
  const double x = -kLatentFactor * point.MixingRatio / tempK;
  const double latent = std::fabs(x) > kMaxLatent ? 0 : std::exp(x);
  point.ThetaE = latent == 0 ? 0 : point.Theta / latent;
  return point;
}

double Condense(double temp, double dewpt) {
  return CondensedTemp(temp, dewpt);
}

LiftSatResult LiftSat(double thetaE, double press, SaturationOver over, std::string* trace) {
  if (!(thetaE > 0) || !(press > 0)) return {.Temp = kColdestLift, .Failed = true};
  const double logPoisson = kPoisson * std::log(kReferencePress / press);
  const double target = std::log(thetaE);

  // ln θe - target, with its slope; too much vapour counts as too warm.
  struct Error {
    double Value = 1;
    double Slope = 0;  // 0: the equation does not hold here
  };
  const auto errorAt = [&](double temp) {
    const double tempK = temp + kKelvinOffset;
    const VaporPoint vapor = TabledVapor(FormulaAt(over, temp), tempK);
    const AdiabatPoint point = AdiabatWith(vapor, tempK, std::log(tempK), press, logPoisson);
    if (!(point.Vapor.Pressure <= kMostVapor * press)) return Error{};
    return Error{point.LogThetaE - target, point.Slope};
  };

  // Dry air would be this warm; saturated air is colder.
  double high = std::min(kWarmestLift, std::exp(target - logPoisson) - kKelvinOffset + 1e-6);
  double low = kColdestLift;
  // Where that is well above the cold end, so little vapour is there that the adiabat goes through.
  const bool isAbove = high > kColdestLift + 10 && press >= 1;
  if (!isAbove && errorAt(low).Value > 0) return {.Temp = low, .Failed = true};
  double temp = high > 40 ? 30 : high;
  for (int step = 0; step < kLiftSatMaxSteps; ++step) {
    const Error error = errorAt(temp);
    (error.Value > 0 ? high : low) = temp;
    double next = error.Slope > 0 ? temp - error.Value / error.Slope : low;
    if (!(next > low && next < high)) next = low + (high - low) / 2;
    if (trace != nullptr) {
      *trace += "TX =" + Shortest(thetaE) + " Count =" + Shortest(step + 1) +
                " T1 =" + Shortest(temp) + " T2 =" + Shortest(next) + "\n";
    }
    if (error.Slope > 0 && std::fabs(next - temp) < kLiftAccuracy &&
        std::fabs(error.Value) < 1e-5) {
      return {.Temp = next};
    }
    if (high - low < kLiftWidth) return {.Temp = low, .Failed = std::fabs(error.Value) > 1e-6};
    temp = next;
  }
  return {.Temp = temp, .Failed = true};
}

double LclPressure(double press, double temp, double lclTemp) {
  const double theta = DryTheta(press, temp);
  if (!(theta > 0)) return press;
  const double lclTempK = std::max(lclTemp + kKelvinOffset, 0.0);
  return std::min(press, kReferencePress * std::pow(lclTempK / theta, 1 / kPoisson));
}

double LevelThetaE(double press, double temp, double dewpt, SaturationOver over) {
  const double lclTemp = Condense(temp, std::min(dewpt, temp));
  return ThetaPoint(LclPressure(press, temp, lclTemp), lclTemp, over).ThetaE;
}

double WetBulb(double press, double temp, double dewpt, SaturationOver over) {
  const double lowest = std::min(dewpt, temp);
  const double lifted = LiftSat(LevelThetaE(press, temp, dewpt, over), press, over).Temp;
  return std::clamp(lifted, lowest, temp);
}

double DewpointFromMixingRatio(double press, double mixingRatio, SaturationOver over) {
  if (!(mixingRatio > 0) || !(press > 0)) return kMissing;
  const double vapor = mixingRatio * press / (kEpsilon + mixingRatio);
  // Newton steps on ln e, which rises with temperature and bends downwards: from wherever they
  // start they come to the root from its cold side.
  constexpr double kColdest = -110;  // °C
  constexpr double kWarmest = 50;    // °C
  constexpr double kShort = 1e-6;    // K; what a step this short leaves is below 1e-12 K
  constexpr int kSteps = 60;
  const VaporFormula formula = FormulaAt(over, vapor > SatVapor(0, over) ? 1 : 0);
  double temp = 0;
  for (int step = 0; step < kSteps; ++step) {
    const VaporPoint point = TabledVapor(formula, temp + kKelvinOffset);
    const double next =
        std::clamp(temp + std::log(vapor / point.Pressure) / point.LogSlope, kColdest, kWarmest);
    const bool done = std::fabs(next - temp) < kShort;
    temp = next;
    if (done) break;
  }
  return temp;
}

double VirtualTemp(double temp, double mixingRatio) {
  return VirtualTempOf(temp, mixingRatio);
}

double RelativeHumidity(double temp, double dewpt, SaturationOver over) {
  const double saturation = SatVapor(temp, over);
  return saturation > 0 ? 100 * SatVapor(dewpt, over) / saturation : 0;
}

double DryAdiabatTemp(double theta, double press) {
  return theta * std::pow(std::max(press, 0.0) / kReferencePress, kPoisson) - kKelvinOffset;
}

}  // namespace vexa::analysis
