#include "core/user_file.h"

#include <gtest/gtest.h>

#include "core/key_lines.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

// Files of this test hold the word "fine" or are not understood.
std::string Objects(std::string_view text) {
  return text.find("fine") == std::string_view::npos ? "f, line 1: not understood" : "";
}

TEST(UserFile, WhatIsNotUnderstoodIsPutAsideFirst) {
  const test::TemporaryFolder folder;
  const fs::path path = folder.Path() / "f";
  const auto text = [&folder](const char* name) {
    const Outcome<std::string> read = ReadFile(folder.Path() / name);
    return read ? read.Value() : "none";
  };
  ASSERT_FALSE(SaveUserFile(path, "fine 1", Objects));
  ASSERT_FALSE(SaveUserFile(path, "fine 2", Objects));
  EXPECT_EQ(text("f.bak"), "none");
  ASSERT_FALSE(SaveFile(path, "fin"));
  ASSERT_FALSE(SaveUserFile(path, "fine 3", Objects));
  EXPECT_EQ(text("f"), "fine 3");
  EXPECT_EQ(text("f.bak"), "fin");
  ASSERT_FALSE(SaveUserFile(path, "fine 4", Objects));
  EXPECT_EQ(text("f.bak"), "fin") << "the file was sound again";

  // Without the copy nothing is written.
  fs::remove(folder.Path() / "f.bak");
  fs::create_directory(folder.Path() / "f.bak");
  ASSERT_FALSE(SaveFile(path, "torn"));
  EXPECT_TRUE(SaveUserFile(path, "fine 5", Objects));
  EXPECT_EQ(text("f"), "torn");

  // Nor over what cannot be read.
  const fs::path taken = folder.Path() / "folder";
  fs::create_directory(taken);
  EXPECT_TRUE(SaveUserFile(taken, "fine", Objects));
  std::vector<std::string> notes;
  EXPECT_FALSE(ReadUserFile(taken, notes));
  EXPECT_EQ(notes.size(), 1U);
  EXPECT_FALSE(ReadUserFile(folder.Path() / "absent", notes));
  EXPECT_EQ(notes.size(), 1U) << "a file that is missing is no fault";
}

TEST(KeyLines, AValueChangesInItsPlace) {
  const char* const before =
      "# mine\r\nfirst = 1\r\n\r\nodd line\r\n  second=2 = two\r\nfirst = 3\r\n";
  KeyLines lines(before);
  EXPECT_EQ(lines.Text(), before);
  const std::vector<KeyLines::Entry> entries = lines.Entries();
  ASSERT_EQ(entries.size(), 4U);
  EXPECT_EQ(entries[1].Line, 4);
  EXPECT_EQ(entries[1].Key, "");
  EXPECT_EQ(entries[1].Whole, "odd line");
  EXPECT_EQ(entries[2].Key, "second");
  EXPECT_EQ(entries[2].Value, "2 = two");
  lines.Set("first", "4");
  lines.Set("third", "a\r\nb");
  EXPECT_EQ(lines.Text(),
            "# mine\r\nfirst = 1\r\n\r\nodd line\r\n  second=2 = two\r\nfirst = 4\r\n"
            "third = a  b\r\n");
}

}  // namespace
}  // namespace vexa
