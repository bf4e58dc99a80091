#include "analysis/parcel_source.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "analysis/column_air.h"
#include "analysis/column_math.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/vapor_table.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kSurfaceSearch = 100;   // hPa
constexpr double kLogPressWidth = 1e-9;  // where the bisection for the CCL ends

ParcelStart StartAt(const LevelProfile& levels, int level) {
  return {levels.Press(level), levels.Temp(level), levels.Dewpt(level)};
}

// The mean of one quantity over [top, surface], weighted by pressure; kMissing unless both ends
// have it.
double LayerMeanOf(const LevelProfile& levels, const Levels<double>& values, Quantity quantity,
                   double top) {
  if (NotAvailable(values(1))) return kMissing;
  const std::vector<double>& pressures = levels.Press.Values();
  if (!(top < pressures[0])) return values(1);
  const Sample end = SampleAt(levels, top, quantity);
  if (!end.Ok()) return kMissing;
  double sum = 0;
  double pressBelow = pressures[0];
  double below = values(1);
  const auto add = [&](double press, double value) {
    sum += (below + value) / 2 * (pressBelow - press);
    pressBelow = press;
    below = value;
  };
  for (std::size_t i = 1; i < pressures.size() && pressures[i] > top; ++i) {
    const double value = values.Values()[i];
    if (!NotAvailable(value)) add(pressures[i], value);
  }
  add(top, end.Value);
  return sum / (pressures[0] - top);
}

// Whether any of a block of whole pressures, from bottom up, has air that a mixing ratio saturates,
// or air beyond the ladder: then each of them is looked at by itself.
VEXA_WIDE bool MaySaturate(const double* temps, int bottom, double mixingRatio, ColumnVapor table) {
  constexpr double kColdest = 125, kWarmest = 395;  // K, on the ladder
  ColumnVapor::Block::Column tempsK;
  ColumnVapor::Block vapor;
  std::uint64_t found = 0;
  for (std::size_t i = 0; i < tempsK.size(); ++i) {
    const double tempK = temps[i] + kKelvinOffset;
    tempsK[i] = std::min(std::max(tempK, kColdest), kWarmest);
    found |= tempsK[i] == tempK ? 0 : 1;
  }
  table.Find(tempsK, vapor);
  for (std::size_t i = 0; i < tempsK.size(); ++i) {
    const double pressure = vapor.At(i).Pressure;
    const double dry = bottom - static_cast<int>(i) - pressure;
    const double mixing = dry == 0 ? 0 : kEpsilon * pressure / dry;
    const bool isSaturated = (mixing >= 0) & (mixing <= mixingRatio);
    found |= isSaturated ? 1 : 0;
  }
  return found != 0;
}

// Temperatures by ln p just above a pressure, as SampleAt has them: for a search that looks at many
// between neighbouring levels.
class TempsAbove {
 public:
  TempsAbove(const LevelProfile& levels, double press) : levels_(levels) {
    const std::vector<double>& pressures = levels.Press.Values();
    const auto above = std::partition_point(pressures.begin(), pressures.end(),
                                            [press](double value) { return value >= press; });
    first_ = static_cast<std::size_t>(above - pressures.begin());
  }

  Sample At(double logPress, double press) const {
    if (!levels_.PressFalls || first_ == 0) return SampleAt(levels_, press, Quantity::Temp);
    const std::vector<double>& logs = levels_.LogPress.Values();
    std::size_t high = first_;
    while (high < logs.size() && logs[high] > logPress) ++high;
    if (high == logs.size() || !(levels_.Press.Values()[high] > 0)) return {};
    const double lowTemp = levels_.Temp.Values()[high - 1];
    const double highTemp = levels_.Temp.Values()[high];
    if (NotAvailable(lowTemp) || NotAvailable(highTemp)) return {0, Found::Missing};
    const double depth = logPress - logs[high - 1];
    const double span = logs[high] - logs[high - 1];
    return {lowTemp + (highTemp - lowTemp) * depth / span, Found::Value};
  }

