// The command line's commands: each a function over its words, and a row in the table of cli.cpp.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "cli/console.h"
#include "cli/report.h"
#include "config/options.h"
#include "core/fault.h"
#include "core/sounding_record.h"
#include "core/station_list.h"
#include "program/command_line.h"

namespace vexa::cli {

struct Command {
  CommandForm Form;
  int (*Run)(const Arguments& arguments, Console& console);
  bool TakesFolders = false;  // which then stand for the soundings in them
};

extern const Command kPlotCommand;
extern const Command kAnalyzeCommand;
extern const Command kConvertCommand;
extern const Command kExportCommand;
extern const Command kListCommand;
extern const Command kReportCommand;
extern const Command kPrintCommand;
extern const Command kSettingsCommand;
extern const Command kCheckCommand;
extern const Command kFetchCommand;
extern const Command kWavesCommand;
extern const Command kFrontsCommand;
extern const Command kSectionCommand;
extern const Command kForecastCommand;
extern const Command kArchiveCommand;

/// The station list of the program root, else the shipped one; read once.
const StationList& Stations();

inline constexpr ArgumentRow kSoundingOption = {
    "--sounding", "-n", "N", "which sounding of a file, 1 without it", {}, 1, 99999};

/// Of commands that take folders: for several processes or machines.
inline constexpr ArgumentRow kShardOption = {
    "--shard", "", "I/N", "of the files only the Ith of N equal shares, by their names"};

/// The number of --sounding, counted from 0.
int SoundingIndex(const Arguments& arguments);

/// Refuses an output that is one of the files to read.
std::optional<Fault> NotAnInput(const Arguments& arguments, const std::string& output);

/// "vexa-cli: FILE: reason" for a file that failed.
void ReportFault(Console& console, const std::string& file, const Fault& fault);

/// "vexa-cli COMMAND: reason" with a pointer to the help; gives kExitUsage.
int UsageError(Console& console, const Command& command, std::string_view reason);

/// An option of a command with a value that it cannot have.
inline Fault Wrong(const char* command, std::string detail) {
  return {kFaultInvalidValue, command, std::move(detail)};
}

/// Says that this build cannot make something, "PDF documents"; gives kExitUsage.
int LacksToolkit(Console& console, const Command& command, std::string_view something);

/// Runs the command line: the words after the program's name. Gives the exit code.
int RunCommandLine(std::span<const std::string> words, Console& console);

}  // namespace vexa::cli
