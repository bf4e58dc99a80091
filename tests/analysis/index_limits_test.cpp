// Every limit at which an index decides, from both of its sides. Numbers by hand from the formulas
// that the index table names; soundings are made so that only one thing lies near a limit.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "analysis/hail_table.h"
#include "analysis/index_table.h"
#include "analysis/severe_table.h"
#include "config/options.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Profile;

double NumberOf(std::string_view label, const SoundingRecord& sounding,
                const Options& options = {}) {
  return ComputeIndex(*FindIndex(label), sounding, Analyse(sounding, options), options).Value;
}

TEST(IndexLimits, SIndexByVerticalTotals) {
  // TT less the depression of 5 °C at 700 hPa is 2 T850 - 7 - 2 T500 - 5.
  const struct {
    double Vertical, Term;
  } cases[] = {{21.9, 6}, {22, 6}, {22.1, 2}, {24.9, 2}, {25, 0}, {25.1, 0}};
  for (const auto& c : cases) {
    const SoundingRecord sounding = Profile({{1000, 5, 0},
                                             {850, -10, -17},
                                             {700, -15, -20},
                                             {500, -10 - c.Vertical, -60},
                                             {300, -60, -70}});
    EXPECT_NEAR(NumberOf("S{TT}", sounding), 2 * c.Vertical - 7 - 5 - c.Term, 0.011) << c.Vertical;
  }
}

// The column reaches 300 hPa, whether or not a level lies there: at a dew point of -30 °C w is
// 1.06 g/kg (0.508 hPa over water), so 10 hPa hold 0.0108 cm.
TEST(IndexLimits, WaterIsThatBelow300Hpa) {
  constexpr test::TempRow kGround{1000, 20, 10}, kMiddle{700, 0, -10}, kLast{310, -25, -30};
  constexpr test::TempRow kAt300{300, -25, -30}, kBeyond{290, -25, -30}, kFar{250, -25, -30};
  const double below310 = NumberOf("Water", Profile({kGround, kMiddle, kLast}));
  for (const SoundingRecord& sounding :
       {Profile({kGround, kMiddle, kLast, kAt300}), Profile({kGround, kMiddle, kLast, kBeyond}),
        Profile({kGround, kMiddle, kLast, kAt300, kFar})}) {
    EXPECT_NEAR(NumberOf("Water", sounding) - below310, 0.0108, 2e-4);
  }
}

// 13 kt times the root of what the lifted air is warmer by at 600 hPa, however little that is.
TEST(IndexLimits, GustsBeginWithTheLeastBuoyancy) {
  const auto gust = [](double aloft) {
    return NumberOf("T1Gust",
                    Profile({{1000, 30, 20}, {850, 16, 8}, {600, aloft, -30}, {300, -45, -60}}));
  };
  const double excess = std::pow(gust(-5) / 13, 2);
  ASSERT_GT(excess, 1);
  EXPECT_NEAR(gust(-5 + excess - 0.5), 9.19, 0.05);
  EXPECT_NEAR(gust(-5 + excess - 0.1), 4.11, 0.1);
  EXPECT_EQ(gust(-5 + excess + 0.05), 0);
}

