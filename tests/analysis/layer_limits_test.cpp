// Every limit at which a layer analysis decides, from both of its sides. The limits are those of
// the publications that the headers of analysis/ name; heights are given, so that a layer is
// exactly so thick and so steep as its case says.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "analysis/clouds.h"
#include "analysis/icing.h"
#include "analysis/layers.h"
#include "analysis/level_listing.h"
#include "analysis/profile_walk.h"
#include "analysis/soaring.h"
#include "analysis/turbulence.h"
#include "analysis/winter.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using I = Intensity;

struct AirRow {
  double Height, Press, Temp, Dewpt;
};

LevelProfile Air(const std::vector<AirRow>& rows) {
  SoundingRecord sounding = test::Profile({});
  for (const AirRow& row : rows) sounding.AddTemp(row.Press, row.Temp, row.Dewpt);
  LevelProfile levels = DeriveLevels(sounding, {});
  for (int i = 1; i <= levels.Count(); ++i) {
    levels.Height(i) = rows[static_cast<std::size_t>(i) - 1].Height;
  }
  return levels;
}

TEST(TurbulenceLimits, ClearAirByShearAndRichardsonNumber) {
  const struct {
    CatType Type;
    double Shear, Richardson;  // kt per 1000 ft
    Intensity Class;
  } cases[] = {
      {CatType::Usaf, 2.99, 5, I::None},
      {CatType::Usaf, 3, 5, I::Light},
      {CatType::Usaf, 4.99, 5, I::Light},
      {CatType::Usaf, 5, 5, I::LightModerate},
      {CatType::Usaf, 5.99, 5, I::LightModerate},
      {CatType::Usaf, 6, 5, I::Moderate},
      {CatType::Usaf, 8.99, 0.1, I::Moderate},
      {CatType::Usaf, 9, 0.1, I::ModerateSevere},
      {CatType::Usaf, 9.99, 5, I::ModerateSevere},
      {CatType::Usaf, 10, 5, I::Severe},
      {CatType::Usaf, 14.99, 5, I::Severe},
      {CatType::Usaf, 15, 5, I::Extreme},
      {CatType::Faa, 3.99, 0.5, I::None},
      {CatType::Faa, 4, 0.5, I::Light},
      {CatType::Faa, 5.99, 0.5, I::Light},
      {CatType::Faa, 6, 0.5, I::Moderate},
      {CatType::Faa, 8.99, 0.5, I::Moderate},
      {CatType::Faa, 9, 0.5, I::ModerateSevere},
      {CatType::Faa, 11.99, 1, I::ModerateSevere},
      {CatType::Faa, 12, 1, I::Severe},
      {CatType::Faa, 4, 1.01, I::None},
      {CatType::Faa, 6, 1.01, I::Light},
      {CatType::Faa, 9, 1.01, I::Moderate},
      {CatType::Faa, 12, 1.01, I::ModerateSevere},
      {CatType::Faa, 3, 0.24, I::None},
      {CatType::Faa, 4, 0.24, I::LightModerate},
      {CatType::Faa, 6, 0.25, I::Moderate},
      {CatType::Faa, 6, 0.24, I::ModerateSevere},
      {CatType::Faa, 9, 0.24, I::Severe},
      {CatType::Faa, 12, 0.24, I::Severe},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CatOf(c.Type, c.Shear, c.Richardson), c.Class) << c.Shear << ' ' << c.Richardson;
  }
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
  EXPECT_EQ(FindCat({Pair(709.7, 900, 6, 5)}, 100, CatType::Usaf).size(), 1u);
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
  const auto pairs = PairWinds(sounding, levels, 304.8);
  ASSERT_EQ(pairs.size(), 3u);
  EXPECT_NEAR(pairs[0].Shear, 10, 1e-9);
  EXPECT_NEAR(pairs[1].Shear, 10 / 0.6952 * 0.3048, 1e-9);
  EXPECT_NEAR(pairs[1].Lapse, 6.5, 1e-6);
  EXPECT_EQ(pairs[2].High.Height, 5020);  // 0.5 % of 5 km above the last temperature, not more
  EXPECT_EQ(PairWinds(sounding, levels, 0, 500).size(), 2u);
}

