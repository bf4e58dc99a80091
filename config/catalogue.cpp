#include "config/catalogue.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace vexa {
namespace {

enum class Bools { TrueFalse, YesNo };
enum class Record { Own, Same };

struct Range {
  double Least = 0;
  double Most = 0;
};

bool SameText(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](unsigned char left, unsigned char right) {
    return std::tolower(left) == std::tolower(right);
  });
}

template <class E>
inline constexpr auto kWordsOf = Words(E{});

inline constexpr std::string_view kYesNo[] = {"no", "yes"};
inline constexpr std::string_view kTrueFalse[] = {"false", "true"};

template <class V>
std::string WriteValue(const V& value, Bools bools) {
  if constexpr (std::is_same_v<V, bool>) {
    return std::string((bools == Bools::YesNo ? kYesNo : kTrueFalse)[value ? 1 : 0]);
  } else if constexpr (std::is_enum_v<V>) {
    return std::string(Word(value));
  } else {
    return Shortest(value);
  }
}

template <class V>
bool ReadValue(V& value, std::string_view text, Bools bools, Range range) {
  const std::string_view word = Trim(text);
  if constexpr (std::is_same_v<V, bool>) {
    const auto& words = bools == Bools::YesNo ? kYesNo : kTrueFalse;
    for (const bool candidate : {false, true}) {
      if (SameText(word, words[candidate ? 1 : 0])) {
        value = candidate;
        return true;
      }
    }
    return false;
  } else if constexpr (std::is_enum_v<V>) {
    for (std::size_t i = 0; i < kWordsOf<V>.size(); ++i) {
      if (SameText(word, kWordsOf<V>[i])) {
        value = static_cast<V>(i);
        return true;
      }
    }
    return false;
  } else {
    const std::optional<double> number = ParseNumber(word);
    if (!number || *number < range.Least || *number > range.Most) return false;
    if constexpr (std::is_integral_v<V>) {
      if (*number != static_cast<double>(static_cast<V>(*number))) return false;
    }
    value = static_cast<V>(*number);
    return true;
  }
}

// A row of the option that Get reaches; everything else follows from the option's type.
template <auto Get, Bools kBools = Bools::TrueFalse, Range kRange = Range{}>
constexpr OptionRow Row(std::string_view label, std::string_view key, std::string_view place,
                        Record record = Record::Own) {
  using V = std::remove_cvref_t<decltype(Get(std::declval<Options&>()))>;
  OptionRow row;
  row.Label = label;
  row.Key = key;
  row.Place = place;
  row.SameRecord = record == Record::Same;
  row.InReport = !label.empty();
  row.Least = kRange.Least;
  row.Most = kRange.Most;
  if constexpr (std::is_same_v<V, bool>) {
    row.Kind = kBools == Bools::YesNo ? OptionKind::YesNo : OptionKind::TrueFalse;
    row.Words = kBools == Bools::YesNo ? std::span(kYesNo) : std::span(kTrueFalse);
  } else if constexpr (std::is_enum_v<V>) {
    row.Kind = OptionKind::Choice;
    row.Words = std::span(kWordsOf<V>);
  } else {
    row.Kind = std::is_integral_v<V> ? OptionKind::Whole : OptionKind::Number;
  }
  row.Write = [](const Options& options) {
    return WriteValue(Get(const_cast<Options&>(options)), kBools);
  };
  row.Read = [](Options& options, std::string_view text) {
    return ReadValue(Get(options), text, kBools, kRange);
  };
  return row;
}

// Reaches a member, also one inside another value.
template <auto... Path>
constexpr auto At = [](Options& options) -> auto& {
  return (options.*....*Path);
};

// Reaches a member of the n-th custom line.
template <std::size_t N, auto Member>
constexpr auto Line = [](Options& options) -> auto& {
  return options.CustomLines[N].*Member;
};

constexpr auto kYes = Bools::YesNo;
constexpr auto kTrue = Bools::TrueFalse;
constexpr Range kColors{0, 15};

