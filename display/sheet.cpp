#include "display/sheet.h"

#include <algorithm>
#include <cmath>

namespace vexa::display {
namespace {

constexpr double kShape = 4.0 / 3;  // width by height that a page comes near to
constexpr double kMargin = 250;
constexpr double kTitle = 230;
constexpr double kText = kSheetText;
constexpr double kLine = 190;
constexpr double kLetter = 0.6;  // width of a fixed letter by its size
constexpr std::size_t kGapLetters = 2;
constexpr std::size_t kMostColumns = 4;

struct Inks {
  Color Paper, Ink, Faint;
};

Inks InksFor(const Options& options) {
  if (options.Screen == ScreenColor::Black) return {{0, 0, 0}, {240, 240, 240}, {170, 170, 170}};
  return {{255, 255, 255}, {0, 0, 0}, {90, 90, 90}};
}

// What a step looks like without its colour.
std::string_view StressSign(Stress stress) {
  constexpr std::string_view kSigns[] = {"", "*", "**", "***"};
  return kSigns[static_cast<std::size_t>(stress)];
}

std::size_t LinesOf(const SheetBlock& block) {
  return block.Rows.size() + (block.Heading.empty() ? 1 : 2);
}

// What stands beside a value: the sign of its step, and its note.
std::string NoteOf(const SheetRow& row) {
  std::string note(StressSign(row.Step));
  if (!note.empty() && !row.Note.empty()) note += ' ';
  return note + row.Note;
}

/// A column's parts, as wide as their longest text.
struct Widths {
  explicit Widths(const Sheet& sheet) {
    std::size_t label = 12;
    std::size_t value = 6;
    std::size_t note = 4;
    std::size_t alone = 0;  // rows and headings without a value
    for (const SheetBlock& block : sheet.Blocks) {
      alone = std::max(alone, block.Heading.size());
      for (const SheetRow& row : block.Rows) {
        const std::string beside = NoteOf(row);
        if (row.Value.empty() && beside.empty()) {
          alone = std::max(alone, row.Label.size());
          continue;
        }
        label = std::max(label, row.Label.size());
        value = std::max(value, row.Value.size());
        note = std::max(note, beside.size());
      }
    }
    const auto width = [](std::size_t letters) {
      return kText * kLetter * static_cast<double>(letters);
    };
    Label = width(label + kGapLetters);
    Value = width(value + kGapLetters);
    Column = std::max(Label + Value + width(note), width(alone));
  }

  double Label = 0;
  double Value = 0;
  double Column = 0;  // all of it
};

// A place for each line: blocks fill a column and go on in the next.
class Layout {
 public:
  Layout(const Sheet& sheet, const Widths& widths) : widths_(widths), top_(kMargin + 2.2 * kTitle) {
    std::size_t total = 0;
    for (const SheetBlock& block : sheet.Blocks) total += LinesOf(block);
    // As many columns as let the letters be largest on a page of the usual shape.
    double least = 0;
    for (std::size_t columns = 1; columns <= kMostColumns; ++columns) {
      const std::size_t lines = (total + columns - 1) / columns + 1;
      const double size =
          std::max((kMargin + static_cast<double>(columns) * (widths_.Column + kMargin)) / kShape,
                   top_ + static_cast<double>(lines) * kLine + kMargin);
      if (least > 0 && size >= least) continue;
      least = size;
      perColumn_ = lines;
    }
  }

  // Keeps a heading together with its first row.
  void Begin(std::size_t lines) {
    if (line_ > 0 && line_ + std::min<std::size_t>(lines, 3) > perColumn_) NextColumn();
  }

  Point Next() {
    if (line_ >= perColumn_) NextColumn();
    const Point at{kMargin + static_cast<double>(column_) * (widths_.Column + kMargin),
                   top_ + (static_cast<double>(line_) + 0.5) * kLine};
    ++line_;
    deepest_ = std::max(deepest_, line_);
    return at;
  }

  void Skip() {
    if (line_ > 0) ++line_;
  }

