#include "display/sheet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "core/numbers.h"
#include "picture/layout.h"
#include "picture/text_width.h"

namespace vexa::display {
namespace {

constexpr double kMargin = 2 * kPageMargin;
constexpr double kColumnGap = 32 * kUnitsPerPixel;
constexpr std::size_t kMostColumns = 6;
constexpr std::array<double, 4> kScales = {1.6, 1.4, 1.2, 1};
constexpr double kWidest = 1.6;  // columns take room that is left over, up to so many times theirs

double HeadHeight(double scale) {
  return (LetterSize(Type::Title) + 2.2 * LetterSize(Type::Label)) * scale;
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

Arrangement ArrangementAt(const Sheet& sheet, const Surface& surface, double scale) {
  Arrangement at{.Scale = scale, .Width = ColumnWidth(sheet, scale)};
  const double across = surface.Width - 2 * kMargin;
  const double gap = kColumnGap * scale;
  at.Most = static_cast<std::size_t>(
      std::clamp((across + gap) / (at.Width + gap), 1.0, static_cast<double>(kMostColumns)));
  at.Width = std::min(at.Width, across);
  const double down = surface.Height - 2 * kMargin - HeadHeight(scale);
  at.PerColumn = std::max(3.0, std::floor(down / (kLineStep * scale)));
  return at;
}

// The largest letters with which all of it stands on the page; empty when none do.
std::optional<Arrangement> Fitting(const Sheet& sheet, const Surface& surface) {
  for (const double scale : kScales) {
    const Arrangement at = ArrangementAt(sheet, surface, scale);
    if (ColumnWidth(sheet, scale) > surface.Width - 2 * kMargin) continue;
    if (Columns(sheet, at.PerColumn).Count() <= at.Most) return at;
  }
  return std::nullopt;
}

void WriteHead(Picture& page, const Sheet& sheet, const BlockInks& inks, double scale) {
  const double room = page.Width() - 2 * kMargin;
  const double size = LetterSize(Type::Title) * scale;
  const double second = LetterSize(Type::Label) * scale;
  page.Add("title", Label{.At = {kMargin, kMargin + size / 2},
                          .Text = Elided(sheet.Title, size, room, true),
                          .Size = size,
                          .Ink = inks.Ink,
                          .Bold = true});
  page.Add("subtitle", Label{.At = {kMargin, kMargin + size + 0.9 * second},
                             .Text = Elided(sheet.Subtitle, second, room),
                             .Size = second,
                             .Ink = inks.Faint});
}

}  // namespace

Picture DrawSheet(const Sheet& sheet, const ViewSettings& options, const Surface& surface) {
  const BlockInks inks = BlockInksFor(options);
  const std::optional<Arrangement> fitting = Fitting(sheet, surface);
  Arrangement at = fitting.value_or(ArrangementAt(sheet, surface, 1));
  const bool isScrolled = !fitting && surface.On == Medium::Screen;
  double height = surface.Height;
  if (isScrolled) {
    while (Columns(sheet, at.PerColumn).Count() > at.Most) ++at.PerColumn;
    height = std::max(height, 2 * kMargin + HeadHeight(at.Scale) + at.PerColumn * kLineStep);
  } else if (!fitting) {
    at.PerColumn -= 1;  // for the line that says what is not there
  }
  Picture page(surface.Width, height, inks.Paper);
  WriteHead(page, sheet, inks, at.Scale);
  const Columns columns(sheet, at.PerColumn);
  const double step = kLineStep * at.Scale;
  const double gap = kColumnGap * at.Scale;
  const double top = kMargin + HeadHeight(at.Scale);
  const auto used = static_cast<double>(std::min(columns.Count(), at.Most));
  const double share = (page.Width() - 2 * kMargin + gap) / std::max(used, 1.0) - gap;
  const double width = std::min(share, kWidest * at.Width);
  std::size_t missing = 0;
  for (const Piece& piece : columns.Pieces()) {
    if (piece.Column >= at.Most) {
      missing += piece.Part.Rows.size();
      continue;
    }
    const double left = kMargin + static_cast<double>(piece.Column) * (width + gap);
    const double from = top + piece.Line * step;
    const double lines = display::LinesOf(piece.Part);
    DrawBlock(page, {left, from, left + width, from + lines * step}, piece.Part, inks, at.Scale);
  }
  if (missing > 0) {
    page.Add("left out", Label{.At = {kMargin, page.Height() - kMargin - step / 2},
                               .Text = "Not shown: " + Shortest(static_cast<int>(missing)) +
                                       " rows (in the display's window)",
                               .Size = LetterSize(Type::Note),
                               .Ink = inks.Faint});
  }
  return page;
}

}  // namespace vexa::display
