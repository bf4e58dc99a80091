// `vexa-cli fetch`: soundings from the sources of VEXA.URL, one file each.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/toolkit.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/platform.h"
#include "download/batch.h"
#include "download/template_file.h"
#include "ingest/source_header.h"
#include "program/fetch_work.h"

namespace vexa::cli {
namespace {

using namespace vexa::download;

constexpr ArgumentRow kFetchOptions[] = {
    {"--source", "-s", "NAME", "a source of VEXA.URL; repeated: the next is asked when one fails"},
    {"--time", "-t", "TIME", "YYYY-MM-DDTHH, UTC; repeated: one after the other"},
    {"--output", "-o", "FOLDER", "where the files go; the current folder when not given"},
    {"--raw", "", "", "save native sounding files in place of what the server sent"},
    {"--stop", "", "", "stop at the first failure"},
    {"--fresh", "", "", "don't use answers kept from before"},
    {"--sources", "", "FILE", "another file of sources than that of the program's root folder"},
    {"--list", "-l", "", "list the sources"},
};

Outcome<SourceList> SourcesOf(const Arguments& arguments) {
  if (const std::optional<std::string> given = arguments.Value("--sources")) {
    return LoadSourcesFile(PathFromText(*given));
  }
  return LoadSources(ResolveRoot(std::nullopt, ProgramFolder()), ProgramFolder());
}

FetchWork::Watch Telling(Console& console, Inputs& inputs) {
  return {
      .Failed =
          [&console](const download::Source& source, const Request& request, const Fault& fault) {
            console.Err("vexa-cli: " + source.Name + ": " + FileStem(request) + ": " +
                        fault.Detail + '\n');
          },
      .Saved =
          [&console, &inputs](const SavedSounding& saved) {
            console.Out(SavedText(saved) + '\n');
            inputs.Doubt(saved.File, saved.Finding);
          }};
}

int ListSources(const SourceList& list, Console& console) {
  for (const download::Source& source : list.Sources) {
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
    const download::Source* source = list.Find(name);
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
  const Outcome<SourceList> list = SourcesOf(arguments);
  if (!list) {
    ReportFault(console, std::string(kSourcesFileName), list.Error());
    return kExitInputFailed;
  }
  for (const std::string& note : list.Value().Notes) console.Err("vexa-cli: " + note + '\n');
  if (arguments.Has("--list")) return ListSources(list.Value(), console);
  const Outcome<BatchPlan> plan = PlanOf(arguments, list.Value());
  if (!plan) return UsageError(console, kFetchCommand, plan.Error().Detail);
  if (console.Tools == nullptr) return LacksToolkit(console, kFetchCommand, "downloads");
  const std::unique_ptr<Fetcher> fetcher = console.Tools->MakeFetcher();
  const Cache cache(ResolveRoot(std::nullopt, ProgramFolder()) / "cache");
  cache.Sweep(SystemNow());
  Inputs inputs(console, Stations(), 0);
  FetchWork work(*fetcher, arguments.Has("--fresh") ? nullptr : &cache, &Stations(),
                 Telling(console, inputs));
  const BatchReport report = RunBatch(plan.Value(), work);
  const bool isWhole =
      !report.WasStopped && report.Saved() == static_cast<int>(report.Items.size());
  return isWhole ? inputs.ExitCode() : kExitInputFailed;
}

}  // namespace

const Command kFetchCommand = {
    {"fetch", "STATION... -s SOURCE -t TIME [options]", "Downloads soundings.", kFetchOptions, 0},
    RunFetch};

}  // namespace vexa::cli
