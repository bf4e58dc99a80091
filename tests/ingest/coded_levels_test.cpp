// Levels of single reports as the WMO's Manual on Codes has them (FM 35: parts A to D, FM 32: winds
// alone), whole and with a group damaged. Each was read by hand.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "ingest/coded_part.h"
#include "ingest/source_header.h"

namespace vexa::ingest {
namespace {

CodedReport ReportOf(std::string_view text, char windTop) {
  const std::vector<std::string_view> words = Tokens(text);
  return {.Part = std::string(words.front()),
          .WindTop = windTop,
          .InKnots = true,
          .Station = "x",
          .Groups = std::vector<std::string>(words.begin() + 1, words.end())};
}

// "S985 15.4 9.4 185/10": kind, place, temperature, dew point, wind; "!" for a doubtful level, "^"
// for one behind a gap.
std::string Told(const CodedLevel& level) {
  constexpr std::string_view kKinds = "SMTWGP";
  const auto number = [](const std::optional<double>& value) {
    return value ? Mask(*value, "0.##") : std::string("-");
  };
  const SourceLevel& values = level.Values;
  std::string text(1, kKinds[static_cast<std::size_t>(level.Kind)]);
  text += values.Press ? number(values.Press) : number(values.Height) + "m";
  if (level.IsAtSurface) text = "ground";
  if (level.HeightFigures) text += "=" + Shortest(*level.HeightFigures);
  if (values.Temp) text += ' ' + number(values.Temp) + ' ' + number(values.Dewpt);
  if (values.Spd) text += ' ' + number(values.Dir) + '/' + number(values.Spd);
  return text + (level.IsDoubtful ? "!" : "") + (level.IsBehindGap ? "^" : "");
}

// A note without the report's name, and in short what was skipped.
std::string Short(std::string note, const std::string& report) {
  for (const auto& [from, to] : {std::pair{"x " + report + ": ", ""},
                                 {std::string("group "), ""},
                                 {std::string(" is garbled and was skipped."), " garbled."},
                                 {std::string("; it was skipped."), "."}}) {
    const std::size_t at = note.find(from);
    if (at != note.npos) note.replace(at, from.size(), to);
  }
  return note;
}

struct Row {
  std::string About, Text, Levels, Notes;
  char WindTop = '1';
};

void ExpectLevels(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.About);
    const CodedPart part = ReadPart(ReportOf(row.Text, row.WindTop));
    std::string levels, notes;
    for (const CodedLevel& level : part.Levels) {
      levels += (levels.empty() ? "" : ", ") + Told(level);
      EXPECT_EQ(level.Part, row.Text[3]);
    }
    for (const std::string& note : part.Notes) {
      notes += (notes.empty() ? "" : " ") + Short(note, row.Text.substr(0, 4));
    }
    EXPECT_EQ(levels, row.Levels);
    EXPECT_EQ(notes, row.Notes);
  }
}

TEST(CodedLevels, PartAFromTheGroundUp) {
  ExpectLevels({
      {"1100 hPa at most", "TTAA 99100 15456 18510 92780 10850 19020",
       "S1100 15.4 9.4 185/10, M925=780 10.8 5.8 190/20", ""},
      {"1101 hPa", "TTAA 99101 15456 18510 92780 10850 19020", "M925=780 10.8 5.8 190/20",
       "99101 garbled."},
      {"half the air", "TTAA 99500 55956 18510 40725 60967 22550",
       "S500 -55.9 -61.9 185/10, M400=725 -60.9 -77.9 225/50", ""},
      {"a surface without its mark", "TTAA 00850 15456 18510 70042 03158 21530",
       "S850 15.4 9.4 185/10, M700=42 -3.1 -11.1 215/30", "00850 was taken as the surface."},
      {"a low far below the sea is none", "TTAA 00849 15456 18510 70042 03158 21530",
       "M1000=849 15.4 9.4 185/10, M700=42 -3.1 -11.1 215/30", ""},
      {"a surface that is not known", "TTAA 99/// 15456 18510 92780 10850 19020",
       "M925=780 10.8 5.8 190/20", ""},
      {"a section in the place of a wind", "TTAA 99985 15456 18510 92780 10850 51515 10190",
       "S985 15.4 9.4 185/10, M925=780 10.8 5.8", ""},
      {"all levels up to 100 hPa",
       "TTAA 70042 03158 21530 50563 18167 22040 40725 30967 22550 30923 46159 23060 25043 52363 "
       "23570 20186 54361 24080 15368 58761 24560 10621 60763 25040",
       "M700=42 -3.1 -11.1 215/30, M500=563 -18.1 -35.1 220/40, M400=725 -30.9 -47.9 225/50, "
       "M300=923 -46.1 -55.1 230/60, M250=43 -52.3 -65.3 235/70, M200=186 -54.3 -65.3 240/80, "
       "M150=368 -58.7 -69.7 245/60, M100=621 -60.7 -73.7 250/40",
       ""},
  });
}

