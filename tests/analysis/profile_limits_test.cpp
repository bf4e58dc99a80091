// How profiles are read between their levels and beyond their ends, and how winds are taken for a
// layer: each limit from both of its sides, with numbers by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "analysis/air_rows.h"
#include "analysis/interpolate.h"
#include "analysis/layers.h"
#include "analysis/parcel_source.h"
#include "analysis/pressure_grid.h"
#include "analysis/profile_walk.h"
#include "analysis/turbulence.h"
#include "core/markers.h"

namespace vexa::analysis {
namespace {

using test::Profile;

TEST(ProfileLimits, AirBetweenLevelsAndBeyondTheirEnds) {
  const LevelProfile levels =
      Air({{100, 1000, 10, 5}, {1100, 880, 4, 999.9}, {2100, 780, -4, -6}, {3100, 690, -10, -14}});
  const struct {
    double Height, Press, Temp, Dewpt, Lapse;
  } cases[] = {{0, 1000, 10, 5, 6},
               {100, 1000, 10, 5, 6},
               {600, std::sqrt(1000.0 * 880), 7, kMissing, 6},
               {1100, 880, 4, kMissing, 8},
               {2099, 0, -3.992, kMissing, 8},
               {2100, 780, -4, -6, 6},
               {2600, std::sqrt(780.0 * 690), -7, -10, 6},
               {3100, 690, -10, -14, 6},
               {9000, 690, -10, -14, 6}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Height);
    const AirPoint air = ProfileWalk(levels).At(c.Height);
    if (c.Press > 0) {
      EXPECT_NEAR(air.Press(), c.Press, 1e-9);
    }
    EXPECT_NEAR(air.Temp, c.Temp, 1e-9);
    EXPECT_NEAR(air.Dewpt, c.Dewpt, 1e-9);
    EXPECT_NEAR(air.Lapse, c.Lapse, 1e-9);
  }
  EXPECT_EQ(ProfileWalk(LevelProfile{}).At(100).Press(), 0);
  // The last level has its own dew point, whatever the one below lacks.
  const LevelProfile last = Air({{0, 1000, 10, 999.9}, {1000, 880, 4, 1}});
  EXPECT_EQ(ProfileWalk(last).At(1000).Dewpt, 1);
  EXPECT_FALSE(ProfileWalk(last).At(999).HasDewpt());
}

// At the ends and the levels, no two closer than 50 m or more than 250 m apart, but at most 400.
TEST(ProfileLimits, LooksAreNeitherTooCloseNorTooFar) {
  const LevelProfile levels = Air({{0, 1000, 5, 5}, {250, 970, 5, 5}, {501, 940, 5, 5}});
  EXPECT_EQ(SampleHeights(levels, 0, 501).size(), 4u);
  EXPECT_EQ(SampleHeights(Air({{0, 1000, 5, 5},
                               {49, 994, 5, 5},
                               {100, 988, 5, 5},
                               {351, 960, 5, 5},
                               {560, 940, 5, 5},
                               {600, 930, 5, 5}}),
                          0, 600),
            (std::vector<double>{0, 100, 225.5, 351, 600}));
  EXPECT_EQ(SampleHeights(Air({{0, 1000, 5, 5}, {50, 994, 5, 5}, {100, 988, 5, 5}}), 0, 200),
            (std::vector<double>{0, 50, 100, 200}));
  EXPECT_EQ(SampleHeights(levels, 100, 100), std::vector<double>{100});
  EXPECT_TRUE(SampleHeights(levels, 100, 99).empty());
  EXPECT_EQ(SampleHeights(levels, 1000, 101000).size(), 401u);
  EXPECT_EQ(SampleHeights(levels, 1000, 201000).size(), 401u);
  EXPECT_EQ(SampleHeights(levels, 1000, 100750).size(), 400u);
}

// Layers reach half way to the look of another class, in the logarithm of pressure.
TEST(ProfileLimits, RunsOfLooks) {
  const auto look = [](double height, Intensity grade, std::string_view word, double value) {
    return ClassedPoint{{1000 - height / 10, height, 0}, grade, word, value};
  };
  const std::vector<ClassedPoint> looks = {
      look(0, Intensity::None, "", 9),          look(100, Intensity::Light, "LGT", 2),
      look(200, Intensity::Light, "LGT", 3),    look(300, Intensity::Light, "LGT", 1),
      look(400, Intensity::Light, "OTHER", 5),  look(600, Intensity::Severe, "SVR", kMissing),
      look(700, Intensity::Severe, "SVR", 4),   look(900, Intensity::None, "", 8),
      look(1000, Intensity::Trace, "TRC", 0.5),
  };
  const auto layers = JoinRuns(looks);
  const struct {
    double Base, Top, Value;
    std::string_view Word;
  } expected[] = {
      {50, 350, 3, "LGT"}, {350, 500, 5, "OTHER"}, {500, 800, 4, "SVR"}, {950, 1000, 0.5, "TRC"}};
  ASSERT_EQ(layers.size(), std::size(expected));
  for (std::size_t i = 0; i < layers.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(layers[i].Base.Height, expected[i].Base);
    EXPECT_EQ(layers[i].Top.Height, expected[i].Top);
    EXPECT_EQ(layers[i].Value, expected[i].Value);
    EXPECT_EQ(layers[i].Word, expected[i].Word);
  }
  EXPECT_NEAR(layers[0].Base.Press, std::sqrt(1000.0 * 990), 1e-9);
}

// Below 950 hPa at 500 m and 15 °C: a = Rd/g ln(1000/950) = 1.5013, 500 - a T / (1 - 0.00325 a).
TEST(ProfileLimits, HeightOf1000hPaBelowTheGround) {
  const LevelProfile levels = Air({{500, 950, 15, 999.9}, {2000, 800, 5, 999.9}});
  EXPECT_NEAR(HeightAt(levels, 1000).Value, 65.3, 0.1);
  EXPECT_FALSE(HeightAt(levels, 999).Ok());
  EXPECT_FALSE(HeightAt(levels, 790).Ok());
  EXPECT_FALSE(HeightAt(LevelProfile{}, 1000).Ok());
  EXPECT_FALSE(HeightAt(Air({{500, 1010, 15, 999.9}, {600, 1005, 15, 999.9}}), 1000).Ok());
}

// Every whole hPa between the levels, linear in the logarithm of pressure; levels that do not rise
// are passed over.
TEST(ProfileLimits, GridOfWholePressures) {
  const PressureGrid grid = MakePressureGrid(Air({{0, 1000.4, 10, 999.9},
                                                  {20, 998, 6, 999.9},
                                                  {21, 998, 50, 999.9},
                                                  {22, 999, 50, 999.9},
                                                  {45, 995.5, 0, 999.9},
                                                  {46, 995.2, -9, 999.9},
                                                  {60, 993, -2, 999.9}}));
  ASSERT_EQ(grid.Bottom, 1000);
  ASSERT_EQ(grid.Top, 993);
  const auto between = [](double low, double high, double press, double from, double to) {
    return from + (to - from) * std::log(low / press) / std::log(low / high);
  };
  const double expected[] = {between(1000.4, 998, 1000, 10, 6),
                             between(1000.4, 998, 999, 10, 6),
                             6,
                             between(998, 995.5, 997, 6, 0),
                             between(998, 995.5, 996, 6, 0),
                             between(995.2, 993, 995, -9, -2),
                             between(995.2, 993, 994, -9, -2),
                             -2};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_NEAR(grid.Temp[i], expected[i], 1e-9) << 1000 - i;
    EXPECT_NEAR(grid.VirtualTemp[i], expected[i], 1e-9) << 1000 - i;
  }
  EXPECT_TRUE(MakePressureGrid(Air({{0, 0.9, -40, 999.9}})).Empty());
  EXPECT_FALSE(MakePressureGrid(Air({{0, 1, -40, 999.9}})).Empty());
  EXPECT_TRUE(MakePressureGrid(LevelProfile{}).Empty());
}

