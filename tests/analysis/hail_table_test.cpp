#include "analysis/hail_table.h"

#include <gtest/gtest.h>

#include <array>

namespace vexa::analysis {
namespace {

// The sums of every row and column as printed by Hand and Cappelluti (2011): one wrong cell changes
// two of them.
TEST(HailTable, RowsAndColumnsAddUpAsPrinted) {
  constexpr std::array kRows = {29,  42,  64,  89,  109, 134, 167, 204, 242, 277, 287, 322, 345,
                                380, 400, 425, 455, 485, 510, 550, 560, 590, 605, 645, 650, 655};
  constexpr std::array kColumns = {145, 286, 488, 670, 857, 1025, 1210, 1360, 1535, 1645};
  std::array<int, kColumns.size()> columns{};
  for (std::size_t row = 0; row < kRows.size(); ++row) {
    int sum = 0;
    for (std::size_t column = 0; column < columns.size(); ++column) {
      const int size =
          HailDiameter(0.5 * static_cast<double>(row), 5 * static_cast<double>(column + 1));
      sum += size;
      columns[column] += size;
    }
    EXPECT_EQ(sum, kRows[row]) << 0.5 * static_cast<double>(row) << " C warm";
  }
  EXPECT_EQ(columns, kColumns);
}

// The published example is a cloud of 6 degrees over a descent of 21: one inch. Cells reach
// half-way to their neighbours, the last ones as far as anything goes.
TEST(HailTable, CellsReachHalfWay) {
  EXPECT_EQ(HailDiameter(6, 21), 25);
  EXPECT_EQ(HailDiameter(6, 22.4), 25);
  EXPECT_EQ(HailDiameter(6, 22.6), 40);
  EXPECT_EQ(HailDiameter(6.24, 17.6), 25);
  EXPECT_EQ(HailDiameter(6.26, 17.6), 30);
  EXPECT_EQ(HailDiameter(20, 90), 120);
  EXPECT_EQ(HailDiameter(-0.3, 50), 0);
  EXPECT_EQ(HailDiameter(12, 2.4), 0);
}

// The melting of the same authors, by the height of the wet-bulb zero: a stone of each class, from
// its least size to the one before the next.
TEST(HailTable, MeltsByTheHeightOfTheWetBulbZero) {
  constexpr int kLeast[] = {2, 5, 10, 20, 25, 50, 75, 100};
  constexpr int kMost[] = {4, 9, 19, 24, 49, 74, 99, 120};
  constexpr struct {
    double Zero;
    std::array<int, 8> Left;
  } kCases[] = {{3350, {0, 5, 10, 15, 25, 50, 65, 75}}, {3550, {0, 0, 5, 10, 20, 20, 25, 30}},
                {3750, {0, 0, 0, 5, 10, 15, 15, 15}},   {3950, {0, 0, 0, 0, 5, 10, 10, 10}},
                {4150, {0, 0, 0, 0, 0, 0, 5, 5}},       {4400, {}}};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(AfterMelting(kMost[i], 3349.9), kMost[i]);
  for (std::size_t row = 0; row < std::size(kCases); ++row) {
    const double next = row + 1 < std::size(kCases) ? kCases[row + 1].Zero : 9000;
    for (std::size_t i = 0; i < 8; ++i) {
      EXPECT_EQ(AfterMelting(kLeast[i], kCases[row].Zero), kCases[row].Left[i]);
      EXPECT_EQ(AfterMelting(kMost[i], next - 0.1), kCases[row].Left[i]);
    }
  }
}

}  // namespace
}  // namespace vexa::analysis