// Behind the mark 31313 stands the time of the release; as a temperature it is -31.3 C.
TEST(CodedLevels, AMarkIsKnownByItsTime) {
  const std::string text =
      "TTAA 70042 03158 21530 50563 18167 22040 40725 30967 22550 30923 31313 09608 ";
  const std::string levels =
      "M700=42 -3.1 -11.1 215/30, M500=563 -18.1 -35.1 220/40, M400=725 -30.9 -47.9 225/50";
  const std::string isLevel = levels + ", M300=923 -31.3 -32.6 95/108";
  ExpectLevels({
      // A height with neither temperature nor wind is no level.
      {"23:59", text + "82359", levels + "!", "30923 garbled."},
      {"11:60", text + "81160", isLevel + "!", "81160 garbled."},
      {"24:00", text + "82400", isLevel + "!", "82400 garbled."},
      {"no time", text, isLevel, ""},
      // -51.5 C with a depression of 1.5.
      {"nor is this one of remarks",
       "TTAA 70042 03158 21530 50563 18167 22040 40725 30967 22550 30923 51515 23060 25043 52363 "
       "23570",
       levels + ", M300=923 -51.5 -53 230/60, M250=43 -52.3 -65.3 235/70", ""},
  });
}

TEST(CodedLevels, WindsEndWhereTheHeaderSays) {
  const char* const text = "TTAA 99985 15456 18510 92780 10850 19020 85479 05658 20025 70042 03158";
  const char* const low =
      "S985 15.4 9.4 185/10, M925=780 10.8 5.8 190/20, M850=479 5.6 -2.4 200/25";
  ExpectLevels({
      {"850 hPa", std::string(text) + " 50563 18167",
       std::string(low) + ", M700=42 -3.1 -11.1, M500=563 -18.1 -35.1", "", '8'},
      {"no winds at all", "TTAA 99985 15456 92780 10850 85479 05658",
       "S985 15.4 9.4, M925=780 10.8 5.8, M850=479 5.6 -2.4", "", '/'},
  });
}

TEST(CodedLevels, PartCTakesTenths) {
  ExpectLevels({
      {"all its levels",
       "TTCC 70860 60956 24030 50070 58956 24035 30392 55556 25035 20649 52756 25540 10092 46556 "
       "26045",
       "M70=860 -60.9 -66.9 240/30, M50=70 -58.9 -64.9 240/35, M30=392 -55.5 -61.5 250/35, M20=649 "
       "-52.7 -58.7 255/40, M10=92 -46.5 -52.5 260/45",
       ""},
      {"and those above 10 hPa",
       "TTCC 10092 46556 26045 07332 44556 26545 05563 42556 27045 03931 40556 27545 02215 35556 "
       "28045 01723 30556 28545",
       "M10=92 -46.5 -52.5 260/45, M7=332 -44.5 -50.5 265/45, M5=563 -42.5 -48.5 270/45, M3=931 "
       "-40.5 -46.5 275/45, M2=215 -35.5 -41.5 280/45, M1=723 -30.5 -36.5 285/45",
       ""},
      {"a tropopause and a maximum", "TTCC 70860 60956 24030 88655 61956 24540 77203 25085 40812",
       "M70=860 -60.9 -66.9 240/30, T65.5 -61.9 -67.9 245/40, W20.3 250/85", ""},
      {"99 is no surface there", "TTCC 99985 15456 18510 70860 60956 24030",
       "M70=860 -60.9 -66.9 240/30", "99985 15456 18510 garbled."},
  });
}

