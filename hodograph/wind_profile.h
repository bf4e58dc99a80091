// The winds of a sounding as the hodograph draws them: vectors by height above ground, without the
// levels that lack a wind, cut at the depth limit and at the heights where the trace changes its
// colour.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "analysis/interpolate.h"
#include "config/view_settings.h"
#include "core/sounding_record.h"

namespace vexa::hodograph {

/// Heights above ground, km, at which the trace changes colour and style.
inline constexpr std::array<double, 5> kBandTopsKm = {1, 3, 6, 9, 12};
inline constexpr int kBands = 6;
constexpr std::array<std::string_view, kBands> kBandNames = {"0-1 km", "1-3 km",  "3-6 km",
                                                             "6-9 km", "9-12 km", "above 12 km"};

struct ProfileWind {
  double Height = 0;  // m above ground
  analysis::WindVector Vector{};
  bool Observed = true;  // false for ends that were interpolated
  int Level = 0;         // of the sounding's winds, from 1; 0: none of them
};

/// All winds of the sounding, lowest first; under the options' depth limit those below it and one
/// interpolated at the limit.
std::vector<ProfileWind> WindProfile(const SoundingRecord& sounding, const ViewSettings& options);

/// Those below a height in m above ground, with one interpolated there.
std::vector<ProfileWind> BelowLimit(std::vector<ProfileWind> profile, double top);

/// The profile as a line that shows its shape: where the levels stand so close that their noise
/// hides it, means over the 300 m around every 100 m, its lowest and highest wind as they are.
std::vector<ProfileWind> Smoothed(const std::vector<ProfileWind>& profile);

/// The wind at a height above ground, linear in height between the two winds around it.
std::optional<analysis::WindVector> WindAt(const std::vector<ProfileWind>& profile, double height);

/// The ends of a layer from the ground up: the surface wind and the wind at the depth in m. Empty
/// where the lowest wind lies more than 100 m above ground or the winds end below the depth.
struct LayerEnds {
  analysis::WindVector Low{};
  analysis::WindVector High{};
};
std::optional<LayerEnds> EndsOfLayer(const std::vector<ProfileWind>& profile, double depth);

/// Band of a height above ground, 0 to kBands - 1; a height on an edge belongs to the band below.
int BandOf(double height);

/// A piece of the trace within one band.
struct TracePiece {
  int Band = 0;
  std::vector<ProfileWind> Winds{};
};

/// The profile cut where it passes from band to band; neighbours share their interpolated ends.
std::vector<TracePiece> CutAtBands(const std::vector<ProfileWind>& profile);

}  // namespace vexa::hodograph
