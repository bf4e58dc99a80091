#include "program/start_up.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "core/files.h"
#include "core/raw_file.h"
#include "program/commands.h"
#include "program/settings_commands.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

TEST(StartUp, PassesItsStagesInOrderAndLeavesFoldersAndTables) {
  const test::TemporaryFolder folder;
  const fs::path root = folder.Path() / "vexa root";
  test::ScriptedInteraction user;
  Program program;
  program.Doc.AskThrough(&user);
  std::string marks;
  StartUp(program, {.Root = TextFromPath(root), .Done = [&](std::string_view mark) {
                      marks += mark;
                      EXPECT_EQ(program.Current.Procedure, mark);
                    }});
  EXPECT_EQ(marks, "AABBCCDDEEFFGGHHIIJJKKLLMMNNOOPP");
  EXPECT_TRUE(program.Notices.empty());
  std::set<std::string> entries;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    entries.insert(entry.path().filename().string());
  }
  EXPECT_EQ(entries,
            (std::set<std::string>{"ExportData", "ForecastData", "REFERENCE.DAT", "VEXA.IKO",
                                   "VEXA.SAT", "VEXA.WET", "crosdata", "vexadata"}));
}

TEST(StartUp, BringsTheStationListAndKeepsTheUsers) {
  const test::TemporaryFolder folder;
  const fs::path program = folder.Path() / "build" / "bin";
  const auto list = [](const std::string& name) {
    return "VEXA STATION LISTING\nWMO numbers must be sequential.  Coordinates are in decimal "
           "degrees.\n01001,\"ENJA\",\"" +
           name + "\",\"\",10,70.9,\"N\",8.6,\"W\"\n99999\n";
  };
  fs::create_directories(program);
  fs::create_directories(folder.Path() / "share");
  ASSERT_FALSE(SaveFile(folder.Path() / "share" / "VEXA.STN", list("SHIPPED")));
  const fs::path root = folder.Path() / "root";
  ASSERT_FALSE(SaveFile(folder.Path() / "share" / "VEXA.URL", "# sources\n"));
  for (const std::string name : {"SHIPPED", "CHANGED"}) {
    test::ScriptedInteraction user;
    Program started;
    started.Doc.AskThrough(&user);
    StartUp(started, {TextFromPath(root), program});
    ASSERT_NE(started.Stations.Find(1001), nullptr);
    EXPECT_EQ(started.Stations.Find(1001)->Name, name);
    ASSERT_FALSE(SaveFile(root / "VEXA.STN", list("CHANGED")));
    EXPECT_EQ(ReadFile(root / "VEXA.URL").Value(), "# sources\n");
  }
}

// A list that the user has changed is looked through at once, whether it has a shipped one beside
// it or not.
TEST(StartUp, AStationListWithAFaultIsToldOf) {
  const test::TemporaryFolder folder;
  const fs::path program = folder.Path() / "bin", root = folder.Path() / "root";
  fs::create_directories(program);
  fs::create_directories(folder.Path() / "share");
  fs::create_directories(root);
  const std::string shipped = "VEXA STATION LISTING\nWMO, decimal degrees\n99999\n";
  ASSERT_FALSE(SaveFile(folder.Path() / "share" / "VEXA.STN", shipped));
  ASSERT_FALSE(SaveFile(root / "VEXA.STN", shipped.substr(0, shipped.size() - 6)));
  for (const fs::path& from : {program, fs::path()}) {
    test::ScriptedInteraction user;
    user.Expect("Warning ...", Answer::Ok);
    Program started;
    started.Doc.AskThrough(&user);
    StartUp(started, {TextFromPath(root), from});
    EXPECT_TRUE(user.Boxes.back().Text.ends_with("ends without the number 99999"))
        << user.Boxes.back().Text;
    EXPECT_EQ(started.Current.StatusText, "error");
  }
}

TEST(StartUp, TellsOfAFolderThatCannotBeWritten) {
  const test::TemporaryFolder folder;
  folder.Write("ForecastData", "in the way");
  test::ScriptedInteraction user;
  user.Expect("VEXA program file/folder access problem...", Answer::Ok);
  Program program;
  program.Doc.AskThrough(&user);
  StartUp(program, {TextFromPath(folder.Path()), {}});
  EXPECT_EQ(
      user.Boxes.back().Text,
      "VEXA is unable to access program folder:  " + TextFromPath(folder.Path() / "ForecastData") +
          "\nBe sure the Folder and Share Permissions are sufficient.");
}

// A file where the root should be refuses everything, whoever starts the program.
TEST(StartUp, ARootThatTakesNoFilesIsToldOfOnce) {
  const test::TemporaryFolder folder;
  const fs::path program = folder.Path() / "build" / "bin";
  fs::create_directories(program);
  fs::create_directories(folder.Path() / "share");
  for (const char* name : {"VEXA.STN", "VEXA.MTN", "VEXA.URL"}) {
    ASSERT_FALSE(SaveFile(folder.Path() / "share" / name, "shipped"));
  }
  folder.Write("root", "in the way");
  test::ScriptedInteraction user;
  user.Expect("VEXA program file/folder access problem...", Answer::Ok);
  Program started;
  started.Doc.AskThrough(&user);
  StartUp(started, {TextFromPath(folder.Path() / "root"), program});
  EXPECT_EQ(TakeNotices(started), "");
}

#ifndef _WIN32
TEST(StartUp, LinksAreNotWrittenThrough) {
  const test::TemporaryFolder folder;
  const fs::path root = folder.Path() / "root", others = folder.Path() / "others";
  fs::create_directories(root / "ExportData");
  fs::create_directories(others);
  const auto link = [&](const fs::path& from) {
    const fs::path target = others / from.filename();
    EXPECT_FALSE(SaveFile(target, "precious"));
    fs::create_symlink(target, root / from);
  };
  const char* const names[] = {"ExportData/dumptestfile123.xyz", "VEXA.IKO", "REFERENCE.DAT"};
  for (const char* name : names) link(name);
  fs::create_symlink(others / "made", root / "VEXA.WET");  // leads nowhere yet
  test::ScriptedInteraction user;
  Program program;
  program.Doc.AskThrough(&user);
  StartUp(program, {TextFromPath(root)});
  for (const char* name : names) {
    EXPECT_EQ(ReadFile(others / fs::path(name).filename()).Value(), "precious") << name;
  }
  EXPECT_FALSE(fs::exists(others / "made"));
  EXPECT_TRUE(fs::is_symlink(root / "ExportData/dumptestfile123.xyz"));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(root / "VEXA.IKO")));
}
#endif

TEST(StartUp, WarnsOfASmallScreen) {
  const test::TemporaryFolder folder;
  struct Case {
    int width, height;
    bool warns;
  };
  for (const Case& c : {Case{640, 480, true}, Case{800, 599, true}, Case{800, 600, false}}) {
    test::ScriptedInteraction user;
    if (c.warns) user.Expect("Inadequate Screen Resolution", Answer::Ok);
    Program program;
    program.Doc.AskThrough(&user);
    StartUp(program, {TextFromPath(folder.Path()), {}, c.width, c.height});
  }
}

}  // namespace
}  // namespace vexa
