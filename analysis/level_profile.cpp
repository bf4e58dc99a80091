#include "analysis/level_profile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

#include "analysis/analysis_settings.h"
#include "analysis/column_air.h"
#include "analysis/column_math.h"
#include "analysis/moist_air.h"
#include "analysis/vapor_table.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kMetersPerKelvin = kDryGasConstant / kGravity;
constexpr double kLogReference = 6.907755278982137;  // ln 1000
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

enum class Wanted { Heights, All };

// The temperature from which potential temperatures come, K: in single precision.
double ThetaTemp(double temp) {
  return static_cast<double>(static_cast<float>(temp + kKelvinOffset));
}

VEXA_WIDE void FillLogs(const double* pressures, std::size_t count, double* logs) {
  for (std::size_t i = 0; i < count; ++i) logs[i] = ColumnLog(pressures[i] > 0 ? pressures[i] : 1);
}

// As DryTheta has it.
VEXA_WIDE void FillThetas(const double* logs, const double* pressures, const double* temps,
                          std::size_t count, double* thetas) {
  for (std::size_t i = 0; i < count; ++i) {
    const double tempK = ThetaTemp(temps[i]);
    const double theta = tempK * ColumnExp(kPoisson * (kLogReference - logs[i]));
    thetas[i] = (pressures[i] > 0) & (tempK > 0) ? theta : 0;
  }
}

// Columns of neighbouring levels whose air is as it is met: what moist_air.h gives for each, with
// the vapour pressures from the table.
struct MoistRun {
  std::size_t Count;
  const double* Press;  // hPa
  const double* Temp;   // °C
  const double* Dewpt;  // °C
  const double* Theta;  // K

  double* MixingRatio;  // kg/kg
  double* VirtualTemp;  // °C
  double* RelHumidity;  // %
  double* Saturation;   // hPa
  double* Growth;       // hPa/K, of the saturation vapour pressure
  double* Heat;         // ln of what the air's temperature grows by when its vapour condenses
  double* ThetaE;       // K
  double* WetBulb;      // °C; not a number where the steps towards it were too few

  MoistRun Part(std::size_t from, std::size_t count) const {
    return {count,
            Press + from,
            Temp + from,
            Dewpt + from,
            Theta + from,
            MixingRatio + from,
            VirtualTemp + from,
            RelHumidity + from,
            Saturation + from,
            Growth + from,
            Heat + from,
            ThetaE + from,
            WetBulb + from};
  }
};

VEXA_WIDE void FillMoisture(MoistRun run, ColumnVapor table) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < run.Count; ++i) {
    const double temp = run.Temp[i];
    const double dewpt = run.Dewpt[i];
    const double vapor = table.At(dewpt, dewpt + kKelvinOffset).Pressure;
    const ColumnVapor::Point saturation = table.At(temp, temp + kKelvinOffset);
    const double dry = run.Press[i] - vapor;
    const double mixing = dry == 0 ? 0 : kEpsilon * vapor / dry;
    run.MixingRatio[i] = mixing;
    run.VirtualTemp[i] = VirtualTempOf(temp, mixing);
    run.RelHumidity[i] = 100 * vapor / saturation.Pressure;
    run.Saturation[i] = saturation.Pressure;
    run.Growth[i] = saturation.Slope;
  }
}

// θe of the condensation point, up to which the potential temperature stays.
VEXA_WIDE void FillThetaE(MoistRun run, ColumnVapor table) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < run.Count; ++i) {
    const double temp = run.Temp[i];
    const double lclTemp = CondensedTemp(temp, std::min(run.Dewpt[i], temp));
    const double lclTempK = lclTemp + kKelvinOffset;
    const double cooling = LogOfRatio(lclTempK, ThetaTemp(temp));
    const double lclPress = run.Press[i] * ColumnExp(std::min(cooling, 0.0) * (1 / kPoisson));
    const double vapor = table.At(lclTemp, lclTempK).Pressure;
    const double latent = kLatentFactor * kEpsilon * vapor / ((lclPress - vapor) * lclTempK);
    const double heat = latent + std::max(cooling, 0.0);
    const bool boils = !(vapor < 0.25 * lclPress);
    run.Heat[i] = boils ? kNoNumber : heat;
    run.ThetaE[i] = run.Theta[i] * ColumnExp(boils ? 0 : heat);
  }
}

