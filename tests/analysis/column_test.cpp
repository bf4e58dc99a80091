// Columns of levels beside the routines that take one level at a time.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/interpolate.h"
#include "analysis/layers.h"
#include "analysis/level_listing.h"
#include "analysis/level_profile.h"
#include "analysis/moist_air.h"
#include "analysis/standard_atmosphere.h"
#include "config/options.h"
#include "core/markers.h"

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
  for (double ratio = 0.87; ratio < 1.15; ratio += 0.0007) {
    EXPECT_NEAR(LogOfNearRatio(250 * ratio, 250), std::log(ratio), kLastPlaces) << ratio;
  }
}

TEST(ColumnMath, SumsOfOneSignOfAnyLength) {
  std::mt19937 random(7);
  std::vector<double> values(70);
  for (double& value : values) value = std::uniform_real_distribution<double>(-9, 9)(random);
  for (std::size_t from : {0, 1, 5}) {
    for (std::size_t to = from; to <= values.size(); ++to) {
      double positive = 0, negative = 0;
      for (std::size_t i = from; i < to; ++i) (values[i] > 0 ? positive : negative) += values[i];
      EXPECT_NEAR(PositiveSum(values.data(), from, to), positive, 1e-12) << from << '-' << to;
      EXPECT_NEAR(NegativeSum(values.data(), from, to), negative, 1e-12) << from << '-' << to;
    }
  }
}

// One odd value in a column of any length, at any place: where it stands is where it is found.
TEST(ColumnScan, FindsWhatIsOddWhereverItStands) {
  constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const std::size_t count : {1u, 31u, 32u, 33u, 100u}) {
    for (std::size_t odd = 0; odd < count; ++odd) {
      const auto column = [&](double common, double value) {
        std::vector<double> values(count, common);
        values[odd] = value;
        return values;
      };
      const std::vector<double> high = column(5, 6), low = column(5, 4);
      const std::vector<double> none = column(5, kNoNumber), cold = column(4, kNoNumber);
      EXPECT_EQ(FirstAbove(high.data(), 0, count, 5), odd);
      EXPECT_EQ(FirstBelow(low.data(), 0, count, 5), odd);
      EXPECT_EQ(FirstNotAbove(low.data(), 0, count, 4), odd);
      EXPECT_EQ(FirstNotBelow(high.data(), 0, count, 6), odd);
      EXPECT_EQ(FirstNotAbove(none.data(), 0, count, 4), odd);
      EXPECT_EQ(FirstNotBelow(cold.data(), 0, count, 5), odd);
      EXPECT_EQ(FirstAbove(none.data(), 0, count, 5), count);
      EXPECT_EQ(FirstAbove(high.data(), odd + 1, count, 5), count);
      EXPECT_EQ(CountToLastNotBelow(high.data(), count, 6), odd + 1);
      EXPECT_EQ(CountToLastNotBelow(none.data(), count, 6), 0u);
      EXPECT_EQ(FirstRise(high.data(), 0, count), odd == 0 ? count : odd - 1);
      EXPECT_EQ(LeastOf(low.data(), 0, count), 4);
      EXPECT_EQ(MostOf(high.data(), 0, count), 6);
      EXPECT_EQ(LeastOf(none.data(), 0, count), count > 1 ? 5 : kInfinity);
      EXPECT_EQ(MostOf(high.data(), odd + 1, count), odd + 1 < count ? 5 : -kInfinity);
      EXPECT_EQ(HasFall(high.data(), count), odd + 1 < count);
      EXPECT_EQ(HasFall(low.data(), count), odd > 0);
      EXPECT_EQ(FirstRise(low.data(), 0, count), odd + 1 == count ? count : odd);
    }
  }
}

// Of pressures in any order, the impossible among them.
TEST(StandardAtmosphere, ColumnsOfPressuresGiveTheHeightsOfEach) {
  std::mt19937 random(11);
  std::vector<double> pressures = {0, -5, 1e5, std::nan(""), 1013.25, 226.3204, 3000, 0.0088};
  for (double press = 4000; press > 0.005; press *= 0.991) pressures.push_back(press);
  for (int pass = 0; pass < 2; ++pass) {
    std::vector<double> logs, heights(pressures.size());
    for (const double press : pressures) logs.push_back(press > 0 ? std::log(press) : 0);
    FillIsaHeights(pressures.data(), logs.data(), pressures.size(), heights.data());
    for (std::size_t i = 0; i < pressures.size(); ++i) {
      EXPECT_NEAR(heights[i], IsaHeight(pressures[i]), 1e-9) << pressures[i];
    }
    std::ranges::shuffle(pressures, random);
  }
}

