#include <algorithm>
#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "cli/commands.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/source_text.h"
#include "core/station_file.h"
#include "ingest/decoder.h"
#include "program/export_batch.h"

namespace vexa::cli {
namespace {

const Command* const kCommands[] = {
    &kPlotCommand,  &kAnalyzeCommand, &kConvertCommand, &kSettingsCommand, &kCheckCommand,
    &kFetchCommand, &kExportCommand,  &kListCommand,    &kReportCommand,   &kPrintCommand};

constexpr std::string_view kProgram = "vexa-cli";

std::string CommandHelp(const Command& command) {
  std::string text = "Usage: vexa-cli " + std::string(command.Name) + " " +
                     std::string(command.Usage) + "\n\n" + std::string(command.Summary) + "\n\n";
  std::vector<ArgumentRow> rows(command.Options.begin(), command.Options.end());
  rows.push_back({"--help", "-h", "", "this text"});
  rows.push_back({"--version", "", "", "the program's version"});
  return text + OptionHelp(rows);
}

std::string ProgramHelp() {
  std::string text =
      "Usage: vexa-cli COMMAND [FILE]... [options]\n\nUpper-air soundings without a "
      "window.\n\n";
  for (const Command* command : kCommands) {
    text += "  " + PadRight(command->Name, 10) + std::string(command->Summary) + "\n";
  }
  return text +
         "\nvexa-cli COMMAND --help tells of its options.\n"
         "Exit code: 0 success, 1 some input failed, 2 wrong usage.\n";
}

bool Asks(std::span<const std::string> words, std::string_view longName,
          std::string_view shortName) {
  const auto end = std::ranges::find(words, "--");
  return std::any_of(words.begin(), end, [&](const std::string& word) {
    return word == longName || (!shortName.empty() && word == shortName);
  });
}

}  // namespace

const StationList& Stations() {
  static const StationList list =
      KnownStations(ResolveRoot(std::nullopt, ProgramFolder()), ProgramFolder());
  return list;
}

Outcome<int> SoundingIndex(const Arguments& arguments) {
  const std::string text = arguments.Value(kSoundingOption.Name).value_or("1");
  const std::optional<int> number = ParseWhole(text);
  if (!number || *number < 1) {
    return Fault{kFaultInvalidValue, "SoundingIndex",
                 "--sounding takes a number from 1, not \"" + text + '"'};
  }
  return *number - 1;
}

std::optional<Fault> NotAnInput(const Arguments& arguments, const std::string& output) {
  for (const std::string& file : arguments.Files) {
    std::error_code failed;  // of what does not exist, neither is the other
    if (std::filesystem::equivalent(PathFromText(file), PathFromText(output), failed)) {
      return Fault{kFaultInvalidValue, "NotAnInput",
                   '"' + output + "\" is a file to read and would be lost"};
    }
  }
  return std::nullopt;
}

Outcome<AnalysedSounding> LoadAndAnalyse(const std::string& file, int index, const Options& options,
                                         analysis::AdiabatTable* table) {
  SilentInteraction quiet;
  Outcome<ingest::LoadedFile> loaded =
      ingest::LoadFile(PathFromText(file), index, &Stations(), &quiet);
  if (!loaded) return loaded.Error();
  AnalysedSounding sounding{.File = file,
                            .Record = std::move(loaded.Value().Record),
                            .Notes = std::move(loaded.Value().Notes)};
  sounding.Results = table != nullptr ? analysis::Analyse(sounding.Record, options, *table)
                                      : analysis::Analyse(sounding.Record, options);
  return sounding;
}

void ReportFault(Console& console, const std::string& file, const Fault& fault) {
  console.Err(std::string(kProgram) + ": " + file + ": " + FaultLine(file, fault) + "\n");
}

int UsageError(Console& console, const Command& command, std::string_view reason) {
  console.Err(std::string(kProgram) + " " + std::string(command.Name) + ": " + std::string(reason) +
              "\nTry: vexa-cli " + std::string(command.Name) + " --help\n");
  return kExitUsage;
}

int RunCommandLine(std::span<const std::string> words, Console& console) {
  if (Asks(words, "--version", "")) {
    console.Out(std::string(kProgram) + " " + std::string(ProgramVersion()) + "\n");
    return kExitOk;
  }
  const auto name =
      std::ranges::find_if(words, [](const std::string& word) { return !word.starts_with('-'); });
  const auto command = name == words.end()
                           ? std::end(kCommands)
                           : std::ranges::find(kCommands, *name, [](const Command* candidate) {
                               return std::string(candidate->Name);
                             });
  const bool isKnown = command != std::end(kCommands);
  if (Asks(words, "--help", "-h")) {
    console.Out(isKnown ? CommandHelp(**command) : ProgramHelp());
    return kExitOk;
  }
  if (!isKnown || name != words.begin()) {
    console.Err(words.empty() ? ProgramHelp()
                              : std::string(kProgram) + ": there is no command \"" + words[0] +
                                    "\"\nTry: vexa-cli --help\n");
    return kExitUsage;
  }
  const Outcome<Arguments> arguments = ParseArguments(words.subspan(1), (*command)->Options);
  if (!arguments) return UsageError(console, **command, arguments.Error().Detail);
  if (arguments.Value().Files.empty() && (*command)->NeedsFiles) {
    return UsageError(console, **command, "no FILE is given");
  }
  return (*command)->Run(arguments.Value(), console);
}

}  // namespace vexa::cli
