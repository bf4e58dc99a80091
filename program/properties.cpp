#include "program/properties.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "analysis/index_table.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "program/edit_commands.h"

namespace vexa {
namespace {

std::string Time(const ObservationTime& time) {
  if (!time.Known()) return "not known";
  return TimeText(time) + " UTC";
}

std::string Position(const SoundingRecord& record) {
  if (record.LatHemi.empty() || record.LonHemi.empty()) return "not known";
  return Mask(std::abs(record.LatSigned), "#0.0000") + (record.LatSigned < 0 ? " S  " : " N  ") +
         Mask(std::abs(record.LonSigned), "##0.0000") + (record.LonSigned < 0 ? " W" : " E");
}

std::string Elevation(const SoundingRecord& record) {
  if (record.ElevUnknown) return "not known";
  return Shortest(record.ElevM) + " m, " + Mask(record.ElevFt, "####0") + " ft";
}

std::string Span(const Levels<double>& values, std::string_view unit) {
  if (values.Empty()) return "none";
  return Shortest(values.Count()) + ", " + Shortest(values(1)) + " to " + Shortest(values.Top()) +
         ' ' + std::string(unit);
}

}  // namespace

std::vector<std::pair<std::string, std::string>> PropertiesOf(const Program& program) {
  const SoundingRecord& record = program.Current.Record;
  const std::filesystem::path path = program.Current.FilePath();
  const std::optional<FileStamp> onDisk = StampOf(path);
  const auto& dewpts = record.Dewpt.Values();
  return {
      {"File", program.Current.FileName},
      {"Folder", TextFromPath(program.Current.DataFolder)},
      {"Size", !onDisk ? "not saved" : Shortest(static_cast<double>(onDisk->Size)) + " bytes"},
      {"Data format", record.DataFormat},
      {"Station", record.StationTitle},
      {"Station number", record.WmoNumber == 0 ? "not known" : Mask(record.WmoNumber, "00000")},
      {"Time", Time(record.Time)},
      {"Position", Position(record)},
      {"Elevation", Elevation(record)},
      {"Temperature levels", Span(record.Press, analysis::PressureWord(program.Set.Pressure))},
      {"Without dew point", Shortest(static_cast<int>(std::ranges::count_if(dewpts, IsMissing)))},
      {"Wind levels", Span(record.WindHgt, "m")},
      {"Cloud layers", Shortest(record.NumCloudLayers())},
      {"Changed", program.Doc.IsAltered() ? "yes, not saved" : "no"},
  };
}

}  // namespace vexa
