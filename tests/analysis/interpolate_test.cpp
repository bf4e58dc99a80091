// Expected values: worked by hand or with an independent program, those of the standard atmosphere
// from the tables of ICAO Doc 7488 to the digits printed there; heights and winds of the two
// reference soundings likewise.
#include "analysis/interpolate.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/standard_atmosphere.h"
#include "config/options.h"
#include "core/markers.h"
#include "support/derived_levels.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Derived;
using test::Profile;

TEST(SampleAt, TellsValuesFromMissingAndOutside) {
  const LevelProfile levels =
      Derived(Profile({{1000, 20, 10}, {800, 10, 0}, {700, 4, 999.9}, {500, -10, 999.9}}));
  const struct {
    const char* About;
    double Press;
    Quantity What;
    Found State;
    double Value;
  } cases[] = {
      {"a level's own value", 800, Quantity::Dewpt, Found::Value, 0},
      {"a level whose neighbour has none", 800, Quantity::MixingRatio, Found::Value,
       levels.MixingRatio(2)},
      {"middle in ln p", std::sqrt(1000.0 * 800.0), Quantity::Temp, Found::Value, 15},
      {"one end without dew point", 750, Quantity::Dewpt, Found::Missing, 0},
      {"so the wet bulb too", 750, Quantity::WetBulb, Found::Missing, 0},
      {"and humidity at that level", 700, Quantity::RelHumidity, Found::Missing, 0},
      {"temperature is not touched by it", 600, Quantity::VirtualTemp, Found::Value,
       4 - 14 * std::log(700.0 / 600) / std::log(700.0 / 500)},
      {"below the lowest", 1000.01, Quantity::Temp, Found::Outside, 0},
      {"above the highest", 499.99, Quantity::Temp, Found::Outside, 0},
      {"no pressure at all", 0, Quantity::Temp, Found::Outside, 0},
      {"NaN", std::nan(""), Quantity::Temp, Found::Outside, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const Sample sample = SampleAt(levels, c.Press, c.What);
    EXPECT_EQ(sample.State, c.State);
    EXPECT_TRUE(sample.Ok() ? std::fabs(sample.Value - c.Value) < 1e-9
                            : IsMissing(GetTEMP(levels, c.Press, c.What)));
  }
}

TEST(GetTEMP, RoundsByQuantity) {
  const LevelProfile levels = Derived(Profile({{1000, 25.123, 15}, {900, 20, 10}}, {}, 357));
  EXPECT_EQ(GetTEMP(levels, 1000, Quantity::Temp), 25.12);
  EXPECT_EQ(GetTEMP(levels, 1000, Quantity::MixingRatio), 10.791);  // g/kg, e = 17.0530 hPa
  EXPECT_EQ(GetTEMP(levels, 1000, Quantity::Height), 357);
  EXPECT_EQ(GetTEMP(levels, 1000, Quantity::WetBulb), 18.44);
  const std::vector<double> path = {20.04, 19.96, 19.88};
  EXPECT_EQ(GetTEMP(path, 970, 969), 20.0);
  EXPECT_EQ(GetTEMP(path, 970, 968), 19.9);
  EXPECT_TRUE(IsMissing(GetTEMP(path, 970, 971)));
  EXPECT_TRUE(IsMissing(GetTEMP(path, 970, 967)));
}

TEST(GetPRESS, FindsThePressureOfAHeight) {
  const LevelProfile levels = Derived(test::ReferenceConvective());
  EXPECT_NEAR(GetPRESS(levels, 3357), 682.68, 0.01);
  EXPECT_NEAR(GetPRESS(levels, 6357), 465.97, 0.01);
  EXPECT_EQ(GetPRESS(levels, 357), 970);
  EXPECT_EQ(GetPRESS(levels, levels.Height.Top()), 50);
  EXPECT_EQ(GetPRESS(levels, levels.Height.Top() + 0.049), 50) << "kept to the tenth of a metre";
  EXPECT_EQ(GetPRESS(levels, levels.Height.Top() + 0.1), kNotReached);
  // The lowest layer goes on below ground: to 1026 hPa at 500 m, and no farther.
  EXPECT_GT(GetPRESS(levels, -143), 1020);
  EXPECT_EQ(GetPRESS(levels, -143.1), kNotReached);
  EXPECT_NEAR(GetHeight(levels, 700), 10340.2, 0.11);  // feet
  EXPECT_EQ(GetHeight(levels, 49), kNone);

  EXPECT_NEAR(GetPRESS(Derived(Profile({{1000, 20, 10}})), 5000), 540.1989, 1e-3);
  EXPECT_EQ(GetPRESS(Derived(Profile({})), 90000), kNotReached);
}

TEST(Winds, AreLinearInHeightOnComponents) {
  SoundingRecord across =
      Profile({{1000, 20, 10}, {500, -10, -20}}, {{1000, 350, 20}, {2000, 10, 20}});
  const WindSample north = WindAtHeight(across, 1500);
  EXPECT_NEAR(north.Value.Dir, 360, 1e-4);
  EXPECT_NEAR(north.Value.Spd, 19.696, 1e-3);  // 20 cos 10°
  EXPECT_TRUE(WindAtHeight(across, 900).Ok());
  EXPECT_EQ(WindAtHeight(across, 900).Value.Dir, 350);
  EXPECT_EQ(WindAtHeight(across, 899).State, Found::Outside);
  EXPECT_EQ(WindAtHeight(across, 2002.1).State, Found::Outside);
  EXPECT_EQ(FromComponents({0, 0}).Dir, 360);
  EXPECT_NEAR(FromComponents({1, 0}).Dir, 90, 1e-4);

  const SoundingRecord reference = test::ReferenceConvective();
  const LevelProfile levels = Derived(reference);
  EXPECT_EQ(GetWIND(reference, levels, 700).Dir, 227);
  EXPECT_NEAR(GetWIND(reference, levels, 700).Spd, 36.8, 1e-9);
  EXPECT_TRUE(IsMissing(GetWIND(reference, levels, 50).Dir));  // above the winds
  EXPECT_TRUE(IsMissing(GetWIND(Profile({{1000, 1, 1}, {900, 0, 0}}), levels, 900).Spd));
}

TEST(StandardAtmosphere, AgreesWithTheTables) {
  const struct {
    double Height, Press, TempK;
  } byHeight[] = {{0, 1013.25, 288.15},      {1000, 898.7456, 281.65},  {5000, 540.1989, 255.65},
                  {10000, 264.3624, 223.15}, {11000, 226.3204, 216.65}, {20000, 54.7488, 216.65},
                  {30000, 11.7186, 226.65},  {32000, 8.680158, 228.65}, {47000, 1.109058, 270.65},
                  {50000, 0.7594, 270.65},   {51000, 0.669385, 270.65}, {71000, 0.039564, 214.65},
                  {80000, 0.008863, 196.65}};
  for (const auto& c : byHeight) {
    EXPECT_NEAR(IsaPressure(c.Height) / c.Press, 1, 7e-5) << c.Height;
    EXPECT_NEAR(IsaTemp(c.Height), c.TempK - 273.15, 1e-9) << c.Height;
  }
  const struct {
    double Press, Height;
  } byPress[] = {{1000, 110.9}, {925, 762.0},   {850, 1457.3},  {700, 3012.2}, {500, 5574.4},
                 {300, 9164.0}, {200, 11784.0}, {100, 16179.7}, {10, 31054.6}};
  for (const auto& c : byPress) EXPECT_NEAR(IsaHeight(c.Press), c.Height, 0.1) << c.Press;
}

TEST(StandardAtmosphere, HeightUndoesPressureAndEndsAt80Km) {
  for (double height = -2000; height <= 79999; height += 487) {
    EXPECT_NEAR(IsaHeight(IsaPressure(height)), height, 1e-4);
  }
  EXPECT_EQ(IsaPressure(80001), kNotReached);
  EXPECT_EQ(IsaHeight(0.008), kNotReached);
  EXPECT_EQ(IsaHeight(0), kNotReached);
  EXPECT_EQ(IsaHeight(std::nan("")), kNotReached);
  EXPECT_TRUE(IsMissing(IsaTemp(80001)));
}

}  // namespace
}  // namespace vexa::analysis
