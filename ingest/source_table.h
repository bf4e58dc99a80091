// Tables of numbers under a line of column names, however the names and numbers are separated.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "ingest/source_columns.h"
#include "ingest/source_sounding.h"

namespace vexa::ingest {

struct TableLayout {
  char Separator = ' ';  // ' ' for blanks and tabs of any number
  std::size_t Columns = 0;
  std::vector<std::string_view> Names{};  // of the columns, parts of the source
  std::vector<QuantityColumn> Plan{};
  int NamesLine = 0;
  int FirstRow = 0;  // line

  std::vector<std::string_view> Fields(std::string_view line) const;
};

/// The layout under a line of names: it names a pressure and another quantity of ours, and a row
/// with as many fields follows, perhaps behind lines of units and dashes. Empty for any other line.
std::optional<TableLayout> LayoutAt(const SourceText& source, int line);

/// That of the first line up to a last one that has a layout; empty when none has.
std::optional<TableLayout> FindLayout(const SourceText& source, int lastLine);

/// Reads rows up to, without, an end line or to the first line that is no row. Fault 62 names a
/// field of a row that is no number.
std::optional<Fault> ReadTable(const SourceText& source, const TableLayout& layout, int end,
                               std::string_view procedure, SourceSounding& into);

/// Sets a position that the heading lacks from the columns "lat" and "lon" of the first row that
/// has both; "(S)" and "(W)" behind the names turn the signs.
void LocateByColumns(const SourceText& source, const TableLayout& layout, SourceHeading& heading);

/// The degrees behind a label, negative where S or W follows: "40.5875 N", "105 W".
std::optional<double> DegreesIn(std::string_view text);

}  // namespace vexa::ingest
