// Coded messages that few stations send: mobile stations, winds alone, and the sections behind the
// levels. The messages were written for these tests; heights between them follow from the
// hypsometric equation, those of winds given by pressure alone from the tables of the standard
// atmosphere.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/data_checks.h"
#include "core/station_list.h"
#include "ingest/coded_heights.h"
#include "ingest/coded_judge.h"
#include "ingest/decoded.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

Decoded Decode(std::string text, const StationList* stations = nullptr) {
  return DecodeSource(SourceText("m_20240305", std::move(text)), 0, stations);
}

// What has been measured is possible: the records at the ground, the cold of a polar winter and of
// tropical tropopauses, the warmth of the upper stratosphere. What lies far outside is not.
TEST(CodedParts, PossibleIsWhatHasBeenMeasured) {
  const struct {
    double Press, Coldest, Warmest;  // hPa, °C
  } measured[] = {{1050, -68, 50}, {1010, -60, 56.7}, {925, -55, 45}, {850, -50, 38},
                  {700, -50, 24},  {500, -55, 2},     {400, -60, -8}, {250, -75, -32},
                  {150, -85, -40}, {100, -93, -42},   {70, -95, -40}, {30, -95, -20},
                  {10, -90, 5},    {5, -85, 12},      {2, -75, 15}};
  for (const auto& row : measured) {
    EXPECT_TRUE(IsPossibleTemp(row.Press, row.Coldest)) << row.Press;
    EXPECT_TRUE(IsPossibleTemp(row.Press, row.Warmest)) << row.Press;
    EXPECT_FALSE(IsPossibleTemp(row.Press, row.Coldest - 50)) << row.Press;
    EXPECT_FALSE(IsPossibleTemp(row.Press, row.Warmest + 30)) << row.Press;
  }
}

StationList Place(int elevM) {
  StationList stations;
  EXPECT_TRUE(stations.Insert({.Number = 1234, .ElevM = elevM, .Lat = 61.5, .Lon = 5.25}));
  return stations;
}

TEST(CodedParts, WindsAloneBeginAtTheStation) {
  const StationList stations = Place(240);
  const Decoded decoded =
      Decode("PPBB 55120 01234 90/12 20006 19522 19533 90346 20040 20545 21050=", &stations);
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.NumTempLevels(), 0);
  EXPECT_FALSE(decoded.HasNote("skipped")) << decoded.Notes.back();
  const test::WindRow rows[] = {{240, 200, 6},    {304.8, 195, 22},  {609.6, 195, 33},
                                {914.4, 200, 40}, {1219.2, 205, 45}, {1828.8, 210, 50}};
  ASSERT_EQ(decoded.Record.NumWindLevels(), 6);
  for (int i = 1; i <= 6; ++i) ExpectWind(decoded.Record, i, rows[i - 1]);
}

TEST(CodedParts, SectionsBehindTheLevelsAreNotLevels) {
  const Decoded decoded = Decode(
      "TTAA 55121 72999 99000 20056 18010 85500 10056 18020 70100 01056 18030 88999 66999 77999 "
      "31313 09608 81131 90287 41414 85071 51515 10164 00053 10190 70123 10190 50456 10194 21534 "
      "///// 10165 "
      "61616 AF302 0715A 62626 MBL WND 29023=\n"
      "TTBB 55128 72999 00000 20056 11850 10056 21212 00000 18010 11850 18020 31313 09608 81131 "
      "41414 85071 51515 11920 18515 10194 08512 36010=");
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.Press, Levels<double>({1000, 850, 700}));
  EXPECT_EQ(decoded.Record.NumWindLevels(), 3);
  EXPECT_TRUE(decoded.HasNote("stability index of the station -3"));
  EXPECT_TRUE(decoded.HasNote("remarks MBL WND 29023"));
  // Both parts say when the balloon was released; it is told once.
  EXPECT_EQ(std::ranges::count(decoded.Notes, "The message says: released at 11:31 UTC."), 1);
}

// Part A and B of one ascent from 252 m; heights by the hypsometric equation.
const char* const kPartA =
    "TTAA 55121 01234 99985 15456 18510 00128 ///// ///// 92780 10850 19020 85479 05658 20025 "
    "70042 03158 21530 50563 18167 22040 40725 30967 22550 30923 46159 23060 25043 52363 23570 "
    "20186 54361 24080 15368 58761 24560 10621 60763 25040 88210 55161 24085 77205 24090 40812 "
    "31313 44108 81131=\n";

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

