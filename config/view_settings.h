// The settings that only drawing and texts read: what is shown, in which units and colours. After a
// change of one of them pictures are drawn anew and nothing is computed.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/choices.h"

namespace vexa {

enum class DiagramType { SkewT, Emagram, Tephigram };
enum class Feathers { Default, Right, Left };
enum class Hemisphere { ByLatitude, Northern, Southern };
enum class ScreenColor { White, Black };
enum class ColorScheme { Light, Dark, Darker, Print, Safe, SafeDark };
enum class CapeDepthDisplay { Total, LfcLayer, Both };
enum class HeightScale { Feet, Kilometers, Meters, Miles, None };
enum class GridUnits { Mb, Kilometers, Feet };
enum class ThickLines { None, Some, All };
enum class TraceLine { None, Dash, Solid };
enum class WindDisplay { Barbs, Flags, None };
enum class WindSize { Huge, Big, Medium, Small };
enum class ThermoDisplay { Classic, Custom };
enum class HodoLocation { Centered, Dependent };
enum class HodoOrigin { Ground, Storm };
enum class HodoDepth { All, Limit };
enum class IcaoLabels { None, One, Every5, Every10 };
enum class CustomLineStyle { Solid, Dash, Dots };
enum class WaveLayers { None, Selected, All };

constexpr auto Words(DiagramType) {
  return std::to_array<std::string_view>({"skewt", "emagram", "tephigram"});
}
constexpr auto Words(Feathers) {
  return std::to_array<std::string_view>({"default", "right", "left"});
}
constexpr auto Words(Hemisphere) {
  return std::to_array<std::string_view>({"by latitude", "northern", "southern"});
}
constexpr auto Words(ScreenColor) {
  return std::to_array<std::string_view>({"White", "Black"});
}
constexpr auto Words(ColorScheme) {
  return std::to_array<std::string_view>(
      {"light", "dark", "darker", "print", "color-safe", "color-safe dark"});
}
constexpr auto Words(CapeDepthDisplay) {
  return std::to_array<std::string_view>({"total", "LFC layer", "both"});
}
constexpr auto Words(HeightScale) {
  return std::to_array<std::string_view>({"FT", "KM", "MT", "MILE", "none"});
}
constexpr auto Words(GridUnits) {
  return std::to_array<std::string_view>({"MB", "KM", "FT"});
}
constexpr auto Words(ThickLines) {
  return std::to_array<std::string_view>({"none", "some", "all"});
}
constexpr auto Words(TraceLine) {
  return std::to_array<std::string_view>({"None", "Dash", "Solid"});
}
constexpr auto Words(WindDisplay) {
  return std::to_array<std::string_view>({"Barbs", "Flags", "none"});
}
constexpr auto Words(WindSize) {
  return std::to_array<std::string_view>({"hug", "big", "med", "sml"});
}
constexpr auto Words(ThermoDisplay) {
  return std::to_array<std::string_view>({"classic", "custom"});
}
constexpr auto Words(HodoLocation) {
  return std::to_array<std::string_view>({"centered", "dependent"});
}
constexpr auto Words(HodoOrigin) {
  return std::to_array<std::string_view>({"Ground", "Storm"});
}
constexpr auto Words(HodoDepth) {
  return std::to_array<std::string_view>({"All", "Limit"});
}
constexpr auto Words(IcaoLabels) {
  return std::to_array<std::string_view>({"none", "one", "every 5", "every 10"});
}
constexpr auto Words(CustomLineStyle) {
  return std::to_array<std::string_view>({"solid", "dash", "dots"});
}
constexpr auto Words(WaveLayers) {
  return std::to_array<std::string_view>({"none", "selected", "all"});
}

/// The scheme for a paper that comes nearest to another one.
constexpr ColorScheme SchemeOn(ScreenColor paper, ColorScheme scheme) {
  const bool isSafe = scheme == ColorScheme::Safe || scheme == ColorScheme::SafeDark;
  if (paper == ScreenColor::Black) return isSafe ? ColorScheme::SafeDark : ColorScheme::Dark;
  if (isSafe) return ColorScheme::Safe;
  return scheme == ColorScheme::Dark ? ColorScheme::Light : scheme;
}

/// A line of a grid family that the user picks out: its value, whether it is drawn and labelled.
struct ReferenceLine {
  double Value = 0;
  bool Plot = false;
  bool ShowLabel = false;
  bool operator==(const ReferenceLine&) const = default;
};

/// A line at a height of the user's choice.
struct CustomLine {
  bool Plot = false;
  bool ShowLabel = true;
  int ColorIndex = 4;
  double Height = 0;  // m above mean sea level
  CustomLineStyle Style = CustomLineStyle::Dash;
  bool operator==(const CustomLine&) const = default;
};

inline constexpr int kCustomLines = 5;

struct ViewSettings : UnitSettings {
  // Program: screen and units.
  bool Above100mb = false;
  bool TitleAboveDiagram = true;
  bool MonthYear = false;
  int WindPlotRatio = 0;  // every n-th wind, 0 = automatic
  int WindPlotSectionRatio = 0;
  Feathers BarbFeathers = Feathers::Default;
  Hemisphere BarbHemisphere = Hemisphere::ByLatitude;
  bool ShowQnh = true;
  LengthUnits GpmUnits = LengthUnits::Meter;
  ScreenColor Screen = ScreenColor::White;
  CapeDepthDisplay CapeDepth = CapeDepthDisplay::Both;
  int ThermoNum = 1;

