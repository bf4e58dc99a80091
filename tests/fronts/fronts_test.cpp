// Fronts from the thermal wind. The worked numbers were computed apart from this code from the
// formulas of the headers.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/options.h"
#include "core/units.h"
#include "fronts/front_text.h"
#include "support/soundings.h"

namespace vexa::fronts {
namespace {

FrontResults Find(const SoundingRecord& sounding, const FrontSettings& settings = {},
                  const std::optional<HeldZone>& held = std::nullopt) {
  return FindFronts(sounding, analysis::DeriveLevels(sounding, Options{}), settings, held);
}

TEST(ThermalWind, OfOneLayer) {
  const struct {
    const char* about;
    analysis::Wind low, high;
    double latitude, direction, warm, normal, advection;
  } cases[] = {
      {"veering is warm", {200, 30}, {240, 40}, 45, 288.6, 198.6, -29.99, 2.11},
      {"backing is cold", {300, 30}, {260, 40}, 45, 211.4, 121.4, 29.99, -2.11},
      {"in the south backing is warm", {300, 30}, {260, 40}, -45, 211.4, 301.4, -29.99, 2.11},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.about);
    const analysis::WindVector low = analysis::Components(c.low);
    const analysis::WindVector high = analysis::Components(c.high);
    const ThermalWind thermal = ThermalWindOf(low, high, 273.16, 1000, c.latitude);
    EXPECT_NEAR(thermal.Wind.Dir, c.direction, 0.05);
    EXPECT_NEAR(thermal.Wind.Spd, 25.7, 0.05);
    EXPECT_NEAR(thermal.Gradient, 0.0704, 5e-5);
    EXPECT_NEAR(thermal.WarmAzimuth, c.warm, 0.05);
    EXPECT_NEAR(thermal.Orientation, c.direction - 180, 0.05);
    const analysis::WindVector mean{(low.U + high.U) / 2, (low.V + high.V) / 2};
    EXPECT_NEAR(Towards(mean, thermal.WarmAzimuth), c.normal, 0.02);
    EXPECT_NEAR(Advection(mean, thermal), c.advection, 0.005);
  }
}

TEST(Fronts, ClassesAndWhatFollows) {
  using enum FrontClass;
  const struct {
    bool IsWarm;
    double Normal;  // kt, at a front of 30 kt
    FrontClass Kind;
    double Difference, Slope, Lift;
  } cases[] = {{true, 24, AnabaticWarm, -6, 120, 92.6},  {true, 30, AnabaticWarm, 0, 120, 0},
               {true, 31, KatabaticWarm, 1, 120, -15.4}, {false, 36, AnabaticCold, -6, 80, 138.9},
               {false, 30, KatabaticCold, 0, 40, 0},     {false, 24, KatabaticCold, 6, 40, -277.8}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Normal);
    EXPECT_EQ(Classify(c.IsWarm, c.Normal, 30), c.Kind);
    EXPECT_EQ(SpeedDifference(c.IsWarm, c.Normal, 30), c.Difference);
    EXPECT_EQ(AutomaticSlope(c.Kind), c.Slope);
    EXPECT_NEAR(VerticalMotion(c.Difference, c.Slope), c.Lift, 0.05);
  }
  EXPECT_EQ(FrontDistance(1500, 80), 120);
  EXPECT_NEAR(PrecipitationTime(4, 92.6).value_or(-1), 5.4, 0.05);
  EXPECT_EQ(PrecipitationTime(0.2, -50), 0);
  EXPECT_FALSE(PrecipitationTime(0.3, 0));
}

void ExpectWinterFront(const Front& front, double warm, double motion) {
  const FrontLayer& zone = front.Zone.Whole;
  EXPECT_NEAR(zone.Base, 500, 1e-9);
  EXPECT_NEAR(zone.Top, 1500, 1e-9);
  EXPECT_NEAR(zone.BasePress, 943.6, 0.05);
  EXPECT_NEAR(zone.TopPress, 831.0, 0.05);
  EXPECT_NEAR(zone.Thermal.Wind.Spd, 17.4, 0.05);
  EXPECT_NEAR(zone.Thermal.Gradient, 0.0470, 5e-5);
  EXPECT_NEAR(zone.Thermal.WarmAzimuth, warm, 0.05);
  EXPECT_NEAR(zone.AdvectionCph, 0.58, 0.005);
  EXPECT_EQ(front.Kind, FrontClass::AnabaticWarm);
  EXPECT_NEAR(front.Speed, 12.3, 0.05);
  EXPECT_NEAR(front.Motion, motion, 0.05);
  EXPECT_NEAR(front.NormalWindBelow.value_or(-1), 8.3, 0.05);
  EXPECT_NEAR(front.Lift.value_or(-1), 62, 0.6);
  EXPECT_NEAR(front.DistanceKm, 180, 1e-6);
  EXPECT_NEAR(front.Hours.value_or(-1), 5.1, 0.06);
}

