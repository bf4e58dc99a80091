#include "forecast/advection.h"

#include <algorithm>
#include <cmath>

#include "analysis/analysis_settings.h"
#include "analysis/moist_air.h"
#include "core/great_circle.h"
#include "core/level_filter.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "fronts/thermal_wind.h"

namespace vexa::forecast {
namespace {

using analysis::FromComponents;
using analysis::Quantity;
using analysis::Sample;
using analysis::WindAtHeight;
using analysis::WindVector;

constexpr double kTaper = 500;  // m above the layers in which the main sounding comes back
// Thin layers of wind tell of gusts, not of gradients: where there are winds enough they are taken
// so far apart, m.
constexpr double kThickEnough = 1500;
constexpr double kThinnest = 500;  // m
// Each hour the station's own advection counts so much of what it did the hour before: the pattern
// of winds moves on, and rising air cools what warm air comes. With 1, which is steady advection,
// errors at 700 hPa after a day were more than twice those of leaving the sounding alone.
constexpr double kSteadiness = 0.8;
constexpr int kTempDecimals = 2;  // of what is worked out
constexpr int kWindDecimals = 1;

// 1 through the layers in use, less and less above them; 0 without any.
double TaperAt(double height, const ForecastSettings& set) {
  const double depth = std::max(set.MainInUse(), set.BoundaryInUse());
  if (depth <= 0) return 0;
  return std::clamp(1 - (height - depth) / kTaper, 0.0, 1.0);
}

// What a quantity is at a level, over the contributors that have it there; none where none has.
struct WeightedMean {
  double Sum = 0;
  double Weights = 0;
  void Add(double value, double weight) {
    Sum += weight * value;
    Weights += weight;
  }
  double Or(double otherwise) const { return Weights > 0 ? Sum / Weights : otherwise; }
};

struct Contributor {
  const Profile& Of;
  double Weight = 0;
};

std::vector<Contributor> ContributorsOf(const Region& region, const StepChoice& choice) {
  std::vector<Contributor> all;
  for (const Contribution& part : choice.Parts) {
    all.push_back({part.Of ? *region.Near.at(*part.Of).Of : *region.Main, part.Weight});
  }
  return all;
}

double MeanAt(const std::vector<Contributor>& all, double press, Quantity quantity,
              double otherwise) {
  WeightedMean mean;
  for (const Contributor& one : all) {
    const Sample sample = SampleAt(one.Of.Levels, press, quantity);
    if (sample.Ok() && !NotAvailable(sample.Value)) mean.Add(sample.Value, one.Weight);
  }
  return mean.Or(otherwise);
}

WindVector MeanWindAt(const std::vector<Contributor>& all, double press, const WindVector& own) {
  WeightedMean u, v;
  for (const Contributor& one : all) {
    const Sample height = SampleAt(one.Of.Levels, press, Quantity::Height);
    if (!height.Ok()) continue;
    const analysis::WindSample wind = WindAtHeight(one.Of.Sounding, height.Value);
    if (!wind.Ok()) continue;
    const WindVector vector = Components(wind.Value);
    u.Add(vector.U, one.Weight);
    v.Add(vector.V, one.Weight);
  }
  return {u.Or(own.U), v.Or(own.V)};
}

double Mixed(double own, double other, double share) {
  return own * (1 - share) + share * other;
}

// Pressures of the sounding and the mandatory ones between its ends, falling.
std::vector<double> WorkLevels(const SoundingRecord& sounding) {
  std::vector<double> levels = sounding.Press.Values();
  if (levels.empty()) return levels;
  for (const double press : kMandatoryPress) {
    if (press < levels.front() && press > sounding.Press.Top()) levels.push_back(press);
  }
  std::ranges::sort(levels, std::greater{});
  levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
  return levels;
}

// Heights of the winds of the sounding and those of its mandatory pressures between them, rising.
std::vector<double> WindWorkLevels(const Profile& profile) {
  constexpr double kNear = 10;  // m: another wind so near would say nothing
  std::vector<double> heights;
  const SoundingRecord& sounding = profile.Sounding;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (sounding.HasWind(i)) heights.push_back(sounding.WindHgt(i));
  }
  if (heights.empty()) return heights;
  const std::vector<double> own = heights;
  for (const double press : kMandatoryPress) {
    const Sample at = SampleAt(profile.Levels, press, Quantity::Height);
    if (!at.Ok() || at.Value <= own.front() || at.Value >= own.back()) continue;
    const double height = Rounded(at.Value, 0);
    const bool isThere =
        std::ranges::any_of(own, [&](double other) { return std::fabs(other - height) < kNear; });
    if (!isThere) heights.push_back(height);
  }
  std::ranges::sort(heights);
  heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
  return heights;
}

SoundingRecord WithoutLevels(const SoundingRecord& sounding) {
  SoundingRecord bare = sounding;
  bare.Press.Clear();
  bare.Temp.Clear();
  bare.Dewpt.Clear();
  bare.WindHgt.Clear();
  bare.WindDir.Clear();
  bare.WindSpd.Clear();
  bare.WorkWindDir.Clear();
  bare.WorkWindSpd.Clear();
  return bare;
}

void BlendTemps(const Profile& main, const std::vector<Contributor>& all,
                const ForecastSettings& set, SoundingRecord& into) {
  for (const double press : WorkLevels(main.Sounding)) {
    const Sample height = SampleAt(main.Levels, press, Quantity::Height);
    const Sample temp = SampleAt(main.Levels, press, Quantity::Temp);
    const Sample dewpt = SampleAt(main.Levels, press, Quantity::Dewpt);
    if (!temp.Ok()) continue;
    const double share = height.Ok() ? ShareAt(height.Value - main.Ground(), set) : 0;
    const bool hasDewpt = dewpt.Ok() && !IsMissing(dewpt.Value);
    double newTemp = temp.Value;
    double newDewpt = hasDewpt ? dewpt.Value : kMissing;
    if (share > 0) {
      newTemp = Rounded(Mixed(temp.Value, MeanAt(all, press, Quantity::Temp, temp.Value), share),
                        kTempDecimals);
    }
    if (share > 0 && hasDewpt) {
      newDewpt =
          Rounded(Mixed(dewpt.Value, MeanAt(all, press, Quantity::Dewpt, dewpt.Value), share),
                  kTempDecimals);
    }
    into.AddTemp(press, newTemp, hasDewpt ? std::min(newDewpt, newTemp) : kMissing);
  }
}

void BlendWinds(const Profile& main, const std::vector<Contributor>& all,
                const ForecastSettings& set, SoundingRecord& into) {
  for (const double height : WindWorkLevels(main)) {
    const analysis::WindSample own = WindAtHeight(main.Sounding, height);
    if (!own.Ok()) continue;
    const double share = ShareAt(height - main.Ground(), set);
    const double press = GetPRESS(main.Levels, height);
    analysis::Wind wind = own.Value;
    if (share > 0 && HasHeight(press)) {
      const WindVector vector = Components(own.Value);
      const WindVector other = MeanWindAt(all, press, vector);
      wind = FromComponents({Mixed(vector.U, other.U, share), Mixed(vector.V, other.V, share)});
      wind = {Wrap360(Rounded(wind.Dir, kWindDecimals)), Rounded(wind.Spd, kWindDecimals)};
    }
    into.AddWind(height, wind.Dir, wind.Spd);
  }
}

// What so many hours of own advection come to, in hours of the first.
double FadingHours(int hours) {
  double sum = 0;
  for (int i = 0; i < hours; ++i) sum = 1 + kSteadiness * sum;
  return sum;
}

// The two winds around a height above ground, m, one at it or below and one above, at least so far
// apart that their difference tells of a gradient.
std::optional<fronts::FrontLayer> WindLayerAround(const Profile& profile, double height) {
  const SoundingRecord& sounding = profile.Sounding;
  std::vector<double> winds;
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (sounding.HasWind(i)) winds.push_back(sounding.WindHgt(i) - sounding.ElevM);
  }
  if (winds.size() < 2 || height < winds.front() - 100 || height > winds.back()) {
    return std::nullopt;
  }
  std::size_t above = 1;
  while (above + 1 < winds.size() && winds[above] <= height) ++above;
  std::size_t below = above - 1;
  while (winds[above] - winds[below] < kThickEnough) {
    const bool canRise = above + 1 < winds.size();
    if (below == 0 && !canRise) break;
    const bool rises = canRise && (below == 0 || winds[above] - height <= height - winds[below]);
    rises ? ++above : --below;
  }
  if (winds[above] - winds[below] < kThinnest) return std::nullopt;
  return fronts::LayerBetween(sounding, profile.Levels, winds[below], winds[above]);
}

}  // namespace

