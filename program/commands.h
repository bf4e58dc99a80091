// The commands' bodies, file by file as the menu groups them. They run behind the closed gate.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "output/data_dump.h"
#include "program/program.h"

namespace vexa::commands {

Changes Exit(Program& program);

/// Asks for one or more files and loads the first that can be loaded.
Changes DataAccess(Program& program);

/// Asks for the file of a dump, named after another at first; empty, with the status "cancel", when
/// the user cancels. A name without an ending gets the kind's.
std::optional<std::filesystem::path> ChooseDumpFile(Program& program, const std::string& proposedBy,
                                                    output::DumpKind kind);
/// Writes the sounding in work as a data dump; a cancelled dialog leaves the status "cancel".
Changes ExportAs(Program& program, output::DumpKind kind);

/// Loads one file into the sounding in work and checks it; a fault has been reported on false.
///
/// index     which of the file's soundings, from 0
/// stepping  on the way through several, which may go unchecked by an option of its own
bool LoadOne(Program& program, Document::Leave leave, const std::filesystem::path& path,
             int index = 0, bool stepping = false);

/// Marks the sounding in work as the one to load at start, or takes the mark away.
Changes AutoLoad(Program& program);

/// Whether the sounding in work is the one that is loaded at start.
bool IsAutoLoaded(const Program& program);

/// Puts the file in work ahead of the recent files, each of which is listed once.
void MakeRecentFiles(Program& program);

Changes OpenRecentFile(Program& program, std::size_t number);

/// Opens the sounding that comes with the program.
inline constexpr std::string_view kExampleFile = "EXAMPLE.RAW";
Changes OpenExample(Program& program);

template <std::size_t kNumber>
Changes OpenRecent(Program& program) {
  return OpenRecentFile(program, kNumber);
}

/// Makes a configuration the active one; its options replace those in force.
Changes SwitchTo(Program& program, Configuration to);

template <Configuration kTo>
Changes ChooseConfiguration(Program& program) {
  return SwitchTo(program, kTo);
}

/// Writes the settings report into the program folder.
Changes WriteReport(Program& program);

Changes LoadText(Program& program, const std::string& text);
Changes LoadAt(Program& program, const std::filesystem::path& path, int index);
Changes LoadFirst(Program& program, const std::vector<std::filesystem::path>& paths);

}  // namespace vexa::commands
