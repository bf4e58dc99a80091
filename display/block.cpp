#include "display/block.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

#include "core/numbers.h"
#include "picture/decimal_point.h"
#include "picture/text_width.h"

namespace vexa::display {
namespace {

constexpr double kGap = 8 * kUnitsPerPixel;       // between a label, its values and its note
constexpr double kCellPad = 4 * kUnitsPerPixel;   // of a coloured value's ground
constexpr double kSignRoom = 8 * kUnitsPerPixel;  // left of a coloured value
constexpr double kFlowGap = 14 * kUnitsPerPixel;  // between rows side by side
constexpr double kLeastLabel = 40 * kUnitsPerPixel;
constexpr std::size_t kMostAcross = 3;

/// A text's parts left and right of the line on which numbers are aligned.
struct Halves {
  double Before = 0;
  double After = 0;
};

Halves HalvesOf(const std::string& text, double size, bool bold) {
  const std::optional<std::size_t> point = PointOf(text);
  if (text == "--") return {TextWidth(text, size, bold), 0};
  if (!point) return {};
  const std::string_view whole = text;
  return {TextWidth(whole.substr(0, *point), size, bold),
          TextWidth(whole.substr(*point), size, bold)};
}

/// One column of values.
struct Column {
  double Before = 0;  // widest part left of the decimal points
  double Width = 0;
  bool HasSigns = false;
};

const std::string& TextAt(const SheetRow& row, std::size_t column) {
  return column == 0 ? row.Value : row.More[column - 1].Text;
}

Stress StepAt(const SheetRow& row, std::size_t column) {
  return column == 0 ? row.Step : row.More[column - 1].Step;
}

std::size_t ValuesOf(const SheetRow& row) {
  return 1 + row.More.size();
}

bool IsBare(const SheetRow& row) {
  return row.Value.empty() && row.More.empty() && row.Note.empty();
}

// Under captions, a row of one value that is no number of theirs stands beside the columns' order.
bool IsLoose(const SheetBlock& block, const SheetRow& row) {
  return !block.Columns.empty() && row.More.empty() && !PointOf(row.Value);
}

/// The widths of a block's parts, from the rows that are drawn.
struct Widths {
  Widths(const SheetBlock& block, const std::vector<const SheetRow*>& rows, double scale)
      : Value(LetterSize(Type::Value) * scale),
        LabelSize(LetterSize(Type::Label) * scale),
        NoteSize(LetterSize(Type::Note) * scale),
        Gap(kGap * scale),
        SignRoom(kSignRoom * scale),
        Overhang(kCellPad * scale / 2) {
    for (const SheetRow* row : rows) {
      const double label = TextWidth(row->Label, LabelSize);
      (IsBare(*row) ? Alone : Label) = std::max(IsBare(*row) ? Alone : Label, label);
      const double note = TextWidth(row->Note, NoteSize);
      if (IsLoose(block, *row)) {
        Loose = std::max(Loose, TextWidth(row->Value, Value) + (note > 0 ? Gap + note : 0));
        continue;
      }
      Note = std::max(Note, note);
      Columns.resize(std::max(Columns.size(), ValuesOf(*row)));
    }
    for (std::size_t i = 0; i < Columns.size(); ++i) Measure(block, rows, i);
  }

  double All() const {
    double width = Label;
    for (const Column& column : Columns) width += Gap + column.Width;
    if (Note > 0) {
      width += Gap + Note;
    } else if (!Columns.empty() && Columns.back().HasSigns) {
      width += Overhang;
    }
    if (Loose > 0) width = std::max(width, Label + Gap + Loose);
    return std::max(width, Alone);
  }

  double Value, LabelSize, NoteSize, Gap, SignRoom;
  double Overhang;  // of the colour behind a value, beyond its right end
  double Label = 0;
  double Note = 0;
  double Alone = 0;  // labels without anything beside them
  double Loose = 0;  // values outside the columns, with their notes
  std::vector<Column> Columns{};

