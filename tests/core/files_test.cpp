#include "core/files.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#ifndef _WIN32
#include <sys/resource.h>
#endif

#include "core/error_report.h"
#include "core/folders.h"
#include "core/path_forms.h"
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
    EXPECT_EQ(fault->Number, n == 5 ? kFaultAccessRefused : kFaultDiskFull);
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

TEST(SaveRAW, AFailedSaveAndADamagedFileLoseNothing) {
  const test::TemporaryFolder folder;
  SilentInteraction quiet;
  CurrentSounding current{.Record = test::ReferenceWinter(),
                          .DataFolder = folder.Path(),
                          .FileName = "winter.RAW",
                          .Ask = &quiet};
  ASSERT_EQ(SaveRAW(current), Status::Ok);
  const std::string whole = ReadFile(current.FilePath()).Value();
  current.Record = test::ReferenceConvective();
  for (int n = 1; n <= 3; ++n) {
    FailingOps ops(n);
    EXPECT_EQ(SaveRAW(current, ops), Status::Error);
    EXPECT_EQ(ReadFile(current.FilePath()).Value(), whole);
    EXPECT_EQ(FilesIn(folder.Path()), 1);
  }
  EXPECT_EQ(quiet.Boxes.size(), 3U);
  EXPECT_EQ(quiet.Boxes[0].Text.substr(0, 22), "Disk is probably full.");
  // Half of a file is kept beside the new one.
  const std::string torn = whole.substr(0, whole.size() / 2);
  ASSERT_FALSE(SaveFile(current.FilePath(), torn));
  ASSERT_EQ(SaveRAW(current), Status::Ok);
  EXPECT_EQ(ReadFile(folder.Path() / "winter.RAW.bak").Value(), torn);
}

// What killed processes leave is cleared, what a living one writes is not.
TEST(AtomicFile, LeftoversOfTheKilledDoNotPileUp) {
  const test::TemporaryFolder folder;
  const fs::path path = folder.Path() / "x.RAW";
  const auto numbered = [&path](int number) {
    return PathFromText(TextFromPath(path) + ".tmp" + std::to_string(number));
  };
  const auto leave = [&numbered](int number, int hours = 1) {
    std::ofstream(numbered(number)) << "half";
    fs::last_write_time(numbered(number),
                        fs::file_time_type::clock::now() - std::chrono::hours(hours));
  };
  AtomicFile living(path);
  ASSERT_FALSE(living.Write("living"));  // x.RAW.tmp1
  fs::last_write_time(numbered(1), fs::file_time_type::clock::now() - std::chrono::hours(1));
  for (int number = 2; number <= 100; ++number) leave(number);
  ASSERT_FALSE(SaveFile(path, "saved"));
  EXPECT_EQ(ReadFile(path).Value(), "saved");
  EXPECT_EQ(FilesIn(folder.Path()), 2) << "the file and the one that lives";
  ASSERT_FALSE(living.Commit());
  EXPECT_EQ(ReadFile(path).Value(), "living");

  for (int number = 1; number <= 100; ++number) leave(number, 0);
  const auto young = SaveFile(path, "again");
  ASSERT_TRUE(young);
  EXPECT_EQ(FaultMessage({}, *young).find("Too many files"), 0u);
  EXPECT_NE(young->Detail.find("100 unfinished copies"), std::string::npos);
  fs::remove(numbered(100));
  EXPECT_FALSE(SaveFile(path, "again")) << "one place is free";
  for (int number = 1; number <= 100; ++number) fs::remove(numbered(number));

  for (const int number : {3, 7}) leave(number);
  std::ofstream(folder.Path() / "x.RAW.tmp4") << "of this minute";
  std::ofstream(folder.Path() / "notes.tmp") << "the user's";
  RemoveLeftovers(folder.Path());
  EXPECT_EQ(FilesIn(folder.Path()), 3);
}

#ifndef _WIN32
TEST(AtomicFile, TheUsersLinksAreFollowedAndOthersReplaced) {
  const test::TemporaryFolder folder;
  const fs::path target = folder.Path() / "target", link = folder.Path() / "link";
  ASSERT_FALSE(SaveFile(target, "old"));
  fs::create_symlink(target, link);
  ASSERT_FALSE(SaveFile(link, "new"));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(ReadFile(target).Value(), "new");
  ASSERT_FALSE(SaveFile(link, "own", SystemFileOps(), Links::Replace));
  EXPECT_FALSE(fs::is_symlink(link));
  EXPECT_EQ(ReadFile(link).Value(), "own");
  EXPECT_EQ(ReadFile(target).Value(), "new");
}
#endif

