// BUFR messages. Of the sample written for these tests the levels are those put into it; values of
// the real files are those that another decoder of BUFR gave, and of one ascent what its publisher
// printed as text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "bufr_message.h"
#include "core/data_checks.h"
#include "core/files.h"
#include "core/late_library.h"
#include "core/markers.h"
#include "core/units.h"
#include "ingest/bufr_messages.h"
#include "ingest/decoded.h"
#include "support/soundings.h"

// The library loses a few kilobytes with some messages that have quality sections.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libeccodes";
}

namespace vexa::ingest {
namespace {

SourceText File(const std::filesystem::path& path) {
  return SourceText(path.filename().string(), ReadFile(path).Value());
}

std::string Bytes() {
  return ReadFile(test::TestData("bufr_five.bufr")).Value();
}

TEST(Bufr, MessagesOfAnAscentBecomeOneSounding) {
  const SourceText source("bufr_five.bufr", Bytes());
  const std::vector<SourceEntry> entries = ListSoundings(source);
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[1].Title, "99456  00Z 29 Feb 2024");

  const Decoded first = DecodeSource(source);
  ASSERT_FALSE(first.Failed) << first.Failed->Detail;
  const SoundingRecord& record = first.Record;
  EXPECT_EQ(record.DataFormat, "BUFR");
  EXPECT_EQ(record.StationTitle, "99123  06Z 29 Feb 2024");
  EXPECT_EQ(record.LatSigned, -35.5);
  EXPECT_EQ(record.LonSigned, 151.25);
  EXPECT_EQ(record.ElevM, 66);
  // Below the ground there is a height only; of the two reports that count the longer one gives
  // 850 hPa; a wind from 225 degrees has no speed at 300 hPa in neither.
  EXPECT_EQ(record.Press, Levels<double>({990, 850, 500, 300}));
  EXPECT_EQ(record.Temp, Levels<double>({21, 12.2, -15.1, -45}));
  EXPECT_EQ(record.Dewpt, Levels<double>({20, 8.4, kMissing, -48.15}));
  // Hypsometric, worked out apart from the program.
  const double heights[] = {66, 1368.3, 5599.4, 9234.5};
  ASSERT_EQ(record.NumWindLevels(), 4);
  for (int i = 1; i <= 4; ++i) EXPECT_NEAR(record.WindHgt(i), heights[i - 1], 0.5);
  EXPECT_EQ(record.WindDir, Levels<double>({360, 200, 220, 230}));
  EXPECT_NEAR(record.WindSpd(4), 40 * kMsToKnot, 1e-9);
  EXPECT_EQ(first.Notes,
            (std::vector<std::string>{"Temperatures at the pressure of the one before, left out: 1",
                                      "Heights that do not follow from the temperatures, by more "
                                      "than 30 m: 1. 300 hPa: reported 9200 m, computed 9234 m.",
                                      "A message that was corrected later was left out.",
                                      "Released at 05:02 UTC."}));

  // Winds of a message of their own join the ascent; at 850 hPa the one with temperatures counts.
  const Decoded second = DecodeSource(source, 1);
  EXPECT_EQ(second.Record.Time, (ObservationTime{2024, 2, 29, 0, 0}));
  EXPECT_EQ(second.Record.WindDir, Levels<double>({270, 90, 280}));
}

TEST(Bufr, DamageLeavesTheOtherMessages) {
  const std::string whole = Bytes();
  // The end mark of the third message goes, and the file ends within the fifth.
  std::size_t at = 0;
  for (int message = 0; message < 3; ++message) at = whole.find("7777", at) + 4;
  std::string damaged = whole.substr(0, whole.size() - 20);
  damaged[at - 1] = '8';
  const Decoded decoded = DecodeSource(SourceText("cut.bufr", damaged));
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.Press, Levels<double>({990, 850}));
  EXPECT_EQ(decoded.Notes.front(), "Messages that are damaged or cut off, left out: 2");

  const Decoded nothing = DecodeSource(SourceText("cut.bufr", whole.substr(0, 100)));
  ASSERT_TRUE(nothing.Failed);
  EXPECT_EQ(nothing.Failed->Number, kFaultEndOfFile);
  EXPECT_EQ(nothing.Failed->Detail, "cut.bufr: Messages that are damaged or cut off, left out: 1");
}

#ifdef VEXA_HAS_BUFR_LIBRARY

// Tables of a version that the library has no files for break an assumption of its parser.
TEST(Bufr, TablesThatTheLibraryGivesUpOnAreDamage) {
  constexpr std::size_t kMasterTable = 21, kLocalTable = 22, kSequence = 38;
  std::string damaged = Bytes();
  const std::size_t message = damaged.find("BUFR");
  damaged[message + kMasterTable] = '\xe8';
  damaged[message + kLocalTable] = 1;
  damaged[message + kSequence] = '\xfa';  // 3 09 250, of a centre
  const Decoded decoded = DecodeSource(SourceText("tables.bufr", damaged));
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_NE(std::ranges::find(decoded.Notes,
                              "Left out: a message cannot be unpacked: the BUFR library gave up "
                              "on it."),
            decoded.Notes.end());
}

