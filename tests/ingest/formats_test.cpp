// Every exchange format that files of several soundings or tables come in. The samples were written
// for these tests; expected values were worked out by hand from their figures, dew points from
// humidities with a table of saturation pressures. Heights of winds at a pressure are hypsometric,
// worked out apart from the program with the vapour pressures of Bolton (1980).
#include <gtest/gtest.h>

#include <string>

#include "analysis/analysis_settings.h"
#include "analysis/interpolate.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/raw_file.h"
#include "ingest/decoded.h"
#include "support/soundings.h"

namespace vexa::ingest {
namespace {

using test::TempRow;
using test::WindRow;

struct Sample {
  const char *File, *Tag, *Title;
  int Index, Soundings, Temps, Winds;
  TempRow First, Last;
  WindRow Lowest, Highest;
  double Elevation;
  double Lat, Lon;
};

// clang-format off
const Sample kSamples[] = {
    {"fsl_two.fsl", "FSL", "72999 - TST  12Z 03 Feb 1998", 0, 2, 4, 5,
     {987.6, 25.4, 20.1}, {102.4, -74.2, kMissing},
     {118, 90, FromMs(4.1)}, {16517.9, 360, 0}, 118, 12.5, -101.25},
    {"fsl_model.txt", "FSL", "10.0,-20.0  06Z 15 Mar 2023", 0, 1, 2, 2,
     {1005, 25.1, 22.2}, {900, 18.3, 15}, {60, 45, 12}, {1020.8, 50, 15}, 60, -10, 20},
    // The nominal hour is not known there; the release was at 1104. One value was removed by the
    // archive; 55.5 % at 21.5 C is a vapour pressure of 14.22 hPa, the dew point 12.2 C.
    {"igra_station.txt", "IGRA", "85999  11Z 31 Dec 1999", 0, 2, 3, 4,
     {965, 24.8, 15.2}, {700, -1.2, -21.7},
     {520, 180, FromMs(3.1)}, {3208.5, 220, FromMs(15)}, 520, -33.45, -70.5},
    {"bufkit_two.buf", "FCST", "72999  00Z 29 Feb 2020", 0, 2, 3, 3,
     {975, 21.5, 16.25}, {500, -14, kMissing},
     {310, 170.5, 12.25}, {5719.6, 240, 50}, 310, 40.25, -95.5},
    {"bufkit_two.buf", "FCST", "72999 - KTST  03Z 29 Feb 2020", 1, 2, 3, 3,
     {975, 23.5, 16.25}, {500, -14, kMissing},
     {310, 170.5, 12.25}, {5723.6, 240, 50}, 310, 40.25, -95.5},
    {"iem_two.json", "IEM", "KAAA  12Z 01 Jun 2003", 0, 2, 2, 3,
     {990, 18.5, 15.5}, {850, 9.25, kMissing}, {190, 360, 0}, {1475.4, 220, 30}, 190, 0, 0},
    {"iem_table.csv", "IEM", "KAAA  00Z 02 Jun 2003", 1, 2, 2, 3,
     {985, 20.5, 15}, {850, 10.2, kMissing}, {190, 180, 9}, {3000, 240, 45}, 190, 0, 0},
    {"wyoming_csv.csv", "WYOMING", "wyoming_csv  1102Z 08 Aug 2008", 0, 1, 3, 2,
     {1005.5, 24.5, 20.5}, {300, -36.5, kMissing},
     {12, 360, FromMs(5)}, {1460.2, 345, FromMs(10)}, 12, -30.25, 25.5},
    // Eight rows on the ground, of which the last counts, and two on the way down.
    {"class_two.cls", "CLASS", "72999 - KTST - Test Hill, XX  00Z 10 Mar 2021", 0, 2, 4, 4,
     {965, 8, 3}, {700, -6.5, -12},
     {400, 90, FromMs(2)}, {2974, 250, FromMs(20)}, 400, 50.25, 10.5},
    {"class_two.cls", "CLASS", "Elsewhere  12Z 10 Mar 2021", 1, 2, 2, 2,
     {960, 9, 4}, {850, 3, -1}, {400, 80, FromMs(3)}, {1397.3, 100, FromMs(5)}, 400, 50.25, 10.5},
    {"eol_one.eol", "CLASS", "Test field  1759Z 30 Jun 2021", 0, 1, 3, 3,
     {898.5, 28.25, 11.5}, {700, 8.5, kMissing},
     {1036, 165, FromMs(4)}, {3170.3, 230, FromMs(15)}, 1036, 39.357463, -101.370695},
    // Without the aircraft's row, the first seconds and what the sonde marks as bad. 50 % at 8 C
    // is half of 10.72 hPa, the dew point -1.8 C.
    {"dropsonde_raw.txt", "DROPSONDE", "Dropsonde  1001Z 04 Jul 2021", 0, 1, 3, 3,
     {1010, 27, 27}, {700, 8, -1.81},
     {15, 100, FromMs(15)}, {3158.4, 90, FromMs(10)}, 15, 14.2, -60.1},
    // Rows in any order, the ground at 960 hPa and winds at 800 and 600 hPa alone: the latter 1194 m
    // above 700 hPa in the standard atmosphere.
    {"spc_text.spc", "SPC", "TST  2330Z 31 May 2049", 0, 1, 3, 4,
     {960, 30, 22}, {700, 10, kMissing}, {410, 170, 12}, {4323.8, 230, 55}, 410, -12.5, 130.75},
    // No height at the ground: 455 m - 29.27 m/K * 277.45 K * ln(1002/950) are 22 m;
    // 434 m more to 900 hPa.
    {"wyoming_text.txt", "WYOMING", "98989 - PLACE ONE, Land  18Z 07 Nov 1987", 0, 1, 3, 3,
     {1002, 5, 4}, {900, -1, -3},
     {22, 180, FromMs(2.5)}, {888.9, 200, FromMs(20)}, 22, 60.125, -5.5},
    // From the top down; the humidity of the lowest row is missing.
    {"dropsonde_report.frd", "DROPSONDE", "Dropsonde 19X1  1635Z 15 Aug 2019", 0, 1, 3, 2,
     {1010, 27, kMissing}, {700, 8, -1.81},
     {15, 100, FromMs(15)}, {3150.8, 90, FromMs(10)}, 15, 25.6, -88.31},
    // 50 % at 24.8 C is half of 31.3 hPa, the dew point 13.7 C; the highest wind has a height only.
    {"td6201_two.txt", "TD6201", "12345  12Z 03 Jun 1965", 0, 2, 3, 3,
     {965, 24.8, 13.67}, {700, -1.2, kMissing},
     {520, 180, FromMs(6)}, {5000, 220, FromMs(20)}, 520, 35.25, -97.5},
    // Our own exports of native_5_7.RAW; the wind below the ground is not in them.
    {"dump_text.txt", "COLUMNS", "Testfeld M\xC3\xBCnster  12Z 03 Mar 2001", 0, 1, 5, 3,
     {1010.5, 12.4, 9.1}, {500, -24.9, kMissing}, {62, 190, 8}, {5600, 360, 41}, 62, 51.9625, 7.5},
    {"dump_sheet.csv", "COLUMNS", "Testfeld M\xC3\xBCnster  12Z 03 Mar 2001", 0, 1, 5, 3,
     {1010.5, 12.4, 9.1}, {500, -24.9, kMissing}, {62, 190, 8}, {5600, 360, 41}, 62, 51.9625, 7.5},
    // u 3, v 4: from 180 + 36.87 degrees.
    {"model_two.csv", "FCST", "TST  06Z 01 Jan 2017", 0, 2, 2, 2,
     {950, -3, -5}, {850, -6, -11}, {500, 216.87, 5}, {1375.9, 90, 10}, 500, 44.5, -99.25},
    // Pascals, kelvins, kilometres an hour; 20 % at -20 C is 0.251 hPa, the dew point -37.3 C.
    {"columns_units.txt", "COLUMNS", "Field site  2219Z 18 Feb 2020", 0, 1, 3, 2,
     {840, 10, 10}, {540, -20, -37.26},
     {1608, 360, FromMs(10)}, {5080.7, 270, FromMs(20)}, 1608, 40.5, -105.25},
};
// clang-format on

TEST(Formats, CountsLevelsUnitsAndTimes) {
  for (const Sample& sample : kSamples) {
    SCOPED_TRACE(std::string(sample.File) + ' ' + std::to_string(sample.Index));
    const SourceText source(sample.File, FileText(sample.File));
    const std::vector<SourceEntry> entries = ListSoundings(source);
    ASSERT_EQ(entries.size(), static_cast<std::size_t>(sample.Soundings));
    const auto index = static_cast<std::size_t>(sample.Index);
    if (entries.size() > 1) {
      EXPECT_EQ(entries[index].Title, sample.Title);
    }
    const Decoded decoded = DecodeText(sample.File, source.Bytes(), sample.Index);
    ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
    const SoundingRecord& record = decoded.Record;
    EXPECT_EQ(record.DataFormat, sample.Tag);
    EXPECT_EQ(record.StationTitle, sample.Title);
    ASSERT_EQ(record.NumTempLevels(), sample.Temps);
    ASSERT_EQ(record.NumWindLevels(), sample.Winds);
    ExpectTemp(record, 1, sample.First);
    ExpectTemp(record, record.NumTempLevels(), sample.Last);
    ExpectWind(record, 1, sample.Lowest);
    ExpectWind(record, record.NumWindLevels(), sample.Highest);
    EXPECT_EQ(record.HasWorkWinds(), sample.Winds > 0);
    EXPECT_EQ(record.ElevM, sample.Elevation);
    EXPECT_EQ(record.LatSigned, sample.Lat);
    EXPECT_EQ(record.LonSigned, sample.Lon);
  }
  EXPECT_EQ(DecodeText("72999_2008080812.txt", FileText("wyoming_csv.csv")).Record.StationTitle,
            "72999  1102Z 08 Aug 2008");
  EXPECT_EQ(DecodeText("d", FileText("dump_text.txt")).Record.Time,
            (ObservationTime{2001, 3, 3, 12, 0}));
}

TEST(Formats, HeadingsInSeveralLayouts) {
  struct Case {
    const char *About, *Names, *Row;
  };
  const Case cases[] = {
      {"names of two words, wide gaps",
       "Elapsed time   HeightMSL      P   Temp   Dewp    RH  Speed   Dir   AscRate    Lat     Lon\n"
       "           s           m    hPa      C      C     %    m/s   deg       m/s    deg     deg",
       "0  100  1000.0  20.0  10.0  52  5.0  270  5.0  40.5 -105.25\n"
       "9  1600  850.0  10.0  /////  ///  /////  /////  5.0  40.6 -105.0"},
      {"names of two words, one blank",
       "Elapsed time HeightMSL Pc Pm Temp Dewp Speed Dir Lat Lon\n"
       "s m hPa hPa C C m/s deg deg deg",
       "0 100 1000.0 999.0 20.0 10.0 5.0 270 40.5 -105.25\n"
       "9 1600 850.0 849.0 10.0 ///// ///// ///// 40.6 -105.0"},
      {"units in brackets behind some names",
       "IDX P (mb) Z (m) T (C) TD (C) WD WS (m/s) LAT (S)  "
       "LON (W)",
       "1 1000.0 100 20.0 10.0 270 5.0 -40.5 105.25\n2 850.0 1600 10.0 -999 -999 -999 -999 -999"},
      {"commas", "lat,lon,P (Pa),Z (m),T (K),TD (C),WD (deg),WS (m/s)",
       "40.5,-105.25,100000,100,293.15,10,270,5\n,,85000,1600,283.15,,,"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    const Decoded decoded = DecodeText("c.txt", std::string(c.Names) + '\n' + c.Row + '\n');
    ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
    EXPECT_EQ(decoded.Record.Press, Levels<double>({1000, 850}));
    EXPECT_EQ(decoded.Record.Temp, Levels<double>({20, 10}));
    EXPECT_EQ(decoded.Record.Dewpt, Levels<double>({10, kMissing}));
    ASSERT_EQ(decoded.Record.NumWindLevels(), 1);
    ExpectWind(decoded.Record, 1, {100, 270, FromMs(5)});
    EXPECT_EQ(decoded.Record.LatSigned, 40.5);
    EXPECT_EQ(decoded.Record.LonSigned, -105.25);
  }
}

// Where the rows have no position, the first that the heading gives; none is left without one.
TEST(Formats, AHeadingPlacesADropsonde) {
  std::string text = FileText("dropsonde_report.frd");
  for (const std::string_view column : {"25.600  -88.310", "25.610  -88.330"}) {
    text.replace(text.find(column), column.size(), "-999.0  -999.0 ");
  }
  text.insert(text.find("\n\n"), "\n Lat: 12.50 N   Lon: 60.00 W   Height: 2900 m");
  const Decoded decoded = DecodeText("c.frd", text);
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.LatSigned, 25.6);
  EXPECT_EQ(decoded.Record.LonSigned, -88.31);
}

TEST(Formats, StationsOfTheListHavePositions) {
  StationList stations;
  for (const auto& [number, ident] :
       {std::pair{99123, "KTST"}, {98989, "XXXX"}, {98990, "KAAA"}, {98991, "KAAA"}}) {
    ASSERT_TRUE(stations.Insert({.Number = number,
                                 .Ident = ident,
                                 .Name = "PLACE",
                                 .Region = "TX",
                                 .ElevM = 77,
                                 .Lat = 30.5,
                                 .Lon = 100.25,
                                 .LonHemi = "W"}));
  }
  struct Case {
    const char *About, *File, *From, *To, *Title;
    double Lon;
    int ElevM;
  };
  const Case cases[] = {
      {"letters of three", "spc_text.spc", "-12.50, 130.75", "", "TST  2330Z 31 May 2049", -100.25,
       410},
      {"the file's own position", "spc_text.spc", "", "", "TST  2330Z 31 May 2049", 130.75, 410},
      {"east past the whole world", "spc_text.spc", "130.75", "361.00", "TST  2330Z 31 May 2049",
       -100.25, 410},
      {"letters that two stations have", "iem_two.json", "", "", "KAAA  12Z 01 Jun 2003", 0, 190},
      {"a number without position and elevation", "wyoming_text.txt", "Latitude:", "Lat.",
       "98989 - PLACE ONE, Land  18Z 07 Nov 1987", -100.25, 77},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.About);
    std::string text = FileText(c.File);
    const std::string from = c.From;
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, from.size(), c.To);
    const Decoded decoded = DecodeSource(SourceText(c.File, text), 0, &stations);
    ASSERT_FALSE(decoded.Failed);
    EXPECT_EQ(decoded.Record.StationTitle, c.Title);
    EXPECT_EQ(decoded.Record.LonSigned, c.Lon);
    EXPECT_EQ(decoded.Record.ElevM, c.ElevM);
  }
}

