#include "analysis/winter.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/column_scan.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/profile_walk.h"
#include "analysis/storm_motion.h"
#include "analysis/vapor_table.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kHighest = 500;        // hPa
constexpr double kMeltsSome = 5.6;      // J/kg
constexpr double kMeltsAll = 13.2;      // J/kg
constexpr double kLeastWarmAloft = 2;   // J/kg
constexpr double kIcyCloudTop = -6;     // °C
constexpr double kDeepCloud = 1500;     // m
constexpr double kSquallDepth = 2000;   // m above ground
constexpr double kDendriticWarm = -12;  // °C
constexpr double kDendriticCold = -18;

// Energies between changes of sign of the wet bulb, from the ground up to the highest change.
std::vector<double> SignedAreas(const LevelProfile& levels) {
  const auto value = [&](int i) {
    return NotAvailable(levels.WetBulb(i)) ? levels.Temp(i) : levels.WetBulb(i);
  };
  std::vector<double> areas;  // alternating signs
  const auto add = [&](double energy) {
    if (energy == 0) return;
    if (areas.empty() || (areas.back() > 0) != (energy > 0)) {
      areas.push_back(energy);
    } else {
      areas.back() += energy;
    }
  };
  for (int i = 1; i < levels.Count(); ++i) {
    if (levels.Press(i + 1) < kHighest) break;
    const double depth = levels.LogPress(i) - levels.LogPress(i + 1);
    const double low = value(i);
    const double high = value(i + 1);
    if ((low > 0) == (high > 0) || low == 0 || high == 0) {
      add(kDryGasConstant * (low + high) / 2 * depth);
    } else {
      const double share = low / (low - high);
      add(kDryGasConstant * low / 2 * depth * share);
      add(kDryGasConstant * high / 2 * depth * (1 - share));
    }
  }
  if (!areas.empty() && areas.back() < 0) areas.pop_back();  // above the highest change
  return areas;
}

bool MakesIce(const CloudDeck& deck) {
  return deck.Amount >= CloudAmount::Broken &&
         (deck.Top.Temp <= kIcyCloudTop || deck.Top.Height - deck.Base.Height > kDeepCloud);
}

void FindPrecipitation(const AnalysisResults& results, WinterResults& winter) {
  const std::vector<double> areas = SignedAreas(results.Levels);
  const bool warmGround = !areas.empty() && areas.front() > 0;
  for (std::size_t i = 0; i < areas.size(); ++i) {
    if (i == 0 && warmGround) {
      winter.SurfaceWarmArea = areas[i];
    } else if (areas[i] > 0) {
      winter.WarmArea += areas[i];
    } else {
      winter.ColdArea -= areas[i];
    }
  }
  const std::vector<CloudDeck>& clouds = results.Layers.Clouds;
  if (std::ranges::any_of(clouds, MakesIce)) {
    winter.Precipitation =
        PrecipitationType(winter.SurfaceWarmArea, winter.ColdArea, winter.WarmArea);
  } else if (std::ranges::any_of(clouds,
                                 [](const CloudDeck& deck) {
                                   return deck.Amount == CloudAmount::Overcast &&
                                          deck.Top.Temp > kIcyCloudTop;
                                 }) &&
             results.Levels.Temp(1) <= 0) {
    winter.Precipitation = "FREEZING DRIZZLE";
  }
}

// Mean relative humidity between two heights, by trapezoids; kMissing where a dew point is.
double MeanHumidity(const LevelProfile& levels, double low, double high) {
  if (high > levels.Height.Top() || !(high > low)) return kMissing;
  ProfileWalk walk(levels);
  double sum = 0;
  double before = 0;
  double lastHeight = low;
  bool begun = false;
  for (const double height : SampleHeights(levels, low, high)) {
    const AirPoint air = walk.At(height);
    if (!air.HasDewpt()) return kMissing;
    const double saturation = TabledSatVapor(air.Temp, SaturationOver::Water);
    const double humidity =
        saturation > 0 ? 100 * TabledSatVapor(air.Dewpt, SaturationOver::Water) / saturation : 0;
    if (begun) sum += (before + humidity) / 2 * (height - lastHeight);
    before = humidity;
    lastHeight = height;
    begun = true;
  }
  return sum / (high - low);
}

double SnowSquall(const WindProfile& winds, const LevelProfile& levels) {
  const double ground = levels.Height(1);
  const double humidity = MeanHumidity(levels, ground, ground + kSquallDepth);
  const double press = GetPRESS(levels, ground + kSquallDepth);
  const Sample aloft = SampleAt(levels, press, Quantity::ThetaE);
  const auto wind = LayerMeanWind(winds, ground, kSquallDepth);
  if (NotAvailable(humidity) || !aloft.Ok() || NotAvailable(levels.ThetaE(1)) || !wind) {
    return kNone;
  }
  if (levels.WetBulb(1) >= 1) return 0;
  const double speedMs = kKnotToMs * std::hypot(wind->U, wind->V);
  const double moist = std::max((humidity - 60) / 15, 0.0);
  const double unstable = std::max((4 - (aloft.Value - levels.ThetaE(1))) / 4, 0.0);
  return moist * unstable * speedMs / 9;
}

