#include "program/fetch_work.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <vector>

#include "core/error_report.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/letter_case.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/raw_file.h"
#include "sounding/sounding_source.h"

namespace vexa {

namespace fs = std::filesystem;

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
bool IsOfStation(int number, std::string_view letters, const download::Request& wanted) {
  if (number > 0 && wanted.Number > 0) return number == wanted.Number;
  const auto bare = [](std::string_view text) { return text.size() == 4 ? text.substr(1) : text; };
  return letters.empty() || wanted.Letters.empty() || SameText(bare(letters), bare(wanted.Letters));
}

bool IsNamed(const ingest::SourceEntry& entry, const download::Request& wanted) {
  const bool isAny = wanted.Number == 0 && wanted.Letters.empty();
  const bool byNumber = wanted.Number > 0 && entry.Station.Number > 0;
  const bool byLetters = !wanted.Letters.empty() && !entry.Station.Letters.empty();
  return (isAny || byNumber || byLetters) &&
         IsOfStation(entry.Station.Number, entry.Station.Letters, wanted);
}

bool AreOfOneStation(const std::vector<ingest::SourceEntry>& entries) {
  return std::ranges::all_of(entries, [&entries](const ingest::SourceEntry& entry) {
    const ingest::StationName& first = entries.front().Station;
    return entry.Station.Number == first.Number && entry.Station.Letters == first.Letters;
  });
}

Fault Other(const std::string& what) {
  return Fault{kFaultEndOfFile, "AskedSounding", "the server sent " + what};
}

Outcome<LoadedSounding> LoadOf(SoundingSource& source, int index, const LoadPolicy& policy) {
  Loading loading = source.Load(index, policy);
  if (loading.Failed) return *std::move(loading.Failed);
  return *std::move(loading.Sounding);
}

// writtenOn  the day of messages that state no month; none: their time stays unknown
Outcome<LoadedSounding> Pick(const std::string& bytes, const download::Request& request,
                             const std::optional<std::chrono::sys_days>& writtenOn,
                             const LoadPolicy& policy) {
  Outcome<SoundingSource> opened = SoundingSource::Open("answer", bytes);
  if (!opened) return opened.Error();
  SoundingSource& source = opened.Value();
  if (writtenOn) source.SetWrittenOn(writtenOn);
  const std::vector<ingest::SourceEntry> entries = source.List();
  if (entries.size() > 1) {
    const bool isOneStation = AreOfOneStation(entries);
    const auto asked = std::ranges::find_if(entries, [&](const ingest::SourceEntry& entry) {
      const bool isOfStation =
          isOneStation ? IsOfStation(entry.Station.Number, entry.Station.Letters, request)
                       : IsNamed(entry, request);
      return isOfStation && IsOfHour(entry.Time, request.Time);
    });
    if (asked != entries.end()) {
      return LoadOf(source, static_cast<int>(asked - entries.begin()), policy);
    }
    return Other(Shortest(static_cast<int>(entries.size())) +
                 " soundings, none of them of this station and hour: " + entries.front().Title);
  }
  Outcome<LoadedSounding> only = LoadOf(source, 0, policy);
  if (!only) return only;
  const SoundingRecord& record = only.Value().Record;
  const std::string letters = entries.empty() ? "" : entries.front().Station.Letters;
  if (!IsOfStation(record.WmoNumber, letters, request)) {
    return Other("another station: " + record.StationTitle);
  }
  if (!IsOfHour(record.Time, request.Time)) return Other("another hour: " + record.StationTitle);
  return only;
}

std::optional<std::chrono::sys_days> DayOf(const download::Request& request) {
  if (!request.Time.Known()) return std::nullopt;
  return std::chrono::floor<std::chrono::days>(MinuteOf(request.Time));
}

}  // namespace

Outcome<download::SourceList> LoadSourcesFile(const fs::path& path) {
  const Outcome<std::string> text = ReadFile(path);
  if (!text) return text.Error();
  return download::ReadSources(text.Value(), TextFromPath(path.filename()));
}

