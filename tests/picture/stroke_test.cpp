#include "picture/stroke.h"

#include <gtest/gtest.h>

#include <vector>

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

}  // namespace
}  // namespace vexa
