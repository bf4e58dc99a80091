// The seven listings of a sounding: text in a fixed-width face, prepared as files in the program's
// folder and printed from them. A line "NEWPAGE" begins a new page.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "config/display_settings.h"
#include "core/fault.h"
#include "core/sounding_record.h"
#include "mountainwave/mountain.h"

namespace vexa::output {

enum class Listing { Summary, Complete, Interval, Analyses, Weather, Indices, Cape };

inline constexpr std::string_view kNewPage = "NEWPAGE";

/// What a listing is made from.
struct ListingSource {
  const SoundingRecord& Sounding;
  const analysis::AnalysisResults& Results;
  const DisplaySettings& Set;
  /// For the waves; not told: the sounding's own.
  std::optional<mountainwave::Site> Mountains{};
};

using ListingLines = std::vector<std::string>;

struct ListingRow {
  Listing Which;
  std::string_view Name;      // "SummaryData"
  std::string_view Word;      // "summary", on the command line
  std::string_view File;      // of the prepared text
  std::string_view PageFile;  // of the text as it is printed, with its header; empty: none
  ListingLines (*Make)(const ListingSource& from);
  int HeadLines = 0;  // above its columns, repeated on each page
};

/// All seven in their order.
std::span<const ListingRow> Listings();
const ListingRow* FindListing(std::string_view word);

/// What the header of a printed page tells besides the title.
struct PageHeaderChoices {
  bool DataType = true;     // and the number of data levels
  bool Coordinates = true;  // and the elevation
};

/// The lines above each printed page: "VEXA:  TITLE  //  TIME" and what was chosen, the time being
/// that of the observation.
ListingLines PageHeader(const ListingSource& from, const PageHeaderChoices& choices);

/// A listing as pages of at most so many lines, each under the header and a blank line; a page ends
/// at "NEWPAGE" too, which is not among the lines. The first `headLines` of the listing stand on
/// every page that goes on with its columns.
std::vector<ListingLines> Paginate(const ListingLines& listing, const ListingLines& header,
                                   int linesPerPage, int headLines = 0);

/// Lines with their ends, CR LF.
std::string ListingFileText(const ListingLines& lines);

/// Writes a listing's file, and that of its pages, into a folder.
[[nodiscard]] std::optional<Fault> PrepareListing(const ListingRow& row, const ListingSource& from,
                                                  const PageHeaderChoices& choices,
                                                  const std::filesystem::path& folder);

/// The makers of the table's rows.
ListingLines SummaryListing(const ListingSource& from);
ListingLines CompleteListing(const ListingSource& from);
ListingLines IntervalListing(const ListingSource& from);
ListingLines AnalysesListing(const ListingSource& from);
ListingLines WeatherListing(const ListingSource& from);
ListingLines IndicesListing(const ListingSource& from);
ListingLines CapeListing(const ListingSource& from);

}  // namespace vexa::output