// Heights of 1000, 850 and 700 hPa in the tables of the standard atmosphere.
TEST(Formats, WindsAloneAreASounding) {
  const Decoded decoded = DecodeText(
      "w.txt",
      "# pressure (hPa)  direction (deg)  speed (kts)\n1000 180 10\n850 200 20\n700 0 0\n");
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.NumTempLevels(), 0);
  ASSERT_EQ(decoded.Record.NumWindLevels(), 3);
  EXPECT_NEAR(decoded.Record.WindHgt(1), 111, 1);
  EXPECT_NEAR(decoded.Record.WindHgt(2), 1457, 1);
  EXPECT_NEAR(decoded.Record.WindHgt(3), 3012, 1);
  EXPECT_TRUE(decoded.HasNote("Winds only"));

  const char* const one = "# pressure (hPa) T (C) WD (deg) WS (kt)\n1000 20 180 10\n850 M 200 20\n";
  const Decoded single = DecodeText("s.txt", one);
  ASSERT_FALSE(single.Failed);
  EXPECT_EQ(single.Record.NumTempLevels(), 0);
  EXPECT_TRUE(single.HasNote("The only temperature, at 1000 hPa, was left out."));
  EXPECT_EQ(DecodeText("d.txt", "# pressure dewpoint\n1000 20\n850 12\n").Failed->Detail,
            "d.txt: too few levels, 0 with a temperature and 0 with a wind");
}

