// Columns of levels beside the routines that take one level at a time.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "analysis/column_math.h"
#include "analysis/level_profile.h"
#include "analysis/moist_air.h"
#include "config/options.h"

namespace vexa::analysis {
namespace {

TEST(ColumnMath, GivesTheLibrarysNumbers) {
  constexpr double kLastPlaces = 3e-16;
  EXPECT_EQ(ColumnLog(1), 0);
  EXPECT_EQ(ColumnExp(0), 1);
  for (double x = 1e-9; x < 1e9; x *= 1.0137) {
    EXPECT_NEAR(ColumnLog(x), std::log(x), kLastPlaces * std::max(1.0, std::fabs(std::log(x))));
  }
  for (double x = -40; x < 40; x += 0.0373) {
    EXPECT_NEAR(ColumnExp(x) / std::exp(x), 1, kLastPlaces) << x;
  }
  for (double x = -20; x < 200; x += 0.0191) {
    const SinCos turned = ColumnSinCos(x);
    EXPECT_NEAR(turned.Sin, std::sin(x), kLastPlaces) << x;
    EXPECT_NEAR(turned.Cos, std::cos(x), kLastPlaces) << x;
  }
  for (double ratio = 0.7; ratio < 1.43; ratio += 0.0007) {
    EXPECT_NEAR(LogOfRatio(250 * ratio, 250), std::log(ratio), kLastPlaces) << ratio;
  }
}

// Air of every kind, saturated beyond measure, too dry, near boiling or without a dew point, so
// that runs of ordinary levels of every length come about.
TEST(DeriveLevels, OfAnyAirAsTheRoutinesForOneLevelGiveThem) {
  std::mt19937 random(20261123);
  const auto between = [&random](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  SoundingRecord sounding;
  for (int i = 0; i < 4000; ++i) {
    const double press = std::exp(between(std::log(0.5), std::log(1090.0)));
    const double warmest = std::min(60.0, 60 + 25 * std::log(press / 1000));
    const double temp = i % 50 == 0 ? 75 : between(-112, std::max(warmest, -60.0));
    const double depression = i % 9 == 0 ? 0 : between(-1, i % 11 == 0 ? 90 : 45);
    sounding.AddTemp(press, temp,
                     between(0, 1) < 0.1 ? kMissing : std::max(temp - depression, -140.0));
  }
  for (const SaturationOver over : {SaturationOver::Water, SaturationOver::Ice}) {
    Options options;
    options.Saturation = over;
    const LevelProfile levels = DeriveLevels(sounding, options);
    for (int i = 1; i <= levels.Count(); ++i) {
      const double press = levels.Press(i), temp = levels.Temp(i), dewpt = levels.Dewpt(i);
      SCOPED_TRACE(testing::Message() << press << ' ' << temp << ' ' << dewpt);
      EXPECT_NEAR(levels.Theta(i) / DryTheta(press, temp), 1, 1e-14);
      if (IsMissing(dewpt)) {
        EXPECT_EQ(levels.VirtualTemp(i), temp);
        EXPECT_TRUE(IsMissing(levels.WetBulb(i)) && IsMissing(levels.ThetaE(i)));
        continue;
      }
      const double mixing = ThetaPoint(press, dewpt, over).MixingRatio;
      const double thetaE = LevelThetaE(press, temp, dewpt, over);
      EXPECT_NEAR(levels.MixingRatio(i), mixing, 1e-6 * std::fabs(mixing));
      EXPECT_NEAR(levels.VirtualTemp(i), VirtualTemp(temp, mixing), 1e-4);
      EXPECT_NEAR(levels.RelHumidity(i) / RelativeHumidity(temp, dewpt, over), 1, 1e-6);
      EXPECT_NEAR(levels.ThetaE(i), thetaE, 1e-6 * thetaE);
      EXPECT_NEAR(levels.WetBulb(i), WetBulb(press, temp, dewpt, over), 1e-4);
    }
  }
}

}  // namespace
}  // namespace vexa::analysis
