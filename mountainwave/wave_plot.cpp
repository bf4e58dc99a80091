#include "mountainwave/wave_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "picture/label_room.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::mountainwave {
namespace {

constexpr std::string_view kTitle = "title";
constexpr std::string_view kWaves = "waves";
constexpr std::string_view kWind = "wind";
constexpr std::string_view kScorer = "scorer";

constexpr double kNote = LetterSize(Type::Note);
constexpr double kLabel = LetterSize(Type::Label);

struct WaveInks {
  Color Paper{}, Ink{}, Faint{}, Rock{}, Terrain{}, Meadow{}, Interface{}, Wind{}, Scorer{},
      Rotor{};
  Pen Frame{}, Grid{}, Stream{};
};

WaveInks InksFor(const WavePlotInput& input) {
  const bool black = input.Look.Screen == ScreenColor::Black;
  WaveInks inks;
  inks.Paper = OnPaper(black).Paper;
  inks.Ink = OnPaper(black).Ink;
  inks.Faint = Blend(inks.Ink, inks.Paper, 0.4);
  inks.Rock = black ? Color{150, 145, 140} : Color{165, 158, 150};
  inks.Terrain = black ? Color{110, 92, 72} : Color{150, 125, 95};
  inks.Meadow = black ? Color{70, 92, 60} : Color{125, 145, 95};
  inks.Interface = black ? Color{215, 215, 110} : Color{90, 80, 0};
  inks.Wind = black ? Color{120, 200, 120} : Color{0, 110, 60};
  inks.Scorer = black ? Color{220, 150, 220} : Color{130, 50, 130};
  inks.Rotor = black ? Color{255, 170, 90} : Color{190, 80, 0};
  inks.Frame = {inks.Ink, 14, LineStyle::Solid};
  inks.Grid = {Blend(inks.Ink, inks.Paper, 0.82), 6, LineStyle::Solid};
  const bool isThick = input.From.Set.Line == WaveLine::Thick;
  inks.Stream = {Blend(inks.Ink, inks.Paper, 0.15), isThick ? 22.0 : 10.0, LineStyle::Solid};
  return inks;
}

// Up- and downdraughts by classes of m/s, both ways from the paper; blue and orange are told apart
// by everybody.
Color ShadeOf(int shade, const Color& paper) {
  constexpr Color kUp{205, 85, 0};
  constexpr Color kDown{0, 95, 175};
  return Blend(paper, shade > 0 ? kUp : kDown, 0.14 * std::abs(shade));
}
constexpr double kSteps[] = {0.25, 1, 2, 3.5, 5, 8};  // m/s
int ShadeClass(double velocity) {
  int shade = 0;
  for (const double step : kSteps) shade += std::fabs(velocity) >= step ? 1 : 0;
  return velocity < 0 ? -shade : shade;
}

// A step of 1, 2 or 5 times a power of ten of which at most so many fit.
double RoundStep(double range, double most) {
  double step = std::pow(10, std::floor(std::log10(range / most)));
  for (const double factor : {1.0, 2.0, 5.0, 10.0}) {
    if (range / (step * factor) <= most) return step * factor;
  }
  return step * 10;
}

// Height of the ground above the station, km, at a distance behind the first ridge.
double TerrainAt(const WaveSource& from, double km) {
  double height = 0;
  double at = 0;
  for (const RidgeWaves& ridge : from.Waves.Ridges) {
    const Wave* wave = ShownOf(ridge, from.Selected);
    const double b = ridge.Form.HalfWidthKm.value_or(wave != nullptr ? wave->HalfWidthKm : 2);
    const double x = km - at;
    height += std::max(0.0, ridge.Form.Relief) / 1000 * b * b / (x * x + b * b);
    at = from.Waves.DistanceKm;
  }
  return height;
}

double TopOf(const WavePlotInput& input) {
  const double ground = input.Levels.Count() > 0 ? input.Levels.Height(1) : 0;
  constexpr double kOtherwiseKm = 12;
  if (input.Levels.Count() < 2) return kOtherwiseKm;
  const analysis::Sample limit = analysis::HeightAt(input.Levels, input.From.Set.UpperLimit);
  const double top = limit.Ok() ? limit.Value : input.Levels.Height.Top();
  constexpr double kLeastKm = 3;
  return std::max(kLeastKm, (top - ground) / 1000);
}

// Room for three of the longest waves, and for the ridges.
double EndOf(const WavePlotInput& input) {
  if (input.From.Set.Length > 0) return input.From.Set.Length;
  double length = 20;
  for (const RidgeWaves& ridge : input.From.Waves.Ridges) {
    const Wave* wave = ShownOf(ridge, input.From.Selected);
    if (wave != nullptr) length = std::max(length, 4 * wave->Of.LengthKm);
  }
  return length + input.From.Waves.DistanceKm;
}

double StartOf(const WavePlotInput& input, double end) {
  double widest = end / 8;
  for (const RidgeWaves& ridge : input.From.Waves.Ridges) {
    widest = std::max(widest, 2 * ridge.Form.HalfWidthKm.value_or(0));
  }
  return -widest;
}

class Drawing {
 public:
  Drawing(const WavePlotInput& input, const Surface& surface)
      : input_(input),
        inks_(InksFor(input)),
        page_(surface.Width, surface.Height, inks_.Paper),
        layout_(CutPage(surface, Rows(input.From.Set))) {
    const Rect* main = layout_.Find(kWaves);
    const Rect place = main != nullptr ? *main : layout_.Page;
    const double end = EndOf(input);
    const Rect frame{place.Left + 900, place.Top + 250, place.Right - 150, place.Bottom - 550};
    labels_ = LabelRoom(frame);
    at_ = WaveMapping(frame, StartOf(input, end), end, TopOf(input),
                      input.From.Set.Scale == WaveScale::Pressure, input.Levels);
  }

