// The table of indices: a row each with its panel label, name, unit, mask, formula in words, source
// and the function that computes it. Panel, listings, JSON, severe-weather table and explanations
// walk this table.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/index_reader.h"

namespace vexa::analysis {

/// What a value is: decides how the settings' units change what is shown.
enum class Measure {
  Number,    // shown as it is
  Temp,      // °C or °F
  TempDiff,  // °C or Fahrenheit degrees
  Height,    // m above sea level; shown above it or above the ground, in m or ft
  Ground,    // m above sea level, the ground's own height: never above the ground; m or ft
  Agl,       // m above ground and shown as such, whatever the other heights count from; m or ft
  Depth,     // m, a difference or a height of the standard atmosphere; m or ft
  Press,     // hPa
  Speed,     // kt or m/s
  Water,     // cm or inches
  Word       // the words say it all
};

struct IndexRow {
  std::string_view Label;  // ten characters, right-aligned
  std::string_view Name;   // "K Index"
  Measure Kind;
  std::string_view Unit;     // of the value: "C", "m", "kt"; empty for a bare number
  std::string_view Mask;     // how the value is shown
  std::string_view Formula;  // in words
  std::string_view Source;
  double (*Compute)(IndexReader& in);
  bool IsTurning = false;  // its sign is that of a turning wind: cyclonic is negative in the south
};

std::span<const IndexRow> IndexTable();

/// The row of a trimmed panel label, compared without regard to case; null when there is none.
const IndexRow* FindIndex(std::string_view label);

/// One index of a sounding; never NaN.
IndexValue ComputeIndex(const IndexRow& row, const SoundingRecord& sounding,
                        const AnalysisResults& results, const AnalysisSettings& options);

/// Every index of the table, in its order.
std::vector<IndexValue> ComputeIndices(const SoundingRecord& sounding,
                                       const AnalysisResults& results,
                                       const AnalysisSettings& options);

/// The index of a row among the results; null when they were not computed.
const IndexValue* IndexOf(const AnalysisResults& results, const IndexRow& row);

/// The word behind a pressure by the setting; inches of mercury are for station pressures alone,
/// levels keep their mb.
constexpr std::string_view PressureWord(PressureUnits units) {
  return units == PressureUnits::Hpa ? "hPa" : "mb";
}

/// The units in which indices are shown.
struct IndexUnits {
  TempUnits Temp = TempUnits::Celsius;
  LengthUnits Length = LengthUnits::Meter;
  HeightMode Heights = HeightMode::Msl;
  double Ground = kNone;  // m above sea level, taken off heights that are shown above ground
  SpeedUnits Speed = SpeedUnits::Knots;
  bool IsWaterInches = false;
  std::string_view PressWord = "hPa";
  std::string_view KnotWord = "kts";
};

/// Those of the table's rows, which do not follow the options: for files that programs read.
inline constexpr IndexUnits kRowUnits{.KnotWord = "kt"};

/// Those of the options, as panel, sheets and listings show indices.
IndexUnits UnitsOf(const UnitSettings& settings, double ground);

/// An index as it is shown: number and unit are made together, so that they cannot part. The name
/// of a row says no unit.
struct ShownIndex {
  double Amount = kNone;      // the number alone
  std::string_view Bound{};   // ">" or "<" where the sounding ends too early to know more
  std::string Number = "--";  // "31.9", "281/32", "28/40", "surface"
  std::string Unit{};         // "C", "m AGL"; empty for a bare number
  std::string Text() const;   // ">2463 J/kg", "--"
};
ShownIndex ShowIndex(const IndexValue& index, const IndexUnits& units);

/// A value as the panel shows it, in the units of the options: "31.9 C", "10570 ft", "281/32 kts",
/// ">2463 J/kg" where the sounding ends too early, "--" without one.
///
/// ground  m above sea level, taken off heights that are shown above ground
std::string ShownValue(const IndexValue& index, const UnitSettings& settings, double ground);

/// How an index came about, for people: name and value, formula, inputs with their levels, settings
/// and source, or the reason why there is no value. Lines end in LF.
std::string Explain(const IndexRow& row, const SoundingRecord& sounding,
                    const AnalysisResults& results, const AnalysisSettings& options);

}  // namespace vexa::analysis
