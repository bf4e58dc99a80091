#include "fronts/front_analysis.h"

#include <algorithm>
#include <cmath>

#include "analysis/working_wind.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::fronts {
namespace {

double AngleBetween(double a, double b) {
  const double angle = std::fabs(std::fmod(a - b, 360.0));
  return std::min(angle, 360 - angle);
}

// A zone over some of the layers; its advection is that of the mean wind of all of them.
std::optional<FrontZone> ZoneOf(const SoundingRecord& sounding,
                                const analysis::LevelProfile& levels,
                                const std::vector<FrontLayer>& layers,
                                std::vector<std::size_t> parts) {
  std::optional<FrontLayer> whole =
      LayerBetween(sounding, levels, layers[parts.front()].Base, layers[parts.back()].Top);
  if (!whole) return std::nullopt;
  analysis::WindVector sum;
  double depth = 0;
  for (const std::size_t part : parts) {
    const FrontLayer& layer = layers[part];
    sum.U += layer.Mean.U * (layer.Top - layer.Base);
    sum.V += layer.Mean.V * (layer.Top - layer.Base);
    depth += layer.Top - layer.Base;
  }
  whole->Mean = {sum.U / depth, sum.V / depth};
  whole->AdvectionCph = Advection(whole->Mean, whole->Thermal);
  return FrontZone{*whole, std::move(parts)};
}

Missed MissedBy(const FrontZone& zone, const FrontSettings& settings) {
  return std::fabs(zone.Whole.AdvectionCph) < settings.LeastAdvection ? Missed::Still : Missed::No;
}

std::vector<FrontZone> ZonesOf(const SoundingRecord& sounding, const analysis::LevelProfile& levels,
                               const std::vector<FrontLayer>& layers,
                               const FrontSettings& settings) {
  std::vector<FrontZone> zones;
  std::vector<std::size_t> parts;
  const auto close = [&] {
    if (parts.empty()) return;
    if (auto zone = ZoneOf(sounding, levels, layers, std::move(parts))) {
      zone->Why = MissedBy(*zone, settings);
      zones.push_back(*zone);
    }
    parts.clear();
  };
  for (std::size_t i = 0; i < layers.size(); ++i) {
    const FrontLayer& layer = layers[i];
    if (layer.Why != Missed::No) {
      close();
      continue;
    }
    if (!parts.empty()) {
      const FrontLayer& before = layers[parts.back()];
      const bool belongs = layer.IsWarm() == before.IsWarm() && layer.Base <= before.Top + 1 &&
                           AngleBetween(layer.Thermal.Wind.Dir, before.Thermal.Wind.Dir) <=
                               settings.AngularThreshold;
      if (!belongs) close();
    }
    parts.push_back(i);
  }
  close();
  return zones;
}

// Mean of the component towards an azimuth from the lowest wind to a height in m above the station,
// in equal steps of some 100 m with both ends; none without winds below that.
std::optional<double> MeanNormalBelow(const SoundingRecord& sounding, double top, double azimuth) {
  std::optional<double> lowest;
  for (int i = 1; i <= sounding.NumWindLevels() && !lowest; ++i) {
    if (sounding.HasWind(i)) lowest = sounding.WindHgt(i) - sounding.ElevM;
  }
  if (!lowest || *lowest >= top) return std::nullopt;
  constexpr double kStep = 100;  // m
  const int steps = std::max(1, ToWhole((top - *lowest) / kStep));
  double sum = 0;
  for (int i = 0; i <= steps; ++i) {
    const double height = *lowest + (top - *lowest) * i / steps;
    const analysis::WindSample wind = analysis::WindAtHeight(sounding, sounding.ElevM + height);
    if (!wind.Ok()) return std::nullopt;
    sum += Towards(analysis::Components(wind.Value), azimuth);
  }
  return sum / (steps + 1);
}

std::vector<NormalWind> NormalWinds(const SoundingRecord& sounding,
                                    const analysis::LevelProfile& levels, double azimuth) {
  std::vector<NormalWind> winds;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (!sounding.HasWind(i)) continue;
    const analysis::Wind wind = analysis::WorkingWind(sounding, i);
    winds.push_back({sounding.WindHgt(i) - sounding.ElevM,
                     analysis::GetPRESS(levels, sounding.WindHgt(i)),
                     Towards(analysis::Components(wind), azimuth)});
  }
  return winds;
}

std::optional<NormalJump> LargestJump(const std::vector<NormalWind>& winds, const FrontLayer& zone,
                                      double interval) {
  constexpr double kLeastChange = 5;       // kt
  constexpr double kLeastThickness = 100;  // m
  std::optional<NormalJump> largest;
  for (std::size_t i = 0; i + 1 < winds.size(); ++i) {
    const NormalWind& low = winds[i];
    const NormalWind& high = winds[i + 1];
    const bool isNear = high.Height >= zone.Base - interval && low.Height <= zone.Top + interval;
    const double change = high.Speed - low.Speed;
    if (!isNear || high.Height - low.Height < kLeastThickness) continue;
    if (std::fabs(change) < kLeastChange) continue;
    if (largest && std::fabs(change) <= std::fabs(largest->Change)) continue;
    largest = NormalJump{low.Height, high.Height, change};
  }
  return largest;
}

