// The stations that a program knows, found in the locator file when a sounding asks for them: most
// name their stations themselves, and the others need one of thousands.
#pragma once

#include <filesystem>

#include "core/station_list.h"

namespace vexa {

/// Whether a locator file is, byte for byte, the one that comes with the program: that is without
/// faults.
bool IsAsShipped(const std::filesystem::path& file, const std::filesystem::path& programFolder);

/// The list of the root folder, else the shipped one, else empty. It is read when it is first
/// looked into; single stations of a list that is as shipped are found without. Its faults are not
/// told of.
StationList KnownStations(const std::filesystem::path& root,
                          const std::filesystem::path& programFolder);

}  // namespace vexa
