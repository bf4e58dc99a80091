// The levels of a sounding as the analyses walk them, under the settings that a user starts with.
#pragma once

#include "analysis/level_profile.h"
#include "core/sounding_record.h"

namespace vexa::test {

inline analysis::LevelProfile Derived(const SoundingRecord& sounding) {
  return analysis::DeriveLevels(sounding, AnalysisSettings{});
}

}  // namespace vexa::test
