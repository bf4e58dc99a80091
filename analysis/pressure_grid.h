// The sounding on whole hPa: parcels step over whole pressures, so temperature and virtual
// temperature are put there once per sounding and an ascent then costs the same whether the
// sounding has a hundred levels or ten thousand.
#pragma once

#include <array>
#include <vector>

#include "analysis/level_profile.h"

namespace vexa::analysis {

/// Highest pressure of the grid, hPa. A parcel from below it starts here.
inline constexpr int kGridBottom = 1200;

/// What depends on whole pressures alone; entry kGridBottom - p stands at p hPa, down to 1 hPa.
struct WholePressures {
  std::array<double, kGridBottom> Log{};      // ln p
  std::array<double, kGridBottom> LogStep{};  // ln (p + 1) - ln p; the first is 0
  std::array<double, kGridBottom> Poisson{};  // (p/1000)^0.2856
};
const WholePressures& WholeHpa();

/// Index of a whole pressure in WholePressures and in the columns of the adiabat table.
constexpr std::size_t GridIndex(int press) {
  return static_cast<std::size_t>(kGridBottom - press);
}

/// Trapezoid of a quantity over -ln p between a whole pressure, given by its GridIndex, and the
/// next.
inline double AreaOverLog(double low, double high, std::size_t index) {
  const auto& logs = WholeHpa().Log;
  return (low + high) / 2 * (logs[index] - logs[index + 1]);
}

/// Sums of these from the bottom to each entry: the area between two pressures is a difference.
///
/// values   at bottom, bottom - 1 … hPa
std::vector<double> AreasOverLog(const std::vector<double>& values, int bottom);

/// A sounding's temperatures at every whole hPa inside it: entry Bottom - p at p hPa.
struct PressureGrid {
  int Bottom = 0;  // hPa; below Top when no whole pressure lies inside
  int Top = 1;
  std::vector<double> Temp{};         // °C
  std::vector<double> VirtualTemp{};  // °C

  bool Empty() const { return Bottom < Top; }
};

/// Linear in ln p between the levels, as SampleAt. Levels out of order are passed over.
PressureGrid MakePressureGrid(const LevelProfile& levels);

}  // namespace vexa::analysis
