// `vexa-cli fetch`: soundings from the sources of VEXA.URL, one file each.
#include <QCoreApplication>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "core/error_report.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/raw_file.h"
#include "download/batch.h"
#include "download/net/http_fetcher.h"
#include "download/template_file.h"
#include "ingest/decoder.h"
#include "ingest/source_header.h"

namespace vexa::cli {
namespace {

namespace fs = std::filesystem;
using namespace vexa::download;

constexpr ArgumentRow kOptions[] = {
    {"--source", "-s", "NAME", "a source of VEXA.URL; repeated: the next is asked when one fails"},
    {"--time", "-t", "TIME", "YYYY-MM-DDTHH, UTC; repeated: one after the other"},
    {"--output", "-o", "FOLDER", "where the files go; the current folder when not given"},
    {"--raw", "", "", "save native sounding files in place of what the server sent"},
    {"--stop", "", "", "stop at the first failure"},
    {"--fresh", "", "", "don't use answers kept from before"},
    {"--sources", "", "FILE", "another file of sources than that of the program's root folder"},
    {"--list", "-l", "", "list the sources"},
};

Outcome<SourceList> LoadSources(const Arguments& arguments) {
  fs::path path = ResolveRoot(std::nullopt, ProgramFolder()) / kSourcesFileName;
  std::error_code ignored;
  if (!fs::exists(path, ignored)) path = ShippedFile(ProgramFolder(), kSourcesFileName);
  if (const std::optional<std::string> given = arguments.Value("--sources")) {
    path = PathFromText(*given);
  }
  const Outcome<std::string> text = ReadFile(path);
  if (!text) return text.Error();
  return ReadSources(text.Value(), TextFromPath(path.filename()));
}

// A sounding of another hour than the one asked for is no answer.
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

Instant Now() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

class CommandWork : public BatchWork {
 public:
  CommandWork(Console& console, bool usesCache)
      : console_(console),
        cache_(ResolveRoot(std::nullopt, ProgramFolder()) / "cache"),
        usesCache_(usesCache) {}

  FetchResult Fetch(const Source& source, const Request& request) override {
    FetchResult result = FetchSounding(source, request, fetcher_, JudgeSounding,
                                       usesCache_ ? &cache_ : nullptr, Now());
    if (result.Failed) {
      console_.Err("vexa-cli: " + source.Name + ": " + FileStem(request) + ": " +
                   result.Failed->Detail + '\n');
    }
    return result;
  }

  Outcome<std::string> Save(const BatchPlan& plan, const Request& request,
                            const FetchResult& result) override {
    std::vector<std::string> notes;
    const bool isNative = plan.Format == BatchFormat::Native;
    const fs::path path =
        PathFromText(plan.Folder) / PathFromText(FileStem(request) + (isNative ? ".RAW" : ".txt"));
    std::string bytes = result.Got.Body;
    if (isNative) {
      SilentInteraction quiet;
      ingest::LoadContext context{.Ask = &quiet, .Stations = &Stations()};
      const Outcome<SourceText> source = ingest::ReadSource("answer", bytes, context.Notes);
      if (!source) return source.Error();
      SoundingRecord record;
      if (std::optional<Fault> fault = ingest::DecodeSounding(source.Value(), context, record)) {
        return *fault;
      }
      bytes = WriteRaw(record);
    }
    if (std::optional<Fault> fault = SaveFile(path, bytes)) return *fault;
    console_.Out(TextFromPath(path) + '\n');
    return TextFromPath(path);
  }

  bool Continue(int, int, const Request&) override { return true; }

 private:
  Console& console_;
  Cache cache_;
  bool usesCache_;
  HttpFetcher fetcher_{};
};

int ListSources(const SourceList& list, Console& console) {
  for (const Source& source : list.Sources) {
    console.Out(source.Name + "\n    " + source.Address + "\n    " + source.Note + "\n");
  }
  return kExitOk;
}

Outcome<BatchPlan> PlanOf(const Arguments& arguments, const SourceList& list) {
  BatchPlan plan{.Stations = arguments.Files,
                 .Folder = arguments.Value("--output").value_or("."),
                 .Format = arguments.Has("--raw") ? BatchFormat::Native : BatchFormat::AsReceived,
                 .Failing = arguments.Has("--stop") ? OnFailure::Stop : OnFailure::Skip};
  for (const std::string& name : arguments.Values("--source")) {
    const Source* source = list.Find(name);
    if (source == nullptr) {
      return Fault{kFaultInvalidValue, "PlanOf", "there is no source \"" + name + "\""};
    }
    plan.Sources.push_back(*source);
  }
  if (plan.Sources.size() > 1 && plan.Failing == OnFailure::Skip) {
    plan.Failing = OnFailure::NextSource;
  }
  for (const std::string& text : arguments.Values("--time")) {
    const std::optional<ObservationTime> time = ingest::ParseIsoTime(text);
    if (!time) {
      return Fault{kFaultInvalidValue, "PlanOf", "\"" + text + "\" is no time as 1999-05-04T00"};
    }
    plan.Times.push_back(*time);
  }
  if (std::optional<Fault> fault = CheckPlan(plan)) return *fault;
  return plan;
}

int RunFetch(const Arguments& arguments, Console& console) {
  const Outcome<SourceList> list = LoadSources(arguments);
  if (!list) {
    ReportFault(console, std::string(kSourcesFileName), list.Error());
    return kExitInputFailed;
  }
  if (arguments.Has("--list")) return ListSources(list.Value(), console);
  const Outcome<BatchPlan> plan = PlanOf(arguments, list.Value());
  if (!plan) return UsageError(console, kFetchCommand, plan.Error().Detail);
  int count = 1;
  char name[] = "vexa-cli";
  char* words[] = {name, nullptr};
  std::unique_ptr<QCoreApplication> application;
  if (QCoreApplication::instance() == nullptr) {
    application = std::make_unique<QCoreApplication>(count, words);
  }
  CommandWork work(console, !arguments.Has("--fresh"));
  const BatchReport report = RunBatch(plan.Value(), work);
  const bool isWhole =
      !report.WasStopped && report.Saved() == static_cast<int>(report.Items.size());
  return isWhole ? kExitOk : kExitInputFailed;
}

}  // namespace

const Command kFetchCommand = {
    "fetch", "STATION... -s SOURCE -t TIME [-o FOLDER]", "Downloads soundings.", kOptions, RunFetch,
    false};

}  // namespace vexa::cli
