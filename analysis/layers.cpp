#include "analysis/layers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/exact.h"
#include "analysis/interpolate.h"
#include "analysis/parcel_source.h"
#include "analysis/storm_motion.h"

namespace vexa::analysis {
namespace {

constexpr double kLeastThickness = 20;      // hPa
constexpr double kLeastStrength = 2.5;      // °C
constexpr double kRadiationHeight = 100;    // m above ground
constexpr double kTropopausePress = 500;    // hPa; tropopauses lie above
constexpr double kBelowTropopause = 500;    // m that its inversion may begin below it
constexpr double kDriesAloft = -3;          // °C of dew point from base to top
constexpr double kKeepsMoist = -1.5;        // °C
constexpr double kStableLapse = 2;          // K/km
constexpr double kSteepLapse = 3;           // K/km
constexpr double kStableDepth = 2000;       // m
constexpr double kLeastStableDepth = 1000;  // m, when the sounding ends
constexpr double kSteepDepth = 1000;        // m

// Mean lapse rates from a level to every level within a depth and to the depth itself, all tested;
// empty when the sounding ends inside the depth before `least`.
template <class Test>
bool LapseHolds(const LevelProfile& levels, int from, double depth, double least, Test holds) {
  const std::vector<double>& heights = levels.Height.Values();
  const std::vector<double>& temps = levels.Temp.Values();
  const auto bottom = static_cast<std::size_t>(from) - 1;
  const double base = heights[bottom];
  const auto lapseTo = [&](double height, double temp) {
    return (temps[bottom] - temp) / (height - base) * 1000;
  };
  for (std::size_t i = bottom + 1; i < heights.size(); ++i) {
    const double height = heights[i];
    if (!(height > base)) return false;
    if (height <= base + depth) {
      if (!holds(lapseTo(height, temps[i]))) return false;
      if (height == base + depth) return true;
      continue;
    }
    const double share = (base + depth - heights[i - 1]) / (height - heights[i - 1]);
    const double temp = temps[i - 1] + share * (temps[i] - temps[i - 1]);
    return holds(lapseTo(base + depth, temp));
  }
  return levels.Count() > from && heights.back() - base >= least;
}

bool IsTropopause(const LevelProfile& levels, int level) {
  if (levels.Press(level) > kTropopausePress || level >= levels.Count()) return false;
  const auto stable = [](double lapse) { return lapse <= kStableLapse; };
  const double depth = levels.Height(level + 1) - levels.Height(level);
  if (!(depth > 0)) return false;
  const double toNext = (levels.Temp(level) - levels.Temp(level + 1)) / depth * 1000;
  return stable(toNext) && LapseHolds(levels, level, kStableDepth, kLeastStableDepth, stable);
}

bool IsSteepAgain(const LevelProfile& levels, int level) {
  return LapseHolds(levels, level, kSteepDepth, kSteepDepth,
                    [](double lapse) { return lapse > kSteepLapse; });
}

InversionKind KindOf(const LevelProfile& levels, int base, int top,
                     const std::vector<LevelPoint>& tropopauses) {
  const double height = levels.Height(base);
  if (base == 1 || height - levels.Height(1) < kRadiationHeight) return InversionKind::Radiation;
  if (levels.Press(base) <= kTropopausePress && !tropopauses.empty() &&
      height >= tropopauses.front().Height - kBelowTropopause) {
    return InversionKind::Tropopause;
  }
  if (NotAvailable(levels.Dewpt(base)) || NotAvailable(levels.Dewpt(top))) {
    return InversionKind::Unknown;
  }
  const double change = Exact(levels.Dewpt(top) - levels.Dewpt(base));
  if (change <= kDriesAloft) return InversionKind::Subsidence;
  return change >= kKeepsMoist ? InversionKind::Frontal : InversionKind::Unknown;
}

}  // namespace

std::vector<LevelPoint> FindTropopauses(const LevelProfile& levels) {
  std::vector<LevelPoint> found;
  bool searching = true;  // for a tropopause, else for the steep layer after one
  const std::vector<double>& temps = levels.Temp.Values();
  const double* heights = levels.Height.Values().data();
  // Most levels are out of the question by the lapse rate to the next one alone.
  constexpr double kRounding = 1e-9;
  const auto nextFrom = [&](std::size_t at) {
    return searching ? FirstSlowFall(temps.data(), heights, at, temps.size(),
                                     kStableLapse / 1000 * (1 + kRounding))
                     : FirstFastFall(temps.data(), heights, at, temps.size(),
                                     kSteepLapse / 1000 * (1 - kRounding));
  };
  // None lies lower; and steepness above it counts only behind one.
  const std::vector<double>& pressures = levels.Press.Values();
  const std::size_t first = FirstNotAbove(pressures.data(), 0, pressures.size(), kTropopausePress);
  for (std::size_t at = nextFrom(first); at < temps.size(); at = nextFrom(at + 1)) {
    const int i = static_cast<int>(at) + 1;
    if (!searching && IsSteepAgain(levels, i)) searching = true;
    if (searching && IsTropopause(levels, i)) {
      found.push_back(PointOf(levels, i));
      searching = false;
    }
  }
  return found;
}

std::vector<Inversion> FindInversions(const LevelProfile& levels,
                                      const std::vector<LevelPoint>& tropopauses) {
  std::vector<Inversion> found;
  const std::vector<double>& temps = levels.Temp.Values();
  const auto nextRise = [&temps](int from) {
    return static_cast<int>(
               FirstRise(temps.data(), static_cast<std::size_t>(from) - 1, temps.size())) +
           1;
  };
  for (int base = nextRise(1); base < levels.Count();) {
    // Up through rising layers; isothermal ones belong to it when the temperature rises again.
    int top = base + 1;
    for (int i = top; i < levels.Count() && levels.Temp(i + 1) >= levels.Temp(i); ++i) {
      if (levels.Temp(i + 1) > levels.Temp(i)) top = i + 1;
    }
    if (Exact(levels.Press(base) - levels.Press(top)) >= kLeastThickness ||
        Exact(levels.Temp(top) - levels.Temp(base)) >= kLeastStrength) {
      found.push_back(
          {KindOf(levels, base, top, tropopauses), PointOf(levels, base), PointOf(levels, top)});
    }
    base = nextRise(top);
  }
  return found;
}

namespace {

// Whether each temperature is on the same side of 0 °C as the one below the first.
VEXA_WIDE bool KeepsSign(const double* temps, std::size_t count) {
  std::uint64_t changes = 0;
  const bool isWarm = temps[-1] > 0;
  for (std::size_t i = 0; i < count; ++i) {
    changes |= ((temps[i] > 0) != isWarm) | (temps[i] == 0) ? 1 : 0;
  }
  return changes == 0;
}

}  // namespace

std::vector<LevelPoint> FindFreezingLevels(const LevelProfile& levels) {
  constexpr std::size_t kAtATime = 64;
  std::vector<LevelPoint> found;
  const std::vector<double>& temps = levels.Temp.Values();
  for (std::size_t at = 0; at < temps.size(); ++at) {
    if (at > 0 && at + kAtATime <= temps.size() && KeepsSign(temps.data() + at, kAtATime)) {
      at += kAtATime - 1;
      continue;
    }
    const double temp = temps[at];
    const double below = at == 0 ? temp : temps[at - 1];
    if ((below > 0) == (temp > 0) && temp != 0) continue;
    const int i = static_cast<int>(at) + 1;
    if (temp == 0) {
      if (i == 1 || below != 0) found.push_back(PointOf(levels, i));
      continue;
    }
    if (below == 0) continue;
    if (!(levels.Press(i) > 0) || !(levels.Press(i - 1) > 0)) continue;
    const double lowLog = std::log(levels.Press(i - 1));
    const double press =
        std::exp(lowLog + (std::log(levels.Press(i)) - lowLog) * below / (below - temp));
    const Sample height = SampleAt(levels, press, Quantity::Height);
    found.push_back({press, height.Ok() ? height.Value : levels.Height(i), 0});
  }
  return found;
}

double MeanLapseRate(const LevelProfile& levels, double low, double high, Quantity quantity) {
  if (levels.Count() < 2 || high <= low) return kNone;
  const auto temp = [&](double height) -> Sample {
    const double press = GetPRESS(levels, height);
    return HasHeight(press) ? SampleAt(levels, press, quantity) : Sample{};
  };
  const Sample below = temp(low);
  const Sample above = temp(high);
  if (!below.Ok() || !above.Ok()) return kNone;
  constexpr double kMetersPerKm = 1000;
  return (below.Value - above.Value) / ((high - low) / kMetersPerKm);
}

std::optional<MixedLayer> FindMixedLayer(const WindProfile& winds, const LevelProfile& levels) {
  constexpr double kNearGround = 25;   // hPa
  constexpr double kWarmer = 0.5;      // K
  constexpr double kLeastDepth = 150;  // m
  if (levels.Count() < 2) return std::nullopt;
  double least = levels.Theta(1);
  for (int i = 2; i <= levels.Count() && levels.Press(i) >= levels.Press(1) - kNearGround; ++i) {
    least = std::min(least, levels.Theta(i));
  }
  const double limit = least + kWarmer;
  int above = 2;
  while (above <= levels.Count() && levels.Theta(above) <= limit) ++above;
  if (above > levels.Count()) return std::nullopt;
  const double below = levels.Theta(above - 1);
  // Superheated ground lies beyond the limit itself.
  const double share = std::clamp((limit - below) / (levels.Theta(above) - below), 0.0, 1.0);
  MixedLayer mixed;
  const double press =
      levels.Press(above - 1) * std::pow(levels.Press(above) / levels.Press(above - 1), share);
  const Sample height = SampleAt(levels, press, Quantity::Height);
  const Sample temp = SampleAt(levels, press, Quantity::Temp);
  if (!height.Ok() || !temp.Ok()) return std::nullopt;
  mixed.Top = {press, height.Value, temp.Value};
  mixed.Depth = height.Value - levels.Height(1);
  if (mixed.Depth < kLeastDepth) return std::nullopt;
  const LayerMean mean = MeanOfLowestLayer(levels, levels.Press(1) - press);
  mixed.Theta = mean.Theta;
  mixed.MixingRatio = mean.MixingRatio;
  mixed.Mean = LayerMeanWind(winds, levels.Height(1), mixed.Depth);
  return mixed;
}

std::string_view Text(InversionKind kind) {
  switch (kind) {
    case InversionKind::Radiation:
      return "Radiation Inv.";
    case InversionKind::Frontal:
      return "Frontal Inv.";
    case InversionKind::Subsidence:
      return "Subsidence Inv.";
    case InversionKind::Tropopause:
      return "Trop Inv.";
    case InversionKind::Unknown:
      return "Unknown Inv.";
  }
  return "";
}

}  // namespace vexa::analysis
