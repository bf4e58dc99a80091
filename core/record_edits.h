// Edits of one level of a sounding, as an editor makes them: each checks what it is given against
// its range and its neighbours, changes the record only when all is well, and names level, field
// and reason when not.
#pragma once

#include <optional>

#include "core/fault.h"
#include "core/sounding_record.h"

namespace vexa {

struct TempLevel {
  double Press = 0;  // hPa
  double Temp = 0;   // °C
  double Dewpt = 0;  // °C, kMissing where not observed
};

struct WindLevel {
  double Height = 0;  // m above mean sea level
  double Dir = 0;     // degrees the wind blows from, above 0 to 360: 0 would mean no wind at all
  double Spd = 0;     // knots
};

/// Whether an editor's ranges hold a level that a file gives. What the data check tells of and what
/// ordering removes is let through: too warm up to 200 °C, a dew point above the temperature, no
/// pressure or direction, a direction beyond the circle up to 999, a negative speed or height.
bool IsPossible(const TempLevel& level);
bool IsPossible(const WindLevel& level);
bool IsPossible(const CloudLayer& layer);

// Levels and layers count from 1. Faults are number 380 with a detail such as
// "Level 17, pressure: 850 is not below the 850 of level 16"; the record stays as it was then.

/// Replaces a temperature level. Its pressure must stay between its neighbours'.
[[nodiscard]] std::optional<Fault> ChangeTempLevel(SoundingRecord& record, int level,
                                                   const TempLevel& to);
/// Puts a temperature level where its pressure belongs; gives its level.
Outcome<int> AddTempLevel(SoundingRecord& record, const TempLevel& added);
/// Fault 2222 when fewer than two levels would be left.
[[nodiscard]] std::optional<Fault> DeleteTempLevel(SoundingRecord& record, int level);

/// Replaces a wind level. Its height must stay between its neighbours'. Working winds that cover
/// the wind levels take part in all three edits.
[[nodiscard]] std::optional<Fault> ChangeWindLevel(SoundingRecord& record, int level,
                                                   const WindLevel& to);
/// Puts a wind level where its height belongs; gives its level.
Outcome<int> AddWindLevel(SoundingRecord& record, const WindLevel& added);
[[nodiscard]] std::optional<Fault> DeleteWindLevel(SoundingRecord& record, int level);

/// Replaces a cloud layer; the order of layers is the user's.
[[nodiscard]] std::optional<Fault> ChangeCloudLayer(SoundingRecord& record, int layer,
                                                    const CloudLayer& to);
/// Puts a cloud layer below the first with a higher base; gives its number.
Outcome<int> AddCloudLayer(SoundingRecord& record, const CloudLayer& added);
[[nodiscard]] std::optional<Fault> DeleteCloudLayer(SoundingRecord& record, int layer);

}  // namespace vexa
