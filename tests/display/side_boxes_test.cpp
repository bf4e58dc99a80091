// What the boxes say of the reference sounding was computed with an independent script; where they
// draw it is a property of every sounding, size and unit.
#include "display/side_boxes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "config/options.h"
#include "display/shown_texts.h"
#include "display/weather.h"
#include "picture/text_width.h"
#include "support/page_checks.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::display {
namespace {

const analysis::SevereTable kTable = analysis::DefaultSevereTable();

struct Case {
  std::string About{};
  SoundingRecord Record{};
  Options Set{};
};

// Ascents that lack something each, and one of many levels.
std::vector<Case> Cases() {
  std::vector<Case> cases = {{"nothing at all", {}},
                             {"one level", test::Profile({{1000, 20, 15}})}};
  cases.push_back({"no winds", test::WithoutWinds(test::ReferenceConvective())});
  Case dry{"no dew points", test::ReferenceConvective()};
  for (double& dewpt : dry.Record.Dewpt.Values()) dewpt = kMissing;
  cases.push_back(dry);
  cases.push_back(
      {"five levels",
       test::Profile(
           {{1010, 31, 25}, {850, 18, 14}, {700, 9, 2}, {500, -6, -20}, {100, -78, 999.9}},
           {{5, 90, 12}, {9000, 280, 45}}, 5)});
  Case many{"3000 levels"};
  for (int i = 0; i < 3000; ++i) {
    many.Record.AddTemp(1000 - 0.32 * i, 25 - 0.025 * i + (i % 40 < 8 ? 1.5 : 0), 15 - 0.03 * i);
    many.Record.AddWind(10.0 * i, 180 + (i / 20) % 180, i % 90);
  }
  cases.push_back(many);
  Case feet{"feet above ground, m/s", test::ReferenceConvective()};
  feet.Set.ThermoHeight = LengthUnits::Feet;
  feet.Set.Heights = HeightMode::Agl;
  feet.Set.Speed = SpeedUnits::MetersPerSecond;
  feet.Set.ThermoTemp = TempUnits::Fahrenheit;
  cases.push_back(feet);
  cases.push_back({"winter", test::ReferenceWinter()});
  return cases;
}

TEST(SideBoxes, KeepInTheirRegionsWithTextsApartAndLegible) {
  for (const Case& c : Cases()) {
    const analysis::AnalysisResults results = analysis::Analyse(c.Record, c.Set);
    for (const PageBox& box : PageBoxes({c.Record, results, c.Set, kTable})) {
      for (const double width : {200, 264, 356, 480}) {
        for (const double lines : {0.5, 3.0, 8.0, 20.0}) {
          SCOPED_TRACE(c.About + ", " + std::string(box.Name) + ", " + std::to_string(width));
          const Rect region{1000, 2000, 1000 + width * kUnitsPerPixel, 2000 + BoxHeight(lines)};
          Picture page(12000, 9000, {});
          box.Draw(page, region);
          EXPECT_EQ(page.Items().empty(), lines < 1);
          test::ExpectOrderly(page, region);
        }
      }
    }
  }
}

// The severe-weather table names its units; the box beside the diagram has those of the options.
TEST(SideBoxes, TheWeatherBoxHasTheUnitsOfTheOptions) {
  Case c{"m/s", test::ReferenceConvective()};
  c.Set.Speed = SpeedUnits::MetersPerSecond;
  const analysis::AnalysisResults results = analysis::Analyse(c.Record, c.Set);
  const Rect region{0, 0, 480 * kUnitsPerPixel, BoxHeight(60)};
  Picture page(12000, 12000, {});
  for (const PageBox& box : PageBoxes({c.Record, results, c.Set, kTable})) {
    if (box.Name == "weather") box.Draw(page, region);
  }
  int speeds = 0;
  for (const Item& item : page.Items()) {
    const auto* label = std::get_if<Label>(&item.Shape);
    if (label == nullptr) continue;
    EXPECT_EQ(label->Text.find("(kt"), std::string::npos) << label->Text;
    EXPECT_FALSE(label->Text.ends_with("kts")) << label->Text;
    speeds += label->Text.ends_with("m/s") ? 1 : 0;
  }
  EXPECT_GE(speeds, 4);  // winds at 200, 500 and 850 hPa and the gusts
}

// By hand: 1 m/s is 196.85 ft/min.
TEST(Texts, AThermalClimbsInTheUnitOfHeights) {
  struct ClimbCase {
    int Equation;
    double Lift;
    LengthUnits Length;
    const char* Shown;
  };
  for (const ClimbCase& c : {ClimbCase{1, 400, LengthUnits::Feet, "400 ft/min"},
                             ClimbCase{1, 400, LengthUnits::Meter, "2.0 m/s"},
                             ClimbCase{2, 2, LengthUnits::Meter, "2.0 m/s"},
                             ClimbCase{2, 2, LengthUnits::Feet, "394 ft/min"},
                             ClimbCase{1, kNone, LengthUnits::Feet, "--"}}) {
    Options set;
    set.ThermoHeight = c.Length;
    const analysis::SevereTable table;
    const SoundingRecord record;
    const analysis::AnalysisResults results;
    analysis::SoaringResults soaring;
    soaring.LiftEquation = c.Equation;
    soaring.Lift = c.Lift;
    EXPECT_EQ(Texts({record, results, set, table}).Climb(soaring), c.Shown);
  }
}

// On a screen every row is on the page; elsewhere a line tells of those that are not.
TEST(WeatherSheets, KeepInTheirPageWithTextsApartAndLegible) {
  const Surface surfaces[] = {WindowSurface(800, 600), WindowSurface(3440, 1440),
                              ImageSurface(800, 600), ImageSurface(900, 1400),
                              PaperSurfaceMm(210, 297)};
  for (const Case& c : Cases()) {
    const analysis::AnalysisResults results = analysis::Analyse(c.Record, c.Set);
    const Shown shown{c.Record, results, c.Set, kTable};
    for (const Sheet& sheet : {SevereWeatherSheet(shown), WinterWeatherSheet(shown),
                               SoaringSheet(shown), LayerSheet(shown)}) {
      std::size_t rows = 0;
      for (const SheetBlock& block : sheet.Blocks) rows += block.Rows.size();
      for (const Surface& surface : surfaces) {
        SCOPED_TRACE(c.About + ", " + sheet.Title + ", " + std::to_string(surface.Width));
        const Picture page = DrawSheet(sheet, c.Set, surface);
        test::ExpectOrderly(page, {0, 0, surface.Width, page.Height()});
        const bool isWhole = test::Tagged(page, "left out").empty();
        EXPECT_EQ(test::Tagged(page, "label").size() == rows, isWhole);
        EXPECT_TRUE(surface.On == Medium::Screen ? isWhole : page.Height() == surface.Height);
      }
    }
  }
}

SheetBlock BlockOf(std::string_view name, const Shown& shown) {
  return std::ranges::find(SideBoxes(), name, &SideBox::Name)->Fill(shown);
}

const SheetRow* RowOf(const SheetBlock& block, std::string_view label) {
  const auto row = std::ranges::find(block.Rows, label, &SheetRow::Label);
  return row == block.Rows.end() ? nullptr : &*row;
}

TEST(SideBoxes, TellStormMotionAndShear) {
  const SoundingRecord sounding = test::ReferenceConvective();
  Options options;
  analysis::AnalysisResults results = analysis::Analyse(sounding, options);
  const SheetBlock storm = BlockOf("storm", {sounding, results, options, kTable});
  const SheetRow& helicity = *RowOf(storm, "Helicity, RM");
  EXPECT_EQ(helicity.Value, "160");
  EXPECT_EQ(helicity.More.at(0).Text, "298");
  EXPECT_EQ(helicity.More.at(0).Step, Stress::Second);  // 200 and more, less than 300
  EXPECT_EQ(RowOf(storm, "Shear")->Value, "21");
  EXPECT_EQ(RowOf(storm, "Shear")->More.at(1).Text, "55");
  EXPECT_EQ(RowOf(storm, "Mean 0-6 km")->Value, "217/30 kts");
  EXPECT_EQ(RowOf(storm, "Right mover")->Note, "");
  options.MotionMode = Scaling::Manual;
  results = analysis::Analyse(sounding, options);
  const SheetBlock manual = BlockOf("storm", {sounding, results, options, kTable});
  EXPECT_EQ(RowOf(manual, "Right mover")->Value, "240/25 kts");
  EXPECT_EQ(RowOf(manual, "Right mover")->Note, "manual");
}

// Halfway between north and east of 10 kts each: components of 5, hence 7.1 kts from the
// north-east.
TEST(SideBoxes, TellTheWindsByHeight) {
  const SoundingRecord sounding =
      test::Profile({{1000, 20, 15}, {900, 14, 9}, {700, 2, -5}},
                    {{120, 360, 10}, {1120, 90, 10}, {3000, 90, 10}}, 120);
  Options options;
  const analysis::AnalysisResults results = analysis::Analyse(sounding, options);
  const auto wind = [&](std::string_view label) {
    const SheetBlock winds = BlockOf("winds", {sounding, results, options, kTable});
    const SheetRow* row = RowOf(winds, label);
    return row == nullptr ? std::string("none") : row->Value;
  };
  EXPECT_EQ(wind("Ground"), "360/10 kts");
  EXPECT_EQ(wind("2000 m"), "090/10 kts");
  EXPECT_EQ(wind("3500 m"), "none") << "the sounding ends below";
  options.Heights = HeightMode::Agl;
  EXPECT_EQ(wind("500 m AGL"), "045/7 kts");
}

// Limits are those of the user's own table, and each parcel is judged by its own CAPE.
TEST(SideBoxes, ColourByTheUsersTable) {
  const SoundingRecord sounding = test::ReferenceConvective();
  const Options options;
  analysis::AnalysisResults results = analysis::Analyse(sounding, options);
  results.Forced[0].CapeTotal = 499;
  results.Forced[1].CapeTotal = 500;
  results.Forced[2].CapeTotal = 1500;
  results.Convective.CapeTotal = 2500;
  analysis::SevereTable table = analysis::DefaultSevereTable();
  const auto steps = [&] {
    const SheetRow cape = BlockOf("parcels", {sounding, results, options, table}).Rows.front();
    std::vector<Stress> found = {cape.Step};
    for (const SheetValue& value : cape.More) found.push_back(value.Step);
    return found;
  };
  EXPECT_EQ(steps(), (std::vector{Stress::None, Stress::First, Stress::Second, Stress::Third}));
  for (analysis::SevereRow& row : table.Rows) {
    if (analysis::SevereEntries()[static_cast<std::size_t>(row.Entry) - 1].Index == "CAPE total") {
      row.Limits.From = {499, 499, 2501};
    }
  }
  EXPECT_EQ(steps(), std::vector<Stress>(4, Stress::Second));
  // More than any marker of a missing value.
  EXPECT_EQ(StressOf({sounding, results, options, table}, "CAPE total", 10108), Stress::Third);
  EXPECT_EQ(StressOf({sounding, results, options, table}, "CAPE total", kNone), Stress::None);
  table.Rows.clear();
  EXPECT_EQ(steps(), std::vector<Stress>(4, Stress::None));
}

// Decimal points of one column stand in one line, whatever stands before and behind them.
TEST(SideBoxes, AlignNumbersOnTheirDecimalPoints) {
  const SheetBlock block{.Heading = "Numbers",
                         .Rows = {{"small", "0.405"}, {"large", ">1066.4 m"}, {"whole", "-12 C"}}};
  Picture page(12000, 9000, {});
  DrawBlock(page, {0, 0, 4000, 3000}, block, BlockInksFor({}));
  std::vector<double> points;
  for (const Label& label : test::Tagged<Label>(page, "value")) {
    const std::size_t point = label.Text.find_first_of(". ");
    points.push_back(label.At.X + TextWidth(label.Text.substr(0, point), label.Size));
  }
  ASSERT_EQ(points.size(), 3u);
  EXPECT_NEAR(points[0], points[1], 0.01);
  EXPECT_NEAR(points[0], points[2], 0.01);
}

// Rows stand side by side as soon as each pile of them has the room that it wants itself, 14 pixels
// between them, be the other much narrower.
TEST(SideBoxes, PilesOfRowsTakeNoMoreRoomThanTheyWant) {
  const std::vector<SheetRow> few = {{"a", "1"}, {"b", "2"}};
  const std::vector<SheetRow> wide = {{"a long label", "-1234.56 J/kg"}, {"c", "0.5 C"}};
  SheetBlock both{.Rows = few, .Flows = true};
  both.Rows.insert(both.Rows.end(), wide.begin(), wide.end());
  const double least = WidthOf({.Rows = few}) + WidthOf({.Rows = wide}) + 14 * kUnitsPerPixel;
  EXPECT_GT(2 * WidthOf({.Rows = wide}), least);
  for (const auto& [width, shown] : {std::pair(least + 1, 4U), std::pair(least - 1, 2U)}) {
    Picture page(12000, 9000, {});
    const Rect region{0, 0, width, BoxHeight(2)};
    EXPECT_EQ(DrawBlock(page, region, both, BlockInksFor({})).size(), 4U - shown);
    EXPECT_EQ(test::Texts(page, "value").size(), shown);
    test::ExpectOrderly(page, region);
  }
}

// Above the weather inversions follow one another by the dozen.
TEST(SideBoxes, TellOfTheInversionsThatMatter) {
  const SoundingRecord sounding = test::Profile({{1000, 5, 2}});
  const Options options;
  analysis::AnalysisResults results = analysis::Analyse(sounding, options);
  results.Tropopauses = {{200, 11800, -60}};
  for (const double height : {1000.0, 7000.0, 15000.0}) {
    results.Inversions.push_back(
        {analysis::InversionKind::Subsidence, {500, height, 0}, {490, height + 100, 3}});
  }
  const Shown shown{sounding, results, options, kTable};
  EXPECT_EQ(BlockOf("inversions", shown).Rows.size(), 1u);
  EXPECT_EQ(BlockOf("inversions", shown).Rows[0].Label, "1000 - 1100 m");
  const SheetBlock layers = BlockOf("layers", shown);
  EXPECT_EQ(std::ranges::count(layers.Rows, "Subsidence inversion", &SheetRow::Label), 2);
}

TEST(TextWidth, IsThatOfThePublishedMetrics) {
  // Helvetica: C 722, A 667, P 667, E 667; bold: C 722, A 722, P 667, E 667, of a thousand.
  EXPECT_NEAR(TextWidth("CAPE", 100), 272.3, 1e-9);
  EXPECT_NEAR(TextWidth("CAPE", 100, true), 277.8, 1e-9);
  EXPECT_NEAR(TextWidth("m\xC2\xB2", 100), 83.3 + 55.6, 1e-9);
  EXPECT_EQ(Elided("Precipitable water", 100, TextWidth("Precipit...", 100)), "Precipit...");
  EXPECT_EQ(Elided("Precipitable", 100, 50), "");
}

TEST(FitTitle, TheDateStaysLongestOfASoundingsTitle) {
  constexpr double kLarge = LetterSize(Type::Title), kSmall = LetterSize(Type::Value);
  const std::string title = "03808 - CAMBORNE, UNITED KINGDOM  00Z 06 FEB 2026";
  const double large = TextWidth(title, kLarge, true), small = TextWidth(title, kSmall, true);
  const std::string cut = "03808 - CAMB...  00Z 06 FEB 2026";
  const std::tuple<double, std::string, double> cases[] = {
      {large, title, kLarge},
      {large - 1, title, kSmall},
      {small, title, kSmall},
      {TextWidth(cut, kSmall, true), cut, kSmall},
      {TextWidth("00Z 06 FEB", kSmall, true),
       Elided(title, kSmall, TextWidth("00Z 06 FEB", kSmall, true), true), kSmall}};
  for (const auto& [room, text, size] : cases) {
    const FittedTitle fitted = FitTitle(title, room);
    EXPECT_EQ(fitted.Text, text);
    EXPECT_EQ(fitted.Size, size) << text;
  }
  const std::string plain = "A title without a date that stands behind blanks";
  EXPECT_EQ(FitTitle(plain, TextWidth("A title without...", kSmall, true)).Text,
            "A title without...");
}

}  // namespace
}  // namespace vexa::display
