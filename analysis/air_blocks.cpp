#include "analysis/air_blocks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "analysis/column_air.h"
#include "analysis/column_math.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kLogReference = 6.907755278982137;  // ln 1000
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

static_assert(kBlockLevels == ColumnVapor::Block::kCount);
using Column = ColumnVapor::Block::Column;

// Of one block, what the formulas hand on to each other.
struct AirBlock {
  alignas(64) Column Press;       // hPa
  alignas(64) Column Temp;        // °C
  alignas(64) Column Dewpt;       // °C, not above the temperature
  alignas(64) Column ThetaTemp;   // K; potential temperatures come from one in single precision
  alignas(64) Column Saturation;  // hPa
  alignas(64) Column Growth;      // hPa/K, of the saturation vapour pressure
  alignas(64) Column Heat;        // ln of what temperature grows by when all vapour condenses
  alignas(64) Column Cooling;     // ln of the temperature there over that of the air
  alignas(64) Column LclPress;    // hPa
  alignas(64) Column At;          // K, where vapour pressures are wanted
  ColumnVapor::Block Vapor;
};

// Air out of the ordinary is taken for some that is not: what comes of it counts for nothing.
VEXA_INLINE bool TakeAir(const AirColumns& air, AirBlock& block) {
  std::uint64_t others = 0;
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const double press = air.Press[i], temp = air.Temp[i], dewpt = air.Dewpt[i];
    const bool isOrdinary = IsOrdinaryAir(press, temp, dewpt);
    block.Press[i] = isOrdinary ? press : kReferencePress;
    block.Temp[i] = isOrdinary ? temp : 0;
    block.Dewpt[i] = isOrdinary ? dewpt : 0;
    others |= isOrdinary ? 0 : 1;
  }
  return others == 0;
}

VEXA_INLINE void FillLogs(const AirColumns& air) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    air.LogPress[i] = ColumnLog(air.Press[i] > 0 ? air.Press[i] : 1);
  }
}

// As DryTheta has it.
VEXA_INLINE void FillThetas(const AirColumns& air, AirBlock& block) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const double tempK = static_cast<double>(static_cast<float>(air.Temp[i] + kKelvinOffset));
    const double theta = tempK * ColumnExp(kPoisson * (kLogReference - air.LogPress[i]));
    block.ThetaTemp[i] = tempK;
    const bool hasTheta = (air.Press[i] > 0) & (tempK > 0);
    air.Theta[i] = hasTheta ? theta : 0;
  }
}

VEXA_INLINE void FillMoisture(const AirColumns& air, AirBlock& block, ColumnVapor table) {
  for (std::size_t i = 0; i < kBlockLevels; ++i) block.At[i] = block.Temp[i] + kKelvinOffset;
  table.Find(block.At, block.Vapor);
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const ColumnVapor::Point saturation = block.Vapor.At(i);
    block.Saturation[i] = saturation.Pressure;
    block.Growth[i] = saturation.Slope;
  }
  for (std::size_t i = 0; i < kBlockLevels; ++i) block.At[i] = block.Dewpt[i] + kKelvinOffset;
  table.Find(block.At, block.Vapor);
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const double vapor = block.Vapor.At(i).Pressure;
    const double dry = block.Press[i] - vapor;
    const double mixing = dry == 0 ? 0 : kEpsilon * vapor / dry;
    air.MixingRatio[i] = mixing;
    air.VirtualTemp[i] = VirtualTempOf(block.Temp[i], mixing);
    air.RelHumidity[i] = 100 * vapor / block.Saturation[i];
  }
}

// θe of the condensation point, up to which the potential temperature stays.
VEXA_INLINE void FillThetaE(const AirColumns& air, AirBlock& block, ColumnVapor table) {
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const double temp = block.Temp[i];
    block.Dewpt[i] = std::min(block.Dewpt[i], temp);
    block.At[i] = CondensedTemp(temp, block.Dewpt[i]) + kKelvinOffset;
  }
  table.Find(block.At, block.Vapor);
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    block.Cooling[i] = LogOfRatio(block.At[i], block.ThetaTemp[i]);
  }
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const double power = ColumnExp(std::min(block.Cooling[i], 0.0) * (1 / kPoisson));
    block.LclPress[i] = block.Press[i] * power;
  }
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const double lclPress = block.LclPress[i];
    const double vapor = block.Vapor.At(i).Pressure;
    const double latent = kLatentFactor * kEpsilon * vapor / ((lclPress - vapor) * block.At[i]);
    const double heat = latent + std::max(block.Cooling[i], 0.0);
    block.Heat[i] = vapor < 0.25 * lclPress ? heat : kNoNumber;  // else it boils
  }
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    air.ThetaE[i] = air.Theta[i] * ColumnExp(block.Heat[i]);
  }
}