// A wind serves 100 m below the lowest and 2 m above the highest; levels without one are none.
TEST(ProfileLimits, WindsBesideTheirEndsAndGaps) {
  const auto speed = [](std::initializer_list<test::WindRow> winds, double height) {
    const WindSample wind = WindAtHeight(Profile({{1000, 20, 10}}, winds), height);
    return wind.Ok() ? wind.Value.Spd : -1;
  };
  EXPECT_NEAR(speed({{1000, 270, 10}, {2000, 270, 20}}, 2002), 20, 1e-9);
  EXPECT_EQ(speed({{1000, 270, 10}, {2000, 270, 20}}, 2003), -1);
  EXPECT_NEAR(speed({{500, 999.9, 999.9}, {1000, 270, 10}, {2000, 270, 20}}, 900), 10, 1e-9);
  EXPECT_EQ(speed({{500, 999.9, 999.9}, {1000, 270, 10}, {2000, 270, 20}}, 600), -1);
  EXPECT_NEAR(speed({{1000, 270, 10}, {1500, 999.9, 999.9}, {2000, 270, 20}}, 1500), 15, 1e-5);
  EXPECT_NEAR(speed({{1000, 270, 10}, {1500, 999.9, 999.9}, {2000, 270, 20}}, 1200), 12, 1e-5);
  EXPECT_NEAR(speed({{1000, 270, 10}, {2000, 270, 20}, {3000, 999.9, 999.9}}, 2001), 20, 1e-9);
  EXPECT_EQ(speed({{1000, 270, 10}, {2000, 270, 20}, {3000, 999.9, 999.9}}, 2500), -1);
  EXPECT_NEAR(speed({{1000, 270, 10}}, 1000), 10, 1e-9);
  EXPECT_EQ(speed({{1000, 999.9, 999.9}}, 1000), -1);
}

