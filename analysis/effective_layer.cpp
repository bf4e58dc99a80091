#include "analysis/effective_layer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/column_math.h"
#include "analysis/moist_air.h"
#include "analysis/parcel_air.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kApart = 5;  // hPa between the levels that are tried
constexpr int kSpan = 64;     // hPa of an ascent at a time: most are decided in a few spans

// Sums of the values above and below zero.
struct SignedSums {
  double Above = 0;
  double Below = 0;
};

// Eight steps at a time.
constexpr std::size_t kLanes = 8;
using Lanes = double __attribute__((vector_size(kLanes * sizeof(double))));

// The same where they stand in a column.
using LanesThere =
    double __attribute__((vector_size(kLanes * sizeof(double)), aligned(8), may_alias));

inline const LanesThere& LanesAt(const double* values) {
  return *reinterpret_cast<const LanesThere*>(values);
}

inline double SumOf(const Lanes& lanes) {
  return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
         ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

using Columns = AdiabatTable::Adiabat::Columns;

// A piece of an ascent by whole hPa, from its lowest step on, and what lies about it.
struct Piece {
  Columns Parcel{};
  double Offset = 0;  // °C, of the parcel's temperatures from what the columns give
  const double* Environment = nullptr;  // °C
  const double* LogSteps = nullptr;     // from the step below to each
};

// J/kg that a parcel gains and loses in some steps of a piece, from the step below them on.
//
// count        a multiple of kLanes
// difference   K, parcel minus environment at the step below; becomes that of the highest
VEXA_WIDE SignedSums SumThrough(const Piece& piece, std::size_t from, std::size_t count,
                                double& difference) {
  const double* a = piece.Parcel.Temps[0];
  const double* b = piece.Parcel.Temps[1];
  const double* c = piece.Parcel.Temps[2];
  const double* d = piece.Parcel.Temps[3];
  const auto [wa, wb, wc, wd] = piece.Parcel.Weights;
  Lanes above{}, below{};
  Lanes last = {0, 0, 0, 0, 0, 0, 0, difference};
  for (std::size_t i = from; i < from + count; i += kLanes) {
    const Lanes parcel =
        wa * LanesAt(a + i) + wb * LanesAt(b + i) + wc * LanesAt(c + i) + wd * LanesAt(d + i);
    const Lanes here = parcel + piece.Offset - LanesAt(piece.Environment + i);
    const Lanes oneBelow = __builtin_shufflevector(last, here, 7, 8, 9, 10, 11, 12, 13, 14);
    const Lanes energy = kDryGasConstant * (oneBelow + here) / 2 * LanesAt(piece.LogSteps + i);
    above += energy > 0.0 ? energy : Lanes{};
    below += energy < 0.0 ? energy : Lanes{};
    last = here;
  }
  difference = last[kLanes - 1];
  return {SumOf(above), SumOf(below)};
}

// Lifts a level by whole hPa only until it is known whether it feeds a storm: the sums are those of
// ParcelLifter, from the start up to where one of them passes its limit.
class InflowTest {
 public:
  explicit InflowTest(const ParcelAir& air) : air_(air) {}

  bool Feeds(int level) {
    Begin(level);
    RiseDry();
    while (!IsDecided() && next_ >= air_.Grid.Top) {
      const Columns parcel = adiabat_.From(next_);
      Rise(PieceOf(parcel, 0), std::max(parcel.Top, air_.Grid.Top), Gain::Counts);
    }
    return cin_ >= kFeedingCin && cape_ >= kFeedingCape;
  }

 private:
  enum class Gain { Counts, IsNone };

  void Begin(int level) {
    const double press = air_.Levels.Press(level);
    const double temp = air_.Levels.Temp(level);
    const double mixing = air_.Levels.MixingRatio(level);
    warmth_ =
        air_.Levels.Theta(level) * (air_.IsVirtual ? (1 + mixing / kEpsilon) / (1 + mixing) : 1);
    adiabat_ = air_.Table.Along(air_.Levels.ThetaE(level), air_.Over, air_.IsVirtual);
    condensation_ =
        LclPressure(press, temp, Condense(temp, std::min(air_.Levels.Dewpt(level), temp)));
    next_ = static_cast<int>(std::min<double>(press, air_.Grid.Bottom));
    isFirst_ = true;
    cape_ = 0;
    cin_ = 0;
  }

  bool IsDecided() const { return cin_ < kFeedingCin || cape_ >= kFeedingCape; }

  // From the next step on.
  Piece PieceOf(const Columns& parcel, double offset) const {
    return {.Parcel = parcel,
            .Offset = offset,
            .Environment = air_.Environment().data() + (air_.Grid.Bottom - next_),
            .LogSteps = WholeHpa().LogStep.data() + GridIndex(next_)};
  }

  // Up to the condensation level, where nothing that is gained counts.
  void RiseDry() {
    const double* poisson = WholeHpa().Poisson.data() + GridIndex(next_);
    const int top = std::max(static_cast<int>(std::floor(condensation_)) + 1, air_.Grid.Top);
    if (next_ >= top) {
      const Columns parcel{.Temps = {poisson, poisson, poisson, poisson},
                           .Weights = {warmth_, 0, 0, 0}};
      Rise(PieceOf(parcel, -kKelvinOffset), top, Gain::IsNone);
    }
    // A step at the level itself is saturated, and so is the first where condensation lies there.
    if (!IsDecided() && next_ >= air_.Grid.Top && (isFirst_ || next_ == condensation_)) {
      Rise(PieceOf(adiabat_.From(next_), 0), next_, Gain::IsNone);
    }
  }

  // Up to a pressure or to where it is decided: spans of steps side by side, one by one where both
  // limits are passed in one of them.
  void Rise(const Piece& piece, int top, Gain gain) {
    const auto count = static_cast<std::size_t>(next_ - top) + 1;
    for (std::size_t i = 0; i < count && !IsDecided();) {
      const std::size_t steps = std::min<std::size_t>(count - i, kSpan) / kLanes * kLanes;
      if (isFirst_ || steps == 0) {
        Step(piece, i, gain);
        ++i;
        continue;
      }
      double difference = difference_;
      const SignedSums sums = SumThrough(piece, i, steps, difference);
      const double gained = gain == Gain::Counts ? sums.Above : 0;
      if (cape_ + gained >= kFeedingCape && cin_ + sums.Below < kFeedingCin) {
        for (const std::size_t end = i + steps; i < end && !IsDecided(); ++i) Step(piece, i, gain);
        continue;
      }
      cape_ += gained;
      cin_ += sums.Below;
      difference_ = difference;
      next_ -= static_cast<int>(steps);
      i += steps;
    }
  }

  void Step(const Piece& piece, std::size_t i, Gain gain) {
    double temp = piece.Offset;
    for (std::size_t k = 0; k < 4; ++k) temp += piece.Parcel.Weights[k] * piece.Parcel.Temps[k][i];
    const double here = temp - piece.Environment[i];
    const double below = isFirst_ ? -here : difference_;  // nothing is done to the first
    const double energy = kDryGasConstant * (below + here) / 2 * piece.LogSteps[i];
    difference_ = here;
    isFirst_ = false;
    --next_;
    cin_ += std::min(energy, 0.0);
    if (gain == Gain::Counts && cin_ >= kFeedingCin) cape_ += std::max(energy, 0.0);
  }

  ParcelAir air_;
  AdiabatTable::Adiabat adiabat_{};
  double warmth_ = 0;        // K, of the dry ascent; virtual where the base is
  double condensation_ = 0;  // hPa
  int next_ = 0;             // hPa, of the next step
  bool isFirst_ = true;
  double difference_ = 0;      // K, parcel minus environment at the step below the next
  double cape_ = 0, cin_ = 0;  // J/kg
};

// Levels whose air can be lifted, from below, looked for as far up as they are asked for.
class LiftableLevels {
 public:
  LiftableLevels(const LevelProfile& levels, const PressureGrid& grid)
      : levels_(levels), top_(grid.Top) {
    found_.reserve(levels.Press.Values().size());
  }

  /// Whether there is a level of this place among them, from 0.
  bool Has(std::size_t place) {
    const std::vector<double>& pressures = levels_.Press.Values();
    const std::vector<double>& thetaEs = levels_.ThetaE.Values();
    for (; found_.size() <= place && seen_ < pressures.size() && pressures[seen_] >= top_;
         ++seen_) {
      const bool isMoist = !NotAvailable(thetaEs[seen_]) && thetaEs[seen_] > 0;
      if (isMoist && levels_.Theta.Values()[seen_] > 0) {
        found_.push_back({static_cast<int>(seen_) + 1, pressures[seen_]});
      }
    }
    return found_.size() > place;
  }
  int At(std::size_t place) const { return found_[place].Level; }
  double PressAt(std::size_t place) const { return found_[place].Press; }  // hPa

 private:
  struct Place {
    int Level;
    double Press;
  };
  const LevelProfile& levels_;
  double top_;            // hPa
  std::size_t seen_ = 0;  // levels
  std::vector<Place> found_{};
};

}  // namespace

