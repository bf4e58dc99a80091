#include "fronts/front_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "fronts/front_text.h"
#include "hodograph/rings.h"
#include "hodograph/trace.h"
#include "hodograph/vectors.h"
#include "picture/layout.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::fronts {
namespace {

using analysis::WindVector;
using hodograph::Canvas;
using hodograph::ProfileWind;

constexpr double kText = LetterSize(Type::Label);
constexpr double kNote = LetterSize(Type::Note);
constexpr double kRowStep = Px(15);    // of the table
constexpr double kUsualDepth = 6000;   // m above the station: fronts are searched below it
constexpr std::size_t kTableHead = 3;  // lines
constexpr std::size_t kLeastRows = 12;

/// What the steps of one page share.
struct Pages {
  const FrontPlotInput& In;
  FrontPlot& Plot;
  hodograph::Inks Colors{};
  FrontInks Fronts{};

  const DisplaySettings& Set() const { return In.Winds.Set; }
  const Front* Found() const { return In.Fronts.Found ? &*In.Fronts.Found : nullptr; }
  FrontSource Source() const {
    return {In.Fronts, In.Winds.Window.Front, Set(), In.Winds.Window.Distance};
  }
};

void Write(Pages& page, std::string_view tag, Point at, std::string text, double size,
           AnchorX across = AnchorX::Left, bool bold = false, Face face = Face::Sans) {
  page.Plot.Page.Add(tag, Label{.At = at,
                                .Text = std::move(text),
                                .Across = across,
                                .Size = size,
                                .Font = face,
                                .Ink = page.Colors.Ink,
                                .Bold = bold});
}

void Frame(Pages& page, const Rect& box, std::string_view tag) {
  page.Plot.Page.Add(tag, Polyline{.Points = OutlineOf(box), .Stroke = page.Colors.Ring});
}

Color Faded(Color ink, std::uint8_t alpha) {
  ink.Alpha = alpha;
  return ink;
}

// Part of the front that was found.
bool IsOfZone(const Pages& page, const FrontLayer& layer) {
  const Front* front = page.Found();
  return front != nullptr && layer.Base >= front->Zone.Whole.Base - 1 &&
         layer.Top <= front->Zone.Whole.Top + 1;
}

double Depth(const Pages& page) {
  const Front* front = page.Found();
  return front == nullptr ? kUsualDepth : std::max(kUsualDepth, front->Zone.Whole.Top);
}

WindVector Blowing(double towards, double speed) {
  return analysis::Components({towards + 180, speed});
}

// ---- the hodograph

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

// The places of a thermal wind's arrow, short enough that they follow it.
void AddArrowPlaces(Pages& page, const Canvas& canvas, const FrontLayer& layer, std::size_t index) {
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

void DrawThermalWinds(Pages& page, Canvas& canvas) {
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
void DrawFrontalLayer(Pages& page, Canvas& canvas, const std::vector<ProfileWind>& winds) {
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
void DrawPips(Pages& page, const Canvas& canvas, Point from, Point along, Point ahead,
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
void DrawMotion(Pages& page, Canvas& canvas) {
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

void DrawRemark(Pages& page, const Rect& frame, std::string text) {
  const double size = LetterSize(Type::Title);
  page.Plot.Page.Add("remark", Label{.At = {(frame.Left + frame.Right) / 2, frame.Top + Px(24)},
                                     .Text = Elided(text, size, frame.Width()),
                                     .Across = AnchorX::Center,
                                     .Size = size,
                                     .Ink = page.Colors.Ink,
                                     .Halo = page.Colors.Paper});
}

// What rings and colours mean, under the plot.
void DrawCaptions(Pages& page, const hodograph::Rings& rings, const Rect& place,
                  const std::string& leftOut) {
  const double first = place.Top + place.Height() / 4;
  const double second = place.Bottom - place.Height() / 4;
  const std::string step =
      "Rings every " + Shortest(rings.Step) + (rings.Units == SpeedUnits::Knots ? " kt" : " m/s");
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

hodograph::Rings DrawHodograph(Pages& page, const Rect& frame) {
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

// ---- the profile of the normal wind

/// Pressure down, normal wind across.
struct ProfileAxes {
  Rect Frame{};
  double TopLog = 0, BottomLog = 1;  // ln hPa
  double Least = -10, Most = 10;     // kt

  double X(double knots) const {
    return Frame.Left + (knots - Least) / (Most - Least) * Frame.Width();
  }
  double Y(double press) const {
    return Frame.Top + (std::log(press) - TopLog) / (BottomLog - TopLog) * Frame.Height();
  }
};

ProfileAxes AxesFor(const Front& front, const std::vector<NormalWind>& winds, const Rect& frame) {
  constexpr double kLeastSpan = 10;  // kt
  ProfileAxes axes{.Frame = frame};
  axes.TopLog = std::log(winds.back().Press);
  axes.BottomLog = std::max(std::log(winds.front().Press), axes.TopLog + 0.01);
  double least = std::min(0.0, front.Speed), most = std::max(0.0, front.Speed);
  for (const NormalWind& wind : winds) {
    least = std::min(least, wind.Speed);
    most = std::max(most, wind.Speed);
  }
  const double margin = std::max(kLeastSpan, most - least) * 0.06;
  axes.Least = least - margin;
  axes.Most = std::max(most + margin, least + kLeastSpan);
  return axes;
}

// The winds that the profile shows: those with a pressure, up to the depth of the search.
std::vector<NormalWind> ShownNormals(const Pages& page, const Front& front) {
  std::vector<NormalWind> shown;
  for (const NormalWind& wind : front.Normals) {
    if (wind.Height > Depth(page) || !HasHeight(wind.Press) || wind.Press <= 0) continue;
    if (!shown.empty() && wind.Press >= shown.back().Press) continue;
    shown.push_back(wind);
  }
  return shown;
}

void DrawProfileGrid(Pages& page, const ProfileAxes& axes) {
  const Rect& frame = axes.Frame;
  for (int press = 100; press <= 1000; press += 100) {
    const double y = axes.Y(press);
    if (y < frame.Top || y > frame.Bottom) continue;
    page.Plot.Page.Add("profile isobar", Polyline{.Points = {{frame.Left, y}, {frame.Right, y}},
                                                  .Stroke = page.Colors.Ring});
    Write(page, "profile pressure", {frame.Left - Px(3), y}, Shortest(press), kNote,
          AnchorX::Right);
  }
  if (axes.Least < 0 && axes.Most > 0) {
    const double x = axes.X(0);
    page.Plot.Page.Add("profile zero", Polyline{.Points = {{x, frame.Top}, {x, frame.Bottom}},
                                                .Stroke = page.Colors.Axis});
  }
  const SpeedUnits units = page.Set().Speed;
  const double span = ShownIn(axes.Most - axes.Least, units);
  const double step = 2 * hodograph::RingStep(span);
  const double least = ShownIn(axes.Least, units);
  for (double mark = std::ceil(least / step) * step; mark <= least + span; mark += step) {
    const double x = axes.X(hodograph::KnotsOf(mark, units));
    page.Plot.Page.Add("profile tick",
                       Polyline{.Points = {{x, frame.Bottom}, {x, frame.Bottom + Px(4)}},
                                .Stroke = page.Colors.Axis});
    Write(page, "profile speed", {x, frame.Bottom + Px(12)}, Shortest(mark), kNote,
          AnchorX::Center);
  }
}

// The part of the profile in which the normal wind jumps, thick, with the change.
void DrawJump(Pages& page, const ProfileAxes& axes, const std::vector<NormalWind>& winds) {
  const Front& front = *page.Found();
  if (!front.Jump) return;
  std::vector<Point> part;
  for (const NormalWind& wind : winds) {
    if (wind.Height < front.Jump->Base - 1 || wind.Height > front.Jump->Top + 1) continue;
    part.push_back({axes.X(wind.Speed), axes.Y(wind.Press)});
  }
  if (part.size() < 2) return;
  const Color ink = page.Fronts.Of(front.IsWarm());
  const bool knots = page.Set().Speed == SpeedUnits::Knots;
  const double change = ShownIn(front.Jump->Change, page.Set().Speed);
  const std::string text =
      (change > 0 ? "+" : "") + Mask(change, knots ? "##0" : "##0.0") + (knots ? " kts" : " m/s");
  const double width = TextWidth(text, kNote, true);
  const Point at{std::clamp((part.front().X + part.back().X) / 2, axes.Frame.Left + width / 2,
                            axes.Frame.Right - width / 2),
                 part.back().Y - Px(9)};
  page.Plot.Page.Add("jump",
                     Polyline{.Points = std::move(part), .Stroke = {ink, Px(4), LineStyle::Solid}});
  page.Plot.Page.Add("jump label", Label{.At = at,
                                         .Text = text,
                                         .Across = AnchorX::Center,
                                         .Size = kNote,
                                         .Ink = ink,
                                         .Bold = true,
                                         .Halo = page.Colors.Paper});
}

void DrawProfile(Pages& page, const Rect& region) {
  const Front* front = page.Found();
  if (front == nullptr) return;
  const std::vector<NormalWind> winds = ShownNormals(page, *front);
  const bool knots = page.Set().Speed == SpeedUnits::Knots;
  Write(page, "profile heading", {(region.Left + region.Right) / 2, region.Top + Px(9)},
        std::string(kProfileHeading), kText, AnchorX::Center, true);
  Write(page, "profile unit", {region.Right, region.Bottom - Px(7)}, knots ? "(kts)" : "(m/s)",
        kNote, AnchorX::Right);
  if (winds.size() < 2) return;
  const Rect frame{region.Left + Px(30), region.Top + Px(20), region.Right - Px(2),
                   region.Bottom - Px(34)};
  const ProfileAxes axes = AxesFor(*front, winds, frame);
  const FrontLayer& zone = front->Zone.Whole;
  const double base = std::clamp(axes.Y(zone.BasePress), frame.Top, frame.Bottom);
  const double top = std::clamp(axes.Y(zone.TopPress), frame.Top, frame.Bottom);
  const Color ink = page.Fronts.Of(front->IsWarm());
  page.Plot.Page.Add("profile zone",
                     Area{.Rings = {OutlineOf({frame.Left, top, frame.Right, base})},
                          .Fill = {Faded(ink, 60), FillStyle::Plain}});
  DrawProfileGrid(page, axes);
  const double c = axes.X(front->Speed);
  page.Plot.Page.Add("front speed", Polyline{.Points = {{c, frame.Top}, {c, frame.Bottom}},
                                             .Stroke = {ink, Px(1.2), LineStyle::Dash}});
  std::vector<Point> line;
  for (const NormalWind& wind : winds) line.push_back({axes.X(wind.Speed), axes.Y(wind.Press)});
  page.Plot.Page.Add(
      "normal wind",
      Polyline{.Points = std::move(line), .Stroke = {page.Colors.Ink, Px(1.6), LineStyle::Solid}});
  DrawJump(page, axes, winds);
  Frame(page, frame, "profile frame");
  for (std::size_t i = 0; i < page.In.Fronts.Layers.size(); ++i) {
    const FrontLayer& layer = page.In.Fronts.Layers[i];
    const double low = axes.Y(layer.BasePress), high = axes.Y(layer.TopPress);
    if (high < frame.Top || low > frame.Bottom) continue;
    page.Plot.Layers.push_back({{frame.Left, high, frame.Right, low}, i});
  }
}

// ---- the texts

double BlockWidth(const std::vector<std::string>& lines, double size, Face face = Face::Sans) {
  double width = 0;
  for (const std::string& line : lines) {
    width = std::max(width, TextWidth(line, size, false, face));
  }
  return width;
}

std::vector<std::string> Settings(const Pages& page) {
  std::vector<std::string> lines = {
      std::string("Control: ") +
      (page.In.Winds.Window.Front.Control == FrontControl::Automatic ? "Automatic" : "Manual") +
      (page.In.IsChosen ? ", layer chosen" : "") + (page.In.IsHeld ? ", hold" : "")};
  for (std::string& line : StatusBlock(page.Source())) lines.push_back(std::move(line));
  return lines;
}

std::vector<std::string> Character(const Pages& page) {
  std::vector<std::string> lines = Characterisation(page.Source());
  for (const std::string& line : Wrapped(page.In.Fronts.WhyNone, kText, Px(240))) {
    lines.push_back(line);
  }
  return lines;
}

// What is said of the front at the left, the settings beside it in as many columns as find room.
void DrawTexts(Pages& page, const Rect& region) {
  constexpr double kGap = Px(14);
  const std::vector<std::string> said = Character(page);
  const std::vector<std::string> settings = Settings(page);
  Frame(page, region, "text frame");
  const double top = region.Top + kBoxPadding + kLineStep / 2;
  const double right = region.Right - kBoxPadding;
  double x = region.Left + kBoxPadding;
  for (std::size_t i = 0; i < said.size(); ++i) {
    const bool isHead = i == 0 && page.Found() != nullptr;
    Write(page, "front character", {x, top + static_cast<double>(i) * kLineStep},
          Elided(said[i], kText, right - x, isHead), kText, AnchorX::Left, isHead);
  }
  x += TextWidth(said.front(), kText, true);
  x = std::max(x, region.Left + kBoxPadding + BlockWidth(said, kText)) + 2 * kGap;
  const std::size_t rows = (settings.size() + 1) / 2;
  for (std::size_t first = 0; first < settings.size(); first += rows) {
    const std::vector<std::string> column(
        settings.begin() + static_cast<std::ptrdiff_t>(first),
        settings.begin() + static_cast<std::ptrdiff_t>(std::min(first + rows, settings.size())));
    const double width = BlockWidth(column, kNote);
    if (x + width > right) return;
    for (std::size_t i = 0; i < column.size(); ++i) {
      Write(page, "front setting", {x, top + static_cast<double>(i) * kLineStep}, column[i], kNote);
    }
    x += width + kGap;
  }
}

// How the front came about, or what the layers missed, in what the table leaves.
void DrawReasons(Pages& page, const Rect& region) {
  if (region.Height() < kLineStep + 2 * kRowStep) return;
  double y = region.Top + kLineStep / 2;
  Write(page, "reason heading", {region.Left + Px(4), y},
        page.Found() != nullptr ? "How it came about" : "Why there is none", kText, AnchorX::Left,
        true);
  for (const std::string& reason : Reasons(page.Source())) {
    for (const std::string& line : Wrapped(reason, kNote, region.Width() - Px(8))) {
      y += kRowStep;
      if (y + kRowStep / 2 > region.Bottom) return;
      Write(page, "reason", {region.Left + Px(4), y}, line, kNote);
    }
    y += Px(3);
  }
}

// Layers that the search does not reach are told by the listing.
std::vector<std::size_t> TableLayers(const Pages& page) {
  std::vector<std::size_t> shown;
  for (std::size_t i = 0; i < page.In.Fronts.Layers.size(); ++i) {
    if (page.In.Fronts.Layers[i].Top <= Depth(page) + 1) shown.push_back(i);
  }
  return shown;
}

// Gives where it ends.
double DrawTable(Pages& page, const Rect& region) {
  const std::vector<std::string> lines = LayerTable(page.Source());
  const std::vector<std::size_t> layers = TableLayers(page);
  double y = region.Top + kRowStep / 2;
  const auto write = [&](std::string_view tag, const std::string& line) {
    Write(page, tag, {region.Left + Px(4), y}, line, kNote, AnchorX::Left, false, Face::Mono);
    y += kRowStep;
  };
  for (std::size_t i = 0; i < kTableHead; ++i) write("table heading", lines[i]);
  const auto room = static_cast<std::size_t>(
      std::max(0.0, std::floor((region.Bottom - y + kRowStep / 2) / kRowStep + 1e-6)));
  // A line for what found no room, and one for what the star says.
  const std::size_t rows = layers.size() + 1 > room ? (room > 2 ? room - 2 : 0) : layers.size();
  for (std::size_t i = 0; i < rows; ++i) {
    const FrontLayer& layer = page.In.Fronts.Layers[layers[i]];
    const Rect row{region.Left, y - kRowStep / 2, region.Right, y + kRowStep / 2};
    if (IsOfZone(page, layer)) {
      page.Plot.Page.Add(
          "zone row",
          Area{.Rings = {OutlineOf(row)},
               .Fill = {Faded(page.Fronts.Of(page.Found()->IsWarm()), 60), FillStyle::Plain}});
    }
    page.Plot.Layers.push_back({row, layers[i]});
    page.Plot.Page.AddHotSpot({row, "layer", LayerText(layer, page.Set())});
    write("table row", lines[kTableHead + layers[i]]);
  }
  if (rows < layers.size()) {
    write("table rest",
          "  " + Shortest(static_cast<int>(layers.size() - rows)) + " further layers: listing");
  }
  if (!layers.empty()) write("table note", lines.back());
  return y + kRowStep / 2;
}

// ---- the page

void DrawTitle(Pages& page, const Rect& place) {
  constexpr std::string_view kName = "Frontal Analysis";
  const double size = LetterSize(Type::Title);
  const double y = (place.Top + place.Bottom) / 2;
  const std::string& title = page.In.Winds.Sounding.StationTitle;
  const double name = TextWidth(kName, size) + Px(20);
  const bool hasBoth = TextWidth(title, size, true) + name <= place.Width();
  Write(page, "title", {place.Left, y}, Elided(title, size, place.Width(), true), size,
        AnchorX::Left, true);
  if (hasBoth) {
    Write(page, "diagram name", {place.Right, y}, std::string(kName), size, AnchorX::Right);
  }
}

PageLayout Cut(const Pages& page, const Surface& surface) {
  const double texts =
      static_cast<double>(std::max((Settings(page).size() + 1) / 2, Character(page).size()));
  const double table = BlockWidth(LayerTable(page.Source()), kNote, Face::Mono) + Px(8);
  const double rows =
      static_cast<double>(kTableHead + 2 + std::min(kLeastRows, TableLayers(page).size()));
  std::vector<RegionRow> regions = {
      {.Name = "title", .At = Place::Above, .LeastHeight = Px(26), .Priority = 1},
      {.Name = "plot", .At = Place::Main, .LeastWidth = Px(200), .LeastHeight = Px(200)},
      {.Name = "captions", .At = Place::Under, .LeastHeight = Px(30), .Priority = 3},
      {.Name = "texts",
       .At = Place::Under,
       .LeastHeight = BoxHeight(texts) + kBoxPadding,
       .Priority = 2,
       .Caption = "character",
       .Elsewhere = "listing"},
      {.Name = "table",
       .At = Place::Side,
       .LeastWidth = table,
       .LeastHeight = kRowStep * rows,
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
  Pages page{.In = input,
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
  draw("table", [&](const Rect& region) {
    DrawReasons(page, {region.Left, DrawTable(page, region), region.Right, region.Bottom});
  });
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
