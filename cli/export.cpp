#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "core/files.h"
#include "program/export_batch.h"
#include "report/json.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kExportOptions[] = {
    {"--output", "-o", "OUT", "dump to write: a spreadsheet for .csv, else text"},
    {"--jobs", "-j", "N", "threads that read and compute, 1 without it", {}, 1, 256},
    {"--range", "", "NNNN-NNNN", "of the files only these, counted from 0001"},
    {"--json", "", "", "tells what was done as JSON"},
    kShardOption,
    kSoundingOption,
    kRootOption,
    kSetOption,
};

// "0001-0020" of so many files.
Outcome<ExportRange> RangeOf(const std::optional<std::string>& text, int count) {
  if (!text) return ExportRange{1, count};
  const std::size_t dash = text->find('-');
  if (dash == std::string::npos) return ParseExportRange({}, {}, count);
  const std::string_view whole(*text);
  return ParseExportRange(whole.substr(0, dash), whole.substr(dash + 1), count);
}

std::string SummaryJson(const ExportReport& done, const std::vector<RejectedFile>& rejected) {
  const auto path = [](const std::filesystem::path& file) {
    return file.empty() ? report::Json(nullptr) : report::Json(TextFromPath(file));
  };
  report::Json json;
  json["output"] = path(done.Output);
  json["soundings"] = done.Written;
  json["reject file"] = path(done.RejectFile);
  report::Json& list = json["rejected"] = report::Json::array();
  for (const RejectedFile& one : rejected) {
    report::Json row;
    row["file"] = one.File;
    row["reason"] = FaultLine(one.File, one.Why);
    row["finding"] = report::FindingJson(one.Finding);
    list.push_back(std::move(row));
  }
  return report::JsonText(json);
}

int RunExport(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kExportCommand, "no output is given with -o");
  if (const auto fault = NotAnInput(arguments, *output)) {
    return UsageError(console, kExportCommand, fault->Detail);
  }
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kExportCommand, setup.Error().Detail);
  const Outcome<ExportRange> range =
      RangeOf(arguments.Value("--range"), static_cast<int>(arguments.Files.size()));
  if (!range) return UsageError(console, kExportCommand, range.Error().Detail);
  const auto first = static_cast<std::size_t>(range.Value().First) - 1;
  const std::span<const std::string> files =
      std::span(arguments.Files)
          .subspan(first, static_cast<std::size_t>(range.Value().Last) - first);
  std::vector<RejectedFile> rejected;
  Inputs inputs(console, setup.Value().Stations, setup.Value().Index);
  const ExportReport report =
      ExportBatch({.Files = files,
                   .Output = PathFromText(*output),
                   .Kind = output::DumpKindOf(*output),
                   .Jobs = arguments.Whole("--jobs").value_or(1),
                   .Stations = &setup.Value().Stations,
                   .Index = setup.Value().Index},
                  setup.Value().Settings.Set, {}, [&](const RejectedFile& one) {
                    if (one.Finding.Number != 0) {
                      inputs.Doubt(one.File, one.Finding);
                    } else {
                      inputs.Fail(one.File, one.Why);
                    }
                    rejected.push_back(one);
                  });
  if (report.Failed) inputs.Fail(*output, *report.Failed);
  if (arguments.Has("--json")) {
    console.Out(SummaryJson(report, rejected) + "\n");
  } else if (!report.Failed) {
    const std::string text = ExportSummary(report).Text;
    if (!text.empty()) console.Out(text + "\n");
  }
  return inputs.ExitCode();
}

}  // namespace

const Command kExportCommand = {
    {"export", "FILE-OR-FOLDER... -o OUT.{txt,csv} [options]",
     "Writes the levels of soundings as text or spreadsheet.", kExportOptions, 1, kAnyNumber,
     "--set DumpData1=FT and so on to DumpData7 set the options of the dump."},
    RunExport,
    true};

}  // namespace vexa::cli
