#include "analysis/effective_layer.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/adiabat_table.h"
#include "analysis/column_math.h"
#include "analysis/moist_air.h"
#include "analysis/parcel_air.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kApart = 5;  // hPa between the levels that are tried
constexpr int kSpan = 48;     // hPa of an ascent at a time: most are decided in a few spans

VEXA_WIDE void Subtract(const double* parcel, const double* environment, std::size_t count,
                        double* differences) {
  for (std::size_t i = 0; i < count; ++i) differences[i] = parcel[i] - environment[i];
}

// J/kg of each step but the first, from the one below.
VEXA_WIDE void FillStepEnergies(const double* differences, const double* logs, std::size_t count,
                                double* energies) {
  for (std::size_t i = 1; i < count; ++i) {
    energies[i] =
        kDryGasConstant * (differences[i - 1] + differences[i]) / 2 * (logs[i - 1] - logs[i]);
  }
}

// Lifts a level by whole hPa only until it is known whether it feeds a storm: the sums are those of
// ParcelLifter, from the start up to where one of them passes its limit.
class InflowTest {
 public:
  explicit InflowTest(const ParcelAir& air) : air_(air) {}

  bool Feeds(int level) {
    Begin(level);
    for (int bottom = first_; bottom >= air_.Grid.Top; bottom -= kSpan) {
      const int top = std::max(bottom - kSpan + 1, air_.Grid.Top);
      FillSpan(bottom, top);
      FillEnergies(bottom, top);
      // Sums of the span first, which go side by side; one by one only where a limit is passed.
      const auto count = static_cast<std::size_t>(bottom - top) + 1;
      const auto free = static_cast<std::size_t>(
          std::clamp(bottom - static_cast<int>(std::ceil(condensation_)) + 1, 0, bottom - top + 1));
      const double gain = PositiveSum(energy_.data(), free, count);
      const double loss = NegativeSum(energy_.data(), 0, count);
      if (cape_ + gain < kFeedingCape && cin_ + loss >= kFeedingCin) {
        cape_ += gain;
        cin_ += loss;
        continue;
      }
      for (std::size_t i = 0; i < count; ++i) {
        cin_ += std::min(energy_[i], 0.0);
        if (cin_ < kFeedingCin) return false;
        if (i >= free) cape_ += std::max(energy_[i], 0.0);
        if (cape_ >= kFeedingCape) return true;
      }
    }
    return false;
  }

 private:
  void Begin(int level) {
    const double press = air_.Levels.Press(level);
    const double temp = air_.Levels.Temp(level);
    theta_ = air_.Levels.Theta(level);
    thetaE_ = air_.Levels.ThetaE(level);
    mixing_ = air_.Levels.MixingRatio(level);
    condensation_ =
        LclPressure(press, temp, Condense(temp, std::min(air_.Levels.Dewpt(level), temp)));
    first_ = static_cast<int>(std::min<double>(press, air_.Grid.Bottom));
    cape_ = 0;
    cin_ = 0;
  }

  // The parcel's temperatures, dry below its condensation level and saturated above.
  void FillSpan(int bottom, int top) {
    const WholePressures& whole = WholeHpa();
    int press = bottom;
    for (; press >= top && press > condensation_; --press) {
      const double temp = theta_ * whole.Poisson[GridIndex(press)] - kKelvinOffset;
      parcel_[static_cast<std::size_t>(bottom - press)] =
          air_.IsVirtual ? VirtualTemp(temp, mixing_) : temp;
    }
    if (press < top) return;
    const auto dry = static_cast<std::size_t>(bottom - press);
    air_.Table.Blend(thetaE_, air_.Over, press, top,
                     (air_.IsVirtual ? bulb_ : parcel_).data() + dry,
                     air_.IsVirtual ? parcel_.data() + dry : nullptr);
  }

  // J/kg of each step from the one below; the first of all has none.
  void FillEnergies(int bottom, int top) {
    const double* environment = air_.Environment().data() + (air_.Grid.Bottom - bottom);
    const double* logs = WholeHpa().Log.data() + GridIndex(bottom);
    const auto count = static_cast<std::size_t>(bottom - top) + 1;
    Subtract(parcel_.data(), environment, count, difference_.data() + 1);
    energy_[0] = bottom == first_
                     ? 0
                     : kDryGasConstant * (difference_[0] + difference_[1]) / 2 * (log_ - logs[0]);
    FillStepEnergies(difference_.data() + 1, logs, count, energy_.data());
    difference_[0] = difference_[count];
    log_ = logs[count - 1];
  }

  ParcelAir air_;
  std::array<double, kSpan> parcel_{};  // °C, virtual where the base is
  std::array<double, kSpan> bulb_{};    // °C
  double theta_ = 0, thetaE_ = 0, mixing_ = 0, condensation_ = 0;
  int first_ = 0;
  std::array<double, kSpan + 1> difference_{};  // K; the first is that below the span
  std::array<double, kSpan> energy_{};          // J/kg
  double cape_ = 0, cin_ = 0, log_ = 0;
};

// Levels whose air can be lifted, from below.
std::vector<int> LiftableLevels(const LevelProfile& levels, const PressureGrid& grid) {
  const std::vector<double>& pressures = levels.Press.Values();
  const std::vector<double>& thetas = levels.Theta.Values();
  const std::vector<double>& thetaEs = levels.ThetaE.Values();
  std::vector<int> liftable(pressures.size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < pressures.size() && pressures[i] >= grid.Top; ++i) {
    if (NotAvailable(thetaEs[i]) || !(thetaEs[i] > 0) || !(thetas[i] > 0)) continue;
    liftable[count] = static_cast<int>(i) + 1;
    ++count;
  }
  liftable.resize(count);
  return liftable;
}

}  // namespace

EffectiveLayer FindEffectiveLayer(const LevelProfile& levels, const PressureGrid& grid,
                                  const AnalysisSettings& options, const ParcelAscent& mostUnstable,
                                  AdiabatTable& table) {
  if (grid.Empty() || mostUnstable.CapeTotal < kFeedingCape) return {};
  const std::vector<int> liftable = LiftableLevels(levels, grid);
  InflowTest test(ParcelAir(levels, grid, options, table));
  const double lowest = levels.Press(1) - options.SearchDepth;
  const auto pressOf = [&](std::size_t i) { return levels.Press(liftable[i]); };
  // The first of the levels from one on that answers so, tried in steps; the count for none.
  const auto firstThat = [&](bool feeds, std::size_t from, double highest) {
    std::size_t before = from;  // the last that answered otherwise
    for (std::size_t i = from; i < liftable.size() && pressOf(i) >= highest; ++i) {
      if (i > from && i + 1 < liftable.size() && pressOf(before) - pressOf(i) < kApart) continue;
      if (test.Feeds(liftable[i]) != feeds) {
        before = i;
        continue;
      }
      if (i == from) return i;
      std::size_t found = i;
      while (found - before > 1) {
        const std::size_t middle = before + (found - before) / 2;
        (test.Feeds(liftable[middle]) == feeds ? found : before) = middle;
      }
      return found;
    }
    return liftable.size();
  };
  const std::size_t base = firstThat(true, 0, lowest);
  if (base == liftable.size()) return {};
  const std::size_t end = firstThat(false, base, 0);
  return {PointOf(levels, liftable[base]), PointOf(levels, liftable[end - 1])};
}

}  // namespace vexa::analysis
