// Bulletins of coded messages: their parts become soundings, which the file's day and the station
// list complete. The messages were written for these tests; expected values were worked out by hand
// from their figures.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

#include "analysis/interpolate.h"
#include "core/markers.h"
#include "ingest/decoded.h"

namespace vexa::ingest {
namespace {

using test::TempRow;
using test::WindRow;

const char* const kBulletins = "coded_bulletins_20240305.txt";

// The level of a pressure or height, 0 when there is none.
int LevelAt(const Levels<double>& levels, double value) {
  const auto found = std::ranges::find_if(
      levels.Values(), [value](double other) { return std::fabs(other - value) < 0.5; });
  return found == levels.Values().end() ? 0 : static_cast<int>(found - levels.Values().begin()) + 1;
}

// A message tells the day and the hour only; that of the release comes for the main hour after it.
TEST(Coded, TheFilesDayGivesMonthAndYear) {
  const std::string text =
      "TTAA 51231 01234 99985 15456 18510 92780 10850 19020 85495 05658 20025=\n";
  const auto timeOf = [&text](const char* name, std::chrono::sys_days written) {
    SourceText source(name, text);
    source.SetWrittenOn(written);
    return DecodeSource(source).Record.Time;
  };
  using namespace std::chrono_literals;
  const ObservationTime march{.Year = 2024, .Month = 3, .Day = 2};
  EXPECT_EQ(timeOf("a.txt", 2024y / 2 / 29), march);  // a day ahead
  EXPECT_EQ(timeOf("a_20240301.txt", 2030y / 1 / 1), march);
}

TEST(Coded, PartsOfABulletinBecomeOneSounding) {
  const std::vector<SourceEntry> entries =
      ListSoundings(SourceText(kBulletins, FileText(kBulletins)));
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[1].Title, "SHIP1  12Z 05 Mar 2024");
  const Decoded decoded = DecodeText(kBulletins, FileText(kBulletins));
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  const SoundingRecord& record = decoded.Record;
  EXPECT_EQ(record.WmoNumber, 1234);
  EXPECT_EQ(record.Time, (ObservationTime{2024, 3, 5, 12, 0}));
  EXPECT_NEAR(record.ElevM, 251.7, 2.5);  // fits the heights of the message
  EXPECT_EQ(record.Press, Levels<double>({985, 925, 850, 780, 700, 500, 400, 300, 250, 210, 200,
                                          150, 100, 70, 50}));
  const TempRow temps[] = {{985, 15.4, 9.4},      // 15.5 before the correction
                           {925, 10.8, 5.8},      // part B says 10.6
                           {780, 2.4, kMissing},  // depression 55 is not used
                           {400, -30.9, -47.9},   // 407/29 was broken by a line end
                           {210, -55.1, -66.1},  {50, -61.5, -93.5}};
  for (const TempRow& row : temps) {
    SCOPED_TRACE(row.Press);
    const int level = LevelAt(record.Press, row.Press);
    ASSERT_NE(level, 0);
    ExpectTemp(record, level, row);
  }
  const WindRow winds[] = {{304.8, 185, 12},   // thousand feet
                           {779.8, 190, 20},   // 925 hPa
                           {3657.6, 100, 16},  // "10016" is a wind, not 100 000 ft
                           {5629, 220, 40},           {16214.3, 250, 40},
                           {18424, 250, FromMs(20)},  // part C is in m/s
                           {20504.6, 255, FromMs(22)}};
  for (const WindRow& row : winds) {
    SCOPED_TRACE(row.Height);
    const int level = LevelAt(record.WindHgt, row.Height);
    ASSERT_NE(level, 0);
    EXPECT_EQ(record.WindDir(level), row.Dir);
    EXPECT_DOUBLE_EQ(record.WindSpd(level), row.Spd);
  }
  // The ground, 62.8 hPa below 925: 780 m - 29.27 m/K * 287.1 K * ln(985/925).
  EXPECT_NEAR(record.WindHgt(1), 251.7, 2.5);
  for (const char* note :
       {"01234 TTAA: was corrected", "group 22912 1X856 is garbled and was skipped",
        "At 925 hPa the parts differ: 10.8 C was taken",
        "Parts of the message that are missing: D."}) {
    EXPECT_TRUE(decoded.HasNote(note)) << note;
  }
}

// A part whose station's number has one garbled figure belongs to the ascent that lacks it, where
// it tells of the same air; else it is another station's.
TEST(Coded, APartUnderAGarbledNumberFindsItsAscent) {
  const std::string whole = FileText(kBulletins);
  struct Case {
    const char *About, *From, *To;
    std::size_t Soundings;
  };
  const Case cases[] = {
      {"one figure of part B", "TTBB 55128 01234", "TTBB 55128 01274", 2},
      {"two figures", "TTBB 55128 01234", "TTBB 55128 01774", 3},
      {"another surface", "TTBB 55128 01234 00985 15456", "TTBB 55128 01274 00985 16456", 3},
      {"10 C warmer at 925 hPa", "TTBB 55128 01234 00985 15456 11925 10650",
       "TTBB 55128 01274 00985 15456 11925 20650", 3},
      {"nothing speaks of the air of part C alone", "TTCC 05125 01234", "TTCC 05125 01235", 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    std::string text = whole;
    ASSERT_NE(text.find(c.From), text.npos);
    text.replace(text.find(c.From), std::string_view(c.From).size(), c.To);
    EXPECT_EQ(ListSoundings(SourceText(kBulletins, text)).size(), c.Soundings);
    if (c.Soundings != 2) continue;
    const Decoded decoded = DecodeText(kBulletins, text);
    EXPECT_EQ(decoded.Record.Press, DecodeText(kBulletins, whole).Record.Press);
    EXPECT_TRUE(decoded.HasNote("01274 TTBB: taken as that of 01234"));
  }
}

TEST(Coded, TheStationListGivesPositionAndGround) {
  struct Case {
    const char* About;
    int Number, ElevM;
    bool ElevUnknown;
    const char* Title;
    double WindHeight;  // of the ground
    const char* Note;
  };
  const Case cases[] = {
      {"the elevation is the ground's", 1234, 240, false,
       "01234 - ENXX - PLACE, NORWAY  12Z 05 Mar 2024", 240,
       "Position and elevation are those of the station list."},
      {"an elevation of another place", 1234, 900, false,
       "01234 - ENXX - PLACE, NORWAY  12Z 05 Mar 2024", 251.7,
       "The elevation of 900 m does not fit"},
      {"an elevation that the list lacks", 1234, 0, true,
       "01234 - ENXX - PLACE, NORWAY  12Z 05 Mar 2024", 251.7,
       "The position is that of the station list."},
      {"a station that the list lacks", 1235, 0, false, "01234  12Z 05 Mar 2024", 251.7,
       "Station 01234 is not in the station list"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    StationList stations;
    ASSERT_TRUE(stations.Insert({.Number = c.Number,
                                 .Ident = "ENXX",
                                 .Name = "PLACE",
                                 .Region = "NORWAY",
                                 .ElevM = c.ElevM,
                                 .ElevUnknown = c.ElevUnknown,
                                 .Lat = 61.5,
                                 .Lon = 5.25,
                                 .LonHemi = "W"}));
    const Decoded decoded =
        DecodeSource(SourceText(kBulletins, FileText(kBulletins)), 0, &stations);
    const SoundingRecord& record = decoded.Record;
    EXPECT_EQ(record.StationTitle, c.Title);
    EXPECT_NEAR(record.ElevM, c.WindHeight, c.WindHeight == 240 ? 0 : 2.5);
    EXPECT_NEAR(record.WindHgt(1), c.WindHeight, c.WindHeight == 240 ? 0 : 2.5);
    EXPECT_EQ(record.LonSigned, c.Number == 1234 ? -5.25 : 0);
    EXPECT_TRUE(decoded.HasNote(c.Note)) << c.Note;
  }
}

TEST(Coded, AShipHasItsPosition) {
  const Decoded decoded = DecodeText(kBulletins, FileText(kBulletins), 1);
  ASSERT_FALSE(decoded.Failed);
  EXPECT_EQ(decoded.Record.LatSigned, -45.3);
  EXPECT_EQ(decoded.Record.LonSigned, -30.1);
  EXPECT_EQ(decoded.Record.WmoNumber, 0);
  EXPECT_EQ(decoded.Record.NumTempLevels(), 5);
  EXPECT_DOUBLE_EQ(decoded.Record.WindSpd(1), FromMs(15));
  // What was said of the other station's reports is not its own.
  EXPECT_FALSE(decoded.HasNote("01234 TTAA was corrected"));
}

// What only the rest of the message speaks against stays, and is named.
TEST(Coded, DoubtsNameTheirLevels) {
  std::string text = FileText(kBulletins);
  text.replace(text.find("60763 25040 88210"), 11, "60763 07040");
  EXPECT_TRUE(DecodeText(kBulletins, text).HasNote("The wind 070/40 kt at 16214 m stands out"));
}

TEST(Coded, ReportsWithoutAscentSayWhy) {
  EXPECT_EQ(DecodeText("n", "TTAA 6300/ 72999 51515 10148=\n").Failed->Detail,
            "n: no ascent in it; 72999 TTAA: the ascent was not authorised.");
  EXPECT_NE(DecodeText("n", "TTAA 56001 43999\nNO ASCENT DUE TO SHORTAGE OF STAFF=\n")
                .Failed->Detail.find("SHORTAGE OF STAFF"),
            std::string::npos);
}

}  // namespace
}  // namespace vexa::ingest