  // Diagram, tab 1: format.
  DiagramType Diagram = DiagramType::SkewT;
  bool AutoHighEmagram = true;
  bool EmagramTempLines = true;
  bool TephigramWarning = true;
  bool StabilityBars = false;
  HeightScale RightScale = HeightScale::Kilometers;
  bool SurfaceLine = true;
  bool AllMandatoryLines = false;
  bool AutoAnalyses = true;
  bool ShowFronts = true;
  bool AnalysesBox = true;
  bool WindPlotsBox = true;
  bool ShadeGround = true;
  bool CursorSounding = true;
  bool CursorGrid = true;
  bool FreezeLine = true;
  bool TropoLine = true;

  // Diagram, tab 2: pressure and temperature.
  int MbLimit = 100;  // hPa
  bool AutoMbSelect = true;
  GridUnits YGridUnits = GridUnits::Mb;
  int YGridInterval = 50;
  TempUnits TempGridUnits = TempUnits::Celsius;
  bool TempDualScale = false;
  int TempGridInterval = 10;
  Scaling TempScaling = Scaling::Auto;
  double TempMin = -40;                    // °C
  double TempMax = 40;                     // °C
  Scaling OverlayScaling = Scaling::Auto;  // whether the axes make room for every sounding
  Scaling CompareScaling = Scaling::Auto;

  // Diagram, tab 3: reference lines.
  ColorScheme Scheme = ColorScheme::Light;
  bool DryAdiabats = true;
  bool SatAdiabats = true;
  bool MixingLines = true;
  int DryColor = 6;
  int SatColor = 2;
  int WetColor = 3;
  bool DryLabel = false;
  bool SatLabel = false;
  bool WetLabel = true;
  ReferenceLine DryRef{.Value = 300};  // K
  ReferenceLine SatRef{.Value = 20};   // °C wet-bulb potential temperature
  ReferenceLine MixRef{.Value = 10};   // g/kg

  // Diagram, tab 4: sounding data.
  bool TraceDots = false;
  bool TraceCircles = false;
  ThickLines TraceThick = ThickLines::Some;
  TraceLine DewptLine = TraceLine::Solid;
  int DewptColor = 9;
  bool WetBulbTrace = false;
  bool VirtualTrace = false;
  bool UsualTemps = false;  // the spread of temperature and dew point, by a catalogue
  bool UsualWinds = false;  // that of the wind speed
  bool WindShafts = true;
  bool WindDots = true;
  WindDisplay Winds = WindDisplay::Barbs;
  WindSize BarbSize = WindSize::Medium;

  // Diagram, tab 5: analyses data.
  ThermoDisplay Thermo = ThermoDisplay::Classic;
  bool PanelMain = true;
  bool PanelEurope = false;
  bool PanelCape = true;
  bool PanelFog = false;
  std::string CustomPanel = "KI,TT,LI,CAPE total,CIN total,BRN,s-rH 0-3km,EHI 0-xkm,Water";
  PotentialTempUnits PtUnits = PotentialTempUnits::Kelvin;
  WaveLayers Waves = WaveLayers::None;  // of mountain waves that the diagram marks

  // Diagram, tab 6: hodograph inset.
  bool PlotHodo = true;
  bool PlotStormVector = true;
  HodoLocation HodoPlace = HodoLocation::Dependent;
  HodoOrigin HodoGridOrigin = HodoOrigin::Ground;
  HodoDepth HodoDepthMode = HodoDepth::All;
  double HodoDepthLimitKm = 12;

  // Diagram, tab 7: standard atmosphere.
  bool IcaoLine = false;
  IcaoLabels IcaoLabelling = IcaoLabels::Every5;

  // Diagram, tab 8: custom lines.
  std::array<CustomLine, kCustomLines> CustomLines{};

  // System form.
  bool Darklines = false;
  bool HodoInvert = false;
  bool HodoAnalInvert = false;
  HeightMode SoarHgtMode = HeightMode::Msl;

  bool operator==(const ViewSettings&) const = default;
};

}  // namespace vexa
