#include "ingest/wyoming.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/source_header.h"
#include "ingest/source_levels.h"
#include "ingest/source_sounding.h"

namespace vexa::ingest {
namespace {

constexpr int kMostWyomingHeading = 400;  // before the table; pages carry menus
constexpr std::string_view kWyomingTag = "WYOMING";

/// One column of the table: the names stand flush right, so each ends where its values end.
struct Column {
  std::string_view Name;
  std::size_t Begin;
  std::size_t End;

  std::string_view Of(std::string_view line) const {
    if (Begin >= line.size()) return {};
    return line.substr(Begin, End - Begin);
  }
};

bool IsNameLine(std::string_view line) {
  if (!Trim(line).starts_with("PRES")) return false;
  const std::vector<std::string_view> names = Tokens(line);
  return names.size() >= 4 && names[0] == "PRES" && names[1] == "HGHT" && names[2] == "TEMP";
}

bool IsRule(std::string_view line) {
  const std::string_view text = Trim(line);
  return text.size() >= 5 && text.find_first_not_of('-') == std::string_view::npos;
}

// Line of the column names, 0 when there is none.
int FindNameLine(const SourceText& source) {
  const int last = std::min(source.LineCount(), kMostWyomingHeading);
  for (int line = 1; line <= last; ++line) {
    if (IsNameLine(source.Line(line))) return line;
  }
  return 0;
}

std::vector<Column> ColumnsOf(std::string_view nameLine) {
  std::vector<Column> columns;
  std::size_t begin = 0;
  for (const std::string_view name : Tokens(nameLine)) {
    const auto end = static_cast<std::size_t>(name.data() - nameLine.data()) + name.size();
    columns.push_back({name, begin, end});
    begin = end;
  }
  return columns;
}

/// The columns that we read, with the factor that turns their unit into ours.
struct ReadColumn {
  Column At;
  Element What;
  std::optional<double> SourceLevel::*Into;
  double Factor;
};

Outcome<std::vector<ReadColumn>> ChooseColumns(const std::vector<Column>& columns,
                                               std::string_view unitLine) {
  struct Known {
    std::string_view Name, Unit;
    Element What;
    std::optional<double> SourceLevel::*Into;
  };
  static constexpr Known kKnown[] = {
      {"PRES", "hPa", Element::Press, &SourceLevel::Press},
      {"HGHT", "m", Element::Height, &SourceLevel::Height},
      {"TEMP", "C", Element::Temp, &SourceLevel::Temp},
      {"DWPT", "C", Element::Dewpt, &SourceLevel::Dewpt},
      {"DRCT", "deg", Element::Direction, &SourceLevel::Dir},
      {"SKNT", "knot", Element::Speed, &SourceLevel::Spd},
      {"SPED", "m/s", Element::Speed, &SourceLevel::Spd},
  };
  std::vector<ReadColumn> chosen;
  for (const Column& column : columns) {
    const auto* known = std::ranges::find(kKnown, column.Name, &Known::Name);
    if (known == std::end(kKnown)) continue;
    const std::string_view given = Trim(column.Of(unitLine));
    const std::string_view unit = given.empty() ? known->Unit : given;
    std::optional<double> factor;
    if (known->What == Element::Speed) {
      factor = KnotsPer(unit);
    } else if (unit == known->Unit) {
      factor = 1;
    }
    if (!factor) {
      return Fault{kFaultNonStandard, "DecodeWyoming",
                   "column " + std::string(column.Name) + " has the unknown unit \"" +
                       std::string(unit) + '"'};
    }
    chosen.push_back({column, known->What, known->Into, *factor});
  }
  return chosen;
}

class Table {
 public:
  Table(const SourceText& source, int nameLine) : source_(source), line_(nameLine) {}

  std::vector<SourceLevel> Levels{};
  Refusals Refused{};
  bool LostLastRow = false;

