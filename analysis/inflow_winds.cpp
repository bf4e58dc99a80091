#include "analysis/inflow_winds.h"

#include <algorithm>
#include <cmath>

#include "analysis/interpolate.h"
#include "analysis/working_wind.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kMeanApart = 100;   // m: winds nearer to each other do not change a mean
constexpr double kDeepBottom = 850;  // hPa
constexpr double kDeepTop = 300;     // hPa
constexpr double kJetDepth = 1500;   // m

WindVector Minus(const WindVector& a, const WindVector& b) {
  return {a.U - b.U, a.V - b.V};
}

double LengthOf(const WindVector& vector) {
  return std::hypot(vector.U, vector.V);
}

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

std::optional<WindVector> MeanOfLayer(const SoundingRecord& sounding, const LevelProfile& levels,
                                      double bottom, double top, Weighing weighing) {
  const std::vector<WindPoint> winds = WindsBetween(sounding, bottom, top, kMeanApart);
  if (winds.size() < 2) return std::nullopt;
  PressureWalk walk(levels, bottom);
  double below = walk.At(winds.front().Height);
  double weights = 0;
  WindVector sum;
  for (std::size_t i = 1; i < winds.size(); ++i) {
    const double press = walk.At(winds[i].Height);
    const double weight =
        (below - press) * (weighing == Weighing::ByPressure ? (below + press) / 2 : 1);
    sum.U += weight * (winds[i - 1].Wind.U + winds[i].Wind.U) / 2;
    sum.V += weight * (winds[i - 1].Wind.V + winds[i].Wind.V) / 2;
    weights += weight;
    below = press;
  }
  if (!(weights > 0)) return std::nullopt;
  return WindVector{sum.U / weights, sum.V / weights};
}

}  // namespace

std::vector<WindPoint> WindsBetween(const SoundingRecord& sounding, double bottom, double top,
                                    double apart) {
  const WindSample first = WindAtHeight(sounding, bottom);
  const WindSample last = WindAtHeight(sounding, top);
  if (!(top > bottom) || !first.Ok() || !last.Ok()) return {};
  std::vector<WindPoint> winds{{bottom, Components(first.Value)}};
  const std::vector<double>& heights = sounding.WindHgt.Values();
  auto next = static_cast<int>(std::ranges::upper_bound(heights, bottom) - heights.begin()) + 1;
  int below = next - 1;  // the last that was observed
  while (below > 0 && !sounding.HasWind(below)) --below;
  for (; next <= sounding.NumWindLevels(); ++next) {
    if (!sounding.HasWind(next)) continue;
    const double height = sounding.WindHgt(next);
    if (below > 0 && height - sounding.WindHgt(below) > kWidestWindGap) return {};
    if (height >= top) break;
    below = next;
    if (height - winds.back().Height < apart || !(height > winds.back().Height)) continue;
    winds.push_back({height, Components(WorkingWind(sounding, next))});
  }
  winds.push_back({top, Components(last.Value)});
  return winds;
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
  for (std::size_t i = 1; i < winds.size(); ++i) {
    sum += (LengthOf(Minus(winds[i - 1].Wind, motion)) + LengthOf(Minus(winds[i].Wind, motion))) /
           2 * (winds[i].Height - winds[i - 1].Height);
  }
  return sum / (winds.back().Height - winds.front().Height);
}

InflowWinds FindInflowWinds(const SoundingRecord& sounding, const AnalysisResults& results) {
  InflowWinds inflow;
  const LevelProfile& levels = results.Levels;
  if (levels.Count() < 2) return inflow;
  const double ground = levels.Height(1);
  const ParcelAscent& parcel =
      results.Lifts[static_cast<std::size_t>(LiftType::MostUnstable)].Forced;
  const bool hasTop = parcel.Equilibrium.Exists() && !parcel.IsCut;
  const EffectiveLayer& effective = results.Effective;

  if (effective.HasDepth()) {
    const std::vector<WindPoint> winds =
        WindsBetween(sounding, effective.Base.Height, effective.Top.Height);
    const std::optional<Mover>& mover = results.Storm.Chosen();
    if (mover && !winds.empty()) inflow.EffectiveHelicity = HelicityOf(winds, mover->Motion);
    inflow.EffectiveMean = MeanOfLayer(sounding, levels, effective.Base.Height,
                                       effective.Top.Height, Weighing::ByPressure);
  }
  if (effective.Exists() && hasTop) {
    const double base = effective.Base.Height;
    const WindSample below = WindAtHeight(sounding, base);
    const WindSample above = WindAtHeight(sounding, (base + parcel.Equilibrium.Height) / 2);
    if (below.Ok() && above.Ok()) {
      inflow.EffectiveShear = Minus(Components(above.Value), Components(below.Value));
    }
  }
  if (hasTop && parcel.Condensation.Height != kNone) {
    inflow.CloudMean = MeanOfLayer(sounding, levels, parcel.Condensation.Height,
                                   parcel.Equilibrium.Height, Weighing::ByPressure);
  }
  const Sample deepBottom =
      SampleAt(levels, std::min(kDeepBottom, levels.Press(1)), Quantity::Height);
  const Sample deepTop = SampleAt(levels, kDeepTop, Quantity::Height);
  if (deepBottom.Ok() && deepTop.Ok()) {
    inflow.DeepMean =
        MeanOfLayer(sounding, levels, deepBottom.Value, deepTop.Value, Weighing::ByMass);
  }
  inflow.LowMean = MeanOfLayer(sounding, levels, ground, ground + kJetDepth, Weighing::ByMass);
  return inflow;
}

}  // namespace vexa::analysis
