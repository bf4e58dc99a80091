#include "crosssection/section_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <variant>

#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "crosssection/color_map.h"
#include "crosssection/section_page.h"
#include "diagram/wind_symbol.h"
#include "picture/text_width.h"

namespace vexa::crosssection {
namespace {

constexpr std::string_view kTitle = "title";
constexpr std::string_view kMain = "section";

constexpr int kNameRows = 3;
constexpr double kNameRow = 170;

SectionInks InksFor(const SectionOptions& set) {
  const bool black = set.Background == ScreenColor::Black;
  SectionInks inks;
  static_cast<PaperAndInk&>(inks) = OnPaper(black);
  inks.Faint = Blend(inks.Ink, inks.Paper, 0.4);
  inks.Made = Blend(inks.Ink, inks.Paper, 0.55);
  inks.Ground = black ? Color{105, 85, 65} : Color{165, 140, 110};
  inks.Freezing = black ? Color{90, 170, 255} : Color{0, 70, 190};
  inks.Tropopause = black ? Color{255, 140, 220} : Color{150, 0, 110};
  inks.Frame = {inks.Ink, 14, LineStyle::Solid};
  inks.Grid = {Blend(inks.Ink, inks.Paper, 0.75), 5, LineStyle::Solid};
  const Color line = Blend(inks.Ink, inks.Paper, 0.2);
  inks.Line = {line, 12, LineStyle::Solid};
  inks.Thick = {line, 26, LineStyle::Solid};
  inks.Sub = {Blend(inks.Ink, inks.Paper, 0.45), 8, LineStyle::Dash};
  return inks;
}

std::string Trimmed(std::string text) {
  return std::string(Trim(text));
}

std::array<RegionRow, 4> Rows() {
  return {{{.Name = kTitle, .At = Place::Above, .LeastHeight = 700},
           {.Name = kMain, .At = Place::Main, .LeastWidth = 4000, .LeastHeight = 3000},
           {.Name = kColorScale, .At = Place::Beside, .LeastWidth = 900, .Priority = 1},
           {.Name = kCaptions, .At = Place::Foot, .LeastHeight = 200, .Priority = 2}}};
}

// The frame without room for names under it.
Rect FrameIn(const PageLayout& layout, const SectionOptions& set) {
  const Rect* main = layout.Find(kMain);
  const Rect place = main != nullptr ? *main : layout.Page;
  const Rect frame{place.Left + 850, place.Top + 200, place.Right - 120, place.Bottom - 420};
  if (set.Size == DiagramSize::Large) return frame;
  constexpr double kShare = 0.7;
  return {frame.Left, frame.Bottom - kShare * frame.Height(), frame.Left + kShare * frame.Width(),
          frame.Bottom};
}

SectionMapping MappingIn(Rect frame, const SectionInput& input, std::size_t nameRows) {
  const std::vector<Column>& columns = input.Of.Columns;
  frame.Bottom -= kNameRow * static_cast<double>(nameRows);
  // Symbols of the outer columns stand inside the frame too.
  const double outer = input.Set.PlotWinds ? diagram::SizeOf(input.Set.Barbs).Shaft + 40.0 : 260.0;
  const double beside = outer / (frame.Width() - 2 * outer) * input.Of.RangeX();
  return {frame, columns.front().X - beside, columns.back().X + beside, input.Field.Axis};
}

// Names of every n-th column in rows under the axis, each where there is room. Fewer than there are
// where one found none.
struct TriedNames {
  std::vector<PlacedName> Names{};
  bool IsAll = true;
};
TriedNames TryNames(const SectionInput& input, const PageLayout& layout, std::size_t every) {
  const SectionMapping at = MappingIn(FrameIn(layout, input.Set), input, 0);
  const Rect& page = layout.Page;
  std::array<double, kNameRows> ends;
  ends.fill(-1e9);
  TriedNames tried;
  std::size_t count = 0;
  for (const Column& column : input.Of.Columns) {
    if (column.IsInterpolated || count++ % every != 0) continue;
    PlacedName name{ShortName(column, input.Of.Kind), at.X(column.X)};
    const double half = TextWidth(name.Text, kNote) / 2;
    name.Middle =
        std::clamp(name.X, page.Left + half, std::max(page.Left + half, page.Right - half));
    auto* const free =
        std::ranges::find_if(ends, [&](double end) { return name.Middle - half >= end + 80; });
    if (free == ends.end()) {
      tried.IsAll = false;
      continue;
    }
    *free = name.Middle + half;
    name.Row = static_cast<std::size_t>(free - ends.begin());
    tried.Names.push_back(std::move(name));
  }
  return tried;
}

// Of a section in time the names of every n-th, so that they stand evenly; along a line each that
// finds room.
std::vector<PlacedName> NamesOf(const SectionInput& input, const PageLayout& layout) {
  std::size_t every = 1;
  TriedNames tried = TryNames(input, layout, every);
  while (input.Of.Kind == SectionKind::Time && !tried.IsAll && every < input.Of.Columns.size()) {
    every += (every + 1) / 2;
    tried = TryNames(input, layout, every);
  }
  return std::move(tried.Names);
}

std::size_t RowsOf(const std::vector<PlacedName>& names) {
  std::size_t rows = 0;
  for (const PlacedName& name : names) rows = std::max(rows, name.Row + 1);
  return rows;
}

class Drawing : SectionPage {
 public:
  using SectionPage::SectionPage;