  WavePlot Draw() && {
    Titles();
    const WaveOptions& set = input_.From.Set;
    const bool hasAny = input_.From.Waves.Any();
    if (hasAny && set.Shading && !set.LabelsOnly) Shading();
    Axes();
    if (hasAny && !set.LabelsOnly) Streamlines();
    if (set.Terrain) Terrain();
    if (hasAny && input_.RotorHints && !set.LabelsOnly) Rotors();
    Interfaces();
    if (hasAny && set.Shading && !set.LabelsOnly) Legend();
    if (!hasAny) Remark();
    WindProfile();
    ScorerColumn();
    Line("frame", OutlineOf(at_.Frame()), inks_.Frame);
    return {std::move(page_), at_};
  }

 private:
  static std::vector<RegionRow> Rows(const WaveOptions& set) {
    constexpr double kColumn = 1250;
    std::vector<RegionRow> rows = {
        {.Name = kTitle, .At = Place::Above, .LeastHeight = 620, .Priority = 0},
        {.Name = kWaves, .At = Place::Main, .LeastWidth = 5500, .LeastHeight = 3000}};
    if (set.WindProfile) {
      rows.push_back({.Name = kWind, .At = Place::Beside, .LeastWidth = kColumn, .Priority = 1});
    }
    if (set.ScorerProfile) {
      rows.push_back({.Name = kScorer, .At = Place::Beside, .LeastWidth = kColumn, .Priority = 2});
    }
    return rows;
  }

  void Line(std::string_view tag, std::vector<Point> points, const Pen& pen) {
    page_.Add(tag, Polyline{.Points = std::move(points), .Stroke = pen});
  }
  void Text(std::string_view tag, Point at, std::string text, double size, AnchorX across,
            Color ink, bool bold = false, AnchorY down = AnchorY::Middle) {
    page_.Add(tag, Label{.At = at,
                         .Text = std::move(text),
                         .Across = across,
                         .Down = down,
                         .Size = size,
                         .Ink = ink,
                         .Bold = bold,
                         .Halo = inks_.Paper});
  }

