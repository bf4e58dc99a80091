// What a diagram draws of a sounding, and what its texts say of that. Values stand where the
// profile that was given has them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "diagram/drawn.h"
#include "diagram/palette.h"
#include "support/soundings.h"

namespace vexa::diagram {
namespace {

using test::Profile;

TEST(Traces, EndWhereTheDiagramOrTheDataEnd) {
  // The layer from 200 to 50 hPa is cut at 100, half-way in the logarithm: -60 °C.
  Drawn drawn = OnEmagram(Profile({{1000, 20, 10}, {200, -55, -70}, {50, -65, -80}}));
  drawn.Set.TempMin = -80;
  drawn.Set.AutoMbSelect = false;
  const SoundingPlot plot = drawn();
  const DiagramCoordinates end =
      plot.Mapping.ToCoordinates(Lines(plot.Page, "temperature").front().back());
  EXPECT_NEAR(end.Press, 100, 0.1);
  EXPECT_NEAR(end.Temp, -60, 0.1);
  EXPECT_EQ(Texts(plot.Page, "trace name"), (LabelTexts{"T", "Td"}));
  EXPECT_TRUE(Tagged(plot.Page, "reference temperature").empty());
  const SoundingRecord reference = PlainSounding();
  drawn.Reference = &reference;
  EXPECT_EQ(Texts(drawn().Page, "trace name"), (LabelTexts{"T", "Td", "Reference"}));
  EXPECT_EQ(Lines(drawn().Page, "reference temperature").size(), 1u);
  EXPECT_EQ(Lines(drawn().Page, "reference dew point").size(), 1u);
  drawn.Set.TraceDots = drawn.Set.TraceCircles = true;
  // Two levels lie on the page, each with a dot and a circle beside the line.
  EXPECT_EQ(Tagged(drawn().Page, "temperature").size(), 1u + 2 * 2);
}

// The highest air of all is thin: a level far above the top still says where the trace goes.
TEST(Traces, LeadToALevelFarAboveTheTop) {
  Drawn drawn = OnEmagram(
      test::Profile({{1000, 20, 10}, {100, -39, 999.9}, {20, -30, 999.9}, {0.5, -10, 999.9}}));
  drawn.Set.Above100mb = true;
  const SoundingPlot plot = drawn();
  ASSERT_EQ(plot.Mapping.TopPress(), 10);
  const auto lines = Lines(plot.Page, "temperature");
  ASSERT_EQ(lines.size(), 1u);
  const Point end = plot.Mapping.ToPoint(-30 + 20 * std::log(2) / std::log(40), 10);
  EXPECT_NEAR(lines[0].back().X, end.X, 1);
  EXPECT_NEAR(lines[0].back().Y, end.Y, 1);
}

// The dew point's name stands left of it, the temperature's right, while the frame has room there.
TEST(Traces, NamesStandWhereTheFrameHasRoom) {
  const auto aside = [](double temp, double dewpt) {
    const SoundingPlot plot = OnEmagram(Profile({{1000, temp, dewpt}, {300, temp, dewpt}}))();
    const auto names = Tagged<Label>(plot.Page, "trace name");
    return std::pair(names.at(0).At.X - plot.Mapping.ToPoint(temp, 300).X,
                     names.at(1).At.X - plot.Mapping.ToPoint(dewpt, 300).X);
  };
  EXPECT_EQ(aside(10, -20), std::pair(70.0, -70.0));
  EXPECT_EQ(aside(10, -38), std::pair(70.0, 70.0));
}

TEST(Traces, OfOtherSoundingsAreToldApart) {
  const SoundingRecord other = test::ReferenceWinter();
  Drawn drawn = OnEmagram();
  drawn.Others = {{&other}};
  drawn.Mode = MultiMode::Compare;
  const auto pen = [&](std::string_view tag) {
    return Tagged<Polyline>(drawn().Page, tag).at(0).Stroke;
  };
  EXPECT_EQ(pen("other temperature").Style, LineStyle::Dash);
  const double width = pen("other temperature").Width;
  EXPECT_LT(pen("other dew point").Width, width);
  drawn.Set.TraceThick = ThickLines::All;
  EXPECT_GT(pen("other temperature").Width, width);
  drawn.Mode = MultiMode::Overlay;
  EXPECT_EQ(pen("other temperature").Style, OverlayPen(PaletteFor(drawn.Set), 1).Style);
  EXPECT_NE(pen("other temperature").Style, LineStyle::Dash);
}

TEST(Traces, TheParcelAndItsAreasFollowTheirOptions) {
  Drawn drawn(test::ReferenceConvective());
  const auto has = [&](std::string_view tag) { return !Tagged(drawn().Page, tag).empty(); };
  for (const char* tag : {"parcel", "parcel moisture", "CAPE area", "CIN area", "inversion"}) {
    EXPECT_TRUE(has(tag)) << tag;
  }
  // The moisture line leads from the start's dew point to the condensation level.
  const SoundingPlot plot = drawn();
  const auto line = Lines(plot.Page, "parcel moisture").front();
  const analysis::ParcelAscent& ascent = drawn.Results.Chosen();
  EXPECT_NEAR(plot.Mapping.ToCoordinates(line.front()).Temp, ascent.Start.Dewpt, 0.05);
  EXPECT_NEAR(plot.Mapping.ToCoordinates(line.back()).Press, ascent.Condensation.Press, 0.1);
  // The parcel is drawn from where it starts to beyond the level where it is as warm as the air.
  const auto path = Lines(plot.Page, "parcel").front();
  EXPECT_NEAR(plot.Mapping.ToCoordinates(path.front()).Press, ascent.FirstPress, 0.1);
  EXPECT_LT(plot.Mapping.ToCoordinates(path.back()).Press, ascent.Equilibrium.Press);
  drawn.Set.CapeTempBase = TempBase::Virtual;
  EXPECT_TRUE(has("virtual temperature"));
  drawn.Set.CapeTempBase = TempBase::Dry;
  EXPECT_FALSE(has("virtual temperature"));
  drawn.Set.AutoAnalyses = false;
  for (const char* tag : {"parcel", "CAPE area", "CIN area", "inversion", "parcel level"}) {
    EXPECT_FALSE(has(tag)) << tag;
  }
}

// By an independent script: at 700 hPa the wet bulb has 2.69 °C, the virtual temperature 9.34 °C.
TEST(Traces, WetBulbAndVirtualTemperatureComeByTheirOptions) {
  Drawn drawn(test::ReferenceConvective());
  const struct {
    bool ViewSettings::*Option;
    const char* Tag;
    double Temp;
  } cases[] = {{&ViewSettings::WetBulbTrace, "wet bulb", 2.69},
               {&ViewSettings::VirtualTrace, "virtual temperature", 9.34}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Tag);
    EXPECT_TRUE(Tagged(drawn().Page, c.Tag).empty());
    drawn.Set.*c.Option = true;
    const SoundingPlot plot = drawn();
    const auto lines = Lines(plot.Page, c.Tag);
    ASSERT_EQ(lines.size(), 1u);
    // Points that lie on the line between their neighbours are left out.
    std::optional<double> temp;
    DiagramCoordinates below;
    for (const Point& point : lines.front()) {
      const DiagramCoordinates at = plot.Mapping.ToCoordinates(point);
      if (!temp && at.Press <= 700) {
        const double share = std::log(below.Press / 700) / std::log(below.Press / at.Press);
        temp = below.Temp + share * (at.Temp - below.Temp);
      }
      below = at;
    }
    EXPECT_NEAR(temp.value_or(kMissing), c.Temp, 0.1);
    // One line however parcels are compared.
    drawn.Set.CapeTempBase = TempBase::Virtual;
    EXPECT_EQ(Lines(drawn().Page, c.Tag).size(), 1u);
    drawn.Set.CapeTempBase = TempBase::Dry;
    drawn.Set.*c.Option = false;
  }
}

// Layers of 1 km from 1000 hPa up: warmer, 3, 8 and 12 degrees colder. Saturated air at these
// temperatures cools by 4 to 7 °C in a km, dry air by 9.8.
TEST(Traces, StabilityBarsTellTheLapseRate) {
  Drawn drawn = OnEmagram(
      Profile({{1000, 20, 19}, {890, 22, 10}, {790, 19, 5}, {700, 10, 0}, {620, -4, -10}}));
  EXPECT_TRUE(Tagged(drawn().Page, "stability bar").empty());
  drawn.Set.StabilityBars = true;
  const SoundingPlot plot = drawn();
  const auto bars = Tagged<Area>(plot.Page, "stability bar");
  ASSERT_EQ(bars.size(), 4u);
  const Palette inks = PaletteFor(drawn.Set);
  const int colors[] = {9, 10, 14, 12};  // of the sixteen, from the most stable on
  for (std::size_t i = 0; i < bars.size(); ++i) {
    EXPECT_EQ(bars[i].Fill.Ink, LegibleColor(inks, colors[i])) << i;
    EXPECT_NEAR(plot.Mapping.PressAt(bars[i].Rings[0][0].Y),
                drawn.Sounding.Press(static_cast<int>(i) + 1), 0.1);
  }
  const LabelTexts legend = Texts(plot.Page, "legend");
  for (const char* name :
       {"Inversion", "Stable", "Conditionally unstable", "Absolutely unstable"}) {
    EXPECT_EQ(std::ranges::count(legend, name), 1) << name;
  }
}

TEST(Marks, LayersStandBetweenTheirHeights) {
  Drawn drawn = OnEmagram();
  drawn.Layers = {{"WAVE 2", 2000, 4000}, {"beyond", 50000, 60000}, {"open", 12000, 90000}};
  const SoundingPlot plot = drawn();
  EXPECT_EQ(Texts(plot.Page, "layer label"), (LabelTexts{"open", "WAVE 2"}));
  const auto bars = Lines(plot.Page, "layer");
  ASSERT_EQ(bars.size(), 2u);
  const auto press = [&](double height) {
    return analysis::GetPRESS(drawn.Results.Levels, height);
  };
  EXPECT_NEAR(plot.Mapping.PressAt(bars[0].front().Y), press(2000), 0.1);
  EXPECT_NEAR(plot.Mapping.PressAt(bars[0].back().Y), press(4000), 0.1);
  EXPECT_NEAR(plot.Mapping.PressAt(bars[1].back().Y), 100, 0.1);  // to the diagram's top
}

TEST(Winds, TellTheirNumbersAndTheirLimit) {
  Drawn drawn = OnEmagram();
  const SoundingPlot plot = drawn();
  EXPECT_EQ(SpotsOf(plot, "wind"), (LabelTexts{"100 m: 180/10 kts", "5000 m: 270/40 kts"}));
  EXPECT_NEAR(plot.Mapping.PressAt(Lines(plot.Page, "wind limit").at(0).front().Y),
              analysis::GetPRESS(drawn.Results.Levels, 5000), 0.1);
  EXPECT_TRUE(Texts(plot.Page, "wind ratio").empty());
  const auto box = Lines(plot.Page, "wind box").at(0);
  EXPECT_NEAR(Lines(plot.Page, "wind axis").at(0)[0].X, (box[0].X + box[1].X) / 2, 0.5);
  drawn.Set.Speed = SpeedUnits::MetersPerSecond;  // 10 x 0.5148
  drawn.Set.WindPlotsBox = false;
  const SoundingPlot metric = drawn();
  EXPECT_EQ(SpotsOf(metric, "wind").front(), "100 m: 180/5.1 m/s");
  EXPECT_TRUE(Tagged(metric.Page, "wind box").empty());
  drawn.Set.Winds = WindDisplay::None;
  EXPECT_TRUE(Tagged(drawn().Page, "wind axis").empty());
  // Nine winds, of which every third is drawn beside the strongest, the lowest and the named.
  SoundingRecord many = PlainSounding();
  many.WindHgt = many.WindDir = many.WindSpd = Levels<double>();
  for (int i = 1; i <= 9; ++i) many.AddWind(200.0 + 20 * i, 270, 10);
  drawn.Sounding = many;
  drawn.Set.Winds = WindDisplay::Barbs;
  drawn.Set.WindPlotRatio = 3;
  EXPECT_EQ(Lines(drawn().Page, "wind shaft").size(), 3u);
  EXPECT_EQ(Texts(drawn().Page, "wind ratio"), LabelTexts{"Plotted every 3 th wind"});
  // Of those that would lie upon each other the lowest is drawn.
  drawn.Sounding.WindHgt = drawn.Sounding.WindDir = drawn.Sounding.WindSpd = Levels<double>();
  drawn.Sounding.AddWind(100, 160, 10);
  drawn.Sounding.AddWind(110, 165, 40);
  drawn.Set.WindPlotRatio = 0;
  EXPECT_EQ(SpotsOf(drawn(), "wind"), LabelTexts{"100 m: 160/5.1 m/s"});
}

TEST(ParcelLevels, AboveTheLastTemperatureHaveNoHeight) {
  Drawn drawn(test::Profile({{1000, 20, 10}, {950, 16, 8}, {900, 12, 4}}, {}, 100));
  const LabelTexts texts = Texts(drawn().Page, "parcel level label");
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0].find("LCL 8"), 0u);
  EXPECT_EQ(texts[0].find("999"), std::string::npos) << texts[0];
}