 private:
  void Measure(const SheetBlock& block, const std::vector<const SheetRow*>& rows, std::size_t i) {
    double after = 0;
    double words = 0;
    Column& column = Columns[i];
    for (const SheetRow* row : rows) {
      if (i >= ValuesOf(*row) || IsLoose(block, *row)) continue;
      const bool bold = StepAt(*row, i) != Stress::None;
      const std::string& text = TextAt(*row, i);
      const Halves halves = HalvesOf(text, Value, bold);
      column.Before = std::max(column.Before, halves.Before);
      after = std::max(after, halves.After);
      words = std::max(words, TextWidth(text, Value, bold));
      column.HasSigns = column.HasSigns || bold;
    }
    column.Width = std::max(column.Before + after, words);
    if (i < block.Columns.size()) {
      column.Width = std::max(column.Width, TextWidth(block.Columns[i], NoteSize));
    }
    if (column.HasSigns) {
      column.Before += SignRoom;
      column.Width += SignRoom;
    }
  }
};

Color InkOn(Stress step, const BlockInks& inks) {
  if (step == Stress::None) return inks.Ink;
  return step == Stress::Third ? Color{255, 255, 255} : Color{0, 0, 0};
}

/// One block on its page.
class BlockDrawing {
 public:
  BlockDrawing(Picture& page, const Rect& region, const SheetBlock& block, const BlockInks& inks,
               double scale)
      : page_(page),
        region_(region),
        block_(block),
        inks_(inks),
        scale_(scale),
        step_(kLineStep * scale) {}

  std::vector<std::string> Draw() && {
    double y = region_.Top;
    const double lines = std::floor((region_.Height() + 1e-6) / step_);
    const double head = (block_.Heading.empty() ? 0 : 1) + (block_.Columns.empty() ? 0 : 1);
    std::vector<const SheetRow*> rows;
    for (const SheetRow& row : block_.Rows) rows.push_back(&row);
    if (lines <= head || region_.Width() < kLeastLabel) {
      for (const SheetRow* row : rows) left_.push_back(row->Label);
      return std::move(left_);
    }
    const auto down = static_cast<std::size_t>(lines - head);
    const std::size_t across = Across(rows, down);
    for (const SheetRow* row : KeepBest(rows, down * across)) left_.push_back(row->Label);
    std::vector<Pile> piles = Piles(rows, across);
    for (Pile& pile : piles) FitColumns(pile);
    if (!block_.Heading.empty()) {
      DrawHeading(y);
      y += step_;
    }
    if (!block_.Columns.empty()) {
      DrawCaptions(y, piles.front().Of);
      y += step_;
    }
    double x = region_.Left;
    for (const Pile& pile : piles) {
      Point at{x, y};
      for (const SheetRow* row : pile.Rows) {
        DrawRow(*row, at, pile.Width, pile.Of);
        at.Y += step_;
      }
      x += pile.Width + kFlowGap * scale_;
    }
    return std::move(left_);
  }

 private:
  // Rows below each other.
  struct Pile {
    std::vector<const SheetRow*> Rows{};
    Widths Of;
    double Width = 0;
  };

  // The rows in their order as piles side by side, of one width where all of them have room in it,
  // else of as much as each one wants.
  std::vector<Pile> Piles(const std::vector<const SheetRow*>& rows, std::size_t across) const {
    const auto count = static_cast<double>(across);
    const double room = region_.Width() - (count - 1) * kFlowGap * scale_;
    const Widths common(block_, rows, scale_);
    const bool isCommon = across == 1 || common.All() <= room / count;
    const std::size_t most = (rows.size() + across - 1) / across;
    std::vector<Pile> piles;
    double spare = room;
    for (std::size_t from = 0; from < rows.size() || piles.empty(); from += most) {
      const auto first = rows.begin() + static_cast<std::ptrdiff_t>(from);
      std::vector<const SheetRow*> part(
          first, first + static_cast<std::ptrdiff_t>(std::min(most, rows.size() - from)));
      Widths own = isCommon ? common : Widths(block_, part, scale_);
      spare -= own.All();
      piles.push_back({.Rows = std::move(part), .Of = std::move(own), .Width = room / count});
    }
    if (isCommon) return piles;
    for (Pile& pile : piles) pile.Width = pile.Of.All() + spare / count;
    return piles;
  }

  // As many rows side by side as the width has room for, of those that would be drawn then.
  std::size_t Across(const std::vector<const SheetRow*>& rows, std::size_t down) const {
    if (!block_.Flows) return 1;
    for (std::size_t across = kMostAcross; across > 1; --across) {
      std::vector<const SheetRow*> kept = rows;
      KeepBest(kept, down * across);
      const std::vector<Pile> piles = Piles(kept, across);
      if (std::ranges::all_of(piles, [](const Pile& pile) { return pile.Of.All() <= pile.Width; }))
        return across;
    }
    return 1;
  }