  /// Reads the rows and leaves the line behind them.
  std::optional<Fault> Read() {
    const std::vector<Column> columns = ColumnsOf(source_.Line(line_));
    ++line_;
    std::string_view unitLine;
    if (line_ <= source_.LineCount() && !IsRule(source_.Line(line_))) {
      unitLine = source_.Line(line_++);
    }
    Outcome<std::vector<ReadColumn>> chosen = ChooseColumns(columns, unitLine);
    if (!chosen) {
      Fault fault = chosen.Error();
      fault.Detail = AtLine(source_, line_ - 1, fault.Detail);
      return fault;
    }
    for (; line_ <= source_.LineCount(); ++line_) {
      const std::string_view row = source_.Line(line_);
      const std::string_view text = Trim(row);
      if (text.empty() || IsRule(row)) continue;
      if (text.front() != '-' && text.front() != '*' &&
          (text.front() < '0' || text.front() > '9')) {
        break;
      }
      if (IsCutOff(row, columns)) {
        LostLastRow = true;
        continue;
      }
      if (std::optional<Fault> fault = ReadRow(row, chosen.Value())) return fault;
    }
    return std::nullopt;
  }

  int NextLine() const { return line_; }

 private:
  // A file that ends inside a column has lost digits there.
  bool IsCutOff(std::string_view row, const std::vector<Column>& columns) const {
    if (line_ < source_.LineCount() || source_.Bytes().ends_with('\n')) return false;
    const std::size_t end = row.find_last_not_of(" \t") + 1;
    return std::ranges::none_of(columns, [end](const Column& column) { return column.End == end; });
  }

  std::optional<Fault> ReadRow(std::string_view row, const std::vector<ReadColumn>& columns) {
    SourceLevel level;
    for (const ReadColumn& column : columns) {
      const std::string_view field = column.At.Of(row);
      if (!ReadElement(field, column.What, Refused, level.*column.Into, {column.Factor})) {
        return Fault{kFaultEndOfFile, "DecodeWyoming",
                     AtLine(source_, line_,
                            '"' + std::string(Trim(field)) + "\" in column " +
                                std::string(column.At.Name) + " is not a number")};
      }
    }
    if (level.Press) Levels.push_back(level);
    return std::nullopt;
  }