// A step of Halley's towards the temperature, K, at which the saturated adiabat of a heat comes
// through a pressure: the third power of the error is left of it.
//
// cooling   ln of the temperature over that of the air
inline double StepToWetBulb(double wetK, const ColumnVapor::Point& vapor, double press,
                            double cooling, double heat) {
  const double dry = press - vapor.Pressure;
  // Three quotients by one division, which takes longer than all products here.
  const double dryTemp = dry * wetK;
  const double all = 1 / (dryTemp * vapor.Pressure);
  const double inverse = all * dry * vapor.Pressure;
  const double dryShare = all * wetK * vapor.Pressure;
  const double latent = kLatentFactor * kEpsilon * vapor.Pressure * dryShare * inverse;
  const double growth = press * dryShare * vapor.Slope * (all * dryTemp);  // of the mixing ratio
  const double error = cooling + latent - heat;
  const double slope = inverse + latent * (growth - inverse);
  const double bend =
      latent * (growth * (growth + vapor.Slope * dryShare) - 2 * inverse * (2 * growth - inverse)) -
      inverse * inverse;
  return 2 * error * slope / (2 * slope * slope - error * bend);
}

// Normand's rule: down the saturated adiabat from the condensation point. The first step, from the
// air's own temperature, whose vapour is known, leaves so little that the second nearly always
// ends; a third is taken for levels of which some need it.
VEXA_WIDE void FillWetBulb(MoistRun run, ColumnVapor table) {
  constexpr double kFar = 0.05;  // K; a last step this long leaves 1e-6 K
  constexpr std::size_t kAtATime = 32;
  std::array<double, kAtATime> reached;  // K
  for (std::size_t from = 0; from < run.Count; from += kAtATime) {
    const MoistRun part = run.Part(from, std::min(run.Count - from, kAtATime));
    // Where it lies whatever comes out, and so on the ladder.
    const auto within = [part](std::size_t i, double wetK) {
      const double temp = part.Temp[i];
      return std::min(temp + kKelvinOffset,
                      std::max(std::min(part.Dewpt[i], temp) + kKelvinOffset, wetK));
    };
    VEXA_INDEPENDENT
    for (std::size_t i = 0; i < part.Count; ++i) {
      const double tempK = part.Temp[i] + kKelvinOffset;
      const ColumnVapor::Point vapor{part.Saturation[i], part.Growth[i]};
      reached[i] = within(i, tempK - StepToWetBulb(tempK, vapor, part.Press[i], 0, part.Heat[i]));
    }
    std::uint64_t others = 0;
    for (const bool isLast : {false, true}) {
      VEXA_INDEPENDENT
      for (std::size_t i = 0; i < part.Count; ++i) {
        const double wetK = reached[i];
        const ColumnVapor::Point vapor = table.At(wetK - kKelvinOffset, wetK);
        const double cooling = LogOfNearRatio(wetK, ThetaTemp(part.Temp[i]));
        const double change = StepToWetBulb(wetK, vapor, part.Press[i], cooling, part.Heat[i]);
        reached[i] = within(i, wetK - change);
        const bool isNear = std::fabs(change) < kFar;
        const double temp = part.Temp[i];
        const double wetBulb =
            std::min(std::max(wetK - change - kKelvinOffset, std::min(part.Dewpt[i], temp)), temp);
        part.WetBulb[i] = isNear | !isLast ? wetBulb : kNoNumber;
        others |= isNear ? 0 : 1;
      }
      if (others == 0) break;
    }
  }
}

// Neither near absolute zero nor too dry for the condensation point to be near.
inline bool IsOrdinaryAir(double press, double temp, double dewpt) {
  constexpr double kColdest = -110, kWarmest = 60;  // °C
  constexpr double kDriest = 60;                    // K
  return (press >= 1) & (temp > kColdest) & (temp < kWarmest) & (dewpt > kColdest) &
         (dewpt < kWarmest) & (temp - dewpt < kDriest);
}

// Of all levels, which is so of nearly every sounding.
VEXA_WIDE bool IsAllOrdinary(const double* pressures, const double* temps, const double* dewpts,
                             std::size_t count) {
  std::uint64_t others = 0;
  for (std::size_t i = 0; i < count; ++i) {
    others |= IsOrdinaryAir(pressures[i], temps[i], dewpts[i]) ? 0 : 1;
  }
  return others == 0;
}

// Whether each value is at most, or at least, the one before it.
VEXA_WIDE bool FallsThroughout(const double* values, std::size_t count) {
  std::uint64_t others = 0;
  for (std::size_t i = 1; i < count; ++i) others |= values[i] > values[i - 1] ? 1 : 0;
  return others == 0;
}
VEXA_WIDE bool RisesThroughout(const double* values, std::size_t count) {
  std::uint64_t others = 0;
  for (std::size_t i = 1; i < count; ++i) others |= values[i] < values[i - 1] ? 1 : 0;
  return others == 0;
}

// What is out of the ordinary goes through the routines with all their guards.
void FillGuarded(const MoistRun& run, std::size_t at, SaturationOver over, Wanted wanted) {
  const double press = run.Press[at], temp = run.Temp[at], dewpt = run.Dewpt[at];
  const double saturation = TabledSatVapor(temp, over);
  const double mixing = TabledMixingRatio(press, dewpt, over);
  run.MixingRatio[at] = mixing;
  run.VirtualTemp[at] = VirtualTempOf(temp, mixing);
  run.RelHumidity[at] = saturation > 0 ? 100 * TabledSatVapor(dewpt, over) / saturation : 0;
  if (wanted == Wanted::Heights) return;
  run.ThetaE[at] = LevelThetaE(press, temp, dewpt, over);
  run.WetBulb[at] = WetBulb(press, temp, dewpt, over);
}

