// Lee waves by the two-layer theory: every level of the flow is tried as the interface between a
// lower layer that carries waves and an upper one that holds them down. What is found says how it
// came about, and what was passed over says why.
//
// Two layers: Scorer 1949 (QJRMS 75, 41); amplitude: Corby and Wallington 1956 (QJRMS 82, 266). The
// manual form of the same estimate: Casswell 1966 (Meteorological Magazine 95, 68).
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "analysis/turbulence.h"
#include "mountainwave/airstream.h"
#include "mountainwave/mountain.h"

namespace vexa::mountainwave {

/// e^x, 8.2e307 for an x above 709.
double GuardedExp(double x);

/// (π/(2H))², km⁻²: what l² must fall by across an interface at a height of H km.
double TrappingThreshold(double depthKm);
/// Whether waves are trapped below an interface at a height of H km across which l² falls by D
/// km⁻²: strictly more than the threshold (Scorer 1949, equation 17).
bool IsTrapped(double fall, double depthKm);

/// The mode angle in degrees of the highest mode for x = H·√D, by a power law in three pieces,
/// rounded to single precision. The pieces do not meet at 4.71 and 7.84; the jumps are kept.
float Response(double x);
/// The number of the mode whose angle that is: 1, 2, 3 by pieces.
int HighestMode(double x);
/// The angle a in degrees, 0 … 90, of the mode n: a + x·sin a = nπ.
double ModeAngle(double x, int n);

/// A free wave of the two layers.
struct Mode {
  int Number = 1;       // n
  double Angle = 0;     // r, degrees
  double Mu = 0;        // √D·sin r, km⁻¹: the vertical wave number below the interface
  double Nu = 0;        // √D·cos r, km⁻¹: by which the wave dies away above
  double K = 0;         // √(l²(above) + D·cos²r), km⁻¹: the horizontal wave number; 0: none
  double LengthKm = 0;  // 2π/k
};
/// K is 0 where the root's radicand is not positive.
Mode ModeOf(double fall, double l2Above, int number, double angle);

/// Why an interface carries no wave.
enum class PassedOver {
  No,         // it does
  Rises,      // l² does not fall
  Untrapped,  // it falls by too little
  Calm,       // less than 2 m/s blow there
  NoMode,     // k² is not positive
  Length,     // shorter than 2 km or longer than 64 km
  Faint,      // less than 0.25 m/s
  Nearby,     // a stronger one lies within 300 m
};

inline constexpr double kLeastLengthKm = 2;
inline constexpr double kMostLengthKm = 64;
inline constexpr double kLeastVelocityMs = 0.25;
inline constexpr double kNearbyM = 300;

/// A level tried as interface.
struct Interface {
  int Level = 0;            // of the flow, from 1
  double Press = 0;         // hPa
  double Height = 0;        // m above the station
  double DepthKm = 0;       // H
  double L2Below = 0;       // km⁻²
  double L2Above = 0;       // km⁻²
  double Fall = 0;          // D = below − above, km⁻²
  double Threshold = 0;     // km⁻²
  double X = 0;             // H·√D; 0 where not trapped
  double MeanWind = 0;      // Um, m/s across the ridge from the ground to H
  double WindHere = 0;      // UH, m/s
  double DensityRatio = 0;  // R = √(ρ ground/ρ here)
  Mode Highest{};
  PassedOver Why = PassedOver::No;
};

enum class WaveKind { Predominant, Subordinate, Harmonic };

struct Wave {
  WaveKind Kind = WaveKind::Subordinate;
  int Mountain = 1;
  Interface At{};
  Mode Of{};
  double HalfWidthKm = 0;  // of the ridge, or 1/k for the default mountain
  double Forcing = 0;      // F = 2π·h·b·e^(−kb), m·km
  double Amplitude = 0;    // m, at the interface
  double MaxVelocity = 0;  // m/s
  double Steepness = 0;    // greatest |∂ζ/∂z| of the linear theory
  bool Breaks() const { return Steepness > 1; }
};

/// ψ(z)·sin r, from −1 to 1: the vertical velocity at a height in km above the station as a share
/// of the greatest; ψ = sin(μz)/sin(μH) up to the interface, e^(−ν(z−H)) above it. Positive at the
/// ground; in modes with a node some air above moves the other way.
double ShareAt(const Wave& wave, double heightKm);
/// |w|, m/s, at a height in km above the station, under the steepest streamlines.
double VelocityAt(const Wave& wave, double heightKm);

/// A ridge as the model takes it.
struct RidgeForm {
  double Relief = 0;                    // h, m above the station
  std::optional<double> HalfWidthKm{};  // none: 1/k of each wave, which makes it strongest
  double Axis = 0;
};
RidgeForm FormOf(const Ridge& ridge, double stationElev);
RidgeForm DefaultForm();

/// What one mountain does to the airstream.
struct RidgeWaves {
  RidgeForm Form{};
  CrossFlow Flow{};
  std::vector<ScorerLayer> Layers{};
  std::vector<Interface> Interfaces{};  // from below upward, those passed over too
  std::vector<Wave> Waves{};            // the predominant one first, then by falling velocity
  const Wave* Predominant() const { return Waves.empty() ? nullptr : &Waves.front(); }
};

/// The interfaces of a flow with their modes, before any mountain: Why is Faint or Nearby for none.
std::vector<Interface> FindInterfaces(const CrossFlow& flow,
                                      const std::vector<ScorerLayer>& layers);

/// The wave of a mode behind a ridge. Where the linear theory would have the streamlines overturn,
/// |∂ζ/∂z| > 1, the wave breaks: amplitude and velocity are held at what just does not (saturation,
/// Lindzen 1981, JGR 86, 9707).
Wave WaveOf(const Interface& at, const Mode& mode, double relief,
            std::optional<double> halfWidthKm);

/// The waves of one ridge. The strongest of the highest modes is predominant; of interfaces nearer
/// to each other than 300 m the stronger stays; lower modes of an interface are its harmonics.
RidgeWaves WavesBehind(const Air& air, const RidgeForm& form, int mountain);

/// Both mountains, or the default one.
struct WaveResults {
  bool IsDefault = true;
  double DistanceKm = 0;                 // between two ridges
  std::vector<RidgeWaves> Ridges{};      // one or two
  std::vector<const Wave*> All() const;  // as listed: the predominant of each, then the others
  bool Any() const { return !All().empty(); }
};
WaveResults ComputeWaves(const SoundingRecord& sounding, const analysis::LevelProfile& levels,
                         const Site& site);

/// Turbulence by height, a category of sections and listings: that of the predominant wave of the
/// first mountain at a height in m above the station.
analysis::WaveWord TurbulenceAt(const WaveResults& waves, double height);

/// The amplitude of two waves of the wave number k (km⁻¹) downstream of the second ridge, which
/// stands a distance in km behind the first: they add.
double CombinedAmplitude(double first, double second, double k, double distanceKm);

/// Decay with the distance downstream, which the user may put on: P % are gone at wavelength m.
struct Decay {
  double Percent = 0;  // 100 counts as 99.9
  double AtWavelength = 1;
};
/// What is left of a wave after a way in km.
double LeftAfter(double km, const Decay& decay, double lengthKm);

/// The flow behind the mountains at a place: x km behind the first ridge, z km above the station.
/// Up is positive. What moves is one wave of each mountain with the other modes of its interface:
/// the selected one, else the predominant one. Each begins at its ridge, with its trough a quarter
/// of a wavelength behind the crest: ζ = −A·ψ·sin kx, w = −w·ψ·sin r·cos kx (Corby and Wallington
/// 1956).
struct Motion {
  double Velocity = 0;      // m/s
  double Displacement = 0;  // m, of a streamline that would run at z without waves
};
Motion MotionAt(const WaveResults& waves, const std::optional<Decay>& decay, double xKm, double zKm,
                const Wave* selected = nullptr);

/// Of one mountain the wave that is shown: the selected one where it is its own, else the
/// predominant one; null where there is none.
const Wave* ShownOf(const RidgeWaves& ridge, const Wave* selected);

}  // namespace vexa::mountainwave
