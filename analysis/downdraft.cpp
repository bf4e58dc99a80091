#include "analysis/downdraft.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "analysis/moist_air.h"
#include "analysis/parcel_air.h"
#include "analysis/vapor_table.h"
#include "core/markers.h"

namespace vexa::analysis {
namespace {

constexpr double kHighestSource = 6000;     // m above sea level
constexpr double kHighStation = 4000;       // m; above it the source may lie …
constexpr double kAboveHighStation = 2000;  // m above the ground

class Descent {
 public:
  explicit Descent(const ParcelAir& air)
      : air_(air), lowest_(LowestWhole()), areas_(air.Environment().size()) {}

  // What ByWholeHpa gives, to 1e-4 J/kg, from sums along the columns: for finding a source among
  // thousands, each at the same small cost.
  double Estimate(int source) {
    const double ground = air_.Levels.Press(1);
    const double top = air_.Levels.Press(source);
    const int last = static_cast<int>(std::ceil(top));
    const int below = lowest_ + 1;
    const std::optional<AdiabatPiece> parcel =
        below <= kGridBottom && last <= lowest_
            ? air_.Table.Piece(air_.Levels.ThetaE(source), air_.Over, below, last, air_.IsVirtual)
            : std::nullopt;
    if (!parcel) return ByWholeHpa(source);

    const std::vector<double>& environment = air_.Environment();
    const auto& logs = WholeHpa().Log;
    const auto first = static_cast<std::size_t>(air_.Grid.Bottom - lowest_);
    const auto end = static_cast<std::size_t>(air_.Grid.Bottom - last);
    const double atGround = parcel->Second + (parcel->Bottom - parcel->Second) * (ground - lowest_);
    Begin(air_.Levels.LogPress(1),
          (air_.IsVirtual ? air_.Levels.VirtualTemp(1) : air_.Levels.Temp(1)) - atGround);
    Add(logs[GridIndex(lowest_)], environment[first] - parcel->Second);
    energy_ += kDryGasConstant * (AreaTo(end) - AreaTo(first) - parcel->Area);
    log_ = logs[GridIndex(last)];
    difference_ = environment[end] - parcel->Top;
    if (last > top) Add(air_.Levels.LogPress(source), TabledDifference(source, SourceTemp(source)));
    return energy_;
  }

  // By whole hPa between the source and the ground, and the pieces at both ends.
  double ByWholeHpa(int source) {
    const double top = air_.Levels.Press(source);
    const double ground = air_.Levels.Press(1);
    const int first = lowest_;
    const int last = static_cast<int>(std::ceil(top));
    Begin(std::log(ground), GroundDifference(source));
    if (first < last) {
      Add(std::log(top), Difference(source, SourceTemp(source)));
      return energy_;
    }
    const auto count = static_cast<std::size_t>(first - last) + 1;
    temps_.resize(count);
    virtuals_.resize(count);
    Adiabat(air_.Levels.ThetaE(source), first, last);
    const std::vector<double>& environment = air_.Environment();
    const std::vector<double>& parcel = air_.IsVirtual ? virtuals_ : temps_;
    const auto offset = static_cast<std::size_t>(air_.Grid.Bottom - first);
    const WholePressures& whole = WholeHpa();
    for (std::size_t i = 0; i < count; ++i) {
      const int press = first - static_cast<int>(i);
      Add(whole.Log[GridIndex(press)], environment[offset + i] - parcel[i]);
    }
    if (last > top) Add(std::log(top), Difference(source, SourceTemp(source)));
    return energy_;
  }

  // By the levels of the sounding.
  double ByLevels(int source) {
    Begin(std::log(air_.Levels.Press(1)), GroundDifference(source));
    const int first =
        static_cast<int>(std::ceil(std::min<double>(air_.Levels.Press(1), kGridBottom)));
    const int last = std::max(1, static_cast<int>(std::floor(air_.Levels.Press(source))));
    temps_.resize(static_cast<std::size_t>(first - last) + 1);
    virtuals_.resize(temps_.size());
    Adiabat(air_.Levels.ThetaE(source), first, last);
    for (int i = 2; i <= source; ++i) {
      const double below = std::clamp<double>(first - air_.Levels.Press(i), 0, first - last);
      const auto step = static_cast<std::size_t>(below);
      const double share = below - static_cast<double>(step);
      const double next = step + 1 < temps_.size() ? temps_[step + 1] : temps_[step];
      Add(air_.Levels.LogPress(i), Difference(i, temps_[step] + share * (next - temps_[step])));
    }
    return energy_;
  }

