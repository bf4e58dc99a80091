#include "analysis/soaring.h"

#include <algorithm>
#include <cmath>

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

// Where a value first rises past a limit above the ground; the ground when it is there at once.
LevelPoint FirstAbove(const LevelProfile& levels, const Levels<double>& values, double limit) {
  if (values(1) >= limit) return {levels.Press(1), levels.Height(1), levels.Temp(1)};
  for (int i = 1; i < levels.Count(); ++i) {
    if (values(i + 1) < limit) continue;
    return Between(levels, i, (limit - values(i)) / (values(i + 1) - values(i)));
  }
  return {};
}

double DayTemp(const LevelProfile& levels, const SystemOptions& settings) {
  constexpr double kLid = 850;  // hPa
  const double ground = levels.Press(1);
  if (settings.SoarTm) return *settings.SoarTm;
  const Sample aloft = SampleAt(levels, kLid, Quantity::Temp);
  if (ground <= kLid || !aloft.Ok()) return levels.Temp(1);
  return (aloft.Value + kKelvinOffset) * std::pow(ground / kLid, kPoisson) - kKelvinOffset;
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

SoaringResults AnalyseSoaring(const AnalysisResults& results, const Options& options) {
  const SystemOptions& settings = options.System;
  SoaringResults soaring;
  soaring.LiftEquation = settings.LiftEq;
  const LevelProfile& levels = results.Levels;
  if (levels.Count() < 2) return soaring;
  const double ground = levels.Press(1);
  soaring.MaxTemp = DayTemp(levels, settings);
  const double theta = ThetaPoint(ground, soaring.MaxTemp).Theta;
  soaring.ThermalIndex.Resize(levels.Count());
  for (int i = 1; i <= levels.Count(); ++i) {
    // The level's own ratio of temperature to potential temperature stands for (p/1000)^0.2856.
    const double tempK = levels.Temp(i) + kKelvinOffset;
    soaring.ThermalIndex(i) = tempK - theta * tempK / levels.Theta(i);
  }

  const double triggerPress =
      GetPRESS(levels, levels.Height(1) + MetersFromFeet(settings.TriggerHgt));
  const Sample trigger = SampleAt(levels, triggerPress, Quantity::Temp);
  if (trigger.Ok()) {
    soaring.TriggerTemp =
        (trigger.Value + kKelvinOffset) * std::pow(ground / triggerPress, kPoisson) - kKelvinOffset;
  }

  soaring.ThermalTop = FirstAbove(levels, levels.Theta, theta);
  const LevelPoint& base = results.ConvectiveCondensation;
  if (base.Exists() && soaring.MaxTemp >= results.ConvectiveTemp) {
    soaring.CloudBase = base;
    soaring.ThermalTop = base;
  }
  soaring.PilotLevel = FirstAbove(levels, soaring.ThermalIndex, kPilotIndex);
  if (!soaring.ThermalTop.Exists()) return soaring;
  soaring.Lift = LiftOf(levels, soaring);
  soaring.Words = WordsOf(soaring.LiftEquation == 2 ? soaring.Lift / kFeetPerMinute : soaring.Lift);
  return soaring;
}

}  // namespace vexa::analysis