std::vector<WinterResults::DendriticLayer> DendriticZone(const LevelProfile& levels) {
  std::vector<WinterResults::DendriticLayer> zone;
  const std::vector<double>& temps = levels.Temp.Values();
  // A layer of which no end is within or beyond the zone is passed over, with all that follow it.
  for (std::size_t at = 0; at + 1 < temps.size(); ++at) {
    const double low = temps[at];
    const double high = temps[at + 1];
    if (std::max(low, high) < kDendriticCold) {
      at = FirstNotBelow(temps.data(), at + 2, temps.size(), kDendriticCold) - 2;
      continue;
    }
    if (std::min(low, high) > kDendriticWarm) {
      at = FirstNotAbove(temps.data(), at + 2, temps.size(), kDendriticWarm) - 2;
      continue;
    }
    const int i = static_cast<int>(at) + 1;
    // The part of the layer that lies inside the zone.
    double from = 0;
    double to = 1;
    if (low != high) {
      const double warm = (kDendriticWarm - low) / (high - low);
      const double cold = (kDendriticCold - low) / (high - low);
      from = std::clamp(std::min(warm, cold), 0.0, 1.0);
      to = std::clamp(std::max(warm, cold), 0.0, 1.0);
    }
    if (!(to > from)) continue;
    const LevelPoint base = Between(levels, i, from);
    if (!zone.empty() && std::fabs(zone.back().Top.Height - base.Height) < 1) {
      zone.back().Top = Between(levels, i, to);
    } else {
      zone.push_back({.Base = base, .Top = Between(levels, i, to)});
    }
  }
  for (WinterResults::DendriticLayer& layer : zone) {
    layer.MeanHumidity = MeanHumidity(levels, layer.Base.Height, layer.Top.Height);
  }
  return zone;
}

double Thickness(const LevelProfile& levels, double lowPress, double highPress) {
  const Sample low = HeightAt(levels, lowPress);
  const Sample high = HeightAt(levels, highPress);
  return low.Ok() && high.Ok() ? high.Value - low.Value : kNone;
}

}  // namespace

std::string_view PrecipitationType(double warmSurface, double cold, double warmAloft) {
  const bool meltsAloft = warmAloft >= kLeastWarmAloft && cold > 0;
  if (!meltsAloft) {
    if (warmSurface < kMeltsSome) return "SNOW";
    return warmSurface <= kMeltsAll ? "RAIN/SNOW" : "RAIN";
  }
  const bool freezes = cold > 66 + 0.66 * warmAloft;
  if (warmSurface > 0) {
    if (!freezes || warmSurface > kMeltsAll) return "RAIN";
    return warmSurface < kMeltsSome ? "ICE PELLETS" : "RAIN/PELLETS";
  }
  if (freezes) return "ICE PELLETS";
  return cold < 46 + 0.66 * warmAloft ? "FREEZING RAIN" : "FREEZING RAIN/ICE PELLETS";
}

double SnowRatio(double warmest) {
  constexpr double kBend = -2;  // °C
  const double ratio = warmest > kBend ? 12 + 2 * (kBend - warmest) : 12 + (kBend - warmest);
  return std::max(ratio, 0.0);
}

WinterResults AnalyseWinter(const AnalysisResults& results) {
  WinterResults winter;
  const LevelProfile& levels = results.Levels;
  if (levels.Count() < 2) return winter;
  FindPrecipitation(results, winter);
  if (levels.Press.Top() <= kHighest && levels.Press(1) > kHighest) {
    double warmest = SampleAt(levels, kHighest, Quantity::Temp).Value;
    const std::vector<double>& pressures = levels.Press.Values();
    const std::size_t end = FirstBelow(pressures.data(), 0, pressures.size(), kHighest);
    warmest = std::max(warmest, MostOf(levels.Temp.Values().data(), 0, end));
    winter.SnowRatio = SnowRatio(warmest);
  }
  winter.SnowSquall = SnowSquall(results.Winds, levels);
  winter.Thickness1000to500 = Thickness(levels, 1000, 500);
  winter.Thickness1000to850 = Thickness(levels, 1000, 850);
  winter.Thickness850to700 = Thickness(levels, 850, 700);
  winter.Dendritic = DendriticZone(levels);
  return winter;
}

}  // namespace vexa::analysis
