// Every limit at which a layer analysis decides, from both of its sides. The limits are those of
// the publications that the headers of analysis/ name; heights are given, so that a layer is
// exactly so thick and so steep as its case says.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "analysis/air_rows.h"
#include "analysis/layers.h"
#include "analysis/profile_walk.h"
#include "analysis/turbulence.h"
#include "support/derived_levels.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using I = Intensity;

// Each class begins with its shear; a little less is of the class before.
TEST(TurbulenceLimits, ClearAirByShearAndRichardsonNumber) {
  using enum CatType;
  using enum Intensity;
  const struct {
    CatType Type;
    double Richardson;
    std::vector<std::pair<double, Intensity>> From;  // kt per 1000 ft
  } cases[] = {{Usaf,
                5,
                {{3, Light},
                 {5, LightModerate},
                 {6, Moderate},
                 {9, ModerateSevere},
                 {10, Severe},
                 {15, Extreme}}},
               {Faa, 1.01, {{6, Light}, {9, Moderate}, {12, ModerateSevere}}},
               {Faa, 1, {{4, Light}, {6, Moderate}, {9, ModerateSevere}, {12, Severe}}},
               {Faa, 0.25, {{4, Light}, {6, Moderate}, {9, ModerateSevere}, {12, Severe}}},
               {Faa, 0.24, {{4, LightModerate}, {6, ModerateSevere}, {9, Severe}}}};
  for (const auto& c : cases) {
    Intensity before = I::None;
    for (const auto& [shear, from] : c.From) {
      EXPECT_EQ(CatOf(c.Type, shear - 0.01, c.Richardson), before) << shear << ' ' << c.Richardson;
      EXPECT_EQ(CatOf(c.Type, shear, c.Richardson), from) << shear << ' ' << c.Richardson;
      before = from;
    }
    EXPECT_EQ(CatOf(c.Type, 99, c.Richardson), before) << c.Richardson;
  }
  EXPECT_EQ(CatOf(CatType::Usaf, 9, 0.1), I::ModerateSevere) << "whatever the number";
}

WindPair Pair(double low, double high, double shear, double richardson, double lapse = 0) {
  return {.Low = {500, low, -20},
          .High = {450, high, -25},
          .Shear = shear,
          .Richardson = richardson,
          .Lapse = lapse};
}

TEST(TurbulenceLimits, WhereItIsLookedFor) {
  // 2000 ft, 609.6 m, above ground at 100 m.
  EXPECT_TRUE(FindCat({Pair(709.5, 900, 6, 5)}, 100, CatType::Usaf).empty());
  EXPECT_EQ(FindCat({Pair(709.6, 900, 6, 5)}, 100, CatType::Usaf).size(), 1u);
  // 40000 ft, 12192 m, or the tropopause below it.
  const std::vector<LevelPoint> tropopause = {{250, 10000, -55}}, high = {{150, 13000, -65}};
  EXPECT_TRUE(FindHighCat({Pair(12191, 13000, 9, 0.1)}, {}).empty());
  EXPECT_EQ(FindHighCat({Pair(12192, 13000, 9, 0.1)}, {}).size(), 1u);
  EXPECT_EQ(FindHighCat({Pair(12192, 13000, 9, 0.1)}, high).size(), 1u);
  EXPECT_TRUE(FindHighCat({Pair(9999, 11000, 9, 0.1)}, tropopause).empty());
  EXPECT_EQ(FindHighCat({Pair(10000, 11000, 9, 0.1)}, tropopause).size(), 1u);
  // Pairs that follow each other in one class are one layer with the larger shear.
  const auto joined = FindCat(
      {Pair(1000, 2000, 6, 5), Pair(2000, 3000, 8, 5), Pair(3500, 4000, 7, 5)}, 0, CatType::Usaf);
  ASSERT_EQ(joined.size(), 2u);
  EXPECT_EQ(joined[0].Top.Height, 3000);
  EXPECT_EQ(joined[0].Value, 8);
}

