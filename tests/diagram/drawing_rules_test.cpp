// Where lines, names and areas of a diagram begin and end, each from both sides. Places follow by
// hand: on the emagram temperatures are shares of the frame's width, pressures of its height by
// their logarithm; potential temperature is T (1000 / p)^0.2856.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "diagram/drawn.h"
#include "support/page_checks.h"

namespace vexa::diagram {
namespace {

// Named 30 % down, or else where their corners at every 25 hPa (closer high up) first are 150 units
// inside.
TEST(DrawingRules, DryAdiabatsAreNamedInside) {
  Drawn drawn = OnEmagram();
  drawn.Set.DryAdiabats = drawn.Set.DryLabel = true;
  const SoundingPlot plot = drawn();
  const Rect& frame = plot.Mapping.Frame();
  const double usual = frame.Top + 0.3 * frame.Height();
  const auto isInside = [&](Point at) {
    return at.X > frame.Left + 150 && at.X < frame.Right - 150 && at.Y > frame.Top + 100 &&
           at.Y < frame.Bottom - 100;
  };
  const auto at = [&](double theta, double press) {
    return plot.Mapping.ToPoint(theta * std::pow(press / 1000, 0.2856) - 273.16, press);
  };
  int usuals = 0, others = 0;
  for (const Label& label : Tagged<Label>(plot.Page, "dry label")) {
    SCOPED_TRACE(label.Text);
    const double theta = std::stod(label.Text);
    const double press = plot.Mapping.PressAt(label.At.Y);
    EXPECT_NEAR(label.At.X, at(theta, press).X, 3);
    const Point there = at(theta, plot.Mapping.PressAt(usual));
    const bool isUsual = there.X > frame.Left + 150 && there.X < frame.Right - 150;
    if (isUsual) {
      EXPECT_NEAR(label.At.Y, usual, 1);
    } else if (press > 200) {
      EXPECT_NEAR(press / 25, std::round(press / 25), 0.01);
      EXPECT_TRUE(isInside(label.At));
      EXPECT_FALSE(isInside(at(theta, press + 25)));
    }
    (isUsual ? usuals : others) += 1;
  }
  EXPECT_GT(usuals, 5);
  EXPECT_GT(others, 5);
}

// Ratios below one and broken ones have a decimal, whole ones none; 0.1 g/kg lie beyond -40 °C.
TEST(DrawingRules, MixingRatiosAreWrittenShort) {
  Drawn drawn = OnEmagram();
  drawn.Set.MixingLines = drawn.Set.WetLabel = true;
  EXPECT_EQ(Texts(drawn().Page, "mixing ratio label"),
            (LabelTexts{"0.2", "0.4", "0.7", "1", "1.5", "2", "3", "4", "6", "8", "10", "13", "16",
                        "20", "25", "30", "36"}));
}

// On a small page some are left out: "0.7" and "1" next to each other would read 0.71.
TEST(DrawingRules, NumbersOfTheGridStandADigitApart) {
  Drawn drawn = OnEmagram();
  drawn.Set.MixingLines = drawn.Set.WetLabel = true;
  for (const int width : {300, 380, 500, 1600}) {
    drawn.On = WindowSurface(width, 500);
    const SoundingPlot plot = drawn();
    const std::vector<Label> labels = Tagged<Label>(plot.Page, "mixing ratio label");
    EXPECT_GT(labels.size(), 4U) << width;
    for (std::size_t i = 1; i < labels.size(); ++i) {
      const double gap = test::PlaceOf(labels[i]).Left - test::PlaceOf(labels[i - 1]).Right;
      EXPECT_GE(gap, TextWidth("0", labels[i].Size)) << width << ' ' << labels[i].Text;
    }
  }
}

TEST(DrawingRules, TheFrameLeavesRoomForWhatStandsAroundIt) {
  Drawn drawn = OnEmagram();
  const auto frame = [&] { return drawn().Mapping.Frame(); };
  const Rect with = frame();
  drawn.Set.RightScale = HeightScale::None;
  const Rect without = frame();
  EXPECT_GT(without.Right, with.Right + Px(20)) << "no scale of heights";
  EXPECT_EQ(without.Bottom, with.Bottom);
  drawn.Set.TempDualScale = true;
  EXPECT_EQ(frame().Bottom, without.Bottom - Px(16)) << "a second row of temperatures";
  drawn.Set.StabilityBars = true;
  EXPECT_EQ(frame().Bottom, without.Bottom - Px(16 + 18)) << "a second row of the legend";
}

TEST(DrawingRules, AreasOfEnergyBeginAndEndOnTheTrace) {
  Drawn drawn(test::ReferenceConvective());
  const SoundingPlot plot = drawn();
  const analysis::ParcelAscent& ascent = drawn.Results.Chosen();
  const auto areas = Tagged<Area>(plot.Page, "CAPE area");
  ASSERT_EQ(areas.size(), 1u);
  double low = 0, high = 2000;
  for (const auto& ring : areas[0].Rings) {
    for (const Point& at : ring) {
      const double press = plot.Mapping.ToCoordinates(at).Press;
      low = std::max(low, press);
      high = std::min(high, press);
    }
  }
  EXPECT_NEAR(low, ascent.FreeLevel.Press, 2 * ascent.Step);
  EXPECT_NEAR(high, std::max(ascent.Equilibrium.Press, plot.Mapping.TopPress()), 2 * ascent.Step);
}

}  // namespace
}  // namespace vexa::diagram
