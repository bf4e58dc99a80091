#include "hodograph/hodograph_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "config/options.h"
#include "hodograph/rings.h"
#include "support/page_checks.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::hodograph {
namespace {

using test::Tagged;
using test::Texts;
using LabelTexts = std::vector<std::string>;

HodographPlot Draw(const SoundingRecord& sounding, const Options& options,
                   const HodographSettings& window = {}, std::vector<ComparedWinds> compared = {}) {
  const auto results = analysis::Analyse(sounding, options);
  return PlotHodograph({.Sounding = sounding,
                        .Results = results,
                        .Set = options,
                        .Window = window,
                        .Compared = std::move(compared)},
                       ImageSurface(1000, 750));
}

TEST(HodographPlot, WestIsRightSouthIsUpAndTheMappingTurnsBack) {
  for (const HodoLocation place : {HodoLocation::Centered, HodoLocation::Dependent}) {
    Options options;
    options.HodoPlace = place;
    const HodographPlot plot = Draw(test::ReferenceConvective(), options);
    const HodographMapping& at = plot.Mapping;
    const Point calm = at.ToPoint({});
    const Point west = at.ToPoint(analysis::Components({270, 20}));
    const Point south = at.ToPoint(analysis::Components({180, 20}));
    EXPECT_NEAR(west.X - calm.X, 20 * at.Scale, 0.01);
    EXPECT_NEAR(west.Y, calm.Y, 0.01);
    EXPECT_NEAR(calm.Y - south.Y, 20 * at.Scale, 0.01);
    for (const ProfileWind& wind : plot.Winds) {
      const Point point = at.ToPoint(wind.Vector);
      EXPECT_TRUE(at.Frame.Contains(point));
      EXPECT_NEAR(at.ToWind(point).U, wind.Vector.U, 1e-9);
      EXPECT_NEAR(at.ToWind(point).V, wind.Vector.V, 1e-9);
    }
  }
}

TEST(HodographPlot, LimitHasItsOuterRingAtTheLimit) {
  HodographSettings window;
  window.Rings = RingScaling::Limit;
  window.RingLimit = 85;
  const HodographPlot plot = Draw(test::ReferenceConvective(), {}, window);
  EXPECT_EQ(Texts(plot.Page, "ring label"), (LabelTexts{"20", "40", "60", "80", "85"}));
  const std::vector<Label> labels = Tagged<Label>(plot.Page, "ring label");
  // Two digits begin 45 display units left of their ring.
  const Point ring{labels[0].At.X + 45 * kDisplayUnit, labels[0].At.Y};
  EXPECT_NEAR(std::hypot(ring.X - plot.Mapping.Center.X, ring.Y - plot.Mapping.Center.Y),
              20 * plot.Mapping.Scale, 0.01);
  // 90 kt at 12 km lie outside; the trace is cut at the frame.
  for (const Polyline& line : Tagged<Polyline>(plot.Page, "trace")) {
    for (const Point& point : line.Points) EXPECT_LE(point.X, plot.Mapping.Frame.Right + 0.01);
  }
}

// No height is written on the mean wind's square.
void ExpectFreeSquare(const Picture& page) {
  for (const Area& square : Tagged<Area>(page, "mean wind")) {
    const Point low = square.Rings[0][0];
    const Point high = square.Rings[0][2];
    for (const Label& label : Tagged<Label>(page, "height label")) {
      const double half = TextWidth(label.Text, label.Size, label.Bold) / 2;
      const bool isBeside = label.At.X + half <= low.X || label.At.X - half >= high.X;
      EXPECT_TRUE(isBeside || label.At.Y + 0.36 * label.Size <= low.Y ||
                  label.At.Y - 0.36 * label.Size >= high.Y)
          << label.Text;
    }
  }
}

TEST(HodographPlot, LegendNamesWhatIsDrawn) {
  HodographSettings window;
  window.MbeVector = true;
  window.HelicityContours = true;
  HodographPlot plot = Draw(test::ReferenceConvective(), {}, window);
  LabelTexts legend = Texts(plot.Page, "legend");
  for (const char* text : {"Storm Vector (RM)", "Storm Vector (LM)", "Helicity Contours",
                           "MBE Vector", "Ground-Relative Winds"}) {
    EXPECT_EQ(std::ranges::count(legend, text), 1) << text;
  }

  Options left;
  left.Mover = StormMover::Left;
  window = {};
  window.Frame = HodoOrigin::Storm;
  plot = Draw(test::ReferenceConvective(), left, window);
  legend = Texts(plot.Page, "legend");
  EXPECT_EQ(legend[0], "Storm Vector (LM)");
  EXPECT_EQ(std::ranges::count(legend, "Storm-Relative Winds"), 1);
  EXPECT_EQ(Texts(plot.Page, "axis caption"), (LabelTexts{" Storm", "Relative"}));
  EXPECT_EQ(plot.Mapping.ToPoint(*plot.Storm), plot.Mapping.Center);
  EXPECT_EQ(std::ranges::count(legend, "MBE Vector"), 0);

  window.NoSMplot = true;
  plot = Draw(test::ReferenceConvective(), left, window);
  EXPECT_TRUE(Tagged<Polyline>(plot.Page, "storm vector").empty());
  EXPECT_FALSE(HitsStormVector(plot, plot.Mapping.Center));
}

// Where the centre stands low in the frame, rings that miss the half axis below are labelled on
// another one; a trace that begins aloft has no colours of the air below in its legend.
TEST(HodographPlot, EveryRingOnAHalfAxisIsLabelledAndTheLegendHasOnlyWhatIsDrawn) {
  const HodographPlot plot =
      Draw(test::Profile({{500, -10, -20}, {300, -40, -50}, {200, -55, -65}},
                         {{5700, 180, 60}, {7000, 200, 55}, {10000, 205, 62}}),
           {});
  const HodographMapping& at = plot.Mapping;
  ASSERT_GT(at.Center.Y - at.Frame.Top, 1.5 * (at.Frame.Bottom - at.Center.Y));
  const LabelTexts labels = Texts(plot.Page, "ring label");
  // Rings whose label stands inside the frame.
  const auto rings =
      static_cast<std::size_t>((at.Center.Y - at.Frame.Top - kRingText / 2) / at.Scale / 20);
  ASSERT_GE(rings, 2u);
  for (std::size_t i = 1; i <= rings; ++i) {
    EXPECT_EQ(std::ranges::count(labels, std::to_string(20 * i)), 1) << 20 * i;
  }
  const LabelTexts legend = Texts(plot.Page, "legend");
  EXPECT_EQ(std::ranges::count(legend, "  1-3 km"), 0);
  EXPECT_EQ(std::ranges::count(legend, "  9-12 km"), 1);
}

// On the line of a value the helicity function itself gives this value.
TEST(HodographPlot, HelicityContoursAgreeWithTheHelicity) {
  HodographSettings window;
  window.HelicityContours = true;
  const SoundingRecord sounding = test::ReferenceConvective();
  const HodographPlot plot = Draw(sounding, {}, window);
  const std::vector<Polyline> lines = Tagged<Polyline>(plot.Page, "helicity contour");
  ASSERT_GT(lines.size(), 4u);
  double last = kNone;
  for (const Polyline& line : lines) {
    const auto at = [&](Point point) {
      return analysis::StormRelativeHelicity(sounding, sounding.ElevM, 3000,
                                             plot.Mapping.ToWind(point));
    };
    const double value = at(line.Points.front());
    EXPECT_NEAR(value, at(line.Points.back()), 0.01);
    EXPECT_NEAR(std::remainder(value, std::fabs(value) <= 300.01 ? 50 : 100), 0, 0.01);
    EXPECT_GT(value, last);
    last = value;
  }
}

TEST(HodographPlot, NeverGrowsWithTheSpeedOfAWind) {
  const SoundingRecord fast =
      test::Profile({}, {{10, 200, 30}, {500, 210, 1e9}, {1000, 250, 1e30}, {7000, 300, 20}});
  for (const HodoLocation place : {HodoLocation::Centered, HodoLocation::Dependent}) {
    Options options;
    options.HodoPlace = place;
    EXPECT_LT(Draw(fast, options).Page.Items().size(), 500u);
  }
}

TEST(HodographPlot, SoundingsWithFewWindsSayWhatTheyLack) {
  SoundingRecord mostlyCalm = test::Profile({}, {});
  for (int i = 0; i < 100; ++i) mostlyCalm.AddWind(100.0 * i, 360, i == 99 ? 8 : 0);
  const std::pair<SoundingRecord, const char*> cases[] = {
      {test::Profile({}), "This sounding has no winds."},
      {test::Profile({}, {{0, 999.9, 999.9}}), "This sounding has no winds."},
      {test::Profile({}, {{10, 200, 30}}), "This sounding has a single wind."},
      {test::Profile({}, {{0, 360, 0}, {900, 360, 0}}), "Calm at every level."},
      {test::Profile({}, {{5000, 200, 30}, {6000, 210, 40}}),
       "No winds below 5.0 km above ground."},
      {mostlyCalm, ""}};
  HodographSettings all;
  all.MbeVector = true;
  all.HelicityContours = true;
  for (const auto& [sounding, remark] : cases) {
    for (const HodoOrigin frame : {HodoOrigin::Ground, HodoOrigin::Storm}) {
      SCOPED_TRACE(remark);
      all.Frame = frame;
      const HodographPlot plot = Draw(sounding, {}, all);
      const LabelTexts remarks = Texts(plot.Page, "remark");
      EXPECT_EQ(remarks.empty() ? "" : remarks[0], remark);
      EXPECT_TRUE(std::isfinite(plot.Mapping.Scale));
      const auto results = analysis::Analyse(sounding, {});
      EXPECT_EQ(
          HodographBox({.Sounding = sounding, .Results = results, .Set = Options()}).has_value(),
          !plot.Winds.empty());
    }
  }
}

TEST(HodographPlot, ComparisonTracesFollowTheirChoice) {
  const std::vector<ComparedWinds> both = {{1, "first", {{0, {0, 0}}, {1000, {-20, 0}}}},
                                           {2, "second", {{0, {0, 0}}, {1000, {0, -30}}}}};
  HodographSettings window;
  const auto traces = [&](const char* named) {
    const Picture page = Draw(test::ReferenceWinter(), {}, window, both).Page;
    EXPECT_EQ(std::ranges::count(Texts(page, "legend"), named), 1);
    return Tagged<Polyline>(page, "comparison").size();
  };
  EXPECT_EQ(traces("#2 - second"), 2u);
  window.Compare = CompareTraces::Left;
  EXPECT_EQ(traces("#1 - first"), 1u);
}

TEST(HodographPlot, CursorReadsTheWindUnderItAndTheNearestLevel) {
  Options options;
  const HodographPlot plot = Draw(test::ReferenceConvective(), options);
  const Point at = plot.Mapping.ToPoint(analysis::Components({226, 37}));
  CursorBox box = ReadHodograph(plot, at, options);
  EXPECT_EQ(box.Cursor, "Cursor: 226/37 kts SW");
  EXPECT_EQ(box.Wind, "  Wind: 225/36 kts SW  2.6 km");  // 3000 m above sea level, station at 357 m
  options.Speed = SpeedUnits::MetersPerSecond;
  EXPECT_EQ(ReadHodograph(plot, at, options).Cursor, "Cursor: 226/19.0 m/s SW");
  EXPECT_TRUE(ReadHodograph(plot, {11000, 4000}, options).Cursor.empty());
}

// Whatever the page and the winds: texts are legible, apart and where they belong.
TEST(HodographPlot, ComposesEveryPageForItsSurface) {
  SoundingRecord many;
  for (int i = 0; i < 3000; ++i) {
    many.AddTemp(1000 - 0.32 * i, 25 - 0.025 * i, 15 - 0.03 * i);
    many.AddWind(10.0 * i, 180 + (i / 20) % 180, 5 + i % 60);
  }
  SoundingRecord south = test::ReferenceConvective();
  SetDecimalPosition(south, -89.9, 0);
  const SoundingRecord soundings[] = {
      test::ReferenceConvective(),
      test::ReferenceWinter(),
      test::Profile({}),
      many,
      south,
      test::Profile({},
                    {{10, 90, 8}, {900, 100, 12}, {3000, 80, 6}, {6000, 270, 3}, {9000, 290, 9}})};
  const Surface surfaces[] = {WindowSurface(640, 480),  WindowSurface(800, 600, 2),
                              ImageSurface(3440, 1440), ImageSurface(900, 1400),
                              PaperSurfaceMm(210, 297), PaperSurfaceMm(297, 210)};
  HodographSettings window;
  window.MbeVector = true;
  window.HelicityContours = true;
  for (const SoundingRecord& sounding : soundings) {
    const auto results = analysis::Analyse(sounding, {});
    const Options options;
    const HodographInput input{sounding, results, options, window};
    for (const Surface& surface : surfaces) {
      SCOPED_TRACE(sounding.StationTitle + ", " + std::to_string(surface.Width) + " x " +
                   std::to_string(surface.Height));
      const HodographPlot plot = PlotHodograph(input, surface);
      test::ExpectOrderly(plot.Page, {0, 0, surface.Width, surface.Height});
      EXPECT_GE(std::min(plot.Mapping.Frame.Width(), plot.Mapping.Frame.Height()),
                200 * kUnitsPerPixel);
      const auto left = Texts(plot.Page, "left out");
      EXPECT_EQ(Texts(plot.Page, "panel line").empty(),
                !left.empty() && left[0].find("analysis") != std::string::npos);
    }
    for (const double side : {120, 200, 280, 356}) {
      SCOPED_TRACE(side);
      const Rect region{500, 700, 500 + side * kUnitsPerPixel, 700 + 0.9 * side * kUnitsPerPixel};
      Picture page(12000, 9000, {});
      DrawHodographBox(page, region, input);
      test::ExpectOrderly(page, region);
      EXPECT_LE(Texts(page, "ring label").size(), 1u);
      ExpectFreeSquare(page);
    }
  }
}

// Where levels crowd the line is one of means, and the marks stand on it.
TEST(HodographPlot, HeightMarksStandOnTheTrace) {
  SoundingRecord noisy = test::Profile({});
  for (int i = 0; i <= 600; ++i) noisy.AddWind(10.0 * i, 270, i % 2 == 0 ? 40 : 10);
  const HodographPlot plot = Draw(noisy, {});
  const std::vector<Circle> marks = Tagged<Circle>(plot.Page, "height mark");
  ASSERT_GE(marks.size(), 5u);
  for (std::size_t i = 0; i + 1 < marks.size(); ++i) {
    EXPECT_NEAR(plot.Mapping.ToWind(marks[i].Center).U, -25, 0.6);
  }
}

TEST(SmallHodograph, ObeysItsOptions) {
  const SoundingRecord sounding = test::ReferenceConvective();
  Options options;
  const auto results = analysis::Analyse(sounding, options);
  const auto draw = [&] {
    Picture page(3360, 3360, {});
    DrawHodographBox(page, {0, 0, 3360, 3360},
                     {.Sounding = sounding, .Results = results, .Set = options});
    return page;
  };
  EXPECT_EQ(Tagged<Polyline>(draw(), "storm vector").size(), 1u);
  EXPECT_EQ(Tagged<Polyline>(draw(), "trace").size(), 5u);  // 12 km of the 20 that there are
  options.PlotStormVector = false;
  options.HodoDepthMode = HodoDepth::Limit;
  options.HodoDepthLimitKm = 30;
  EXPECT_EQ(Tagged<Polyline>(draw(), "trace").size(), 6u);
  options.HodoDepthLimitKm = 6;
  EXPECT_TRUE(Tagged<Polyline>(draw(), "storm vector").empty());
  EXPECT_EQ(Tagged<Polyline>(draw(), "trace").size(), 3u);
}

// Hodographs kept for later are the window's; beside the diagram stands what the diagram compares
// with, in the same ink and to the same depth of 12 km as the first.
TEST(SmallHodograph, ShowsTheSoundingThatTheDiagramComparesWith) {
  const SoundingRecord sounding = test::ReferenceWinter();
  Options options;
  const auto results = analysis::Analyse(sounding, options);
  constexpr Color kTeal{0, 128, 128};
  const std::vector<ComparedWinds> both = {
      {1, "kept", {{0, {0, 0}}, {1000, {-20, 0}}}},
      {2,
       "compared",
       {{0, {0, 0}}, {1000, {0, -30}}, {11000, {9, -9}}, {13000, {9, -9}}, {14000, {99, 0}}},
       kTeal}};
  const auto draw = [&] {
    Picture page(3360, 3360, {});
    DrawHodographBox(page, {0, 0, 3360, 3360},
                     {.Sounding = sounding, .Results = results, .Set = options, .Compared = both});
    return Tagged<Polyline>(page, "comparison");
  };
  const std::vector<Polyline> lines = draw();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].Stroke.Ink, kTeal);
  EXPECT_EQ(lines[0].Points.size(), 4u);  // the last at 12 km itself
  options.HodoInvert = true;
  EXPECT_NE(draw().at(0).Stroke.Ink, kTeal) << "on the other paper";
}

}  // namespace
}  // namespace vexa::hodograph