 private:
  const LevelProfile& levels_;
  std::size_t first_ = 0;  // the lowest level above the pressure
};

}  // namespace

ParcelStart SurfaceParcel(const LevelProfile& levels) {
  for (int i = 1; i <= levels.Count() && levels.Press(i) >= levels.Press(1) - kSurfaceSearch; ++i) {
    if (!NotAvailable(levels.Dewpt(i))) return StartAt(levels, i);
  }
  return {};
}

LayerMean MeanOfLowestLayer(const LevelProfile& levels, double depth) {
  if (levels.Count() == 0) return {};
  const double top = levels.Press(1) - std::max(depth, 0.0);
  return {LayerMeanOf(levels, levels.Theta, Quantity::Theta, top),
          LayerMeanOf(levels, levels.MixingRatio, Quantity::MixingRatio, top)};
}

ParcelStart MeanLayerParcel(const LevelProfile& levels, const LayerMean& mean,
                            SaturationOver over) {
  if (!mean.Exists()) return {};
  const double press = levels.Press(1);
  const double temp = DryAdiabatTemp(mean.Theta, press);
  const double dewpt = DewpointFromMixingRatio(press, mean.MixingRatio, over);
  if (NotAvailable(dewpt)) return {};
  return {press, temp, std::min(dewpt, temp)};
}

std::vector<ParcelStart> CandidateParcels(const LevelProfile& levels, double depth) {
  std::vector<ParcelStart> starts;
  for (int i = 1; i <= levels.Count() && levels.Press(i) >= levels.Press(1) - depth; ++i) {
    if (!NotAvailable(levels.ThetaE(i))) starts.push_back(StartAt(levels, i));
  }
  return starts;
}

ParcelStart MostUnstableParcel(const LevelProfile& levels, double depth) {
  int best = 0;
  for (int i = 1; i <= levels.Count() && levels.Press(i) >= levels.Press(1) - depth; ++i) {
    if (NotAvailable(levels.ThetaE(i))) continue;
    if (best == 0 || levels.ThetaE(i) > levels.ThetaE(best)) best = i;
  }
  return best == 0 ? ParcelStart{} : StartAt(levels, best);
}

CondensationPoint FindConvectiveCondensation(const LevelProfile& levels, const PressureGrid& grid,
                                             double mixingRatio, SaturationOver over) {
  if (levels.Count() == 0 || NotAvailable(mixingRatio) || !(mixingRatio > 0)) return {};
  const auto saturated = [&](double press, double temp) {
    const double mixing = TabledMixingRatio(press, temp, over);
    return mixing >= 0 && mixing <= mixingRatio;
  };
  const double surface = levels.Press(1);
  if (saturated(surface, levels.Temp(1))) return {surface, levels.Temp(1)};
  double below = surface;
  int first = grid.Bottom;
  constexpr auto kBlock = static_cast<int>(ColumnVapor::Block::kCount);
  const ColumnVapor table(over);
  for (const double* temps = grid.Temp.data();
       first - kBlock + 1 >= grid.Top && !MaySaturate(temps, first, mixingRatio, table);
       temps += kBlock) {
    first -= kBlock;
    below = first + 1;
  }
  for (int press = first; press >= grid.Top; --press) {
    const double temp = grid.Temp[static_cast<std::size_t>(grid.Bottom - press)];
    if (!saturated(press, temp)) {
      below = press;
      continue;
    }
    const TempsAbove temps(levels, below);
    double lowLog = std::log(below);
    double highLog = std::log(press);
    while (lowLog - highLog > kLogPressWidth) {
      const double middle = (lowLog + highLog) / 2;
      const double middlePress = std::exp(middle);
      const Sample at = temps.At(middle, middlePress);
      if (!at.Ok()) break;
      (saturated(middlePress, at.Value) ? highLog : lowLog) = middle;
    }
    const double found = std::exp(highLog);
    const Sample at = SampleAt(levels, found, Quantity::Temp);
    return {found, at.Ok() ? at.Value : temp};
  }
  return {};
}

}  // namespace vexa::analysis
