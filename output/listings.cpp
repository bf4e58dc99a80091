#include "output/listings.h"

#include <algorithm>
#include <cmath>

#include "core/files.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "output/level_rows.h"

namespace vexa::output {
namespace {

// "Indixes.Dat" is spelled so.
constexpr ListingRow kListings[] = {
    {Listing::Summary, "SummaryData", "summary", "Summary.Dat", "", SummaryListing, 3},
    {Listing::Complete, "CompleteData", "complete", "Complete.Dat", "Completed.Dat",
     CompleteListing, 2},
    {Listing::Interval, "IntervalData", "interval", "Interval.Dat", "", IntervalListing, 2},
    {Listing::Analyses, "AnalysesData", "analyses", "Analyses.Dat", "Analysis.Dat",
     AnalysesListing},
    {Listing::Weather, "WeatherData", "weather", "Weather.Dat", "Weathered.Dat", WeatherListing},
    {Listing::Indices, "IndicesData", "indices", "Indices.Dat", "Indixes.Dat", IndicesListing},
    {Listing::Cape, "CAPEdata", "cape", "CAPEInterval.Dat", "", CapeListing, 2},
};

std::string Degrees(double signedDegrees, std::string_view hemisphere) {
  return Mask(std::fabs(signedDegrees), "##0.00") + " " + std::string(hemisphere);
}

}  // namespace

std::span<const ListingRow> Listings() {
  return kListings;
}

const ListingRow* FindListing(std::string_view word) {
  const auto* row = std::ranges::find(kListings, word, &ListingRow::Word);
  return row == std::end(kListings) ? nullptr : row;
}

ListingLines PageHeader(const ListingSource& from, const PageHeaderChoices& choices) {
  const SoundingRecord& sounding = from.Sounding;
  ListingLines lines = {
      "VEXA:  " + sounding.StationTitle + "  //  " +
      (sounding.Time.Known() ? TimeText(sounding.Time) + " UTC" : "time unknown")};
  if (choices.DataType) {
    const auto count = static_cast<int>(IntegrateLevels(sounding, from.Results).size());
    lines.push_back("Data type: " + sounding.DataFormat +
                    "     Integrated data levels: " + Shortest(count));
  }
  if (choices.Coordinates) {
    const bool isPlaced = !sounding.LatHemi.empty() && !sounding.LonHemi.empty();
    const std::string unknown = "unknown";
    lines.push_back(
        "Lat: " + (isPlaced ? Degrees(sounding.LatSigned, sounding.LatHemi) : unknown) + "  Lon: " +
        (isPlaced ? Degrees(sounding.LonSigned, sounding.LonHemi) : unknown) + "  Elev:" +
        (sounding.ElevUnknown ? " " + unknown : " " + Shortest(sounding.ElevM) + " meters"));
  }
  return lines;
}

std::vector<ListingLines> Paginate(const ListingLines& listing, const ListingLines& header,
                                   int linesPerPage, int headLines) {
  const std::size_t room = static_cast<std::size_t>(std::max(linesPerPage, 1));
  const std::size_t used = header.size() + 1;
  const std::size_t body =
      std::max(room > used ? room - used : 1, static_cast<std::size_t>(headLines) + 1);
  std::vector<ListingLines> pages;
  std::size_t onPage = body;  // none is begun
  const auto begin = [&] {
    pages.push_back(header);
    pages.back().emplace_back();
    onPage = 0;
  };
  bool isFresh = true;  // a table begins, with a head of its own
  ListingLines head;
  for (auto at = listing.begin(); at != listing.end(); ++at) {
    const std::string& line = *at;
    if (line == kNewPage) {
      onPage = body;
      isFresh = true;
      continue;
    }
    if (onPage >= body) {
      begin();
      if (isFresh) {
        head.assign(at, at + std::min<std::ptrdiff_t>(headLines, listing.end() - at));
      } else {
        pages.back().insert(pages.back().end(), head.begin(), head.end());
        onPage = head.size();
      }
      isFresh = false;
    }
    pages.back().push_back(line);
    ++onPage;
  }
  if (pages.empty()) begin();
  return pages;
}

std::string ListingFileText(const ListingLines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

std::optional<Fault> PrepareListing(const ListingRow& row, const ListingSource& from,
                                    const PageHeaderChoices& choices,
                                    const std::filesystem::path& folder) {
  ListingLines lines = row.Make(from);
  if (auto fault = SaveFile(folder / PathFromText(row.File), ListingFileText(lines))) return fault;
  if (row.PageFile.empty()) return std::nullopt;
  ListingLines printed = PageHeader(from, choices);
  printed.emplace_back();
  printed.insert(printed.end(), lines.begin(), lines.end());
  return SaveFile(folder / PathFromText(row.PageFile), ListingFileText(printed));
}

}  // namespace vexa::output