  void Titles() {
    const Rect* place = layout_.Find(kTitle);
    if (place == nullptr) return;
    Text("title", {place->Left + 100, place->Top + 180}, "Mountain-Wave", LetterSize(Type::Title),
         AnchorX::Left, inks_.Ink, true);
    Text("title", {place->Left + 100, place->Top + 450},
         "from Sounding  " + input_.From.Sounding.StationTitle, kLabel, AnchorX::Left, inks_.Ink);
    Text("decay", {place->Right - 100, place->Top + 450},
         std::string(DecayText(input_.From.Set.DecayOn)), kNote, AnchorX::Right, inks_.Faint);
  }

  // Bands of equal class, row by row. A row reaches a little under the next one, so that no paper
  // shines through between them.
  void Shading() {
    constexpr int kAcross = 160;
    constexpr int kUp = 130;
    constexpr double kOverlap = 14;
    const Rect& frame = at_.Frame();
    const double width = frame.Width() / kAcross;
    const double height = frame.Height() / kUp;
    for (int row = 0; row < kUp; ++row) {
      const double top = frame.Top + row * height;
      const double bottom = std::min(frame.Bottom, top + height + kOverlap);
      const double z = at_.HeightAt(top + height / 2);
      const auto velocity = [&](double x) { return Moves(at_.KmAt(x), z).Velocity; };
      double runFrom = frame.Left;
      int runShade = ShadeClass(velocity(frame.Left));
      const auto close = [&](double until, int next) {
        if (runShade != 0) {
          page_.Add(
              runShade > 0 ? "updraught" : "downdraught",
              Area{.Rings = {{{runFrom, top}, {until, top}, {until, bottom}, {runFrom, bottom}}},
                   .Fill = {ShadeOf(runShade, inks_.Paper), FillStyle::Plain}});
        }
        runFrom = until;
        runShade = next;
      };
      for (int column = 1; column <= kAcross; ++column) {
        const double right = frame.Left + column * width;
        const int shade = ShadeClass(velocity(right));
        double low = right - width;
        while (shade != runShade && low < right) {  // class by class
          double high = right;
          while (high - low > kUnitsPerPixel / 10) {
            const double middle = (low + high) / 2;
            (ShadeClass(velocity(middle)) == runShade ? low : high) = middle;
          }
          close(high, ShadeClass(velocity(high)));
          low = high;
        }
      }
      close(frame.Right, 0);
    }
  }

  Motion Moves(double xKm, double zKm) const {
    return MotionAt(input_.From.Waves, input_.From.Set.WaveDecay(), xKm, zKm, input_.From.Selected);
  }

  void Axes() {
    const Rect& frame = at_.Frame();
    const WaveUnits& units = input_.From.Set.Units;
    const double perKm = FromKm(1, units.Distance);
    const double step = RoundStep((at_.EndKm() - at_.StartKm()) * perKm, 9);
    for (double shown = std::ceil(at_.StartKm() * perKm / step) * step;
         shown <= at_.EndKm() * perKm + 1e-9; shown += step) {
      const double x = at_.X(shown / perKm);
      Line("grid", {{x, frame.Top}, {x, frame.Bottom}}, inks_.Grid);
      Text("axis label", {x, frame.Bottom + 150}, Mask(shown, "###0.#"), kNote, AnchorX::Center,
           inks_.Ink);
    }
    Text("axis label", {(frame.Left + frame.Right) / 2, frame.Bottom + 380},
         std::string(Word(units.Distance)), kLabel, AnchorX::Center, inks_.Ink);
    if (input_.From.Set.Scale == WaveScale::Pressure) {
      PressureAxis();
    } else {
      HeightAxis();
    }
  }

  void AxisMark(double heightKm, std::string text) {
    const Rect& frame = at_.Frame();
    if (heightKm < -1e-9 || heightKm > at_.TopKm()) return;
    const double y = at_.Y(heightKm);
    Line("grid", {{frame.Left, y}, {frame.Right, y}}, inks_.Grid);
    Text("axis label", {frame.Left - 90, y}, std::move(text), kNote, AnchorX::Right, inks_.Ink);
  }

