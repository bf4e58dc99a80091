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
  const WholePressures& whole = WholeHpa();

  grid.Bottom = static_cast<int>(std::min<double>(pressures.front(), kGridBottom));
  const auto most = static_cast<std::size_t>(grid.Bottom);
  grid.Temp.resize(most);
  grid.VirtualTemp.resize(most);
  const std::vector<double>& logs = levels.LogPress.Values();
  const double* temps = levels.Temp.Values().data();
  const double* virtuals = levels.VirtualTemp.Values().data();
  std::size_t filled = 0;
  std::size_t low = 0;  // the level below the layer in work
  for (std::size_t high = 0; high < pressures.size(); ++high) {
    if (high > 0 && !(pressures[high] < pressures[low] && pressures[high] > 0)) continue;
    const double span = high == low ? 1 : logs[high] - logs[low];
    const double rise = temps[high] - temps[low];
    const double virtualRise = virtuals[high] - virtuals[low];
    for (; filled < most; ++filled) {
      const double press = static_cast<double>(most - filled);
      if (press < pressures[high]) break;
      const bool atLevel = press == pressures[high];
      const double depth = whole.Log[GridIndex(grid.Bottom) + filled] - logs[low];
      grid.Temp[filled] = atLevel ? temps[high] : temps[low] + rise * depth / span;
      grid.VirtualTemp[filled] =
          atLevel ? virtuals[high] : virtuals[low] + virtualRise * depth / span;
    }
    low = high;
  }
  grid.Temp.resize(filled);
  grid.VirtualTemp.resize(filled);
  grid.Top = grid.Bottom - static_cast<int>(filled) + 1;
  return grid;
}

}  // namespace vexa::analysis
