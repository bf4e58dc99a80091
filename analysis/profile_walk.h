// The air at any height between the levels, read from below upward, and the runs of classes that
// layer analyses join into layers.
#pragma once

#include <cmath>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "analysis/layer_results.h"
#include "analysis/level_profile.h"

namespace vexa::analysis {

/// A place in the air whose pressure is worked out when it is asked for: few of many places that
/// are looked at become borders of a layer.
struct AirPlace {
  double LevelPress = 0;  // hPa, at a level; 0 between levels
  double Height = 0;      // m
  double Temp = 0;        // °C
  double LogPress = 0;    // between levels
  bool IsBetween = false;
  double Press() const { return IsBetween ? std::exp(LogPress) : LevelPress; }  // hPa
  LevelPoint Point() const { return {Press(), Height, Temp}; }
};

/// The air at one height: linear in height between the levels, pressure in its logarithm.
struct AirPoint : AirPlace {
  double Dewpt = kMissing;  // °C
  double Theta = 0;         // K
  double Lapse = 0;         // °C per km of the layer; at a level, of the one above
  bool HasDewpt() const { return !NotAvailable(Dewpt); }
};

/// The point a share of the way from a level to the next: height and temperature linear, pressure
/// in its logarithm.
LevelPoint Between(const LevelProfile& levels, int low, double share);

/// Reads a profile at heights that do not fall. Heights outside the sounding give its ends.
class ProfileWalk {
 public:
  explicit ProfileWalk(const LevelProfile& levels) : levels_(levels) {}
  AirPoint At(double height);

 private:
  const LevelProfile& levels_;
  std::size_t low_ = 0;  // the level below, from 0
};

/// Heights from low to high at which layer analyses look: both ends and the levels between, at
/// least 50 m apart, with further ones so that no two are more than 250 m apart.
std::vector<double> SampleHeights(const LevelProfile& levels, double low, double high);

/// One look of a layer analysis.
struct ClassedPoint {
  AirPlace At{};
  Intensity Class = Intensity::None;
  std::string_view Word{};
  double Value = kMissing;
};

/// Joins neighbouring points of one class and word into layers that reach half way to the next
/// point of another.
std::vector<AirLayer> JoinRuns(std::span<const ClassedPoint> points);

}  // namespace vexa::analysis
