// The display of fronts and the fronts in time: what holds of every page, and what they show.
#include "fronts/front_plot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "config/options.h"
#include "core/units.h"
#include "fronts/front_series.h"
#include "fronts/front_text.h"
#include "support/page_checks.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::fronts {
namespace {

/// A sounding with all that its page is drawn from.
struct Drawn {
  explicit Drawn(SoundingRecord sounding, HodographSettings window = {}, Options options = {},
                 const std::optional<HeldZone>& held = std::nullopt)
      : Sounding(std::move(sounding)),
        Set(std::move(options)),
        Results(analysis::Analyse(Sounding, Set)),
        Window(window),
        Fronts(FindFronts(Sounding, Results.Levels, Window.Front, held)) {}
  FrontPlot On(const Surface& surface) const {
    return PlotFronts(
        {.Winds = {.Sounding = Sounding, .Results = Results, .Set = Set, .Window = Window},
         .Fronts = Fronts},
        surface);
  }

  SoundingRecord Sounding;
  Options Set;
  analysis::AnalysisResults Results;
  HodographSettings Window;
  FrontResults Fronts;
};

std::vector<Drawn> Pages() {
  HodographSettings strict;
  strict.Front.GradientThreshold = 0.5;
  HodographSettings sliding;
  sliding.Front.Mode = ThermalWindMode::Sliding;
  sliding.Front.IntervalM = 100;
  Options other;
  other.Speed = SpeedUnits::MetersPerSecond;
  other.GpmUnits = LengthUnits::Feet;
  other.Pressure = PressureUnits::Hpa;
  other.Screen = ScreenColor::Black;
  const SoundingRecord winter = test::ReferenceWinter();
  SoundingRecord tropical = winter;
  SetDecimalPosition(tropical, 5, 8);
  return {Drawn(winter),
          Drawn(winter, strict),
          Drawn(winter, sliding),
          Drawn(winter, {}, other),
          Drawn(test::ReferenceConvective()),
          Drawn(test::Mirrored(winter)),
          Drawn(tropical),
          Drawn(test::WithoutWinds(winter)),
          Drawn(winter, strict, {}, HeldZone{2000, 9000})};
}

using test::Tagged;
using test::Texts;

TEST(FrontPlot, IsOrderlyAtEverySize) {
  const Surface sizes[] = {WindowSurface(320, 240),  WindowSurface(800, 540),
                           WindowSurface(1280, 680), WindowSurface(1920, 1000),
                           ImageSurface(1600, 1200), PaperSurfaceMm(190, 270),
                           PaperSurfaceMm(277, 180)};
  const std::vector<Drawn> pages = Pages();
  for (std::size_t i = 0; i < pages.size(); ++i) {
    for (const Surface& on : sizes) {
      SCOPED_TRACE(std::to_string(i) + ": " + std::to_string(on.Width / kUnitsPerPixel) + " x " +
                   std::to_string(on.Height / kUnitsPerPixel));
      const FrontPlot plot = pages[i].On(on);
      test::ExpectOrderly(plot.Page, {0, 0, on.Width, on.Height});
    }
  }
}

TEST(FrontPlot, ShowsTheFrontItsLayerAndWhyItIsOne) {
  const Drawn winter(test::ReferenceWinter());
  const FrontPlot plot = winter.On(WindowSurface(1280, 720));
  EXPECT_EQ(Texts(plot.Page, "front character"),
            Characterisation({winter.Fronts, winter.Window.Front, winter.Set}));
  // The zone is the layers of 500 to 1000 and 1000 to 1500 m, below 6000 m there are twelve.
  EXPECT_EQ(Tagged(plot.Page, "zone row").size(), 2u);
  EXPECT_EQ(Tagged(plot.Page, "table row").size(), 12u);
  // The head of the motion lies on the front's line, which all pips stand beside: north-east.
  const Point head = Tagged<Polyline>(plot.Page, "front motion").at(0).Points.back();
  const Point calm = plot.Mapping.ToPoint({});
  // 12.3 kt towards 36.8 degrees.
  EXPECT_NEAR((head.X - calm.X) / plot.Mapping.Scale, 12.3 * std::sin(Radians(36.8)), 0.1);
  EXPECT_NEAR((calm.Y - head.Y) / plot.Mapping.Scale, 12.3 * std::cos(Radians(36.8)), 0.1);
}

TEST(FrontPlot, TellsWhenThereIsNone) {
  for (const Drawn& none : {Pages()[1], Pages()[6], Pages()[7]}) {
    const FrontPlot plot = none.On(WindowSurface(1280, 720));
    EXPECT_EQ(Texts(plot.Page, "remark"), std::vector<std::string>{"No Fronts Found"});
    EXPECT_TRUE(Tagged(plot.Page, "normal wind").empty());
    EXPECT_TRUE(Tagged(plot.Page, "front motion").empty());
    EXPECT_FALSE(Tagged(plot.Page, "reason").empty());
  }
}

TEST(FrontPlot, APlaceOfEachLayerIsFoundByThePointer) {
  const Drawn winter(test::ReferenceWinter());
  const FrontPlot plot = winter.On(WindowSurface(1280, 720));
  std::size_t layer = 0;
  for (const Label& row : Tagged<Label>(plot.Page, "table row")) {
    EXPECT_EQ(LayerAt(plot, row.At), layer++);
  }
  EXPECT_EQ(layer, 12u);
  for (std::size_t i = 1; i < 4; ++i) {
    const FrontLayer& one = winter.Fronts.Layers[i];
    const analysis::WindVector middle{(one.Lower.U + one.Upper.U) / 2,
                                      (one.Lower.V + one.Upper.V) / 2};
    EXPECT_EQ(LayerAt(plot, plot.Mapping.ToPoint(middle)), i);
  }
  EXPECT_FALSE(LayerAt(plot, {1, 1}));
}

FrontMoment Moment(double hours, const std::string& time, std::optional<Front> front) {
  return {hours, time, "Here " + time, std::move(front)};
}

TEST(FrontSeries, BarsStandByTimeAndHeight) {
  const Drawn winter(test::ReferenceWinter());
  Front later = *winter.Fronts.Found;
  later.Zone.Whole.Base = 1500;
  later.Zone.Whole.Top = 3000;
  const std::vector<FrontMoment> moments = {Moment(24, "00Z 02 Jan", later),
                                            Moment(0, "00Z 01 Jan", winter.Fronts.Found),
                                            Moment(12, "12Z 01 Jan", std::nullopt)};
  const Options set;
  for (const Surface& on : {WindowSurface(800, 540), WindowSurface(1920, 1000),
                            PaperSurfaceMm(190, 270), WindowSurface(300, 200)}) {
    const Picture page = PlotFrontSeries(moments, "Here", set, on);
    test::ExpectOrderly(page, {0, 0, on.Width, on.Height});
    const auto bars = Tagged<Area>(page, "front");
    ASSERT_EQ(bars.size(), 2u);
    const auto &first = bars[0].Rings.front(), &second = bars[1].Rings.front();
    EXPECT_LT(first[0].X, second[0].X);
    // 500 to 1500 m and 1500 to 3000 m: the second begins where the first ends, half as high again.
    EXPECT_NEAR(first[0].Y, second[2].Y, 1);
    EXPECT_NEAR(second[2].Y - second[0].Y, 1.5 * (first[2].Y - first[0].Y), 1);
    EXPECT_EQ(Texts(page, "no front").size(), 1u);
    // What stands between has none, so that they are not joined.
    EXPECT_TRUE(Tagged(page, "front height").empty());
  }
  const std::vector<std::string> lines = ListFrontSeries(moments, set);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_TRUE(lines[1].starts_with("00Z 01 Jan      Anabatic Warm Front         500   1500"));
  EXPECT_TRUE(lines[2].ends_with("none"));
  EXPECT_TRUE(lines[3].find("   1500   3000") != std::string::npos);
}

}  // namespace
}  // namespace vexa::fronts
