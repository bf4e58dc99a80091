// Which lines, marks and labels a diagram has and where they stand. Places are worked out by hand
// from the axes: on the emagram temperatures are shares of the frame's width, on it and on the
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
using LabelTexts = std::vector<std::string>;

SoundingRecord PlainSounding() {
  return Profile({{1000, 20, 10}, {850, 12, 5}, {500, -12, -30}, {250, -48, -60}, {100, -60, -80}},
                 {{100, 180, 10}, {5000, 270, 40}});
}

// From -40 to 40 degrees, 1050 to 100 hPa, on the emagram.
Drawn OnEmagram(SoundingRecord sounding = PlainSounding()) {
  Drawn drawn(std::move(sounding));
  drawn.Set.Diagram = DiagramType::Emagram;
  drawn.Set.TempScaling = Scaling::Manual;
  return drawn;
}

// The temperature, pressure or potential temperature at which each line of a tag begins.
Numbers TempsOf(const SoundingPlot& plot, std::string_view tag) {
  Numbers temps;
  for (const auto& line : Lines(plot.Page, tag)) {
    temps.push_back(std::round(10 * plot.Mapping.ToCoordinates(line.front()).Temp) / 10);
  }
  return temps;
}
Numbers PressesOf(const SoundingPlot& plot, std::string_view tag) {
  Numbers presses;
  for (const auto& line : Lines(plot.Page, tag)) {
    presses.push_back(std::round(10 * plot.Mapping.ToCoordinates(line.front()).Press) / 10);
  }
  return presses;
}
Numbers ThetasOf(const SoundingPlot& plot, std::string_view tag) {
  Numbers thetas;
  for (const auto& line : Lines(plot.Page, tag)) {
    const DiagramCoordinates at = plot.Mapping.ToCoordinates(line.front());
    thetas.push_back(std::round((at.Temp + 273.16) * std::pow(1000 / at.Press, 0.2856)));
  }
  return thetas;
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
  EXPECT_EQ(Texts(drawn().Page, "temperature label"),
            (LabelTexts{"-40", "-30", "-20", "-10", "0", "10", "20", "30", "40"}));
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
  for (const Item* item : Tagged(plot.Page, "isotherm")) {
    const auto& line = std::get<Polyline>(item->Shape);
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
  double below = 0;
  double above = 0;
  for (const Item* item : Tagged(plot.Page, "temperature label")) {
    const Label& label = std::get<Label>(item->Shape);
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
  const LabelTexts labels = Texts(drawn().Page, "pressure label");
  EXPECT_EQ(labels.front(), "1050");
  EXPECT_EQ(labels.back(), "100");
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

TEST(Grid, CurvesHaveTheirValues) {
  Drawn drawn = OnEmagram();
  // In the corners theta is 229.9 K (-40 °C, 1050 hPa) and 604.4 K (40 °C, 100 hPa).
  Numbers dry = Steps(230, 400, 10);
  for (const double theta : Steps(420, 600, 20)) dry.push_back(theta);
  EXPECT_EQ(ThetasOf(drawn(), "dry adiabat"), dry);
  EXPECT_TRUE(Texts(drawn().Page, "dry label").empty());
  EXPECT_EQ(Lines(drawn().Page, "saturation adiabat").size(), 19u);  // -32 to 40 by 4
  EXPECT_TRUE(Texts(drawn().Page, "saturation label").empty());
  const SoundingPlot plot = drawn();
  for (const auto& line : Lines(plot.Page, "mixing ratio line")) {
    EXPECT_GE(plot.Mapping.ToCoordinates(line.back()).Press, 400 - 0.1);
  }
  const LabelTexts mixing = Texts(plot.Page, "mixing ratio label");
  for (const char* text : {"0.4", "1", "1.5", "2", "10", "20", "36"}) {
    EXPECT_EQ(std::ranges::count(mixing, text), 1) << text;
  }
  drawn.Set.DryLabel = drawn.Set.SatLabel = true;
  drawn.Set.WetLabel = false;
  EXPECT_TRUE(std::ranges::count(Texts(drawn().Page, "dry label"), "300") == 1);
  const LabelTexts saturated = Texts(drawn().Page, "saturation label");
  EXPECT_GE(saturated.size(), 3u);
  for (const std::string& text : saturated) EXPECT_EQ(std::stoi(text) % 4, 0) << text;
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
  struct Case {
    const char* Tag;
    ReferenceLine ViewSettings::*Line;
    const char* Name;
  };
  for (const Case& c : {Case{"dry reference", &ViewSettings::DryRef, "300 K"},
                        Case{"saturation reference", &ViewSettings::SatRef, "20 C"},
                        Case{"mixing ratio reference", &ViewSettings::MixRef, "10 g/kg"}}) {
    for (const bool isDrawn : {false, true}) {
      for (const bool isNamed : {false, true}) {
        Drawn drawn = OnEmagram();
        (drawn.Set.*c.Line).Plot = isDrawn;
        (drawn.Set.*c.Line).ShowLabel = isNamed;
        const SoundingPlot plot = drawn();
        LabelTexts named;
        std::size_t lines = 0;
        for (const Item* item : Tagged(plot.Page, c.Tag)) {
          if (const auto* label = std::get_if<Label>(&item->Shape)) named.push_back(label->Text);
          lines += std::holds_alternative<Polyline>(item->Shape) ? 1 : 0;
        }
        EXPECT_EQ(lines > 0, isDrawn) << c.Tag;
        EXPECT_EQ(named, isNamed ? LabelTexts{c.Name} : LabelTexts{}) << c.Tag;
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
  drawn.Set.YGridInterval = 2;
  drawn.Set.YGridUnits = GridUnits::Kilometers;
  const SoundingPlot km = drawn();
  Numbers expected;
  for (double height = 0; height <= 16000; height += 2000) {
    expected.push_back(pressAt(height));  // 100 hPa lie some 16 km up
  }
  EXPECT_EQ(PressesOf(km, "height line"), expected);
  EXPECT_EQ(Texts(km.Page, "height axis").front(), "KM msl");
  EXPECT_EQ(Texts(km.Page, "height axis").at(1), "0");
  EXPECT_EQ(Texts(km.Page, "height axis").at(2), "2");
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

TEST(Heights, OfMandatoryLevelsStandBesideTheirPressures) {
  Drawn drawn = OnEmagram();
  const SoundingPlot plot = drawn();
  const auto labels = Tagged(plot.Page, "pressure height label");
  ASSERT_GE(labels.size(), 8u);
  Numbers presses;
  for (const Item* item : labels) {
    const Label& label = std::get<Label>(item->Shape);
    const double press = plot.Mapping.PressAt(label.At.Y);
    presses.push_back(std::round(press));
    EXPECT_EQ(label.Text,
              std::to_string(std::lround(analysis::SampleAt(drawn.Results.Levels, std::round(press),
                                                            analysis::Quantity::Height)
                                             .Value)) +
                  " m ");
  }
  EXPECT_EQ(presses, (Numbers{1000, 925, 850, 700, 500, 400, 300, 250, 200, 150, 100}));
  drawn.Extra.PressHeights = false;
  EXPECT_TRUE(Texts(drawn().Page, "pressure height label").empty());
}

TEST(Heights, TheSurfaceSaysWhatIsKnownOfIt) {
  Drawn drawn = OnEmagram();
  const auto text = [&] {
    const LabelTexts texts = Texts(drawn().Page, "surface label");
    return texts.empty() ? std::string() : texts.front();
  };
  EXPECT_EQ(Numbers{PressesOf(drawn(), "surface line").front()}, Numbers{1000});
  EXPECT_EQ(Tagged(drawn().Page, "ground").size(), 1u);
  EXPECT_TRUE(text().starts_with("Stn Elev: 0 m   DA: "));
  EXPECT_NE(text().find("QNH = 1000.0 mb"), std::string::npos) << text();
  // 20 °C at 1000 hPa is warmer than the standard air there, -30 °C colder.
  EXPECT_NE(text().find(", ISA+"), std::string::npos) << text();
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
  drawn.Set.ShadeGround = false;
  EXPECT_TRUE(Tagged(drawn().Page, "ground").empty());
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
  const auto lines = Tagged(plot.Page, "custom line");
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(std::get<Polyline>(lines[0]->Shape).Stroke.Style, LineStyle::Dots);
  EXPECT_EQ(std::get<Polyline>(lines[2]->Shape).Stroke.Style, LineStyle::Dash);
  EXPECT_NEAR(PressesOf(plot, "custom line")[0], analysis::GetPRESS(drawn.Results.Levels, 3000),
              0.1);
  EXPECT_NEAR(PressesOf(plot, "custom line")[2], analysis::GetPRESS(drawn.Results.Levels, 6000),
              0.1);
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
  for (const Item* item : Tagged(plot.Page, "standard atmosphere")) {
    const auto* dot = std::get_if<Circle>(&item->Shape);
    if (dot == nullptr) continue;
    const DiagramCoordinates at = plot.Mapping.ToCoordinates(dot->Center);
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

TEST(Traces, OfOtherSoundingsAreToldApart) {
  const SoundingRecord other = test::ReferenceWinter();
  Drawn drawn = OnEmagram();
  drawn.Others = {{&other}};
  drawn.Mode = MultiMode::Compare;
  const auto pen = [&](std::string_view tag) {
    return std::get<Polyline>(Tagged(drawn().Page, tag).at(0)->Shape).Stroke;
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
  const auto bars = Tagged(plot.Page, "stability bar");
  ASSERT_EQ(bars.size(), 4u);
  const Palette inks = PaletteFor(drawn.Set);
  const int colors[] = {9, 10, 14, 12};  // of the sixteen, from the most stable on
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const Area& bar = std::get<Area>(bars[i]->Shape);
    EXPECT_EQ(bar.Fill.Ink, LegibleColor(inks, colors[i])) << i;
    EXPECT_NEAR(plot.Mapping.PressAt(bar.Rings[0][0].Y),
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
  std::vector<std::string> told;
  for (const HotSpot& spot : plot.Page.HotSpots()) {
    if (spot.Tag == "wind") told.push_back(spot.Text);
  }
  EXPECT_EQ(told, (LabelTexts{"100 m: 180/10 kts", "5000 m: 270/40 kts"}));
  const auto limit = Lines(plot.Page, "wind limit");
  ASSERT_EQ(limit.size(), 1u);
  EXPECT_NEAR(plot.Mapping.PressAt(limit[0].front().Y),
              analysis::GetPRESS(drawn.Results.Levels, 5000), 0.1);
  EXPECT_TRUE(Texts(plot.Page, "wind ratio").empty());
  EXPECT_EQ(Tagged(plot.Page, "wind box").size(), 1u);
  drawn.Set.Speed = SpeedUnits::MetersPerSecond;  // 10 x 0.5148
  drawn.Set.WindPlotsBox = false;
  const SoundingPlot metric = drawn();
  EXPECT_EQ(metric.Page.HotSpots().empty(), false);
  EXPECT_TRUE(std::ranges::any_of(metric.Page.HotSpots(), [](const HotSpot& spot) {
    return spot.Text == "100 m: 180/5.1 m/s";
  }));
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
  const SoundingPlot crowded = drawn();
  std::vector<std::string> drawnOnes;
  for (const HotSpot& spot : crowded.Page.HotSpots()) {
    if (spot.Tag == "wind") drawnOnes.push_back(spot.Text);
  }
  EXPECT_EQ(drawnOnes, std::vector<std::string>{"100 m: 160/5.1 m/s"});
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
  const auto text = [&](std::string_view tag) {
    const LabelTexts texts = Texts(drawn().Page, tag);
    return texts.empty() ? std::string() : texts.front();
  };
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

// Of two marks that touch, and of the space between, the column makes what fits.
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
