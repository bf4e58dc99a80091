#include "ingest/columns.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/numbers.h"
#include "ingest/source_table.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kColumnsTag = "COLUMNS";
constexpr int kMostColumnsHeading = 100;

// Lines such as "Station name<tab>Hill" above the table.
void ReadLabel(std::string_view line, SourceHeading& heading) {
  const std::size_t separator = line.find_first_of("\t:=");
  if (separator == std::string_view::npos) return;
  const std::string_view label = line.substr(0, separator);
  const std::string_view value = Trim(line.substr(separator + 1));
  const auto isAbout = [label](std::string_view word) {
    return FindNoCase(label, word) != std::string_view::npos;
  };
  if (isAbout("latitude") && !heading.Lat) heading.Lat = DegreesIn(value);
  if (isAbout("longitude") && !heading.Lon) heading.Lon = DegreesIn(value);
  if ((isAbout("elevation") || isAbout("height")) && !heading.Elevation) {
    heading.Elevation = DegreesIn(value);
  }
  if (isAbout("station") && heading.Station.Name.empty()) heading.Station.Name = value;
  if (isAbout("time") || isAbout("date")) {
    if (const auto time = ParseIsoTime(value)) heading.Time = *time;
  }
}

// Names a user may have meant for something are not passed over in silence.
void NoteUnread(const TableLayout& layout, std::vector<std::string>& notes) {
  constexpr std::size_t kLongest = 300;
  std::string unread;
  for (std::size_t i = 0; i < layout.Names.size(); ++i) {
    const bool isRead = std::ranges::any_of(
        layout.Plan, [i](const QuantityColumn& column) { return column.Column == i; });
    if (isRead || Trim(layout.Names[i]).empty()) continue;
    if (unread.size() > kLongest) {
      unread += " and more";
      break;
    }
    unread += (unread.empty() ? "" : ", ") + std::string(Trim(layout.Names[i]));
  }
  if (!unread.empty()) notes.push_back("Columns that are not read: " + unread + '.');
}

}  // namespace

bool IsColumns(const SourceText& source) {
  return FindLayout(source, kMostColumnsHeading).has_value();
}

std::optional<Fault> DecodeColumns(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into) {
  const std::optional<TableLayout> found = FindLayout(source, kMostColumnsHeading);
  if (!found) return Fault{kFaultFormat, "DecodeColumns", source.Name() + ": no column names"};
  const TableLayout& layout = *found;
  SourceSounding sounding;
  for (int line = 1; line < layout.NamesLine; ++line) {
    ReadLabel(source.Line(line), sounding.Heading);
  }
  if (std::optional<Fault> fault =
          ReadTable(source, layout, source.LineCount() + 1, "DecodeColumns", sounding)) {
    return fault;
  }
  LocateByColumns(source, layout, sounding.Heading);
  NoteUnread(layout, sounding.Notes);
  KeepAscent(sounding.Levels, sounding.Notes);
  const bool hasNoUnit = std::ranges::any_of(layout.Plan, [](const QuantityColumn& column) {
    return column.What == Quantity::Speed && !column.HasUnit;
  });
  if (hasNoUnit) sounding.Notes.push_back("No unit of the wind speed is stated; taken as knots.");
  FillRecord(std::move(sounding), source.Name(), context, into);
  into.DataFormat = kColumnsTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
