#include "analysis/severe_table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "config/options.h"
#include "core/files.h"
#include "core/units.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

TEST(SevereTable, OffersItsEntriesInOrder) {
  const auto entries = SevereEntries();
  ASSERT_EQ(entries.size(), 43u);
  for (int number = 1; number <= 43; ++number) {
    EXPECT_EQ(IsSevereEntry(number), number != 1 && number != 43) << number;
    if (!IsSevereEntry(number)) continue;
    EXPECT_NE(FindIndex(entries[static_cast<std::size_t>(number) - 1].Index), nullptr) << number;
    EXPECT_EQ(CheckLimits(DefaultSevereRow(number)), "") << number;
  }
  EXPECT_FALSE(IsSevereEntry(0));
  EXPECT_FALSE(IsSevereEntry(44));
}

TEST(SevereTable, IsKeptAndRestored) {
  const test::TemporaryFolder folder;
  const auto path = folder.Path() / "day.TBL";
  SevereTable table{"Gewitter, Süd", {DefaultSevereRow(25), DefaultSevereRow(2)}};
  table.Rows[0].Limits.From = {-1.5, -1.5, -5.25};  // two colours may share a limit
  table.Rows[1].Limits.From = {75, 100, 100};
  ASSERT_FALSE(SaveTable(path, table));
  const Outcome<SevereTable> back = RestoreTable(path);
  ASSERT_TRUE(back) << back.Error().Detail;
  EXPECT_EQ(back.Value(), table);

  EXPECT_EQ(ReadFile(path).Value(),
            "\"This is a VEXA system file -- Do Not Alter.\"\r\n\"Gewitter, Süd\",2\r\n"
            "\"LI\",-1.5,-1.5,-5.25,0,0,0\r\n\"200mb Wind\",75,100,100,0,0,0\r\n");

  const std::pair<std::string, const char*> damaged[] = {
      {"1\n\"Kl\",1,2,3,0,0,0\n", "Severe Weather Table index error."},
      {"1\n2.5,1,2,3,0,0,0\n", "Severe Weather Table index error."},
      {"1\n43,1,2,3,0,0,0\n", "Severe Weather Table index error."},
      {"2\n22,20,30,40,0,0,0\n", "entry"},
      {"1\n40,5000,6000,7000,4000,11000,10000\n", "a range ends below its beginning"},
      {"1\n40,5000,6000,7000,12000,13000,10000\n", "range must lie within the one before it"},
      {"1\n22,40,30,20,0,0,0\n", "the limits must rise"},
      {"1\n22,20,\"many\",40,0,0,0\n", "threshold"}};
  for (const auto& [rows, reason] : damaged) {
    ASSERT_FALSE(SaveFile(path, "\"This is a VEXA system file -- Do Not Alter.\"\n\"x\"," + rows));
    const Outcome<SevereTable> bad = RestoreTable(path);
    ASSERT_FALSE(bad) << rows;
    EXPECT_NE(bad.Error().Detail.find(reason), std::string::npos) << bad.Error().Detail;
  }
}

// Steps may share a limit, but not go back; a range may be as wide as the one before it, but hold
// something.
TEST(SevereTable, LimitsGrowWorse) {
  const auto check = [](std::string_view label, SevereLimits limits) {
    const auto entries = SevereEntries();
    const auto found = std::ranges::find(entries, label, &SevereEntry::Index);
    return CheckLimits({static_cast<int>(found - entries.begin()) + 1, limits}).empty();
  };
  EXPECT_TRUE(check("KI", {{20, 20, 20}, {}}));
  EXPECT_FALSE(check("KI", {{20, 19.9, 40}, {}}));
  EXPECT_FALSE(check("KI", {{20, 30, 29.9}, {}}));
  EXPECT_TRUE(check("LI", {{0, 0, 0}, {}}));
  EXPECT_FALSE(check("LI", {{0, 0.1, -7}, {}}));
  EXPECT_FALSE(check("LI", {{0, -4, -3.9}, {}}));
  EXPECT_TRUE(check("WBZ Hgt", {{5000, 5000, 5000}, {9000, 9000, 5000}}));
  EXPECT_FALSE(check("WBZ Hgt", {{5000, 5000, 5000}, {9000, 9000, 4999}}));
  EXPECT_FALSE(check("WBZ Hgt", {{5000, 4999, 5000}, {9000, 9000, 9000}}));
  EXPECT_FALSE(check("WBZ Hgt", {{5000, 5000, 5000}, {9000, 9001, 9000}}));
  EXPECT_FALSE(check("KI", {{20, std::nan(""), 40}, {}}));
  EXPECT_FALSE(check("KI", {{20, 30, 40}, {0, HUGE_VAL, 0}}));
}

TEST(SevereTable, HoldsFiveHundredRows) {
  const test::TemporaryFolder folder;
  const auto path = folder.Path() / "long.TBL";
  SevereTable table{"long", std::vector<SevereRow>(500, DefaultSevereRow(2))};
  ASSERT_FALSE(SaveFile(path, WriteSevereTable(table)));
  EXPECT_TRUE(RestoreTable(path));
  table.Rows.push_back(DefaultSevereRow(2));
  ASSERT_FALSE(SaveFile(path, WriteSevereTable(table)));
  EXPECT_FALSE(RestoreTable(path));
}

