// Coded messages that few stations send: mobile stations, winds alone, and the sections behind the
// levels. The messages were written for these tests; heights between them follow from the
// hypsometric equation, those of winds given by pressure alone from the tables of the standard
// atmosphere.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/station_list.h"
#include "ingest/decoder.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

using test::WindRow;

struct Decoded {
  SoundingRecord Record{};
  std::optional<Fault> Failed{};
  std::vector<std::string> Notes{};

  bool HasNote(std::string_view part) const {
    return std::ranges::any_of(
        Notes, [part](const std::string& note) { return note.find(part) != note.npos; });
  }
};

Decoded Decode(std::string text, const StationList* stations = nullptr) {
  LoadContext context{.Stations = stations};
  Decoded decoded;
  decoded.Failed =
      DecodeSounding(SourceText("m_20240305", std::move(text)), context, decoded.Record);
  decoded.Notes = std::move(context.Notes);
  return decoded;
}

void ExpectWinds(const SoundingRecord& record, const std::vector<WindRow>& rows) {
  ASSERT_EQ(record.NumWindLevels(), static_cast<int>(rows.size()));
  for (int i = 1; i <= record.NumWindLevels(); ++i) {
    const WindRow& row = rows[static_cast<std::size_t>(i) - 1];
    EXPECT_NEAR(record.WindHgt(i), row.Height, 1) << i;
    EXPECT_EQ(record.WindDir(i), row.Dir) << i;
    EXPECT_EQ(record.WindSpd(i), row.Spd) << i;
  }
}

TEST(CodedParts, AMobileStationNamesItsPlaceAndHeight) {
  struct Case {
    const char *About, *Height;
    int ElevM;
  };
  const Case cases[] = {{"metres", "01232", 123}, {"feet", "04047", 123}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const std::string header = std::string(" MOB01 55121 99501 10082 19108 ") + c.Height + ' ';
    const Decoded decoded =
        Decode("IIAA" + header +
               "99998 15456 09010 00106 ///// ///// 92761 10456 18020 85454 05056 20025 88999 "
               "77999=\nIIBB" +
               header + "00998 15456 11900 09056 21212 00998 09010 11900 18522=");
    ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
    const SoundingRecord& record = decoded.Record;
    EXPECT_EQ(record.StationTitle, "MOB01  12Z 05 Mar 2024");
    EXPECT_EQ(record.LatSigned, 50.1);
    EXPECT_EQ(record.LonSigned, 8.2);
    EXPECT_EQ(record.ElevM, c.ElevM);
    EXPECT_EQ(record.Press, Levels<double>({998, 925, 900, 850}));
    EXPECT_EQ(record.Dewpt, Levels<double>({9.4, 4.4, 3, -1}));
    // Hypsometric, worked out apart from the program.
    ExpectWinds(record, {{123, 90, 10}, {761.3, 180, 20}, {989.4, 185, 22}, {1459.2, 200, 25}});
  }
}

TEST(CodedParts, WindsAloneOpen) {
  struct Case {
    const char *About, *Text;
    std::vector<WindRow> Winds;
  };
  const Case cases[] = {
      {"thousands of feet, from the ground",
       "PPBB 55120 01234 90/12 20006 19522 19533 90346 20040 20545 21050=",
       {{240, 200, 6},
        {304.8, 195, 22},
        {609.6, 195, 33},
        {914.4, 200, 40},
        {1219.2, 205, 45},
        {1828.8, 210, 50}}},
      {"standard levels",
       "PPAA 55121 01234 55385 34004 32012 06514 77264 24101 41814=",
       {{1457, 340, 4}, {3012, 320, 12}, {5574, 65, 14}, {10009, 240, 101}}},
      {"significant levels by height",
       "PPBB 55120 01234 21212 10045 18010 20150 19020 30300 20030=",
       {{450, 180, 10}, {1500, 190, 20}, {3000, 200, 30}}},
      {"significant levels by pressure",
       "PPBB 55120 01234 21212 11850 18010 22700 19020 33500 20030=",
       {{1457, 180, 10}, {3012, 190, 20}, {5574, 200, 30}}},
      {"above 100 hPa",
       "PPDD 55120 01234 9947/ 08533 10043 10016 10032 08029 08046=",
       {{28651.2, 85, 33},
        {29565.6, 100, 43},
        {30480, 100, 32},
        {30784.8, 80, 29},
        {32308.8, 80, 46}}},
  };
  StationList stations;
  ASSERT_TRUE(stations.Insert({.Number = 1234,
                               .Ident = "ENXX",
                               .Name = "PLACE",
                               .Region = "NORWAY",
                               .ElevM = 240,
                               .Lat = 61.5,
                               .Lon = 5.25}));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const Decoded decoded = Decode(c.Text, &stations);
    ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
    EXPECT_EQ(decoded.Record.StationTitle, "01234 - ENXX - PLACE, NORWAY  12Z 05 Mar 2024");
    EXPECT_EQ(decoded.Record.NumTempLevels(), 0);
    ExpectWinds(decoded.Record, c.Winds);
  }
}

TEST(CodedParts, SectionsBehindTheLevelsAreNotLevels) {
  const Decoded decoded = Decode(
      "TTAA 55121 72999 99000 20056 18010 85500 10056 18020 70100 01056 18030 88999 66999 77999 "
      "31313 09608 81131 90287 41414 85071 51515 10164 00053 10194 21534 ///// 10165 "
      "61616 AF302 0715A 62626 MBL WND 29023=\n"
      "TTBB 55128 72999 00000 20056 11850 10056 21212 00000 18010 11850 18020 31313 09608 81131 "
      "41414 85071 51515 11920 18515=");
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.Press, Levels<double>({1000, 850, 700}));
  EXPECT_EQ(decoded.Record.NumWindLevels(), 3);
  for (const char* note :
       {"released at 11:31 UTC", "the water's temperature is 28.7 C",
        "stability index of the station -3",
        "mean wind surface to 5000 ft 215/34 kt, 5000 to 10000 ft not given",
        "data are doubtful or missing", "national section AF302 0715A", "remarks MBL WND 29023"}) {
    EXPECT_TRUE(decoded.HasNote(note)) << note;
  }
  // Both parts say when the balloon was released; it is told once.
  EXPECT_EQ(std::ranges::count(decoded.Notes, "The message says: released at 11:31 UTC."), 1);
}

}  // namespace
}  // namespace vexa::ingest
