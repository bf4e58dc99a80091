#include "output/data_dump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <sstream>

#include "config/options.h"
#include "core/source_text.h"
#include "ingest/decoder.h"
#include "support/soundings.h"

namespace vexa::output {
namespace {

std::string Dump(const SoundingRecord& record, const Options& options, DumpKind kind) {
  const auto results = AnalyseForDump(record, options, kind);
  return DumpOpening(options.System.Dump, kind) +
         DumpSounding(record, results, options, options.System.Dump, kind) +
         DumpClosing({"out.txt", {record.DataFormat}, 1}, options.System.Dump, kind);
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    EXPECT_TRUE(line.ends_with('\r'));
    lines.push_back(line.substr(0, line.size() - 1));
  }
  return lines;
}

std::vector<std::string> Fields(const std::string& line) {
  std::istringstream in(line);
  return {std::istream_iterator<std::string>(in), {}};
}

TEST(LevelRows, WindsJoinTheLevelTheyBelongTo) {
  // The 2nd wind lies 4 m off the computed height of 850 hPa, the 3rd between the levels, the 4th
  // above them.
  SoundingRecord record = test::Profile({{1000, 15, 10}, {850, 5, 0}}, {{100, 360, 0}}, 100);
  const double at850 = AnalyseForDump(record, {}, DumpKind::Textfile).Levels.Height(2);
  record.AddWind(700, 200, 20);
  record.AddWind(at850 + 4, 210, 30);
  record.AddWind(at850 + 1000, 220, 40);
  const auto results = AnalyseForDump(record, {}, DumpKind::Textfile);
  const auto rows = IntegrateLevels(record, results);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0].Dir, 360);
  EXPECT_FALSE(rows[1].Temp);
  EXPECT_EQ(rows[1].Spd, 20);
  EXPECT_GT(rows[1].Press, 850);
  EXPECT_EQ(rows[2].Temp, 5);
  EXPECT_EQ(rows[2].Spd, 30);
  // p = 850 exp(-g z / (Rd Tv)), Tv 278.9 K at 5 °C with 4.5 g/kg: 752.1 hPa 1000 m higher.
  EXPECT_NEAR(rows[3].Press, 850 * std::exp(-9.80665 * 1000 / (287.04 * 278.9)), 0.6);
  // 20 kt over 600 m, which are 1968.5 ft: 10.16 kt per 1000 ft.
  ASSERT_TRUE(rows[1].Shear);
  EXPECT_NEAR(*rows[1].Shear, 10.16, 0.01);
  EXPECT_FALSE(rows[0].Shear);
}

// The lowest levels of a message (71907, 8 December 2008 12 UTC): no wind at 1003 hPa, calm at
// 1000 hPa, 275 degrees at 925 hPa. Their winds are found again there, also when the heights of all
// of them begin at another elevation, as long as that one is told from no wind on the ground.
TEST(LevelRows, NoWindOnTheGroundMovesNoOther) {
  struct Case {
    const char* About;
    std::vector<int> Levels;  // that have a wind
    double Offset;            // m of the winds' heights
  };
  const Case cases[] = {{"no wind on the ground", {2, 5, 6}, 0},
                        {"a wind on the ground", {1, 2, 5, 6}, 0},
                        {"an elevation of 12 m more", {1, 2, 5, 6}, 12},
                        {"one of 20 m less", {1, 5, 6}, -20}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    SoundingRecord record = test::Profile({{1003, -14.9, -17.5},
                                           {1000, -13.5, -14.9},
                                           {998, -12.1, -13.6},
                                           {991, -11.5, -14.9},
                                           {925, -15.1, -17},
                                           {850, -20.1, -22.2}},
                                          {}, 26);
    const auto results = AnalyseForDump(record, {}, DumpKind::Textfile);
    std::vector<int> expected(7, 0);
    for (const int level : c.Levels) {
      record.AddWind(results.Levels.Height(level) + c.Offset, 10 * level, level);
      expected[static_cast<std::size_t>(level)] = record.NumWindLevels();
    }
    EXPECT_EQ(WindsOfLevels(record, results), expected);
  }
}

