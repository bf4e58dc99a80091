#include "picture/clip.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace vexa {
namespace {

constexpr Rect kBox{0, 0, 100, 50};
using Pieces = std::vector<std::vector<Point>>;

double RingArea(const std::vector<Point>& ring) {
  double twice = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Point& a = ring[i];
    const Point& b = ring[(i + 1) % ring.size()];
    twice += a.X * b.Y - b.X * a.Y;
  }
  return std::fabs(twice) / 2;
}

TEST(ClipPolyline, KeepsThePiecesInside) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* about;
    std::vector<Point> points;
    Pieces expected;
  } cases[] = {
      {"inside stays as it is", {{1, 1}, {9, 9}, {20, 5}}, {{{1, 1}, {9, 9}, {20, 5}}}},
      {"through both sides", {{-50, 25}, {150, 25}}, {{{0, 25}, {100, 25}}}},
      {"out and in again gives two",
       {{10, 40}, {10, 60}, {20, 60}, {20, 40}},
       {{{10, 40}, {10, 50}}, {{20, 50}, {20, 40}}}},
      {"beside", {{-10, 0}, {-10, 50}, {-1, 49}}, {}},
      {"touching a corner only", {{-10, 10}, {10, -10}}, {}},
      {"along an edge", {{-10, 50}, {110, 50}}, {{{0, 50}, {100, 50}}}},
      {"a point that is none breaks the line",
       {{1, 1}, {2, 2}, {nan, 3}, {4, 4}, {5, 5}},
       {{{1, 1}, {2, 2}}, {{4, 4}, {5, 5}}}},
      {"one point is no line", {{5, 5}}, {}},
      {"from an edge inwards", {{0, 10}, {50, 10}}, {{{0, 10}, {50, 10}}}},
  };
  for (const auto& c : cases) EXPECT_EQ(ClipPolyline(c.points, kBox), c.expected) << c.about;
}

// What is cut out and what is kept are the whole line.
TEST(CutOut, LeavesWhatLiesOutside) {
  const struct {
    const char* about;
    std::vector<Point> line;
    Pieces pieces;
  } cases[] = {
      {"straight through", {{-10, 20}, {130, 20}}, {{{-10, 20}, {0, 20}}, {{100, 20}, {130, 20}}}},
      {"ends inside", {{-10, 20}, {30, 20}}, {{{-10, 20}, {0, 20}}}},
      {"a corner of the line inside",
       {{50, -30}, {50, 20}, {140, 20}},
       {{{50, -30}, {50, 0}}, {{100, 20}, {140, 20}}}},
      {"past it", {{-10, 60}, {50, 70}, {130, 60}}, {{{-10, 60}, {50, 70}, {130, 60}}}},
      {"inside", {{10, 10}, {20, 30}}, {}},
      {"touching a corner", {{-10, 10}, {10, -10}}, {{{-10, 10}, {10, -10}}}},
  };
  for (const auto& c : cases) EXPECT_EQ(CutOut(c.line, kBox), c.pieces) << c.about;
}

TEST(ClipPolygon, KeepsTheAreaInside) {
  const struct {
    const char* about;
    std::vector<Point> ring;
    double area;
  } cases[] = {
      {"larger than the box", {{-10, -10}, {200, -10}, {200, 90}, {-10, 90}}, 100 * 50},
      {"a triangle over the left edge", {{-10, 20}, {10, 10}, {10, 30}}, 150},
      {"a notch from above",
       {{0, 0}, {40, 0}, {50, 30}, {60, 0}, {100, 0}, {100, 50}, {0, 50}},
       5000 - 300},
      {"outside", {{-10, -10}, {-5, -10}, {-5, 90}}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.about);
    const std::vector<Point> kept = ClipPolygon(c.ring, kBox);
    EXPECT_NEAR(RingArea(kept), c.area, 1e-9);
    EXPECT_EQ(kept.empty(), c.area == 0);
    for (const Point& at : kept) EXPECT_TRUE(kBox.Contains(at));
  }
}

}  // namespace
}  // namespace vexa