TEST(IndexLimits, HainesByVariantLapseAndDepression) {
  const struct {
    const char* About;
    int ElevM;
    double Surface;                       // hPa
    double Lapse950, Lapse850, Lapse700;  // °C to 850, 700, 500 hPa
    double Dry850, Dry700;
    double Value;
  } cases[] = {
      // Below 1000 ft, 304.8 m: 950-850 hPa by 4 and 8, at 850 hPa by 6 and 10 °C.
      {"low 1+1", 300, 990, 3.9, 20, 30, 5.9, 30, 2},
      {"low 2+1", 300, 990, 4, 20, 30, 5.9, 30, 3},
      {"low 2+2", 304, 990, 7.9, 20, 30, 6, 30, 4},
      {"low 3+2", 304, 990, 8, 20, 30, 9.9, 30, 5},
      {"low 1+3", 300, 990, 3.9, 20, 30, 10, 30, 4},
      // To 3000 ft, 914.4 m: 850-700 hPa by 6 and 11, at 850 hPa by 6 and 13 °C.
      {"middle 1+1", 305, 960, 20, 5.9, 30, 5.9, 30, 2},
      {"middle 2+2", 600, 960, 20, 6, 30, 6, 30, 4},
      {"middle 2+2 again", 914, 960, 20, 10.9, 30, 12.9, 30, 4},
      {"middle 3+3", 600, 960, 20, 11, 0, 13, 0, 6},
      // Above: 700-500 hPa by 18 and 22, at 700 hPa by 15 and 21 °C.
      {"high 1+1", 915, 900, 20, 20, 17.9, 30, 14.9, 2},
      {"high 2+2", 1500, 900, 20, 20, 18, 30, 15, 4},
      {"high 2+2 again", 1500, 900, 20, 20, 21.9, 30, 20.9, 4},
      {"high 3+3", 1500, 900, 0, 0, 22, 0, 21, 6},
      // Where the ground's pressure lies above that of the variant, the next one.
      {"950 hPa are enough", 100, 950, 3.9, 20, 30, 5.9, 30, 2},
      {"949 are not", 100, 949, 0, 11, 0, 13, 0, 6},
      {"850 hPa are enough", 600, 850, 0, 5.9, 30, 5.9, 30, 2},
      {"849 are not", 600, 849, 0, 0, 22, 0, 21, 6},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const double at850 = 20, at700 = at850 - c.Lapse850;
    SoundingRecord sounding = Profile({});
    SetElevation(sounding, c.ElevM);
    if (c.Surface > 950) sounding.AddTemp(c.Surface, at850 + c.Lapse950 + 1, 0);
    if (c.Surface >= 950) sounding.AddTemp(950, at850 + c.Lapse950, 0);
    if (c.Surface < 950 && c.Surface > 850) sounding.AddTemp(c.Surface, at850 + 1, 0);
    if (c.Surface >= 850) sounding.AddTemp(850, at850, at850 - c.Dry850);
    if (c.Surface < 850) sounding.AddTemp(c.Surface, at850, at850 - c.Dry850);
    sounding.AddTemp(700, at700, at700 - c.Dry700);
    sounding.AddTemp(500, at700 - c.Lapse700, -60);
    sounding.AddTemp(300, -50, -70);
    EXPECT_EQ(NumberOf("Haines", sounding), c.Value);
  }
}

// 850 hPa lies near 1.5 km, 500 hPa near 5.6 km: one wind up to 3 km, another from 4 km up.
SoundingRecord Veering(double lowDir, double lowSpd, double highDir, double highSpd, double dewpt,
                       double at500) {
  return Profile(
      {{1000, 20, 15}, {850, 12, dewpt}, {700, 2, -8}, {500, at500, -40}, {300, -40, -60}},
      {{0, lowDir, lowSpd},
       {3000, lowDir, lowSpd},
       {4000, highDir, highSpd},
       {10000, highDir, highSpd}});
}

