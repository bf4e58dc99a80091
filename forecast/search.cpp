#include "forecast/search.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "analysis/analysis_settings.h"
#include "core/files.h"
#include "core/great_circle.h"
#include "core/numbers.h"
#include "core/record_text.h"
#include "sounding/sounding_walk.h"

namespace vexa::forecast {
namespace {

constexpr std::string_view kSystemHeading = "This is a VEXA system file -- Do Not Alter.";
constexpr std::string_view kTag = "LISTING 1";
constexpr int kNoSounding = -1;

std::int64_t WrittenAt(const FileStamp& stamp) {
  return static_cast<std::int64_t>(stamp.Written.time_since_epoch().count());
}

Header HeaderOf(const SoundingRecord& sounding, int index) {
  return {.Index = index,
          .Title = sounding.StationTitle,
          .WmoNumber = sounding.WmoNumber,
          .Time = sounding.Time,
          .Lat = sounding.LatSigned,
          .Lon = sounding.LonSigned,
          .HasPosition = !sounding.LatHemi.empty() && !sounding.LonHemi.empty(),
          .TempLevels = sounding.NumTempLevels()};
}

void WriteHeader(const Header& header, RecordWriter& writer) {
  writer.Number(header.Index)
      .Text(header.Title)
      .Number(header.WmoNumber)
      .Number(header.Time.Year)
      .Number(header.Time.Month)
      .Number(header.Time.Day)
      .Number(header.Time.Hour)
      .Number(header.Time.Minute)
      .Number(header.Lat)
      .Number(header.Lon)
      .Number(header.HasPosition ? 1 : 0)
      .Number(header.TempLevels);
}

// The fields of one sounding, in the order of WriteHeader; none when one of them is damaged.
std::optional<Header> ReadHeader(RecordReader& reader) {
  Header header;
  bool isWhole = true;
  const auto number = [&] {
    const Outcome<double> value = reader.Number("header");
    isWhole = isWhole && value.Ok();
    return value ? value.Value() : 0;
  };
  const auto whole = [&] { return ToWhole(number()); };
  header.Index = whole();
  if (const auto title = reader.Text("title")) {
    header.Title = title.Value();
  } else {
    isWhole = false;
  }
  header.WmoNumber = whole();
  header.Time.Year = whole();
  header.Time.Month = whole();
  header.Time.Day = whole();
  header.Time.Hour = whole();
  header.Time.Minute = whole();
  header.Lat = number();
  header.Lon = number();
  header.HasPosition = whole() != 0;
  header.TempLevels = whole();
  if (!isWhole) return std::nullopt;
  return header;
}

std::int64_t Whole64(const std::string& text) {
  std::int64_t value = 0;
  const bool isNegative = text.starts_with('-');
  for (const char c : text.substr(isNegative ? 1 : 0)) {
    if (c < '0' || c > '9') return 0;
    value = value * 10 + (c - '0');
  }
  return isNegative ? -value : value;
}

// Every sounding of a file by its header; empty when the user stopped.
std::optional<std::vector<Header>> HeadersOf(const std::filesystem::path& file,
                                             const LoadPolicy& policy, Progress& progress) {
  std::vector<Header> headers;
  SoundingWalk walk(file);
  for (int i = 0;; ++i) {
    constexpr int kOften = 50;  // soundings of one file between two looks at the user
    if (i % kOften == kOften - 1 && !progress.Begin("Reading " + TextFromPath(file.filename()))) {
      return std::nullopt;
    }
    const std::optional<Loading> loading = walk.Next(policy);
    if (!loading) return headers;
    if (loading->Sounding) headers.push_back(HeaderOf(loading->Sounding->Record, i));
  }
}

bool IsAround(const SoundingRecord& main, const Header& header, double radiusKm) {
  if (!header.HasPosition || header.TempLevels < 2) return false;
  if (main.Time.Known() && header.Time.Known() &&
      std::fabs(HoursBetween(main.Time, header.Time)) > kHoursApart) {
    return false;
  }
  return DistanceKm(main.LatSigned, main.LonSigned, header.Lat, header.Lon) <= radiusKm;
}

}  // namespace

Catalogue::Catalogue(std::string_view text) {
  RecordReader reader(text, kFileName);
  const auto isNext = [&](std::string_view expected) {
    const Outcome<std::string> field = reader.Text("heading");
    return field && field.Value() == expected;
  };
  if (!isNext(kSystemHeading) || !isNext(kTag)) return;
  while (!reader.AtEnd()) {
    const Outcome<std::string> file = reader.Text("file");
    const Outcome<std::string> size = reader.Text("size");
    const Outcome<std::string> written = reader.Text("time");
    const std::optional<Header> header = ReadHeader(reader);
    if (!file || !size || !written || !header) return;
    Kept& kept = files_[file.Value()];
    kept.Size = static_cast<std::uintmax_t>(Whole64(size.Value()));
    kept.Written = Whole64(written.Value());
    if (header->Index != kNoSounding) kept.Headers.push_back(*header);
  }
}

std::string Catalogue::Text() const {
  RecordWriter writer;
  writer.Text(kSystemHeading).EndRecord();
  writer.Text(kTag).EndRecord();
  const auto add = [&](const std::string& file, const Kept& kept, const Header& header) {
    writer.Text(file).Text(std::to_string(kept.Size)).Text(std::to_string(kept.Written));
    WriteHeader(header, writer);
    writer.EndRecord();
  };
  for (const auto& [file, kept] : files_) {
    for (const Header& header : kept.Headers) add(file, kept, header);
    if (kept.Headers.empty()) add(file, kept, {.Index = kNoSounding});
  }
  return writer.Take();
}

bool Catalogue::Update(const std::vector<std::filesystem::path>& files, const LoadPolicy& policy,
                       Progress progress) {
  filesRead_ = 0;
  double done = 0;
  for (const std::filesystem::path& path : files) {
    const std::string name = TextFromPath(path);
    const std::optional<FileStamp> stamp = StampOf(path);
    done += 1.0 / static_cast<double>(files.size());
    if (!stamp) {
      files_.erase(name);
      continue;
    }
    const auto known = files_.find(name);
    if (known != files_.end() && known->second.Size == stamp->Size &&
        known->second.Written == WrittenAt(*stamp)) {
      continue;
    }
    if (!progress.Begin("Reading " + TextFromPath(path.filename()), done)) return false;
    ++filesRead_;
    std::optional<std::vector<Header>> headers = HeadersOf(path, policy, progress);
    if (!headers) return false;
    files_[name] = {stamp->Size, WrittenAt(*stamp), std::move(*headers)};
  }
  return true;
}

const std::vector<Header>& Catalogue::Of(const std::filesystem::path& file) const {
  static const std::vector<Header> kNone;
  const auto known = files_.find(TextFromPath(file));
  return known == files_.end() ? kNone : known->second.Headers;
}

SearchResult SearchAround(const SoundingRecord& main, double radiusKm,
                          const std::vector<std::filesystem::path>& files, Catalogue& catalogue,
                          const LoadPolicy& policy, const AnalysisSettings& set,
                          Progress progress) {
  SearchResult result;
  if (!catalogue.Update(files, policy, progress)) {
    result.Stopped = true;
    return result;
  }
  for (const std::filesystem::path& file : files) {
    std::vector<int> chosen;
    for (const Header& header : catalogue.Of(file)) {
      if (IsAround(main, header, radiusKm)) chosen.push_back(header.Index);
    }
    if (chosen.empty()) continue;
    const std::string name = TextFromPath(file);
    if (!progress.Begin("Loading " + TextFromPath(file.filename()))) {
      result.Stopped = true;
      return result;
    }
    SoundingWalk walk(file);
    for (const int index : chosen) {
      Loading loading = walk.Load(index, policy);
      if (loading.Failed) result.Failed.emplace_back(name, *loading.Failed);
      if (walk.Text() == nullptr) break;  // the file cannot be read
      if (!loading.Sounding) continue;
      result.Found.push_back(ProfileOf(std::move(loading.Sounding->Record), name, set));
    }
  }
  return result;
}

}  // namespace vexa::forecast
