#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/index_table.h"
#include "analysis/moist_air.h"
#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"

namespace vexa::cli {
namespace {

constexpr std::string_view kFormats[] = {"text", "json", "csv"};

constexpr ArgumentRow kOptions[] = {
    {"--format", "", "FORMAT", "form of the report, text without it", kFormats},
    {"--explain", "", "INDEX",
     "tell how an index came about, by its label: KI, SWEAT; may be repeated"},
    {"--trace-liftsat", "", "FILE",
     "write the steps of the saturated-adiabat search for each level's wet bulb"},
    kRootOption,
    kSoundingOption,
    kSetOption,
};

/// How soundings follow each other in one of the formats. One is written and forgotten before the
/// next is read.
class Report {
 public:
  Report(std::string format, bool several, const Options& options, Console& console)
      : format_(std::move(format)), several_(several), options_(options), console_(console) {
    if (format_ == "csv") console_.Out(CsvHeader(options_) + "\n");
    if (format_ == "json" && several_) console_.Out("[");
  }

  void Add(const ReportedSounding& sounding) {
    if (format_ == "csv") {
      console_.Out(CsvRow(sounding, options_) + "\n");
    } else if (format_ == "json") {
      console_.Out((several_ ? (count_ > 0 ? ",\n" : "\n") : "") +
                   SoundingJson(sounding, options_) + (several_ ? "" : "\n"));
    } else {
      console_.Out((count_ > 0 ? "\n" : "") + TextReport(sounding, options_));
    }
    ++count_;
  }

  void End() {
    if (format_ == "json" && several_) console_.Out("\n]\n");
  }

 private:
  std::string format_;
  bool several_;
  const Options& options_;
  Console& console_;
  int count_ = 0;
};

std::vector<std::string_view> IndexLabels() {
  std::vector<std::string_view> labels;
  for (const analysis::IndexRow& row : analysis::IndexTable()) labels.push_back(Trim(row.Label));
  return labels;
}

// Reads one file after the other and hands each sounding on; what fails is reported and passed
// over. Gives the exit code.
template <class Use>
int ForEachSounding(const Arguments& arguments, const CommandSetup& setup, Console& console,
                    Use&& use) {
  analysis::AdiabatTable adiabats;
  Inputs inputs(console, setup.Stations, setup.Index);
  for (const std::string& file : arguments.Files) {
    std::optional<LoadedSounding> loaded = inputs.Load(file);
    if (!loaded) continue;
    const AnalysedSounding sounding(*std::move(loaded));
    use(report::ReportOf(sounding, file, setup.Settings.Set, &adiabats));
  }
  return inputs.ExitCode();
}

void ExplainIndices(const ReportedSounding& sounding,
                    const std::vector<const analysis::IndexRow*>& rows, const Options& options,
                    Console& console) {
  console.Out(sounding.Record.StationTitle + "\n");
  for (const analysis::IndexRow* row : rows) {
    console.Out(analysis::Explain(*row, sounding.Record, sounding.Results, options));
  }
}

// The steps of LiftSat for the wet bulb of every level that has one, under a line that names it.
std::string TraceLiftSat(const ReportedSounding& sounding, const Options& options) {
  std::string trace = sounding.File + "\n";
  const analysis::LevelProfile& levels = sounding.Results.Levels;
  for (int i = 1; i <= levels.Count(); ++i) {
    if (NotAvailable(levels.ThetaE(i))) continue;
    trace += "level " + Shortest(i) + ", " + Shortest(levels.Press(i)) + " hPa\n";
    const analysis::LiftSatResult lifted =
        analysis::LiftSat(levels.ThetaE(i), levels.Press(i), options.Saturation, &trace);
    if (lifted.Failed) trace += "LiftSatError\n";
  }
  return trace;
}

int RunAnalyze(const Arguments& arguments, Console& console) {
  const std::string format = arguments.Value("--format").value_or("text");
  const Outcome<CommandSetup> given = SetupOf(arguments, console);
  if (!given) return UsageError(console, kAnalyzeCommand, given.Error().Detail);
  const CommandSetup& setup = given.Value();
  const Options& options = setup.Settings.Set;
  std::vector<const analysis::IndexRow*> explained;
  const std::vector<std::string_view> labels = IndexLabels();
  for (const std::string& label : arguments.Values("--explain")) {
    explained.push_back(analysis::FindIndex(label));
    if (explained.back() == nullptr) {
      return UsageError(console, kAnalyzeCommand,
                        "there is no index \"" + label + "\"" + DidYouMean(label, labels) +
                            "; there are " + Joined(labels));
    }
  }
  if (!explained.empty()) {
    return ForEachSounding(arguments, setup, console, [&](const ReportedSounding& sounding) {
      ExplainIndices(sounding, explained, options, console);
    });
  }
  std::optional<AtomicFile> trace;
  std::optional<Fault> traceFault;
  const std::optional<std::string> traceName = arguments.Value("--trace-liftsat");
  if (traceName) {
    if (const auto fault = NotAnInput(arguments, *traceName)) {
      return UsageError(console, kAnalyzeCommand, fault->Detail);
    }
    trace.emplace(PathFromText(*traceName));
  }
  Report report(format, arguments.Files.size() > 1, options, console);
  const int exitCode =
      ForEachSounding(arguments, setup, console, [&](const ReportedSounding& sounding) {
        report.Add(sounding);
        if (trace && !traceFault) traceFault = trace->Write(TraceLiftSat(sounding, options));
      });
  report.End();
  if (trace && !traceFault) traceFault = trace->Commit();
  if (!traceFault) return exitCode;
  ReportFault(console, *traceName, *traceFault);
  return kExitInputFailed;
}

}  // namespace

const Command kAnalyzeCommand = {
    {"analyze", "FILE-OR-FOLDER... [options]", "Prints the analysis of each sounding.", kOptions},
    RunAnalyze,
    true};

}  // namespace vexa::cli
