#include "analysis/inflow_winds.h"

#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kPieceDepth = 100;  // m: all air of a piece weighs the same in a mean
constexpr double kDeepBottom = 850;  // hPa
constexpr double kDeepTop = 300;     // hPa
constexpr double kJetDepth = 1500;   // m

// Pressure at heights that do not fall.
class PressureWalk {
 public:
  explicit PressureWalk(const LevelProfile& levels, double from) : levels_(levels) {
    const std::vector<double>& heights = levels.Height.Values();
    const auto above = std::ranges::upper_bound(heights, from);
    low_ = std::max(1, static_cast<int>(above - heights.begin()));
  }

  double At(double height) {
    while (low_ + 1 < levels_.Count() && levels_.Height(low_ + 1) <= height) ++low_;
    const int high = std::min(low_ + 1, levels_.Count());
    const double depth = levels_.Height(high) - levels_.Height(low_);
    const double share = depth > 0 ? (height - levels_.Height(low_)) / depth : 0;
    return std::exp(levels_.LogPress(low_) +
                    share * (levels_.LogPress(high) - levels_.LogPress(low_)));
  }

 private:
  const LevelProfile& levels_;
  int low_ = 1;
};

// How a mean over a layer weighs its winds: all air alike, or the dense air below more once again,
// as the mean winds of effective layer and cloud are published.
enum class Weighing { ByMass, ByPressure };

// Pieces of the layer weigh by the pressures at their ends, and their winds by height.
std::optional<WindVector> MeanOfLayer(const AnalysisResults& results, double bottom, double top,
                                      Weighing weighing) {
  const std::vector<WindPoint> winds = WindsBetween(results.Winds, bottom, top);
  if (winds.size() < 2) return std::nullopt;
  PressureWalk walk(results.Levels, bottom);
  double base = bottom;
  double below = walk.At(base);
  double weights = 0;
  WindVector sum, piece;  // the piece's times its depth, m
  for (std::size_t i = 1; i < winds.size(); ++i) {
    const double height = winds[i].Height;
    const double half = (height - winds[i - 1].Height) / 2;
    piece.U += half * (winds[i - 1].Wind.U + winds[i].Wind.U);
    piece.V += half * (winds[i - 1].Wind.V + winds[i].Wind.V);
    if (i + 1 < winds.size() && winds[i + 1].Height - base < kPieceDepth) continue;
    const double press = walk.At(height);
    const double weight =
        (below - press) * (weighing == Weighing::ByPressure ? (below + press) / 2 : 1);
    const double perMetre = weight / (height - base);
    sum.U += perMetre * piece.U;
    sum.V += perMetre * piece.V;
    weights += weight;
    below = press;
    base = height;
    piece = {};
  }
  if (!(weights > 0)) return std::nullopt;
  return WindVector{sum.U / weights, sum.V / weights};
}

}  // namespace

std::vector<WindPoint> WindsBetween(const WindProfile& winds, double bottom, double top) {
  const std::optional<WindVector> first = VectorAtHeight(winds, bottom);
  const std::optional<WindVector> last = VectorAtHeight(winds, top);
  if (!(top > bottom) || !first || !last) return {};
  const std::vector<double>& heights = winds.Heights;
  auto next = static_cast<std::size_t>(std::ranges::upper_bound(heights, bottom) - heights.begin());
  const auto end =
      static_cast<std::size_t>(std::ranges::upper_bound(heights, top) - heights.begin());
  std::vector<WindPoint> between(std::max(end, next) - next + 2);
  between[0] = {bottom, *first};
  std::size_t count = 1;
  for (; next < winds.Count(); ++next) {
    const double height = heights[next];
    if (next > 0 && height - heights[next - 1] > kWidestWindGap) return {};
    if (height >= top) break;
    if (!(height > between[count - 1].Height)) continue;
    between[count] = {height, winds.Vectors[next]};
    ++count;
  }
  between[count] = {top, *last};
  between.resize(count + 1);
  return between;
}

