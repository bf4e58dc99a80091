// Options of the diagram form.
#include <iterator>

#include "config/option_rows.h"
#include "config/row_builder.h"

namespace vexa {
namespace {

constexpr Range kTopPressures = OneOf({700, 500, 400, 300, 200, 100, 50, 30, 10});
constexpr Range kGridIntervals = OneOf({25, 50, 100, 1, 2, 5, 10});
constexpr Range kTempIntervals = OneOf({5, 10, 20});
constexpr Range kLineHeights{-500, 80000};

// Intervals go by their unit: 25, 50, 100 hPa; 1, 2, 5 km; 5, 10 thousand feet.
void IntervalFollowsUnits(Options& options) {
  const int interval = options.YGridInterval;
  switch (options.YGridUnits) {
    case GridUnits::Mb:
      if (interval < 25) options.YGridInterval = 50;
      return;
    case GridUnits::Kilometers:
      if (interval > 5) options.YGridInterval = 1;
      return;
    case GridUnits::Feet:
      if (interval != 5 && interval != 10) options.YGridInterval = 5;
      return;
  }
}

// A scheme brings its paper and the strength of its grid along.
void PaperFollowsScheme(Options& options) {
  const ColorScheme scheme = options.Scheme;
  const bool isDark = scheme == ColorScheme::Dark || scheme == ColorScheme::SafeDark;
  options.Screen = isDark ? ScreenColor::Black : ScreenColor::White;
  options.Darklines = scheme == ColorScheme::Darker || scheme == ColorScheme::Print;
}

constexpr ChoiceText kDiagramTypes[] = {{"Skew-T / Log-P", "Popular U.S. diagram"},
                                        {"Emagram", "Similar to the Stuve diagram"},
                                        {" Tephigram", "Popular European diagram"}};
constexpr ChoiceText kHeightScales[] = {
    {"FT (x1000)", {}}, {"KM", {}}, {"MT", "Metres"}, {"Miles", "Statute miles"}, {"none", {}}};

constexpr std::string_view kDiagramTab1 = "Diagram/Tab 1";

constexpr OptionRow kDiagramTab1Rows[] = {
    Row<At<&ViewSettings::Diagram>>("Diagram type = ", kDiagramTab1)
        .Shown(kDiagramTypes)
        .Says("Skew-T, popular in the U.S.; emagram; or tephigram, popular in Europe."),
    Row<At<&ViewSettings::AutoHighEmagram>>("Auto high-altitude emagram = ", kDiagramTab1)
        .Named("Automatically display Emagram for high-altitude soundings")
        .Says("Only for soundings extending above 100 mb"),
    Row<At<&ViewSettings::EmagramTempLines>>("Emagram temperature lines = ", kDiagramTab1)
        .Named("Display Temperature Gridlines")
        .Says("Emagram only option"),
    Row<At<&ViewSettings::TephigramWarning>>("Tephigram warning = ", kDiagramTab1)
        .Named("Display warning message about offset graphic analyses  >")
        .Says("Message will only be displayed upon initial use"),
    Row<At<&ViewSettings::StabilityBars>>("Stability bars = ", kDiagramTab1)
        .Says("Marks each layer's lapse-rate class by a bar at the left margin."),
    Row<At<&ViewSettings::RightScale>>("Height scale = ", kDiagramTab1)
        .Shown(kHeightScales)
        .Says("Unit of the height scale on the right."),
    Row<At<&ViewSettings::SurfaceLine>>("Surface line = ", kDiagramTab1)
        .Says("Draws a line at the station's elevation."),
    Row<At<&ViewSettings::AllMandatoryLines>>("All TTAA lines = ", kDiagramTab1)
        .Named("All mandatory levels")
        .Says("Draws a line at every mandatory pressure level."),
    Row<At<&ViewSettings::AutoAnalyses>>("Auto display analyses = ", kDiagramTab1)
        .Says("Shows the analyses as soon as a sounding is loaded."),
    Row<At<&ViewSettings::ShowFronts>>("Front marks = ", kDiagramTab1)
        .Says("Marks the front that the winds of the sounding show."),
    Row<At<&ViewSettings::AnalysesBox>>("Analyses box = ", kDiagramTab1)
        .Says("Shows the box of indices and parcel levels."),
    Row<At<&ViewSettings::WindPlotsBox>>("Wind plots box = ", kDiagramTab1)
        .Says("Frames the column of winds beside the diagram."),
    Row<At<&ViewSettings::ShadeGround>>("Shade ground block = ", kDiagramTab1)
        .Says("Shades the diagram below the station."),
    Row<At<&ViewSettings::CursorSounding>>("Cursor sounding = ", kDiagramTab1)
        .Says("Reads the sounding's values at the cursor's pressure."),
    Row<At<&ViewSettings::CursorGrid>>("Cursor diagram grid = ", kDiagramTab1)
        .Says("Reads the grid's values under the cursor."),
    Row<At<&ViewSettings::Heights>>("Height mode = ", kDiagramTab1)
        .Says("Heights above mean sea level or above ground."),
    Row<At<&ViewSettings::FreezeLine>>("Freeze line = ", kDiagramTab1)
        .Says("Draws the freezing levels."),
    Row<At<&ViewSettings::TropoLine>>("Tropo line = ", kDiagramTab1).Says("Draws the tropopauses."),
};

constexpr std::string_view kDiagramTab2 = "Diagram/Tab 2";

bool ScalesByHand(const Options& options) {
  return options.TempScaling == Scaling::Manual;
}

constexpr OptionRow kDiagramTab2Rows[] = {
    Row<At<&ViewSettings::MbLimit>, kTrue, kTopPressures>("MB limit = ", kDiagramTab2)
        .Named("Top pressure")
        .In("hPa")
        .When([](const Options& set) { return !set.AutoMbSelect; })
        .Says("Pressure at the top of the diagram."),
    Row<At<&ViewSettings::AutoMbSelect>>("Auto MB select = ", kDiagramTab2)
        .Named("Top from data")
        .Says("Chooses the top of the diagram from the sounding."),
    Row<At<&ViewSettings::YGridUnits>>("Y-Grid units = ", kDiagramTab2)
        .Says("Draws the horizontal grid at pressures or at heights.")
        .Then(IntervalFollowsUnits),
    Row<At<&ViewSettings::YGridInterval>, kTrue, kGridIntervals>("Y-Grid interval = ", kDiagramTab2)
        .Says("Spacing of the horizontal grid: 25, 50, 100 hPa; 1, 2, 5 km; 5, 10 thousand feet."),
    Row<At<&ViewSettings::TempGridUnits>>("Temp grid units = ", kDiagramTab2)
        .Says("Unit of the temperature scale."),
    Row<At<&ViewSettings::TempDualScale>>("Temp dual scale = ", kDiagramTab2)
        .Says("Adds a scale in °F; in °C where the first is in °F."),
    Row<At<&ViewSettings::TempGridInterval>, kTrue, kTempIntervals>("Temp grid interval = ",
                                                                    kDiagramTab2)
        .In("degrees")
        .Says("Spacing of the isotherms."),
    Row<At<&ViewSettings::TempScaling>>("Temp grid scaling = ", kDiagramTab2)
        .Says("Takes the temperature range from the data, or as set below."),
    Row<At<&ViewSettings::TempMin>, kTrue, Range{-120, 40}>("Temp MIN = ", kDiagramTab2)
        .In("°C")
        .When(ScalesByHand)
        .Says("Temperature at the diagram's left edge in manual scaling."),
    Row<At<&ViewSettings::TempMax>, kTrue, Range{-80, 60}>("  Temp MAX = ", kDiagramTab2,
                                                           Record::Same)
        .In("°C")
        .When(ScalesByHand)
        .Says("Temperature at the right edge; at least 40 degrees above the left."),
    Row<At<&ViewSettings::OverlayScaling>>("", kDiagramTab2)
        .As("Overlay scaling")
        .Named("Overlay scaling")
        .Says("Axes with room for every overlaid sounding, or those of the first alone."),
    Row<At<&ViewSettings::CompareScaling>>("", kDiagramTab2)
        .As("Compare scaling")
        .Named("Compare scaling")
        .Says("Axes with room for both compared soundings, or those of the first alone."),
};

constexpr std::string_view kDiagramTab3 = "Diagram/Tab 3";

constexpr OptionRow kDiagramTab3Rows[] = {
    Row<At<&ViewSettings::DryAdiabats>>("Dry adiabats = ", kDiagramTab3)
        .Says("Draws the dry adiabats."),
    Row<At<&ViewSettings::SatAdiabats>>(" Saturation adiabats = ", kDiagramTab3, Record::Same)
        .Says("Draws the saturation adiabats."),
    Row<At<&ViewSettings::MixingLines>>(" Mixing ratio lines = ", kDiagramTab3, Record::Same)
        .Says("Draws the lines of equal saturation mixing ratio."),
    Row<At<&ViewSettings::Scheme>>("", kDiagramTab3)
        .As("Color scheme")
        .Named("Color scheme")
        .Says("Colours of the whole diagram; the color-safe ones stay apart for colour-blind eyes.")
        .Then(PaperFollowsScheme),
    Row<At<&ViewSettings::DryColor>, kTrue, kColors>("Dry color = ", kDiagramTab3)
        .Says("Colour of the dry adiabats."),
    Row<At<&ViewSettings::SatColor>, kTrue, kColors>("  Sat color = ", kDiagramTab3, Record::Same)
        .Says("Colour of the saturation adiabats."),
    Row<At<&ViewSettings::WetColor>, kTrue, kColors>("  Wet color = ", kDiagramTab3, Record::Same)
        .Says("Colour of the mixing ratio lines."),
    Row<At<&ViewSettings::DryLabel>>("Dry label = ", kDiagramTab3).Says("Labels the dry adiabats."),
    Row<At<&ViewSettings::SatLabel>>("  Sat label = ", kDiagramTab3, Record::Same)
        .Says("Labels the saturation adiabats."),
    Row<At<&ViewSettings::WetLabel>>("  Wet label = ", kDiagramTab3, Record::Same)
        .Says("Labels the mixing ratio lines."),
    Row<At<&ViewSettings::DryRef, &ReferenceLine::Value>, kTrue, Range{200, 450}>("Dry Ref Val = ",
                                                                                  kDiagramTab3)
        .Named("Reference dry adiabat")
        .In("K")
        .Says("Potential temperature of a dry adiabat of your choice."),
    Row<At<&ViewSettings::DryRef, &ReferenceLine::Plot>>("  Plot = ", kDiagramTab3, Record::Same)
        .As("Dry Ref Val Plot")
        .Named("Plot reference dry adiabat")
        .Says("Draws the reference dry adiabat."),
    Row<At<&ViewSettings::DryRef, &ReferenceLine::ShowLabel>>("  Label = ", kDiagramTab3,
                                                              Record::Same)
        .As("Dry Ref Val Label")
        .Named("Label reference dry adiabat")
        .Says("Labels the reference dry adiabat."),
    Row<At<&ViewSettings::SatRef, &ReferenceLine::Value>, kTrue, Range{-30, 40}>("Sat Ref Val = ",
                                                                                 kDiagramTab3)
        .Named("Reference saturation adiabat")
        .In("°C")
        .Says("Wet-bulb potential temperature of a saturation adiabat of your choice."),
    Row<At<&ViewSettings::SatRef, &ReferenceLine::Plot>>("  Plot = ", kDiagramTab3, Record::Same)
        .As("Sat Ref Val Plot")
        .Named("Plot reference saturation adiabat")
        .Says("Draws the reference saturation adiabat."),
    Row<At<&ViewSettings::SatRef, &ReferenceLine::ShowLabel>>("  Label = ", kDiagramTab3,
                                                              Record::Same)
        .As("Sat Ref Val Label")
        .Named("Label reference saturation adiabat")
        .Says("Labels the reference saturation adiabat."),
    Row<At<&ViewSettings::MixRef, &ReferenceLine::Value>, kTrue, Range{0.1, 40}>("Mix Ref Val = ",
                                                                                 kDiagramTab3)
        .Named("Reference mixing ratio")
        .In("g/kg")
        .Says("Mixing ratio of a line of your choice."),
    Row<At<&ViewSettings::MixRef, &ReferenceLine::Plot>>("  Plot = ", kDiagramTab3, Record::Same)
        .As("Mix Ref Val Plot")
        .Named("Plot reference mixing ratio line")
        .Says("Draws the reference mixing ratio line."),
    Row<At<&ViewSettings::MixRef, &ReferenceLine::ShowLabel>>("  Label = ", kDiagramTab3,
                                                              Record::Same)
        .As("Mix Ref Val Label")
        .Named("Label reference mixing ratio line")
        .Says("Labels the reference mixing ratio line."),
};

constexpr std::string_view kTab4 = "Diagram/Tab 4";

constexpr OptionRow kTab4Rows[] = {
    Row<At<&ViewSettings::TraceDots>>("T/Td dots = ", kTab4)
        .Says("Marks each level of the temperature and dew-point traces with a dot."),
    Row<At<&ViewSettings::TraceCircles>>("T/Td circles = ", kTab4)
        .Says("Marks each level of the temperature and dew-point traces with a circle."),
    Row<At<&ViewSettings::TraceThick>>("T/Td thick lines = ", kTab4)
        .Says("Thick traces for no sounding, for the first, or for all that are shown."),
    Row<At<&ViewSettings::DewptLine>>("Td lines None/Dash/Solid = ", kTab4)
        .Named("Dew-point line")
        .Says("Line style of the dew-point trace."),
    Row<At<&ViewSettings::DewptColor>, kTrue, kColors>("Td color = ", kTab4)
        .Named("Dew-point color")
        .Says("Colour of the dew-point trace."),
    Row<At<&ViewSettings::WetBulbTrace>>("", kTab4)
        .As("Wet-bulb trace")
        .Named("Wet-bulb trace")
        .Says("Draws the wet-bulb temperature between dew point and temperature."),
    Row<At<&ViewSettings::VirtualTrace>>("", kTab4)
        .As("Virtual temperature trace")
        .Named("Virtual temperature trace")
        .Says("Draws the virtual temperature beside the temperature."),
    Row<At<&ViewSettings::UsualTemps>>("", kTab4)
        .As("Usual temperatures")
        .Named("Usual temperatures")
        .Says(
            "Shades how temperature and dew point are spread here in this month and at this hour: "
            "10 to 90 %, and the median; by the catalogue of soundings."),
    Row<At<&ViewSettings::UsualWinds>>("", kTab4)
        .As("Usual winds")
        .Named("Usual winds")
        .Says("Shades how the wind speed is spread, in the column of winds, with the sounding's "
              "own."),
    Row<At<&ViewSettings::WindShafts>>("Wind shafts = ", kTab4)
        .Says("Draws the staff on which the wind symbols stand."),
    Row<At<&ViewSettings::WindDots>>("  Wind dots = ", kTab4, Record::Same)
        .Says("Draws a dot at the foot of each wind symbol."),
    Row<At<&ViewSettings::Winds>>("Wind display = ", kTab4)
        .Says("Winds as barbs, as flags, or none."),
    Row<At<&ViewSettings::Speed>>("  Wind speed units = ", kTab4, Record::Same)
        .Says("Unit of wind speeds everywhere in the program."),
    Row<At<&ViewSettings::BarbSize>>("", kTab4)
        .As("Wind size")
        .Named("Wind size")
        .Says("Size of the wind symbols."),
};

constexpr std::string_view kTab5 = "Diagram/Tab 5";

constexpr OptionRow kTab5Rows[] = {
    Row<At<&ViewSettings::Thermo>>("Thermo display type = ", kTab5)
        .Says("All indices in the classic order, or the groups chosen below."),
    Row<At<&ViewSettings::PanelMain>>("Main = ", kTab5)
        .Says("Shows KI, TT, VT, CT, LI, SI, SWEAT and the wet-bulb zero."),
    Row<At<&ViewSettings::PanelEurope>>("  Europe = ", kTab5, Record::Same)
        .Says("Shows KO, JI, TI, Boyden, S and TQ."),
    Row<At<&ViewSettings::PanelCape>>("  CAPE = ", kTab5, Record::Same)
        .Says("Shows CAPE, CIN, BRN, EHI and VGP."),
    Row<At<&ViewSettings::PanelFog>>("  Fog = ", kTab5, Record::Same)
        .Says("Shows the fog stability index, fog threat and fog point."),
    Row<At<&ViewSettings::ThermoHeight>>("Thermo units = ", kTab5)
        .Named("Panel height unit")
        .Says("Unit of heights in the analysis box."),
    Row<At<&ViewSettings::ThermoTemp>>("  Thermo units = ", kTab5, Record::Same)
        .As("Thermo units temperature")
        .Named("Panel temperature unit")
        .Says("Unit of temperatures in the analysis box."),
    Row<At<&ViewSettings::CustomPanel>>("", kTab5)
        .As("Custom panel")
        .Named("Custom indices")
        .When([](const Options& set) { return set.Thermo == ThermoDisplay::Custom; })
        .Says(
            "Labels of the indices that the custom panel shows, in this order, parted by commas."),
    Row<At<&ViewSettings::PtUnits>>("PTunits = ", kTab5)
        .Named("Potential temperature unit")
        .Says("Unit of potential temperatures."),
    Row<At<&ViewSettings::Waves>>("", kTab5)
        .As("Mountain-wave layers")
        .Named("Mountain-wave layers")
        .Says("Marks the levels of mountain waves: of none, of the selected one or of all."),
};

constexpr std::string_view kTab6 = "Diagram/Tab 6";

constexpr OptionRow kTab6Rows[] = {
    Row<At<&ViewSettings::PlotHodo>>("Plot Hodo = ", kTab6)
        .Named("Hodograph inset")
        .Says("Draws a small hodograph into the diagram."),
    Row<At<&ViewSettings::PlotStormVector>>("Plot SM Vector = ", kTab6, Record::Same)
        .Named("Storm motion")
        .Says("Draws the storm motion into the small hodograph."),
    Row<At<&ViewSettings::HodoPlace>>("Hodo location = ", kTab6)
        .Says("Calm in the middle of the inset, or where the winds leave room for it."),
    Row<At<&ViewSettings::HodoGridOrigin>>("Hodo Grid origin = ", kTab6)
        .Says("Rings around a wind of zero, or around the storm motion."),
    Row<At<&ViewSettings::HodoDepthMode>>("Hodo depth mode = ", kTab6)
        .Says("Draws all winds, or those up to the limit."),
    Row<At<&ViewSettings::HodoDepthLimitKm>, kTrue, Range{1, 40}>("  Depth limit = ", kTab6,
                                                                  Record::Same)
        .In("km")
        .When([](const Options& set) { return set.HodoDepthMode == HodoDepth::Limit; })
        .Says("Height up to which the hodograph is drawn."),
};

constexpr std::string_view kTab7 = "Diagram/Tab 7";

constexpr OptionRow kTab7Rows[] = {
    Row<At<&ViewSettings::IcaoLine>>("ICAO line = ", kTab7)
        .Says("Draws the standard atmosphere's temperatures and heights."),
    Row<At<&ViewSettings::IcaoLabelling>>("  ICAO None/5/10 = ", kTab7, Record::Same)
        .Named("Standard height labels")
        .When([](const Options& set) { return set.IcaoLine; })
        .Says("How many standard heights are labelled."),
};

constexpr std::string_view kTab8 = "Diagram/Tab 8";

struct LineKeys {
  std::string_view Plot, Label, Color, Height, Style;
};

constexpr LineKeys kLineKeys[kCustomLines] = {
    {"Line #1 Plot", "Line #1 Label", "Line #1 Color", "Line #1 Height", "Line #1 Style"},
    {"Line #2 Plot", "Line #2 Label", "Line #2 Color", "Line #2 Height", "Line #2 Style"},
    {"Line #3 Plot", "Line #3 Label", "Line #3 Color", "Line #3 Height", "Line #3 Style"},
    {"Line #4 Plot", "Line #4 Label", "Line #4 Color", "Line #4 Height", "Line #4 Style"},
    {"Line #5 Plot", "Line #5 Label", "Line #5 Color", "Line #5 Height", "Line #5 Style"},
};

template <std::size_t N, auto Member>
constexpr auto kLine = Nth<&ViewSettings::CustomLines, N, Member>;

template <std::size_t N>
constexpr OptionRow kLineRows[] = {
    Row<kLine<N, &CustomLine::Plot>>("Plot = ", kTab8)
        .As(kLineKeys[N].Plot)
        .Says("Draws a line at a height of your choice."),
    Row<kLine<N, &CustomLine::ShowLabel>>("  Label = ", kTab8, Record::Same)
        .As(kLineKeys[N].Label)
        .Says("Writes its height beside the line."),
    Row<kLine<N, &CustomLine::ColorIndex>, kTrue, kColors>("Color = ", kTab8)
        .As(kLineKeys[N].Color)
        .Says("Colour of the line."),
    Row<kLine<N, &CustomLine::Height>, kTrue, kLineHeights>("  Height = ", kTab8, Record::Same)
        .As(kLineKeys[N].Height)
        .In("m MSL")
        .Says("Height of the line above mean sea level."),
    Row<kLine<N, &CustomLine::Style>>("", kTab8)
        .As(kLineKeys[N].Style)
        .Named("Style")
        .ShownInReport()
        .Says("Style of the line."),
};

using Rows = std::vector<OptionRow>;

void Append(Rows& all, std::span<const OptionRow> rows) {
  all.insert(all.end(), rows.begin(), rows.end());
}

template <std::size_t... N>
void AppendLines(Rows& all, std::index_sequence<N...>) {
  const auto append = [&all](std::span<const OptionRow> line, int number) {
    for (const OptionRow& row : line) all.push_back(row.ElementOf(number));
  };
  (append(kLineRows<N>, static_cast<int>(N) + 1), ...);
}

}  // namespace

Rows DiagramRows() {
  Rows all;
  for (const std::span<const OptionRow> tab :
       {std::span<const OptionRow>(kDiagramTab1Rows), std::span<const OptionRow>(kDiagramTab2Rows),
        std::span<const OptionRow>(kDiagramTab3Rows), std::span<const OptionRow>(kTab4Rows),
        std::span<const OptionRow>(kTab5Rows), std::span<const OptionRow>(kTab6Rows),
        std::span<const OptionRow>(kTab7Rows)}) {
    Append(all, tab);
  }
  AppendLines(all, std::make_index_sequence<kCustomLines>());
  return all;
}

}  // namespace vexa
