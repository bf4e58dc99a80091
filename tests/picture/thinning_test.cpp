#include "picture/thinning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace vexa {
namespace {

double OffSegment(Point at, Point from, Point to) {
  const double dx = to.X - from.X;
  const double dy = to.Y - from.Y;
  const double square = dx * dx + dy * dy;
  const double along = square > 0 ? ((at.X - from.X) * dx + (at.Y - from.Y) * dy) / square : 0;
  const double share = std::clamp(along, 0.0, 1.0);
  return std::hypot(at.X - from.X - share * dx, at.Y - from.Y - share * dy);
}

double OffLine(Point at, const std::vector<Point>& line) {
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 1; i < line.size(); ++i) {
    least = std::min(least, OffSegment(at, line[i - 1], line[i]));
  }
  return least;
}

constexpr int kPoints = 2000;

// A straight line, a circle, noise finer than a pixel, a line back and forth along itself, a spike,
// the same place over and over.
TEST(Thinned, StaysWithinTheDistanceOfEveryPoint) {
  std::vector<std::vector<Point>> curves(6);
  for (int i = 0; i < kPoints; ++i) {
    const Point at[] = {{3.0 * i, 4.0 * i},
                        {500 * std::cos(i * 0.004), 500 * std::sin(i * 0.004)},
                        {9 * std::sin(1.7 * i), 5.0 * i},
                        {1000 * std::sin(i * 0.01), 0.01 * i},
                        {2.0 * i, i == 700 ? 900.0 : 0.0},
                        {7, 7}};
    for (std::size_t curve = 0; curve < curves.size(); ++curve) curves[curve].push_back(at[curve]);
  }
  for (const std::vector<Point>& points : curves) {
    for (const double near : {2.0, 6.0, 12.0}) {
      SCOPED_TRACE(testing::Message() << &points - curves.data() << ' ' << near);
      const std::vector<Point> thinned = Thinned(points, near);
      ASSERT_GE(thinned.size(), 2U);
      EXPECT_EQ(thinned.front(), points.front());
      EXPECT_EQ(thinned.back(), points.back());
      double most = 0;
      for (const Point& at : points) most = std::max(most, OffLine(at, thinned));
      EXPECT_LE(most, near * std::sqrt(2.0) + 1e-9);  // at a turn along and across
    }
  }
}

// A chord that bulges by 2 from a circle of 500 spans 2 sqrt(2 * 500 * 2) = 89 units; 35 of them go
// round.
TEST(Thinned, KeepsAFewPointsOfASmoothLine) {
  std::vector<Point> circle;
  for (int i = 0; i <= kPoints; ++i) {
    const double turn = 2 * 3.14159265358979 * i / kPoints;
    circle.push_back({500 * std::cos(turn), 500 * std::sin(turn)});
  }
  EXPECT_LE(Thinned(circle, 2).size(), 40U);
  EXPECT_EQ(Thinned({{0, 0}, {10, 0}, {20, 0}, {20, 30}}, 1),
            (std::vector<Point>{{0, 0}, {20, 0}, {20, 30}}));
}

}  // namespace
}  // namespace vexa