EffectiveLayer FindEffectiveLayer(const LevelProfile& levels, const PressureGrid& grid,
                                  const AnalysisSettings& options, const ParcelAscent& mostUnstable,
                                  AdiabatTable& table) {
  if (grid.Empty() || mostUnstable.CapeTotal < kFeedingCape) return {};
  LiftableLevels liftable(levels, grid);
  InflowTest test(ParcelAir(levels, grid, options, table));
  const auto feeds = [&](std::size_t place) { return test.Feeds(liftable.At(place)); };
  // The first of the levels from one on that answers so, tried in steps; empty for none.
  const auto firstThat = [&](bool wanted, std::size_t from,
                             double highest) -> std::optional<std::size_t> {
    if (!liftable.Has(from) || liftable.PressAt(from) < highest) return std::nullopt;
    if (feeds(from) == wanted) return from;
    std::size_t before = from;  // the last that answered otherwise
    for (std::size_t i = from + 1; liftable.Has(i) && liftable.PressAt(i) >= highest; ++i) {
      const bool isNear = liftable.PressAt(before) - liftable.PressAt(i) < kApart;
      if (isNear && liftable.Has(i + 1)) continue;
      if (feeds(i) != wanted) {
        before = i;
        continue;
      }
      std::size_t found = i;
      while (found - before > 1) {
        const std::size_t middle = before + (found - before) / 2;
        (feeds(middle) == wanted ? found : before) = middle;
      }
      return found;
    }
    return std::nullopt;
  };
  const double lowest = levels.Press(1) - options.SearchDepth;
  const std::optional<std::size_t> base = firstThat(true, 0, lowest);
  if (!base) return {};
  const std::optional<std::size_t> end = firstThat(false, *base, 0);
  std::size_t last = end ? *end - 1 : *base;
  while (!end && liftable.Has(last + 1)) ++last;
  return {PointOf(levels, liftable.At(*base)), PointOf(levels, liftable.At(last))};
}

}  // namespace vexa::analysis
