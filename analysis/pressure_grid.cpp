#include "analysis/pressure_grid.h"

#include <algorithm>
#include <cmath>

#include "analysis/moist_air.h"

namespace vexa::analysis {

const WholePressures& WholeHpa() {
  static const WholePressures kWhole = [] {
    WholePressures whole;
    for (int press = kGridBottom; press >= 1; --press) {
      whole.Log[GridIndex(press)] = std::log(static_cast<double>(press));
      whole.Poisson[GridIndex(press)] = std::pow(press / kReferencePress, kPoisson);
    }
    return whole;
  }();
  return kWhole;
}

std::vector<double> AreasOverLog(const std::vector<double>& values, int bottom) {
  const double* logs = WholeHpa().Log.data() + GridIndex(bottom);
  std::vector<double> areas(values.size());
  for (std::size_t i = 1; i < values.size(); ++i) {
    areas[i] = areas[i - 1] + (values[i - 1] + values[i]) / 2 * (logs[i - 1] - logs[i]);
  }
  return areas;
}

PressureGrid MakePressureGrid(const LevelProfile& levels) {
  PressureGrid grid;
  const std::vector<double>& pressures = levels.Press.Values();
  if (pressures.empty() || !(pressures.front() >= 1)) return grid;

  grid.Bottom = static_cast<int>(std::min<double>(pressures.front(), kGridBottom));
  const auto most = static_cast<std::size_t>(grid.Bottom);
  grid.Temp.resize(most);
  grid.VirtualTemp.resize(most);
  const std::vector<double>& logs = levels.LogPress.Values();
  const double* wholeLogs = WholeHpa().Log.data() + GridIndex(grid.Bottom);
  const double* temps = levels.Temp.Values().data();
  const double* virtuals = levels.VirtualTemp.Values().data();
  constexpr std::size_t kAtATime = 8;
  std::size_t filled = 0;
  std::size_t low = 0;  // the level below the layer in work
  for (std::size_t high = 0; high < pressures.size(); ++high) {
    if (high > 0 && !(pressures[high] < pressures[low] && pressures[high] > 0)) continue;
    if (pressures[high] > grid.Bottom - static_cast<double>(filled)) {  // no whole pressure between
      low = high;
      continue;
    }
    // The whole pressures of the layer, its upper level among them.
    const double above = std::floor(grid.Bottom - pressures[high]) + 1;
    const auto end = static_cast<std::size_t>(
        std::clamp(above, static_cast<double>(filled), static_cast<double>(most)));
    const double span = high == low ? 1 : logs[high] - logs[low];
    const double rise = (temps[high] - temps[low]) / span;
    const double virtualRise = (virtuals[high] - virtuals[low]) / span;
    const auto fill = [&](std::size_t from, std::size_t count) {
      for (std::size_t i = from; i < from + count; ++i) {
        const double depth = wholeLogs[i] - logs[low];
        grid.Temp[i] = temps[low] + rise * depth;
        grid.VirtualTemp[i] = virtuals[low] + virtualRise * depth;
      }
    };
    // Of a deep layer some at a time, beyond it too: the next layer writes over them.
    std::size_t from = filled;
    const bool isDeep = end - filled > 2;
    for (; isDeep && from < end && from + kAtATime <= most; from += kAtATime) fill(from, kAtATime);
    if (from < end) fill(from, end - from);
    if (end > filled && static_cast<double>(most - end + 1) == pressures[high]) {
      grid.Temp[end - 1] = temps[high];
      grid.VirtualTemp[end - 1] = virtuals[high];
    }
    filled = end;
    low = high;
  }
  grid.Temp.resize(filled);
  grid.VirtualTemp.resize(filled);
  grid.Top = grid.Bottom - static_cast<int>(filled) + 1;
  return grid;
}

}  // namespace vexa::analysis