TEST(CodedLevels, TropopausesAndMaxima) {
  const char* const base = "TTAA 99985 15456 18510 92780 10850 19020 ";
  const std::string levels = "S985 15.4 9.4 185/10, M925=780 10.8 5.8 190/20";
  const struct {
    const char *Text, *Levels, *Notes;
  } cases[] = {
      {"88600 20161 18510", ", T600 -20.1 -31.1 185/10", ""},
      {"88601 20161 18510", "", "88601 garbled."},
      {"88100 60961 18510", ", T100 -60.9 -71.9 185/10", ""},
      {"88099 60961 18510", "", "88099 garbled."},
      {"77205 24090 40812", ", W205 240/90", ""},
      {"77205 24090 77150 25080", ", W205 240/90, W150 250/80", ""},
      {"77000 24090", "", "77000 garbled."},
      {"77205 24090 50812", ", W205 240/90", "50812 garbled."},
      {"88999 77999 NO MORE", "", "says \"NO MORE\"."},
  };
  for (const auto& c : cases) {
    ExpectLevels({{c.Text, base + std::string(c.Text), levels + c.Levels, c.Notes}});
  }
}

TEST(CodedLevels, DamageInPartA) {
  const char* const head = "TTAA 99985 15456 18510 ";
  const char* const tail = " 85479 05658 20025";
  const struct {
    const char *About, *Between, *Levels, *Notes;
  } cases[] = {
      {"or was it the temperature", "92780 10056", "M925=780 10 4!", ""},
      // 80 knots at 1000 hPa, 0.35 more for each hPa above: 106.
      {"106 knots near the ground", "92780 19106", "M925=780 -19.1 -19.7!", ""},
      {"107 are no wind", "92780 19107", "M925=780 -19.1 -19.8", ""},
      {"another group too many", "92780 10850 49999 19020", "M925=780 10.8 5.8 190/20!",
       "49999 garbled."},
      {"a temperature that nothing has", "92780 58850 19020", "M925=780 190/20", "58850 garbled."},
      {"a dew point lacks a figure", "92780 1085/ 19020", "M925=780 10.8 - 190/20", "5/ garbled."},
  };
  for (const auto& c : cases) {
    const std::string text = head + std::string(c.Between) + tail;
    const std::string levels = "S985 15.4 9.4 185/10, " + std::string(c.Levels) +
                               (*c.Levels == '\0' ? "" : ", ") + "M850=479 5.6 -2.4 200/25";
    ExpectLevels({{c.About, text, levels, c.Notes}});
  }
}

TEST(CodedLevels, PartsBAndD) {
  ExpectLevels({
      {"temperatures, then winds",
       "TTBB 00985 15456 11925 10650 22850 05658 21212 00985 18510 11850 20025",
       "S985 15.4 9.4, G925 10.6 5.6, G850 5.6 -2.4, S985 185/10, G850 200/25", ""},
      {"above 1000 hPa", "TTBB 00099 15456 11000 14456 22900 13456",
       "S1099 15.4 9.4, G1000 14.4 8.4, G900 13.4 7.4", ""},
      {"100 hPa", "TTBB 00985 15456 11200 55956 22100 60956",
       "S985 15.4 9.4, G200 -55.9 -61.9, G100 -60.9 -66.9", ""},
      {"nine levels, then one again",
       "TTBB 00985 15456 11950 14456 22940 13456 33930 12456 44920 11456 55910 10456 66900 09456 "
       "77890 08456 88880 07456 99870 06456 11860 05456",
       "S985 15.4 9.4, G950 14.4 8.4, G940 13.4 7.4, G930 12.4 6.4, G920 11.4 5.4, G910 10.4 4.4, "
       "G900 9.4 3.4, G890 8.4 2.4, G880 7.4 1.4, G870 6.4 0.4, G860 5.4 -0.6",
       ""},
      {"a level is lost", "TTBB 00985 15456 11850 05658 33700 03158",
       "S985 15.4 9.4, G850 5.6 -2.4, G700 -3.1 -11.1^", ""},
      // -22.7 C could be the next level's pressure, and neither is taken.
      {"its temperature is", "TTBB 00985 15456 11850 22700 03158", "S985 15.4 9.4",
       "03158 garbled. 11850 22700 garbled."},
      {"a pressure that is repeated", "TTBB 00985 15456 11850 05658 22850 05658 33700 03158",
       "S985 15.4 9.4, G850 5.6 -2.4, G700 -3.1 -11.1", ""},
      {"with another temperature", "TTBB 00985 15456 11850 05658 22850 06658 33700 03158",
       "S985 15.4 9.4, G850 5.6 -2.4, G700 -3.1 -11.1", "a level at 850 hPa is repeated."},
      {"one of two is out of order",
       "TTBB 00985 15456 11845 05658 22850 05658 33700 03158 44500 18167",
       "S985 15.4 9.4, G700 -3.1 -11.1^, G500 -18.1 -35.1",
       "the level at 845 hPa is out of order. the level at 850 hPa is out of order."},
      {"winds without their mark", "TTBB 00985 15456 11850 05658 00985 18510 11850 20025",
       "S985 15.4 9.4, G850 5.6 -2.4, S985 185/10^, G850 200/25", ""},
      {"tenths in part D", "TTDD 11995 60956 22500 58956 33075 40956 21212 11850 25040",
       "G99.5 -60.9 -66.9, G50 -58.9 -64.9, G7.5 -40.9 -46.9, G85 250/40", ""},
      {"0 hPa", "TTDD 11995 60956 22000 58956 33500 58956", "G50 -58.9 -64.9^",
       "22000 garbled. 58956 garbled. 11995 60956 garbled."},
  });
}

