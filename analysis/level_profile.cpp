#include "analysis/level_profile.h"

#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

#include "analysis/air_blocks.h"
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
void DeriveGuarded(const AirColumns& air, std::size_t at, SaturationOver over, WantedAir wanted) {
  const double press = air.Press[at], temp = air.Temp[at], dewpt = air.Dewpt[at];
  const bool isMoist = !NotAvailable(dewpt);
  const double saturation = TabledSatVapor(temp, over);
  const double mixing = isMoist ? TabledMixingRatio(press, dewpt, over) : kMissing;
  const double humidity =
      saturation > 0 && isMoist ? 100 * TabledSatVapor(dewpt, over) / saturation : 0;
  air.MixingRatio[at] = mixing;
  air.VirtualTemp[at] = isMoist ? VirtualTempOf(temp, mixing) : temp;
  air.RelHumidity[at] = isMoist ? humidity : kMissing;
  if (wanted == WantedAir::VirtualTemp) return;
  air.ThetaE[at] = isMoist ? LevelThetaE(press, temp, dewpt, over) : kMissing;
  air.WetBulb[at] = isMoist ? WetBulb(press, temp, dewpt, over) : kMissing;
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

// A column of the record with whole blocks of levels.
Levels<double> WithWholeBlocks(const Levels<double>& column, int count, int whole, double padding) {
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(whole));
  values.assign(column.Values().begin(), column.Values().begin() + count);
  values.resize(static_cast<std::size_t>(whole), padding);
  return Levels<double>(std::move(values));
}

LevelProfile Derive(const SoundingRecord& sounding, SaturationOver over, WantedAir wanted) {
  const int count = sounding.NumTempLevels();
  if (sounding.Temp.Count() < count || sounding.Dewpt.Count() < count) {
    throw std::out_of_range("level arrays of different lengths");
  }
  const auto size = static_cast<std::size_t>(count);
  const std::size_t blocks = (size + kBlockLevels - 1) / kBlockLevels;
  const auto whole = static_cast<int>(blocks * kBlockLevels);
  LevelProfile levels;
  levels.Press = WithWholeBlocks(sounding.Press, count, whole, kReferencePress);
  levels.Temp = WithWholeBlocks(sounding.Temp, count, whole, 0);
  levels.Dewpt = WithWholeBlocks(sounding.Dewpt, count, whole, 0);
  const auto column = [whole](Levels<double>& array) {
    array.Resize(whole);
    return array.Values().data();
  };
  const AirColumns air{.Press = levels.Press.Values().data(),
                       .Temp = levels.Temp.Values().data(),
                       .Dewpt = levels.Dewpt.Values().data(),
                       .LogPress = column(levels.LogPress),
                       .Theta = column(levels.Theta),
                       .MixingRatio = column(levels.MixingRatio),
                       .VirtualTemp = column(levels.VirtualTemp),
                       .RelHumidity = column(levels.RelHumidity),
                       .ThetaE = column(levels.ThetaE),
                       .WetBulb = column(levels.WetBulb)};
  if (!DeriveAir(air, blocks, over, wanted)) {
    for (std::size_t i = 0; i < size; ++i) {
      const bool isDone =
          IsOrdinaryAir(air.Press[i], air.Temp[i], air.Dewpt[i]) && !std::isnan(air.WetBulb[i]);
      if (!isDone) DeriveGuarded(air, i, over, wanted);
    }
  }
  double* heights = column(levels.Height);
  FillThicknesses(air.Press, air.LogPress, air.VirtualTemp, size, heights);
  if (size > 0) heights[0] = sounding.ElevM;
  for (std::size_t i = 1; i < size; ++i) heights[i] += heights[i - 1];
  for (Levels<double>* array : {&levels.Press, &levels.LogPress, &levels.Temp, &levels.Dewpt,
                                &levels.Height, &levels.WetBulb, &levels.ThetaE, &levels.Theta,
                                &levels.VirtualTemp, &levels.MixingRatio, &levels.RelHumidity}) {
    array->Resize(count);
  }
  return levels;
}

}  // namespace

Levels<double> DeriveHeights(const SoundingRecord& sounding, SaturationOver over) {
  return Derive(sounding, over, WantedAir::VirtualTemp).Height;
}

LevelProfile DeriveLevels(const SoundingRecord& sounding, const AnalysisSettings& options) {
  LevelProfile levels = Derive(sounding, options.Saturation, WantedAir::All);
  const auto count = static_cast<std::size_t>(levels.Count());
  levels.PressFalls = FallsThroughout(levels.Press.Values().data(), count);
  levels.HeightRises = RisesThroughout(levels.Height.Values().data(), count);
  return levels;
}

}  // namespace vexa::analysis