TEST(IemJson, IsReadStrictlyButForNan) {
  const auto decoded = [](std::string station, std::string temp) {
    return DecodeText("j.json", "{\"profiles\": [{\"station\": \"" + station +
                                    "\", \"valid\": \"2003-06-01T12:00:00Z\",\n \"profile\": [\n"
                                    "{\"pres\": 1000, \"hght\": 100, \"tmpc\": 20.5},\n"
                                    "{\"pres\": 900, \"hght\": 1000, \"tmpc\": " +
                                    temp +
                                    "},\n"
                                    "{\"pres\": 800, \"hght\": 2000, \"tmpc\": 9}]}]}\n");
  };
  struct Case {
    const char* about;
    const char* station;
    const char* temp;
    int levels;
    const char* title;
  };
  const Case good[] = {
      {"a number with an exponent", "K\\u0041BC", "1.45e1", 3, "KABC"},
      {"NaN stands for nothing", "KABC", "NaN", 2, "KABC"},
      {"in a text NaN is a text", "KNaN", "null", 2, "KNaN"},
      {"behind an escaped quote it still is", "K\\\"NaN", "14", 3, "K\"NaN"},
      // U+1F600 as two escapes becomes one character of four bytes.
      {"beyond 16 bits", "\\ud83d\\ude00", "14", 3, "\xf0\x9f\x98\x80"},
  };
  for (const Case& c : good) {
    SCOPED_TRACE(c.about);
    const Decoded read = decoded(c.station, c.temp);
    ASSERT_FALSE(read.Failed) << read.Failed->Detail;
    EXPECT_EQ(read.Record.NumTempLevels(), c.levels);
    EXPECT_EQ(read.Record.StationTitle.find(c.title), 0u) << read.Record.StationTitle;
  }
  const char* const bad[] = {"NaNny", "1.5 2", "\"\\x\"", "\"14", "01", "", "\"\\ud83d\""};
  for (const char* temp : bad) {
    const Decoded read = decoded("KABC", temp);
    ASSERT_TRUE(read.Failed) << temp;
    EXPECT_TRUE(read.Failed->Detail.starts_with("j.json, line 4: ")) << read.Failed->Detail;
    EXPECT_LT(read.Failed->Detail.size(), 300u);
  }
  EXPECT_TRUE(decoded("KABC", "1e400").Failed->Detail.starts_with("j.json: number"));
  EXPECT_NE(decoded("KABC", "\"warm\"").Failed->Detail.find("not a number"), std::string::npos);
  EXPECT_TRUE(DecodeText("j", "{\"profiles\": " + std::string(100000, '[')).Failed);
  for (const char* levels : {"", ", \"profile\": 5"}) {
    const Decoded none =
        DecodeText("j", std::string("{\"profiles\": [{\"station\": \"KABC\"") + levels + "}]}");
    ASSERT_TRUE(none.Failed) << levels;
    EXPECT_EQ(none.Failed->Detail, "j: a profile without levels");
  }
  // The names count where they belong, and of two alike the last.
  const Decoded odd =
      DecodeText("j", R"({"of": {"profiles": [{"profile": [{"pres": 1}]}]}, "profiles": 7,
      "profiles": [{"profile": [{"pres": 5, "tmpc": "warm"}], "station": ["KXYZ"], "station": "KABC",
                    "profile": [{"pres": 1000, "of": {"pres": 1}, "tmpc": "20.5", "hght": 100}, 5,
                                {"pres": 900, "pres": 850, "tmpc": 10, "hght": null}]}], "station": 1})");
  ASSERT_FALSE(odd.Failed) << odd.Failed->Detail;
  EXPECT_EQ(odd.Record.Press.Values(), (std::vector<double>{1000, 850}));
  EXPECT_EQ(odd.Record.Temp.Values(), (std::vector<double>{20.5, 10}));
  EXPECT_EQ(odd.Record.StationTitle.find("KABC"), 0u) << odd.Record.StationTitle;
}

