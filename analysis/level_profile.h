// The derived level arrays: what follows from pressure, temperature and dew point at each level,
// computed once per sounding and read by every analysis and display.
#pragma once

#include "analysis/moist_air.h"
#include "core/levels.h"
#include "core/sounding_record.h"

namespace vexa {
struct AnalysisSettings;
}

namespace vexa::analysis {

/// All arrays have the count of the temperature levels; a value that needs a missing dew point is
/// kMissing (virtual temperature: the dry one).
struct LevelProfile {
  Levels<double> Press{};        // hPa
  Levels<double> LogPress{};     // ln p; 0 where there is no pressure
  Levels<double> Temp{};         // °C
  Levels<double> Dewpt{};        // °C
  Levels<double> Height{};       // m above mean sea level, hydrostatic from the station elevation
  Levels<double> WetBulb{};      // °C
  Levels<double> ThetaE{};       // K
  Levels<double> Theta{};        // K
  Levels<double> VirtualTemp{};  // °C
  Levels<double> MixingRatio{};  // kg/kg
  Levels<double> RelHumidity{};  // %
  // Whether pressures fall and heights rise from each level to the next: what lies outside them is
  // then nowhere between them either.
  bool PressFalls = false;
  bool HeightRises = false;

  int Count() const { return Press.Count(); }
};

/// The heights alone, as DeriveLevels gives them.
Levels<double> DeriveHeights(const SoundingRecord& sounding, SaturationOver over);

LevelProfile DeriveLevels(const SoundingRecord& sounding, const AnalysisSettings& options);

}  // namespace vexa::analysis
