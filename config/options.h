// Every setting of the program, with its default. One plain value: the window, the command line
// and the tests draw and compute from a copy of it. The words of each choice stand beside it, in
// the order of its enumerators, as files and the settings report spell them.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace vexa {

enum class DiagramType { SkewT, Emagram, Tephigram };
enum class Feathers { Default, Right, Left };
enum class Hemisphere { ByLatitude, Northern, Southern };
enum class PressureUnits { Mb, Hpa, InHg };
enum class LengthUnits { Meter, Feet };
enum class ScreenColor { White, Black };
enum class ColorScheme { Light, Dark, Darker, Print, Safe, SafeDark };
enum class CatType { Faa, Usaf };
enum class IceType { SmithFeddes, Usaf };
enum class StormMotion { Bunkers, Traditional };
enum class StormMover { Cyclonic, Right, Left };
enum class SaturationOver { Water, Ice };
enum class LiftSource { LowerLayer, Surface, MostUnstable };
enum class CapeBase { Lfc, Ccl };
enum class TempBase { Dry, Virtual };
enum class CapeDepthDisplay { Total, LfcLayer, Both };
enum class DcapeMode { Best, Fast };
enum class HeightScale { Feet, Kilometers, Meters, Miles, None };
enum class HeightMode { Msl, Agl };
enum class GridUnits { Mb, Kilometers, Feet };
enum class TempUnits { Celsius, Fahrenheit, Kelvin };
enum class PotentialTempUnits { Kelvin, Celsius };
enum class Scaling { Auto, Manual };
enum class ThickLines { None, Some, All };
enum class TraceLine { None, Dash, Solid };
enum class WindDisplay { Barbs, Flags, None };
enum class WindSize { Huge, Big, Medium, Small };
enum class SpeedUnits { Knots, MetersPerSecond };
enum class ThermoDisplay { Classic, Custom };
enum class HodoLocation { Centered, Dependent };
enum class HodoOrigin { Ground, Storm };
enum class HodoDepth { All, Limit };
enum class IcaoLabels { None, One, Every5, Every10 };
enum class CustomLineStyle { Solid, Dash, Dots };
enum class FileOrder { Name, Date, Size, Type };
enum class DumpHeight { Meters, Feet };
enum class DumpTemp { Celsius, Fahrenheit };
enum class DumpWater { Centimeters, Inches };

