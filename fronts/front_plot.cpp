#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "fronts/front_page.h"
#include "hodograph/rings.h"
#include "hodograph/trace.h"
#include "hodograph/vectors.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::fronts {
namespace {

using analysis::WindVector;
using hodograph::Canvas;
using hodograph::ProfileWind;

constexpr double kUsualDepth = 6000;  // m above the station: fronts are searched below it

WindVector Blowing(double towards, double speed) {
  return analysis::Components({towards + 180, speed});
}

hodograph::Rings PlaceRings(Canvas& canvas, const std::vector<ProfileWind>& winds,
                            const Front* front) {
  std::vector<WindVector> extent;
  for (const ProfileWind& wind : winds) extent.push_back(wind.Vector);
  if (front != nullptr) extent.push_back(Blowing(front->Motion, front->Speed));
  canvas.At = hodograph::FittedTo(canvas.At.Frame, {}, extent);
  const SpeedUnits units = canvas.Set().Speed;
  const double half = canvas.At.Frame.Width() / 2 / canvas.At.Scale;
  return {.Step = hodograph::RingStep(ShownIn(half, units)), .Units = units};
}

// The places of a thermal wind's arrow, short enough that they follow it.
void AddArrowPlaces(FrontPage& page, const Canvas& canvas, const FrontLayer& layer,
                    std::size_t index) {
  constexpr double kReach = 60;
  const Point from = canvas.At.ToPoint(layer.Lower);
  const Point to = canvas.At.ToPoint(layer.Upper);
  const double length = std::hypot(to.X - from.X, to.Y - from.Y);
  const int steps = std::clamp(static_cast<int>(length / kReach), 1, 40);
  for (int i = 0; i < steps; ++i) {
    const double share = (i + 0.5) / steps;
    const Point at{from.X + share * (to.X - from.X), from.Y + share * (to.Y - from.Y)};
    if (!canvas.At.Frame.Contains(at)) continue;
    const Rect where{at.X - kReach, at.Y - kReach, at.X + kReach, at.Y + kReach};
    page.Plot.Layers.push_back({where, index});
    if (i == steps / 2) {
      page.Plot.Page.AddHotSpot({where, "thermal wind", LayerText(layer, page.Set())});
    }
  }
}

void DrawThermalWinds(FrontPage& page, Canvas& canvas) {
  for (std::size_t i = 0; i < page.In.Fronts.Layers.size(); ++i) {
    const FrontLayer& layer = page.In.Fronts.Layers[i];
    if (layer.Top > Depth(page) + 1) continue;
    const bool isCandidate = layer.Why == Missed::No;
    const Color ink = page.Fronts.Of(layer.IsWarm());
    const Pen pen{isCandidate ? ink : Faded(ink, 150), isCandidate ? Px(1.6) : Px(0.8),
                  LineStyle::Solid};
    DrawArrow(canvas, "thermal wind", layer.Lower, layer.Upper, pen);
    AddArrowPlaces(page, canvas, layer, i);
  }
}

// The winds of the frontal layer, as a band beneath the trace, and its thermal wind from base to
// top.
void DrawFrontalLayer(FrontPage& page, Canvas& canvas, const std::vector<ProfileWind>& winds) {
  const Front* front = page.Found();
  if (front == nullptr) return;
  const FrontLayer& zone = front->Zone.Whole;
  const Color ink = page.Fronts.Of(zone.IsWarm());
  std::vector<Point> band = {canvas.At.ToPoint(zone.Lower)};
  for (const ProfileWind& wind : winds) {
    if (wind.Height > zone.Base && wind.Height < zone.Top) {
      band.push_back(canvas.At.ToPoint(wind.Vector));
    }
  }
  band.push_back(canvas.At.ToPoint(zone.Upper));
  DrawLine(canvas, "frontal layer", band, {Faded(ink, 90), Px(11), LineStyle::Solid});
  DrawArrow(canvas, "zone", zone.Lower, zone.Upper, {ink, Px(3), LineStyle::Solid});
}

// Triangles of a cold front, half circles of a warm one, on the side to which it moves.
void DrawPips(FrontPage& page, const Canvas& canvas, Point from, Point along, Point ahead,
              double length, bool isWarm) {
  constexpr double kStep = Px(34);
  constexpr double kHalf = Px(6);
  const Brush fill{page.Fronts.Of(isWarm), FillStyle::Plain};
  for (double way = kStep / 2; way < length; way += kStep) {
    const Point at{from.X + way * along.X, from.Y + way * along.Y};
    std::vector<Point> pip;
    const int corners = isWarm ? 12 : 2;
    for (int i = 0; i <= corners; ++i) {
      const double angle = Radians(180.0 * i / corners);
      const double side = kHalf * std::cos(angle);
      const double out = kHalf * std::sin(angle) * (isWarm ? 1 : 1.5);
      pip.push_back({at.X + side * along.X + out * ahead.X, at.Y + side * along.Y + out * ahead.Y});
    }
    const bool isInside =
        std::ranges::all_of(pip, [&](Point corner) { return canvas.At.Frame.Contains(corner); });
    if (isInside) page.Plot.Page.Add("front pip", Area{.Rings = {std::move(pip)}, .Fill = fill});
  }
}

// The motion of the front from the calm, and at its head the line of all winds that move with it.
void DrawMotion(FrontPage& page, Canvas& canvas) {
  const Front* front = page.Found();
  if (front == nullptr) return;
  const Color ink = page.Fronts.Of(front->IsWarm());
  const WindVector motion = Blowing(front->Motion, front->Speed);
  const Point head = canvas.At.ToPoint(motion);
  const Point ahead{std::sin(Radians(front->Motion)), -std::cos(Radians(front->Motion))};
  const Point along{-ahead.Y, ahead.X};
  const double half = 0.3 * std::min(canvas.At.Frame.Width(), canvas.At.Frame.Height());
  const Point from{head.X - half * along.X, head.Y - half * along.Y};
  const Point to{head.X + half * along.X, head.Y + half * along.Y};
  DrawLine(canvas, "front line", {from, to}, {ink, Px(1.6), LineStyle::Solid});
  canvas.Room.AvoidLine({from, to}, 40);
  DrawPips(page, canvas, from, along, ahead, 2 * half, front->IsWarm());
  DrawArrow(canvas, "front motion", {}, motion, {ink, Px(2.2), LineStyle::Dash});
  DrawName(canvas, "front name", motion, front->IsWarm() ? "Warm Front" : "Cold Front", ink, ahead,
           Px(10));
  AddSpot(canvas, "front motion", motion, Characterisation(page.Source())[1]);
}

void DrawRemark(FrontPage& page, const Rect& frame, std::string text) {
  const double size = LetterSize(Type::Title);
  page.Plot.Page.Add("remark", Label{.At = {(frame.Left + frame.Right) / 2, frame.Top + Px(24)},
                                     .Text = Elided(text, size, frame.Width()),
                                     .Across = AnchorX::Center,
                                     .Size = size,
                                     .Ink = page.Colors.Ink,
                                     .Halo = page.Colors.Paper});
}

// What rings and colours mean, under the plot.
void DrawCaptions(FrontPage& page, const hodograph::Rings& rings, const Rect& place,
                  const std::string& leftOut) {
  const double first = place.Top + place.Height() / 4;
  const double second = place.Bottom - place.Height() / 4;
  const std::string step =
      "Rings every " + Shortest(rings.Step) + (rings.Units == SpeedUnits::Knots ? " kts" : " m/s");
  Write(page, "range caption", {place.Right, first}, step, kNote, AnchorX::Right);
  const double room = place.Width() - TextWidth(step, kNote) - Px(16);
  Write(page, "axis caption", {place.Left, first},
        Elided("Ground Relative, to " + Mask(Depth(page) / 1000, "#0.#") +
                   " km; numbers on the trace: km above ground",
               kNote, room),
        kNote);
  double x = place.Left;
  struct Entry {
    bool IsWarm;
    const char* Text;
  };
  for (const Entry& entry : {Entry{true, "warm"}, Entry{false, "cold advection (thermal winds)"}}) {
    const double width = Px(26) + TextWidth(entry.Text, kNote) + Px(14);
    if (x + width > place.Right) return;
    page.Plot.Page.Add("legend line", Polyline{.Points = {{x, second}, {x + Px(20), second}},
                                               .Stroke = {page.Fronts.Of(entry.IsWarm), Px(2.5),
                                                          LineStyle::Solid}});
    Write(page, "legend", {x + Px(26), second}, entry.Text, kNote);
    x += width;
  }
  const std::string missing = Elided(leftOut, kNote, place.Right - x);
  if (!missing.empty()) {
    Write(page, "left out", {place.Right, second}, missing, kNote, AnchorX::Right);
  }
}

hodograph::Rings DrawHodograph(FrontPage& page, const Rect& frame) {
  const std::vector<ProfileWind> winds =
      hodograph::BelowLimit(hodograph::WindProfile(page.In.Winds.Sounding, {}), Depth(page));
  Canvas canvas{.In = page.In.Winds,
                .Page = page.Plot.Page,
                .At = {.Frame = frame},
                .Colors = page.Colors,
                .Room = LabelRoom(frame)};
  // Red and blue tell warm from cold here, not heights.
  for (Pen& pen : canvas.Colors.Band) pen = {page.Colors.Faint, Px(2), LineStyle::Solid};
  const hodograph::Rings rings = PlaceRings(canvas, winds, page.Found());
  DrawRings(page.Plot.Page, canvas.At, rings, page.Colors,
            AvoidTrace(canvas, hodograph::Smoothed(winds)), canvas.Room);
  DrawFrontalLayer(page, canvas, hodograph::Smoothed(winds));
  DrawTrace(canvas, winds);
  DrawThermalWinds(page, canvas);
  DrawMotion(page, canvas);
  DrawHeightMarks(canvas, hodograph::Smoothed(winds));
  DrawNames(canvas);
  DrawFrameLine(canvas);
  if (page.Found() == nullptr) DrawRemark(page, frame, std::string(kNoFrontsFound));
  page.Plot.Mapping = canvas.At;
  return rings;
}

void DrawTitle(FrontPage& page, const Rect& place) {
  constexpr std::string_view kName = "Frontal Analysis";
  const double size = LetterSize(Type::Title);
  const double y = (place.Top + place.Bottom) / 2;
  const FittedTitle title = FitTitle(page.In.Winds.Sounding.StationTitle, place.Width());
  const double name = TextWidth(kName, size) + Px(20);
  const bool hasBoth =
      title.Size == size && TextWidth(title.Text, size, true) + name <= place.Width();
  Write(page, "title", {place.Left, y}, title.Text, title.Size, AnchorX::Left, true);
  if (hasBoth) {
    Write(page, "diagram name", {place.Right, y}, std::string(kName), size, AnchorX::Right);
  }
}

PageLayout Cut(const FrontPage& page, const Surface& surface) {
  const Room layers = LayersRoom(page);
  std::vector<RegionRow> regions = {
      {.Name = "title", .At = Place::Above, .LeastHeight = Px(26), .Priority = 1},
      {.Name = "plot", .At = Place::Main, .LeastWidth = Px(200), .LeastHeight = Px(200)},
      {.Name = "captions", .At = Place::Under, .LeastHeight = Px(30), .Priority = 3},
      {.Name = "texts",
       .At = Place::Under,
       .LeastHeight = BoxHeight(TextLines(page)) + kBoxPadding,
       .Priority = 2,
       .Caption = "character",
       .Elsewhere = "listing"},
      {.Name = "table",
       .At = Place::Side,
       .LeastWidth = layers.Width,
       .LeastHeight = layers.Height,
       .Priority = 5,
       .Stretch = 1,
       .Caption = "layers",
       .Elsewhere = "listing"}};
  if (page.Found() != nullptr) {
    regions.insert(regions.begin() + 3, {.Name = "profile",
                                         .At = Place::Beside,
                                         .LeastWidth = Px(130),
                                         .Priority = 4,
                                         .Caption = "normal wind",
                                         .Elsewhere = "a larger window"});
  }
  return CutPage(surface, regions);
}

}  // namespace