void FillOrdinary(const MoistRun& run, SaturationOver over, Wanted wanted) {
  const ColumnVapor table(over);
  FillMoisture(run, table);
  if (wanted == Wanted::Heights) return;
  FillThetaE(run, table);
  FillWetBulb(run, table);
  for (std::size_t i = 0; i < run.Count; ++i) {
    if (std::isnan(run.WetBulb[i])) FillGuarded(run, i, over, wanted);
  }
}

// Levels with a dew point, run by run; the others keep what they have.
void FillMoist(const MoistRun& all, SaturationOver over, Wanted wanted) {
  if (IsAllOrdinary(all.Press, all.Temp, all.Dewpt, all.Count)) {
    return FillOrdinary(all, over, wanted);
  }
  std::size_t from = 0;
  for (std::size_t i = 0; i <= all.Count; ++i) {
    if (i < all.Count && IsOrdinaryAir(all.Press[i], all.Temp[i], all.Dewpt[i])) continue;
    if (i > from) FillOrdinary(all.Part(from, i - from), over, wanted);
    if (i < all.Count && !NotAvailable(all.Dewpt[i])) FillGuarded(all, i, over, wanted);
    from = i + 1;
  }
}

// The hypsometric equation; Hess (1959). No thickness where there is no pressure.
VEXA_WIDE void FillThicknesses(const double* pressures, const double* logs, const double* virtuals,
                               std::size_t count, double* thicknesses) {
  VEXA_INDEPENDENT
  for (std::size_t i = 1; i < count; ++i) {
    const double mean = (virtuals[i - 1] + virtuals[i]) / 2 + kKelvinOffset;
    const bool hasPress = (pressures[i - 1] > 0) & (pressures[i] > 0);
    const double thickness = kMetersPerKelvin * mean * (logs[i - 1] - logs[i]);
    thicknesses[i] = hasPress ? thickness : 0;
  }
}

LevelProfile Derive(const SoundingRecord& sounding, SaturationOver over, Wanted wanted) {
  const int count = sounding.NumTempLevels();
  if (sounding.Temp.Count() < count || sounding.Dewpt.Count() < count) {
    throw std::out_of_range("level arrays of different lengths");
  }
  LevelProfile levels;
  levels.Press = sounding.Press;
  levels.Temp = sounding.Temp;
  levels.Dewpt = sounding.Dewpt;
  levels.VirtualTemp = sounding.Temp;
  levels.VirtualTemp.Resize(count);
  const auto column = [count](Levels<double>& array) {
    array.Resize(count, kMissing);
    return array.Values().data();
  };
  const auto size = static_cast<std::size_t>(count);
  const double* pressures = levels.Press.Values().data();
  const double* temps = levels.Temp.Values().data();
  double* logs = column(levels.LogPress);
  double* thetas = column(levels.Theta);
  double* virtuals = levels.VirtualTemp.Values().data();
  FillLogs(pressures, size, logs);
  FillThetas(logs, pressures, temps, size, thetas);
  std::vector<double> scratch(3 * size);
  FillMoist({.Count = size,
             .Press = pressures,
             .Temp = temps,
             .Dewpt = levels.Dewpt.Values().data(),
             .Theta = thetas,
             .MixingRatio = column(levels.MixingRatio),
             .VirtualTemp = virtuals,
             .RelHumidity = column(levels.RelHumidity),
             .Saturation = scratch.data(),
             .Growth = scratch.data() + size,
             .Heat = scratch.data() + 2 * size,
             .ThetaE = column(levels.ThetaE),
             .WetBulb = column(levels.WetBulb)},
            over, wanted);
  double* heights = column(levels.Height);
  FillThicknesses(pressures, logs, virtuals, size, heights);
  if (size > 0) heights[0] = sounding.ElevM;
  for (std::size_t i = 1; i < size; ++i) heights[i] += heights[i - 1];
  return levels;
}

}  // namespace

Levels<double> DeriveHeights(const SoundingRecord& sounding, SaturationOver over) {
  return Derive(sounding, over, Wanted::Heights).Height;
}

LevelProfile DeriveLevels(const SoundingRecord& sounding, const AnalysisSettings& options) {
  LevelProfile levels = Derive(sounding, options.Saturation, Wanted::All);
  const auto count = static_cast<std::size_t>(levels.Count());
  levels.PressFalls = FallsThroughout(levels.Press.Values().data(), count);
  levels.HeightRises = RisesThroughout(levels.Height.Values().data(), count);
  return levels;
}

}  // namespace vexa::analysis