  // Heights above the sea, as pilots read them.
  void HeightAxis() {
    const Rect& frame = at_.Frame();
    const bool isFeet = input_.From.Set.Scale == WaveScale::Feet;
    const double ground = StationKm();
    const double perKm = isFeet ? 1 / kKmPerFoot / 1000 : 1;
    const double step = RoundStep(at_.TopKm() * perKm, 8);
    for (double shown = std::ceil(ground * perKm / step) * step;
         shown <= (ground + at_.TopKm()) * perKm; shown += step) {
      AxisMark(shown / perKm - ground, Mask(shown, "##0.#"));
    }
    Text("axis label", {frame.Left - 90, frame.Top - 130}, isFeet ? "ft (x1000) MSL" : "km MSL",
         kNote, AnchorX::Center, inks_.Ink);
  }

  void PressureAxis() {
    const Rect& frame = at_.Frame();
    constexpr int kLabels[] = {1050, 1000, 900, 800, 700, 600, 500, 400, 300, 250, 200, 150, 100};
    for (const int press : kLabels) {
      const analysis::Sample height = analysis::HeightAt(input_.Levels, press);
      if (height.Ok()) AxisMark(height.Value / 1000 - StationKm(), Shortest(press));
    }
    Text("axis label", {frame.Left - 90, frame.Top - 130}, "mb", kNote, AnchorX::Center, inks_.Ink);
  }

  double StationKm() const { return input_.From.Sounding.ElevM / 1000.0; }

  // The undisturbed heights of the lines, km: equal steps of height, or of potential temperature
  // where the air has more than one.
  std::vector<double> LineHeights() const {
    constexpr int kLines = 16;
    std::vector<double> heights;
    const std::vector<FlowLevel>& levels = input_.From.Waves.Ridges.front().Flow.Levels;
    if (input_.From.Set.Traces == WaveTraces::Isentropes && levels.size() > 1) {
      double most = levels.front().Theta;  // unstable layers have none of their own
      double last = most;
      for (const FlowLevel& level : levels) {
        if (level.Height / 1000 <= at_.TopKm()) most = std::max(most, level.Theta);
      }
      const double step = std::max(1.0, RoundStep(std::max(1.0, most - last), 2.0 * kLines));
      double next = (std::floor(last / step) + 1) * step;
      for (std::size_t i = 0; i + 1 < levels.size(); ++i) {
        const FlowLevel& low = levels[i];
        const FlowLevel& high = levels[i + 1];
        for (; next <= high.Theta && high.Theta > low.Theta; next += step) {
          const double share = std::max(0.0, (next - low.Theta) / (high.Theta - low.Theta));
          heights.push_back((low.Height + share * (high.Height - low.Height)) / 1000);
        }
      }
      return heights;
    }
    for (int i = 1; i < kLines; ++i) heights.push_back(at_.TopKm() * i / kLines);
    return heights;
  }

  // A line keeps its way over the ridge itself, fading upward, and swings behind it. It turns into
  // the wave within the first eighth of a wavelength.
  void Streamlines() {
    constexpr int kPoints = 400;
    constexpr double kFadeKm = 2;
    const Wave* shown = ShownOf(input_.From.Waves.Ridges.front(), input_.From.Selected);
    const double turnKm = shown == nullptr ? 0 : shown->Of.LengthKm / 8;
    for (const double z : LineHeights()) {
      std::vector<Point> points;
      const auto close = [&] {
        if (points.size() > 1) Line("streamline", points, inks_.Stream);
        points.clear();
      };
      for (int j = 0; j <= kPoints; ++j) {
        const double x = at_.StartKm() + (at_.EndKm() - at_.StartKm()) * j / kPoints;
        const double terrain = TerrainAt(input_.From, x);
        const double turned = turnKm > 0 ? std::clamp(x / turnKm, 0.0, 1.0) : 1;
        const double lifted = z + terrain * std::exp(-z / kFadeKm) +
                              turned * (2 - turned) * Moves(x, z).Displacement / 1000;
        if (lifted <= terrain || lifted >= at_.TopKm()) {
          close();
        } else {
          points.push_back({at_.X(x), at_.Y(lifted)});
        }
      }
      close();
    }
  }