  double GroundTemp(int source) const {
    return LiftSat(air_.Levels.ThetaE(source), air_.Levels.Press(1), air_.Over).Temp;
  }

 private:
  void Adiabat(double thetaE, int bottom, int top) {
    double* virtuals = air_.IsVirtual ? virtuals_.data() : nullptr;
    air_.Table.Blend(thetaE, air_.Over, bottom, top, temps_.data(), virtuals);
  }

  // The highest whole hPa of the grid that is not below the ground.
  int LowestWhole() const {
    return std::min(air_.Grid.Bottom, static_cast<int>(std::floor(air_.Levels.Press(1))));
  }

  double SourceTemp(int source) const { return air_.Levels.WetBulb(source); }

  double GroundDifference(int source) const { return Difference(1, GroundTemp(source)); }

  // Surroundings minus the saturated parcel at a level.
  double Difference(int level, double parcelTemp) const {
    if (!air_.IsVirtual) return air_.Levels.Temp(level) - parcelTemp;
    const double mixing = ThetaPoint(air_.Levels.Press(level), parcelTemp, air_.Over).MixingRatio;
    return air_.Levels.VirtualTemp(level) - VirtualTemp(parcelTemp, mixing);
  }

  // The same with the vapour pressure from the table.
  double TabledDifference(int level, double parcelTemp) const {
    if (!air_.IsVirtual) return air_.Levels.Temp(level) - parcelTemp;
    const double mixing = TabledMixingRatio(air_.Levels.Press(level), parcelTemp, air_.Over);
    return air_.Levels.VirtualTemp(level) - VirtualTemp(parcelTemp, mixing);
  }

  // Trapezoids of the surroundings over -ln p from the grid's bottom up to an entry of the grid,
  // summed as far as they are asked for and somewhat further.
  double AreaTo(std::size_t end) {
    if (end > summed_) SumTo(end);
    return areas_[end];
  }

  void SumTo(std::size_t end) {
    constexpr std::size_t kFurther = 64;
    const std::size_t to = std::min(end + kFurther, areas_.size() - 1);
    const double* environment = air_.Environment().data();
    const double* logs = WholeHpa().Log.data() + GridIndex(air_.Grid.Bottom);
    double sum = areas_[summed_];
    for (std::size_t i = summed_ + 1; i <= to; ++i) {
      sum += (environment[i - 1] + environment[i]) / 2 * (logs[i - 1] - logs[i]);
      areas_[i] = sum;
    }
    summed_ = to;
  }

  void Begin(double logPress, double difference) {
    energy_ = 0;
    log_ = logPress;
    difference_ = difference;
  }

  void Add(double logPress, double difference) {
    energy_ += kDryGasConstant * (difference_ + difference) / 2 * (log_ - logPress);
    log_ = logPress;
    difference_ = difference;
  }

  ParcelAir air_;
  int lowest_;                 // hPa
  std::vector<double> areas_;  // K, of the surroundings, from the grid's bottom up
  std::size_t summed_ = 0;     // of them behind the first
  std::vector<double> temps_{};
  std::vector<double> virtuals_{};
  double energy_ = 0;
  double log_ = 0;
  double difference_ = 0;
};

}  // namespace

Downdraft FindDowndraft(const LevelProfile& levels, const PressureGrid& grid,
                        const AnalysisSettings& options, AdiabatTable& table) {
  Downdraft result;
  if (levels.Count() < 2 || !(levels.Press(1) > 0)) return result;
  const double ground = levels.Height(1);
  const double highest = ground > kHighStation ? ground + kAboveHighStation : kHighestSource;
  Descent descent(ParcelAir(levels, grid, options, table));
  int source = 0;
  double most = 0;  // J/kg
  for (int i = 2; i <= levels.Count() && levels.Height(i) <= highest; ++i) {
    if (!(levels.Press(i) >= grid.Top)) break;
    if (NotAvailable(levels.ThetaE(i)) || !(levels.Press(i) < levels.Press(i - 1))) continue;
    if (options.Dcape == DcapeMode::Best) {
      const double energy = descent.Estimate(i);
      if (source == 0 || energy > most) {
        most = energy;
        source = i;
      }
    } else if (source == 0 || levels.ThetaE(i) < levels.ThetaE(source)) {
      source = i;
    }
  }
  if (source == 0) return result;
  const double energy =
      options.Dcape == DcapeMode::Fast ? descent.ByLevels(source) : descent.ByWholeHpa(source);
  result.Energy = std::max(energy, 0.0);
  result.Source = {levels.Press(source), levels.Height(source), levels.Temp(source)};
  result.SurfaceTemp = descent.GroundTemp(source);
  return result;
}

}  // namespace vexa::analysis
