#include "hodograph/wind_profile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "analysis/working_wind.h"

namespace vexa::hodograph {
namespace {

using analysis::WindVector;

WindVector Between(const ProfileWind& low, const ProfileWind& high, double height) {
  const double share = (height - low.Height) / (high.Height - low.Height);
  return {low.Vector.U + share * (high.Vector.U - low.Vector.U),
          low.Vector.V + share * (high.Vector.V - low.Vector.V)};
}

}  // namespace

std::vector<ProfileWind> WindProfile(const SoundingRecord& sounding, const ViewSettings& options) {
  std::vector<ProfileWind> profile;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (!sounding.HasWind(i)) continue;
    profile.push_back({.Height = sounding.WindHgt(i) - sounding.ElevM,
                       .Vector = analysis::Components(analysis::WorkingWind(sounding, i)),
                       .Level = i});
  }
  if (options.HodoDepthMode == HodoDepth::All) return profile;
  return BelowLimit(std::move(profile), options.HodoDepthLimitKm * 1000);
}

std::vector<ProfileWind> BelowLimit(std::vector<ProfileWind> profile, double top) {
  const auto above = std::ranges::find_if(profile, [&](const auto& w) { return w.Height > top; });
  if (above == profile.end()) return profile;
  const std::optional<WindVector> end = WindAt(profile, top);
  profile.erase(above, profile.end());
  if (end && !profile.empty() && profile.back().Height < top) {
    profile.push_back({top, *end, false});
  }
  return profile;
}

std::vector<ProfileWind> Smoothed(const std::vector<ProfileWind>& profile) {
  constexpr double kStep = 100;   // m
  constexpr double kReach = 150;  // m to each side
  constexpr double kCrowded = 2;  // levels per step from which on their noise is seen
  if (profile.size() < 3) return profile;
  const double bottom = profile.front().Height;
  const double top = profile.back().Height;
  if (static_cast<double>(profile.size()) * kStep < kCrowded * (top - bottom)) return profile;
  std::vector<ProfileWind> smooth = {profile.front()};
  auto first = profile.begin();
  for (double height = bottom + kStep; height < top; height += kStep) {
    first = std::find_if(first, profile.end(),
                         [&](const ProfileWind& wind) { return wind.Height >= height - kReach; });
    WindVector sum;
    int count = 0;
    for (auto at = first; at != profile.end() && at->Height <= height + kReach; ++at) {
      sum.U += at->Vector.U;
      sum.V += at->Vector.V;
      ++count;
    }
    if (count == 0) continue;
    smooth.push_back({height, {sum.U / count, sum.V / count}, false});
  }
  smooth.push_back(profile.back());
  return smooth;
}

std::optional<WindVector> WindAt(const std::vector<ProfileWind>& profile, double height) {
  for (std::size_t i = 0; i < profile.size(); ++i) {
    if (profile[i].Height == height) return profile[i].Vector;
    if (profile[i].Height < height) continue;
    if (i == 0) return std::nullopt;
    return Between(profile[i - 1], profile[i], height);
  }
  return std::nullopt;
}

std::optional<LayerEnds> EndsOfLayer(const std::vector<ProfileWind>& profile, double depth) {
  constexpr double kSurfaceWindDepth = 100;
  if (profile.empty() || profile.front().Height > kSurfaceWindDepth) return std::nullopt;
  const std::optional<WindVector> top = WindAt(profile, depth);
  if (!top) return std::nullopt;
  return LayerEnds{profile.front().Vector, *top};
}

int BandOf(double height) {
  const auto top =
      std::ranges::find_if(kBandTopsKm, [&](double km) { return height <= km * 1000; });
  return static_cast<int>(top - kBandTopsKm.begin());
}

std::vector<TracePiece> CutAtBands(const std::vector<ProfileWind>& profile) {
  std::vector<TracePiece> pieces;
  for (std::size_t i = 0; i < profile.size(); ++i) {
    if (i == 0) {
      pieces.push_back({BandOf(profile[0].Height), {profile[0]}});
      continue;
    }
    const int to = BandOf(profile[i].Height);
    for (int band = pieces.back().Band; band < to; ++band) {
      const double edge = kBandTopsKm[static_cast<std::size_t>(band)] * 1000;
      ProfileWind end{edge, Between(profile[i - 1], profile[i], edge), false};
      if (profile[i - 1].Height >= edge) {
        end = profile[i - 1];  // ends its piece already
      } else {
        pieces.back().Winds.push_back(end);
      }
      pieces.push_back({band + 1, {end}});
    }
    pieces.back().Winds.push_back(profile[i]);
  }
  return pieces;
}

}  // namespace vexa::hodograph