  std::vector<Point> TerrainRing(double upToKm) const {
    const Rect& frame = at_.Frame();
    constexpr int kPoints = 400;
    std::vector<Point> ring = {{frame.Left, frame.Bottom}};
    for (int j = 0; j <= kPoints; ++j) {
      const double x = at_.StartKm() + (at_.EndKm() - at_.StartKm()) * j / kPoints;
      ring.push_back({at_.X(x), at_.Y(std::min(TerrainAt(input_.From, x), upToKm))});
    }
    ring.push_back({frame.Right, frame.Bottom});
    return ring;
  }

  // In tints by height: rock at the crest, slopes, and meadows at the foot.
  void Terrain() {
    double crest = 0;
    for (const RidgeWaves& ridge : input_.From.Waves.Ridges) {
      crest = std::max(crest, ridge.Form.Relief / 1000);
    }
    if (!(crest > 0)) return;
    page_.Add("terrain", Area{.Rings = {TerrainRing(at_.TopKm())},
                              .Fill = {inks_.Rock, FillStyle::Plain},
                              .Stroke = {inks_.Ink, 12, LineStyle::Solid}});
    constexpr double kSlopes = 0.75;  // of the crest's height
    constexpr double kMeadows = 0.3;
    page_.Add("terrain tint", Area{.Rings = {TerrainRing(kSlopes * crest)},
                                   .Fill = {inks_.Terrain, FillStyle::Plain}});
    page_.Add("terrain tint", Area{.Rings = {TerrainRing(kMeadows * crest)},
                                   .Fill = {inks_.Meadow, FillStyle::Plain}});
  }

  std::string InterfaceText(const Wave& wave) const {
    const WaveUnits& units = input_.From.Set.Units;
    return Mask(wave.At.Press, "###0") + " mb  " + Tag(wave) + "  " +
           MarkText(wave, units).substr(std::string_view("Wave ").size());
  }

  // The wave that is shown first, then the strongest; a label that would stand on another stays
  // away.
  void Interfaces() {
    const Rect& frame = at_.Frame();
    std::vector<const Wave*> waves = input_.From.Waves.All();
    std::erase_if(waves, [](const Wave* wave) { return wave->Kind == WaveKind::Harmonic; });
    const auto isShown = [this](const Wave* wave) {
      return std::ranges::any_of(input_.From.Waves.Ridges, [&](const RidgeWaves& ridge) {
        const Wave* shown = ShownOf(ridge, input_.From.Selected);
        return shown != nullptr && shown->At.Level == wave->At.Level &&
               shown->Mountain == wave->Mountain;
      });
    };
    std::ranges::stable_partition(waves, isShown);
    constexpr std::size_t kMost = 8;
    if (waves.size() > kMost) waves.resize(kMost);
    for (const Wave* wave : waves) {
      if (wave->At.DepthKm > at_.TopKm()) continue;
      const double y = at_.Y(wave->At.DepthKm);
      const Pen pen{inks_.Interface, isShown(wave) ? 20.0 : 9.0, LineStyle::Dash};
      Line("interface", {{frame.Left, y}, {frame.Right, y}}, pen);
      for (const std::string_view name : {kWind, kScorer}) {
        if (const auto column = ColumnOf(name)) {
          Line("interface aside", {{column->Left, y}, {column->Right, y}}, pen);
        }
      }
      const std::string text = InterfaceText(*wave);
      const double width = TextWidth(text, kNote, isShown(wave));
      const Rect place{frame.Right - 100 - width, y - 200, frame.Right - 60, y - 20};
      if (!labels_.IsFree(place)) continue;
      labels_.Take(place);
      Color behind = inks_.Paper;
      behind.Alpha = 200;
      page_.Add("label ground", Area{.Rings = {{{place.Left - 40, place.Top},
                                                {place.Right, place.Top},
                                                {place.Right, place.Bottom},
                                                {place.Left - 40, place.Bottom}}},
                                     .Fill = {behind, FillStyle::Plain}});
      Text("interface label", {frame.Right - 80, y - 110}, text, kNote, AnchorX::Right,
           inks_.Interface, isShown(wave));
    }
  }

