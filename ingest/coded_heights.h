// Coded messages give heights without their thousands: "383" at 850 hPa is 1383 m. Restores them
// from the weight of the air between the levels and settles what the surface level is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ingest/coded_part.h"

namespace vexa::ingest {

/// Three figures of a height at a mandatory pressure, with the temperature there where it is known.
struct ShownHeight {
  double Press = 0;
  int Figures = 0;
  std::optional<double> Temp{};  // °C
};

/// Metres by which the layer between two heights is thicker than its air; the thousands, which the
/// figures leave open, are those that fit best.
double ThicknessMisfit(const ShownHeight& below, const ShownHeight& above);

/// What the ascent begins with.
struct Ground {
  /// m above mean sea level: of the station where it is known, else, and where it misses the
  /// message's own heights by more than 65 m and what the lowest layer may hide, what fits these
  std::optional<double> Elevation{};
  bool IsSea = false;
  /// No surface level could be used; the elevation is then the height of the lowest level.
  bool IsLost = false;
};

/// Sets the heights of mandatory levels. Their thousands follow from the thickness of the air by
/// the sounding's temperatures, which begins at what most agree on: the station's elevation, sea
/// level for a ship or sonde dropped over sea, and the heights from 500 hPa up, whose three figures
/// leave no doubt; without any of them at the standard atmosphere. Then takes away the values that
/// cannot be beside the others, LeaveOutMisfits, and the surface that parts A and B tell
/// differently, unless the heights decide. Notes name what was left out; the number of those that
/// tell of what is garbled, or may be, comes back.
int RestoreHeights(std::vector<CodedLevel>& levels, Ground& ground,
                   std::vector<std::string>& notes);

}  // namespace vexa::ingest