// By hand, by the numbers of the files of before: 2 is the first entry, 42 the last.
TEST(SevereTable, EntriesOfOldFilesHaveNumbers) {
  const test::TemporaryFolder folder;
  const auto path = folder.Path() / "old.TBL";
  ASSERT_FALSE(SaveFile(path,
                        "\"This is a VEXA system file -- Do Not Alter.\"\r\n\"Summer\",5\r\n"
                        "22,25,32,41,0,0,0\r\n42,10,50,80,0,0,0\r\n2,75,100,125,0,0,0\r\n"
                        "40,5000,6000,7000,12000,11000,10000\r\n30,100,200,300,0,0,0\r\n"));
  const Outcome<SevereTable> table = RestoreTable(path);
  ASSERT_TRUE(table) << table.Error().Detail;
  std::vector<std::string_view> indices;
  for (const SevereRow& row : table.Value().Rows) {
    indices.push_back(SevereEntries()[static_cast<std::size_t>(row.Entry) - 1].Index);
  }
  EXPECT_EQ(indices,
            (std::vector<std::string_view>{"KI", "WMSI", "200mb Wind", "WBZ Hgt", "s-rH 0-3km"}));
  EXPECT_EQ(table.Value().Rows[0].Limits.From, (std::array<double, 3>{25, 32, 41}));
}

const SevereValue& ValueOf(const std::vector<SevereValue>& values, std::string_view text) {
  return *std::ranges::find(values, text, &SevereValue::Text);
}

// The entries name their units: what is shown elsewhere in m/s, feet or Fahrenheit is not here.
TEST(SevereTable, KeepsTheUnitsOfItsEntries) {
  Options options;
  options.Speed = SpeedUnits::MetersPerSecond;
  options.ThermoTemp = TempUnits::Fahrenheit;
  options.ThermoHeight = LengthUnits::Feet;
  const auto values =
      FillSevereTable(DefaultSevereTable(), Analyse(test::ReferenceConvective(), options));
  const std::pair<const char*, const char*> cases[] = {
      {"T1/T2 Gust (kt)", "28/40"},
      {"500 mb Wind Speed (kt)", "52"},
      {"Surface Dewpoint (C)", "18.8"},
      {"LFC-LCL height (m)", "1366"},
      {"WBZ - WetBulb Zero Hgt (ft,AGL)", "10570"}};
  for (const auto& [text, shown] : cases) EXPECT_EQ(ValueOf(values, text).Shown, shown);
  EXPECT_EQ(ValueOf(values, "T1/T2 Gust (kt)").Step, 1);  // 35 … 50 kt
}

// The same weather mirrored to the southern hemisphere warns the same way; its numbers keep their
// sign and say which way they turn.
TEST(SevereTable, WarnsOfCyclonicTurningOnBothHemispheres) {
  const SoundingRecord north = test::ReferenceConvective();
  const SoundingRecord south = test::Mirrored(north);
  const auto expected = FillSevereTable(DefaultSevereTable(), Analyse(north, {}));
  const AnalysisResults results = Analyse(south, {});
  const auto found = FillSevereTable(DefaultSevereTable(), results);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    SCOPED_TRACE(expected[i].Text);
    // These stand on directions of the northern hemisphere.
    if (expected[i].Text == "SWEAT Index") continue;
    EXPECT_EQ(found[i].Step, expected[i].Step);
  }
  for (const char* text : {"EHI - Energy Helicity Index", "Supercell Composite Parameter (SCP)",
                           "srH - storm-relative Helicity (0-3 km)"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(ValueOf(found, text).Step, ValueOf(expected, text).Step);
    EXPECT_GT(ValueOf(found, text).Step, 1);
    EXPECT_EQ(ValueOf(found, text).Shown, "-" + ValueOf(expected, text).Shown);
    EXPECT_EQ(ValueOf(found, text).Note, "cyclonic");
    EXPECT_EQ(ValueOf(expected, text).Note, "");
  }
  const std::string explained = Explain(*FindIndex("s-rH 0-3km"), south, results, {});
  EXPECT_NE(explained.find("negative, south of the equator"), std::string::npos) << explained;
  // The anticyclonic mover does not warn.
  Options options;
  options.Mover = StormMover::Right;
  const auto other = FillSevereTable(DefaultSevereTable(), Analyse(south, options));
  EXPECT_LT(ValueOf(other, "srH - storm-relative Helicity (0-3 km)").Step, 1);
}

// A Richardson number is low for strong shear, and for want of energy.
TEST(SevereTable, RichardsonNumberNeedsEnergy) {
  AnalysisResults results = Analyse(test::ReferenceConvective(), {});
  const std::size_t chosen = static_cast<std::size_t>(results.ChosenLift);
  for (const double cape : {99.9, 100.0}) {
    results.Forced[chosen].CapeTotal = cape;
    const auto values = FillSevereTable(DefaultSevereTable(), results);
    const SevereValue& value = ValueOf(values, "BRN - Bulk Richardson No.");
    EXPECT_EQ(value.Step > 0, cape == 100);
    EXPECT_EQ(value.Note, cape == 100 ? "" : "CAPE under 100 J/kg");
  }
  // Warming with height, so without CAPE, in a sheared wind.
  const SoundingRecord stable = test::Profile(
      {{1000, -20, -25}, {850, -10, -20}, {700, -12, -30}, {500, -25, -40}, {300, -50, -60}},
      {{0, 180, 5}, {1000, 200, 20}, {3000, 230, 30}, {6000, 250, 50}, {9000, 260, 60}});
  const auto none = FillSevereTable(DefaultSevereTable(), Analyse(stable, {}));
  EXPECT_EQ(ValueOf(none, "BRN - Bulk Richardson No.").Shown, "0.0");
  EXPECT_EQ(ValueOf(none, "BRN - Bulk Richardson No.").Step, 0);
}

}  // namespace
}  // namespace vexa::analysis
