#include "analysis/level_profile.h"

#include <algorithm>
#include <cmath>

#include "analysis/moist_air.h"
#include "analysis/vapor_table.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kMetersPerKelvin = kDryGasConstant / kGravity;
constexpr double kLogReference = 6.907755278982137;  // ln 1000

// Thickness between two levels from their virtual temperatures; Hess (1959).
double Thickness(double lowPress, double highPress, double lowTemp, double highTemp) {
  if (!(lowPress > 0) || !(highPress > 0)) return 0;
  const double meanTempK = (lowTemp + highTemp) / 2 + kKelvinOffset;
  return kMetersPerKelvin * meanTempK * std::log(lowPress / highPress);
}

// The moist quantities of a level as moist_air.h defines them, with the vapour pressures from the
// table and Normand's rule solved from where the level below left off.
class MoistLevel {
 public:
  explicit MoistLevel(SaturationOver over) : over_(over) {}

  void Fill(LevelProfile& levels, int level) {
    const double press = levels.Press(level);
    const double temp = levels.Temp(level);
    const double dewpt = std::min(levels.Dewpt(level), temp);
    const double vapor = TabledSatVapor(levels.Dewpt(level), over_);
    const double saturation = TabledSatVapor(temp, over_);
    const double dry = press - vapor;
    levels.MixingRatio(level) = dry == 0 ? 0 : kEpsilon * vapor / dry;
    levels.VirtualTemp(level) = VirtualTemp(temp, levels.MixingRatio(level));
    levels.RelHumidity(level) = saturation > 0 ? 100 * vapor / saturation : 0;

    const double lclTemp = Condense(temp, dewpt);
    const double lclPress = LclPressure(press, temp, lclTemp);
    const double lclVapor = TabledSatVapor(lclTemp, over_);
    const double lclTempK = lclTemp + kKelvinOffset;
    // What is out of the ordinary goes through the routines with all their guards.
    const bool ordinary = press >= 1 && lclTempK > 150 && lclVapor < 0.25 * lclPress;
    if (!ordinary) {
      levels.ThetaE(level) = LevelThetaE(press, temp, levels.Dewpt(level), over_);
      levels.WetBulb(level) = WetBulb(press, temp, levels.Dewpt(level), over_);
      return;
    }
    const double mixing = kEpsilon * lclVapor / (lclPress - lclVapor);
    const double latent = kLatentFactor * mixing / lclTempK;
    const double lclTheta = lclTempK * std::exp(kPoisson * (kLogReference - std::log(lclPress)));
    levels.ThetaE(level) = lclTheta * std::exp(latent);
    const double found = Lowered(std::log(lclTheta) + latent, press, temp, dewpt);
    levels.WetBulb(level) = std::clamp(found, dewpt, temp);
    share_ = temp > dewpt ? (levels.WetBulb(level) - dewpt) / (temp - dewpt) : share_;
  }

 private:
  // Newton steps along the saturated adiabat from the last level's place between Td and T.
  double Lowered(double logThetaE, double press, double temp, double dewpt) const {
    constexpr int kSteps = 6;
    constexpr double kAccuracy = 1e-4;  // K, from where a step has converged quadratically
    const double logPoisson = kPoisson * (kLogReference - std::log(press));
    double tempK = dewpt + share_ * (temp - dewpt) + kKelvinOffset;
    for (int step = 0; step < kSteps; ++step) {
      const VaporPoint vapor = TabledVapor(FormulaAt(over_, tempK - kKelvinOffset), tempK);
      if (!(vapor.Pressure < 0.3 * press)) break;
      const AdiabatPoint point = AdiabatWith(vapor, tempK, std::log(tempK), press, logPoisson);
      const double change = (logThetaE - point.LogThetaE) / point.Slope;
      tempK += change;
      if (std::fabs(change) < kAccuracy) return tempK - kKelvinOffset;
      if (!(tempK > 120 && tempK < 400)) break;
    }
    return LiftSat(std::exp(logThetaE), press, over_).Temp;
  }

  SaturationOver over_;
  double share_ = 0.5;
};

}  // namespace

LevelProfile DeriveLevels(const SoundingRecord& sounding, const Options& options) {
  const int count = sounding.NumTempLevels();
  LevelProfile levels;
  levels.Press = sounding.Press;
  levels.Temp = sounding.Temp;
  levels.Dewpt = sounding.Dewpt;
  for (Levels<double>* array : {&levels.Height, &levels.WetBulb, &levels.ThetaE, &levels.Theta,
                                &levels.VirtualTemp, &levels.MixingRatio, &levels.RelHumidity}) {
    array->Resize(count, kMissing);
  }
  MoistLevel moist(options.Saturation);
  for (int i = 1; i <= count; ++i) {
    const double press = levels.Press(i);
    levels.Theta(i) = DryTheta(press, levels.Temp(i));
    levels.VirtualTemp(i) = levels.Temp(i);
    if (!NotAvailable(levels.Dewpt(i))) moist.Fill(levels, i);
    levels.Height(i) =
        i == 1 ? sounding.ElevM
               : levels.Height(i - 1) + Thickness(levels.Press(i - 1), press,
                                                  levels.VirtualTemp(i - 1), levels.VirtualTemp(i));
  }
  return levels;
}

}  // namespace vexa::analysis
