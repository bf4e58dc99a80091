// Where the program's files live: the program root with the system files and, below it, the data
// folders under their fixed names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/fault.h"

namespace vexa {

struct Folders {
  std::filesystem::path Root{};          // system files, VEXA.STN, VEXA.SET
  std::filesystem::path Data{};          // "vexadata"
  std::filesystem::path CrossSection{};  // "crosdata"
  std::filesystem::path Export{};        // "ExportData"
  std::filesystem::path Forecast{};      // "ForecastData"
  std::filesystem::path Reference{};     // of "REFERENCE.DAT"; the root unless set otherwise
};

/// Program root, the first of: the --root argument; the variable VEXA_ROOT; the program's own
/// folder when a file vexa.portable stands in it; the user's data folder joined with "vexa".
std::filesystem::path ResolveRoot(const std::optional<std::string>& rootArgument,
                                  const std::filesystem::path& programFolder);

/// A file that comes with the program: beside it, in ../share/vexa, or in the folder share of a
/// source tree that the program was built in. Empty when there is none.
std::filesystem::path ShippedFile(const std::filesystem::path& programFolder,
                                  std::string_view name);

/// Copies a shipped file to the root unless one of its name is there already, so that the user may
/// change it. Without a shipped file nothing happens.
[[nodiscard]] std::optional<Fault> EnsureShipped(const std::filesystem::path& root,
                                                 const std::filesystem::path& programFolder,
                                                 std::string_view name);

/// The folders below a root; nothing is created.
Folders FoldersBelow(const std::filesystem::path& root);

/// Creates the root and the folders below it where they are missing. Faults as FaultNumber name the
/// folder.
[[nodiscard]] std::optional<Fault> CreateFolders(const Folders& folders);

}  // namespace vexa