TEST(CodedParts, HeightsBeginAtTheGroundOrWhereFiguresLeaveNoDoubt) {
  struct Case {
    const char *About, *Text;
    int Ground;
    double Height, Spd;  // of a wind, by the message
  };
  const Case cases[] = {
      // 10 m + 29.27 m/K * 265 K * ln(950/850) = 873 m
      {"a deep low at the sea",
       "TTAA 55008 01234 99950 08156 18010 92210 08156 18011 85870 08156 19012=", 10, 870, 12},
      {"an eye, over the sea",
       "XXAA 55128 99153 70659 04355 99915 28056 18010 85665 23056 18011 70340 14056 19012 "
       "88999 77999=",
       0, 665, 11},
      {"a plateau in a low of its own",
       "TTAA 55005 01234 99668 64556 09512 70480 ///// ///// 50481 43127 09524 40630 49966 06005=",
       2835, 4810, 24},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const StationList stations = Place(c.Ground);
    const Decoded decoded = Decode(c.Text, &stations);
    ASSERT_FALSE(decoded.Failed);
    const SoundingRecord& record = decoded.Record;
    EXPECT_NEAR(record.ElevM, c.Ground, 15);
    const auto at =
        std::ranges::find(record.WindSpd.Values(), c.Spd) - record.WindSpd.Values().begin();
    ASSERT_LT(at, record.NumWindLevels());
    EXPECT_NEAR(record.WindHgt.Values()[static_cast<std::size_t>(at)], c.Height, 120);
  }
}

// The first balloon burst at 700 hPa; the second was released an hour later.
TEST(CodedParts, ASecondBalloonIsASoundingOfItsOwn) {
  const std::string text =
      "TTAA 56007 01234 99985 15456 18510 92780 10850 19020 85479 05658 20025 70042 03158 21530=\n"
      "TTAA 56018 01234 99986 16456 18511 92788 11850 19021 85490 06258 20026=\n"
      "TTBB 56018 01234 00986 16456 11850 06258=\n";
  EXPECT_EQ(ListSoundings(SourceText("m_20240306", text)).size(), 2U);
  EXPECT_EQ(Decode(text).Record.Press, Levels<double>({985, 925, 850, 700}));
}

// 99.8 °C at the ground: the sounding begins at 925 hPa, at the height that is reported there.
TEST(CodedParts, AGarbledSurfaceIsFoundByTheChecks) {
  const StationList stations = Place(252);
  const std::string garbled = Replaced(kPartA, "15456", "99857");
  // The last has 1185 hPa, which no place has.
  for (const std::string& text :
       {garbled, Replaced(kPartA, "99985", "91985"), Replaced(kPartA, "99985", "99185")}) {
    const Decoded decoded = Decode(text, &stations);
    ASSERT_FALSE(decoded.Failed);
    EXPECT_EQ(CheckRecord(decoded.Record), (QcFinding{8, 1}));
    EXPECT_EQ(decoded.Record.Press(1), 925);
    EXPECT_EQ(decoded.Record.ElevM, 780);
    EXPECT_TRUE(decoded.HasNote("no surface level"));
  }
  // Part B has the surface too.
  const Decoded mended = Decode(garbled + "TTBB 55128 01234 00985 15456 11850 05658=\n", &stations);
  EXPECT_EQ(CheckRecord(mended.Record), QcFinding{});
  EXPECT_EQ(mended.Record.Temp(1), 15.4);
  EXPECT_EQ(mended.Record.ElevM, 252);
}

TEST(CodedParts, NilIsToldAsSuch) {
  struct Case {
    const char *Text, *Detail;
  };
  const Case cases[] = {
      {"TTAA 63001 72776 NIL=",
       "m_20240305: no ascent in it; 72776 TTAA: NIL, there was no report."},
      {"TTAA 63/// 72776 NIL=",
       "m_20240305: no ascent in it; 72776 TTAA: NIL, there was no report."},
      {"UUAA SHIP NIL=", "m_20240305: no ascent in it; SHIP UUAA: NIL, there was no report."},
  };
  for (const Case& c : cases) {
    const Decoded decoded = Decode(c.Text);
    ASSERT_TRUE(decoded.Failed);
    EXPECT_EQ(decoded.Failed->Detail, c.Detail);
  }
  const Decoded beside = Decode(std::string(kPartA) + cases[0].Text);
  ASSERT_FALSE(beside.Failed);
  EXPECT_FALSE(beside.HasNote("NIL"));
}

}  // namespace
}  // namespace vexa::ingest