double DepressionAt(const analysis::LevelProfile& levels, double press) {
  const analysis::Sample temp = analysis::SampleAt(levels, press, analysis::Quantity::Temp);
  const analysis::Sample dewpt = analysis::SampleAt(levels, press, analysis::Quantity::Dewpt);
  return temp.Ok() && dewpt.Ok() ? temp.Value - dewpt.Value : kMissing;
}

Front FrontOf(const SoundingRecord& sounding, const analysis::LevelProfile& levels,
              const FrontSettings& settings, FrontZone zone) {
  Front front{.Zone = std::move(zone)};
  const FrontLayer& whole = front.Zone.Whole;
  const bool isWarm = whole.IsWarm();
  front.TowardsSurfaceFront = whole.Thermal.WarmAzimuth;
  front.Motion = isWarm ? whole.Thermal.WarmAzimuth + 180 : whole.Thermal.WarmAzimuth;
  if (front.Motion > 360) front.Motion -= 360;
  front.Speed = std::max(0.0, Towards(whole.Mean, front.Motion));
  front.NormalWindBelow = MeanNormalBelow(sounding, whole.Base, front.Motion);
  front.Kind = Classify(isWarm, front.NormalWindBelow.value_or(front.Speed), front.Speed);
  front.SlopeN =
      settings.Control == FrontControl::Automatic ? AutomaticSlope(front.Kind) : settings.SlopeN;
  if (front.NormalWindBelow && front.SlopeN > 0) {
    front.Lift =
        VerticalMotion(SpeedDifference(isWarm, *front.NormalWindBelow, front.Speed), front.SlopeN);
  }
  front.DistanceKm = FrontDistance(whole.Top, front.SlopeN);
  const double depression = DepressionAt(levels, whole.TopPress);
  if (!IsMissing(depression)) front.Hours = PrecipitationTime(depression, front.Lift.value_or(0));
  front.Normals = NormalWinds(sounding, levels, front.Motion);
  front.Jump = LargestJump(front.Normals, whole, settings.IntervalM);
  return front;
}

std::string WhyNoAnalysis(const SoundingRecord& sounding) {
  if (sounding.LatHemi.empty()) return "The position of the station is not known.";
  if (std::fabs(sounding.LatSigned) < kLeastLatitude) {
    return "The station lies within 10 degrees of the equator.";
  }
  int winds = 0;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) winds += sounding.HasWind(i) ? 1 : 0;
  return winds < 2 ? "The sounding has no winds." : "";
}

}  // namespace

std::string_view Text(FrontClass kind) {
  switch (kind) {
    case FrontClass::KatabaticWarm:
      return "Katabatic Warm Front";
    case FrontClass::AnabaticWarm:
      return "Anabatic Warm Front";
    case FrontClass::AnabaticCold:
      return "Anabatic Cold Front";
    case FrontClass::KatabaticCold:
      return "Katabatic Cold Front";
  }
  return "";
}

FrontClass Classify(bool isWarm, double normalWind, double frontSpeed) {
  if (isWarm) {
    return normalWind <= frontSpeed ? FrontClass::AnabaticWarm : FrontClass::KatabaticWarm;
  }
  return normalWind > frontSpeed ? FrontClass::AnabaticCold : FrontClass::KatabaticCold;
}

double SpeedDifference(bool isWarm, double normalWind, double frontSpeed) {
  return isWarm ? normalWind - frontSpeed : frontSpeed - normalWind;
}

double AutomaticSlope(FrontClass kind) {
  switch (kind) {
    case FrontClass::AnabaticCold:
      return 80;
    case FrontClass::KatabaticCold:
      return 40;
    default:
      return 120;
  }
}

double VerticalMotion(double difference, double slopeN) {
  return -difference * kMetersPerNauticalMile / slopeN;
}

double FrontDistance(double zoneTop, double slopeN) {
  return slopeN * zoneTop / 1000;
}

std::optional<double> PrecipitationTime(double depression, double metersPerHour) {
  constexpr double kSaturated = 0.2;      // °C
  constexpr double kLiftPerDegree = 125;  // m
  if (depression <= kSaturated) return 0;
  if (metersPerHour <= 0) return std::nullopt;
  return kLiftPerDegree * depression / metersPerHour;
}

FrontResults FindFronts(const SoundingRecord& sounding, const analysis::LevelProfile& levels,
                        const FrontSettings& settings, const std::optional<HeldZone>& held) {
  FrontResults results{.WhyNone = WhyNoAnalysis(sounding)};
  if (!results.WhyNone.empty()) return results;
  results.Layers = FrontLayers(sounding, levels, settings);
  results.Zones = ZonesOf(sounding, levels, results.Layers, settings);
  if (held) {
    if (const auto kept = LayerBetween(sounding, levels, held->Base, held->Top)) {
      results.Found = FrontOf(sounding, levels, settings, {*kept, {}});
      return results;
    }
  }
  if (const FrontZone* strongest = StrongestZone(results.Zones)) {
    results.Found = FrontOf(sounding, levels, settings, *strongest);
  }
  return results;
}

const FrontZone* StrongestZone(const std::vector<FrontZone>& zones) {
  const FrontZone* strongest = nullptr;
  for (const FrontZone& zone : zones) {
    if (zone.Why != Missed::No) continue;
    if (strongest == nullptr || zone.Rank() > strongest->Rank()) strongest = &zone;
  }
  return strongest;
}

}  // namespace vexa::fronts
