// The soundings around a station at one time: which of them are near it, and from which of them the
// air comes that will be over it.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/interpolate.h"
#include "analysis/level_profile.h"
#include "core/sounding_record.h"

namespace vexa::forecast {

/// A sounding with its heights and the mean wind of its lowest kilometre.
struct Profile {
  SoundingRecord Sounding{};
  std::string Source{};  // the file that it came from
  analysis::LevelProfile Levels{};
  std::optional<analysis::Wind> LowWind{};

  double Ground() const { return Levels.Count() > 0 ? Levels.Height(1) : Sounding.ElevM; }
};
using SharedProfile = std::shared_ptr<const Profile>;

SharedProfile ProfileOf(SoundingRecord sounding, std::string source, const AnalysisSettings& set);

/// Mean wind from the ground to a height above it, m; none where the winds do not stand for it.
std::optional<analysis::Wind> LayerWind(const Profile& profile, double depth);

struct Neighbour {
  SharedProfile Of{};
  double Bearing = 0;  // degrees in which it lies from the station
  double RangeKm = 0;
  bool IsUpwind = false;
  double AlongKm = 0;  // its share of the way against the wind; of upwind ones alone
};

inline constexpr double kHoursApart = 3;     // of soundings that belong together
inline constexpr double kUpwindSector = 45;  // degrees to either side of the wind
inline constexpr double kLeastSpeed = 2;     // kt: less has no direction
inline constexpr double kLowLayer = 1000;    // m above ground

/// A station with its neighbours, the nearest first.
struct Region {
  SharedProfile Main{};
  double RadiusKm = 0;
  std::vector<Neighbour> Near{};
  bool IsManual = false;             // the upwind ones were chosen by hand
  std::optional<double> WindFrom{};  // degrees by which they were chosen; none without any wind

  bool HasUpwind() const;
};

/// Whether two soundings are of one station: by its number or its place.
bool IsSameStation(const SoundingRecord& a, const SoundingRecord& b);

/// Whether a sounding may stand beside another: two temperature levels and at most 3 hours apart,
/// where both say when they were made.
bool BelongsTo(const SoundingRecord& main, const SoundingRecord& other);

/// The soundings within a radius, one for each station: that of the same time or else the newest
/// within 3 hours. Upwind ones are chosen automatically.
Region RegionAround(SharedProfile main, const std::vector<SharedProfile>& found, double radiusKm);

/// Neighbours whose bearing is at most 45 degrees off the direction of the wind of the lowest
/// kilometre; none under 2 kt.
void ChooseUpwind(Region& region);
/// These neighbours and no others, by their number from 0, with the air coming from a direction.
void ChooseUpwind(Region& region, std::span<const std::size_t> chosen, double windFrom);

}  // namespace vexa::forecast
