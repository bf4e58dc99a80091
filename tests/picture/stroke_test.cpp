#include "picture/stroke.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "picture/hatch.h"

namespace vexa {
namespace {

// A dashed pen of 12 units draws 72 and leaves out 48.
TEST(Dashes, FollowTheLineRoundItsCorners) {
  const struct {
    const char* About;
    std::vector<Point> Line;
    std::vector<std::vector<Point>> Dashes;
  } cases[] = {{"within the first dash", {{0, 0}, {50, 0}}, {{{0, 0}, {50, 0}}}},
               {"round a corner and on after a gap",
                {{0, 0}, {60, 0}, {60, 200}},
                {{{0, 0}, {60, 0}, {60, 12}}, {{60, 60}, {60, 132}}, {{60, 180}, {60, 200}}}},
               {"a corner in a gap",
                {{0, 0}, {100, 0}, {100, 100}},
                {{{0, 0}, {72, 0}}, {{100, 20}, {100, 92}}}},
               {"several in one part",
                {{0, 0}, {0, 250}},
                {{{0, 0}, {0, 72}}, {{0, 120}, {0, 192}}, {{0, 240}, {0, 250}}}}};
  for (const auto& c : cases) {
    EXPECT_EQ(Dashes(c.Line, DashPattern(LineStyle::Dash, 12)), c.Dashes) << c.About;
  }
  EXPECT_EQ(Dashes({{0, 0}, {9, 9}}, DashPattern(LineStyle::Solid, 12)).size(), 1U);
}

// Lines kHatchDistance apart cover an area A with a length of A / kHatchDistance.
TEST(HatchLines, CoverTheAreaButNotItsHoles) {
  const std::vector<Point> square{{0, 0}, {9000, 0}, {9000, 9000}, {0, 9000}};
  const std::vector<Point> hole{{3000, 3000}, {6000, 3000}, {6000, 6000}, {3000, 6000}};
  for (const FillStyle style : {FillStyle::Hatched, FillStyle::BackHatched}) {
    const bool rises = style == FillStyle::Hatched;
    double length = 0;
    for (const HatchLine& line : HatchLines({square, hole}, style)) {
      length += std::hypot(line.To.X - line.From.X, line.To.Y - line.From.Y);
      EXPECT_EQ(line.To.Y < line.From.Y, rises);
      const Point middle{(line.From.X + line.To.X) / 2, (line.From.Y + line.To.Y) / 2};
      const bool inHole = middle.X > 3000 && middle.X < 6000 && middle.Y > 3000 && middle.Y < 6000;
      EXPECT_FALSE(inHole) << middle.X << " " << middle.Y;
    }
    const double area = 9000.0 * 9000 - 3000.0 * 3000;
    EXPECT_NEAR(length * kHatchDistance / area, 1, 0.02);
  }
  EXPECT_TRUE(HatchLines({square}, FillStyle::Plain).empty());
  EXPECT_TRUE(HatchLines({{{5, 5}, {5, 5}}}, FillStyle::Hatched).empty());
}

}  // namespace
}  // namespace vexa
