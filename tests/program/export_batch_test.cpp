#include "program/export_batch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/numbers.h"
#include "core/raw_file.h"
#include "program/commands.h"
#include "program/program.h"
#include "support/document.h"
#include "support/full_disk.h"
#include "support/soundings.h"

namespace vexa {
namespace {

class ExportBatchTest : public testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    return TextFromPath(folder_.Write(name, text));
  }
  std::vector<std::string> Files(int count) {
    std::vector<std::string> files;
    for (int i = 1; i <= count; ++i) {
      SoundingRecord record = i % 2 == 0 ? test::ReferenceWinter() : test::ReferenceConvective();
      record.StationTitle = "Number " + Shortest(i);
      files.push_back(Write(Shortest(i) + ".RAW", WriteRaw(record)));
    }
    return files;
  }
  std::string Text(const std::string& name) {
    const auto text = ReadFile(folder_.Path() / name);
    return text ? text.Value() : "no file";
  }

  test::TemporaryFolder folder_{};
};

TEST_F(ExportBatchTest, RejectsAreNamedAndTheRestIsTheSameForAnyNumberOfThreads) {
  std::vector<std::string> files = Files(23);
  files.insert(files.begin() + 5, Write("torn.RAW", "\"VEXA 5.7\",\"cut\",1,30,0\r\n35.1,\"N\","));
  SoundingRecord moist = test::ReferenceWinter();
  moist.Dewpt(3) = 30;
  files.push_back(Write("moist.RAW", WriteRaw(moist)));
  std::string first;
  for (const int jobs : {1, 2, 7}) {
    for (const auto kind : {output::DumpKind::Textfile, output::DumpKind::Spreadsheet}) {
      SCOPED_TRACE(jobs);
      std::vector<std::string> told;
      const ExportReport report = ExportBatch(
          {.Files = files, .Output = folder_.Path() / "out.txt", .Kind = kind, .Jobs = jobs}, {},
          {}, [&told](const RejectedFile& one) { told.push_back(one.File); });
      EXPECT_FALSE(report.Failed);
      EXPECT_EQ(report.Written, 23);
      EXPECT_EQ(told, (std::vector<std::string>{files[5], files[24]}));
      if (kind == output::DumpKind::Spreadsheet) continue;
      const std::string text = Text("out.txt");
      if (first.empty()) first = text;
      EXPECT_EQ(text, first);
      EXPECT_NE(text.find("NUMBER OF SOUNDINGS LISTED = 23\r\n"), std::string::npos);
      const std::string rejects = Text("BAD_out.txt");
      EXPECT_NE(rejects.find("torn.RAW    Error = "), std::string::npos) << rejects;
      EXPECT_NE(rejects.find("line 2"), std::string::npos) << rejects;
      EXPECT_EQ(std::ranges::count(rejects, '\n'), 2);
      EXPECT_EQ(ExportSummary(report).Text,
                "File out.txt has been created\nwith 23 soundings processed.\n\n"
                "Note: 2 soundings were not processed,\nwhich will be displayed next.\n"
                "BAD_out.txt contains rejected soundings.");
    }
  }
}

TEST_F(ExportBatchTest, CancellingLeavesWholeSoundings) {
  const std::vector<std::string> files = Files(6);
  test::ScriptedInteraction user;
  user.StopAfter = 3;
  const ExportReport report = ExportBatch(
      {.Files = files, .Output = folder_.Path() / "out.txt", .Jobs = 2}, {}, Progress(user));
  EXPECT_TRUE(report.Cancelled);
  EXPECT_EQ(user.Statuses.front(), "Processing: 1 of 6");
  EXPECT_EQ(report.Written, 3);
  EXPECT_EQ(ExportSummary(report).Text,
            "File out.txt has been created\nwith 3 soundings processed.\n\n"
            "The export was stopped: 3 files were not processed,\nfrom " +
                TextFromPath(PathFromText(files[3]).filename()) + " on.");
  const std::string text = Text("out.txt");
  EXPECT_NE(text.find("SOUNDING = Number 3"), std::string::npos);
  EXPECT_EQ(text.find("SOUNDING = Number 4"), std::string::npos);
  EXPECT_TRUE(text.ends_with("NUMBER OF SOUNDINGS LISTED = 3\r\n"));
}