  // Under the crests of a strong wave the air near the ground may turn over.
  void Rotors() {
    constexpr double kStrongMs = 3;
    constexpr double kRadius = 110;
    for (const RidgeWaves& ridge : input_.From.Waves.Ridges) {
      const Wave* wave = ShownOf(ridge, input_.From.Selected);
      if (wave == nullptr || wave->MaxVelocity < kStrongMs) continue;
      const double from = wave->Mountain == 2 ? input_.From.Waves.DistanceKm : 0;
      for (int crest = 0; crest < 3; ++crest) {
        const double x = from + (crest + 0.75) * wave->Of.LengthKm;
        const double z = std::min(0.4 * wave->At.DepthKm, ridge.Form.Relief / 1000);
        if (x > at_.EndKm() || z > at_.TopKm()) break;
        const Point middle{at_.X(x), std::min(at_.Y(z), at_.Frame().Bottom - kRadius)};
        const Rect place{middle.X - kRadius, middle.Y - kRadius, middle.X + kRadius,
                         middle.Y + kRadius};
        if (!labels_.IsFree(place)) continue;
        labels_.Take(place);
        page_.Add("rotor", Circle{.Center = middle,
                                  .Radius = kRadius,
                                  .Fill = {inks_.Paper, FillStyle::Plain},
                                  .Stroke = {inks_.Rotor, 16, LineStyle::Dash}});
        Text("rotor", middle, "R", kNote, AnchorX::Center, inks_.Rotor, true);
      }
    }
  }

  // The classes of the shading, from the strongest downdraught to the strongest updraught, with the
  // velocities between them.
  void Legend() {
    const Rect& frame = at_.Frame();
    constexpr double kBox = 390;
    constexpr double kLeast = 8000;  // of the frame: else it would stand on the axis
    const auto classes = static_cast<int>(std::size(kSteps));
    const double width = (2 * classes + 1) * kBox;
    if (frame.Width() < kLeast || frame.Width() / 2 < width + 600) return;
    const WaveUnits& units = input_.From.Set.Units;
    const bool isFpm = units.Vertical == VerticalUnits::FeetPerMinute;
    const double top = frame.Bottom + 330;
    double left = frame.Right - width;
    Text("shade legend", {left - 100, top + 60}, std::string(Word(units.Vertical)), kNote,
         AnchorX::Right, inks_.Ink);
    for (int shade = -classes; shade <= classes; ++shade, left += kBox) {
      page_.Add(
          "shade legend",
          Area{.Rings =
                   {{{left, top}, {left + kBox, top}, {left + kBox, top + 110}, {left, top + 110}}},
               .Fill = {shade == 0 ? inks_.Paper : ShadeOf(shade, inks_.Paper), FillStyle::Plain},
               .Stroke = inks_.Grid});
      if (shade == classes) break;
      const int step = shade < 0 ? -shade - 1 : shade;
      const double velocity = kSteps[step] * (shade < 0 ? -1 : 1);
      Text("shade legend", {left + kBox, top + 190},
           Mask(FromMs(velocity, units.Vertical), isFpm ? "#####0" : "##0.##"), kNote,
           AnchorX::Center, inks_.Ink);
    }
  }

  void Remark() {
    const Rect& frame = at_.Frame();
    const Point middle{(frame.Left + frame.Right) / 2, (frame.Top + frame.Bottom) / 2};
    Text("remark", middle, "There are no waves present.", LetterSize(Type::Title), AnchorX::Center,
         inks_.Ink);
    const std::vector<RidgeWaves>& ridges = input_.From.Waves.Ridges;
    if (!ridges.empty()) {
      Text("remark", {middle.X, middle.Y + 350}, ridges.front().Flow.WhyNone, kLabel,
           AnchorX::Center, inks_.Ink);
    }
  }

