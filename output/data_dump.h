// Data dumps: the levels of soundings with what follows from them, as a text file or a spreadsheet
// that other programs read, and this one reads back. A file is its opening, a block for each
// sounding and its closing, so that thousands of soundings never stand in memory together.
#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "config/display_settings.h"
#include "config/dump_options.h"
#include "core/number_mask.h"
#include "core/sounding_record.h"
#include "output/level_rows.h"

namespace vexa::output {

enum class DumpKind { Textfile, Spreadsheet };

inline constexpr std::string_view kDumpSuffix = "_data";  // of the proposed file name
inline constexpr std::string_view kDumpTextFilter = "*.txt|*.txt|*.dat|*.dat|*.doc|*.doc|*.*|*.*";
inline constexpr std::string_view kDumpSheetFilter = "*.csv|*.csv|*.txt|*.txt|*.*|*.*";
inline constexpr std::string_view kDumpMissing = "-999";

/// ".csv" is a spreadsheet, any other ending a text file.
DumpKind DumpKindOf(std::string_view fileName);

/// Name proposed for the export of a file: its own without the ending, "_data" and the kind's.
std::string ProposedDumpName(std::string_view fileName, DumpKind kind);

/// A column of the level table: its name, unit and mask under the options.
struct DumpColumn {
  std::string_view Name;  // "PR"
  std::string (*Unit)(const DumpOptions& dump);
  MaskFigures Mask;
  int Width;  // characters in the text file
  std::optional<double> (*Value)(const LevelRow& row, const DumpOptions& dump, double ground);
};

/// The columns in their order: all sixteen, or the nine of the significant levels.
std::span<const DumpColumn> DumpColumns(const DumpOptions& dump);

/// Puts a number of a row behind a text as the table shows it, "-999" without one.
void AppendDumpCell(std::string& text, const DumpColumn& column, const LevelRow& row,
                    const DumpOptions& dump, double ground);

/// Signed degrees, or their magnitude, as dumps show them: kDumpMissing where the sounding has no
/// position, which its hemispheres tell.
std::string DumpDegrees(double degrees, std::string_view hemisphere, std::string_view mask);

/// What is exported of a sounding: all levels or the significant ones.
std::vector<LevelRow> DumpRows(const SoundingRecord& sounding,
                               const analysis::AnalysisResults& results, const DumpOptions& dump);

/// Analyses as much of a sounding as its dump shows: for a text file the levels alone.
///
/// table  shared by the soundings of a dump; null: one of its own
analysis::AnalysisResults AnalyseForDump(const SoundingRecord& sounding,
                                         const AnalysisSettings& set, DumpKind kind,
                                         analysis::AdiabatTable* table = nullptr);

/// What the closing of a file tells of its soundings.
struct DumpSummary {
  std::string FileName{};  // of the dump, without its folder
  std::set<std::string> DataTypes{};
  int Count = 0;
};

/// The parts of a dump; lines end in CR LF.
///
/// set   what the analysis values of the spreadsheet follow
/// dump  units and blocks of everything else
std::string DumpOpening(const DumpOptions& dump, DumpKind kind);
std::string DumpSounding(const SoundingRecord& sounding, const analysis::AnalysisResults& results,
                         const DisplaySettings& set, const DumpOptions& dump, DumpKind kind);
std::string DumpClosing(const DumpSummary& summary, const DumpOptions& dump, DumpKind kind);

/// One sounding's block of the spreadsheet; DumpSounding calls it.
std::string SpreadsheetBlock(const SoundingRecord& sounding,
                             const analysis::AnalysisResults& results, const DisplaySettings& set,
                             const DumpOptions& dump);

}  // namespace vexa::output
