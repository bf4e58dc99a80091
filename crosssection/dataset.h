// Cross-section datasets: files that hold a whole section, and what is said of those that cannot be
// used.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/interaction.h"
#include "core/sounding_record.h"
#include "crosssection/column.h"

namespace vexa::crosssection {

inline constexpr std::string_view kDatasetTag = "VEXA 5.6";
inline constexpr std::string_view kDatasetWord = "CROSS-SECTION";
/// Lists the files that the last dataset's soundings came from.
inline constexpr std::string_view kDatasetListFile = "VEXAFILEX.LST";

/// What a dataset's file holds: what cannot be computed of a section.
struct Dataset {
  SectionKind Kind = SectionKind::Distance;
  SectionDirection Direction = SectionDirection::Forward;
  struct Member {
    SoundingRecord Sounding{};
    std::string Source{};
    bool operator==(const Member&) const = default;
  };
  std::vector<Member> Members{};
  bool operator==(const Dataset&) const = default;
};

/// The soundings of a section as they were given; interpolated ones are left out, as they come
/// again by themselves.
Dataset DatasetOf(const Section& section);

/// The text of a dataset's file: the header, the kind, the direction and the number of soundings;
/// then of each its name and source, station number, position, elevation and time, the numbers of
/// its levels, and these.
std::string Write(const Dataset& dataset);

/// Why a file is no dataset that can be used.
enum class DatasetRefusal { None, OlderVersion, NewerVersion, NoDataset, Damaged };

struct DatasetRead {
  DatasetRefusal Why = DatasetRefusal::None;
  Dataset Held{};
  std::string Place{};  // of the damage: file, line and reason
};
DatasetRead ReadDataset(const std::string& text, std::string_view name);

/// The box that refuses a file; `name` without its folder.
Box RefusalBox(DatasetRefusal why, std::string_view name, std::string_view place = {});
/// The box for a dataset that is to be edited though an old version wrote it.
Box CannotEditBox(std::string_view name);
/// The box for sections that are kept in the folder of the soundings.
Box WrongFolderBox(const std::filesystem::path& folder);

/// Whether the folder of the datasets is that of the soundings.
bool SameFolder(const std::filesystem::path& datasets, const std::filesystem::path& soundings);

}  // namespace vexa::crosssection
