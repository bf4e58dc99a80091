// Where a text finds room: places follow by hand from its size, two digits of 100 units being 111
// wide and 90 high, and from what stands around.
#include "diagram/label_places.h"

#include <gtest/gtest.h>

namespace vexa::diagram {
namespace {

constexpr auto kLeft = AnchorX::Left, kRight = AnchorX::Right;

LabelRoom RoomAmong(const Rect& text, const std::vector<std::vector<Point>>& lines = {}) {
  LabelRoom room(Rect{0, 0, 6000, 6000});
  room.Take(text);
  for (const auto& line : lines) room.AvoidLine(line, 18);
  return room;
}

// Across costs three tenths of up or down; near are 600 units across.
TEST(LabelPlaces, MovesToTheNearestFreePlace) {
  const struct {
    const char* About;
    Rect Text;
    AnchorX Across;
    Point Place;
    bool IsNear;
  } cases[] = {{"elsewhere", {100, 100, 200, 200}, kLeft, {3000, 3000}, true},
               {"a word", {2900, 2980, 3200, 3020}, kLeft, {3200, 3000}, true},
               {"to its left", {2900, 2980, 3200, 3020}, kRight, {2800, 3000}, true},
               {"a row", {2000, 2980, 4000, 3020}, kLeft, {3000, 2920}, true},
               {"above", {2000, 2930, 4000, 3035}, kLeft, {3000, 3080}, true},
               {"more", {2000, 2830, 4000, 3060}, kLeft, {3000, 3110}, true},
               {"two rows", {2000, 2850, 4000, 3110}, kLeft, {3000, 3160}, true},
               {"three rows", {2000, 2810, 4000, 3200}, kLeft, {3000, 2760}, true},
               {"a column", {2500, 2000, 3600, 4000}, kLeft, {3600, 3000}, true},
               {"a wider one", {2500, 2000, 3601, 4000}, kLeft, {3800, 3000}, false},
               {"as far as looked", {2500, 2000, 5800, 4000}, kLeft, {5800, 3000}, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    LabelRoom room = RoomAmong(c.Text), again = room;
    EXPECT_EQ(TakePlace(room, {3000, 3000}, "00", 100, c.Across), c.Place);
    EXPECT_FALSE(room.IsFree(TextPlace(c.Place, "00", 100, c.Across)));
    EXPECT_EQ(TakePlaceNear(again, {3000, 3000}, "00", 100, c.Across),
              c.IsNear ? std::optional(c.Place) : std::nullopt);
  }
  LabelRoom full = RoomAmong({2500, 2000, 5801, 4000});
  EXPECT_FALSE(TakePlace(full, {3000, 3000}, "00", 100, kLeft));
}

TEST(LabelPlaces, KeepsOffLinesWhereItCan) {
  std::vector<std::vector<Point>> lines = {{{0, 3000}, {6000, 3000}}};
  LabelRoom one = RoomAmong({}, lines);
  EXPECT_EQ(TakePlace(one, {3000, 3000}, "00", 100, kLeft), (Point{3000, 2920}));
  for (double y = 2500; y < 3500; y += 30) lines.push_back({{0, y}, {6000, y}});
  LabelRoom many = RoomAmong({}, lines);
  EXPECT_FALSE(TakePlaceNear(many, {3000, 3000}, "00", 100, kLeft));
  EXPECT_EQ(TakePlace(many, {3000, 3000}, "00", 100, kLeft), (Point{3000, 3000}));
}

// From the right edge to 50 units before the text; what stands within 186 of the edge is a tick.
TEST(LabelPlaces, LeadersCrossNothing) {
  const struct {
    const char* About;
    Rect Text;
    std::vector<Point> Line;
    double Y;
  } cases[] = {{"nothing", {}, {}, 3000},
               {"a text", {5300, 2950, 5500, 3050}, {}, 2890},
               {"a text behind its end", {5010, 2990, 5049, 3010}, {}, 3000},
               {"a line", {}, {{5400, 2960}, {5400, 3040}}, 2890},
               {"a tick", {}, {{5835, 2990}, {5835, 3010}}, 3000},
               {"a line before it", {}, {{5830, 2990}, {5830, 3010}}, 2840}};
  for (const auto& c : cases) {
    LabelRoom room = RoomAmong(c.Text, {c.Line});
    EXPECT_EQ(TakePlaceNear(room, {5000, 3000}, "00", 100, kRight, LeaderOf{{6000, 3000}, 50}),
              (Point{5000, c.Y}))
        << c.About;
  }
}

}  // namespace
}  // namespace vexa::diagram
