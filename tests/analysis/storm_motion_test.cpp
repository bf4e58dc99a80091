#include "analysis/storm_motion.h"

#include <cmath>

#include "config/options.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

void ExpectWind(const std::optional<WindVector>& vector, double direction, double speed) {
  ASSERT_TRUE(vector);
  const Wind wind = FromComponents(*vector);
  EXPECT_NEAR(wind.Dir, direction, 0.1);
  EXPECT_NEAR(wind.Spd, speed, 0.1);
}

// Worked values of the convective reference sounding, computed with an independent script.
TEST(StormMotion, OfTheReferenceSounding) {
  const StormMotionResults storm = AnalyseStormMotion(test::ReferenceConvective(), {});
  ExpectWind(storm.Mean6km, 216.8, 30.1);
  ExpectWind(storm.MeanHalfKm, 167.1, 19.0);
  EXPECT_NEAR(storm.BrnShear, 69.8, 0.1);
  ASSERT_TRUE(storm.Shear6km && storm.Shear1km);
  // Between 175/28 at 1000 m and 190/33 at 1500 m the wind at 1357 m, less 160/12 at the ground.
  EXPECT_NEAR(std::hypot(storm.Shear1km->U, storm.Shear1km->V), 21.3, 0.1);
  EXPECT_NEAR(std::hypot(storm.Shear6km->U, storm.Shear6km->V), 54.9, 0.1);
  ASSERT_TRUE(storm.Right && storm.Left);
  EXPECT_NEAR(storm.Right->Motion.U, -19.246, 0.005);
  EXPECT_NEAR(storm.Right->Motion.V, -9.129, 0.005);
  EXPECT_NEAR(storm.Left->Motion.U, -16.841, 0.005);
  EXPECT_NEAR(storm.Left->Motion.V, -39.032, 0.005);
  const double right[] = {159.7, 246.5, 297.6};
  const double left[] = {87.7, 57.8, 29.7};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(storm.Right->Helicity[i], right[i], 0.1);
    EXPECT_NEAR(storm.Left->Helicity[i], left[i], 0.1);
  }
  Options traditional;
  traditional.Motion = StormMotion::Traditional;
  const StormMotionResults turned = AnalyseStormMotion(test::ReferenceConvective(), traditional);
  ExpectWind(turned.Right->Motion, 246.8, 22.6);
  EXPECT_NEAR(turned.Right->Helicity[2], 305, 0.5);
}

TEST(StormMotion, VanishesWithTheShear) {
  SoundingRecord uniform = test::ReferenceConvective();
  // The working winds are what is computed with; the observed ones stay as they are.
  for (float& direction : uniform.WorkWindDir.Values()) direction = 250;
  for (float& speed : uniform.WorkWindSpd.Values()) speed = 20;
  const StormMotionResults still = AnalyseStormMotion(uniform, {});
  EXPECT_NEAR(still.BrnShear, 0, 1e-6);
  ExpectWind(still.Right->Motion, 250, 20);
  ExpectWind(still.Left->Motion, 250, 20);
  EXPECT_NEAR(still.Right->Helicity[2], 0, 1e-6);
}

// Points 180/10, 225/20, 270/30 and a motion of 240/20: worked by hand, 24.47 m²/s².
TEST(StormMotion, HelicityOfThreePoints) {
  const SoundingRecord sounding = test::Profile({{1000, 20, 10}, {500, -10, -30}},
                                                {{0, 180, 10}, {500, 225, 20}, {1000, 270, 30}});
  EXPECT_NEAR(StormRelativeHelicity(sounding, 0, 1000, Components({240, 20})), 24.47, 0.01);
}

// Half the square of the difference of two means; a knot counts 0.514444 m/s here.
TEST(StormMotion, RichardsonShear) {
  EXPECT_NEAR(BRNnbr(WindVector{0, 30}, WindVector{0, 10}), 0.5 * std::pow(0.514444 * 20, 2), 1e-4);
  EXPECT_EQ(BRNnbr(std::nullopt, WindVector{0, 10}), static_cast<float>(kNone));
  EXPECT_EQ(BRNnbr(WindVector{0, 10}, std::nullopt), static_cast<float>(kNone));
}

