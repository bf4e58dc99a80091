#include "analysis/storm_motion.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "analysis/column_math.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kSurfaceWindDepth = 100;  // m: the lowest wind within it is the surface wind
constexpr double kAtTop = 1;               // m: a level this near the top stands for it
constexpr double kShearHeight = 5750;      // m above ground
constexpr double kDeviation = 15;          // kt
constexpr double kDeepLayer = 6000;        // m
constexpr double kShallowLayer = 1000;     // m
constexpr double kLowLayer = 500;          // m
// What kLayerMeanRule says.
constexpr double kLatestBegin = 500;  // m above the layer's base
constexpr double kLeastShare = 0.75;  // of the layer's depth
constexpr double kNoShear = 0.01;     // kt

constexpr double kRounding = 1;  // m: elevations are whole, the wind on the ground need not be

// The winds of a layer from the ground up, with the one at its top, interpolated where need be.
struct LayerWinds {
  std::span<const WindVector> Levels{};  // those of WindsAbove
  std::optional<WindVector> Top{};       // where no level stands there
  bool HasSurface = false;
  bool ReachesTop = false;
  bool IsFilled = false;  // by kLayerMeanRule: the winds stand for the layer

  std::size_t Count() const { return Levels.size() + (Top ? 1 : 0); }
  const WindVector& Highest() const { return Top ? *Top : Levels.back(); }
};

// Whether two neighbours among the lowest winds lie too far apart.
VEXA_WIDE bool HasGap(const double* heights, double ground, std::size_t count) {
  std::uint64_t gaps = 0;
  for (std::size_t i = 1; i < count; ++i) {
    const double depth =
        std::max(heights[i] - ground, 0.0) - std::max(heights[i - 1] - ground, 0.0);
    gaps |= depth > kWidestWindGap ? 1 : 0;
  }
  return gaps != 0;
}

// The winds from the ground up, for all layers above it.
class WindsAbove {
 public:
  WindsAbove(const WindProfile& winds, double ground) : winds_(winds), ground_(ground) {
    while (first_ < winds.Count() && winds.Heights[first_] - ground < -kRounding) ++first_;
    count_ = winds.Count() - first_;
  }

  LayerWinds Layer(double depth) const {
    LayerWinds layer;
    layer.HasSurface = count_ > 0 && Height(0) <= kSurfaceWindDepth && Height(0) <= depth + kAtTop;
    const std::size_t count =
        CountWhile([&](std::size_t i) { return Height(i) <= depth + kAtTop; });
    const std::size_t inside =
        CountWhile([&](std::size_t i) { return Height(i) < depth - kAtTop; });
    const bool hasGap =
        HasGap(winds_.Heights.data() + first_, ground_, std::min(inside + 1, count_));
    layer.Levels = std::span(winds_.Vectors).subspan(first_, count);
    const double reached = count > 0 ? Height(count - 1) : 0;
    layer.ReachesTop = count > 0 && std::fabs(reached - depth) <= kAtTop;
    if (!layer.ReachesTop) {
      layer.Top = VectorAtHeight(winds_, ground_ + depth);
      layer.ReachesTop = layer.Top.has_value();
    }
    layer.IsFilled =
        BeginsInTime(depth) && !hasGap && (layer.ReachesTop || reached >= kLeastShare * depth);
    return layer;
  }

 private:
  // m above the ground of one of them, from 0.
  double Height(std::size_t i) const { return std::max(winds_.Heights[first_ + i] - ground_, 0.0); }

