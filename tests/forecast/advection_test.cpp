// Steps of a forecast. Worked numbers were computed by hand, or apart from this code, from the
// formulas of the header.
#include "forecast/advection.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/analysis_settings.h"
#include "core/markers.h"
#include "support/soundings.h"

namespace vexa::forecast {
namespace {

using test::Profile;

SharedProfile Known(SoundingRecord sounding) {
  return ProfileOf(std::move(sounding), "file", AnalysisSettings{});
}

// The wind of all heights is 240 degrees, 30 kt.
Region Anchor() {
  Region region;
  region.Main = Known(Profile({{1000, 20, 10}, {900, 14, 4}, {500, -20, -30}},
                              {{0, 240, 30}, {500, 240, 30}, {1000, 240, 30}, {3000, 240, 30}}));
  const SharedProfile other =
      Known(Profile({{1010, 25, 15}, {1000, 24, 14}, {900, 18, 8}, {500, -10, -20}},
                    {{0, 270, 20}, {1000, 270, 20}, {3000, 270, 20}, {6000, 270, 20}}));
  region.Near = {{.Of = other, .Bearing = 235, .RangeKm = 250},
                 {.Of = other, .Bearing = 330, .RangeKm = 300},
                 {.Of = other, .Bearing = 255, .RangeKm = 420}};
  ChooseUpwind(region);
  return region;
}

TEST(Step, WhereTheAirComesFrom) {
  const Region region = Anchor();
  EXPECT_NEAR(region.Near[0].AlongKm, 249.0, 0.05);
  EXPECT_FALSE(region.Near[1].IsUpwind) << "90 degrees off the wind";
  EXPECT_NEAR(region.Near[2].AlongKm, 405.7, 0.05);
  const StepChoice choice = ChoiceAt(region, {}, 6).value();
  EXPECT_NEAR(choice.RateKt, 30, 1e-9);
  EXPECT_NEAR(choice.WindFrom, 240, 1e-4);
  EXPECT_NEAR(choice.UpwindKm, 333.4, 0.05);
  ASSERT_EQ(choice.Parts.size(), 3u);
  const double distances[] = {333.4, 87.1, 130.6};
  const double weights[] = {0.045, 0.661, 0.294};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(choice.Parts[i].DistanceKm, distances[i], 0.05);
    EXPECT_NEAR(choice.Parts[i].Weight, weights[i], 0.0005);
  }
  EXPECT_EQ(ChoiceAt(region, {.Percentage = 50}, 6)->UpwindKm, choice.UpwindKm / 2);
}

TEST(Step, AnExactHitTakesAll) {
  const double exact[] = {50, 0.9, 30};
  EXPECT_EQ(InverseSquareWeights(exact), (std::vector<double>{0, 1, 0}));
  const double near[] = {1, 2};
  EXPECT_EQ(InverseSquareWeights(near), (std::vector<double>{0.8, 0.2}));
}

TEST(Step, ByHandTheDirectionIsTheDrawnOne) {
  Region region = Anchor();
  const std::size_t boxed[] = {1};
  ChooseUpwind(region, boxed, 330);
  const StepChoice choice = ChoiceAt(region, {}, 3).value();
  EXPECT_EQ(choice.WindFrom, 330);
  ASSERT_EQ(choice.Parts.size(), 2u);
  EXPECT_NEAR(choice.Parts[1].DistanceKm, 300 - 3 * 55.56, 1e-6);
}

TEST(Step, ShareByHeight) {
  struct Case {
    const char* about;
    bool main, boundary;
    double height, share;
  };
  const Case cases[] = {
      {"main layer", true, false, 3000, 1},
      {"half-way out of it", true, false, 3250, 0.5},
      {"above", true, false, 3500, 0},
      {"friction keeps half", true, true, 1000, 0.5},
      {"above the friction", true, true, 1001, 1},
      {"boundary layer alone", false, true, 1000, 1},
      {"half-way out of that", false, true, 1250, 0.5},
      {"no friction without a boundary layer", true, false, 0, 1},
      {"no layer, no advection", false, false, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const ForecastSettings set{
        .UsesMain = c.main, .MainDepth = 3000, .UsesBoundary = c.boundary, .BoundaryDepth = 1000};
    EXPECT_DOUBLE_EQ(ShareAt(c.height, set), c.share);
  }
}

TEST(Step, BlendsLevelByLevel) {
  Region region = Anchor();
  ForecastSettings set{.UsesBoundary = false};
  StepChoice choice{.Parts = {{.Weight = 0.25}, {.Of = 0, .Weight = 0.75}}};
  const SoundingRecord made = Blend(region, choice, set);
  ASSERT_EQ(made.NumTempLevels(), 6) << "925, 850 and 700 hPa come in";
  EXPECT_EQ(made.Press(2), 925);
  EXPECT_EQ(made.Temp(1), 23);  // 20/4 + 24·3/4
  EXPECT_EQ(made.Dewpt(1), 13);
  EXPECT_EQ(made.Temp(3), 17);
  EXPECT_EQ(made.Temp(6), -20) << "above the layer the main sounding stays";
  EXPECT_EQ(made.Dewpt(6), -30);
  // u: -30 sin 60 /4 and -20·3/4 from the west; v: -15/4.
  EXPECT_NEAR(made.WindSpd(1), std::hypot(25.98 / 4 + 15, 3.75), 0.06);
  EXPECT_NEAR(made.WindDir(1), 270 - std::atan2(3.75, 21.495) * 57.2958, 0.06);
  EXPECT_EQ(made.ElevM, 0);

  set.UsesBoundary = true;
  EXPECT_EQ(Blend(region, choice, set).Temp(1), 21.5) << "half of +3 within the boundary layer";
}

TEST(Step, LeavesOutWhatASoundingLacks) {
  Region region = Anchor();
  const StepChoice choice{.Parts = {{.Weight = 0.25}, {.Of = 0, .Weight = 0.75}}};
  const ForecastSettings set{.UsesBoundary = false};
  region.Near[0].Of = Known(Profile({{950, 24, 999.9}, {900, 18, 999.9}, {500, -10, 999.9}}));
  const SoundingRecord made = Blend(region, choice, set);
  EXPECT_EQ(made.Temp(1), 20) << "the other stands higher than 1000 hPa";
  EXPECT_EQ(made.Temp(3), 17);
  EXPECT_EQ(made.Dewpt(3), 4) << "the other has no dew points";
  EXPECT_EQ(made.WindSpd(1), 30) << "nor winds";

  region.Near[0].Of = Known(Profile({{1010, 5, 5}, {900, 0, 0}, {500, -30, -30}}));
  const SoundingRecord cold = Blend(region, choice, set);
  for (int i = 1; i <= cold.NumTempLevels(); ++i) EXPECT_LE(cold.Dewpt(i), cold.Temp(i));
}

// The layer of the thermal wind's worked example: 45 N, 200/30 at 1500 m and 240/40 at 2500 m in
// air of 0 °C, +2.11 °C/h. 780 hPa lie at 1987 m, 600 hPa at 4084 m.
TEST(Alone, OwnAdvection) {
  SoundingRecord sounding =
      Profile({{1000, 0, 999.9}, {780, 0, -1}, {600, 0, -1}}, {{1500, 200, 30}, {2500, 240, 40}});
  SetDecimalPosition(sounding, 45, 10);
  const ForecastSettings set{.UsesBoundary = false};
  const SoundingRecord made = AdvectAlone(*Known(sounding), set, 2);
  EXPECT_NEAR(made.Temp(2), 2.11 * 1.8, 0.02) << "the second hour counts 0.8";
  EXPECT_EQ(made.Dewpt(2), -1);
  EXPECT_EQ(made.Temp(1), 0) << "below the winds";
  EXPECT_EQ(made.Temp(3), 0) << "above the layer";
  ForecastSettings half = set;
  half.Percentage = 50;
  EXPECT_NEAR(AdvectAlone(*Known(sounding), half, 1).Temp(2), 1.055, 0.01);

  SetDecimalPosition(sounding, -45, 10);
  const SoundingRecord south = AdvectAlone(*Known(sounding), set, 1);
  EXPECT_NEAR(south.Temp(2), -2.11, 0.015);
  EXPECT_EQ(south.Dewpt(2), south.Temp(2)) << "cooled to saturation";
}

TEST(Surface, ChangeSpreadsThroughTheBoundaryLayer) {
  struct Case {
    Spread spread;
    double boundary, at500, at1000;
  };
  // 0 °C at all heights: 939.38 hPa lie at 500 m, 882.43 hPa at 1000 m.
  const Case cases[] = {
      {Spread::None, 1500, 0, 0},     {Spread::Low, 1500, 0, 0},
      {Spread::Medium, 1500, 1.0, 0}, {Spread::High, 1500, 4.0 / 3, 2.0 / 3},
      {Spread::High, 0, 1.0, 0},  // off: 1000 m
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.spread));
    const ForecastSettings set{
        .BoundaryDepth = c.boundary, .SurfaceChange = 2, .SurfaceSpread = c.spread};
    SoundingRecord sounding =
        Profile({{1000, 0, 0}, {939.38, 0, -5}, {882.43, 0, -5}, {500, 0, -5}});
    const SurfaceStep step[] = {SurfaceStepOf(set)};
    ChangeSurface(sounding, step, AnalysisSettings{});
    EXPECT_EQ(sounding.Temp(1), 2);
    EXPECT_EQ(sounding.Dewpt(1), 0) << "the water stays";
    EXPECT_NEAR(sounding.Temp(2), c.at500, 0.006);
    EXPECT_NEAR(sounding.Temp(3), c.at1000, 0.007);
  }
}

// θ at the ground becomes 296.16 K, which at 900 hPa is 14.22 °C (Poisson's equation, 0.2856).
TEST(Surface, WarmingMixesAndCoolingDoesNot) {
  const auto changed = [](double change) {
    SoundingRecord sounding = Profile({{1000, 20, 18}, {900, 12, 8}, {800, 10, 0}});
    const SurfaceStep step[] = {{change, 0}};
    ChangeSurface(sounding, step, AnalysisSettings{});
    return sounding;
  };
  EXPECT_NEAR(changed(3).Temp(2), 14.22, 0.006);
  EXPECT_EQ(changed(3).Temp(3), 10);
  EXPECT_EQ(changed(-5).Temp(2), 12);
  EXPECT_EQ(changed(-5).Dewpt(1), 15) << "no more dew point than temperature";
}

}  // namespace
}  // namespace vexa::forecast
