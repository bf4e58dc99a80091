// The mountain file VEXA.MTN: for each station the ridge, or the two ridges, that its waves come
// from. Users edit it as text; the program only looks stations up.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/fault.h"
#include "core/interaction.h"
#include "mountainwave/mountain.h"

namespace vexa::mountainwave {

inline constexpr std::string_view kMountainFileName = "VEXA.MTN";

/// The message where the file is missing.
inline constexpr std::string_view kMountainFileMissing =
    "The VEXA.MTN data file could not be found.\n"
    "Be sure it is located in program directory ...  ";

inline constexpr int kEveryStation = -1;

/// What a file says of a station.
struct MountainLookup {
  Site Found{};                  // none: the station is not in the file
  std::optional<Fault> Wrong{};  // the detail names file, line and reason
};

/// Looks a station up in a file's text. The heading is 18 lines; when the last of them begins with
/// "NOTE:" two more follow, then a line whose text from the 10th character on is "feet" for feet
/// and nautical miles, else metres and kilometres, and one more. Old files lack these and are in
/// feet. Records follow, station number and seven values, up to the number 99999. Reading stops at
/// the station, so that a fault behind it does no harm.
///
/// station  WMO number; 0 finds nothing, kEveryStation what is wrong with any record
MountainLookup FindMountains(std::string_view text, std::string_view name, int station);

/// The same for the file of a program folder.
MountainLookup FindMountains(const std::filesystem::path& file, int station);

/// What tells the user of a file that could not be read.
Box MountainFileBox(const Fault& wrong);

/// The number of a sounding's station: its own, else the five figures that its title begins with,
/// as that of a native file does, which has no number. 0: none.
int StationOf(const SoundingRecord& sounding);

/// The mountains of a sounding: its own, else those of its station in the file; none means the
/// default mountain. A file that is missing or wrong gives none.
Site SiteOf(const SoundingRecord& sounding, const std::filesystem::path& file);

}  // namespace vexa::mountainwave