// 12 x 10 °C + 2 x 20 + 30 kt are 190; 125 (sin 90 + 0.2) = 150 by hand, others from sine tables.
TEST(IndexLimits, SweatCountsVeeringWindsOnly) {
  const struct {
    const char* About;
    double LowDir, LowSpd, HighDir, HighSpd, Shear;
  } cases[] = {
      {"veers by 90 degrees", 180, 20, 270, 30, 150},
      {"low wind from 130", 130, 20, 220, 30, 150},
      {"from 129", 129, 20, 219, 30, 0},
      {"low wind from 250", 250, 20, 310, 30, 133.25},
      {"from 251", 251, 20, 310, 30, 0},
      {"high wind from 210", 130, 20, 210, 30, 148.10},
      {"from 209", 130, 20, 209, 30, 0},
      {"high wind from 310", 220, 20, 310, 30, 150},
      {"from 311", 220, 20, 311, 30, 0},
      {"does not veer", 230, 20, 220, 30, 0},
      {"15 knots", 180, 15, 270, 15, 150},
      {"slower below", 180, 14.9, 270, 30, 0},
      {"slower above", 180, 20, 270, 14.9, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const double winds = 120 + 2 * c.LowSpd + c.HighSpd;
    EXPECT_NEAR(NumberOf("SWEAT", Veering(c.LowDir, c.LowSpd, c.HighDir, c.HighSpd, 10, -13)),
                winds + c.Shear, 0.05);
  }
  // TT 49 is no term, each degree beyond 20; a frosty dew point takes nothing away.
  EXPECT_NEAR(NumberOf("SWEAT", Veering(90, 20, 90, 30, 10, -13.5)), 190, 0.05);
  EXPECT_NEAR(NumberOf("SWEAT", Veering(90, 20, 90, 30, 10, -14)), 190 + 20, 0.05);
  EXPECT_NEAR(NumberOf("SWEAT", Veering(90, 20, 90, 30, -5, -13)), 70, 0.05);
}

// Siple and Passel: -10 °C in 20 kt are -29.73 °C; up to 4 mph, 3.4736 kt, the air's own.
TEST(IndexLimits, WindChillBeginsAt4MilesAnHour) {
  const auto chill = [](double speed) {
    return NumberOf("Wind-Chill", Profile({{1000, -10, -12}, {700, -20, -30}}, {{0, 0, speed}}));
  };
  EXPECT_NEAR(chill(20), -29.73, 0.01);
  EXPECT_NEAR(chill(10), -21.53, 0.01);
  EXPECT_DOUBLE_EQ(chill(3.47), -10);
  EXPECT_GT(chill(3.48), -10);  // the formula meets 14 °F a little above
}

// A low inversion keeps the surface parcel; else the 850 hPa air decides how warm it gets.
TEST(IndexLimits, GustsUnderALowInversion) {
  const auto heated = [](double surface, double inversionTop) {
    // 850 hPa at 18 °C comes to 31.9 °C at 1000 hPa.
    SoundingRecord sounding = Profile({});
    sounding.AddTemp(surface, 24, 16);
    if (surface > 850) sounding.AddTemp(850, 18, 8);
    if (inversionTop > 0) {
      sounding.AddTemp(inversionTop + 1, 10, 2);
      sounding.AddTemp(inversionTop, 12.6, 2);
    }
    sounding.AddTemp(600, -2, -20);
    sounding.AddTemp(500, -14, -30);
    sounding.AddTemp(300, -45, -60);
    const Options options;
    const AnalysisResults results = Analyse(sounding, options);
    const std::string text = Explain(*FindIndex("T1Gust"), sounding, results, options);
    return text.find("Tmax") != std::string::npos;
  };
  EXPECT_TRUE(heated(1000, 0));
  EXPECT_FALSE(heated(1000, 800));  // its top 200 hPa above the ground
  EXPECT_TRUE(heated(1000, 799));
  EXPECT_TRUE(heated(851, 0));
  EXPECT_FALSE(heated(850, 0));
}

// The wind of the lowest 1500 m stands for that at 850 hPa where this lies below the ground.
TEST(IndexLimits, PropagationBesideTheLowLevelJet) {
  const auto speed = [](double surface, int elevation, double jetHeight) {
    SoundingRecord sounding = Profile({});
    SetElevation(sounding, elevation);
    sounding.AddTemp(surface, 20, 5);
    sounding.AddTemp(700, 5, -5);
    sounding.AddTemp(500, -12, -30);
    sounding.AddTemp(250, -50, -60);
    sounding.AddWind(elevation, 180, 10);
    sounding.AddWind(elevation + jetHeight - 1, 180, 10);
    sounding.AddWind(elevation + jetHeight, 180, 50);
    sounding.AddWind(elevation + jetHeight + 1, 180, 10);
    sounding.AddWind(12000, 180, 10);
    return NumberOf("MBE Vector", sounding);
  };
  // (jet + 3 x 10) / 4 - jet, against 10 kt of the wind at 850 hPa itself, which gives 0.
  EXPECT_NEAR(speed(840, 1500, 1000), 30, 0.2);
  EXPECT_NEAR(speed(840, 1500, 1500), 30, 0.2);
  EXPECT_NEAR(speed(840, 1500, 1501), 0, 0.2);
  EXPECT_NEAR(speed(849, 1500, 700), 30, 0.2);
  EXPECT_NEAR(speed(850, 1500, 700), 0, 0.2);
}

TEST(IndexLimits, PlateausHaveNoBoydenIndex) {
  const auto exists = [](double surface) {
    return NumberOf("Boyden", Profile({{surface, 10, 5}, {500, -20, -30}, {300, -45, -60}})) !=
           kNone;
  };
  EXPECT_FALSE(exists(699));
  EXPECT_TRUE(exists(700));
  EXPECT_FALSE(NumberOf("Mean RH", Profile({{500, 0, -5}, {300, -45, -60}})) != kNone);
  EXPECT_TRUE(NumberOf("Mean RH", Profile({{501, 0, -5}, {300, -45, -60}})) != kNone);
}

// Melting takes from a stone and makes none: where the table has no hail the wet-bulb zero, known
// or not, changes nothing. Where it has some, what reaches the ground is not known without it.
TEST(IndexLimits, HailNeedsTheWetBulbZeroOnlyWhereThereIsSome) {
  const auto hail = [](test::TempRow low, test::TempRow middle, test::TempRow last, bool isMoist,
                       const std::vector<std::pair<double, double>>& aloft) {
    SoundingRecord sounding = Profile({low, middle, last});
    for (const auto& [press, temp] : aloft) {
      sounding.AddTemp(press, temp, isMoist ? temp - 12 : kMissing);
    }
    EXPECT_EQ(NumberOf("WBZ Hgt", sounding) != kNone, isMoist);
    return NumberOf("Hail", sounding);
  };
  for (const bool isMoist : {true, false}) {
    SCOPED_TRACE(isMoist);
    // From -5 °C at 840 hPa to the CCL at 907 hPa the dry descent is 5.9 °C, and the cloud is 2.5
    // °C warmer than the air: the first column of the table begins at 3.25.
    EXPECT_EQ(hail({1000, 8.5, 3}, {950, 4.6, 2.2}, {898, 0.6, 0.4}, isMoist,
                   {{846, -4.6}, {700, -16}, {500, -36}, {300, -62}}),
              0);
    // 10.0 and 27 °C: row 20 and column 5 of the table, 50 mm, of which nothing melts.
    const double large = hail({1000, 30, 22}, {850, 19, 12}, {800, 14.5, 8}, isMoist,
                              {{700, 6}, {500, -17}, {300, -48}, {200, -58}, {150, -55}});
    if (isMoist) {
      EXPECT_NEAR(large, 50 / 25.4, 0.01);
    } else {
      EXPECT_EQ(large, kNone);
    }
  }
}

// 301.16 K at the ground (28 °C at 1000 hPa), and what the levels above have.
TEST(IndexLimits, MixingEndsWhereTheAirIsPotentiallyWarmer) {
  const auto height = [](double at900) {
    return NumberOf("Mixing Hgt",
                    Profile({{1000, 28, 10}, {900, at900, 5}, {800, 15, 0}, {500, -10, -30}}));
  };
  // (28 + 273.16) 0.9^0.2856 - 273.16 = 19.08 °C is neutral: warmer air ends mixing at the ground.
  EXPECT_EQ(height(19.2), 0);
  EXPECT_GT(height(19.0), 900);
  // The last level may be the first that is warmer.
  EXPECT_GT(NumberOf("Mixing Hgt", Profile({{1000, 28, 10}, {900, 19, 5}, {850, 20, 0}})), 900);
}

// Steps of the severe-weather table: a limit itself counts.
TEST(IndexLimits, SevereStepsIncludeTheirLimits) {
  const auto row = [](std::string_view text, SevereLimits limits) {
    const auto entries = SevereEntries();
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (entries[i].Text == text) return SevereRow{static_cast<int>(i) + 1, limits};
    }
    ADD_FAILURE() << text;
    return SevereRow{2, limits};
  };
  const auto expect = [](const SevereRow& of, const std::vector<std::pair<double, int>>& steps) {
    for (const auto& [value, step] : steps) EXPECT_EQ(SevereStep(of, value), step) << value;
  };
  expect(row("K Index", {{20, 30, 40}, {}}),
         {{19.9, 0}, {20, 1}, {29.9, 1}, {30, 2}, {39.9, 2}, {40, 3}});
  expect(row("LI - Lifted Index", {{0, -4, -7}, {}}),
         {{0.1, 0}, {0, 1}, {-3.9, 1}, {-4, 2}, {-6.9, 2}, {-7, 3}});
  expect(row("WBZ - WetBulb Zero Hgt (ft,AGL)", {{5000, 6000, 7000}, {12000, 11000, 10000}}),
         {{4999, 0},
          {5000, 1},
          {6000, 2},
          {7000, 3},
          {10000, 3},
          {10001, 2},
          {11001, 1},
          {12000, 1},
          {12001, 0}});
}

