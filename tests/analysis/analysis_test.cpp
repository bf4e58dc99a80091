// The whole analysis: derived levels against an independent program, and soundings of every odd
// shape, from which no NaN may come.
#include "analysis/analysis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "analysis/adiabat_table.h"
#include "config/options.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Profile;

TEST(DeriveLevels, OfTheReferenceSoundings) {
  struct Row {
    int Level;
    double Press, Height, ThetaE, WetBulb, Virtual, MixingRatio;
  };
  const auto expect = [](const SoundingRecord& sounding, const std::vector<Row>& rows) {
    const LevelProfile levels = DeriveLevels(sounding, Options{});
    for (const Row& row : rows) {
      SCOPED_TRACE(row.Press);
      ASSERT_EQ(levels.Press(row.Level), row.Press);
      EXPECT_NEAR(levels.Height(row.Level), row.Height, 0.06);
      EXPECT_NEAR(levels.VirtualTemp(row.Level), row.Virtual, 0.006);
      if (IsMissing(row.ThetaE)) {
        EXPECT_TRUE(IsMissing(levels.ThetaE(row.Level)));
        EXPECT_TRUE(IsMissing(levels.MixingRatio(row.Level)));
        EXPECT_TRUE(IsMissing(levels.WetBulb(row.Level)));
        EXPECT_TRUE(IsMissing(levels.RelHumidity(row.Level)));
        continue;
      }
      EXPECT_NEAR(levels.ThetaE(row.Level), row.ThetaE, 0.006);
      EXPECT_NEAR(levels.WetBulb(row.Level), row.WetBulb, 0.006);
      EXPECT_NEAR(levels.MixingRatio(row.Level) * 1000, row.MixingRatio, 0.0006);
    }
  };
  expect(test::ReferenceConvective(), {{1, 970, 357.0, 346.00, 21.49, 30.57, 14.235},
                                       {6, 850, 1510.0, 338.16, 14.66, 20.51, 10.862},
                                       {10, 700, 3151.7, 325.61, 2.69, 9.34, 4.320},
                                       {14, 500, 5825.3, 321.47, -15.55, -12.33, 1.091},
                                       {18, 300, 9495.6, 324.52, -43.77, -43.29, 0.083},
                                       {21, 200, 12102.7, kMissing, 0, -59.10, 0},
                                       {27, 50, 20734.2, kMissing, 0, -58.90, 0}});
  expect(test::ReferenceWinter(), {{1, 1005, 120.0, 279.00, -2.37, -1.50, 3.048},
                                   {5, 900, 991.9, 280.90, -7.22, -6.52, 2.342},
                                   {14, 500, 5421.2, 294.62, -32.75, -32.07, 0.233},
                                   {23, 100, 15822.1, kMissing, 0, -57.00, 0}});
  // Hypsometric: 1000 to 500 hPa at 273.16 K throughout.
  const LevelProfile cold =
      DeriveLevels(Profile({{1000, 0, 999.9}, {700, 0, 999.9}, {500, 0, 999.9}}), Options{});
  EXPECT_NEAR(cold.Height(3), 5541.97, 0.01);
}

TEST(Surface, InTermsOfAltimetry) {
  SoundingRecord sounding = test::ReferenceConvective();
  const SurfaceState surface = Analyse(sounding, {}).Surface;
  EXPECT_TRUE(surface.Exists);
  EXPECT_NEAR(surface.Qnh, 1012.12, 0.01);
  EXPECT_NEAR(surface.PressureAltitude, 366.4, 0.1);
  EXPECT_NEAR(surface.DensityAltitude, 991, 1);
  EXPECT_NEAR(surface.IsaDeviation, 28 - (15 - 0.0065 * 366.4), 0.01);
  EXPECT_FALSE(surface.Estimated);
  sounding.Dewpt(1) = kMissing;
  EXPECT_TRUE(Analyse(sounding, {}).Surface.Estimated);
  sounding = test::ReferenceConvective();
  SetElevationUnknown(sounding);
  EXPECT_TRUE(Analyse(sounding, {}).Surface.Estimated);
  EXPECT_EQ(Analyse(sounding, {}).Surface.Qnh, kNone);
  EXPECT_FALSE(Analyse(SoundingRecord{}, {}).Surface.Exists);
}