// A step of Halley's towards the temperature, K, at which the saturated adiabat of a heat comes
// through a pressure: the third power of the error is left of it. Error, slope and bend of the
// adiabat's equation stand over powers of one denominator, since a division takes longer than all
// products here.
//
// cooling   ln of the temperature over that of the air
inline double StepToWetBulb(double wetK, const ColumnVapor::Point& vapor, double press,
                            double cooling, double heat) {
  const double dry = press - vapor.Pressure;
  const double under = dry * wetK;
  const double rise = vapor.Slope * wetK;
  const double latent = kLatentFactor * kEpsilon * vapor.Pressure;
  const double growth = kLatentFactor * kEpsilon * press * rise;
  const double error = (cooling - heat) * under + latent;  // over the denominator
  const double slope = dry * (under - latent) + growth;    // over its square
  const double dryVapor = dry * vapor.Pressure;
  // Over its third power and the vapour pressure.
  const double bend = growth * (rise * (press + vapor.Pressure) - 4 * dryVapor) +
                      dry * dryVapor * (2 * latent - under);
  return 2 * error * slope * under * vapor.Pressure /
         (2 * slope * slope * vapor.Pressure - error * bend);
}

// Normand's rule: down the saturated adiabat from the condensation point. The first step, from the
// air's own temperature, whose vapour is known, leaves so little that the second nearly always
// ends; a third is taken for blocks of which some levels need it.
VEXA_INLINE bool FillWetBulb(const AirColumns& air, AirBlock& block, ColumnVapor table) {
  constexpr double kFar = 0.05;  // K; a last step this long leaves 1e-6 K
  // Where it lies whatever comes out, and so on the ladder.
  const auto within = [&block](std::size_t i, double wetK) {
    return std::min(block.Temp[i] + kKelvinOffset, std::max(block.Dewpt[i] + kKelvinOffset, wetK));
  };
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < kBlockLevels; ++i) {
    const double tempK = block.Temp[i] + kKelvinOffset;
    const ColumnVapor::Point vapor{block.Saturation[i], block.Growth[i]};
    block.At[i] = within(i, tempK - StepToWetBulb(tempK, vapor, block.Press[i], 0, block.Heat[i]));
  }
  std::uint64_t others = 0;
  for (const bool isLast : {false, true}) {
    table.Find(block.At, block.Vapor);
    others = 0;
    for (std::size_t i = 0; i < kBlockLevels; ++i) {
      block.Cooling[i] = LogOfNearRatio(block.At[i], block.ThetaTemp[i]);
    }
    VEXA_INDEPENDENT
    for (std::size_t i = 0; i < kBlockLevels; ++i) {
      const double wetK = block.At[i];
      const double change =
          StepToWetBulb(wetK, block.Vapor.At(i), block.Press[i], block.Cooling[i], block.Heat[i]);
      const double wetBulb =
          std::min(std::max(wetK - change - kKelvinOffset, block.Dewpt[i]), block.Temp[i]);
      const bool isNear = std::fabs(change) < kFar;
      block.At[i] = within(i, wetK - change);
      air.WetBulb[i] = (isNear | !isLast) ? wetBulb : kNoNumber;
      others |= isNear ? 0 : 1;
    }
    if (others == 0) break;
  }
  return others == 0;
}

VEXA_WIDE bool DeriveBlocks(AirColumns columns, std::size_t blocks, ColumnVapor table) {
  bool isAll = true;
  AirBlock block;
  for (std::size_t i = 0; i < blocks; ++i) {
    const AirColumns air = columns.From(i * kBlockLevels);
    isAll &= TakeAir(air, block);
    FillLogs(air);
    FillThetas(air, block);
    FillMoisture(air, block, table);
    FillThetaE(air, block, table);
    isAll &= FillWetBulb(air, block, table);
  }
  return isAll;
}

VEXA_WIDE bool DeriveVirtualTemps(AirColumns columns, std::size_t blocks, ColumnVapor table) {
  bool isAll = true;
  AirBlock block;
  for (std::size_t i = 0; i < blocks; ++i) {
    const AirColumns air = columns.From(i * kBlockLevels);
    isAll &= TakeAir(air, block);
    FillLogs(air);
    FillMoisture(air, block, table);
  }
  return isAll;
}

}  // namespace

bool DeriveAir(const AirColumns& columns, std::size_t blocks, SaturationOver over,
               WantedAir wanted) {
  const ColumnVapor table(over);
  return wanted == WantedAir::All ? DeriveBlocks(columns, blocks, table)
                                  : DeriveVirtualTemps(columns, blocks, table);
}

}  // namespace vexa::analysis