TEST(Page, StatusAndTitleSayWhatIsShown) {
  Drawn drawn(test::ReferenceConvective());
  const auto text = [&](std::string_view tag) { return FirstText(drawn().Page, tag); };
  drawn.Sounding.DataFormat = "SPC";
  drawn.Sounding.WindDir(2) = 999.9;  // a level without a wind is none
  const int winds = drawn.Sounding.NumWindLevels() - 1;
  EXPECT_EQ(text("status"), "Data type: SPC   " + std::to_string(drawn.Sounding.NumTempLevels()) +
                                " levels, " + std::to_string(winds) + " winds");
  EXPECT_EQ(text("hold time"), "");
  drawn.HoldTime = 0.5;
  EXPECT_EQ(text("hold time"), "Image hold time: 0.5 seconds.");
  const std::string title = text("title");
  EXPECT_NE(title, "");
  drawn.Set.TitleAboveDiagram = false;
  EXPECT_EQ(text("title"), title) << "it stands inside then";
  EXPECT_NE(text("position"), "");
  drawn.Sounding.LatHemi.clear();
  drawn.Sounding.LonHemi.clear();
  EXPECT_EQ(text("position"), "");
}

TEST(Legend, NamesWhatIsDrawn) {
  Drawn drawn(test::ReferenceConvective());
  const auto has = [&](std::string_view name) {
    const LabelTexts names = Texts(drawn().Page, "legend");
    return std::ranges::find(names, name) != names.end();
  };
  for (const char* name : {"T", "Td", "Parcel", "CAPE", "CIN", "Dry adiabat", "Mixing ratio"}) {
    EXPECT_TRUE(has(name)) << name;
  }
  EXPECT_FALSE(has("Standard atmosphere"));
  EXPECT_FALSE(has("Isentrope"));
  drawn.Set.DryAdiabats = false;
  EXPECT_FALSE(has("Dry adiabat"));
  drawn.Set.Diagram = DiagramType::Tephigram;
  EXPECT_TRUE(has("Isentrope"));
}

}  // namespace
}  // namespace vexa::diagram
