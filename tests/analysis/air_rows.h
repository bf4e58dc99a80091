// Levels at given heights, so that a layer is exactly so thick and so steep as a case says.
#pragma once

#include <vector>

#include "analysis/analysis_settings.h"
#include "analysis/level_profile.h"
#include "support/soundings.h"

namespace vexa::analysis {

struct AirRow {
  double Height, Press, Temp, Dewpt;
};

inline LevelProfile Air(const std::vector<AirRow>& rows) {
  SoundingRecord sounding = test::Profile({});
  for (const AirRow& row : rows) sounding.AddTemp(row.Press, row.Temp, row.Dewpt);
  LevelProfile levels = DeriveLevels(sounding, {});
  for (int i = 1; i <= levels.Count(); ++i) {
    levels.Height(i) = rows[static_cast<std::size_t>(i) - 1].Height;
  }
  return levels;
}

}  // namespace vexa::analysis
