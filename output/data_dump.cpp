#include "output/data_dump.h"

#include <span>

#include "analysis/level_listing.h"
#include "core/files.h"
#include "core/letter_case.h"
#include "core/number_mask.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::output {
namespace {

constexpr std::string_view kEndOfLine = "\r\n";
constexpr std::string_view kSignificantTitle = "*** Significant Data ***";
constexpr double kMillimetersPerInch = 25.4;
constexpr double kMillimetersPerCentimeter = 10;

using Value = std::optional<double>;

Value Temperature(Value temp, const DumpOptions& dump) {
  if (temp && dump.Temp == DumpTemp::Fahrenheit) return FahrenheitFromCelsius(*temp);
  return temp;
}

Value WaterDepth(Value millimeters, const DumpOptions& dump) {
  if (!millimeters) return millimeters;
  return *millimeters /
         (dump.Water == DumpWater::Inches ? kMillimetersPerInch : kMillimetersPerCentimeter);
}

Value HeightShown(double height, const DumpOptions& dump, double ground) {
  const double shown = dump.Reference == HeightMode::Agl ? height - ground : height;
  return dump.Height == DumpHeight::Feet ? FeetFromMeters(shown) : shown;
}

Value SpeedShown(Value knots, const DumpOptions& dump) {
  if (knots && dump.Speed == SpeedUnits::MetersPerSecond) return *knots * kKnotToMs;
  return knots;
}

std::string HeightUnit(const DumpOptions& dump) {
  return std::string(dump.Height == DumpHeight::Feet ? "ft " : "m ") +
         std::string(Word(dump.Reference));
}
std::string TempUnit(const DumpOptions& dump) {
  return dump.Temp == DumpTemp::Fahrenheit ? "F" : "C";
}
std::string SpeedUnit(const DumpOptions& dump) {
  return dump.Speed == SpeedUnits::MetersPerSecond ? "m/s" : "kts";
}
std::string WaterUnit(const DumpOptions& dump) {
  return std::string(Word(dump.Water));
}
template <char... letters>
std::string Always(const DumpOptions&) {
  return {letters...};
}
constexpr auto kMb = Always<'m', 'b'>;
constexpr auto kDegrees = Always<'d', 'e', 'g'>;
constexpr auto kKelvin = Always<'K'>;
constexpr auto kPercent = Always<'%'>;
constexpr auto kGramsPerKg = Always<'g', '/', 'K', 'g'>;
constexpr auto kDensity = Always<'K', 'g', '/', 'm', '3'>;
constexpr auto kShear = Always<'k', 't', 's', '/', '1', '0', '0', '0', 'f', 't'>;
constexpr auto kNoUnit = Always<>;

template <Value LevelRow::*member>
Value Plain(const LevelRow& row, const DumpOptions&, double) {
  return row.*member;
}
template <Value LevelRow::*member>
Value AsTemp(const LevelRow& row, const DumpOptions& dump, double) {
  return Temperature(row.*member, dump);
}

// The first nine are those of the significant levels too.
constexpr std::size_t kSignificantColumns = 9;
constexpr DumpColumn kColumns[] = {
    {"PR", kMb, MaskFigures("###0.##"), 8,
     [](const LevelRow& row, const DumpOptions&, double) -> Value { return row.Press; }},
    {"HT", HeightUnit, MaskFigures("#####0"), 8,
     [](const LevelRow& row, const DumpOptions& dump, double ground) -> Value {
       return HeightShown(row.Height, dump, ground);
     }},
    {"T", TempUnit, MaskFigures("###0.0"), 8, AsTemp<&LevelRow::Temp>},
    {"Td", TempUnit, MaskFigures("###0.0"), 8, AsTemp<&LevelRow::Dewpt>},
    {"DD", kDegrees, MaskFigures("##0.#"), 7, Plain<&LevelRow::Dir>},
    {"FF", SpeedUnit, MaskFigures("###0.##"), 8,
     [](const LevelRow& row, const DumpOptions& dump, double) {
       return SpeedShown(row.Spd, dump);
     }},
    {"PT", kKelvin, MaskFigures("###0.#"), 8, Plain<&LevelRow::Theta>},
    {"ePT", kKelvin, MaskFigures("###0.#"), 8, Plain<&LevelRow::ThetaE>},
    {"RH", kPercent, MaskFigures("##0.#"), 7, Plain<&LevelRow::Humidity>},
    {"MixR", kGramsPerKg, MaskFigures("##0.###"), 8, Plain<&LevelRow::MixingRatio>},
    {"Water", WaterUnit, MaskFigures("###0.##"), 7,
     [](const LevelRow& row, const DumpOptions& dump, double) {
       return WaterDepth(row.Water, dump);
     }},
    {"Den", kDensity, MaskFigures("##0.###"), 7, Plain<&LevelRow::Density>},
    {"VirT", TempUnit, MaskFigures("###0.0"), 8, AsTemp<&LevelRow::VirtualTemp>},
    {"WetBulb", TempUnit, MaskFigures("###0.0"), 8, AsTemp<&LevelRow::WetBulb>},
    {"Shr/kFT", kShear, MaskFigures("##0.#"), 7, Plain<&LevelRow::Shear>},
    {"Ri", kNoUnit, MaskFigures("###0.##"), 9, Plain<&LevelRow::Richardson>},
};

std::string Named(const DumpColumn& column, const DumpOptions& dump) {
  const std::string unit = column.Unit(dump);
  return std::string(column.Name) + (unit.empty() ? "" : "(" + unit + ")");
}

// Names of columns from one to another, separated.
std::string Names(const DumpOptions& dump, std::size_t from, std::size_t to,
                  std::string_view separator) {
  std::string names;
  for (std::size_t i = from; i < to; ++i) {
    if (i > from) names += separator;
    names += Named(kColumns[i], dump);
  }
  return names;
}

double GroundOf(const analysis::AnalysisResults& results) {
  return results.Levels.Count() > 0 ? results.Levels.Height(1) : 0;
}

std::string TextBlock(const SoundingRecord& sounding, const analysis::AnalysisResults& results,
                      const DumpOptions& dump) {
  const std::vector<LevelRow> rows = DumpRows(sounding, results, dump);
  const std::span<const DumpColumn> columns = DumpColumns(dump);
  const double ground = GroundOf(results);
  std::string text;
  text.reserve(rows.size() * 130 + 200);
  const auto line = [&text](const std::string& record) {
    text += record;
    text += kEndOfLine;
  };
  line("");
  line("SOUNDING = " + sounding.StationTitle);
  line("ELEVATION (M) = " +
       (sounding.ElevUnknown ? std::string(kDumpMissing) : Shortest(sounding.ElevM)));
  line("LAT/LONG = " + DumpDegrees(sounding.LatSigned, sounding.LatHemi, "##.####") + "  " +
       DumpDegrees(sounding.LonSigned, sounding.LonHemi, "###.####"));
  line("DATA LEVELS = " + Shortest(static_cast<int>(rows.size())));
  std::string cell;
  for (const LevelRow& row : rows) {
    for (const DumpColumn& column : columns) {
      cell.clear();
      AppendDumpCell(cell, column, row, dump, ground);
      const auto width = static_cast<std::size_t>(column.Width);
      if (cell.size() < width) text.append(width - cell.size(), ' ');
      text += cell;
    }
    text += kEndOfLine;
  }
  line("  ");
  line("");
  return text;
}

std::string JoinedWords(const std::set<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

}  // namespace

DumpKind DumpKindOf(std::string_view fileName) {
  const std::string ending = TextFromPath(PathFromText(fileName).extension());
  return SameText(ending, ".csv") ? DumpKind::Spreadsheet : DumpKind::Textfile;
}

std::string ProposedDumpName(std::string_view fileName, DumpKind kind) {
  return TextFromPath(PathFromText(fileName).stem()) + std::string(kDumpSuffix) +
         (kind == DumpKind::Spreadsheet ? ".csv" : ".txt");
}

std::span<const DumpColumn> DumpColumns(const DumpOptions& dump) {
  const std::span<const DumpColumn> all(kColumns);
  return dump.SignificantOnly ? all.first(kSignificantColumns) : all;
}

void AppendDumpCell(std::string& text, const DumpColumn& column, const LevelRow& row,
                    const DumpOptions& dump, double ground) {
  const Value value = column.Value(row, dump, ground);
  if (!value) {
    text += kDumpMissing;
    return;
  }
  const std::size_t before = text.size();
  AppendMasked(text, *value, column.Mask);
  if (text.size() == before) text += '0';  // no digit is left of 0.004 under "###.##"
}

std::string DumpDegrees(double degrees, std::string_view hemisphere, std::string_view mask) {
  if (hemisphere.empty()) return std::string(kDumpMissing);
  const std::string text = Mask(degrees, mask);
  return text.empty() ? "0" : text;  // as for the levels
}

std::vector<LevelRow> DumpRows(const SoundingRecord& sounding,
                               const analysis::AnalysisResults& results, const DumpOptions& dump) {
  return dump.SignificantOnly ? SignificantLevels(sounding, results)
                              : IntegrateLevels(sounding, results);
}

analysis::AnalysisResults AnalyseForDump(const SoundingRecord& sounding,
                                         const AnalysisSettings& set, DumpKind kind,
                                         analysis::AdiabatTable* table) {
  if (kind == DumpKind::Spreadsheet) {
    return table != nullptr ? analysis::Analyse(sounding, set, *table)
                            : analysis::Analyse(sounding, set);
  }
  analysis::AnalysisResults results;
  results.Levels = analysis::DeriveLevels(sounding, set);
  results.Winds = analysis::DeriveWinds(sounding);
  results.Layers.Listing = analysis::ListLevels(results.Levels);
  return results;
}

std::string DumpOpening(const DumpOptions& dump, DumpKind kind) {
  if (kind == DumpKind::Spreadsheet || !dump.SignificantOnly) return {};
  return std::string(kSignificantTitle) + std::string(kEndOfLine);
}

std::string DumpSounding(const SoundingRecord& sounding, const analysis::AnalysisResults& results,
                         const DisplaySettings& set, const DumpOptions& dump, DumpKind kind) {
  return kind == DumpKind::Spreadsheet ? SpreadsheetBlock(sounding, results, set, dump)
                                       : TextBlock(sounding, results, dump);
}

std::string DumpClosing(const DumpSummary& summary, const DumpOptions& dump, DumpKind kind) {
  if (kind == DumpKind::Spreadsheet || !dump.FormatBlock) return {};
  std::vector<std::string> lines;
  if (dump.SignificantOnly) {
    lines = {std::string(kSignificantTitle) + " Format",
             "NOTE:  No data is represented by the -999 value.",
             "DATA:  " + Names(dump, 0, kSignificantColumns, ",")};
  } else {
    lines = {"Data Format Information/Header ...",
             "NOTE 1:  All data levels have PR(pressure) and HT(height) values.",
             "NOTE 2:  No data is represented by the -999 value.",
             "DATA:  " + Names(dump, 0, 8, ", ") + ",",
             "       " + Names(dump, 8, 14, ", "),
             "       " + Names(dump, 14, 16, ", ")};
  }
  lines.push_back("FILENAME = " + summary.FileName);
  lines.push_back("DATA TYPE = " + JoinedWords(summary.DataTypes));
  lines.push_back("NUMBER OF SOUNDINGS LISTED = " + Shortest(summary.Count));
  std::string text;
  for (const std::string& line : lines) text += line + std::string(kEndOfLine);
  return text;
}

}  // namespace vexa::output