void Write(FrontPage& page, std::string_view tag, Point at, std::string text, double size,
           AnchorX across, bool bold, Face face) {
  page.Plot.Page.Add(tag, Label{.At = at,
                                .Text = std::move(text),
                                .Across = across,
                                .Size = size,
                                .Font = face,
                                .Ink = page.Colors.Ink,
                                .Bold = bold});
}

void DrawFrame(FrontPage& page, const Rect& box, std::string_view tag) {
  page.Plot.Page.Add(tag, Polyline{.Points = OutlineOf(box), .Stroke = page.Colors.Ring});
}

Color Faded(Color ink, std::uint8_t alpha) {
  ink.Alpha = alpha;
  return ink;
}

double Depth(const FrontPage& page) {
  const Front* front = page.Found();
  return front == nullptr ? kUsualDepth : std::max(kUsualDepth, front->Zone.Whole.Top);
}

std::string LayerText(const FrontLayer& layer, const DisplaySettings& set) {
  const bool knots = set.Speed == SpeedUnits::Knots;
  return Mask(layer.BasePress, "###0") + "/" + Mask(layer.TopPress, "###0") + ": thermal wind " +
         hodograph::WindText(layer.Thermal.Vector, set, knots ? "##0" : "##0.0",
                             knots ? " kts" : " m/s") +
         ", " + (layer.IsWarm() ? "warm " : "cold ") +
         Mask(std::fabs(layer.AdvectionCph), "##0.0") +
         " \xC2\xB0"
         "C/h" +
         (layer.Why == Missed::No ? "" : ", " + std::string(Text(layer.Why)));
}

