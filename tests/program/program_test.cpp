#include "program/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "core/files.h"
#include "core/raw_file.h"
#include "support/document.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

class ProgramTest : public test::ProgramAtHome {
 protected:
  // Counted by the step that each of them shows.
  std::ptrdiff_t Analyses() const {
    return std::ranges::count(user.Statuses, "Calculating DCAPE . . .");
  }
};

TEST_F(ProgramTest, OpenLoadsAnalysesAndDraws) {
  user.Chosen = {TextFromPath(Saved("a.RAW", test::ReferenceConvective()))};
  const Changes changes = RunCommand(program, "mnuOpen");
  EXPECT_EQ(changes, (Changes{.Sounding = true}));
  EXPECT_NE(user.Asked.back().Filter.find("*.RAW"), std::string::npos);
  EXPECT_EQ(program.Current.Record.NumTempLevels(), 27);
  EXPECT_FALSE(program.Plot);

  ASSERT_TRUE(Refresh(program, changes));
  EXPECT_EQ(program.Results.Levels.Count(), 27);
  ASSERT_TRUE(program.Plot);
  EXPECT_FALSE(program.Plot->Page.Items().empty());
  EXPECT_EQ(SoundingBanner(program), "VEXA  -  Reference A, convective");
  EXPECT_TRUE(program.Gate.IsOpen());

  user.Chosen.clear();  // cancelled
  EXPECT_FALSE(RunCommand(program, "mnuOpen").Any());
}

TEST_F(ProgramTest, WhatCannotBeLoadedIsToldAndTheSoundingStays) {
  ASSERT_TRUE(OpenSoundings(program, {Saved("good.RAW", test::ReferenceWinter())}).Sounding);
  const SoundingRecord before = program.Current.Record;

  user.Expect("VEXA", Answer::Ok);
  EXPECT_FALSE(OpenSoundings(program, {Saved("bad.txt", "no sounding at all\n")}).Any());
  EXPECT_NE(user.Boxes.back().Text.find("bad.txt"), std::string::npos);
  EXPECT_EQ(program.Current.Record, before);

  user.Expect("VEXA", Answer::Ok);
  EXPECT_FALSE(OpenSoundings(program, {folder.Path() / "absent.RAW"}).Any());
  EXPECT_TRUE(user.Boxes.back().Text.starts_with("absent.RAW does not exist.\n"));
  EXPECT_EQ(program.Current.Record, before);
  EXPECT_EQ(program.Listed.Size(), 1u);
}

TEST_F(ProgramTest, ADamagedNativeFileShowsWhatCouldBeRead) {
  ASSERT_TRUE(OpenSoundings(program, {Saved("good.RAW", test::ReferenceWinter())}).Sounding);
  std::string cut = WriteRaw(test::ReferenceConvective());
  cut.resize(cut.size() * 2 / 5);
  user.Expect("VEXA", Answer::Ok);
  EXPECT_TRUE(OpenSoundings(program, {Saved("cut.RAW", cut)}).Sounding);
  EXPECT_EQ(program.Current.FileName, "cut.RAW");
  EXPECT_GT(program.Doc.Record().NumTempLevels(), 1);
  EXPECT_LT(program.Doc.Record().NumTempLevels(), 27);
  EXPECT_EQ(program.Doc.Record().Temp(2), test::ReferenceConvective().Temp(2));
  EXPECT_FALSE(program.Doc.AsLoaded()) << "there is no whole file to restore it from";
  // Nothing but the heading: the sounding before stays.
  cut.resize(60);
  user.Expect("VEXA", Answer::Ok);
  EXPECT_FALSE(OpenSoundings(program, {Saved("short.RAW", cut)}).Any());
  EXPECT_EQ(program.Current.FileName, "cut.RAW");
}

TEST_F(ProgramTest, SeveralFilesAreListedForStepping) {
  const std::vector<fs::path> paths{Saved("bad.txt", "nothing\n"),
                                    Saved("a.RAW", test::ReferenceConvective()),
                                    Saved("b.RAW", test::ReferenceWinter())};
  user.Expect("VEXA", Answer::Ok);
  EXPECT_TRUE(OpenSoundings(program, paths).Sounding);
  EXPECT_EQ(program.Current.FileName, "a.RAW");
  EXPECT_EQ(program.Listed.Now(), 1u);
  EXPECT_TRUE(SequenceSounding(program, 2).Sounding);
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_FALSE(SequenceSounding(program, 2).Any());
  EXPECT_FALSE(SequenceSounding(program, 3).Any());
  user.Expect("VEXA", Answer::Ok);
  EXPECT_FALSE(SequenceSounding(program, 0).Any());
  EXPECT_EQ(program.Current.FileName, "b.RAW");
  EXPECT_EQ(program.Listed.Now(), 2u);
}

