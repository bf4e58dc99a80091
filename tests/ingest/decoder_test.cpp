#include "ingest/decoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "core/data_checks.h"
#include "core/files.h"
#include "core/raw_file.h"
#include "ingest/decoded.h"
#include "ingest/source_columns.h"
#include "ingest/source_header.h"
#include "sounding/analysed_sounding.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

TEST(Wyoming, AWebPage) {
  const Decoded decoded = DecodeText("page.html", FileText("wyoming_page.html"));
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  const SoundingRecord& record = decoded.Record;
  EXPECT_EQ(record.DataFormat, "WYOMING");
  EXPECT_EQ(record.StationTitle, "01234 - TSTX - Hill & Dale  06Z 29 Feb 2024");
  EXPECT_EQ(record.WmoNumber, 1234);
  EXPECT_EQ(record.Time, (ObservationTime{2024, 2, 29, 6, 0}));
  EXPECT_EQ(record.LatHemi + record.LonHemi, "SE");
  EXPECT_EQ(record.LonSigned, 151.25);
  EXPECT_EQ(record.ElevM, 66);
  // Below ground nothing; the dew point is lowered; the first of two 850 stays; -9999 and an
  // impossible temperature are missing.
  EXPECT_EQ(record.Press, Levels<double>({990, 925, 850, 700, 500}));
  EXPECT_EQ(record.Temp, Levels<double>({21, 17, 12.2, 2, -15.1}));
  EXPECT_EQ(record.Dewpt, Levels<double>({21, 14, 8.4, 999.9, 999.9}));
  // Calm and north are 360, which ordering does not take for empty. The second of two 850 has a
  // wind of its own, three metres higher. Heights are hypsometric, worked out apart from the
  // program; at 400 hPa there is no temperature, 7230 m move by the 10 m of 500 hPa.
  const double heights[] = {66, 651.5, 1367.9, 1370.9, 2964.6, 7220.3};
  ASSERT_EQ(record.NumWindLevels(), 6);
  for (int i = 1; i <= 6; ++i) EXPECT_NEAR(record.WindHgt(i), heights[i - 1], 0.5);
  EXPECT_EQ(record.WindDir, Levels<double>({360, 360, 200, 201, 210, 215}));
  EXPECT_EQ(record.WindSpd, Levels<double>({0, 12, 25, 26, 35, 60}));
  EXPECT_EQ(decoded.Notes,
            (std::vector<std::string>{"Dew points above the temperature, lowered to it: 1",
                                      "Temperatures at the pressure of the one before, left out: 1",
                                      "Temperatures outside -120 to 60 C, left out: 1"}));
}

TEST(Wyoming, AnUnknownUnitAndACutRow) {
  const std::string whole = FileText("wyoming_page.html");
  std::string unit = whole;
  unit.replace(unit.find("knot"), 4, "km/h");
  EXPECT_EQ(DecodeText("page.html", unit).Failed.value_or(Fault{}).Number, kFaultNonStandard);
  // A last row that ends inside a column has lost digits.
  const std::size_t cut = whole.find("5600  -15.1");
  const Decoded part = DecodeText("page.html", whole.substr(0, cut + 9));
  ASSERT_FALSE(part.Failed);
  EXPECT_EQ(part.Record.Press.Top(), 700);
  EXPECT_EQ(part.Notes.back(), "The last row is cut off and was left out.");
}

// Listings that were put together in one file, of servers that give one at a time.
TEST(Wyoming, SoundingsPutTogether) {
  const std::string page = FileText("wyoming_page.html");
  const SourceText both("page.html", page + FileText("wyoming_text.txt"));
  EXPECT_EQ(ListSoundings(both).size(), 2U);
  EXPECT_EQ(DecodeSource(both).Record, DecodeText("page.html", page).Record);
  EXPECT_EQ(DecodeSource(both, 1).Record.Temp,
            DecodeText("text", FileText("wyoming_text.txt")).Record.Temp);
}

TEST(Decoders, RecogniseByContent) {
  // In a web page any format is itself.
  const std::string page = "<html><pre>" + FileText("wyoming_text.txt") + "</pre>";
  EXPECT_EQ(DecodeText("p", page).Record.NumTempLevels(), 3);

  EXPECT_EQ(DecodeText("o",
                       "\"VEXA 5.7\",\"t\",1,1,0\n1,\"N\",1,\"E\",0\n\"\",0,\"\",0,0,\"\",\"\"\n"
                       "1000,1,1\n")
                .Failed->Number,
            kFaultTooFewLevels);
}

