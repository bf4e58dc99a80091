#include "crosssection/section_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "analysis/interpolate.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "crosssection/color_map.h"
#include "diagram/wind_symbol.h"
#include "picture/label_room.h"
#include "picture/layout.h"
#include "picture/text_width.h"

namespace vexa::crosssection {
namespace {

constexpr std::string_view kTitle = "title";
constexpr std::string_view kMain = "section";
constexpr std::string_view kScale = "color scale";
constexpr std::string_view kFoot = "captions";

constexpr double kNote = LetterSize(Type::Note);
constexpr double kLabel = LetterSize(Type::Label);
constexpr int kNameRows = 3;
constexpr double kOuter = 260;  // from the frame to the first and the last column

struct SectionInks {
  Color Paper{}, Ink{}, Faint{}, Ground{}, Freezing{}, Tropopause{}, Made{};
  Pen Frame{}, Grid{}, Line{}, Thick{}, Sub{};
};

Color MixedColor(Color from, Color to, double share) {
  const auto mix = [share](std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(a + (b - a) * share);
  };
  return {mix(from.Red, to.Red), mix(from.Green, to.Green), mix(from.Blue, to.Blue), from.Alpha};
}

SectionInks InksFor(const SectionOptions& set) {
  const bool black = set.Background == ScreenColor::Black;
  SectionInks inks;
  inks.Paper = black ? Color{0, 0, 0} : Color{255, 255, 255};
  inks.Ink = black ? Color{235, 235, 235} : Color{20, 20, 20};
  inks.Faint = MixedColor(inks.Ink, inks.Paper, 0.4);
  inks.Made = MixedColor(inks.Ink, inks.Paper, 0.55);
  inks.Ground = black ? Color{105, 85, 65} : Color{165, 140, 110};
  inks.Freezing = black ? Color{90, 170, 255} : Color{0, 70, 190};
  inks.Tropopause = black ? Color{255, 140, 220} : Color{150, 0, 110};
  inks.Frame = {inks.Ink, 14, LineStyle::Solid};
  inks.Grid = {MixedColor(inks.Ink, inks.Paper, 0.75), 5, LineStyle::Solid};
  const Color line = MixedColor(inks.Ink, inks.Paper, 0.2);
  inks.Line = {line, 12, LineStyle::Solid};
  inks.Thick = {line, 26, LineStyle::Solid};
  inks.Sub = {MixedColor(inks.Ink, inks.Paper, 0.45), 8, LineStyle::Dash};
  return inks;
}

// A step of 1, 2 or 5 times a power of ten of which at most so many fit.
double RoundStep(double range, double most) {
  const double step = std::pow(10, std::floor(std::log10(range / most)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (range / (step * factor) <= most) return step * factor;
  }
  return step * 10;
}

std::string Trimmed(std::string text) {
  return std::string(Trim(text));
}

class Drawing {
 public:
  Drawing(const SectionInput& input, const Surface& on)
      : input_(input),
        set_(input.Set),
        columns_(input.Of.Columns),
        inks_(InksFor(input.Set)),
        context_(ContextOf(input.Of, input.Set)),
        page_(on.Width, on.Height, inks_.Paper),
        layout_(CutPage(on, Rows())),
        at_(MappingIn(layout_)) {}

  SectionPlot Draw() && {
    Titles();
    Axes();
    if (!input_.Field.Refusal.empty()) {
      Refusal();
    } else if (input_.Field.Field->Kind == FieldKind::Category) {
      Boxes();
    } else {
      Contours();
    }
    if (set_.Terrain) Terrain();
    Line("frame", Corners(at_.Frame()), inks_.Frame);
    Lines();
    if (set_.PlotWinds) Winds();
    Levels();
    Names();
    return {std::move(page_), at_};
  }

 private:
  static std::array<RegionRow, 4> Rows() {
    return {{{.Name = kTitle, .At = Place::Above, .LeastHeight = 700},
             {.Name = kMain, .At = Place::Main, .LeastWidth = 4000, .LeastHeight = 3000},
             {.Name = kScale, .At = Place::Beside, .LeastWidth = 900, .Priority = 1},
             {.Name = kFoot, .At = Place::Foot, .LeastHeight = 200, .Priority = 2}}};
  }

  SectionMapping MappingIn(const PageLayout& layout) const {
    const Rect* main = layout.Find(kMain);
    const Rect place = main != nullptr ? *main : layout.Page;
    const double names = kNameRows * 170 + 420;
    Rect frame{place.Left + 850, place.Top + 200, place.Right - 120, place.Bottom - names};
    if (set_.Size == DiagramSize::Small) {
      constexpr double kShare = 0.7;
      frame = {frame.Left, frame.Bottom - kShare * frame.Height(),
               frame.Left + kShare * frame.Width(), frame.Bottom};
    }
    // Symbols of the outer columns stand inside the frame too.
    const double beside = kOuter / (frame.Width() - 2 * kOuter) * input_.Of.RangeX();
    return {frame, columns_.front().X - beside, columns_.back().X + beside, input_.Field.Axis};
  }

  static std::vector<Point> Corners(const Rect& r) {
    return {{r.Left, r.Top},
            {r.Right, r.Top},
            {r.Right, r.Bottom},
            {r.Left, r.Bottom},
            {r.Left, r.Top}};
  }
  void Line(std::string_view tag, std::vector<Point> points, const Pen& pen) {
    page_.Add(tag, Polyline{.Points = std::move(points), .Stroke = pen});
  }
  void Text(std::string_view tag, Point at, std::string text, double size, AnchorX across,
            Color ink, bool bold = false) {
    page_.Add(tag, Label{.At = at,
                         .Text = std::move(text),
                         .Across = across,
                         .Size = size,
                         .Ink = ink,
                         .Bold = bold,
                         .Halo = inks_.Paper});
  }

  // From columns and rows of the grid to the page.
  Point OnPage(const Point& node) const {
    const GridX& grid = input_.Field.Grid;
    const Rect& frame = at_.Frame();
    const double x = columns_.front().X + (node.X - 1) / (grid.Columns() - 1) * input_.Of.RangeX();
    return {at_.X(x), frame.Bottom - (node.Y - 1) / (grid.Rows() - 1) * frame.Height()};
  }
  std::vector<Point> OnPage(const std::vector<Point>& line) const {
    std::vector<Point> points;
    points.reserve(line.size());
    for (const Point& node : line) points.push_back(OnPage(node));
    return points;
  }
  double Y(const analysis::LevelPoint& at, const Column& column) const {
    return at_.Y(at_.Axis().Of(at, column.Ground()));
  }

  void Titles() {
    const Rect* place = layout_.Find(kTitle);
    if (place == nullptr) return;
    Text("title", {place->Left + 100, place->Top + 170}, Trimmed(SectionTitle(input_.Of)),
         LetterSize(Type::Title), AnchorX::Left, inks_.Ink, true);
    Text("field title", {place->Left + 100, place->Top + 430},
         Trimmed(TitleOf(*input_.Field.Field, context_)), LetterSize(Type::Value), AnchorX::Left,
         inks_.Ink, true);
    Text("from to", {place->Left + 100, place->Top + 620}, FromTo(), kNote, AnchorX::Left,
         inks_.Faint);
  }

  std::string FromTo() const {
    const SoundingRecord& first = columns_.front().Sounding;
    const SoundingRecord& last = columns_.back().Sounding;
    const std::string count = Shortest(static_cast<int>(columns_.size())) + " soundings";
    if (input_.Of.Kind == SectionKind::Time) {
      return Trimmed(first.StationTitle) + ",  " + TimeText(first.Time) + "  -  " +
             TimeText(last.Time) + ",  " + count;
    }
    return Trimmed(first.StationTitle) + "  -  " + Trimmed(last.StationTitle) + ",  " + count;
  }

  void Axes() {
    HeightMarks();
    const Rect& frame = at_.Frame();
    if (input_.Of.Kind == SectionKind::Time) return;
    const double range = FromKm(input_.Of.RangeX(), set_.Length);
    const double step = RoundStep(range, 8);
    const double y = frame.Bottom + kNameRows * 170 + 150;
    for (double shown = 0; shown <= range * (1 + 1e-9); shown += step) {
      const double x = at_.X(columns_.front().X + shown / range * input_.Of.RangeX());
      Line("distance mark", {{x, frame.Bottom}, {x, frame.Bottom + 60}}, inks_.Frame);
      Text("distance", {x, y}, Mask(shown, step < 1 ? "##0.0#" : "####0"), kNote, AnchorX::Center,
           inks_.Ink);
    }
    Text("distance unit", {(frame.Left + frame.Right) / 2, y + 200}, std::string(Word(set_.Length)),
         kLabel, AnchorX::Center, inks_.Ink);
  }

  void HeightMark(double coordinate, std::string text) {
    const Rect& frame = at_.Frame();
    const double share = at_.Axis().Share(coordinate);
    if (share < -1e-9 || share > 1 + 1e-9) return;
    const double y = at_.Y(coordinate);
    Line("grid", {{frame.Left, y}, {frame.Right, y}}, inks_.Grid);
    Text("height", {frame.Left - 90, y}, std::move(text), kNote, AnchorX::Right, inks_.Ink);
  }

  void HeightMarks() {
    const Rect& frame = at_.Frame();
    const VerticalAxis& axis = at_.Axis();
    std::string unit;
    if (axis.Scale == SectionScale::Pressure) {
      double above = frame.Bottom + 1000;
      for (const int press : {1050, 1000, 925, 850, 700, 600, 500, 400, 300, 250, 200, 150, 100, 70,
                              50, 30, 20, 10}) {
        const double y = at_.Y(-std::log(press));
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
    Text("height unit", {frame.Left, frame.Top - 130}, unit, kNote, AnchorX::Right, inks_.Ink);
  }

  // The colour of the values between two levels.
  Color BandColor(double from, double to) const {
    const bool black = set_.Background == ScreenColor::Black;
    const FieldAnalysis& field = input_.Field;
    const double first = field.Contours.front().Level - field.Interval;
    const double last = field.Contours.back().Level + field.Interval;
    const double middle = (from + to) / 2;
    if (field.Field->Colors == FieldColors::Rising) {
      return RisingColor((middle - first) / (last - first), black);
    }
    const double zero = field.Field->Unit == FieldUnit::Temperature ? FreezingIn(context_.Temp) : 0;
    const double most = std::max(std::fabs(first - zero), std::fabs(last - zero));
    return SignedColor((middle - zero) / most, black);
  }

  void Fill(const Contour& contour, const Color& ink) {
    Area area{.Fill = {ink, FillStyle::Plain}};
    for (const auto& ring : contour.Region) area.Rings.push_back(OnPage(ring));
    if (!area.Rings.empty()) page_.Add("band", std::move(area));
  }

  std::string LevelText(double level) const { return Mask(level, input_.Field.Field->Mask); }

  // Each region over the one of the level below: no seams, and the colours end at the lines.
  void Contours() {
    const FieldAnalysis& field = input_.Field;
    const double interval = field.Interval;
    LabelRoom room(at_.Frame());
    if (set_.Filled) {
      const double least = field.Grid.Range().Least - interval;
      const double first = field.Contours.front().Level;
      Fill(TraceContour(field.Drawn, least, interval, 0), BandColor(first - interval, first));
      for (const Contour& contour : field.Contours) {
        Fill(contour, BandColor(contour.Level, contour.Level + interval));
      }
      ColorScale();
    }
    if (set_.Lines) {
      for (const Contour& contour : field.Between) {
        for (const Isoline& line : contour.Lines) {
          Line("Sub-Isoline", OnPage(line.Points), inks_.Sub);
        }
      }
      for (const Contour& contour : field.Contours) Isolines(contour, room);
    }
    if (field.Freezing) {
      for (const Isoline& line : field.Freezing->Lines) {
        Line("freezing isotherm", OnPage(line.Points), {inks_.Freezing, 38, LineStyle::Solid});
      }
    }
    for (const Extremum& extremum : field.Extrema) MaxMin(extremum, room);
  }

  Pen PenOf(double level) const {
    const double zero = std::fabs(level) < input_.Field.Interval * 1e-6;
    if (zero && input_.Field.Field->Colors == FieldColors::Signed) return inks_.Thick;
    Pen pen = inks_.Line;
    if (input_.Field.Field->IsMoisture && set_.DotMoisture) {
      pen.Style = LineStyle::Dots;
    } else if (level < 0 && !zero) {
      pen.Style = LineStyle::Dash;
    }
    return pen;
  }

  static std::string_view TagOf(const Isoline& line, const Pen& pen) {
    constexpr std::size_t kCircle = 12;  // nodes; corner cutting has doubled them
    if (line.IsClosed && line.Points.size() < 2 * kCircle) return "Isoline Circles";
    if (pen.Style == LineStyle::Dots) return "Dot-Isoline";
    return pen.Style == LineStyle::Dash ? "Dash-Isoline" : "Line-Isoline";
  }

  void Isolines(const Contour& contour, LabelRoom& room) {
    const Pen pen = PenOf(contour.Level);
    const std::string text = LevelText(contour.Level);
    const double width = TextWidth(text, kNote);
    for (const Isoline& line : contour.Lines) {
      std::vector<Point> points = OnPage(line.Points);
      const std::string_view tag = TagOf(line, pen);
      const auto place = tag == "Isoline Circles" ? std::nullopt
                                                  : PlaceLabel(points, at_.Frame().Width() / 6,
                                                               std::max(3 * width, 600.0));
      Line(tag, std::move(points), pen);
      if (!place) continue;
      const double half = (width + kNote) / 2;
      const Rect taken{place->At.X - half, place->At.Y - kNote, place->At.X + half,
                       place->At.Y + kNote};
      if (!room.IsFree(taken)) continue;
      room.Take(taken);
      page_.Add("Num-Isoline", Label{.At = place->At,
                                     .Text = text,
                                     .Across = AnchorX::Center,
                                     .Size = kNote,
                                     .Ink = inks_.Ink,
                                     .Angle = place->Angle,
                                     .Halo = inks_.Paper});
    }
  }

  void MaxMin(const Extremum& extremum, LabelRoom& room) {
    const Point at =
        OnPage(Point{static_cast<double>(extremum.Column), static_cast<double>(extremum.Row)});
    const Rect taken{at.X - 200, at.Y - 1.6 * kNote, at.X + 200, at.Y + kNote};
    if (!room.IsFree(taken)) return;
    room.Take(taken);
    Text("MaxMin", {at.X, at.Y - 0.55 * kLabel}, extremum.IsMaximum ? "H" : "L", kLabel,
         AnchorX::Center, inks_.Ink, true);
    Text("MaxMin", {at.X, at.Y + 0.55 * kNote}, LevelText(static_cast<double>(extremum.Value)),
         kNote, AnchorX::Center, inks_.Ink);
  }

  void ColorScale() {
    const Rect* place = layout_.Find(kScale);
    if (place == nullptr) return;
    const std::vector<Contour>& contours = input_.Field.Contours;
    const double interval = input_.Field.Interval;
    const Rect& frame = at_.Frame();
    const double height = frame.Height() / static_cast<double>(contours.size() + 1);
    const Rect bar{place->Left + 60, frame.Top, place->Left + 260, frame.Bottom};
    double below = frame.Bottom + kNote;
    for (std::size_t i = 0; i <= contours.size(); ++i) {
      const double bottom = bar.Bottom - static_cast<double>(i) * height;
      const double from = i == 0 ? contours.front().Level - interval : contours[i - 1].Level;
      page_.Add("color scale",
                Area{.Rings = {Corners({bar.Left, bottom - height, bar.Right, bottom})},
                     .Fill = {BandColor(from, from + interval), FillStyle::Plain}});
      if (i == 0 || below - bottom < 1.1 * kNote) continue;
      below = bottom;
      Text("scale value", {bar.Right + 50, bottom}, LevelText(from), kNote, AnchorX::Left,
           inks_.Ink);
    }
    Line("color scale frame", Corners(bar), inks_.Grid);
    Text("scale unit", {bar.Left, bar.Top - 110}, UnitOf(*input_.Field.Field, context_), kNote,
         AnchorX::Left, inks_.Ink);
  }

  // From half-way to the neighbour at the left to half-way to the one at the right.
  std::pair<double, double> SpanOf(std::size_t i) const {
    const auto half = [this](std::size_t a, std::size_t b) {
      return at_.X((columns_[a].X + columns_[b].X) / 2);
    };
    return {i == 0 ? at_.X(columns_[i].X) : half(i - 1, i),
            i + 1 == columns_.size() ? at_.X(columns_[i].X) : half(i, i + 1)};
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
    const bool black = set_.Background == ScreenColor::Black;
    constexpr double kMostClass = 8;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const auto [left, right] = SpanOf(i);
      const Rect& frame = at_.Frame();
      for (const ClassLayer& layer : Runs(input_.Field.Field->Layers(columns_[i]))) {
        Rect box{left, std::clamp(Y(layer.Top, columns_[i]), frame.Top, frame.Bottom), right,
                 std::clamp(Y(layer.Base, columns_[i]), frame.Top, frame.Bottom)};
        if (box.Height() <= 0 || box.Width() <= 0) continue;
        page_.Add("category",
                  Area{.Rings = {Corners(box)},
                       .Fill = {CategoryColor(layer.Class / kMostClass, black), FillStyle::Plain},
                       .Stroke = inks_.Grid});
        const std::string word = Trimmed(std::string(layer.Word));
        if (box.Height() < kNote || box.Width() < TextWidth(word, kNote)) continue;
        Text("category word", {(box.Left + box.Right) / 2, (box.Top + box.Bottom) / 2},
             std::string(layer.Word), kNote, AnchorX::Center, inks_.Ink);
      }
    }
  }

  Color CategoryColor(double share, bool black) const {
    // Clouds and what is there or not have few classes: enough colour for the lowest too.
    return input_.Field.Field->Code == "CLDS" ? MixedColor(inks_.Paper, inks_.Ink, 0.15 + share)
                                              : SignedColor(std::min(1.0, 0.3 + share), black);
  }

  void Refusal() {
    const Rect& frame = at_.Frame();
    double y = frame.Top + frame.Height() / 3;
    for (const std::string& line : input_.Field.Refusal) {
      Text("refusal", {frame.Left + 400, y}, line, LetterSize(Type::Value), AnchorX::Left,
           inks_.Ink);
      y += kLineStep * 1.2;
    }
  }

  void Terrain() {
    const Rect& frame = at_.Frame();
    std::vector<Point> ring = {{frame.Left, frame.Bottom}, {frame.Left, frame.Bottom}};
    bool any = false;
    for (const Column& column : columns_) {
      const analysis::LevelProfile& levels = column.Levels;
      const double press =
          levels.Count() > 0 ? levels.Press(1) : analysis::IsaPressure(column.Ground());
      const double y = at_.Y(at_.Axis().Of(press, column.Ground(), column.Ground()));
      ring.push_back({at_.X(column.X), std::clamp(y, frame.Top, frame.Bottom)});
      any = any || ring.back().Y < frame.Bottom;
    }
    ring[1].Y = ring[2].Y;
    ring.push_back({frame.Right, ring.back().Y});
    ring.push_back({frame.Right, frame.Bottom});
    ring.push_back(ring.front());
    if (any) {
      page_.Add("terrain", Area{.Rings = {std::move(ring)},
                                .Fill = {inks_.Ground, FillStyle::Plain},
                                .Stroke = {inks_.Ink, 10, LineStyle::Solid}});
    }
  }

  // A line through the same level of neighbouring columns; it ends where one has none.
  void Join(std::string_view tag, const std::vector<analysis::LevelPoint> Column::*levels,
            const Pen& pen, std::string_view word) {
    std::vector<Point> run;
    bool named = false;
    const auto close = [&] {
      if (run.size() > 1) {
        if (!named) {
          Text(tag, {run.front().X + 60, run.front().Y - 0.8 * kNote}, std::string(word), kNote,
               AnchorX::Left, pen.Ink);
        }
        named = true;
        Line(tag, run, pen);
      }
      run.clear();
    };
    for (const Column& column : columns_) {
      const bool has = !(column.*levels).empty();
      const double y = has ? Y((column.*levels).front(), column) : 0;
      if (has && y >= at_.Frame().Top && y <= at_.Frame().Bottom) {
        run.push_back({at_.X(column.X), y});
      } else {
        close();
      }
    }
    close();
  }

  void Levels() {
    if (set_.Tropopause) {
      Join("tropopause", &Column::Tropopauses, {inks_.Tropopause, 26, LineStyle::DashDot},
           "Tropopause");
    }
    // Where the field is the temperature its own isotherm says the same.
    if (set_.FreezingLevel && !(input_.Field.Freezing && input_.Field.Refusal.empty())) {
      Join("freezing level", &Column::FreezingLevels, {inks_.Freezing, 26, LineStyle::Dash},
           "Freezing level");
    }
  }

  // A thin line at each sounding, interpolated ones in dots.
  void Lines() {
    const Rect& frame = at_.Frame();
    constexpr std::size_t kMost = 60;
    if (columns_.size() > kMost) return;
    for (const Column& column : columns_) {
      const double x = at_.X(column.X);
      Line("sounding line", {{x, frame.Top}, {x, frame.Bottom}},
           {inks_.Faint, 6, column.IsInterpolated ? LineStyle::Dots : LineStyle::Solid});
    }
  }

  void Winds() {
    const int step = WindStep(input_, at_);
    ViewSettings look = input_.Look;
    look.Speed = set_.Speed;
    look.BarbSize = set_.Barbs;
    look.Winds = set_.Symbols == SymbolKind::Flags ? WindDisplay::Flags : WindDisplay::Barbs;
    const double apart = 1.5 * diagram::SizeOf(set_.Barbs).Shaft;
    double lastX = -1e9;
    for (const Column& column : columns_) {
      const double x = at_.X(column.X);
      if (x - lastX < apart) continue;
      if (ColumnWinds(column, x, step, diagram::SymbolOptions(look, column.Sounding))) lastX = x;
    }
    const Rect* place = layout_.Find(kFoot);
    if (place == nullptr) return;
    std::string caption = "Winds plotted in " + std::string(Word(set_.Speed));
    if (step > 1) caption = "Plotted every " + Shortest(step) + "th wind.  " + caption;
    Text("wind caption", {place->Left + 100, (place->Top + place->Bottom) / 2}, caption, kNote,
         AnchorX::Left, inks_.Faint);
  }

  // Symbols at every n-th level, and none on the one before.
  bool ColumnWinds(const Column& column, double x, int step, const ViewSettings& look) {
    const SoundingRecord& sounding = column.Sounding;
    const Rect& frame = at_.Frame();
    const double apart = 0.6 * diagram::SizeOf(set_.Barbs).Shaft;
    const Pen pen{column.IsInterpolated ? inks_.Made : inks_.Ink, 14, LineStyle::Solid};
    double last = 1e9;
    bool any = false;
    for (int i = 1; i <= sounding.NumWindLevels(); i += step) {
      if (!sounding.HasWind(i)) continue;
      const double height = sounding.WindHgt(i);
      const double press = analysis::GetPRESS(column.Levels, height);
      if (!HasHeight(press)) continue;
      const double y = at_.Y(at_.Axis().Of(press, height, column.Ground()));
      if (y < frame.Top || y > frame.Bottom || last - y < apart) continue;
      last = y;
      diagram::DrawWindSymbol(page_, {x, y}, {sounding.WindDir(i), sounding.WindSpd(i)}, look, pen);
      any = true;
    }
    return any;
  }

  // Names in rows under the axis, each where there is room; those without any are left out.
  void Names() {
    const Rect& frame = at_.Frame();
    std::array<double, kNameRows> ends;
    ends.fill(-1e9);
    const double left = layout_.Page.Left;
    const double right = layout_.Page.Right;
    for (const Column& column : columns_) {
      if (column.IsInterpolated) continue;
      const double x = at_.X(column.X);
      const std::string name = ShortName(column, input_.Of.Kind);
      const double half = TextWidth(name, kNote) / 2;
      const double middle = std::clamp(x, left + half, std::max(left + half, right - half));
      for (std::size_t row = 0; row < ends.size(); ++row) {
        if (middle - half < ends[row] + 80) continue;
        ends[row] = middle + half;
        const double y = frame.Bottom + 140 + 170 * static_cast<double>(row);
        Line("name mark", {{x, frame.Bottom}, {x, y - 80}}, inks_.Grid);
        Text("station", {middle, y}, name, kNote, AnchorX::Center, inks_.Ink);
        break;
      }
    }
    if (input_.Of.Kind == SectionKind::Time) {
      Text("time unit", {(frame.Left + frame.Right) / 2, frame.Bottom + kNameRows * 170 + 350},
           "month-day/time", kLabel, AnchorX::Center, inks_.Ink);
    }
  }

  const SectionInput& input_;
  const SectionOptions& set_;
  const std::vector<Column>& columns_;
  SectionInks inks_;
  FieldContext context_;
  Picture page_;
  PageLayout layout_;
  SectionMapping at_;
};

}  // namespace

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

int WindStep(const SectionInput& input, const SectionMapping& at) {
  if (input.Look.WindPlotSectionRatio > 0) return input.Look.WindPlotSectionRatio;
  const double apart = diagram::SizeOf(input.Set.Barbs).Shaft;
  double densest = 0;  // symbols in the room of one
  for (const Column& column : input.Of.Columns) {
    int count = 0;
    double lowest = 0;
    double highest = 0;
    for (int i = 1; i <= column.Sounding.NumWindLevels(); ++i) {
      if (!column.Sounding.HasWind(i)) continue;
      const double height = column.Sounding.WindHgt(i);
      const double press = analysis::GetPRESS(column.Levels, height);
      if (!HasHeight(press)) continue;
      const double y = at.Y(at.Axis().Of(press, height, column.Ground()));
      if (y < at.Frame().Top || y > at.Frame().Bottom) continue;
      if (count++ == 0) lowest = y;
      highest = y;
    }
    if (count > 1 && lowest > highest) {
      densest = std::max(densest, (count - 1) * apart / (lowest - highest));
    }
  }
  return std::max(1, static_cast<int>(std::ceil(densest - 1e-9)));
}

}  // namespace vexa::crosssection
