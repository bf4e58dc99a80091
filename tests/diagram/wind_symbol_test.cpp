#include "diagram/wind_symbol.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/interpolate.h"
#include "config/options.h"
#include "core/numbers.h"
#include "diagram/drawn.h"
#include "diagram/sounding_plot.h"
#include "diagram/wind_column.h"
#include "support/soundings.h"

namespace vexa::diagram {
namespace {

std::size_t Count(const Picture& picture, std::string_view tag) {
  return Tagged(picture, tag).size();
}

Picture Symbol(analysis::Wind wind, const Options& options) {
  Picture page(1000, 1000, {});
  DrawWindSymbol(page, {500, 500}, wind, options, {{}, 10, LineStyle::Solid});
  return page;
}

TEST(WindSymbol, CountsToTheNearestHalfFeather) {
  using enum SpeedUnits;
  // In m/s 1.2, 5.1 and 49.9; no symbol grows without end.
  const struct {
    double Speed;  // kt
    SpeedUnits Units;
    int Pennants, Feathers, Halves;
  } cases[] = {{2, Knots, 0, 0, 0},
               {3, Knots, 0, 0, 1},
               {12, Knots, 0, 1, 0},
               {13, Knots, 0, 1, 1},
               {48, Knots, 1, 0, 0},
               {115, Knots, 2, 1, 1},
               {2.331, MetersPerSecond, 0, 0, 0},
               {10, MetersPerSecond, 0, 1, 0},
               {97, MetersPerSecond, 2, 0, 0},
               {1e9, Knots, 20, 0, 0},
               {1e300, MetersPerSecond, 20, 0, 0}};
  for (const auto& c : cases) {
    const FeatherCount count = CountFeathers(c.Speed, c.Units);
    EXPECT_EQ(std::tie(count.Pennants, count.Feathers, count.Halves),
              std::tie(c.Pennants, c.Feathers, c.Halves))
        << c.Speed;
  }
  EXPECT_DOUBLE_EQ(ShownSpeed(10, MetersPerSecond), 5.1);  // 100 x 0.5148 = 51.48 tenths
  EXPECT_DOUBLE_EQ(ShownSpeed(24.5, Knots), 25) << "halves go up";
}

TEST(WindSymbol, ShaftPointsIntoTheWindAndFeathersFollowTheHemisphere) {
  Options options;
  const auto tipOf = [](const Picture& picture, std::string_view tag) {
    return Lines(picture, tag).at(0).back();
  };
  const Picture west = Symbol({270, 10}, options);
  EXPECT_LT(tipOf(west, "wind shaft").X, 500);
  EXPECT_NEAR(tipOf(west, "wind shaft").Y, 500, 0.01);
  EXPECT_LT(tipOf(west, "wind feather").Y, 500) << "north of a westerly in the north";
  options.BarbHemisphere = Hemisphere::Southern;
  EXPECT_GT(tipOf(Symbol({270, 10}, options), "wind feather").Y, 500);
  options.BarbFeathers = Feathers::Right;
  EXPECT_LT(tipOf(Symbol({270, 10}, options), "wind feather").Y, 500) << "the word decides";
}

// By the rules of station models: the first feather stands at the shaft's end, a half one alone a
// step inside, so that it is not taken for a whole one, and is half as long; feathers keep off a
// pennant.
TEST(WindSymbol, FeathersStandWhereTheyAreRead) {
  const auto feathers = [](double speed) {
    const Picture symbol = Symbol({270, speed}, Options{});
    auto lines = Lines(symbol, "wind feather");
    lines.insert(lines.begin(), Lines(symbol, "wind shaft").at(0));
    return lines;
  };
  const auto length = [](const std::vector<Point>& line) {
    return std::hypot(line[1].X - line[0].X, line[1].Y - line[0].Y);
  };
  const auto ten = feathers(10), five = feathers(5), fifteen = feathers(15), sixty = feathers(60);
  ASSERT_EQ(ten.size(), 2u);
  EXPECT_NEAR(ten[1][0].X, ten[0][1].X, 1e-6);
  ASSERT_EQ(five.size(), 2u);
  EXPECT_GT(five[1][0].X, five[0][1].X + 20);
  EXPECT_NEAR(length(five[1]), length(ten[1]) / 2, 1e-6);
  ASSERT_EQ(fifteen.size(), 3u);
  EXPECT_NEAR(fifteen[1][0].X, fifteen[0][1].X, 1e-6);
  EXPECT_NEAR(length(fifteen[2]), length(fifteen[1]) / 2, 1e-6);
  const double step = fifteen[2][0].X - fifteen[1][0].X;
  EXPECT_NEAR(five[1][0].X - five[0][1].X, step, 1e-6);
  ASSERT_EQ(sixty.size(), 2u);
  EXPECT_GT(sixty[1][0].X - sixty[0][1].X, 1.3 * step);  // a pennant is a step wide
}

// A westerly's feathers lie on its left, to the north, south of the equator on its right.
TEST(WindColumn, FeathersFollowTheLatitudeOfTheSounding) {
  const auto onRight = [](double latitude, Hemisphere option) {
    SoundingRecord sounding;
    SetDecimalPosition(sounding, latitude, 0);
    Options options;
    options.BarbHemisphere = option;
    return FeathersOnRight(SymbolOptions(options, sounding));
  };
  EXPECT_TRUE(onRight(35, Hemisphere::ByLatitude));
  EXPECT_FALSE(onRight(-90, Hemisphere::ByLatitude));
  EXPECT_TRUE(onRight(-90, Hemisphere::Northern));
  EXPECT_FALSE(onRight(35, Hemisphere::Southern));
}

TEST(WindSymbol, CalmIsACircleAndSpeedsHaveTheirParts) {
  Options options;
  const Picture calm = Symbol({360, 0}, options);
  EXPECT_EQ(Count(calm, "calm"), 1u);
  EXPECT_EQ(Count(calm, "wind shaft"), 0u);

  const Picture strong = Symbol({250, 77}, options);  // 75: a pennant, two feathers, a half
  EXPECT_EQ(Count(strong, "wind pennant"), 1u);
  EXPECT_EQ(Count(strong, "wind feather"), 3u);
  EXPECT_EQ(Count(strong, "wind dot"), 1u);

  options.Winds = WindDisplay::Flags;
  EXPECT_EQ(Count(Symbol({250, 77}, options), "wind pennant"), 4u);
  options.WindShafts = false;
  options.WindDots = false;
  EXPECT_EQ(Count(Symbol({250, 77}, options), "wind shaft"), 0u);
  EXPECT_EQ(Count(Symbol({250, 77}, options), "wind dot"), 0u);
}

TEST(WindColumn, ThinsWindsOnlyWhereTheyCrowd) {
  const auto spaced = [](int count, double step) {
    std::vector<Reach> reaches;
    for (int i = 0; i < count; ++i) reaches.push_back({i * step, i * step + 60});
    return reaches;
  };
  const auto drawn = [](const std::vector<Reach>& reaches, const std::vector<std::size_t>& stays,
                        int option) {
    return std::ranges::count(ChooseWinds(reaches, stays, option), true);
  };
  const auto every = [](int option, const std::vector<std::size_t>& stays) {
    std::string text;
    for (const bool is : ChooseWinds({6, {0, 100}}, stays, option)) text += is ? 'x' : '-';
    return text;
  };
  EXPECT_EQ(every(1, {}), "xxxxxx");
  EXPECT_EQ(every(2, {}), "x-x-x-");
  EXPECT_EQ(every(4, {1, 5}), "xx--xx");
  EXPECT_EQ(every(0, {}), "x-----");  // they cover one another
  EXPECT_EQ(drawn(spaced(40, 100), {}, 0), 40);
  // A symbol of 60 every 25: the next clear one is the third.
  EXPECT_EQ(drawn(spaced(99, 25), {}, 0), 33);
  EXPECT_EQ(drawn({}, {}, 0), 0);
  std::vector<Reach> pairs = spaced(8, 100);
  for (const std::size_t close : {2U, 5U}) pairs.insert(pairs.begin() + close, pairs[close]);
  EXPECT_EQ(drawn(pairs, {}, 0), 8) << "close pairs cost nothing but their second winds";
  // Those looked for by name stay, also close to each other: the ground and 1000 hPa. In one place
  // the more important one does.
  const std::vector<bool> chosen = ChooseWinds(spaced(99, 10), {0, 1, 50}, 0);
  EXPECT_TRUE(chosen[0] && chosen[1] && chosen[50]);
  EXPECT_EQ(ChooseWinds(spaced(2, 1), {1, 0}, 0), (std::vector<bool>{false, true}));
}

// A wind every 100 m: the lowest, the strongest (75 kt at 9700 m) and those of the mandatory levels
// (the heights given with them) are looked for by name.
TEST(WindColumn, NamedWindsAreNeverThinnedAway) {
  SoundingRecord sounding = test::Profile({{1000, 15, 10}, {100, -56.5, -70}});
  for (int i = 0; i < 160; ++i) {
    sounding.AddWind(30 + 100 * i, 250, i == 97 ? 75 : 30);
  }
  Drawn diagram(sounding);
  diagram.Set.WindPlotRatio = 40;
  const LabelTexts drawn = SpotsOf(diagram(), "wind");
  const auto draws = [&](double height) {
    const std::string text =
        Shortest(height) + " m: 250/" + (height == 9730 ? "75" : "30") + " kts";
    return std::ranges::find(drawn, text) != drawn.end();
  };
  EXPECT_TRUE(draws(30));
  EXPECT_TRUE(draws(9730)) << "the strongest";
  EXPECT_TRUE(draws(30 + 4000)) << "every 40th";
  for (const int press : {925, 850, 700, 500, 400, 300, 250, 200, 150}) {
    const double height =
        analysis::SampleAt(diagram.Results.Levels, press, analysis::Quantity::Height).Value;
    EXPECT_TRUE(draws(30 + 100 * std::round((height - 30) / 100))) << press;
  }
  EXPECT_LE(drawn.size(), 16u);
}

// Heights are kept to the tenth of a metre, which may lie beyond the diagram's last isobar: 100
// hPa.
TEST(WindColumn, TheWindOfTheLastIsobarIsDrawn) {
  int above = 0;
  for (int i = 0; i < 40; ++i) {
    SoundingRecord sounding = test::Profile({{1000, 15 + 0.1 * i, 10}, {100, -56.5, -70}});
    const double last = analysis::DeriveLevels(sounding, {}).Height.Top();
    const double kept = std::round(10 * last) / 10;
    if (kept > last) ++above;
    sounding.AddWind(100, 180, 10);
    sounding.AddWind(kept, 250, 30);
    EXPECT_EQ(SpotsOf(Drawn(sounding)(), "wind").size(), 2U) << kept - last;
  }
  EXPECT_GT(above, 5);
}

TEST(WindColumn, DrawsNoWindThatWasNotObserved) {
  const auto drawn = [](const SoundingRecord& sounding) {
    return ToSvg(Drawn(sounding)().Page, 800, 600);
  };
  const SoundingRecord whole = test::ReferenceConvective();
  EXPECT_EQ(drawn(test::WithEmptyWinds(whole)), drawn(whole));
}

TEST(WindColumn, KeepsItsSymbolsOfEverySizeInside) {
  const SoundingRecord sounding = test::Profile(
      {{1000, 20, 15}, {700, 5, 0}, {500, -10, -30}, {200, -55, -70}},
      {{0, 90, 25}, {1500, 200, 60}, {3000, 270, 110}, {6000, 300, 45}, {9000, 0, 80}});
  for (const WindSize size : {WindSize::Huge, WindSize::Big, WindSize::Medium, WindSize::Small}) {
    Drawn drawn(sounding);
    drawn.Set.BarbSize = size;
    drawn.Set.WindPlotRatio = 1;
    drawn.Set.WindPlotsBox = true;
    const SoundingPlot plot = drawn();
    const auto box = Lines(plot.Page, "wind box").at(0);
    // The strongest wind's symbol of the largest size is wider than the column: it stands amid it.
    const double room = size == WindSize::Huge ? 200 : 1;
    auto drawnLines = Lines(plot.Page, "wind shaft");
    for (const auto& line : Lines(plot.Page, "wind feather")) drawnLines.push_back(line);
    for (const Area& area : Tagged<Area>(plot.Page, "wind pennant")) {
      drawnLines.push_back(area.Rings.at(0));
    }
    for (const auto& line : drawnLines) {
      for (const Point& at : line) {
        EXPECT_GE(at.X, box[0].X - room) << static_cast<int>(size);
        EXPECT_LE(at.X, box[1].X + room) << static_cast<int>(size);
      }
    }
  }
}

}  // namespace
}  // namespace vexa::diagram
