#include "output/print_pages.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <vector>

#include "picture/layout.h"

namespace vexa::output {
namespace {

constexpr double kMonoAdvance = 0.6;  // width of a letter by its size

constexpr PageSizePt kPaperSizes[] = {{612, 792}, {612, 1008}, {595, 842}};

constexpr Color kPaperColor{255, 255, 255};

constexpr std::string_view kHeader = "header";
constexpr std::string_view kContent = "content";

// A sheet of paper: header lines, where there are any, and the room of the content.
PageLayout CutSheet(const PrintSetup& setup, double headerPt = 0) {
  const PageSizePt size = SizeOf(setup);
  std::vector<RegionRow> rows = {{.Name = kContent, .At = Place::Main}};
  if (headerPt > 0) {
    rows.push_back({.Name = kHeader, .At = Place::Above, .LeastHeight = headerPt * kUnitsPerPoint});
  }
  return CutPage(PaperSurface(size.Width, size.Height), rows, kMarginPt * kUnitsPerPoint);
}

Picture BlankPage(const PageLayout& sheet) {
  return {sheet.Page.Width(), sheet.Page.Height(), kPaperColor};
}

// Number of characters, not bytes.
std::size_t Characters(std::string_view line) {
  return static_cast<std::size_t>(std::ranges::count_if(
      line, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// Size of the letters in points with which the longest line fits.
double LetterSize(const ListingLines& listing, const ListingLines& header, double widthPt) {
  std::size_t longest = 1;
  for (const ListingLines* lines : {&listing, &header}) {
    for (const std::string& line : *lines) longest = std::max(longest, Characters(line));
  }
  return std::clamp(widthPt / (kMonoAdvance * static_cast<double>(longest)), kLeastPt, kListingPt);
}

// The lines cut where letters of kLeastPt fill the width, at a blank if there is one; what comes
// behind it is indented.
ListingLines Folded(const ListingLines& lines, double widthPt) {
  constexpr std::string_view kIndent = "    ";
  const auto most =
      std::max(2 * kIndent.size(), static_cast<std::size_t>(widthPt / (kMonoAdvance * kLeastPt)));
  ListingLines folded;
  for (std::string rest : lines) {
    while (Characters(rest) > most) {
      std::size_t end = 0;  // bytes of as many letters as fit
      for (std::size_t letters = 0; letters < most; ++letters) {
        do {
          ++end;
        } while (end < rest.size() && (static_cast<unsigned char>(rest[end]) & 0xC0) == 0x80);
      }
      const std::size_t blank = rest.rfind(' ', end);
      const std::size_t text = rest.find_first_not_of(' ');
      if (blank != rest.npos && blank > text + kIndent.size()) end = blank;
      folded.push_back(rest.substr(0, end));
      const std::size_t next = std::min(rest.find_first_not_of(' ', end), rest.size());
      rest = std::string(kIndent) + rest.substr(next);
    }
    folded.push_back(rest);
  }
  return folded;
}

void PutLines(Picture& page, const Rect& region, const ListingLines& lines, double sizePt) {
  double y = region.Top;
  for (const std::string& line : lines) {
    if (!line.empty()) {
      page.Add("listing", Label{.At = {region.Left, y},
                                .Text = line,
                                .Down = AnchorY::Top,
                                .Size = sizePt * kUnitsPerPoint,
                                .Font = Face::Mono,
                                .Ink = {0, 0, 0}});
    }
    y += sizePt * kLeadingShare * kUnitsPerPoint;
  }
}

}  // namespace

PageSizePt SizeOf(const PrintSetup& setup) {
  PageSizePt size = kPaperSizes[static_cast<std::size_t>(setup.Sheet)];
  if (setup.Turn == Orientation::Landscape) std::swap(size.Width, size.Height);
  return size;
}

namespace {

// Letters of the header over a display, points.
double HeaderLetters(const ListingLines& header, double widthPt) {
  return LetterSize({}, header, widthPt);
}

double WidthPt(const PrintSetup& setup) {
  return SizeOf(setup).Width - 2 * kMarginPt;
}

PageLayout CutUnder(const ListingLines& header, const PrintSetup& setup) {
  const double step = HeaderLetters(header, WidthPt(setup)) * kLeadingShare;
  return CutSheet(setup, static_cast<double>(header.size()) * step);
}

}  // namespace

Surface DisplayRoom(const ListingLines& header, const PrintSetup& setup) {
  const Rect room = *CutUnder(header, setup).Find(kContent);
  return {room.Width(), room.Height(), Medium::Paper};
}

Picture DisplayPage(const Picture& display, const ListingLines& header, const PrintSetup& setup) {
  const PageLayout sheet = CutUnder(header, setup);
  Picture page = BlankPage(sheet);
  if (const Rect* lines = sheet.Find(kHeader)) {
    PutLines(page, *lines, header, HeaderLetters(header, WidthPt(setup)));
  }
  page.Add("display", Inset{.Place = *sheet.Find(kContent), .Content = display});
  return page;
}

std::vector<Picture> ListingPages(const ListingLines& listing, const ListingLines& header,
                                  const PrintSetup& setup, int headLines) {
  const PageLayout sheet = CutSheet(setup);
  const Rect room = *sheet.Find(kContent);
  const double width = room.Width() / kUnitsPerPoint;
  const ListingLines foldedHeader = Folded(header, width);
  const ListingLines folded = Folded(listing, width);
  const auto heads = listing.begin() + std::min<std::ptrdiff_t>(headLines, std::ssize(listing));
  const auto foldedHeads = Folded({listing.begin(), heads}, width).size();
  const double letters = LetterSize(folded, foldedHeader, width);
  const double step = letters * kLeadingShare * kUnitsPerPoint;
  const auto linesPerPage = static_cast<int>(std::floor(room.Height() / step + 1e-9));
  std::vector<Picture> pages;
  for (const ListingLines& lines :
       Paginate(folded, foldedHeader, linesPerPage, static_cast<int>(foldedHeads))) {
    pages.push_back(BlankPage(sheet));
    PutLines(pages.back(), room, lines, letters);
  }
  return pages;
}

std::vector<Picture> PagesOfListings(std::span<const ListingRow* const> rows,
                                     const ListingSource& from, const PrintSetup& setup) {
  const ListingLines header = PageHeader(from, setup.Header);
  std::vector<Picture> pages;
  for (const ListingRow* row : rows) {
    for (Picture& page : ListingPages(row->Make(from), header, setup, row->HeadLines)) {
      pages.push_back(std::move(page));
    }
  }
  return pages;
}

}  // namespace vexa::output
