#include "cli/settings.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "cli/commands.h"
#include "config/settings_report.h"
#include "core/files.h"

namespace vexa::cli {
namespace {

constexpr ArgumentRow kSettingsOptions[] = {
    kRootOption,
    kSetOption,
    {"--output", "-o", "FILE", "file to write instead of the standard output"},
};

int RunSettings(const Arguments& arguments, Console& console) {
  const Outcome<SettingsStore> settings = CommandSettings(arguments, console);
  if (!settings) return UsageError(console, kSettingsCommand, settings.Error().Detail);
  const std::string report =
      SettingsReport(settings.Value().Set, {.Version = std::string(ProgramVersion())});
  const std::optional<std::string> output = arguments.Value("--output");
  if (!output) {
    console.Out(report);
    return kExitOk;
  }
  const std::optional<Fault> fault = SaveFile(PathFromText(*output), report);
  if (!fault) return kExitOk;
  ReportFault(console, *output, *fault);
  return kExitInputFailed;
}

}  // namespace

Outcome<SettingsStore> CommandSettings(const Arguments& arguments, Console& console) {
  SettingsStore settings;
  if (const auto root = arguments.Value(kRootOption.Name)) {
    if (!IsFolder(PathFromText(*root))) {
      return Fault{kFaultPathAccess, "CommandSettings", '"' + *root + "\" is no folder"};
    }
    std::vector<std::string> notes;
    LoadSettings(PathFromText(*root), settings, notes);
    for (const std::string& note : notes) console.Err("vexa-cli: " + note + "\n");
  }
  if (auto fault = SetOptions(settings.Set, arguments.Values("--set"))) return *fault;
  return settings;
}

const Command kSettingsCommand = {
    {"settings", "[options]", "Lists every option with its value.", kSettingsOptions, 0, 0},
    RunSettings};

}  // namespace vexa::cli
