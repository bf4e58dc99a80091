#include "hodograph/comparison.h"

#include <array>
#include <system_error>
#include <utility>

#include "core/files.h"
#include "core/numbers.h"
#include "core/platform.h"
#include "core/user_file.h"

namespace vexa::hodograph {
namespace {

constexpr std::string_view kUnused = "empty";
constexpr std::string_view kLineEnd = "\r\n";

std::optional<Fault> MakeFolder(const std::filesystem::path& root) {
  const std::filesystem::path folder = root / kCalculationsFolder;
  const std::error_code error = MakeFolders(folder);
  if (error) {
    return Fault{FaultNumber(error), "SaveCalculation",
                 TextFromPath(folder) + ": " + error.message()};
  }
  return std::nullopt;
}

std::optional<Fault> SaveCalculation(const std::filesystem::path& root, std::string_view name,
                                     std::string_view text) {
  if (auto fault = MakeFolder(root)) return fault;
  return SaveFile(root / kCalculationsFolder / name, text);
}

std::optional<Fault> SaveSlot(const std::filesystem::path& root, int slot, std::string_view text) {
  if (auto fault = MakeFolder(root)) return fault;
  return SaveUserFile(root / kCalculationsFolder / ComparisonFile(slot), text,
                      [slot](std::string_view before) {
                        const auto read = ParseComparison(before, slot);
                        return read ? std::string() : read.Error().Detail;
                      });
}

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::optional<ProfileWind> ParseWind(std::string_view line) {
  std::array<double, 3> values{};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t comma = line.find(',');
    if ((comma == std::string_view::npos) != (i + 1 == values.size())) return std::nullopt;
    const std::optional<double> value = ParseNumber(line.substr(0, comma));
    if (!value) return std::nullopt;
    values[i] = *value;
    if (comma != std::string_view::npos) line.remove_prefix(comma + 1);
  }
  if (values[1] < 0 || values[1] > 360 || values[2] < 0) return std::nullopt;
  return ProfileWind{values[0], analysis::Components({values[1], values[2]})};
}

}  // namespace

std::string ComparisonFile(int slot) {
  return "Compare " + Shortest(slot) + ".dat";
}

std::string ComparisonText(const SoundingRecord& sounding) {
  // The title must not be taken for an unused slot.
  const std::string_view title = Trim(sounding.StationTitle);
  std::string text(title == kUnused || title.empty() ? std::string_view("Sounding") : title);
  text += kLineEnd;
  for (const ProfileWind& level : WindProfile(sounding, {})) {
    const analysis::Wind wind = analysis::FromComponents(level.Vector);
    text += Shortest(Rounded(level.Height, 1)) + "," + Shortest(Rounded(wind.Dir, 1)) + "," +
            Shortest(Rounded(wind.Spd, 2)) + std::string(kLineEnd);
  }
  return text;
}

std::string EmptyComparisonText() {
  return std::string(kUnused) + std::string(kLineEnd);
}

Outcome<std::optional<ComparedWinds>> ParseComparison(std::string_view text, int slot) {
  const std::string_view title = Trim(TakeLine(text));
  if (title.empty() || title == kUnused) return std::optional<ComparedWinds>();
  ComparedWinds compared{.Slot = slot, .Title = std::string(title)};
  for (int line = 2; !text.empty(); ++line) {
    const std::string_view row = TakeLine(text);
    if (Trim(row).empty()) continue;
    const std::optional<ProfileWind> wind = ParseWind(row);
    const bool rises =
        compared.Winds.empty() || (wind && wind->Height > compared.Winds.back().Height);
    if (!wind || !rises) {
      return Fault{kFaultFormat, "ParseComparison",
                   ComparisonFile(slot) + ", line " + Shortest(line) +
                       (wind ? ": the heights do not rise" : ": no height, direction and speed")};
    }
    compared.Winds.push_back(*wind);
  }
  return std::optional<ComparedWinds>(std::move(compared));
}

std::optional<Fault> KeepComparison(const std::filesystem::path& root, int slot,
                                    const SoundingRecord& sounding) {
  return SaveSlot(root, slot, ComparisonText(sounding));
}

std::optional<Fault> EmptyComparison(const std::filesystem::path& root, int slot) {
  return SaveSlot(root, slot, EmptyComparisonText());
}

std::vector<ComparedWinds> LoadComparisons(const std::filesystem::path& root,
                                           std::vector<Fault>& faults) {
  std::vector<ComparedWinds> loaded;
  for (int slot = 1; slot <= kComparisonSlots; ++slot) {
    const Outcome<std::string> text = ReadFile(root / kCalculationsFolder / ComparisonFile(slot));
    if (!text) {
      if (text.Error().Number != kFaultFileNotFound) faults.push_back(text.Error());
      continue;
    }
    Outcome<std::optional<ComparedWinds>> parsed = ParseComparison(text.Value(), slot);
    if (!parsed) {
      faults.push_back(parsed.Error());
    } else if (parsed.Value()) {
      loaded.push_back(std::move(*parsed.Value()));
    }
  }
  return loaded;
}

std::optional<Fault> SaveListings(const std::filesystem::path& root, const SoundingRecord& sounding,
                                  std::string_view windTable) {
  if (auto fault = SaveCalculation(root, kCurrentWindsFile, ComparisonText(sounding))) return fault;
  return SaveCalculation(root, kWindTableFile, windTable);
}

}  // namespace vexa::hodograph