CloudAmount AmountOf(double temp, double dewpt) {
  AnalysisResults results;
  results.Levels = Air({{0, 1000, temp, dewpt}, {500, 940, temp, dewpt}, {1000, 880, temp, dewpt}});
  const auto decks = FindClouds(test::Profile({}), results, {});
  return decks.empty() ? CloudAmount::None : decks.front().Amount;
}

// 2, 3 and 5 °C of depression, wider by a tenth of the frost down to -40 °C.
TEST(CloudLimits, AmountByDepression) {
  constexpr auto kOvercast = CloudAmount::Overcast, kBroken = CloudAmount::Broken,
                 kScattered = CloudAmount::Scattered, kNone = CloudAmount::None;
  const struct {
    double Temp, Depression;
    CloudAmount Amount;
  } cases[] = {{5, 2, kOvercast},      {5, 2.1, kBroken},    {5, 3, kBroken},
               {5, 3.1, kScattered},   {5, 5, kScattered},   {5, 5.1, kNone},
               {-10, 3, kOvercast},    {-10, 3.1, kBroken},  {-10, 4, kBroken},
               {-10, 4.1, kScattered}, {-10, 6, kScattered}, {-10, 6.1, kNone},
               {-40, 6, kOvercast},    {-50, 6, kOvercast},  {-50, 6.1, kBroken},
               {-50, 9, kScattered},   {-50, 9.1, kNone}};
  for (const auto& c : cases) {
    EXPECT_EQ(AmountOf(c.Temp, c.Temp - c.Depression), c.Amount) << c.Temp << ' ' << c.Depression;
  }
}

// Moist air has a depression of 0, dry air of 10 °C: half way between them begins scattered cloud.
std::string DecksOf(const std::vector<std::pair<double, bool>>& isMoistAt, double tropopause = 0) {
  std::vector<AirRow> rows;
  for (const auto& [height, isMoist] : isMoistAt) {
    rows.push_back({height, 1000 - height / 20, 5, isMoist ? 5.0 : -5.0});
  }
  AnalysisResults results;
  results.Levels = Air(rows);
  if (tropopause > 0) results.Tropopauses = {{300, tropopause, -50}};
  std::string decks;
  for (const CloudDeck& deck : FindClouds(test::Profile({}), results, {})) {
    decks += std::to_string(static_cast<int>(deck.Base.Height + 0.5)) + '-' +
             std::to_string(static_cast<int>(deck.Top.Height + 0.5)) + ' ';
  }
  return decks;
}