  // How many of them, from the lowest on, are so; each that is not has none above it that is.
  template <class IsSo>
  std::size_t CountWhile(IsSo isSo) const {
    std::size_t low = 0;
    if (!winds_.IsOrdered) {
      while (low < count_ && isSo(low)) ++low;
      return low;
    }
    for (std::size_t high = count_; low < high;) {
      const std::size_t middle = low + (high - low) / 2;
      if (isSo(middle)) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low;
  }

  bool BeginsInTime(double depth) const {
    if (count_ == 0) return false;
    const bool isAboveOthers =
        first_ > 0 && Height(0) - (winds_.Heights[first_ - 1] - ground_) <= kWidestWindGap;
    return isAboveOthers || Height(0) <= std::min(kLatestBegin, depth + kAtTop);
  }

  const WindProfile& winds_;
  double ground_;
  std::size_t first_ = 0;  // among the winds
  std::size_t count_ = 0;
};

std::optional<WindVector> MeanOf(const LayerWinds& layer) {
  if (layer.Count() == 0) return std::nullopt;
  WindVector sum;
  const auto add = [&sum](const WindVector& wind) {
    sum.U += wind.U;
    sum.V += wind.V;
  };
  for (const WindVector& wind : layer.Levels) add(wind);
  if (layer.Top) add(*layer.Top);
  const auto count = static_cast<double>(layer.Count());
  return WindVector{sum.U / count, sum.V / count};
}

std::optional<WindVector> MeanFromGround(const WindsAbove& winds, double depth) {
  const LayerWinds layer = winds.Layer(depth);
  return layer.IsFilled ? MeanOf(layer) : std::nullopt;
}

// The wind at the top of a layer minus the one at the ground.
std::optional<WindVector> ShearOf(const LayerWinds& layer) {
  if (!layer.HasSurface || !layer.ReachesTop || layer.Count() < 2) return std::nullopt;
  return Minus(layer.Highest(), layer.Levels.front());
}

double HelicityOf(const LayerWinds& layer, const WindVector& motion) {
  if (!layer.HasSurface || !layer.ReachesTop || !layer.IsFilled || layer.Count() < 2) {
    return kNone;
  }
  double sum = 0;
  WindVector below = Minus(layer.Levels.front(), motion);
  const auto add = [&](const WindVector& wind) {
    const WindVector above = Minus(wind, motion);
    sum += above.U * below.V - below.U * above.V;
    below = above;
  };
  for (const WindVector& wind : layer.Levels.subspan(1)) add(wind);
  if (layer.Top) add(*layer.Top);
  return kKnotToMs * kKnotToMs * sum;
}

// The wind at 5750 m above ground between the first level above it and the one below; a sounding
// that ends lower gives its last wind.
WindVector ShearTopWind(const WindProfile& winds, double ground) {
  if (winds.Count() == 0) return {};
  std::size_t high = 0;
  while (high + 1 < winds.Count() &&
         (high == 0 || !(winds.Heights[high] - ground > kShearHeight))) {
    ++high;
  }
  const bool isAbove = winds.Heights[high] - ground > kShearHeight;
  const std::size_t low = isAbove && high > 0 ? high - 1 : high;
  const WindVector& lower = winds.Vectors[low];
  const WindVector& upper = winds.Vectors[high];
  double lowerWeight = 1;
  double upperWeight = 1;
  if (high != low) {
    lowerWeight = winds.Heights[high] - ground - kShearHeight;
    upperWeight = kShearHeight - (winds.Heights[low] - ground);
  }
  const double sum = lowerWeight + upperWeight;
  return {(lower.U * lowerWeight + upper.U * upperWeight) / sum,
          (lower.V * lowerWeight + upper.V * upperWeight) / sum};
}

using HelicityLayers = std::array<LayerWinds, kHelicityDepthsKm.size()>;

Mover MoverOf(const HelicityLayers& layers, const WindVector& motion) {
  Mover mover{.Motion = motion};
  for (std::size_t i = 0; i < layers.size(); ++i) {
    mover.Helicity[i] = HelicityOf(layers[i], motion);
  }
  return mover;
}

std::optional<Movers> BunkersOf(const WindProfile& winds, double ground,
                                const std::optional<WindVector>& mean,
                                const std::optional<WindVector>& low, int deviationFactor) {
  if (!mean || !low) return std::nullopt;
  const WindVector shear = Minus(ShearTopWind(winds, ground), *low);
  const double size = LengthOf(shear);
  if (size < kNoShear) return Movers{*mean, *mean};
  const double deviation = kDeviation * deviationFactor;
  const WindVector aside{deviation * shear.V / size, -deviation * shear.U / size};
  return Movers{{mean->U + aside.U, mean->V + aside.V}, {mean->U - aside.U, mean->V - aside.V}};
}

// The winds of a layer and the next one above it.
WindProfile WindsUpTo(const SoundingRecord& sounding, double ground, double depth) {
  return DeriveWinds(sounding, ground + depth + kAtTop);
}

}  // namespace

std::optional<WindVector> LayerMeanWind(const WindProfile& winds, double ground, double depth) {
  return MeanFromGround(WindsAbove(winds, ground), depth);
}

std::optional<WindVector> LayerMeanWind(const SoundingRecord& sounding, double ground,
                                        double depth) {
  return LayerMeanWind(WindsUpTo(sounding, ground, depth), ground, depth);
}

