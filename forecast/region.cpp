#include "forecast/region.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/analysis_settings.h"
#include "analysis/storm_motion.h"
#include "core/great_circle.h"
#include "core/units.h"

namespace vexa::forecast {
namespace {

double AngleBetween(double one, double other) {
  return std::fabs(std::remainder(one - other, 360.0));
}

bool HasPosition(const SoundingRecord& sounding) {
  return !sounding.LatHemi.empty() && !sounding.LonHemi.empty();
}

// How well a sounding suits the main one: of the same hour before all others, then the newest.
bool SuitsBetter(const SoundingRecord& main, const SoundingRecord& one,
                 const SoundingRecord& other) {
  if (!one.Time.Known() || !other.Time.Known()) return one.Time.Known() && !other.Time.Known();
  const bool isSame = one.Time == main.Time;
  if (isSame != (other.Time == main.Time)) return isSame;
  return HoursBetween(other.Time, one.Time) > 0;
}

void KeepOnePerStation(const SoundingRecord& main, std::vector<Neighbour>& near) {
  std::vector<Neighbour> kept;
  for (Neighbour& neighbour : near) {
    const auto same = std::ranges::find_if(kept, [&](const Neighbour& other) {
      return IsSameStation(other.Of->Sounding, neighbour.Of->Sounding);
    });
    if (same == kept.end()) {
      kept.push_back(std::move(neighbour));
    } else if (SuitsBetter(main, neighbour.Of->Sounding, same->Of->Sounding)) {
      *same = std::move(neighbour);
    }
  }
  near = std::move(kept);
}

void Mark(Region& region, Neighbour& neighbour) {
  neighbour.IsUpwind = true;
  neighbour.AlongKm = neighbour.RangeKm * std::cos(Radians(neighbour.Bearing - *region.WindFrom));
}

}  // namespace

SharedProfile ProfileOf(SoundingRecord sounding, std::string source, const AnalysisSettings& set) {
  Profile profile{.Sounding = std::move(sounding), .Source = std::move(source)};
  profile.Levels = analysis::DeriveLevels(profile.Sounding, set);
  profile.LowWind = LayerWind(profile, kLowLayer);
  return std::make_shared<const Profile>(std::move(profile));
}

std::optional<analysis::Wind> LayerWind(const Profile& profile, double depth) {
  const auto mean = analysis::LayerMeanWind(profile.Sounding, profile.Ground(), depth);
  if (!mean) return std::nullopt;
  return analysis::FromComponents(*mean);
}

bool Region::HasUpwind() const {
  return std::ranges::any_of(Near, &Neighbour::IsUpwind);
}

bool IsSameStation(const SoundingRecord& a, const SoundingRecord& b) {
  constexpr double kSamePlace = 1;  // km: sources round positions differently
  if (a.WmoNumber != 0 && a.WmoNumber == b.WmoNumber) return true;
  if (!HasPosition(a) || !HasPosition(b)) return false;
  return DistanceKm(a.LatSigned, a.LonSigned, b.LatSigned, b.LonSigned) < kSamePlace;
}

bool BelongsTo(const SoundingRecord& main, const SoundingRecord& other) {
  if (other.NumTempLevels() < 2) return false;
  if (!main.Time.Known() || !other.Time.Known()) return true;
  return std::fabs(HoursBetween(main.Time, other.Time)) <= kHoursApart;
}

Region RegionAround(SharedProfile main, const std::vector<SharedProfile>& found, double radiusKm) {
  Region region{.Main = std::move(main), .RadiusKm = radiusKm};
  const SoundingRecord& here = region.Main->Sounding;
  if (!HasPosition(here)) return region;
  for (const SharedProfile& profile : found) {
    const SoundingRecord& there = profile->Sounding;
    if (!HasPosition(there) || !BelongsTo(here, there)) continue;
    if (IsSameStation(here, there)) continue;
    const double range =
        DistanceKm(here.LatSigned, here.LonSigned, there.LatSigned, there.LonSigned);
    if (range > radiusKm) continue;
    region.Near.push_back({.Of = profile,
                           .Bearing = InitialBearing(here.LatSigned, here.LonSigned,
                                                     there.LatSigned, there.LonSigned),
                           .RangeKm = range});
  }
  KeepOnePerStation(here, region.Near);
  std::ranges::stable_sort(region.Near, {}, &Neighbour::RangeKm);
  ChooseUpwind(region);
  return region;
}

void ChooseUpwind(Region& region) {
  region.IsManual = false;
  region.WindFrom.reset();
  const std::optional<analysis::Wind>& wind = region.Main->LowWind;
  if (wind && wind->Spd >= kLeastSpeed) region.WindFrom = wind->Dir;
  for (Neighbour& neighbour : region.Near) {
    neighbour.IsUpwind = false;
    neighbour.AlongKm = 0;
    if (region.WindFrom && AngleBetween(neighbour.Bearing, *region.WindFrom) <= kUpwindSector) {
      Mark(region, neighbour);
    }
  }
}

void ChooseUpwind(Region& region, std::span<const std::size_t> chosen, double windFrom) {
  region.IsManual = true;
  region.WindFrom = windFrom;
  for (std::size_t i = 0; i < region.Near.size(); ++i) {
    region.Near[i].IsUpwind = false;
    region.Near[i].AlongKm = 0;
    if (std::ranges::find(chosen, i) != chosen.end()) Mark(region, region.Near[i]);
  }
}

}  // namespace vexa::forecast