std::vector<double> InverseSquareWeights(std::span<const double> distancesKm) {
  std::vector<double> weights(distancesKm.size(), 0);
  if (distancesKm.empty()) return weights;
  const auto nearest = std::ranges::min_element(distancesKm);
  if (*nearest < kExactHit) {
    weights[static_cast<std::size_t>(nearest - distancesKm.begin())] = 1;
    return weights;
  }
  double sum = 0;
  for (std::size_t i = 0; i < weights.size(); ++i) {
    weights[i] = 1 / (distancesKm[i] * distancesKm[i]);
    sum += weights[i];
  }
  for (double& weight : weights) weight /= sum;
  return weights;
}

std::optional<StepChoice> ChoiceAt(const Region& region, const ForecastSettings& set, int hour) {
  const double depth = set.MainInUse() > 0 ? set.MainInUse() : kLowLayer;
  const std::optional<analysis::Wind> wind = LayerWind(*region.Main, depth);
  if (!wind) return std::nullopt;
  StepChoice choice{.Hour = hour};
  choice.RateKt = wind->Spd * set.Percentage / 100;
  choice.WindFrom = region.IsManual && region.WindFrom ? *region.WindFrom : wind->Dir;
  choice.UpwindKm = choice.RateKt * kKmPerNauticalMile * hour;
  choice.Parts.push_back({.DistanceKm = choice.UpwindKm});
  for (std::size_t i = 0; i < region.Near.size(); ++i) {
    const Neighbour& neighbour = region.Near[i];
    if (!neighbour.IsUpwind) continue;
    const double angle = Radians(neighbour.Bearing - choice.WindFrom);
    const double along = neighbour.RangeKm * std::cos(angle) - choice.UpwindKm;
    choice.Parts.push_back(
        {.Of = i, .DistanceKm = std::hypot(along, neighbour.RangeKm * std::sin(angle))});
    choice.FarthestKm = std::max(choice.FarthestKm, neighbour.AlongKm);
  }
  std::vector<double> distances;
  for (const Contribution& part : choice.Parts) distances.push_back(part.DistanceKm);
  const std::vector<double> weights = InverseSquareWeights(distances);
  for (std::size_t i = 0; i < weights.size(); ++i) choice.Parts[i].Weight = weights[i];
  return choice;
}

