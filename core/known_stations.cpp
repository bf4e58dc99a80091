#include "core/known_stations.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/files.h"
#include "core/folders.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/station_file.h"

namespace vexa {
namespace {

namespace fs = std::filesystem;

// Stations of a file without faults, by its lines: to read all of it takes a hundred times as long.
class StationLines {
 public:
  explicit StationLines(fs::path file) : file_(std::move(file)) {}

  std::optional<Station> OfNumber(int number) const {
    const std::string begin = Mask(number, "00000") + ',';
    return Only([&begin](std::string_view line) { return line.starts_with(begin); });
  }
  std::optional<Station> OfIdent(std::string_view ident) const {
    const std::string field = ",\"" + std::string(ident) + "\",";
    return Only([&field](std::string_view line) {
      const std::size_t comma = line.find(',');
      return comma != line.npos && line.substr(comma).starts_with(field);
    });
  }

 private:
  // The station on the only line of which this is true.
  template <class Is>
  std::optional<Station> Only(const Is& is) const {
    const MappedFile text(file_);
    std::string_view rest = text.Bytes(), found;
    while (!rest.empty()) {
      const std::string_view line = rest.substr(0, rest.find('\n'));
      rest.remove_prefix(std::min(rest.size(), line.size() + 1));
      if (line.empty() || line.front() < '0' || line.front() > '9' || !is(line)) continue;
      if (!found.empty()) return std::nullopt;
      found = line;
    }
    if (found.empty()) return std::nullopt;
    const StationReading reading = ReadStations(found, kStationFileName);
    if (reading.List.Count() != 1) return std::nullopt;
    return reading.List.All().front();
  }

  fs::path file_;
};

}  // namespace

bool IsAsShipped(const fs::path& file, const fs::path& programFolder) {
  const MappedFile own(file), shipped(ShippedFile(programFolder, kStationFileName));
  return !own.Bytes().empty() && own.Bytes() == shipped.Bytes();
}

StationList KnownStations(const fs::path& root, const fs::path& programFolder) {
  const fs::path own = root / kStationFileName;
  const fs::path shipped = ShippedFile(programFolder, kStationFileName);
  const auto read = [own, shipped]() -> StationList {
    Outcome<std::string> text = ReadFile(own);
    if (!text) text = ReadFile(shipped);
    if (!text) return {};
    StationList list = std::move(ReadStations(text.Value(), kStationFileName).List);
    return NeedsConversion(list) ? ConvertStations(list) : list;
  };
  if (IsThere(own) && !IsAsShipped(own, programFolder)) return StationList::ReadLater(read);
  const StationLines lines(shipped);
  return StationList::ReadLater(
      read, {.OfNumber = [lines](int number) { return lines.OfNumber(number); },
             .OfIdent = [lines](std::string_view ident) { return lines.OfIdent(ident); }});
}

}  // namespace vexa