  SectionPlot Draw() && {
    Titles();
    Axes();
    if (!In.Field.Refusal.empty()) {
      Refusal();
    } else if (In.Field.Field->Kind == FieldKind::Category) {
      Boxes();
    } else {
      DrawContours(*this);
    }
    if (Set.Terrain) Terrain();
    Line("frame", OutlineOf(At.Frame()), Inks.Frame);
    Lines();
    if (Set.PlotWinds) DrawWinds(*this);
    Levels();
    for (Item& item : OnTop)
      std::visit([&](auto& shape) { Page.Add(item.Tag, shape); }, item.Shape);
    DrawNames();
    return {std::move(Page), At};
  }

 private:
  double Y(const analysis::LevelPoint& at, const Column& column) const {
    return At.Y(At.Axis().Of(at, column.Ground()));
  }

  void Titles() {
    const Rect* place = Layout.Find(kTitle);
    if (place == nullptr) return;
    Text("title", {place->Left + 100, place->Top + 170}, Trimmed(SectionTitle(In.Of)),
         LetterSize(Type::Title), AnchorX::Left, Inks.Ink, true);
    Text("field title", {place->Left + 100, place->Top + 430},
         Trimmed(TitleOf(*In.Field.Field, Context)), LetterSize(Type::Value), AnchorX::Left,
         Inks.Ink, true);
    Text("from to", {place->Left + 100, place->Top + 620}, FromTo(place->Width() - 200), kNote,
         AnchorX::Left, Inks.Faint);
  }

  // Where the section begins and ends; names are cut before what stands behind them is.
  std::string FromTo(double room) const {
    const SoundingRecord& first = Columns.front().Sounding;
    const SoundingRecord& last = Columns.back().Sounding;
    const bool isTime = In.Of.Kind == SectionKind::Time;
    const std::string between = "  -  ";
    const std::string count = ",  " + Shortest(static_cast<int>(Columns.size())) + " soundings";
    const std::string times = ",  " + TimeText(first.Time) + between + TimeText(last.Time);
    const double names = room - TextWidth((isTime ? times : between) + count, kNote);
    const std::string from = Trimmed(first.StationTitle);
    const std::string to = Trimmed(last.StationTitle);
    if (isTime) return Elided(from, kNote, names) + times + count;
    const double roomOfFirst = std::max(names / 2, names - TextWidth(to, kNote));
    const double roomOfLast = std::max(names / 2, names - TextWidth(from, kNote));
    return Elided(from, kNote, roomOfFirst) + between + Elided(to, kNote, roomOfLast) + count;
  }

  void Axes() {
    HeightMarks();
    const Rect& frame = At.Frame();
    if (In.Of.Kind == SectionKind::Time) return;
    const double range = FromKm(In.Of.RangeX(), Set.Length);
    const double step = RoundStep(range, 8);
    const double y = BelowNames() + 150;
    for (double shown = 0; shown <= range * (1 + 1e-9); shown += step) {
      const double x = At.X(Columns.front().X + shown / range * In.Of.RangeX());
      Line("distance mark", {{x, frame.Bottom}, {x, frame.Bottom + 60}}, Inks.Frame);
      Text("distance", {x, y}, Mask(shown, step < 1 ? "##0.0#" : "####0"), kNote, AnchorX::Center,
           Inks.Ink);
    }
    Text("distance unit", {(frame.Left + frame.Right) / 2, y + 200}, std::string(Word(Set.Length)),
         kLabel, AnchorX::Center, Inks.Ink);
  }

