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
  EXPECT_TRUE(ReadList(folder.Path(), kSoundingList).empty());
}

}  // namespace
}  // namespace vexa
