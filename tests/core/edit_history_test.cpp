#include "core/edit_history.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "core/numbers.h"
#include "core/record_edits.h"
#include "support/soundings.h"

namespace vexa {
namespace {

auto Delete(int level) {
  return [level](SoundingRecord& record) { return DeleteTempLevel(record, level); };
}

TEST(EditHistory, NamesAndRefusedEdits) {
  SoundingRecord record = test::ReferenceConvective();
  EditHistory history;
  EXPECT_FALSE(history.Undo(record));
  EXPECT_TRUE(history.Do(record, "delete level 99", Delete(99)));
  EXPECT_FALSE(history.Do(record, "nothing", [](SoundingRecord&) { return std::nullopt; }));
  EXPECT_EQ(history.UndoText(), "Undo");

  EXPECT_FALSE(history.Do(record, "delete level 17", Delete(17)));
  EXPECT_EQ(history.UndoText() + ", " + history.RedoText(), "Undo delete level 17, Redo");
  EXPECT_TRUE(history.Undo(record));
  EXPECT_EQ(history.UndoText() + ", " + history.RedoText(), "Undo, Redo delete level 17");
  EXPECT_FALSE(history.Do(record, "delete level 3", Delete(3)));
  EXPECT_FALSE(history.CanRedo());
  history.Clear();
  EXPECT_FALSE(history.CanUndo());
  EXPECT_EQ(history.Bytes(), 0u);
}

TEST(EditHistory, KnowsTheSavedRecord) {
  SoundingRecord record = test::ReferenceConvective();
  EditHistory history;
  EXPECT_FALSE(history.Do(record, "a", Delete(5)));
  EXPECT_FALSE(history.Do(record, "b", Delete(5)));
  history.MarkSaved();
  EXPECT_FALSE(history.IsChanged());
  EXPECT_TRUE(history.Undo(record));
  EXPECT_TRUE(history.IsChanged());
  EXPECT_TRUE(history.Redo(record));
  EXPECT_FALSE(history.IsChanged());
  // Once another way is taken from before the saved record, no number of steps leads back to it.
  EXPECT_TRUE(history.Undo(record));
  EXPECT_FALSE(history.Do(record, "c", Delete(6)));
  EXPECT_TRUE(history.IsChanged());
  EXPECT_TRUE(history.Undo(record));
  EXPECT_TRUE(history.IsChanged());
}

// A walk of edits, undos and redos against a list of every record there was, in little memory.
TEST(EditHistory, WalkStaysTrueInBoundedMemory) {
  std::mt19937 random(5);
  SoundingRecord record = test::ReferenceConvective();
  const std::size_t limit = 12 * BytesOf(record);
  EditHistory history(limit);
  std::vector<SoundingRecord> line = {record};
  std::size_t at = 0;
  int undone = 0;
  for (int step = 0; step < 3000; ++step) {
    const auto choice = random() % 5;
    if (choice < 2) {
      const int level = 1 + static_cast<int>(random() % 20);
      const TempLevel to{record.Press(level), -90 - static_cast<double>(step) / 100, -130};
      ASSERT_FALSE(history.Do(record, "change level " + Shortest(level),
                              [&](SoundingRecord& r) { return ChangeTempLevel(r, level, to); }));
      line.resize(++at);
      line.push_back(record);
    } else if (choice < 4 && history.Undo(record)) {
      ++undone;
      --at;
    } else if (choice == 4 && history.Redo(record)) {
      ++at;
    }
    ASSERT_EQ(record, line[at]) << step;
    ASSERT_LE(history.Bytes(), limit);
  }
  EXPECT_GT(undone, 300);

  // Undoing may leave more than it takes: the edit farthest ahead is forgotten first. A level takes
  // 24 bytes, and the room that is kept ready up to as many.
  EditHistory narrow(110000);
  std::vector<SoundingRecord> stages = {test::Profile({{1000, 20, 10}, {900, 10, 5}})};
  record = stages[0];
  for (const int levels : {2000, 3000}) {
    ASSERT_FALSE(narrow.Do(record, "grow", [levels](SoundingRecord& growing) {
      while (growing.NumTempLevels() < levels) growing.AddTemp(800, 5, 1);
      return std::optional<Fault>();
    }));
    stages.push_back(record);
  }
  EXPECT_TRUE(narrow.Undo(record) && narrow.Undo(record));
  EXPECT_EQ(record, stages[0]);
  EXPECT_TRUE(narrow.Redo(record));
  EXPECT_EQ(record, stages[1]);
  EXPECT_FALSE(narrow.CanRedo());

  EditHistory tiny(1);
  EXPECT_FALSE(tiny.Do(record, "too large to remember", Delete(4)));
  EXPECT_FALSE(tiny.CanUndo());
  EXPECT_TRUE(tiny.IsChanged());
}

}  // namespace
}  // namespace vexa