  void HeightMark(double coordinate, std::string text) {
    const Rect& frame = At.Frame();
    const double share = At.Axis().Share(coordinate);
    if (share < -1e-9 || share > 1 + 1e-9) return;
    const double y = At.Y(coordinate);
    Line("grid", {{frame.Left, y}, {frame.Right, y}}, Inks.Grid);
    Text("height", {frame.Left - 90, y}, std::move(text), kNote, AnchorX::Right, Inks.Ink);
  }

  void HeightMarks() {
    const Rect& frame = At.Frame();
    const VerticalAxis& axis = At.Axis();
    std::string unit;
    if (axis.Scale == SectionScale::Pressure) {
      double above = frame.Bottom + 1000;
      for (const int press : {1050, 1000, 925, 850, 700, 600, 500, 400, 300, 250, 200, 150, 100, 70,
                              50, 30, 20, 10}) {
        const double y = At.Y(-std::log(press));
        if (above - y < kNote) continue;
        above = y;
        HeightMark(-std::log(press), Shortest(press));
      }
      unit = "mb";
    } else {
      const bool isFeet = axis.Scale == SectionScale::Feet;
      const double unitM = isFeet ? 1000 * kMetersPerFoot : 1000;
      const double step = RoundStep((axis.Top - axis.Bottom) / unitM, 9);
      for (double shown = std::ceil(axis.Bottom / unitM / step) * step;
           shown * unitM <= axis.Top * (1 + 1e-9); shown += step) {
        HeightMark(shown * unitM, Mask(shown, "##0.#"));
      }
      unit = std::string(isFeet ? "ft (x1000) " : "km ") + std::string(Word(axis.Heights));
    }
    Text("height unit", {frame.Left, frame.Top - 130}, unit, kNote, AnchorX::Right, Inks.Ink);
  }

  // From half-way to the neighbour at the left to half-way to the one at the right.
  std::pair<double, double> SpanOf(std::size_t i) const {
    const auto half = [this](std::size_t a, std::size_t b) {
      return At.X((Columns[a].X + Columns[b].X) / 2);
    };
    return {i == 0 ? At.X(Columns[i].X) : half(i - 1, i),
            i + 1 == Columns.size() ? At.X(Columns[i].X) : half(i, i + 1)};
  }

  // Layers of one class that touch are one.
  static std::vector<ClassLayer> Runs(const std::vector<ClassLayer>& layers) {
    constexpr double kTouching = 1;  // m
    std::vector<ClassLayer> runs;
    for (const ClassLayer& layer : layers) {
      const bool goesOn = !runs.empty() && runs.back().Word == layer.Word &&
                          std::fabs(layer.Base.Height - runs.back().Top.Height) < kTouching;
      if (goesOn) {
        runs.back().Top = layer.Top;
      } else {
        runs.push_back(layer);
      }
    }
    return runs;
  }

  void Boxes() {
    const bool black = Set.Background == ScreenColor::Black;
    constexpr double kMostClass = 8;
    for (std::size_t i = 0; i < Columns.size(); ++i) {
      const auto [left, right] = SpanOf(i);
      const Rect& frame = At.Frame();
      for (const ClassLayer& layer : Runs(In.Field.Field->Layers(Columns[i]))) {
        Rect box{left, std::clamp(Y(layer.Top, Columns[i]), frame.Top, frame.Bottom), right,
                 std::clamp(Y(layer.Base, Columns[i]), frame.Top, frame.Bottom)};
        if (box.Height() <= 0 || box.Width() <= 0) continue;
        Page.Add("category",
                 Area{.Rings = {OutlineOf(box)},
                      .Fill = {CategoryColor(layer.Class / kMostClass, black), FillStyle::Plain},
                      .Stroke = Inks.Grid});
        const std::string word = Trimmed(std::string(layer.Word));
        if (box.Height() < kNote || box.Width() < TextWidth(word, kNote)) continue;
        // Beside the column's winds where one of the halves has room for the word.
        const double x = At.X(Columns[i].X);
        const double room = TextWidth(word, kNote) + 2 * kNote;
        const double middle = right - x > room  ? (x + right) / 2
                              : x - left > room ? (left + x) / 2
                                                : (left + right) / 2;
        PutOnTop("category word", {middle, (box.Top + box.Bottom) / 2}, std::string(layer.Word),
                 kNote);
      }
    }
  }