TEST(TurbulenceLimits, HighLevelsByShearRichardsonNumberAndLapse) {
  const struct {
    double Shear, Richardson, LapseJump;
    Intensity Class;
  } cases[] = {
      {2.9, 0.1, 0, I::None},     {3, 1.99, 0, I::Light},    {3, 2, 0, I::None},
      {4.9, 0.1, 0, I::Light},    {5, 0.99, 0, I::Moderate}, {5, 1, 0, I::Light},
      {7.9, 0.1, 0, I::Moderate}, {8, 0.49, 0, I::Severe},   {8, 0.5, 0, I::Moderate},
      {3, 5, 9.9, I::None},       {3, 5, 10, I::Light},      {2.9, 5, 12, I::None},
      {3, 1, -10, I::Moderate},   {5, 0.5, 10, I::Severe},   {8, 0.1, 10, I::Severe},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Shear);
    const auto layers = FindHighCat(
        {Pair(13000, 14000, c.Shear, c.Richardson), Pair(14000, 15000, 0, 9, c.LapseJump)}, {});
    EXPECT_EQ(layers.empty() ? I::None : layers.front().Class, c.Class) << c.Richardson;
  }
}

TEST(TurbulenceLimits, LowLevelShearInKnotsPerHundredFeet) {
  const struct {
    double Low, High, Difference;
    std::string_view Word;
  } cases[] = {
      {0, 30.48, 1.99, ""},  {0, 30.48, 2, "LGT"},     {0, 30.48, 4.99, "LGT"},
      {0, 30.48, 5, "MDT"},  {0, 30.48, 8.99, "MDT"},  {0, 30.48, 9, "STR"},
      {0, 30.48, 12, "STR"}, {0, 30.48, 12.01, "SVR"}, {0, 15.2, 30, ""},    // under 50 ft
      {0, 15.25, 30, "SVR"}, {0, 609.6, 200, "STR"},   {0, 609.7, 200, ""},  // 2000 ft
      {0, 60.96, 4, "LGT"},
  };
  for (const auto& c : cases) {
    WindPair pair = Pair(c.Low, c.High, 0, 5);
    pair.Difference = c.Difference;
    const auto layers = FindLowShear({pair}, 0);
    EXPECT_EQ(layers.empty() ? "" : layers.front().Word, c.Word) << c.High << ' ' << c.Difference;
  }
}

TEST(TurbulenceLimits, WavesByVerticalSpeed) {
  const struct {
    double Speed;  // m/s
    std::string_view Short;
  } cases[] = {{0.49, ""},    {0.5, "LGT"},  {1.24, "LGT"}, {1.25, "L-M"}, {1.74, "L-M"},
               {1.75, "MDT"}, {2.49, "MDT"}, {2.5, "M-S"},  {2.99, "M-S"}, {3, "SVR"},
               {4.99, "SVR"}, {5, "S-X"},    {6.99, "S-X"}, {7, "XTR"},    {-7, "XTR"}};
  for (const auto& c : cases) EXPECT_EQ(WaveTurbulence(c.Speed).Short, c.Short) << c.Speed;
}

// 304.8 m are 1000 ft: winds nearer than that to the one below are passed over.
TEST(TurbulenceLimits, WindsTooNearEachOther) {
  const LevelProfile levels = Air({{0, 1000, 15, 10}, {5000, 540, -17.5, -30}});
  const SoundingRecord sounding =
      test::Profile({{1000, 15, 10}, {540, -17.5, -30}}, {{0, 270, 10},
                                                          {304.8, 270, 20},
                                                          {500, 270, 90},
                                                          {1000, 270, 30},
                                                          {5020, 270, 50},
                                                          {5030, 270, 60}});
  const auto pairs = PairWinds(DeriveWinds(sounding), levels, 304.8);
  ASSERT_EQ(pairs.size(), 3u);
  EXPECT_NEAR(pairs[0].Shear, 10, 1e-9);
  EXPECT_NEAR(pairs[1].Shear, 10 / 0.6952 * 0.3048, 1e-9);
  EXPECT_NEAR(pairs[1].Lapse, 6.5, 1e-6);
  EXPECT_EQ(pairs[2].High.Height, 5020);  // 0.5 % of 5 km above the last temperature, not more
  EXPECT_EQ(PairWinds(DeriveWinds(sounding), levels, 0, 500).size(), 2u);
}

