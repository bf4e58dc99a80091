// The surface as a forecaster changes it: temperature, dew point and wind of the lowest level, and
// the mixing of the air above that follows from heating.
#pragma once

#include <optional>

#include "config/options.h"
#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa {

struct SurfaceValues {
  double Temp = 0;              // °C
  double Dewpt = 0;             // °C, kMissing where not observed
  std::optional<double> Dir{};  // degrees the wind blows from; none without winds
  std::optional<double> Spd{};  // knots
};

/// The lowest level; nothing without temperature levels.
std::optional<SurfaceValues> SurfaceOf(const SoundingRecord& record);

/// Replaces the values of the lowest temperature and wind levels; a fault of either leaves the
/// record as it was. A dew point above the temperature is fault 380.
[[nodiscard]] std::optional<Fault> SetSurface(SoundingRecord& record, const SurfaceValues& to);

/// Mixes the air from the surface up to where the surface's dry adiabat meets the sounding: each
/// level there takes its temperature from the adiabat and its dew point from the layer's mean
/// mixing ratio, never above the temperature. The top of the layer becomes a level. False when the
/// air above is too stable to be mixed.
bool HotMix(SoundingRecord& record, const Options& options);

}  // namespace vexa
