// The cross-section's commands without its window: made of what was opened together, kept as a
// dataset, brought up to date.
#include "program/section_display.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/files.h"
#include "program/displays.h"
#include "program/needs.h"
#include "program/section_map.h"
#include "program/session_memory.h"
#include "support/document.h"
#include "support/tagged_items.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;
using crosssection::SectionKind;

class SectionDisplay : public test::ProgramAtHome {
 protected:
  fs::path Station(const std::string& name, double lon,
                   SoundingRecord record = test::ReferenceConvective()) {
    SetDecimalPosition(record, 35, lon);
    record.StationTitle = name;
    return folder.Write(name + ".RAW", record);
  }
  void OpenLine() {
    OpenSoundings(program, {Station("east", -95), Station("middle", -97), Station("west", -100)});
    ASSERT_TRUE(FollowSoundings(program));
  }
  SectionView& View() { return SectionViewOf(program); }
  std::string Titles() {
    std::string all;
    for (const auto& column : View().Of.Columns) all += column.Sounding.StationTitle + " ";
    return all;
  }
  // A record of a station's first two soundings; the same with a third, a day after the second.
  static std::string Record(bool hasThird) {
    const std::string two = ReadFile(test::TestData("igra_station.txt")).Value();
    if (!hasThird) return two;
    std::string third = two.substr(two.rfind('#'));
    return two + third.replace(third.find("2000 01 01"), 10, "2000 01 02");
  }
};

TEST_F(SectionDisplay, EscapeStopsTheReadingAndKeepsTheSectionOfBefore) {
  OpenLine();
  user.Shares.clear();
  EXPECT_TRUE(ReadSectionAgain(program));
  ASSERT_GE(user.Shares.size(), 4U);  // three soundings and the end
  EXPECT_TRUE(std::ranges::is_sorted(user.Shares));
  View().Of.Columns[0].Sounding.StationTitle = "as before";
  user.OnYield = [left = 2]() mutable { return --left >= 0; };
  EXPECT_FALSE(ReadSectionAgain(program));
  EXPECT_EQ(View().Of.Columns.at(0).Sounding.StationTitle, "as before");
}

TEST_F(SectionDisplay, IsMadeOfWhatWasOpenedTogether) {
  EXPECT_NE(NeedsSection(program), "");
  OpenLine();
  EXPECT_EQ(NeedsSection(program), "");
  ASSERT_EQ(View().Of.Columns.size(), 3U);
  EXPECT_EQ(View().Of.Kind, SectionKind::Distance);
  const DisplayRow& row = *FindDisplay(AllDisplays(), "CrossSection");
  EXPECT_EQ(LackOf(row, program), "");
  EXPECT_NE(test::TextsOf(DrawDisplay(row, program, {12000, 9000})).find("Temperature (C)"),
            std::string::npos);
  EXPECT_TRUE(commands::ChooseField(program, "RH"));
  EXPECT_NE(test::TextsOf(DrawDisplay(row, program, {12000, 9000})).find("Relative Humidity"),
            std::string::npos);

  commands::TurnSection(program);
  commands::InterpolateSection(program, true);
  EXPECT_EQ(Titles(), "west Interpolated middle Interpolated east ");
  commands::InterpolateSection(program, false);
  EXPECT_EQ(Titles(), "west middle east ");
  EXPECT_EQ(ListCrossSection(program).size(), 7U);  // title, blank, head, three, the memory
  commands::ChooseKind(program, SectionKind::Time);
  EXPECT_NE(View().Why.find("not known"), std::string::npos);
  EXPECT_NE(test::TextsOf(DrawDisplay(row, program, {12000, 9000})).find("not known"),
            std::string::npos);
}

TEST_F(SectionDisplay, TakesThePickedStations) {
  OpenLine();
  commands::PickStation(program, {35, -97});
  EXPECT_EQ(Titles(), "east west ");
  EXPECT_EQ(PickText(View()), "2 of 3 stations in the section");
  EXPECT_EQ(StationsOf(View()).back().Name, "middle");
  commands::PickStation(program, {35, -100});
  EXPECT_NE(View().Why.find("One sounding alone"), std::string::npos);
  EXPECT_EQ(NeedsSection(program), "");  // the others can be picked again
  commands::PickAllStations(program);
  EXPECT_EQ(Titles(), "east middle west ");
  // Along a line that is laid from the west, whatever the way was before; by hand 97 W lies 2.74 km
  // south of the great circle between 100 W and 95 W on the parallel of 35 N.
  EXPECT_TRUE(commands::PickAlong(program, {35, -100}, {35, -95}, 3));
  EXPECT_EQ(Titles(), "west middle east ");
  EXPECT_TRUE(commands::PickAlong(program, {35, -100}, {35, -95}, 2.5));
  EXPECT_EQ(Titles(), "west east ");
  EXPECT_FALSE(commands::PickAlong(program, {45, -100}, {45, -95}, 30));
  EXPECT_EQ(Titles(), "west east ");
}

