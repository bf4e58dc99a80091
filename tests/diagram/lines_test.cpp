// Which lines and scales a diagram has by itself and where they stand. Places are worked out by
// hand from the axes: on the emagram temperatures are shares of the frame's width, on it and on the
// skew-T pressures are shares of its height by their logarithm.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "diagram/drawn.h"
#include "diagram/palette.h"
#include "support/soundings.h"

namespace vexa::diagram {
namespace {

using test::Profile;
using Numbers = std::vector<double>;

double ThetaOf(const DiagramCoordinates& at) {
  return (at.Temp + 273.16) * std::pow(1000 / at.Press, 0.2856);
}

// The temperature or the pressure at which each line of a tag begins, to tenths.
Numbers Begins(const SoundingPlot& plot, std::string_view tag, double DiagramCoordinates::*what) {
  Numbers values;
  for (const auto& line : Lines(plot.Page, tag)) {
    values.push_back(std::round(10 * (plot.Mapping.ToCoordinates(line.front()).*what)) / 10);
  }
  return values;
}
Numbers TempsOf(const SoundingPlot& plot, std::string_view tag) {
  return Begins(plot, tag, &DiagramCoordinates::Temp);
}
Numbers PressesOf(const SoundingPlot& plot, std::string_view tag) {
  return Begins(plot, tag, &DiagramCoordinates::Press);
}

// from, from + step, ... to.
Numbers Steps(double from, double to, double step) {
  Numbers values;
  for (double value = from; value <= to + 1e-9; value += step) values.push_back(value);
  return values;
}

TEST(Grid, IsothermsStandAtEveryIntervalThatTheFrameShows) {
  Drawn drawn = OnEmagram();
  EXPECT_EQ(TempsOf(drawn(), "isotherm"), Steps(-40, 40, 10));
  drawn.Set.TempGridInterval = 20;
  EXPECT_EQ(TempsOf(drawn(), "isotherm"), Steps(-40, 40, 20));
  drawn.Set.EmagramTempLines = false;
  EXPECT_TRUE(TempsOf(drawn(), "isotherm").empty());
  EXPECT_EQ(Texts(drawn().Page, "temperature label").size(), 5u) << "the axis stays";
  // -40 °C are -40 °F, 40 °C are 104 °F.
  drawn.Set.TempDualScale = true;
  EXPECT_EQ(Texts(drawn().Page, "temperature label"),
            (LabelTexts{"-40", "-20", "0", "20", "40", "-40", "-20", "0", "20", "40", "60", "80",
                        "100"}));
  EXPECT_EQ(Texts(drawn().Page, "temperature unit"), (LabelTexts{"C", "F"}));
  drawn.Set.TempGridUnits = TempUnits::Fahrenheit;
  EXPECT_EQ(Texts(drawn().Page, "temperature unit"), (LabelTexts{"F", "C"}));
  // 233.16 to 313.16 K.
  drawn.Set.TempDualScale = false;
  drawn.Set.EmagramTempLines = true;
  drawn.Set.TempGridUnits = TempUnits::Kelvin;
  EXPECT_EQ(Texts(drawn().Page, "temperature label"), (LabelTexts{"240", "260", "280", "300"}));
  EXPECT_EQ(TempsOf(drawn(), "isotherm"), (Numbers{-33.2, -13.2, 6.8, 26.8}));
  // Freezing and the growth of ice are told from the others by their pens.
  drawn.Set.TempGridUnits = TempUnits::Celsius;
  const Palette inks = PaletteFor(drawn.Set);
  const SoundingPlot plot = drawn();
  for (const Polyline& line : Tagged<Polyline>(plot.Page, "isotherm")) {
    const double temp = plot.Mapping.ToCoordinates(line.Points.front()).Temp;
    const double share = std::fabs(temp) < 0.1 ? 1 : std::fabs(temp + 20) < 0.1 ? 0.5 : 0;
    EXPECT_EQ(line.Stroke.Width, share > 0 ? share * inks.ZeroIsotherm.Width : inks.Isotherm.Width)
        << temp;
  }
}

TEST(Grid, TheSkewTHasItsTemperaturesAboveToo) {
  Drawn drawn(PlainSounding());
  drawn.Set.TempScaling = Scaling::Manual;
  const SoundingPlot plot = drawn();
  int below = 0, above = 0;
  for (const Label& label : Tagged<Label>(plot.Page, "temperature label")) {
    const bool isBelow = label.At.Y > plot.Mapping.Frame().Bottom;
    (isBelow ? below : above) += 1;
    // A label stands where its isotherm meets the edge.
    const double edge = isBelow ? plot.Mapping.Frame().Bottom : plot.Mapping.Frame().Top;
    EXPECT_NEAR(plot.Mapping.ToCoordinates({label.At.X, edge}).Temp, std::stod(label.Text), 0.05);
  }
  EXPECT_EQ(below, 9);
  EXPECT_GT(above, 3);
}

TEST(Grid, IsobarsStandAtEveryIntervalAndWhereTheyAreMandatory) {
  Drawn drawn = OnEmagram();
  const Numbers fifties = Steps(100, 1050, 50);
  EXPECT_EQ(PressesOf(drawn(), "pressure line"), Numbers(fifties.rbegin(), fifties.rend()));
  EXPECT_EQ(Texts(drawn().Page, "pressure unit"), LabelTexts{"MB"});
  drawn.Set.Pressure = PressureUnits::Hpa;
  EXPECT_EQ(Texts(drawn().Page, "pressure unit"), LabelTexts{"hPa"});
  drawn.Set.YGridInterval = 200;
  drawn.Set.AllMandatoryLines = true;
  EXPECT_EQ(PressesOf(drawn(), "pressure line"),
            (Numbers{1050, 1000, 925, 850, 800, 700, 600, 500, 400, 300, 250, 200, 150, 100}));
  // The axis of heights has isobars at every 100 hPa beside it.
  drawn.Set.AllMandatoryLines = false;
  drawn.Set.YGridUnits = GridUnits::Kilometers;
  drawn.Set.YGridInterval = 2;
  EXPECT_EQ(PressesOf(drawn(), "pressure line"),
            (Numbers{1050, 1000, 900, 800, 700, 600, 500, 400, 300, 200, 100}));
  // An enlarged quarter keeps as many lines as it can: every 25 hPa in place of 100.
  drawn.Set.YGridUnits = GridUnits::Mb;
  drawn.Set.YGridInterval = 100;
  drawn.Zoom = Rect{0, 0.75, 0.25, 1};
  const Numbers enlarged = PressesOf(drawn(), "pressure line");
  ASSERT_GE(enlarged.size(), 5u);
  EXPECT_EQ(enlarged[1] - enlarged[2], 50);
}

// Above 100 hPa isobars stand every ten, whatever the interval below; above 400 K dry adiabats
// stand every 20, above 600 K every 50, up to 1200 K: in the corner are 1278 K.
TEST(Grid, LinesOfTheHighAir) {
  Drawn drawn = OnEmagram(Profile({{1000, 20, 10}, {100, -60, -80}, {10, -40, 999.9}}));
  drawn.Set.Above100mb = true;
  drawn.Set.TempMax = 70;
  EXPECT_EQ(Lines(drawn().Page, "dry adiabat").size(), (Steps(230, 400, 10).size() + 10 + 12));
  drawn.Set.YGridInterval = 35;
  const Numbers odd = PressesOf(drawn(), "pressure line");
  EXPECT_EQ(*(std::ranges::find(odd, 105) + 1), 70);
  drawn.Set.YGridInterval = 100;
  Numbers expected = {1050};
  for (int press = 1000; press > 100; press -= 100) expected.push_back(press);
  for (int press = 100; press > 0; press -= 10) expected.push_back(press);
  EXPECT_EQ(PressesOf(drawn(), "pressure line"), expected);
}

// Each line of a mixing ratio passes where saturated air of its pressure holds so much, and is
// named by it; w = 0.62198 e / (p - e).
TEST(Grid, MixingRatiosAreThoseOfTheirNames) {
  for (const DiagramType type : {DiagramType::Emagram, DiagramType::Tephigram}) {
    Drawn drawn = OnEmagram();
    drawn.Set.Diagram = type;
    drawn.Set.TempMin = -60;
    drawn.Set.TempMax = 60;
    const SoundingPlot plot = drawn();
    Numbers held;
    for (const auto& line : Lines(plot.Page, "mixing ratio line")) {
      const DiagramCoordinates at = plot.Mapping.ToCoordinates(line.front());
      const double vapor = analysis::SatVapor(at.Temp);
      held.push_back(std::round(622e2 * vapor / (at.Press - vapor) * 0.99997) / 100);
    }
    const Numbers usual = {0.1, 0.2, 0.4, 0.7, 1, 1.5, 2, 3, 4, 6, 8, 10, 13, 16, 20, 25, 30, 36};
    const Numbers many = {0.2, 0.4, 0.6, 0.8, 1,  1.5, 2,  2.5, 3,  4,  5,  6, 7,
                          8,   9,   10,  12,  15, 16,  20, 25,  28, 30, 35, 36};
    const Numbers& expected = type == DiagramType::Emagram ? usual : many;
    ASSERT_EQ(held.size(), expected.size());
    for (std::size_t i = 0; i < held.size(); ++i) {
      EXPECT_NEAR(held[i], expected[i], 0.006 + 0.001 * expected[i]);
    }
  }
}

// A number stands on the line that it names.
TEST(Grid, LabelsStandOnTheirLines) {
  Drawn drawn = OnEmagram();
  drawn.Set.DryLabel = drawn.Set.SatLabel = drawn.Set.WetLabel = true;
  const SoundingPlot plot = drawn();
  const auto each = [&](std::string_view tag, auto&& valueAt) {
    const auto labels = Tagged<Label>(plot.Page, tag);
    for (const Label& label : labels) {
      const double named = std::stod(label.Text);
      EXPECT_NEAR(valueAt(plot.Mapping.ToCoordinates(label.At)), named, 0.005 * named + 0.3) << tag;
    }
    EXPECT_GT(labels.size(), 4u) << tag;
  };
  each("dry label", ThetaOf);
  each("mixing ratio label", [](const DiagramCoordinates& at) {
    const double vapor = analysis::SatVapor(at.Temp);
    return 621.98 * vapor / (at.Press - vapor);
  });
  each("saturation label", [](const DiagramCoordinates& at) {
    const double thetaE = analysis::ThetaPoint(at.Press, at.Temp).ThetaE;
    return analysis::LiftSat(thetaE, 1000).Temp;
  });
}

TEST(Grid, CurvesHaveTheirValues) {
  Drawn drawn = OnEmagram();
  // In the corners theta is 229.9 K (-40 °C, 1050 hPa) and 604.4 K (40 °C, 100 hPa).
  Numbers dry = Steps(230, 400, 10);
  for (const double theta : Steps(420, 600, 20)) dry.push_back(theta);
  const SoundingPlot plot = drawn();
  Numbers thetas;
  for (const auto& line : Lines(plot.Page, "dry adiabat")) {
    thetas.push_back(std::round(ThetaOf(plot.Mapping.ToCoordinates(line.front()))));
  }
  EXPECT_EQ(thetas, dry);
  EXPECT_TRUE(Texts(plot.Page, "dry label").empty());
  EXPECT_EQ(Lines(plot.Page, "saturation adiabat").size(), 19u);  // -32 to 40 by 4
  EXPECT_TRUE(Texts(plot.Page, "saturation label").empty());
  for (const auto& line : Lines(plot.Page, "mixing ratio line")) {
    EXPECT_GE(plot.Mapping.ToCoordinates(line.back()).Press, 400 - 0.1);
  }
  drawn.Set.DryLabel = drawn.Set.SatLabel = true;
  drawn.Set.WetLabel = false;
  EXPECT_TRUE(Texts(drawn().Page, "mixing ratio label").empty());
  drawn.Set.DryAdiabats = drawn.Set.SatAdiabats = drawn.Set.MixingLines = false;
  for (const char* tag : {"dry adiabat", "saturation adiabat", "mixing ratio line"}) {
    EXPECT_TRUE(Lines(drawn().Page, tag).empty()) << tag;
  }
  // The isentropes of the tephigram are its frame: they are drawn whatever is chosen.
  drawn.Set.Diagram = DiagramType::Tephigram;
  EXPECT_FALSE(Lines(drawn().Page, "isentrope").empty());
  const LabelTexts named = Texts(drawn().Page, "isentrope label");
  EXPECT_EQ(named.front(), "240\u00B0");
  EXPECT_EQ(named.back(), "330\u00B0");
  EXPECT_EQ(named.size(), 10u);
}

TEST(Grid, ReferenceLinesAreDrawnAndNamedEachByItsOption) {
  const struct {
    const char* Tag;
    ReferenceLine ViewSettings::*Line;
    const char* Name;
  } cases[] = {{"dry reference", &ViewSettings::DryRef, "300 K"},
               {"saturation reference", &ViewSettings::SatRef, "20 C"},
               {"mixing ratio reference", &ViewSettings::MixRef, "10 g/kg"}};
  for (const auto& c : cases) {
    for (const auto& [isDrawn, isNamed] : {std::pair(0, 0), {0, 1}, {1, 0}, {1, 1}}) {
      Drawn drawn = OnEmagram();
      (drawn.Set.*c.Line).Plot = isDrawn != 0;
      (drawn.Set.*c.Line).ShowLabel = isNamed != 0;
      const SoundingPlot plot = drawn();
      EXPECT_EQ(!Lines(plot.Page, c.Tag).empty(), isDrawn != 0) << c.Tag;
      EXPECT_EQ(Texts(plot.Page, c.Tag), LabelTexts(isNamed, c.Name)) << c.Tag;
      for (const Label& label : Tagged<Label>(plot.Page, c.Tag)) {
        EXPECT_GT(label.At.X, plot.Mapping.Frame().Left + 200) << c.Tag;
        EXPECT_LT(label.At.X, plot.Mapping.Frame().Right - 200) << c.Tag;
      }
    }
  }
}

TEST(Heights, LinesAndScalesStandAtTheirHeights) {
  Drawn drawn = OnEmagram();
  const auto pressAt = [&](double height) {
    return std::round(10 * analysis::GetPRESS(drawn.Results.Levels, height)) / 10;
  };
  EXPECT_TRUE(Lines(drawn().Page, "height line").empty());
  drawn.Set.YGridInterval = 1;
  drawn.Set.YGridUnits = GridUnits::Kilometers;
  const SoundingPlot km = drawn();
  Numbers expected;
  for (double height = 0; height <= 16000; height += 1000) {
    expected.push_back(pressAt(height));  // 100 hPa lie some 16 km up
  }
  EXPECT_EQ(PressesOf(km, "height line"), expected);
  const LabelTexts axis = Texts(km.Page, "height axis");
  EXPECT_EQ(LabelTexts(axis.begin(), axis.begin() + 3), (LabelTexts{"KM msl", "0", "1"}));
  drawn.Set.YGridUnits = GridUnits::Feet;
  drawn.Set.YGridInterval = 10;
  const SoundingPlot feet = drawn();
  EXPECT_EQ(PressesOf(feet, "height line").at(1), pressAt(10000 * 0.3048));
  EXPECT_EQ(Texts(feet.Page, "height axis").front(), "FT (x1000) msl");
  EXPECT_EQ(Texts(feet.Page, "height axis").at(2), "10");
  // Above ground they count from the station, here 500 m up.
  drawn.Sounding = Profile({{950, 20, 10}, {500, -12, -30}, {100, -60, -80}}, {}, 500);
  drawn.Set.Heights = HeightMode::Agl;
  drawn.Set.RightScale = HeightScale::Feet;
  const SoundingPlot agl = drawn();
  EXPECT_EQ(Texts(agl.Page, "height axis").front(), "FT (x1000) AGL");
  EXPECT_EQ(PressesOf(agl, "height line").at(1), pressAt(500 + 10000 * 0.3048));
  EXPECT_EQ(Texts(agl.Page, "height scale head"), (LabelTexts{" FT(x1000)", "AGL"}));
  drawn.Set.RightScale = HeightScale::None;
  EXPECT_TRUE(Texts(drawn().Page, "height scale head").empty());
}

// Every 500 m or 1000 ft above the sea or the ground, which the plain sounding has at 100 m.
TEST(Heights, LeadWhereThePilotReadsThem) {
  Drawn drawn = OnEmagram();
  drawn.Layout = FindLayout("pilot");
  ASSERT_NE(drawn.Layout, nullptr);
  drawn.Sounding.ElevM = 100;
  const struct {
    LengthUnits Units;
    HeightMode From;
    std::string Head;
    double First, Step;  // m above the sea
  } cases[] = {{LengthUnits::Meter, HeightMode::Msl, "m msl", 0, 500},
               {LengthUnits::Feet, HeightMode::Msl, "ft msl", 0, 304.8},
               {LengthUnits::Meter, HeightMode::Agl, "m AGL", 100, 500}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Head);
    drawn.Set.GpmUnits = c.Units;
    drawn.Set.Heights = c.From;
    const SoundingPlot plot = drawn();
    EXPECT_EQ(FirstText(plot.Page, "height axis"), c.Head);
    const Numbers lines = PressesOf(plot, "height line");
    ASSERT_GE(lines.size(), 12u);
    for (int i = 0; i < 12; ++i) {
      const double press = analysis::GetPRESS(drawn.Results.Levels, c.First + i * c.Step);
      EXPECT_NEAR(lines[static_cast<std::size_t>(i)], press, 0.06) << i;
    }
  }
}

TEST(Heights, OfMandatoryLevelsStandBesideTheirPressures) {
  Drawn drawn = OnEmagram();
  const SoundingPlot plot = drawn();
  Numbers presses;
  for (const Label& label : Tagged<Label>(plot.Page, "pressure height label")) {
    const double press = std::round(plot.Mapping.PressAt(label.At.Y));
    presses.push_back(press);
    EXPECT_EQ(std::stod(label.Text),
              std::round(analysis::HeightAt(drawn.Results.Levels, press).Value));
  }
  EXPECT_EQ(presses, (Numbers{1000, 925, 850, 700, 500, 400, 300, 250, 200, 150, 100}));
}

TEST(Heights, TheSurfaceSaysWhatIsKnownOfIt) {
  Drawn drawn = OnEmagram();
  const auto text = [&] { return FirstText(drawn().Page, "surface label"); };
  EXPECT_EQ(PressesOf(drawn(), "surface line").at(0), 1000);
  EXPECT_EQ(Tagged(drawn().Page, "ground").size(), 1u);
  // The standard air of 1000 hPa has 14.3 °C.
  EXPECT_EQ(text(), "Stn Elev: 0 m   DA: 363 m, ISA+5.7   QNH = 1000.0 mb");
  drawn.Sounding.Temp(1) = -30;
  drawn.Sounding.Dewpt(1) = -35;
  EXPECT_NE(text().find(", ISA-"), std::string::npos) << text();
  drawn.Set.Pressure = PressureUnits::InHg;  // 1000 x 0.02953
  EXPECT_NE(text().find("QNH = 29.53 in Hg"), std::string::npos) << text();
  drawn.Set.ShowQnh = false;
  EXPECT_EQ(text().find("QNH"), std::string::npos) << text();
  drawn.Set.ShowQnh = true;
  SetElevationUnknown(drawn.Sounding);
  EXPECT_TRUE(text().starts_with("Stn Elev: --")) << text();
  EXPECT_EQ(text().find("QNH"), std::string::npos) << text();
  EXPECT_EQ(text().find(" Est"), text().size() - 4) << text();
  drawn.Set.ShadeGround = false;
  EXPECT_TRUE(Tagged(drawn().Page, "ground").empty());
  drawn.Sounding.Press(1) = 1060;  // below the diagram
  EXPECT_EQ(text(), "");
  drawn.Sounding.Press(1) = 1000;
  drawn.Set.SurfaceLine = false;
  EXPECT_TRUE(Tagged(drawn().Page, "surface line").empty());
  EXPECT_EQ(text(), "");
}

TEST(Heights, LevelsAndCustomLinesStandAtTheirPressures) {
  Drawn drawn = OnEmagram();
  EXPECT_EQ(Lines(drawn().Page, "freezing level").size(), 2u) << "the line and its end at the edge";
  // Between 850 (12 °C) and 500 hPa (-12 °C) the air freezes half-way up in the logarithm.
  EXPECT_NEAR(PressesOf(drawn(), "freezing level").front(), std::sqrt(850.0 * 500), 10);
  Drawn high(test::ReferenceConvective());
  EXPECT_FALSE(Lines(high().Page, "tropopause").empty());
  high.Set.TropoLine = false;
  EXPECT_TRUE(Lines(high().Page, "tropopause").empty());
  drawn.Set.FreezeLine = false;
  EXPECT_TRUE(Lines(drawn().Page, "freezing level").empty());

  drawn.Set.CustomLines[0] = {.Plot = true, .Height = 3000, .Style = CustomLineStyle::Dots};
  drawn.Set.CustomLines[1] = {.Plot = false, .Height = 4000};
  drawn.Set.CustomLines[2] = {.Plot = true, .ShowLabel = false, .Height = 6000};
  drawn.Set.CustomLines[3] = {.Plot = true, .Height = 40000};  // beyond the sounding
  const SoundingPlot plot = drawn();
  EXPECT_EQ(Texts(plot.Page, "custom line label"), LabelTexts{"#1 3000 m"});
  const auto lines = Tagged<Polyline>(plot.Page, "custom line");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0].Stroke.Style, LineStyle::Dots);
  EXPECT_EQ(lines[2].Stroke.Style, LineStyle::Dash);
  const Numbers presses = PressesOf(plot, "custom line");
  EXPECT_NEAR(presses[0], analysis::GetPRESS(drawn.Results.Levels, 3000), 0.1);
  EXPECT_NEAR(presses[2], analysis::GetPRESS(drawn.Results.Levels, 6000), 0.1);
}

