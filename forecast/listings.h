// The soundings around a station as lists: those that the windows show, and the working files of a
// search, in which another program or a look into the folder finds what it came to.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/files.h"
#include "forecast/region.h"
#include "forecast/series.h"

namespace vexa::forecast {

inline constexpr std::string_view kListHeader =
    "    #          Sounding                        Bearing Range(km)(nm)";
inline constexpr std::string_view kListRule =
    "-----  --------------------------------------- ------- --------------";
inline constexpr std::string_view kUpwindMark = "   *  ";

/// "Nearby soundings:", header, rule and a row for each, upwind ones marked behind it; then "Upwind
/// soundings:" with those alone, under their numbers, or "No upwind data.".
std::vector<std::string> RegionListing(const Region& region);

/// A row of the lists. Its number is from 1.
std::string ListRow(const Neighbour& neighbour, std::size_t number);

/// What an hour was made of: rate, direction, way and the weights under the numbers of the list.
std::string StepText(const ForecastStep& step);

inline constexpr std::string_view kWorkFolder = "ForecastHodoFilesVEXA";
inline constexpr std::string_view kFoundInRange = "InRangE.txt";  // those within the radius, listed
inline constexpr std::string_view kFoundFiles = "InRangX.txt";    // the same as records
inline constexpr std::string_view kCandidates = "InRange.txt";  // those that a forecast is made of
inline constexpr std::string_view kCandidatesElse = "InRangU.txt";  // where that is kFoundInRange

/// Writes the three. On file systems that don't tell capitals from small letters the list would be
/// the candidates' file: there these have a name of their own.
[[nodiscard]] std::optional<Fault> SaveWorkFiles(const std::filesystem::path& folder,
                                                 const Region& region,
                                                 FileOps& ops = SystemFileOps());

}  // namespace vexa::forecast
