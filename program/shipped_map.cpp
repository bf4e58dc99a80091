#include "program/shipped_map.h"

#include <filesystem>
#include <string>
#include <utility>

#include "core/files.h"
#include "core/folders.h"
#include "core/platform.h"

namespace vexa {

const std::vector<map::MapLine>& ShippedMapLines() {
  static const std::vector<map::MapLine> kShipped = [] {
    const std::filesystem::path path = ShippedFile(ProgramFolder(), map::kLinesFile);
    const Outcome<std::string> bytes = ReadFile(path);
    if (!bytes) return std::vector<map::MapLine>{};
    auto lines = map::ReadLines(bytes.Value(), TextFromPath(path.filename()));
    return lines ? std::move(lines.Value()) : std::vector<map::MapLine>{};
  }();
  return kShipped;
}

}  // namespace vexa
