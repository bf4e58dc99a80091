// What the cross-section's diagram form sets, and the state of its window; each in a settings file
// of its own.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "config/setting_row.h"
#include "config/view_settings.h"
#include "crosssection/column.h"

namespace vexa::crosssection {

enum class SectionScale { Pressure, Kilometers, Feet };
enum class SectionLength { NauticalMiles, Kilometers, Miles };
enum class GridResolution { Low, Medium, High };
enum class DiagramSize { Small, Large };
enum class SizeUnits { Inches, Centimeters };
enum class SymbolKind { Shafts, Flags };

constexpr auto Words(SectionScale) {
  return std::to_array<std::string_view>({"mb", "km", "ft"});
}
constexpr auto Words(SectionLength) {
  return std::to_array<std::string_view>({"nm", "km", "mi"});
}
constexpr auto Words(GridResolution) {
  return std::to_array<std::string_view>({"low", "medium", "high"});
}
constexpr auto Words(DiagramSize) {
  return std::to_array<std::string_view>({"small", "large"});
}
constexpr auto Words(SizeUnits) {
  return std::to_array<std::string_view>({"in", "cm"});
}
constexpr auto Words(SymbolKind) {
  return std::to_array<std::string_view>({"Shafts", "Flags"});
}

/// From kilometres to a unit of length along the section.
double FromKm(double km, SectionLength units);

struct GridSize {
  int Columns = 61;
  int Rows = 46;
};
GridSize SizeOf(GridResolution resolution);

struct SectionOptions {
  // Tab 1: scales and units.
  SectionScale Scale = SectionScale::Pressure;
  double UpperLimit = 100;  // hPa, of the other scales by the standard atmosphere
  HeightMode Heights = HeightMode::Msl;
  SectionLength Length = SectionLength::NauticalMiles;
  TempUnits Temp = TempUnits::Celsius;
  SpeedUnits Speed = SpeedUnits::Knots;
  SizeUnits Water = SizeUnits::Centimeters;  // of precipitable water

  // Tab 2: looks.
  ScreenColor Background = ScreenColor::White;
  DiagramSize Size = DiagramSize::Large;
  SymbolKind Symbols = SymbolKind::Shafts;
  WindSize Barbs = WindSize::Medium;
  bool PlotWinds = true;
  bool Filled = true;
  bool Lines = true;
  bool SubIsolines = false;  // dashed ones half-way
  bool DotMoisture = false;  // dew-point fields in dots
  bool MarkExtrema = true;
  bool Tropopause = true;
  bool FreezingLevel = true;
  bool Terrain = true;

  // Tab 3: grid.
  GridResolution Resolution = GridResolution::Medium;
  int SmoothingPasses = 2;

  std::optional<double> CrossDirection{};  // of XWND, degrees; empty: that of the section

  bool operator==(const SectionOptions&) const = default;
};

inline constexpr int kMostPasses = 20;

/// The state of the window between sessions.
struct SectionState {
  bool AutoLoad = false;
  std::string LastDataset{};
  std::array<std::string, 5> Recent{};  // datasets, the latest first
  std::string Field = "TMP";
  SectionDirection Direction = SectionDirection::Forward;
  int Left = 0, Top = 0, Width = 1100, Height = 760;  // pixels
  bool operator==(const SectionState&) const = default;
};

/// The rows of the options, for forms: the key names the control, the place its tab.
std::span<const SettingRow<SectionOptions>> SectionOptionRows();

/// "VEXA56+.XXX" (state), "VEXA56+.XXS" (options).
std::string SectionStateFile();
std::string SectionOptionsFile();

std::string Write(const SectionOptions& options);
std::string Write(const SectionState& state);
/// What a file says; where it ends or is damaged the defaults stand.
SectionOptions ReadSectionOptions(const std::string& text);
SectionState ReadSectionState(const std::string& text);

}  // namespace vexa::crosssection
