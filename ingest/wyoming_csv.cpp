#include "ingest/wyoming_csv.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/source_table.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kWyomingCsvTag = "WYOMING";
constexpr std::string_view kHeading = "time,longitude,latitude,pressure_hPa";

int FindHeading(const SourceText& source) {
  constexpr int kMostHeadingLines = 20;
  for (int line = 1; line <= std::min(source.LineCount(), kMostHeadingLines); ++line) {
    if (Trim(source.Line(line)).starts_with(kHeading)) return line;
  }
  return 0;
}

// The rows say when and where, but not which station. A file that was downloaded here has its
// number, "72357_1999050400.txt"; of any other, "csv_OUN_1999050400.csv", the name must do.
StationName StationOf(std::string_view fileName) {
  constexpr std::size_t kFigures = 5;
  const int number = ParseWhole(fileName.substr(0, kFigures)).value_or(0);
  if (number > 0 && fileName.find('_') == kFigures) return {.Number = number};
  return {.Name = std::string(fileName.substr(0, fileName.rfind('.')))};
}

}  // namespace

bool IsWyomingCsv(const SourceText& source) {
  return FindHeading(source) != 0;
}

std::vector<int> WyomingCsvBeginnings(const SourceText& source) {
  std::vector<int> beginnings;
  for (int line = 1; line <= source.LineCount(); ++line) {
    if (Trim(source.Line(line)).starts_with(kHeading)) beginnings.push_back(line);
  }
  return beginnings;
}

std::optional<Fault> DecodeWyomingCsv(const SourceText& source, LoadContext& context,
                                      SoundingRecord& into) {
  const std::optional<TableLayout> layout = LayoutAt(source, FindHeading(source));
  if (!layout) return Fault{kFaultEndOfFile, "DecodeWyomingCsv", source.Name() + ": no rows"};
  SourceSounding sounding;
  if (std::optional<Fault> fault =
          ReadTable(source, *layout, source.LineCount() + 1, "DecodeWyomingCsv", sounding)) {
    return fault;
  }
  const std::vector<std::string_view> first = layout->Fields(source.Line(layout->FirstRow));
  sounding.Heading.Station = StationOf(source.Name());
  sounding.Heading.Time = ParseIsoTime(first[0]).value_or(ObservationTime{});
  constexpr double kUnknown = -99.99;
  const std::optional<double> lon = ParseNumber(first[1]), lat = ParseNumber(first[2]);
  if (lon && lat && (*lon != kUnknown || *lat != kUnknown)) {
    sounding.Heading.Lon = lon;
    sounding.Heading.Lat = lat;
  }
  FillRecord(std::move(sounding), source.Name(), context, into);
  into.DataFormat = kWyomingCsvTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
