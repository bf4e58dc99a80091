// The regular grid on which a section's field is smoothed and contoured. Values are held in single
// precision; a node without a value holds NaN.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace vexa::crosssection {

inline constexpr float kNoValue = std::numeric_limits<float>::quiet_NaN();

/// Columns and rows count from 1: column 1 at the left, row 1 at the bottom.
class GridX {
 public:
  GridX() = default;
  GridX(int columns, int rows)
      : columns_(columns),
        rows_(rows),
        values_(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), kNoValue) {}

  int Columns() const { return columns_; }
  int Rows() const { return rows_; }
  float& operator()(int column, int row) { return values_[Index(column, row)]; }
  float operator()(int column, int row) const { return values_[Index(column, row)]; }
  bool Has(int column, int row) const { return !std::isnan((*this)(column, row)); }
  const std::vector<float>& Values() const { return values_; }

  /// Share of the nodes that have a value, 0 to 1.
  double Filled() const;
  /// Least and largest value; both NaN on a grid without any.
  struct Extent {
    double Least = kNoValue;
    double Most = kNoValue;
    bool Exists() const { return !std::isnan(Least); }
  };
  Extent Range() const;

  bool operator==(const GridX&) const = default;

 private:
  std::size_t Index(int column, int row) const {
    return static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column - 1);
  }
  int columns_ = 0;
  int rows_ = 0;
  std::vector<float> values_{};
};

/// One pass over the inner nodes, from a copy: weights of 5 for the node, 4 for its neighbours
/// beside, above and below it and 3 for those across its corners, divided by 33. Nodes without a
/// value take no part: neither they nor their weights. Border nodes stay.
GridX Smoothed(const GridX& grid);
GridX Smoothed(GridX grid, int passes);

/// A maximum or minimum of the grid.
struct Extremum {
  int Column = 0;
  int Row = 0;
  float Value = 0;
  bool IsMaximum = false;
};

/// Inner nodes above (below) their eight neighbours that differ from the mean of the 5 x 5 block
/// around them by half an interval at least. Of two of a kind nearer to each other than a tenth of
/// the width the stronger stays; distances count both ways in shares of the grid's width.
///
/// aspect  height of the grid for its width as it is shown
std::vector<Extremum> FindExtrema(const GridX& grid, double interval, double aspect = 0.75);

}  // namespace vexa::crosssection