// The sums of every row and column as printed by Hand and Cappelluti (2011): one wrong cell changes
// two of them.
TEST(HailTable, RowsAndColumnsAddUpAsPrinted) {
  constexpr std::array kRows = {29,  42,  64,  89,  109, 134, 167, 204, 242, 277, 287, 322, 345,
                                380, 400, 425, 455, 485, 510, 550, 560, 590, 605, 645, 650, 655};
  constexpr std::array kColumns = {145, 286, 488, 670, 857, 1025, 1210, 1360, 1535, 1645};
  std::array<int, kColumns.size()> columns{};
  for (std::size_t row = 0; row < kRows.size(); ++row) {
    int sum = 0;
    for (std::size_t column = 0; column < columns.size(); ++column) {
      const int size =
          HailDiameter(0.5 * static_cast<double>(row), 5 * static_cast<double>(column + 1));
      sum += size;
      columns[column] += size;
    }
    EXPECT_EQ(sum, kRows[row]) << 0.5 * static_cast<double>(row) << " C warm";
  }
  EXPECT_EQ(columns, kColumns);
}

// The published example is a cloud of 6 degrees over a descent of 21: one inch. Cells reach
// half-way to their neighbours, the last ones as far as anything goes.
TEST(HailTable, CellsReachHalfWay) {
  EXPECT_EQ(HailDiameter(6, 21), 25);
  EXPECT_EQ(HailDiameter(6, 22.4), 25);
  EXPECT_EQ(HailDiameter(6, 22.6), 40);
  EXPECT_EQ(HailDiameter(6.24, 17.6), 25);
  EXPECT_EQ(HailDiameter(6.26, 17.6), 30);
  EXPECT_EQ(HailDiameter(20, 90), 120);
  EXPECT_EQ(HailDiameter(-0.3, 50), 0);
  EXPECT_EQ(HailDiameter(12, 2.4), 0);
}