TEST(LevelRows, EmptyWindsAreNoLevels) {
  const SoundingRecord whole = test::ReferenceConvective();
  const SoundingRecord empty = test::WithEmptyWinds(whole);
  const auto results = AnalyseForDump(whole, {}, DumpKind::Textfile);
  EXPECT_EQ(IntegrateLevels(empty, results), IntegrateLevels(whole, results));
}

TEST(DataDump, TextHasTheRecordsInOrder) {
  SoundingRecord record = test::ReferenceConvective();
  const auto lines = Lines(Dump(record, {}, DumpKind::Textfile));
  ASSERT_GT(lines.size(), 20u);
  EXPECT_EQ(std::vector(lines.begin(), lines.begin() + 4),
            (std::vector<std::string>{"", "SOUNDING = Reference A, convective",
                                      "ELEVATION (M) = 357", "LAT/LONG = 35.2  -97.4"}));
  const std::size_t levels = std::stoul(lines[4].substr(14));
  EXPECT_EQ(lines[4].substr(0, 14), "DATA LEVELS = ");
  const auto surface = Fields(lines[5]);
  ASSERT_EQ(surface.size(), 16u);
  // Pressure, height, temperature, dew point and wind as observed; theta = 301.16 (1000/970)^0.2856
  // = 303.8 K; the humidity by Magnus 57 %.
  const std::vector<std::string> observed = {"970", "357", "28.0", "18.8", "160", "12", "303.8"};
  EXPECT_TRUE(std::equal(observed.begin(), observed.end(), surface.begin())) << lines[5];
  EXPECT_NEAR(std::stod(surface[8]), 57.4, 0.5);
  EXPECT_EQ(surface[14], "-999") << "no wind lies below the lowest";
  EXPECT_EQ(lines[5 + levels], "  ");
  EXPECT_EQ(lines[6 + levels], "");
  const std::vector<std::string> tail(lines.end() - 3, lines.end());
  EXPECT_EQ(tail, (std::vector<std::string>{"FILENAME = out.txt", "DATA TYPE = RAW",
                                            "NUMBER OF SOUNDINGS LISTED = 1"}));
}

TEST(DataDump, SignificantListingIsShorterInBothDirections) {
  Options options;
  options.System.Dump = {.Height = DumpHeight::Feet,
                         .Reference = HeightMode::Agl,
                         .Speed = SpeedUnits::MetersPerSecond,
                         .Temp = DumpTemp::Fahrenheit,
                         .SignificantOnly = true};
  // Between 850 and 700 hPa the levels lie on a line in ln p: thinning drops the middle one.
  const double middle = 20 - 10 * std::log(850.0 / 775) / std::log(850.0 / 700);
  const SoundingRecord record = test::Profile({{1000, 25, 10},
                                               {925, 22, 10},
                                               {850, 20, 10},
                                               {775, middle, 10},
                                               {700, 10, 10},
                                               {500, -20, -30}},
                                              {{0, 180, 10}});
  const auto lines = Lines(Dump(record, options, DumpKind::Textfile));
  EXPECT_EQ(lines[0], "*** Significant Data ***");
  EXPECT_EQ(lines[5], "DATA LEVELS = 5");
  const auto surface = Fields(lines[6]);
  // 25 °C are 77 °F, 10 kt are 5.14 m/s.
  const std::vector<std::string> expected = {"1000", "0", "77.0", "50.0", "180", "5.14"};
  ASSERT_EQ(surface.size(), 9u);
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), surface.begin())) << lines[6];
  EXPECT_EQ(lines[lines.size() - 6], "*** Significant Data *** Format");
  EXPECT_EQ(lines[lines.size() - 4],
            "DATA:  PR(mb),HT(ft AGL),T(F),Td(F),DD(deg),FF(m/s),PT(K),ePT(K),RH(%)");
  options.System.Dump.FormatBlock = false;
  EXPECT_EQ(Lines(Dump(record, options, DumpKind::Textfile)).back(), "");
}