// Winds that are not there are left out wherever they stand, and none is taken for another.
TEST(DeriveWinds, LeavesOutWhatIsNoWind) {
  const auto heightsOf = [](int gap, double height, double dir, double spd) {
    SoundingRecord sounding;
    for (int i = 0; i < 20; ++i) {
      i == gap ? sounding.AddWind(height, dir, spd) : sounding.AddWind(100 * i, 90, i);
    }
    const WindProfile winds = DeriveWinds(sounding);
    EXPECT_EQ(winds.Vectors.size(), winds.Heights.size());
    for (std::size_t i = 0; i < winds.Count(); ++i) {
      EXPECT_NEAR(winds.Vectors[i].U, winds.Heights[i] / 100, 1e-6);
    }
    return winds.Count();
  };
  for (const int gap : {0, 9, 19}) {
    EXPECT_EQ(heightsOf(gap, 100 * gap, 90, gap), 20u);
    EXPECT_EQ(heightsOf(gap, kNone, 90, 5), 19u);
    EXPECT_EQ(heightsOf(gap, kNotReached, 90, 5), 19u);
    EXPECT_EQ(heightsOf(gap, 100 * gap, kMissing, 5), 19u);
    EXPECT_EQ(heightsOf(gap, 100 * gap, 90, kNone), 19u);
    EXPECT_EQ(heightsOf(gap, 100 * gap, 90, 9999), 19u);
  }
}

// Levels are passed over by the dozen where nothing changes: not those where something does.
TEST(FreezingLevels, AreFoundAmongHundredsOfLevels) {
  for (const int warm : {1, 2, 63, 64, 65, 66, 128, 129, 130, 290}) {
    for (const double first : {-1.0, 0.0}) {
      SCOPED_TRACE(testing::Message() << warm << ' ' << first);
      SoundingRecord sounding;
      for (int i = 0; i < 300; ++i) {
        sounding.AddTemp(1000 - 3 * i, i < warm ? 1 : i == warm ? first : -1, kMissing);
      }
      const std::vector<LevelPoint> found = FindFreezingLevels(DeriveLevels(sounding, Options{}));
      ASSERT_EQ(found.size(), 1u);
      const double above = 1000 - 3 * warm;
      EXPECT_NEAR(found[0].Press, first == 0 ? above : std::sqrt(above * (above + 3)), 1e-6);
    }
  }
}

// 6.5 K/km up to 10 km and from 15 to 20 km, none above either: both tropopauses stand where the
// lapse rate ends, wherever among hundreds of levels that is.
TEST(Tropopauses, AreFoundAmongHundredsOfLevels) {
  for (const int steps : {30, 31, 32, 33, 250, 411}) {
    SoundingRecord sounding;
    SetElevation(sounding, 0);
    const double step = 5000.0 / steps;
    double temp = 15;
    for (int i = 0; i <= 5 * steps; ++i) {
      const double height = step * i;
      sounding.AddTemp(1013 * std::exp(-height / 7500), temp, kMissing);
      const bool isStable = (i >= 2 * steps && i < 3 * steps) || i >= 4 * steps;
      if (!isStable) temp -= 0.0065 * step;
    }
    LevelProfile levels = DeriveLevels(sounding, Options{});
    for (int i = 1; i <= levels.Count(); ++i) levels.Height(i) = step * (i - 1);
    const std::vector<LevelPoint> found = FindTropopauses(levels);
    ASSERT_EQ(found.size(), 2u) << steps;
    EXPECT_NEAR(found[0].Height, 10000, 1e-6);
    EXPECT_NEAR(found[1].Height, 20000, 1e-6);
  }
}