// Heights that the station reports do not always follow from its temperatures: the wind of a
// pressure must be found there all the same, in the native file too.
TEST(Formats, AWindGivenAtAPressureIsFoundThere) {
  const char* const message =
      "TTAA 56001 01234 99986 09613 00000 00153 ///// ///// 92812 14461 32521 85523 13071 31526 "
      "70129 05277 27516 50577 14185 26538 88259 49167 26062 77999= "
      "TTBB 56008 01234 00986 09613 11983 11633 22967 12847 33958 15858 44917 14061=";
  StationList stations;
  ASSERT_TRUE(
      stations.Insert({.Number = 1234, .Ident = "ENXX", .ElevM = 211, .Lat = 28.6, .Lon = 77}));
  const Decoded sent = DecodeSource(SourceText("m", message), 0, &stations);
  ASSERT_FALSE(sent.Failed);
  const Decoded back = DecodeText("m.RAW", WriteRaw(sent.Record));
  ASSERT_FALSE(back.Failed);
  const struct {
    double Press, Dir, Spd;
  } winds[] = {{925, 325, 21}, {850, 315, 26}, {700, 275, 16}, {500, 265, 38}, {259, 260, 62}};
  for (const SoundingRecord* read : {&sent.Record, &back.Record}) {
    const analysis::LevelProfile profile = analysis::DeriveLevels(*read, AnalysisSettings{});
    for (const auto& wind : winds) {
      SCOPED_TRACE(wind.Press);
      const analysis::Wind found = analysis::GetWIND(*read, profile, wind.Press);
      EXPECT_EQ(found.Dir, wind.Dir);
      EXPECT_NEAR(found.Spd, wind.Spd, 0.05);
    }
  }
  EXPECT_TRUE(sent.HasNote("925 hPa: reported 812 m, computed"));
}

}  // namespace
}  // namespace vexa::ingest