// What the data check has words for stays for it to find.
TEST(TimeInTitle, StandsAtItsEnd) {
  const struct {
    const char* Title;
    ObservationTime Time;
  } cases[] = {{"12Z 05 Mar 2024", {2024, 3, 5, 12, 0}},
               {"72357 - OUN - NORMAN  0030Z 04 May 1999", {1999, 5, 4, 0, 30}},
               {"05 Mar 2024", {}},
               {"12 05 Mar 2024", {}},
               {"1Z 05 Mar 2024", {}},
               {"24Z 05 Mar 2024", {}},
               {"12Z 31 Feb 2024", {}}};
  for (const auto& c : cases) EXPECT_EQ(TimeInTitle(c.Title), c.Time) << c.Title;
}

TEST(Native, WhatStoodBeforeTheDamageIsKept) {
  const Decoded damaged = DecodeText("a.RAW", FileText("native_damaged.RAW"));
  ASSERT_TRUE(damaged.Failed);
  EXPECT_EQ(damaged.Record.Press, Levels<double>({1000, 900}));
}

TEST(Native, ImpossibleValuesAreLeftOut) {
  SoundingRecord record = test::Profile({{1000, 71, 999.9}, {-850, 10, 5}, {400, -30, -40}},
                                        {{10, 200, 1e9}, {20, 365, -3}}, -5000);
  const Decoded decoded = DecodeText("x.RAW", WriteRaw(record));
  ASSERT_FALSE(decoded.Failed);
  EXPECT_EQ(decoded.Record.Press, Levels<double>({1000, 400}));
  EXPECT_EQ(CheckRecord(decoded.Record), (QcFinding{6, 1}));
  EXPECT_EQ(decoded.Record.WindHgt, Levels<double>({20}));
  EXPECT_TRUE(decoded.Record.ElevUnknown);
  EXPECT_EQ(decoded.Notes.size(), 3U);
  EXPECT_EQ(decoded.Notes.back(), "The elevation of -5000 m is impossible.");

  std::string endless = WriteRaw(record);
  endless.replace(endless.find("-5000"), 5, "1e300");
  EXPECT_EQ(DecodeText("x.RAW", endless).Notes.back(), "The elevation is impossible.");

  for (double& press : record.Press.Values()) press = -std::abs(press);
  const Decoded none = DecodeText("x.RAW", WriteRaw(record));
  ASSERT_TRUE(none.Failed);
  EXPECT_EQ(none.Failed->Number, kFaultTooFewLevels);
  EXPECT_NE(none.Failed->Detail.find("left out: 3"), std::string::npos) << none.Failed->Detail;
}

TEST(Examples, LoadWithoutRemarkAndSaveAsTheyAre) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(test::SourceFolder() / "examples")) {
    if (entry.path().extension() != ".RAW") continue;
    SCOPED_TRACE(entry.path().filename());
    test::ScriptedInteraction nothing;
    const Loading loading = LoadSounding({.File = entry.path()}, {.Ask = &nothing});
    ASSERT_FALSE(loading.Failed) << loading.Failed->Detail;
    EXPECT_EQ(loading.Sounding->Finding, QcFinding{});
    const SoundingRecord& record = loading.Sounding->Record;
    EXPECT_EQ(WriteRaw(record), ReadFile(entry.path()).Value());
    EXPECT_GT(record.NumWindLevels(), 2);
    ++files;
  }
  EXPECT_GE(files, 3);
}

// A word has a number where it is one as a whole, however it goes on and wherever the line ends.
TEST(TakeWords, NumbersAreWholeWords) {
  struct Case {
    const char* Word;
    std::optional<double> Number;
  };
  const Case cases[] = {
      {"5.", 5},   {"-.5", -0.5}, {"1013.25", 1013.25}, {"00012.50", 12.5}, {"12345678", 12345678},
      {"-0", 0},   {"5-", {}},    {"12:30", {}},        {"1.2.3", {}},      {"-", {}},
      {"///", {}}, {"9\f", {}},   {"+5", {}},           {"1e3", {}},        {"7,5", {}},
  };
  std::string line;
  for (const Case& c : cases) line += std::string(" \t ") + c.Word;
  for (const char* ending : {"", "  ", "\t"}) {
    const std::string given = line + ending;
    std::vector<RowWord> words;
    TakeWords(given, words);
    ASSERT_EQ(words.size(), std::size(cases));
    for (std::size_t i = 0; i < words.size(); ++i) {
      EXPECT_EQ(words[i].Text, cases[i].Word);
      EXPECT_EQ(words[i].Number, cases[i].Number) << cases[i].Word;
    }
  }
}

// Where the name is cut, it ends with a whole word and without what would join the next.
TEST(SourceHeader, ANameIsCutAtAWord) {
  EXPECT_EQ(
      Caption({42182, "VIDD", "NEW DELHI/SAFDARJUNG, IN"}, ObservationTime{2026, 2, 5, 23, 0}),
      "42182 - VIDD - NEW DELHI/SAFDARJUNG  23Z 05 Feb 2026");
}

}  // namespace
}  // namespace vexa::ingest
