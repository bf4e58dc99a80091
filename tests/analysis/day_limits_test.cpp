// What winter weather and the day's thermals are decided by, in profiles whose heights, potential
// temperatures and humidities are given, so that the numbers follow by hand from the publications
// that the headers of analysis/ name.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "analysis/air_rows.h"
#include "analysis/analysis.h"
#include "analysis/soaring.h"
#include "analysis/winter.h"
#include "config/options.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kGasConstant = 287.04;

AnalysisResults Through(const std::vector<AirRow>& rows) {
  AnalysisResults results;
  results.Levels = Air(rows);
  return results;
}

// Air as moist as it can be, at heights that have these pressures.
std::vector<AirRow> Wet(const std::vector<std::pair<double, double>>& tempsAt) {
  const std::map<double, double> presses = {{0, 1000},   {500, 940},  {1000, 880},
                                            {2000, 780}, {3000, 690}, {5600, 500}};
  std::vector<AirRow> rows;
  for (const auto& [height, temp] : tempsAt)
    rows.push_back({height, presses.at(height), temp, temp});
  return rows;
}

// E = Rd times the layer's mean wet bulb times ln(p1/p2), of saturated air; between signs the two
// triangles that the change cuts.
TEST(WinterLimits, EnergiesBetweenChangesOfSign) {
  const auto energy = [](double mean, double low, double high) {
    return kGasConstant * mean * std::log(low / high);
  };
  const double inversion = energy(1, 1000, 690) / 2;
  const struct {
    const char* About;
    std::vector<AirRow> Air;
    double Ground, Cold, Aloft;
  } cases[] = {
      {"frozen", Wet({{0, -1}, {1000, -4}, {5600, -30}}), 0, 0, 0},
      {"warm ground", Wet({{0, 2}, {1000, -2}, {5600, -30}}), energy(1, 1000, 880) / 2, 0, 0},
      {"barely so", Wet({{0, 0.5}, {1000, -3.5}, {5600, -30}}), energy(0.25, 1000, 880) / 8, 0, 0},
      {"0 C at the ground", Wet({{0, 0}, {1000, 2}, {2000, -2}, {5600, -30}}),
       energy(1, 1000, 880) + energy(1, 880, 780) / 2, 0, 0},
      {"a level at 0 C ends the layer",
       Wet({{0, -4}, {1000, 0}, {2000, 4}, {3000, 0}, {5600, -30}}), 0, energy(2, 1000, 880),
       energy(2, 880, 690)},
      {"two warm layers over cold air",
       Wet({{0, -2}, {500, 2}, {1000, -2}, {2000, 2}, {3000, -2}, {5600, -30}}), 0,
       energy(1, 1000, 940) / 2 + energy(1, 940, 780) / 2,
       energy(1, 1000, 880) / 2 + energy(1, 880, 690) / 2},
      {"a warm layer that ends at 500 hPa", Wet({{0, -2}, {3000, 2}, {5600, 2}}), 0, inversion,
       inversion + energy(2, 690, 500)},
      {"the layer to 499 hPa is not read",
       {{0, 1000, -2, -2}, {3000, 690, 2, 2}, {5600, 499, 2, 2}},
       0,
       inversion,
       inversion},
      {"temperatures where dew points are missing",
       {{0, 1000, 2, 999.9}, {1000, 880, 2, 999.9}, {2000, 780, -2, 999.9}, {5600, 500, -9, 999.9}},
       energy(2, 1000, 880) + energy(1, 880, 780) / 2,
       0,
       0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const WinterResults winter = AnalyseWinter(Through(c.Air));
    EXPECT_NEAR(winter.SurfaceWarmArea, c.Ground, 0.3);
    EXPECT_NEAR(winter.ColdArea, c.Cold, 0.3);
    EXPECT_NEAR(winter.WarmArea, c.Aloft, 0.3);
  }
}

TEST(WinterLimits, SnowRatioTakesTheWarmestBelow500hPa) {
  const auto ratio = [](double ground, double middle, double high, double top = 500) {
    return AnalyseWinter(
               Through({{0, 1000, ground, -40}, {3000, 700, middle, -40}, {5600, top, high, -40}}))
        .SnowRatio;
  };
  EXPECT_DOUBLE_EQ(ratio(-8, -12, -30), 18);  // 12 and one for each degree below -2
  EXPECT_DOUBLE_EQ(ratio(-12, -8, -30), 18);
  EXPECT_DOUBLE_EQ(ratio(-12, -12, -8), 18);
  EXPECT_DOUBLE_EQ(ratio(0, -12, -30), 8);  // two less for each above
  EXPECT_DOUBLE_EQ(ratio(3, -12, -30), 2);
  EXPECT_EQ(ratio(20, -12, -30), 0);
  EXPECT_DOUBLE_EQ(ratio(-12, -12, -2, 400),
                   12 + 10 * (1 - std::log(700 / 500.0) / std::log(700 / 400.0)));
  EXPECT_EQ(ratio(-8, -12, -30, 501), kNone);
  EXPECT_EQ(AnalyseWinter(Through({{0, 500, -20, -40}, {3000, 400, -30, -50}})).SnowRatio, kNone);
}

// (RH - 60) / 15 times (4 - rise of theta-e in 2 km) / 4 times the wind in 9 m/s (Banacos 2014). At
// 0 °C the air holds 6.108 hPa, at -2 °C 5.275 (Smithsonian tables): 86.4 %.
TEST(WinterLimits, SnowSquallsByMoistureStabilityAndWind) {
  const auto squall = [](double dewpt, double rise, double wetBulb, double speed = 9) {
    AnalysisResults results = Through(
        {{0, 1000, 0, dewpt}, {1000, 880, 0, dewpt}, {2000, 780, 0, dewpt}, {3000, 690, 0, -40}});
    results.Levels.ThetaE = Levels<double>({280, 281, 280 + rise, 300});
    results.Levels.WetBulb(1) = wetBulb;
    const double knots = speed / 0.5144;
    results.Winds = DeriveWinds(test::Profile(
        {}, {{0, 270, knots}, {1000, 270, knots}, {2000, 270, knots}, {4000, 90, 50}}));
    return AnalyseWinter(results).SnowSquall;
  };
  EXPECT_NEAR(squall(-2, 0, -1), 26.37 / 15, 0.01);
  EXPECT_NEAR(squall(-2, 0, -1, 4.5), 26.37 / 30, 0.01);
  EXPECT_NEAR(squall(-2, 2, -1), 26.37 / 30, 0.01);
  EXPECT_NEAR(squall(-2, -4, -1), 26.37 / 7.5, 0.02);
  EXPECT_EQ(squall(-2, 4.1, -1), 0);
  EXPECT_EQ(squall(-7.5, 0, -1), 0);  // 57 %
  EXPECT_GT(squall(-6, 0, -1), 0.1);  // 64 %
  EXPECT_GT(squall(-2, 0, 0.99), 1.7);
  EXPECT_EQ(squall(-2, 0, 1), 0);
  EXPECT_EQ(squall(999.9, 0, -1), kNone);
}

// What a squall cannot be told without, one at a time.
TEST(WinterLimits, SnowSquallsNeedEverything) {
  AnalysisResults whole = Through(Wet({{0, -5}, {1000, -10}, {2000, -16}}));
  whole.Winds = DeriveWinds(test::Profile({}, {{0, 270, 20}, {1000, 270, 20}, {2000, 270, 20}}));
  EXPECT_NE(AnalyseWinter(whole).SnowSquall, kNone);
  AnalysisResults dry = whole, calm = whole, unknown = whole, aloft = whole, low = whole;
  dry.Levels.Dewpt(2) = kMissing;
  calm.Winds = {};
  unknown.Levels.ThetaE(1) = kMissing;
  aloft.Levels.ThetaE(3) = kMissing;
  low.Levels.Height(3) = 1999;
  for (const AnalysisResults& results : {dry, calm, unknown, aloft, low}) {
    EXPECT_EQ(AnalyseWinter(results).SnowSquall, kNone);
  }
}

TEST(WinterLimits, ZonesOfDendrites) {
  const auto zones = [](const std::vector<AirRow>& rows) {
    std::string found;
    for (const auto& layer : AnalyseWinter(Through(rows)).Dendritic) {
      found += std::to_string(std::lround(layer.Base.Height)) + '-' +
               std::to_string(std::lround(layer.Top.Height)) + ' ';
    }
    return found;
  };
  const struct {
    const char* About;
    std::vector<AirRow> Air;
    const char* Zones;
  } cases[] = {{"cooling through it", Wet({{0, -10}, {1000, -20}}), "200-800 "},
               {"warming through it", Wet({{0, -20}, {1000, -10}}), "200-800 "},
               {"three levels", Wet({{0, -10}, {1000, -15}, {2000, -20}}), "400-1600 "},
               {"twice", Wet({{0, -10}, {1000, -20}, {2000, -10}}), "200-800 1200-1800 "},
               {"isothermal at its warm end", Wet({{0, -12}, {1000, -12}}), "0-1000 "},
               {"just warmer", Wet({{0, -11.9}, {1000, -11.9}}), ""},
               {"isothermal at its cold end", Wet({{0, -18}, {1000, -18}}), "0-1000 "},
               {"just colder", Wet({{0, -18.1}, {1000, -18.1}}), ""},
               {"only touched", Wet({{0, -12}, {1000, -5}}), ""}};
  for (const auto& c : cases) EXPECT_EQ(zones(c.Air), c.Zones) << c.About;
  // At -15 °C 1.912 hPa, at -20 °C 1.254 (Smithsonian tables): 65.6 % half way, 100 % below.
  const auto drying = AnalyseWinter(Through({{0, 1000, -15, -15}, {200, 975, -15, -20}})).Dendritic;
  ASSERT_EQ(drying.size(), 1u);
  EXPECT_NEAR(drying[0].MeanHumidity, (100 + 65.6) / 2, 0.1);
}

TEST(WinterLimits, Thicknesses) {
  const WinterResults winter = AnalyseWinter(Through(
      {{10, 1000, 0, -5}, {1310, 850, -5, -9}, {2830, 700, -12, -20}, {5300, 500, -28, -40}}));
  EXPECT_EQ(winter.Thickness1000to500, 5290);
  EXPECT_EQ(winter.Thickness1000to850, 1300);
  EXPECT_EQ(winter.Thickness850to700, 1520);
  EXPECT_EQ(AnalyseWinter(Through({{10, 1000, 0, -5}, {1310, 840, -5, -9}})).Thickness850to700,
            kNone);
}

// Thermals of a day of 27 °C, a theta of 300.16 K at 1000 hPa, up to the level at a height.
AnalysisResults ThermalsTo(double height, double topTemp) {
  AnalysisResults results = Through({{0, 1000, 27, 10},
                                     {height, 850, topTemp, -10},
                                     {height + 1000, 750, topTemp, -20},
                                     {height + 3000, 600, topTemp, -30}});
  results.Levels.Theta = Levels<double>({300.16, 300.16, 310, 320});
  return results;
}

SoaringResults SoaredTo(double height, double topTemp, int equation = 1) {
  Options options;
  options.SoarTm = 27;
  options.LiftEq = equation;
  return AnalyseSoaring(ThermalsTo(height, topTemp), options);
}

// 3 ft/min for each 100 ft, and 10 for each degree from 4000 ft to the top; 1524 m are 5000 ft.
TEST(SoaringLimits, LiftByTheIndexAndItsWords) {
  EXPECT_NEAR(SoaredTo(1219, 10).Lift, 120, 0.1);
  EXPECT_NEAR(SoaredTo(609.6, 10).Lift, 60, 0.1);
  const struct {
    double Drop;  // °C over the last of the five thousand feet
    const char* Words;
  } cases[] = {{4.9, "poor"},  {5.1, "fair"},  {24.9, "fair"},
               {25.1, "good"}, {44.9, "good"}, {45.1, "excellent"}};
  for (const auto& c : cases) {
    const SoaringResults soaring = SoaredTo(1524, 27 - 5 * c.Drop);
    EXPECT_NEAR(soaring.Lift, 150 + 10 * c.Drop, 0.2);
    EXPECT_EQ(soaring.Words, c.Words) << c.Drop;
  }
  EXPECT_NEAR(SoaredTo(1524, 35).Lift, 150, 0.2);  // warmer at the top: nothing taken away
}

// Deardorff: the cube root of g/T times depth times 0.20 K m/s; 400 ft/min are 2.032 m/s.
TEST(SoaringLimits, ConvectiveVelocityAndItsWords) {
  EXPECT_NEAR(SoaredTo(1524, 12, 2).Lift, std::cbrt(9.80665 / 292.66 * 1524 * 0.2), 1e-4);
  EXPECT_EQ(SoaredTo(1251, 12, 2).Words, "fair");
  EXPECT_EQ(SoaredTo(1253, 12, 2).Words, "good");
}

// Without lift where the ground is no warmer than the air; a sounding that ends below 850 hPa has
// no air to bring down.
TEST(SoaringLimits, StableGroundAndShortSoundings) {
  Options options;
  options.SoarTm = 20;
  options.LiftEq = 2;
  const SoaringResults stable = AnalyseSoaring(ThermalsTo(1500, 12), options);
  EXPECT_EQ(stable.ThermalTop.Height, 0);
  EXPECT_EQ(stable.Lift, 0);
  AnalysisResults low = Through({{0, 1000, -5, -9}, {800, 900, -9, -12}});
  EXPECT_EQ(AnalyseSoaring(low, Options{}).MaxTemp, -5);
}

// A thermal index at each level, under a day of 27 °C.
TEST(SoaringLimits, PilotsLevelAndCloudBase) {
  const auto soar = [](const std::vector<double>& indices, double base = kNone,
                       double convectiveTemp = 20) {
    AnalysisResults results = Through({{0, 1000, 20, 10},
                                       {1000, 880, 15, 5},
                                       {2000, 780, 10, 0},
                                       {3000, 690, 5, -5},
                                       {4000, 600, 0, -10}});
    std::vector<double> thetas;
    for (std::size_t i = 0; i < indices.size(); ++i) {
      const double tempK = results.Levels.Temp(static_cast<int>(i) + 1) + 273.16;
      thetas.push_back(300.16 * tempK / (tempK - indices[i]));
    }
    results.Levels.Theta = Levels<double>(std::move(thetas));
    results.ConvectiveTemp = convectiveTemp;
    if (base != kNone) results.ConvectiveCondensation = {800, base, 10};
    Options options;
    options.SoarTm = 27;
    return AnalyseSoaring(results, options);
  };
  // The index passes -3 half way from 1000 to 2000 m and 0 half way to 3000 m.
  const SoaringResults plain = soar({-6, -4, -2, 2, 6});
  EXPECT_NEAR(plain.ThermalTop.Height, 2500, 10);
  EXPECT_NEAR(plain.PilotLevel.Height, 1500, 1);
  EXPECT_NEAR(plain.ThermalIndex(2), -4, 1e-4);
  EXPECT_FALSE(soar({-2.9, -2, -1, 2, 6}).PilotLevel.Exists());
  EXPECT_NEAR(soar({-3.1, -2.9, -1, 2, 6}).PilotLevel.Height, 500, 1);
  EXPECT_NEAR(soar({-3.1, -2.9, -3.1, 2, 6}).PilotLevel.Height, 2000 + 1000 * 0.1 / 5.1, 1);
  // A cloud base below the top ends them where the day is as warm as condensing needs.
  const SoaringResults clouded = soar({-6, -5, -4, 2, 6}, 1500, 27);
  EXPECT_EQ(clouded.CloudBase.Height, 1500);
  EXPECT_EQ(clouded.ThermalTop.Height, 1500);
  EXPECT_NEAR(clouded.PilotLevel.Height, 1500, 1e-6);
  EXPECT_FALSE(soar({-6, -5, -4, 2, 6}, 1500, 27.1).CloudBase.Exists());
  EXPECT_FALSE(soar({-6, -5, -4, 2, 6}, 2800).CloudBase.Exists());
  // Potentially colder air to the end of the sounding: no top, but a pilot's level.
  const SoaringResults open = soar({-9, -8, -7, -6, -5});
  EXPECT_FALSE(open.ThermalTop.Exists());
  EXPECT_NEAR(open.PilotLevel.Height, 4000, 1e-6);
  EXPECT_EQ(open.Lift, kNone);
}

TEST(Soaring, OfTheConvectiveSoundingAt31Degrees) {
  const AnalysisResults results = Analyse(test::ReferenceConvective(), {});
  Options settings;
  settings.SoarTm = 31;
  settings.TriggerHgt = 1000 / 0.3048;
  const SoaringResults soaring = AnalyseSoaring(results, settings);
  EXPECT_NEAR(soaring.ThermalTop.Press, 839.5, 0.2);
  EXPECT_NEAR(soaring.ThermalTop.Height - 357, 1260, 3);
  EXPECT_NEAR(soaring.TriggerTemp, 29.07, 0.02);
  settings.LiftEq = 2;
  EXPECT_NEAR(AnalyseSoaring(results, settings).Lift, 2.01, 0.02);
  settings.SoarTm = 36;
  EXPECT_TRUE(AnalyseSoaring(results, settings).CloudBase.Exists());
}

// By hand: theta = T (1000/p)^0.2856 with 273.16 K at 0 °C, shares linear in theta and ln p.
TEST(Soaring, ThermalsOfOrdinaryDays) {
  const struct {
    const char* About;
    SoundingRecord Sounding;
    double DayTemp, Top, Pilot;  // °C, hPa; kNone for none
  } cases[] = {
      // 8 °C at 850 hPa come to 21.4 °C at the ground, which is warmer already. Dry, so no cloud:
      // theta 298.16 K of the ground against 294.52 at 850 and 304.45 K at 700 hPa; the index is
      // -3.48 at 850 and 5.68 at 700 hPa.
      {"a ground warmer than the air above brings down",
       test::Profile({{1000, 25, -25}, {850, 8, -25}, {700, 1.8, -35}, {500, -10, -50}}), 25,
       850 * std::pow(700.0 / 850, 0.3669), 850 * std::pow(700.0 / 850, 0.0521)},
      // theta 318.10 K of the ground against 317.95 at 700 and 326.48 K at 600 hPa.
      {"a station above 850 hPa has thermals too",
       test::Profile(
           {{845, 30, -30}, {800, 24, -30}, {700, 14, -35}, {600, 9, -40}, {400, -20, -50}}, {},
           1500),
       30, 700 * std::pow(600.0 / 700, 0.0170), kNone},
      {"stable ground has none",
       test::Profile({{840, 10, -30}, {800, 12, -30}, {600, 0, -40}}, {}, 1500), 10, 840, kNone},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const SoaringResults soaring = Analyse(c.Sounding, {}).Soaring;
    EXPECT_NEAR(soaring.MaxTemp, c.DayTemp, 0.01);
    EXPECT_NEAR(soaring.ThermalTop.Press, c.Top, 0.3);
    EXPECT_NEAR(soaring.PilotLevel.Press, c.Pilot, 1);
    EXPECT_FALSE(soaring.CloudBase.Exists());
  }
}

}  // namespace
}  // namespace vexa::analysis