  // Leaves the rows that there is room for, in their order; gives the others.
  static std::vector<const SheetRow*> KeepBest(std::vector<const SheetRow*>& rows,
                                               std::size_t room) {
    std::vector<const SheetRow*> others;
    while (rows.size() > room) {
      const auto least = std::ranges::max_element(
          rows, [](const SheetRow* a, const SheetRow* b) { return a->Rank <= b->Rank; });
      others.push_back(*least);
      rows.erase(least);
    }
    return others;
  }

  // Further columns leave from the right until the rest fits, then the notes; the label is cut
  // last.
  void FitColumns(Pile& pile) {
    Widths& widths = pile.Of;
    while (widths.All() > pile.Width && widths.Columns.size() > 1) {
      const std::size_t last = widths.Columns.size() - 1;
      left_.push_back(last < block_.Columns.size() ? block_.Columns[last] : std::string("value"));
      widths.Columns.pop_back();
    }
    if (widths.All() > pile.Width && widths.Note > 0) {
      // A note may reach as far as the region does.
      const double others = widths.All() - widths.Note;
      widths.Note = std::max(0.0, pile.Width - others);
      for (const SheetRow* row : pile.Rows) {
        if (TextWidth(row->Note, widths.NoteSize) > widths.Note) left_.push_back(row->Label);
      }
    }
    if (widths.All() > pile.Width) {
      widths.Label = std::max(kLeastLabel, widths.Label - (widths.All() - pile.Width));
    }
  }

  void Write(std::string_view tag, Point at, std::string text, double size, Color ink, bool bold,
             AnchorX across = AnchorX::Left) {
    if (text.empty()) return;
    page_.Add(tag, Label{.At = at,
                         .Text = std::move(text),
                         .Across = across,
                         .Size = size,
                         .Ink = ink,
                         .Bold = bold});
  }

  void DrawHeading(double top) {
    const double y = top + step_ / 2;
    const double size = LetterSize(Type::Label) * scale_;
    const double noteSize = LetterSize(Type::Note) * scale_;
    double room = region_.Width();
    if (!left_.empty() && !block_.Elsewhere.empty()) {
      const std::string more =
          "+" + Shortest(static_cast<int>(left_.size())) + " more: " + block_.Elsewhere;
      const double wide = TextWidth(more, noteSize);
      if (wide + kGap * scale_ + TextWidth(block_.Heading, size, true) <= room) {
        Write("left out", {region_.Right, y}, more, noteSize, inks_.Faint, false, AnchorX::Right);
        room -= wide + kGap * scale_;
      }
    }
    Write("heading", {region_.Left, y}, Elided(block_.Heading, size, room, true), size, inks_.Ink,
          true);
    const double rule = top + step_ - kUnitsPerPixel;
    page_.Add("rule", Polyline{.Points = {{region_.Left, rule}, {region_.Right, rule}},
                               .Stroke = {.Ink = inks_.Rule, .Width = kUnitsPerPixel}});
  }

  void DrawCaptions(double top, const Widths& widths) {
    double x = region_.Left + widths.Label;
    for (std::size_t i = 0; i < widths.Columns.size() && i < block_.Columns.size(); ++i) {
      x += widths.Gap + widths.Columns[i].Width;
      Write("caption", {x, top + step_ / 2}, block_.Columns[i], widths.NoteSize, inks_.Faint, false,
            AnchorX::Right);
    }
  }

  void DrawRow(const SheetRow& row, Point corner, double width, const Widths& widths) {
    const double y = corner.Y + step_ / 2;
    Write("label", {corner.X, y},
          Elided(row.Label, widths.LabelSize, IsBare(row) ? width : widths.Label), widths.LabelSize,
          inks_.Faint, false);
    double x = corner.X + widths.Label;
    if (IsLoose(block_, row)) {
      DrawLoose(row, x + widths.Gap, y, corner.X + width, widths);
      return;
    }
    for (std::size_t i = 0; i < widths.Columns.size(); ++i) {
      x += widths.Gap;
      if (i < ValuesOf(row)) DrawValue(row, i, {x, corner.Y}, widths);
      x += widths.Columns[i].Width;
    }
    if (widths.Note > 0 && TextWidth(row.Note, widths.NoteSize) <= widths.Note + 1e-6) {
      Write("note", {x + widths.Gap, y}, row.Note, widths.NoteSize, inks_.Faint, false);
    }
    if (row.Index.empty()) return;
    page_.AddHotSpot({{corner.X, corner.Y, corner.X + width, corner.Y + step_},
                      std::string(kIndexSpot),
                      row.Index});
  }

