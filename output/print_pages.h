// Printed pages as pictures: a display set under its header, and listings in their fixed-width
// face. The printer, the PDF file and the preview all show these.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "output/listings.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::output {

enum class Paper { Letter, Legal, A4 };
enum class Orientation { Portrait, Landscape };

constexpr auto Words(Paper) {
  return std::to_array<std::string_view>({"Letter", "Legal", "A4"});
}
constexpr auto Words(Orientation) {
  return std::to_array<std::string_view>({"Portrait", "Landscape"});
}

/// What the user chose for printing.
struct PrintSetup {
  Paper Sheet = Paper::Letter;
  Orientation Turn = Orientation::Portrait;
  PageHeaderChoices Header{};
  bool AllListings = false;
  bool operator==(const PrintSetup& other) const {
    return Sheet == other.Sheet && Turn == other.Turn && AllListings == other.AllListings &&
           Header.DataType == other.Header.DataType &&
           Header.Coordinates == other.Header.Coordinates;
  }
};

/// Size of a page in points, 72 an inch, as it is read.
struct PageSizePt {
  double Width = 0;
  double Height = 0;
};
PageSizePt SizeOf(const PrintSetup& setup);

using vexa::kUnitsPerPoint;

inline constexpr double kMarginPt = 36;       // on every side
inline constexpr double kListingPt = 10;      // letters of listings, smaller for wide ones
inline constexpr double kLeastPt = 7;         // a line too long for these goes on in the next
inline constexpr double kLeadingShare = 1.2;  // distance of lines by letters

/// What the header lines leave of a page for a display.
Surface DisplayRoom(const ListingLines& header, const PrintSetup& setup);

/// A display under the header lines, as large as the page allows, in its own proportions.
Picture DisplayPage(const Picture& display, const ListingLines& header, const PrintSetup& setup);

/// A listing's pages; every line fits the width in letters of kLeastPt at least, broken where it
/// would not, and its first `headLines` head each page.
std::vector<Picture> ListingPages(const ListingLines& listing, const ListingLines& header,
                                  const PrintSetup& setup, int headLines = 0);

/// Everything that one print prints: the named listing, or all seven, of a sounding.
std::vector<Picture> PagesOfListings(std::span<const ListingRow* const> rows,
                                     const ListingSource& from, const PrintSetup& setup);

}  // namespace vexa::output
