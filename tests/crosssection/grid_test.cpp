// Smoothing, isolines and extrema on fields whose shape is known beforehand: plane, cone, saddle,
// two peaks.
#include "crosssection/grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

#include "crosssection/isolines.h"

namespace vexa::crosssection {
namespace {

GridX Made(int columns, int rows, const std::function<double(double, double)>& value) {
  GridX grid(columns, rows);
  for (int row = 1; row <= rows; ++row) {
    for (int column = 1; column <= columns; ++column) {
      grid(column, row) = static_cast<float>(value(column, row));
    }
  }
  return grid;
}

double AreaOf(const std::vector<std::vector<Point>>& rings) {
  double area = 0;
  for (const auto& ring : rings) {
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
      area += (ring[i].X * ring[i + 1].Y - ring[i + 1].X * ring[i].Y) / 2;
    }
  }
  return area;
}

TEST(Smoother, ReadsTheOldGridAloneAndKeepsConstants) {
  const GridX flat = Made(7, 6, [](double, double) { return -12.5; });
  EXPECT_EQ(Smoothed(flat, 5), flat);
  // A spike spreads alike to all sides: nothing of the new values is read back.
  GridX spike = Made(7, 7, [](double, double) { return 0; });
  spike(4, 4) = 33;
  spike(1, 1) = 7;  // the border stays
  const GridX smooth = Smoothed(spike);
  EXPECT_EQ(smooth(1, 1), 7);
  EXPECT_EQ(smooth(3, 4), 4);
  EXPECT_EQ(smooth(5, 4), 4);
  EXPECT_EQ(smooth(5, 5), 3);
  EXPECT_EQ(smooth(3, 3), 3);
  // 33 · (5² + 4·4² + 4·3²)/33² after two passes.
  EXPECT_FLOAT_EQ(Smoothed(spike, 2)(4, 4), 125 / 33.0F);
}

TEST(Smoother, MissingNodesTakeNoPart) {
  GridX grid = Made(3, 3, [](double, double) { return 2; });
  grid(1, 1) = kNoValue;
  grid(2, 1) = kNoValue;
  EXPECT_FLOAT_EQ(Smoothed(grid)(2, 2), 2);
  grid(3, 2) = 28;  // (2·(33 − 3 − 4 − 4) + 4·28)/26
  EXPECT_FLOAT_EQ(Smoothed(grid)(2, 2), 156 / 26.0F);
  grid(2, 2) = kNoValue;
  EXPECT_FALSE(Smoothed(grid).Has(2, 2));
}

TEST(Isolines, OfAPlaneAreStraight) {
  const GridX grid = Made(5, 4, [](double x, double) { return x; });
  for (const double level : {2.5, 3.0}) {  // between nodes and at them
    const Contour contour = TraceContour(grid, level, 1);
    ASSERT_EQ(contour.Lines.size(), 1U);
    EXPECT_FALSE(contour.Lines[0].IsClosed);
    for (const Point& at : contour.Lines[0].Points) EXPECT_NEAR(at.X, level, 1e-5);
    EXPECT_EQ(std::min(contour.Lines[0].Points.front().Y, contour.Lines[0].Points.back().Y), 1);
    EXPECT_EQ(std::max(contour.Lines[0].Points.front().Y, contour.Lines[0].Points.back().Y), 4);
    EXPECT_NEAR(AreaOf(contour.Region), (5 - level) * 3, 1e-4);
  }
}

TEST(Isolines, OfAConeAreCircles) {
  const auto cone = [](double x, double y) { return 10 - std::hypot(x - 21, y - 16); };
  const GridX grid = Made(41, 31, cone);
  for (const int corners : {0, 1}) {
    const Contour contour = TraceContour(grid, 2.0, 1, corners);
    ASSERT_EQ(contour.Lines.size(), 1U);
    const Isoline& ring = contour.Lines[0];
    EXPECT_TRUE(ring.IsClosed);
    EXPECT_EQ(ring.Points.front(), ring.Points.back());
    // The chord of a cell of 1 in a circle of 8 lies 1/(8·8) inside it at most; corners cut once
    // at most as much again.
    for (const Point& at : ring.Points) EXPECT_NEAR(cone(at.X, at.Y), 2, 0.04);
    EXPECT_NEAR(AreaOf(contour.Region), std::numbers::pi * 64, 2);
  }
}

TEST(Isolines, JoinOrPartAtASaddle) {
  GridX grid(2, 2);
  grid(1, 1) = 1;
  grid(2, 1) = 0;
  grid(2, 2) = 1;
  grid(1, 2) = 0;
  EXPECT_EQ(SaddleValue(1, 0, 1, 0), 0.5);
  // At 0.5 and below the corners of 1 are joined, area by hand 1 − 2·½·L²; above they are parted.
  for (const double level : {0.25, 0.5}) {
    const Contour contour = TraceContour(grid, level, 1, 0);
    EXPECT_EQ(contour.Lines.size(), 2U);
    EXPECT_EQ(contour.Region.size(), 1U);
    EXPECT_NEAR(AreaOf(contour.Region), 1 - level * level, 1e-6);
  }
  const Contour parted = TraceContour(grid, 0.75, 1, 0);
  EXPECT_EQ(parted.Lines.size(), 2U);
  EXPECT_EQ(parted.Region.size(), 2U);
  EXPECT_NEAR(AreaOf(parted.Region), 0.0625, 1e-6);
}

TEST(Isolines, EndWhereValuesEnd) {
  GridX grid = Made(6, 6, [](double x, double) { return x; });
  grid(3, 3) = kNoValue;
  const Contour contour = TraceContour(grid, 2.5, 1, 0);
  ASSERT_EQ(contour.Lines.size(), 2U);  // below and above the hole
  double length = 0;
  for (const Isoline& line : contour.Lines) {
    length += std::fabs(line.Points.back().Y - line.Points.front().Y);
  }
  EXPECT_NEAR(length, 3, 1e-9);
  EXPECT_NEAR(AreaOf(contour.Region), 5 * 3.5 - (0.5 * 2 + 2), 1e-6);
  EXPECT_TRUE(TraceContour(GridX(4, 4), 1, 1).Lines.empty());
}

double TwoPeaks(double x, double y) {
  const auto hill = [](double dx, double dy) { return std::exp(-(dx * dx + dy * dy) / 20); };
  return 30 * hill(x - 12, y - 15) + 20 * hill(x - 30, y - 15);
}

TEST(Isolines, FollowTwoPeaks) {
  const GridX grid = Made(41, 31, TwoPeaks);
  for (const auto& [level, rings] : {std::pair{10.0, 2}, std::pair{25.0, 1}, std::pair{35.0, 0}}) {
    const Contour contour = TraceContour(grid, level, 5);
    EXPECT_EQ(static_cast<int>(contour.Lines.size()), rings) << level;
    for (const Isoline& line : contour.Lines) {
      EXPECT_TRUE(line.IsClosed);
      // Steepest slope 30·√(2/(20·e)) = 5.75 a cell, lines lie within a twelfth of a cell.
      for (const Point& at : line.Points) EXPECT_NEAR(TwoPeaks(at.X, at.Y), level, 0.5);
    }
  }
}

TEST(Extrema, AreFoundOnceEach) {
  const GridX grid = Made(41, 31, TwoPeaks);
  const std::vector<Extremum> found = FindExtrema(grid, 2);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].Column, 12);
  EXPECT_EQ(found[0].Row, 15);
  EXPECT_NEAR(found[0].Value, 30, 1e-5);
  EXPECT_TRUE(found[0].IsMaximum);
  EXPECT_EQ(found[1].Column, 30);
  // The 5 x 5 block about a peak of 30 lies by hand 30·(1 − mean of e^(−d²/20)) = 5.3 below it.
  EXPECT_EQ(FindExtrema(grid, 10).size(), 1U);
  EXPECT_TRUE(FindExtrema(grid, 11).empty());
  EXPECT_TRUE(FindExtrema(Made(9, 9, [](double x, double) { return x; }), 0.1).empty());
  const auto low = FindExtrema(Made(41, 31, [](double x, double y) { return -TwoPeaks(x, y); }), 2);
  ASSERT_EQ(low.size(), 2U);
  EXPECT_FALSE(low[0].IsMaximum);
  // Of two peaks within four columns, a tenth of the width, the higher stays.
  for (const int column : {13, 15}) {
    const auto twins = [column](double x, double y) {
      return 10 * std::exp(-(std::pow(x - 10, 2) + std::pow(y - 10, 2))) +
             12 * std::exp(-(std::pow(x - column, 2) + std::pow(y - 10, 2)));
    };
    const auto kept = FindExtrema(Made(41, 31, twins), 2);
    ASSERT_EQ(kept.size(), column == 13 ? 1U : 2U);
    EXPECT_EQ(kept[0].Column, column);
  }
}

TEST(Labels, StandWhereALineIsStraightest) {
  // A bend, then 30 straight upward to the right.
  std::vector<Point> line = {{0, 0}, {3, 6}, {0, 9}, {4, 12}};
  for (int i = 1; i <= 10; ++i) line.push_back({4 + 3.0 * i, 12 - 3.0 * i});
  const auto place = PlaceLabel(line, 10, 20);
  ASSERT_TRUE(place);
  EXPECT_GT(place->At.X, 8);
  EXPECT_NEAR(place->Angle, 45, 1e-6);
  EXPECT_FALSE(PlaceLabel({{0, 0}, {5, 0}}, 10, 4));
}

TEST(Corners, KeepTheEndsOfALine) {
  const std::vector<Point> cut = CutCorners({{0, 0}, {4, 0}, {4, 4}}, false);
  const std::vector<Point> expected = {{0, 0}, {3, 0}, {4, 1}, {4, 4}};
  EXPECT_EQ(cut, expected);
}

}  // namespace
}  // namespace vexa::crosssection
