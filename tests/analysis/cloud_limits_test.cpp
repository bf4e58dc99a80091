// Every limit at which clouds, icing and winter weather are decided, from both of its sides. The
// limits are those of the publications that the headers of analysis/ name.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "analysis/air_rows.h"
#include "analysis/clouds.h"
#include "analysis/icing.h"
#include "analysis/layers.h"
#include "analysis/winter.h"
#include "core/markers.h"

namespace vexa::analysis {
namespace {

using I = Intensity;

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
std::string DecksOf(const std::vector<std::pair<double, int>>& isMoistAt, double tropopause) {
  std::vector<AirRow> rows;
  for (const auto& [height, isMoist] : isMoistAt) {
    rows.push_back({height, 1000 - height / 20, 5, isMoist != 0 ? 5.0 : -5.0});
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
    std::vector<std::pair<double, int>> Air;  // m, whether it is moist
    double Tropopause;
    const char* Decks;
  } cases[] = {
      {"a gap of 99 m joins", {{0, 1}, {1000, 1}, {1100, 0}, {1198, 1}, {2000, 1}}, 0, "0-2000 "},
      {"one of 100 m does not",
       {{0, 1}, {1000, 1}, {1100, 0}, {1200, 1}, {2000, 1}},
       0,
       "0-1050 1150-2000 "},
      {"59 m are too thin", {{0, 0}, {1000, 0}, {1059, 1}, {1118, 0}}, 0, ""},
      {"60 m are a cloud", {{0, 0}, {1000, 0}, {1060, 1}, {1120, 0}}, 0, "1030-1090 "},
      {"500 m above the tropopause", {{0, 0}, {8000, 1}, {9500, 1}, {9600, 1}}, 9000, "4000-9500 "},
      {"more do not count", {{0, 0}, {8000, 1}, {9501, 1}, {9600, 1}}, 9000, "4000-8000 "}};
  for (const auto& c : cases) EXPECT_EQ(DecksOf(c.Air, c.Tropopause), c.Decks) << c.About;
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
  ParcelAscent& parcel = results.Forced[static_cast<std::size_t>(results.ChosenLift)];
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
      {"from 16500 ft up", {5029.2, -20, 5500, -21}, CloudType::CI},
      {"just below", {5029.1, -20, 5500, -21}, CloudType::AS},
      {"-30 C at the base", {3000, -30, 3500, -31}, CloudType::CI},
      {"just warmer", {3000, -29.9, 3500, -31}, CloudType::AS},
      {"from 6500 ft up, steep", {1981.2, 10, 2981.2, 3}, CloudType::AC},
      // From 8 °C at 860 hPa saturated air cools by 5.0 °C in the next kilometre.
      {"a little steeper than saturated air", {1981.2, 8, 2981.2, 2.5}, CloudType::AC},
      {"a little less steep", {1981.2, 8, 2981.2, 3.5}, CloudType::AS},
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
  EXPECT_EQ(FindClouds(test::Profile({}), results, {}).at(0).Type, CloudType::SC);
  // 6500 ft, 1981.2 m, deep.
  results.Levels = Air({{0, 1000, 10, 10}, {1981.2, 790, 4, 4}, {1981.3, 789, 4, 999.9}});
  EXPECT_EQ(FindClouds(test::Profile({}), results, {}).at(0).Type, CloudType::NS);
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
  const Deck tower = {1000, 10, 4048, -20};
  EXPECT_EQ(TypeOf(tower, 100, 1000, 2000), CloudType::CB);
  EXPECT_EQ(TypeOf({1000, 10, 4048.1, -19.9}, 100, 1000, 2000), CloudType::CU);
  EXPECT_EQ(TypeOf({1000, 10, 4047.9, -20}, 100, 1000, 2000), CloudType::CU);
  EXPECT_EQ(TypeOf(tower, 0, 1000, 2000), CloudType::NS);
  EXPECT_EQ(TypeOf(tower, 100, 1457.1, 2000), CloudType::CB);
  EXPECT_EQ(TypeOf(tower, 100, 1457.3, 2000), CloudType::NS);
  EXPECT_EQ(TypeOf(tower, 100, 542.7, 2000), CloudType::NS);
  EXPECT_EQ(TypeOf({457.2, 10, 4048, -20}, 100, 0, 2000), CloudType::CB);
  EXPECT_EQ(TypeOf(tower, 100, 1000, 4048), CloudType::CB);
  EXPECT_EQ(TypeOf(tower, 100, 1000, 4048.1), CloudType::NS);
  EXPECT_EQ(TypeOf(tower, 0.5, 1000, 2000), CloudType::CB);
}

// The surface layer ends where the sounding's supplement says, in feet above sea level, else 3281
// ft above the ground.
TEST(CloudLimits, TopOfTheSurfaceLayer) {
  SoundingRecord sounding = test::Profile({}, {}, 305);
  const double usual = (sounding.ElevFt + 3281) * 0.3048;
  EXPECT_NEAR(BoundaryLayerTop(sounding), usual, 1e-6);
  sounding.ExtraRecord1[0] = 5000;
  EXPECT_NEAR(BoundaryLayerTop(sounding), usual, 1e-6);
  sounding.ExtraRecordsPresent = true;
  EXPECT_NEAR(BoundaryLayerTop(sounding), 1524, 1e-6);
  sounding.ExtraRecord1[0] = 0.5;
  EXPECT_NEAR(BoundaryLayerTop(sounding), 0.1524, 1e-6);
  sounding.ExtraRecord1[0] = 0;
  EXPECT_NEAR(BoundaryLayerTop(sounding), usual, 1e-6);
}

// Hundreds of feet above the ground; what has no top, no depth or no amount is no layer.
TEST(CloudLimits, TablesThatTheUserDrewUp) {
  AnalysisResults results;
  results.Levels = Air({{100, 1000, 10, 5}, {2100, 780, -2, -9}, {4100, 610, -14, -30}});
  SoundingRecord sounding = test::Profile({});
  sounding.CloudMode = "MANUAL";
  for (const CloudLayer& row : {CloudLayer{"AS", 80, "100", 3},
                                {"CU", 20, "60", 1},
                                {"SC", 30, "30", 2},
                                {"ST", 31, "30", 2},
                                {"ST", 10, "what", 2},
                                {"NS", 10, "20", 0},
                                {"NS", 10, "20", 4}}) {
    sounding.Clouds.Add(row);
  }
  const auto decks = FindClouds(sounding, results, {});
  ASSERT_EQ(decks.size(), 2u);
  EXPECT_NEAR(decks[0].Base.Height, 709.6, 1e-6);
  EXPECT_NEAR(decks[0].Base.Temp, 10 - 12 * 0.3048, 1e-6);
  EXPECT_NEAR(decks[0].Top.Height, 1928.8, 1e-6);
  EXPECT_NEAR(decks[1].Base.Height, 2538.4, 1e-6);
  const Levels<CloudLayer> table = CloudTable(decks, 100);
  EXPECT_EQ(table(1), (CloudLayer{"CU", 20, "060", 1}));
  EXPECT_EQ(table(2), (CloudLayer{"AS", 80, "100", 3}));
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

// A deck counts as long as one of its ends is not colder than -20 °C.
TEST(LightningLimits, DecksWithOneColdEnd) {
  const auto found = [](double base, double top) {
    const LevelProfile levels = Air({{0, 1000, base, base}, {2000, 800, top, top}});
    const CloudDeck deck{{1000, 0, base}, {800, 2000, top}, CloudAmount::Overcast, CloudType::CB};
    return !FindLightning(levels, {deck}).empty();
  };
  EXPECT_TRUE(found(-10, -30));
  EXPECT_TRUE(found(-30, -10));
  EXPECT_TRUE(found(-20, -30));
  EXPECT_FALSE(found(-21, -30));
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
  } cases[] = {{5.59, 0, 0, "SNOW"},
               {5.6, 0, 0, "RAIN/SNOW"},
               {13.2, 0, 0, "RAIN/SNOW"},
               {13.21, 0, 0, "RAIN"},
               {0, 10, 1.99, "SNOW"},
               {0, 10, 2, "FREEZING RAIN"},
               {0, 0, 100, "SNOW"},
               {0, 111.9, 100, "FREEZING RAIN"},
               {0, 112, 100, "FREEZING RAIN/ICE PELLETS"},
               {0, 132, 100, "FREEZING RAIN/ICE PELLETS"},
               {0, 132.1, 100, "ICE PELLETS"},
               {1, 131.9, 100, "RAIN"},
               {5.59, 132.1, 100, "ICE PELLETS"},
               {5.6, 132.1, 100, "RAIN/PELLETS"},
               {13.2, 132.1, 100, "RAIN/PELLETS"},
               {13.21, 132.1, 100, "RAIN"}};
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
    EXPECT_EQ(AnalyseWinter(results).Precipitation, c.Falls);
  }
}

// In binary the differences of these tenths lie on the wrong side of their limits.
TEST(CloudLimits, HoldForDifferencesOfTenths) {
  EXPECT_EQ(AmountOf(4.4, 2.4), CloudAmount::Overcast);
  EXPECT_EQ(AmountOf(4.4, -0.6), CloudAmount::Scattered);
  const auto icing = RuleIcing(Air({{0, 1000, -7.8, -8.8}, {1000, 880, -12, 999.9}}), {});
  EXPECT_EQ(icing.at(0).Word, "LGT RIME");
  const auto rain = RuleIcing(
      Air({{0, 1000, -1, -9}, {500, 940, -1, -9}, {1000, 880, 4.4, 1.4}, {2000, 780, 4, 1}}), {});
  EXPECT_EQ(rain.at(0).Word, "SVR CLEAR");
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

TEST(Clouds, WaterAndMixingAsPublished) {
  const auto water = SaturationOver::Water;
  EXPECT_NEAR(LiftedCloud(925, -5.2, water).Water(900), 0.2778, 1e-3);
  EXPECT_NEAR(LiftedCloud(850, 10, water).Water(800), 0.9585, 2e-3);
  EXPECT_NEAR(LiftedCloud(850, 10, water).Water(750), 1.8261, 2e-3);
  // The base holds no water, nor does a pressure that rounding puts beside it.
  for (const double base : {960.0, 850.0, 687.9, 556.8}) {
    for (const double share : {1e-15, 1e-13, 1e-11}) {
      EXPECT_EQ(LiftedCloud(base, -5, water).Water(base * (1 - share)), 0) << base << ' ' << share;
    }
  }
  const double deep[] = {0, 0.1, 0.3, 0.6, 1, 1.5, 2, 3};
  const double cumuliform[] = {1, 0.834, 0.488, 0.433, 0.316, 0.293, 0.271, 0.26};
  for (std::size_t i = 0; i < std::size(deep); ++i) {
    EXPECT_NEAR(EntrainmentFactor(CloudFamily::Cumuliform, deep[i]), cumuliform[i], 1e-3);
  }
}

}  // namespace
}  // namespace vexa::analysis
