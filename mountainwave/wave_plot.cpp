#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "mountainwave/wave_page.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::mountainwave {
namespace {

constexpr std::string_view kTitle = "title";
constexpr std::string_view kWaves = "waves";

WaveInks InksFor(const WavePlotInput& input) {
  const bool black = input.Look.Screen == ScreenColor::Black;
  WaveInks inks;
  static_cast<PaperAndInk&>(inks) = OnPaper(black);
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

std::vector<RegionRow> Rows(const WaveOptions& set) {
  constexpr double kColumn = 1250;
  std::vector<RegionRow> rows = {
      {.Name = kTitle, .At = Place::Above, .LeastHeight = 620, .Priority = 0},
      {.Name = kWaves, .At = Place::Main, .LeastWidth = 5500, .LeastHeight = 3000}};
  if (set.WindProfile) {
    rows.push_back({.Name = kWind,
                    .At = Place::Beside,
                    .LeastWidth = kColumn,
                    .Priority = 1,
                    .Caption = "wind profile"});
  }
  if (set.ScorerProfile) {
    rows.push_back({.Name = kScorer,
                    .At = Place::Beside,
                    .LeastWidth = kColumn,
                    .Priority = 2,
                    .Caption = "Scorer profile"});
  }
  return rows;
}

class Drawing : WavePage {
 public:
  using WavePage::WavePage;

  WavePlot Draw() && {
    Titles();
    const WaveOptions& set = In.From.Set;
    const bool hasAny = In.From.Waves.Any();
    if (hasAny && set.Shading && !set.LabelsOnly) Shading();
    Axes();
    if (hasAny && !set.LabelsOnly) Streamlines();
    if (set.Terrain) Terrain();
    if (hasAny && In.RotorHints && !set.LabelsOnly) Rotors();
    Interfaces();
    if (hasAny && set.Shading && !set.LabelsOnly) Legend();
    if (!hasAny) Remark();
    DrawProfiles(*this);
    Line("frame", OutlineOf(At.Frame()), Inks.Frame);
    return {std::move(Page), At};
  }

 private:
  void Titles() {
    const Rect* place = Layout.Find(kTitle);
    if (place == nullptr) return;
    Text("title", {place->Left + 100, place->Top + 180}, "Mountain-Wave", LetterSize(Type::Title),
         AnchorX::Left, Inks.Ink, true);
    Text("title", {place->Left + 100, place->Top + 450},
         "from Sounding  " + In.From.Sounding.StationTitle, kLabel, AnchorX::Left, Inks.Ink);
    Text("decay", {place->Right - 100, place->Top + 450},
         std::string(DecayText(In.From.Set.DecayOn)), kNote, AnchorX::Right, Inks.Faint);
    if (std::string missing = LeftOutText(Layout); !missing.empty()) {
      Text("left out", {place->Right - 100, place->Top + 180}, std::move(missing), kNote,
           AnchorX::Right, Inks.Faint);
    }
  }

  // Bands of equal class, row by row. A row reaches a little under the next one, so that no paper
  // shines through between them.
  void Shading() {
    constexpr int kAcross = 160;
    constexpr int kUp = 130;
    constexpr double kOverlap = 14;
    const Rect& frame = At.Frame();
    const double width = frame.Width() / kAcross;
    const double height = frame.Height() / kUp;
    for (int row = 0; row < kUp; ++row) {
      const double top = frame.Top + row * height;
      const double bottom = std::min(frame.Bottom, top + height + kOverlap);
      const double z = At.HeightAt(top + height / 2);
      const auto velocity = [&](double x) { return Moves(At.KmAt(x), z).Velocity; };
      double runFrom = frame.Left;
      int runShade = ShadeClass(velocity(frame.Left));
      const auto close = [&](double until, int next) {
        if (runShade != 0) {
          Page.Add(
              runShade > 0 ? "updraught" : "downdraught",
              Area{.Rings = {{{runFrom, top}, {until, top}, {until, bottom}, {runFrom, bottom}}},
                   .Fill = {ShadeOf(runShade, Inks.Paper), FillStyle::Plain}});
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
    return MotionAt(In.From.Waves, In.From.Set.WaveDecay(), xKm, zKm, In.From.Selected);
  }

  void Axes() {
    const Rect& frame = At.Frame();
    const WaveUnits& units = In.From.Set.Units;
    const double perKm = FromKm(1, units.Distance);
    const double step = RoundStep((At.EndKm() - At.StartKm()) * perKm, 9);
    for (double shown = std::ceil(At.StartKm() * perKm / step) * step;
         shown <= At.EndKm() * perKm + 1e-9; shown += step) {
      const double x = At.X(shown / perKm);
      Line("grid", {{x, frame.Top}, {x, frame.Bottom}}, Inks.Grid);
      Text("axis label", {x, frame.Bottom + 150}, Mask(shown, "###0.#"), kNote, AnchorX::Center,
           Inks.Ink);
    }
    Text("axis label", {(frame.Left + frame.Right) / 2, frame.Bottom + 380},
         std::string(Word(units.Distance)), kLabel, AnchorX::Center, Inks.Ink);
    if (In.From.Set.Scale == WaveScale::Pressure) {
      PressureAxis();
    } else {
      HeightAxis();
    }
  }

  void AxisMark(double heightKm, std::string text) {
    const Rect& frame = At.Frame();
    if (heightKm < -1e-9 || heightKm > At.TopKm()) return;
    const double y = At.Y(heightKm);
    Line("grid", {{frame.Left, y}, {frame.Right, y}}, Inks.Grid);
    Text("axis label", {frame.Left - 90, y}, std::move(text), kNote, AnchorX::Right, Inks.Ink);
  }

  // Heights above the sea, as pilots read them.
  void HeightAxis() {
    const Rect& frame = At.Frame();
    const bool isFeet = In.From.Set.Scale == WaveScale::Feet;
    const double ground = StationKm();
    const double perKm = isFeet ? 1 / kKmPerFoot / 1000 : 1;
    const double step = RoundStep(At.TopKm() * perKm, 8);
    for (double shown = std::ceil(ground * perKm / step) * step;
         shown <= (ground + At.TopKm()) * perKm; shown += step) {
      AxisMark(shown / perKm - ground, Mask(shown, "##0.#"));
    }
    Text("axis label", {frame.Left - 90, frame.Top - 130}, isFeet ? "ft (x1000) MSL" : "km MSL",
         kNote, AnchorX::Center, Inks.Ink);
  }

  void PressureAxis() {
    const Rect& frame = At.Frame();
    constexpr int kLabels[] = {1050, 1000, 900, 800, 700, 600, 500, 400, 300, 250, 200, 150, 100};
    for (const int press : kLabels) {
      const analysis::Sample height = analysis::HeightAt(In.Levels, press);
      if (height.Ok()) AxisMark(height.Value / 1000 - StationKm(), Shortest(press));
    }
    Text("axis label", {frame.Left - 90, frame.Top - 130}, "mb", kNote, AnchorX::Center, Inks.Ink);
  }

  double StationKm() const { return In.From.Sounding.ElevM / 1000.0; }

  // The undisturbed heights of the lines, km: equal steps of height, or of potential temperature
  // where the air has more than one.
  std::vector<double> LineHeights() const {
    constexpr int kLines = 16;
    std::vector<double> heights;
    const std::vector<FlowLevel>& levels = In.From.Waves.Ridges.front().Flow.Levels;
    if (In.From.Set.Traces == WaveTraces::Isentropes && levels.size() > 1) {
      double most = levels.front().Theta;  // unstable layers have none of their own
      double last = most;
      for (const FlowLevel& level : levels) {
        if (level.Height / 1000 <= At.TopKm()) most = std::max(most, level.Theta);
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
    for (int i = 1; i < kLines; ++i) heights.push_back(At.TopKm() * i / kLines);
    return heights;
  }

  // A line keeps its way over the ridge itself, fading upward, and swings behind it. It turns into
  // the wave within the first eighth of a wavelength.
  void Streamlines() {
    constexpr int kPoints = 400;
    constexpr double kFadeKm = 2;
    const Wave* shown = ShownOf(In.From.Waves.Ridges.front(), In.From.Selected);
    const double turnKm = shown == nullptr ? 0 : shown->Of.LengthKm / 8;
    for (const double z : LineHeights()) {
      std::vector<Point> points;
      const auto close = [&] {
        if (points.size() > 1) Line("streamline", points, Inks.Stream);
        points.clear();
      };
      for (int j = 0; j <= kPoints; ++j) {
        const double x = At.StartKm() + (At.EndKm() - At.StartKm()) * j / kPoints;
        const double terrain = TerrainAt(In.From, x);
        const double turned = turnKm > 0 ? std::clamp(x / turnKm, 0.0, 1.0) : 1;
        const double lifted = z + terrain * std::exp(-z / kFadeKm) +
                              turned * (2 - turned) * Moves(x, z).Displacement / 1000;
        if (lifted <= terrain || lifted >= At.TopKm()) {
          close();
        } else {
          points.push_back({At.X(x), At.Y(lifted)});
        }
      }
      close();
    }
  }

  std::vector<Point> TerrainRing(double upToKm) const {
    const Rect& frame = At.Frame();
    constexpr int kPoints = 400;
    std::vector<Point> ring = {{frame.Left, frame.Bottom}};
    for (int j = 0; j <= kPoints; ++j) {
      const double x = At.StartKm() + (At.EndKm() - At.StartKm()) * j / kPoints;
      ring.push_back({At.X(x), At.Y(std::min(TerrainAt(In.From, x), upToKm))});
    }
    ring.push_back({frame.Right, frame.Bottom});
    return ring;
  }

  // In tints by height: rock at the crest, slopes, and meadows at the foot.
  void Terrain() {
    double crest = 0;
    for (const RidgeWaves& ridge : In.From.Waves.Ridges) {
      crest = std::max(crest, ridge.Form.Relief / 1000);
    }
    if (!(crest > 0)) return;
    Page.Add("terrain", Area{.Rings = {TerrainRing(At.TopKm())},
                             .Fill = {Inks.Rock, FillStyle::Plain},
                             .Stroke = {Inks.Ink, 12, LineStyle::Solid}});
    constexpr double kSlopes = 0.75;  // of the crest's height
    constexpr double kMeadows = 0.3;
    Page.Add("terrain tint", Area{.Rings = {TerrainRing(kSlopes * crest)},
                                  .Fill = {Inks.Terrain, FillStyle::Plain}});
    Page.Add("terrain tint", Area{.Rings = {TerrainRing(kMeadows * crest)},
                                  .Fill = {Inks.Meadow, FillStyle::Plain}});
  }

  std::string InterfaceText(const Wave& wave) const {
    const WaveUnits& units = In.From.Set.Units;
    return Mask(wave.At.Press, "###0") + " mb  " + Tag(wave) + "  " + WaveText(wave, units);
  }

  // The wave that is shown first, then the strongest; a label that would stand on another stays
  // away.
  void Interfaces() {
    const Rect& frame = At.Frame();
    std::vector<const Wave*> waves = In.From.Waves.All();
    std::erase_if(waves, [](const Wave* wave) { return wave->Kind == WaveKind::Harmonic; });
    const auto isShown = [this](const Wave* wave) {
      return std::ranges::any_of(In.From.Waves.Ridges, [&](const RidgeWaves& ridge) {
        const Wave* shown = ShownOf(ridge, In.From.Selected);
        return shown != nullptr && shown->At.Level == wave->At.Level &&
               shown->Mountain == wave->Mountain;
      });
    };
    std::ranges::stable_partition(waves, isShown);
    constexpr std::size_t kMost = 8;
    if (waves.size() > kMost) waves.resize(kMost);
    for (const Wave* wave : waves) {
      if (wave->At.DepthKm > At.TopKm()) continue;
      const double y = At.Y(wave->At.DepthKm);
      const Pen pen{Inks.Interface, isShown(wave) ? 20.0 : 9.0, LineStyle::Dash};
      Line("interface", {{frame.Left, y}, {frame.Right, y}}, pen);
      for (const std::string_view name : {kWind, kScorer}) {
        if (const auto column = ColumnOf(*this, name)) {
          Line("interface aside", {{column->Left, y}, {column->Right, y}}, pen);
        }
      }
      const std::string text = InterfaceText(*wave);
      const double width = TextWidth(text, kNote, isShown(wave));
      const Rect place{frame.Right - 100 - width, y - 200, frame.Right - 60, y - 20};
      if (!Labels.IsFree(place)) continue;
      Labels.Take(place);
      Color behind = Inks.Paper;
      behind.Alpha = 200;
      Page.Add("label ground",
               Area{.Rings = {OutlineOf({place.Left - 40, place.Top, place.Right, place.Bottom})},
                    .Fill = {behind, FillStyle::Plain}});
      Text("interface label", {frame.Right - 80, y - 110}, text, kNote, AnchorX::Right,
           Inks.Interface, isShown(wave));
    }
  }

  // Under the crests of a strong wave the air near the ground may turn over.
  void Rotors() {
    constexpr double kStrongMs = 3;
    constexpr double kRadius = 110;
    for (const RidgeWaves& ridge : In.From.Waves.Ridges) {
      const Wave* wave = ShownOf(ridge, In.From.Selected);
      if (wave == nullptr || wave->MaxVelocity < kStrongMs) continue;
      const double from = wave->Mountain == 2 ? In.From.Waves.DistanceKm : 0;
      for (int crest = 0; crest < 3; ++crest) {
        const double x = from + (crest + 0.75) * wave->Of.LengthKm;
        const double z = std::min(0.4 * wave->At.DepthKm, ridge.Form.Relief / 1000);
        if (x > At.EndKm() || z > At.TopKm()) break;
        if (TerrainAt(In.From, x) > z / 2) continue;  // the second mountain stands there
        const Point middle{At.X(x), std::min(At.Y(z), At.Frame().Bottom - kRadius)};
        const Rect place{middle.X - kRadius, middle.Y - kRadius, middle.X + kRadius,
                         middle.Y + kRadius};
        if (!Labels.IsFree(place)) continue;
        Labels.Take(place);
        Page.Add("rotor", Circle{.Center = middle,
                                 .Radius = kRadius,
                                 .Fill = {Inks.Paper, FillStyle::Plain},
                                 .Stroke = {Inks.Rotor, 16, LineStyle::Dash}});
        Text("rotor", middle, "R", kNote, AnchorX::Center, Inks.Rotor, true);
      }
    }
  }

  // The classes of the shading, from the strongest downdraught to the strongest updraught, with the
  // velocities between them.
  void Legend() {
    const Rect& frame = At.Frame();
    constexpr double kBox = 390;
    constexpr double kLeast = 8000;  // of the frame: else it would stand on the axis
    const auto classes = static_cast<int>(std::size(kSteps));
    const double width = (2 * classes + 1) * kBox;
    if (frame.Width() < kLeast || frame.Width() / 2 < width + 600) return;
    const WaveUnits& units = In.From.Set.Units;
    const bool isFpm = units.Vertical == VerticalUnits::FeetPerMinute;
    const double top = frame.Bottom + 330;
    double left = frame.Right - width;
    Text("shade legend", {left - 100, top + 60}, std::string(Word(units.Vertical)), kNote,
         AnchorX::Right, Inks.Ink);
    for (int shade = -classes; shade <= classes; ++shade, left += kBox) {
      Page.Add(
          "shade legend",
          Area{.Rings =
                   {{{left, top}, {left + kBox, top}, {left + kBox, top + 110}, {left, top + 110}}},
               .Fill = {shade == 0 ? Inks.Paper : ShadeOf(shade, Inks.Paper), FillStyle::Plain},
               .Stroke = Inks.Grid});
      if (shade == classes) break;
      const int step = shade < 0 ? -shade - 1 : shade;
      const double velocity = kSteps[step] * (shade < 0 ? -1 : 1);
      Text("shade legend", {left + kBox, top + 190},
           Mask(FromMs(velocity, units.Vertical), isFpm ? "#####0" : "##0.##"), kNote,
           AnchorX::Center, Inks.Ink);
    }
  }

  void Remark() {
    const Rect& frame = At.Frame();
    const Point middle{(frame.Left + frame.Right) / 2, (frame.Top + frame.Bottom) / 2};
    Text("remark", middle, "There are no waves present.", LetterSize(Type::Title), AnchorX::Center,
         Inks.Ink);
    const std::vector<RidgeWaves>& ridges = In.From.Waves.Ridges;
    if (!ridges.empty()) {
      Text("remark", {middle.X, middle.Y + 350}, ridges.front().Flow.WhyNone, kLabel,
           AnchorX::Center, Inks.Ink);
    }
  }
};

}  // namespace

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

WavePage::WavePage(const WavePlotInput& input, const Surface& on)
    : PlotPage(on, OnPaper(input.Look.Screen == ScreenColor::Black)),
      In(input),
      Inks(InksFor(input)),
      Layout(CutPage(on, Rows(input.From.Set))) {
  const Rect* main = Layout.Find(kWaves);
  const Rect place = main != nullptr ? *main : Layout.Page;
  const double end = EndOf(input);
  const Rect frame{place.Left + 900, place.Top + 250, place.Right - 150, place.Bottom - 550};
  Labels = LabelRoom(frame);
  At = WaveMapping(frame, StartOf(input, end), end, TopOf(input),
                   input.From.Set.Scale == WaveScale::Pressure, input.Levels);
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