double HelicityOf(const std::vector<WindPoint>& winds, const WindVector& motion) {
  double sum = 0;
  for (std::size_t i = 1; i < winds.size(); ++i) {
    const WindVector below = Minus(winds[i - 1].Wind, motion);
    const WindVector above = Minus(winds[i].Wind, motion);
    sum += above.U * below.V - below.U * above.V;
  }
  return kKnotToMs * kKnotToMs * sum;
}

// Each step of the hodograph is a piece of vorticity, its helicity over the relative speed the part
// of it along the flow.
std::optional<double> StreamwiseShare(const std::vector<WindPoint>& winds,
                                      const WindVector& motion) {
  double along = 0;
  double whole = 0;
  for (std::size_t i = 1; i < winds.size(); ++i) {
    const WindVector below = Minus(winds[i - 1].Wind, motion);
    const WindVector above = Minus(winds[i].Wind, motion);
    const double speed = LengthOf({(below.U + above.U) / 2, (below.V + above.V) / 2});
    if (speed > 0) along += (above.U * below.V - below.U * above.V) / speed;
    whole += LengthOf(Minus(above, below));
  }
  if (!(whole > 0)) return std::nullopt;
  return along / whole;
}

double MeanRelativeSpeed(const std::vector<WindPoint>& winds, const WindVector& motion) {
  if (winds.size() < 2) return 0;
  double sum = 0;
  double below = LengthOf(Minus(winds.front().Wind, motion));
  for (std::size_t i = 1; i < winds.size(); ++i) {
    const double above = LengthOf(Minus(winds[i].Wind, motion));
    sum += (below + above) / 2 * (winds[i].Height - winds[i - 1].Height);
    below = above;
  }
  return sum / (winds.back().Height - winds.front().Height);
}

InflowWinds FindInflowWinds(const AnalysisResults& results) {
  InflowWinds inflow;
  const LevelProfile& levels = results.Levels;
  if (levels.Count() < 2) return inflow;
  const double ground = levels.Height(1);
  const ParcelAscent& parcel = results.Forced[static_cast<std::size_t>(LiftType::MostUnstable)];
  const bool hasTop = parcel.Equilibrium.Exists() && !parcel.IsCut;
  const EffectiveLayer& effective = results.Effective;

  if (effective.HasDepth()) {
    const std::vector<WindPoint> winds =
        WindsBetween(results.Winds, effective.Base.Height, effective.Top.Height);
    const std::optional<Mover>& mover = results.Storm.Chosen();
    if (mover && !winds.empty()) inflow.EffectiveHelicity = HelicityOf(winds, mover->Motion);
    inflow.EffectiveMean =
        MeanOfLayer(results, effective.Base.Height, effective.Top.Height, Weighing::ByPressure);
  }
  if (effective.Exists() && hasTop) {
    const double base = effective.Base.Height;
    const auto below = VectorAtHeight(results.Winds, base);
    const auto above = VectorAtHeight(results.Winds, (base + parcel.Equilibrium.Height) / 2);
    if (below && above) inflow.EffectiveShear = Minus(*above, *below);
  }
  if (hasTop && parcel.Condensation.Height != kNone) {
    inflow.CloudMean = MeanOfLayer(results, parcel.Condensation.Height, parcel.Equilibrium.Height,
                                   Weighing::ByPressure);
  }
  const Sample deepBottom =
      SampleAt(levels, std::min(kDeepBottom, levels.Press(1)), Quantity::Height);
  const Sample deepTop = SampleAt(levels, kDeepTop, Quantity::Height);
  if (deepBottom.Ok() && deepTop.Ok()) {
    inflow.DeepMean = MeanOfLayer(results, deepBottom.Value, deepTop.Value, Weighing::ByMass);
  }
  inflow.LowMean = MeanOfLayer(results, ground, ground + kJetDepth, Weighing::ByMass);
  return inflow;
}

}  // namespace vexa::analysis