TEST(FaultNumber, TheHeadlineSaysWhatTheSystemSays) {
  struct Case {
    std::errc Error;
    const char* Headline;
  };
  const Case cases[] = {
      {std::errc::permission_denied, "Access is refused"},
      {std::errc::too_many_files_open, "Too many files"},
      {std::errc::io_error, "The device reports an error"},
      {std::errc::no_space_on_device, "Disk is probably full."},
      {std::errc::is_a_directory, "Incorrect Path and/or Filename"},
      {std::errc::not_a_directory, "Drive and/or File Path does not exist."},
      {std::errc::timed_out, "The device reports an error"},
  };
  for (const Case& c : cases) {
    const Fault fault{FaultNumber(std::make_error_code(c.Error))};
    EXPECT_EQ(FaultMessage({}, fault).substr(0, std::string(c.Headline).size()), c.Headline);
  }
}

TEST(Paths, ABackslashIsPartOfANameWhereItIsNoSeparator) {
  const test::TemporaryFolder folder;
  const std::string root = TextFromPath(folder.Path());
  const fs::path path = PathFromText(root + "/out\\x.RAW");
#ifdef _WIN32
  EXPECT_EQ(path.filename(), "x.RAW");
#else
  ASSERT_FALSE(SaveFile(path, "text"));
  EXPECT_EQ(path.filename(), "out\\x.RAW");
  EXPECT_EQ(FilesIn(folder.Path()), 1);
  EXPECT_EQ(PathFromSetting(root + "/out\\x.RAW"), path) << "there is such a file";
  EXPECT_EQ(TextFromPath(R"(\\?\x)"), R"(\\?\x)");
#endif
}

// Folders of settings below the program's own: with drives where the system has them, plain names
// where it has none. A drive without a root would mean wherever its user happens to stand.
TEST(Paths, DrivesAndServersOfSettings) {
  constexpr bool kHasDrives = fs::path::preferred_separator == '\\';
  struct Case {
    const char *Setting, *WithDrives, *Without;
  };
  const Case cases[] = {
      {"vexadata\\", R"(P:\own\vexadata\)", "/own/vexadata/"},
      {"..\\data/2001", R"(P:\own\..\data\2001)", "/own/../data/2001"},
      {"\\data", R"(P:\data)", "/data"},
      {"C:\\M\xC3\xBCnchen Daten", "C:\\M\xC3\xBCnchen Daten", "/own/C:/M\xC3\xBCnchen Daten"},
      {"d:/data", R"(d:\data)", "/own/d:/data"},
      {"D:", R"(D:\)", "/own/D:"},
      {"D:data\\2001", R"(D:\data\2001)", "/own/D:data/2001"},
      {R"(\\server\share\data)", R"(\\server\share\data)", "//server/share/data"},
  };
  const fs::path own(kHasDrives ? R"(P:\own)" : "/own");
  for (const Case& c : cases) {
    const fs::path path = PathBelow(own, c.Setting).make_preferred();
    EXPECT_EQ(TextFromPath(path), kHasDrives ? c.WithDrives : c.Without) << c.Setting;
  }
}

TEST(Paths, AServerOutlivesShortening) {
  constexpr bool kHasServers = fs::path::preferred_separator == '\\';
  const fs::path share = PathFromText("//server/share/a/../b/./c.RAW");
  EXPECT_EQ(TextFromPath(NormalPath(share)),
            kHasServers ? R"(\\server\share\b\c.RAW)" : "/server/share/b/c.RAW");
  if (!kHasServers) return;
  const std::string deep = R"(\\server\share\)" + std::string(250, 'x');
  EXPECT_EQ(LongForm(PathFromText(deep)).native(),
            PathFromText(R"(\\?\UNC)" + deep.substr(1)).native());
  EXPECT_EQ(TextFromPath(LongForm(PathFromText(deep))), deep);
}

// Longer than the 260 characters that some systems take without further ado, with umlauts and
// blanks.
TEST(Paths, LongOnesAreReachedAndNamedPlainly) {
  const test::TemporaryFolder folder;
  fs::path deep = folder.Path();
  for (int i = 0; i < 5; ++i) {
    fs::path name(u8"Messungen \u00FCber dem gro\u00DFen Wald im Sommer, Teil ");
    deep /= name += std::to_string(i);
  }
  ASSERT_FALSE(CreateFolders(FoldersBelow(deep)));
  const fs::path file = FoldersBelow(deep).Data / fs::path(u8"S\u00F6nde 1.RAW");
  ASSERT_GT(TextFromPath(file).size(), 260U);
  ASSERT_FALSE(SaveFile(file, "old"));
  ASSERT_FALSE(SaveFile(file, "text"));
  EXPECT_EQ(ReadFile(file).Value(), "text");
  EXPECT_TRUE(StampOf(file));
  const fs::path missing = file.parent_path() / "none.RAW";
  EXPECT_EQ(ReadFile(missing).Error().Detail, TextFromPath(missing) + ": not found");
  const std::vector<FolderEntry> entries = EntriesOf(file.parent_path());
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].Path, file);
  EXPECT_EQ(entries[0].Type, fs::file_type::regular);
  EXPECT_TRUE(Remove(deep)) << "a folder that holds something";
  EXPECT_FALSE(Remove(file));
  EXPECT_FALSE(Remove(file)) << "it is gone already";
  EXPECT_FALSE(IsThere(file));
  for (const FolderEntry& entry : EntriesOf(deep)) EXPECT_FALSE(Remove(entry.Path));
  for (; deep != folder.Path(); deep = deep.parent_path()) EXPECT_FALSE(Remove(deep));
  EXPECT_TRUE(fs::is_empty(folder.Path()));
}

