#include "ingest/frd.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/source_table.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kFrdTag = "DROPSONDE";
constexpr int kMostFrdHeading = 100;
constexpr std::size_t kFewestNames = 4;

// The line of names; 0 when there is none. Its rows are counted and carry the seconds.
int NamesLine(const SourceText& source) {
  for (int line = 1; line <= std::min(source.LineCount(), kMostFrdHeading); ++line) {
    const std::string_view count = FirstWord(source.Line(line));
    if (count != "IX" && !StartsWithNoCase(count, "index")) continue;
    if (Tokens(source.Line(line)).size() < kFewestNames) continue;
    if (FindNoCase(source.Line(line), "(s)") != std::string_view::npos && LayoutAt(source, line)) {
      return line;
    }
  }
  return 0;
}

// What stands behind "Label:" up to the next label; empty when the line has no such label.
std::string_view BehindColon(std::string_view line, std::string_view label) {
  const std::size_t at = FindNoCase(line, label);
  const std::size_t colon = line.find(':', at == line.npos ? line.size() : at);
  if (colon == std::string_view::npos) return {};
  const std::string_view value = line.substr(colon + 1);
  for (const std::string_view word : Tokens(value)) {
    if (!word.ends_with(':')) continue;
    return Trim(value.substr(0, static_cast<std::size_t>(word.data() - value.data())));
  }
  return Trim(value);
}

// "20050829", "050829", "2005/08/29".
std::optional<ObservationTime> DateIn(std::string_view text) {
  std::vector<int> parts = WholeNumbersIn(text);
  constexpr int kLastCompact = 999999, kLastYearOf2000s = 49;
  if (parts.size() == 1 && parts[0] > 0) {
    const int date = parts[0];
    const int year = date / 10000;
    const int century = date > kLastCompact ? 0 : year > kLastYearOf2000s ? 1900 : 2000;
    parts = {year + century, date / 100 % 100, date % 100};
  }
  if (parts.size() < 3) return std::nullopt;
  return MakeTime(parts[0], parts[1], parts[2], 0);
}

// "163502", "1635" or "16:35:02" on that day; the day alone when it is none of these.
void SetHour(std::string_view text, ObservationTime& time) {
  std::vector<int> parts = WholeNumbersIn(text);
  constexpr std::size_t kWithSeconds = 6;
  if (parts.size() == 1) {
    const std::size_t figures = Trim(text).find_first_not_of("0123456789");
    const bool hasSeconds = std::min(figures, Trim(text).size()) >= kWithSeconds;
    const int hhmm = hasSeconds ? parts[0] / 100 : parts[0];
    parts = {hhmm / 100, hhmm % 100};
  }
  if (parts.size() < 2) return;
  time = MakeTime(time.Year, time.Month, time.Day, parts[0], parts[1]).value_or(time);
}

SourceHeading ReadHeading(const SourceText& source, int names) {
  SourceHeading heading;
  std::string_view hour;
  heading.Station.Name = "Dropsonde";
  for (int line = 1; line < names; ++line) {
    const std::string_view text = source.Line(line);
    if (const std::string_view date = BehindColon(text, "date"); !date.empty()) {
      heading.Time = DateIn(date).value_or(heading.Time);
    }
    if (const std::string_view time = BehindColon(text, "time"); !time.empty() && hour.empty()) {
      hour = time;
    }
    const std::string_view lat = BehindColon(text, "lat"), lon = BehindColon(text, "lon");
    if (!lat.empty() && !heading.Lat) heading.Lat = DegreesIn(lat);
    if (!lon.empty() && !heading.Lon) heading.Lon = DegreesIn(lon);
    if (const std::string_view mission = BehindColon(text, "mission"); !mission.empty()) {
      heading.Station.Name = "Dropsonde " + std::string(mission);
    }
  }
  if (heading.Time.Known()) SetHour(hour, heading.Time);
  return heading;
}

}  // namespace

bool IsFrd(const SourceText& source) {
  return NamesLine(source) != 0;
}

std::optional<Fault> DecodeFrd(const SourceText& source, LoadContext& context,
                               SoundingRecord& into) {
  const int names = NamesLine(source);
  if (names == 0) return Fault{kFaultFormat, "DecodeFrd", source.Name() + ": no column names"};
  const TableLayout layout = LayoutAt(source, names).value_or(TableLayout{});
  SourceSounding sounding{.Heading = ReadHeading(source, names)};
  if (std::optional<Fault> fault =
          ReadTable(source, layout, source.LineCount() + 1, "DecodeFrd", sounding)) {
    return fault;
  }
  LocateByColumns(source, layout, sounding.Heading);
  KeepAscent(sounding.Levels, sounding.Notes);
  FillRecord(std::move(sounding), source.Name(), context, into);
  into.DataFormat = kFrdTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
