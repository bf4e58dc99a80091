#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "archive/shard.h"
#include "cli/commands.h"
#include "core/files.h"
#include "core/folders.h"
#include "core/known_stations.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/raw_file.h"
#include "core/source_text.h"
#include "ingest/sounding_files.h"
#include "program/export_batch.h"

namespace vexa::cli {
namespace {

const Command* const kCommands[] = {
    &kPlotCommand,  &kAnalyzeCommand, &kConvertCommand, &kSettingsCommand, &kCheckCommand,
    &kFetchCommand, &kExportCommand,  &kListCommand,    &kReportCommand,   &kPrintCommand,
    &kWavesCommand, &kFrontsCommand,  &kSectionCommand, &kForecastCommand, &kArchiveCommand};

constexpr CommandForm kProgram = {
    .Name = "vexa-cli",
    .Usage = "COMMAND [FILE]... [options]",
    .Summary = "Upper-air soundings without a window.",
    .LeastFiles = 0,
    .Footer =
        "vexa-cli COMMAND --help tells of its options.\n"
        "Exit code: 0 success, 1 some input failed or has doubtful data, 2 wrong usage.",
};

// The files that a command works on: in place of each folder the soundings in it and below. Gives
// the exit code for folders without any.
int TakeFolders(Arguments& arguments, Console& console) {
  int exitCode = kExitOk;
  const std::string output = arguments.Value("--output").value_or("");
  std::vector<std::string> files;
  for (const std::string& given : arguments.Files) {
    if (!IsFolder(PathFromText(given))) {
      files.push_back(given);
      continue;
    }
    const std::size_t before = files.size();
    for (const std::filesystem::path& path : ingest::FilesBelow(PathFromText(given))) {
      // What an earlier run has written there is not read.
      const bool isOutput = AreOne(path, PathFromText(output));
      if (!isOutput && ingest::HoldsSounding(path)) files.push_back(TextFromPath(path));
    }
    if (files.size() > before) continue;
    ReportFault(console, given,
                {kFaultFormat, "TakeFolders", "there is no sounding in the folder"});
    exitCode = kExitInputFailed;
  }
  arguments.Files = std::move(files);
  return exitCode;
}

// The lines of a file that is named as "@FILE" in place of it; a file whose name begins so is one.
std::optional<Fault> TakeLists(Arguments& arguments) {
  std::vector<std::string> files;
  for (std::string& given : arguments.Files) {
    if (!given.starts_with('@') || IsThere(PathFromText(given))) {
      files.push_back(std::move(given));
      continue;
    }
    Outcome<std::string> list = ReadFile(PathFromText(given.substr(1)));
    if (!list) {
      return Fault{list.Error().Number, "TakeLists", FaultLine(given, list.Error()), given};
    }
    const SourceText lines(given, std::move(list.Value()));
    for (int line = 1; line <= lines.LineCount(); ++line) {
      if (!Trim(lines.Line(line)).empty()) files.emplace_back(Trim(lines.Line(line)));
    }
  }
  arguments.Files = std::move(files);
  return std::nullopt;
}

// Of the files those of the share that --shard names. What is wrong with it.
std::optional<std::string> TakeShare(Arguments& arguments) {
  const std::optional<std::string> text = arguments.Value(kShardOption.Name);
  if (!text) return std::nullopt;
  const std::optional<archive::Shard> share = archive::ParseShard(*text);
  if (!share) return "--shard is I/N with I from 1 to N, not \"" + *text + '"';
  std::erase_if(arguments.Files, [&](const std::string& file) { return !share->Holds(file); });
  return std::nullopt;
}

}  // namespace

const StationList& Stations() {
  static const StationList list =
      KnownStations(ResolveRoot(std::nullopt, ProgramFolder()), ProgramFolder());
  return list;
}

int SoundingIndex(const Arguments& arguments) {
  return arguments.Whole(kSoundingOption.Name).value_or(1) - 1;
}

std::optional<Fault> NotAnInput(const Arguments& arguments, const std::string& output) {
  for (const std::string& file : arguments.Files) {
    if (AreOne(PathFromText(file), PathFromText(output))) {
      return Fault{kFaultInvalidValue, "NotAnInput",
                   '"' + output + "\" is a file to read and would be lost"};
    }
  }
  return std::nullopt;
}

void ReportFault(Console& console, const std::string& file, const Fault& fault) {
  console.Err(std::string(kProgram.Name) + ": " + file + ": " + FaultLine(file, fault) + "\n");
}

int UsageError(Console& console, const Command& command, std::string_view reason) {
  const std::string name(command.Form.Name);
  console.Err("vexa-cli " + name + ": " + std::string(reason) + "\nTry: vexa-cli " + name +
              " --help\n");
  return kExitUsage;
}

int LacksToolkit(Console& console, const Command& command, std::string_view something) {
  console.Err("vexa-cli " + std::string(command.Form.Name) +
              ": this program was built without the toolkit and makes no " +
              std::string(something) + "\n");
  return kExitUsage;
}

int RunCommandLine(std::span<const std::string> words, Console& console) {
  std::vector<const CommandForm*> forms;
  for (const Command* command : kCommands) forms.push_back(&command->Form);
  if (words.empty()) {
    const std::string help[] = {"--help"};
    console.Err(ReadCommandLine(help, kProgram, forms).Answer);
    return kExitUsage;
  }
  CommandLine read = ReadCommandLine(words, kProgram, forms);
  if (!read.Answer.empty()) {
    console.Out(read.Answer);
    return kExitOk;
  }
  const auto command = std::ranges::find(kCommands, read.Command,
                                         [](const Command* candidate) { return &candidate->Form; });
  if (command == std::end(kCommands)) {
    console.Err("vexa-cli: " + read.Wrong->Detail + "\nTry: vexa-cli --help\n");
    return kExitUsage;
  }
  if (read.Wrong) return UsageError(console, **command, read.Wrong->Detail);
  if (const auto fault = TakeLists(read.Given)) {
    console.Err("vexa-cli: " + fault->File + ": " + fault->Detail + "\n");
    return kExitInputFailed;
  }
  int exitCode = kExitOk;
  if ((*command)->TakesFolders) {
    exitCode = TakeFolders(read.Given, console);
    if (const auto wrong = TakeShare(read.Given)) return UsageError(console, **command, *wrong);
  }
  if (read.Given.Files.empty() && exitCode != kExitOk) return exitCode;
  return std::max(exitCode, (*command)->Run(read.Given, console));
}

}  // namespace vexa::cli