constexpr OptionRow kRows[] = {
    Row<At<&Options::Above100mb>, kYes>("Above 100mb = ", "Above 100mb", "Program/Tab 1"),
    Row<At<&Options::TitleAboveDiagram>, kYes>(
        "Screen title above skewt = ", "Screen title above skewt", "Program/Tab 1"),
    Row<At<&Options::MonthYear>, kYes>("Month-Year option = ", "Month-Year option",
                                       "Program/Tab 1"),
    Row<At<&Options::WindPlotRatio>, kTrue, Range{0, 50}>("Wind plot ratio = ", "Wind plot ratio",
                                                          "Program/Tab 1"),
    Row<At<&Options::WindPlotSectionRatio>, kTrue, Range{0, 50}>(
        "Wind plot (x-section) ratio = ", "Wind plot (x-section) ratio", "Program/Tab 1"),
    Row<At<&Options::BarbFeathers>>("Feathers = ", "Feathers", "Program/Tab 1"),
    Row<At<&Options::BarbHemisphere>>("Hemisphere = ", "Hemisphere", "Program/Tab 1"),
    Row<At<&Options::Pressure>>("Pressure Units = ", "Pressure Units", "Program/Tab 1"),
    Row<At<&Options::ShowQnh>, kYes>("QNH = ", "QNH", "Program/Tab 1"),
    Row<At<&Options::GpmUnits>>("GPM units = ", "GPM units", "Program/Tab 1"),
    Row<At<&Options::Screen>>("Screen color = ", "Screen color", "Program/Tab 1"),
    Row<At<&Options::AutoDirectoryUpdate>, kYes>(
        "Auto directory update = ", "Auto directory update", "Program/Tab 1"),
    Row<At<&Options::Cat>>("CAT type = ", "CAT type", "Program/Tab 2"),
    Row<At<&Options::ShearNormalization>, kYes>("Shear normalization = ", "Shear normalization",
                                                "Program/Tab 2"),
    Row<At<&Options::Ice>>("Ice type = ", "Ice type", "Program/Tab 2"),
    Row<At<&Options::ContrailRh>, kTrue, Range{0, 100}>("RH% = ", "RH%", "Program/Tab 2"),
    Row<At<&Options::Motion>>("Storm motion = ", "Storm motion", "Program/Tab 2"),
    Row<At<&Options::DeviationFactor>, kTrue, Range{0, 4}>("", "Bunkers deviation factor",
                                                           "Program/Tab 2"),
    Row<At<&Options::Mover>>("", "Storm mover", "Program/Tab 2"),
    Row<At<&Options::MotionMode>>("", "Storm motion mode", "Program/Tab 2"),
    Row<At<&Options::ManualMotionDir>, kTrue, Range{1, 360}>("", "Storm motion direction",
                                                             "Program/Tab 2"),
    Row<At<&Options::ManualMotionSpd>, kTrue, Range{0, 200}>("", "Storm motion speed",
                                                             "Program/Tab 2"),
    Row<At<&Options::ShearLayerTopKm>, kTrue, Range{1, 15}>(
        "Shear SR Layer Top = ", "Shear SR Layer Top", "Program/Tab 2"),
    Row<At<&Options::ShearLayerBottomKm>, kTrue, Range{0, 10}>(
        "Shear SR Layer Bot = ", "Shear SR Layer Bot", "Program/Tab 2"),
    Row<At<&Options::ShearLayerDeg>, kTrue, Range{-90, 90}>(
        "Shear SR Layer Deg = ", "Shear SR Layer Deg", "Program/Tab 2"),
    Row<At<&Options::ShearLayerPct>, kTrue, Range{1, 150}>(
        "Shear SR Layer Pct = ", "Shear SR Layer Pct", "Program/Tab 2"),
    Row<At<&Options::ShearXLayerTopKm>, kTrue, Range{0.5, 15}>(
        "Shear xLayer top = ", "Shear xLayer top", "Program/Tab 2"),
    Row<At<&Options::Saturation>>("Sat vapor pres = ", "Sat vapor pres", "Program/Tab 2"),
    Row<At<&Options::DuctingThreshold>, kTrue, Range{-500, 0}>(
        "Ducting threshold = ", "Ducting threshold", "Program/Tab 2"),
    Row<At<&Options::Lpl>>("LPL = ", "LPL", "Program/Tab 3"),
    Row<At<&Options::MultiLift>, kYes>("Multi-lift = ", "Multi-lift", "Program/Tab 3"),
    Row<At<&Options::SearchDepth>, kTrue, Range{50, 500}>("Search depth = ", "Search depth",
                                                          "Program/Tab 3"),
    Row<At<&Options::CclMeanLayer>, kTrue, Range{10, 200}>("CCL mean layer = ", "CCL mean layer",
                                                           "Program/Tab 3"),
    Row<At<&Options::ElLowerLimit>, kTrue, Range{100, 1050}>("EL lower limit = ", "EL lower limit",
                                                             "Program/Tab 3"),
    Row<At<&Options::BaseLevel>>("CAPE base level = ", "CAPE base level", "Program/Tab 3"),
    Row<At<&Options::CapeTempBase>>("CAPE temp base = ", "CAPE temp base", "Program/Tab 3"),
    Row<At<&Options::CapeInterval>, kTrue, Range{1, 50}>("CAPE interval = ", "CAPE interval",
                                                         "Program/Tab 3"),
    Row<At<&Options::MplDisplay>, kYes>("MPL display = ", "MPL display", "Program/Tab 3"),
    Row<At<&Options::CapeDepth>>("CAPE depth display = ", "CAPE depth display", "Program/Tab 3"),
    Row<At<&Options::CapeDepthKm>, kTrue, Range{0.5, 10}>(
        "CAPE depth xKm depth = ", "CAPE depth xKm depth", "Program/Tab 3"),
    Row<At<&Options::Dcape>>("DCAPE mode = ", "DCAPE mode", "Program/Tab 3"),
    Row<At<&Options::EhiDepthKm>, kTrue, Range{0.5, 6}>("EHI depth = ", "EHI depth",
                                                        "Program/Tab 3"),
    Row<At<&Options::VgpDepthKm>, kTrue, Range{0.5, 6}>("VGP depth = ", "VGP depth",
                                                        "Program/Tab 3"),
    Row<At<&Options::ThermoNum>, kTrue, Range{1, 7}>("ThermoNum = ", "ThermoNum", "Program/Other"),
    Row<At<&Options::MovieTime>, kTrue, Range{0.1, 60}>("Movie time = ", "Movie time",
                                                        "Program/Other"),
    Row<At<&Options::SkipLoop>, kYes>("  Skiploop = ", "Skiploop", "Program/Other", Record::Same),
    Row<At<&Options::LoopNoRescaling>, kYes>("  LoopNoReScaling = ", "LoopNoReScaling",
                                             "Program/Other"),
    Row<At<&Options::Diagram>>("Diagram type = ", "Diagram type", "Diagram/Tab 1"),
    Row<At<&Options::AutoHighEmagram>>(
        "Auto high-altitude emagram = ", "Auto high-altitude emagram", "Diagram/Tab 1"),
    Row<At<&Options::EmagramTempLines>>("Emagram temperature lines = ", "Emagram temperature lines",
                                        "Diagram/Tab 1"),
    Row<At<&Options::TephigramWarning>>("Tephigram warning = ", "Tephigram warning",
                                        "Diagram/Tab 1"),
    Row<At<&Options::StabilityBars>>("Stability bars = ", "Stability bars", "Diagram/Tab 1"),
    Row<At<&Options::RightScale>>("Height scale = ", "Height scale", "Diagram/Tab 1"),
    Row<At<&Options::SurfaceLine>>("Surface line = ", "Surface line", "Diagram/Tab 1"),
    Row<At<&Options::AllMandatoryLines>>("All TTAA lines = ", "All TTAA lines", "Diagram/Tab 1"),
    Row<At<&Options::AutoAnalyses>>("Auto display analyses = ", "Auto display analyses",
                                    "Diagram/Tab 1"),
    Row<At<&Options::AnalysesBox>>("Analyses box = ", "Analyses box", "Diagram/Tab 1"),
    Row<At<&Options::WindPlotsBox>>("Wind plots box = ", "Wind plots box", "Diagram/Tab 1"),
    Row<At<&Options::ShadeGround>>("Shade ground block = ", "Shade ground block", "Diagram/Tab 1"),
    Row<At<&Options::CursorSounding>>("Cursor sounding = ", "Cursor sounding", "Diagram/Tab 1"),
    Row<At<&Options::CursorGrid>>("Cursor diagram grid = ", "Cursor diagram grid", "Diagram/Tab 1"),
    Row<At<&Options::Heights>>("Height mode = ", "Height mode", "Diagram/Tab 1"),
    Row<At<&Options::FreezeLine>>("Freeze line = ", "Freeze line", "Diagram/Tab 1"),
    Row<At<&Options::TropoLine>>("Tropo line = ", "Tropo line", "Diagram/Tab 1"),
    Row<At<&Options::MbLimit>, kTrue, Range{10, 700}>("MB limit = ", "MB limit", "Diagram/Tab 2"),
    Row<At<&Options::AutoMbSelect>>("Auto MB select = ", "Auto MB select", "Diagram/Tab 2"),
    Row<At<&Options::YGridUnits>>("Y-Grid units = ", "Y-Grid units", "Diagram/Tab 2"),
    Row<At<&Options::YGridInterval>, kTrue, Range{1, 100}>("Y-Grid interval = ", "Y-Grid interval",
                                                           "Diagram/Tab 2"),
    Row<At<&Options::TempGridUnits>>("Temp grid units = ", "Temp grid units", "Diagram/Tab 2"),
    Row<At<&Options::TempDualScale>>("Temp dual scale = ", "Temp dual scale", "Diagram/Tab 2"),
    Row<At<&Options::TempGridInterval>, kTrue, Range{5, 20}>(
        "Temp grid interval = ", "Temp grid interval", "Diagram/Tab 2"),
    Row<At<&Options::TempScaling>>("Temp grid scaling = ", "Temp grid scaling", "Diagram/Tab 2"),
    Row<At<&Options::TempMin>, kTrue, Range{-120, 40}>("Temp MIN = ", "Temp MIN", "Diagram/Tab 2"),
    Row<At<&Options::TempMax>, kTrue, Range{-80, 60}>("  Temp MAX = ", "Temp MAX", "Diagram/Tab 2",
                                                      Record::Same),
    Row<At<&Options::DryAdiabats>>("Dry adiabats = ", "Dry adiabats", "Diagram/Tab 3"),
    Row<At<&Options::SatAdiabats>>(" Saturation adiabats = ", "Saturation adiabats",
                                   "Diagram/Tab 3", Record::Same),
    Row<At<&Options::MixingLines>>(" Mixing ratio lines = ", "Mixing ratio lines", "Diagram/Tab 3",
                                   Record::Same),
    Row<At<&Options::DryColor>, kTrue, kColors>("Dry color = ", "Dry color", "Diagram/Tab 3"),
    Row<At<&Options::SatColor>, kTrue, kColors>("  Sat color = ", "Sat color", "Diagram/Tab 3",
                                                Record::Same),
    Row<At<&Options::WetColor>, kTrue, kColors>("  Wet color = ", "Wet color", "Diagram/Tab 3",
                                                Record::Same),
    Row<At<&Options::DryLabel>>("Dry label = ", "Dry label", "Diagram/Tab 3"),
    Row<At<&Options::SatLabel>>("  Sat label = ", "Sat label", "Diagram/Tab 3", Record::Same),
    Row<At<&Options::WetLabel>>("  Wet label = ", "Wet label", "Diagram/Tab 3", Record::Same),
    Row<At<&Options::DryRef, &ReferenceLine::Value>, kTrue, Range{200, 450}>(
        "Dry Ref Val = ", "Dry Ref Val", "Diagram/Tab 3"),
    Row<At<&Options::DryRef, &ReferenceLine::Plot>>("  Plot = ", "Dry Ref Val Plot",
                                                    "Diagram/Tab 3", Record::Same),
    Row<At<&Options::DryRef, &ReferenceLine::ShowLabel>>("  Label = ", "Dry Ref Val Label",
                                                         "Diagram/Tab 3", Record::Same),
    Row<At<&Options::SatRef, &ReferenceLine::Value>, kTrue, Range{-30, 40}>(
        "Sat Ref Val = ", "Sat Ref Val", "Diagram/Tab 3"),
    Row<At<&Options::SatRef, &ReferenceLine::Plot>>("  Plot = ", "Sat Ref Val Plot",
                                                    "Diagram/Tab 3", Record::Same),
    Row<At<&Options::SatRef, &ReferenceLine::ShowLabel>>("  Label = ", "Sat Ref Val Label",
                                                         "Diagram/Tab 3", Record::Same),
    Row<At<&Options::MixRef, &ReferenceLine::Value>, kTrue, Range{0.1, 40}>(
        "Mix Ref Val = ", "Mix Ref Val", "Diagram/Tab 3"),
    Row<At<&Options::MixRef, &ReferenceLine::Plot>>("  Plot = ", "Mix Ref Val Plot",
                                                    "Diagram/Tab 3", Record::Same),
    Row<At<&Options::MixRef, &ReferenceLine::ShowLabel>>("  Label = ", "Mix Ref Val Label",
                                                         "Diagram/Tab 3", Record::Same),
    Row<At<&Options::TraceDots>>("T/Td dots = ", "T/Td dots", "Diagram/Tab 4"),
    Row<At<&Options::TraceCircles>>("T/Td circles = ", "T/Td circles", "Diagram/Tab 4"),
    Row<At<&Options::TraceThick>>("T/Td thick lines = ", "T/Td thick lines", "Diagram/Tab 4"),
    Row<At<&Options::DewptLine>>("Td lines None/Dash/Solid = ", "Td lines None/Dash/Solid",
                                 "Diagram/Tab 4"),
    Row<At<&Options::DewptColor>, kTrue, kColors>("Td color = ", "Td color", "Diagram/Tab 4"),
    Row<At<&Options::WindShafts>>("Wind shafts = ", "Wind shafts", "Diagram/Tab 4"),
    Row<At<&Options::WindDots>>("  Wind dots = ", "Wind dots", "Diagram/Tab 4", Record::Same),
    Row<At<&Options::Winds>>("Wind display = ", "Wind display", "Diagram/Tab 4"),
    Row<At<&Options::Speed>>("  Wind speed units = ", "Wind speed units", "Diagram/Tab 4",
                             Record::Same),
    Row<At<&Options::BarbSize>>("", "Wind size", "Diagram/Tab 4"),
    Row<At<&Options::Thermo>>("Thermo display type = ", "Thermo display type", "Diagram/Tab 5"),
    Row<At<&Options::PanelMain>>("Main = ", "Main", "Diagram/Tab 5"),
    Row<At<&Options::PanelEurope>>("  Europe = ", "Europe", "Diagram/Tab 5", Record::Same),
    Row<At<&Options::PanelCape>>("  CAPE = ", "CAPE", "Diagram/Tab 5", Record::Same),
    Row<At<&Options::PanelFog>>("  Fog = ", "Fog", "Diagram/Tab 5", Record::Same),
    Row<At<&Options::ThermoHeight>>("Thermo units = ", "Thermo units", "Diagram/Tab 5"),
    Row<At<&Options::ThermoTemp>>("  Thermo units = ", "Thermo units temperature", "Diagram/Tab 5",
                                  Record::Same),
    Row<At<&Options::PtUnits>>("PTunits = ", "PTunits", "Diagram/Tab 5"),
    Row<At<&Options::PlotHodo>>("Plot Hodo = ", "Plot Hodo", "Diagram/Tab 6"),
    Row<At<&Options::PlotStormVector>>("Plot SM Vector = ", "Plot SM Vector", "Diagram/Tab 6",
                                       Record::Same),
    Row<At<&Options::HodoPlace>>("Hodo location = ", "Hodo location", "Diagram/Tab 6"),
    Row<At<&Options::HodoGridOrigin>>("Hodo Grid origin = ", "Hodo Grid origin", "Diagram/Tab 6"),
    Row<At<&Options::HodoDepthMode>>("Hodo depth mode = ", "Hodo depth mode", "Diagram/Tab 6"),
    Row<At<&Options::HodoDepthLimitKm>, kTrue, Range{1, 20}>("  Depth limit = ", "Depth limit",
                                                             "Diagram/Tab 6", Record::Same),
    Row<At<&Options::IcaoLine>>("ICAO line = ", "ICAO line", "Diagram/Tab 7"),
    Row<At<&Options::IcaoLabelling>>("  ICAO None/5/10 = ", "ICAO None/5/10", "Diagram/Tab 7",
                                     Record::Same),
    Row<Line<0, &CustomLine::Plot>>("Plot = ", "Line #1 Plot", "Diagram/Tab 8"),
    Row<Line<0, &CustomLine::ShowLabel>>("  Label = ", "Line #1 Label", "Diagram/Tab 8",
                                         Record::Same),
    Row<Line<0, &CustomLine::ColorIndex>, kTrue, kColors>("Color = ", "Line #1 Color",
                                                          "Diagram/Tab 8"),
    Row<Line<0, &CustomLine::Height>, kTrue, Range{-500, 80000}>("  Height = ", "Line #1 Height",
                                                                 "Diagram/Tab 8", Record::Same),
    Row<Line<0, &CustomLine::Style>>("Style = ", "Line #1 Style", "Diagram/Tab 8"),
    Row<Line<1, &CustomLine::Plot>>("Plot = ", "Line #2 Plot", "Diagram/Tab 8"),
    Row<Line<1, &CustomLine::ShowLabel>>("  Label = ", "Line #2 Label", "Diagram/Tab 8",
                                         Record::Same),
    Row<Line<1, &CustomLine::ColorIndex>, kTrue, kColors>("Color = ", "Line #2 Color",
                                                          "Diagram/Tab 8"),
    Row<Line<1, &CustomLine::Height>, kTrue, Range{-500, 80000}>("  Height = ", "Line #2 Height",
                                                                 "Diagram/Tab 8", Record::Same),
    Row<Line<1, &CustomLine::Style>>("Style = ", "Line #2 Style", "Diagram/Tab 8"),
    Row<Line<2, &CustomLine::Plot>>("Plot = ", "Line #3 Plot", "Diagram/Tab 8"),
    Row<Line<2, &CustomLine::ShowLabel>>("  Label = ", "Line #3 Label", "Diagram/Tab 8",
                                         Record::Same),
    Row<Line<2, &CustomLine::ColorIndex>, kTrue, kColors>("Color = ", "Line #3 Color",
                                                          "Diagram/Tab 8"),
    Row<Line<2, &CustomLine::Height>, kTrue, Range{-500, 80000}>("  Height = ", "Line #3 Height",
                                                                 "Diagram/Tab 8", Record::Same),
    Row<Line<2, &CustomLine::Style>>("Style = ", "Line #3 Style", "Diagram/Tab 8"),
    Row<Line<3, &CustomLine::Plot>>("Plot = ", "Line #4 Plot", "Diagram/Tab 8"),
    Row<Line<3, &CustomLine::ShowLabel>>("  Label = ", "Line #4 Label", "Diagram/Tab 8",
                                         Record::Same),
    Row<Line<3, &CustomLine::ColorIndex>, kTrue, kColors>("Color = ", "Line #4 Color",
                                                          "Diagram/Tab 8"),
    Row<Line<3, &CustomLine::Height>, kTrue, Range{-500, 80000}>("  Height = ", "Line #4 Height",
                                                                 "Diagram/Tab 8", Record::Same),
    Row<Line<3, &CustomLine::Style>>("Style = ", "Line #4 Style", "Diagram/Tab 8"),
    Row<Line<4, &CustomLine::Plot>>("Plot = ", "Line #5 Plot", "Diagram/Tab 8"),
    Row<Line<4, &CustomLine::ShowLabel>>("  Label = ", "Line #5 Label", "Diagram/Tab 8",
                                         Record::Same),
    Row<Line<4, &CustomLine::ColorIndex>, kTrue, kColors>("Color = ", "Line #5 Color",
                                                          "Diagram/Tab 8"),
    Row<Line<4, &CustomLine::Height>, kTrue, Range{-500, 80000}>("  Height = ", "Line #5 Height",
                                                                 "Diagram/Tab 8", Record::Same),
    Row<Line<4, &CustomLine::Style>>("Style = ", "Line #5 Style", "Diagram/Tab 8"),
    Row<At<&Options::Darklines>>("Darklines = ", "Darklines", "System"),
};

}  // namespace

