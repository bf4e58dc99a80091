#include "picture/layout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

namespace vexa {
namespace {

// The side block beside the main region must leave it this wide for its height; a second column is
// for pages that are wide without it.
constexpr double kLeastAspect = 0.75;
constexpr double kTwoColumnAspect = 1.3;
// Beneath it, the block takes no more of the page than this, by the page's height for its width.
constexpr double kBeneathShare = 0.4;
constexpr double kLeastBeneath = 0.3;
constexpr double kMostBeneath = 0.45;
constexpr double kPackStep = 10 * kUnitsPerPixel;
// A side column widens with the page, up to this many times its least width.
constexpr double kColumnShare = 0.275;
constexpr double kMostWidening = 1.55;
constexpr double kMostWideningOfTwo = 2.4;
// Of a side column, for the pictures in it before boxes of values take more than their least.
constexpr double kPictureShare = 0.4;
// A main region gains nothing by being wider or higher than this.
constexpr double kUsefulWide = 1.3;
constexpr double kUsefulHigh = 1.2;

enum class Arrangement { OneColumn, TwoColumns, Beneath };

using Rows = std::vector<RegionRow>;

bool IsAt(const RegionRow& row, Place place) {
  return row.At == place;
}

Rows RowsAt(const Rows& rows, Place place) {
  Rows found;
  std::ranges::copy_if(rows, std::back_inserter(found),
                       [place](const RegionRow& row) { return IsAt(row, place); });
  return found;
}

/// Boxes in columns of a height, in their order; empty when they do not fit.
std::optional<std::vector<Rows>> Pack(const Rows& boxes, int columns, double height) {
  std::vector<Rows> packed(1);
  double used = 0;
  for (const RegionRow& box : boxes) {
    const double needed = box.LeastHeight + (packed.back().empty() ? 0 : kRegionGap);
    if (!packed.back().empty() && used + needed > height) {
      packed.emplace_back();
      used = 0;
    }
    if (box.LeastHeight > height) return std::nullopt;
    used += box.LeastHeight + (packed.back().empty() ? 0 : kRegionGap);
    packed.back().push_back(box);
  }
  if (static_cast<int>(packed.size()) > columns) return std::nullopt;
  return packed;
}

/// Gives the boxes of one column their places; what is left over goes to those that stretch.
void FillColumn(const Rows& boxes, const Rect& column, std::vector<Region>& regions) {
  std::vector<double> heights;
  double spare = column.Height() - kRegionGap * (static_cast<double>(boxes.size()) - 1);
  for (const RegionRow& box : boxes) {
    heights.push_back(box.LeastHeight);
    spare -= box.LeastHeight;
  }
  // A picture first grows to its share of the column, then boxes of values to all that they have to
  // say, then the picture to its width.
  const auto most = [&](std::size_t i, double squares) {
    if (boxes[i].Stretch <= 0) return heights[i];
    if (boxes[i].IsSquare) return std::max(heights[i], std::min(column.Width(), squares));
    return boxes[i].MostHeight > 0 ? std::max(heights[i], boxes[i].MostHeight) : column.Height();
  };
  struct Phase {
    bool IsOfSquares;
    double MostSquare;
  };
  for (const Phase& phase : {Phase{true, kPictureShare * column.Height()}, Phase{false, 0},
                             Phase{true, column.Height()}}) {
    // What one leaves goes to the others.
    for (bool grows = true; grows;) {
      grows = false;
      double shares = 0;
      for (std::size_t i = 0; i < boxes.size(); ++i) {
        const bool joins = boxes[i].IsSquare == phase.IsOfSquares;
        if (joins && heights[i] < most(i, phase.MostSquare)) shares += boxes[i].Stretch;
      }
      const double room = std::max(0.0, spare);
      for (std::size_t i = 0; i < boxes.size(); ++i) {
        const double end = most(i, phase.MostSquare);
        if (boxes[i].IsSquare != phase.IsOfSquares || heights[i] >= end) continue;
        const double more = std::min(room * boxes[i].Stretch / shares, end - heights[i]);
        grows = grows || (more > 1 && more == end - heights[i]);
        heights[i] += more;
        spare -= more;
      }
    }
  }
  double y = column.Top;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    regions.push_back({boxes[i].Name, {column.Left, y, column.Right, y + heights[i]}});
    y += heights[i] + kRegionGap;
  }
}

void FillBlock(const std::vector<Rows>& packed, const Rect& block, std::vector<Region>& regions) {
  const auto columns = static_cast<double>(packed.size());
  const double width = (block.Width() - kRegionGap * (columns - 1)) / columns;
  double left = block.Left;
  for (const Rows& boxes : packed) {
    FillColumn(boxes, {left, block.Top, left + width, block.Bottom}, regions);
    left += width + kRegionGap;
  }
}

struct Cut {
  std::vector<Region> Regions{};
  Rect Main{};
};

// A height taken off one end of a rectangle, with the gap to the rest.
Rect TakeTop(Rect& from, double height) {
  const Rect taken{from.Left, from.Top, from.Right, from.Top + height};
  from.Top = taken.Bottom + kRegionGap;
  return taken;
}
Rect TakeBottom(Rect& from, double height) {
  const Rect taken{from.Left, from.Bottom - height, from.Right, from.Bottom};
  from.Bottom = taken.Top - kRegionGap;
  return taken;
}
Rect TakeRight(Rect& from, double width) {
  const Rect taken{from.Right - width, from.Top, from.Right, from.Bottom};
  from.Right = taken.Left - kRegionGap;
  return taken;
}

double WidestOf(const Rows& boxes) {
  double width = 0;
  for (const RegionRow& row : boxes) width = std::max(width, row.LeastWidth);
  return width;
}

// The side block beneath the rest: as low as its boxes allow.
bool CutBeneath(const Rows& boxes, double most, Rect& rest, std::vector<Region>& regions) {
  const double width = rest.Width() + kRegionGap;
  const int columns = std::clamp(static_cast<int>(width / (WidestOf(boxes) + kRegionGap)), 1,
                                 static_cast<int>(boxes.size()));
  double height = 0;
  for (const RegionRow& box : boxes) height = std::max(height, box.LeastHeight);
  for (; height <= most; height += kPackStep) {
    const auto packed = Pack(boxes, columns, height);
    if (!packed) continue;
    FillBlock(*packed, TakeBottom(rest, height), regions);
    return true;
  }
  return false;
}

// The side block right of the rest; two columns share the boxes evenly. It widens with the page, so
// much of what it may.
bool CutBesides(const Rows& boxes, int columns, double pageWidth, double widened, Rect& rest,
                std::vector<Region>& regions) {
  const double least = WidestOf(boxes);
  const double widening = columns == 1 ? kMostWidening : kMostWideningOfTwo;
  const double widest = std::clamp(kColumnShare * pageWidth, least, widening * least);
  const double width = least + widened * (widest - least);
  double needed = 0;
  for (const RegionRow& box : boxes) needed += box.LeastHeight + kRegionGap;
  std::optional<std::vector<Rows>> packed;
  for (double height = std::min(needed / columns, rest.Height()); !packed;
       height = std::min(height + kPackStep, rest.Height())) {
    packed = Pack(boxes, columns, height);
    if (!packed && height >= rest.Height()) return false;
  }
  const auto used = static_cast<double>(packed->size());
  const double block = used * width + (used - 1) * kRegionGap;
  if (block > rest.Width()) return false;
  FillBlock(*packed, TakeRight(rest, block), regions);
  return true;
}

/// The page cut for these rows; empty when they do not fit.
std::optional<Cut> TryCut(const Rect& page, const Rows& rows, Arrangement arrangement,
                          double widened) {
  Cut cut;
  Rect rest = page;
  const auto takeFoot = [&] {
    for (const RegionRow& row : RowsAt(rows, Place::Foot)) {
      cut.Regions.push_back({row.Name, TakeBottom(rest, row.LeastHeight)});
    }
  };
  const Rows boxes = RowsAt(rows, Place::Side);
  if (arrangement == Arrangement::Beneath) takeFoot();
  bool isBeside = false;
  if (!boxes.empty() && arrangement == Arrangement::Beneath) {
    const double share =
        std::clamp(kBeneathShare * page.Height() / page.Width(), kLeastBeneath, kMostBeneath);
    if (!CutBeneath(boxes, share * page.Height(), rest, cut.Regions)) return std::nullopt;
  } else if (!boxes.empty()) {
    const int columns = arrangement == Arrangement::TwoColumns ? 2 : 1;
    if (!CutBesides(boxes, columns, page.Width(), widened, rest, cut.Regions)) {
      return std::nullopt;
    }
    isBeside = true;
  }
  // Boxes beside go down to the page's edge.
  if (arrangement != Arrangement::Beneath) takeFoot();
  for (const RegionRow& row : RowsAt(rows, Place::Above)) {
    cut.Regions.push_back({row.Name, TakeTop(rest, row.LeastHeight)});
  }
  // The first of them stands next to the main region.
  const Rows under = RowsAt(rows, Place::Under);
  for (auto row = under.rbegin(); row != under.rend(); ++row) {
    cut.Regions.push_back({row->Name, TakeBottom(rest, row->LeastHeight)});
  }
  const Rows beside = RowsAt(rows, Place::Beside);
  for (auto row = beside.rbegin(); row != beside.rend(); ++row) {
    cut.Regions.push_back({row->Name, TakeRight(rest, row->LeastWidth)});
  }
  const Rows mains = RowsAt(rows, Place::Main);
  for (const RegionRow& row : mains) {
    if (rest.Width() < row.LeastWidth || rest.Height() < row.LeastHeight) return std::nullopt;
    cut.Regions.push_back({row.Name, rest});
  }
  double least = 0;
  if (isBeside) {
    least = arrangement == Arrangement::TwoColumns ? kTwoColumnAspect : kLeastAspect;
  }
  for (const RegionRow& row : beside) least = std::max(least, row.MainAspect);
  if (rest.Width() < least * rest.Height()) return std::nullopt;
  cut.Main = rest;
  return cut;
}

/// The same with a side block that is as wide as the main region allows.
std::optional<Cut> TryCut(const Rect& page, const Rows& rows, Arrangement arrangement) {
  for (const double widened : {1.0, 0.5, 0.0}) {
    if (auto cut = TryCut(page, rows, arrangement, widened)) return cut;
    if (arrangement == Arrangement::Beneath) break;
  }
  return std::nullopt;
}

double UsefulArea(const Rect& main) {
  return std::min(main.Width(), kUsefulWide * main.Height()) *
         std::min(main.Height(), kUsefulHigh * main.Width());
}

struct Arranged {
  Rows Kept{};
  Cut Made{};
};

/// As many of the rows as fit, the important ones first.
Arranged Arrange(const Rect& page, std::span<const RegionRow> rows, Arrangement arrangement) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < rows.size(); ++i) order.push_back(i);
  std::ranges::stable_sort(
      order, {}, [&](std::size_t i) { return IsAt(rows[i], Place::Main) ? -1 : rows[i].Priority; });
  std::vector<bool> kept(rows.size(), false);
  const auto chosen = [&] {
    Rows some;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (kept[i]) some.push_back(rows[i]);
    }
    return some;
  };
  Arranged best;
  for (const std::size_t i : order) {
    kept[i] = true;
    std::optional<Cut> cut = TryCut(page, chosen(), arrangement);
    if (cut) {
      best = {chosen(), std::move(*cut)};
    } else if (IsAt(rows[i], Place::Main)) {
      // A page below the least size is all its main region's.
      best = {chosen(), {{{rows[i].Name, page}}, page}};
      return best;
    } else {
      kept[i] = false;
    }
  }
  return best;
}

