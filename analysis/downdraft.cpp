#include "analysis/downdraft.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "analysis/column_math.h"
#include "analysis/moist_air.h"
#include "analysis/parcel_air.h"
#include "analysis/vapor_table.h"
#include "core/markers.h"

namespace vexa::analysis {
namespace {

constexpr double kHighestSource = 6000;     // m above sea level
constexpr double kHighStation = 4000;       // m; above it the source may lie …
constexpr double kAboveHighStation = 2000;  // m above the ground

// What a sinking parcel gains from each whole hPa to the next below it, J/kg; the first is left
// out.
VEXA_WIDE void FillGains(const double* environment, const double* parcel, const double* logs,
                         std::size_t count, double* gains) {
  VEXA_INDEPENDENT
  for (std::size_t i = 1; i < count; ++i) {
    const double below = environment[i - 1] - parcel[i - 1];
    const double here = environment[i] - parcel[i];
    gains[i] = kDryGasConstant * (below + here) / 2 * (logs[i - 1] - logs[i]);
  }
}

class Descent {
 public:
  explicit Descent(const ParcelAir& air)
      : air_(air),
        lowest_(LowestWhole()),
        areas_(air.Environment().size()),
        pieces_(air.Table, air.Over, std::min(lowest_ + 1, kGridBottom), air.IsVirtual) {}

  // What ByWholeHpa gives, to 1e-4 J/kg, from sums along the columns: for finding a source among
  // thousands, each at the same small cost.
  double Estimate(int source) {
    const auto at = static_cast<std::size_t>(source) - 1;
    const double top = air_.Levels.Press.Values()[at];
    const int last = static_cast<int>(std::ceil(top));
    const std::optional<AdiabatPiece> parcel =
        lowest_ < kGridBottom && last <= lowest_ ? pieces_.Up(air_.Levels.ThetaE.Values()[at], last)
                                                 : std::nullopt;
    if (!parcel) return ByWholeHpa(source, GroundTemp(source));

    const double* environment = air_.Environment().data();
    const double* logs = WholeHpa().Log.data();
    const std::vector<double>& levelTemps = air_.LevelEnvironment();
    const std::vector<double>& levelLogs = air_.Levels.LogPress.Values();
    const auto first = static_cast<std::size_t>(air_.Grid.Bottom - lowest_);
    const auto end = static_cast<std::size_t>(air_.Grid.Bottom - last);
    const double ground = air_.Levels.Press.Values()[0];
    const double atGround = parcel->Second + (parcel->Bottom - parcel->Second) * (ground - lowest_);
    const double lowestLog = logs[GridIndex(lowest_)];
    double energy = Gain(levelTemps[0] - atGround, environment[first] - parcel->Second,
                         levelLogs[0] - lowestLog);
    energy += kDryGasConstant * (AreaTo(end) - AreaTo(first) - parcel->Area);
    if (last > top) {
      energy += Gain(environment[end] - parcel->Top, TabledDifference(source, SourceTemp(source)),
                     logs[GridIndex(last)] - levelLogs[at]);
    }
    return energy;
  }

  // By whole hPa between the source and the ground, and the pieces at both ends.
  //
  // groundTemp   °C, of the saturated parcel that has come down
  double ByWholeHpa(int source, double groundTemp) {
    const double top = air_.Levels.Press(source);
    const double ground = air_.Levels.Press(1);
    const int first = lowest_;
    const int last = static_cast<int>(std::ceil(top));
    Begin(std::log(ground), Difference(1, groundTemp));
    if (first < last) {
      Add(std::log(top), Difference(source, SourceTemp(source)));
      return energy_;
    }
    const std::vector<double>& parcel =
        Adiabat(air_.Levels.ThetaE(source), first, last, air_.IsVirtual);
    const double* environment = air_.Environment().data() + (air_.Grid.Bottom - first);
    const double* logs = WholeHpa().Log.data() + GridIndex(first);
    const std::size_t end = parcel.size() - 1;
    Add(logs[0], environment[0] - parcel[0]);
    gains_.resize(parcel.size());
    FillGains(environment, parcel.data(), logs, parcel.size(), gains_.data());
    energy_ += SumOfAll(gains_.data(), 1, parcel.size());
    log_ = logs[end];
    difference_ = environment[end] - parcel[end];
    if (last > top) Add(std::log(top), Difference(source, SourceTemp(source)));
    return energy_;
  }

