#include "program/session_memory.h"

#include <gtest/gtest.h>

#include "core/files.h"
#include "support/soundings.h"

namespace vexa {
namespace {

TEST(SessionMemory, ListsReadBackAndForeignFilesHoldNone) {
  const test::TemporaryFolder folder;
  const std::vector<std::string> names = {"SvrWx", "M\xC3\xBCnchen \"1\", 50%.RAW"};
  EXPECT_TRUE(ReadList(folder.Path(), kSoundingList).empty());
  EXPECT_FALSE(WriteList(folder.Path(), kSoundingList, names));
  EXPECT_EQ(ReadList(folder.Path(), kSoundingList), names);
  EXPECT_FALSE(WriteList(folder.Path(), kSoundingList, {}));
  EXPECT_TRUE(ReadList(folder.Path(), kSoundingList).empty());
  ASSERT_FALSE(SaveFile(folder.Path() / PathFromText(kSoundingList), "header\nanother text\n"));
  std::vector<std::string> notes;
  EXPECT_TRUE(ReadList(folder.Path(), kSoundingList, &notes).empty());
  ASSERT_EQ(notes.size(), 1U);
  EXPECT_TRUE(notes[0].starts_with("DATM.LST, line 1: ")) << notes[0];
  EXPECT_FALSE(WriteList(folder.Path(), kSoundingList, names));
  EXPECT_EQ(ReadFile(folder.Path() / "DATM.LST.bak").Value(), "header\nanother text\n");
}

}  // namespace
}  // namespace vexa