constexpr auto Words(DiagramType) {
  return std::to_array<std::string_view>({"skewt", "emagram", "tephigram"});
}
constexpr auto Words(Feathers) {
  return std::to_array<std::string_view>({"default", "right", "left"});
}
constexpr auto Words(Hemisphere) {
  return std::to_array<std::string_view>({"by latitude", "northern", "southern"});
}
constexpr auto Words(PressureUnits) {
  return std::to_array<std::string_view>({"mb", "hPa", "in Hg"});
}
constexpr auto Words(LengthUnits) {
  return std::to_array<std::string_view>({"METER", "FEET"});
}
constexpr auto Words(ScreenColor) {
  return std::to_array<std::string_view>({"White", "Black"});
}
constexpr auto Words(ColorScheme) {
  return std::to_array<std::string_view>(
      {"light", "dark", "darker", "print", "color-safe", "color-safe dark"});
}
constexpr auto Words(CatType) {
  return std::to_array<std::string_view>({"FAA", "USAF"});
}
constexpr auto Words(IceType) {
  return std::to_array<std::string_view>({"Smith-Feddes", "USAF"});
}
constexpr auto Words(StormMotion) {
  return std::to_array<std::string_view>({"Bunkers", "Traditional"});
}
constexpr auto Words(StormMover) {
  return std::to_array<std::string_view>({"cyclonic", "RM", "LM"});
}
constexpr auto Words(SaturationOver) {
  return std::to_array<std::string_view>({"Water", "Ice"});
}
constexpr auto Words(LiftSource) {
  return std::to_array<std::string_view>({"lower layer", "surface", "most unstable"});
}
constexpr auto Words(CapeBase) {
  return std::to_array<std::string_view>({"LFC", "CCL"});
}
constexpr auto Words(TempBase) {
  return std::to_array<std::string_view>({"dry", "virtual"});
}
constexpr auto Words(CapeDepthDisplay) {
  return std::to_array<std::string_view>({"total", "LFC layer", "both"});
}
constexpr auto Words(DcapeMode) {
  return std::to_array<std::string_view>({"best", "fast"});
}
constexpr auto Words(HeightScale) {
  return std::to_array<std::string_view>({"FT", "KM", "MT", "MILE", "none"});
}
constexpr auto Words(HeightMode) {
  return std::to_array<std::string_view>({"MSL", "AGL"});
}
constexpr auto Words(GridUnits) {
  return std::to_array<std::string_view>({"MB", "KM", "FT"});
}
constexpr auto Words(TempUnits) {
  return std::to_array<std::string_view>({"C", "F", "K"});
}
constexpr auto Words(PotentialTempUnits) {
  return std::to_array<std::string_view>({"K", "C"});
}
constexpr auto Words(Scaling) {
  return std::to_array<std::string_view>({"AUTO", "MANUAL"});
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
constexpr auto Words(SpeedUnits) {
  return std::to_array<std::string_view>({"KNOTS", "M/S"});
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
constexpr auto Words(FileOrder) {
  return std::to_array<std::string_view>({"name", "date", "size", "type"});
}
constexpr auto Words(DumpHeight) {
  return std::to_array<std::string_view>({"M", "FT"});
}
constexpr auto Words(DumpTemp) {
  return std::to_array<std::string_view>({"C", "F"});
}
constexpr auto Words(DumpWater) {
  return std::to_array<std::string_view>({"cm", "in"});
}

/// An enumerator's word.
template <class E>
constexpr std::string_view Word(E value) {
  return Words(E{})[static_cast<std::size_t>(value)];
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

/// What an auto-load file name reads when several soundings are loaded at start.
inline constexpr std::string_view kMultipleMarker = ".multiple.";

/// Units and blocks of the data export.
struct DumpOptions {
  DumpHeight Height = DumpHeight::Meters;
  HeightMode Reference = HeightMode::Msl;
  SpeedUnits Speed = SpeedUnits::Knots;
  DumpTemp Temp = DumpTemp::Celsius;
  DumpWater Water = DumpWater::Centimeters;
  bool FormatBlock = true;
  bool SignificantOnly = false;
  bool operator==(const DumpOptions&) const = default;
};

/// Options that the user sets in passing, by menu commands and dialogs, not on an option form.
struct SystemOptions {
  std::string DataFolder = "vexadata\\";  // below the program folder unless absolute
  std::string CrossSectionFolder = "crosdata\\";
  std::string ReferenceFolder{};  // empty: the program folder
  std::string HeaderFile = "Header.Dat";
  bool CursorGrid = true;
  bool CursorData = true;
  bool Autoload = false;
  std::string AutoDrive{};  // folder of the auto-load file
  std::string AutoFile{};   // its name, or kMultipleMarker
  std::string AutoType = "RAW";
  int FilterIndexNum = 1;
  int ShortCutValue = 0;
  FileOrder SortMode = FileOrder::Name;
  bool SoftFlip = false;
  std::optional<double> SoarTm{};  // °C expected at the ground; empty: estimated
  double TriggerHgt = 3000;        // ft above ground
  int LiftEq = 1;                  // 1 index rule, 2 w*
  HeightMode SoarHgtMode = HeightMode::Msl;
  bool HodoInvert = false;
  bool HodoAnalInvert = false;
  bool AutoAnalysisLoad = true;
  bool DataChecks = true;  // of a sounding after its load
  bool StepChecks = true;  // and when soundings are stepped through
  std::string PrintTitleMemory{};
  bool DarklinesMemory = false;
  DumpOptions Dump{};
  bool operator==(const SystemOptions&) const = default;
};

struct Options {
  // Program, tab 1: screen and units.
  bool Above100mb = false;
  bool TitleAboveDiagram = true;
  bool MonthYear = false;
  int WindPlotRatio = 0;  // every n-th wind, 0 = automatic
  int WindPlotSectionRatio = 0;
  Feathers BarbFeathers = Feathers::Default;
  Hemisphere BarbHemisphere = Hemisphere::ByLatitude;
  PressureUnits Pressure = PressureUnits::Mb;
  bool ShowQnh = true;
  LengthUnits GpmUnits = LengthUnits::Meter;
  ScreenColor Screen = ScreenColor::White;
  bool AutoDirectoryUpdate = true;

  // Program, tab 2: categories and motion.
  CatType Cat = CatType::Faa;
  bool ShearNormalization = true;
  IceType Ice = IceType::SmithFeddes;
  double ContrailRh = 60;  // %
  StormMotion Motion = StormMotion::Bunkers;
  int DeviationFactor = 1;  // times 15 kt from the mean wind
  StormMover Mover = StormMover::Cyclonic;
  Scaling MotionMode = Scaling::Auto;  // a motion entered by hand replaces the chosen mover
  double ManualMotionDir = 240;        // degrees it comes from
  double ManualMotionSpd = 25;         // kt
  double ShearLayerTopKm = 6;
  double ShearLayerBottomKm = 0;
  double ShearLayerDeg = 30;
  double ShearLayerPct = 75;
  double ShearXLayerTopKm = 6;
  SaturationOver Saturation = SaturationOver::Water;
  double DuctingThreshold = -157;  // N/km

  // Program, tab 3: parcels.
  LiftSource Lpl = LiftSource::MostUnstable;
  bool MultiLift = false;
  double SearchDepth = 300;    // hPa
  double CclMeanLayer = 100;   // hPa
  double ElLowerLimit = 1050;  // hPa; 1050 = off
  CapeBase BaseLevel = CapeBase::Lfc;
  TempBase CapeTempBase = TempBase::Dry;
  int CapeInterval = 1;  // hPa
  bool MplDisplay = true;
  CapeDepthDisplay CapeDepth = CapeDepthDisplay::Both;
  double CapeDepthKm = 3;
  DcapeMode Dcape = DcapeMode::Best;
  double EhiDepthKm = 3;
  double VgpDepthKm = 3;

  // Program, other.
  int ThermoNum = 1;
  double MovieTime = 1.0;  // s
  bool SkipLoop = false;
  bool LoopNoRescaling = false;

  // Diagram, tab 1: format.
  DiagramType Diagram = DiagramType::SkewT;
  bool AutoHighEmagram = true;
  bool EmagramTempLines = true;
  bool TephigramWarning = true;
  bool StabilityBars = false;
  HeightScale RightScale = HeightScale::Feet;
  bool SurfaceLine = true;
  bool AllMandatoryLines = false;
  bool AutoAnalyses = true;
  bool AnalysesBox = true;
  bool WindPlotsBox = true;
  bool ShadeGround = true;
  bool CursorSounding = true;
  bool CursorGrid = true;
  HeightMode Heights = HeightMode::Msl;
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
  bool WindShafts = true;
  bool WindDots = true;
  WindDisplay Winds = WindDisplay::Barbs;
  WindSize BarbSize = WindSize::Medium;
  SpeedUnits Speed = SpeedUnits::Knots;

  // Diagram, tab 5: analyses data.
  ThermoDisplay Thermo = ThermoDisplay::Classic;
  bool PanelMain = true;
  bool PanelEurope = false;
  bool PanelCape = true;
  bool PanelFog = false;
  std::string CustomPanel = "KI,TT,LI,CAPE total,CIN total,BRN,s-rH 0-3km,EHI 0-xkm,Water";
  LengthUnits ThermoHeight = LengthUnits::Meter;
  TempUnits ThermoTemp = TempUnits::Celsius;
  PotentialTempUnits PtUnits = PotentialTempUnits::Kelvin;

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

  // System.
  bool Darklines = false;
  SystemOptions System{};

  bool operator==(const Options&) const = default;
};

}  // namespace vexa
