// The rules by which levels are left out, each with a sounding on either side of its limit. Middle
// pressures are geometric means, so that a line in ln p passes half-way.
#include "core/level_filter.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>
#include <vector>

#include "core/markers.h"
#include "support/soundings.h"

namespace vexa {
namespace {

using test::Profile;
using test::TempRow;

TEST(LevelFilter, TemperaturesOffTheLineStay) {
  struct Case {
    const char* About;
    TempRow Middle;
    bool Stays;
  };
  // Near the ground: 990 hPa, 970.299 hPa; the line passes 9 and 5 C.
  const Case low[] = {{"0.1 C", {980.1, 9.098, 5}, false},
                      {"0.1 C of warmth", {980.1, 9.102, 5}, true},
                      {"0.1 C of cold", {980.1, 8.898, 5}, true},
                      {"0.15 C of the dew point", {980.1, 9, 5.147}, false},
                      {"and more", {980.1, 9, 5.153}, true},
                      {"less of it", {980.1, 9, 4.847}, true},
                      {"no temperature", {980.1, kMissing, 5}, true}};
  for (const Case& c : low) {
    const SoundingRecord thin = FilterLevels(Profile({{990, 10, 6}, c.Middle, {970.299, 8, 4}}));
    EXPECT_EQ(thin.NumTempLevels(), c.Stays ? 3 : 2) << c.About;
  }
  // 300 hPa above the lowest level other tolerances begin.
  const Case high[] = {{"0.3 C", {650, 9.298, 5}, false},
                       {"more", {650, 9.302, 5}, true},
                       {"0.5 C of the dew point", {650, 9, 5.498}, false},
                       {"more of it", {650, 9, 5.502}, true},
                       {"below 650 hPa", {650.1, 9.2, 5}, true},
                       {"and its dew point", {650.1, 9, 5.3}, true}};
  for (const Case& c : high) {
    const SoundingRecord thin = FilterLevels(
        Profile({{950, 20, 16}, {656.5657, 10, 6}, c.Middle, {643.5, 8, 4}, {610, 5, 2}}));
    EXPECT_EQ(thin.NumTempLevels() - (c.Stays ? 1 : 0), 4) << c.About;
  }
}

// "990 5 1; 980 5 1": three numbers a row.
std::vector<std::array<double, 3>> RowsOf(const std::string& text) {
  std::vector<std::array<double, 3>> rows;
  std::istringstream words(text);
  for (std::array<double, 3> row{}; words >> row[0] >> row[1] >> row[2]; words.ignore(1)) {
    rows.push_back(row);
  }
  return rows;
}

TEST(LevelFilter, LevelsThatStayWhateverLiesBetween) {
  struct Case {
    const char *About, *Rows;
    std::vector<double> Press;
  };
  const Case cases[] = {
      {"a mandatory level", "990 5 1; 930 5 1; 925 5 1; 920 5 1; 910 5 1", {990, 925, 910}},
      {"a dew point ceases",
       "990 5 1; 985 5 1; 980 5 1; 975 5 999.9; 970 5 999.9; 965 5 999.9",
       {990, 980, 975, 965}},
      {"it begins", "990 5 999.9; 985 5 999.9; 980 5 1; 975 5 1; 970 5 1", {990, 985, 980, 970}},
      {"the farthest first: then the rest lies on lines",
       "990 0 -9; 985 5 -9; 980 10 -9; 975 5 -9; 970 0 -9",
       {990, 980, 970}},
  };
  for (const Case& c : cases) {
    SoundingRecord record;
    for (const auto& row : RowsOf(c.Rows)) record.AddTemp(row[0], row[1], row[2]);
    EXPECT_EQ(FilterLevels(record, {.LowTemp = 0.3}).Press.Values(), c.Press) << c.About;
  }
  EXPECT_EQ(FilterLevels({}), SoundingRecord{});
}

TEST(LevelFilter, Winds) {
  struct Case {
    const char *About, *Rows;
    std::vector<double> Heights;
  };
  const Case cases[] = {
      {"2 knots off the line", "100 90 10; 200 90 16.9; 300 90 20", {100, 300}},
      {"more", "100 90 10; 200 90 17.1; 300 90 20", {100, 200, 300}},
      // 15 knots: 2.1 knots are 8 degrees.
      {"to the side", "100 90 10; 200 97 15; 300 90 20", {100, 300}},
      {"more to the side", "100 90 10; 200 98.5 15; 300 90 20", {100, 200, 300}},
      {"the line goes by height", "100 90 10; 280 90 19; 300 90 20", {100, 300}},
      {"the first of the strongest", "100 90 10; 200 90 11; 300 90 11; 400 90 10", {100, 200, 400}},
      {"one without a wind and its neighbours",
       "100 90 20; 200 90 10; 300 90 10; 400 999.9 999.9; 500 90 10; 600 90 10; 700 90 10",
       {100, 200, 300, 400, 500, 700}},
      {"none at the ground", "100 999.9 999.9; 200 90 10; 300 90 10; 400 90 10", {100, 200, 400}},
      {"none at the top", "100 90 10; 200 90 10; 300 90 10; 400 999.9 999.9", {100, 300, 400}},
  };
  for (const Case& c : cases) {
    SoundingRecord record;
    for (const auto& row : RowsOf(c.Rows)) record.AddWind(row[0], row[1], row[2]);
    const SoundingRecord thin = FilterLevels(record);
    EXPECT_EQ(thin.WindHgt.Values(), c.Heights) << c.About;
    EXPECT_EQ(thin.WorkWindSpd.Count(), thin.NumWindLevels()) << c.About;
  }
}

TEST(LevelFilter, DenseIsMoreThan250Levels) {
  SoundingRecord temps, winds;
  for (int i = 0; i < 250; ++i) {
    temps.AddTemp(1000 - i, 5, 1);
    winds.AddWind(i, 90, 5);
  }
  EXPECT_FALSE(IsHighDensity(temps) || IsHighDensity(winds));
  temps.AddTemp(700, 5, 1);
  winds.AddWind(300, 90, 5);
  EXPECT_TRUE(IsHighDensity(temps) && IsHighDensity(winds));
}

}  // namespace
}  // namespace vexa
