// The air that flows over a ridge: the sounding's levels with the wind across the ridge, and the
// Scorer parameter of the layers between them. Where that parameter falls with height waves may be
// trapped.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/interpolate.h"
#include "analysis/level_profile.h"
#include "core/sounding_record.h"

namespace vexa::mountainwave {

/// A level of the sounding that has a wind.
struct AirLevel {
  double Press = 0;    // hPa
  double Height = 0;   // m above the station
  double Theta = 0;    // potential temperature, K
  double Density = 0;  // kg/m³, of moist air
  analysis::Wind Wind{};
};

/// What the waves need of a sounding, whatever the mountain.
struct Air {
  std::vector<AirLevel> Levels{};  // neighbours at least 100 m apart, lowest first
  double StationElev = 0;          // m above mean sea level
  double GroundDensity = 0;        // kg/m³ at the lowest level of the sounding
  std::string WhyNone{};           // a sentence, when there are too few levels for any wave
};

/// Levels with temperature and wind, those nearer than 100 m to the one below left out.
Air AirOf(const SoundingRecord& sounding, const analysis::LevelProfile& levels);

/// A level with the wind across the ridge.
struct FlowLevel {
  double Press = 0;    // hPa
  double Height = 0;   // m above the station
  double Theta = 0;    // K
  double Density = 0;  // kg/m³
  double Wind = 0;     // m/s across the ridge, never below 0
};

/// The flow across a ridge.
struct CrossFlow {
  std::vector<FlowLevel> Levels{};         // up to the critical level
  double GroundDensity = 0;                // kg/m³
  double CrestHeight = 0;                  // m above the station
  double CrestWind = 0;                    // m/s across the ridge at the crest
  std::optional<double> CriticalHeight{};  // m above the station, where the flow came to an end
  std::string WhyNone{};                   // a sentence, when no wave can form
};

inline constexpr double kLeastCrestWindMs = 5;     // m/s across the ridge at its crest
inline constexpr double kCriticalWindMs = 2;       // m/s: waves end where the wind above does
inline constexpr double kMostAngleOffNormal = 60;  // degrees
inline constexpr double kLeastThickness = 100;     // m

/// The wind of each level across a ridge whose crest is at a height above the station. For axis 0
/// the whole wind counts; else its component across the axis, 0 where that blows against the one at
/// the crest. The flow ends below the first level above the crest with less than 2 m/s. No wave
/// forms with less than 5 m/s at the crest or with a wind there more than 60° off the normal
/// (practice: WMO Technical Note 127).
///
/// crest  m above the station
/// axis   degrees along the ridge; 0: any
CrossFlow FlowAcross(const Air& air, double crest, double axis);

/// The air between two levels.
struct ScorerLayer {
  double Base = 0;          // m above the station
  double Top = 0;           // m
  double MeanWind = 0;      // m/s across the ridge
  double Stability = 0;     // S = N², s⁻², not below 0
  float StabilityTerm = 0;  // km⁻²
  float CurvatureTerm = 0;  // km⁻²
  double L2() const { return static_cast<double>(StabilityTerm) - CurvatureTerm; }
};

/// S = (g/θ̄)(Δθ/Δz), s⁻², 0 where θ falls with height; heights in m.
double StaticStability(double thetaBelow, double thetaAbove, double thickness);
/// 10⁶·S/U², km⁻², 0 where U is 0.
float StabilityTerm(double stability, double windMs);
/// 10³·(shear above − shear below)/(distance·U), km⁻², shears in s⁻¹, distance of the places where
/// they were taken in km; 0 where U is 0.
float CurvatureTerm(double shearBelow, double shearAbove, double distanceKm, double windMs);

/// Scorer parameter of each layer between neighbouring levels (Scorer 1949, QJRMS 75, 41):
/// l² = stability − curvature. The curvature of a layer is taken from the shears of its neighbours,
/// one-sided at both ends.
std::vector<ScorerLayer> ScorerProfile(const std::vector<FlowLevel>& levels);

}  // namespace vexa::mountainwave
