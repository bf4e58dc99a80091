#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "core/files.h"
#include "core/numbers.h"
#include "program/export_batch.h"

namespace vexa::cli {
namespace {

constexpr int kMostJobs = 256;

constexpr ArgumentRow kOptions[] = {
    {"--output", "-o", "OUT", "dump to write: a spreadsheet for .csv, else text"},
    {"--jobs", "-j", "N", "threads that read and compute, 1 without it"},
    {"--range", "", "NNNN-NNNN", "of the files only these, counted from 0001"},
    kSoundingOption,
    kRootOption,
    {"--set", "", "\"KEY=VALUE\"",
     "sets an option by its label, DumpData1 to DumpData7 those of the dump"},
};

// "0001-0020" of so many files.
Outcome<ExportRange> RangeOf(const std::optional<std::string>& text, int count) {
  if (!text) return ExportRange{1, count};
  const std::size_t dash = text->find('-');
  if (dash == std::string::npos) return ParseExportRange({}, {}, count);
  const std::string_view whole(*text);
  return ParseExportRange(whole.substr(0, dash), whole.substr(dash + 1), count);
}

int RunExport(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kExportCommand, "no output is given with -o");
  if (const auto fault = NotAnInput(arguments, *output)) {
    return UsageError(console, kExportCommand, fault->Detail);
  }
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kExportCommand, setup.Error().Detail);
  const std::string jobsText = arguments.Value("--jobs").value_or("1");
  const std::optional<int> jobs = ParseWhole(jobsText);
  if (!jobs || *jobs < 1 || *jobs > kMostJobs) {
    return UsageError(
        console, kExportCommand,
        "--jobs takes a number from 1 to " + Shortest(kMostJobs) + ", not \"" + jobsText + "\"");
  }
  const Outcome<ExportRange> range =
      RangeOf(arguments.Value("--range"), static_cast<int>(arguments.Files.size()));
  if (!range) return UsageError(console, kExportCommand, range.Error().Detail);
  const auto first = static_cast<std::size_t>(range.Value().First) - 1;
  const std::span<const std::string> files =
      std::span(arguments.Files)
          .subspan(first, static_cast<std::size_t>(range.Value().Last) - first);
  const ExportReport report = ExportBatch({.Files = files,
                                           .Output = PathFromText(*output),
                                           .Kind = output::DumpKindOf(*output),
                                           .Jobs = *jobs,
                                           .Stations = &setup.Value().Stations,
                                           .Index = setup.Value().Index},
                                          setup.Value().Settings.Set, {},
                                          [&console](const std::string& file, const Fault& fault) {
                                            ReportFault(console, file, fault);
                                          });
  if (report.Failed) {
    ReportFault(console, *output, *report.Failed);
    return kExitInputFailed;
  }
  if (const std::string text = ExportSummary(report).Text; !text.empty()) console.Out(text + "\n");
  return report.Rejected > 0 ? kExitInputFailed : kExitOk;
}

}  // namespace

const Command kExportCommand = {"export", "FILE... -o OUT.{txt,csv} [options]",
                                "Writes the levels of soundings as text or spreadsheet.", kOptions,
                                RunExport};

}  // namespace vexa::cli
