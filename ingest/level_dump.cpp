#include "ingest/level_dump.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/source_table.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kLevelDumpTag = "COLUMNS";
constexpr std::string_view kTextStart = "SOUNDING = ";
constexpr std::string_view kElevation = "ELEVATION (M) = ";
constexpr std::string_view kPosition = "LAT/LONG = ";
constexpr std::string_view kLevels = "DATA LEVELS = ";
constexpr std::string_view kColumnNames = "DATA:";
constexpr std::string_view kSheetStart = "Sounding Information,";
constexpr std::string_view kSheetPosition = "Elev (m),";
constexpr std::string_view kSheetTable = "PR(";
constexpr int kMostLinesAhead = 5;  // of the first sounding

struct DumpColumn {
  std::string_view Dump;    // name in the dump
  std::string_view Common;  // name that tables use
};
constexpr DumpColumn kColumns[] = {
    {"PR", "pressure"},  {"HT", "height"},         {"T", "temperature"},
    {"Td", "dew point"}, {"DD", "wind direction"}, {"FF", "wind speed"},
};

/// Columns by their names, and whether heights count from the ground.
struct Names {
  std::vector<QuantityColumn> Plan{};
  bool AboveGround = false;
};

// Names such as "PR(mb)" and "HT(ft AGL)", separated by commas.
Names ReadNames(std::string_view line) {
  Names names;
  const std::vector<std::string_view> fields = SplitFields(line, ',');
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t bracket = fields[i].find('(');
    const auto* row = std::ranges::find(kColumns, fields[i].substr(0, bracket), &DumpColumn::Dump);
    if (row == std::end(kColumns)) continue;
    std::string_view unit;
    if (bracket != std::string_view::npos) {
      unit = fields[i].substr(bracket + 1);
      unit = unit.substr(0, unit.find(')'));
    }
    const std::size_t blank = unit.find(' ');
    if (blank != std::string_view::npos) {
      names.AboveGround = names.AboveGround || Trim(unit.substr(blank)) == "AGL";
      unit = unit.substr(0, blank);
    }
    if (const auto column = PlanColumn(i, row->Common, unit)) names.Plan.push_back(*column);
  }
  return names;
}

bool IsSheet(const SourceText& source) {
  return source.LineCount() > 0 && source.Line(1).starts_with(kSheetStart);
}

// Lines on which soundings begin.
std::vector<int> Starts(const SourceText& source) {
  const std::string_view start = IsSheet(source) ? kSheetStart : kTextStart;
  std::vector<int> starts;
  for (int line = 1; line <= source.LineCount(); ++line) {
    if (source.Line(line).starts_with(start)) starts.push_back(line);
  }
  return starts;
}

// A field that may stand in quotes, each quote inside it doubled.
std::string Unquoted(std::string_view field) {
  if (!field.starts_with('"')) return std::string(field);
  std::string text;
  for (std::size_t i = 1; i < field.size(); ++i) {
    if (field[i] == '"' && ++i >= field.size()) break;
    text += field[i];
  }
  return text;
}

std::string TitleAt(const SourceText& source, int line) {
  return CutTitle(IsSheet(source) ? Unquoted(source.Line(line).substr(kSheetStart.size()))
                                  : std::string(Trim(source.Line(line).substr(kTextStart.size()))));
}

// A number of the heading, elevation or degrees.
std::optional<double> Known(std::string_view text) {
  constexpr double kUnknown = -999;
  const std::optional<double> number = ParseNumber(text);
  return number == kUnknown ? std::nullopt : number;
}

/// A sounding's lines on the way to its record.
struct DumpBlock {
  int Row = 0;  // first level
  int End = 0;  // line behind the last
  char Separator = ' ';
  Names Columns{};
};

void ReadTextHead(const SourceText& source, int first, int end, SourceHeading& heading,
                  DumpBlock& block) {
  for (int line = first; line < end; ++line) {
    const std::string_view text = source.Line(line);
    if (text.starts_with(kElevation)) heading.Elevation = Known(text.substr(kElevation.size()));
    if (text.starts_with(kPosition)) {
      const std::vector<std::string_view> degrees = Tokens(text.substr(kPosition.size()));
      if (degrees.size() == 2) {
        heading.Lat = Known(degrees[0]);
        heading.Lon = Known(degrees[1]);
      }
    }
    if (!text.starts_with(kLevels)) continue;
    const int count = ParseWhole(text.substr(kLevels.size())).value_or(0);
    block.Row = line + 1;
    block.End = line + 1 + std::clamp(count, 0, end - line - 1);
    return;
  }
}

