#include "hodograph/hodograph_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "hodograph/analysis_panel.h"
#include "hodograph/compass.h"
#include "hodograph/inks.h"
#include "hodograph/rings.h"
#include "hodograph/vectors.h"

namespace vexa::hodograph {
namespace {

using analysis::WindVector;

constexpr double kPageWidth = 12000;
constexpr double kPageHeight = 9000;
constexpr Rect kFrame{250, 520, 8050, 8320};
constexpr Rect kPanel{8200, 520, 11850, 8320};
constexpr double kSmallPage = 2200;
constexpr Rect kSmallFrame{10, 10, kSmallPage - 10, kSmallPage - 10};

constexpr double kTitleText = 220;
constexpr double kCaptionText = 150;
constexpr double kPanelText = 165;     // at most
constexpr double kPanelLeading = 1.5;  // distance of its lines by their size
constexpr double kLegendStep = 200;
constexpr int kEveryKm = 12;          // a height mark for each, up to here
constexpr double kRingMargin = 1.09;  // of the frame around the outer ring, with its label
constexpr double kHandle = 160;       // how near to a storm vector's head the pointer takes hold
constexpr double kSpotReach = 60;     // around a level of the trace
constexpr double kWindHandle = 90;    // how near to a wind the pointer takes hold
constexpr double kSmallShare = 0.45;  // of the line widths, in the small hodograph

bool StormFrame(const Canvas& canvas) {
  const HodoOrigin origin = canvas.Small ? canvas.Set().HodoGridOrigin : canvas.In.Window.Frame;
  return origin == HodoOrigin::Storm && canvas.In.Storm().Chosen().has_value();
}

bool ShowsStorm(const Canvas& canvas) {
  return !canvas.In.Window.NoSMplot && (!canvas.Small || canvas.Set().PlotStormVector);
}

std::vector<ComparedWinds> ShownComparisons(const Canvas& canvas) {
  if (canvas.Small) return {};
  std::vector<ComparedWinds> shown = canvas.In.Compared;
  if (canvas.In.Window.Compare == CompareTraces::Left) {
    std::erase_if(shown, [](const ComparedWinds& c) { return c.Slot != 1; });
  }
  return shown;
}

// What must be inside the frame.
std::vector<WindVector> Extent(const Canvas& canvas, const std::vector<ProfileWind>& winds) {
  std::vector<WindVector> extent;
  const auto add = [&](const std::vector<ProfileWind>& profile) {
    for (const ProfileWind& wind : profile) extent.push_back(wind.Vector);
  };
  add(winds);
  for (const ComparedWinds& compared : ShownComparisons(canvas)) add(compared.Winds);
  if (canvas.In.Window.MbeVector && !canvas.Small) {
    const auto vector = PropagationVector(canvas.In.Sounding, canvas.In.Results.Levels);
    if (vector) extent.push_back(*vector);
  }
  if (!ShowsStorm(canvas)) return extent;
  for (const auto* mover : {&canvas.In.Storm().Right, &canvas.In.Storm().Left}) {
    if (*mover) extent.push_back((*mover)->Motion);
  }
  if (StormFrame(canvas)) extent.push_back({});  // where the storm vector begins
  return extent;
}

Rings PlaceRings(Canvas& canvas, const Rect& frame, const std::vector<ProfileWind>& winds) {
  const SpeedUnits units = canvas.Set().Speed;
  const WindVector reference =
      StormFrame(canvas) ? canvas.In.Storm().Chosen()->Motion : WindVector{};
  const bool fixed = canvas.In.Window.Rings == RingScaling::Limit && !canvas.Small;
  const std::vector<WindVector> extent = Extent(canvas, winds);
  double fastest = 0;
  for (const WindVector& wind : extent) {
    fastest = std::max(fastest, std::hypot(wind.U - reference.U, wind.V - reference.V));
  }
  if (canvas.In.Keep) {
    canvas.At = *canvas.In.Keep;
    return {.Step = RingStep(Shown(frame.Width() / 2 / canvas.At.Scale, units)), .Units = units};
  }
  if (fixed) {
    const double limit = canvas.In.Window.RingLimit;
    canvas.At = CenteredOn(frame, reference, limit * kRingMargin);
    return {.Step = RingStep(Shown(limit, units)), .Outer = Shown(limit, units), .Units = units};
  }
  if (canvas.Set().HodoPlace == HodoLocation::Centered) {
    const double step = RingStep(std::max(Shown(fastest, units), Shown(10, units)));
    const double outer = step * std::max(2.0, std::ceil(Shown(fastest, units) / step - 1e-9));
    canvas.At = CenteredOn(frame, reference, KnotsOf(outer, units) * kRingMargin);
    return {.Step = step, .Outer = outer, .Units = units};
  }
  canvas.At = FittedTo(frame, reference, extent);
  return {.Step = RingStep(Shown(frame.Width() / 2 / canvas.At.Scale, units)), .Units = units};
}

// Where the trace runs, in steps short enough that no text fits between; texts keep off it.
std::vector<Point> AvoidTrace(Canvas& canvas, const std::vector<ProfileWind>& winds) {
  constexpr double kStep = 90;
  constexpr double kMostSteps = 1000;  // beyond them the trace is far outside
  std::vector<Point> places;
  for (std::size_t i = 0; i < winds.size(); ++i) {
    const Point to = canvas.At.ToPoint(winds[i].Vector);
    const Point from = i == 0 ? to : canvas.At.ToPoint(winds[i - 1].Vector);
    const double length = std::hypot(to.X - from.X, to.Y - from.Y);
    if (i > 0 && length < 1) continue;
    const int steps = 1 + static_cast<int>(std::min(kMostSteps, length / kStep));
    for (int step = 1; step <= steps; ++step) {
      const double share = static_cast<double>(step) / steps;
      const Point at{from.X + share * (to.X - from.X), from.Y + share * (to.Y - from.Y)};
      if (!places.empty() &&
          std::hypot(at.X - places.back().X, at.Y - places.back().Y) < kStep / 3) {
        continue;
      }
      places.push_back(at);
      canvas.Room.Avoid(at, kStep / 4);
    }
  }
  return places;
}

void DrawText(Canvas& canvas, std::string_view tag, Point at, std::string text, double size,
              AnchorX across = AnchorX::Left, bool bold = false) {
  canvas.Page.Add(tag, Label{.At = at,
                             .Text = std::move(text),
                             .Across = across,
                             .Size = size,
                             .Ink = canvas.Colors.Ink,
                             .Bold = bold});
}

std::string LevelText(const ProfileWind& wind, const Options& options) {
  const bool knots = options.Speed == SpeedUnits::Knots;
  return Mask(wind.Height / 1000, "#0.0") +
         " km: " + WindText(wind.Vector, options, knots ? "##0" : "##0.0", knots ? " kts" : " m/s");
}

void DrawTrace(Canvas& canvas, const std::vector<ProfileWind>& winds) {
  for (const TracePiece& piece : CutAtBands(winds)) {
    std::vector<Point> points;
    points.reserve(piece.Winds.size());
    for (const ProfileWind& wind : piece.Winds) points.push_back(canvas.At.ToPoint(wind.Vector));
    const Pen& pen = canvas.Colors.Band[static_cast<std::size_t>(piece.Band)];
    // A thin line below keeps sharp turns whole where a dash would leave them out.
    if (pen.Style != LineStyle::Solid) {
      DrawLine(canvas, "trace core", points, {pen.Ink, pen.Width / 4, LineStyle::Solid});
    }
    DrawLine(canvas, "trace", points, pen);
  }
  if (canvas.Small) return;
  Point last{-1e9, -1e9};
  for (const ProfileWind& wind : winds) {
    const Point at = canvas.At.ToPoint(wind.Vector);
    if (!canvas.At.Frame.Contains(at)) continue;
    if (std::hypot(at.X - last.X, at.Y - last.Y) < kSpotReach / 2) continue;
    last = at;
    canvas.Page.AddHotSpot(
        {{at.X - kSpotReach, at.Y - kSpotReach, at.X + kSpotReach, at.Y + kSpotReach},
         "wind",
         LevelText(wind, canvas.Set())});
  }
}

// A dot at every whole kilometre, at every third one further up, with its number where there is
// room.
void DrawHeightMarks(Canvas& canvas, const std::vector<ProfileWind>& winds) {
  if (winds.size() < 2) {
    for (const ProfileWind& wind : winds) {
      canvas.Page.Add("height mark", Circle{.Center = canvas.At.ToPoint(wind.Vector),
                                            .Radius = 50,
                                            .Fill = {canvas.Colors.Band[0].Ink}});
    }
    return;
  }
  const double radius = canvas.Small ? 18 : 34;
  const double size = canvas.Small ? 105 : 140;
  for (int km = 1; km <= 60; ++km) {
    if ((canvas.Small || km > kEveryKm) && km % 3 != 0) continue;
    const std::optional<WindVector> wind = WindAt(winds, km * 1000);
    if (!wind) continue;
    const Point at = canvas.At.ToPoint(*wind);
    if (!canvas.At.Frame.Contains(at)) continue;
    const Pen& pen = canvas.Colors.Band[static_cast<std::size_t>(BandOf(km * 1000))];
    canvas.Page.Add("height mark",
                    Circle{.Center = at,
                           .Radius = radius,
                           .Fill = {canvas.Colors.Paper},
                           .Stroke = {pen.Ink, canvas.Small ? 10.0 : 16.0, LineStyle::Solid}});
    const std::string text = Shortest(km);
    const double width = TextWidth(text.size(), size);
    const auto place =
        canvas.Room.Beside(at, width, size, radius + 15, {1, 0}, FarthestName(canvas));
    if (!place) continue;
    DrawLeader(canvas, at, *place, width, size, pen.Ink);
    canvas.Names.emplace_back("height label", Label{.At = *place,
                                                    .Text = text,
                                                    .Across = AnchorX::Center,
                                                    .Size = size,
                                                    .Ink = pen.Ink,
                                                    .Bold = true,
                                                    .Halo = canvas.Colors.Paper});
  }
}

void DrawComparisons(Canvas& canvas) {
  for (const ComparedWinds& compared : ShownComparisons(canvas)) {
    std::vector<Point> points;
    for (const ProfileWind& wind : compared.Winds) {
      points.push_back(canvas.At.ToPoint(wind.Vector));
    }
    const Pen& pen =
        canvas.Colors
            .Compared[static_cast<std::size_t>(compared.Slot - 1) % canvas.Colors.Compared.size()];
    DrawLine(canvas, "comparison", points, pen);
    canvas.Legend.push_back(
        {"#" + Shortest(compared.Slot) + " - " + CutTitle(compared.Title, 32), pen});
  }
}

void DrawFrameLine(Canvas& canvas) {
  const Rect& f = canvas.At.Frame;
  canvas.Page.Add("frame", Polyline{.Points = {{f.Left, f.Top},
                                               {f.Right, f.Top},
                                               {f.Right, f.Bottom},
                                               {f.Left, f.Bottom},
                                               {f.Left, f.Top}},
                                    .Stroke = canvas.Colors.Frame});
}

// Why the picture shows less than a hodograph; empty when nothing is amiss.
std::string Remark(const std::vector<ProfileWind>& winds) {
  if (winds.empty()) return "This sounding has no winds.";
  if (winds.size() == 1) return "This sounding has a single wind.";
  const bool calm = std::ranges::all_of(
      winds, [](const ProfileWind& w) { return std::hypot(w.Vector.U, w.Vector.V) < 0.5; });
  if (calm) return "Calm at every level.";
  constexpr double kAloft = 1000;  // m above ground
  if (winds.front().Height > kAloft) {
    return "No winds below " + Mask(winds.front().Height / 1000, "#0.0") + " km above ground.";
  }
  return {};
}

void DrawCaptions(Canvas& canvas, const Rings& rings) {
  const bool knots = canvas.Set().Speed == SpeedUnits::Knots;
  const double captionY = canvas.In.Window.CaptionAtTop ? 400 : 8480;
  DrawText(canvas, "title", {250, 200}, canvas.In.Sounding.StationTitle, kTitleText, AnchorX::Left,
           true);
  DrawText(canvas, "diagram name", {kPanel.Right, 200}, "Hodograph", kTitleText, AnchorX::Right);
  DrawText(canvas, "range caption", {kFrame.Right, captionY},
           "Rings every " + Shortest(rings.Step) + (knots ? " kt" : " m/s"), kCaptionText,
           AnchorX::Right);
  DrawText(canvas, "axis caption", {250, 8480}, StormFrame(canvas) ? " Storm" : "Ground",
           kCaptionText);
  DrawText(canvas, "axis caption", {250, 8660}, "Relative", kCaptionText);
  DrawText(canvas, "height caption", {1200, 8480}, "Numbers on the trace: km above ground",
           kCaptionText);
}

// A line with a wide gap goes on below, behind its head, so that all can be written larger.
std::vector<PanelLine> Broken(const std::vector<PanelLine>& lines) {
  constexpr std::string_view kGap = "     ", kHead = ": ";
  std::vector<PanelLine> rows;
  for (const PanelLine& line : lines) {
    const std::size_t begin = std::min(line.Text.find_first_not_of(' '), line.Text.size());
    const std::size_t gap = line.Text.find(kGap, begin);
    const std::size_t rest = gap == line.Text.npos ? gap : line.Text.find_first_not_of(' ', gap);
    PanelLine row = line;
    if (gap != line.Text.npos) row.Text.resize(gap);
    rows.push_back(row);
    if (rest == line.Text.npos) continue;
    const std::size_t head = line.Text.find(kHead);
    const std::size_t indent = head < gap ? head + kHead.size() : begin;
    row.Text = std::string(indent, ' ') + line.Text.substr(rest);
    rows.push_back(std::move(row));
  }
  return rows;
}

// Gives the bottom of the panel.
double DrawPanel(Canvas& canvas) {
  constexpr double kMargin = 40, kLetterWidth = 0.61;  // of the size, in the fixed-width face
  const std::vector<PanelLine> lines = Broken(AnalysisPanel(canvas.In));
  std::size_t longest = 1;
  for (const PanelLine& line : lines) longest = std::max(longest, line.Text.size());
  const double room = kPanel.Right - kPanel.Left - 2 * kMargin;
  const double size = std::min(kPanelText, room / (kLetterWidth * static_cast<double>(longest)));
  const double step = size * kPanelLeading;
  const Inks inks = InksFor(canvas.Set(), canvas.Set().System.HodoAnalInvert);
  const double bottom = kPanel.Top + step * (static_cast<double>(lines.size()) + 1);
  canvas.Page.Add("panel", Area{.Rings = {{{kPanel.Left, kPanel.Top},
                                           {kPanel.Right, kPanel.Top},
                                           {kPanel.Right, bottom},
                                           {kPanel.Left, bottom}}},
                                .Fill = {inks.Paper, FillStyle::Plain},
                                .Stroke = inks.Ring});
  double y = kPanel.Top + step;
  for (const PanelLine& line : lines) {
    canvas.Page.Add("panel line", Label{.At = {kPanel.Left + kMargin, y},
                                        .Text = line.Text,
                                        .Size = size,
                                        .Font = Face::Mono,
                                        .Ink = inks.Ink});
    if (!line.Spot.empty()) {
      canvas.Page.AddHotSpot(
          {{kPanel.Left, y - step / 2, kPanel.Right, y + step / 2}, "panel", line.Spot});
    }
    y += step;
  }
  return bottom;
}

void DrawLegend(Canvas& canvas, const std::vector<ProfileWind>& winds, double top) {
  double y = top + kLegendStep;
  std::vector<LegendItem> items = canvas.Legend;
  items.push_back({StormFrame(canvas) ? "Storm-Relative Winds" : "Ground-Relative Winds", {}});
  if (canvas.In.Storm().ChosenIsManual) items.push_back({"Storm motion: manual", {}});
  const int lowest = winds.empty() ? 0 : BandOf(winds.front().Height);
  const int highest = winds.empty() || canvas.In.Window.SkipPlot ? -1 : BandOf(winds.back().Height);
  for (int band = lowest; band <= highest; ++band) {
    const auto index = static_cast<std::size_t>(band);
    items.push_back({"  " + std::string(kBandNames[index]), canvas.Colors.Band[index]});
  }
  for (const LegendItem& item : items) {
    const double left = kPanel.Left + 100;
    if (item.Square) {
      DrawSquare(canvas, "legend square", {left + 300, y}, item.Stroke);
    } else if (item.Stroke.Width > 0) {
      canvas.Page.Add("legend line",
                      Polyline{.Points = {{left, y}, {left + 600, y}}, .Stroke = item.Stroke});
    }
    DrawText(canvas, "legend", {item.Stroke.Width > 0 ? left + 720 : left, y}, item.Text,
             kCaptionText);
    y += kLegendStep;
  }
}

void ThinPens(Inks& inks) {
  for (Pen& pen : inks.Band) pen.Width *= kSmallShare;
  for (Pen* pen : {&inks.ChosenStorm, &inks.OtherStorm, &inks.Frame}) pen->Width *= kSmallShare;
}

}  // namespace

HodographPlot PlotHodograph(const HodographInput& input) {
  HodographPlot plot;
  const Inks inks = InksFor(input.Set, input.Set.System.HodoInvert);
  plot.Page = Picture(kPageWidth, kPageHeight, inks.Paper);
  plot.Winds = WindProfile(input.Sounding, input.Set);
  Canvas canvas{.In = input, .Page = plot.Page, .Colors = inks, .Room = LabelRoom(kFrame)};
  const Rings rings = PlaceRings(canvas, kFrame, plot.Winds);
  DrawRings(plot.Page, canvas.At, rings, inks, AvoidTrace(canvas, plot.Winds), canvas.Room);
  if (ShowsStorm(canvas)) DrawStormVectors(canvas);
  if (input.Window.HelicityContours) DrawHelicityContours(canvas);
  if (input.Window.MbeVector) DrawPropagationVector(canvas);
  DrawMeanWinds(canvas);
  DrawShearLayer(canvas);
  DrawComparisons(canvas);
  if (!input.Window.SkipPlot) {
    DrawTrace(canvas, plot.Winds);
    DrawHeightMarks(canvas, plot.Winds);
  }
  DrawNames(canvas);
  DrawFrameLine(canvas);
  DrawCaptions(canvas, rings);
  if (const std::string remark = Remark(plot.Winds); !remark.empty()) {
    canvas.Page.Add("remark", Label{.At = {(kFrame.Left + kFrame.Right) / 2, kFrame.Bottom - 300},
                                    .Text = remark,
                                    .Across = AnchorX::Center,
                                    .Size = kTitleText,
                                    .Ink = inks.Ink,
                                    .Halo = inks.Paper});
  }
  const double panelEnd = input.Window.Float ? kPanel.Top : DrawPanel(canvas);
  DrawLegend(canvas, plot.Winds, panelEnd);
  plot.Mapping = canvas.At;
  plot.StormRelative = StormFrame(canvas);
  plot.HasTrace = !input.Window.SkipPlot;
  if (ShowsStorm(canvas) && input.Storm().Chosen()) plot.Storm = input.Storm().Chosen()->Motion;
  return plot;
}

std::optional<Picture> PlotSmallHodograph(const HodographInput& input) {
  const std::vector<ProfileWind> winds = WindProfile(input.Sounding, input.Set);
  if (winds.empty()) return std::nullopt;
  Inks inks = InksFor(input.Set, input.Set.System.HodoInvert);
  ThinPens(inks);
  Picture page(kSmallPage, kSmallPage, inks.Paper);
  page.Add("paper",
           Area{.Rings = {{{0, 0}, {kSmallPage, 0}, {kSmallPage, kSmallPage}, {0, kSmallPage}}},
                .Fill = {inks.Paper}});
  Canvas canvas{
      .In = input, .Page = page, .Colors = inks, .Room = LabelRoom(kSmallFrame), .Small = true};
  const Rings rings = PlaceRings(canvas, kSmallFrame, winds);
  DrawRings(page, canvas.At, rings, inks, AvoidTrace(canvas, winds), canvas.Room);
  if (ShowsStorm(canvas)) DrawStormVectors(canvas);
  DrawTrace(canvas, winds);
  DrawHeightMarks(canvas, winds);
  DrawNames(canvas);
  DrawFrameLine(canvas);
  return page;
}

bool HitsStormVector(const HodographPlot& plot, Point at) {
  if (!plot.Storm) return false;
  const Point head = plot.Mapping.ToPoint(*plot.Storm);
  return std::hypot(head.X - at.X, head.Y - at.Y) <= kHandle;
}

std::optional<ProfileWind> FindWind(const HodographPlot& plot, Point at) {
  std::optional<ProfileWind> nearest;
  double least = plot.HasTrace ? kWindHandle : 0;
  for (const ProfileWind& wind : plot.Winds) {
    const Point here = plot.Mapping.ToPoint(wind.Vector);
    const double apart = std::hypot(here.X - at.X, here.Y - at.Y);
    if (wind.Level == 0 || apart >= least) continue;
    nearest = wind;
    least = apart;
  }
  return nearest;
}

CursorBox ReadHodograph(const HodographPlot& plot, Point at, const Options& options) {
  if (!plot.Mapping.Frame.Contains(at)) return {};
  const bool knots = options.Speed == SpeedUnits::Knots;
  const auto text = [&](const WindVector& wind) {
    const int from = ToWhole(analysis::FromComponents(wind).Dir);
    return WindText(wind, options, knots ? "##0" : "##0.0", knots ? " kts " : " m/s ") +
           std::string(CompassName(from));
  };
  CursorBox box{"Cursor: " + text(plot.Mapping.ToWind(at)), "  Wind: --"};
  const auto distance = [&](const ProfileWind& wind) {
    const Point here = plot.Mapping.ToPoint(wind.Vector);
    return std::hypot(here.X - at.X, here.Y - at.Y);
  };
  const auto nearest = std::ranges::min_element(plot.Winds, {}, distance);
  if (nearest != plot.Winds.end()) {
    box.Wind =
        "  Wind: " + text(nearest->Vector) + "  " + Mask(nearest->Height / 1000, "#0.0") + " km";
  }
  return box;
}

}  // namespace vexa::hodograph