using Rows = std::initializer_list<test::WindRow>;

StormMotionResults MotionOf(Rows winds, const Options& options = {}) {
  return AnalyseStormMotion(test::Profile({{1000, 20, 10}, {500, -10, -30}}, winds), options);
}

// Motions of the right and the left mover.
std::pair<WindVector, WindVector> MoversOf(Rows winds, const Options& options = {}) {
  const StormMotionResults storm = MotionOf(winds, options);
  return {storm.Right.value().Motion, storm.Left.value().Motion};
}

// West winds of 10 kt in the lowest layer, a mean of 20: 15 kt across the shear to the south, where
// the wind of 5750 m is weighed between its neighbours.
TEST(StormMotion, MovesAsideOfTheShear) {
  const auto [right, left] =
      MoversOf({{0, 270, 10}, {500, 270, 10}, {3000, 270, 20}, {5500, 270, 25}, {6000, 270, 35}});
  EXPECT_NEAR(right.U, -20, 1e-3);
  EXPECT_NEAR(right.V, 15, 1e-3);
  EXPECT_NEAR(left.V, -15, 1e-3);
  // 90 degrees of turning from 10 kt at the ground to what lies at 5750 m, a quarter of the way
  // from 5500 to 6500 m: the shear is (2.5, 7.5) - (0, 0) less the low wind.
  const auto [turned, other] =
      MoversOf({{0, 270, 0}, {500, 270, 0}, {3000, 270, 20}, {5500, 180, 10}, {6500, 270, 10}});
  EXPECT_NEAR((turned.U - other.U) / 2, 15 * -7.5 / std::hypot(2.5, 7.5), 1e-3);
  EXPECT_NEAR((turned.V - other.V) / 2, 15 * 2.5 / std::hypot(2.5, 7.5), 1e-3);
  // Winds that end below 5750 m: the last one stands for it.
  const auto [low, last] = MoversOf({{0, 270, 0}, {500, 270, 0}, {3000, 270, 20}, {4600, 180, 20}});
  EXPECT_NEAR(low.U - last.U, -30, 1e-3);
  EXPECT_NEAR(low.V - last.V, 0, 1e-3);
  Options twice;
  twice.DeviationFactor = 2;
  const Rows west = {{0, 270, 10}, {500, 270, 10}, {3000, 270, 20}, {6000, 270, 35}};
  EXPECT_NEAR(MoversOf(west, twice).first.V, 30, 1e-3);
}

// A level within 1 m of the layer's top stands for it; else one is interpolated there and counts.
TEST(StormMotion, MeanTakesTheWindAtTheTop) {
  const auto mean = [](double top) {
    return FromComponents(
               *MotionOf({{0, 270, 10}, {3000, 270, 20}, {top, 270, 30}, {9000, 270, 90}}).Mean6km)
        .Spd;
  };
  EXPECT_NEAR(mean(6000), 20, 1e-3);
  EXPECT_NEAR(mean(5999), 20, 1e-3);
  EXPECT_NEAR(mean(6001), 20, 1e-3);
  EXPECT_NEAR(mean(5998), (10 + 20 + 30 + 30 + 2 * 60 / 3002.0) / 4, 1e-3);
  EXPECT_NEAR(mean(6100), (10 + 20 + 20 + 10 * 3000 / 3100.0) / 3, 1e-3);
}

