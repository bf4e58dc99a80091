// `report`: one folder that lets a colleague repeat the case.
#include <filesystem>
#include <string>

#include "cli/commands.h"
#include "cli/loaded_program.h"
#include "cli/qt_start.h"
#include "core/files.h"
#include "report/report_folder.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kOptions[] = {
    {"--output", "-o", "FOLDER", "folder to write; it is made where it is missing"},
    kRootOption,
    kSoundingOption,
    {"--set", "", "\"KEY=VALUE\"", "sets an option by its label; may be repeated"},
};

int RunReport(const Arguments& arguments, Console& console) {
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) return UsageError(console, kReportCommand, "no folder is given with -o");
  if (const auto fault = NotAnInput(arguments, *output)) {
    return UsageError(console, kReportCommand, fault->Detail);
  }
  if (arguments.Files.size() > 1) {
    return UsageError(console, kReportCommand, "one FILE at a time");
  }
  const Outcome<CommandSetup> setup = SetupOf(arguments, console);
  if (!setup) return UsageError(console, kReportCommand, setup.Error().Detail);
  const std::string& file = arguments.Files.front();
  const QtSession toolkit;
  LoadedProgram loaded(setup.Value());
  std::optional<Fault> fault = loaded.Load(file);
  if (!fault) fault = report::WriteReport(loaded.Get(), PathFromText(*output), "vexa-cli");
  if (!fault) return kExitOk;
  ReportFault(console, file, *fault);
  return kExitInputFailed;
}

}  // namespace

const Command kReportCommand = {"report", "FILE -o FOLDER [options]",
                                "Writes a folder with which the case can be repeated.", kOptions,
                                RunReport};

}  // namespace vexa::cli
