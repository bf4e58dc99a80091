#include "analysis/level_profile.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

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

// A level, with what moist air needs of it.
struct DryLevel {
  double Press = 0;  // hPa
  double Temp = 0;   // °C
  double Dewpt = 0;  // °C
  double Theta = 0;  // K
  LevelLogs Logs{};
};

struct MoistLevel {
  double MixingRatio = 0;  // kg/kg
  double VirtualTemp = 0;  // °C
  double RelHumidity = 0;  // %
  double ThetaE = 0;       // K
  double WetBulb = 0;      // °C
};

// The moist quantities of levels as moist_air.h defines them, with the vapour pressures from the
// table and Normand's rule solved from where the level below left off.
class MoistWalk {
 public:
  explicit MoistWalk(SaturationOver over) : over_(over) {}

  MoistLevel At(const DryLevel& level) {
    MoistLevel moist;
    const double temp = level.Temp;
    const double dewpt = std::min(level.Dewpt, temp);
    const double vapor = TabledSatVapor(level.Dewpt, over_);
    const double saturation = TabledSatVapor(temp, over_);
    const double dry = level.Press - vapor;
    moist.MixingRatio = dry == 0 ? 0 : kEpsilon * vapor / dry;
    moist.VirtualTemp = VirtualTemp(temp, moist.MixingRatio);
    moist.RelHumidity = saturation > 0 ? 100 * vapor / saturation : 0;

    const double lclTemp = Condense(temp, dewpt);
    const double lclTempK = lclTemp + kKelvinOffset;
    // What is out of the ordinary goes through the routines with all their guards.
    if (!(level.Press >= 1 && lclTempK > 150 && level.Theta > 0)) return Guarded(level, moist);
    // Dry up to the condensation level the potential temperature stays.
    const double logTheta = std::log(level.Theta);
    const double logLclTemp = std::log(lclTempK);
    const double logLcl =
        std::min(level.Logs.Press, kLogReference + (logLclTemp - logTheta) / kPoisson);
    const double lclPress = std::exp(logLcl);
    const double lclVapor = TabledSatVapor(lclTemp, over_);
    if (!(lclVapor < 0.25 * lclPress)) return Guarded(level, moist);
    const double mixing = kEpsilon * lclVapor / (lclPress - lclVapor);
    const double logThetaE =
        logLclTemp + kPoisson * (kLogReference - logLcl) + kLatentFactor * mixing / lclTempK;
    moist.ThetaE = std::exp(logThetaE);
    const double found = Lowered(logThetaE, level.Press, level.Logs.Poisson, temp, dewpt);
    moist.WetBulb = std::clamp(found, dewpt, temp);
    share_ = temp > dewpt ? (moist.WetBulb - dewpt) / (temp - dewpt) : share_;
    return moist;
  }

 private:
  MoistLevel Guarded(const DryLevel& level, MoistLevel moist) const {
    moist.ThetaE = LevelThetaE(level.Press, level.Temp, level.Dewpt, over_);
    moist.WetBulb = WetBulb(level.Press, level.Temp, level.Dewpt, over_);
    return moist;
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
  if (sounding.Temp.Count() < count || sounding.Dewpt.Count() < count) {
    throw std::out_of_range("level arrays of different lengths");
  }
  LevelProfile levels;
  levels.Press = sounding.Press;
  levels.Temp = sounding.Temp;
  levels.Dewpt = sounding.Dewpt;
  for (Levels<double>* array : {&levels.Height, &levels.WetBulb, &levels.ThetaE, &levels.Theta,
                                &levels.VirtualTemp, &levels.MixingRatio, &levels.RelHumidity}) {
    array->Resize(count, kMissing);
  }
  levels.LogPress.Resize(count, 0);
  const double* pressures = levels.Press.Values().data();
  const double* temps = levels.Temp.Values().data();
  const double* dewpts = levels.Dewpt.Values().data();
  double* logs = levels.LogPress.Values().data();
  double* thetas = levels.Theta.Values().data();
  double* virtuals = levels.VirtualTemp.Values().data();
  double* heights = levels.Height.Values().data();
  MoistWalk walk(options.Saturation);
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    DryLevel level{.Press = pressures[i], .Temp = temps[i], .Dewpt = dewpts[i]};
    if (level.Press > 0) {
      level.Logs.Press = std::log(level.Press);
      level.Logs.Poisson = kPoisson * (kLogReference - level.Logs.Press);
    }
    level.Theta = ThetaOf(level.Press, level.Temp, level.Logs);
    logs[i] = level.Logs.Press;
    thetas[i] = level.Theta;
    virtuals[i] = level.Temp;
    if (!NotAvailable(level.Dewpt)) {
      const MoistLevel moist = walk.At(level);
      virtuals[i] = moist.VirtualTemp;
      levels.MixingRatio.Values()[i] = moist.MixingRatio;
      levels.RelHumidity.Values()[i] = moist.RelHumidity;
      levels.ThetaE.Values()[i] = moist.ThetaE;
      levels.WetBulb.Values()[i] = moist.WetBulb;
    }
    heights[i] =
        i == 0 ? sounding.ElevM
               : heights[i - 1] + Thickness(pressures[i - 1], pressures[i], logs[i - 1] - logs[i],
                                            virtuals[i - 1], virtuals[i]);
  }
  levels.PressFalls = std::ranges::is_sorted(levels.Press.Values(), std::ranges::greater{});
  levels.HeightRises = std::ranges::is_sorted(levels.Height.Values());
  return levels;
}

}  // namespace vexa::analysis