TEST(DataDump, SpreadsheetTellsTheAnalysis) {
  const std::string sheet = Dump(test::ReferenceConvective(), {}, DumpKind::Spreadsheet);
  // Worked values of this sounding: LCL 847.91 hPa, EL 187.5 hPa, CAPE 3365 J/kg, KI 31.9.
  for (const char* row :
       {"Sounding Information,\"Reference A, convective\"\r\n",
        "Elev (m),Lat,N/S,Lon,E/W\r\n357,35.2,N,97.4,W\r\n", "\r\nLCL,847.9, mb,", "\r\nLFC,",
        "\r\nCCL,", "\r\nMPL = ,", "\r\nFRZG Lvl,", "\r\nlfcEL,187.5, mb,",
        "\r\nCAPE total,3365, J/kg", "\r\nCAPE 0-3km,", "\r\nEHI 0-3km,", "\r\nVGP 0-3km,",
        "\r\nKI,31.9, C", "\r\nKO = ,", "\r\nSupercell Composite Parameter (SCP),",
        "\r\nStorm motion = ,245, deg,21.3, kts,", "C/km\r\n", " Tropopause level",
        "\r\nPR(mb),HT(m MSL),T(C),Td(C),DD(deg),FF(kts),"}) {
    EXPECT_NE(sheet.find(row), std::string::npos) << row << "\n" << sheet.substr(0, 3000);
  }
}

TEST(DataDump, SpreadsheetGivesBothGustsInItsUnitAndMarksWhatIsCut) {
  Options options;
  options.Speed = SpeedUnits::MetersPerSecond;  // of the displays, not of the sheet
  SoundingRecord cut = test::ReferenceConvective();
  const std::string whole = Dump(cut, options, DumpKind::Spreadsheet);
  EXPECT_NE(whole.find("\r\nT1/T2 Gust,28/40, kts\r\n"), std::string::npos);
  EXPECT_NE(whole.find("\r\nMBE Vector,281/32, kts\r\n"), std::string::npos);
  options.System.Dump.Speed = SpeedUnits::MetersPerSecond;
  EXPECT_NE(Dump(cut, options, DumpKind::Spreadsheet).find("\r\nT1/T2 Gust,15/21, m/s\r\n"),
            std::string::npos);
  cut = test::EndingAt(cut, 250);
  const std::string sheet = Dump(cut, options, DumpKind::Spreadsheet);
  const auto row = [&sheet](std::string_view label) {
    const std::size_t at = sheet.find("\r\n" + std::string(label) + ",") + 2;
    return sheet.substr(at, sheet.find("\r\n", at) - at);
  };
  EXPECT_TRUE(row("lfcEL").starts_with("lfcEL,250.0, mb,")) << row("lfcEL");
  EXPECT_TRUE(row("lfcEL").ends_with(",above")) << row("lfcEL");
  EXPECT_TRUE(row("CAPE total").ends_with(", J/kg,at least")) << row("CAPE total");
  EXPECT_EQ(whole.find("at least"), std::string::npos);
}

