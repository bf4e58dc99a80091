// The section's picture, looked at item by item, and its colours.
#include "crosssection/section_plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "crosssection/color_map.h"
#include "picture/text_width.h"
#include "support/soundings.h"
#include "support/tagged_items.h"

namespace vexa::crosssection {
namespace {

Section Line(int count, int elevM = 0) {
  Section section;
  analysis::AdiabatTable adiabats;
  for (int i = 0; i < count; ++i) {
    SoundingRecord record = test::Profile(
        {{1000, 20.0 - 2 * i, 10},
         {850, 10.0 - 2 * i, 8},
         {500, -20, -30},
         {200, -60, -70},
         {100, -55, 999.9}},
        {{0, 270, 10}, {2000, 270, 30}, {5000, 270, 50}, {12000, 260, 90}, {16000, 250, 30}},
        i == 1 ? elevM : 0);
    SetDecimalPosition(record, 40, 10.0 + 2 * i);
    record.StationTitle = "Station number " + std::to_string(i + 1);
    section.Columns.push_back(ColumnOf(std::move(record), "file", AnalysisSettings{}, adiabats));
  }
  Arrange(section);
  return section;
}

struct Scene {
  Section Of{};
  SectionOptions Set{};
  ViewSettings Look{};

  SectionPlot Plot(const char* code, const Surface& on = {12000, 9000}) const {
    const Outcome<FieldAnalysis> field = AnalyzeField(Of, *FindField(code), Set, {});
    return PlotSection({Of, Set, Look, field.Value()}, on);
  }
};

std::vector<Label> LabelsOf(const Picture& page, std::string_view tag) {
  return test::Tagged<Label>(page, tag);
}

TEST(SectionPlot, ShowsFieldLinesAndLevels) {
  const Scene scene{Line(3, 800)};
  const Picture page = scene.Plot("TMP").Page;
  EXPECT_EQ(LabelsOf(page, "title").at(0).Text, "VEXA Cross-Section");
  EXPECT_EQ(LabelsOf(page, "field title").at(0).Text, "Temperature (C)");
  EXPECT_EQ(test::CountOf(page, "freezing isotherm"), 1);
  EXPECT_EQ(test::CountOf(page, "freezing level"), 0);  // said by the isotherm
  EXPECT_EQ(test::CountOf(page, "terrain"), 1);
  EXPECT_GT(test::CountOf(page, "Line-Isoline"), 2);
  EXPECT_GT(test::CountOf(page, "Dash-Isoline"), 8);  // below 0
  EXPECT_GT(test::CountOf(page, "Num-Isoline"), 8);
  EXPECT_EQ(test::CountOf(page, "station"), 3);
  EXPECT_GT(test::CountOf(page, "wind shaft"), 10);
  EXPECT_EQ(LabelsOf(page, "wind caption").at(0).Text, "Winds plotted in KNOTS");

  const Picture other = scene.Plot("RH").Page;
  EXPECT_EQ(test::CountOf(other, "freezing isotherm"), 0);
  EXPECT_EQ(test::CountOf(other, "freezing level"), 2);  // line and name

  Scene plain = scene;
  plain.Of.Name = "Tuesday";
  plain.Set.Terrain = plain.Set.PlotWinds = plain.Set.Filled = plain.Set.FreezingLevel = false;
  plain.Set.SubIsolines = plain.Set.DotMoisture = true;
  const Picture bare = plain.Plot("RH").Page;
  EXPECT_EQ(LabelsOf(bare, "title").at(0).Text, "VEXA Cross-Section for:  Tuesday");
  for (const char* tag : {"terrain", "wind shaft", "band", "freezing level", "Line-Isoline"}) {
    EXPECT_EQ(test::CountOf(bare, tag), 0) << tag;
  }
  EXPECT_GT(test::CountOf(bare, "Sub-Isoline"), 0);
  EXPECT_GT(test::CountOf(bare, "Dot-Isoline"), 0);
}

TEST(SectionPlot, ColoursEndAtTheLines) {
  const Scene scene{Line(4)};
  const Picture page = scene.Plot("TMP").Page;
  std::vector<Point> corners;
  for (const Area& area : test::Tagged<Area>(page, "band")) {
    for (const auto& ring : area.Rings) corners.insert(corners.end(), ring.begin(), ring.end());
  }
  for (const Polyline& line : test::Tagged<Polyline>(page, "Line-Isoline")) {
    for (const Point& at : line.Points) {
      const bool isBorder = std::ranges::any_of(corners, [&](const Point& corner) {
        return std::hypot(corner.X - at.X, corner.Y - at.Y) < 1e-6;
      });
      ASSERT_TRUE(isBorder) << at.X << ' ' << at.Y;
    }
  }
}

TEST(SectionPlot, NamesDoNotOverlap) {
  for (const int count : {5, 40, 150}) {
    const Scene scene{Line(count)};
    const std::vector<Label> names = LabelsOf(scene.Plot("PT", {9000, 7000}).Page, "station");
    ASSERT_GE(names.size(), 5U);
    for (std::size_t i = 0; i < names.size(); ++i) {
      for (std::size_t j = i + 1; j < names.size(); ++j) {
        if (names[i].At.Y != names[j].At.Y) continue;
        const double room =
            (TextWidth(names[i].Text, names[i].Size) + TextWidth(names[j].Text, names[j].Size)) / 2;
        EXPECT_GT(std::fabs(names[i].At.X - names[j].At.X), room);
      }
    }
  }
}

// The number of soundings stands behind the names, however long these are.
TEST(SectionPlot, LongNamesAreCutWithinThePage) {
  for (const auto& [first, last] : {std::pair{40, 40}, {3, 80}, {80, 3}, {3, 3}}) {
    for (const SectionKind kind : {SectionKind::Distance, SectionKind::Time}) {
      Scene scene{.Of = Line(2)};
      scene.Of.Kind = kind;
      scene.Of.Columns[0].Sounding.StationTitle = std::string(static_cast<std::size_t>(first), 'w');
      scene.Of.Columns[1].Sounding.StationTitle = std::string(static_cast<std::size_t>(last), 'w');
      const std::vector<Label> lines = LabelsOf(scene.Plot("TMP").Page, "from to");
      ASSERT_EQ(lines.size(), 1U);
      EXPECT_LE(lines[0].At.X + TextWidth(lines[0].Text, lines[0].Size), 12000);
      EXPECT_TRUE(lines[0].Text.ends_with(",  2 soundings")) << lines[0].Text;
      const bool keepsShort =
          lines[0].Text.starts_with("www,") || lines[0].Text.starts_with("www ");
      EXPECT_TRUE(first > 3 || keepsShort) << lines[0].Text;
    }
  }
}

TEST(SectionPlot, MappingRunsBothWaysAndReads) {
  const Scene scene{Line(3)};
  const SectionMapping at = scene.Plot("TMP").At;
  for (const double x : {0.0, 50.0, 333.0}) EXPECT_NEAR(at.XAt(at.X(x)), x, 1e-9);
  const double c = -std::log(700);
  EXPECT_NEAR(at.CoordinateAt(at.Y(c)), c, 1e-12);
  const FieldAnalysis field = AnalyzeField(scene.Of, *FindField("TMP"), scene.Set, {}).Value();
  const SectionInput input{scene.Of, scene.Set, scene.Look, field};
  // 185.2 km are 100 nautical miles; the station at 12 E stands 170 km from the first.
  EXPECT_EQ(ReadSection(input, at, {at.X(185.2), at.Y(c)}),
            "Lat: 40.00  Lon: 12.00  Elev: 0 m  Dist: 100.00 nm  700 mb");
  EXPECT_EQ(ReadSection(input, at, {0, 0}), "");
  EXPECT_EQ(SoundingLine(scene.Of.Columns[0]), "Sounding:  Station number 1   -   Elev:  0 m");
}

TEST(SectionPlot, ThinsDenseWinds) {
  Scene scene{Line(2)};
  for (Column& column : scene.Of.Columns) {
    column.Sounding = test::WithoutWinds(column.Sounding);
    for (int i = 0; i < 1600; ++i) column.Sounding.AddWind(10.0 * i, 270, 20);
  }
  scene.Set.Scale = SectionScale::Kilometers;
  const SectionPlot plot = scene.Plot("WND");
  const FieldAnalysis field = AnalyzeField(scene.Of, *FindField("WND"), scene.Set, {}).Value();
  SectionInput input{scene.Of, scene.Set, scene.Look, field};
  // 1600 winds stand at equal distances; a medium shaft is 200 units long.
  const double spacing = plot.At.Frame().Height() / (plot.At.Axis().Top / 10);
  const int step = static_cast<int>(std::ceil(200 / spacing));
  EXPECT_EQ(WindStep(input, plot.At), step);
  EXPECT_EQ(LabelsOf(plot.Page, "wind caption").at(0).Text,
            "Plotted every " + std::to_string(step) + "th wind.  Winds plotted in KNOTS");
  scene.Look.WindPlotSectionRatio = 7;
  EXPECT_EQ(WindStep(input, plot.At), 7);
}

TEST(Colors, StepEvenlyForTheEye) {
  // White, black and red of the colour space's own publication.
  EXPECT_NEAR(LabOf({255, 255, 255}).L, 1, 1e-6);
  EXPECT_NEAR(LabOf({0, 0, 0}).L, 0, 1e-6);
  EXPECT_NEAR(LabOf({255, 0, 0}).L, 0.628, 0.001);
  EXPECT_NEAR(LabOf({255, 0, 0}).A, 0.225, 0.001);
  EXPECT_EQ(ColorOf(LabOf({12, 200, 97})), (Color{12, 200, 97}));
  EXPECT_EQ(SignedColor(0, false), (Color{255, 255, 255}));
  // Paler on white paper, brighter on black, in steps that hardly differ.
  for (const bool black : {false, true}) {
    const auto at = [black](int i) { return LabOf(RisingColor(i / 12.0, black)); };
    double least = 1e9, most = 0;
    for (int i = 0; i < 12; ++i) {
      const double step = DifferenceOf(at(i), at(i + 1));
      least = std::min(least, step);
      most = std::max(most, step);
      EXPECT_EQ(at(i + 1).L > at(i).L, black) << i;
    }
    EXPECT_LT(most, 1.35 * least);  // a step across a bend in the path is shorter
  }
}

}  // namespace
}  // namespace vexa::crosssection
