// Icing by the water of clouds, from both sides of each of its limits: the amount that is severe
// for the drops of a type (Smith 1974), the temperatures that change the class and the kind of ice.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "analysis/air_rows.h"
#include "analysis/analysis.h"
#include "analysis/icing.h"

namespace vexa::analysis {
namespace {

constexpr auto kWater = SaturationOver::Water;
constexpr double kDepth = 200;  // m from the base, where nothing lies between

CloudDeck DeckOf(CloudType type, double topPress, double topTemp) {
  return {{950, 0, 25}, {topPress, kDepth, topTemp}, CloudAmount::Overcast, type};
}

// The pressure at which air that rose from 950 hPa and 25 °C holds so much in a cloud of the type.
double PressWith(CloudType type, double temp, double water) {
  const CloudWater cloud(DeckOf(type, 900, temp), kWater);
  double low = 949, high = 300;
  for (int i = 0; i < 60; ++i) {
    const double middle = (low + high) / 2;
    (cloud.At(middle, kDepth, temp) < water ? low : high) = middle;
  }
  return low;
}

// The word at the top of a cloud that holds a share of what is severe there; rain may freeze in it.
std::string_view WordOf(CloudType type, double severe, double share, double temp,
                        bool freezingRain = false) {
  const double press = PressWith(type, temp, severe * share);
  std::vector<AirRow> rows = {{0, 950, temp, temp}, {kDepth, press, temp, temp}};
  if (freezingRain) rows.push_back({1000, press - 50, 2, 1});
  rows.push_back({5000, 250, freezingRain ? 1.0 : temp, 999.9});
  const auto layers = SmithFeddesIcing(Air(rows), {DeckOf(type, press, temp)}, kWater);
  return layers.empty() || layers.back().Top.Height < kDepth ? "" : layers.back().Word;
}

// Drops of 10 µm: 2.50 g/m3, of 12: 2.02, of 18: 1.03, of 25: 0.75, between 15: 1.30, 20: 0.85 and
// 30: 0.65.
TEST(WaterIcing, SevereAmountByType) {
  const struct {
    CloudType Type;
    double Severe;
    std::string_view Below, Above;
  } cases[] = {{CloudType::ST, 2.02, "MDT RIME", "SVR RIME"},
               {CloudType::NS, 2.02, "MDT RIME", "SVR RIME"},
               {CloudType::AS, 2.50, "MDT RIME", "SVR RIME"},
               {CloudType::SC, 2.50, "MDT CLEAR", "SVR CLEAR"},
               {CloudType::CU, 1.03, "MDT CLEAR", "SVR CLEAR"},
               {CloudType::AC, 1.03, "MDT CLEAR", "SVR CLEAR"},
               {CloudType::CB, 0.75, "MDT CLEAR", "SVR CLEAR"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(Text(c.Type));
    EXPECT_EQ(WordOf(c.Type, c.Severe, 0.995, -6), c.Below);
    EXPECT_EQ(WordOf(c.Type, c.Severe, 1.005, -6), c.Above);
  }
}

TEST(WaterIcing, ClassByShareAndTemperature) {
  const struct {
    double Share, Temp;
    std::string_view Word;
  } cases[] = {
      {0.099, -6, "TRC CLEAR"},   {0.101, -6, "LGT CLEAR"},
      {0.497, -6, "LGT CLEAR"},   {0.503, -6, "MDT CLEAR"},
      {0.503, -5, "MDT CLEAR"},   {0.503, -4.9, "LGT CLEAR"},
      {0.995, -4.9, "LGT CLEAR"}, {1.005, -5, "SVR CLEAR"},
      {1.005, -4.9, "MDT CLEAR"}, {1.005, -3, "MDT CLEAR"},
      {1.005, -2.9, "LGT CLEAR"}, {1.005, 0, "LGT CLEAR"},
      {1.005, 0.1, ""},           {1.005, -8.9, "SVR CLEAR"},
      {1.005, -9, "SVR MIXED"},   {1.005, -14.9, "SVR MIXED"},
      {1.005, -15, "SVR RIME"},   {1.005, -29.9, "SVR RIME"},
      {1.005, -30, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(WordOf(CloudType::CU, 1.03, c.Share, c.Temp), c.Word) << c.Share << ' ' << c.Temp;
  }
  EXPECT_EQ(WordOf(CloudType::ST, 2.02, 1.005, -1, true), "LGT MIXED");
  EXPECT_EQ(WordOf(CloudType::ST, 2.02, 1.005, -2, true), "LGT MIXED");
  EXPECT_EQ(WordOf(CloudType::ST, 2.02, 1.005, -2.1, true), "LGT RIME");
  EXPECT_EQ(WordOf(CloudType::ST, 2.02, 1.005, -1), "LGT RIME");
}

TEST(WaterIcing, IsFoundByTheMethodOfTheOption) {
  for (const IceType method : {IceType::SmithFeddes, IceType::Usaf}) {
    AnalysisSettings settings;
    settings.Ice = method;
    const AnalysisResults results = Analyse(test::ReferenceWinter(), settings);
    const auto& clouds = results.Layers.Clouds;
    const auto expected = method == IceType::SmithFeddes
                              ? SmithFeddesIcing(results.Levels, clouds, kWater)
                              : RuleIcing(results.Levels, clouds);
    ASSERT_FALSE(expected.empty());
    ASSERT_EQ(results.Layers.Icing.size(), expected.size());
    EXPECT_EQ(results.Layers.Icing[0].Word, expected[0].Word);
    EXPECT_EQ(results.Layers.Icing[0].Value, expected[0].Value);
  }
}

// Between -10 and -30 °C stratiform clouds freeze; cumulus keeps its water down to -40 °C.
TEST(WaterIcing, ShareThatStaysLiquid) {
  const auto share = [](CloudType type, double temp) {
    const CloudWater cloud({{950, 0, 10}, {800, 1500, 0}, CloudAmount::Overcast, type}, kWater);
    return cloud.At(850, 900, temp) / cloud.At(850, 900, 0);
  };
  for (const CloudType type : {CloudType::ST, CloudType::NS, CloudType::AS}) {
    for (const auto& [temp, expected] : {std::pair(-9.0, 1.0),
                                         {-10.0, 1.0},
                                         {-15.0, 0.75},
                                         {-20.0, 0.5},
                                         {-28.0, 0.1},
                                         {-30.0, 0.0},
                                         {-35.0, 0.0}}) {
      EXPECT_NEAR(share(type, temp), expected, 1e-9) << temp;
    }
  }
  EXPECT_EQ(share(CloudType::CU, -40), 1);
  const CloudWater cloud({{950, 0, 10}, {800, 1500, 0}, CloudAmount::Overcast, CloudType::CU},
                         kWater);
  EXPECT_NEAR(
      cloud.At(850, 900, 0),
      LiftedCloud(950, 10, kWater).Water(850) * EntrainmentFactor(CloudFamily::Cumuliform, 0.9),
      1e-9);
  EXPECT_EQ(share(CloudType::CU, -40.1), 0);
}

// Decks that are too cold at one end only are looked at; those without ice or type are not.
TEST(WaterIcing, DecksThatAreLookedAt) {
  const auto found = [](CloudType type, double baseTemp, double topTemp) {
    const CloudDeck deck{{700, 3000, baseTemp}, {500, 3200, topTemp}, CloudAmount::Overcast, type};
    const LevelProfile levels =
        Air({{0, 1000, 0, 0}, {3000, 700, baseTemp, baseTemp}, {3200, 500, topTemp, topTemp}});
    return !SmithFeddesIcing(levels, {deck}, kWater).empty();
  };
  EXPECT_TRUE(found(CloudType::CU, -25, -29));
  EXPECT_TRUE(found(CloudType::CU, -30, -25));
  EXPECT_FALSE(found(CloudType::CU, -30, -31));
  EXPECT_FALSE(found(CloudType::CI, -10, -15));
  EXPECT_FALSE(found(CloudType::None, -10, -15));
}

// Rain freezes below the highest warm moist layer over freezing air, not in warm air and not above.
TEST(FreezingRain, FallsFromTheHighestWarmMoistLayer) {
  const auto layersOf = [](const std::vector<AirRow>& rows) {
    std::string found;
    for (const AirLayer& layer : RuleIcing(Air(rows), {})) {
      if (layer.Word != "SVR CLEAR") continue;
      found += std::to_string(static_cast<int>(layer.Base.Height)) + '-' +
               std::to_string(static_cast<int>(layer.Top.Height)) + ' ';
    }
    return found;
  };
  const struct {
    const char* About;
    std::vector<AirRow> Air;
    const char* Layers;
  } cases[] = {
      {"to half way between the look at 800 m, of 0 C, and that at 1000 m",
       {{0, 1000, -4, -14},
        {200, 975, -3, -13},
        {400, 955, -2, -12},
        {600, 930, -1, -11},
        {1000, 890, 1, 0},
        {2000, 780, 1, 0}},
       "0-900 "},
      {"not in the thawing air below the warm layer",  // looks each 250 m, 0.5 C at 750 m
       {{0, 1000, -1, -11}, {1000, 890, 1, 0}, {2000, 780, 1, 0}},
       "0-625 "},
      {"dry warm air lets nothing fall",
       {{0, 1000, -4, -14}, {400, 955, -2, -12}, {1000, 890, 1, -9}, {2000, 780, 1, -9}},
       ""},
      {"a dew point that is missing neither",
       {{0, 1000, -4, -14}, {400, 955, -2, -12}, {1000, 890, 1, 999.9}, {2000, 780, 1, 0}},
       ""},
      {"a ground at 0 C", {{0, 1000, 0, -10}, {200, 975, 2, 1}, {2000, 780, 1, 0}}, "0-100 "},
      {"warm ground", {{0, 1000, 0.1, -10}, {200, 975, 2, 1}, {2000, 780, 1, 0}}, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(layersOf(c.Air), c.Layers) << c.About;
}

// Two levels are a layer, one is none.
TEST(IcingLayers, NeedTwoLevels) {
  const std::vector<AirRow> rows = {{0, 1000, 5, 5}, {1000, 880, 0, 0}};
  EXPECT_FALSE(FindCarburettorIcing(Air(rows)).empty());
  EXPECT_TRUE(FindCarburettorIcing(Air({rows[0]})).empty());
  EXPECT_TRUE(RuleIcing(Air({{0, 1000, -4, -4}}), {}).empty());
  EXPECT_FALSE(
      RuleIcing(Air({{0, 1000, -30, -30}, {1000, 880, -30, -30}, {2000, 780, -10, -10}}), {})
          .empty());
  EXPECT_FALSE(RuleIcing(Air({{0, 1000, -4, -4}, {1000, 880, -9, -9}}), {}).empty());
}

// One step more in a cumulonimbus, at its base and top as well, and there alone.
TEST(RuledIcing, InACumulonimbus) {
  const auto word = [](double temp, double depression, const CloudDeck& deck) {
    const auto layers = RuleIcing(
        Air({{1000, 880, temp, temp - depression}, {1100, 870, temp - 1, 999.9}}), {deck});
    return layers.empty() ? "" : std::string(layers.front().Word);
  };
  const auto tower = [](double base, double top, CloudType type = CloudType::CB) {
    return CloudDeck{{900, base, 0}, {500, top, -30}, CloudAmount::Overcast, type};
  };
  EXPECT_EQ(word(-4, 2, tower(1000, 5000)), "MDT CLEAR");  // light, steep
  EXPECT_EQ(word(-4, 1, tower(1000, 5000)), "SVR CLEAR");
  EXPECT_EQ(word(-4, 1, tower(500, 1000)), "SVR CLEAR");
  EXPECT_EQ(word(-4, 1, tower(1001, 5000)), "MDT CLEAR");
  EXPECT_EQ(word(-4, 1, tower(500, 999)), "MDT CLEAR");
  EXPECT_EQ(word(-4, 1, tower(1000, 5000, CloudType::NS)), "MDT CLEAR");
}

}  // namespace
}  // namespace vexa::analysis
