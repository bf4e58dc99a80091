#include "crosssection/grid.h"

#include <algorithm>

namespace vexa::crosssection {
namespace {

// By the distance of the neighbour: itself, an edge, a corner. Unequal on purpose.
constexpr float kWeights[] = {5, 4, 3};

float SmoothedAt(const GridX& grid, int column, int row) {
  float sum = 0;
  float weights = 0;
  for (int up = -1; up <= 1; ++up) {
    for (int right = -1; right <= 1; ++right) {
      if (!grid.Has(column + right, row + up)) continue;
      const float weight = kWeights[(up != 0 ? 1 : 0) + (right != 0 ? 1 : 0)];
      sum += weight * grid(column + right, row + up);
      weights += weight;
    }
  }
  return sum / weights;  // 33 where no neighbour is missing
}

// How far a node stands out of its 5 x 5 block; NaN where it is no extremum.
float StandsOut(const GridX& grid, int column, int row) {
  const float here = grid(column, row);
  bool isMost = true;
  bool isLeast = true;
  for (int up = -1; up <= 1; ++up) {
    for (int right = -1; right <= 1; ++right) {
      if (up == 0 && right == 0) continue;
      const float other = grid(column + right, row + up);
      isMost = isMost && here > other;  // false beside a node without a value
      isLeast = isLeast && here < other;
    }
  }
  if (!isMost && !isLeast) return kNoValue;
  double sum = 0;
  int count = 0;
  for (int r = std::max(1, row - 2); r <= std::min(grid.Rows(), row + 2); ++r) {
    for (int c = std::max(1, column - 2); c <= std::min(grid.Columns(), column + 2); ++c) {
      if (!grid.Has(c, r)) continue;
      sum += grid(c, r);
      ++count;
    }
  }
  return here - static_cast<float>(sum / count);
}

}  // namespace

double GridX::Filled() const {
  if (values_.empty()) return 0;
  const auto has = std::ranges::count_if(values_, [](float value) { return !std::isnan(value); });
  return static_cast<double>(has) / static_cast<double>(values_.size());
}

GridX::Extent GridX::Range() const {
  Extent extent;
  for (const float value : values_) {
    if (std::isnan(value)) continue;
    extent.Least = extent.Exists() ? std::min<double>(extent.Least, value) : value;
    extent.Most = std::isnan(extent.Most) ? value : std::max<double>(extent.Most, value);
  }
  return extent;
}

GridX Smoothed(const GridX& grid) {
  GridX smooth = grid;
  for (int row = 2; row < grid.Rows(); ++row) {
    for (int column = 2; column < grid.Columns(); ++column) {
      if (grid.Has(column, row)) smooth(column, row) = SmoothedAt(grid, column, row);
    }
  }
  return smooth;
}

GridX Smoothed(GridX grid, int passes) {
  for (int pass = 0; pass < passes; ++pass) grid = Smoothed(grid);
  return grid;
}

std::vector<Extremum> FindExtrema(const GridX& grid, double interval, double aspect) {
  struct Candidate {
    Extremum At{};
    double Strength = 0;
  };
  std::vector<Candidate> found;
  for (int row = 2; row < grid.Rows(); ++row) {
    for (int column = 2; column < grid.Columns(); ++column) {
      if (!grid.Has(column, row)) continue;
      const double out = StandsOut(grid, column, row);
      if (!(std::fabs(out) >= interval / 2)) continue;
      found.push_back({{column, row, grid(column, row), out > 0}, std::fabs(out)});
    }
  }
  std::ranges::stable_sort(found, std::greater<>(), &Candidate::Strength);
  constexpr double kNearest = 0.1;  // of the width
  std::vector<Extremum> kept;
  for (const Candidate& one : found) {
    const bool isNearby = std::ranges::any_of(kept, [&](const Extremum& other) {
      const double across =
          static_cast<double>(one.At.Column - other.Column) / (grid.Columns() - 1);
      const double up = aspect * (one.At.Row - other.Row) / (grid.Rows() - 1);
      return one.At.IsMaximum == other.IsMaximum && std::hypot(across, up) < kNearest;
    });
    if (!isNearby) kept.push_back(one.At);
  }
  return kept;
}

}  // namespace vexa::crosssection
