#include "core/folders.h"

#include "core/files.h"
#include "core/path_forms.h"
#include "core/platform.h"

namespace vexa {
namespace fs = std::filesystem;

fs::path ResolveRoot(const std::optional<std::string>& rootArgument,
                     const fs::path& programFolder) {
  if (rootArgument && !rootArgument->empty()) return WholePath(PathFromText(*rootArgument));
  if (const std::optional<std::string> variable = EnvironmentText("VEXA_ROOT")) {
    return WholePath(PathFromText(*variable));
  }
  std::error_code ignored;
  if (fs::exists(programFolder / "vexa.portable", ignored)) return programFolder;
  return UserDataFolder() / "vexa";
}

fs::path ShippedFile(const fs::path& programFolder, std::string_view name) {
  if (programFolder.empty()) return {};
  const fs::path file = PathFromText(name);
  std::error_code ignored;
  const auto isThere = [&](const fs::path& path) { return fs::is_regular_file(path, ignored); };
  if (const fs::path beside = programFolder / file; isThere(beside)) return beside;
  const fs::path installed = programFolder.parent_path() / "share" / "vexa" / file;
  if (isThere(installed)) return installed;
  constexpr int kMostLevels = 4;  // build/PRESET/app below the source tree, and one more
  fs::path folder = programFolder;
  for (int level = 0; level < kMostLevels; ++level, folder = folder.parent_path()) {
    if (const fs::path built = folder / "share" / file; isThere(built)) return built;
  }
  return {};
}

std::optional<Fault> EnsureShipped(const fs::path& root, const fs::path& programFolder,
                                   std::string_view name) {
  const fs::path target = root / PathFromText(name);
  std::error_code ignored;
  if (fs::exists(target, ignored)) return std::nullopt;
  const fs::path shipped = ShippedFile(programFolder, name);
  if (shipped.empty()) return std::nullopt;
  const Outcome<std::string> bytes = ReadFile(shipped);
  if (!bytes) return bytes.Error();
  return SaveFile(target, bytes.Value(), SystemFileOps(), Links::Replace);
}

Folders FoldersBelow(const fs::path& root) {
  return Folders{
      root, root / "vexadata", root / "crosdata", root / "ExportData", root / "ForecastData", root};
}

std::optional<Fault> CreateFolders(const Folders& folders) {
  for (const fs::path* folder :
       {&folders.Root, &folders.Data, &folders.CrossSection, &folders.Export, &folders.Forecast}) {
    std::error_code failed;
    const fs::path reachable = ReachablePath(*folder);
    fs::create_directories(reachable, failed);
    if (failed || !fs::is_directory(reachable, failed)) {
      if (!failed) failed = std::make_error_code(std::errc::not_a_directory);
      return Fault{FaultNumber(failed), "CreateFolders",
                   TextFromPath(*folder) + ": " + failed.message(), TextFromPath(*folder)};
    }
  }
  return std::nullopt;
}

}  // namespace vexa