// Where all others are too warm by a degree, one that is cold enough, or humid enough, makes a
// layer wherever it stands.
TEST(Contrails, OfOneLevelAmongHundreds) {
  constexpr int kLevels = 500;
  const auto pressAt = [](int i) { return 400 * std::exp(-0.006 * i); };
  for (const int odd : {1, 15, 16, 17, 64, 127, 128, 129, 143, 144, 300, 498}) {
    for (const bool isCold : {true, false}) {
      SCOPED_TRACE(testing::Message() << odd << (isCold ? " cold" : " humid"));
      SoundingRecord sounding;
      for (int i = 0; i < kLevels; ++i) {
        const double press = pressAt(i);
        sounding.AddTemp(press, ContrailTemp(press, 60) + 1, kMissing);
      }
      LevelProfile levels = DeriveLevels(sounding, Options{});
      for (int i = 1; i <= kLevels; ++i) levels.RelHumidity(i) = 60;
      const int level = odd + 1;
      if (isCold) levels.Temp(level) -= 2;
      if (!isCold) levels.RelHumidity(level) = 100;
      const std::vector<AirLayer> layers = FindContrails(levels, 0);
      ASSERT_EQ(layers.size(), 1u);
      EXPECT_LT(layers[0].Base.Height, levels.Height(level));
      EXPECT_GT(layers[0].Base.Height, levels.Height(level - 1));
      EXPECT_GT(layers[0].Top.Height, levels.Height(level));
      EXPECT_LT(layers[0].Top.Height, levels.Height(level + 1));
    }
  }
}

// The same air, level by level and among hundreds, one of them with a humidity that no air has.
TEST(Contrails, OfManyLevelsAsOfEach) {
  SoundingRecord sounding;
  for (int i = 0; i < 400; ++i) {
    const double press = 1000 * std::exp(-0.012 * i);
    const double temp = std::max(15 - 0.25 * i, -72.0) + 4 * std::sin(0.3 * i);
    sounding.AddTemp(press, temp, i % 7 == 0 ? kMissing : temp - 6 - 5 * std::sin(0.7 * i));
  }
  LevelProfile levels = DeriveLevels(sounding, Options{});
  levels.RelHumidity(150) = 1500;
  levels.Temp(151) = 9000;
  const std::vector<AirLayer> layers = FindContrails(levels, 60);
  EXPECT_GT(layers.size(), 3u);
  const auto isInside = [&](double height) {
    return std::ranges::any_of(layers, [height](const AirLayer& layer) {
      return height >= layer.Base.Height && height <= layer.Top.Height;
    });
  };
  for (int i = 1; i <= levels.Count(); ++i) {
    if (levels.Press(i) > 500) continue;
    const double humidity = IsMissing(levels.RelHumidity(i)) ? 60 : levels.RelHumidity(i);
    const double threshold = ContrailTemp(levels.Press(i), humidity);
    if (IsMissing(threshold) || std::fabs(levels.Temp(i) - threshold) < 1e-3) continue;
    EXPECT_EQ(isInside(levels.Height(i)), levels.Temp(i) < threshold) << levels.Press(i);
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

// Levels are derived so many at a time, and what pads the last of them is no level.
TEST(DeriveLevels, OfFewLevelsAsOfManyAboveThem) {
  SoundingRecord all;
  for (int i = 0; i < 100; ++i) {
    all.AddTemp(1000 - 7 * i, 25 - 0.6 * i, i % 41 == 40 ? kMissing : 20 - 0.9 * i);
  }
  const LevelProfile many = DeriveLevels(all, Options{});
  for (const int count : {0, 1, 31, 32, 33, 64, 65, 99}) {
    SCOPED_TRACE(count);
    SoundingRecord part;
    for (int i = 1; i <= count; ++i) part.AddTemp(all.Press(i), all.Temp(i), all.Dewpt(i));
    const LevelProfile few = DeriveLevels(part, Options{});
    for (const auto array :
         {&LevelProfile::Press, &LevelProfile::LogPress, &LevelProfile::Temp, &LevelProfile::Dewpt,
          &LevelProfile::Height, &LevelProfile::ThetaE, &LevelProfile::Theta,
          &LevelProfile::VirtualTemp, &LevelProfile::MixingRatio, &LevelProfile::RelHumidity}) {
      Levels<double> expected = many.*array;
      expected.Resize(count);
      EXPECT_EQ(few.*array, expected);
    }
    ASSERT_EQ(few.WetBulb.Count(), count);
    for (int i = 1; i <= count; ++i) {  // closer where a neighbour needs a further step
      EXPECT_NEAR(few.WetBulb(i), many.WetBulb(i), 2e-6) << i;
    }
    EXPECT_EQ(DeriveHeights(part, SaturationOver::Water), few.Height);
  }
}

}  // namespace
}  // namespace vexa::analysis
