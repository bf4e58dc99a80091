// Columns by their names and units, and what becomes of their numbers. Conversions are those of the
// units' definitions; dew points come from a table of saturation pressures.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ingest/decoded.h"
#include "ingest/html_text.h"
#include "ingest/source_columns.h"
#include "ingest/source_table.h"

namespace vexa::ingest {
namespace {

TEST(TableLimits, UnitsOfColumns) {
  const struct {
    const char* Name;
    double Is;
    std::vector<std::pair<const char*, double>> Given;
  } cases[] = {
      {"Press", 850, {{"hPa", 850}, {"mb", 850}, {"mbar", 850}, {"Pa", 85000}}},
      {"Height", 1524, {{"m", 1524}, {"gpm", 1524}, {"km", 1.524}, {"ft", 5000}, {"feet", 5000}}},
      {"Temp", 10, {{"C", 10}, {"deg C", 10}, {"oC", 10}, {"\xC2\xB0\x43", 10}, {"K", 283.15}}},
      {"Temp", -10, {{"F", 14}, {"degF", 14}}},
      {"Dir", 270, {{"deg", 270}, {"degree", 270}, {"degrees", 270}}},
      {"Speed", 20, {{"kt", 20}, {"kts", 20}, {"knot", 20}, {"knots", 20}, {"", 20}}},
      {"Speed", 19.43844, {{"m/s", 10}, {"ms", 10}, {"m s-1", 10}, {"km/h", 36}}},
  };
  for (const auto& c : cases) {
    for (const auto& [unit, given] : c.Given) {
      SCOPED_TRACE(std::string(c.Name) + ' ' + unit);
      for (const bool isApart : {true, false}) {
        const auto column = isApart ? PlanColumn(3, c.Name, unit)
                                    : PlanColumn(3, std::string(c.Name) + " (" + unit + ")");
        ASSERT_TRUE(column);
        EXPECT_EQ(column->Column, 3U);
        EXPECT_NEAR(column->ToOurs(given), c.Is, 1e-4);
        EXPECT_EQ(column->HasUnit, *unit != '\0');
      }
    }
  }
  EXPECT_TRUE(PlanColumn(0, "temperature_C")->HasUnit);
  EXPECT_TRUE(PlanColumn(0, "Speed[m/s]")->HasUnit);
  EXPECT_FALSE(PlanColumn(0, "Press (m)"));
  EXPECT_FALSE(PlanColumn(0, "Speed (furlongs)"));
  EXPECT_FALSE(PlanColumn(0, "colour"));
  // A depression in kelvins is one in degrees.
  EXPECT_EQ(PlanColumn(0, "dewpoint depression (K)").value_or(QuantityColumn{}).ToOurs(5), 5);
}

SourceLevel RowOf(const std::vector<std::string_view>& names, std::string_view row,
                  std::string* bad = nullptr) {
  Refusals refused;
  SourceLevel level;
  const auto failed = ReadRow(SplitFields(row, ','), PlanColumns(names), refused, level);
  if (bad != nullptr) *bad = failed.value_or("");
  return level;
}

TEST(TableLimits, DewPointsAndWindsFromOtherColumns) {
  // 12.27 hPa at 10 C, half of it at 0.06 C; 23.39 hPa at 20 C.
  EXPECT_NEAR(RowOf({"P", "T", "RH"}, "850,10,50").Dewpt.value_or(99), 0.06, 0.03);
  const struct {
    double Humidity;
    std::optional<double> Dewpt;
  } humidities[] = {{100, 10.0}, {120, 10.0}, {0, {}}, {-5, {}}, {301, {}}};
  for (const auto& c : humidities) {
    EXPECT_EQ(RowOf({"P", "T", "RH"}, "850,10," + std::to_string(c.Humidity)).Dewpt, c.Dewpt)
        << c.Humidity;
  }
  EXPECT_EQ(RowOf({"P", "T", "Td", "RH"}, "850,10,5,50").Dewpt, 5);
  EXPECT_EQ(RowOf({"P", "RH"}, "850,50").Dewpt, std::nullopt);
  const struct {
    const char* Components;
    std::optional<double> Dir, Spd;
  } winds[] = {{"0,-10", 0, 10},    {"-10,0", 90, 10},  {"0,10", 180, 10},
               {"10,0", 270, 10},   {"3,4", 216.87, 5}, {"3,-4", 323.13, 5},
               {"300,0", 270, 300}, {"301,0", {}, {}},  {"//,4", {}, {}}};
  for (const auto& c : winds) {
    const SourceLevel level = RowOf({"P", "U", "V"}, std::string("850,") + c.Components);
    EXPECT_EQ(level.Spd, c.Spd) << c.Components;
    ASSERT_EQ(level.Dir.has_value(), c.Dir.has_value()) << c.Components;
    EXPECT_NEAR(level.Dir.value_or(0), c.Dir.value_or(0), 0.005) << c.Components;
  }
  EXPECT_EQ(RowOf({"P", "WD", "WS", "U", "V"}, "850,90,5,3,4").Dir, 90);
  EXPECT_EQ(RowOf({"P", "WD", "WS", "U", "V"}, "850,90,,3,4").Spd, 5);
  std::string bad;
  RowOf({"P", "U", "V"}, "850,3, x4", &bad);
  EXPECT_EQ(bad, "x4");
  RowOf({"P", "U", "V"}, "850,3", &bad);
  EXPECT_EQ(bad, "");
}

TEST(TableLimits, WhereATableBegins) {
  const struct {
    const char *About, *Text;
    int FirstRow;  // 0: none
  } cases[] = {
      {"at once", "P T\n1000 20\n", 2},
      {"behind units, dashes and a blank", "P T\nhPa C\n-- --\n\n1000 20\n", 5},
      {"behind four lines", "P T\na\nb\nc\nd\n1000 20\n", 6},
      {"behind five", "P T\na\nb\nc\nd\ne\n1000 20\n", 0},
      {"names of several words", "pressure (hPa) wind speed (kts)\n1000 20\n", 2},
      {"with other columns", "P T\n1000 20 15\n", 0},
      {"without a pressure", "Z T\n1000 20\n", 0},
      {"with nothing but one", "P x\n1000 20\n", 0},
      {"under a comment's mark", "# P T\n1000 20\n", 2},
      {"numbers are no names", "1000 20\n900 15\n", 0},
      {"a row of one number", "P T\n1000 M\n", 0},
      {"a time and a number", "time P T\n12:00 1000 20\n", 2},
      {"tabs", "P\tT\n1000\t20\n", 2},
      {"commas", "P,T\n1000,20\n", 2},
      {"nothing", "P T\n", 0},
  };
  for (const auto& c : cases) {
    const auto layout = LayoutAt(SourceText("x", c.Text), 1);
    EXPECT_EQ(layout ? layout->FirstRow : 0, c.FirstRow) << c.About;
  }
  const SourceText later("x", "a\nb\nP T\n1000 20\n");
  EXPECT_TRUE(FindLayout(later, 3));
  EXPECT_FALSE(FindLayout(later, 2));
}

// Of an open last row without its end figures may be lost; of a whole number of columns none is.
TEST(TableLimits, WhereATableEnds) {
  const struct {
    const char *About, *Text;
    int Levels;
    bool IsCut;
  } cases[] = {
      {"blank lines pass", "P T WS (kt)\n1000 20 5\n\n900 15 5\n", 2, false},
      {"words end it", "P T WS (kt)\n1000 20 5\n900 15 5\nend of it\n800 10 5\n", 2, false},
      {"a last row that is whole", "P T WS (kt)\n1000 20 5\n900 15 5", 2, false},
      {"one that is not", "P T WS (kt)\n1000 20 5\n900 15 5\n800 10", 2, true},
      {"one that ends", "P T WS (kt)\n1000 20 5\n900 15 5\n800 10\n", 3, false}};
  for (const auto& c : cases) {
    const Decoded decoded = DecodeText("x", c.Text);
    ASSERT_FALSE(decoded.Failed) << c.About << decoded.Failed->Detail;
    EXPECT_EQ(decoded.Record.NumTempLevels(), c.Levels) << c.About;
    EXPECT_EQ(decoded.HasNote("The last row is cut off"), c.IsCut) << c.About;
  }
}

TEST(TableLimits, PositionsInColumnsAndLabels) {
  const struct {
    const char *Names, *Rows;
    double Lat, Lon;
  } cases[] = {{"Lat,Lon", "90,180", 90, 180},
               {"Lat,Lon", "-90,-180", -90, -180},
               {"Lat,Lon", "90.1,10\n900,1,50,20", 50, 20},
               {"Lat,Lon", "-90.1,10\n900,1,50,20", 50, 20},
               {"Lat,Lon", "40,180.1\n900,1,50,20", 50, 20},
               {"Lat,Lon", "40,-180.1\n900,1,50,20", 50, 20},
               {"Lat (S),Lon (W)", "40,10", -40, -10},
               {"Lat (N),Lon (E)", "40,10", 40, 10},
               {"Lat,Lon", "40,\n900,1,50,20", 50, 20},
               {"x,Lon", "40,10", 0, 0}};
  for (const auto& c : cases) {
    const Decoded decoded =
        DecodeText("x", std::string("P,T,") + c.Names + "\n1000,5," + c.Rows + "\n800,-5,0,0\n");
    ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
    EXPECT_EQ(decoded.Record.LatSigned, c.Lat) << c.Names << c.Rows;
    EXPECT_EQ(decoded.Record.LonSigned, c.Lon) << c.Names << c.Rows;
  }
  const std::pair<const char*, std::optional<double>> degrees[] = {
      {"40.5875 N", 40.5875}, {"105 W", -105.0}, {"33 S", -33.0}, {"-33.5", -33.5},
      {" at 12.5", 12.5},     {"none", {}},      {"", {}},        {"9", 9.0}};
  for (const auto& [text, value] : degrees) EXPECT_EQ(DegreesIn(text), value) << text;
}

// Lines above the table name station, place and time; of several the first counts.
TEST(TableLimits, LabelsAboveATable) {
  const Decoded decoded = DecodeText(
      "x",
      "Station name: Hill\nstation: Other\nLatitude = 40.5 S\nlatitude: 10\nLongitude\t20.25 E\n"
      "longitude: 5\nElevation: 120 m\nHeight: 5\nDate: 2024-05-04 12:30\n\n"
      "P Colour T\n1000 3 20\n900 4 15\n");
  ASSERT_FALSE(decoded.Failed) << decoded.Failed->Detail;
  EXPECT_EQ(decoded.Record.StationTitle, "Hill  1230Z 04 May 2024");
  EXPECT_EQ(decoded.Record.LatSigned, -40.5);
  EXPECT_EQ(decoded.Record.LonSigned, 20.25);
  EXPECT_EQ(decoded.Record.ElevM, 120);
  EXPECT_TRUE(decoded.HasNote("Columns that are not read: Colour."));
  // Some 300 characters of names are told.
  for (const auto& [size, says] : {std::pair{300, "x, b."}, {301, "x and more."}}) {
    const std::string unread(static_cast<std::size_t>(size), 'x');
    EXPECT_TRUE(DecodeText("x", "P,T," + unread + ",b\n1000,20,1,1\n900,15,1,1\n").HasNote(says));
  }
  for (const auto& [lines, isOne] : {std::pair{99, true}, {100, false}}) {
    const std::string text =
        std::string(static_cast<std::size_t>(lines), '\n') + "P T\n1000 20\n900 15\n";
    EXPECT_EQ(DecodeText("x", text).Failed.has_value(), !isOne) << lines;
  }
}

TEST(TableLimits, NamesOfStationsInListings) {
  const struct {
    const char *Opening, *Title;
  } cases[] = {
      {"72357 OUN Norman", "72357 - OUN - Norman"},
      {"72357  Norman", "72357 - Norman"},
      {"72357 Norman", "72357 - Norman"},
      {"72357 K0A9 Norman", "72357 - K0A9 - Norman"},
      {"72357 AZ", "72357 - AZ"},
      {"72357 ABCDE", "72357 - ABCDE"},
      {"72357 AbC", "72357 - AbC"},
      {"72357 A-C", "72357 - A-C"},
      {"7235 Norman", "7235 - Norman"},
      {"00000 Norman", "00000 Norman"},
      {"OUN", "OUN"},
  };
  for (const auto& c : cases) {
    const std::string text = std::string(c.Opening) +
                             " Observations at 06Z 29 Feb 2024\n\n"
                             "   PRES   HGHT   TEMP   DWPT\n    hPa     m      C      C \n"
                             " 1000.0    100   20.0   15.0\n  900.0   1000   15.0   10.0\n";
    EXPECT_EQ(DecodeText("p", text).Record.StationTitle,
              std::string(c.Title) + "  06Z 29 Feb 2024");
  }
}

TEST(TableLimits, TagsAndEntities) {
  const struct {
    const char *Page, *Text;
  } cases[] = {{"<pre>a &lt; b</pre>", "a < b"},
               {"1 < 2 > 0", "1 < 2 > 0"},
               {"a<br\n>b", "a\nb"},
               {"a</p>b<!-- c -->d", "abd"},
               {"&amp;lt;&gt;&nbsp;&quot;", "&lt;> \""},
               {"&copy; <b", "&copy; <b"},
               {"<zz>y", "y"},
               {"<ZZ>y", "y"},
               {"<1>", "<1>"}};
  for (const auto& c : cases) EXPECT_EQ(WithoutTags(SourceText("x", c.Page)).Bytes(), c.Text);
  EXPECT_TRUE(IsHtml(SourceText("x", "a <b> <PRE>")));
  EXPECT_FALSE(IsHtml(SourceText("x", "a <b> <p>")));
  EXPECT_TRUE(IsHtml(SourceText("x", std::string(8187, ' ') + "<html>")));
  EXPECT_FALSE(IsHtml(SourceText("x", std::string(8188, ' ') + "<html>")));
}

// What a server says in place of data.
TEST(TableLimits, Refusals) {
  const struct {
    std::string Text, Says;
  } cases[] = {
      {"a\n  Sorry, no data\n", "x: Sorry, no data"},
      {"Software error:\n\nContent-type: text\n no table", "x: Software error: no table"},
      {"unable to retrieve:\n", "x: unable to retrieve:"},
      {"Software error:\nno table", "x: Software error: no table"},
      {std::string(99, '\n') + "Can't get it", "x: Can't get it"},
      {std::string(100, '\n') + "Can't get it", "x: in none of the known formats"},
      {"Sorry" + std::string(195, '!'), "x: Sorry" + std::string(195, '!')},
      {"Sorry" + std::string(196, '!'), "x: Sorry" + std::string(195, '!')},
      {"I am sorry", "x: in none of the known formats"},
      {" \n\t\n", "x: the file is empty"},
  };
  for (const auto& c : cases) {
    const Decoded decoded = DecodeText("x", c.Text);
    ASSERT_TRUE(decoded.Failed);
    EXPECT_EQ(decoded.Failed->Detail, c.Says);
  }
}

}  // namespace
}  // namespace vexa::ingest
