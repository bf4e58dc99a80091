#include "analysis/pressure_grid.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "analysis/column_math.h"
#include "analysis/moist_air.h"

namespace vexa::analysis {

const WholePressures& WholeHpa() {
  static const WholePressures kWhole = [] {
    WholePressures whole;
    for (int press = kGridBottom; press >= 1; --press) {
      whole.Log[GridIndex(press)] = std::log(static_cast<double>(press));
      whole.Poisson[GridIndex(press)] = std::pow(press / kReferencePress, kPoisson);
    }
    for (std::size_t i = 1; i < whole.Log.size(); ++i) {
      whole.LogStep[i] = whole.Log[i - 1] - whole.Log[i];
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

namespace {

// Whole pressures that are filled at a time.
constexpr std::size_t kAtATime = 8;

// Levels and whole pressures side by side.
struct GridColumns {
  const double* Press;  // hPa, of the levels
  const double* Log;
  const double* Temp;         // °C
  const double* VirtualTemp;  // °C
  const double* WholeLog;     // of the grid's pressures, from its bottom up
  double* GridTemp;
  double* GridVirtualTemp;
};

using Eight = double __attribute__((vector_size(kAtATime * sizeof(double))));

// Fills layer by layer and gives the number of whole pressures that lie in the sounding.
VEXA_WIDE std::size_t FillGrid(GridColumns all, std::size_t levels, int bottom) {
  const auto most = static_cast<std::size_t>(bottom);
  std::size_t filled = 0;
  std::size_t low = 0;  // the level below the layer in work
  for (std::size_t high = 0; high < levels; ++high) {
    const double press = all.Press[high];
    if (high > 0 && !(press < all.Press[low] && press > 0)) continue;
    if (press > bottom - static_cast<double>(filled)) {  // no whole pressure between
      low = high;
      continue;
    }
    // The whole pressures of the layer, its upper level among them.
    const double above = std::floor(bottom - press) + 1;
    const auto end = static_cast<std::size_t>(
        std::clamp(above, static_cast<double>(filled), static_cast<double>(most)));
    const double lowLog = all.Log[low], lowTemp = all.Temp[low], lowVirtual = all.VirtualTemp[low];
    const double span = high == low ? 1 : all.Log[high] - lowLog;
    const double rise = (all.Temp[high] - lowTemp) / span;
    const double virtualRise = (all.VirtualTemp[high] - lowVirtual) / span;
    // Of a deep layer eight at a time, beyond it too: the next layer writes over them.
    std::size_t from = filled;
    const bool isDeep = end - filled > 2;
    for (; isDeep && from < end && from + kAtATime <= most; from += kAtATime) {
      Eight depth;
      std::memcpy(&depth, all.WholeLog + from, sizeof(Eight));
      depth -= lowLog;
      const Eight temps = lowTemp + rise * depth;
      const Eight virtuals = lowVirtual + virtualRise * depth;
      std::memcpy(all.GridTemp + from, &temps, sizeof(Eight));
      std::memcpy(all.GridVirtualTemp + from, &virtuals, sizeof(Eight));
    }
    for (; from < end; ++from) {
      const double depth = all.WholeLog[from] - lowLog;
      all.GridTemp[from] = lowTemp + rise * depth;
      all.GridVirtualTemp[from] = lowVirtual + virtualRise * depth;
    }
    if (end > filled && static_cast<double>(most - end + 1) == press) {
      all.GridTemp[end - 1] = all.Temp[high];
      all.GridVirtualTemp[end - 1] = all.VirtualTemp[high];
    }
    filled = end;
    low = high;
  }
  return filled;
}

}  // namespace

PressureGrid MakePressureGrid(const LevelProfile& levels) {
  PressureGrid grid;
  const std::vector<double>& pressures = levels.Press.Values();
  if (pressures.empty() || !(pressures.front() >= 1)) return grid;

  grid.Bottom = static_cast<int>(std::min<double>(pressures.front(), kGridBottom));
  grid.Temp.resize(static_cast<std::size_t>(grid.Bottom));
  grid.VirtualTemp.resize(static_cast<std::size_t>(grid.Bottom));
  const std::size_t filled = FillGrid({.Press = pressures.data(),
                                       .Log = levels.LogPress.Values().data(),
                                       .Temp = levels.Temp.Values().data(),
                                       .VirtualTemp = levels.VirtualTemp.Values().data(),
                                       .WholeLog = WholeHpa().Log.data() + GridIndex(grid.Bottom),
                                       .GridTemp = grid.Temp.data(),
                                       .GridVirtualTemp = grid.VirtualTemp.data()},
                                      pressures.size(), grid.Bottom);
  grid.Temp.resize(filled);
  grid.VirtualTemp.resize(filled);
  grid.Top = grid.Bottom - static_cast<int>(filled) + 1;
  return grid;
}

}  // namespace vexa::analysis