TEST_F(SectionDisplay, OfAFileOfManyTakesASpanOfTime) {
  const fs::path path = folder.Write("record.txt", Record(true));
  OpenSoundings(program, {path});
  EXPECT_EQ(program.Listed.Size(), 3U);
  ASSERT_TRUE(FollowSoundings(program));
  ASSERT_EQ(View().Of.Columns.size(), 3U);
  commands::PickSpan(program, std::nullopt, ObservationTime{2000, 1, 1, 23, 0});
  EXPECT_EQ(View().Of.Columns.size(), 2U);
  EXPECT_EQ(View().Aside.size(), 1U);
  ASSERT_TRUE(ReadSectionAgain(program));  // of more than it takes only the span is read
  EXPECT_EQ(View().Of.Columns.size(), 2U);
  EXPECT_EQ(View().Aside.size(), 0U);
  commands::PickSpan(program, std::nullopt, std::nullopt);
  OpenSoundings(program, {path, Station("east", -95)});
  EXPECT_EQ(program.Listed.Size(), 4U);
}

TEST_F(SectionDisplay, AsksBeforeItDrawsWinds) {
  OpenSoundings(program, {Station("east", -95),
                          Station("calm", -90, test::WithoutWinds(test::ReferenceConvective()))});
  ASSERT_TRUE(FollowSoundings(program));
  user.Expect("Warning . . .", Answer::Cancel);
  EXPECT_FALSE(commands::ChooseField(program, "WND"));
  EXPECT_EQ(View().State.Field, "TMP");
  user.Expect("Warning . . .", Answer::Ok);
  EXPECT_TRUE(commands::ChooseField(program, "WND"));
  EXPECT_EQ(View().State.Field, "WND");
}

TEST_F(SectionDisplay, IsKeptAsADataset) {
  OpenLine();
  user.Expect("Bad data file.", Answer::Ok);  // not among the soundings
  EXPECT_FALSE(commands::SaveDataset(program, program.Where.Data / "line.SEC"));
  fs::create_directories(program.Where.CrossSection);
  const fs::path path = program.Where.CrossSection / "line.SEC";
  ASSERT_TRUE(commands::SaveDataset(program, path));
  EXPECT_EQ(ReadList(program.Where.CrossSection, crosssection::kDatasetListFile).size(), 3U);
  user.Expect("Cross-Section", Answer::Ok);
  commands::AutoLoadSection(program);

  Program next;
  next.Where = program.Where;
  next.Doc.AskThrough(&user);
  commands::RestoreSection(next);
  ASSERT_EQ(SectionViewOf(next).Of.Columns.size(), 3U);
  EXPECT_EQ(SectionViewOf(next).Of.Name, "line");
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(SectionViewOf(next).Of.Columns[i].X, View().Of.Columns[i].X, 1e-6);
  }

  ASSERT_FALSE(SaveFile(path, "\"VEXA 5.2\",\"CROSS-SECTION\"\r\n"));
  user.Expect("Incorrect dataset format", Answer::Ok);
  EXPECT_FALSE(commands::OpenDataset(next, path));
  user.Expect("Sorry ...", Answer::Ok);
  EXPECT_FALSE(commands::OpenDataset(next, path, commands::DatasetUse::Edit));
  EXPECT_EQ(SectionViewOf(next).Of.Columns.size(), 3U);  // what was there stays
  const fs::path other = program.Where.CrossSection / "other.SEC";
  ASSERT_TRUE(commands::SaveDataset(program, other));
  ASSERT_TRUE(commands::SaveDataset(program, program.Where.CrossSection / "new.SEC"));
  ASSERT_TRUE(commands::SaveDataset(program, other));
  const auto& recent = View().State.Recent;
  EXPECT_EQ(recent[0], TextFromPath(other));
  EXPECT_NE(recent[1].find("new.SEC"), std::string::npos);
  EXPECT_NE(recent[2].find("line.SEC"), std::string::npos);
  EXPECT_EQ(recent[3], "");
}

TEST_F(SectionDisplay, TakesNewerSoundingsIntoASectionInTime) {
  const fs::path path = folder.Write("record.txt", Record(false));
  program.Listed = SoundingSet({{path, 0}, {path, 1}});
  ASSERT_TRUE(FollowSoundings(program));
  ASSERT_EQ(View().Of.Kind, SectionKind::Time);
  ASSERT_EQ(View().Of.Columns.size(), 2U);
  user.Expect("Cross-Section Auto-Update ...", Answer::No);
  EXPECT_EQ(commands::UpdateSection(program), 0);
  folder.Write("record.txt", Record(true));
  user.Expect("Cross-Section Auto-Update ...", Answer::Yes);
  EXPECT_EQ(commands::UpdateSection(program), 1);
  EXPECT_EQ(View().Of.Columns.size(), 3U);
  EXPECT_TRUE(commands::TransferToSounding(program, 1).Sounding);
  EXPECT_EQ(program.Current.Record, View().Of.Columns[1].Sounding);
}

}  // namespace
}  // namespace vexa
