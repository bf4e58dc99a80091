#include "core/record_edits.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "core/markers.h"
#include "support/soundings.h"

namespace vexa {
namespace {

SoundingRecord Sample() {
  SoundingRecord record = test::Profile({{1000, 20, 15}, {850, 10, 5}, {700, 0, kMissing}},
                                        {{100, 180, 5}, {1500, 220, 20}, {3000, 250, 40}});
  record.Clouds.Add({"CU", 20, "40", 1});
  record.Clouds.Add({"CI", 250, "", 2});
  record.WorkWindDir = Levels<float>({180, 220, 250});
  record.WorkWindSpd = Levels<float>({5, 20, 40});
  return record;
}

std::optional<Fault> FaultOf(const Outcome<int>& outcome) {
  if (outcome) return std::nullopt;
  return outcome.Error();
}

using Edit = std::function<std::optional<Fault>(SoundingRecord&)>;

TEST(RecordEdits, RefuseAndLeaveTheRecord) {
  const auto temp = [](int level, TempLevel to) -> Edit {
    return [=](SoundingRecord& r) { return ChangeTempLevel(r, level, to); };
  };
  const auto wind = [](int level, WindLevel to) -> Edit {
    return [=](SoundingRecord& r) { return ChangeWindLevel(r, level, to); };
  };
  const auto cloud = [](CloudLayer to) -> Edit {
    return [=](SoundingRecord& r) { return ChangeCloudLayer(r, 1, to); };
  };
  const auto addTemp = [](TempLevel added) -> Edit {
    return [=](SoundingRecord& r) { return FaultOf(AddTempLevel(r, added)); };
  };
  struct Case {
    Edit edit;
    std::string fault;
  };
  const Case cases[] = {
      {temp(2, {1000, 10, 5}), "Level 2, pressure: 1000 is not below the 1000 of level 1"},
      {temp(2, {700, 10, 5}), "Level 2, pressure: 700 is not above the 700 of level 3"},
      {temp(3, {0, 0, 0}), "Level 3, pressure: 0 lies outside 0.01 to 1100"},
      {temp(2, {850, kMissing, 5}), "Level 2, temperature: 999.9 lies outside -150 to 70"},
      {temp(2, {850, std::numeric_limits<double>::quiet_NaN(), 5}),
       "Level 2, temperature: no number lies outside -150 to 70"},
      {temp(2, {850, 10, 10.1}), "Level 2, dew point: 10.1 is above the temperature of 10"},
      {temp(0, {850, 10, 5}), "Level (new): there are 3"},
      {temp(4, {850, 10, 5}), "Level 4: there are 3"},
      {addTemp({850, 1, 1}), "Level (new), pressure: 850 is already that of level 2"},
      {wind(2, {100, 220, 20}), "Wind level 2, height: 100 is not above the 100 of level 1"},
      {wind(2, {3000.5, 220, 20}), "Wind level 2, height: 3000.5 is not below the 3000 of level 3"},
      {wind(1, {-5, 220, 20}), "Wind level 1, height: -5 lies outside 0 to 80000"},
      {wind(1, {100, 0, 20}), "Wind level 1, direction: 0 means no wind at all, north is 360"},
      {[](SoundingRecord& r) { return DeleteWindLevel(r, 4); }, "Wind level 4: there are 3"},
      {cloud({"XX", 20, "", 0}), "Cloud layer 1, type: \"XX\" is none of ST SC NS CU CB AC AS CI"},
      {cloud({"CU", -1, "", 0}), "Cloud layer 1, base: -1 lies outside 0 to 1000"},
      {cloud({"CU", 20, "high", 0}), "Cloud layer 1, top: \"high\" is no number"},
      {cloud({"CU", 20, "19", 0}), "Cloud layer 1, top: 19 is below the base of 20"},
  };
  for (const Case& c : cases) {
    SoundingRecord record = Sample();
    const std::optional<Fault> fault = c.edit(record);
    ASSERT_TRUE(fault) << c.fault;
    EXPECT_EQ(fault->Detail, c.fault);
    EXPECT_EQ(fault->Number, kFaultInvalidValue);
    EXPECT_EQ(record, Sample());
  }
}

TEST(RecordEdits, TempLevels) {
  SoundingRecord record = Sample();
  EXPECT_FALSE(ChangeTempLevel(record, 2, {855, 11, 11}));
  EXPECT_EQ(AddTempLevel(record, {1010, 22, 16}).Value(), 1);
  EXPECT_EQ(AddTempLevel(record, {500, -20, kMissing}).Value(), 5);
  EXPECT_EQ(AddTempLevel(record, {800, 5, 1}).Value(), 4);
  EXPECT_FALSE(DeleteTempLevel(record, 2));
  const SoundingRecord expected = test::Profile(
      {{1010, 22, 16}, {855, 11, 11}, {800, 5, 1}, {700, 0, kMissing}, {500, -20, kMissing}});
  EXPECT_EQ(record.Press, expected.Press);
  EXPECT_EQ(record.Temp, expected.Temp);
  EXPECT_EQ(record.Dewpt, expected.Dewpt);

  for (int left = 5; left > 2; --left) EXPECT_FALSE(DeleteTempLevel(record, left));
  const std::optional<Fault> fault = DeleteTempLevel(record, 1);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultTooFewLevels);
  EXPECT_EQ(record.NumTempLevels(), 2);
}

TEST(RecordEdits, WindLevelsTakeTheWorkingWindsAlong) {
  SoundingRecord record = Sample();
  EXPECT_FALSE(ChangeWindLevel(record, 1, {50, 360, 6}));
  EXPECT_EQ(AddWindLevel(record, {2000, 230, 25}).Value(), 3);
  EXPECT_FALSE(DeleteWindLevel(record, 2));
  EXPECT_EQ(record.WindHgt.Values(), (std::vector<double>{50, 2000, 3000}));
  EXPECT_EQ(record.WindDir.Values(), (std::vector<double>{360, 230, 250}));
  EXPECT_EQ(record.WorkWindDir.Values(), (std::vector<float>{360, 230, 250}));
  EXPECT_EQ(record.WorkWindSpd.Values(), (std::vector<float>{6, 25, 40}));

  record.WorkWindDir.Clear();
  record.WorkWindSpd.Clear();
  EXPECT_EQ(AddWindLevel(record, {10, 90, 3}).Value(), 1);
  EXPECT_TRUE(record.WorkWindDir.Empty());
  for (int left = 4; left > 0; --left) EXPECT_FALSE(DeleteWindLevel(record, left));
  EXPECT_EQ(AddWindLevel(record, {10, 90, 3}).Value(), 1);
  EXPECT_EQ(record.WorkWindDir, Levels<float>({90}));
}

TEST(RecordEdits, CloudLayers) {
  SoundingRecord record = Sample();
  EXPECT_EQ(AddCloudLayer(record, {"SC", 20, "30", 3}).Value(), 2);
  EXPECT_EQ(AddCloudLayer(record, {"ST", 5, "", 4}).Value(), 1);
  EXPECT_FALSE(ChangeCloudLayer(record, 4, {"CI", 300, "320", 2}));
  EXPECT_FALSE(DeleteCloudLayer(record, 2));
  ASSERT_EQ(record.NumCloudLayers(), 3);
  EXPECT_EQ(record.Clouds(1), (CloudLayer{"ST", 5, "", 4}));
  EXPECT_EQ(record.Clouds(2), (CloudLayer{"SC", 20, "30", 3}));
  EXPECT_EQ(record.Clouds(3), (CloudLayer{"CI", 300, "320", 2}));
}

// The widest values that an editor takes, and the next.
TEST(RecordEdits, LimitsOfValues) {
  const std::pair<TempLevel, bool> temps[] = {
      {{0.01, 10, 5}, true},      {{0.009, 10, 5}, false},    {{1100, 10, 5}, true},
      {{1100.1, 10, 5}, false},   {{500, -150, -150}, true},  {{500, -150.1, -150.1}, false},
      {{500, 70, 70}, true},      {{500, 70.1, 70}, false},   {{500, 10, -200}, true},
      {{500, 10, -200.1}, false}, {{500, 10, kMissing}, true}};
  for (const auto& [level, isTaken] : temps) {
    SoundingRecord record;
    EXPECT_EQ(AddTempLevel(record, level).Ok(), isTaken)
        << level.Press << ' ' << level.Temp << ' ' << level.Dewpt;
  }
  const std::pair<WindLevel, bool> winds[] = {
      {{0, 90, 0}, true},      {{-0.1, 90, 5}, false}, {{80000, 90, 500}, true},
      {{80001, 90, 5}, false}, {{10, 90, 501}, false}, {{10, 90, -0.1}, false},
      {{10, 0.5, 5}, true},    {{10, 360, 5}, true},   {{10, 360.1, 5}, false}};
  for (const auto& [level, isTaken] : winds) {
    SoundingRecord record;
    EXPECT_EQ(AddWindLevel(record, level).Ok(), isTaken)
        << level.Height << ' ' << level.Dir << ' ' << level.Spd;
  }
  const std::pair<CloudLayer, bool> clouds[] = {{{"ST", 0, " ", 0}, true},
                                                {{"CI", 1000, "1000", 0}, true},
                                                {{"CI", 1001, "", 0}, false},
                                                {{"CI", -0.1, "", 0}, false}};
  for (const auto& [layer, isTaken] : clouds) {
    SoundingRecord record;
    EXPECT_EQ(AddCloudLayer(record, layer).Ok(), isTaken) << layer.Base;
  }
}

TEST(RecordEdits, ALevelTakesNoOthersPlace) {
  SoundingRecord record = Sample();
  const auto added = AddWindLevel(record, {3000, 250, 40});  // that of the highest
  ASSERT_FALSE(added);
  EXPECT_EQ(added.Error().Detail, "Wind level (new), height: 3000 is already that of level 3");
  EXPECT_EQ(record, Sample());
  SoundingRecord empty;
  EXPECT_EQ(ChangeTempLevel(empty, 1, {850, 1, 1})->Detail, "Level 1: there is none");
  // Between the neighbours of its own place any value will do.
  EXPECT_FALSE(ChangeTempLevel(record, 1, {1050, 20, 15}));
  EXPECT_FALSE(ChangeTempLevel(record, 3, {100, -60, kMissing}));
  EXPECT_FALSE(ChangeWindLevel(record, 3, {70000, 250, 40}));
}

}  // namespace
}  // namespace vexa