std::optional<double> Signed(std::string_view degrees, std::string_view hemisphere) {
  std::optional<double> value = ParseNumber(degrees);
  if (hemisphere.empty()) return std::nullopt;
  if (value && (hemisphere == "S" || hemisphere == "W")) value = -*value;
  return value;
}

void ReadSheetHead(const SourceText& source, int first, int end, SourceHeading& heading,
                   DumpBlock& block) {
  constexpr std::size_t kFields = 5;
  for (int line = first; line < end; ++line) {
    const std::string_view text = source.Line(line);
    if (text.starts_with(kSheetPosition) && line + 1 < end) {
      const std::vector<std::string_view> fields = SplitFields(source.Line(line + 1), ',');
      if (fields.size() != kFields) continue;
      heading.Elevation = Known(fields[0]);
      heading.Lat = Signed(fields[1], fields[2]);
      heading.Lon = Signed(fields[3], fields[4]);
    }
    if (!text.starts_with(kSheetTable)) continue;
    block = {.Row = line + 1, .End = end, .Separator = ',', .Columns = ReadNames(text)};
    return;
  }
}

// The columns of a text file stand at its end, after all soundings, or nowhere.
Names TextColumns(const SourceText& source, std::vector<std::string>& notes) {
  for (int line = source.LineCount(); line >= 1; --line) {
    const std::string_view text = source.Line(line);
    if (text.starts_with(kColumnNames)) return ReadNames(text.substr(kColumnNames.size()));
  }
  notes.push_back("No units are stated; taken as m MSL, C and kts.");
  return ReadNames("PR(mb),HT(m MSL),T(C),Td(C),DD(deg),FF(kts)");
}

}  // namespace

bool IsLevelDump(const SourceText& source) {
  if (IsSheet(source)) return true;
  for (int line = 1; line <= std::min(source.LineCount() - 1, kMostLinesAhead); ++line) {
    if (source.Line(line).starts_with(kTextStart)) {
      return source.Line(line + 1).starts_with(kElevation);
    }
  }
  return false;
}

std::vector<SourceEntry> ListLevelDump(const SourceText& source) {
  std::vector<SourceEntry> entries;
  for (const int line : Starts(source)) {
    const std::string title = TitleAt(source, line);
    entries.push_back({.Title = title, .Time = TimeInTitle(title)});
  }
  return entries;
}

std::optional<Fault> DecodeLevelDump(const SourceText& source, LoadContext& context,
                                     SoundingRecord& into) {
  const std::vector<int> starts = Starts(source);
  const Outcome<std::size_t> chosen = ChooseSounding(starts.size(), source, context);
  if (!chosen) return chosen.Error();
  const int first = starts[chosen.Value()];
  const int end =
      chosen.Value() + 1 < starts.size() ? starts[chosen.Value() + 1] : source.LineCount() + 1;
  SourceSounding sounding;
  DumpBlock block;
  if (IsSheet(source)) {
    ReadSheetHead(source, first, end, sounding.Heading, block);
  } else {
    ReadTextHead(source, first, end, sounding.Heading, block);
    block.Columns = TextColumns(source, sounding.Notes);
  }
  if (block.Row == 0 || !Holds(block.Columns.Plan, Quantity::Press)) {
    return Fault{kFaultEndOfFile, "DecodeLevelDump",
                 AtLine(source, first, "the sounding has no levels")};
  }
  const bool isElevationKnown = sounding.Heading.Elevation.has_value();
  const double ground = sounding.Heading.Elevation.value_or(0);
  const TableLayout layout{.Separator = block.Separator,
                           .Columns = block.Columns.Plan.size(),
                           .Plan = std::move(block.Columns.Plan),
                           .FirstRow = block.Row};
  if (std::optional<Fault> fault =
          ReadTable(source, layout, block.End, "DecodeLevelDump", sounding)) {
    return fault;
  }
  if (block.Columns.AboveGround) {
    for (SourceLevel& level : sounding.Levels) {
      if (level.Height) *level.Height += ground;
    }
  }
  FillRecord(std::move(sounding), source.Name(), context, into);
  into.StationTitle = TitleAt(source, first);
  into.Time = TimeInTitle(into.StationTitle);
  if (!isElevationKnown) SetElevationUnknown(into);
  into.DataFormat = kLevelDumpTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
