#include "picture/hatch.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vexa {
namespace {

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