#endif

// Entries of the tables stay as they are in later versions.
TEST(Bufr, TablesThatAreNewerAreRead) {
  std::string newer = Bytes();
  constexpr std::size_t kMasterTable = 21;
  newer[newer.find("BUFR") + kMasterTable] = 60;
  const Decoded decoded = DecodeSource(SourceText("newer.bufr", newer));
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.Press, Levels<double>({990, 850, 500, 300}));
}

struct RealFile {
  const char* Name;
  int Index, Soundings;
  const char* Title;
  double Lat, Lon, Elevation;
  test::TempRow First;
  double Dir, SpdMs;  // of the lowest wind
};

// clang-format off
const RealFile kRealFiles[] = {
    {"KABQ_202305221200_ius.bufr", 0, 1, "72365  12Z 22 May 2023", 35.0381, -106.6228, 1619,
     {840, 11.9, 9.1}, 298, 1.5},
    {"KEPZ_202306120000_iuk.bufr", 0, 1, "72364  00Z 12 Jun 2023", 31.8727, -106.6971, 1254,
     {870.6, 34.5, 2.1}, 248, 5.7},
    {"temp_hires.bufr", 0, 1, "10954  1045Z 23 Feb 2025", 47.8341, 10.8667, 760,
     {940.51, 7.5, 4.98}, 10, 1.5},
    {"uegabe.bufr", 0, 1, "10618  05Z 12 Jul 2015", 49.6927, 7.3263, 376, {975, 14.8, 11.5}, 240,
     3},
    {"temp_102.bufr", 0, 1, "ASDE3  23Z 30 Oct 2012", 51.2, -28.1, 0, {0, 0, 0}, 0, 0},
    {"temp_small.bufr", 2, 7, "89009  12Z 08 Dec 2008", -90, 0, 2835, {0, 0, 0}, 0, 0},
    {"temp_small.bufr", 6, 7, nullptr, 0, 0, 0, {0, 0, 0}, 0, 0},
    {"temp_101.bufr", 3, 4, nullptr, 0, 0, 0, {0, 0, 0}, 0, 0},
};
// clang-format on

// The library follows a bitmap that an operator announces without looking whether it is there.
TEST(Bufr, AnOperatorWithoutItsBitmapIsDamage) {
  constexpr int kTemp = 12001, kQuality = 222000, kReplaced = 232000, kOne = 101001, kBit = 31031;
  constexpr int kDefine = 236000, kReuse = 237000, kSeveral = 101000, kCount = 31001;
  const auto message = [](const std::vector<int>& descriptors) {
    return test::BufrMessage(descriptors, std::string(16, '0'));
  };
  std::vector<std::string> notes;
  EXPECT_EQ(SplitBufr(message({kTemp, kQuality, kOne, kBit}), notes).size(), 1U);
  EXPECT_EQ(SplitBufr(message({kTemp, kQuality, kDefine, kOne, kBit}), notes).size(), 1U);
  EXPECT_EQ(SplitBufr(message({kTemp, kQuality, kReuse}), notes).size(), 1U);
  EXPECT_EQ(SplitBufr(message({kTemp, kQuality, kSeveral, kCount, kBit}), notes).size(), 1U);
  EXPECT_TRUE(notes.empty());
  EXPECT_EQ(SplitBufr(message({kTemp, kQuality, kOne, kTemp}), notes).size(), 0U);
  EXPECT_EQ(SplitBufr(message({kTemp, kQuality}), notes).size(), 0U);
  EXPECT_EQ(SplitBufr(message({kTemp, kQuality, kDefine}), notes).size(), 0U);
  EXPECT_EQ(SplitBufr(message({kTemp, kReplaced}), notes).size(), 0U);
  EXPECT_EQ(notes.size(), 4U);
}

// A station of a bulletin that sent its surface only: block 60, station 155, 1012 hPa, 293.2 K and
// 285.2 K, put together by hand with the widths of table B.
TEST(Bufr, AStationWithOneLevelIsAFaultOfItsOwn) {
  const std::string message =
      test::BufrMessage({1001, 1002, 7004, 12101, 12103},
                        test::Bits(60, 7) + test::Bits(155, 10) + test::Bits(10120, 14) +
                            test::Bits(29320, 16) + test::Bits(28520, 16));
  const SourceText source("b.bufr", Bytes() + message);
  ASSERT_EQ(ListSoundings(source).size(), 3U);
  const Decoded single = DecodeSource(source, 2);
  ASSERT_TRUE(single.Failed);
  EXPECT_EQ(single.Failed->Detail,
            "b.bufr: too few levels of 60155, 1 with a temperature and 0 with a wind");
  for (const auto& [subsets, isTooMany] : {std::pair{0U, true}, {10000U, false}, {10001U, true}}) {
    const Decoded decoded = DecodeSource(SourceText("b", test::BufrMessage({12101}, "0", subsets)));
    EXPECT_EQ(
        decoded.Failed.value_or(Fault{}).Detail.find("no subsets or too many") != std::string::npos,
        isTooMany)
        << subsets;
  }
  // Without a time of their own messages of one hour are of one ascent.
  EXPECT_EQ(ListSoundings(SourceText("c.bufr", message + message)).size(), 1U);
  constexpr std::size_t kHour = 23;
  std::string later = message;
  later[kHour] = 18;
  EXPECT_EQ(ListSoundings(SourceText("c.bufr", message + later)).size(), 2U);
}

