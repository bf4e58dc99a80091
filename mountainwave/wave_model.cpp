#include "mountainwave/wave_model.h"

#include <algorithm>
#include <cmath>

#include "core/units.h"

namespace vexa::mountainwave {
namespace {

double Square(double value) {
  return value * value;
}

// Depth-weighted mean of the wind from the lowest level to that of an index; m/s.
double MeanWindBelow(const std::vector<FlowLevel>& levels, std::size_t top) {
  double sum = 0;
  for (std::size_t i = 0; i < top; ++i) {
    sum += (levels[i].Wind + levels[i + 1].Wind) / 2 * (levels[i + 1].Height - levels[i].Height);
  }
  const double depth = levels[top].Height - levels.front().Height;
  return depth > 0 ? sum / depth : levels.front().Wind;
}

PassedOver Objection(const Interface& at) {
  if (at.Fall <= 0) return PassedOver::Rises;
  if (!IsTrapped(at.Fall, at.DepthKm)) return PassedOver::Untrapped;
  if (at.WindHere < kCriticalWindMs) return PassedOver::Calm;
  return PassedOver::No;
}

PassedOver Objection(const Mode& mode) {
  if (mode.K == 0) return PassedOver::NoMode;
  if (mode.LengthKm < kLeastLengthKm || mode.LengthKm > kMostLengthKm) return PassedOver::Length;
  return PassedOver::No;
}

void KeepTheStrongerOfNeighbours(std::vector<Wave>& waves, std::vector<Interface>& interfaces) {
  std::vector<Wave> kept;
  for (const Wave& wave : waves) {  // the strongest first
    const bool isNearby = std::ranges::any_of(kept, [&](const Wave& stronger) {
      return std::fabs(stronger.At.Height - wave.At.Height) < kNearbyM;
    });
    if (!isNearby) {
      kept.push_back(wave);
      continue;
    }
    for (Interface& at : interfaces) {
      if (at.Level == wave.At.Level) at.Why = PassedOver::Nearby;
    }
  }
  waves = std::move(kept);
}

// |sin μH|, by which the wave below the interface is measured. The law for r is not exact; the wave
// must not come out stronger for that.
double ScaleOf(const Wave& wave) {
  return std::max(std::fabs(std::sin(wave.Of.Mu * wave.At.DepthKm)),
                  std::sin(Radians(wave.Of.Angle)));
}

bool IsStronger(const Wave& a, const Wave& b) {
  return a.MaxVelocity > b.MaxVelocity;
}

}  // namespace

double GuardedExp(double x) {
  constexpr double kMostExponent = 709;
  constexpr double kBeyond = 8.2e307;
  return x > kMostExponent ? kBeyond : std::exp(x);
}

double TrappingThreshold(double depthKm) {
  return Square(kPi / (2 * depthKm));
}

bool IsTrapped(double fall, double depthKm) {
  return fall > TrappingThreshold(depthKm);
}

int HighestMode(double x) {
  if (x < 4.71) return 1;
  return x <= 7.84 ? 2 : 3;
}

float Response(double x) {
  switch (HighestMode(x)) {
    case 1:
      return static_cast<float>(133.8 * std::pow(x, -0.91));
    case 2:
      return static_cast<float>(485.1 * std::pow(x, -1.15));
    default:
      return static_cast<float>(1275 * std::pow(x, -1.335));
  }
}

double ModeAngle(double x, int n) {
  constexpr int kSteps = 60;  // to the last bit
  double low = 0;
  double high = kPi / 2;
  for (int i = 0; i < kSteps; ++i) {
    const double middle = (low + high) / 2;
    (middle + x * std::sin(middle) < n * kPi ? low : high) = middle;
  }
  return low * kDegPerRadian;
}

Mode ModeOf(double fall, double l2Above, int number, double angle) {
  const double sine = std::sin(Radians(angle));
  const double cosine = std::cos(Radians(angle));
  const double root = std::sqrt(std::fabs(fall));
  Mode mode{.Number = number, .Angle = angle, .Mu = root * sine, .Nu = root * cosine};
  const double radicand = l2Above + fall * Square(cosine);
  if (!(radicand > 0)) return mode;
  mode.K = std::sqrt(radicand);
  mode.LengthKm = 2 * kPi / mode.K;
  return mode;
}

std::vector<Interface> FindInterfaces(const CrossFlow& flow,
                                      const std::vector<ScorerLayer>& layers) {
  std::vector<Interface> interfaces;
  for (std::size_t k = 1; k < layers.size(); ++k) {
    const FlowLevel& level = flow.Levels[k];
    Interface at{.Level = static_cast<int>(k) + 1, .Press = level.Press, .Height = level.Height};
    at.DepthKm = FeetFromMeters(level.Height) * kKmPerFoot;
    at.L2Below = layers[k - 1].L2();
    at.L2Above = layers[k].L2();
    at.Fall = at.L2Below - at.L2Above;
    at.Threshold = TrappingThreshold(at.DepthKm);
    at.MeanWind = MeanWindBelow(flow.Levels, k);
    at.WindHere = level.Wind;
    at.DensityRatio = std::sqrt(flow.GroundDensity / level.Density);
    at.Why = Objection(at);
    if (at.Fall > 0 && IsTrapped(at.Fall, at.DepthKm)) {
      at.X = at.DepthKm * std::sqrt(std::fabs(at.Fall));
      at.Highest =
          ModeOf(at.Fall, at.L2Above, HighestMode(at.X), static_cast<double>(Response(at.X)));
    }
    if (at.Why == PassedOver::No) at.Why = Objection(at.Highest);
    interfaces.push_back(at);
  }
  return interfaces;
}

Wave WaveOf(const Interface& at, const Mode& mode, double relief,
            std::optional<double> halfWidthKm) {
  Wave wave{.At = at, .Of = mode, .HalfWidthKm = halfWidthKm.value_or(1 / mode.K)};
  wave.Forcing = 2 * kPi * relief * wave.HalfWidthKm * GuardedExp(-mode.K * wave.HalfWidthKm);
  const double root = std::sqrt(std::fabs(at.Fall));
  const double sine = std::sin(Radians(mode.Angle));
  const double depth = at.DepthKm + 1 / mode.Nu;
  wave.Amplitude = wave.Forcing * (at.MeanWind / at.WindHere) * at.DensityRatio * root *
                   Square(sine) / (mode.K * depth);
  wave.MaxVelocity = 1e-3 * wave.Forcing * at.MeanWind * at.DensityRatio * root * sine / depth;
  const double steepest = std::max(mode.Mu / ScaleOf(wave), mode.Nu);  // km⁻¹
  wave.Steepness = wave.Amplitude / 1000 * steepest;
  if (wave.Breaks()) {
    wave.Amplitude /= wave.Steepness;
    wave.MaxVelocity /= wave.Steepness;
  }
  return wave;
}

double ShareAt(const Wave& wave, double heightKm) {
  const double depth = wave.At.DepthKm;
  const double sineR = std::sin(Radians(wave.Of.Angle));
  const double atInterface = std::sin(wave.Of.Mu * depth);
  const double scale = ScaleOf(wave);
  if (heightKm <= depth) return std::sin(wave.Of.Mu * heightKm) / scale * sineR;
  return atInterface / scale * GuardedExp(-wave.Of.Nu * (heightKm - depth)) * sineR;
}

double VelocityAt(const Wave& wave, double heightKm) {
  return std::fabs(wave.MaxVelocity * ShareAt(wave, heightKm));
}

RidgeForm FormOf(const Ridge& ridge, double stationElev) {
  return {.Relief = MetersFromFeet(ridge.HeightFt) - stationElev,
          .HalfWidthKm = ridge.HalfWidthNm * kKmPerNauticalMile,
          .Axis = ridge.Axis};
}

RidgeForm DefaultForm() {
  return {.Relief = kDefaultRelief};
}

RidgeWaves WavesBehind(const Air& air, const RidgeForm& form, int mountain) {
  RidgeWaves behind{.Form = form};
  if (!(form.Relief > 0)) {
    behind.Flow.WhyNone = "The mountain does not rise above the station.";
    return behind;
  }
  behind.Flow = FlowAcross(air, form.Relief, form.Axis);
  behind.Layers = ScorerProfile(behind.Flow.Levels);
  if (!behind.Flow.WhyNone.empty()) return behind;
  behind.Interfaces = FindInterfaces(behind.Flow, behind.Layers);
  for (Interface& at : behind.Interfaces) {
    if (at.Why != PassedOver::No) continue;
    const Wave wave = WaveOf(at, at.Highest, form.Relief, form.HalfWidthKm);
    if (wave.MaxVelocity < kLeastVelocityMs) {
      at.Why = PassedOver::Faint;
    } else {
      behind.Waves.push_back(wave);
    }
  }
  std::ranges::stable_sort(behind.Waves, IsStronger);
  KeepTheStrongerOfNeighbours(behind.Waves, behind.Interfaces);
  if (behind.Waves.empty()) return behind;
  behind.Waves.front().Kind = WaveKind::Predominant;
  std::vector<Wave> harmonics;
  for (const Wave& wave : behind.Waves) {
    for (int n = wave.Of.Number - 1; n >= 1; --n) {
      const Mode mode = ModeOf(wave.At.Fall, wave.At.L2Above, n, ModeAngle(wave.At.X, n));
      if (Objection(mode) != PassedOver::No) continue;
      Wave harmonic = WaveOf(wave.At, mode, form.Relief, form.HalfWidthKm);
      harmonic.Kind = WaveKind::Harmonic;
      if (harmonic.MaxVelocity >= kLeastVelocityMs) harmonics.push_back(harmonic);
    }
  }
  behind.Waves.insert(behind.Waves.end(), harmonics.begin(), harmonics.end());
  std::stable_sort(behind.Waves.begin() + 1, behind.Waves.end(), IsStronger);
  for (Wave& wave : behind.Waves) wave.Mountain = mountain;
  return behind;
}

std::vector<const Wave*> WaveResults::All() const {
  std::vector<const Wave*> all;
  for (const RidgeWaves& ridge : Ridges) {
    if (ridge.Predominant() != nullptr) all.push_back(ridge.Predominant());
  }
  const auto others = static_cast<std::ptrdiff_t>(all.size());
  for (const RidgeWaves& ridge : Ridges) {
    for (std::size_t i = 1; i < ridge.Waves.size(); ++i) all.push_back(&ridge.Waves[i]);
  }
  std::stable_sort(all.begin() + others, all.end(),
                   [](const Wave* a, const Wave* b) { return IsStronger(*a, *b); });
  return all;
}

WaveResults ComputeWaves(const SoundingRecord& sounding, const analysis::LevelProfile& levels,
                         const Site& site) {
  const Air air = AirOf(sounding, levels);
  WaveResults results{.IsDefault = !site.has_value()};
  if (!site) {
    results.Ridges.push_back(WavesBehind(air, DefaultForm(), 1));
    return results;
  }
  results.Ridges.push_back(WavesBehind(air, FormOf(site->First, air.StationElev), 1));
  if (site->HasSecond()) {
    results.DistanceKm = site->DistanceNm * kKmPerNauticalMile;
    results.Ridges.push_back(WavesBehind(air, FormOf(site->Second, air.StationElev), 2));
  }
  return results;
}

analysis::WaveWord TurbulenceAt(const WaveResults& waves, double height) {
  const Wave* wave = waves.Ridges.empty() ? nullptr : waves.Ridges.front().Predominant();
  return wave == nullptr ? analysis::WaveWord{}
                         : analysis::WaveTurbulence(VelocityAt(*wave, height / 1000));
}

double CombinedAmplitude(double first, double second, double k, double distanceKm) {
  return std::sqrt(std::max(
      0.0, Square(first) + Square(second) + 2 * first * second * std::cos(k * distanceKm)));
}

double LeftAfter(double km, const Decay& decay, double lengthKm) {
  constexpr double kMostPercent = 99.9;
  const double percent = std::clamp(decay.Percent, 0.0, kMostPercent);
  const double kappa = -std::log(1 - percent / 100) / (decay.AtWavelength * lengthKm);
  return GuardedExp(-kappa * km);
}

const Wave* ShownOf(const RidgeWaves& ridge, const Wave* selected) {
  for (const Wave& wave : ridge.Waves) {
    if (&wave == selected) return selected;
  }
  return ridge.Predominant();
}

Motion MotionAt(const WaveResults& waves, const std::optional<Decay>& decay, double xKm, double zKm,
                const Wave* selected) {
  Motion motion;
  for (const RidgeWaves& ridge : waves.Ridges) {
    const Wave* shown = ShownOf(ridge, selected);
    for (const Wave& wave : ridge.Waves) {
      // Waves of other interfaces are other accounts of the same air, not more of it.
      if (wave.At.Level != shown->At.Level) continue;
      const double x = wave.Mountain == 2 ? xKm - waves.DistanceKm : xKm;
      if (x < 0) continue;
      const double left = decay ? LeftAfter(x, *decay, wave.Of.LengthKm) : 1;
      const double share = ShareAt(wave, zKm) * left;
      // Down first behind the crest, as the air comes down the lee slope.
      motion.Velocity -= wave.MaxVelocity * share * std::cos(wave.Of.K * x);
      const double highest = wave.Amplitude / std::sin(Radians(wave.Of.Angle));
      motion.Displacement -= highest * share * std::sin(wave.Of.K * x);
    }
  }
  return motion;
}

}  // namespace vexa::mountainwave
