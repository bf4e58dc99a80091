// How parts of coded messages become ascents: which belong together, what day they are of, which of
// two values counts. Heights follow from the hypsometric equation, 29.27 m/K times the mean
// temperature times ln p.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "core/station_list.h"
#include "ingest/coded_heights.h"
#include "ingest/coded_winds.h"
#include "ingest/decoded.h"

namespace vexa::ingest {
namespace {

Decoded DecodeMessage(const std::string& text, const std::string& name = "m_20240305") {
  return DecodeText(name, text);
}

TEST(CodedAscents, WindsThatStandOutAreTold) {
  const struct {
    const char* About;
    double Height, Spd, Above;  // of the middle one; of the highest
    bool IsTold;
  } cases[] = {{"20 knots off the line", 2000, 39.9, 20, false},
               {"more", 2000, 40.1, 20, true},
               {"less", 2000, 0.1, 20, false},
               {"near 20 km", 19990, 43, 20, true},
               {"from there up", 20000, 43, 20, false},
               {"26 knots", 20000, 45.9, 20, false},
               {"more than these", 20000, 46.1, 20, true},
               {"like the one above", 2000, 80, 80, false},
               {"near the one above", 2000, 99.9, 80, false},
               {"not near it", 2000, 100.1, 80, true}};
  for (const auto& c : cases) {
    SoundingRecord record;
    record.AddWind(1000, 270, 20);
    record.AddWind(c.Height, 270, c.Spd);
    record.AddWind(c.Height + 1000, 270, c.Above);
    std::vector<std::string> notes;
    EXPECT_EQ(TellStrayWinds(record, notes), c.IsTold ? 1 : 0) << c.About;
    EXPECT_EQ(notes.size(), c.IsTold ? 1U : 0U) << c.About;
  }
  SoundingRecord record;
  for (const double height : {1000.0, 2000.0, 3000.0}) {
    record.AddWind(height, height == 2000 ? 90 : 270, 30);
  }
  std::vector<std::string> notes;
  TellStrayWinds(record, notes);
  EXPECT_EQ(notes, std::vector<std::string>{"The wind 090/30 kt at 2000 m stands out from those "
                                            "around it; it may be garbled."});
}

TEST(CodedAscents, DaysAndHours) {
  const struct {
    const char *Name, *DayAndHour;
    ObservationTime Time;
  } cases[] = {{"20240305", "5512", {2024, 3, 5, 12, 0}},
               {"20240305", "5812", {2024, 3, 8, 12, 0}},
               {"20240305", "5912", {2024, 2, 9, 12, 0}},
               {"20240305", "5212", {2024, 3, 2, 12, 0}},
               {"20240305", "5112", {2024, 3, 1, 12, 0}},
               {"20240302", "7912", {2024, 2, 29, 12, 0}},
               {"20240302", "8112", {2024, 1, 31, 12, 0}},
               {"20231230", "5112", {2024, 1, 1, 12, 0}},
               {"20240101", "8112", {2023, 12, 31, 12, 0}},
               {"20240305", "5523", {2024, 3, 6, 0, 0}},
               {"20240305", "5505", {2024, 3, 5, 6, 0}},
               {"20240305", "5511", {2024, 3, 5, 12, 0}},
               {"20240305", "5510", {2024, 3, 5, 10, 0}},
               {"20240305", "5500", {2024, 3, 5, 0, 0}},
               {"m", "5512", {}}};
  for (const auto& c : cases) {
    const std::string text =
        std::string("TTAA ") + c.DayAndHour + "1 01234 99985 15456 18510 92780 10850 19020=";
    const Decoded decoded = DecodeMessage(text, c.Name);
    EXPECT_EQ(decoded.Record.Time, c.Time) << c.Name << ' ' << c.DayAndHour;
    EXPECT_EQ(decoded.HasNote("no month and year"), !c.Time.Known()) << c.Name;
  }
}

TEST(CodedAscents, PartsWithinThreeHoursBelongTogether) {
  const struct {
    const char *First, *Second;
    std::size_t Soundings;
  } cases[] = {{"55001", "55031", 1}, {"55001", "55041", 2}, {"55031", "55001", 1},
               {"55221", "56011", 1}, {"55221", "56021", 2}, {"78231", "51021", 1},
               {"78231", "51031", 2}, {"77231", "51001", 2}, {"51001", "81231", 1},
               {"55001", "56001", 2}};
  for (const auto& c : cases) {
    const std::string text = std::string("TTAA ") + c.First +
                             " 01234 99985 15456 18510 92780 10850 19020=TTCC " + c.Second +
                             " 01234 70860 60956 24030 50070 58956 24035=";
    EXPECT_EQ(ListSoundings(SourceText("m", text)).size(), c.Soundings)
        << c.First << ' ' << c.Second;
  }
}

TEST(CodedAscents, OfTwoValuesTheFinerCounts) {
  const std::string lower =
      "TTAA 55121 01234 99985 15456 18510 92780 10850 19020 85479 05658 20025=";
  const Decoded decoded = DecodeMessage(
      lower +
      "TTBB 55128 01234 00985 15256 11925 10650 22850 05458 21212 00985 20012 11850 21027=");
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  const SoundingRecord& record = decoded.Record;
  EXPECT_EQ(record.Temp, Levels<double>({15.2, 10.8, 5.6}));  // B at the ground, A above
  EXPECT_EQ(record.WindDir, Levels<double>({185, 190, 200}));
  EXPECT_TRUE(decoded.HasNote("At 985 hPa the parts differ: 15.2 C was taken, 15.4 C of part A"));
  EXPECT_TRUE(decoded.HasNote("At 850 hPa the parts differ: 5.6 C was taken, 5.4 C of part B"));
  EXPECT_TRUE(decoded.HasNote("Parts of the message that are missing: C, D."));
  // What part A lacks, the dew point and the wind, part B has.
  const Decoded filled = DecodeMessage(
      "TTAA 55121 01234 99985 154// ///// 92780 10850 19020=TTBB 55128 01234 00985 15456 11925 "
      "10850 21212 00985 20012=");
  EXPECT_EQ(filled.Record.Dewpt(1), 9.4);
  EXPECT_EQ(filled.Record.WindDir(1), 200);
}

TEST(CodedAscents, PartsThatAreMissing) {
  const struct {
    const char *Text, *Missing;
  } cases[] = {
      {"TTAA 55121 01234 99985 15456 18510 92780 10850 19020=", "missing: B, C, D."},
      {"TTBB 55128 01234 00985 15456 11925 10850=", "missing: A, C, D."},
      {"XXAA 55121 99153 70659 04355 99985 15456 18510 92780 10850 19020=", "missing: B."},
      {"TTAA 55121 01234 99985 15456 18510 92780 10850 19020=PPBB 55120 01234 90012 18010 18512 "
       "19015=",
       "missing: B, C, D."}};
  for (const auto& c : cases) EXPECT_TRUE(DecodeMessage(c.Text).HasNote(c.Missing)) << c.Text;
  EXPECT_FALSE(DecodeMessage("PPBB 55120 01234 9012/ 18512 19015=").HasNote("missing"));
}

TEST(CodedAscents, TheWindAtTheGroundOfAPilot) {
  const std::string winds = "PPBB 55120 01234 90012 18010 18512 19015=";
  const Decoded alone = DecodeMessage(winds);
  EXPECT_EQ(alone.Record.WindHgt, Levels<double>({304.8, 609.6}));
  EXPECT_TRUE(alone.HasNote("The surface wind was left out"));
  const Decoded beside = DecodeMessage(
      winds + "TTAA 55121 01234 99985 15456 ///// 00128 ///// ///// 92780 10850 /////=");
  ASSERT_FALSE(beside.Failed);
  ASSERT_EQ(beside.Record.NumWindLevels(), 3);
  // 780 m - 29.27 m/K * 286.3 K * ln(985/925).
  EXPECT_NEAR(beside.Record.WindHgt(1), 253, 2.5);
  EXPECT_EQ(beside.Record.WindDir(1), 180);
}

// Each of parts A, B and the winds of B tells the pressure at the ground.
TEST(CodedAscents, ThePressureAtTheGroundIsPutToTheVote) {
  const auto decode = [](const char* a, const char* b, const char* winds, int elevM) {
    StationList stations;
    if (elevM > 0) {
      EXPECT_TRUE(stations.Insert({.Number = 1234, .ElevM = elevM, .Lat = 61.5, .Lon = 5.25}));
    }
    return DecodeSource(
        SourceText("m_20240305", std::string("TTAA 55121 01234 99") + a +
                                     " 15456 18510 92780 10850 19020 85479 05658 20025=TTBB 55128 "
                                     "01234 00" +
                                     b + " 15456 11925 10850 22850 05658 21212 00" + winds +
                                     " 18510 11850 20025="),
        0, &stations);
  };
  EXPECT_EQ(decode("985", "985", "985", 252).Record.Press(1), 985);
  const struct {
    const char *A, *B, *Winds;
    int ElevM;
    double Press;
    const char* Says;
  } cases[] = {
      {"985", "975", "985", 0, 985, "985 hPa was taken, 975 hPa was not."},
      {"975", "985", "985", 0, 985, "985 hPa was taken, 975 hPa was not."},
      {"985", "985", "965", 0, 985, "985 hPa was taken, 965 hPa was not."},
      {"985", "965", "945", 252, 985, "985 hPa was taken, 945 hPa, 965 hPa was not."},
      {"965", "945", "985", 252, 985, "985 hPa was taken, 945 hPa, 965 hPa was not."},
      {"985", "975", "965", 0, 925, "is told with different pressures by parts A and B"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.A) + ' ' + c.B + ' ' + c.Winds);
    const Decoded decoded = decode(c.A, c.B, c.Winds, c.ElevM);
    ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
    EXPECT_EQ(decoded.Record.Press(1), c.Press);
    EXPECT_TRUE(decoded.HasNote(c.Says)) << decoded.Notes.front();
  }
}

// 0 C from 1000 to 925 hPa: 623.4 m below 780 m. The tolerance is 65 m and 300 * ln(1000/925).
TEST(CodedAscents, TheStationsElevationFitsOrNot) {
  for (const auto& [elevation, isKept] :
       {std::pair{245.0, true}, {246.0, false}, {69.0, true}, {68.0, false}}) {
    std::vector<CodedLevel> levels(2);
    levels[0].Kind = LevelKind::Surface;
    levels[0].Values = {.Press = 1000, .Temp = 0};
    levels[1].Kind = LevelKind::Mandatory;
    levels[1].Values = {.Press = 925, .Temp = 0};
    levels[1].HeightFigures = 780;
    Ground ground{.Elevation = elevation};
    std::vector<std::string> notes;
    RestoreHeights(levels, ground, notes);
    EXPECT_EQ(ground.Elevation, isKept ? elevation : 157) << elevation;
    EXPECT_EQ(levels[0].Values.Height, ground.Elevation);
    EXPECT_EQ(levels[1].Values.Height, 780);
    EXPECT_FALSE(ground.IsLost);
  }
}

TEST(CodedAscents, ThicknessByTheTemperaturesThatAreKnown) {
  const struct {
    const char* About;
    ShownHeight Below, Above;
    double Misfit;
  } cases[] = {
      {"both", {1000, 0, 15}, {925, 657, 15}, 0},
      {"the lower one", {1000, 0, 15}, {925, 657, {}}, 3.5},
      {"the upper one", {1000, 0, {}}, {925, 657, 11.5}, 3.4},
      {"none: the standard atmosphere", {1000, 0, {}}, {925, 657, {}}, 6},
      {"thousands are open", {850, 500, 0}, {700, 52, 0}, -0.4},
      {"by half of them", {850, 500, 0}, {700, 551, 0}, 498.6},
      {"or less than half", {850, 500, 0}, {700, 554, 0}, -498.4},
      {"decametres", {500, 574, -20}, {400, 736, -30}, -1},
      {"ten thousands are open", {300, 950, -55}, {200, 205, -55}, -39},
      {"decametres above metres", {700, 0, 0}, {500, 269, 0}, -0.3},
      // At 1000 hPa 500 and more are metres below the sea, 500 itself is the sea.
      {"the last above the sea", {1000, 499, 15}, {925, 156, 15}, 0},
      {"the sea", {1000, 500, 15}, {925, 657, 15}, 0},
      {"below it", {1000, 600, 15}, {925, 557, 15}, 0},
  };
  for (const auto& c : cases) {
    EXPECT_NEAR(ThicknessMisfit(c.Below, c.Above), c.Misfit, 1.2) << c.About;
  }
}

TEST(CodedAscents, WhatIsRecognised) {
  const struct {
    const char* Text;
    bool IsOne;
  } cases[] = {{"TTAA 55121 01234", true}, {"TTAA\n55121", true},       {"TTAA COR 55121", true},
               {"TTAA a b 55121", true},   {"TTAA a b c 55121", false}, {"TTAA NIL", true},
               {"TTAA 5512 01", false},    {"TTAA 55/21", false},       {"TTAA 5512/ 01234", true},
               {"TTAA /5121", false},      {"TTEE 55121", false},       {"a text of TTAA", false}};
  for (const auto& c : cases) {
    const Decoder* decoder = FindDecoder(SourceText("x", c.Text));
    EXPECT_EQ(decoder != nullptr && decoder->Tag == "CODED", c.IsOne) << c.Text;
  }
  for (const auto& [lines, isOne] : {std::pair{400, true}, {401, false}}) {
    const std::string text =
        std::string(static_cast<std::size_t>(lines), '\n') + "TTAA 55121 01234";
    EXPECT_EQ(FindDecoder(SourceText("x", text)) != nullptr, isOne) << lines;
  }
}

}  // namespace
}  // namespace vexa::ingest
