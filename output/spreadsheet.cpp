// The spreadsheet's block of one sounding: where it was made, its analysis values with their
// labels and units, its tropopauses and the table of its levels.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/index_table.h"
#include "analysis/shown_units.h"
#include "core/numbers.h"
#include "core/units.h"
#include "output/data_dump.h"

namespace vexa::output {
namespace {

using analysis::AnalysisResults;
using analysis::IndexValue;
using analysis::LevelPoint;

constexpr double kMilesPerKilometer = 1000 / kMetersPerMile;

/// Rows of comma-separated fields; texts that need quotes get them.
class Sheet {
 public:
  /// characters  about as many as come
  explicit Sheet(std::size_t characters) { text_.reserve(characters); }
  Sheet& Cell(std::string_view text) {
    if (std::ranges::none_of(text, WantsQuotes)) return Number(text);
    Separate();
    text_ += '"';
    for (const char c : text) {
      if (c == '"') text_ += '"';
      text_ += c;
    }
    text_ += '"';
    return *this;
  }
  /// What wants no quotes.
  Sheet& Number(std::string_view text) {
    Separate();
    text_ += text;
    return *this;
  }
  /// The text behind which such a cell is to be put.
  std::string& NextNumber() {
    Separate();
    return text_;
  }
  void EndRow() {
    text_ += "\r\n";
    atStart_ = true;
  }
  std::string Take() { return std::move(text_); }

 private:
  static bool WantsQuotes(char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; }
  void Separate() {
    if (!atStart_) text_ += ',';
    atStart_ = false;
  }