FrontInks FrontInksFor(const ViewSettings& options, bool inverted) {
  const bool isBlack = (options.Screen == ScreenColor::Black) != inverted;
  const ColorScheme scheme = SchemeOn(options.Screen, options.Scheme);
  // Red and blue as maps have them; for eyes that confuse red and green those of Okabe and Ito
  // (2008).
  if (scheme == ColorScheme::Safe || scheme == ColorScheme::SafeDark) {
    return isBlack ? FrontInks{{235, 140, 60}, {90, 170, 230}}
                   : FrontInks{{213, 94, 0}, {0, 114, 178}};
  }
  return isBlack ? FrontInks{{255, 110, 110}, {120, 160, 255}}
                 : FrontInks{{210, 20, 20}, {20, 60, 210}};
}

FrontPlot PlotFronts(const FrontPlotInput& input, const Surface& surface) {
  FrontPlot plot;
  const ViewSettings& set = input.Winds.Set;
  FrontPage page{.In = input,
                 .Plot = plot,
                 .Colors = hodograph::InksFor(set, set.HodoInvert),
                 .Fronts = FrontInksFor(set, set.HodoInvert)};
  plot.Page = Picture(surface.Width, surface.Height, page.Colors.Paper);
  const PageLayout layout = Cut(page, surface);
  const hodograph::Rings rings = DrawHodograph(page, *layout.Find("plot"));
  const auto draw = [&layout](std::string_view name, const auto& fill) {
    if (const Rect* region = layout.Find(name)) fill(*region);
  };
  draw("title", [&](const Rect& region) { DrawTitle(page, region); });
  draw("captions",
       [&](const Rect& region) { DrawCaptions(page, rings, region, LeftOutText(layout)); });
  draw("profile", [&](const Rect& region) { DrawProfile(page, region); });
  draw("texts", [&](const Rect& region) { DrawTexts(page, region); });
  draw("table", [&](const Rect& region) { DrawLayers(page, region); });
  return plot;
}

std::optional<std::size_t> LayerAt(const FrontPlot& plot, Point at) {
  const LayerPlace* found = nullptr;
  const auto area = [](const LayerPlace& place) {
    return place.Where.Width() * place.Where.Height();
  };
  for (const LayerPlace& place : plot.Layers) {
    if (!place.Where.Contains(at)) continue;
    if (found == nullptr || area(place) < area(*found)) found = &place;
  }
  return found == nullptr ? std::nullopt : std::optional(found->Layer);
}

}  // namespace vexa::fronts