  void DrawLoose(const SheetRow& row, double x, double y, double end, const Widths& widths) {
    const double wide = TextWidth(row.Value, widths.Value);
    Write("value", {x, y}, row.Value, widths.Value, inks_.Ink, false);
    const double note = x + wide + widths.Gap;
    if (note + TextWidth(row.Note, widths.NoteSize) <= end) {
      Write("note", {note, y}, row.Note, widths.NoteSize, inks_.Faint, false);
    }
  }

  void DrawValue(const SheetRow& row, std::size_t i, Point corner, const Widths& widths) {
    const std::string& text = TextAt(row, i);
    if (text.empty()) return;
    const Stress step = StepAt(row, i);
    const bool bold = step != Stress::None;
    const Column& column = widths.Columns[i];
    const double width = TextWidth(text, widths.Value, bold);
    const Halves halves = HalvesOf(text, widths.Value, bold);
    double left = corner.X + std::max(0.0, column.Before - halves.Before);
    if (halves.Before == 0) left = corner.X + (bold ? widths.SignRoom : 0);
    // Captions stand over the right ends of their values.
    if (!block_.Columns.empty()) {
      left += column.Width - ColumnUsed(column, i, widths);
    }
    const double y = corner.Y + step_ / 2;
    if (bold) DrawStress(step, left, left + width, y);
    Write("value", {left, y}, text, widths.Value, InkOn(step, inks_), bold);
  }

  // What the values take of a column that its caption makes wider.
  double ColumnUsed(const Column& column, std::size_t i, const Widths& widths) const {
    double used = 0;
    for (const SheetRow& row : block_.Rows) {
      if (i >= ValuesOf(row) || IsLoose(block_, row)) continue;
      const bool bold = StepAt(row, i) != Stress::None;
      const std::string& text = TextAt(row, i);
      const Halves halves = HalvesOf(text, widths.Value, bold);
      const double from = halves.Before == 0 ? 0 : column.Before - halves.Before;
      used = std::max(used, from + TextWidth(text, widths.Value, bold));
    }
    return std::min(used, column.Width);
  }

  // The colour behind a value and, for those who do not see it, as many dots as its step.
  void DrawStress(Stress step, double left, double right, double y) {
    const double pad = kCellPad * scale_;
    const double half = 0.46 * step_;
    const double from = left - kSignRoom * scale_;
    page_.Add("stress", Area{.Rings = {{{from, y - half},
                                        {right + pad / 2, y - half},
                                        {right + pad / 2, y + half},
                                        {from, y + half}}},
                             .Fill = {.Ink = StressColor(step)}});
    const int dots = static_cast<int>(step);
    const double radius = 1.2 * kUnitsPerPixel * scale_;
    for (int i = 0; i < dots; ++i) {
      const double at = y + (i - (dots - 1) / 2.0) * 4 * kUnitsPerPixel * scale_;
      page_.Add("sign", Circle{.Center = {from + 0.36 * kSignRoom * scale_, at},
                               .Radius = radius,
                               .Fill = {.Ink = InkOn(step, inks_)}});
    }
  }

  Picture& page_;
  Rect region_;
  const SheetBlock& block_;
  const BlockInks& inks_;
  double scale_;
  double step_;
  std::vector<std::string> left_{};
};

}  // namespace

Color StressColor(Stress stress) {
  switch (stress) {
    case Stress::First:
      return {255, 235, 90};
    case Stress::Second:
      return {255, 165, 40};
    case Stress::Third:
      return {200, 20, 20};
    case Stress::None:
      break;
  }
  return {0, 0, 0, 0};
}

BlockInks BlockInksFor(const ViewSettings& options) {
  if (options.Screen == ScreenColor::Black) {
    return {{0, 0, 0}, {240, 240, 240}, {185, 185, 185}, {90, 90, 90}};
  }
  return {{255, 255, 255}, {0, 0, 0}, {75, 75, 75}, {185, 185, 185}};
}

double WidthOf(const SheetBlock& block, double scale) {
  std::vector<const SheetRow*> rows;
  for (const SheetRow& row : block.Rows) rows.push_back(&row);
  return std::max(Widths(block, rows, scale).All(),
                  TextWidth(block.Heading, LetterSize(Type::Label) * scale, true));
}

double LinesOf(const SheetBlock& block) {
  return static_cast<double>(block.Rows.size()) + (block.Heading.empty() ? 0 : 1) +
         (block.Columns.empty() ? 0 : 1);
}

std::vector<std::string> DrawBlock(Picture& page, const Rect& region, const SheetBlock& block,
                                   const BlockInks& inks, double scale) {
  return BlockDrawing(page, region, block, inks, scale).Draw();
}

}  // namespace vexa::display
