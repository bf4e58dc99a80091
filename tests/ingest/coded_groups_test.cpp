// Groups, headers and remarks of coded messages by the WMO's Manual on Codes (FM 35 and FM 32):
// each figure's meaning at the ends of its range.
#include "ingest/coded_groups.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/source_text.h"
#include "ingest/coded_chain.h"
#include "ingest/coded_remarks.h"
#include "ingest/coded_report.h"

namespace vexa::ingest {
namespace {

TEST(CodedGroups, TemperaturesWithTheirDepression) {
  using Value = std::optional<double>;
  const struct {
    const char* Group;
    bool IsTemp;
    Value Temp, Dewpt;
  } cases[] = {
      {"22212", true, 22.2, 21.0},    {"22350", true, -22.3, -27.3}, {"22251", true, 22.2, {}},
      {"22255", true, 22.2, {}},      {"22256", true, 22.2, 16.2},   {"22299", true, 22.2, -26.8},
      {"00000", true, 0.0, 0.0},      {"60000", true, 60.0, 60.0},   {"60200", false, {}, {}},
      {"99956", true, -99.9, -105.9}, {"222//", true, 22.2, {}},     {"/////", true, {}, {}},
      {"/2212", true, {}, {}},        {"2/212", false, {}, {}},      {"2221", false, {}, {}},
      {"222123", false, {}, {}},      {"2221X", false, {}, {}}};
  for (const auto& c : cases) {
    const std::optional<GroupTemp> read = ReadTempGroup(c.Group);
    EXPECT_EQ(read.has_value(), c.IsTemp) << c.Group;
    if (!read) continue;
    EXPECT_EQ(read->Temp, c.Temp) << c.Group;
    EXPECT_EQ(read->Dewpt.has_value(), c.Dewpt.has_value()) << c.Group;
    EXPECT_NEAR(read->Dewpt.value_or(0), c.Dewpt.value_or(0), 1e-9) << c.Group;
  }
}

TEST(CodedGroups, WindsWithTheirFiveDegrees) {
  using Value = std::optional<double>;
  const struct {
    const char* Group;
    double ToKnots;
    bool IsWind;
    Value Dir, Spd;
  } cases[] = {
      {"24101", 1, true, 240, 101}, {"24601", 1, true, 245, 101}, {"36000", 1, true, 360, 0},
      {"36500", 1, true, 5, 0},     {"00010", 1, true, 0, 10},    {"37010", 1, false, {}, {}},
      {"09300", 1, true, 90, 300},  {"09301", 1, false, {}, {}},  {"09499", 1, false, {}, {}},
      {"09500", 1, true, 95, 0},    {"09800", 1, true, 95, 300},  {"09801", 1, false, {}, {}},
      {"09150", 2, true, 90, 300},  {"09151", 2, false, {}, {}},  {"//010", 1, true, {}, {}},
      {"09///", 1, true, {}, {}},   {"/////", 1, true, {}, {}},   {"0901", 1, false, {}, {}}};
  for (const auto& c : cases) {
    const std::optional<GroupWind> read = ReadWindGroup(c.Group, c.ToKnots);
    EXPECT_EQ(read.has_value(), c.IsWind) << c.Group;
    if (!read) continue;
    EXPECT_EQ(read->Dir, c.Dir) << c.Group;
    EXPECT_EQ(read->Spd, c.Spd) << c.Group;
  }
  EXPECT_EQ(Figures("12345", 2, 3), 345);
  EXPECT_EQ(Figures("12345", 3, 3), std::nullopt);
  EXPECT_EQ(Figures("1/345", 0, 2), std::nullopt);
}

std::vector<CodedReport> Reports(const std::string& text) {
  std::vector<std::string> notes;
  return SplitReports(SourceText("m", text), notes);
}

TEST(CodedGroups, HeadersOfLandStations) {
  const struct {
    const char *About, *Text;
    bool IsRead;
    int Day = 0, Hour = 0;
    bool InKnots = false;
    int Number = 0, Correction = 0;
  } cases[] = {
      {"metres per second", "TTAA 31231 01234 99000", true, 31, 23, false, 1234, 0},
      {"its day 0", "TTAA 50001 01234 99000", false},
      {"day 32", "TTAA 82001 01234 99000", false},
      {"24 hours", "TTAA 51241 01234 99000", false},
      {"a day that is none", "TTAA 5X001 01234 99000", false},
      {"a number of four figures", "TTAA 51001 1234 99000", false},
      {"number 00000", "TTAA 51001 00000 99000", false},
      {"no number", "TTAA 51001", false},
      {"one of the bulletin", "USUS50 KWBC 130000 CCC\nTTAA 51001 01234 99000", true, 1, 0, true,
       1234, 3},
      {"a bulletin without one", "USUS50 KWBC 130000\nTTAA 51001 01234 99000", true, 1, 0, true,
       1234, 0},
      {"a bulletin ends a report", "TTAA 51001 01234 99000\nUSUS50 KWBC 130000\n55555", true, 1, 0,
       true, 1234, 0},
      {"the number ahead of the part", "01234 TTAA 51001 01234 99000", true, 1, 0, true, 1234, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const std::vector<CodedReport> reports = Reports(c.Text);
    ASSERT_EQ(reports.size(), c.IsRead ? 1U : 0U);
    if (!c.IsRead) continue;
    EXPECT_EQ(reports[0].Day, c.Day);
    EXPECT_EQ(reports[0].Hour, c.Hour);
    EXPECT_EQ(reports[0].InKnots, c.InKnots);
    EXPECT_EQ(reports[0].WmoNumber, c.Number);
    EXPECT_EQ(reports[0].Correction, c.Correction);
    EXPECT_EQ(reports[0].Groups, std::vector<std::string>{"99000"});
  }
  for (const char* name : {"TTAA", "UUBB", "PPDD", "XXCC", "IIAA", "QQAA", "EEAA"}) {
    EXPECT_TRUE(IsPartName(name)) << name;
  }
  for (const char* name : {"TTEE", "ZZAA", "TUAA", "TTAB", "TTAAA", "TTA"}) {
    EXPECT_FALSE(IsPartName(name)) << name;
  }
}

TEST(CodedGroups, PositionsOfShipsAndSondes) {
  const struct {
    const char *About, *Position;
    bool IsRead;
    double Lat = 0, Lon = 0;
    std::size_t Notes = 0;
  } cases[] = {
      {"north-east", "99153 10659 04355", true, 15.3, 65.9, 0},
      {"south-east", "99153 30659 04355", true, -15.3, 65.9, 0},
      {"south-west", "99153 50659 04355", true, -15.3, -65.9, 0},
      {"north-west", "99153 70659 04355", true, 15.3, -65.9, 0},
      {"no quadrant", "99153 20659 04355", false},
      {"the pole", "99900 11800 04300", true, 90, 180, 0},
      {"beyond it", "99901 11800 04300", false},
      {"beyond the date line", "99900 11801 04300", false},
      {"another check group", "99153 70659 04354", true, 15.3, -65.9, 1},
      {"none", "99153 70659 043//", true, 15.3, -65.9, 0},
      {"without its mark", "98153 70659 04355", false},
      {"not observed", "99/// 70659 04355", false},
      {"cut off", "99153 70659", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const std::vector<CodedReport> reports =
        Reports("UUAA SHIP1 51121 " + std::string(c.Position) +
                (std::string_view(c.About) == "cut off" ? "" : " 88888"));
    ASSERT_EQ(reports.size(), c.IsRead ? 1U : 0U);
    if (!c.IsRead) continue;
    EXPECT_EQ(reports[0].Station, "SHIP1");
    EXPECT_EQ(reports[0].Lat, c.Lat);
    EXPECT_EQ(reports[0].Lon, c.Lon);
    EXPECT_EQ(reports[0].Notes.size(), c.Notes);
    EXPECT_EQ(reports[0].Groups, std::vector<std::string>{"88888"});
  }
  // Metres by 1 to 4, feet by 5 to 8.
  for (const auto& [group, elevation] :
       {std::pair{"01234", 123.0}, {"01235", 123 * 0.3048}, {"01238", 123 * 0.3048}}) {
    const auto mobile =
        Reports("IIAA MOB01 51121 99501 10082 19108 " + std::string(group) + " 99000");
    ASSERT_EQ(mobile.size(), 1U);
    EXPECT_DOUBLE_EQ(mobile[0].Elevation.value_or(-1), elevation) << group;
  }
  EXPECT_FALSE(Reports("IIAA MOB01 51121 99501 10082 19108 0123/ 99000")[0].Elevation);
  EXPECT_TRUE(Reports("UUAA SHIP1").empty());
  EXPECT_FALSE(Reports("IIAA MOB01 51121 99501 10082 19108")[0].Elevation);
  EXPECT_EQ(Reports("XXAA 51128 99153 70659 04355 99000")[0].Station, "drop 15.3 -65.9");
}

// The groups of each report, between blanks; a semicolon ends it.
std::string GroupsOf(const std::vector<CodedReport>& reports) {
  std::string text;
  for (const CodedReport& report : reports) {
    for (const std::string& group : report.Groups) text += group + ' ';
    text += ';';
  }
  return text;
}

TEST(CodedGroups, RelaysBreakLinesAndReportsEndInSigns) {
  const struct {
    const char *About, *Text, *Groups;
  } cases[] = {
      {"the first group", "TTAA 510\n01 01234 99000", "99000 ;"},
      {"in three", "TTAA 51001 01234 9\n90\n00 20056", "9 90 00 20056 ;"},
      {"two that are too long", "TTAA 51001 01234 990\n000 20056", "990 000 20056 ;"},
      {"letters", "TTAA 51001 01234 99A\n00 20056", "99A 00 20056 ;"},
      {"not within a line", "TTAA 51001 01234 990 00\n20056", "990 00 20056 ;"},
      {"not behind the end", "TTAA 51001 01234 99000 200=\n56", "99000 200 ;"},
      {"a semicolon", "TTAA 51001 01234 99000 ;20056", "99000 ;"},
      {"control characters", "\x01TTAA\t51001 01234\x03 99000", "99000 ;"},
      {"the name alone", "TTAA\n51001 01234 99000", "99000 ;"},
      {"words that look like a heading", "TTAA 51001 01234 99000\nUSUS50 KWBC 13000 20056",
       "99000 USUS50 KWBC 13000 20056 ;"},
  };
  for (const auto& c : cases) EXPECT_EQ(GroupsOf(Reports(c.Text)), c.Groups) << c.About;
}

TEST(CodedGroups, TheReportThatCounts) {
  const struct {
    const char *About, *Text, *Groups;
    std::size_t Notes = 0;
  } cases[] = {
      {"the longer", "TTAA 51001 01234 1 2=TTAA 51001 01234 3=", "1 2 ;"},
      {"of two the last", "TTAA 51001 01234 1 2=TTAA 51001 01234 3 4=", "3 4 ;"},
      {"a correction", "TTAA 51001 01234 1 2=TTAA COR 51001 01234 3=", "3 ;", 1},
      {"told once", "TTAA 51001 01234 1=TTAA COR 51001 01234 2=TTAA CCB 51001 01234 3=", "3 ;", 1},
      {"the corrected came later", "TTAA COR 51001 01234 3=TTAA 51001 01234 1 2=", "3 ;", 1},
      {"another hour", "TTAA 51001 01234 1=TTAA 51011 01234 3=", "1 ;3 ;"},
      {"another day", "TTAA 51001 01234 1=TTAA 52001 01234 3=", "1 ;3 ;"},
      {"another station", "TTAA 51001 01234 1=TTAA 51001 01235 3=", "1 ;3 ;"},
      {"another part", "TTAA 51001 01234 1=TTBB 51001 01234 3=", "1 ;3 ;"},
      {"without content", "TTAA 51001 01234 1=TTAA CCA 51001 01234=", "1 ;"},
  };
  for (const auto& c : cases) {
    const std::vector<CodedReport> kept = LatestReports(Reports(c.Text));
    EXPECT_EQ(GroupsOf(kept), c.Groups) << c.About;
    EXPECT_EQ(kept.front().Notes.size(), c.Notes) << c.About;
  }
}

TEST(CodedGroups, WhatRemarksSay) {
  const struct {
    std::vector<std::string> Groups, Says;
  } cases[] = {
      {{"31313", "09608", "82359"}, {"released at 23:59 UTC"}},
      {{"31313", "09608", "82400"}, {}},
      {{"31313", "09608", "82360"}, {}},
      {{"31313", "81131"}, {}},  // in the place of the instruments
      {{"31313", "09608", "81131", "90287"},
       {"released at 11:31 UTC", "the water's temperature is 28.7 C"}},
      {{"31313", "09608", "91005"}, {"the water's temperature is -0.5 C"}},
      {{"31313", "09608", "92005"}, {}},
      {{"31313", "09608", "9028/"}, {}},
      {{"51515", "10164", "00040"}, {"stability index of the station 40"}},
      {{"51515", "10164", "00041"}, {}},
      {{"51515", "10164", "00049"}, {}},
      {{"51515", "10164", "00050"}, {"stability index of the station 0"}},
      {{"51515", "10164", "00090"}, {"stability index of the station -40"}},
      {{"51515", "10164", "00091"}, {}},
      {{"51515", "10164"}, {}},
      {{"51515", "10190", "85479"}, {"height of 850 hPa extrapolated, 479 m"}},
      {{"51515", "10190", "70012"}, {"height of 700 hPa extrapolated, 012 m"}},
      {{"51515", "10190", "50563"}, {"height of 500 hPa extrapolated, 5630 m"}},
      {{"51515", "10190", "5//63"}, {}},
      {{"51515", "10194", "09012", "36510"},
       {"mean wind surface to 5000 ft 90/12 kt, 5000 to 10000 ft 5/10 kt"}},
      {{"51515", "10194", "09012"}, {}},
      {{"51515", "10194", "09012", "36510", "10165"},
       {"mean wind surface to 5000 ft 90/12 kt, 5000 to 10000 ft 5/10 kt",
        "data are doubtful or missing"}},
      {{"51515", "10139", "10160", "10240"}, {}},
      {{"51515", "10150"}, {"the ascent did not reach 400 hPa"}},
      {{"51515", "10144", "10154"}, {"the power failed", "interference"}},
      {{"61616", "AF302"}, {"national section AF302"}},
      {{"62626", "31313", "09608", "81131"}, {"released at 11:31 UTC"}},
      {{"41414", "85071"}, {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RemarksIn(c.Groups, 0), c.Says) << c.Groups[0] << ' ' << c.Groups.back();
  }
  EXPECT_TRUE(RemarksIn({"31313", "09608", "81131"}, 1).empty());
}

TEST(CodedGroups, WhatCertainlyFalls) {
  const struct {
    std::vector<double> Values;
    double Slack;
    std::vector<bool> Kept;
  } cases[] = {{{3, 2, 1}, 0, {true, true, true}},
               {{3, 1, 2}, 0, {true, false, false}},
               {{9, 8, 20, 7, 6}, 0, {true, true, false, true, true}},
               {{3, 3}, 0, {false, false}},
               {{3, 3.4}, 0.5, {true, true}},
               {{3, 3.5}, 0.5, {false, false}},
               {{5}, 0, {true}},
               {{}, 0, {}}};
  for (const auto& c : cases) {
    EXPECT_EQ(CertainlyFalling(c.Values, c.Slack), c.Kept) << c.Values.size();
  }
  // The cheapest way leaves out the dear place in the middle; a gap of 24 is the widest.
  const auto cost = [](std::size_t from, std::size_t to) {
    return to == 1 ? 5.0 : static_cast<double>(to - from);
  };
  EXPECT_EQ(CheapestChain(4, cost), (std::vector<std::size_t>{0, 3}));
  const auto onlyWhole = [](std::size_t places) {
    return CheapestChain(places, [places](std::size_t from, std::size_t to) {
      return from == 0 && to == places - 1 ? 1.0 : to - from == 1 ? 2.0 : kImpossible;
    });
  };
  EXPECT_EQ(onlyWhole(26).size(), 2U);
  EXPECT_EQ(onlyWhole(27).size(), 27U);
  EXPECT_EQ(CheapestChain(3, [](auto, auto) { return kImpossible; }),
            (std::vector<std::size_t>{0, 2}));
  EXPECT_TRUE(CheapestChain(1, cost).empty());
}

}  // namespace
}  // namespace vexa::ingest