Outcome<download::SourceList> LoadSources(const fs::path& root, const fs::path& programFolder) {
  const fs::path path = root / download::kSourcesFileName;
  if (!root.empty() && IsThere(path)) return LoadSourcesFile(path);
  const fs::path shipped = ShippedFile(programFolder, download::kSourcesFileName);
  if (!shipped.empty()) return LoadSourcesFile(shipped);
  return Fault{kFaultFileNotFound, "LoadSources",
               TextFromPath(path) + ": not found, nor is it among the program's files",
               std::string(download::kSourcesFileName)};
}

download::Request Completed(const download::Request& request, const StationList* stations) {
  download::Request whole = request;
  if (whole.Number == 0 && stations != nullptr) {
    const Station* station = StationOfLetters(*stations, whole.Letters);
    if (station != nullptr) whole.Number = station->Number;
  }
  return whole;
}

Outcome<LoadedSounding> AskedSounding(const std::string& bytes, const download::Request& request,
                                      const LoadPolicy& policy) {
  return Pick(bytes, request, DayOf(request), policy);
}

Outcome<LoadedSounding> JudgeSounding(const std::string& bytes, const download::Source& source,
                                      const download::Request& request, download::Instant now,
                                      const LoadPolicy& policy) {
  constexpr auto kCurrent = std::chrono::hours(48);
  const bool isTold = NeedsTime(source) || !request.Time.Known() ||
                      std::chrono::abs(MinuteOf(request.Time) - now) <= kCurrent;
  if (isTold) return AskedSounding(bytes, request, policy);
  // Without the day that was asked for, does the answer know its time?
  Outcome<LoadedSounding> undated = Pick(bytes, request, std::nullopt, policy);
  if (!undated || undated.Value().Record.Time.Known()) return undated;
  return Other("current messages without month and year; the hour asked for is not current");
}

std::string SavedText(const SavedSounding& saved) {
  return saved.Index == 0
             ? saved.File
             : saved.File + "  (sounding " + Shortest(saved.Index + 1) + " of the file)";
}

download::Instant SystemNow() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

// Of several stations in a row one answer may serve all, where the address names none.
download::FetchResult FetchWork::Ask(const download::Source& source,
                                     const download::Request& request,
                                     const download::Request& judged) {
  if (request.Time.Known() && !HasHour(source, request.Time.Hour)) {
    return {.End = download::FetchEnd::Refused,
            .Failed =
                Fault{kFaultInvalidValue, "Fetch",
                      "the source has the hours " + std::string(Trim(source.Hours)) + " UTC only"}};
  }
  const download::Instant now = SystemNow();
  const download::Judge judge = [&](const std::string& bytes,
                                    const download::Request&) -> std::optional<Fault> {
    judged_.reset();
    Outcome<LoadedSounding> found =
        JudgeSounding(bytes, source, judged, now, {.Stations = stations_});
    if (!found) return found.Error();
    judged_ = {.Body = bytes, .Wanted = judged, .Sounding = std::move(found.Value())};
    return std::nullopt;
  };
  const Outcome<std::string> address = AddressOf(source, request);
  if (!NeedsStation(source) && address && address.Value() == lastAddress_) {
    download::FetchResult again = last_;
    again.Failed = judge(again.Got.Body, request);
    again.End = again.Failed ? download::FetchEnd::Refused : download::FetchEnd::Done;
    return again;
  }
  download::FetchResult result = FetchSounding(source, request, fetcher_, judge, cache_, now);
  if (!NeedsStation(source) && !result.Got.Body.empty()) {
    last_ = result;
    lastAddress_ = address ? address.Value() : std::string();
  }
  return result;
}

