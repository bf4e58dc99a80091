#include "diagram/mapping.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/moist_air.h"
#include "config/options.h"
#include "diagram/scaling.h"
#include "support/soundings.h"

namespace vexa::diagram {
namespace {

using test::Profile;

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
  for (const auto& [min, max] : {std::pair(-40, 40), {-80, 0}, {-60, 60}}) {
    const DiagramMapping skewed = Make(DiagramType::SkewT, min, max);
    const DiagramMapping plain = Make(DiagramType::Emagram, min, max);
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

constexpr Rect kPlot{1300, 620, 7900, 8220};

SoundingRecord ReachingTo(double top) {
  return Profile({{1000, 15, 10}, {500, -20, -30}, {top, -60, 999.9}});
}

TEST(ChooseDiagram, TypeFollowsTheHighPart) {
  using enum DiagramType;
  const auto chosen = [](double top, bool isAuto, int limit = 0) {
    Options options;
    options.Above100mb = limit == 0;
    options.AutoHighEmagram = isAuto;
    options.AutoMbSelect = limit == 0;
    options.MbLimit = limit;
    return ChooseDiagram(ReachingTo(top), options);
  };
  EXPECT_EQ(chosen(22, true).Type, Emagram);
  EXPECT_EQ(chosen(60, false).Type, SkewT) << "the own choice";
  EXPECT_EQ(chosen(110, true).Type, SkewT);
  EXPECT_EQ(chosen(10, true, 50).TopPress, 100) << "above 100 not wanted";
  EXPECT_EQ(chosen(10, true, 400).TopPress, 400);
  EXPECT_EQ(ChooseDiagram({}, {}).TopPress, 100) << "an empty diagram";
}

void ExpectInFrame(const SoundingRecord& sounding, const Options& options) {
  const DiagramChoice choice = ChooseDiagram(sounding, options);
  const TempRange range = ChooseTempRange(sounding, options, choice, kPlot);
  const DiagramMapping at(choice.Type, kPlot, range.Min, range.Max, choice.TopPress);
  for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
    if (sounding.Press(i) < choice.TopPress) continue;
    const double x = at.ToPoint(sounding.Temp(i), sounding.Press(i)).X;
    EXPECT_GE(x, kPlot.Left) << sounding.Press(i);
    EXPECT_LE(x, kPlot.Right) << sounding.Press(i);
  }
}

TEST(ChooseTempRange, KeepsEveryTemperatureInTheFrame) {
  const SoundingRecord soundings[] = {
      Profile({{990, 46, 5}, {700, 18, -20}, {500, -5, -45}, {100, -75, 999.9}}),
      Profile({{680, -64, -70}, {650, -45, -49}, {300, -62, -66}, {100, -80, 999.9}}),
      Profile({{1000, 25, 20}, {200, -40, -60}, {100, -35, 999.9}}), Profile({{850, 10, 5}})};
  for (const SoundingRecord& sounding : soundings) {
    for (const DiagramType type : {DiagramType::SkewT, DiagramType::Tephigram}) {
      Options options;
      options.Diagram = type;
      ExpectInFrame(sounding, options);
    }
  }
}

// The fixed skew moves the air at 10 hPa by more than the frame's width.
TEST(ChooseTempRange, HoldsAHighAscentOnTheSkewT) {
  Options options;
  options.Above100mb = true;
  options.AutoHighEmagram = false;
  const SoundingRecord sounding = Profile({{970, 28, -50},
                                           {700, 10, -2},
                                           {500, -10, -25},
                                           {350, -30, -50},
                                           {200, -58, -70},
                                           {100, -62, -80},
                                           {30, -52, -84},
                                           {10, -40, -84}});
  const DiagramChoice choice = ChooseDiagram(sounding, options);
  ASSERT_EQ(choice.TopPress, 10);
  ExpectInFrame(sounding, options);
  // Of all ranges that hold the temperatures, 3 % from the right edge, no narrower one holds as
  // many dew points.
  const auto held = [&](double from, double to, const Levels<double>& temps) {
    const DiagramMapping at(choice.Type, kPlot, from, to, choice.TopPress);
    int count = 0;
    for (int i = 1; i <= temps.Count(); ++i) {
      const double x = at.ToPoint(temps(i), sounding.Press(i)).X;
      count += x >= kPlot.Left && x <= kPlot.Right - 0.03 * kPlot.Width() ? 1 : 0;
    }
    return count;
  };
  const TempRange found = ChooseTempRange(sounding, options, choice, kPlot);
  EXPECT_EQ(std::fmod(found.Max - found.Min, 10), 0);
  const int dewpts = held(found.Min, found.Max, sounding.Dewpt);
  for (double span = 60; span <= 400; span += 10) {
    for (double from = -300; from < 0; from += 5) {
      if (held(from, from + span, sounding.Temp) < sounding.NumTempLevels()) continue;
      const int others = held(from, from + span, sounding.Dewpt);
      EXPECT_TRUE(others < dewpts || (others == dewpts && span >= found.Max - found.Min))
          << from << ' ' << span << ": " << others << " of " << dewpts;
    }
  }
  SoundingRecord moisture = sounding;
  moisture.Temp = sounding.Dewpt;
  ExpectInFrame(moisture, options);
}

}  // namespace
}  // namespace vexa::diagram
