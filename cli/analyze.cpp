#include <optional>
#include <string>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/index_table.h"
#include "analysis/moist_air.h"
#include "archive/columns.h"
#include "cli/answers.h"
#include "cli/commands.h"
#include "cli/inputs.h"
#include "cli/loaded_program.h"
#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "report/profiles_netcdf.h"

namespace vexa::cli {
namespace {

constexpr std::string_view kAnalyzeFormats[] = {"text", "json", "csv", "netcdf"};

constexpr ArgumentRow kAnalyzeOptions[] = {
    {"--format", "", "FORMAT", "form of the report, text without it", kAnalyzeFormats},
    {"--output", "-o", "OUT.nc", "netCDF file to write, of all soundings"},
    {"--explain", "", "INDEX",
     "tell how an index came about, by its label: KI, SWEAT; may be repeated"},
    {"--trace-liftsat", "", "FILE",
     "write the steps of the saturated-adiabat search for each level's wet bulb"},
    kShardOption,
    kRootOption,
    kSoundingOption,
    kSetOption,
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
  StationMountains mountains(setup.MountainFile, console);
  for (const std::string& file : arguments.Files) {
    std::optional<LoadedSounding> loaded = inputs.Load(file);
    if (!loaded) continue;
    const AnalysedSounding sounding(*std::move(loaded));
    ReportedSounding reported = report::ReportOf(sounding, file, setup.Settings.Set, &adiabats);
    reported.Mountains = mountains.Of(sounding.Record());
    use(reported);
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

// All soundings into one netCDF file.
int WriteProfiles(const Arguments& arguments, const CommandSetup& setup, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kAnalyzeCommand, "--format netcdf wants a file with -o");
  if (const auto fault = NotAnInput(arguments, *output)) {
    return UsageError(console, kAnalyzeCommand, fault->Detail);
  }
  auto file = report::ProfilesNetcdf::Begin(PathFromText(*output),
                                            archive::SettingsText(setup.Settings.Set));
  std::optional<Fault> fault;
  if (!file) fault = file.Error();
  int exitCode = kExitOk;
  if (!fault) {
    exitCode = ForEachSounding(arguments, setup, console, [&](const ReportedSounding& sounding) {
      file.Value().Add(sounding, sounding.File + "#" + Shortest(setup.Index + 1));
    });
    fault = file.Value().End();
  }
  if (!fault) return exitCode;
  ReportFault(console, *output, *fault);
  return kExitInputFailed;
}

int RunAnalyze(const Arguments& arguments, Console& console) {
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
  const bool isNetcdf = arguments.Value("--format") == "netcdf";
  if (isNetcdf && !arguments.Has("--trace-liftsat")) {
    return WriteProfiles(arguments, setup, console);
  }
  if (isNetcdf || arguments.Has("--output")) {
    return UsageError(console, kAnalyzeCommand,
                      isNetcdf ? "--trace-liftsat does not go with --format netcdf"
                               : "-o is for --format netcdf");
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
  Answers answers(arguments, CsvHeader(options), console);
  const int exitCode =
      ForEachSounding(arguments, setup, console, [&](const ReportedSounding& sounding) {
        answers.Add({.Text = [&] { return TextReport(sounding, options); },
                     .Json = [&] { return SoundingJson(sounding, options); },
                     .Csv = [&] { return CsvRow(sounding, options) + "\n"; }});
        if (trace && !traceFault) traceFault = trace->Write(TraceLiftSat(sounding, options));
      });
  answers.End();
  if (trace && !traceFault) traceFault = trace->Commit();
  if (!traceFault) return exitCode;
  ReportFault(console, *traceName, *traceFault);
  return kExitInputFailed;
}

}  // namespace

const Command kAnalyzeCommand = {{"analyze", "FILE-OR-FOLDER... [options]",
                                  "Prints the analysis of each sounding.", kAnalyzeOptions},
                                 RunAnalyze,
                                 true};

}  // namespace vexa::cli
