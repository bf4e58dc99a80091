// One step of a forecast: the air that will be over the station is put together from the soundings
// around the place where it is now, or, where there is none but the station's own, from what its
// winds say of the temperatures around it.
//
// Trajectories from a single station: Oliver and Oliver, Handbook of Meteorology (1945); weights by
// the inverse square of the distance: Shepard, Proc. 23rd ACM Nat. Conf. (1968), 517.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/sounding_record.h"
#include "forecast/forecast_settings.h"
#include "forecast/region.h"

namespace vexa::forecast {

/// A sounding's part in a step.
struct Contribution {
  std::optional<std::size_t> Of{};  // its number among the neighbours; none: the main sounding
  double DistanceKm = 0;            // from where the air is now
  double Weight = 0;                // all of them together are 1
};

/// Where the air of one hour comes from and what it is put together from: the main sounding first,
/// then those upwind, the nearest first.
struct StepChoice {
  int Hour = 0;
  double RateKt = 0;      // "Advection rate", of the layer's wind
  double WindFrom = 0;    // degrees
  double UpwindKm = 0;    // way of the air until then
  double FarthestKm = 0;  // along the wind, of the soundings upwind
  std::vector<Contribution> Parts{};
};

inline constexpr double kBeyondLast = 50;  // km that the air may come from behind the last sounding
inline constexpr int kMostHours = 24;
inline constexpr double kExactHit = 1;  // km: a sounding so near takes all

/// The weights, 1/max(d, 1 km)², that make 1 together; one nearer than 1 km takes all.
std::vector<double> InverseSquareWeights(std::span<const double> distancesKm);

/// Which soundings an hour is put together from; none where the winds do not give a rate. The air
/// comes from the direction of the main layer's wind (0-1000 m while it is off), of a choice by
/// hand from the direction drawn. Distances are those of a plane on which the station's bearings
/// and ranges are true.
std::optional<StepChoice> ChoiceAt(const Region& region, const ForecastSettings& set, int hour);

/// How much of what lies upwind a height above ground takes over, 0 … 1: all of it through the
/// layers in use, less and less over the next 500 m, none above; half as much in the boundary layer
/// while the main layer is on too, as friction and exchange keep local air there.
double ShareAt(double height, const ForecastSettings& set);

/// The sounding of a choice. Levels are those of the main sounding and the mandatory ones between
/// its ends; a sounding whose ground or top lies between is left out at a level, one without dew
/// points for them.
SoundingRecord Blend(const Region& region, const StepChoice& choice, const ForecastSettings& set);

/// Temperature advection of the layer around a height, °C per hour, by the thermal wind between the
/// wind levels there, where it can be 1500 m apart, else at least 500 m; of the boundary layer
/// while it is on, the mean of it all. 0 without winds.
double AdvectionAt(const Profile& profile, double height, const ForecastSettings& set);

/// The sounding after some hours of its own advection, which fades: each hour counts 0.8 of the one
/// before. Moisture stays, up to saturation.
SoundingRecord AdvectAlone(const Profile& profile, const ForecastSettings& set, int hour);

/// A change of the temperature at the ground and the depth through which it spreads, m; 0: the
/// lowest level alone.
struct SurfaceStep {
  double Change = 0;
  double Depth = 0;
};

/// That of one hour: a third, two or all of the boundary layer, 1000 m while it is off.
SurfaceStep SurfaceStepOf(const ForecastSettings& set);

/// Changes temperatures near the ground. After warming, air above it that is colder by θ than that
/// at the ground is mixed: raised to its θ. Dew points stay, up to saturation.
void ChangeSurface(SoundingRecord& sounding, std::span<const SurfaceStep> steps,
                   const AnalysisSettings& set);

}  // namespace vexa::forecast
