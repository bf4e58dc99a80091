#include "mountainwave/airstream.h"

#include <algorithm>
#include <cmath>

#include "analysis/moist_air.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::mountainwave {
namespace {

double DensityOf(double press, double virtualTemp) {
  return 100 * press / (analysis::kDryGasConstant * (virtualTemp + kKelvinOffset));
}

// The wind at a height between the levels, as components; none outside them.
std::optional<analysis::WindVector> WindAt(const Air& air, double height) {
  for (std::size_t i = 0; i + 1 < air.Levels.size(); ++i) {
    const AirLevel& low = air.Levels[i];
    const AirLevel& high = air.Levels[i + 1];
    if (height < low.Height || height > high.Height) continue;
    const double share = (height - low.Height) / (high.Height - low.Height);
    const analysis::WindVector a = analysis::Components(low.Wind);
    const analysis::WindVector b = analysis::Components(high.Wind);
    return analysis::WindVector{a.U + share * (b.U - a.U), a.V + share * (b.V - a.V)};
  }
  return std::nullopt;
}

// s·sin(d − axis): positive for a wind from the right of somebody who looks along the axis.
double AcrossAxis(const analysis::Wind& wind, double axis) {
  return wind.Spd * std::sin(Radians(wind.Dir - axis));
}

}  // namespace

Air AirOf(const SoundingRecord& sounding, const analysis::LevelProfile& levels) {
  Air air{.StationElev = static_cast<double>(sounding.ElevM)};
  const double ground = air.StationElev;
  bool hasWind = false;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) hasWind = hasWind || sounding.HasWind(i);
  for (int i = 1; i <= levels.Count(); ++i) {
    const bool isWhole = HasHeight(levels.Height(i)) && levels.Press(i) > 0 &&
                         !NotAvailable(levels.Temp(i)) && levels.Theta(i) > 0;
    if (!isWhole) continue;
    const double density = DensityOf(levels.Press(i), levels.VirtualTemp(i));
    if (air.GroundDensity == 0) air.GroundDensity = density;
    const double height = levels.Height(i) - ground;
    if (!air.Levels.empty() && height - air.Levels.back().Height < kLeastThickness) continue;
    const analysis::WindSample wind = analysis::WindAtHeight(sounding, levels.Height(i));
    if (!wind.Ok()) continue;
    air.Levels.push_back({levels.Press(i), height, levels.Theta(i), density, wind.Value});
  }
  constexpr std::size_t kLeastLevels = 3;  // two layers, one on the other
  if (!hasWind) {
    air.WhyNone = "The sounding has no winds.";
  } else if (air.Levels.size() < kLeastLevels) {
    air.WhyNone = "The sounding has fewer than three levels with temperature and wind.";
  }
  return air;
}

CrossFlow FlowAcross(const Air& air, double crest, double axis) {
  CrossFlow flow{.GroundDensity = air.GroundDensity, .CrestHeight = crest, .WhyNone = air.WhyNone};
  if (!flow.WhyNone.empty()) return flow;
  const std::optional<analysis::WindVector> atCrest = WindAt(air, crest);
  if (!atCrest) {
    flow.WhyNone = crest < air.Levels.front().Height ? "The winds begin above the mountain's crest."
                                                     : "The winds end below the mountain's crest.";
    return flow;
  }
  const bool isAnyAxis = axis == 0;
  const analysis::Wind crestWind = analysis::FromComponents(*atCrest);
  const double across = isAnyAxis ? crestWind.Spd : AcrossAxis(crestWind, axis);
  flow.CrestWind = std::fabs(across) * kKnotToMs;
  const double leastShare = std::cos(Radians(kMostAngleOffNormal));
  if (!isAnyAxis && std::fabs(across) < leastShare * crestWind.Spd) {
    flow.WhyNone = "The wind at the crest blows along the ridge.";
  } else if (flow.CrestWind < kLeastCrestWindMs) {
    flow.WhyNone = "The wind across the ridge at its crest is too weak.";
  }
  const double sign = across < 0 ? -1 : 1;
  for (const AirLevel& level : air.Levels) {
    const double knots =
        isAnyAxis ? level.Wind.Spd : std::max(0.0, sign * AcrossAxis(level.Wind, axis));
    const double windMs = knots * kKnotToMs;
    if (level.Height > crest && windMs < kCriticalWindMs) {
      flow.CriticalHeight = level.Height;
      break;
    }
    flow.Levels.push_back({level.Press, level.Height, level.Theta, level.Density, windMs});
  }
  return flow;
}

double StaticStability(double thetaBelow, double thetaAbove, double thickness) {
  const double mean = (thetaBelow + thetaAbove) / 2;
  return std::max(0.0, (analysis::kGravity / mean) * (thetaAbove - thetaBelow) / thickness);
}

float StabilityTerm(double stability, double windMs) {
  return windMs == 0 ? 0.0F : static_cast<float>(1e6 * stability / (windMs * windMs));
}

float CurvatureTerm(double shearBelow, double shearAbove, double distanceKm, double windMs) {
  return windMs == 0 ? 0.0F
                     : static_cast<float>(1e3 * (shearAbove - shearBelow) / (distanceKm * windMs));
}

std::vector<ScorerLayer> ScorerProfile(const std::vector<FlowLevel>& levels) {
  std::vector<ScorerLayer> layers;
  if (levels.size() < 2) return layers;
  std::vector<double> shears;  // s⁻¹
  for (std::size_t k = 0; k + 1 < levels.size(); ++k) {
    const FlowLevel& low = levels[k];
    const FlowLevel& high = levels[k + 1];
    const double thickness = high.Height - low.Height;
    ScorerLayer layer{.Base = low.Height, .Top = high.Height};
    layer.MeanWind = (low.Wind + high.Wind) / 2;
    layer.Stability = StaticStability(low.Theta, high.Theta, thickness);
    layer.StabilityTerm = StabilityTerm(layer.Stability, layer.MeanWind);
    shears.push_back((high.Wind - low.Wind) / thickness);
    layers.push_back(layer);
  }
  for (std::size_t k = 0; k < layers.size() && layers.size() > 1; ++k) {
    const std::size_t below = k == 0 ? 0 : k - 1;
    const std::size_t above = std::min(k + 1, layers.size() - 1);
    const double distanceKm = ((layers[above].Base + layers[above].Top) / 2 -
                               (layers[below].Base + layers[below].Top) / 2) /
                              1000;
    layers[k].CurvatureTerm =
        CurvatureTerm(shears[below], shears[above], distanceKm, layers[k].MeanWind);
  }
  return layers;
}

}  // namespace vexa::mountainwave
