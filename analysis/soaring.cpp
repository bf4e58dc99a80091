#include "analysis/soaring.h"

#include <algorithm>
#include <cmath>

#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/profile_walk.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kPilotIndex = -3;          // °C
constexpr double kIndexHeightFt = 4000;     // above ground
constexpr double kHeatFlux = 0.20;          // K m/s
constexpr double kFeetPerMinute = 0.00508;  // m/s

// Potential temperatures carry a noise of some 1e-5 K: air this much warmer is no lid.
constexpr double kNoLid = 1e-4;  // K

// The air's temperature minus that of air risen dry from the ground, °C. The level's own ratio of
// temperature to potential temperature stands for (p/1000)^0.2856.
VEXA_WIDE void FillThermalIndex(const double* temps, const double* thetas, std::size_t count,
                                double theta, double* indices) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < count; ++i) {
    const double tempK = temps[i] + kKelvinOffset;
    indices[i] = tempK - theta * tempK / thetas[i];
  }
}

// Where air that rises dry from the ground stops being potentially warmer than the air about it;
// none where the sounding ends first.
LevelPoint TopOfDryThermals(const LevelProfile& levels, double theta) {
  const std::vector<double>& thetas = levels.Theta.Values();
  const std::size_t above = FirstAbove(thetas.data(), 1, thetas.size(), theta + kNoLid);
  if (above >= thetas.size()) return {};
  const double share = (theta - thetas[above - 1]) / (thetas[above] - thetas[above - 1]);
  return Between(levels, static_cast<int>(above), std::clamp(share, 0.0, 1.0));
}

// The highest place below the thermals' top up to which the index is at most the pilot's; none
// where it never is.
LevelPoint PilotLevelUnder(const LevelProfile& levels, const Levels<double>& index, double top) {
  const std::vector<double>& heights = levels.Height.Values();
  const auto reached = static_cast<int>(std::ranges::upper_bound(heights, top) - heights.begin());
  const int highestBase = levels.HeightRises ? reached : levels.Count();
  for (int i = std::min(highestBase, levels.Count() - 1); i >= 1; --i) {
    const double depth = levels.Height(i + 1) - levels.Height(i);
    if (levels.Height(i) > top || !(depth > 0)) continue;
    const double highest = std::min((top - levels.Height(i)) / depth, 1.0);
    const double rise = index(i + 1) - index(i);
    if (index(i) + highest * rise <= kPilotIndex) return Between(levels, i, highest);
    if (index(i) <= kPilotIndex) return Between(levels, i, (kPilotIndex - index(i)) / rise);
  }
  return {};
}

// The warmest of the day at the ground: what the user expects, else what the 850 hPa air has when
// it is brought down, but never less than was measured.
double DayTemp(const LevelProfile& levels, const AnalysisSettings& settings) {
  constexpr double kLid = 850;  // hPa
  if (settings.SoarTm) return *settings.SoarTm;
  const double ground = levels.Press(1);
  const Sample aloft = SampleAt(levels, kLid, Quantity::Temp);
  if (ground <= kLid || !aloft.Ok()) return levels.Temp(1);
  const double descended =
      (aloft.Value + kKelvinOffset) * std::pow(ground / kLid, kPoisson) - kKelvinOffset;
  return std::max(descended, levels.Temp(1));
}

double LiftOf(const LevelProfile& levels, const SoaringResults& soaring) {
  const double ground = levels.Height(1);
  const double depth = soaring.ThermalTop.Height - ground;
  if (soaring.LiftEquation == 2) {
    const double meanK = (soaring.MaxTemp + soaring.ThermalTop.Temp) / 2 + kKelvinOffset;
    return std::cbrt(kGravity / meanK * std::max(depth, 0.0) * kHeatFlux);
  }
  const double depthFt = FeetFromMeters(depth);
  double drop = 0;
  if (depthFt > kIndexHeightFt) {
    const double press = GetPRESS(levels, ground + MetersFromFeet(kIndexHeightFt));
    const Sample low = SampleAt(levels, press, Quantity::Temp);
    if (low.Ok()) drop = std::max(low.Value - soaring.ThermalTop.Temp, 0.0);
  }
  return 3 * depthFt / 100 + 10 * drop;
}

std::string_view WordsOf(double feetPerMinute) {
  if (feetPerMinute < 200) return "poor";
  if (feetPerMinute < 400) return "fair";
  return feetPerMinute < 600 ? "good" : "excellent";
}

}  // namespace

SoaringResults AnalyseSoaring(const AnalysisResults& results, const AnalysisSettings& settings) {
  SoaringResults soaring;
  soaring.LiftEquation = settings.LiftEq;
  const LevelProfile& levels = results.Levels;
  if (levels.Count() < 2) return soaring;
  const double ground = levels.Press(1);
  soaring.MaxTemp = DayTemp(levels, settings);
  const double theta = ThetaPoint(ground, soaring.MaxTemp).Theta;
  soaring.ThermalIndex.Resize(levels.Count());
  FillThermalIndex(levels.Temp.Values().data(), levels.Theta.Values().data(),
                   levels.Temp.Values().size(), theta, soaring.ThermalIndex.Values().data());

  const double triggerPress =
      GetPRESS(levels, levels.Height(1) + MetersFromFeet(settings.TriggerHgt));
  const Sample trigger = SampleAt(levels, triggerPress, Quantity::Temp);
  if (trigger.Ok()) {
    soaring.TriggerTemp =
        (trigger.Value + kKelvinOffset) * std::pow(ground / triggerPress, kPoisson) - kKelvinOffset;
  }

  soaring.ThermalTop = TopOfDryThermals(levels, theta);
  const LevelPoint& base = results.ConvectiveCondensation;
  const bool reachesBase =
      base.Exists() && soaring.MaxTemp >= results.ConvectiveTemp &&
      !(soaring.ThermalTop.Exists() && soaring.ThermalTop.Height < base.Height);
  if (reachesBase) {
    soaring.CloudBase = base;
    soaring.ThermalTop = base;
  }
  soaring.PilotLevel = PilotLevelUnder(
      levels, soaring.ThermalIndex,
      soaring.ThermalTop.Exists() ? soaring.ThermalTop.Height : levels.Height.Top());
  if (!soaring.ThermalTop.Exists()) return soaring;
  soaring.Lift = LiftOf(levels, soaring);
  soaring.Words = WordsOf(soaring.LiftEquation == 2 ? soaring.Lift / kFeetPerMinute : soaring.Lift);
  return soaring;
}

}  // namespace vexa::analysis
