// The commands' bodies, file by file as the menu groups them. They run behind the closed gate.
#pragma once

#include <filesystem>
#include <vector>

#include "program/program.h"

namespace vexa::commands {

Changes Open(Program& program);

/// Writes the sounding in work as a data dump; a cancelled dialog leaves the status "cancel".
Changes ExportData(Program& program);

/// Loads one file into the sounding in work and checks it; a fault has been reported on false.
bool LoadOne(Program& program, const std::filesystem::path& path);

Changes LoadFirst(Program& program, const std::vector<std::filesystem::path>& paths);

}  // namespace vexa::commands
