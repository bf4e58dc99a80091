// The columns of a catalogue: what is kept of every sounding. The indices follow the index table,
// so that a new one is a column without further ado.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "archive/database.h"
#include "sounding/analysed_sounding.h"

namespace vexa::archive {

enum class ColumnKind { Whole, Number, Text };

/// A sounding as it is entered.
struct Entered {
  const AnalysedSounding& Sounding;
  const analysis::AnalysisResults& Results;
  std::string Settings{};  // fingerprint of the settings of the analysis
  std::string Member{};    // of an archive: the file inside that it stands in
};

struct Column {
  std::string Name;
  ColumnKind Kind;
  std::string Unit{};                               // empty: a bare number or a text
  std::string LongName{};                           // for people
  const analysis::IndexRow* Index = nullptr;        // of the columns of indices
  Cell (*Value)(const Entered& entered) = nullptr;  // of the others
  bool IsOfFile = false;                            // kept once for all soundings of a file
};

const std::vector<Column>& Columns();

/// Compared without regard to case; null when there is none.
const Column* FindColumn(std::string_view name);

/// As the source gives it, else as the title begins; 0 where neither has one.
int StationNumber(const SoundingRecord& sounding);

Cell ValueOf(const Column& column, const Entered& entered);
/// The same of the column of an index.
Cell IndexCell(const analysis::IndexRow& row, const analysis::AnalysisResults& results);

/// A value as tables show it: whole numbers and texts as they are, numbers by Shortest.
std::string CellText(const Cell& cell);

/// "1,240".
std::string GroupedCount(std::int64_t number);

/// Of settings and of the indices that are computed under them: analyses with the same one have the
/// same values. Sixteen hexadecimal digits.
std::string Fingerprint(const AnalysisSettings& settings);

/// The settings that differ from the defaults: "Lpl=surface, CapeDepthKm=4"; "defaults" for none.
std::string SettingsText(const AnalysisSettings& settings);

}  // namespace vexa::archive