TEST(Bufr, RealMessages) {
  VEXA_REAL_DATA(folder, "bufr");
#ifndef VEXA_HAS_BUFR_LIBRARY
  GTEST_SKIP() << "built without ecCodes";
#endif
  for (const RealFile& c : kRealFiles) {
    SCOPED_TRACE(c.Name);
    const SourceText source = File(folder / c.Name);
    EXPECT_EQ(static_cast<int>(ListSoundings(source).size()), c.Soundings);
    const Decoded decoded = DecodeSource(source, c.Index);
    ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
    const SoundingRecord& record = decoded.Record;
    EXPECT_EQ(CheckRecord(record), QcFinding{});
    if (c.Title == nullptr) continue;
    EXPECT_EQ(record.StationTitle, c.Title);
    EXPECT_NEAR(record.LatSigned, c.Lat, 1e-4);
    EXPECT_NEAR(record.LonSigned, c.Lon, 1e-4);
    EXPECT_EQ(record.ElevM, c.Elevation);
    if (c.First.Press == 0) continue;
    EXPECT_NEAR(record.Press(1), c.First.Press, 1e-6);
    EXPECT_NEAR(record.Temp(1), c.First.Temp, 1e-6);
    EXPECT_NEAR(record.Dewpt(1), c.First.Dewpt, 1e-6);
    EXPECT_NEAR(record.WindHgt(1), c.Elevation, 0.5);
    EXPECT_EQ(record.WindDir(1), c.Dir);
    EXPECT_NEAR(record.WindSpd(1), c.SpdMs * kMsToKnot, 1e-6);
  }
  // Winds alone are a sounding, single points of aircraft are none.
  const Decoded winds = DecodeSource(File(folder / "pilo_91.bufr"), 16);
  ASSERT_FALSE(winds.Failed) << winds.Failed->Detail;
  EXPECT_EQ(winds.Record.NumTempLevels(), 0);
  EXPECT_GE(winds.Record.NumWindLevels(), 2);
  EXPECT_EQ(ListSoundings(File(folder / "pilo_91.bufr")).size(), 17U);
  EXPECT_EQ(DecodeSource(File(folder / "aircraft_small.bufr")).Failed->Detail,
            "aircraft_small.bufr: a message holds no vertical sounding, its category is 4");
}

TEST(Bufr, AgreesWithTheTextOfTheSameAscent) {
  VEXA_REAL_DATA(folder, "");
  const Decoded bufr = DecodeSource(File(folder / "bufr" / "KABQ_202305221200_ius.bufr"));
  const Decoded text = DecodeSource(File(folder / "class" / "KABQ_202305221104_every60s.cls"));
  const std::vector<double>& press = bufr.Record.Press.Values();
  int compared = 0;
  for (int i = 1; i <= text.Record.NumTempLevels(); ++i) {
    const auto same = std::ranges::find_if(
        press, [&](double value) { return std::fabs(value - text.Record.Press(i)) < 0.01; });
    // Higher up several seconds share a pressure.
    if (text.Record.Press(i) < 100) break;
    ASSERT_NE(same, press.end()) << text.Record.Press(i);
    const int level = static_cast<int>(same - press.begin()) + 1;
    EXPECT_NEAR(bufr.Record.Temp(level), text.Record.Temp(i), 0.06) << text.Record.Press(i);
    EXPECT_NEAR(bufr.Record.Dewpt(level), text.Record.Dewpt(i), 0.06) << text.Record.Press(i);
    ++compared;
  }
  EXPECT_GT(compared, 40);
}

#ifndef VEXA_HAS_BUFR_LIBRARY

TEST(Bufr, ABuildWithoutTheLibraryNamesWhatItLacks) {
  const Decoded decoded =
      DecodeSource(SourceText("local.bufr", test::BufrMessage({309196}, std::string(64, '0'))));
  ASSERT_TRUE(decoded.Failed);
  EXPECT_EQ(decoded.Failed->Number, kFaultNoLibrary);
  EXPECT_NE(decoded.Failed->Detail.find("local.bufr: a message has elements"), std::string::npos);
  EXPECT_NE(decoded.Failed->Detail.find("ecCodes"), std::string::npos);
}

#endif

}  // namespace
}  // namespace vexa::ingest