  // A column at the side with the diagram's heights.
  std::optional<Rect> ColumnOf(std::string_view name) const {
    const Rect* place = layout_.Find(name);
    if (place == nullptr) return std::nullopt;
    return Rect{place->Left + 100, at_.Frame().Top, place->Right - 100, at_.Frame().Bottom};
  }
  std::optional<Rect> Column(std::string_view name) {
    const std::optional<Rect> column = ColumnOf(name);
    if (column) Line("profile frame", OutlineOf(*column), inks_.Frame);
    return column;
  }
  void ColumnTexts(const Rect& column, std::string first, std::string second, std::string least,
                   std::string most, Color ink) {
    const double middle = (column.Left + column.Right) / 2;
    Text("profile title", {middle, column.Top - 330}, std::move(first), kNote, AnchorX::Center, ink,
         true);
    Text("profile title", {middle, column.Top - 130}, std::move(second), kNote, AnchorX::Center,
         ink);
    Text("profile range", {column.Left, column.Bottom + 150}, std::move(least), kNote,
         AnchorX::Left, inks_.Ink);
    Text("profile range", {column.Right, column.Bottom + 150}, std::move(most), kNote,
         AnchorX::Right, inks_.Ink);
  }

  void WindProfile() {
    const auto column = Column(kWind);
    if (!column || input_.From.Waves.Ridges.empty()) return;
    const bool isKnots = input_.From.Set.Units.Wind == SpeedUnits::Knots;
    double most = 10;
    const std::vector<FlowLevel>& levels = input_.From.Waves.Ridges.front().Flow.Levels;
    const auto shown = [&](const FlowLevel& level) {
      return isKnots ? level.Wind / kKnotToMs : level.Wind;
    };
    for (const FlowLevel& level : levels) {
      if (level.Height / 1000 <= at_.TopKm()) most = std::max(most, shown(level));
    }
    const double step = RoundStep(most, 3);
    most = std::ceil(most / step) * step;
    ColumnTexts(*column, "Normal", std::string("  Wind  ") + (isKnots ? "kts" : "m/s"), "0",
                Mask(most, "##0"), inks_.Wind);
    std::vector<Point> points;
    for (const FlowLevel& level : levels) {
      if (level.Height / 1000 > at_.TopKm()) break;
      points.push_back(
          {column->Left + shown(level) / most * column->Width(), at_.Y(level.Height / 1000)});
    }
    if (points.size() > 1) Line("normal wind", points, {inks_.Wind, 24, LineStyle::Solid});
  }

  // The least of these ranges in which four fifths of the air have their l².
  double ScorerRange(const std::vector<ScorerLayer>& layers) const {
    double range = 1;
    for (; range < 64; range *= 2) {
      double inside = 0;
      double all = 0;
      for (const ScorerLayer& layer : layers) {
        if (layer.Top / 1000 > at_.TopKm()) break;
        all += layer.Top - layer.Base;
        if (std::fabs(layer.L2()) <= range) inside += layer.Top - layer.Base;
      }
      constexpr double kShare = 0.8;
      if (inside >= kShare * all) break;
    }
    return range;
  }

  void ScorerColumn() {
    const auto column = Column(kScorer);
    if (!column || input_.From.Waves.Ridges.empty()) return;
    const std::vector<ScorerLayer>& layers = input_.From.Waves.Ridges.front().Layers;
    const double most = ScorerRange(layers);  // km⁻²
    const double least = -most / 4;
    const auto x = [&](double l2) {
      return column->Left +
             (std::clamp(l2, least, most) - least) / (most - least) * column->Width();
    };
    ColumnTexts(*column, "Scorer", "l\xC2\xB2 km\xE2\x81\xBB\xC2\xB2", Shortest(least),
                Shortest(most), inks_.Scorer);
    Line("grid", {{x(0), column->Top}, {x(0), column->Bottom}}, inks_.Grid);
    std::vector<Point> points;
    for (const ScorerLayer& layer : layers) {
      if (layer.Top / 1000 > at_.TopKm()) break;
      points.push_back({x(layer.L2()), at_.Y(layer.Base / 1000)});
      points.push_back({x(layer.L2()), at_.Y(layer.Top / 1000)});
    }
    if (points.size() > 1) Line("Scorer parameter", points, {inks_.Scorer, 20, LineStyle::Solid});
  }

  const WavePlotInput& input_;
  WaveInks inks_;
  Picture page_;
  PageLayout layout_;
  WaveMapping at_{};
  LabelRoom labels_{Rect{}};
};

}  // namespace

