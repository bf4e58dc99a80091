#include "core/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#ifndef _WIN32
#include <sys/resource.h>
#endif

#include "core/folders.h"
#include "core/platform.h"
#include "core/raw_file.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

// Fails at the n-th call, whichever it is.
class FailingOps : public FileOps {
 public:
  explicit FailingOps(int failAt) : failAt_(failAt) {}
  std::error_code Write(std::FILE* file, std::string_view bytes) override {
    // Half of it reaches the disk before the disk is full.
    if (Fails()) return FileOps::Write(file, bytes.substr(0, bytes.size() / 2)), Full();
    return FileOps::Write(file, bytes);
  }
  std::error_code Flush(std::FILE* file) override {
    return Fails() ? Full() : FileOps::Flush(file);
  }
  std::error_code Rename(const fs::path& from, const fs::path& to) override {
    if (Fails()) return std::make_error_code(std::errc::permission_denied);
    return FileOps::Rename(from, to);
  }
  int Calls = 0;

 private:
  bool Fails() { return ++Calls == failAt_; }
  static std::error_code Full() { return std::make_error_code(std::errc::no_space_on_device); }
  int failAt_;
};

int FilesIn(const fs::path& folder) {
  return static_cast<int>(std::distance(fs::directory_iterator(folder), {}));
}

TEST(AtomicFile, TheOldFileSurvivesEachFault) {
  const test::TemporaryFolder folder;
  const fs::path path = folder.Path() / "old.txt";
  ASSERT_FALSE(SaveFile(path, "old"));
  const auto save = [&path](FileOps& ops) -> std::optional<Fault> {
    AtomicFile file(path, ops);
    std::optional<Fault> first;
    for (const char* part : {"new ", "text ", "in three parts"}) {
      const std::optional<Fault> fault = file.Write(part);
      if (!first) first = fault;
    }
    // A caller that goes on after a fault must not get half a file either.
    const std::optional<Fault> last = file.Commit();
    return first ? first : last;
  };
  FailingOps none(0);
  ASSERT_FALSE(save(none));
  ASSERT_EQ(none.Calls, 5);
  ASSERT_FALSE(SaveFile(path, "old"));
  for (int n = 1; n <= none.Calls; ++n) {
    SCOPED_TRACE(n);
    FailingOps ops(n);
    const std::optional<Fault> fault = save(ops);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->Number, n == 5 ? kFaultPathAccess : kFaultDiskFull);
    EXPECT_EQ(ReadFile(path).Value(), "old");
    EXPECT_EQ(FilesIn(folder.Path()), 1);
  }
}

#ifndef _WIN32
TEST(AtomicFile, AFileBeyondTheSystemsLimitIsAFullDisk) {
  const test::TemporaryFolder folder;
  LetLargeWritesFail();
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{10000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::optional<Fault> fault = SaveFile(folder.Path() / "x", std::string(100000, 'x'));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultDiskFull);
  EXPECT_EQ(FilesIn(folder.Path()), 0);
}
#endif

TEST(AtomicFile, ASoundingSurvivesItsFailedSave) {
  const test::TemporaryFolder folder;
  SilentInteraction quiet;
  CurrentSounding current{.Record = test::ReferenceWinter(),
                          .DataFolder = folder.Path(),
                          .FileName = "winter.RAW",
                          .Ask = &quiet};
  ASSERT_EQ(SaveRAW(current), Status::Ok);
  const std::string before = ReadFile(current.FilePath()).Value();
  current.Record = test::ReferenceConvective();
  for (int n = 1; n <= 3; ++n) {
    FailingOps ops(n);
    EXPECT_EQ(SaveRAW(current, ops), Status::Error);
    EXPECT_EQ(ReadFile(current.FilePath()).Value(), before);
    EXPECT_EQ(FilesIn(folder.Path()), 1);
  }
  EXPECT_EQ(quiet.Boxes.size(), 3U);
  EXPECT_EQ(quiet.Boxes[0].Text.substr(0, 22), "Disk is probably full.");
}

TEST(AtomicFile, RefusesWhatItMustNotReplace) {
  const test::TemporaryFolder folder;
  const auto number = [](const fs::path& path) {
    return SaveFile(path, "x").value_or(Fault{}).Number;
  };
  EXPECT_EQ(number(folder.Path()), kFaultPathAccess);
  EXPECT_EQ(number(folder.Path() / "no such folder" / "a.txt"), kFaultPathNotFound);
  const fs::path readOnly = folder.Path() / "read only.txt";
  ASSERT_FALSE(SaveFile(readOnly, "kept"));
  fs::permissions(readOnly, fs::perms::owner_read);
  EXPECT_EQ(number(readOnly), kFaultPathAccess);
  EXPECT_EQ(ReadFile(readOnly).Value(), "kept");
  fs::permissions(readOnly, fs::perms::owner_all);
}

TEST(Paths, BlanksUmlautsAndBackslashesWork) {
  const test::TemporaryFolder folder;
  const std::string root = TextFromPath(folder.Path());
  const fs::path joined = PathFromText(root + "\\M\u00FCnchen Daten\\2001\\S\u00F6nde 1.RAW");
  EXPECT_EQ(joined, folder.Path() / fs::path(u8"M\u00FCnchen Daten") / "2001" /
                        fs::path(u8"S\u00F6nde 1.RAW"));
  fs::create_directories(joined.parent_path());
  ASSERT_FALSE(SaveFile(joined, "text"));
  EXPECT_EQ(ReadFile(joined).Value(), "text");
}

TEST(ReadFile, NamesItsFault) {
  const test::TemporaryFolder folder;
  const Outcome<std::string> missing = ReadFile(folder.Path() / "no.RAW");
  ASSERT_FALSE(missing);
  EXPECT_EQ(missing.Error().Number, kFaultFileNotFound);
  EXPECT_EQ(missing.Error().File, "no.RAW");
  EXPECT_EQ(ReadFile(folder.Path()).Error().Number, kFaultPathAccess);
}

#ifndef _WIN32
TEST(Folders, TheRootComesFromTheFirstThatNamesOne) {
  const test::TemporaryFolder folder;
  const fs::path program = folder.Path() / "program";
  ASSERT_FALSE(CreateFolders(FoldersBelow(program)));
  EXPECT_TRUE(fs::is_directory(program / "vexadata"));
  setenv("XDG_DATA_HOME", "/data/of/user", 1);
  unsetenv("VEXA_ROOT");
  EXPECT_EQ(ResolveRoot({}, program), "/data/of/user/vexa");
  setenv("XDG_DATA_HOME", "relative/is/ignored", 1);
  setenv("HOME", "/home/of/user", 1);
  EXPECT_EQ(ResolveRoot({}, program), "/home/of/user/.local/share/vexa");
  ASSERT_FALSE(SaveFile(program / "vexa.portable", ""));
  EXPECT_EQ(ResolveRoot({}, program), program);
  setenv("VEXA_ROOT", "/from/variable", 1);
  EXPECT_EQ(ResolveRoot({}, program), "/from/variable");
  EXPECT_EQ(ResolveRoot("/from/argument", program), "/from/argument");
  unsetenv("VEXA_ROOT");
}
#endif

TEST(Folders, OneThatCannotBeMadeIsNamed) {
  const test::TemporaryFolder folder;
  ASSERT_FALSE(SaveFile(folder.Path() / "crosdata", "a file in the way"));
  const std::optional<Fault> fault = CreateFolders(FoldersBelow(folder.Path()));
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultPathAccess);
  EXPECT_NE(fault->Detail.find("crosdata"), std::string::npos);
}

}  // namespace
}  // namespace vexa
