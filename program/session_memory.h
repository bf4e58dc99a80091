// What the main window remembers from one session to the next besides the settings: which displays
// were shown, and the soundings that were opened together.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/fault.h"

namespace vexa {

inline constexpr std::string_view kAnalysisMemory = "VEXAanalysis.dat";
inline constexpr std::string_view kSoundingList = "DATM.LST";

/// The texts of a list file of the program folder, one a record; none when it is missing or is no
/// such file. A damaged one gives those ahead of the damage.
///
/// notes  where a sentence goes for a file that is damaged or cannot be read; null: nowhere
std::vector<std::string> ReadList(const std::filesystem::path& root, std::string_view name,
                                  std::vector<std::string>* notes = nullptr);

/// Writes them; an unchanged file is not touched. Faults as of SaveUserFile.
[[nodiscard]] std::optional<Fault> WriteList(const std::filesystem::path& root,
                                             std::string_view name,
                                             const std::vector<std::string>& texts);

}  // namespace vexa