TEST_F(ProgramTest, ARunningDrawingRefusesCommandsAndCanBeStopped) {
  ASSERT_TRUE(
      Refresh(program, OpenSoundings(program, {Saved("a.RAW", test::ReferenceConvective())})));
  const std::size_t items = program.Plot->Page.Items().size();
  ASSERT_EQ(program.Plot->Mapping.Type(), DiagramType::SkewT);

  // A second command in the middle of a drawing does nothing, the drawing ends.
  int yields = 0;
  user.OnYield = [&] {
    ++yields;
    EXPECT_FALSE(RunCommand(program, "mnuEmagram").Any());
    EXPECT_FALSE(OpenSoundings(program, {folder.Path() / "absent.RAW"}).Any());
    EXPECT_FALSE(Refresh(program, {.View = true}));
    return true;
  };
  EXPECT_TRUE(Refresh(program, {.View = true}));
  EXPECT_GT(yields, 1);
  EXPECT_EQ(program.Set.Diagram, DiagramType::SkewT);

  // A stopped one leaves the picture that was there.
  user.OnYield = [] { return false; };
  EXPECT_TRUE(RunCommand(program, "mnuTephigram").View);
  EXPECT_FALSE(Refresh(program, {.View = true}));
  EXPECT_EQ(program.Plot->Mapping.Type(), DiagramType::SkewT);
  EXPECT_EQ(program.Plot->Page.Items().size(), items);
  EXPECT_TRUE(program.Gate.IsOpen());
}

TEST_F(ProgramTest, AChangedColourDrawsAndDoesNotAnalyse) {
  ASSERT_TRUE(
      Refresh(program, OpenSoundings(program, {Saved("a.RAW", test::ReferenceConvective())})));
  EXPECT_EQ(Analyses(), 1);
  enum { kNothing, kDraws, kAnalyses };
  const std::pair<int, void (*)(Options&)> changes[] = {
      {kDraws, [](Options& set) { set.DryColor = 4; }},
      {kDraws, [](Options& set) { set.Screen = ScreenColor::Black; }},
      {kDraws, [](Options& set) { set.ThermoTemp = TempUnits::Fahrenheit; }},
      {kNothing, [](Options& set) { set.System.DataFolder = "mine"; }},
      {kDraws, [](Options& set) { set.MotionMode = Scaling::Manual; }},
      {kAnalyses, [](Options& set) { set.Lpl = LiftSource::Surface; }},
      {kAnalyses, [](Options& set) { set.Saturation = SaturationOver::Ice; }},
  };
  for (const auto& [does, change] : changes) {
    const std::ptrdiff_t before = Analyses();
    const std::string page = ToSvg(program.Plot->Page, 800, 600);
    change(program.Set);
    EXPECT_TRUE(Refresh(program, {.View = true}));
    EXPECT_EQ(Analyses() - before, does == kAnalyses ? 1 : 0);
    EXPECT_EQ(ToSvg(program.Plot->Page, 800, 600) != page, does != kNothing);
  }
  EXPECT_TRUE(program.Results.Storm.ChosenIsManual);

  // An edit is analysed, its undoing too, and nothing twice.
  SoundingRecord warmer = program.Current.Record;
  warmer.Temp(1) += 1;
  const std::ptrdiff_t before = Analyses();
  program.Doc.Adopt(warmer, "warm");
  EXPECT_TRUE(Refresh(program, {.Sounding = true}));
  EXPECT_TRUE(Refresh(program, {.Sounding = true}));
  EXPECT_EQ(Analyses() - before, 1);
  program.Doc.Undo();
  EXPECT_TRUE(Refresh(program, {.Sounding = true}));
  EXPECT_EQ(Analyses() - before, 2);
}

TEST_F(ProgramTest, TheFileDialogFollowsItsOptions) {
  const fs::path data = folder.Path() / "data";
  program.Where.Data = data;
  program.Set.System.FilterIndexNum = 3;
  SoundingRecord longer = test::ReferenceConvective();
  longer.StationTitle = std::string(40, 'x');
  user.Chosen = {TextFromPath(Saved("a.RAW", longer)),
                 TextFromPath(Saved("c.RAW", test::ReferenceConvective())),
                 TextFromPath(Saved("b.TXT", test::ReferenceConvective()))};
  RunCommand(program, "mnuOpen");
  EXPECT_EQ(user.Asked.back().Folder, TextFromPath(data));  // nothing was open
  EXPECT_EQ(user.Asked.back().FilterIndex, 3);
  const auto order = [this] {
    std::string names;
    for (const auto& member : program.Listed.Members())
      names += TextFromPath(member.File.filename()) + ' ';
    return names;
  };
  EXPECT_EQ(order(), "a.RAW b.TXT c.RAW ");
  for (const auto& [by, isFlipped, expected] :
       {std::tuple(FileOrder::Type, false, "a.RAW c.RAW b.TXT "),
        std::tuple(FileOrder::Size, false, "b.TXT c.RAW a.RAW "),
        std::tuple(FileOrder::Name, true, "c.RAW b.TXT a.RAW ")}) {
    program.Set.System.SortMode = by;
    program.Set.System.SoftFlip = isFlipped;
    RunCommand(program, "mnuOpen");
    EXPECT_EQ(order(), expected);
  }
  EXPECT_EQ(user.Asked.back().Folder, TextFromPath(folder.Path()));
  program.Set.System.AutoDirectoryUpdate = false;
  RunCommand(program, "mnuOpen");
  EXPECT_EQ(user.Asked.back().Folder, TextFromPath(data));
}

}  // namespace
}  // namespace vexa