double ShareAt(double height, const ForecastSettings& set) {
  const double boundary = set.BoundaryInUse();
  const bool isSlowed = set.MainInUse() > 0 && boundary > 0 && height <= boundary;
  return TaperAt(height, set) * (isSlowed ? 0.5 : 1);
}

SoundingRecord Blend(const Region& region, const StepChoice& choice, const ForecastSettings& set) {
  const Profile& main = *region.Main;
  const std::vector<Contributor> all = ContributorsOf(region, choice);
  SoundingRecord made = WithoutLevels(main.Sounding);
  BlendTemps(main, all, set, made);
  BlendWinds(main, all, set, made);
  return made;
}

double AdvectionAt(const Profile& profile, double height, const ForecastSettings& set) {
  const std::optional<fronts::FrontLayer> layer =
      set.BoundaryInUse() > 0 && height <= set.BoundaryInUse()
          ? fronts::LayerBetween(profile.Sounding, profile.Levels, 0, set.BoundaryInUse())
          : WindLayerAround(profile, height);
  return layer ? layer->AdvectionCph : 0;
}

SoundingRecord AdvectAlone(const Profile& profile, const ForecastSettings& set, int hour) {
  SoundingRecord made = profile.Sounding;
  for (int i = 1; i <= made.NumTempLevels(); ++i) {
    const double height = profile.Levels.Height(i) - profile.Ground();
    const double taper = TaperAt(height, set);
    if (taper <= 0) continue;
    const double change =
        AdvectionAt(profile, height, set) * FadingHours(hour) * set.Percentage / 100 * taper;
    made.Temp(i) = Rounded(made.Temp(i) + change, kTempDecimals);
    if (!IsMissing(made.Dewpt(i))) made.Dewpt(i) = std::min(made.Dewpt(i), made.Temp(i));
  }
  return made;
}

SurfaceStep SurfaceStepOf(const ForecastSettings& set) {
  const double boundary = set.BoundaryInUse() > 0 ? set.BoundaryInUse() : kLowLayer;
  return {set.SurfaceChange, boundary * static_cast<int>(set.SurfaceSpread) / 3};
}

void ChangeSurface(SoundingRecord& sounding, std::span<const SurfaceStep> steps,
                   const AnalysisSettings& set) {
  if (sounding.NumTempLevels() == 0) return;
  const Levels<double> heights = analysis::DeriveHeights(sounding, set.Saturation);
  double total = 0;
  for (const SurfaceStep& step : steps) total += step.Change;
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    const double height = heights(i) - heights(1);
    double change = i == 1 ? total : 0;
    for (const SurfaceStep& step : steps) {
      if (i > 1 && height < step.Depth) change += step.Change * (1 - height / step.Depth);
    }
    if (change != 0) sounding.Temp(i) = Rounded(sounding.Temp(i) + change, kTempDecimals);
  }
  if (total > 0) {
    const double theta = analysis::DryTheta(sounding.Press(1), sounding.Temp(1));
    for (int i = 2; i <= sounding.NumTempLevels(); ++i) {
      if (analysis::DryTheta(sounding.Press(i), sounding.Temp(i)) >= theta) break;
      sounding.Temp(i) = Rounded(analysis::DryAdiabatTemp(theta, sounding.Press(i)), kTempDecimals);
    }
  }
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    if (!IsMissing(sounding.Dewpt(i))) {
      sounding.Dewpt(i) = std::min(sounding.Dewpt(i), sounding.Temp(i));
    }
  }
}

}  // namespace vexa::forecast
