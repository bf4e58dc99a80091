#include "program/edit_table.h"

#include <gtest/gtest.h>

#include "core/markers.h"
#include "support/soundings.h"

namespace vexa {
namespace {

SoundingRecord Small() {
  return test::Profile({{1000, 20, 10}, {900, 14, kMissing}, {850, 10, 5}},
                       {{0, 180, 5}, {500, 200, 10}, {1500, 360, 20}});
}

TEST(EditTable, SaysWhatIsWrongWhere) {
  struct Case {
    const char* about;
    LevelKind kind;
    int row, column;
    const char* text;
    int wrongRow, wrongColumn;  // -1: nothing
  };
  const Case cases[] = {
      {"a dew point added", LevelKind::Temps, 1, 2, " 8.5 ", -1, -1},
      {"decimal comma", LevelKind::Temps, 1, 1, "14,5", -1, -1},
      {"a letter", LevelKind::Temps, 2, 1, "1O", 2, 1},
      {"no pressure", LevelKind::Temps, 2, 0, "", 2, 0},
      {"not below the one beneath", LevelKind::Temps, 1, 0, "1000", 0, 0},
      {"dew point above temperature", LevelKind::Temps, 2, 2, "10.1", 2, 2},
      {"71 degrees", LevelKind::Temps, 0, 1, "71", 0, 1},
      {"beyond the circle", LevelKind::Winds, 1, 1, "360.5", 1, 1},
      {"negative speed", LevelKind::Winds, 1, 2, "-1", 1, 2},
      {"negative height", LevelKind::Winds, 0, 0, "-5", 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    EditTable table(c.kind, Small());
    table.Set(c.row, c.column, c.text);
    const std::vector<TableProblem> problems = table.Problems();
    SoundingRecord record = Small();
    EXPECT_EQ(table.ApplyTo(record).has_value(), c.wrongRow >= 0);
    if (c.wrongRow < 0) {
      EXPECT_TRUE(problems.empty());
      continue;
    }
    ASSERT_FALSE(problems.empty());
    EXPECT_EQ(problems[0].Row, c.wrongRow);
    EXPECT_EQ(problems[0].Column, c.wrongColumn);
    EXPECT_FALSE(problems[0].Reason.empty());
    EXPECT_EQ(record, Small());
  }
}

TEST(EditTable, WithoutEditsTheSoundingStaysTheSame) {
  SoundingRecord record = test::ReferenceConvective();
  record.Clouds.Add({"CU", 40, "60", 2});
  const SoundingRecord before = record;
  for (const LevelKind kind : {LevelKind::Temps, LevelKind::Winds, LevelKind::Clouds}) {
    EXPECT_FALSE(EditTable(kind, record).ApplyTo(record));
  }
  EXPECT_EQ(record, before);
}

TEST(EditTable, TakesRowsFromASpreadsheet) {
  for (const char* text : {"P\tT\tTd\r\n800\t7,5\t1\r\n700\t0\t\r\n", "800;7.5;1\n700;0;\n",
                           "  800   7.5  1\n  700  0\n\n"}) {
    SCOPED_TRACE(text);
    EditTable table(LevelKind::Temps, Small());
    EXPECT_EQ(table.Paste(3, 0, text), 2);
    SoundingRecord record = Small();
    ASSERT_FALSE(table.ApplyTo(record));
    EXPECT_EQ(record.NumTempLevels(), 5);
    EXPECT_EQ(record.Temp(4), 7.5);
    EXPECT_EQ(record.Dewpt(5), kMissing);
  }
  EditTable table(LevelKind::Winds, Small());
  const std::string copied = table.Copy(0, 3);
  EditTable empty(LevelKind::Winds, {});
  EXPECT_EQ(empty.Paste(0, 0, copied), 3);
  EXPECT_EQ(empty.Copy(0, 3), copied);
}

TEST(EditTable, LevelsAreAddedInTheirPlace) {
  EditTable table(LevelKind::Temps, Small());
  const Outcome<int> row = table.AddInOrder({"880", "12", ""});
  ASSERT_TRUE(row);
  EXPECT_EQ(row.Value(), 2);
  EXPECT_EQ(table.AddInOrder({"500", "-20", "-30"}).Value(), 4);
  EXPECT_FALSE(table.AddInOrder({"880", "11", ""}));
  EXPECT_FALSE(table.AddInOrder({"", "11", ""}));
  EXPECT_EQ(table.Rows(), 5);
  EXPECT_TRUE(table.Problems().empty());
  while (table.Rows() > 1) table.Erase(0);
  SoundingRecord record = Small();
  EXPECT_EQ(table.ApplyTo(record)->Number, kFaultTooFewLevels);
}

TEST(EditTable, WorkingWindsFollowTheirLevels) {
  SoundingRecord record = Small();
  record.WorkWindDir = Levels<float>({180, 205, 360});  // level 2 was smoothed
  record.WorkWindSpd = Levels<float>({5, 11, 20});
  EditTable table(LevelKind::Winds, record);
  table.Erase(0);
  table.Set(1, 2, "25");
  ASSERT_FALSE(table.ApplyTo(record));
  EXPECT_EQ(record.WorkWindDir.Values(), (std::vector<float>{205, 360}));
  EXPECT_EQ(record.WorkWindSpd.Values(), (std::vector<float>{11, 25}));
}

}  // namespace
}  // namespace vexa
