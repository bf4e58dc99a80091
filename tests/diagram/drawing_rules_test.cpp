// Where lines, names and areas of a diagram begin and end, each from both sides. Places follow by
// hand: on the emagram temperatures are shares of the frame's width, pressures of its height by
// their logarithm; potential temperature is T (1000 / p)^0.2856.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "diagram/drawn.h"
#include "diagram/palette.h"
#include "diagram/scaling.h"

namespace vexa::diagram {
namespace {

double Theta(const DiagramCoordinates& at) {
  return (at.Temp + 273.16) * std::pow(1000 / at.Press, 0.2856);
}

const SoundingRecord& ToTenHpa() {
  static const SoundingRecord sounding =
      test::Profile({{1000, 30, 20}, {500, -12, -30}, {100, -38, -39}, {10, 0, -39}});
  return sounding;
}

// Each by ten kelvin below 400 K, by twenty below 600, by fifty up to 1200. At 1050 hPa -40 °C are
// 229.9 K, at 10 hPa 60 °C are 1241 K.
TEST(DrawingRules, DryAdiabatsStandFurtherApartHighUp) {
  Drawn drawn = OnEmagram(ToTenHpa());
  drawn.Set.Above100mb = drawn.Set.DryAdiabats = true;
  drawn.Set.TempMax = 60;
  const SoundingPlot high = drawn();
  double value = 230;
  for (const auto& line : Lines(high.Page, "dry adiabat")) {
    EXPECT_NEAR(Theta(high.Mapping.ToCoordinates(line.front())), value, 3);
    value += value < 400 ? 10 : value < 600 ? 20 : 50;
  }
  EXPECT_EQ(value, 1250) << "the next one";
}

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

// From 45 % down on every 200 units, where the line first is 200 units inside the frame. 300 K have
// -33.2 °C there and -38.6 °C at the tenth step, which is 203 units inside.
TEST(DrawingRules, AReferenceLineIsNamedWhereItIsInside) {
  Drawn drawn = OnEmagram();
  drawn.Set.DryRef.Plot = drawn.Set.DryRef.ShowLabel = true;
  const SoundingPlot plot = drawn();
  const Rect& frame = plot.Mapping.Frame();
  const auto x = [&](int step) {
    const double press = plot.Mapping.PressAt(frame.Top + 0.45 * frame.Height() + 200 * step);
    return plot.Mapping.ToPoint(300 * std::pow(press / 1000, 0.2856) - 273.16, press).X;
  };
  int first = 0;
  while (x(first) < frame.Left + 200) ++first;
  ASSERT_GT(first, 0);
  const auto labels = Tagged<Label>(plot.Page, "dry reference");
  ASSERT_EQ(labels.size(), 1u);
  EXPECT_NEAR(labels[0].At.Y, frame.Top + 0.45 * frame.Height() + 200 * first, 0.5);
  EXPECT_NEAR(labels[0].At.X, x(first), 3);
  EXPECT_EQ(Tagged<Polyline>(plot.Page, "dry reference").at(0).Stroke.Width,
            2.5 * PaletteFor(drawn.Set).DryAdiabat.Width);
}

// Ratios below one and broken ones have a decimal, whole ones none; 0.1 g/kg lie beyond -40 °C.
TEST(DrawingRules, MixingRatiosAreWrittenShort) {
  Drawn drawn = OnEmagram();
  drawn.Set.MixingLines = drawn.Set.WetLabel = true;
  EXPECT_EQ(Texts(drawn().Page, "mixing ratio label"),
            (LabelTexts{"0.2", "0.4", "0.7", "1", "1.5", "2", "3", "4", "6", "8", "10", "13", "16",
                        "20", "25", "30", "36"}));
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

// A skew-T to 10 hPa is as wide as its temperatures want and no wider, by whole tens, from a
// multiple of five on.
TEST(DrawingRules, AHighSkewTIsNoWiderThanItHasToBe) {
  constexpr Rect kFrame{1300, 620, 7900, 8220};
  Options options;
  options.Above100mb = true;
  options.AutoHighEmagram = false;
  // Without dew points, so that nothing but temperatures counts.
  SoundingRecord sounding = test::Profile(
      {{970, 28, 999.9}, {500, -10, 999.9}, {100, -62, 999.9}, {30, -52, 999.9}, {10, -40, 999.9}});
  const DiagramChoice choice = ChooseDiagram(sounding, options);
  const TempRange range = ChooseTempRange(sounding, options, choice, kFrame);
  const double span = range.Max - range.Min;
  const auto reach = [&](double width) {
    const DiagramMapping at(choice.Type, kFrame, 0, width, choice.TopPress);
    double least = 1e9, most = -1e9;
    for (int i = 1; i <= sounding.NumTempLevels(); ++i) {
      const double x = at.ToPoint(sounding.Temp(i), sounding.Press(i)).X - kFrame.Left;
      least = std::min(least, x * width / kFrame.Width());
      most = std::max(most, x * width / kFrame.Width());
    }
    return std::pair(least, most);
  };
  EXPECT_EQ(std::fmod(span, 10), 0);
  EXPECT_EQ(std::fmod(range.Min, 5), 0);
  // 3 % of the span stay free on the warm side.
  const auto fits = [&](double width, double start) {
    const auto [least, most] = reach(width);
    return least >= start && most <= start + 0.97 * width;
  };
  EXPECT_TRUE(fits(span, range.Min));
  for (double start = -300; start <= 100; start += 5) {
    EXPECT_FALSE(span > 80 && fits(span - 10, start)) << start;
  }
}

// On every kind of diagram but the tephigram, whose top is fixed.
TEST(DrawingRules, OtherSoundingsRaiseTheTop) {
  const SoundingRecord high = ToTenHpa();
  Drawn drawn(test::Profile({{1000, 20, 10}, {520, -12, -30}}));
  drawn.Others = {{&high}};
  drawn.Mode = MultiMode::Overlay;
  drawn.Set.Above100mb = true;
  drawn.Set.AutoHighEmagram = false;
  for (const auto& [type, top] : {std::pair(DiagramType::SkewT, 10),
                                  {DiagramType::Emagram, 10},
                                  {DiagramType::Tephigram, 100}}) {
    drawn.Set.Diagram = type;
    EXPECT_EQ(drawn().Mapping.TopPress(), top);
  }
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

// "Td" stands to the left of its trace, "T" to the right, unless there is no room.
TEST(DrawingRules, TracesAreNamedOnTheirOwnSide) {
  const auto sides = [](double temp, double dewpt) {
    Drawn drawn =
        OnEmagram(test::Profile({{1000, 20, 10}, {500, temp, dewpt}, {400, temp, dewpt}}));
    std::string found;
    for (const Label& name : Tagged<Label>(drawn().Page, "trace name")) {
      found += name.Text + (name.Across == AnchorX::Left ? ">" : "<");
    }
    return found;
  };
  EXPECT_EQ(sides(10, -10), "T>Td<");
  EXPECT_EQ(sides(-36, -38.5), "T>Td>") << "no room on the left";
}

}  // namespace
}  // namespace vexa::diagram