  Color CategoryColor(double share, bool black) const {
    // Clouds and what is there or not have few classes: enough colour for the lowest too.
    return In.Field.Field->Code == "CLDS" ? Blend(Inks.Paper, Inks.Ink, 0.15 + share)
                                          : SignedColor(std::min(1.0, 0.3 + share), black);
  }

  void Refusal() {
    const Rect& frame = At.Frame();
    double y = frame.Top + frame.Height() / 3;
    for (const std::string& line : In.Field.Refusal) {
      Text("refusal", {frame.Left + 400, y}, line, LetterSize(Type::Value), AnchorX::Left,
           Inks.Ink);
      y += kLineStep * 1.2;
    }
  }

  void Terrain() {
    const Rect& frame = At.Frame();
    std::vector<Point> ring = {{frame.Left, frame.Bottom}, {frame.Left, frame.Bottom}};
    bool any = false;
    for (const Column& column : Columns) {
      const analysis::LevelProfile& levels = column.Levels;
      const double press =
          levels.Count() > 0 ? levels.Press(1) : analysis::IsaPressure(column.Ground());
      const double y = At.Y(At.Axis().Of(press, column.Ground(), column.Ground()));
      ring.push_back({At.X(column.X), std::clamp(y, frame.Top, frame.Bottom)});
      any = any || ring.back().Y < frame.Bottom;
    }
    ring[1].Y = ring[2].Y;
    ring.push_back({frame.Right, ring.back().Y});
    ring.push_back({frame.Right, frame.Bottom});
    ring.push_back(ring.front());
    if (any) {
      Page.Add("terrain", Area{.Rings = {std::move(ring)},
                               .Fill = {Inks.Ground, FillStyle::Plain},
                               .Stroke = {Inks.Ink, 10, LineStyle::Solid}});
    }
  }

  // Over or under the line behind one of its points, the first where no other text stands.
  bool NameRun(std::string_view tag, const std::vector<Point>& run, std::string_view word,
               Color ink) {
    const double width = TextWidth(word, kNote);
    for (const Point& at : run) {
      for (const double aside : {-0.8 * kNote, 0.8 * kNote}) {
        const Point left{at.X + 60, at.Y + aside};
        const Rect place{left.X, left.Y - kNote / 2, left.X + width, left.Y + kNote / 2};
        if (!Room.IsFree(place)) continue;
        Room.Take(place);
        Text(tag, left, std::string(word), kNote, AnchorX::Left, ink);
        return true;
      }
    }
    return false;
  }

  // A line through the same level of neighbouring columns; it ends where one has none.
  void Join(std::string_view tag, const std::vector<analysis::LevelPoint> Column::*levels,
            const Pen& pen, std::string_view word) {
    std::vector<Point> run;
    bool named = false;
    const auto close = [&] {
      if (run.size() > 1) {
        named = named || NameRun(tag, run, word, pen.Ink);
        Line(tag, run, pen);
      }
      run.clear();
    };
    for (const Column& column : Columns) {
      const bool has = !(column.*levels).empty();
      const double y = has ? Y((column.*levels).front(), column) : 0;
      if (has && y >= At.Frame().Top && y <= At.Frame().Bottom) {
        run.push_back({At.X(column.X), y});
      } else {
        close();
      }
    }
    close();
  }

  void Levels() {
    if (Set.Tropopause) {
      Join("tropopause", &Column::Tropopauses, {Inks.Tropopause, 26, LineStyle::DashDot},
           "Tropopause");
    }
    // Where the field is the temperature its own isotherm says the same.
    if (Set.FreezingLevel && !(In.Field.Freezing && In.Field.Refusal.empty())) {
      Join("freezing level", &Column::FreezingLevels, {Inks.Freezing, 26, LineStyle::Dash},
           "Freezing level");
    }
  }

