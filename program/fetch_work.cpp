#include "program/fetch_work.h"

#include <chrono>
#include <system_error>
#include <vector>

#include "core/files.h"
#include "core/folders.h"
#include "core/raw_file.h"
#include "ingest/decoder.h"

namespace vexa {

namespace fs = std::filesystem;
using namespace download;

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
  // Files of many soundings hold the hour somewhere; choosing it is left to the loading.
  if (ingest::ListSoundings(source.Value()).size() > 1) return std::nullopt;
  SoundingRecord record;
  if (std::optional<Fault> fault = ingest::DecodeSounding(source.Value(), context, record)) {
    return fault;
  }
  const bool isOtherHour =
      record.Time.Known() && request.Time.Known() &&
      (record.Time.Year != request.Time.Year || record.Time.Month != request.Time.Month ||
       record.Time.Day != request.Time.Day || record.Time.Hour != request.Time.Hour);
  if (!isOtherHour || record.DataFormat == "FCST") return std::nullopt;
  return Fault{kFaultEndOfFile, "JudgeSounding",
               "the server sent another hour: " + record.StationTitle};
}

Instant SystemNow() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

FetchResult FetchWork::Fetch(const Source& source, const Request& request) {
  FetchResult result = FetchSounding(source, request, fetcher_, JudgeSounding, cache_, SystemNow());
  if (result.Failed && watch_.Failed) watch_.Failed(source, request, *result.Failed);
  return result;
}

Outcome<std::string> FetchWork::Save(const BatchPlan& plan, const Request& request,
                                     const FetchResult& result) {
  const bool isNative = plan.Format == BatchFormat::Native;
  const fs::path path =
      PathFromText(plan.Folder) / PathFromText(FileStem(request) + (isNative ? ".RAW" : ".txt"));
  std::string bytes = result.Got.Body;
  if (isNative) {
    SilentInteraction quiet;
    ingest::LoadContext context{.Ask = &quiet, .Stations = stations_};
    const Outcome<SourceText> source = ingest::ReadSource("answer", bytes, context.Notes);
    if (!source) return source.Error();
    SoundingRecord record;
    if (std::optional<Fault> fault = ingest::DecodeSounding(source.Value(), context, record)) {
      return *fault;
    }
    bytes = WriteRaw(record);
  }
  if (std::optional<Fault> fault = SaveFile(path, bytes)) return *fault;
  if (watch_.Saved) watch_.Saved(TextFromPath(path));
  return TextFromPath(path);
}

bool FetchWork::Continue(int done, int total, const Request& next) {
  return !watch_.Continue || watch_.Continue(done, total, next);
}

}  // namespace vexa
