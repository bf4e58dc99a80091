#include "core/data_checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/markers.h"
#include "support/soundings.h"

namespace vexa {
namespace {

using test::Profile;

TEST(PressureDupe, TheLastOfEqualNeighboursStays) {
  SoundingRecord record =
      Profile({{1000, 1, 1}, {850, 2, 2}, {850, 3, 3}, {850, 4, 4}, {700, 5, 5}, {850, 6, 6}});
  PressureDupe(record);
  EXPECT_EQ(record, Profile({{1000, 1, 1}, {850, 4, 4}, {700, 5, 5}, {850, 6, 6}}));
  SoundingRecord empty;
  PressureDupe(empty);
  EXPECT_EQ(empty.NumTempLevels(), 0);
}

TEST(SortData, OrdersAnyShuffleAndKeepsLevelsTogether) {
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    const int count = std::uniform_int_distribution<int>(0, 60)(random);
    SoundingRecord record;
    std::multiset<double> kept;
    for (int i = 0; i < count; ++i) {
      const double press = std::uniform_int_distribution<int>(0, 40)(random) * 25;
      if (press != 0) kept.insert(press);
      record.AddTemp(press, press + 1, i);
      const int tens = std::uniform_int_distribution<int>(0, 36)(random);
      record.AddWind(i * 7919 % 61, tens * 10, tens);
    }
    EXPECT_EQ(SortData(record), count > 0 ? Status::YesHeights : Status::NoHeights);
    EXPECT_EQ(std::multiset<double>(record.Press.Values().begin(), record.Press.Values().end()),
              kept);
    EXPECT_TRUE(std::ranges::is_sorted(record.Press.Values(), std::greater{}));
    EXPECT_TRUE(std::ranges::is_sorted(record.WindHgt.Values()));
    EXPECT_EQ(std::ranges::count(record.WindDir.Values(), 0.0), 0);
    for (int i = 1; i <= record.NumTempLevels(); ++i) {
      EXPECT_EQ(record.Temp(i), record.Press(i) + 1);
      if (i == 1 || record.Press(i) != record.Press(i - 1)) continue;
      EXPECT_GT(record.Dewpt(i), record.Dewpt(i - 1)) << "the order of equals";
    }
    for (int i = 1; i <= record.NumWindLevels(); ++i) {
      EXPECT_EQ(record.WindDir(i), record.WindSpd(i) * 10);
    }
    const SoundingRecord once = record;
    SortData(record);
    EXPECT_EQ(record, once);
  }
}

TEST(SortData, WorkingWindsMoveAlongWhereTheyCoverAllLevels) {
  SoundingRecord record = Profile({}, {{900, 90, 9}, {100, 360, 1}, {500, 0, 5}});
  record.WorkWindDir = Levels<float>({91, 361, 1});
  record.WorkWindSpd = Levels<float>({9, 1, 5});
  EXPECT_EQ(SortData(record), Status::YesHeights);
  EXPECT_EQ(record.WorkWindDir, Levels<float>({361, 91}));
  EXPECT_EQ(record.WindHgt, Levels<double>({100, 900}));
}

TEST(DataQC, FirstFaultDecides) {
  const auto high = [](SoundingRecord record, int elevM) {
    SetElevation(record, elevM);
    return record;
  };
  const auto coded = [](SoundingRecord record) {
    record.DataFormat = "CODED";
    return record;
  };
  SoundingRecord working = Profile({{1000, 20, 15}, {900, 18, 14}}, {{10, 350, 5}});
  working.WorkWindDir = Levels<float>({350, 360.5F});
  working.WorkWindSpd = Levels<float>({5, 5});
  SoundingRecord lost = Profile({{900, 18, 14}, {850, 15, 10}});
  lost.SurfaceLostBelow = 900;
  SoundingRecord mended = Profile({{1000, 20, 15}, {900, 18, 14}, {850, 15, 10}});
  mended.SurfaceLostBelow = 900;
  struct Case {
    const char* about;
    SoundingRecord record;
    QcFinding found;
  };
  const Case cases[] = {
      {"nothing wrong, 360 and 70 degrees and 6000 m still pass",
       high(Profile({{1000, 70, 15}, {900, 18, 14}}, {{10, 360, 0}}), 6000),
       {}},
      {"elevation before all else", high(Profile({{900, 80, 15}, {1000, 18, 14}}), 6001), {7, 0}},
      {"pressure repeats", Profile({{1000, 80, 15}, {900, 18, 14}, {900, 17, 14}}), {1, 2}},
      {"too hot", Profile({{1000, 20, 15}, {900, 70.1, 80}}), {6, 2}},
      {"dew point above temperature", Profile({{1000, 20, 20.1}, {900, 71, 14}}), {5, 1}},
      {"missing dew point is no fault", Profile({{1000, 20, 999.9}, {900, 18, 14}}), {}},
      {"wind heights repeat", Profile({}, {{10, 400, 5}, {10, 20, 5}}), {2, 1}},
      {"heights matter in native files only", coded(Profile({}, {{10, 20, 5}, {10, 20, 5}})), {}},
      {"direction", Profile({}, {{10, 20, 5}, {20, 360.5, -1}}), {3, 2}},
      {"speed", Profile({}, {{10, 20, -1}}), {4, 1}},
      {"working winds", working, {3, 2}},
      {"begins above a surface that could not be used", lost, {8, 1}},
      {"a surface was put beneath", mended, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const QcFinding found = CheckRecord(c.record);
    EXPECT_EQ(found.Number, c.found.Number);
    EXPECT_EQ(found.Level, c.found.Level);
  }
}

TEST(DataQC, AsksAndLeavesAStatus) {
  CurrentSounding current{.Record = Profile({{1000, 20, 15}, {900, 18, 14}}, {{10, 20, -1}})};
  test::ScriptedInteraction user;
  current.Ask = &user;
  user.Expect("Data Error", Answer::Ok);
  EXPECT_EQ(DataQC(current), Status::QcError);
  EXPECT_EQ(current.StatusText, "QC-ERROR");
  EXPECT_EQ(user.Boxes[0].Text,
            "Wind speed value is less then 0 knots.\n"
            "Error is at or adjacent to Data Level: 1\nClick OK to correct the error.");
  user.Expect("Data Error", Answer::Cancel);
  EXPECT_EQ(DataQC(current), Status::QcCancel);
  EXPECT_EQ(current.StatusText, "QC-CANCEL");
  EXPECT_EQ(DataQC(current, true), Status::Ok);

  {
    const Silenced quiet(current);
    EXPECT_EQ(DataQC(current), Status::QcError);
    EXPECT_TRUE(quiet.Boxes().empty());
    EXPECT_EQ(current.QcFault, 4);
  }

  // The tolerance is for faults of order, and for one of them.
  current.TolerateOrderOnce = true;
  user.Expect("Data Error", Answer::Ok);
  EXPECT_EQ(DataQC(current), Status::QcError);
  current.Record = Profile({{900, 20, 15}, {1000, 18, 14}});
  EXPECT_EQ(DataQC(current), Status::Ok);
  EXPECT_EQ(current.StatusText, "OK");
  user.Expect("Data Error", Answer::Ok);
  EXPECT_EQ(DataQC(current), Status::QcError);
}

// What is let through for the check to find, and what nothing can have.
TEST(KeepPossible, LimitsOfLevels) {
  const double none = kMissing;
  const test::TempRow temps[] = {{1100, 20, 10}, {0, 20, 10},       {0.01, -60, -90},
                                 {500, 200, 10}, {500, -150, -200}, {500, 20, 200},
                                 {500, 20, none}};
  const test::TempRow wild[] = {{1100.1, 20, 10},    {0.009, 20, 10},  {500, 200.1, 10},
                                {500, -150.1, -160}, {500, 20, 200.1}, {500, 20, -200.1}};
  const test::WindRow winds[] = {
      {80000, 0, 500}, {-80000, 360, -500}, {100, 999, 10}, {100, none, none}};
  const test::WindRow gales[] = {{80001, 90, 10}, {-80001, 90, 10}, {100, -1, 10},
                                 {100, 1000, 10}, {100, 90, 501},   {100, 90, -501}};
  SoundingRecord record;
  for (const auto& row : temps) record.AddTemp(row.Press, row.Temp, row.Dewpt);
  for (const auto& row : winds) record.AddWind(row.Height, row.Dir, row.Spd);
  record.Clouds.Add({"CU", 0, "", 1});
  record.Clouds.Add({"CI", 1000, "", 1});
  record.ExtraRecord1[0] = 1e6;
  record.ExtraRecord2[0] = -1e6;
  const SoundingRecord whole = record;
  EXPECT_TRUE(KeepPossible(record).empty());
  EXPECT_EQ(record, whole);

  for (const auto& row : wild) record.AddTemp(row.Press, row.Temp, row.Dewpt);
  for (const auto& row : gales) record.AddWind(row.Height, row.Dir, row.Spd);
  record.Clouds.Add({"CI", -1, "", 1});
  record.Clouds.Add({"CI", 1001, "", 1});
  EXPECT_EQ(KeepPossible(record),
            (std::vector<std::string>{
                "Temperature levels with impossible values, left out: 6; the first: 1100.1 hPa, 20 "
                "and 10 C.",
                "Winds with impossible values, left out: 6; the first: 80001 m, 90 degrees, 10 "
                "knots.",
                "Cloud layers with impossible bases, left out: 2."}));
  EXPECT_EQ(record, whole);
}

TEST(KeepPossible, LimitsOfElevationAndSupplements) {
  for (const auto& [elevM, isPossible] :
       {std::pair{-500, true}, {-501, false}, {9000, true}, {9001, false}}) {
    SoundingRecord record = Profile({{1000, 20, 15}});
    SetElevation(record, elevM);
    EXPECT_EQ(KeepPossible(record).empty(), isPossible) << elevM;
    EXPECT_EQ(record.ElevUnknown, !isPossible);
  }
  for (const bool isFirst : {true, false}) {
    SoundingRecord record;
    (isFirst ? record.ExtraRecord1[0] : record.ExtraRecord2[0]) = 1.01e6;
    EXPECT_EQ(KeepPossible(record).size(), 1U);
    EXPECT_EQ(record, SoundingRecord{});
  }
}

}  // namespace
}  // namespace vexa
