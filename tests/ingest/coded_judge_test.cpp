// The limits of what may stand side by side in a coded message, each with a case on either side.
// Thicknesses and lines were worked out by hand: 29.27 m/K times the mean temperature times ln p,
// straight in ln p.
#include "ingest/coded_judge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "core/numbers.h"
#include "ingest/source_header.h"

namespace vexa::ingest {
namespace {

// "B850:10" part B, 10 °C; "A850:10;5/1457" with dew point and height; "S" the surface in part A,
// "T" and "t" tropopauses of parts A and C; "w" a wind of part D; "?" doubtful, "^" behind a gap.
CodedLevel LevelOf(std::string_view text) {
  const char mark = text.front();
  CodedLevel level{.Kind = LevelKind::Significant, .Part = mark};
  if (mark == 'S') level.Kind = LevelKind::Surface;
  if (mark == 'T' || mark == 't') level.Kind = LevelKind::Tropopause;
  if (mark == 'A' || mark == 'C') level.Kind = LevelKind::Mandatory;
  if (mark == 'w') level.Values.Spd = 10;
  if (mark == 'S' || mark == 'T') level.Part = 'A';
  if (mark == 't') level.Part = 'C';
  if (mark == 'w') level.Part = 'D';
  const auto cut = [&text](char sign) {
    const std::size_t at = std::min(text.find(sign), text.size());
    const std::optional<double> value = ParseNumber(text.substr(std::min(at + 1, text.size())));
    text = text.substr(0, at);
    return value;
  };
  for (; text.ends_with('?') || text.ends_with('^'); text.remove_suffix(1)) {
    (text.back() == '?' ? level.IsDoubtful : level.IsBehindGap) = true;
  }
  level.Values.Height = cut('/');
  level.Values.Dewpt = cut(';');
  level.Values.Temp = cut(':');
  level.Values.Press = ParseNumber(text.substr(1));
  level.HeightGroup = std::string(text);
  return level;
}

std::vector<CodedLevel> LevelsOf(std::string_view text) {
  std::vector<CodedLevel> levels;
  for (const std::string_view word : Tokens(text)) levels.push_back(LevelOf(word));
  return levels;
}

std::string With(std::string levels, std::string_view value) {
  for (std::size_t at = levels.find('@'); at != levels.npos; at = levels.find('@')) {
    levels.replace(at, 1, value);
  }
  return levels;
}

std::string VerdictOn(const std::string& levels) {
  std::vector<CodedLevel> judged = LevelsOf(levels);
  std::vector<std::string> notes;
  LeaveOutMisfits(judged, notes);
  std::string all;
  for (const std::string& note : notes) all += note + '\n';
  return all;
}

struct Limit {
  const char *About, *Levels;  // with @ for what is tried
  const char *Passes, *Fails;
  const char* Says;  // of what fails
};

void ExpectLimits(const std::vector<Limit>& limits) {
  for (const Limit& limit : limits) {
    SCOPED_TRACE(limit.About);
    const std::string within = VerdictOn(With(limit.Levels, limit.Passes));
    EXPECT_EQ(within.find(limit.Says), within.npos) << limit.Passes << ": " << within;
    const std::string beyond = VerdictOn(With(limit.Levels, limit.Fails));
    EXPECT_NE(beyond.find(limit.Says), beyond.npos) << limit.Fails << ": " << beyond;
  }
}

TEST(CodedJudge, NeighboursOneWayUp) {
  const char* const misfit = "does not fit the levels";
  ExpectLimits({
      {"1.5 C at one pressure", "B1000:20 B850:10 B700:0 A700:@ B500:-20", "1.47", "1.53",
       "At 700 hPa"},
      // 10 hPa are 115 m: 1.1 C of the dry adiabat and 1.7 more.
      {"beyond the dry adiabat", "B1000:20 B850:10 B700:0 B690:@ B500:-20", "-2.79", "-2.85",
       misfit},
      {"beyond the dry adiabat, through 3 km", "B1000:20 B850:10 B700:10 B500:@", "-17.4", "-17.9",
       misfit},
      // 85 m: 0.8 C and 4 more.
      {"beyond it at the ground", "B1000:20 B990:@ B900:10 B700:0", "15.2", "15.1", misfit},
      {"the ground's layer has 150 hPa", "B1000:20 B@:10 B841:6 B700:0", "851", "850", misfit},
      // 83 m: 15 C and 1.2 more.
      {"an inversion", "B1000:0 B990:@ B900:10 B700:0", "16.1", "16.4", misfit},
      {"a deep inversion", "B1000:-20 B800:@ B700:10", "21.5", "22.3", misfit},
      // 174 m: 11 C and 0.7 more.
      {"an inversion aloft", "B1000:20 B400:-40 B390:@ B300:-40", "-28.4", "-28", misfit},
      {"a deep one aloft", "B1000:0 B600:-30 B400:-40 B200:@ B100:-10", "-9.2", "-8.5", misfit},
      {"aloft begins at 500 hPa", "B1000:0 B600:-20 B@:-30 B490:-16 B300:-40", "501", "500",
       misfit},
      // 1564 m: 6 C and 7.8 more.
      {"a fall in the stratosphere", "D90:-50 D70:@ D50:-60", "-63.8", "-64.2", misfit},
      {"which begins at 95 hPa", "D@:-50 D66.7:-68 D50:-60", "95", "94.9", misfit},
      {"beneath the surface", "S900:10 A@:10 B850:5 B700:0", "900", "901", misfit},
  });
}

TEST(CodedJudge, MandatoryLevelsLieOnLines) {
  const char* const misfit = "does not fit the levels";
  ExpectLimits({
      // 6.86 C on the line.
      {"3 C", "B1000:20 A800:@ B700:-1", "9.83", "9.89", misfit},
      {"from 300 hPa up 5 C", "B400:-30 A@:-26 B250:-30 B100:-30", "299", "300", misfit},
      {"which are 5", "B400:-30 A299:@ B250:-30 B100:-30", "-25.05", "-24.9", misfit},
      {"from 100 hPa up 6 C", "B120:-60 C@:-54.5 B80:-60", "100", "101", misfit},
      {"which are 6", "B105:-60 C90:@ B70:-60", "-54.05", "-53.9", misfit},
      // ln 2 is 0.69: 3 C and 1.93 more; 4.56 C on the line.
      {"of a long line more", "B1000:20 A700:@ B500:-10", "9.44", "9.54", misfit},
      {"2 C for a level that is doubtful", "B1000:20 A800:@? B700:-1", "8.83", "8.89", misfit},
      {"and is doubted from 2.3 C on", "B1000:20 A800:@ B700:-1", "9.13", "9.19",
       "lies 2.3 C off the line from 1000 hPa to 700 hPa"},
      {"not of a long line", "B1000:20 A800:17.2 B@:8", "605", "608", "off the line"},
      {"not across a gap", "B1000:20 A800:15 B700:@", "8^", "8", "off the line"},
  });
  EXPECT_NE(VerdictOn("B1000:20 A800:7? A500:-20?").find("At 500 hPa"), std::string::npos);
}

TEST(CodedJudge, WhatStandsOutIsDoubted) {
  const char* const out = "stands out";
  ExpectLimits({
      {"2 C in the troposphere", "B800:0 B750:0 B700:@ B650:0 B600:0", "1.95", "2.05", out},
      {"as far as neighbours bear it out", "B800:0 B750:0 B700:2.5 B650:@ B600:0", "0.6", "0.1",
       "At 700 hPa 2.5 C of part B stands out"},
      {"from 300 hPa up 2.4 C", "B400:-40 B350:-40 B@:-37.8 B260:-40 B240:-40", "299", "300", out},
      {"which are 2.4", "B400:-40 B350:-40 B299:@ B260:-40 B240:-40", "-37.65", "-37.55", out},
      {"from 100 hPa up waves do this", "B150:-60 B120:-60 B@:-57 B80:-60 B70:-60", "99", "100",
       out},
      {"by 3.65 C", "D95:-60 D80:-60 D70:@ D60:-60 D50:-60", "-56.4", "-56.3", out},
      {"with one level on a side 2.5 C", "B1000:20 B950:@ B900:20 B700:10 B500:-5", "22.45",
       "22.55", out},
      {"at the other end", "B1000:20 B700:-5 B500:-5 B450:@ B400:-5", "-2.55", "-2.45", out},
      {"by the smaller step", "B1000:20 B950:23 B900:@ B700:10 B500:-5", "20.55", "20.45", out},
      {"a step up alone is none", "B1000:20 B950:23 B900:@ B700:10 B500:-5", "24", "20", out},
      {"2.5 C beyond all lines", "B500:-20 B400:-30 A300:-30 A250:@ A200:-30", "-27.55", "-27.45",
       out},
      {"there from 500 hPa up", "B1000:0 B900:0 A600:0 A@:2.8 A400:0", "500", "499", out},
      // ln(450/273) is 0.4998.
      {"or on a line longer than 0.5", "B450:-30 A400:-30 A350:-27.3 A300:-30 B@:-30", "274", "272",
       out},
      {"another part has it, too", "B800:0 B750:0 B700:3 @ B650:0 B600:0", "A700:3", "A300:-20",
       out},
      {"not behind a gap", "B800:0 B750:0 B700:@ B650:0 B600:0", "3^", "3", out},
      {"not before one", "B800:0 B750:0 B700:3 B650:@ B600:0", "0^", "0", out},
  });
}

TEST(CodedJudge, TropopausesAndTops) {
  const char* const lone = "is no level of part B";
  const char* const high = "which part C does not reach";
  ExpectLimits({
      // On the line -55.31 C.
      {"a tropopause bends the line", "B250:-50 T210:@ B180:-60", "-56.45", "-56.55", lone},
      {"or is a level of it", "B250:-50 B210:-57 T@:-57 B180:-60", "210", "220",
       "At 220 hPa the tropopause of part A is no level of part B; one of them may be garbled. "
       "That has -57 C at 210 hPa."},
      {"the last but one mandatory level", "C50:-60 C30:-60 D@:-60", "20", "19.9",
       "above 20 hPa, which part C does not reach"},
      {"a tropopause, too", "C50:-60 C30:-60 t@:-60", "20", "19.9", high},
      {"10 hPa was not reached", "C20:-60 D@:-60", "10", "9.9",
       "above 10 hPa, which part C does not reach"},
      {"it was reached", "C20:-60 C10:-60 D@:-60", "3", "2.9",
       "above 3 hPa, which part C does not reach"},
      {"by a height alone", "C20:-60 C10/31000 D@:-60", "3", "2.9", "above 3 hPa"},
      {"part A is not part C", "C50:-60 @10:-60 D9:-60", "C", "A", "above 30 hPa"},
  });
}

// Levels a tenth of their pressure apart: what the middle one is off bends it by all and its
// neighbours by half of it. With the next one off by x these say 1.5 E - x, over 1.5.
TEST(CodedJudge, WhatAllTogetherPutsElsewhereIsDoubted) {
  ExpectLimits({
      {"2 C", "B800:0 B720:0 B648:3 B583.2:@ B524.88:0", "1.55", "1.45",
       "At 648 hPa 3 C of part B is some 2.0 C too warm"},
      {"too cold", "B800:0 B720:0 B648:-3 B583.2:@ B524.88:0", "-1.55", "-1.45",
       "At 648 hPa -3 C of part B is some 2.0 C too cold"},
      // 1.6 times 1.8 C over the root of 1.5: 2.35 C.
      {"from 300 hPa up more", "B280:-50 B252:-50 B226.8:-46 B204.12:@ B183.708:-50", "-47.48",
       "-47.58", "too warm"},
      // 1.6 times 2.8 C: 3.66 C.
      {"from 100 hPa up still more", "D90:-60 D81:-60 D72.9:-54 D65.61:@ D59.049:-60", "-56.44",
       "-56.54", "too warm"},
      // 1559.2 m by 2.4 C at 771.36 hPa, of which 2.84 m are those of one degree. With 1.94 m of
      // standard error the heights have 78 % of the say, the bend 22 %.
      {"heights have a say", "A850:0/1500 B771.36:2.4 A700:0/@", "3054.1", "3053.6",
       "At 771.36 hPa 2.4 C of part B is some 2.1 C too warm"},
      // A bend of 0.5 C asks for 1 C at 850 hPa, the heights for 4.8.
      {"but not alone", "A850:0/1500 B771.36:@ A700:0/3062", "0.4", "0.5",
       "At 850 hPa 0 C of part A is some 4.8 C too cold"},
      {"another part has it, too", "B800:0 B720:0 B648:4 @ B583.2:2 B524.88:0", "A648:4",
       "A300:-20", "At 648 hPa 4 C"},
  });
}

TEST(CodedJudge, FreeAirDoesNotCoolFasterThanRisingAir) {
  ExpectLimits({
      // 10 hPa are 115 m: 1.1 C of the dry adiabat and 0.7 more.
      {"0.7 C", "B1000:20 B850:10 B700:0 B690:@ B500:-20", "-1.79", "-1.85",
       "From 700 hPa to 690 hPa the temperature falls by 1.9 C in 115 m"},
      // 89.5 m: 0.87 C and 1.5 more.
      {"1.5 C near the ground", "B1000:20 B950:16 B940:@ B800:5 B700:0", "13.66", "13.6",
       "From 950 hPa to 940 hPa"},
      {"which is 150 hPa", "B@:10 B850:6 B840:4 B700:-5 B600:-10", "999", "1000",
       "From 850 hPa to 840 hPa"},
      {"the lowest layer may", "@ B990:20 B980:17 B900:12 B700:0", "", "B1000:20",
       "From 990 hPa to 980 hPa"},
      // 724 m: 5.8 C and 0.1 more.
      {"the stratosphere less", "B300:-45 D98:-60 D90:-60 D80:@ D70:-64", "-65.87", "-65.93",
       "From 90 hPa to 80 hPa"},
  });
}

TEST(CodedJudge, HowAnAscentEnds) {
  const char* const last = "is the last level and";
  ExpectLimits({
      // 3 C and 10 * ln(30/20) = 4.05 C.
      {"far from the level beneath", "C50:-60 C30:-60 C20:@", "-53", "-52.9",
       "At 20 hPa -52.9 C of part C is the last level and 7.1 C from the one beneath"},
      {"from 300 hPa up", "B400:-60 B@:-45", "300", "299", last},
      {"not of part A alone", "@200:-60 @100:-45", "A", "C", last},
      // Winds beside temperatures.
      {"one figure is garbled", "D30:-50 D10.7:-50 w30 w@", "10.7", "10.1",
       "The temperatures of part D end at 10.7 hPa, its winds at 10.1 hPa"},
      {"two are another end", "D30:-50 D10.7:-50 w30 w@", "12.1", "20.7", "of part D end"},
  });
}

// 0 C from 850 to 700 hPa: 29.27 m/K * 273.16 K * ln(850/700) = 1552.4 m.
TEST(CodedJudge, HeightsAreTheWeightOfTheAir) {
  const char* const misfit = "The height of group";
  const char* const doubt = "the heights do not fit the temperatures";
  ExpectLimits({
      // 18 m, 22 * 0.194 and 100 * (0.194 - 0.1).
      {"across a gap", "A850:0/1500 A700:0/@", "3083.8", "3084.5", misfit},
      {"downward", "A850:0/1500 A700:0/@", "3021", "3020.4", misfit},
      // Without a gap 22.3 m.
      {"without a gap", "A850:0/1500 B800:0 B750:0 A700:0/@", "3074.4", "3075", misfit},
      // 7995.5 m * ln(500/400) = 1784.1 m; 25 m and 22 * 0.223.
      {"in decametres", "A500:0/5500 B460:0 B430:0 A400:0/@", "7313.7", "7314.3", misfit},
      // 5 m and 20 * 0.194 = 8.9 m.
      {"doubted", "A850:0/1500 B800:0 B750:0 A700:0/@", "3061", "3061.6", doubt},
      {"across 0.5 they are not", "A850:0/1500 A@:0/5540", "515", "516", doubt},
      // 12 m and 12 * 0.223 = 14.7 m.
      {"in decametres they are", "A500:0/5500 B460:0 B430:0 A400:0/@", "7298.5", "7299.1", doubt},
      // 20 to 24 g/kg are 4 C more of virtual temperature, 20 m of 1462 m.
      {"moist air is lighter", "A1000:30@/100 B960:30@ B920:30@ A850:30@/1562", ";25", "", doubt},
      // 1394.6 m of dry air, 1408 m of moist.
      {"dew points above the temperature are none",
       "A1000:20@/100 B960:20@ B920:20@ A850:20@/1494.6", ";20.1", ";20", doubt},
      {"beyond the temperatures nothing is known", "B@:0 B800:0 A850/1500 A700/3150 B690:0", "849",
       "850", misfit},
      {"nor above", "B900:0 B800:0 A850:0/1500 A700/3150 B@:0", "701", "700", misfit},
  });
  // 1.5 C over the share of one of them are 2.1 m at 775 hPa, 7.1 m at 850.
  EXPECT_EQ(
      VerdictOn("A850:0/1500 B780:0 B770:0 A700:0/3064"),
      "From 850 hPa to 700 hPa the heights do not fit the temperatures, by 12 m; one of these "
      "may be garbled, or a temperature or pressure at 850 hPa, 780 hPa, 770 hPa, 700 hPa.\n");
}

// Two layers that each tolerate an error show it together.
TEST(CodedJudge, AHeightBetweenTwoLayers) {
  const auto heights = [](const char* middle) {
    return VerdictOn("A850:0/1500 B800:0 B750:0 A700:0/" + std::string(middle) +
                     " B650:0 B600:0 B550:0 A500:0/5743");
  };
  EXPECT_EQ(heights("3052").find("left out"), std::string::npos) << heights("3052");
  EXPECT_NE(heights("3072").find("The height of group A700 does"), std::string::npos);
  EXPECT_EQ(heights("3122"),
            "The height of group A700 does not fit the air around it; it was left out.\n");
}

TEST(CodedJudge, TheValueGoesWithoutWhichTheRestAgrees) {
  const struct {
    const char *About, *Levels, *Says;
  } cases[] = {
      {"one of part B", "B1000:20 A925:15 B900:25 A850:10 A700:0 B690:-1 B500:-15 A500:-15",
       "At 900 hPa 25 C of part B does not fit the levels around it; it was left out.\n"},
      {"two that nobody can tell apart", "B700:0 A700:3", "At 700 hPa 0 C"},
      {"the other of them", "B700:0 A700:3", "At 700 hPa 3 C"},
      {"a temperature that heights speak against",
       "A850:0/1500 A700:20/3052 A500:-10/5669 A400:-20/7347",
       "At 700 hPa 20 C of part A does not fit"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.About);
    const std::string verdict = VerdictOn(c.Levels);
    EXPECT_NE(verdict.find(c.Says), verdict.npos) << verdict;
  }
  std::vector<CodedLevel> levels = LevelsOf("S1000:20 A850:10/1500 A700:0/3300 A500:-20/5800");
  std::vector<std::string> notes;
  LeaveOutMisfits(levels, notes);
  EXPECT_EQ(levels[1].Values.Temp, 10);
}

TEST(CodedJudge, TheSameAirHasTheSameSurfaceAndLines) {
  const char* const lines = "B1000:20 B850:10 B700:0 B400:-30 B200:-50";
  const struct {
    const char *About, *Mandatory, *Significant;
    bool IsSame;
  } cases[] = {
      {"on its lines", "S1000:20 A850:10 A700:0", lines, true},
      {"one level tells too little", "S1000:20 A850:10", lines, false},
      {"a surface of its own", "S1000:20.1 A850:10 A700:0", lines, false},
      {"at another pressure", "S1001:20 A850:10 A700:0", lines, false},
      {"none at all", "A850:10 A700:0", lines, false},
      {"which part C does not have", "C70:-60 C50:-60", "D80:-60 D40:-60", true},
      {"3 C off and 1.5 in the mean", "S1000:20 A850:13 A700:0", lines, true},
      {"3.1 C off", "S1000:20 A850:13.1 A700:0 A400:-30", lines, false},
      {"1.55 in the mean", "S1000:20 A850:11.6 A700:1.5", lines, false},
      {"aloft 5 C off", "S1000:20 A850:10 A700:0 A400:-30 A250:-39.21", lines, true},
      {"aloft 5.1 C off", "S1000:20 A850:10 A700:0 A400:-30 A250:-38.35", lines, false},
      {"aloft is above 300 hPa", "S1000:20 A850:10 A700:0 A400:-30 A300:-35", lines, false},
      {"what lies beyond the lines is not compared", "S1000:20 A850:10 A700:0 A100:-20", lines,
       true},
      {"in any order", "S1000:20 A850:10 A700:0", "B200:-50 B700:0 B850:10 B1000:20", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TellOfSameAir(LevelsOf(c.Mandatory), LevelsOf(c.Significant)), c.IsSame) << c.About;
  }
}

}  // namespace
}  // namespace vexa::ingest