// A region more is worth this share of the page for the main one.
constexpr double kRegionWorth = 0.3;

// On a page wider than this for its height boxes beneath would flatten the main region: they go
// there only when two of them found no room at its side.
constexpr double kWide = 1.4;

double Worth(const Arranged& made, const Rect& page) {
  return UsefulArea(made.Made.Main) / (page.Width() * page.Height()) +
         kRegionWorth * static_cast<double>(made.Kept.size());
}

bool Has(const Rows& rows, std::string_view name) {
  return std::ranges::any_of(rows, [name](const RegionRow& row) { return row.Name == name; });
}

}  // namespace

const Rect* PageLayout::Find(std::string_view name) const {
  const auto found = std::ranges::find(Regions, name, &Region::Name);
  return found == Regions.end() ? nullptr : &found->Where;
}

PageLayout CutPage(const Surface& surface, std::span<const RegionRow> rows, double margin) {
  PageLayout layout;
  layout.Page = {0, 0, surface.Width, surface.Height};
  margin = std::min({margin, surface.Width / 4, surface.Height / 4});
  const Rect inside{margin, margin, surface.Width - margin, surface.Height - margin};
  std::optional<Arranged> best;
  double mostWorth = 0;
  for (const Arrangement arrangement :
       {Arrangement::TwoColumns, Arrangement::OneColumn, Arrangement::Beneath}) {
    Arranged made = Arrange(inside, rows, arrangement);
    double worth = Worth(made, inside);
    if (arrangement == Arrangement::Beneath && inside.Width() > kWide * inside.Height()) {
      worth -= kRegionWorth;
    }
    if (best && worth <= mostWorth) continue;
    best = std::move(made);
    mostWorth = worth;
  }
  for (const RegionRow& row : rows) {
    if (!Has(best->Kept, row.Name)) {
      layout.LeftOut.push_back(row);
      continue;
    }
    layout.Regions.push_back(*std::ranges::find(best->Made.Regions, row.Name, &Region::Name));
  }
  return layout;
}

std::string LeftOutText(const PageLayout& layout) {
  std::string text;
  for (const RegionRow& row : layout.LeftOut) {
    if (row.Caption.empty()) continue;
    text += text.empty() ? "Not shown: " : ", ";
    text += row.Caption;
    if (!row.Elsewhere.empty()) text += " (" + std::string(row.Elsewhere) + ")";
  }
  return text;
}

std::vector<RegionRow> RowsFor(std::span<const RegionRow> rows, std::span<const PageBox> boxes) {
  std::vector<RegionRow> shown;
  for (RegionRow row : rows) {
    if (IsAt(row, Place::Side)) {
      const auto box = std::ranges::find(boxes, row.Name, &PageBox::Name);
      if (box == boxes.end()) continue;
      if (box->LeastHeight > 0) row.LeastHeight = box->LeastHeight;
      if (box->MostHeight > 0) {
        row.MostHeight = box->MostHeight;
        row.LeastHeight = std::min(row.LeastHeight, row.MostHeight);
      }
    }
    shown.push_back(row);
  }
  return shown;
}

}  // namespace vexa