bool WindsStandFor(const WindProfile& winds, double ground, double depth) {
  return WindsAbove(winds, ground).Layer(depth).IsFilled;
}

float BRNnbr(const std::optional<WindVector>& mean6km,
             const std::optional<WindVector>& meanHalfKm) {
  if (!mean6km || !meanHalfKm) return static_cast<float>(kNone);
  const double shearMs = kKnotToMsBrn * LengthOf(Minus(*mean6km, *meanHalfKm));
  return static_cast<float>(0.5 * shearMs * shearMs);
}

std::optional<Movers> Bunkers(const SoundingRecord& sounding, double ground, int deviationFactor) {
  const WindProfile winds = WindsUpTo(sounding, ground, kDeepLayer);
  const WindsAbove above(winds, ground);
  return BunkersOf(winds, ground, MeanFromGround(above, kDeepLayer),
                   MeanFromGround(above, kLowLayer), deviationFactor);
}

std::optional<Movers> TraditionalMotion(const WindProfile& winds, double ground,
                                        const StormSettings& settings) {
  const double bottom = settings.ShearLayerBottomKm * 1000;
  const double depth = settings.ShearLayerTopKm * 1000 - bottom;
  const std::optional<WindVector> mean = LayerMeanWind(winds, ground + bottom, depth);
  if (!mean) return std::nullopt;
  const Wind wind = FromComponents(*mean);
  const double speed = wind.Spd * settings.ShearLayerPct / 100;
  const auto turned = [&](double degrees) {
    return Components({Wrap360(wind.Dir + degrees), speed});
  };
  return Movers{turned(settings.ShearLayerDeg), turned(-settings.ShearLayerDeg)};
}

double StormRelativeHelicity(const WindProfile& winds, double ground, double depth,
                             const WindVector& motion) {
  return HelicityOf(WindsAbove(winds, ground).Layer(depth), motion);
}

double StormRelativeHelicity(const SoundingRecord& sounding, double ground, double depth,
                             const WindVector& motion) {
  return StormRelativeHelicity(WindsUpTo(sounding, ground, depth), ground, depth, motion);
}

StormMotionResults AnalyseStormMotion(const SoundingRecord& sounding, const WindProfile& profile,
                                      const StormSettings& settings) {
  StormMotionResults results;
  const double ground = sounding.ElevM;
  results.RightIsCyclonic = !sounding.IsSouthern();
  const WindsAbove winds(profile, ground);
  const LayerWinds deep = winds.Layer(kDeepLayer);
  results.Mean6km = deep.IsFilled ? MeanOf(deep) : std::nullopt;
  results.MeanHalfKm = MeanFromGround(winds, kLowLayer);
  results.BrnShear = BRNnbr(results.Mean6km, results.MeanHalfKm);
  results.Shear1km = ShearOf(winds.Layer(kShallowLayer));
  results.Shear6km = ShearOf(deep);
  HelicityLayers layers;
  for (std::size_t i = 0; i < layers.size(); ++i) {
    layers[i] = winds.Layer(kHelicityDepthsKm[i] * 1000);
  }
  results.RightIsChosen = settings.Mover == StormMover::Right ||
                          (settings.Mover == StormMover::Cyclonic && results.RightIsCyclonic);
  std::optional<Movers> movers = settings.Motion == StormMotion::Bunkers
                                     ? BunkersOf(profile, ground, results.Mean6km,
                                                 results.MeanHalfKm, settings.DeviationFactor)
                                     : TraditionalMotion(profile, ground, settings);
  if (movers) {
    results.Right = MoverOf(layers, movers->Right);
    results.Left = MoverOf(layers, movers->Left);
  }
  if (settings.MotionMode == Scaling::Manual) {
    results.ChosenIsManual = true;
    (results.RightIsChosen ? results.Right : results.Left) =
        MoverOf(layers, Components({settings.ManualMotionDir, settings.ManualMotionSpd}));
  }
  return results;
}

StormMotionResults AnalyseStormMotion(const SoundingRecord& sounding,
                                      const StormSettings& settings) {
  return AnalyseStormMotion(sounding, DeriveWinds(sounding), settings);
}

std::string_view StormMotionResults::ChosenName() const {
  if (ChosenIsManual) {
    return RightIsChosen ? "right mover, manual" : "left mover, manual";
  }
  return RightIsChosen ? "right mover" : "left mover";
}

}  // namespace vexa::analysis
