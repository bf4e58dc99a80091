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
  if (IsThere(programFolder / "vexa.portable")) return programFolder;
  return UserDataFolder() / "vexa";
}

fs::path ShippedFile(const fs::path& programFolder, std::string_view name) {
  if (programFolder.empty()) return {};
  const fs::path file = PathFromText(name);
  if (const fs::path beside = programFolder / file; IsOrdinaryFile(beside)) return beside;
  const fs::path installed = programFolder.parent_path() / "share" / "vexa" / file;
  if (IsOrdinaryFile(installed)) return installed;
  constexpr int kMostLevels = 4;  // build/PRESET/app below the source tree, and one more
  fs::path folder = programFolder;
  for (int level = 0; level < kMostLevels; ++level, folder = folder.parent_path()) {
    if (const fs::path built = folder / "share" / file; IsOrdinaryFile(built)) return built;
  }
  return {};
}

std::optional<Fault> EnsureShipped(const fs::path& root, const fs::path& programFolder,
                                   std::string_view name) {
  const fs::path target = root / PathFromText(name);
  if (IsThere(target)) return std::nullopt;
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
    if (const std::error_code failed = MakeFolders(*folder)) {
      return Fault{FaultNumber(failed), "CreateFolders",
                   TextFromPath(*folder) + ": " + failed.message(), TextFromPath(*folder)};
    }
  }
  return std::nullopt;
}

}  // namespace vexa