// A link is what it leads to for who reads, itself for who lists or removes.
TEST(Paths, LinksAreFollowedButNotListedAsWhatTheyLeadTo) {
  const test::TemporaryFolder folder;
  const fs::path file = folder.Path() / "a.RAW";
  const fs::path link = folder.Path() / "b.RAW";
  ASSERT_FALSE(SaveFile(file, "text"));
  std::error_code failed;
  fs::create_symlink(file, link, failed);
  if (failed) GTEST_SKIP() << "links need a right here: " << failed.message();
  EXPECT_TRUE(IsOrdinaryFile(link));
  EXPECT_EQ(StampOf(link), StampOf(file));
  EXPECT_EQ(OwnFactsOf(link, failed).Status.type(), fs::file_type::symlink);
  for (const FolderEntry& entry : EntriesOf(folder.Path())) {
    EXPECT_EQ(entry.Type == fs::file_type::symlink, entry.Path == link);
  }
  EXPECT_FALSE(Remove(file));
  EXPECT_FALSE(IsThere(link)) << "it leads nowhere";
  EXPECT_EQ(FactsOf(link, failed).Status.type(), fs::file_type::not_found);
  EXPECT_FALSE(Remove(link));
  EXPECT_TRUE(EntriesOf(folder.Path()).empty());
}

// Where a reader keeps others from replacing its file the save fails in words, and nothing is lost.
TEST(SaveFile, AFileThatAnotherProgramHasOpenIsReplacedOrStays) {
  const test::TemporaryFolder folder;
  const fs::path path = folder.Path() / "open.RAW";
  ASSERT_FALSE(SaveFile(path, "old"));
  std::FILE* const reader = OpenFile(path, "rb");
  ASSERT_NE(reader, nullptr);
  const std::optional<Fault> fault = SaveFile(path, "new");
  std::fclose(reader);
#ifdef _WIN32
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultAccessRefused);
#else
  EXPECT_FALSE(fault);
#endif
  EXPECT_EQ(ReadFile(path).Value(), fault ? "old" : "new");
  EXPECT_EQ(FilesIn(folder.Path()), 1);
  EXPECT_FALSE(SaveFile(path, "newer"));
  EXPECT_EQ(ReadFile(path).Value(), "newer");
}

TEST(EndInWords, MemoryThatRunsOutIsASentence) {
  const auto ask = [] { throw std::bad_alloc(); };
  const auto runOut = [&ask]() noexcept {
    EndInWords("vexa");
    ask();
  };
  EXPECT_EXIT(runOut(), testing::ExitedWithCode(1), "vexa: there is not enough memory");
}

#ifndef _WIN32
// A variable of the surroundings, which is as before when the test ends.
class Variable {
 public:
  explicit Variable(const char* name) : name_(name) {
    if (const char* value = std::getenv(name)) before_ = value;
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() {
    if (before_) {
      Set(before_->c_str());
    } else {
      unsetenv(name_);
    }
  }
  void Set(const char* value) const { setenv(name_, value, 1); }

 private:
  const char* name_;
  std::optional<std::string> before_{};
};

TEST(Folders, TheRootComesFromTheFirstThatNamesOne) {
  const Variable root("VEXA_ROOT"), data("XDG_DATA_HOME"), home("HOME");
  const test::TemporaryFolder folder;
  const fs::path program = folder.Path() / "program";
  ASSERT_FALSE(CreateFolders(FoldersBelow(program)));
  EXPECT_TRUE(fs::is_directory(program / "vexadata"));
  data.Set("/data/of/user");
  unsetenv("VEXA_ROOT");
  EXPECT_EQ(ResolveRoot({}, program), "/data/of/user/vexa");
  data.Set("relative/is/ignored");
  home.Set("/home/of/user");
  EXPECT_EQ(ResolveRoot({}, program), "/home/of/user/.local/share/vexa");
  ASSERT_FALSE(SaveFile(program / "vexa.portable", ""));
  EXPECT_EQ(ResolveRoot({}, program), program);
  root.Set("/from/variable");
  EXPECT_EQ(ResolveRoot({}, program), "/from/variable");
  EXPECT_EQ(ResolveRoot("/from/argument", program), "/from/argument");
}
#endif

TEST(Folders, OneThatCannotBeMadeIsNamed) {
  const test::TemporaryFolder folder;
  ASSERT_FALSE(SaveFile(folder.Path() / "crosdata", "a file in the way"));
  const std::optional<Fault> fault = CreateFolders(FoldersBelow(folder.Path()));
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Number, kFaultPathNotFound);
  EXPECT_NE(fault->Detail.find("crosdata"), std::string::npos);
}

}  // namespace
}  // namespace vexa
