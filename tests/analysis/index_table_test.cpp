#include "analysis/index_table.h"

#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "config/options.h"
#include "core/numbers.h"
#include "support/soundings.h"

namespace vexa::analysis {
namespace {

using test::Profile;

IndexValue Index(std::string_view label, const SoundingRecord& sounding,
                 const Options& options = {}) {
  const IndexRow* row = FindIndex(label);
  if (row == nullptr) {
    ADD_FAILURE() << "no index " << label;
    return {};
  }
  return ComputeIndex(*row, sounding, Analyse(sounding, options), options);
}

// Computed with an independent script from the published formulas. What passes through GetTEMP is
// rounded to hundredths there.
TEST(IndexTable, OfTheReferenceSounding) {
  constexpr std::size_t kLabelWidth = 10;
  const SoundingRecord sounding = test::ReferenceConvective();
  std::ifstream rows(test::TestData("reference_indices.txt"));
  int compared = 0;
  for (std::string row; std::getline(rows, row);) {
    if (row.starts_with('#')) continue;
    SCOPED_TRACE(row);
    std::istringstream numbers(row.substr(kLabelWidth));
    double value = 0, tolerance = 0;
    ASSERT_TRUE(numbers >> value >> tolerance);
    const IndexValue index = Index(Trim(row.substr(0, kLabelWidth)), sounding);
    EXPECT_NEAR(index.Value, value, tolerance) << index.Reason;
    ++compared;
  }
  EXPECT_GE(compared, 80);
  EXPECT_EQ(ShowIndex(Index("MBE Vector", sounding), {}).Number, "281/32");
  EXPECT_NEAR(Index("Wind-Chill", test::ReferenceWinter()).Value, -6.56, 0.01);
  EXPECT_NEAR(Index("Fog Point", test::ReferenceWinter()).Value, -2.48, 0.02);
  EXPECT_NEAR(Index("Fog FSI", test::ReferenceWinter()).Value, 33.9, 0.1);
}

// The day's heating: the mixing layer and what depends on it.
TEST(IndexTable, OfTheReferenceSoundingWarmed) {
  SoundingRecord warm = test::ReferenceConvective();
  warm.Temp(1) = 31;
  EXPECT_NEAR(Index("Mixing Hgt", warm).Value, 1260, 5);
  EXPECT_NEAR(Index("Vent Index", warm).Value, 15953, 100);

  Options fast;
  fast.Dcape = DcapeMode::Fast;
  EXPECT_NEAR(Index("DCAPE 6km", test::ReferenceConvective(), fast).Value, 1397, 3);
}

TEST(IndexTable, ExplainsAValueByItsInputs) {
  const SoundingRecord sounding = test::ReferenceConvective();
  const Options options;
  const AnalysisResults results = Analyse(sounding, options);
  const std::string text = Explain(*FindIndex("KI"), sounding, results, options);
  for (const char* part : {"K Index: 31.9 C", "(T850 - T500)", "T 850 hPa", "18.6 C", "Td 700 hPa",
                           "-3.2 C", "George 1960"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " in\n" << text;
  }
  for (const IndexRow& row : IndexTable()) {
    const IndexValue index = ComputeIndex(row, sounding, results, options);
    // Alone as among all the others, with which it shares what it reads.
    EXPECT_EQ(IndexOf(results, row)->Value, index.Value) << row.Label;
    EXPECT_EQ(IndexOf(results, row)->Reason, index.Reason) << row.Label;
    const std::string explained = Explain(row, sounding, results, options);
    // What a formula reads twice is told once.
    std::multiset<std::string> lines;
    std::istringstream reading(explained);
    for (std::string line; std::getline(reading, line);) lines.insert(line);
    for (const std::string& line : lines)
      EXPECT_TRUE(line.empty() || lines.count(line) == 1) << line;
    EXPECT_EQ(explained.find("-- (") != std::string::npos, !index.Exists()) << explained;
  }
}

TEST(IndexTable, ShowsValuesInTheUnitsOfTheOptions) {
  Options options;
  const auto shown = [&](const char* label) {
    return ShownValue(Index(label, test::ReferenceConvective()), options, 357);
  };
  EXPECT_EQ(shown("DownRush-T"), "20.7 C");
  EXPECT_EQ(shown("LCL Hgt"), "1531 m");
  options.ThermoTemp = TempUnits::Fahrenheit;
  options.ThermoHeight = LengthUnits::Feet;
  options.Heights = HeightMode::Agl;
  EXPECT_EQ(shown("DownRush-T"), "69.2 F");
  EXPECT_EQ(shown("LCL Hgt"), "3852 ft AGL");  // 1531 m less 357 m
  options.ThermoTemp = TempUnits::Kelvin;
  EXPECT_EQ(shown("DownRush-T"), "293.9 K");  // 20.69 C
}

// Speeds in m/s: T1 28.4 kt, T2 40.1 kt, Windex 53.8 kt. What programs read stays in the unit of
// the row, and no row's name speaks of a unit that the value need not have.
TEST(IndexTable, NameNumberAndUnitBelongTogether) {
  const SoundingRecord sounding = test::ReferenceConvective();
  Options options;
  options.Speed = SpeedUnits::MetersPerSecond;
  const AnalysisResults results = Analyse(sounding, options);
  const struct {
    const char* Label;
    const char* Shown;
    const char* InRowUnits;
  } cases[] = {{"T1/T2 Gust", "15/21 m/s", "28/40 kt"}, {"MBE Vector", "281/17 m/s", "281/32 kt"},
               {"WindEX", "28 m/s", "54 kt"},           {"500mb Wind", "27 m/s", "52 kt"},
               {"T1Gust", "15 m/s", "28 kt"},           {"KI", "31.9 C", "31.9 C"},
               {"WBZ Hgt", "3222 m AGL", "3222 m AGL"}, {"Lift Mode", "LFC", "LFC"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Label);
    const IndexValue& index = *IndexOf(results, *FindIndex(c.Label));
    EXPECT_EQ(ShownValue(index, options, sounding.ElevM), c.Shown);
    EXPECT_EQ(ShowIndex(index, kRowUnits).Text(), c.InRowUnits);
    const std::string explained = Explain(*index.Row, sounding, results, options);
    EXPECT_NE(explained.find(std::string(": ") + c.InRowUnits), std::string::npos) << explained;
  }
  for (const IndexRow& row : IndexTable()) {
    for (const char* unit : {"(kt)", "(C)", "(C/km)", "(mb)", "(m)", "(inches)"}) {
      EXPECT_EQ(row.Name.find(unit), std::string_view::npos) << row.Name;
    }
  }
}

// The reference sounding cut at 250 hPa, where its parcel is still warmer: what rests on its CAPE
// is only a bound.
TEST(IndexTable, ValuesCutByTheEndOfTheDataSaySo) {
  const SoundingRecord whole = test::ReferenceConvective();
  const SoundingRecord cut = test::EndingAt(whole, 250);
  const AnalysisResults full = Analyse(whole, {});
  const AnalysisResults results = Analyse(cut, {});
  const std::set<std::string_view> bounds = {
      "CAPE total", "CAPE+ only", "BRN",       "Craven",    "Supercell", "EHI 0-xkm", "VGP 0-xkm",
      "MVV",        "WMSI",       "cclEL Hgt", "lfcEL Hgt", "STP fixed", "SHIP",      "DCP"};
  for (std::size_t i = 0; i < results.Indices.size(); ++i) {
    const IndexValue& index = results.Indices[i];
    SCOPED_TRACE(index.Row->Label);
    EXPECT_FALSE(full.Indices[i].IsBound);
    EXPECT_EQ(index.IsBound, bounds.contains(Trim(index.Row->Label)));
    if (index.IsBound) {
      EXPECT_GT(full.Indices[i].Value, index.Value);
      EXPECT_EQ(ShownValue(index, {}, 357).front(), '>');
    }
  }
  EXPECT_EQ(IndexOf(results, *FindIndex("NCAPE"))->Reason, "the sounding ends below the EL");
  EXPECT_EQ(ElText(results.Chosen()), "above 250");
  EXPECT_EQ(EnergyText(results.Chosen(), &ParcelAscent::CapeDepth), "12");  // 3 km lie below
  EXPECT_EQ(ElText(full.Chosen(), "###0.0"), "187.5");
  EXPECT_FALSE(full.Chosen().IsCut);
}

// Tenths meet a limit exactly, though their difference in binary falls short of it.
TEST(IndexTable, LimitsHoldForDifferencesOfTenths) {
  const auto valueOf = [](const char* label, const SoundingRecord& sounding) {
    return IndexOf(Analyse(sounding, {}), *FindIndex(label))->Value;
  };
  // VT 25.0, so that A is 0: TT 43.0 less the depression of 5 K at 700 hPa.
  const SoundingRecord cold = test::Profile({{1000, -10, -15},
                                             {850, -20.05, -27.05},
                                             {700, -30, -35},
                                             {500, -45.05, -60},
                                             {300, -60, -70}});
  EXPECT_NEAR(valueOf("S{TT}", cold), 38, 1e-6);
  // Middle variant: 850 - 700 hPa 9.0 K (2), depression 28.4 - 15.4 = 13 K (3).
  SoundingRecord dry = test::Profile(
      {{900, 32, 16}, {850, 28.4, 15.4}, {700, 19.4, 0}, {500, -5, -20}, {300, -40, -60}});
  SetElevation(dry, 600);
  EXPECT_EQ(valueOf("Haines", dry), 5);
}

// Levels whose wind was not observed: every value is that of the winds that were.
TEST(IndexTable, EmptyWindsChangeNothing) {
  for (const SoundingRecord& whole : {test::ReferenceConvective(), test::ReferenceWinter()}) {
    const SoundingRecord empty = test::WithEmptyWinds(whole);
    const AnalysisResults expected = Analyse(whole, {});
    const AnalysisResults found = Analyse(empty, {});
    for (std::size_t i = 0; i < expected.Indices.size(); ++i)
      EXPECT_EQ(found.Indices[i].Value, expected.Indices[i].Value)
          << expected.Indices[i].Row->Label;
    EXPECT_EQ(found.Layers.Turbulence.size(), expected.Layers.Turbulence.size());
    EXPECT_EQ(found.Winter.SnowSquall, expected.Winter.SnowSquall);
    EXPECT_EQ(WindAtHeight(empty, 1250).Value.Spd, WindAtHeight(whole, 1250).Value.Spd);
  }
}

TEST(IndexTable, SaysWhyThereIsNoValue) {
  const struct {
    const char* about;
    const char* label;
    SoundingRecord sounding;
    const char* reason;
  } cases[] = {
      {"starts above", "KI", Profile({{812, 10, 5}, {700, 2, -3}, {400, -20, -30}}),
       "no 850 hPa level: the sounding starts at 812 hPa"},
      {"ends below", "VT", Profile({{1000, 20, 15}, {700, 2, -3}}),
       "no 500 hPa level: the sounding ends at 700 hPa"},
      {"dew point missing", "CT", Profile({{1000, 20, 999.9}, {700, 2, 999.9}, {400, -25, 999.9}}),
       "no dew point at 850 hPa"},
      {"missing at the last level", "CT", Profile({{1000, 20, 12}, {850, 12, 999.9}}),
       "no dew point at 850 hPa"},
      {"missing at the first level", "CT", Profile({{850, 12, 999.9}, {400, -25, -40}}),
       "no dew point at 850 hPa"},
      {"plateau", "Boyden", Profile({{690, 10, 5}, {400, -20, -30}}),
       "the surface lies above 700 hPa"},
      {"no shear", "BRN", Profile({{1000, 20, 15}, {400, -20, -30}}),
       "no winds between the ground and 6 km"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.about);
    const IndexValue index = Index(c.label, c.sounding);
    EXPECT_EQ(index.Value, kNone);
    EXPECT_EQ(index.Reason, c.reason);
  }
  // A parcel that starts at 500 hPa is as warm there as its surroundings.
  Options surface;
  surface.Lpl = LiftSource::Surface;
  EXPECT_NEAR(Index("LI", Profile({{500, 0, -5}, {300, -30, -40}, {200, -50, -60}}), surface).Value,
              0, 0.01);
  // No dew point up to 6 km: nothing sinks; none at all: nothing saturates.
  const AnalysisResults dry =
      Analyse(Profile({{1000, 20, 10}, {850, 10, 999.9}, {700, 2, 999.9}, {400, -25, 999.9}}), {});
  EXPECT_TRUE(NotAvailable(dry.Descent.Energy));
  // The last level below 6 km may be where the coldest air sinks from.
  EXPECT_EQ(
      Analyse(Profile({{1000, 30, 20}, {700, 8, 5}, {500, -12, -40}}), {}).Descent.Source.Press,
      500);
  const AnalysisResults unknown = Analyse(Profile({{1000, 20, 999.9}, {400, -25, 999.9}}), {});
  EXPECT_FALSE(unknown.ConvectiveCondensation.Exists());
  // 1000 hPa below the ground: the lowest level stands in for it.
  EXPECT_TRUE(
      Index("KO", Profile({{950, 20, 15}, {850, 14, 8}, {700, 4, -2}, {400, -25, -40}})).Exists());
}

// Rows that tell what was chosen.
TEST(IndexTable, TellsTheChoicesItRestsOn) {
  SoundingRecord sounding = test::ReferenceConvective();
  Options plain, other;
  plain.CapeTempBase = TempBase::Dry;
  plain.Lpl = LiftSource::MostUnstable;
  other.CapeTempBase = TempBase::Virtual;
  other.Lpl = LiftSource::Surface;
  other.BaseLevel = CapeBase::Ccl;
  other.MplDisplay = false;
  const struct {
    const char *Label, *Plain, *Other;
  } cases[] = {{"Temp Base", "DryBulb", "Virtual"}, {"Lift Type", "MostUnstable", "Surface Base"},
               {"Lift Mode", "LFC", "CCL"},         {"MPL Prs", "96.0 mb", "--"},
               {"MPL Hgt", "16686 m", "--"},        {"Stn Elev", "357 m", "--"}};
  for (const auto& c : cases) {
    sounding.ElevUnknown = false;
    EXPECT_EQ(ShownValue(Index(c.Label, sounding, plain), plain, 357), c.Plain);
    sounding.ElevUnknown = true;
    EXPECT_EQ(ShownValue(Index(c.Label, sounding, other), other, 357), c.Other);
  }
}

TEST(IndexTable, LabelsAreTenWideAndTheirOwn) {
  std::set<std::string_view> labels;
  for (const IndexRow& row : IndexTable()) {
    EXPECT_EQ(row.Label.size(), 10u) << row.Label;
    EXPECT_TRUE(labels.insert(Trim(row.Label)).second) << row.Label;
  }
}

TEST(IndexTable, FreezingLevelOfColdAndOfFreezingGround) {
  const auto shown = [](double ground, double above) {
    return ShownValue(
        Index("FRZG Lvl", Profile({{1000, ground, -8}, {850, above, -9}, {500, -30, -40}}, {}, 12)),
        {}, 12);
  };
  EXPECT_EQ(shown(0, -7), "12 m");
  EXPECT_EQ(shown(-5, -7), "surface");
  EXPECT_EQ(shown(-5, 0), "surface");  // a level just at 0 C, frozen below
  // A thin warm layer over frozen ground: 945 hPa lie 29.27 x 271 x ln(1000/945) = 449 m above it.
  const auto thin =
      Index("FRZG Lvl", Profile({{1000, -5, -8}, {960, -1, -4}, {950, 2, -1}, {940, -2, -5}}));
  EXPECT_NEAR(thin.Value, 449, 3);
  EXPECT_EQ(Index("FRZG Lvl", Profile({{1000, 0.5, -8}, {850, 0.4, -9}})).Value, kNone);
}

}  // namespace
}  // namespace vexa::analysis