TEST(Fronts, WinterReferenceSoundingAndItsMirrorImage) {
  const SoundingRecord winter = test::ReferenceWinter();
  const FrontResults results = Find(winter);
  ASSERT_TRUE(results.Found);
  EXPECT_NEAR(results.Found->Zone.Whole.Thermal.Wind.Dir, 306.8, 0.05);
  ExpectWinterFront(*results.Found, 216.8, 36.8);
  // South and north exchanged, everything is the same but the azimuths.
  const FrontResults mirrored = Find(test::Mirrored(winter));
  ASSERT_TRUE(mirrored.Found);
  ExpectWinterFront(*mirrored.Found, Wrap360(180 - 216.8), 180 - 36.8);
}

TEST(Fronts, TextsOfTheWinterReferenceSounding) {
  const FrontResults results = Find(test::ReferenceWinter());
  FrontSettings set;
  Options options;
  FrontSource source{results, set, options};
  EXPECT_EQ(Characterisation(source),
            (std::vector<std::string>{
                "Front character: Anabatic Warm Front", "Frontal speed: 12 kts towards the NE",
                "Frontal distance: 180 km to the SW", "Vertical motion: 62 meters/hour",
                "Precipitation formation: 5.1 hours", "Clouds & precip ahead of surface front"}));
  // Miles, mph and feet: 180 km are 112 miles, 12.3 kt 14 mph, 62 m 203 to 204 ft.
  set.Speed = FrontSpeedUnits::MilesPerHour;
  options.GpmUnits = LengthUnits::Feet;
  source.Distance = DistanceUnits::Miles;
  const std::vector<std::string> foreign = Characterisation(source);
  EXPECT_EQ(foreign[1], "Frontal speed: 14 mph towards the NE");
  EXPECT_EQ(foreign[2], "Frontal distance: 112 miles to the SW");
  EXPECT_TRUE(foreign[3].ends_with(" feet/hour"));
}

// Two layers as a forecaster would write them down: 20 kt are 10.3 m/s.
TEST(Fronts, TableOfLayersMarksTheStrongOnes) {
  FrontLayer strong{.BasePress = 943.6, .TopPress = 831.0, .AdvectionCph = 0.58};
  strong.Thermal = {.Wind = {306.8, 17.4}, .Gradient = 0.035, .Orientation = 126.8};
  FrontLayer weak{.BasePress = 1002.4, .TopPress = 943.6, .AdvectionCph = -12.34};
  weak.Thermal = {.Wind = {5, 20}, .Gradient = 0.0349, .Orientation = 5};
  const FrontResults results{.Layers = {weak, strong}};
  FrontSettings set;
  set.GradientThreshold = 0.035;
  Options options;
  const FrontSource source{results, set, options};
  EXPECT_EQ(LayerTable(source),
            (std::vector<std::string>{"  Layer     Frontal   Thermal Wind   Gradient*    Advection",
                                      "  Lo/Hi   Orientation    Dir/Spd",
                                      "  (mb)                   (kts)       (°C/nm)        (°C/hr)",
                                      " 1002/944       5        5 /  20        0.03        - 12.3",
                                      "  944/831     127      307 /  17        0.04*        + 0.6",
                                      "  * the gradient threshold of 0.035°C/nm or more"}));
  options.Speed = SpeedUnits::MetersPerSecond;
  options.Pressure = PressureUnits::Hpa;
  const std::vector<std::string> metric = LayerTable(source);
  EXPECT_EQ(metric[2], "  (hPa)                  (m/s)       (°C/nm)        (°C/hr)");
  EXPECT_EQ(metric[3], " 1002/944       5        5 /  10        0.03        - 12.3");
}

TEST(Fronts, TwoKnotsAreQuasiStationary) {
  FrontResults results{.Found = Front{}};
  FrontSettings set;
  set.Speed = FrontSpeedUnits::MilesPerHour;  // 2 kt are 2.3 mph, and still stand
  const Options options;
  for (const auto& [speed, text] :
       {std::pair(2.0, "Quasi-stationary"), {2.01, "Frontal speed: 2 mph towards the N"}}) {
    results.Found->Speed = speed;
    EXPECT_EQ(Characterisation({results, set, options})[1], text);
    EXPECT_EQ(Characterisation({results, set, options})[3], "Vertical motion: --");
  }
}

TEST(Fronts, NoneWithoutGradientPositionOrWinds) {
  const SoundingRecord winter = test::ReferenceWinter();
  SoundingRecord tropics = winter;
  SetDecimalPosition(tropics, -9.9, 8);
  SoundingRecord nowhere = winter;
  nowhere.LatHemi.clear();
  SoundingRecord steady = winter;
  test::ChangeWinds(steady, [](WindLevel& wind) { wind.Dir = 270, wind.Spd = 20; });
  const std::pair<SoundingRecord, const char*> cases[] = {
      {tropics, "The station lies within 10 degrees of the equator."},
      {nowhere, "The position of the station is not known."},
      {test::WithoutWinds(winter), "The sounding has no winds."},
      {steady, ""},
      {SoundingRecord{}, "The position of the station is not known."}};
  const FrontSettings set;
  const Options options;
  for (const auto& [sounding, why] : cases) {
    const FrontResults results = Find(sounding);
    EXPECT_FALSE(results.Found) << why;
    EXPECT_EQ(results.WhyNone, why);
    EXPECT_EQ(Characterisation({results, set, options}).front(), "No front found.");
  }
}