// The melting of the same authors, by the height of the wet-bulb zero: a stone of each class, from
// its least size to the one before the next.
TEST(HailTable, MeltsByTheHeightOfTheWetBulbZero) {
  constexpr int kLeast[] = {2, 5, 10, 20, 25, 50, 75, 100};
  constexpr int kMost[] = {4, 9, 19, 24, 49, 74, 99, 120};
  constexpr struct {
    double Zero;
    std::array<int, 8> Left;
  } kCases[] = {{3350, {0, 5, 10, 15, 25, 50, 65, 75}}, {3550, {0, 0, 5, 10, 20, 20, 25, 30}},
                {3750, {0, 0, 0, 5, 10, 15, 15, 15}},   {3950, {0, 0, 0, 0, 5, 10, 10, 10}},
                {4150, {0, 0, 0, 0, 0, 0, 5, 5}},       {4400, {}}};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(AfterMelting(kMost[i], 3349.9), kMost[i]);
  for (std::size_t row = 0; row < std::size(kCases); ++row) {
    const double next = row + 1 < std::size(kCases) ? kCases[row + 1].Zero : 9000;
    for (std::size_t i = 0; i < 8; ++i) {
      EXPECT_EQ(AfterMelting(kLeast[i], kCases[row].Zero), kCases[row].Left[i]);
      EXPECT_EQ(AfterMelting(kMost[i], next - 0.1), kCases[row].Left[i]);
    }
  }
}

}  // namespace
}  // namespace vexa::analysis