std::span<const OptionRow> Catalogue() {
  return kRows;
}

const OptionRow* FindOption(std::string_view key) {
  const auto found = std::ranges::find_if(
      kRows, [key](const OptionRow& row) { return SameText(row.Key, Trim(key)); });
  return found == std::end(kRows) ? nullptr : &*found;
}

std::string Accepts(const OptionRow& row) {
  if (row.Words.empty()) {
    return Shortest(row.Least) + " to " + Shortest(row.Most) +
           (row.Kind == OptionKind::Whole ? ", whole" : "");
  }
  std::string text;
  for (const std::string_view word : row.Words) {
    if (!text.empty()) text += ", ";
    text += '"' + std::string(word) + '"';
  }
  return text;
}

std::optional<Fault> SetOption(Options& options, std::string_view assignment) {
  const auto fault = [](std::string detail) {
    return Fault{kFaultInvalidValue, "SetOption", std::move(detail)};
  };
  const std::size_t equals = assignment.find('=');
  if (equals == std::string_view::npos) {
    return fault('"' + std::string(assignment) + "\" is not KEY=VALUE");
  }
  const std::string_view key = Trim(assignment.substr(0, equals));
  const std::string_view value = Trim(assignment.substr(equals + 1));
  const OptionRow* row = FindOption(key);
  if (row == nullptr) return fault("there is no option \"" + std::string(key) + '"');
  if (!row->Read(options, value)) {
    return fault('"' + std::string(key) + "\" does not take \"" + std::string(value) +
                 "\"; it takes " + Accepts(*row));
  }
  return std::nullopt;
}

}  // namespace vexa
