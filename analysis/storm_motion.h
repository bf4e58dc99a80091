// Layer-mean winds, shear, the motions of right- and left-moving supercells and the helicity that
// air has relative to them. Speeds are in knots, components point where the wind comes from.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "analysis/interpolate.h"
#include "core/choices.h"
#include "core/markers.h"
#include "core/sounding_record.h"

namespace vexa {

enum class StormMotion { Bunkers, Traditional };
enum class StormMover { Cyclonic, Right, Left };

constexpr auto Words(StormMotion) {
  return std::to_array<std::string_view>({"Bunkers", "Traditional"});
}
constexpr auto Words(StormMover) {
  return std::to_array<std::string_view>({"cyclonic", "RM", "LM"});
}

/// What decides the storm's motion.
struct StormSettings {
  StormMotion Motion = StormMotion::Bunkers;
  int DeviationFactor = 1;  // times 15 kt from the mean wind
  StormMover Mover = StormMover::Cyclonic;
  Scaling MotionMode = Scaling::Auto;  // a motion entered by hand replaces the chosen mover
  double ManualMotionDir = 240;        // degrees it comes from
  double ManualMotionSpd = 25;         // kt
  double ShearLayerTopKm = 6;
  double ShearLayerBottomKm = 0;
  double ShearLayerDeg = 30;
  double ShearLayerPct = 75;
  bool operator==(const StormSettings&) const = default;
};

}  // namespace vexa

namespace vexa::analysis {

/// Depths above ground, km, over which helicity is shown.
inline constexpr std::array<double, 3> kHelicityDepthsKm = {1, 2, 3};

/// One mover: its motion, and the helicity of the layers below kHelicityDepthsKm relative to it.
struct Mover {
  WindVector Motion{};
  std::array<double, 3> Helicity = {kNone, kNone, kNone};  // m²/s²
};

struct StormMotionResults {
  std::optional<WindVector> Mean6km{};     // 0-6 km
  std::optional<WindVector> MeanHalfKm{};  // 0-0.5 km
  std::optional<WindVector> Shear1km{};    // wind at 1 km minus surface wind
  std::optional<WindVector> Shear6km{};    // wind at 6 km minus surface wind
  double BrnShear = kNone;                 // m²/s²
  std::optional<Mover> Right{};
  std::optional<Mover> Left{};
  bool RightIsCyclonic = true;  // the left mover is, on the southern hemisphere
  bool RightIsChosen = true;    // what storm-relative values use
  bool ChosenIsManual = false;  // its motion was entered by hand

  const std::optional<Mover>& Chosen() const { return RightIsChosen ? Right : Left; }
  std::string_view ChosenName() const;  // "right mover", "left mover, entered by hand"
};

/// Winds further apart than this, in m, are no neighbours; mandatory levels alone stand 2.7 km
/// apart.
inline constexpr double kWidestWindGap = 4000;

/// When winds stand for a layer: for its mean wind, its helicity and what is made of them.
inline constexpr std::string_view kLayerMeanRule =
    "winds from at most 500 m above its base through 3/4 of its depth, no two neighbours more than "
    "4 km apart";

/// Mean wind from the ground to a height in metres above it: the average of u and of v over the
/// wind levels in the layer, with one interpolated at the top where no level lies within 1 m of
/// it. Empty where the winds do not stand for the layer (kLayerMeanRule).
std::optional<WindVector> LayerMeanWind(const WindProfile& winds, double ground, double depth);
std::optional<WindVector> LayerMeanWind(const SoundingRecord& sounding, double ground,
                                        double depth);

/// Whether the winds stand for a layer by kLayerMeanRule; both in m, the ground above sea level.
bool WindsStandFor(const WindProfile& winds, double ground, double depth);

/// Bulk shear for the Richardson number, m²/s²: half the square of the difference between the 0-6
/// and the 0-0.5 km mean winds; kNone without one of them.
float BRNnbr(const std::optional<WindVector>& mean6km, const std::optional<WindVector>& meanHalfKm);

struct Movers {
  WindVector Right{};
  WindVector Left{};
};

/// Supercell motions after Bunkers et al. (2000), Wea. Forecasting 15, 61: the 0-6 km mean wind,
/// moved 15 kt times the factor across the shear between 0-0.5 km and 5750 m. Without shear both
/// are the mean wind.
std::optional<Movers> Bunkers(const SoundingRecord& sounding, double ground,
                              int deviationFactor = 1);

/// The mean wind of the options' layer, turned and slowed as the options say (Maddox 1976, Mon.
/// Wea. Rev. 104, 133); the left mover mirrors the turn.
std::optional<Movers> TraditionalMotion(const WindProfile& winds, double ground,
                                        const StormSettings& settings);

/// Storm-relative helicity, m²/s², from the surface wind to a height in metres above ground
/// (Davies-Jones, Burgess and Foster 1990); kNone without winds over the whole layer.
double StormRelativeHelicity(const WindProfile& winds, double ground, double depth,
                             const WindVector& motion);
double StormRelativeHelicity(const SoundingRecord& sounding, double ground, double depth,
                             const WindVector& motion);

/// All of these under the options. A motion entered by hand replaces the chosen mover; the other
/// one keeps its own.
StormMotionResults AnalyseStormMotion(const SoundingRecord& sounding, const WindProfile& winds,
                                      const StormSettings& settings);
StormMotionResults AnalyseStormMotion(const SoundingRecord& sounding,
                                      const StormSettings& settings);

}  // namespace vexa::analysis
