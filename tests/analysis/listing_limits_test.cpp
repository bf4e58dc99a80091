// What stands beside the levels, what leaves trails and traps radio waves, and the levels that
// indices read, at their limits. Values are given so that the results follow by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <string_view>
#include <vector>

#include "analysis/air_rows.h"
#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "analysis/level_listing.h"
#include "analysis/standard_atmosphere.h"
#include "config/options.h"

namespace vexa::analysis {
namespace {

// N = 77.6 p / T of dry air, T in K; M and the potential refractivity follow.
TEST(ListingLimits, AirWithoutDewPointIsDryAbove300hPa) {
  const LevelProfile levels = Air({{0, 1000, 20, 999.9},
                                   {9000, 300, -40, 999.9},
                                   {9100, 299, -40, 999.9},
                                   {9600, 280, -43.16, 999.9}});
  const LevelListing listing = ListLevels(levels);
  EXPECT_TRUE(IsMissing(listing.Refractivity(1)));
  EXPECT_TRUE(IsMissing(listing.Refractivity(2)));
  EXPECT_NEAR(listing.Refractivity(3), 77.6 * 299 / 233.16, 1e-6);
  EXPECT_NEAR(listing.Refractivity(4), 77.6 * 280 / 230, 1e-6);
  EXPECT_NEAR(listing.Modified(4), 77.6 * 280 / 230 + 0.157 * 9600, 1e-6);
  EXPECT_NEAR(listing.Potential(4), 77.6 * 1000 / levels.Theta(4), 1e-6);
  EXPECT_TRUE(IsMissing(listing.Gradient(3)));  // the level below has none
  EXPECT_NEAR(listing.Gradient(4), (77.6 * 280 / 230 - 77.6 * 299 / 233.16) / 0.5, 1e-6);
  EXPECT_NEAR(listing.DValue(4), 9600 - IsaHeight(280), 1e-6);
  EXPECT_NEAR(listing.Density(4), 28000 / (287.04 * 230), 1e-6);
  EXPECT_TRUE(IsMissing(listing.WaterBelow(1)));
}

// 10 g/kg through 100 hPa are 0.01 x 10000 / 9.80665 mm, up to the first level without a dew point.
TEST(ListingLimits, WaterIsSummedAsLongAsItIsKnown) {
  LevelProfile levels = Air({{0, 1000, 20, 14},
                             {900, 900, 15, 12},
                             {2000, 800, 10, 10},
                             {3000, 700, 5, 999.9},
                             {4000, 600, 0, -5}});
  levels.MixingRatio = Levels<double>({0.010, 0.010, 0.004, kMissing, 0.002});
  const LevelListing listing = ListLevels(levels);
  EXPECT_EQ(listing.WaterBelow(1), 0);
  EXPECT_NEAR(listing.WaterBelow(2), 100 / 9.80665, 1e-9);
  EXPECT_NEAR(listing.WaterBelow(3), 170 / 9.80665, 1e-9);
  EXPECT_TRUE(IsMissing(listing.WaterBelow(4)));
  EXPECT_TRUE(IsMissing(listing.WaterBelow(5)));
}

// Air that is so much colder (negative: warmer) than the threshold of saturated air.
LevelProfile Saturated(const std::vector<std::pair<double, double>>& pressAndCold) {
  std::vector<AirRow> rows = {{0, 1000, 15, 5}};
  double height = 5000;
  for (const auto& [press, cold] : pressAndCold) {
    const double temp = ContrailTemp(press, 100) - cold;
    rows.push_back({height += 1000, press, temp, temp});
  }
  return Air(rows);
}

TEST(ContrailLimits, LayersEndWhereTheAirIsAsWarmAsTheThreshold) {
  const auto edges = [](const std::vector<std::pair<double, double>>& pressAndCold) {
    std::vector<double> heights;
    for (const AirLayer& layer : FindContrails(Saturated(pressAndCold), 60)) {
      heights.insert(heights.end(), {layer.Base.Height, layer.Top.Height, layer.Value});
    }
    return heights;
  };
  const struct {
    const char* About;
    std::vector<std::pair<double, double>> Air;
    std::vector<double> Edges;  // base, top and the largest excess of each layer
  } cases[] = {
      {"between two crossings", {{400, -2}, {350, 2}, {300, 6}, {250, -2}}, {6500, 8750, 6}},
      {"from the first level at 500 hPa", {{500, 1}, {400, 3}}, {6000, 7000, 3}},
      {"not from below", {{501, 1}, {400, -3}}, {}},
      {"below it what is cold does not count", {{501, 5}, {400, 3}, {300, 1}}, {7000, 8000, 3}},
      {"twice", {{400, 1}, {350, -1}, {300, 1}}, {6000, 6500, 1, 7500, 8000, 1}},
      {"a single level", {{400, -1}, {350, 1}, {300, -1}}, {6500, 7500, 1}},
      {"nowhere", {{400, -1}, {300, -0.1}}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const std::vector<double> found = edges(c.Air);
    ASSERT_EQ(found.size(), c.Edges.size());
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], c.Edges[i], 0.5);
  }
  // Where a level has no dew point the given humidity decides: dry air must be colder.
  const LevelProfile dry =
      Air({{0, 1000, 15, 5}, {9000, 300, -45, 999.9}, {9500, 280, -46, 999.9}});
  EXPECT_FALSE(FindContrails(dry, 100).empty());
  EXPECT_TRUE(FindContrails(dry, 0).empty());
}

// The duct begins where the modified refractivity of its top is met from above.
TEST(DuctLimits, BeginWhereTheTopsRefractivityIsMetBelow) {
  const LevelProfile levels = Air({{0, 1000, 20, 10},
                                   {100, 988, 19, 10},
                                   {300, 965, 18, 9},
                                   {500, 940, 18, 0},
                                   {900, 900, 15, -5}});
  const auto duct = [&](const std::vector<double>& modified, double gradient = -200,
                        double next = -40) {
    LevelListing listing;
    listing.Gradient = Levels<double>({kMissing, -40, -40, gradient, next});
    listing.Modified = Levels<double>(modified);
    const auto ducts = FindDucts(levels, listing, -157);
    EXPECT_EQ(ducts.size(), gradient > -157 ? 0u : 1u);
    return ducts.empty() ? Duct{} : ducts.front();
  };
  EXPECT_FALSE(duct({300, 320, 330, 310, 400}, -156.9).Base.Exists());
  EXPECT_EQ(duct({300, 320, 330, 310, 400}, -157).Base.Height, 300);
  EXPECT_EQ(duct({300, 320, 330, 310, 400}, -157).Top.Height, 500);
  // Layers that follow each other are one.
  EXPECT_EQ(duct({300, 320, 330, 310, 290}, -160, -200).Top.Height, 900);
  EXPECT_EQ(duct({300, 320, 330, 310, 290}, -160, -200).Gradient, -200);
  EXPECT_TRUE(duct({300, 320, 330, 310, 290}, -160, -200).OnSurface);
  EXPECT_NEAR(duct({300, 320, 340, 330, 400}).DuctBase, 200, 1e-9);
  EXPECT_NEAR(duct({300, 320, 340, 310, 400}).DuctBase, 50, 1e-9);
  EXPECT_FALSE(duct({300, 320, 340, 310, 400}).OnSurface);
  EXPECT_EQ(duct({300, 320, 340, 300, 400}).DuctBase, 0);
  EXPECT_TRUE(duct({300, 320, 340, 300, 400}).OnSurface);
  EXPECT_TRUE(duct({300, 320, 340, 290, 400}).OnSurface);
  EXPECT_TRUE(duct({300, 320, kMissing, 310, 400}).OnSurface);
  EXPECT_EQ(duct({300, 320, 340, 320, 400}).DuctBase, 100);
  EXPECT_FALSE(duct({300, 320, 340, 320, 400}).OnSurface);
}

double ListedValue(std::string_view label, const AnalysisResults& results,
                   const SoundingRecord& sounding = test::Profile({})) {
  return ComputeIndex(*FindIndex(label), sounding, results, Options{}).Value;
}

// The part of the cloud below freezing; none from frozen ground or with a frozen base.
TEST(LevelLimits, WarmCloudDepth) {
  const auto depth = [](double lcl, double lclTemp, double ground, double freezing) {
    AnalysisResults results;
    results.Levels = Air({{100, 1000, ground, 5}, {5100, 540, -20, -30}});
    for (ParcelAscent& forced : results.Forced) forced.Condensation = {900, 100 + lcl, lclTemp};
    results.FreezingLevels = {{950, 100 + freezing, 0}};
    return ListedValue("WCD", results);
  };
  EXPECT_NEAR(depth(1000, 10, 20, 3000), 2000, 1e-9);
  EXPECT_EQ(depth(3100, 0.5, 20, 3000), 0);
  EXPECT_EQ(depth(1000, 0, 20, 3000), 0);
  EXPECT_NEAR(depth(1000, 0.5, 20, 3000), 2000, 1e-9);
  EXPECT_EQ(depth(1000, 10, 0, 3000), 0);
}

// Linear in the logarithm of pressure, at the lowest passage from warm to cold.
TEST(LevelLimits, WetBulbZero) {
  const auto height = [](const std::vector<double>& wetBulbs) {
    AnalysisResults results;
    results.Levels =
        Air({{100, 1000, 20, 10}, {1100, 880, 12, 5}, {2100, 780, 5, 0}, {3100, 690, 0, -5}});
    results.Levels.WetBulb = Levels<double>(wetBulbs);
    return ListedValue("WBZ Hgt", results);
  };
  EXPECT_NEAR(height({10, 2, -2, -8}), 1500, 0.5);
  EXPECT_NEAR(height({10, 2, 0, -8}), 2000, 0.5);
  EXPECT_NEAR(height({2, -2, 2, -2}), 500, 0.5);
  EXPECT_EQ(height({0, 2, -2, -8}), 0);
  EXPECT_EQ(height({-1, 2, -2, -8}), 0);
  EXPECT_EQ(height({10, 8, 4, 2}), kNone);
  EXPECT_EQ(height({10, kMissing, -2, -8}), kNone);
}

// The surface wind turned to the wind at 500 m, seen against the storm: 90 degrees where the
// inflow lies across the shear.
TEST(LevelLimits, CriticalAngle) {
  const auto angle = [](test::WindRow low, test::WindRow high, WindVector motion) {
    const SoundingRecord sounding =
        test::Profile({{1000, 20, 10}, {500, -10, -30}}, {low, high, {6000, 270, 40}});
    AnalysisResults results;
    results.Levels = Air({{0, 1000, 20, 10}, {5500, 500, -10, -30}});
    results.Winds = DeriveWinds(sounding);
    results.Storm.Right = Mover{.Motion = motion};
    return ListedValue("Crit Angle", results, sounding);
  };
  // From 10 kt out of the west to 20: a shear of (-10, 0) from (-10, 0).
  EXPECT_NEAR(angle({0, 270, 10}, {500, 270, 20}, {-10, 10}), 90, 1e-3);
  EXPECT_NEAR(angle({0, 270, 10}, {500, 270, 20}, {-20, 10}), 45, 1e-3);
  EXPECT_NEAR(angle({0, 270, 10}, {500, 270, 20}, {-30, 0}), 0, 1e-3);
  EXPECT_NEAR(angle({0, 270, 10}, {500, 270, 20}, {0, 0}), 180, 1e-3);
  EXPECT_NEAR(angle({0, 270, 10}, {1000, 270, 30}, {-10, 10}), 90, 1e-3);
  EXPECT_EQ(angle({0, 270, 10}, {500, 270, 10}, {-30, 0}), kNone);
}

TEST(Contrails, ThresholdAsAppleman) {
  struct Row {
    double Press, Dry, Humid40, Humid60, Saturated;
  };
  for (const Row& row : {Row{300, -49.8, -48.2, -47.0, -40.2},
                         {250, -51.5, -50.0, -48.8, -42.2},
                         {200, -53.6, -52.1, -51.0, -44.5},
                         {150, -56.2, -54.7, -53.7, -47.3},
                         {100, -59.8, -58.4, -57.3, -51.2}}) {
    SCOPED_TRACE(row.Press);
    EXPECT_NEAR(ContrailTemp(row.Press, 0), row.Dry, 0.1);
    EXPECT_NEAR(ContrailTemp(row.Press, 40), row.Humid40, 0.1);
    EXPECT_NEAR(ContrailTemp(row.Press, 60), row.Humid60, 0.1);
    EXPECT_NEAR(ContrailTemp(row.Press, 100), row.Saturated, 0.1);
  }
  EXPECT_TRUE(IsMissing(ContrailTemp(5, 60)));
  // A sounding that starts above may have its layer from its first level.
  const AnalysisResults high = Analyse(test::Profile({{300, -50, -54}, {250, -56, -60}}), {});
  EXPECT_EQ(high.Layers.Contrails.at(0).Base.Press, 300);
}

TEST(Refractivity, OfTheConvectiveSounding) {
  EXPECT_NEAR(RefractivityOf(1013.25, 15, 12.2791), 328.06, 0.1);
  const SoundingRecord sounding = test::ReferenceConvective();
  const AnalysisResults results = Analyse(sounding, {});
  const LevelListing& listing = results.Layers.Listing;
  EXPECT_NEAR(listing.Refractivity(1), 339.26, 0.05);
  EXPECT_NEAR(listing.Modified(1), 395.30, 0.1);
  EXPECT_NEAR(listing.Potential(1), 345.93, 0.1);
  EXPECT_NEAR(listing.Refractivity(6), 290.05, 0.05);
  EXPECT_NEAR(listing.Refractivity(7), 267.58, 0.05);
  EXPECT_NEAR(listing.Potential(6), 322.50, 0.1);
  EXPECT_NEAR(listing.Gradient(7), -109.8, 0.5);
  EXPECT_TRUE(results.Layers.Ducts.empty());
  Options loose;
  loose.DuctingThreshold = -100;
  EXPECT_NEAR(Analyse(sounding, loose).Layers.Ducts.at(0).Base.Press, 850, 0.01);
}

}  // namespace
}  // namespace vexa::analysis
