// Composite indices at the limits of their terms: the ingredients are given, so that the values
// follow by hand from the formulas that the index table names.
#include <gtest/gtest.h>

#include <cmath>
#include <string_view>
#include <vector>

#include "analysis/air_rows.h"
#include "analysis/index_table.h"
#include "config/options.h"

namespace vexa::analysis {
namespace {

constexpr double kKnot = 0.5144;  // m/s

WindVector FromWest(double metersPerSecond) {
  return {metersPerSecond / kKnot, 0};
}

// A storm with which every composite is 1 or close to it.
struct Storm {
  double Cape = 1000, Cin = -10;  // J/kg, of every parcel
  double Lcl = 800;               // m above ground
  double Helicity = 100;          // m²/s², of every layer
  double Shear = 20;              // m/s, 0-6 km and effective
  double MeanWind = 10;           // m/s, 0-6 km
  double Base = 0;                // m above ground, of the effective layer
  double Brn = 40;                // m²/s²
  double Descent = 980;           // J/kg
  double Dewpt = 20;              // °C, of the parcel
  double Aloft = -12.5;           // °C at 500 hPa
  double Lapse = 7;               // °C/km between 700 and 500 hPa
  double LowLapse = 8;            // °C/km, 0-3 km
  double Freezing = 3000;         // m above ground
  std::vector<double> Path{};     // J/kg for each 100 hPa from 1005 hPa up
};

constexpr double kStormGround = 100;  // m above sea level

AnalysisResults ResultsOf(const Storm& storm) {
  AnalysisResults results;
  const double at700 = storm.Aloft + 2.5 * storm.Lapse;
  results.Levels = Air({{kStormGround, 1000, at700 + 3 * storm.LowLapse, storm.Dewpt},
                        {kStormGround + 3000, 700, at700, -20},
                        {kStormGround + 5500, 500, storm.Aloft, -40},
                        {kStormGround + 10000, 250, -55, 999.9}});
  for (ParcelAscent& parcel : results.Forced) {
    parcel.Start = {1000, 30, storm.Dewpt};
    parcel.Condensation = {900, kStormGround + storm.Lcl, 15};
    parcel.FreeLevel = {850, kStormGround + 1500, 12};
    parcel.Equilibrium = {250, kStormGround + 10000, -50};
    parcel.CapeTotal = storm.Cape;
    parcel.CinTotal = storm.Cin;
    parcel.FirstPress = 1005;
    parcel.Step = 100;
    parcel.Increments = std::vector<float>(storm.Path.begin(), storm.Path.end());
  }
  Mover mover{.Motion = {10, 10}};
  mover.Helicity = {storm.Helicity, storm.Helicity, storm.Helicity};
  results.Storm.Right = mover;
  results.Storm.Shear6km = FromWest(storm.Shear);
  results.Storm.Mean6km = FromWest(storm.MeanWind);
  results.Storm.BrnShear = storm.Brn;
  results.Effective = {{980, kStormGround + storm.Base, 28}, {900, kStormGround + 900, 20}};
  results.Inflow.EffectiveHelicity = storm.Helicity;
  results.Inflow.EffectiveShear = FromWest(storm.Shear);
  results.Descent = {.Energy = storm.Descent, .Source = {600, 4000, 0}, .SurfaceTemp = 15};
  if (storm.Freezing > 0) results.FreezingLevels = {{950, kStormGround + storm.Freezing, 0}};
  return results;
}

double ValueOf(std::string_view label, const AnalysisResults& results) {
  const SoundingRecord sounding = test::Profile({}, {}, static_cast<int>(kStormGround));
  return ComputeIndex(*FindIndex(label), sounding, results, Options{}).Value;
}

struct StormCase {
  const char* About;
  Storm Given;
  double Value;
};

void Expect(std::string_view label, const std::vector<StormCase>& cases, double tolerance = 1e-6) {
  for (const StormCase& c : cases) {
    SCOPED_TRACE(c.About);
    EXPECT_NEAR(ValueOf(label, ResultsOf(c.Given)), c.Value, tolerance) << label;
  }
}

// CAPE/1500, (2000 - LCL)/1000, helicity/150, shear/20 m/s; with CIN (200 + CIN)/150.
TEST(CompositeLimits, SignificantTornado) {
  const std::vector<StormCase> common = {
      {"1", {.Cape = 1500, .Helicity = 150}, 1},
      {"twice the energy", {.Cape = 3000, .Helicity = 150}, 2},
      {"LCL at 1000 m", {.Cape = 1500, .Lcl = 1000, .Helicity = 150}, 1},
      {"LCL at 1100 m", {.Cape = 1500, .Lcl = 1100, .Helicity = 150}, 0.9},
      {"LCL at 1900 m", {.Cape = 1500, .Lcl = 1900, .Helicity = 150}, 0.1},
      {"LCL at 2100 m", {.Cape = 1500, .Lcl = 2100, .Helicity = 150}, 0},
      {"shear of 12.4 m/s", {.Cape = 1500, .Helicity = 150, .Shear = 12.4}, 0},
      {"of 12.5 m/s", {.Cape = 1500, .Helicity = 150, .Shear = 12.5}, 0.625},
      {"of 12.6 m/s", {.Cape = 1500, .Helicity = 150, .Shear = 12.6}, 0.63},
      {"of 29 m/s", {.Cape = 1500, .Helicity = 150, .Shear = 29}, 1.45},
      {"of 31 m/s", {.Cape = 1500, .Helicity = 150, .Shear = 31}, 1.5},
      {"anticyclonic", {.Cape = 1500, .Helicity = -75}, -0.5},
  };
  Expect("STP fixed", common);
  Expect("STP cin", common);
  Expect("STP cin",
         {{"CIN -50", {.Cape = 1500, .Cin = -50, .Helicity = 150}, 1},
          {"CIN -65", {.Cape = 1500, .Cin = -65, .Helicity = 150}, 0.9},
          {"CIN -185", {.Cape = 1500, .Cin = -185, .Helicity = 150}, 0.1},
          {"CIN -210", {.Cape = 1500, .Cin = -210, .Helicity = 150}, 0},
          {"fed from above the ground", {.Cape = 1500, .Helicity = 150, .Base = 0.5}, 0}});
}

// CAPE/1000, helicity/50, shear/20 m/s between 10 and 20, -40/CIN beyond -40.
TEST(CompositeLimits, SupercellOfTheEffectiveLayer) {
  Expect("SCP eff", {{"2", {}, 2},
                     {"shear of 9.9 m/s", {.Shear = 9.9}, 0},
                     {"of 10 m/s", {.Shear = 10}, 1},
                     {"of 10.1 m/s", {.Shear = 10.1}, 1.01},
                     {"of 19 m/s", {.Shear = 19}, 1.9},
                     {"of 22 m/s", {.Shear = 22}, 2},
                     {"CIN -39", {.Cin = -39}, 2},
                     {"CIN -42", {.Cin = -42}, 2 * 40.0 / 42},
                     {"CIN -80", {.Cin = -80}, 1}});
}

// CAPE · w · lapse · -T500 · shear / 42 000 000, each within its bounds. At 1000 hPa 20 °C have
// 14.9 g/kg, 16 °C 11.5 and 10 °C 7.7.
TEST(CompositeLimits, SignificantHail) {
  const double whole = 3000 * 13.6 * 7 * 12.5 * 20 / 42e6;
  Expect("SHIP",
         {{"moist beyond 13.6 g/kg", {.Cape = 3000}, whole},
          {"dry below 11", {.Cape = 3000, .Dewpt = 10}, whole * 11 / 13.6},
          {"warm aloft", {.Cape = 3000, .Aloft = -5}, whole * 5.5 / 12.5},
          {"just colder", {.Cape = 3000, .Aloft = -5.7}, whole * 5.7 / 12.5},
          {"lapse of 5.7", {.Cape = 3000, .Lapse = 5.7}, whole * 5.7 / 7 * 5.7 / 5.8},
          {"of 5.9", {.Cape = 3000, .Lapse = 5.9}, whole * 5.9 / 7},
          {"little shear", {.Cape = 3000, .Shear = 6}, whole * 7 / 20},
          {"a little more", {.Cape = 3000, .Shear = 7.2}, whole * 7.2 / 20},
          {"much shear", {.Cape = 3000, .Shear = 28}, whole * 27 / 20},
          {"a little less", {.Cape = 3000, .Shear = 26.8}, whole * 26.8 / 20},
          {"1290 J/kg", {.Cape = 1290}, whole * 1290 / 3000 * 1290 / 1300},
          {"1310 J/kg", {.Cape = 1310}, whole * 1310 / 3000},
          {"freezing at 2390 m", {.Cape = 3000, .Freezing = 2390}, whole * 2390 / 2400},
          {"at 2410 m", {.Cape = 3000, .Freezing = 2410}, whole},
          {"frozen throughout", {.Cape = 3000, .Freezing = 0}, 0}},
         1e-3);
  // e of 18.17 hPa at 16 °C (Smithsonian tables): w is 0.62198 · 18.17 / 981.83.
  Expect("SHIP", {{"between", {.Cape = 3000, .Dewpt = 16}, whole * 11.51 / 13.6}}, 2e-3);
}

TEST(CompositeLimits, DerechosSupercellsAndEnergyHelicity) {
  // DCAPE/980 · MUCAPE/2000 · shear/20 kt · mean wind/16 kt.
  const double shear = 20 / kKnot, wind = 10 / kKnot;
  Expect("DCP", {{"as published", {.Cape = 2000}, shear / 20 * wind / 16},
                 {"half the downdraft", {.Cape = 2000, .Descent = 490}, shear / 40 * wind / 16}});
  Expect("Supercell", {{"1", {}, 1}, {"less shear", {.Brn = 20}, 0.5}});
  Expect("EHI 0-xkm",
         {{"1", {.Cape = 1600}, 1}, {"more turning", {.Cape = 1600, .Helicity = 250}, 2.5}});
  Expect("Craven", {{"CAPE times shear", {}, 20}});
  Expect("BRN", {{"25", {}, 25}, {"no shear", {.Brn = 0}, kNone}});
  Expect("MVV", {{"sqrt 2 CAPE", {.Cape = 1250}, 50}});
  Expect("NCAPE", {{"between 1500 and 10000 m", {.Cape = 1700}, 0.2}});
}

// Positive steps above the free level, 850 hPa, up to 3 km, 700 hPa: those to 805 and 705 hPa.
TEST(CompositeLimits, EnergyOfTheLowestThreeKilometres) {
  const std::vector<double> path = {0, 10, 20, 30, 40, 50};
  for (const char* label : {"3CAPE sfc", "3CAPE ML", "3CAPE MU"}) {
    Expect(label, {{"above the free level", {.Path = path}, 50},
                   {"positive alone", {.Path = {0, 10, -20, 30, 40}}, 30},
                   {"a short path", {.Path = {0, 10, 20}}, 20}});
  }
  // Times the excess over 7 °C/km, over 50; none below 250 J/kg.
  Expect("ESP",
         {{"1", {.Path = path}, 1},
          {"steeper", {.LowLapse = 9, .Path = path}, 2},
          {"not steep enough", {.LowLapse = 6.9, .Path = path}, 0},
          {"just steep enough", {.LowLapse = 7.1, .Path = path}, 0.1},
          {"249 J/kg", {.Cape = 249, .Path = path}, 0},
          {"250 J/kg", {.Cape = 250, .Path = path}, 1}},
         1e-4);
}

// The largest excess of the surroundings below the free level, the step at it included.
TEST(CompositeLimits, CapBelowTheFreeLevel) {
  AnalysisResults results = ResultsOf({});
  ParcelAscent& parcel = results.Forced[static_cast<std::size_t>(results.ChosenLift)];
  parcel.FirstPress = 1000;
  parcel.Step = 50;
  parcel.ParcelTemps = {20, 17, 14, 11};
  parcel.EnvTemps = {21, 20, 16, 20};
  EXPECT_EQ(ValueOf("CAP", results), 9);
  parcel.FreeLevel.Press = 851;
  EXPECT_EQ(ValueOf("CAP", results), 3);
  parcel.EnvTemps = {19, 16, 13, 10};
  EXPECT_EQ(ValueOf("CAP", results), 0);
}

// Differences between neighbours count that begin up to the top of the layer, 3 km: 10 + 20 + 5 kt
// over 3000 m, 0.5148 m/s a knot, times the root of 900 J/kg.
TEST(CompositeLimits, VorticityTakesThePairAcrossTheTop) {
  const auto value = [](double third) {
    AnalysisResults results = ResultsOf({.Cape = 900});
    results.Winds = DeriveWinds(test::Profile({}, {{kStormGround, 270, 10},
                                                   {kStormGround + 1500, 270, 20},
                                                   {kStormGround + third, 270, 40},
                                                   {kStormGround + 4500, 270, 45},
                                                   {kStormGround + 6000, 270, 90}}));
    return ValueOf("VGP 0-xkm", results);
  };
  EXPECT_NEAR(value(3000), 0.5148 * 35 / 3000 * 30, 1e-6);
  EXPECT_NEAR(value(3001), 0.5148 * 30 / 3000 * 30, 1e-6);
}

// Equivalent potential temperatures that are given, one of which is changed at a time.
AnalysisResults Layered(double changed = 0, double thetaE = 0, double top = 90) {
  const std::vector<double> presses = {1000, 860, 850, 840, 670, 660, 655,
                                       650,  600, 500, 490, 100, top};
  std::vector<AirRow> rows;
  std::vector<double> thetas;
  for (const double press : presses) {
    rows.push_back({15000 - 15 * press, press, -20, -25});
    thetas.push_back(press == changed ? thetaE : 320);
  }
  AnalysisResults results;
  results.Levels = Air(rows);
  results.Levels.ThetaE = Levels<double>(std::move(thetas));
  return results;
}

// Most from the ground to 850 hPa less the least from 660 to 100 hPa, over 30.
TEST(ContrastLimits, OfEquivalentPotentialTemperature) {
  const auto value = [](double press, double thetaE) {
    return ValueOf("Delta ePT", Layered(press, thetaE));
  };
  for (const double counted : {1000, 860, 850})
    EXPECT_NEAR(value(counted, 350), 1, 1e-9) << counted;
  for (const double counted : {660, 655, 600, 490, 100}) {
    EXPECT_NEAR(value(counted, 290), 1, 1e-9) << counted;
  }
  EXPECT_NEAR(value(840, 350), 0, 1e-9);
  EXPECT_NEAR(value(670, 290), 0, 1e-9);
  EXPECT_NEAR(value(90, 290), 0, 1e-9);
  EXPECT_NEAR(value(600, 0), 0, 1e-9);  // no value
  AnalysisResults ends = Layered();
  for (Levels<double>* levels : {&ends.Levels.Press, &ends.Levels.Temp, &ends.Levels.ThetaE,
                                 &ends.Levels.Height, &ends.Levels.Dewpt, &ends.Levels.LogPress}) {
    levels->Resize(10);
  }
  EXPECT_EQ(ValueOf("Delta ePT", ends), kNone);  // ends at 500 hPa
}

// Most of the lowest 150 hPa less the least from 650 to 500 hPa, over 30.
TEST(ContrastLimits, OfMicrobursts) {
  const auto value = [](double press, double thetaE) {
    return ValueOf("MDPI", Layered(press, thetaE));
  };
  for (const double counted : {1000, 860, 850})
    EXPECT_NEAR(value(counted, 350), 1, 1e-9) << counted;
  for (const double counted : {650, 600, 500}) EXPECT_NEAR(value(counted, 290), 1, 1e-9) << counted;
  for (const double other : {840, 670, 660, 655, 490, 100}) {
    EXPECT_NEAR(value(other, other > 800 ? 350 : 290), 0, 1e-9) << other;
  }
  EXPECT_NEAR(value(600, 0), 0, 1e-9);  // no value
}

// Between levels their values are those of the ends, linear in the logarithm of pressure: 850 hPa
// between 860 and 840, 650 between 655 and 600, and a sounding may end in between.
TEST(ContrastLimits, LayersEndBetweenLevels) {
  const auto value = [](std::string_view label,
                        const std::vector<std::pair<double, double>>& given) {
    std::vector<AirRow> rows;
    std::vector<double> thetas;
    for (const auto& [press, thetaE] : given) {
      rows.push_back({15000 - 15 * press, press, -20, -25});
      thetas.push_back(thetaE);
    }
    AnalysisResults results;
    results.Levels = Air(rows);
    results.Levels.ThetaE = Levels<double>(std::move(thetas));
    return ValueOf(label, results);
  };
  const auto between = [](double low, double high, double press) {
    return std::log(low / press) / std::log(low / high);
  };
  EXPECT_NEAR(value("MDPI", {{1000, 320}, {860, 320}, {840, 350}, {655, 320}, {490, 320}}),
              30 * between(860, 840, 850) / 30, 1e-6);
  EXPECT_NEAR(value("MDPI", {{1000, 320}, {655, 290}, {600, 320}, {490, 320}}),
              30 * (1 - between(655, 600, 650)) / 30, 1e-6);
  EXPECT_NEAR(value("MDPI", {{1000, 320}, {600, 320}, {510, 320}, {490, 290}}),
              30 * between(510, 490, 500) / 30, 1e-6);
  EXPECT_NEAR(value("MDPI", {{1000, 320}, {660, 320}, {600, 290}}), 1, 1e-9);
  // To hundredths of a degree, as whatever is read at a pressure.
  EXPECT_NEAR(value("Delta ePT", {{1000, 320}, {860, 320}, {840, 350}, {600, 320}, {490, 320}}),
              30 * between(860, 840, 850) / 30, 4e-4);
  EXPECT_NEAR(value("Delta ePT", {{1000, 320}, {670, 320}, {655, 290}, {654, 320}, {490, 320}}), 1,
              4e-4);
}

// Lapse 850-670 hPa plus the depression at 850 less that at 670, rounded.
TEST(ContrastLimits, HybridMicroburstIndex) {
  const auto index = [](double at670) {
    AnalysisResults results;
    results.Levels = Air({{0, 1000, 30, 10},
                          {1500, 850, 20, 10},
                          {3300, 670, at670, at670 - 3},
                          {5500, 500, -10, -30}});
    return ValueOf("GOES HMI", results);
  };
  EXPECT_EQ(index(5.6), 15);   // 8 + 10 - 3
  EXPECT_EQ(index(4.78), 15);  // 15.46
  EXPECT_EQ(index(4.6), 16);   // 15.56
  EXPECT_EQ(index(0.2), 18);   // 11 + 7
}

// The dew point of a level between that has none is passed over: depressions of 2 and 20 °C.
TEST(ContrastLimits, MeanDepressionPassesOverMissingDewPoints) {
  AnalysisResults results;
  results.Levels = Air({{0, 1000, 20, 18}, {3000, 700, 5, 999.9}, {5500, 500, -10, -30}});
  EXPECT_NEAR(ValueOf("Mean DPD", results), 11, 1e-9);
  results.Levels = Air({{0, 1000, 20, 18}, {3000, 700, 5, -5}, {5500, 500, -10, -30}});
  const double low = std::log(1000 / 700.0), high = std::log(700 / 500.0);
  EXPECT_NEAR(ValueOf("Mean DPD", results), (6 * low + 15 * high) / (low + high), 1e-9);
}

// The lowest wind stands for the surface up to 100 m above it.
TEST(ContrastLimits, SurfaceWindWithin100m) {
  const auto shear = [](double lowest) {
    const SoundingRecord sounding =
        test::Profile({{1000, 20, 10}, {500, -10, -30}}, {{lowest, 270, 10}, {8000, 270, 40}});
    return ComputeIndex(*FindIndex("Shear xKm"), sounding, Analyse(sounding, Options{}), Options{})
        .Value;
  };
  EXPECT_NEAR(shear(0), 22.5, 1e-3);
  EXPECT_NE(shear(100), kNone);
  EXPECT_EQ(shear(101), kNone);
}

}  // namespace
}  // namespace vexa::analysis
