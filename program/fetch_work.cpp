#include "program/fetch_work.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <vector>

#include "config/row_builder.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/numbers.h"
#include "core/raw_file.h"
#include "ingest/decoder.h"

namespace vexa {

namespace fs = std::filesystem;
using namespace download;

namespace {

std::chrono::sys_time<std::chrono::minutes> MinuteOf(const ObservationTime& time) {
  const std::chrono::year_month_day day{std::chrono::year(time.Year),
                                        std::chrono::month(static_cast<unsigned>(time.Month)),
                                        std::chrono::day(static_cast<unsigned>(time.Day))};
  return std::chrono::sys_days(day) + std::chrono::hours(time.Hour) +
         std::chrono::minutes(time.Minute);
}

// True for the hour itself, and for the time of a release, which has minutes and lies about an hour
// ahead of the hour that the sounding is for.
bool IsOfHour(const ObservationTime& found, const ObservationTime& wanted) {
  if (!found.Known() || !wanted.Known()) return true;
  const auto apart = std::chrono::abs(MinuteOf(found) - MinuteOf(wanted));
  const bool isSameHour = found.Year == wanted.Year && found.Month == wanted.Month &&
                          found.Day == wanted.Day && found.Hour == wanted.Hour;
  return isSameHour || (found.Minute != 0 && apart <= std::chrono::hours(2));
}

// By number where both are known, else by letters, of which the first may stand for the region:
// "OUN" is "KOUN".
bool IsOfStation(int number, std::string_view letters, const Request& wanted) {
  if (number > 0 && wanted.Number > 0) return number == wanted.Number;
  const auto bare = [](std::string_view text) { return text.size() == 4 ? text.substr(1) : text; };
  return letters.empty() || wanted.Letters.empty() || SameText(bare(letters), bare(wanted.Letters));
}

}  // namespace

Outcome<SourceList> LoadSourcesFile(const fs::path& path) {
  const Outcome<std::string> text = ReadFile(path);
  if (!text) return text.Error();
  return ReadSources(text.Value(), TextFromPath(path.filename()));
}

Outcome<SourceList> LoadSources(const fs::path& root, const fs::path& programFolder) {
  const fs::path path = root / kSourcesFileName;
  std::error_code ignored;
  if (!root.empty() && fs::exists(path, ignored)) return LoadSourcesFile(path);
  return LoadSourcesFile(ShippedFile(programFolder, kSourcesFileName));
}

std::optional<Fault> JudgeSounding(const std::string& bytes, const Request& request) {
  SilentInteraction quiet;
  ingest::LoadContext context{.Ask = &quiet};
  const Outcome<SourceText> source = ingest::ReadSource("answer", bytes, context.Notes);
  if (!source) return source.Error();
  const auto other = [](const std::string& what) {
    return Fault{kFaultEndOfFile, "JudgeSounding", "the server sent " + what};
  };
  // Of many soundings one must be what was asked for; choosing it is left to the loading.
  const std::vector<ingest::SourceEntry> entries = ingest::ListSoundings(source.Value());
  if (entries.size() > 1) {
    const bool isThere = std::ranges::any_of(entries, [&request](const ingest::SourceEntry& entry) {
      return IsOfStation(entry.Station.Number, entry.Station.Letters, request) &&
             IsOfHour(entry.Time, request.Time);
    });
    if (isThere) return std::nullopt;
    return other(Shortest(static_cast<int>(entries.size())) +
                 " soundings, none of them of this station and hour: " + entries.front().Title);
  }
  SoundingRecord record;
  if (std::optional<Fault> fault = ingest::DecodeSounding(source.Value(), context, record)) {
    return fault;
  }
  const std::string letters = entries.empty() ? "" : entries.front().Station.Letters;
  if (!IsOfStation(record.WmoNumber, letters, request)) {
    return other("another station: " + record.StationTitle);
  }
  if (IsOfHour(record.Time, request.Time)) return std::nullopt;
  return other("another hour: " + record.StationTitle);
}

Instant SystemNow() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

FetchResult FetchWork::Fetch(const Source& source, const Request& request) {
  // A source may want the number of a station that was named by its letters.
  Request whole = request;
  if (whole.Number == 0 && stations_ != nullptr) {
    const Station* station = StationOfLetters(*stations_, whole.Letters);
    if (station != nullptr) whole.Number = station->Number;
  }
  FetchResult result = FetchSounding(source, whole, fetcher_, JudgeSounding, cache_, SystemNow());
  if (result.Failed && watch_.Failed) watch_.Failed(source, request, *result.Failed);
  return result;
}

namespace {

// What a native file of an answer holds.
Outcome<std::string> NativeOf(const std::string& body, const StationList* stations) {
  SilentInteraction quiet;
  ingest::LoadContext context{.Ask = &quiet, .Stations = stations};
  const Outcome<SourceText> source = ingest::ReadSource("answer", body, context.Notes);
  if (!source) return source.Error();
  SoundingRecord record;
  if (std::optional<Fault> fault = ingest::DecodeSounding(source.Value(), context, record)) {
    return *fault;
  }
  if (record.NumTempLevels() == 0) {
    return Fault{kFaultTooFewLevels, "NativeOf", "winds alone cannot be kept in a native file"};
  }
  return WriteRaw(record);
}

}  // namespace

Outcome<std::string> FetchWork::Save(const BatchPlan& plan, const Request& request,
                                     const FetchResult& result) {
  const bool isNative = plan.Format == BatchFormat::Native;
  const fs::path folder = PathFromText(plan.Folder);
  const fs::path path = folder / PathFromText(FileStem(request) + (isNative ? ".RAW" : ".txt"));
  Outcome<std::string> bytes =
      isNative ? NativeOf(result.Got.Body, stations_) : Outcome<std::string>(result.Got.Body);
  std::optional<Fault> fault;
  if (bytes) {
    std::error_code ignored;  // saving tells of it
    if (!folder.empty()) fs::create_directories(folder, ignored);
    fault = SaveFile(path, bytes.Value());
  } else {
    fault = bytes.Error();
  }
  if (fault) {
    fault->Detail =
        TextFromPath(path) + " was not saved: " +
        (fault->Detail.empty() ? FaultMessage(CurrentSounding{}, *fault) : fault->Detail);
    if (watch_.Failed) watch_.Failed({.Name = result.Got.Address}, request, *fault);
    return *fault;
  }
  if (watch_.Saved) watch_.Saved(TextFromPath(path));
  return TextFromPath(path);
}

bool FetchWork::Continue(int done, int total, const Request& next) {
  return !watch_.Continue || watch_.Continue(done, total, next);
}

}  // namespace vexa