// Every number of the results; heights and markers are finite, so all must be.
std::vector<double> Numbers(const AnalysisResults& results) {
  std::vector<double> all;
  const auto add = [&](const LevelPoint& level) {
    all.insert(all.end(), {level.Press, level.Height, level.Temp});
  };
  const LevelProfile& levels = results.Levels;
  for (const auto* array : {&levels.Height, &levels.WetBulb, &levels.ThetaE, &levels.Theta,
                            &levels.VirtualTemp, &levels.MixingRatio, &levels.RelHumidity}) {
    all.insert(all.end(), array->Values().begin(), array->Values().end());
  }
  const SurfaceState& surface = results.Surface;
  all.insert(all.end(), {surface.Press, surface.Qnh, surface.PressureAltitude,
                         surface.DensityAltitude, surface.IsaDeviation, results.CapeDepthTopPress,
                         results.ConvectiveTemp, results.MeanLayerMixingRatio});
  add(results.ConvectiveCondensation);
  for (const LiftAnalysis& lift : results.Lifts) {
    for (const ParcelAscent* ascent : {&lift.Forced, &lift.Convective}) {
      for (const LevelPoint& level :
           {ascent->Condensation, ascent->FreeLevel, ascent->Equilibrium, ascent->MaximumParcel}) {
        add(level);
      }
      all.insert(all.end(), {ascent->CapeTotal, ascent->CapePlusOnly, ascent->CinTotal,
                             ascent->CapeDepth, ascent->CapeHail, ascent->HailBasePress});
      all.insert(all.end(), ascent->ParcelTemps.begin(), ascent->ParcelTemps.end());
      all.insert(all.end(), ascent->EnvTemps.begin(), ascent->EnvTemps.end());
      all.insert(all.end(), ascent->Increments.begin(), ascent->Increments.end());
    }
  }
  for (const Inversion& inversion : results.Inversions) {
    add(inversion.Base);
    add(inversion.Top);
  }
  for (const LevelPoint& level : results.FreezingLevels) add(level);
  for (const LevelPoint& level : results.Tropopauses) add(level);
  const LayerResults& layers = results.Layers;
  for (const auto* found :
       {&layers.Icing, &layers.Turbulence, &layers.HighTurbulence, &layers.LowShear,
        &layers.Contrails, &layers.Lightning, &layers.CarbIcing}) {
    for (const AirLayer& layer : *found) {
      add(layer.Base);
      add(layer.Top);
      all.push_back(layer.Value);
    }
  }
  for (const CloudDeck& deck : layers.Clouds) {
    add(deck.Base);
    add(deck.Top);
  }
  for (const Duct& duct : layers.Ducts) all.insert(all.end(), {duct.DuctBase, duct.Gradient});
  const LevelListing& listing = layers.Listing;
  for (const auto* column : {&listing.Density, &listing.DValue, &listing.Refractivity,
                             &listing.Modified, &listing.Potential, &listing.Gradient,
                             &listing.WaterBelow, &results.Soaring.ThermalIndex}) {
    all.insert(all.end(), column->Values().begin(), column->Values().end());
  }
  const WinterResults& winter = results.Winter;
  all.insert(all.end(),
             {winter.WarmArea, winter.ColdArea, winter.SurfaceWarmArea, winter.SnowRatio,
              winter.SnowSquall, winter.Thickness1000to500, results.Descent.Energy,
              results.Descent.SurfaceTemp, results.Soaring.Lift, results.Soaring.TriggerTemp});
  add(results.Soaring.ThermalTop);
  add(results.Soaring.PilotLevel);
  return all;
}

void ExpectFinite(const SoundingRecord& sounding) {
  for (const CapeBase mode : {CapeBase::Lfc, CapeBase::Ccl}) {
    for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
      Options options;
      options.BaseLevel = mode;
      options.Saturation = over;
      options.CapeTempBase = mode == CapeBase::Ccl ? TempBase::Virtual : TempBase::Dry;
      options.MultiLift = sounding.NumTempLevels() < 100;
      options.Ice = mode == CapeBase::Ccl ? IceType::Usaf : IceType::SmithFeddes;
      options.ShearNormalization = over == SaturationOver::Water;
      int bad = 0;
      const AnalysisResults results = Analyse(sounding, options);
      for (const double value : Numbers(results)) bad += std::isfinite(value) ? 0 : 1;
      EXPECT_EQ(bad, 0);
      for (const LiftAnalysis& lift : results.Lifts) {
        EXPECT_LE(lift.Forced.CinTotal, 0);
        EXPECT_GE(lift.Forced.CinTotal, -99999);
        EXPECT_GE(lift.Forced.CapeTotal, lift.Forced.CapeDepth);
      }
    }
  }
}