TEST(ProfileLimits, SourcesOfParcels) {
  const auto from = [](const std::vector<AirRow>& rows) { return SurfaceParcel(Air(rows)).Press; };
  EXPECT_EQ(from({{0, 1000, 20, 10}, {500, 950, 18, 8}}), 1000);
  EXPECT_EQ(from({{0, 1000, 20, 999.9}, {900, 900, 18, 8}}), 900);
  EXPECT_EQ(from({{0, 1000, 20, 999.9}, {900, 899, 18, 8}}), kNone);
  LevelProfile levels = Air({{0, 1000, 20, 10}, {900, 900, 18, 8}, {3000, 700, 5, 0}});
  levels.ThetaE = Levels<double>({330, 330, 340});
  EXPECT_EQ(MostUnstableParcel(levels, 100).Press, 1000);  // the lowest of equals
  EXPECT_EQ(MostUnstableParcel(levels, 299).Press, 1000);
  EXPECT_EQ(MostUnstableParcel(levels, 300).Press, 700);
  EXPECT_EQ(CandidateParcels(levels, 99).size(), 1u);
  EXPECT_EQ(CandidateParcels(levels, 100).size(), 2u);
  levels.ThetaE(1) = kMissing;
  EXPECT_EQ(MostUnstableParcel(levels, 100).Press, 900);
  EXPECT_EQ(CandidateParcels(levels, 300).size(), 2u);
}

