// Layers of the winds and what the thermal wind says of each: how strong the horizontal gradient of
// temperature is, where the warm air lies, and whether the wind brings warm or cold air.
//
// Thermal wind relation: Holton, An Introduction to Dynamic Meteorology (2004); its use on a single
// station: Oliver and Oliver, Handbook of Meteorology (1945), 813–857.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "analysis/interpolate.h"
#include "analysis/level_profile.h"
#include "config/window_settings.h"
#include "core/sounding_record.h"

namespace vexa::fronts {

inline constexpr double kMetersPerNauticalMile = 1852;
inline constexpr double kLeastLatitude = 10;  // degrees: nearer to the equator nothing is said

/// Why a layer is no part of a front, or a zone none.
enum class Missed { No, Low, High, Weak, Still };
/// "below the lower frontal limit", "above 6000 m", "gradient below the threshold",
/// "advection below the threshold"; empty for none.
std::string_view Text(Missed missed);

/// What follows from two winds, one above the other.
struct ThermalWind {
  analysis::WindVector Vector{};  // kt, upper wind minus lower wind
  analysis::Wind Wind{};          // the same as direction and speed
  double Gradient = 0;            // °C per nautical mile
  double WarmAzimuth = 0;         // D: degrees in which the warm air lies
  double Orientation = 0;         // degrees 0 … 180 along which a front lies
};

/// abs(f)·T·|VT|·0.5144/(g·Δz) K/m, times 1852; the warm air lies to the right of the thermal wind
/// in the northern hemisphere and to its left in the southern.
///
/// meanTemp   virtual temperature, K
/// thickness  m
/// latitude   degrees, north positive
ThermalWind ThermalWindOf(const analysis::WindVector& lower, const analysis::WindVector& upper,
                          double meanTemp, double thickness, double latitude);

/// The component towards an azimuth of a wind "from" its direction, kt.
double Towards(const analysis::WindVector& wind, double azimuth);

/// −n·gradient, °C/h, for the flow n towards the warm air in kt: positive brings warm air.
double Advection(const analysis::WindVector& wind, const ThermalWind& thermal);

struct FrontLayer {
  double Base = 0;  // m above the station
  double Top = 0;
  double BasePress = 0;  // hPa
  double TopPress = 0;
  analysis::WindVector Lower{};  // kt, at the base
  analysis::WindVector Upper{};  // at the top
  analysis::WindVector Mean{};   // of both
  ThermalWind Thermal{};
  double AdvectionCph = 0;  // °C/h
  Missed Why = Missed::No;
  bool IsWarm() const { return AdvectionCph > 0; }  // the warm mark
};

/// A layer between two heights in m above the station; none where a wind is lacking.
std::optional<FrontLayer> LayerBetween(const SoundingRecord& sounding,
                                       const analysis::LevelProfile& levels, double base,
                                       double top);

/// The layers of the sounding by the thermal wind mode: "Fixed" from the ground in steps of the
/// interval, "Sliding" from every wind level upward by one interval, "Levels" between wind levels
/// at least the interval apart. Each says whether it may be part of a front.
std::vector<FrontLayer> FrontLayers(const SoundingRecord& sounding,
                                    const analysis::LevelProfile& levels,
                                    const FrontSettings& settings);

}  // namespace vexa::fronts
