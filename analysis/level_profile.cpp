#include "analysis/level_profile.h"

#include <algorithm>
#include <cmath>

#include "analysis/analysis_settings.h"
#include "analysis/moist_air.h"
#include "analysis/vapor_table.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kMetersPerKelvin = kDryGasConstant / kGravity;
constexpr double kLogReference = 6.907755278982137;  // ln 1000

// What the quantities of a level share: the logarithms are taken once.
struct LevelLogs {
  double Press = 0;    // ln p
  double Poisson = 0;  // 0.2856 ln(1000/p)
};

// The moist quantities of a level as moist_air.h defines them, with the vapour pressures from the
// table and Normand's rule solved from where the level below left off.
class MoistLevel {
 public:
  explicit MoistLevel(SaturationOver over) : over_(over) {}

  void Fill(LevelProfile& levels, int level, const LevelLogs& logs) {
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
    const double lclTempK = lclTemp + kKelvinOffset;
    // What is out of the ordinary goes through the routines with all their guards.
    if (!(press >= 1 && lclTempK > 150 && levels.Theta(level) > 0)) {
      FillGuarded(levels, level);
      return;
    }
    // Dry up to the condensation level the potential temperature stays.
    const double logTheta = std::log(levels.Theta(level));
    const double logLclTemp = std::log(lclTempK);
    const double logLcl = std::min(logs.Press, kLogReference + (logLclTemp - logTheta) / kPoisson);
    const double lclPress = std::exp(logLcl);
    const double lclVapor = TabledSatVapor(lclTemp, over_);
    if (!(lclVapor < 0.25 * lclPress)) {
      FillGuarded(levels, level);
      return;
    }
    const double mixing = kEpsilon * lclVapor / (lclPress - lclVapor);
    const double logThetaE =
        logLclTemp + kPoisson * (kLogReference - logLcl) + kLatentFactor * mixing / lclTempK;
    levels.ThetaE(level) = std::exp(logThetaE);
    const double found = Lowered(logThetaE, press, logs.Poisson, temp, dewpt);
    levels.WetBulb(level) = std::clamp(found, dewpt, temp);
    share_ = temp > dewpt ? (levels.WetBulb(level) - dewpt) / (temp - dewpt) : share_;
  }

 private:
  void FillGuarded(LevelProfile& levels, int level) const {
    const double press = levels.Press(level);
    const double temp = levels.Temp(level);
    levels.ThetaE(level) = LevelThetaE(press, temp, levels.Dewpt(level), over_);
    levels.WetBulb(level) = WetBulb(press, temp, levels.Dewpt(level), over_);
  }

  // Newton steps along the saturated adiabat from the last level's place between Td and T.
  double Lowered(double logThetaE, double press, double logPoisson, double temp,
                 double dewpt) const {
    constexpr int kSteps = 6;
    constexpr double kShort = 0.003;  // K; what a step this short leaves is below 1e-6 K
    double tempK = dewpt + share_ * (temp - dewpt) + kKelvinOffset;
    double logTempK = std::log(tempK);
    for (int step = 0; step < kSteps; ++step) {
      const VaporPoint vapor = TabledVapor(FormulaAt(over_, tempK - kKelvinOffset), tempK);
      if (!(vapor.Pressure < 0.3 * press)) break;
      const AdiabatPoint point = AdiabatWith(vapor, tempK, logTempK, press, logPoisson);
      const double change = (logThetaE - point.LogThetaE) / point.Slope;
      tempK += change;
      if (std::fabs(change) < kShort) return tempK - kKelvinOffset;
      if (!(tempK > 120 && tempK < 400)) break;
      logTempK = LogAfter(logTempK, change / tempK, tempK);
    }
    return LiftSat(std::exp(logThetaE), press, over_).Temp;
  }

  // ln of a temperature a small share away from one whose logarithm is known.
  static double LogAfter(double log, double share, double tempK) {
    constexpr double kSmall = 2e-3;  // the series then leaves less than 1e-12
    if (!(std::fabs(share) < kSmall)) return std::log(tempK);
    return log + share * (1 + share * (0.5 + share * (1.0 / 3 + share / 4)));
  }

  SaturationOver over_;
  double share_ = 0.5;
};

double VirtualTempAt(double press, double temp, double dewpt, SaturationOver over) {
  if (NotAvailable(dewpt)) return temp;
  const double vapor = TabledSatVapor(dewpt, over);
  const double dry = press - vapor;
  return VirtualTemp(temp, dry == 0 ? 0 : kEpsilon * vapor / dry);
}

// The hypsometric equation; Hess (1959). 0 where there is no pressure.
double Thickness(double lowPress, double highPress, double logRatio, double virtualLow,
                 double virtualHigh) {
  if (!(lowPress > 0) || !(highPress > 0)) return 0;
  return kMetersPerKelvin * ((virtualLow + virtualHigh) / 2 + kKelvinOffset) * logRatio;
}

// Potential temperature as DryTheta has it, from a logarithm that is at hand.
double ThetaOf(double press, double temp, const LevelLogs& logs) {
  const auto tempK = static_cast<double>(static_cast<float>(temp + kKelvinOffset));
  return press > 0 && tempK > 0 ? tempK * std::exp(logs.Poisson) : 0;
}

}  // namespace

Levels<double> DeriveHeights(const SoundingRecord& sounding, SaturationOver over) {
  Levels<double> heights;
  double pressBelow = 0, logBelow = 0, virtualBelow = 0;
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    const double press = sounding.Press(i);
    const double logPress = press > 0 ? std::log(press) : 0;
    const double virtualTemp = VirtualTempAt(press, sounding.Temp(i), sounding.Dewpt(i), over);
    heights.Add(i == 1 ? sounding.ElevM
                       : heights.Top() + Thickness(pressBelow, press, logBelow - logPress,
                                                   virtualBelow, virtualTemp));
    pressBelow = press;
    logBelow = logPress;
    virtualBelow = virtualTemp;
  }
  return heights;
}

LevelProfile DeriveLevels(const SoundingRecord& sounding, const AnalysisSettings& options) {
  const int count = sounding.NumTempLevels();
  LevelProfile levels;
  levels.Press = sounding.Press;
  levels.Temp = sounding.Temp;
  levels.Dewpt = sounding.Dewpt;
  for (Levels<double>* array : {&levels.Height, &levels.WetBulb, &levels.ThetaE, &levels.Theta,
                                &levels.VirtualTemp, &levels.MixingRatio, &levels.RelHumidity}) {
    array->Resize(count, kMissing);
  }
  levels.LogPress.Resize(count, 0);
  MoistLevel moist(options.Saturation);
  for (int i = 1; i <= count; ++i) {
    const double press = levels.Press(i);
    LevelLogs logs;
    if (press > 0) {
      logs.Press = std::log(press);
      logs.Poisson = kPoisson * (kLogReference - logs.Press);
    }
    levels.LogPress(i) = logs.Press;
    levels.Theta(i) = ThetaOf(press, levels.Temp(i), logs);
    levels.VirtualTemp(i) = levels.Temp(i);
    if (!NotAvailable(levels.Dewpt(i))) moist.Fill(levels, i, logs);
    levels.Height(i) =
        i == 1 ? sounding.ElevM
               : levels.Height(i - 1) + Thickness(levels.Press(i - 1), press,
                                                  levels.LogPress(i - 1) - logs.Press,
                                                  levels.VirtualTemp(i - 1), levels.VirtualTemp(i));
  }
  return levels;
}

}  // namespace vexa::analysis
