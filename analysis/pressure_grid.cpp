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

PressureGrid MakePressureGrid(const LevelProfile& levels) {
  PressureGrid grid;
  const std::vector<double>& pressures = levels.Press.Values();
  if (pressures.empty() || !(pressures.front() >= 1)) return grid;
  const WholePressures& whole = WholeHpa();

  grid.Bottom = static_cast<int>(std::min<double>(pressures.front(), kGridBottom));
  grid.Temp.reserve(static_cast<std::size_t>(grid.Bottom));
  grid.VirtualTemp.reserve(static_cast<std::size_t>(grid.Bottom));
  std::size_t low = 0;  // the level below the layer in work
  int press = grid.Bottom;
  for (std::size_t high = 0; high < pressures.size(); ++high) {
    if (high > 0 && !(pressures[high] < pressures[low] && pressures[high] > 0)) continue;
    const double lowLog = std::log(pressures[low]);
    const double span = high == low ? 1 : std::log(pressures[high]) - lowLog;
    const auto between = [&](const std::vector<double>& values, double logPress) {
      return values[low] + (values[high] - values[low]) * (logPress - lowLog) / span;
    };
    for (; press >= 1 && press >= pressures[high]; --press) {
      const bool atLevel = press == pressures[high];
      const double logPress = whole.Log[GridIndex(press)];
      grid.Temp.push_back(atLevel ? levels.Temp.Values()[high]
                                  : between(levels.Temp.Values(), logPress));
      grid.VirtualTemp.push_back(atLevel ? levels.VirtualTemp.Values()[high]
                                         : between(levels.VirtualTemp.Values(), logPress));
    }
    low = high;
  }
  grid.Top = press + 1;
  return grid;
}

}  // namespace vexa::analysis