TEST(Analyse, OddShapesGiveMarkersAndNeverNaN) {
  SoundingRecord tall;
  for (int i = 0; i < 10000; ++i) {
    const double press = 1015 * std::pow(3.0 / 1015, i / 9999.0);
    tall.AddTemp(press, std::max(25 - 45 * std::log10(1015 / press) * 2, -65.0),
                 i % 7 == 0 ? kMissing : -70);
  }
  const struct {
    const char* About;
    SoundingRecord Sounding;
  } cases[] = {
      {"empty", Profile({})},
      {"one level", Profile({{1000, 20, 15}})},
      {"two levels", Profile({{1000, 20, 15}, {500, -10, -20}})},
      {"two levels within one hPa", Profile({{1000.7, 20, 15}, {1000.2, 19, 15}})},
      {"no dew point anywhere", Profile({{1000, 20, 999.9}, {500, -10, 999.9}, {200, -50, 999.9}})},
      {"begins aloft", Profile({{480, -15, -20}, {300, -45, -60}, {100, -60, 999.9}})},
      {"only stratosphere", Profile({{60, -60, -85}, {20, -50, -80}, {2, -20, 999.9}})},
      {"below one hPa", Profile({{0.9, -10, -90}, {0.5, -20, -90}})},
      {"pressures of no planet", Profile({{5000, 400, 380}, {1300, 60, 59}, {800, 50, 49}})},
      {"a missing temperature that got through",
       Profile({{1000, 20, 15}, {900, 999.9, 999.9}, {500, -10, -20}})},
      {"colder than anything",
       Profile({{1000, -300, -400}, {500, -273.16, -273.16}, {400, -500, -500}})},
      {"boiling", Profile({{1000, 100, 100}, {300, 69, 69}, {100, 50, 50}})},
      {"equal pressures", Profile({{1000, 20, 15}, {1000, 20, 15}, {1000, 10, 5}})},
      {"upside down", Profile({{200, -50, -60}, {500, -10, -20}, {1000, 20, 15}})},
      {"no pressure", Profile({{0, 20, 15}, {-5, 10, 5}, {500, -10, -20}})},
      {"dew point above temperature", Profile({{1000, 10, 30}, {500, -10, 5}, {300, -40, -30}})},
      {"ten thousand levels", tall},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    ExpectFinite(c.Sounding);
  }
  std::mt19937 random(99);
  std::uniform_real_distribution<double> press(-10, 1200);
  std::uniform_real_distribution<double> temp(-120, 80);
  for (int n = 0; n < 60; ++n) {
    SCOPED_TRACE("noise " + std::to_string(n));
    SoundingRecord noise;
    for (int i = 0; i < 12; ++i) {
      noise.AddTemp(press(random), temp(random), i % 4 == 3 ? kMissing : temp(random));
      noise.AddWind(1500 * i + temp(random), 3 * std::fabs(temp(random)), std::fabs(temp(random)));
    }
    ExpectFinite(noise);
  }
}

// The numbers of a sounding are its own, whichever soundings were analysed before.
TEST(Analyse, GivesTheSameInAnyCompany) {
  const SoundingRecord soundings[] = {
      test::ReferenceConvective(), test::ReferenceWinter(),
      Profile({{1000, 41, 24}, {850, 22, 18}, {500, -8, -20}, {200, -55, -70}, {100, -70, 999.9}})};
  AdiabatTable table;
  for (int turn = 0; turn < 2; ++turn) {
    for (const SoundingRecord& sounding : soundings) {
      for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
        Options options;
        options.Saturation = over;
        options.CapeTempBase = turn == 0 ? TempBase::Dry : TempBase::Virtual;
        EXPECT_EQ(Numbers(Analyse(sounding, options, table)), Numbers(Analyse(sounding, options)));
      }
    }
  }
}

}  // namespace
}  // namespace vexa::analysis