  const SourceText& source_;
  int line_;
};

// The word behind a label, "345.0" for "Station elevation: 345.0".
std::optional<std::string_view> Labelled(std::string_view line, std::string_view label) {
  const std::size_t at = FindNoCase(line, label);
  if (at == std::string_view::npos) return std::nullopt;
  const std::vector<std::string_view> words = Tokens(line.substr(at + label.size()));
  if (words.empty()) return std::nullopt;
  return words.front();
}

// "72357 OUN Norman": each part behind one blank, so that two blanks skip the letters; letters
// are told from a name by being three or four capitals or digits.
void ReadStation(std::string_view text, StationName& station) {
  const auto isLetters = [](std::string_view word) {
    return word.size() >= 3 && word.size() <= 4 && std::ranges::all_of(word, [](char c) {
             return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
           });
  };
  std::vector<std::string_view> words = Tokens(text);
  if (words.empty()) return;
  const std::optional<int> number =
      words.front().size() == 5 ? ParseWhole(words.front()) : std::nullopt;
  std::string_view rest = text;
  if (number && *number > 0) {
    station.Number = *number;
    rest = text.substr(static_cast<std::size_t>(words.front().data() - text.data()) + 5);
    words.erase(words.begin());
  }
  const bool skipsLetters = rest.starts_with("  ");
  if (!words.empty() && !skipsLetters && isLetters(words.front())) {
    station.Letters = words.front();
    rest.remove_prefix(static_cast<std::size_t>(words.front().data() - rest.data()) +
                       words.front().size());
  }
  station.Name = Trim(rest);
}

/// The sentence that opens a sounding, in its older form, "72357 OUN Norman Observations at 00Z
/// 04 May 1999", or its newer one, "Observations for Station 83779 at 12 UTC 23 Feb 2023".
bool ReadOpening(std::string_view line, SourceHeading& heading) {
  constexpr std::string_view kOlder = "Observations at ";
  constexpr std::string_view kNewer = "Observations for Station ";
  if (const std::size_t at = line.find(kOlder); at != std::string_view::npos) {
    ReadStation(Trim(line.substr(0, at)), heading.Station);
    heading.Time = ParseWrittenTime(line.substr(at + kOlder.size())).value_or(ObservationTime{});
    return true;
  }
  if (const std::size_t at = line.find(kNewer); at != std::string_view::npos) {
    const std::string_view rest = line.substr(at + kNewer.size());
    const std::size_t when = rest.find(" at ");
    ReadStation(Trim(rest.substr(0, when)), heading.Station);
    if (when != std::string_view::npos) {
      heading.Time = ParseWrittenTime(rest.substr(when + 4)).value_or(ObservationTime{});
    }
    return true;
  }
  return false;
}

void ReadLabels(std::string_view line, SourceHeading& heading) {
  const auto number = [line](std::string_view label, std::optional<double>& into) {
    const std::optional<std::string_view> word = Labelled(line, label);
    if (word && !into) into = ParseNumber(*word);
  };
  number("latitude:", heading.Lat);
  number("longitude:", heading.Lon);
  number("elevation:", heading.Elevation);
  if (const auto word = Labelled(line, "Station number:"); word && heading.Station.Number == 0) {
    heading.Station.Number = ParseWhole(*word).value_or(0);
  }
  if (const auto word = Labelled(line, "Station identifier:");
      word && heading.Station.Letters.empty()) {
    heading.Station.Letters = *word;
  }
  if (const auto word = Labelled(line, "Observation time:"); word && !heading.Time.Known()) {
    heading.Time = ParseCompactTime(*word).value_or(ObservationTime{});
  }
}

}  // namespace

bool IsWyoming(const SourceText& source) {
  return FindNameLine(source) != 0;
}

// At the sentence that opens it, else at its line of column names.
std::vector<int> WyomingBeginnings(const SourceText& source) {
  std::vector<int> beginnings;
  int opening = 0;
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = source.Line(line);
    SourceHeading heading;
    if (opening == 0 && ReadOpening(Trim(text), heading)) opening = line;
    if (!IsNameLine(text)) continue;
    beginnings.push_back(opening > 0 ? opening : line);
    opening = 0;
  }
  return beginnings;
}

std::optional<Fault> DecodeWyoming(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into) {
  const int nameLine = FindNameLine(source);
  if (nameLine == 0) {
    return Fault{kFaultFormat, "DecodeWyoming", source.Name() + ": no line of column names"};
  }
  SourceHeading heading;
  bool opened = false;
  for (int line = 1; line < nameLine; ++line) {
    const std::string_view text = Trim(source.Line(line));
    if (ReadOpening(text, heading)) {
      opened = true;
      // The newer form has the place on the next line.
      const std::string_view next = Trim(source.Line(line + 1));
      const bool isName = !next.empty() && !IsRule(next) && next.find(':') == next.npos;
      if (heading.Station.Name.empty() && line + 1 < nameLine && isName) {
        heading.Station.Name = next;
      }
    } else {
      ReadLabels(text, heading);
    }
  }

  Table table(source, nameLine);
  std::optional<Fault> fault = table.Read();
  for (int line = table.NextLine(); line <= source.LineCount() && !fault; ++line) {
    const std::string_view text = source.Line(line);
    ReadLabels(text, heading);
  }

  // A table that was cut out of a listing is titled by its file.
  if (!opened && heading.Station.Number == 0) heading.Station.Name = CutTitle(source.Name());
  SourceSounding sounding{
      .Heading = std::move(heading), .Levels = std::move(table.Levels), .Refused = table.Refused};
  if (table.LostLastRow) sounding.Notes.push_back("The last row is cut off and was left out.");
  FillRecord(std::move(sounding), source.Name(), context, into);
  if (fault) return fault;
  into.DataFormat = kWyomingTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