// The first air from below that a mixing ratio saturates, between two whole pressures at which the
// formula itself says so: of levels that lie farther apart than those, and nearer.
TEST(ProfileLimits, FreeCondensationOfAnyMixingRatio) {
  for (const double depth : {23.0, 0.37}) {
    SoundingRecord sounding;
    for (double press = 987.3; press > 300; press -= depth) {
      sounding.AddTemp(press, 24 + 55 * std::log(press / 987.3) + 2 * std::sin(press / 9), 0);
    }
    const LevelProfile levels = DeriveLevels(sounding, {});
    const PressureGrid grid = MakePressureGrid(levels);
    for (double ratio = 0.0199; ratio > 0.0005; ratio *= 0.93) {
      SCOPED_TRACE(testing::Message() << depth << ' ' << ratio);
      const CondensationPoint ccl =
          FindConvectiveCondensation(levels, grid, ratio, SaturationOver::Water);
      ASSERT_TRUE(ccl.Exists());
      const auto saturates = [&](double press) {
        const Sample temp = SampleAt(levels, press, Quantity::Temp);
        return ThetaPoint(press, temp.Value).MixingRatio / ratio;
      };
      EXPECT_EQ(ccl.Temp, SampleAt(levels, ccl.Press, Quantity::Temp).Value);
      if (ccl.Press < levels.Press(1)) {
        EXPECT_NEAR(saturates(ccl.Press), 1, 1e-5);
      }
      for (double press = 987; press > ccl.Press; --press) {
        EXPECT_GT(saturates(press), 1) << press;
      }
    }
    EXPECT_FALSE(FindConvectiveCondensation(levels, grid, 1e-7, SaturationOver::Water).Exists());
  }
}

// Means weighted by pressure: 300 K to 960 hPa, 302 K from 960 to 900 hPa rising to 304 at 840.
TEST(ProfileLimits, MeansOfTheLowestLayer) {
  LevelProfile levels =
      Air({{0, 1000, 20, 10}, {350, 960, 18, 8}, {900, 900, 16, 6}, {1500, 840, 12, 2}});
  levels.Theta = Levels<double>({300, 300, 302, 304});
  levels.MixingRatio = Levels<double>({0.010, kMissing, 0.008, 0.006});
  EXPECT_NEAR(MeanOfLowestLayer(levels, 40).Theta, 300, 1e-9);
  EXPECT_NEAR(MeanOfLowestLayer(levels, 100).Theta, (300 * 40 + 301 * 60) / 100.0, 1e-9);
  EXPECT_NEAR(MeanOfLowestLayer(levels, 100).MixingRatio, 0.009, 1e-12);
  EXPECT_TRUE(NotAvailable(MeanOfLowestLayer(levels, 40).MixingRatio));
  EXPECT_EQ(MeanOfLowestLayer(levels, 0).Theta, 300);
  EXPECT_EQ(MeanOfLowestLayer(levels, -5).MixingRatio, 0.010);
  EXPECT_TRUE(NotAvailable(MeanOfLowestLayer(levels, 161).Theta));
  levels.MixingRatio(1) = kMissing;
  EXPECT_TRUE(NotAvailable(MeanOfLowestLayer(levels, 100).MixingRatio));
}

TEST(ProfileLimits, LapseRatesNeedTwoHeights) {
  const LevelProfile levels = Air({{0, 1000, 20, 10}, {3000, 700, -1, -9}});
  EXPECT_NEAR(MeanLapseRate(levels, 0, 3000), 7, 1e-9);
  EXPECT_NEAR(MeanLapseRate(levels, 1000, 2000), 7, 1e-9);
  EXPECT_EQ(MeanLapseRate(levels, 1000, 1000), kNone);
  EXPECT_EQ(MeanLapseRate(levels, 0, 3001), kNone);
}

TEST(ProfileLimits, RichardsonNumberOfWinds) {
  const LevelProfile levels = Air({{0, 1000, 15, 10}, {5000, 540, -17.5, -30}});
  const auto pairs = [&](double speed) {
    return PairWinds(DeriveWinds(Profile({}, {{-1, 270, 10}, {0, 270, 10}, {1000, 270, speed}})),
                     levels, 0);
  };
  ASSERT_EQ(pairs(20).size(), 1u);  // what lies below the ground is no wind
  EXPECT_EQ(pairs(10)[0].Richardson, 999);
  // g/theta dtheta/dz over the square of 20 kt in 1000 m.
  const double low = levels.Theta(1), high = low + (levels.Theta(2) - low) / 5;
  EXPECT_NEAR(pairs(30)[0].Richardson,
              9.80665 / ((low + high) / 2) * (high - low) / 1000 / std::pow(20 * 0.5144 / 1000, 2),
              1e-3);
}

}  // namespace
}  // namespace vexa::analysis