TEST_F(ExportBatchTest, OptionsThatChangeMeanwhileAreForTheNextRun) {
  const std::vector<std::string> files = Files(4);
  for (const int jobs : {1, 3}) {
    const ExportRequest request{.Files = files, .Output = folder_.Path() / "out.txt", .Jobs = jobs};
    Options set;
    ExportBatch(request, set);
    const std::string alone = Text("out.txt");
    test::ScriptedInteraction user;
    user.OnYield = [&] {
      if (user.Statuses.size() == 2) {
        set.System.Dump = {.Height = DumpHeight::Feet, .Temp = DumpTemp::Fahrenheit};
      }
      return true;
    };
    ExportBatch(request, set, Progress(user));
    EXPECT_EQ(Text("out.txt"), alone);
    EXPECT_EQ(set.System.Dump.Height, DumpHeight::Feet);
  }
}

TEST_F(ExportBatchTest, AnInputIsNotReplaced) {
  std::vector<std::string> files = Files(2);
  const std::string torn = Write("BAD_out.csv", "no sounding");
  files.push_back(torn);
  for (const char* output : {"out.csv", "1.RAW"}) {
    const std::string before = Text("1.RAW");
    const ExportReport report =
        ExportBatch({.Files = files, .Output = folder_.Path() / output}, {});
    ASSERT_TRUE(report.Failed) << output;
    EXPECT_NE(report.Failed->Detail.find("would be lost"), std::string::npos);
    EXPECT_EQ(Text("BAD_out.csv"), "no sounding");
    EXPECT_EQ(Text("1.RAW"), before);
  }
  EXPECT_EQ(Text("out.csv"), "no file");
}

TEST_F(ExportBatchTest, WhatStoodThereSurvivesFailure) {
  const std::vector<std::string> files = Files(5);
  Write("out.txt", "earlier");
  test::FullDisk full(4);
  const ExportReport report = ExportBatch(
      {.Files = files, .Output = folder_.Path() / "out.txt", .Jobs = 3}, {}, {}, {}, full);
  ASSERT_TRUE(report.Failed);
  EXPECT_EQ(report.Failed->Number, kFaultDiskFull);
  EXPECT_EQ(Text("out.txt"), "earlier");

  const std::vector<std::string> none = {"missing.RAW"};
  const ExportReport empty = ExportBatch({.Files = none, .Output = folder_.Path() / "out.txt"}, {});
  EXPECT_TRUE(empty.Output.empty());
  EXPECT_EQ(empty.Rejected, 1);
  EXPECT_EQ(Text("out.txt"), "earlier");
}

TEST_F(ExportBatchTest, StationsThatGiveANumberAloneAreLookedUp) {
  StationList stations;
  ASSERT_FALSE(
      stations.Add({.Number = 1234, .Name = "Test", .ElevM = 240, .Lat = 59.5, .Lon = 5.25}));
  const std::vector<std::string> files = {
      TextFromPath(test::TestData("coded_bulletins_20240305.txt"))};
  ExportBatch({.Files = files, .Output = folder_.Path() / "out.txt", .Stations = &stations}, {});
  EXPECT_NE(Text("out.txt").find("ELEVATION (M) = 240\r\nLAT/LONG = 59.5  5.25\r\n"),
            std::string::npos)
      << Text("out.txt").substr(0, 200);
}

TEST_F(ExportBatchTest, TheCommandWritesTheSoundingInWork) {
  test::ScriptedInteraction user;
  Program program;
  program.Doc.AskThrough(&user);
  test::Show(program, test::ReferenceConvective());
  commands::ExportAs(program, output::DumpKind::Textfile);  // cancelled
  user.Chosen = {TextFromPath(folder_.Path() / "one.txt")};
  user.Expect("VEXA Data Export", Answer::Ok);
  commands::ExportAs(program, output::DumpKind::Textfile);
  EXPECT_NE(Text("one.txt"), "no file");
  std::filesystem::remove(folder_.Path() / "one.txt");
  SoundingRecord bad = program.Doc.Record();
  bad.Dewpt(3) = 60;
  program.Doc.Adopt(std::move(bad), "edit");
  user.Expect("VEXA", Answer::Ok);
  commands::ExportAs(program, output::DumpKind::Textfile);
  EXPECT_EQ(Text("one.txt"), "no file") << "a bad sounding is not written";
}

TEST(ExportRange, TakesTwoFourDigitNumbersInOrder) {
  const auto good = ParseExportRange("0002", "0010", 10);
  ASSERT_TRUE(good);
  EXPECT_EQ(good.Value().First, 2);
  EXPECT_EQ(good.Value().Last, 10);
  const std::pair<const char*, const char*> bad[] = {
      {"0000", "0003"}, {"0004", "0003"}, {"1", "0003"}, {"0001", "0011"}, {"000x", "0003"}};
  for (const auto& [first, last] : bad) {
    const auto range = ParseExportRange(first, last, 10);
    ASSERT_FALSE(range) << first << " " << last;
    EXPECT_EQ(range.Error().Detail, "Range is not valid.");
  }
}

}  // namespace
}  // namespace vexa