  std::string text_{};
  bool atStart_ = true;
};

/// What the rows are made of.
struct Source {
  const SoundingRecord& Sounding;
  const AnalysisResults& Results;
  const DisplaySettings& Set;
  const DumpOptions& Dump;
  double Ground;  // m above mean sea level
};

struct Quantity {
  std::string Number{};
  std::string_view Unit{};
};

Quantity Length(double meters, const Source& from) {
  const bool isFeet = from.Dump.Height == DumpHeight::Feet;
  return {Mask(isFeet ? FeetFromMeters(meters) : meters, "#####0"), isFeet ? " ft " : " m "};
}

Quantity HeightOf(double height, const Source& from) {
  if (!HasHeight(height)) return {std::string(kDumpMissing), Length(0, from).Unit};
  return Length(from.Dump.Reference == HeightMode::Agl ? height - from.Ground : height, from);
}

// Numbers stay numbers: that the sounding ends too early stands in a cell behind them.
constexpr std::string_view kAbove = "above";
constexpr std::string_view kAtLeast = "at least";
constexpr std::string_view kAtMost = "at most";

void PutLevel(Sheet& sheet, std::string_view label, const LevelPoint& level, bool isCut,
              const Source& from) {
  const bool exists = level.Exists();
  const Quantity height = HeightOf(exists ? level.Height : kNone, from);
  sheet.Cell(label).Cell(exists ? Mask(level.Press, "###0.0") : kDumpMissing).Cell(" mb");
  sheet.Cell(height.Number).Cell(height.Unit);
  if (isCut) sheet.Cell(kAbove);
  sheet.EndRow();
}

/// The levels, with the labels that spreadsheets expect.
struct LevelEntry {
  std::string_view Label;
  LevelPoint (*Find)(const AnalysisResults& results);
  bool (*IsCut)(const AnalysisResults& results) = [](const AnalysisResults&) { return false; };
};

const analysis::ParcelAscent& ChosenForced(const AnalysisResults& results) {
  return results.Forced[static_cast<std::size_t>(results.ChosenLift)];
}

LevelPoint FirstFreezing(const AnalysisResults& results) {
  return results.FreezingLevels.empty() ? LevelPoint{} : results.FreezingLevels.front();
}

constexpr LevelEntry kLevels[] = {
    {"LCL", [](const AnalysisResults& r) { return r.Chosen().Condensation; }},
    {"LFC", [](const AnalysisResults& r) { return r.Chosen().FreeLevel; }},
    {"CCL", [](const AnalysisResults& r) { return r.ConvectiveCondensation; }},
    {"MPL = ", [](const AnalysisResults& r) { return r.Chosen().MaximumParcel; }},
    {"FRZG Lvl", FirstFreezing},
    {"cclEL", [](const AnalysisResults& r) { return r.Convective.Equilibrium; },
     [](const AnalysisResults& r) { return r.Convective.IsCut; }},
    {"lfcEL", [](const AnalysisResults& r) { return ChosenForced(r).Equilibrium; },
     [](const AnalysisResults& r) { return ChosenForced(r).IsCut; }},
};

/// Indices whose label in a spreadsheet is not the panel's.
struct Renamed {
  std::string_view Index;
  std::string_view Label;
};
constexpr Renamed kRenamed[] = {
    {"KO", "KO = "},
    {"Supercell", "Supercell Composite Parameter (SCP)"},
};

// Those that the levels above tell already, with their pressures.
constexpr std::string_view kToldAsLevels[] = {"LCL Hgt",   "LFC Hgt",  "LFC Prs",  "CCL Hgt",
                                              "MPL Prs",   "MPL Hgt",  "FRZG Lvl", "cclEL Hgt",
                                              "lfcEL Hgt", "Stn Elev", "TROP Lvl"};

std::string LabelOf(const IndexValue& index, const DisplaySettings& options) {
  const std::string_view label = Trim(index.Row->Label);
  for (const Renamed& row : kRenamed) {
    if (row.Index == label) return std::string(row.Label);
  }
  // "CAPE 0-xkm" with the depth that the settings have.
  const std::size_t depth = label.find("0-xkm");
  if (depth == std::string_view::npos) return std::string(label);
  const double km = label.starts_with("EHI")   ? options.EhiDepthKm
                    : label.starts_with("VGP") ? options.VgpDepthKm
                                               : options.CapeDepthKm;
  return std::string(label.substr(0, depth)) + "0-" + Shortest(km) + "km";
}

analysis::IndexUnits UnitsOf(const Source& from) {
  const DumpOptions& dump = from.Dump;
  return {.Temp = dump.Temp == DumpTemp::Fahrenheit ? TempUnits::Fahrenheit : TempUnits::Celsius,
          .Length = dump.Height == DumpHeight::Feet ? LengthUnits::Feet : LengthUnits::Meter,
          .Heights = dump.Reference,
          .Ground = from.Ground,
          .Speed = dump.Speed,
          .IsWaterInches = dump.Water == DumpWater::Inches,
          .PressWord = "mb"};
}

// Units as spreadsheets expect them: behind a blank, those of lengths before one too.
std::string UnitCell(std::string_view unit) {
  constexpr std::string_view kAsItStands = "C/km";
  constexpr std::string_view kLengths[] = {"m", "ft", "cm", "in"};
  const std::string_view word = unit.substr(0, unit.find(" AGL"));
  if (word.empty() || word == kAsItStands) return std::string(word);
  const bool isLength = std::ranges::find(kLengths, word) != std::end(kLengths);
  return " " + std::string(word) + (isLength ? " " : "");
}

void PutIndices(Sheet& sheet, const Source& from) {
  for (const IndexValue& index : from.Results.Indices) {
    const std::string_view label = Trim(index.Row->Label);
    if (std::ranges::find(kToldAsLevels, label) != std::end(kToldAsLevels)) continue;
    sheet.Cell(LabelOf(index, from.Set));
    if (index.Exists()) {
      const analysis::ShownIndex shown = analysis::ShowIndex(index, UnitsOf(from));
      sheet.Cell(shown.Number).Cell(UnitCell(shown.Unit));
      if (!shown.Bound.empty()) sheet.Cell(shown.Bound == ">" ? kAtLeast : kAtMost);
    } else {
      sheet.Cell(kDumpMissing).Cell("");
    }
    sheet.EndRow();
  }
}

void PutStormMotion(Sheet& sheet, const Source& from) {
  sheet.Cell("Storm motion = ");
  const std::optional<analysis::Mover>& mover = from.Results.Storm.Chosen();
  if (!mover) {
    sheet.Cell(kDumpMissing).EndRow();
    return;
  }
  const analysis::Wind wind = analysis::FromComponents(mover->Motion);
  const double kmPerHour = wind.Spd * kKmPerNauticalMile;
  sheet.Cell(analysis::DirectionText(wind.Dir)).Cell(" deg");
  sheet.Cell(Mask(wind.Spd, "##0.0")).Cell(" kts");
  sheet.Cell(Mask(wind.Spd * kKnotToMs, "##0.0")).Cell(" m/s");
  sheet.Cell(Mask(kmPerHour * kMilesPerKilometer, "##0.0")).Cell(" mph").EndRow();
}

void PutTropopauses(Sheet& sheet, const Source& from) {
  const std::vector<LevelPoint>& found = from.Results.Tropopauses;
  sheet.Cell(Shortest(static_cast<int>(found.size())))
      .Cell(found.size() == 1 ? " Tropopause level." : " Tropopause levels.")
      .EndRow();
  for (const LevelPoint& level : found) PutLevel(sheet, "TROP", level, false, from);
}

void PutPosition(Sheet& sheet, const Source& from) {
  const SoundingRecord& sounding = from.Sounding;
  for (const std::string_view name : {"Elev (m)", "Lat", "N/S", "Lon", "E/W"}) sheet.Cell(name);
  sheet.EndRow();
  sheet.Cell(sounding.ElevUnknown ? std::string(kDumpMissing) : Shortest(sounding.ElevM));
  const auto put = [&sheet](double degrees, std::string_view hemisphere, std::string_view mask) {
    sheet.Cell(DumpDegrees(std::fabs(degrees), hemisphere, mask)).Cell(hemisphere);
  };
  put(sounding.LatSigned, sounding.LatHemi, "#0.####");
  put(sounding.LonSigned, sounding.LonHemi, "##0.####");
  sheet.EndRow();
}

void PutLevels(Sheet& sheet, const Source& from) {
  const DumpOptions& dump = from.Dump;
  const std::span<const DumpColumn> columns = DumpColumns(dump);
  for (const DumpColumn& column : columns) {
    const std::string unit = column.Unit(dump);
    sheet.Cell(std::string(column.Name) + (unit.empty() ? "" : "(" + unit + ")"));
  }
  sheet.EndRow();
  for (const LevelRow& row : DumpRows(from.Sounding, from.Results, dump)) {
    for (const DumpColumn& column : columns) {
      AppendDumpCell(sheet.NextNumber(), column, row, dump, from.Ground);
    }
    sheet.EndRow();
  }
}

}  // namespace

std::string SpreadsheetBlock(const SoundingRecord& sounding, const AnalysisResults& results,
                             const DisplaySettings& set, const DumpOptions& dump) {
  const double ground = results.Levels.Count() > 0 ? results.Levels.Height(1) : 0;
  const Source from{sounding, results, set, dump, ground};
  constexpr std::size_t kAhead = 3000, kRow = 100;  // characters
  const int levels = sounding.NumTempLevels() + sounding.NumWindLevels();
  Sheet sheet(kAhead + kRow * static_cast<std::size_t>(levels));
  sheet.Cell("Sounding Information").Cell(sounding.StationTitle).EndRow();
  PutPosition(sheet, from);
  for (const LevelEntry& entry : kLevels) {
    PutLevel(sheet, entry.Label, entry.Find(results), entry.IsCut(results), from);
  }
  PutIndices(sheet, from);
  PutStormMotion(sheet, from);
  PutTropopauses(sheet, from);
  PutLevels(sheet, from);
  sheet.EndRow();
  return sheet.Take();
}

}  // namespace vexa::output