TEST(CloudLimits, GapsThinLayersAndTheTropopause) {
  const struct {
    const char* About;
    std::vector<std::pair<double, bool>> Air;
    double Tropopause;
    const char* Decks;
  } cases[] = {
      {"a gap of 99 m joins",
       {{0, true}, {1000, true}, {1100, false}, {1198, true}, {2000, true}},
       0,
       "0-2000 "},
      {"one of 100 m does not",
       {{0, true}, {1000, true}, {1100, false}, {1200, true}, {2000, true}},
       0,
       "0-1050 1150-2000 "},
      {"59 m are too thin", {{0, false}, {1000, false}, {1059, true}, {1118, false}}, 0, ""},
      {"60 m are a cloud",
       {{0, false}, {1000, false}, {1060, true}, {1120, false}},
       0,
       "1030-1090 "},
      {"500 m above the tropopause still count",
       {{0, false}, {8000, true}, {9500, true}, {9600, true}},
       9000,
       "4000-9500 "},
      {"more do not", {{0, false}, {8000, true}, {9501, true}, {9600, true}}, 9000, "4000-8000 "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    EXPECT_EQ(DecksOf(c.Air, c.Tropopause), c.Decks);
  }
}

struct Deck {
  double Base, BaseTemp, Top, TopTemp;  // m above ground, °C
  double GroundTemp = 0;
  double Depression = 0;
};

// The type of a deck between levels without dew points; the parcel's CAPE, LCL and LFC.
CloudType TypeOf(const Deck& deck, double cape = 0, double lcl = 0, double lfc = 0) {
  const auto press = [](double height) { return 1000 - height / 14; };
  AnalysisResults results;
  results.Levels =
      Air({{0, 1000, deck.GroundTemp, 999.9},
           {deck.Base, press(deck.Base), deck.BaseTemp, deck.BaseTemp - deck.Depression},
           {deck.Top, press(deck.Top), deck.TopTemp, deck.TopTemp - deck.Depression},
           {13000, 60, -60, 999.9}});
  ParcelAscent& parcel = results.Lifts[static_cast<std::size_t>(results.ChosenLift)].Forced;
  parcel.CapeTotal = cape;
  parcel.Condensation = {900, lcl, 10};
  parcel.FreeLevel = {800, lfc, 5};
  const auto decks = FindClouds(test::Profile({}), results, {});
  return decks.size() == 1 ? decks.front().Type : CloudType::None;
}

TEST(CloudLimits, TypeByHeightDepthAndStability) {
  const struct {
    const char* About;
    Deck Cloud;
    CloudType Type;
  } cases[] = {
      // 16500 ft are 5029.2 m, 6500 ft 1981.2 m; saturated air at -20 °C and 640 hPa cools by about
      // 8 °C/km, at 10 °C and 860 hPa by about 5.
      {"from 16500 ft up", {5029.3, -20, 5500, -21}, CloudType::CI},
      {"just below", {5029.1, -20, 5500, -21}, CloudType::AS},
      {"-30 C at the base", {3000, -30, 3500, -31}, CloudType::CI},
      {"just warmer", {3000, -29.9, 3500, -31}, CloudType::AS},
      {"from 6500 ft up, steep", {1981.3, 10, 2981.3, 3}, CloudType::AC},
      {"from 6500 ft up, stable", {1981.3, 10, 2981.3, 7}, CloudType::AS},
      {"just below, steep", {1981.1, 10, 2981.1, 3}, CloudType::SC},
      {"just below, stable", {1981.1, 10, 2981.1, 7}, CloudType::ST},
      {"6500 ft deep and overcast", {1500, 10, 3481.3, 4}, CloudType::NS},
      {"a little less deep", {1500, 10, 3481.1, 4}, CloudType::ST},
      {"as deep but broken", {1500, 10, 3481.3, 4, 0, 3}, CloudType::ST},
      // 3281 ft are 1000.05 m: below, the air under the cloud counts.
      {"in the boundary layer over steep air", {1000, 10, 1500, 9, 18}, CloudType::SC},
      {"above it the same is stable", {1000.1, 10, 1500, 9, 18}, CloudType::ST},
      {"in the boundary layer over stable air", {1000, 10, 1500, 5, 12}, CloudType::ST},
  };
  for (const auto& c : cases) EXPECT_EQ(Text(TypeOf(c.Cloud)), Text(c.Type)) << c.About;
}

// Fog: what lies below its base is nothing, the layer itself is steep.
TEST(CloudLimits, OnTheGroundTheCloudsOwnLapseCounts) {
  AnalysisResults results;
  results.Levels = Air({{0, 1000, 10, 10}, {500, 943, 6, 6}, {3000, 700, 0, 999.9}});
  const auto fog = FindClouds(test::Profile({}), results, {});
  ASSERT_EQ(fog.size(), 1u);
  EXPECT_EQ(fog[0].Type, CloudType::SC);
}

// Warner's pieces where one ends: 1 - 11 h, 0.6915 - 1.4 h, 0.505 - 0.356 h, 0.2912 - 0.0608 h.
TEST(CloudLimits, EntrainmentAtTheEndsOfItsPieces) {
  const std::pair<double, double> stratiform[] = {
      {0.032, 0.648}, {0.177, 0.4437}, {0.726, 0.246544}, {1.5, 0.2}};
  for (const auto& [height, share] : stratiform) {
    EXPECT_NEAR(EntrainmentFactor(CloudFamily::Stratiform, height), share, 1e-9) << height;
  }
  EXPECT_NEAR(EntrainmentFactor(CloudFamily::Cumuliform, 2.9), 0.26, 1e-9);
  EXPECT_EQ(EntrainmentFactor(CloudFamily::Cirriform, 1), 0);
}

// 1500 ft are 457.2 m, 10000 ft 3048 m.
TEST(CloudLimits, ConvectionMakesCumulus) {
  const Deck tower = {1000, 10, 4048.1, -20};
  EXPECT_EQ(TypeOf(tower, 100, 1000, 2000), CloudType::CB);
  EXPECT_EQ(TypeOf({1000, 10, 4048.1, -19.9}, 100, 1000, 2000), CloudType::CU);
  EXPECT_EQ(TypeOf({1000, 10, 4047.9, -20}, 100, 1000, 2000), CloudType::CU);
  EXPECT_EQ(TypeOf(tower, 0, 1000, 2000), CloudType::NS);
  EXPECT_EQ(TypeOf(tower, 100, 1457.1, 2000), CloudType::CB);
  EXPECT_EQ(TypeOf(tower, 100, 1457.3, 2000), CloudType::NS);
  EXPECT_EQ(TypeOf(tower, 100, 542.7, 2000), CloudType::NS);
  EXPECT_EQ(TypeOf(tower, 100, 1000, 4048.1), CloudType::CB);
  EXPECT_EQ(TypeOf(tower, 100, 1000, 4048.2), CloudType::NS);
}

TEST(LightningLimits, ByTemperatureAndAmount) {
  constexpr auto kBroken = CloudAmount::Broken, kScattered = CloudAmount::Scattered;
  const struct {
    double Temp;
    CloudAmount Amount;
    CloudType Type;
    Intensity Class;
  } cases[] = {
      {5, kBroken, CloudType::SC, I::Moderate},    {5.1, kBroken, CloudType::SC, I::Light},
      {8, kBroken, CloudType::SC, I::Light},       {8.1, kBroken, CloudType::SC, I::None},
      {-5, kBroken, CloudType::SC, I::Moderate},   {-5.1, kBroken, CloudType::SC, I::Light},
      {-8, kBroken, CloudType::SC, I::Light},      {-8.1, kBroken, CloudType::SC, I::None},
      {5, kScattered, CloudType::SC, I::Light},    {5.1, kScattered, CloudType::SC, I::None},
      {-20, kScattered, CloudType::CB, I::Severe}, {-20.1, kScattered, CloudType::CB, I::None},
      {5, kScattered, CloudType::CB, I::Severe},   {5.1, kBroken, CloudType::CB, I::Light},
  };
  for (const auto& c : cases) {
    const LevelProfile levels = Air({{0, 1000, c.Temp, c.Temp}, {2000, 800, c.Temp, c.Temp}});
    const CloudDeck deck{{950, 500, c.Temp}, {900, 1000, c.Temp}, c.Amount, c.Type};
    const auto layers = FindLightning(levels, {deck});
    EXPECT_EQ(layers.empty() ? I::None : layers.front().Class, c.Class) << c.Temp;
  }
}

// 2 °C in 1000 ft are 6.56 °C/km.
TEST(IcingLimits, ByTemperatureDepressionAndLapse) {
  constexpr double kStable = 6.5, kSteep = 6.6;
  const struct {
    double Temp, Depression, Lapse;
    std::string_view Word;
  } cases[] = {
      {0.1, 0.5, kStable, ""},          {0, 1, kStable, "LGT RIME"},
      {-4, 1, kStable, "LGT RIME"},     {-4, 1, kSteep, "MDT CLEAR"},
      {-4, 1.1, kStable, "TRC RIME"},   {-4, 1.1, kSteep, "LGT CLEAR"},
      {-4, 2, kStable, "TRC RIME"},     {-4, 2.1, kSteep, ""},
      {-7.9, 0.5, kSteep, "MDT CLEAR"}, {-8, 0.5, kSteep, "MDT MIXED"},
      {-10, 1, kStable, "MDT RIME"},    {-10, 1.1, kStable, "LGT RIME"},
      {-10, 1.1, kSteep, "LGT MIXED"},  {-10, 3, kSteep, "LGT MIXED"},
      {-10, 3.1, kStable, ""},          {-15.9, 0.5, kSteep, "MDT MIXED"},
      {-16, 0.5, kSteep, "LGT RIME"},   {-18, 4, kStable, "LGT RIME"},
      {-18, 4.1, kStable, ""},          {-22, 2, kStable, "LGT RIME"},
      {-22.1, 2, kStable, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Temp);
    const LevelProfile levels =
        Air({{0, 1000, c.Temp, c.Temp - c.Depression}, {1000, 880, c.Temp - c.Lapse, 999.9}});
    const auto layers = RuleIcing(levels, {});
    EXPECT_EQ(layers.empty() ? "" : layers.front().Word, c.Word) << c.Depression << ' ' << c.Lapse;
  }
  const LevelProfile levels = Air({{0, 1000, -4, -5}, {1000, 880, -10, 999.9}});
  const CloudDeck tower{{1010, -10, -4}, {880, 1000, -10}, CloudAmount::Overcast, CloudType::CB};
  EXPECT_EQ(RuleIcing(levels, {tower}).front().Word, "MDT RIME");
}

// 0.119 g/m3 215 m above a base of stratus at 925 hPa and -5.2 °C (adiabatic 0.2778, Warner 0.4286)
// are less than a tenth of the 2.02 that make icing severe in drops of 12 µm.
TEST(IcingLimits, CloudWaterOfStratusButNotOfCirrus) {
  const LevelProfile levels = Air({{0, 925, -5.2, -5.2}, {214.5, 900, -6.71, -6.71}});
  const auto icing = [&](CloudType type) {
    const CloudDeck deck{{925, 0, -5.2}, {900, 214.5, -6.71}, CloudAmount::Overcast, type};
    return SmithFeddesIcing(levels, {deck}, SaturationOver::Water);
  };
  const auto stratus = icing(CloudType::ST);
  ASSERT_FALSE(stratus.empty());
  EXPECT_EQ(stratus.back().Word, "TRC RIME");
  EXPECT_NEAR(stratus.back().Value, 0.119, 0.04);
  EXPECT_EQ(icing(CloudType::CU).back().Word, "LGT CLEAR");  // a fifth of 1.03
  EXPECT_TRUE(icing(CloudType::CI).empty());
}

TEST(IcingLimits, RainThatFreezes) {
  const auto wordAt = [](double warm, double depression, double cold) -> std::string_view {
    const auto layers = RuleIcing(Air({{0, 1000, cold, cold - 10},
                                       {500, 940, cold, cold - 10},
                                       {1000, 880, warm, warm - depression},
                                       {2000, 780, warm, warm - depression}}),
                                  {});
    return layers.empty() ? "" : layers.front().Word;
  };
  EXPECT_EQ(wordAt(1, 3, -1), "SVR CLEAR");
  EXPECT_EQ(wordAt(1, 3.1, -1), "");
  EXPECT_EQ(wordAt(0, 3, -1), "");
  EXPECT_EQ(wordAt(1, 3, 0), "SVR CLEAR");
  EXPECT_EQ(wordAt(1, 3, 0.1), "");
}

TEST(IcingLimits, OfCarburettorsAtTheNodesOfTheChart) {
  const struct {
    double Dewpt;
    double Severe, Cruise, Descent, Light;  // the warmest of each zone; -99 for none
  } cases[] = {{-14, -99, -99, -99, -14},      {-10, -99, -99, -99, -1.5}, {-7, -99, -99, -7, 6},
               {-5, -99, -99, 1, 10},          {-3, -99, -3, 8, 14},       {0, 5, 9, 16, 19.5},
               {2.5, 8.75, 13.5, 19.5, 23.25}, {5, 12.5, 18, 23, 27},      {10, 15, 21, 27, 32},
               {15, 15, 21, 29, 35},           {20, -99, 20, 28, 36},      {25, -99, -99, -99, 36}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Dewpt);
    const double zones[] = {c.Severe, c.Cruise, c.Descent, c.Light};
    const Intensity classes[] = {I::Severe, I::ModerateSevere, I::Moderate, I::Light, I::None};
    for (std::size_t i = 0; i < 4; ++i) {
      if (zones[i] < c.Dewpt) continue;
      EXPECT_EQ(CarburettorIcing(zones[i], c.Dewpt), classes[i]);
      EXPECT_EQ(CarburettorIcing(zones[i] + 0.01, c.Dewpt), classes[i + 1]);
    }
  }
  EXPECT_EQ(CarburettorIcing(10, 10.1), I::None);
  EXPECT_EQ(CarburettorIcing(-10, -14.1), I::None);
  EXPECT_EQ(CarburettorIcing(26, 25.1), I::None);
}

