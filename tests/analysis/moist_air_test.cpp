// Expected values: worked with an independent program in double precision, or as the row says.
#include "analysis/moist_air.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "analysis/saturated_point.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

TEST(SatVapor, FollowsTheFormulas) {
  const struct {
    double Temp, Water, Ice;
  } cases[] = {{30, 42.4516, 42.4516}, {20, 23.3853, 23.3853}, {10, 12.2791, 12.2791},
               {0, 6.1114, 6.1114},    {-10, 2.8645, 2.5989},  {-20, 1.2548, 1.0325},
               {-40, 0.1893, 0.1284}};
  for (const auto& c : cases) {
    EXPECT_NEAR(SatVapor(c.Temp), c.Water, 1e-4) << c.Temp;
    EXPECT_NEAR(SatVapor(c.Temp, SaturationOver::Ice), c.Ice, 1e-4) << c.Temp;
  }
  for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
    for (const double temp : {-1e6, -274.0, -273.16, -273.1599, -272.5, 999.9, 1e6}) {
      EXPECT_TRUE(std::isfinite(SatVapor(temp, over))) << temp;
      EXPECT_GE(SatVapor(temp, over), 0) << temp;
    }
  }
}

TEST(ThetaPoint, GivesFourValuesAndGuardsTheLatentTerm) {
  const PointThermo warm = ThetaPoint(1000, 20);
  EXPECT_NEAR(warm.Theta, 293.16, 2e-5);  // the temperature is held in single precision
  EXPECT_NEAR(warm.VaporPressure, 23.3853, 1e-4);
  EXPECT_NEAR(warm.MixingRatio, 0.0148935, 1e-7);
  EXPECT_NEAR(warm.ThetaE, 335.440, 1e-3);
  const PointThermo cool = ThetaPoint(850, 10);
  EXPECT_NEAR(cool.Theta, 296.613, 1e-3);
  EXPECT_NEAR(cool.MixingRatio, 0.00911683, 1e-8);
  EXPECT_NEAR(cool.ThetaE, 323.051, 1e-3);

  // 42.45 hPa of vapour in air of 43 hPa: x = -420, so no value.
  EXPECT_EQ(ThetaPoint(43, 30).ThetaE, 0);
  EXPECT_EQ(ThetaPoint(SatVapor(30), 30).MixingRatio, 0);
  for (const double press : {-5.0, 0.0, 1e-300}) {
    for (const double temp : {-300.0, -273.16, 20.0, 1e5}) {
      EXPECT_TRUE(std::isfinite(ThetaPoint(press, temp).MixingRatio)) << press << ' ' << temp;
      EXPECT_FALSE(std::isnan(ThetaPoint(press, temp).ThetaE)) << press << ' ' << temp;
    }
  }
}

TEST(MoistAir, CondensationAndItsFriends) {
  EXPECT_NEAR(Condense(25, 15), 12.71577, 1e-5);
  EXPECT_EQ(Condense(12.5, 12.5), 12.5);
  EXPECT_NEAR(LclPressure(1000, 25, Condense(25, 15)), 863.02, 0.01);
  EXPECT_NEAR(LclPressure(1000, 25, 25), 1000, 1e-3);  // θ is held in single precision
  EXPECT_LE(LclPressure(1000, 25, 25), 1000);
  EXPECT_NEAR(LevelThetaE(1000, 25, 15), 329.513, 1e-3);
  EXPECT_NEAR(WetBulb(1000, 25, 15), 18.404, 1e-3);
  EXPECT_NEAR(VirtualTemp(25, ThetaPoint(1000, 15).MixingRatio), 26.935, 1e-3);
  EXPECT_NEAR(RelativeHumidity(20, 10), 52.51, 0.01);
  EXPECT_NEAR(DewpointFromMixingRatio(850, 0.00911683), 10, 1e-4);
  EXPECT_TRUE(IsMissing(DewpointFromMixingRatio(850, 0)));
  EXPECT_NEAR(DryAdiabatTemp(293.16, 1000), 20, 1e-9);
}

TEST(MoistAir, DewpointGivesTheMixingRatioBack) {
  for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
    for (const double press : {1040.0, 500.0, 180.0}) {
      for (double temp = -109.5; temp < 30; temp += 6.5) {
        const double mixing = ThetaPoint(press, temp, over).MixingRatio;
        EXPECT_NEAR(DewpointFromMixingRatio(press, mixing, over), temp, 1e-6) << press;
      }
    }
    // The ends of what is looked for.
    EXPECT_NEAR(DewpointFromMixingRatio(1000, 0.3, over), 50, 1e-5);
    EXPECT_NEAR(DewpointFromMixingRatio(1000, 1e-300, over), -110, 1e-5);
  }
}

// The formulas that the searches use, without guards, are those of SatVapor.
TEST(SaturationAt, AgreesWithSatVaporAndItsOwnSlope) {
  for (double temp = -119; temp <= 60; temp += 3.7) {
    for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
      const double tempK = temp + kKelvinOffset;
      const VaporPoint point = SaturationAt(FormulaAt(over, temp), tempK, std::log(tempK));
      EXPECT_NEAR(point.Pressure / SatVapor(temp, over), 1, 1e-12) << temp;
      const double rise = std::log(SatVapor(temp + 5e-4, over) / SatVapor(temp - 5e-4, over));
      EXPECT_NEAR(point.LogSlope, rise / 1e-3, 1e-7) << temp;
    }
  }
}

TEST(LiftSat, InvertsThetaPointWhereverASolutionExists) {
  EXPECT_NEAR(LiftSat(329.513, 500).Temp, -11.438, 1e-3);
  std::mt19937 random(20261121);
  std::uniform_real_distribution<double> logPress(std::log(1.0), std::log(1100.0));
  std::uniform_real_distribution<double> anyTemp(-119.99, 90);
  int tried = 0;
  while (tried < 20000) {
    const double press = std::exp(logPress(random));
    const double temp = tried % 20 == 0 ? (tried % 3 - 1) * 1e-4 : anyTemp(random);
    if (SatVapor(temp) > 0.3 * press) continue;
    ++tried;
    for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
      const LiftSatResult lifted = LiftSat(ThetaPoint(press, temp, over).ThetaE, press, over);
      ASSERT_FALSE(lifted.Failed) << press << ' ' << temp;
      ASSERT_NEAR(lifted.Temp, temp, 1e-3) << press;
    }
  }
}

TEST(LiftSat, GivesTheNearerEndAndItsLabelWithoutASolution) {
  EXPECT_TRUE(LiftSat(150, 1000).Failed);  // dry air of 150 K at 1000 hPa
  EXPECT_EQ(LiftSat(150, 1000).Temp, -120);
  EXPECT_TRUE(LiftSat(1e6, 500).Failed);
  EXPECT_NEAR(SatVapor(LiftSat(1e6, 500).Temp), 150, 1e-3);  // the warmest with e <= 0.3 p
  for (const double thetaE : {0.0, -1.0, std::nan(""), HUGE_VAL, 1e-300}) {
    for (const double press : {-1.0, 0.0, 1e-9, 500.0, 1e9, std::nan("")}) {
      EXPECT_TRUE(std::isfinite(LiftSat(thetaE, press).Temp)) << thetaE << ' ' << press;
    }
  }
}

}  // namespace
}  // namespace vexa::analysis