TEST(CodedLevels, WindsAlone) {
  ExpectLevels({
      {"from 1000 hPa", "PPAA 44200 34004 32012", "P1000 340/4, P925 320/12", ""},
      {"part C", "PPCC 55370 24030 24035 25035 55120 26040",
       "P70 240/30, P50 240/35, P30 250/35, P20 260/40", ""},
      {"no such level", "PPAA 55184 34004", "", "55184 34004 garbled."},
      {"a maximum at a pressure", "PPAA 77205 24090 40812 66150 25080", "W205 240/90, W150 250/80",
       ""},
      {"in part C tenths", "PPCC 77205 24090", "W20.5 240/90", ""},
      {"a maximum at a height", "PPAA 71205 24101 41814", "W12050m 240/101", ""},
      {"at 45 km", "PPCC 74500 24101", "W45000m 240/101", ""},
      {"higher than balloons rise", "PPCC 74501 24101", "", "74501 24101 garbled."},
      {"no maximum", "PPAA 55185 34004 77999", "P850 340/4", ""},
      {"0 hPa", "PPAA 77000 24090", "", "77000 24090 garbled."},
      {"thousands of feet", "PPBB 90/12 20006 19522 19533 91024 20040 20545 21050",
       "P304.8m 195/22, P609.6m 195/33, P3048m 200/40, P3657.6m 205/45, P4267.2m 210/50, ground "
       "200/6",
       ""},
      {"tens that are not known", "PPBB 9/123 20006 19522 91024 20040 20545 21050",
       "P3048m 200/40, P3657.6m 205/45, P4267.2m 210/50", "9/123 20006 19522 garbled."},
      {"what stands ahead of them", "PPBB 12345 90012 20006 19522 19533",
       "P304.8m 195/22, P609.6m 195/33, ground 200/6", "12345 garbled."},
      {"500 m each", "PPBB 8123/ 20006 19522", "P6000m 200/6, P6500m 195/22", ""},
      {"higher than balloons rise, in feet", "PPDD 148// 20006 147// 20006", "P44805.6m 200/6",
       "a wind at 45110.4 m is higher than balloons rise."},
      {"a heading out of order",
       "PPBB 9012/ 20010 20511 9546/ 21012 21513 9067/ 22014 22515 9112/ 23016 23517",
       "P304.8m 200/10, P609.6m 205/11, P1828.8m 220/14^, P2133.6m 225/15, P3352.8m 230/16, "
       "P3657.6m 235/17",
       "the level at 16459.2 m is out of order. the level at 17068.8 m is out of order."},
      {"a wind is missing: which one, nobody knows",
       "PPBB 9012/ 20010 20511 90346 21012 21513 9112/ 23016 23517",
       "P304.8m 200/10, P609.6m 205/11, P3352.8m 230/16, P3657.6m 235/17",
       "behind 90346 stand 2 groups instead of 3; they were skipped."},
      {"significant winds by pressure", "PPBB 21212 00013 18010 11850 20020 22500 21030",
       "G1013 180/10, G850 200/20, G500 210/30", ""},
      {"by tens of metres", "PPBB 21212 10045 18010 20150 19020", "P450m 180/10, P1500m 190/20",
       ""},
      {"0 hPa is none", "PPDD 21212 11000 18010 22500 20020", "G50 200/20", "11000 garbled."},
      {"a half pair", "PPBB 21212 11850 20020 22500", "G850 200/20", ""},
  });
}

}  // namespace
}  // namespace vexa::ingest
