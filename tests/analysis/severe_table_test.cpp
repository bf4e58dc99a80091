#include "analysis/severe_table.h"

#include "analysis/analysis.h"
#include "analysis/index_table.h"
#include "core/files.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

TEST(SevereTable, OffersItsEntriesInOrder) {
  const auto entries = SevereEntries();
  ASSERT_EQ(entries.size(), 43u);
  EXPECT_EQ(entries[0].Text, ".TBL");
  EXPECT_EQ(entries[8].Text, "BRN Shear (m\u00B2/s\u00B2)");
  EXPECT_EQ(entries[12].Text, "KO Index");
  EXPECT_EQ(entries[26].Text, "NCAPE  (Normalized CAPE)");
  EXPECT_EQ(entries[41].Text, "WMSI - Wet Microburst Severity Index");
  EXPECT_EQ(entries[42].Text, "Severe Weather Table index error.");
  for (int number = 1; number <= 43; ++number) {
    EXPECT_EQ(IsSevereEntry(number), number != 1 && number != 43) << number;
    if (!IsSevereEntry(number)) continue;
    EXPECT_NE(FindIndex(entries[static_cast<std::size_t>(number) - 1].Index), nullptr) << number;
    EXPECT_EQ(CheckLimits(DefaultSevereRow(number)), "") << number;
  }
  EXPECT_FALSE(IsSevereEntry(0));
  EXPECT_FALSE(IsSevereEntry(44));
}

TEST(SevereTable, GradesTheConvectiveSounding) {
  const AnalysisResults results = Analyse(test::ReferenceConvective(), {});
  const std::vector<SevereValue> values = FillSevereTable(DefaultSevereTable(), results);
  ASSERT_EQ(values.size(), 41u);
  const auto find = [&](std::string_view text) {
    for (const SevereValue& value : values) {
      if (value.Text == text) return value;
    }
    ADD_FAILURE() << text;
    return SevereValue{};
  };
  EXPECT_EQ(find("K Index").Shown, "31.9");
  EXPECT_EQ(find("K Index").Step, 2);                    // 30 … 40
  EXPECT_EQ(find("LI - Lifted Index").Step, 3);          // -8.1 <= -7
  EXPECT_EQ(find("BRN - Bulk Richardson No.").Step, 2);  // 48 <= 50
  EXPECT_EQ(find("WBZ - WetBulb Zero Hgt (ft,AGL)").Shown, "10570");
  EXPECT_EQ(find("WBZ - WetBulb Zero Hgt (ft,AGL)").Step, 2);  // 6000 … 11000
  EXPECT_EQ(find("T1/T2 Gust (kt)").Shown, "28/40");
  const auto none = FillSevereTable(DefaultSevereTable(), Analyse(SoundingRecord{}, {}));
  EXPECT_EQ(none[0].Shown, "--");
  EXPECT_EQ(none[0].Step, 0);
  EXPECT_FALSE(none[0].Reason.empty());
}

TEST(SevereTable, IsKeptAndRestored) {
  const test::TemporaryFolder folder;
  const auto path = folder.Path() / "day.TBL";
  SevereTable table{"Gewitter, Süd", {DefaultSevereRow(25), DefaultSevereRow(2)}};
  table.Rows[0].Limits.From = {-1.5, -3, -5.25};
  ASSERT_FALSE(SaveTable(path, table));
  const Outcome<SevereTable> back = RestoreTable(path);
  ASSERT_TRUE(back) << back.Error().Detail;
  EXPECT_EQ(back.Value(), table);

  struct Case {
    const char* about;
    const char* rows;
    const char* reason;
  };
  const Case cases[] = {
      {"bad entry", "\"x\",1\n43,1,2,3,0,0,0\n", "Severe Weather Table index error."},
      {"short", "\"x\",2\n22,20,30,40,0,0,0\n", "entry"},
      {"falling limits", "\"x\",1\n22,40,30,20,0,0,0\n", "the limits must rise"},
      {"no number", "\"x\",1\n22,20,\"many\",40,0,0,0\n", "threshold"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.about);
    const std::string text =
        std::string("\"This is a VEXA system file -- Do Not Alter.\"\n") + c.rows;
    ASSERT_FALSE(SaveFile(path, text));
    const Outcome<SevereTable> bad = RestoreTable(path);
    ASSERT_FALSE(bad);
    EXPECT_NE(bad.Error().Detail.find(c.reason), std::string::npos) << bad.Error().Detail;
  }
}

TEST(SevereTable, NoEnergyIsNoAlarm) {
  // Warming with height, so without CAPE, in a sheared wind.
  const SoundingRecord stable = test::Profile(
      {{1000, -20, -25}, {850, -10, -20}, {700, -12, -30}, {500, -25, -40}, {300, -50, -60}},
      {{0, 180, 5}, {1000, 200, 20}, {3000, 230, 30}, {6000, 250, 50}, {9000, 260, 60}});
  const AnalysisResults results = Analyse(stable, {});
  for (const SevereValue& value : FillSevereTable(DefaultSevereTable(), results)) {
    if (value.Text == "BRN - Bulk Richardson No.") {
      EXPECT_EQ(value.Shown, "0.0");
      EXPECT_EQ(value.Step, 0);
      return;
    }
  }
  FAIL() << "no BRN in the table";
}

}  // namespace
}  // namespace vexa::analysis
