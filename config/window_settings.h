// What single windows and features remember besides the options: a plain struct for each, with its
// defaults, and the table of rows by which its file is written and read.
#pragma once

#include <array>
#include <cassert>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "config/dump_options.h"
#include "config/setting_row.h"
#include "config/view_settings.h"

namespace vexa {

enum class Configuration { None, First, Second };
enum class CursorMode { Free, Locked };
enum class DistanceUnits { Kilometers, Miles };
enum class RingScaling { Auto, Limit };
enum class CompareTraces { All, Left };
enum class FrontControl { Automatic, Manual };
enum class ThermalWindMode { Fixed, Sliding, Levels };
enum class FrontSpeedUnits { Knots, MilesPerHour };
enum class ListingPage { Summary, Complete, Interval, Analyses, Weather, Indices, Cape };
enum class LiftUnits { FeetPerMinute, MetersPerSecond };

constexpr auto Words(Configuration) {
  return std::to_array<std::string_view>({"0", "1", "2"});
}
constexpr auto Words(CursorMode) {
  return std::to_array<std::string_view>({"free", "locked"});
}
constexpr auto Words(DistanceUnits) {
  return std::to_array<std::string_view>({"km", "mi"});
}
constexpr auto Words(RingScaling) {
  return std::to_array<std::string_view>({"AUTO", "Limit"});
}
constexpr auto Words(CompareTraces) {
  return std::to_array<std::string_view>({"All", "Left"});
}
constexpr auto Words(FrontControl) {
  return std::to_array<std::string_view>({"Automatic", "Manual"});
}
constexpr auto Words(ThermalWindMode) {
  return std::to_array<std::string_view>({"Fixed", "Sliding", "Levels"});
}
constexpr auto Words(FrontSpeedUnits) {
  return std::to_array<std::string_view>({"kts", "mph"});
}
constexpr auto Words(ListingPage) {
  return std::to_array<std::string_view>({"SummaryData", "CompleteData", "IntervalData",
                                          "AnalysesData", "WeatherData", "IndicesData",
                                          "CAPEdata"});
}
constexpr auto Words(LiftUnits) {
  return std::to_array<std::string_view>({"FT/MIN", "M/S"});
}

struct NamedConfiguration {
  std::string Name{};
  std::string Description{};
  bool operator==(const NamedConfiguration&) const = default;
};

inline constexpr int kConfigurations = 2;

/// VEXA.SYS: the named configurations and what holds for all of them.
struct SystemSettings {
  Configuration Current = Configuration::None;
  bool CaptionEnabled = true;  // the caption is shown when both are set
  bool CaptionOnDiagram = true;
  std::array<NamedConfiguration, kConfigurations> Configurations{};
  int LeastScreenWidth = 800;  // pixels, below which the program warns
  double ScreenScale = 1;
  bool operator==(const SystemSettings&) const = default;
};

inline constexpr int kRecentFiles = 5;

struct MainWindowSettings {
  int Width = 1024;  // pixels
  int Height = 768;
  int Left = 0;
  int Top = 0;
  bool Maximized = false;
  CursorMode Cursor = CursorMode::Free;
  bool InfoBox = true;
  std::string Layout = "diagram";                       // of the diagram's page, by its name
  std::string ImageFolder{};                            // of the image saved last
  std::array<std::string, kRecentFiles> RecentFiles{};  // the latest first
  bool operator==(const MainWindowSettings&) const = default;
};

/// Control of the frontal analysis from the thermal wind.
struct FrontSettings {
  FrontControl Control = FrontControl::Automatic;
  bool Hold = false;
  double IntervalM = 500;
  ThermalWindMode Mode = ThermalWindMode::Fixed;
  double SlopeN = 100;              // slope 1/N
  double GradientThreshold = 0.04;  // °C per nautical mile
  double AngularThreshold = 40;     // degrees
  double LowerLimitM = 500;         // m above ground
  double LeastAdvection = 0.4;      // °C an hour, either way
  FrontSpeedUnits Speed = FrontSpeedUnits::Knots;
  bool operator==(const FrontSettings&) const = default;
};

struct HodographSettings {
  RingScaling Rings = RingScaling::Auto;
  double RingLimit = 100;  // knots
  DistanceUnits Distance = DistanceUnits::Kilometers;
  bool NoSMplot = false;
  bool SkipPlot = false;     // everything but the trace
  bool CaptionAtTop = true;  // the captions stand above the plot, or below it
  bool Float = false;        // the storm-relative panel floats
  bool Hold = false;         // keeps the storm vector while the data change
  bool HelicityContours = false;
  bool MbeVector = false;
  HodoOrigin Frame = HodoOrigin::Ground;
  bool TableInverted = false;
  CompareTraces Compare = CompareTraces::All;
  FrontSettings Front{};
  bool operator==(const HodographSettings&) const = default;
};

struct Hodogram3DSettings {
  double Azimuth = 30;   // degrees
  double Tilt = 30;      // degrees
  double Step = 5;       // degrees per press of a button
  int RotationMs = 100;  // time between two steps of the rotation
  DistanceUnits Distance = DistanceUnits::Kilometers;
  bool NorthPointer = true;
  bool operator==(const Hodogram3DSettings&) const = default;
};

/// The thermodynamic listing.
struct ListingSettings {
  ListingPage Page = ListingPage::Summary;
  double IntervalM = 500;  // between the levels of the interval listing
  bool TopDown = false;
  bool PrintDataType = true;
  bool PrintCoordinates = true;
  bool PrintAll = false;
  int Width = 800;  // pixels
  int Height = 600;
  bool operator==(const ListingSettings&) const = default;
};

struct SoaringSettings {
  LengthUnits Heights = LengthUnits::Feet;
  LiftUnits Lift = LiftUnits::FeetPerMinute;
  DumpTemp Temp = DumpTemp::Celsius;
  bool operator==(const SoaringSettings&) const = default;
};

std::span<const SettingRow<SystemSettings>> RowsOf(const SystemSettings&);
std::span<const SettingRow<MainWindowSettings>> RowsOf(const MainWindowSettings&);
std::span<const SettingRow<HodographSettings>> RowsOf(const HodographSettings&);
std::span<const SettingRow<Hodogram3DSettings>> RowsOf(const Hodogram3DSettings&);
std::span<const SettingRow<ListingSettings>> RowsOf(const ListingSettings&);
std::span<const SettingRow<SoaringSettings>> RowsOf(const SoaringSettings&);

/// The row of a key in the table of these settings, which has it.
template <class S>
const RowInfo& RowNamed(const S& settings, std::string_view key) {
  for (const SettingRow<S>& row : RowsOf(settings)) {
    if (row.Key == key) return row;
  }
  assert(false);
  return RowsOf(settings).front();
}

}  // namespace vexa
