// The air that feeds storms: the effective layer against ascents that are followed to their end,
// its winds against published numbers, and composites on both hemispheres.
#include "analysis/effective_layer.h"

#include <gtest/gtest.h>

#include "analysis/index_formulas.h"
#include "analysis/inflow_winds.h"
#include "analysis/parcel.h"
#include "analysis/real_sounding.h"
#include "config/options.h"

namespace vexa::analysis {
namespace {

using test::Profile;

// Every level lifted to its EL, with the energies that a parcel shows.
EffectiveLayer ByWholeAscents(const AnalysisResults& results, const AnalysisSettings& options) {
  const LevelProfile& levels = results.Levels;
  const PressureGrid grid = MakePressureGrid(levels);
  ParcelLifter lifter(levels, grid, LiftSettingsOf(options, kNotReached));
  EffectiveLayer layer;
  ParcelAscent ascent;
  for (int i = 1; i <= levels.Count(); ++i) {
    if (NotAvailable(levels.ThetaE(i))) continue;
    if (!layer.Exists() && levels.Press(i) < levels.Press(1) - options.SearchDepth) break;
    lifter.LiftForced({levels.Press(i), levels.Temp(i), levels.Dewpt(i)}, ascent);
    if (ascent.CapeTotal >= 100 && ascent.CinTotal >= -250) {
      if (!layer.Exists()) layer.Base = PointOf(levels, i);
      layer.Top = PointOf(levels, i);
    } else if (layer.Exists()) {
      break;
    }
  }
  return layer;
}

TEST(EffectiveLayer, IsThatOfWholeAscents) {
  int layers = 0;
  const auto isThat = [&](const SoundingRecord& sounding) {
    for (const TempBase base : {TempBase::Dry, TempBase::Virtual}) {
      Options options;
      options.CapeTempBase = base;
      const AnalysisResults results = Analyse(sounding, options);
      const EffectiveLayer expected = ByWholeAscents(results, options);
      EXPECT_EQ(results.Effective.Base.Press, expected.Base.Press) << (base == TempBase::Virtual);
      EXPECT_EQ(results.Effective.Top.Press, expected.Top.Press) << (base == TempBase::Virtual);
      if (expected.Exists()) ++layers;
    }
  };
  for (const char* name : {"wyoming", "spc", "temp"}) {
    VEXA_REAL_DATA(folder, name);
    ForEachSounding(folder, isThat);
  }
  EXPECT_GT(layers, 40);
}

// It begins with the moisture with which a whole ascent from the ground reaches 100 J/kg, and under
// a stronger lid that with which it needs no more than 250 J/kg to get free.
TEST(EffectiveLayer, BeginsWithTheLimitsOfWholeAscents) {
  for (const double lid : {14.0, 24.0}) {
    const auto least = [lid](auto&& layerOf) {
      double none = 0, some = 25;
      for (int i = 0; i < 30; ++i) {
        const double dewpt = (none + some) / 2;
        const AnalysisResults results = Analyse(Profile({{1000, 26, dewpt},
                                                         {950, 23, dewpt - 9},
                                                         {850, lid, -5},
                                                         {700, 4, -15},
                                                         {500, -14, -35},
                                                         {300, -45, -60},
                                                         {200, -58, 999.9},
                                                         {100, -60, 999.9}}),
                                                {});
        (layerOf(results).Exists() ? some : none) = dewpt;
      }
      return some;
    };
    const double whole = least([](const auto& results) { return ByWholeAscents(results, {}); });
    EXPECT_LT(whole, 25) << lid;
    EXPECT_NEAR(least([](const auto& results) { return results.Effective; }), whole, 2e-4) << lid;
  }
}

// A cold, dry layer on the ground under warm, moist air: the storm feeds from above.
TEST(EffectiveLayer, LiesAboveColdGround) {
  const SoundingRecord elevated =
      Profile({{1000, 10, 4},
               {950, 8, 3},
               {900, 16, 14},
               {870, 17, 14.5},
               {850, 16, 13},
               {800, 13, -5},
               {700, 5, -12},
               {500, -16, -30},
               {300, -46, -60},
               {200, -56, 999.9},
               {100, -58, 999.9}},
              {{0, 90, 10}, {1000, 180, 30}, {2000, 210, 40}, {6000, 240, 60}, {14000, 250, 80}});
  const AnalysisResults results = Analyse(elevated, {});
  EXPECT_EQ(results.Effective.Base.Press, 900);
  EXPECT_GE(results.Effective.Top.Press, 850);
  EXPECT_EQ(ValueIn(results, "STP cin"), 0);
  EXPECT_GT(ValueIn(results, "SCP eff"), 0);
  EXPECT_GT(ValueIn(results, "Eff Base"), 500);

  // Stable throughout: nothing feeds a storm, and that is an answer.
  const AnalysisResults stable = Analyse(test::ReferenceWinter(), {});
  EXPECT_FALSE(stable.Effective.Exists());
  EXPECT_EQ(ValueIn(stable, "SCP eff"), 0);
  EXPECT_EQ(ValueIn(stable, "STP cin"), 0);
  EXPECT_NE(IndexOf(stable, *FindIndex("EBWD"))->Reason, "");
  EXPECT_NE(IndexOf(stable, *FindIndex("Eff Base"))->Reason, "");
}

// The mirrored weather: what turns changes its sign, all else stays.
TEST(EffectiveLayer, SouthernHemisphereMirrors) {
  const SoundingRecord north = test::ReferenceConvective();
  const AnalysisResults expected = Analyse(north, {});
  const AnalysisResults found = Analyse(test::Mirrored(north), {});
  for (const char* label :
       {"s-rH 500m", "s-rH Eff", "STP fixed", "STP cin", "SCP eff", "Streamw500", "Streamw3km"}) {
    SCOPED_TRACE(label);
    EXPECT_TRUE(FindIndex(label)->IsTurning);
    EXPECT_NEAR(ValueIn(found, label), -ValueIn(expected, label), 1e-4);
  }
  for (const char* label : {"EBWD", "SHIP", "Crit Angle", "Corfidi Up", "Corfidi Dn", "Eff Wind",
                            "LCL-EL Wnd", "DCP", "ECAPE"}) {
    SCOPED_TRACE(label);
    EXPECT_FALSE(FindIndex(label)->IsTurning);
    EXPECT_NEAR(ValueIn(found, label), ValueIn(expected, label), 1e-4);
  }
}

// Winds that end below half the way to the EL give no shear of it.
TEST(InflowWinds, NeedWindsHalfWayToTheEl) {
  SoundingRecord sounding = test::WithoutWinds(test::ReferenceConvective());
  for (const double height : {357.0, 1500.0, 4000.0}) sounding.AddWind(height, 200, 20);
  const AnalysisResults results = Analyse(sounding, {});
  EXPECT_TRUE(results.Effective.Exists());
  EXPECT_FALSE(results.Inflow.EffectiveShear);
  EXPECT_FALSE(results.Inflow.CloudMean);
  EXPECT_TRUE(results.Inflow.LowMean);
  // Nor does an ascent that the end of the data cuts.
  const SoundingRecord whole = test::ReferenceConvective();
  EXPECT_TRUE(Analyse(whole, {}).Inflow.CloudMean);
  EXPECT_FALSE(Analyse(test::EndingAt(whole, 250), {}).Inflow.CloudMean);
}

// By hand: a quarter circle of 10 m/s about a storm in its middle is all streamwise; a straight
// hodograph through the storm's own motion is all crosswise.
TEST(InflowWinds, StreamwiseShare) {
  std::vector<WindPoint> circle;
  for (int degrees = 180; degrees <= 270; ++degrees) {
    circle.push_back({degrees * 10.0, Components({static_cast<double>(degrees), 20})});
  }
  EXPECT_NEAR(StreamwiseShare(circle, {}).value(), 1, 1e-12);
  EXPECT_NEAR(StreamwiseShare(circle, {1e6, 0}).value(), 1 / 1.5707963, 1e-3);
  EXPECT_NEAR(StreamwiseShare({{0, {5, 0}}, {1000, {25, 0}}}, {10, 0}).value(), 0, 1e-12);
  EXPECT_FALSE(StreamwiseShare({{0, {5, 0}}, {1000, {5, 0}}}, {10, 0}));
}

// Winds of a layer begin and end at its edges, and a gap of more than 4 km is no layer.
TEST(InflowWinds, BetweenTwoHeights) {
  const SoundingRecord sounding =
      Profile({{1000, 20, 15}}, {{0, 270, 10}, {1000, 270, 20}, {3000, 270, 40}, {7100, 270, 50}});
  const std::vector<WindPoint> winds = WindsBetween(DeriveWinds(sounding), 500, 2000);
  ASSERT_EQ(winds.size(), 3u);
  EXPECT_NEAR(winds.front().Wind.U, -15, 1e-4);
  EXPECT_NEAR(winds.back().Wind.U, -30, 1e-4);
  EXPECT_TRUE(
      WindsBetween(DeriveWinds(sounding), 2000, 5000).empty());  // between winds at 3000 and 7100 m
  EXPECT_TRUE(WindsBetween(DeriveWinds(sounding), 2000, 8000).empty());  // beyond the end
  EXPECT_TRUE(WindsBetween(DeriveWinds(sounding), 500, 500).empty());
  // Weighted by height: 10 to 20 kt over the first km.
  EXPECT_NEAR(MeanRelativeSpeed(WindsBetween(DeriveWinds(sounding), 0, 1000), {}), 15, 1e-4);
}

// By hand, lengths in m: calm at the ground, 40 kt from 60 m up, with and without winds between.
TEST(InflowWinds, MeansReadTheWindsNearTheGround) {
  const auto mean = [](std::initializer_list<test::WindRow> winds) {
    const SoundingRecord sounding = Profile({{1000, 20, 15},
                                             {900, 14, 8},
                                             {700, 2, -10},
                                             {500, -15, -30},
                                             {300, -40, -55},
                                             {250, -50, -60}},
                                            winds);
    return Analyse(sounding, {}).Inflow.LowMean.value_or(WindVector{}).U;
  };
  // By mass the air near the ground weighs 8 % more than that of all 1500 m.
  const auto lost = [](double kt, double depth) { return 1.08 * kt * depth / 1500; };
  EXPECT_NEAR(mean({{0, 270, 0}, {60, 270, 40}, {3000, 270, 40}}), lost(20, 60) - 40, 0.03);
  EXPECT_NEAR(mean({{0, 270, 0}, {10, 270, 40}, {20, 270, 40}, {80, 270, 40}, {3000, 270, 40}}),
              lost(20, 10) - 40, 0.01);
  EXPECT_NEAR(mean({{0, 270, 0}, {10, 270, 0}, {80, 270, 0}, {90, 270, 40}, {3000, 270, 40}}),
              lost(40, 85) - 40, 0.06);
}

// By the scripts that its authors keep now (sigma 1.1), on the numbers of their worked example.
TEST(EntrainingCape, IsThatOfItsAuthors) {
  EXPECT_NEAR(
      formula::EntrainedEnergy(3530.029673046427, 760.4878130037112, 16.662798431352986, 11750),
      3078.346, 0.001);
}

}  // namespace
}  // namespace vexa::analysis