TEST(StormMotion, LayersThatWindsStandFor) {
  const struct {
    const char* About;
    Rows Winds;
    bool Stands;
  } cases[] = {
      {"from 500 m on", {{500, 270, 10}, {3000, 270, 20}, {6000, 270, 30}}, true},
      {"from 501 m on", {{501, 270, 10}, {3000, 270, 20}, {6000, 270, 30}}, false},
      {"4 km apart", {{0, 270, 10}, {4000, 270, 20}, {6000, 270, 30}}, true},
      {"more", {{0, 270, 10}, {4001, 270, 20}, {6000, 270, 30}}, false},
      {"from below the ground", {{-2000, 270, 10}, {2000, 270, 20}, {6000, 270, 30}}, true},
      {"from too far below", {{-2001, 270, 10}, {2000, 270, 20}, {6000, 270, 30}}, false},
      {"three quarters", {{0, 270, 10}, {2000, 270, 20}, {4500, 270, 30}}, true},
      {"less", {{0, 270, 10}, {2000, 270, 20}, {4499, 270, 30}}, false},
      {"a gap across the top", {{0, 270, 10}, {3000, 270, 20}, {7001, 270, 30}}, false},
      {"one above it", {{0, 270, 10}, {3000, 270, 20}, {6000, 270, 30}, {15000, 270, 9}}, true}};
  for (const auto& c : cases) EXPECT_EQ(MotionOf(c.Winds).Mean6km.has_value(), c.Stands) << c.About;
  // One wind at the top of a layer that begins in time is its mean.
  const auto one = MotionOf({{499.5, 270, 10}, {3000, 270, 20}, {6000, 270, 30}});
  ASSERT_TRUE(one.MeanHalfKm);
  EXPECT_NEAR(FromComponents(*one.MeanHalfKm).Spd, 10, 1e-6);
  // The lowest wind is that of the ground up to 100 m; one more than 1 m below it is not.
  EXPECT_TRUE(MotionOf({{100, 270, 10}, {3000, 270, 20}, {6000, 270, 30}}).Shear6km);
  EXPECT_FALSE(MotionOf({{101, 270, 10}, {3000, 270, 20}, {6000, 270, 30}}).Shear6km);
  EXPECT_FALSE(MotionOf({{0, 270, 10}, {3000, 270, 20}, {5900, 270, 30}}).Shear6km);
  const auto shear = [](double lowest) {
    const auto found =
        MotionOf({{lowest, 270, 10}, {50, 270, 15}, {3000, 270, 20}, {6000, 270, 30}});
    return std::hypot(found.Shear6km->U, found.Shear6km->V);
  };
  EXPECT_NEAR(shear(-1), 20, 1e-3);
  EXPECT_NEAR(shear(-1.2), 15, 1e-3);
}

// The mean of 2 to 4 km, 270/30, by its settings.
TEST(StormMotion, TraditionalMotionOfALayer) {
  Options options;
  options.Motion = StormMotion::Traditional;
  options.ShearLayerBottomKm = 2;
  options.ShearLayerTopKm = 4;
  options.ShearLayerDeg = 20;
  options.ShearLayerPct = 50;
  const auto [right, left] =
      MoversOf({{0, 180, 10}, {2000, 270, 20}, {4000, 270, 40}, {6000, 180, 90}}, options);
  ExpectWind(right, 290, 15);
  ExpectWind(left, 250, 15);
}

TEST(StormMotion, EnteredByHandReplacesTheChosenMover) {
  SoundingRecord sounding = test::ReferenceConvective();
  const StormMotionResults computed = AnalyseStormMotion(sounding, {});
  EXPECT_EQ(computed.ChosenName(), "right mover");
  Options options;
  options.MotionMode = Scaling::Manual;
  options.ManualMotionDir = 230;
  options.ManualMotionSpd = 30;
  const StormMotionResults entered = AnalyseStormMotion(sounding, options);
  ExpectWind(entered.Right->Motion, 230, 30);
  EXPECT_NE(entered.Right->Helicity[2], computed.Right->Helicity[2]);
  EXPECT_EQ(entered.Left->Motion.U, computed.Left->Motion.U);
  EXPECT_EQ(entered.ChosenName(), "right mover, manual");

  // South of the equator the left mover is the cyclonic one, and chosen unless the user says else.
  sounding.LatHemi = "S";
  const StormMotionResults southern = AnalyseStormMotion(sounding, options);
  EXPECT_FALSE(southern.RightIsCyclonic);
  EXPECT_EQ(southern.ChosenName(), "left mover, manual");
  ExpectWind(southern.Left->Motion, 230, 30);
  options.Mover = StormMover::Right;
  EXPECT_TRUE(AnalyseStormMotion(sounding, options).RightIsChosen);
  // Without any wind there is a motion, but no helicity.
  EXPECT_EQ(AnalyseStormMotion(SoundingRecord{}, options).Right.value().Helicity[0], kNone);
}

}  // namespace
}  // namespace vexa::analysis