  double Width() const {
    return kMargin + static_cast<double>(column_ + 1) * (widths_.Column + kMargin);
  }
  double Height() const { return top_ + static_cast<double>(deepest_) * kLine + kMargin; }

 private:
  void NextColumn() {
    ++column_;
    line_ = 0;
  }

  const Widths& widths_;
  double top_;
  std::size_t perColumn_ = 1;
  std::size_t column_ = 0;
  std::size_t line_ = 0;
  std::size_t deepest_ = 1;
};

void Write(Picture& page, std::string_view tag, Point at, std::string text, Color ink,
           bool bold = false) {
  page.Add(tag, Label{.At = at,
                      .Text = std::move(text),
                      .Size = kText,
                      .Font = Face::Mono,
                      .Ink = ink,
                      .Bold = bold});
}

void DrawRow(Picture& page, const SheetRow& row, Point at, const Widths& widths, const Inks& inks) {
  const double valueX = at.X + widths.Label;
  const double noteX = valueX + widths.Value;
  Write(page, "label", at, row.Label, inks.Ink);
  Color valueInk = inks.Ink;
  if (row.Step != Stress::None) {
    const Rect box{valueX - 60, at.Y - kLine * 0.45, noteX - 60, at.Y + kLine * 0.45};
    page.Add("stress", Area{.Rings = {{{box.Left, box.Top},
                                       {box.Right, box.Top},
                                       {box.Right, box.Bottom},
                                       {box.Left, box.Bottom}}},
                            .Fill = {.Ink = StressColor(row.Step)}});
    valueInk = row.Step == Stress::Third ? Color{255, 255, 255} : Color{0, 0, 0};
  }
  Write(page, "value", {valueX, at.Y}, row.Value, valueInk, row.Step != Stress::None);
  Write(page, "note", {noteX, at.Y}, NoteOf(row), inks.Faint);
  if (!row.Index.empty()) {
    page.AddHotSpot(
        {{at.X, at.Y - kLine / 2, noteX, at.Y + kLine / 2}, std::string(kIndexSpot), row.Index});
  }
}

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

Picture DrawSheet(const Sheet& sheet, const Options& options) {
  const Inks inks = InksFor(options);
  const Widths widths(sheet);
  Layout measured(sheet, widths);
  const auto walk = [&sheet](Layout& layout, auto&& heading, auto&& row) {
    for (const SheetBlock& block : sheet.Blocks) {
      layout.Begin(LinesOf(block));
      layout.Skip();
      if (!block.Heading.empty()) heading(block, layout.Next());
      for (const SheetRow& one : block.Rows) row(one, layout.Next());
    }
  };
  walk(
      measured, [](const SheetBlock&, Point) {}, [](const SheetRow&, Point) {});
  const double head =
      2 * kMargin + 1.2 * kText * kLetter * static_cast<double>(sheet.Subtitle.size());
  Picture page(std::max(measured.Width(), head), measured.Height(), inks.Paper);
  page.Add("title", Label{.At = {kMargin, kMargin + kTitle / 2},
                          .Text = sheet.Title,
                          .Size = kTitle,
                          .Ink = inks.Ink,
                          .Bold = true});
  page.Add("subtitle", Label{.At = {kMargin, kMargin + 1.6 * kTitle},
                             .Text = sheet.Subtitle,
                             .Size = kText * 1.2,
                             .Ink = inks.Faint});
  Layout layout(sheet, widths);
  walk(
      layout,
      [&](const SheetBlock& block, Point at) {
        Write(page, "heading", at, block.Heading, inks.Ink, true);
        page.Add("rule", Polyline{.Points = {{at.X, at.Y + kLine / 2},
                                             {at.X + widths.Column, at.Y + kLine / 2}},
                                  .Stroke = {.Ink = inks.Faint, .Width = 8}});
      },
      [&](const SheetRow& row, Point at) { DrawRow(page, row, at, widths, inks); });
  return page;
}

}  // namespace vexa::display