  // By the levels of the sounding.
  double ByLevels(int source, double groundTemp) {
    Begin(std::log(air_.Levels.Press(1)), Difference(1, groundTemp));
    const int first =
        static_cast<int>(std::ceil(std::min<double>(air_.Levels.Press(1), kGridBottom)));
    const int last = std::max(1, static_cast<int>(std::floor(air_.Levels.Press(source))));
    const std::vector<double>& temps = Adiabat(air_.Levels.ThetaE(source), first, last, false);
    for (int i = 2; i <= source; ++i) {
      const double below = std::clamp<double>(first - air_.Levels.Press(i), 0, first - last);
      const auto step = static_cast<std::size_t>(below);
      const double share = below - static_cast<double>(step);
      const double next = step + 1 < temps.size() ? temps[step + 1] : temps[step];
      Add(air_.Levels.LogPress(i), Difference(i, temps[step] + share * (next - temps[step])));
    }
    return energy_;
  }

  double GroundTemp(int source) const {
    return LiftSat(air_.Levels.ThetaE(source), air_.Levels.Press(1), air_.Over).Temp;
  }

 private:
  // Temperatures, °C, of the saturated adiabat at bottom, bottom - 1 … hPa; virtual ones where
  // asked.
  const std::vector<double>& Adiabat(double thetaE, int bottom, int top, bool isVirtual) {
    const auto count = static_cast<std::size_t>(bottom - top) + 1;
    temps_.resize(count);
    if (isVirtual) virtuals_.resize(count);
    air_.Table.Blend(thetaE, air_.Over, bottom, top, temps_.data(),
                     isVirtual ? virtuals_.data() : nullptr);
    return isVirtual ? virtuals_ : temps_;
  }

  // The highest whole hPa of the grid that is not below the ground.
  int LowestWhole() const {
    return std::min(air_.Grid.Bottom, static_cast<int>(std::floor(air_.Levels.Press(1))));
  }

  double SourceTemp(int source) const { return air_.Levels.WetBulb(source); }

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

  // From a pressure to a lower one, J/kg.
  static double Gain(double below, double above, double depth) {
    return kDryGasConstant * (below + above) / 2 * depth;
  }

  void Begin(double logPress, double difference) {
    energy_ = 0;
    log_ = logPress;
    difference_ = difference;
  }

  void Add(double logPress, double difference) {
    energy_ += Gain(difference_, difference, log_ - logPress);
    log_ = logPress;
    difference_ = difference;
  }

  ParcelAir air_;
  int lowest_;                 // hPa
  std::vector<double> areas_;  // K, of the surroundings, from the grid's bottom up
  std::size_t summed_ = 0;     // of them behind the first
  AdiabatTable::Pieces pieces_;
  std::vector<double> temps_{};
  std::vector<double> virtuals_{};
  std::vector<double> gains_{};  // J/kg from each whole hPa to the next
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
  const double* pressures = levels.Press.Values().data();
  const double* thetas = levels.ThetaE.Values().data();
  const double* heights = levels.Height.Values().data();
  for (int i = 2; i <= levels.Count() && heights[i - 1] <= highest; ++i) {
    if (!(pressures[i - 1] >= grid.Top)) break;
    const double below = std::min(pressures[0], pressures[i - 2]);
    if (NotAvailable(thetas[i - 1]) || !(pressures[i - 1] < below)) continue;
    if (options.Dcape == DcapeMode::Best) {
      const double energy = descent.Estimate(i);
      if (source == 0 || energy > most) {
        most = energy;
        source = i;
      }
    } else if (source == 0 || thetas[i - 1] < thetas[source - 1]) {
      source = i;
    }
  }
  if (source == 0) return result;
  const double groundTemp = descent.GroundTemp(source);
  const double energy = options.Dcape == DcapeMode::Fast ? descent.ByLevels(source, groundTemp)
                                                         : descent.ByWholeHpa(source, groundTemp);
  result.Energy = std::max(energy, 0.0);
  result.Source = {levels.Press(source), levels.Height(source), levels.Temp(source)};
  result.SurfaceTemp = groundTemp;
  return result;
}

}  // namespace vexa::analysis
