#include "analysis/hail_table.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "core/numbers.h"

namespace vexa::analysis {
namespace {

constexpr std::size_t kHailRows = 26;
constexpr std::size_t kColumns = 10;
// mm; a row for each half degree of the cloud's warmth, a column for each 5 °C of dry descent.
constexpr std::array<std::array<int, kColumns>, kHailRows> kHail = {{
    {0, 0, 0, 2, 2, 5, 5, 5, 5, 5},
    {0, 0, 0, 2, 5, 5, 5, 5, 10, 10},
    {0, 0, 2, 2, 5, 5, 10, 10, 15, 15},
    {0, 0, 2, 2, 5, 10, 15, 15, 20, 20},
    {0, 0, 2, 2, 10, 15, 20, 20, 20, 20},
    {0, 2, 2, 5, 15, 20, 20, 20, 25, 25},
    {0, 2, 5, 10, 20, 20, 25, 25, 30, 30},
    {2, 2, 10, 15, 20, 25, 30, 30, 35, 35},
    {2, 5, 10, 20, 25, 30, 35, 35, 40, 40},
    {2, 5, 15, 20, 30, 35, 40, 40, 45, 45},
    {2, 5, 15, 20, 30, 40, 40, 40, 45, 50},
    {2, 10, 20, 25, 35, 40, 45, 45, 50, 50},
    {5, 10, 20, 25, 40, 40, 45, 50, 55, 55},
    {5, 15, 20, 30, 40, 45, 50, 55, 60, 60},
    {5, 15, 25, 30, 40, 45, 55, 60, 60, 65},
    {5, 15, 25, 35, 40, 50, 55, 60, 65, 75},
    {10, 15, 25, 35, 45, 50, 60, 65, 70, 80},
    {10, 15, 25, 40, 45, 55, 60, 70, 80, 85},
    {10, 15, 30, 40, 45, 55, 65, 75, 85, 90},
    {10, 20, 30, 40, 50, 60, 70, 80, 90, 100},
    {10, 20, 30, 40, 50, 60, 70, 80, 95, 105},
    {10, 20, 35, 45, 50, 60, 75, 85, 100, 110},
    {10, 20, 35, 45, 50, 60, 75, 90, 105, 115},
    {15, 25, 35, 45, 50, 65, 80, 100, 110, 120},
    {15, 25, 35, 45, 55, 65, 80, 100, 110, 120},
    {15, 25, 35, 50, 55, 65, 80, 100, 110, 120},
}};

// What melting leaves: by the wet-bulb zero in m above ground and the size class.
constexpr std::array<double, 7> kSizeClasses = {5, 10, 20, 25, 50, 75, 100};  // mm, below
struct Melting {
  double From;  // m
  std::array<int, 8> Size;
};
constexpr Melting kMelting[] = {
    {3350, {0, 5, 10, 15, 25, 50, 65, 75}}, {3550, {0, 0, 5, 10, 20, 20, 25, 30}},
    {3750, {0, 0, 0, 5, 10, 15, 15, 15}},   {3950, {0, 0, 0, 0, 5, 10, 10, 10}},
    {4150, {0, 0, 0, 0, 0, 0, 5, 5}},       {4400, {0, 0, 0, 0, 0, 0, 0, 0}},
};

}  // namespace

int HailDiameter(double cloudWarmth, double dryDescent) {
  const int row = std::min(ToWhole(2 * cloudWarmth), static_cast<int>(kHailRows) - 1);
  const int column = std::min(ToWhole(dryDescent / 5), static_cast<int>(kColumns));
  if (row < 0 || column < 1) return 0;
  return kHail[static_cast<std::size_t>(row)][static_cast<std::size_t>(column) - 1];
}

int AfterMelting(int diameter, double wetBulbZero) {
  std::size_t sizeClass = 0;
  while (sizeClass < kSizeClasses.size() && diameter >= kSizeClasses[sizeClass]) ++sizeClass;
  int left = diameter;
  for (const Melting& row : kMelting) {
    if (wetBulbZero >= row.From) left = row.Size[sizeClass];
  }
  return left;
}

}  // namespace vexa::analysis
