// The wind of a level as the analyses use it.
#pragma once

#include "analysis/interpolate.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

/// The working wind of a level; where the working winds do not cover the levels, the observed one.
/// Whatever computes with winds asks here, whatever shows levels reads the observed ones.
inline Wind WorkingWind(const SoundingRecord& sounding, int level) {
  if (!sounding.HasWorkWinds()) return {sounding.WindDir(level), sounding.WindSpd(level)};
  return {sounding.WorkWindDir(level), sounding.WorkWindSpd(level)};
}

}  // namespace vexa::analysis