TEST(WinterLimits, PrecipitationByTheAreas) {
  const struct {
    double Surface, Cold, Aloft;  // J/kg
    std::string_view Type;
  } cases[] = {
      {5.59, 0, 0, "SNOW"},
      {5.6, 0, 0, "RAIN/SNOW"},
      {13.2, 0, 0, "RAIN/SNOW"},
      {13.21, 0, 0, "RAIN"},
      {0, 10, 1.99, "SNOW"},
      {0, 10, 2, "FREEZING RAIN"},
      {0, 0, 100, "SNOW"},
      {0, 111.9, 100, "FREEZING RAIN"},
      {0, 112.1, 100, "FREEZING RAIN/ICE PELLETS"},
      {0, 131.9, 100, "FREEZING RAIN/ICE PELLETS"},
      {0, 132.1, 100, "ICE PELLETS"},
      {1, 131.9, 100, "RAIN"},
      {5.59, 132.1, 100, "ICE PELLETS"},
      {5.6, 132.1, 100, "RAIN/PELLETS"},
      {13.2, 132.1, 100, "RAIN/PELLETS"},
      {13.21, 132.1, 100, "RAIN"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(PrecipitationType(c.Surface, c.Cold, c.Aloft), c.Type)
        << c.Surface << ' ' << c.Cold << ' ' << c.Aloft;
  }
}

// Crystals form in clouds that are cold at the top or deep; drizzle freezes out of warmer ones.
TEST(WinterLimits, CloudsThatSnow) {
  constexpr auto kOvercast = CloudAmount::Overcast, kBroken = CloudAmount::Broken;
  const struct {
    const char* About;
    CloudAmount Amount;
    double TopTemp, Depth, Ground;  // °C, m, °C
    std::string_view Falls;
  } cases[] = {
      {"top at -6 C", kBroken, -6, 500, -3, "SNOW"},
      {"a warmer, broken one", kBroken, -5.9, 500, -3, ""},
      {"a warmer, closed one", kOvercast, -5.9, 1500, -3, "FREEZING DRIZZLE"},
      {"a deeper one", kBroken, -5.9, 1501, -3, "SNOW"},
      {"scattered", CloudAmount::Scattered, -20, 3000, -3, ""},
      {"drizzle on ground at 0 C", kOvercast, -5, 500, 0, "FREEZING DRIZZLE"},
      {"on warmer ground", kOvercast, -5, 500, 0.1, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    AnalysisResults results;
    results.Levels =
        Air({{0, 1000, c.Ground, c.Ground}, {1000, 880, -4, -4}, {5600, 500, -30, -30}});
    results.Layers.Clouds = {
        {{950, 400, -3}, {900, 400 + c.Depth, c.TopTemp}, c.Amount, CloudType::ST}};
    EXPECT_EQ(AnalyseWinter(test::Profile({}), results).Precipitation, c.Falls);
  }
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

// In binary the differences of these tenths lie on the wrong side of their limits.
TEST(LayerLimits, HoldForDifferencesOfTenths) {
  EXPECT_EQ(AmountOf(4.4, 2.4), CloudAmount::Overcast);
  EXPECT_EQ(AmountOf(4.4, -0.6), CloudAmount::Scattered);
  const auto icing = RuleIcing(Air({{0, 1000, -7.8, -8.8}, {1000, 880, -12, 999.9}}), {});
  ASSERT_FALSE(icing.empty());
  EXPECT_EQ(icing.front().Word, "LGT RIME");
  const auto rain = RuleIcing(
      Air({{0, 1000, -1, -9}, {500, 940, -1, -9}, {1000, 880, 4.4, 1.4}, {2000, 780, 4, 1}}), {});
  ASSERT_FALSE(rain.empty());
  EXPECT_EQ(rain.front().Word, "SVR CLEAR");
  const auto kind = [](double baseDewpt, double topDewpt) -> std::string_view {
    const auto found = FindInversions(Air({{0, 1000, 5, 0},
                                           {2000, 800, -10.2, baseDewpt},
                                           {2010, 799, -7.7, topDewpt},
                                           {9000, 300, -50, 999.9}}),
                                      {});
    return found.empty() ? "" : Text(found.front().Kind);  // warmer by 2.5 °C
  };
  EXPECT_EQ(kind(-15.9, -18.9), "Subsidence Inv.");
  EXPECT_EQ(kind(-15.6, -17.1), "Frontal Inv.");
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
  const auto depthOf = [](double near, double above, double aboveHeight) {
    LevelProfile levels =
        Air({{0, 1000, 20, 5}, {200, 975, 18, 5}, {aboveHeight, 960, 15, 5}, {5000, 550, 0, -20}});
    levels.Theta = Levels<double>({300, near, above, 320});
    const auto mixed = FindMixedLayer(test::Profile({}), levels);
    return mixed ? mixed->Depth : 0;
  };
  // Half a degree over the smallest of the lowest 25 hPa, which takes in the level at 975 hPa.
  EXPECT_NEAR(depthOf(300, 301, 400), 300, 0.5);
  EXPECT_NEAR(depthOf(299, 301, 400), 200 + 200 * 0.25, 0.5);
  EXPECT_NEAR(depthOf(300, 300.4, 400), 400 + 4600 * 0.1 / 19.6, 10);
  // 150 m at least: the limit is met at 200 m times its share.
  EXPECT_EQ(depthOf(300.68, 310, 400), 0);
  EXPECT_NEAR(depthOf(300.66, 310, 400), 200 * 0.5 / 0.66, 1);
}

LevelListing Refracting(const std::vector<double>& gradients, const std::vector<double>& modified) {
  LevelListing listing;
  listing.Gradient = Levels<double>(gradients);
  listing.Modified = Levels<double>(modified);
  return listing;
}

TEST(LayerLimits, DuctsByGradient) {
  const LevelProfile levels = Air({{0, 1000, 20, 10},
                                   {500, 940, 18, 10},
                                   {1000, 890, 16, 10},
                                   {1200, 870, 18, 0},
                                   {1400, 850, 19, -5}});
  const std::vector<double> modified = {300, 320, 330, 310, 400};
  EXPECT_TRUE(
      FindDucts(levels, Refracting({kMissing, -40, -40, -156.9, -40}, modified), -157).empty());
  const auto ducts = FindDucts(levels, Refracting({kMissing, -40, -40, -157, -40}, modified), -157);
  ASSERT_EQ(ducts.size(), 1u);
  EXPECT_EQ(ducts[0].Base.Height, 1000);
  EXPECT_EQ(ducts[0].Top.Height, 1200);
  EXPECT_NEAR(ducts[0].DuctBase, 250, 1e-9);  // 310 lies half way between 300 and 320
  EXPECT_FALSE(ducts[0].OnSurface);
  // Layers that follow each other are one; with less than the ground's at its top it stands on it.
  const auto deep = FindDucts(
      levels, Refracting({kMissing, -40, -40, -160, -200}, {300, 320, 330, 310, 290}), -157);
  ASSERT_EQ(deep.size(), 1u);
  EXPECT_EQ(deep[0].Top.Height, 1400);
  EXPECT_EQ(deep[0].Gradient, -200);
  EXPECT_EQ(deep[0].DuctBase, 0);
  EXPECT_TRUE(deep[0].OnSurface);
}

// Saturated air at 500 hPa, where the threshold lies near -34.7 °C by hand.
TEST(LayerLimits, ContrailsFrom500hPaUp) {
  const auto layers =
      FindContrails(Air({{5400, 510, -38, -38}, {5500, 500, -38, -38}, {9000, 300, -30, -30}}), 60);
  ASSERT_EQ(layers.size(), 1u);
  EXPECT_EQ(layers[0].Base.Press, 500);
  EXPECT_NEAR(layers[0].Value, -34.66 + 38, 0.05);
  EXPECT_LT(layers[0].Top.Height, 9000);
}

TEST(LayerLimits, ClassesAreAskedAtTheirEdges) {
  const std::vector<AirLayer> layers = {{{900, 1000, 0}, {800, 2000, 0}, I::Light, "LGT", 1},
                                        {{800, 2000, 0}, {700, 3000, 0}, I::Severe, "SVR", 2}};
  const std::pair<double, Intensity> cases[] = {
      {999, I::None}, {1000, I::Light}, {2000, I::Severe}, {3000, I::Severe}, {3001, I::None}};
  for (const auto& [height, expected] : cases) EXPECT_EQ(ClassAt(layers, height), expected);
}

// Looks stand at the ends and the levels, 50 m apart at least and 250 m at most.
TEST(LayerLimits, LooksAreNeitherTooCloseNorTooFar) {
  const LevelProfile levels = Air({{0, 1000, 5, 5},
                                   {49, 994, 5, 5},
                                   {100, 988, 5, 5},
                                   {351, 960, 5, 5},
                                   {560, 940, 5, 5},
                                   {600, 930, 5, 5}});
  EXPECT_EQ(SampleHeights(levels, 0, 600), (std::vector<double>{0, 100, 225.5, 351, 600}));
}

}  // namespace
}  // namespace vexa::analysis
