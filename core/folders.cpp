#include "core/folders.h"

#include "core/files.h"
#include "core/platform.h"

namespace vexa {
namespace fs = std::filesystem;

fs::path ResolveRoot(const std::optional<std::string>& rootArgument,
                     const fs::path& programFolder) {
  const auto absolute = [](const std::string& text) {
    std::error_code failed;
    const fs::path path = PathFromText(text);
    const fs::path whole = fs::absolute(path, failed);
    return failed ? path : whole;
  };
  if (rootArgument && !rootArgument->empty()) return absolute(*rootArgument);
  if (const std::optional<std::string> variable = EnvironmentText("VEXA_ROOT")) {
    return absolute(*variable);
  }
  std::error_code ignored;
  if (fs::exists(programFolder / "vexa.portable", ignored)) return programFolder;
  return UserDataFolder() / "vexa";
}

Folders FoldersBelow(const fs::path& root) {
  return Folders{root, root / "vexadata", root / "crosdata", root / "ExportData",
                 root / "ForecastData"};
}

std::optional<Fault> CreateFolders(const Folders& folders) {
  for (const fs::path* folder :
       {&folders.Root, &folders.Data, &folders.CrossSection, &folders.Export, &folders.Forecast}) {
    std::error_code failed;
    fs::create_directories(*folder, failed);
    if (failed || !fs::is_directory(*folder, failed)) {
      return Fault{kFaultPathAccess, "CreateFolders", TextFromPath(*folder)};
    }
  }
  return std::nullopt;
}

}  // namespace vexa
