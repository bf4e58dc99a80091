// Hodographs kept for comparison: two slots, each a file of the calculations folder with a title
// and a line of height, direction and speed per wind level, and the file of the current one.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/sounding_record.h"
#include "hodograph/wind_profile.h"
#include "picture/shapes.h"

namespace vexa::hodograph {

inline constexpr int kComparisonSlots = 2;
inline constexpr std::string_view kCalculationsFolder = "VEXAcalculations";
inline constexpr std::string_view kCurrentWindsFile = "HodoData.Dat";
inline constexpr std::string_view kWindTableFile = "HodoText.dat";

struct ComparedWinds {
  int Slot = 1;
  std::string Title{};
  std::vector<ProfileWind> Winds{};
  std::optional<Color> DiagramInk{};  // of its traces, when the diagram draws this sounding, too
};

/// "Compare 1.dat", "Compare 2.dat".
std::string ComparisonFile(int slot);

/// The winds of a sounding as such a file holds them: the title, then height above ground in m,
/// direction and speed in knots on every line; lines end in CR LF.
std::string ComparisonText(const SoundingRecord& sounding);

/// The text of an unused slot.
std::string EmptyComparisonText();

/// Reads such a text; nothing for an unused slot. Fault 1209 names the line that is no wind.
Outcome<std::optional<ComparedWinds>> ParseComparison(std::string_view text, int slot);

/// Keeps a sounding's winds in a slot, or empties it. Faults as of SaveUserFile.
[[nodiscard]] std::optional<Fault> KeepComparison(const std::filesystem::path& root, int slot,
                                                  const SoundingRecord& sounding);
[[nodiscard]] std::optional<Fault> EmptyComparison(const std::filesystem::path& root, int slot);

/// The slots in use. A file that is missing is an unused slot; one that cannot be read adds its
/// fault.
std::vector<ComparedWinds> LoadComparisons(const std::filesystem::path& root,
                                           std::vector<Fault>& faults);

/// Writes the current winds and the wind table to their files in the calculations folder.
[[nodiscard]] std::optional<Fault> SaveListings(const std::filesystem::path& root,
                                                const SoundingRecord& sounding,
                                                std::string_view windTable);

}  // namespace vexa::hodograph
