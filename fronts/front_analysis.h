// Fronts from one ascent: zones of layers with a strong gradient of temperature, and what the
// winds in and below such a zone say of the front: warm or cold, anabatic or katabatic, its speed,
// its distance, and the vertical motion and precipitation that go with it.
//
// Bergeron 1937 (Bulletin of the AMS 18, 265); Sansom 1951 (QJRMS 77, 96).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fronts/thermal_wind.h"

namespace vexa::fronts {

enum class FrontClass { KatabaticWarm, AnabaticWarm, AnabaticCold, KatabaticCold };
/// "Katabatic Warm Front", "Anabatic Warm Front", "Anabatic Cold Front", "Katabatic Cold Front".
std::string_view Text(FrontClass kind);

/// Warm or cold by the advection; for a warm front the anabatic case is that in which the normal
/// wind does not exceed the speed of the front, for a cold front that in which it does. Speeds in
/// kt.
FrontClass Classify(bool isWarm, double normalWind, double frontSpeed);
/// Normal wind minus speed of the front for a warm front, the reverse for a cold one, kt.
double SpeedDifference(bool isWarm, double normalWind, double frontSpeed);
/// N of the slope 1/N that the automatic mode takes: 120 warm, 80 anabatic cold, 40 katabatic cold.
double AutomaticSlope(FrontClass kind);
/// −difference·1852/N, m/h, up positive; the difference in kt.
double VerticalMotion(double difference, double slopeN);
/// N·height, km, for the top of a zone in m above the station.
double FrontDistance(double zoneTop, double slopeN);
/// Hours until lifting has saturated air of a depression in °C: 125 m of lift per °C; 0 for
/// saturated air (within 0.2 °C), none without lift.
std::optional<double> PrecipitationTime(double depression, double metersPerHour);

/// Neighbouring layers that belong to one front.
struct FrontZone {
  FrontLayer Whole{};  // from the winds at base and top; its mean wind is that of the layers
  std::vector<std::size_t> Parts{};  // of the layers, lowest first
  Missed Why = Missed::No;           // Still: its air hardly changes, so that it is no front
  double Rank() const { return Whole.Thermal.Gradient * (Whole.Top - Whole.Base); }
};

/// A jump of the normal wind between neighbouring wind levels.
struct NormalJump {
  double Base = 0, Top = 0;  // m above the station
  double Change = 0;         // kt
};

struct NormalWind {
  double Height = 0;  // m above the station
  double Press = 0;   // hPa
  double Speed = 0;   // kt along the motion of the front
};

struct Front {
  FrontZone Zone{};
  FrontClass Kind = FrontClass::AnabaticCold;
  double Motion = 0;                        // degrees into which it moves
  double Speed = 0;                         // kt, not negative
  std::optional<double> NormalWindBelow{};  // kt; none without winds below the zone
  double SlopeN = 0;
  std::optional<double> Lift{};  // m/h, up positive
  double DistanceKm = 0;
  double TowardsSurfaceFront = 0;     // degrees: D
  std::optional<double> Hours{};      // until precipitation forms
  std::vector<NormalWind> Normals{};  // at every wind level
  std::optional<NormalJump> Jump{};   // the largest in or near the zone
  bool IsWarm() const { return Zone.Whole.IsWarm(); }
  bool IsQuasiStationary() const { return Speed <= 2; }
};

/// A zone that was chosen before, by hand or to be kept while the data change; m above the station.
struct HeldZone {
  double Base = 0, Top = 0;
};

struct FrontResults {
  std::vector<FrontLayer> Layers{};
  std::vector<FrontZone> Zones{};  // lowest first
  std::optional<Front> Found{};
  std::string WhyNone{};  // a sentence, when nothing could be analysed
};

/// All of it. The front is the strongest zone; a held one takes its place where its winds are
/// known, whatever the thresholds say of it.
FrontResults FindFronts(const SoundingRecord& sounding, const analysis::LevelProfile& levels,
                        const FrontSettings& settings,
                        const std::optional<HeldZone>& held = std::nullopt);

/// The strongest of the zones that missed nothing; null when there is none.
const FrontZone* StrongestZone(const std::vector<FrontZone>& zones);

}  // namespace vexa::fronts
