// What all formats share, at its limits: which values are values, which rows become levels, which
// times and places are some. Heights are hypsometric, 29.27 m/K times the mean temperature times
// ln p, worked out by hand.
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/markers.h"
#include "core/numbers.h"
#include "ingest/decoded.h"
#include "ingest/height_finder.h"
#include "ingest/source_header.h"
#include "ingest/source_levels.h"
#include "ingest/source_sounding.h"
#include "ingest/wind_heights.h"

namespace vexa::ingest {
namespace {

TEST(SourceLimits, ValuesOfElements) {
  const struct {
    Element What;
    double Least, Most, Below, Above;
    const char* Note;
  } rows[] = {
      {Element::Press, 0.1, 1100, 0, 1100.1, "Pressures outside 0 to 1100 hPa, left out: 2"},
      {Element::Height, -500, 60000, -500.1, 60001, "Heights outside -500 to 60000 m, left out: 2"},
      {Element::Temp, -120, 60, -120.1, 60.1, "Temperatures outside -120 to 60 C, left out: 2"},
      {Element::Dewpt, -150, 60, -150.1, 60.1, "Dew points outside -150 to 60 C, left out: 2"},
      {Element::Direction, 0, 360, -1, 361,
       "Wind directions outside 0 to 360 degrees, left out: 2"},
      {Element::Speed, 0, 300, -1, 301, "Wind speeds outside 0 to 300 knots, left out: 2"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Note);
    for (const bool isTaken : {false, true}) {
      Refusals refused;
      const auto read = [&](double value) {
        std::optional<double> into;
        isTaken ? TakeElement(value, row.What, refused, into)
                : ReadElement(value, row.What, refused, into);
        return into;
      };
      EXPECT_EQ(read(row.Least), row.Least);
      EXPECT_EQ(read(row.Most), row.Most);
      EXPECT_TRUE(refused.Notes().empty());
      EXPECT_EQ(read(row.Below), std::nullopt);
      EXPECT_EQ(read(row.Above), std::nullopt);
      EXPECT_EQ(refused.Notes(), std::vector<std::string>{row.Note});
    }
  }
}

TEST(SourceLimits, MarkersAreMissingWithoutAWord) {
  const struct {
    const char* Field;
    bool IsRead, IsRefused;
  } cases[] = {{"-9999", true, false},   {"9999", true, false},   {"99999", true, false},
               {"-99999", true, false},  {"-999", true, false},   {"999", true, false},
               {"999.004", true, false}, {"999.006", true, true}, {"-998.996", true, false},
               {"-998.99", true, true},  {"998", true, true},     {"  ", true, false},
               {"////", true, false},    {"**", true, false},     {"--", true, false},
               {"M", true, false},       {"m", true, false},      {"NAN", true, false},
               {"Null", true, false},    {"N/A", true, false},    {"/*", false, false},
               {"none", false, false},   {"12,5", false, false},  {"12C", false, false},
               {"//1", false, false}};
  for (const auto& c : cases) {
    Refusals refused;
    std::optional<double> into = 5;
    EXPECT_EQ(ReadElement(c.Field, Element::Temp, refused, into), c.IsRead) << c.Field;
    EXPECT_FALSE(into) << c.Field;
    EXPECT_EQ(refused.Notes().size(), c.IsRefused ? 1U : 0U) << c.Field;
  }
  // What lies in the range is a value, and the range is that of our unit: 301 knots are none.
  Refusals refused;
  std::optional<double> into;
  EXPECT_TRUE(ReadElement("999.0", Element::Press, refused, into));
  EXPECT_EQ(into, 999);
  EXPECT_TRUE(ReadElement("9999", Element::Height, refused, into));
  EXPECT_EQ(into, 9999);
  EXPECT_TRUE(ReadElement("155", Element::Speed, refused, into, {kMsToKnot}));
  EXPECT_EQ(into, std::nullopt);
  // 18.4 to the last bit, and sums to 0.0001.
  EXPECT_EQ((Scale{.Over = 10}(184)), 18.4);
  EXPECT_EQ((Scale{.Plus = -273.15}(300)), 26.85);
  EXPECT_EQ((Scale{.Plus = -273.15}(300.00004)), 26.85);
  EXPECT_EQ((Scale{.Plus = -273.15}(300.00006)), 26.8501);
  for (const char* unit : {"knot", "knots", " kt ", "kts"}) EXPECT_EQ(KnotsPer(unit), 1) << unit;
  EXPECT_NEAR(KnotsPer("m/s").value_or(0), 3600 / 1852.0, 1e-6);
  EXPECT_EQ(KnotsPer("km/h"), std::nullopt);
}

SoundingRecord Filled(std::vector<SourceLevel> levels, std::vector<std::string>& notes) {
  SoundingRecord record;
  FillProfiles(std::move(levels), record, notes);
  return record;
}

TEST(SourceLimits, RowsThatBecomeLevels) {
  std::vector<std::string> notes;
  const SoundingRecord record = Filled({{.Press = 850, .Temp = 10, .Dewpt = 10.11},
                                        {.Press = 850, .Temp = 10},
                                        {.Press = 850, .Temp = 11},
                                        {.Press = 900, .Temp = 12, .Dewpt = 12.09},
                                        {.Temp = 5},
                                        {.Press = 800, .Dewpt = 5}},
                                       notes);
  EXPECT_EQ(record.Press, Levels<double>({900, 850}));
  EXPECT_EQ(record.Temp, Levels<double>({12, 10}));
  EXPECT_EQ(record.Dewpt, Levels<double>({12, 10}));
  EXPECT_EQ(notes, (std::vector<std::string>{
                       "Dew points above the temperature, lowered to it: 1",
                       "Temperatures at the pressure of the one before, left out: 1"}));
}

// "100 90/5": a height with a wind, "-" for what is missing.
std::vector<SourceLevel> WindRows(std::string_view text) {
  std::vector<SourceLevel> rows;
  const std::vector<std::string_view> words = Tokens(text);
  for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
    const std::size_t slash = words[i + 1].find('/');
    rows.push_back({.Height = ParseNumber(words[i]),
                    .Dir = ParseNumber(words[i + 1].substr(0, slash)),
                    .Spd = ParseNumber(words[i + 1].substr(slash + 1))});
  }
  return rows;
}

TEST(SourceLimits, WindsHalfAMetreApartAreOne) {
  const struct {
    const char *About, *Rows;
    std::vector<double> Heights;
    std::size_t Notes = 0;
  } cases[] = {
      {"half a metre", "100 90/5 100.5 95/5 200 90/5", {100, 200}, 1},
      {"more", "100 90/5 100.6 95/5", {100, 100.6}},
      {"the same wind is no loss", "100 90/5 100.5 90/5", {100}},
      {"another speed is", "100 90/5 100.5 90/6", {100}, 1},
      {"falling", "200 90/5 100 90/5 99.5 95/5 99 90/5", {99, 100, 200}, 1},
      {"rising again", "200 90/5 100 90/5 200.5 95/5 300 90/5", {100, 200, 300}, 1},
      {"a calm needs no direction", "100 -/0 200 -/1 300 90/-", {100}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> notes;
    EXPECT_EQ(Filled(WindRows(c.Rows), notes).WindHgt.Values(), c.Heights) << c.About;
    EXPECT_EQ(notes.size(), c.Notes) << c.About;
  }
  std::vector<std::string> notes;
  const SoundingRecord north = Filled(WindRows("100 0/5 200 90/0 300 1/1"), notes);
  EXPECT_EQ(north.WindDir, Levels<double>({360, 360, 1}));
}

// 0 C: 7995.5 m times ln(1000/900) = 842.4 m, to 850 hPa 457.0 m, to 800 hPa 484.7 m more.
TEST(SourceLimits, WindsStandWhereTheProfileHasTheirPressure) {
  const std::vector<SourceLevel> rows = {{.Press = 1000, .Height = 0, .Temp = 0},
                                         {.Press = 900, .Height = 873, .Temp = 0},
                                         {.Press = 850},
                                         {.Press = 800, .Height = 1800, .Temp = 0}};
  SoundingRecord profile;
  for (const double press : {1000.0, 900.0, 800.0}) profile.AddTemp(press, 0, kMissing);
  WindHeights heights(profile, rows);
  const struct {
    const char* About;
    SourceLevel Row;
    double Height;
  } cases[] = {
      {"at a pressure", {.Press = 850}, 1299.4},
      {"back at the ground", {.Press = 1000, .Height = 0}, 0},
      {"a second row, 10 m up", {.Press = 900, .Height = 883}, 842.4 + 10 * 941.7 / 927},
      {"at the next pressure", {.Press = 900, .Height = 1800}, 1784.1},
      {"beyond it", {.Press = 900, .Height = 1810}, 842.4 + 937},
      {"below its own", {.Press = 900, .Height = 863}, 832.4},
      {"above the profile", {.Press = 700, .Height = 2900}, 2900 - 15.9},
      {"below it", {.Press = 1010, .Height = -80}, -80},
      {"without a pressure", {.Height = 1234}, 1234},
  };
  for (const auto& c : cases) EXPECT_NEAR(heights.Of(c.Row), c.Height, 0.25) << c.About;
  EXPECT_EQ(heights.Differences(),
            "Heights that do not follow from the temperatures, by more than 30 m: 1. 900 hPa: "
            "reported 873 m, computed 842 m.");
  const std::vector<SourceLevel> fitting = {
      {.Press = 1000, .Height = 0}, {.Press = 900, .Height = 872}, {.Press = 800, .Height = 1900}};
  EXPECT_EQ(WindHeights(profile, fitting).Differences(),
            "Heights that do not follow from the temperatures, by more than 30 m: 1. 800 hPa: "
            "reported 1900 m, computed 1784 m.");
}

TEST(SourceLimits, HeightsBetweenAndBeyondKnownOnes) {
  HeightFinder heights;
  heights.SetTemperatures({900, 800, 700}, {0, 0, 0}, {kMissing, kMissing, kMissing});
  heights.AddKnown(850, 1500);
  EXPECT_EQ(heights.At(850), 1500);
  heights.AddKnown(850, 1400);  // passed over, as what falls back
  heights.AddKnown(860, 1300);
  heights.AddKnown(750, 2500);
  EXPECT_EQ(heights.At(850), 1500);
  EXPECT_EQ(heights.At(750), 2500);
  // Straight in ln p: ln(850/800) / ln(850/750) = 0.4844.
  EXPECT_NEAR(heights.At(800), 1984.4, 0.1);
  EXPECT_NEAR(heights.At(900), 1500 - 457.0, 0.2);
  EXPECT_NEAR(heights.At(700), 2500 + 551.7, 0.2);
  EXPECT_FALSE(heights.UsedStandardAtmosphere());
  // A table of the standard atmosphere: -4.6 C at 700 hPa, -6.7 C at 650 hPa.
  EXPECT_NEAR(heights.At(650) - heights.At(700), 29.27 * 266.0 * 0.07411, 6);
  EXPECT_TRUE(heights.UsedStandardAtmosphere());
}

TEST(SourceLimits, TheGroundFitsTheHeights) {
  for (const auto& [given, isUsed] :
       {std::pair{400.0, true}, {401.0, false}, {-200.0, true}, {-201.0, false}}) {
    std::optional<double> ground = given;
    std::vector<std::string> notes;
    SettleGround(100.4, ground, notes);
    EXPECT_EQ(ground, isUsed ? given : 100) << given;
    EXPECT_EQ(notes.size(), isUsed ? 0U : 2U);
  }
  // 925 to 850 hPa at 0 C: 676.1 m below 1500 m.
  const auto fitting = FittingGround(
      {{.Press = 850, .Height = 1500, .Temp = 0}, {.Press = 940}, {.Press = 925, .Temp = 0}});
  ASSERT_TRUE(fitting);
  EXPECT_NEAR(*fitting, 823.9, 0.2);
  EXPECT_FALSE(FittingGround({{.Press = 850, .Height = 1500}}));
  EXPECT_FALSE(FittingGround({{.Press = 850, .Temp = 0}}));
}

TEST(SourceLimits, AnElevationBeyondTheEarthIsNone) {
  for (const auto& [given, is] :
       {std::pair{-500.0, -500}, {-501.0, 100}, {9000.0, 9000}, {9001.0, 100}}) {
    SourceSounding sounding;
    sounding.Heading.Elevation = given;
    sounding.Levels = {{.Press = 900, .Height = 1000, .Temp = 10},
                       {.Press = 1000, .Height = 100, .Temp = 20}};
    LoadContext context;
    SoundingRecord record;
    FillRecord(std::move(sounding), "x", context, record);
    EXPECT_EQ(record.ElevM, is) << given;
    EXPECT_EQ(record.StationTitle, "x");
  }
}

TEST(SourceLimits, AnAscentBeginsAtItsReleaseAndEndsAtItsTop) {
  const struct {
    const char *About, *Rows, *Kept, *Note;  // pressures, "-" where there is none
  } cases[] = {
      {"a descent is turned round", "800 900 1000", "1000 900 800 ", ""},
      {"as many rows down as up", "950 900 800 850 900", "950 900 800 ",
       "Rows after the highest point, left out: 2"},
      {"more down", "900 800 850 900", "900 850 800 ", "Rows after the highest point, left out: 1"},
      {"four rows on the ground stay", "1000 1000 999.9 999.8 1000 900",
       "1000 1000 999.9 999.8 1000 900 ", ""},
      {"of five one", "1000 1000 999.9 999.8 1000 999.8 900", "999.8 900 ",
       "Rows before the release, left out: 5"},
      {"0.2 hPa is the ground", "1000 1000 1000 1000 1000 999.7 900",
       "1000 1000 1000 1000 1000 999.7 900 ", ""},
      {"a first row without a pressure", "- 1000 900", "- 1000 900 ", ""},
      {"none has one", "- -", "- - ", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    std::vector<SourceLevel> rows;
    for (const std::string_view word : Tokens(c.Rows)) rows.push_back({.Press = ParseNumber(word)});
    std::vector<std::string> notes;
    KeepAscent(rows, notes);
    std::string kept, told;
    for (const SourceLevel& row : rows) kept += (row.Press ? Shortest(*row.Press) : "-") + ' ';
    for (const std::string& note : notes) told += note;
    EXPECT_EQ(kept, c.Kept);
    EXPECT_EQ(told, c.Note);
  }
  // Of rows at one pressure the highest is the top, of these the last.
  std::vector<SourceLevel> rows = {{.Press = 900},
                                   {.Press = 10, .Height = 31000},
                                   {.Press = 10, .Height = 31010},
                                   {.Press = 10, .Height = 31010, .Temp = -40},
                                   {.Press = 10, .Height = 31005}};
  std::vector<std::string> notes;
  KeepAscent(rows, notes);
  ASSERT_EQ(rows.size(), 4U);
  EXPECT_EQ(rows.back().Temp, -40);
}

TEST(SourceLimits, SoundingsToChooseFrom) {
  const SourceText source("x", "");
  const struct {
    std::size_t Count;
    int Index;
    const char* Says;  // empty: chosen
  } cases[] = {{0, 0, "x: no sounding in it"},
               {1, 0, ""},
               {1, 1, "x: it holds 1 sounding, number 2 was asked for"},
               {2, 1, ""},
               {2, 2, "x: it holds 2 soundings, number 3 was asked for"},
               {2, -1, "x: it holds 2 soundings, number 0 was asked for"}};
  for (const auto& c : cases) {
    LoadContext context{.Index = c.Index};
    const Outcome<std::size_t> chosen = ChooseSounding(c.Count, source, context);
    EXPECT_EQ(chosen ? "" : chosen.Error().Detail, c.Says);
    EXPECT_EQ(context.Count, c.Count == 2 ? 2 : 1);
  }
}

TEST(SourceLimits, TimesThatACalendarHas) {
  const struct {
    int Year, Month, Day, Hour, Minute;
    bool IsTime;
  } cases[] = {{1, 1, 1, 0, 0, true},      {0, 1, 1, 0, 0, false},     {9999, 12, 31, 23, 59, true},
               {10000, 1, 1, 0, 0, false}, {2024, 0, 1, 0, 0, false},  {2024, 13, 1, 0, 0, false},
               {2024, 1, 0, 0, 0, false},  {2024, 1, 32, 0, 0, false}, {2024, 2, 29, 0, 0, true},
               {2023, 2, 29, 0, 0, false}, {2024, 4, 31, 0, 0, false}, {2024, 1, 1, -1, 0, false},
               {2024, 1, 1, 24, 0, false}, {2024, 1, 1, 0, -1, false}, {2024, 1, 1, 0, 60, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(MakeTime(c.Year, c.Month, c.Day, c.Hour, c.Minute).has_value(), c.IsTime)
        << c.Year << ' ' << c.Month << ' ' << c.Day << ' ' << c.Hour << ' ' << c.Minute;
  }
}

TEST(SourceLimits, WaysToWriteATime) {
  const struct {
    std::optional<ObservationTime> (*Parse)(std::string_view);
    const char* Text;
    std::optional<ObservationTime> Time;
  } cases[] = {
      {ParseCompactTime, "990504/00", ObservationTime{1999, 5, 4, 0, 0}},
      {ParseCompactTime, "990504/2359", ObservationTime{1999, 5, 4, 23, 59}},
      {ParseCompactTime, "490101/0000", ObservationTime{2049, 1, 1, 0, 0}},
      {ParseCompactTime, "500101/0030", ObservationTime{1950, 1, 1, 0, 30}},
      {ParseCompactTime, "990229/0000", {}},
      {ParseCompactTime, "990504/0", {}},
      {ParseCompactTime, "990504/000", {}},
      {ParseCompactTime, "99504/0000", {}},
      {ParseCompactTime, "99-504/0000", {}},
      {ParseCompactTime, "990504/00x0", {}},
      {ParseWrittenTime, "00Z 04 May 1999", ObservationTime{1999, 5, 4, 0, 0}},
      {ParseWrittenTime, "12 UTC 23 February 2023", ObservationTime{2023, 2, 23, 12, 0}},
      {ParseWrittenTime, "12 23 Feb 2023)", ObservationTime{2023, 2, 23, 12, 0}},
      {ParseWrittenTime, "9Z 23 Feb 2023", ObservationTime{2023, 2, 23, 9, 0}},
      {ParseWrittenTime, "00Z 04 Mai 1999", {}},
      {ParseWrittenTime, "012Z 23 Feb 2023", {}},
      {ParseWrittenTime, "12Z 23 Feb", {}},
      {ParseWrittenTime, "xxZ 23 Feb 2023", {}},
      {ParseWrittenTime, "", {}},
      {ParseIsoTime, "2024-05-04 12", ObservationTime{2024, 5, 4, 12, 0}},
      {ParseIsoTime, "2024-05-04 12:30", ObservationTime{2024, 5, 4, 12, 30}},
      {ParseIsoTime, "2024, 05, 04, 12, 06", ObservationTime{2024, 5, 4, 12, 6}},
      {ParseIsoTime, "2024-05-04", {}},
      {ParseIsoTime, "2024-05-04T12+14", ObservationTime{2024, 5, 3, 22, 0}},
      {ParseIsoTime, "2024-05-04T12+15", {}},
      {ParseIsoTime, "2024-05-04T12:30+0059", ObservationTime{2024, 5, 4, 11, 31}},
      {ParseIsoTime, "2024-05-04T12:30+00:60", {}},
      {ParseIsoTime, "2024-05-04T12:30+005", ObservationTime{2024, 5, 4, 12, 30}},
      {ParseIsoTime, "2024-12-31T23:30-01:00", ObservationTime{2025, 1, 1, 0, 30}},
      // An offset from UTC (RFC 3339) is taken off.
      {ParseIsoTime, "2000-01-01 02:15+0530", ObservationTime{1999, 12, 31, 20, 45}},
      {ParseIsoTime,
       "1999-05-04T12:00:00\xE2\x88\x92"
       "03:00",
       ObservationTime{1999, 5, 4, 15, 0}},
      {ParseIsoTime, "1999-05-04 12:30 - 13:00", ObservationTime{1999, 5, 4, 12, 30}},
      {ParseIsoTime, "2023, 05, 22, 23:06:10", ObservationTime{2023, 5, 22, 23, 6}},
      {ParseIsoTime, "1999-02-29T12:00+05:30", {}},
  };
  for (const auto& c : cases) EXPECT_EQ(c.Parse(c.Text), c.Time) << c.Text;
  const char* const months[] = {"JAN", "february", "Mar", "apr", "May", "June",
                                "jul", "Aug.",     "Sep", "Oct", "nov", "Dec"};
  for (int i = 0; i < 12; ++i) EXPECT_EQ(MonthNumber(months[i]), i + 1);
  EXPECT_EQ(MonthNumber("Ja"), 0);
  EXPECT_EQ(WholeNumbersIn("a12b-3,0123456789"), (std::vector<int>{12, 3, 12345678}));
  EXPECT_TRUE(WholeNumbersIn("none").empty());
}

TEST(SourceLimits, DatesInNames) {
  using namespace std::chrono_literals;
  const struct {
    const char* Name;
    std::optional<std::chrono::sys_days> Day;
  } cases[] = {{"20220713", 2022y / 7 / 13},
               {"72712_20220713_00z.txt", 2022y / 7 / 13},
               {"2022071", {}},
               {"19000101", 1900y / 1 / 1},
               {"18991231", {}},
               {"21001231", 2100y / 12 / 31},
               {"21010101", {}},
               {"20220732_20220230", {}},
               {"9920220713", 2022y / 7 / 13},
               {"2022-07-13", {}}};
  for (const auto& c : cases) EXPECT_EQ(DateInName(c.Name), c.Day) << c.Name;
}

TEST(SourceLimits, PositionsOnTheEarth) {
  const struct {
    std::optional<double> Lat, Lon;
    bool IsOne;
    double Shown;
  } cases[] = {{90, 180, true, 180}, {-90, -180, true, -180},  {90.1, 0, false, 0},
               {-90.1, 0, false, 0}, {0, -180.1, false, 0},    {0, 360, true, 0},
               {0, 360.1, false, 0}, {0, 180.5, true, -179.5}, {{}, 5, false, 0},
               {5, {}, false, 0}};
  for (const auto& c : cases) {
    SoundingRecord record;
    SetPosition(record, c.Lat, c.Lon);
    EXPECT_EQ(IsPosition(c.Lat, c.Lon), c.IsOne) << c.Lat.value_or(999) << c.Lon.value_or(999);
    EXPECT_EQ(record.LatSigned, c.IsOne ? *c.Lat : 0);
    EXPECT_EQ(record.LonSigned, c.Shown);
  }
}

TEST(SourceLimits, WordsAndCaptions) {
  EXPECT_EQ(FirstWord(" \tone two"), "one");
  EXPECT_EQ(FirstWord("one"), "one");
  EXPECT_EQ(FirstWord("  "), "");
  EXPECT_EQ(Tokens("\ta  b\t").size(), 2U);
  EXPECT_TRUE(StartsWithNoCase("Wyoming", "WYO") && !StartsWithNoCase("Wy", "WYO"));
  EXPECT_EQ(FindNoCase("a PRE b pre", "pre"), 2U);
  EXPECT_EQ(FindNoCase("a PRE b pre", "pre", 3), 8U);
  EXPECT_EQ(FindNoCase("a PRE", "pre", 3), std::string_view::npos);
  EXPECT_EQ(FindNoCase("a", "a", 2), std::string_view::npos);
  const ObservationTime noon{2024, 5, 4, 12, 0}, later{2024, 5, 4, 12, 7};
  EXPECT_EQ(Caption({}, noon), "12Z 04 May 2024");
  EXPECT_EQ(Caption({.Letters = "OUN"}, later), "OUN  1207Z 04 May 2024");
  EXPECT_EQ(Caption({.Number = 7, .Name = "Town"}, {}), "00007 - Town");
  // 54 characters: 15 of the time and two blanks leave 37.
  const std::string room(37, 'x');
  EXPECT_EQ(Caption({.Name = room}, noon), room + "  12Z 04 May 2024");
  EXPECT_EQ(Caption({.Name = room + "y"}, noon), room + "  12Z 04 May 2024");
  // A word is left out where more than half remains.
  const std::string half(19, 'x');
  EXPECT_EQ(Caption({.Name = half + ' ' + half}, noon), half + "  12Z 04 May 2024");
  const std::string less(18, 'x');
  EXPECT_EQ(Caption({.Name = less + ' ' + half}, noon),
            less + ' ' + half.substr(1) + "  12Z 04 May 2024");
}

}  // namespace
}  // namespace vexa::ingest