// The standard atmosphere has 15 °C at 1013.25 hPa, -17.5 °C at 540.2 hPa in 5 km, -50 °C at
// 264.4 hPa in 10 km (ICAO 1993).
TEST(Heights, TheStandardAtmosphereIsLabelledByItsOption) {
  Drawn drawn = OnEmagram();
  drawn.Set.TempMin = -70;
  EXPECT_TRUE(Tagged(drawn().Page, "standard atmosphere").empty());
  drawn.Set.IcaoLine = true;
  drawn.Set.RightScale = HeightScale::Kilometers;
  const SoundingPlot plot = drawn();
  EXPECT_EQ(Texts(plot.Page, "ISA label"),
            (LabelTexts{"ISA 0 km", "ISA 5 km", "ISA 10 km", "ISA 15 km"}));
  Numbers temps, presses;
  for (const Circle& dot : Tagged<Circle>(plot.Page, "standard atmosphere")) {
    const DiagramCoordinates at = plot.Mapping.ToCoordinates(dot.Center);
    temps.push_back(std::round(10 * at.Temp) / 10);
    presses.push_back(std::round(at.Press));
  }
  EXPECT_EQ(temps, (Numbers{15, -17.5, -50, -56.5}));
  EXPECT_EQ(presses, (Numbers{1013, 540, 264, 120}));
  const auto count = [&](IcaoLabels labels) {
    drawn.Set.IcaoLabelling = labels;
    return Texts(drawn().Page, "ISA label").size();
  };
  // 100 hPa lie 16.2 km up, 53 thousand feet.
  EXPECT_EQ(count(IcaoLabels::None), 0u);
  EXPECT_EQ(count(IcaoLabels::One), 17u);
  EXPECT_EQ(count(IcaoLabels::Every10), 2u);
  drawn.Set.RightScale = HeightScale::Feet;
  EXPECT_EQ(count(IcaoLabels::Every10), 6u);
  EXPECT_EQ(Texts(drawn().Page, "ISA label").at(1), "ISA 10");
}

}  // namespace
}  // namespace vexa::diagram
