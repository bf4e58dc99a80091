#include "diagram/mapping.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/moist_air.h"
#include "diagram/mark_column.h"

namespace vexa::diagram {
namespace {

constexpr Rect kMapped{1000, 500, 7600, 8100};  // 6600 x 7600 drawing units

DiagramMapping Make(DiagramType type, double min = -40, double max = 40, double top = 100) {
  return DiagramMapping(type, kMapped, min, max, top);
}

TEST(DiagramMapping, PlacesPressureByItsLogarithm) {
  const DiagramMapping at = Make(DiagramType::SkewT);
  EXPECT_DOUBLE_EQ(at.YOf(1050), 8100);
  EXPECT_DOUBLE_EQ(at.YOf(100), 500);
  // log10(1000/100) / log10(1050/100) = 1 / 1.0211893 = 0.9792504; single precision keeps 7 digits.
  EXPECT_NEAR(at.YOf(1000), 500 + 7600 * 0.9792504, 0.002);
  EXPECT_NEAR(at.PressAt(at.YOf(850)), 850, 1e-3);
}

TEST(DiagramMapping, SkewIsFixedInDrawingUnits) {
  struct Case {
    const char* about;
    double min, max;
  };
  for (const Case& c :
       {Case{"usual range", -40, 40}, Case{"cold", -80, 0}, Case{"wide", -60, 60}}) {
    SCOPED_TRACE(c.about);
    const DiagramMapping skewed = Make(DiagramType::SkewT, c.min, c.max);
    const DiagramMapping plain = Make(DiagramType::Emagram, c.min, c.max);
    // 3934 x log10 1050 = 11885.3590
    EXPECT_NEAR(skewed.ToPoint(5, 1050).X - plain.ToPoint(5, 1050).X, -0.359, 1e-3);
    EXPECT_NEAR(skewed.ToPoint(5, 100).X - plain.ToPoint(5, 100).X, 4017, 1e-9);
  }
  // 6600 units for 80 degrees: 82.5 to the degree.
  EXPECT_NEAR(Make(DiagramType::Emagram).ToPoint(-39, 700).X, 1082.5, 1e-9);
}

TEST(DiagramMapping, TephigramTurnsBy43Degrees) {
  const DiagramMapping at = Make(DiagramType::Tephigram);
  const Point origin = at.Turn({kMapped.Left, kMapped.Bottom});
  EXPECT_DOUBLE_EQ(origin.X, kMapped.Left - 200);
  EXPECT_DOUBLE_EQ(origin.Y, kMapped.Bottom);
  const Point along = at.Turn({kMapped.Left + 1000, kMapped.Bottom});
  EXPECT_NEAR(along.X, kMapped.Left + 731.3537 - 200, 1e-6);
  EXPECT_NEAR(along.Y, kMapped.Bottom + 681.9984, 1e-6);
  EXPECT_DOUBLE_EQ(at.YOf(1050), kMapped.Bottom - 130);
  EXPECT_DOUBLE_EQ(at.YOf(100), kMapped.Top - 130);
  EXPECT_DOUBLE_EQ(Make(DiagramType::Tephigram, -40, 40, 10).TopPress(), 100);
}

TEST(DiagramMapping, TephigramIsothermsAndIsentropesAreStraightAndSquare) {
  const DiagramMapping at = Make(DiagramType::Tephigram);
  const auto direction = [](Point a, Point b) {
    return std::atan2(-(b.Y - a.Y), b.X - a.X) * 180 / std::acos(-1.0);
  };
  const Point warm = at.ToPoint(10, 1000);
  for (const double press : {900.0, 500.0, 200.0}) {
    EXPECT_NEAR(direction(warm, at.ToPoint(10, press)), 90 - 43, 0.01) << press;
    // Along θ = 283.16 K the temperature falls with the pressure and the line rises to the left.
    const Point dry = at.ToPoint(analysis::DryAdiabatTemp(283.16, press), press);
    EXPECT_NEAR(direction(warm, dry), 180 - 43, 0.01) << press;
  }
  // Near the middle of the frame the isobars are level to within a few degrees.
  EXPECT_LT(std::fabs(direction(at.ToPoint(-10, 700), at.ToPoint(10, 700))), 3);
}

TEST(MarkColumn, MovesApartOnlyWhatTouches) {
  MarkColumn column;
  for (const double y : {5000.0, 1000.0, 1040.0, 1060.0}) column.Add({y, "", "", {}, 0});
  const std::vector<Mark>& marks = column.Arrange(0, 9000, 100);
  ASSERT_EQ(marks.size(), 4u);
  // Three around 1033 spread to 100 apart about their mean; the fourth keeps its place.
  EXPECT_NEAR(marks[0].PlacedY, 933.33, 0.01);
  EXPECT_NEAR(marks[1].PlacedY, 1033.33, 0.01);
  EXPECT_NEAR(marks[2].PlacedY, 1133.33, 0.01);
  EXPECT_DOUBLE_EQ(marks[3].PlacedY, 5000);
}

}  // namespace
}  // namespace vexa::diagram
