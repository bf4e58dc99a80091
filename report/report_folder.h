// One folder that lets a colleague repeat the case: source, native file, settings, analysis,
// pictures, listings and the versions that made them.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "core/fault.h"
#include "program/program.h"

namespace vexa::report {

/// Writes the folder of the sounding in work, which is made where it is missing; files of these
/// names are replaced. Fault 75 when the folder cannot be made, else as of reading its file, of
/// SaveFile and of the pictures. Needs an application object of the toolkit.
///
/// writer  the program's name, for versions.json
[[nodiscard]] std::optional<Fault> WriteReport(const Program& program,
                                               const std::filesystem::path& folder,
                                               std::string_view writer);

}  // namespace vexa::report