TEST(LayerLimits, InversionsBySizeAndKind) {
  constexpr auto kNone = "";
  const struct {
    const char* About;
    double Base, BasePress, TopPress, Rise, DewptChange;
    const char* Kind;
  } cases[] = {
      {"19 hPa and 2.4 C", 2000, 800, 781, 2.4, 0, kNone},
      {"20 hPa", 2000, 800, 780, 0.1, 0, "Frontal Inv."},
      {"2.5 C", 2000, 800, 799, 2.5, 0, "Frontal Inv."},
      {"from 99 m", 99, 800, 770, 3, 0, "Radiation Inv."},
      {"from 100 m", 100, 800, 770, 3, 0, "Frontal Inv."},
      {"dries by 3 C", 2000, 800, 770, 3, -3, "Subsidence Inv."},
      {"by 2.9", 2000, 800, 770, 3, -2.9, "Unknown Inv."},
      {"by 1.6", 2000, 800, 770, 3, -1.6, "Unknown Inv."},
      {"by 1.5", 2000, 800, 770, 3, -1.5, "Frontal Inv."},
      {"500 m below the tropopause", 9500, 500, 470, 3, -3, "Trop Inv."},
      {"501 m below it", 9499, 500, 470, 3, -3, "Subsidence Inv."},
      {"below 500 hPa", 9500, 501, 470, 3, -3, "Subsidence Inv."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const LevelProfile levels = Air({{0, 1000, 20, 10},
                                     {c.Base, c.BasePress, 0, 0 - 8.0},
                                     {c.Base + 300, c.TopPress, c.Rise, c.DewptChange - 8},
                                     {12000, 200, -50, 999.9}});
    const auto found = FindInversions(levels, {{300, 10000, -50}});
    EXPECT_EQ(found.empty() ? "" : Text(found.front().Kind), c.Kind);
  }
}

TEST(LayerLimits, TropopausesByLapseDepthAndPressure) {
  const auto found = [](const std::vector<AirRow>& rows) {
    std::vector<double> pressures;
    for (const LevelPoint& level : FindTropopauses(Air(rows))) pressures.push_back(level.Press);
    return pressures;
  };
  using Found = std::vector<double>;
  const AirRow ground = {0, 1000, 20, 10}, low = {10000, 300, -50, 0};
  // 2 °C/km to the next level and over 2 km.
  EXPECT_EQ(found({ground, low, {11000, 250, -52, 0}, {12500, 200, -55, 0}}), Found{300});
  EXPECT_EQ(found({ground, low, {11000, 250, -52.1, 0}, {12500, 200, -53, 0}}), Found{250});
  EXPECT_EQ(found({ground, low, {11000, 250, -52, 0}, {12500, 200, -55.2, 0}}), Found{});
  EXPECT_EQ(found({low, {11000, 250, -52, 0}, {12500, 200, -53, 0}}), Found{300});
  // The sounding ends: 1 km of it is enough.
  EXPECT_EQ(found({ground, low, {11000, 250, -50, 0}}), Found{300});
  EXPECT_EQ(found({ground, low, {10999, 250, -50, 0}}), Found{});
  EXPECT_EQ(found({ground, {6000, 500, -50, 0}, {9000, 300, -50, 0}}), Found{500});
  EXPECT_EQ(found({ground, {6000, 501, -50, 0}, {6900, 490, -60, 0}, {9000, 300, -50, 0}}),
            Found{490});
  // A second one where more than 3 °C/km over 1 km lie between.
  const auto second = [&](double lapse) {
    return found({ground,
                  {10000, 300, -50, 0},
                  {13000, 200, -50, 0},
                  {14000, 160, -50 - lapse, 0},
                  {15000, 130, -50 - 2 * lapse, 0},
                  {18000, 90, -50 - 2 * lapse, 0}})
        .size();
  };
  EXPECT_EQ(second(3), 1u);
  EXPECT_EQ(second(3.1), 2u);
}

TEST(LayerLimits, MixedLayerByPotentialTemperatureAndDepth) {
  const auto depthOf = [](double near, double above, double press = 975, double last = 320) {
    LevelProfile levels =
        Air({{0, 1000, 20, 5}, {200, press, 18, 5}, {400, 950, 15, 5}, {5000, 550, 0, -20}});
    levels.Theta = Levels<double>({300, near, above, last});
    const auto mixed = FindMixedLayer({}, levels);
    return mixed ? mixed->Depth : 0;
  };
  // Half a degree over the smallest of the lowest 25 hPa, which takes in a level at 975 hPa.
  EXPECT_NEAR(depthOf(300, 301), 300, 0.5);
  EXPECT_NEAR(depthOf(299, 301), 200 + 200 * 0.25, 0.5);
  EXPECT_NEAR(depthOf(299, 300.2, 974), 400 + 4600 * 0.3 / 19.8, 5);
  EXPECT_NEAR(depthOf(300, 300.4), 400 + 4600 * 0.1 / 19.6, 10);
  // 150 m at least: the limit is met at 200 m times its share.
  EXPECT_EQ(depthOf(300.68, 310), 0);
  EXPECT_NEAR(depthOf(300.66, 310), 200 * 0.5 / 0.66, 1);
  // Air that is mixed to the end of the sounding has no top.
  EXPECT_EQ(depthOf(300, 300, 975, 300.5), 0);
  EXPECT_NEAR(depthOf(300, 300, 975, 301), 400 + 4600 / 2.0, 1);
}

TEST(LayerLimits, ClassesAreAskedAtTheirEdges) {
  const std::vector<AirLayer> layers = {{{900, 1000, 0}, {800, 2000, 0}, I::Light, "LGT", 1},
                                        {{800, 2000, 0}, {700, 3000, 0}, I::Severe, "SVR", 2}};
  const std::pair<double, Intensity> cases[] = {
      {999, I::None}, {1000, I::Light}, {2000, I::Severe}, {3000, I::Severe}, {3001, I::None}};
  for (const auto& [height, expected] : cases) EXPECT_EQ(ClassAt(layers, height), expected);
}

// An isothermal layer inside joins, one on top does not; without a dew point the kind is not known.
TEST(LayerLimits, InversionsAreMerged) {
  const auto merged = FindInversions(
      test::Derived(test::Profile(
          {{1000, 10, 5}, {900, 4, 2}, {880, 5, 2}, {870, 5, 2}, {860, 6, 2}, {840, 6, 2}})),
      {});
  ASSERT_EQ(merged.size(), 1u);
  EXPECT_EQ(merged[0].Base.Press, 900);
  EXPECT_EQ(merged[0].Top.Press, 860);
  const auto dry = FindInversions(
      test::Derived(test::Profile({{1000, 10, 5}, {900, 4, 2}, {870, 6, 999.9}, {800, 0, 0}})), {});
  ASSERT_EQ(dry.size(), 1u);
  EXPECT_EQ(Text(dry[0].Kind), "Unknown Inv.");
}

// Every crossing up to the last level, which may itself be at 0 °C.
TEST(LayerLimits, FreezingLevelsAreAllCrossings) {
  const auto found = [](std::initializer_list<test::TempRow> temps) {
    std::vector<double> pressures;
    for (const LevelPoint& level : FindFreezingLevels(test::Derived(test::Profile(temps)))) {
      pressures.push_back(std::round(10 * level.Press) / 10);
    }
    return pressures;
  };
  using Found = std::vector<double>;
  // The surface, one crossing, sqrt(950 x 900), and one run of zeros.
  EXPECT_EQ(
      found(
          {{1000, 0, -5}, {950, -2, -5}, {900, 2, -5}, {850, 0, -5}, {840, 0, -5}, {700, -9, -9}}),
      (Found{1000, 924.7, 850}));
  EXPECT_EQ(found({{1000, 5, 0}, {890, 2, 0}, {790, 0, -9}}), Found{790});
  EXPECT_EQ(found({{1000, 5, 0}, {890, 2, 0}, {790, 0.1, -9}}), Found{});
  EXPECT_EQ(found({{1000, -1, -5}, {890, -2, -9}}), Found{});
  const auto reference = FindFreezingLevels(test::Derived(test::ReferenceConvective()));
  ASSERT_EQ(reference.size(), 1u);
  EXPECT_NEAR(reference[0].Press, 613.1, 0.05);
  EXPECT_NEAR(reference[0].Height, 4230, 0.6);
}

}  // namespace
}  // namespace vexa::analysis
