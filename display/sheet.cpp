#include "display/sheet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "core/numbers.h"
#include "picture/layout.h"
#include "picture/text_width.h"

namespace vexa::display {
namespace {

constexpr double kMargin = 2 * kPageMargin;
constexpr std::string_view kHead = "title";
constexpr std::string_view kBlocks = "blocks";
constexpr std::string_view kNote = "left out";
constexpr double kColumnGap = 32 * kUnitsPerPixel;
constexpr std::size_t kMostColumns = 6;
constexpr std::array<double, 4> kScales = {1.6, 1.4, 1.2, 1};
constexpr double kWidest = 1.6;  // columns take room that is left over, up to so many times theirs

double HeadHeight(double scale) {
  return (LetterSize(Type::Title) + 1.6 * LetterSize(Type::Label)) * scale;
}

// The head, the room of the blocks and, where rows are missing, the line that says so.
PageLayout CutSheet(const Surface& surface, double scale, bool isWhole = true) {
  std::vector<RegionRow> rows = {
      {.Name = kHead, .At = Place::Above, .LeastHeight = HeadHeight(scale)},
      {.Name = kBlocks, .At = Place::Main, .LeastHeight = 3 * kLineStep}};
  if (!isWhole) rows.push_back({.Name = kNote, .At = Place::Under, .LeastHeight = kLineStep});
  return CutPage(surface, rows, kMargin);
}

double ColumnWidth(const Sheet& sheet, double scale) {
  double width = 0;
  for (const SheetBlock& block : sheet.Blocks) width = std::max(width, WidthOf(block, scale));
  return width;
}

/// A part of a block that stands together in a column.
struct Piece {
  SheetBlock Part{};
  std::size_t Column = 0;
  double Line = 0;
};

/// The blocks cut into columns of so many lines, a free line between two of them; a heading stays
/// with its first row and is not repeated.
class Columns {
 public:
  Columns(const Sheet& sheet, double perColumn) : perColumn_(std::max(perColumn, 3.0)) {
    for (const SheetBlock& block : sheet.Blocks) Add(block);
  }
  const std::vector<Piece>& Pieces() const { return pieces_; }
  std::size_t Count() const { return pieces_.empty() ? 0 : pieces_.back().Column + 1; }

 private:
  void Add(const SheetBlock& block) {
    if (line_ > 0) ++line_;
    const double head = block.Heading.empty() ? 0 : 1;
    if (line_ + head + 1 > perColumn_) NextColumn();
    Begin(block.Heading);
    line_ += head;
    for (const SheetRow& row : block.Rows) {
      if (line_ + 1 > perColumn_) {
        NextColumn();
        Begin({});
      }
      pieces_.back().Part.Rows.push_back(row);
      ++line_;
    }
  }
  void Begin(const std::string& heading) {
    pieces_.push_back({{.Heading = heading}, column_, line_});
  }
  void NextColumn() {
    ++column_;
    line_ = 0;
  }

  double perColumn_;
  double line_ = 0;
  std::size_t column_ = 0;
  std::vector<Piece> pieces_{};
};

/// How a sheet stands on its page.
struct Arrangement {
  double Scale = 1;
  double Width = 0;  // of a column
  double PerColumn = 1;
  std::size_t Most = 1;  // columns on the page
};

Arrangement ArrangementAt(const Sheet& sheet, const Rect& room, double scale) {
  Arrangement at{.Scale = scale, .Width = ColumnWidth(sheet, scale)};
  const double across = room.Width();
  const double gap = kColumnGap * scale;
  at.Most = static_cast<std::size_t>(
      std::clamp((across + gap) / (at.Width + gap), 1.0, static_cast<double>(kMostColumns)));
  at.Width = std::min(at.Width, across);
  at.PerColumn = std::max(3.0, std::floor(room.Height() / (kLineStep * scale)));
  return at;
}

// The largest letters with which all of it stands on the page; empty when none do.
std::optional<Arrangement> Fitting(const Sheet& sheet, const Surface& surface) {
  for (const double scale : kScales) {
    const Rect room = *CutSheet(surface, scale).Find(kBlocks);
    const Arrangement at = ArrangementAt(sheet, room, scale);
    if (ColumnWidth(sheet, scale) > room.Width()) continue;
    if (Columns(sheet, at.PerColumn).Count() <= at.Most) return at;
  }
  return std::nullopt;
}

void WriteHead(Picture& page, const Rect& region, const Sheet& sheet, const BlockInks& inks,
               double scale) {
  const double size = LetterSize(Type::Title) * scale;
  const double second = LetterSize(Type::Label) * scale;
  page.Add("title", Label{.At = {region.Left, region.Top + size / 2},
                          .Text = Elided(sheet.Title, size, region.Width(), true),
                          .Size = size,
                          .Ink = inks.Ink,
                          .Bold = true});
  page.Add("subtitle", Label{.At = {region.Left, region.Top + size + 0.9 * second},
                             .Text = Elided(sheet.Subtitle, second, region.Width()),
                             .Size = second,
                             .Ink = inks.Faint});
}

}  // namespace

Picture DrawSheet(const Sheet& sheet, const ViewSettings& options, const Surface& surface) {
  const BlockInks inks = BlockInksFor(options);
  const std::optional<Arrangement> fitting = Fitting(sheet, surface);
  const bool isScrolled = !fitting && surface.On == Medium::Screen;
  const double scale = fitting ? fitting->Scale : 1;
  PageLayout layout = CutSheet(surface, scale, fitting || isScrolled);
  Arrangement at = ArrangementAt(sheet, *layout.Find(kBlocks), scale);
  if (isScrolled) {
    while (Columns(sheet, at.PerColumn).Count() > at.Most) ++at.PerColumn;
    const double more = at.PerColumn * kLineStep - layout.Find(kBlocks)->Height();
    layout = CutSheet({surface.Width, surface.Height + std::max(more, 0.0), surface.On}, scale);
  }
  Picture page(layout.Page.Width(), layout.Page.Height(), inks.Paper);
  if (const Rect* head = layout.Find(kHead)) WriteHead(page, *head, sheet, inks, scale);
  const Rect room = *layout.Find(kBlocks);
  const Columns columns(sheet, at.PerColumn);
  const double step = kLineStep * scale;
  const double gap = kColumnGap * scale;
  const auto used = static_cast<double>(std::min(columns.Count(), at.Most));
  const double share = (room.Width() + gap) / std::max(used, 1.0) - gap;
  const double width = std::min(share, kWidest * at.Width);
  std::size_t missing = 0;
  for (const Piece& piece : columns.Pieces()) {
    if (piece.Column >= at.Most) {
      missing += piece.Part.Rows.size();
      continue;
    }
    const double left = room.Left + static_cast<double>(piece.Column) * (width + gap);
    const double from = room.Top + piece.Line * step;
    const double lines = display::LinesOf(piece.Part);
    DrawBlock(page, {left, from, left + width, from + lines * step}, piece.Part, inks, scale);
  }
  const Rect* note = layout.Find(kNote);
  if (missing > 0 && note != nullptr) {
    page.Add("left out", Label{.At = {note->Left, (note->Top + note->Bottom) / 2},
                               .Text = "Not shown: " + Shortest(static_cast<int>(missing)) +
                                       " rows (in the display's window)",
                               .Size = LetterSize(Type::Note),
                               .Ink = inks.Faint});
  }
  return page;
}

}  // namespace vexa::display