WaveMapping::WaveMapping(const Rect& frame, double startKm, double endKm, double topKm,
                         bool byPress, const analysis::LevelProfile& levels)
    : frame_(frame), startKm_(startKm), endKm_(endKm), topKm_(topKm) {
  if (!byPress || levels.Count() < 2) return;
  constexpr int kSteps = 200;
  const double ground = levels.Height(1);
  const double bottom = std::log(analysis::GetPRESS(levels, ground));
  const double pressTop = analysis::GetPRESS(levels, ground + topKm * 1000);
  const double top = std::log(HasHeight(pressTop) ? pressTop : levels.Press.Top());
  if (!(bottom > top)) return;
  for (int i = 0; i <= kSteps; ++i) {
    const double press = analysis::GetPRESS(levels, ground + topKm * 1000 * i / kSteps);
    const double logPress = HasHeight(press) ? std::log(press) : top;
    shares_.push_back((bottom - logPress) / (bottom - top));
  }
}

double WaveMapping::Share(double heightKm) const {
  const double share = heightKm / topKm_;
  if (shares_.empty() || share <= 0 || share >= 1) return share;
  const double at = share * static_cast<double>(shares_.size() - 1);
  const auto below = static_cast<std::size_t>(at);
  return shares_[below] + (at - static_cast<double>(below)) * (shares_[below + 1] - shares_[below]);
}

double WaveMapping::X(double km) const {
  return frame_.Left + (km - startKm_) / (endKm_ - startKm_) * frame_.Width();
}

double WaveMapping::Y(double heightKm) const {
  return frame_.Bottom - Share(heightKm) * frame_.Height();
}

double WaveMapping::KmAt(double x) const {
  return startKm_ + (x - frame_.Left) / frame_.Width() * (endKm_ - startKm_);
}

double WaveMapping::HeightAt(double y) const {
  const double wanted = (frame_.Bottom - y) / frame_.Height();
  double low = 0;
  double high = topKm_;
  if (wanted <= 0 || wanted >= 1) return wanted * topKm_;
  constexpr int kSteps = 40;
  for (int i = 0; i < kSteps; ++i) {
    const double middle = (low + high) / 2;
    (Share(middle) < wanted ? low : high) = middle;
  }
  return (low + high) / 2;
}

WaveOptions AdjustedTo(const WavePlotInput& input) {
  WaveOptions options = input.From.Set;
  const Wave* wave = input.From.Selected;
  if (wave == nullptr) return options;
  if (wave->At.DepthKm > TopOf(input)) {
    constexpr double kRoom = 0.8;  // of its pressure: some air above the interface
    constexpr double kStep = 10;   // hPa
    options.UpperLimit = std::max(kStep, std::floor(kRoom * wave->At.Press / kStep) * kStep);
  }
  if (options.Length > 0 && options.Length < wave->Of.LengthKm) options.Length = 0;
  return options;
}

WavePlot PlotWaves(const WavePlotInput& input, const Surface& surface) {
  return Drawing(input, surface).Draw();
}

std::string ReadWaves(const WavePlotInput& input, const WaveMapping& at, Point place) {
  if (!at.Frame().Contains(place)) return {};
  const double x = at.KmAt(place.X);
  const double z = at.HeightAt(place.Y);
  const WaveUnits& units = input.From.Set.Units;
  const Motion motion =
      MotionAt(input.From.Waves, input.From.Set.WaveDecay(), x, z, input.From.Selected);
  const bool isFpm = units.Vertical == VerticalUnits::FeetPerMinute;
  return "Vertical velocity " +
         Mask(FromMs(motion.Velocity, units.Vertical), isFpm ? "######0" : "######0.0") + " " +
         std::string(Word(units.Vertical)) + ", " + Mask(FromKm(x, units.Distance), "###0.0") +
         " " + std::string(Word(units.Distance)) + " downstream, " +
         vexa::LengthText(z * 1000 + input.From.Sounding.ElevM, units.Height);
}

}  // namespace vexa::mountainwave
