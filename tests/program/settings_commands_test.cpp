#include "program/settings_commands.h"

#include <gtest/gtest.h>

#include <string>

#include "core/files.h"
#include "core/raw_file.h"
#include "program/listed_soundings.h"
#include "program/start_up.h"
#include "support/soundings.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

class SettingsTest : public testing::Test {
 protected:
  // A program as it starts in the test's folder.
  void Start(Program& program) {
    program.Doc.AskThrough(&user);
    StartUp(program, {TextFromPath(folder.Path()), {}});
  }
  std::string Read(const char* name) {
    const Outcome<std::string> bytes = ReadFile(folder.Path() / name);
    return bytes ? bytes.Value() : std::string();
  }
  fs::path Saved(const std::string& name) {
    return folder.Write(name, test::ReferenceConvective());
  }

  test::TemporaryFolder folder;
  test::ScriptedInteraction user;
};

TEST_F(SettingsTest, WhatIsAcceptedIsThereAtTheNextStart) {
  Program program;
  Start(program);
  EXPECT_TRUE(program.Notices.empty());
  EXPECT_TRUE(KeepSettings(program));
  EXPECT_EQ(Read("VEXAMAIN.SYS"), "");  // nothing has changed
  SettingsDraft draft = CurrentSettings(program);
  draft.Set.Diagram = DiagramType::Tephigram;
  draft.Set.System.DataFolder = "my data\\";
  const auto changes = AdoptSettings(program, draft);
  ASSERT_TRUE(changes);
  EXPECT_TRUE(changes->View);
  EXPECT_EQ(program.Where.Data, program.Where.Root / "my data" / "");
  EXPECT_TRUE(KeepSettings(program));
  EXPECT_EQ(Read("VEXA56+.HOD"), "");  // only the file that changed

  Program next;
  Start(next);
  EXPECT_EQ(next.Settings, program.Settings);
  EXPECT_EQ(next.Where.Data, program.Where.Data);
}

TEST_F(SettingsTest, DamagedFilesAreToldOfAndKeptAside) {
  folder.Write("VEXAMAIN.SYS", "header\r\n\"maybe\",\"yes\",\"no\"\r\n");
  Program program;
  Start(program);
  const std::string told = TakeNotices(program);
  EXPECT_NE(told.find("VEXAMAIN.SYS"), std::string::npos) << told;
  EXPECT_EQ(TakeNotices(program), "");
  program.Set.Above100mb = true;
  EXPECT_TRUE(KeepSettings(program));
  EXPECT_NE(Read("VEXAMAIN.SYS.bak").find("maybe"), std::string::npos);
}

TEST_F(SettingsTest, WhatCannotBeWrittenStaysInForce) {
  Program program;
  Start(program);
  // A folder in the file's place refuses writing for every user.
  fs::create_directory(folder.Path() / "VEXAMAIN.SYS");
  program.Set.MbLimit = 300;
  user.Expect("VEXA", Answer::Ok);
  EXPECT_FALSE(KeepSettings(program));
  EXPECT_NE(user.Boxes.back().Text.find("VEXAMAIN.SYS"), std::string::npos);
  EXPECT_EQ(program.Set.MbLimit, 300);
  fs::remove(folder.Path() / "VEXAMAIN.SYS");
  EXPECT_TRUE(KeepSettings(program));  // still owed
  EXPECT_NE(Read("VEXAMAIN.SYS").find("300"), std::string::npos);
}

TEST_F(SettingsTest, NothingChangesWhileACommandDraws) {
  Program program;
  SettingsDraft draft;
  draft.Set.MbLimit = 300;
  const auto pass = program.Gate.Enter();
  EXPECT_FALSE(AdoptSettings(program, draft));
  EXPECT_EQ(program.Set.MbLimit, 100);
}

TEST_F(SettingsTest, RemembersFilesAndLoadsTheMarkedOneAtStart) {
  Program program;
  Start(program);
  for (const char* name : {"a.RAW", "b.RAW", "a.RAW"}) OpenSoundings(program, {Saved(name)});
  const auto& recent = program.Settings.Window.RecentFiles;
  EXPECT_EQ(recent[0], TextFromPath(folder.Path() / "a.RAW"));
  EXPECT_EQ(recent[1], TextFromPath(folder.Path() / "b.RAW"));
  EXPECT_EQ(recent[2], "");
  RunCommand(program, "mnuAutoLoad");
  RunCommand(program, "mnuRecentFile2");
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_TRUE(KeepSettings(program));

  Program next;
  Start(next);
  EXPECT_TRUE(AutoLoadCode(next).Sounding);
  EXPECT_EQ(next.Current.FileName, "a.RAW");
  EXPECT_TRUE(next.Notices.empty());
  next.Set.System.AutoType = "FSL";
  EXPECT_TRUE(AutoLoadCode(next).Sounding);
  ASSERT_EQ(next.Notices.size(), 1u);
  EXPECT_NE(next.Notices[0].find("is RAW now"), std::string::npos);
  RunCommand(next, "mnuAutoLoad");  // takes the mark away
  EXPECT_FALSE(AutoLoadCode(next).Any());
}

TEST_F(SettingsTest, HeadersOfTheListedSoundingsOutliveTheSession) {
  Program program;
  Start(program);
  program.Set.System.HeaderFile = "Mine.Dat";
  OpenSoundings(program, {Saved("a.RAW"), Saved("b.RAW"), Saved("c.RAW")});
  SequenceSounding(program, 2);
  EXPECT_EQ(ListedText(program, 1), "2/3  b.RAW");  // not read yet
  EXPECT_EQ(ListedText(program, 2).find("3/3  " + program.Current.Record.StationTitle), 0u);
  RunCommand(program, "mnuAutoLoad");
  EXPECT_TRUE(KeepSettings(program));

  Program next;
  Start(next);
  EXPECT_TRUE(AutoLoadCode(next).Sounding);
  EXPECT_EQ(ListedText(next, 2), ListedText(program, 2));
  EXPECT_EQ(ListedText(next, 1), "2/3  b.RAW");
}

TEST_F(SettingsTest, TheReferenceSoundingComesFromItsFolder) {
  Program program;
  Start(program);
  const std::filesystem::path other = folder.Path() / "mine";
  std::filesystem::create_directory(other);
  ASSERT_FALSE(SaveFile(other / "REFERENCE.DAT", WriteRaw(test::ReferenceWinter())));
  RunCommand(program, "mnuReference");
  ASSERT_TRUE(program.View.Reference);
  EXPECT_EQ(program.View.Reference->Record().StationTitle, "ICAO standard atmosphere");
  program.Set.System.ReferenceFolder = "mine";
  FollowFolders(program);
  EXPECT_FALSE(program.View.ShowsReference);
  RunCommand(program, "mnuReference");
  ASSERT_TRUE(program.View.Reference);
  EXPECT_EQ(program.View.Reference->Record().StationTitle, test::ReferenceWinter().StationTitle);
}

}  // namespace
}  // namespace vexa