TEST(Fronts, SettingsDecideWhatIsSearched) {
  const SoundingRecord winter = test::ReferenceWinter();
  FrontSettings high;
  high.GradientThreshold = 0.5;
  EXPECT_FALSE(Find(winter, high).Found);
  FrontSettings manual;
  manual.Control = FrontControl::Manual;
  manual.SlopeN = 200;
  const FrontResults slope = Find(winter, manual);
  ASSERT_TRUE(slope.Found);
  EXPECT_NEAR(slope.Found->DistanceKm, 300, 1e-6);
  EXPECT_NEAR(slope.Found->Lift.value_or(0), 62 * 120.0 / 200, 0.4);
  FrontSettings ground;
  ground.LowerLimitM = 0;
  EXPECT_NE(Find(winter, ground).Layers.at(0).Why, Missed::Low);
  EXPECT_EQ(Find(winter).Layers.at(0).Why, Missed::Low);
  // In the other modes each layer is one interval deep, or at least that.
  for (const ThermalWindMode mode : {ThermalWindMode::Sliding, ThermalWindMode::Levels}) {
    FrontSettings other;
    other.Mode = mode;
    const FrontResults results = Find(winter, other);
    ASSERT_FALSE(results.Layers.empty());
    for (const FrontLayer& layer : results.Layers) {
      EXPECT_GE(layer.Top - layer.Base, 500 - 1e-9);
      EXPECT_LE(layer.Top - layer.Base, mode == ThermalWindMode::Sliding ? 500 + 1e-9 : 6000);
    }
  }
}

TEST(Fronts, AChosenZoneTakesThePlaceOfTheStrongest) {
  // Whatever the thresholds say of it, and only where its winds are known.
  FrontSettings strict;
  strict.GradientThreshold = 0.5;
  const FrontResults chosen = Find(test::ReferenceWinter(), strict, HeldZone{2000, 3000});
  ASSERT_TRUE(chosen.Found);
  EXPECT_EQ(chosen.Found->Zone.Whole.Base, 2000);
  EXPECT_EQ(chosen.Found->Zone.Whole.Top, 3000);
  const FrontResults beyond = Find(test::ReferenceWinter(), {}, HeldZone{60000, 61000});
  ASSERT_TRUE(beyond.Found);
  EXPECT_EQ(beyond.Found->Zone.Whole.Base, 500);
}

// The zone of the winter sounding has 0.58 degrees an hour.
TEST(Fronts, AirThatHardlyChangesIsNoFront) {
  for (const auto& [least, isFound] : {std::pair(0.57, true), std::pair(0.59, false)}) {
    FrontSettings settings;
    settings.LeastAdvection = least;
    const FrontResults results = Find(test::ReferenceWinter(), settings);
    EXPECT_EQ(results.Found.has_value(), isFound) << least;
    ASSERT_FALSE(results.Zones.empty());
    EXPECT_EQ(results.Zones.front().Why, isFound ? Missed::No : Missed::Still);
    const Options options;
    std::string told;
    for (const std::string& line : ExplainFronts({results, settings, options})) told += line;
    EXPECT_EQ(told.find("advection below the threshold") == told.npos, isFound);
  }
}

TEST(Fronts, TheLargestJumpOfTheNormalWindIsMarked) {
  // The wind at 300 m turned round: the normal wind, 5.0 kt at the ground and 10.9 kt at 600 m by
  // hand, is -7.9 kt between them. The zone lies above and stays.
  SoundingRecord sounding = test::ReferenceWinter();
  test::ChangeWinds(sounding, [](WindLevel& wind) {
    if (wind.Height < 600 && wind.Height > 150) wind.Dir = 75;
  });
  const FrontResults results = Find(sounding);
  ASSERT_TRUE(results.Found);
  EXPECT_EQ(static_cast<int>(results.Found->Normals.size()), sounding.NumWindLevels());
  EXPECT_NEAR(results.Found->Normals[0].Speed, 5.0, 0.05);
  EXPECT_NEAR(results.Found->Normals[1].Speed, -7.9, 0.05);
  const auto jump = results.Found->Jump.value();
  EXPECT_EQ(std::pair(jump.Base, jump.Top), std::pair(180.0, 480.0));
  EXPECT_NEAR(jump.Change, 18.8, 0.05);
}

}  // namespace
}  // namespace vexa::fronts
