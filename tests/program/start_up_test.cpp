#include "program/start_up.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "core/files.h"
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

// A program started, with the box that its user expects.
struct Started {
  explicit Started(const StartArguments& arguments, const char* box = nullptr) {
    if (box != nullptr) User.Expect(box, Answer::Ok);
    Of.Doc.AskThrough(&User);
    StartUp(Of, arguments);
  }
  test::ScriptedInteraction User{};
  Program Of{};
};
constexpr const char* kNoAccess = "VEXA program file/folder access problem...";

TEST(StartUp, BringsTheStationListAndKeepsTheUsers) {
  const test::TemporaryFolder folder;
  const fs::path program = folder.Path() / "build" / "bin", root = folder.Path() / "root";
  const auto list = [](const std::string& name) {
    return "VEXA STATION LISTING\nWMO numbers must be sequential.  Coordinates are in decimal "
           "degrees.\n01001,\"ENJA\",\"" +
           name + "\",\"\",10,70.9,\"N\",8.6,\"W\"\n99999\n";
  };
  fs::create_directories(program);
  folder.Write("share/VEXA.STN", list("SHIPPED"));
  folder.Write("share/VEXA.URL", "# sources\n");
  for (const std::string name : {"SHIPPED", "CHANGED"}) {
    const Started started({TextFromPath(root), program});
    ASSERT_NE(started.Of.Stations.Find(1001), nullptr);
    EXPECT_EQ(started.Of.Stations.Find(1001)->Name, name);
    folder.Write("root/VEXA.STN", list("CHANGED"));
    EXPECT_EQ(ReadFile(root / "VEXA.URL").Value(), "# sources\n");
  }
}

// A list that the user has changed is looked through at once, whether it has a shipped one beside
// it or not.
TEST(StartUp, AStationListWithAFaultIsToldOf) {
  const test::TemporaryFolder folder;
  const fs::path program = folder.Path() / "bin";
  fs::create_directories(program);
  const std::string listing = "VEXA STATION LISTING\nWMO, decimal degrees\n";
  folder.Write("share/VEXA.STN", listing + "99999\n");
  folder.Write("root/VEXA.STN", listing);
  for (const fs::path& from : {program, fs::path()}) {
    const Started started({TextFromPath(folder.Path() / "root"), from}, "Warning ...");
    EXPECT_TRUE(started.User.Boxes.back().Text.ends_with("ends without the number 99999"));
  }
}

TEST(StartUp, TellsOnceOfAFolderThatCannotBeWritten) {
  const test::TemporaryFolder folder;
  folder.Write("ForecastData", "in the way");
  const Started one({TextFromPath(folder.Path()), {}}, kNoAccess);
  EXPECT_NE(one.User.Boxes.back().Text.find(TextFromPath(folder.Path() / "ForecastData")),
            std::string::npos);
  // A file where the root should be refuses everything, whoever starts the program.
  const fs::path program = folder.Path() / "build" / "bin";
  fs::create_directories(program);
  for (const char* name : {"share/VEXA.STN", "share/VEXA.MTN", "share/VEXA.URL", "root"}) {
    folder.Write(name, "in the way");
  }
  Started all({TextFromPath(folder.Path() / "root"), program}, kNoAccess);
  EXPECT_EQ(TakeNotices(all.Of), "");
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
  const Started started({TextFromPath(root)});
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
  const std::string root = TextFromPath(folder.Path());
  const char* const warning = "Inadequate Screen Resolution";
  Started({root, {}, 640, 480}, warning);
  Started({root, {}, 800, 599}, warning);
  Started({root, {}, 800, 600});
}

}  // namespace
}  // namespace vexa
