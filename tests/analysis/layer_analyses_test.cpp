#include <cmath>

#include "analysis/analysis.h"
#include "analysis/clouds.h"
#include "analysis/icing.h"
#include "analysis/level_listing.h"
#include "analysis/soaring.h"
#include "analysis/winter.h"
#include "config/options.h"
#include "core/markers.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Profile;

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

TEST(Contrails, ThresholdAsAppleman) {
  struct Row {
    double Press, Dry, Humid40, Humid60, Saturated;
  };
  for (const Row& row : {Row{300, -49.8, -48.2, -47.0, -40.2},
                         {250, -51.5, -50.0, -48.8, -42.2},
                         {200, -53.6, -52.1, -51.0, -44.5},
                         {150, -56.2, -54.7, -53.7, -47.3},
                         {100, -59.8, -58.4, -57.3, -51.2}}) {
    SCOPED_TRACE(row.Press);
    EXPECT_NEAR(ContrailTemp(row.Press, 0), row.Dry, 0.1);
    EXPECT_NEAR(ContrailTemp(row.Press, 40), row.Humid40, 0.1);
    EXPECT_NEAR(ContrailTemp(row.Press, 60), row.Humid60, 0.1);
    EXPECT_NEAR(ContrailTemp(row.Press, 100), row.Saturated, 0.1);
  }
  EXPECT_TRUE(IsMissing(ContrailTemp(5, 60)));
  // A sounding that starts at 300 hPa, colder than the -47.0 C that air of 60 % needs there, has
  // its layer from its first level.
  const AnalysisResults high = Analyse(Profile({{300, -50, -54}, {250, -56, -60}}), {});
  ASSERT_EQ(high.Layers.Contrails.size(), 1u);
  EXPECT_EQ(high.Layers.Contrails.front().Base.Press, 300);
}

TEST(Refractivity, OfTheConvectiveSounding) {
  EXPECT_NEAR(RefractivityOf(1013.25, 15, 12.2791), 328.06, 0.1);
  const SoundingRecord sounding = test::ReferenceConvective();
  const AnalysisResults results = Analyse(sounding, {});
  const LevelListing& listing = results.Layers.Listing;
  EXPECT_NEAR(listing.Refractivity(1), 339.26, 0.05);
  EXPECT_NEAR(listing.Modified(1), 395.30, 0.1);
  EXPECT_NEAR(listing.Potential(1), 345.93, 0.1);
  EXPECT_NEAR(listing.Refractivity(6), 290.05, 0.05);
  EXPECT_NEAR(listing.Refractivity(7), 267.58, 0.05);
  EXPECT_NEAR(listing.Potential(6), 322.50, 0.1);
  EXPECT_NEAR(listing.Gradient(7), -109.8, 0.5);
  EXPECT_TRUE(results.Layers.Ducts.empty());
  Options loose;
  loose.DuctingThreshold = -100;
  const AnalysisResults trapped = Analyse(sounding, loose);
  ASSERT_EQ(trapped.Layers.Ducts.size(), 1u);
  EXPECT_NEAR(trapped.Layers.Ducts[0].Base.Press, 850, 0.01);
  EXPECT_NEAR(trapped.Layers.Ducts[0].Gradient, -109.8, 0.5);
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
  EXPECT_FALSE(soaring.CloudBase.Exists());
  settings.LiftEq = 2;
  EXPECT_NEAR(AnalyseSoaring(results, settings).Lift, 2.01, 0.02);
  settings.SoarTm = 36;
  EXPECT_TRUE(AnalyseSoaring(results, settings).CloudBase.Exists());
}

// By hand: theta = T (1000/p)^0.2856 with 273.16 K at 0 °C, shares linear in theta and ln p.
TEST(Soaring, ThermalsOfOrdinaryDays) {
  struct Case {
    const char* About;
    SoundingRecord Sounding;
    double DayTemp, Top, Pilot;  // °C, hPa; kNone for none
  };
  const Case cases[] = {
      // 8 °C at 850 hPa come to 21.4 °C at the ground, which is warmer already. Dry, so no cloud:
      // theta 298.16 K of the ground against 294.52 at 850 and 304.45 K at 700 hPa; the index is
      // -3.48 at 850 and 5.68 at 700 hPa.
      {"a ground warmer than the air above brings down",
       Profile({{1000, 25, -25}, {850, 8, -25}, {700, 1.8, -35}, {500, -10, -50}}), 25,
       850 * std::pow(700.0 / 850, 0.3669), 850 * std::pow(700.0 / 850, 0.0521)},
      // theta 318.10 K of the ground against 317.95 at 700 and 326.48 K at 600 hPa.
      {"a station above 850 hPa has thermals too",
       Profile({{845, 30, -30}, {800, 24, -30}, {700, 14, -35}, {600, 9, -40}, {400, -20, -50}}, {},
               1500),
       30, 700 * std::pow(600.0 / 700, 0.0170), kNone},
      {"stable ground has none", Profile({{840, 10, -30}, {800, 12, -30}, {600, 0, -40}}, {}, 1500),
       10, 840, kNone},
  };
  for (const Case& c : cases) {
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