TEST(DataDump, OpensAgainAsTheSameSounding) {
  struct Case {
    const char* about;
    DumpKind kind;
    DumpOptions dump;
  };
  const DumpOptions foreign = {.Height = DumpHeight::Feet,
                               .Reference = HeightMode::Agl,
                               .Speed = SpeedUnits::MetersPerSecond,
                               .Temp = DumpTemp::Fahrenheit,
                               .Water = DumpWater::Inches};
  const Case cases[] = {
      {"text", DumpKind::Textfile, {}},
      {"spreadsheet", DumpKind::Spreadsheet, {}},
      {"text in other units", DumpKind::Textfile, foreign},
      {"spreadsheet in other units", DumpKind::Spreadsheet, foreign},
      {"text without its format block", DumpKind::Textfile, {.FormatBlock = false}},
  };
  SoundingRecord unknown = test::Profile({{900, 10, 999.9}, {500, -20, 999.9}});
  SetElevationUnknown(unknown);
  unknown.LatHemi.clear();
  unknown.LonHemi.clear();
  unknown.LatSigned = unknown.LonSigned = 0;
  SoundingRecord gulf = test::Profile({{900, 10, 5}, {500, -20, -30}});
  SetDecimalPosition(gulf, 0, -0.25);
  for (const Case& c : cases) {
    for (const SoundingRecord& record :
         {test::ReferenceConvective(), test::ReferenceWinter(), unknown, gulf}) {
      SCOPED_TRACE(std::string(c.about) + ", " + record.StationTitle);
      Options options;
      options.System.Dump = c.dump;
      SoundingRecord read;
      ingest::LoadContext context;
      const SourceText source("dump", Dump(record, options, c.kind));
      const auto fault = ingest::DecodeSounding(source, context, read);
      ASSERT_FALSE(fault) << fault->Detail;
      EXPECT_EQ(read.StationTitle, record.StationTitle);
      EXPECT_EQ(read.ElevM, record.ElevM);
      EXPECT_EQ(read.ElevUnknown, record.ElevUnknown);
      EXPECT_EQ(read.LatHemi + read.LonHemi, record.LatHemi + record.LonHemi);
      EXPECT_NEAR(read.LatSigned, record.LatSigned, 1e-4);
      EXPECT_NEAR(read.LonSigned, record.LonSigned, 1e-4);
      EXPECT_EQ(read.Press, record.Press);
      EXPECT_EQ(read.WindDir, record.WindDir);
      const auto expectNear = [](const Levels<double>& is, const Levels<double>& was, double most,
                                 double ofValue = 0) {
        ASSERT_EQ(is.Count(), was.Count());
        for (int i = 1; i <= is.Count(); ++i) EXPECT_NEAR(is(i), was(i), most + ofValue * was(i));
      };
      expectNear(read.Temp, record.Temp, 0.03);  // a tenth of a degree Fahrenheit
      expectNear(read.Dewpt, record.Dewpt, 0.03);
      expectNear(read.WindHgt, record.WindHgt, 5, 0.005);
      expectNear(read.WindSpd, record.WindSpd, 0.02);  // 0.005 m/s and two factors
    }
  }
}

TEST(DataDump, SeveralSoundingsAreToldApartAndDamageIsNamed) {
  const Options options;
  std::string text;
  for (const SoundingRecord& record : {test::ReferenceConvective(), test::ReferenceWinter()}) {
    text += DumpSounding(record, AnalyseForDump(record, options, DumpKind::Textfile), options,
                         options.System.Dump, DumpKind::Textfile);
  }
  const SourceText source("two", text);
  const auto entries = ingest::ListSoundings(source);
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[1].Title, "Reference B, winter");
  SoundingRecord read;
  ingest::LoadContext context{.Index = 1};
  ASSERT_FALSE(ingest::DecodeSounding(source, context, read));
  EXPECT_EQ(read.Press, test::ReferenceWinter().Press);

  std::string damaged = text;
  damaged.replace(damaged.find("26.3"), 4, "2x.3");
  ingest::LoadContext first;
  const auto fault = ingest::DecodeSounding(SourceText("two", damaged), first, read);
  ASSERT_TRUE(fault);
  EXPECT_NE(fault->Detail.find("2x.3"), std::string::npos) << fault->Detail;
}

TEST(DataDump, NamesAreProposedByKind) {
  EXPECT_EQ(DumpKindOf("a.b/OUT.CSV"), DumpKind::Spreadsheet);
  EXPECT_EQ(DumpKindOf("out.dat"), DumpKind::Textfile);
  EXPECT_EQ(ProposedDumpName("OUN.RAW", DumpKind::Spreadsheet), "OUN_data.csv");
}

}  // namespace
}  // namespace vexa::output