download::FetchResult FetchWork::Fetch(const download::Source& source,
                                       const download::Request& request) {
  // A source may want the number of a station that was named by its letters, or the other way.
  download::Request whole = Completed(request, stations_);
  // Letters of the list need not be those of the answer.
  const download::Request judged = whole;
  if (whole.Letters.empty() && stations_ != nullptr) {
    const Station* station = stations_->Find(whole.Number);
    if (station != nullptr) whole.Letters = station->Ident;
  }
  source_ = &source;
  download::FetchResult result = Ask(source, whole, judged);
  if (result.Failed && watch_.Failed) watch_.Failed(source, request, *result.Failed);
  return result;
}

namespace {

// Another name for a file that keeps what it has: "72357_1999050400-2.txt", or one that holds these
// bytes already.
fs::path BesideOf(const fs::path& path, const std::string& bytes) {
  constexpr int kMostNames = 1000;
  for (int i = 2; i < kMostNames; ++i) {
    fs::path name = path.parent_path() / path.stem();
    name += "-" + Shortest(i);
    name += path.extension();
    const Outcome<std::string> there = ReadFile(name);
    if (there ? there.Value() == bytes : there.Error().Number == kFaultFileNotFound) return name;
  }
  return path;
}

}  // namespace

Outcome<LoadedSounding> FetchWork::Decoded(const std::string& body,
                                           const download::Request& request) {
  const download::Request whole = Completed(request, stations_);
  if (judged_ && judged_->Wanted == whole && judged_->Body == body) return judged_->Sounding;
  return AskedSounding(body, whole, {.Stations = stations_});
}

Outcome<SavedSounding> FetchWork::SaveAnswer(const download::BatchPlan& plan,
                                             const download::Request& request,
                                             const std::string& body) {
  const bool isNative = plan.Format == download::BatchFormat::Native;
  const fs::path folder = PathFromText(plan.Folder);
  fs::path path = folder / PathFromText(FileStem(request) + (isNative ? ".RAW" : ".txt"));
  const auto notSaved = [&path](Fault fault) {
    const std::string name = TextFromPath(path);
    std::string reason =
        fault.Detail.empty() ? FaultMessage(CurrentSounding{}, fault) : fault.Detail;
    if (!reason.starts_with(name)) reason.insert(0, name + ": ");
    fault.Detail = "not saved: " + reason;
    return fault;
  };
  const Outcome<LoadedSounding> decoded = Decoded(body, request);
  if (!decoded) return notSaved(decoded.Error());
  const LoadedSounding& sounding = decoded.Value();
  if (isNative && sounding.Record.NumTempLevels() == 0) {
    return notSaved({kFaultTooFewLevels, "Save", "winds alone cannot be kept in a native file"});
  }
  const std::string bytes = isNative ? WriteRaw(sounding.Record) : body;
  if (!folder.empty()) MakeFolders(folder);
  const Outcome<std::string> there = ReadFile(path);
  const bool isOther = IsThere(path) && !(there && there.Value() == bytes);
  if (isOther && !watch_.MayReplace) path = BesideOf(path, bytes);
  if (isOther && watch_.MayReplace && !watch_.MayReplace(path)) {
    return notSaved({kFaultFileExists, "Save",
                     TextFromPath(path) + ": there is another file already",
                     TextFromPath(path.filename())});
  }
  if (auto fault = SaveFile(path, bytes)) return notSaved(*std::move(fault));
  return SavedSounding{.File = TextFromPath(path),
                       .Index = isNative ? 0 : sounding.From.Index,
                       .Finding = sounding.Finding};
}

Outcome<std::string> FetchWork::Save(const download::BatchPlan& plan,
                                     const download::Request& request,
                                     const download::FetchResult& result) {
  const Outcome<SavedSounding> saved = SaveAnswer(plan, request, result.Got.Body);
  if (!saved) {
    if (watch_.Failed)
      watch_.Failed(source_ ? *source_ : download::Source{}, request, saved.Error());
    return saved.Error();
  }
  if (watch_.Saved) watch_.Saved(saved.Value());
  return saved.Value().File;
}

bool FetchWork::Continue(int done, int total, const download::Request& next) {
  return !watch_.Continue || watch_.Continue(done, total, next);
}

}  // namespace vexa
