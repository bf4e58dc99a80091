// Small changes to the samples of each format, on either side of what it allows. The layouts are
// those that the archives describe; what follows from a change was worked out by hand.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "core/markers.h"
#include "core/numbers.h"
#include "ingest/decoded.h"

namespace vexa::ingest {
namespace {

// "|title|elevation lat lon|P T Td;...|H D/S;...|notes", or the fault. Knots and metres are whole.
std::string Summary(const Decoded& decoded) {
  if (decoded.Failed) return decoded.Failed->Detail;
  const SoundingRecord& record = decoded.Record;
  std::string text = '|' + record.StationTitle + '|' +
                     (record.ElevUnknown ? std::string("?") : Shortest(record.ElevM)) + ' ' +
                     Mask(record.LatSigned, "0.##") + ' ' + Mask(record.LonSigned, "0.##") + '|';
  for (int i = 1; i <= record.NumTempLevels(); ++i) {
    text += Mask(record.Press(i), "0.##") + ' ' + Mask(record.Temp(i), "0.#") + ' ' +
            (IsMissing(record.Dewpt(i)) ? "-" : Mask(record.Dewpt(i), "0.#")) + ';';
  }
  text += '|';
  for (int i = 1; i <= record.NumWindLevels(); ++i) {
    text += Mask(record.WindHgt(i), "0") + ' ' + Mask(record.WindDir(i), "0") + '/' +
            Mask(record.WindSpd(i), "0") + ';';
  }
  for (const std::string& note : decoded.Notes) text += '|' + note;
  return text;
}

struct Change {
  const char *About, *File;
  std::string From, To;
  const char* Says;  // within the summary; with '!' ahead: nowhere in it
  int Index = 0;
};

void ExpectChanges(const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    SCOPED_TRACE(change.About);
    std::string text = FileText(change.File);
    const std::size_t at = text.find(change.From);
    ASSERT_NE(at, text.npos) << change.From;
    text.replace(at, change.From.size(), change.To);
    const std::string summary = Summary(DecodeText("x", text, change.Index));
    const bool isWanted = change.Says[0] != '!';
    EXPECT_EQ(summary.find(change.Says + (isWanted ? 0 : 1)) != summary.npos, isWanted)
        << change.Says << "\n in " << summary;
  }
}

TEST(FormatsLimits, DamageNamesItsPlace) {
  ExpectChanges({
      {"fsl", "fsl_two.fsl", "    198", "    1x8", "x, line 9: \"1x8\" is not a number"},
      {"its unit", "fsl_two.fsl", "99999     ms", "99999     mh",
       "x, line 5: the unit of the wind is not known"},
      {"igra", "igra_station.txt", "  215B", "  2l5B", "x, line 3: \"2l5\" is not a number"},
      {"bufkit", "bufkit_two.buf", "850.00 12.00", "850.00 12..0",
       "x, line 16: \"12..0\" is not a number"},
      {"iem", "iem_table.csv", "18.5", "1B.5", "x, line 2: \"1B.5\" is not a number"},
      {"wyoming csv", "wyoming_csv.csv", "24.5,", "2-4.5,", "x, line 2: \"2-4.5\" is not a number"},
      {"class", "class_two.cls", "  4.0 999.0", "  4.O 999.0",
       "x, line 26: \"4.O\" is not a number"},
      {"avaps", "dropsonde_raw.txt", " 100130.25  700.00", " 100130.25  7o0.00",
       "x, line 4: \"7o0.00\" is not a number"},
      {"frd", "dropsonde_report.frd", "   18.0 ", "   1B.0 ",
       "x, line 8: \"1B.0\" is not a number"},
      {"td6201", "td6201_two.txt", "0150999", "01S0999",
       "x, line 1: level 2: \"01S0\" is not a number"},
      {"fewer levels than it says", "td6201_two.txt", "", "",
       "The heading announces 3 levels, 2 are there.", 1},
      {"model", "model_two.csv", "-6.0,", "-6.0.,", "x, line 7: \"-6.0.\" is not a number"},
      {"spc", "spc_text.spc", "20.00,     20.50", "20:00,     20.50",
       "x, line 10: \"20:00\" is not a number"},
      {"wyoming", "wyoming_page.html", "12.2", "1x.2",
       "x, line 13: \"1x.2\" in column TEMP is not a number"},
  });
}

TEST(FormatsLimits, Igra) {
  const char* const file = "igra_station.txt";
  ExpectChanges({
      {"the earliest year", file, "1999 12 31", "1900 12 31", "85999  11Z 31 Dec 1900|"},
      {"before it", file, "1999 12 31", "1899 12 31", "x: in none of the known formats"},
      {"the last year", file, "1999 12 31", "2100 12 31", "85999  11Z 31 Dec 2100|"},
      {"behind it", file, "1999 12 31", "2101 12 31", "x: in none of the known formats"},
      {"no month", file, "1999 12 31", "1999    31", "85999|520"},
      {"the nominal hour", file, "31 99 1104", "31 00 1104", "85999  00Z 31 Dec 1999|"},
      {"a station of another network", file, "#CIM00085999", "#CIX00085999",
       "CIX00085999  11Z 31 Dec 1999|"},
      {"a place without a number", file, "#CIM00085999", "#CIM000ABCDE", "CIM000ABCDE  11Z"},
      {"no position", file, "-334500", "       ", "|520 0 0|"},
      {"a level more", file, "1104    5", "1104    6", "announces 6 levels, 5 are there"},
      {"derived values", file, "ncdc-gts ncdc-gts", "                 ",
       "x: holds the archive's derived parameters, not its soundings"},
      {"the tenths of a pressure", file, " 92500 ", " 92510 ", ";925.1 21.5 12.2;"},
      {"a pressure in its first column", file, " 96500 ", "109650 ", "|1096.5 24.8"},
      {"a humidity in tenths of a per cent", file, "555 -9999 -9999 -9999", "999 -9999 -9999 -9999",
       ";925 21.5 21.5;"},
      {"a speed in tenths of a metre per second", file, "   31 ", "  310 ", "|520 180/60;"},
      {"as the second", file, "", "", "85999  00Z 01 Jan 2000|520 -33.45 -70.5|", 1},
      {"whose last row lost its end", file, "50    20    50 \n", "50    20    50", "2 are there",
       1},
      {"and a figure", file, "50    20    50 \n", "50    20    5",
       "too few levels of 85999, 1 with a", 1},
  });
}

TEST(FormatsLimits, Td6201AndCards) {
  const char* const file = "td6201_two.txt";
  ExpectChanges({
      {"59 minutes", file, "3515N09730W1965", "3559N09759W1965", "|520 35.98 -97.98|"},
      {"60 minutes", file, "3515N09730W1965", "3560N09730W1965", "x:"},
      {"60 of the longitude", file, "3515N09730W1965", "3515N09760W1965", "x:"},
      {"south and east", file, "3515N09730W1965", "3515S09730E1965", "|520 -35.25 97.5|"},
      {"a letter among the figures", file, "3515N09730W1965", "35 5N09730W1965", "x:"},
      {"hour 24", file, "1965060312", "1965060324", "x:"},
      {"a number with blanks about it", file, "00012345", "   12345", "12345  12Z"},
      {"a blank inside", file, "00012345", "000 2345", "x:"},
      {"fewer levels", file, "1965060312004", "1965060312003", "!|520 180/12;2"},
      {"a count of one figure", file, "1965060312004", "1965060312  4", "12345  12Z 03 Jun 1965|"},
      {"minus 0.2 C", file, "0248050180", "-002050180", "|965 -0.2 -9.4"},
      {"a height of 9999 m", file, "005000-999999", "  9999-999999", ";9999 220/39;"},
      {"none", file, "005000-999999", "999999-999999", "!5000 220/39;"},
      {"a humidity of 99", file, "0248050180", "0248099180", "|965 24.8 24.6"},
      {"with a blank", file, "0248050180", "0248 99180", "|965 24.8 24.6"},
      {"none", file, "0248050180", "0248999180", "|965 24.8 -;"},
      // 9 % of 17.04 hPa are 1.534 hPa.
      {"a humidity of one figure", file, "0150999", "0150  9", ";850 15 -17.7;"},
      {"a direction of 359", file, "050180006", "050359006", "|520 359/12;"},
  });
  const std::string all = FileText(file), line = all.substr(0, all.find('\n'));
  EXPECT_EQ(DecodeText("x", line).Record.NumTempLevels(), 3);
  const std::string cards =
      "# 723570TEST PLC  35.25   -97.50   3571985060112" + std::string(60, '0');
  const auto read = [](std::string head) { return Summary(DecodeText("c", head + "\n1 2 3\n")); };
  const auto with = [&cards](std::size_t at, std::string_view text) {
    return std::string(cards).replace(at, text.size(), text);
  };
  EXPECT_EQ(cards.size(), 108U);
  EXPECT_EQ(
      read(with(46, "99")),
      "c: a CARDS record of 72357 - TEST PLC  00Z 01 Jun 1985; how its levels are laid out is "
      "not known");
  EXPECT_NE(read(with(46, "23")).find("23Z 01 Jun 1985"), std::string::npos);
  EXPECT_NE(read(with(105, "  5")).find("CARDS"), std::string::npos);
  for (const std::string& other :
       {with(46, "24"), with(0, "*"), with(105, "-01"), with(105, " x "), cards.substr(0, 107)}) {
    EXPECT_EQ(read(other).find("CARDS"), std::string::npos) << other;
  }
}

TEST(FormatsLimits, SpcText) {
  const char* const file = "spc_text.spc";
  const char* const title = " TST   490531/2330 -12.50, 130.75";
  ExpectChanges({
      {"four letters", file, title, " ABCD 490531/2330", "ABCD  2330Z 31 May 2049|410 0 0|"},
      {"five figures", file, title, " 72357 490531/2330", "72357  2330Z 31 May 2049|"},
      {"four figures are letters", file, title, " 7235 490531/2330", "|7235  2330Z 31 May 2049|"},
      {"no station", file, title, " 490531/2330 -12.50,130.75",
       "2330Z 31 May 2049|410 -12.5 130.75|"},
      {"no time", file, title, " A PLACE", "A PLACE|410"},
      {"a position without a comma", file, title, "TST 490531/2330 12.5 130", "|410 0 0|"},
      {"blank lines ahead", file, title, "\n\n TST 490531/2330 -12.50,130.75",
       "|410 -12.5 130.75|"},
      {"no title", file, "%TITLE%", "", "x|410 0 0|"},
      {"no data", file, "%RAW%", "", "x, line 16: the data end before %RAW%"},
      {"a row of five", file, "  30.00,     22.00,    170.00,     12.00", "  30.00, 22.00, 170.00",
       "x, line 7: a row needs six values"},
  });
  const std::string text = FileText(file), cut = text.substr(0, text.find("%END%"));
  const auto read = [](const std::string& bytes, int index = 0) {
    return Summary(DecodeText("x", bytes, index));
  };
  const std::string untitled = text.substr(text.find("%RAW%"));
  EXPECT_EQ(read(text + text, 1), read(text));
  EXPECT_EQ(read(text + untitled, 1), read(untitled));
  EXPECT_EQ(read(untitled + text), read(untitled));
  EXPECT_TRUE(read(cut).ends_with("|%END% is missing."));
  EXPECT_TRUE(read(cut.substr(0, cut.size() - 1))
                  .ends_with("|The last row is cut off and was left out; %END% is missing."));
}

TEST(FormatsLimits, Fsl) {
  const char* const file = "fsl_two.fsl";
  const char* const first = "    254     12      3      FEB    1998";
  const char* const place = "12.50N101.25W   118";
  ExpectChanges({
      {"hour 0", file, first, "    254      0      3      FEB    1998", "00Z 03 Feb 1998|"},
      {"another type", file, first, "    255     12      3      FEB    1998",
       "72999 - TST  12Z 04"},
      {"a model of the first letter", file, first, "ARPEGE       12     3      FEB    1998",
       "72999 - TST  12Z 03"},
      {"a level of a letter", file, "      5   9250", "      A   9250", "!;925 "},
      {"a sixth word", file, first, "    254     12      3      FEB    1998 x",
       "72999 - TST  12Z 04"},
      {"south and east", file, place, "12.50S101.25E   118", "|118 -12.5 101.25|"},
      {"without letters west is positive", file, place, " 12.50 101.25    118",
       "|118 12.5 -101.25|"},
      {"without one that of the heading", file, "      9   9876    118", "      9   9876  99999",
       "|118 12.5"},
      {"missing in the old way", file, "    254    201     90", "    254  32767     90",
       "|987.6 25.4 -;"},
      {"winds below the ground", file, "      6  99999    305", "      6  99999    117",
       "!117 100"},
      {"at the ground", file, "      6  99999    305", "      6  99999    118", "|118 90/8;"},
      {"letters of the station", file, "           TST  ", "           1ST  ", "72999  12Z"},
      {"small letters", file, "           TST  ", "           tst  ", "|72999  12Z"},
      {"letters behind it", file, "           TST  ", "           ZST  ", "72999 - ZST  12Z"},
      {"type 3 of its own", file, "      5   9250", "      3   9250", "x, line 10: the unit"},
  });
  // In whole hPa no pressure exceeds 1100.
  const auto press = [](std::string_view most) {
    std::string text = FileText("fsl_model.txt");
    text.replace(text.find("  10050"), 7, "   " + std::string(most));
    text.replace(text.find("   9000"), 7, "    900");
    return DecodeText("x", text).Record.Press;
  };
  EXPECT_EQ(press("1100"), Levels<double>({1100, 900}));
  EXPECT_EQ(press("1101"), Levels<double>({110.1, 90}));
  const std::string text = FileText(file);
  EXPECT_FALSE(DecodeText("x", text.substr(0, text.size() - 1), 1).HasNote("cut off"));
  EXPECT_TRUE(DecodeText("x", text.substr(0, text.size() - 2), 1)
                  .HasNote("The last row is cut off and was left out."));
}

TEST(FormatsLimits, Dropsondes) {
  const char* const raw = "dropsonde_raw.txt";
  const char* const report = "dropsonde_report.frd";
  ExpectChanges({
      {"10 s after the release", raw, "S00 200000001 210704 100130.25",
       "S00 200000001 210704 100110.25", "700 8 -1.8;"},
      {"sooner", raw, "S00 200000001 210704 100130.25", "S00 200000001 210704 100110.24",
       "!700 8 -1.8;"},
      {"24 hours", raw, "210704 100130.25", "210704 240000.00", "700 8 -1.8;"},
      {"more", raw, "210704 100130.25", "210704 240000.01",
       "x, line 4: \"240000.01\" is not a time"},
      {"before midnight", raw, "210704 100130.25", "210704 -00001.00", "is not a time"},
      {"nineteen values", raw, "  0.50  3150.00", "  3150.00",
       "x, line 4: a row needs twenty values"},
      {"a row of two words", raw, "AVAPS-D02 P00", "AVAPS-D02 S00\nAVAPS-D02 P00",
       "x, line 2: a row needs twenty values"},
      {"bad sensors", raw, "S00 200000001 210704 100130.25", "S10 200000001 210704 100130.25",
       "!700 8 -1.8;"},
      {"whose wind stays", raw, "S00 200000001 210704 100130.25", "S10 200000001 210704 100130.25",
       "90/19;"},
      {"bad winds", raw, "S00 200000001 210704 100130.25", "S01 200000001 210704 100130.25",
       "!90/19;"},
      {"its attributes", raw, "AVAPS-T02 STA", "*** Sounding Attributes File ***",
       "x: describes a sounding; its levels are in the file named D..."},
      {"a position in the last line", raw, "AVAPS-T02 END 200000001 210704 100302.00\n", "",
       "|15 14.2 -60.1|"},

      {"yymmdd of this century", report, "190815", "490815", "1635Z 15 Aug 2049|"},
      {"of the last", report, "190815", "500815", "1635Z 15 Aug 1950|"},
      {"yyyymmdd", report, "190815", "20190815", "1635Z 15 Aug 2019|"},
      {"with slashes", report, "190815", "2019/08/15", "1635Z 15 Aug 2019|"},
      {"no date", report, "190815", "none", "Dropsonde 19X1|"},
      {"hhmm", report, "163502", "1635", "1635Z 15 Aug 2019|"},
      {"hmm", report, "163502", "935", "0935Z 15 Aug 2019|"},
      {"with colons", report, "163502", "16:35:02", "1635Z 15 Aug 2019|"},
      {"no time", report, "163502", "-", "00Z 15 Aug 2019|"},
      {"counted otherwise", report, "  IX   t (s)", "  Index t (s)", "Dropsonde 19X1  1635Z"},
  });
}

TEST(FormatsLimits, Models) {
  const char* const kit = "bufkit_two.buf";
  const char* const csv = "model_two.csv";
  ExpectChanges({
      {"a number that ends in 0", kit, "STNM = 729990", "STNM = 723570", "72357  00Z 29 Feb 2020|"},
      {"one of the producer's own", kit, "STNM = 729990", "STNM = 729995", "00Z 29 Feb 2020|310"},
      {"letters", kit, "STID =  STNM", "STID = KABC STNM", "72999 - KABC  00Z 29 Feb 2020|"},
      {"no time", kit, "200229/0000", "none", "72999|310"},
      {"the ground beneath its lowest level", kit, "", "",
       "The model's ground lies at 300 m; its lowest level, at 310 m, stands for it."},
      {"the ground at it", kit, "SELV = 300.0", "SELV = 310.0", "!The model's ground"},
      {"names that are not there", kit, "PRES TMPC TMWC", "PRES DWPC TMWC",
       "no column names of the profile"},
      {"a level that lacks a value", kit, "-0.10\n5700.00\n\nSTID", "-0.10\n\n\nSTID",
       "The last level is cut off and was left out."},

      {"none", csv, "TIME = 170101/0600", "TIME =", "TST|500"},
      {"an elevation", csv, "MALT = -999", "MALT = 450", "|450 44.5 -99.25|"},
      {"beyond the earth", csv, "MALT = -999", "MALT = 9001", "|500 44.5 -99.25|"},
      {"without labels other columns", csv, "MEM = TEST\nTIME = 170101/0600\nSTID =", "a\nb\nc",
       "x|500"},
  });
}

TEST(FormatsLimits, SoundingsOfExperiments) {
  const char* const text = "class_two.cls";
  const char* const site = "KTST Test Hill, XX / 72999";
  ExpectChanges({
      {"letters of three", text, site, "OUN Norman / 72357", "72357 - OUN - Norman  00Z"},
      {"of two", text, site, "OU Norman / 72357", "72357 - OU Norman  00Z"},
      {"of five", text, site, "NORMN Hill / 72357", "72357 - NORMN Hill  00Z"},
      {"with a small one", text, site, "Oun Norman / 72357", "72357 - Oun Norman  00Z"},
      {"a number of four figures", text, site, "OUN Norman / 7235", "OUN Norman  00Z"},
      {"of five letters", text, site, "OUN Norman / ABCDE", "OUN Norman  00Z"},
      {"none", text, site, "IOP 18 - CI", "IOP 18 - CI  00Z 10 Mar 2021|"},
      {"without a nominal time the release", text, "Nominal Release Time", "Another Time        ",
       "2305Z 09 Mar 2021|"},
      {"the release is told", text, "", "", "Released at 2305Z on day 09."},
      {"not where it is the time", text, "2021, 03, 09, 23:05:00", "2021, 03, 10, 00:00:00",
       "!Released"},
      {"no pressure", text, " Time  Press", " Time  Power", "x, line 13: no column of pressures"},
      {"the later form", "eol_one.eol", "101 22.24'W -101.370695", "101 22.24'W -101.5",
       "|1036 39.36 -101.5|"},
      {"no line's end", text, "1400.0 99.0 99.0 99.0 99.0 99.0 99.0\n",
       "1400.0 99.0 99.0 99.0 99.0 99.0 99.0", ";850 3 -1;", 1},
      {"cut", text, "1400.0 99.0 99.0 99.0 99.0 99.0 99.0\n", "1400.0 99.0 99.0 99.0 99.0 99.0 99.",
       "too few levels, 1 with a temperature", 1},
  });
}

TEST(FormatsLimits, OurOwnListings) {
  const char* const list = "dump_text.txt";
  const char* const sheet = "dump_sheet.csv";
  ExpectChanges({
      {"south and west", sheet, "62,51.9625,N,7.5,E", "62,51.9625,S,7.5,W", "|62 -51.96 -7.5|"},
      {"no elevation", sheet, "62,51.9625,N,7.5,E", "-999,51.9625,N,7.5,E", "|? 51.96 7.5|"},
      {"a quoted title", sheet, "Sounding Information,Testfeld M\xC3\xBCnster  12Z 03 Mar 2001",
       "Sounding Information,\"A \"\"B\"\", C  12Z 03 Mar 2001\"",
       "A \"B\", C  12Z 03 Mar 2001|62"},
      {"no table", sheet, "PR(mb),HT", "Pr(mb),HT", "x, line 1: the sounding has no levels"},
      {"feet above the ground", sheet, "HT(m MSL)", "HT(ft AGL)", "925 hPa: reported 305 m"},

      {"no elevation", list, "ELEVATION (M) = 62", "ELEVATION (M) = -999", "|? 51.96 7.5|"},
      {"fewer levels", list, "DATA LEVELS = 7", "DATA LEVELS = 2",
       "|1010.5 12.4 9.1;925 6.8 5.5;|"},
      {"none", list, "DATA LEVELS = 7", "LEVELS = 7", "the sounding has no levels"},
      {"none of them", list, "DATA LEVELS = 7", "DATA LEVELS = 0", "too few levels, 0 with"},
      {"so many", list, "DATA LEVELS = 7", "DATA LEVELS = many", "too few levels, 0 with"},
      {"no names", list, "DATA:  PR", "DATA   PR",
       "No units are stated; taken as m MSL, C and kts."},
      {"metres per second", list, "FF(kts)", "FF(m/s)", "|62 190/16;"},
      {"at once", list, "\r\nSOUNDING =", "SOUNDING =", "03 Mar 2001|62 51.96 7.5|"},
      {"lines ahead", list, "SOUNDING =", "\r\n\r\nSOUNDING =", "03 Mar 2001|62 51.96 7.5|"},
      {"too many", list, "SOUNDING =", "\r\n\r\n\r\n\r\nSOUNDING =", "x: "},

  });
}

TEST(FormatsLimits, TablesOfNames) {
  const char* const csv = "wyoming_csv.csv";
  const char* const page = "wyoming_page.html";
  ExpectChanges({
      {"another time behind the table", page, "240229/0600", "240228/1200", "06Z 29 Feb 2024|"},
      {"another number", page, "number: 1234", "number: 1235", "01234 - TSTX"},
      {"other letters", page, "identifier: TSTX", "identifier: ABCD", "01234 - TSTX"},
      {"a position that is not known", csv, "25.5000,-30.2500", "-99.99,-99.99", "|12 0 0|"},
      {"a longitude like it", csv, "25.5000,-30.2500", "-99.99,-30.25", "|12 -30.25 -99.99|"},
      {"lines ahead", csv, "time,", "a note\n\ntime,", "x  1102Z 08 Aug 2008|12"},
  });
  const std::string text = FileText(csv);
  for (const auto& [name, title] : {std::pair{"72357_1999.txt", "72357  1102Z"},
                                    {"723575_1999.txt", "723575_1999  1102Z"},
                                    {"00000_1999.txt", "00000_1999  1102Z"},
                                    {"csv_OUN.x.csv", "csv_OUN.x  1102Z"},
                                    {"plain", "plain  1102Z"}}) {
    EXPECT_TRUE(DecodeText(name, text).Record.StationTitle.starts_with(title)) << name;
  }
  for (const auto& [lines, isOne] : {std::pair{19, true}, {20, false}}) {
    const std::string below = std::string(static_cast<std::size_t>(lines), '\n') + text;
    EXPECT_EQ(DecodeText("x", below).Record.DataFormat == "WYOMING", isOne) << lines;
  }
}

}  // namespace
}  // namespace vexa::ingest