  // A thin line at each sounding, interpolated ones in dots.
  void Lines() {
    const Rect& frame = At.Frame();
    constexpr std::size_t kMost = 60;
    if (Columns.size() > kMost) return;
    for (const Column& column : Columns) {
      const double x = At.X(column.X);
      Line("sounding line", {{x, frame.Top}, {x, frame.Bottom}},
           {Inks.Faint, 6, column.IsInterpolated ? LineStyle::Dots : LineStyle::Solid});
    }
  }

  double BelowNames() const {
    return At.Frame().Bottom + kNameRow * static_cast<double>(RowsOf(Names));
  }

  void DrawNames() {
    const Rect& frame = At.Frame();
    for (const PlacedName& name : Names) {
      const double y = frame.Bottom + 140 + kNameRow * static_cast<double>(name.Row);
      Line("name mark", {{name.X, frame.Bottom}, {name.X, y - 80}}, Inks.Grid);
      Text("station", {name.Middle, y}, name.Text, kNote, AnchorX::Center, Inks.Ink);
    }
    if (In.Of.Kind == SectionKind::Time) {
      Text("time unit", {(frame.Left + frame.Right) / 2, BelowNames() + 250}, "month-day/time",
           kLabel, AnchorX::Center, Inks.Ink);
    }
  }
};

}  // namespace

SectionPage::SectionPage(const SectionInput& input, const Surface& on)
    : PlotPage(on, OnPaper(input.Set.Background == ScreenColor::Black)),
      In(input),
      Set(input.Set),
      Columns(input.Of.Columns),
      Inks(InksFor(input.Set)),
      Context(ContextOf(input.Of, input.Set)),
      Layout(CutPage(on, Rows())),
      Names(NamesOf(input, Layout)),
      At(MappingIn(FrameIn(Layout, input.Set), input, RowsOf(Names))),
      Room(At.Frame()) {}

SectionPlot PlotSection(const SectionInput& input, const Surface& on) {
  return Drawing(input, on).Draw();
}

std::string SectionTitle(const Section& section) {
  return section.Name.empty() ? "  VEXA Cross-Section"
                              : "  VEXA Cross-Section for:  " + section.Name;
}

std::optional<std::size_t> ColumnAt(const Section& section, const SectionMapping& at, Point place) {
  if (!at.Frame().Contains(place) || section.Columns.empty()) return std::nullopt;
  const double x = at.XAt(place.X);
  const auto nearest = std::ranges::min_element(
      section.Columns, {}, [x](const Column& column) { return std::fabs(column.X - x); });
  return static_cast<std::size_t>(nearest - section.Columns.begin());
}

std::string ReadSection(const SectionInput& input, const SectionMapping& at, Point place) {
  const auto nearest = ColumnAt(input.Of, at, place);
  if (!nearest) return {};
  const SoundingRecord& sounding = input.Of.Columns[*nearest].Sounding;
  std::string text = "Lat: " + Mask(sounding.LatSigned, "#0.00") +
                     "  Lon: " + Mask(sounding.LonSigned, "##0.00") +
                     "  Elev: " + Shortest(sounding.ElevM) + " m";
  const double x = at.XAt(place.X);
  if (input.Of.Kind == SectionKind::Distance) {
    text += "  Dist: " + Mask(FromKm(x, input.Set.Length), "#####0.00") + " " +
            std::string(Word(input.Set.Length));
  }
  const double coordinate = at.CoordinateAt(place.Y);
  switch (at.Axis().Scale) {
    case SectionScale::Pressure:
      return text + "  " + Mask(std::exp(-coordinate), "###0") + " mb";
    case SectionScale::Kilometers:
      return text + "  " + Mask(coordinate / 1000, "##0.00") + " km";
    case SectionScale::Feet:
      return text + "  " + Mask(FeetFromMeters(coordinate), "#####0") + " ft";
  }
  return text;
}

std::string SoundingLine(const Column& column) {
  return "Sounding:  " + std::string(Trim(column.Sounding.StationTitle)) +
         "   -   Elev:  " + Shortest(column.Sounding.ElevM) + " m";
}

}  // namespace vexa::crosssection
