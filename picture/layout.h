// Cuts a page into named regions by a small table. One region is the main one and takes what the
// others leave; strips stand above and under it, columns beside it, boxes in a side block that goes
// right of it on a wide page and beneath it on a tall one. What finds no room at its least size is
// left out, the least important first, and named.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa {

/// Where a region goes.
enum class Place {
  Main,    // the one that takes what is left
  Above,   // a strip over the main region
  Under,   // a strip under it
  Beside,  // a column at its right, as high as it
  Side,    // a box of the side block
  Foot     // a strip along the lower edge, beside which the side block goes on
};

/// Heights of strips and widths of columns are their least sizes; boxes are as wide as their block
/// makes them.
struct RegionRow {
  std::string_view Name{};
  Place At = Place::Main;
  double LeastWidth = 0;  // drawing units
  double LeastHeight = 0;
  int Priority = 0;  // 0 stays longest
  /// Share of the room that is left over in a box's column; 0 keeps the least height.
  double Stretch = 0;
  double MostHeight = 0;  // of all that a box has to say: it stretches no further; 0 knows no end
  bool IsSquare = false;  // stretches behind the others, and no further than its width
  double MainAspect = 0;  // a column stays only where the main region is so wide for its height
  std::string_view Caption{};    // in the line of what is left out
  std::string_view Elsewhere{};  // where the same is told when it is left out, "F4"
};

struct Region {
  std::string_view Name{};
  Rect Where{};
};

struct PageLayout {
  Rect Page{};
  std::vector<Region> Regions{};     // those on the page, in the order of the table
  std::vector<RegionRow> LeftOut{};  // in the order of the table

  /// Place of a region; null when it is not on the page.
  const Rect* Find(std::string_view name) const;
};

inline constexpr double kPageMargin = 10 * kUnitsPerPixel;
inline constexpr double kRegionGap = 8 * kUnitsPerPixel;

/// The page of this size cut by these rows, of which one is the main region, within a margin.
PageLayout CutPage(const Surface& surface, std::span<const RegionRow> rows,
                   double margin = kPageMargin);

/// What is left out and where it is told: "Not shown: indices (F4), hodograph (Ctrl+H)"; empty when
/// all is there. Regions without a caption are not missed.
std::string LeftOutText(const PageLayout& layout);

/// A box that another folder fills: drawn into its region of the page.
struct PageBox {
  std::string_view Name{};  // of its region
  std::function<void(Picture&, const Rect&)> Draw{};
  double LeastHeight = 0;  // 0: as the table of regions has it
  double MostHeight = 0;   // with which all of it is shown; 0: as the table has it
};

/// The rows of a layout without the side boxes that nobody fills, with the heights that the others
/// need.
std::vector<RegionRow> RowsFor(std::span<const RegionRow> rows, std::span<const PageBox> boxes);

}  // namespace vexa
