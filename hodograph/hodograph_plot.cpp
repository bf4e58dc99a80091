#include "hodograph/hodograph_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/numbers.h"
#include "core/shown_values.h"
#include "hodograph/analysis_panel.h"
#include "hodograph/compass.h"
#include "hodograph/inks.h"
#include "hodograph/rings.h"
#include "hodograph/trace.h"
#include "hodograph/vectors.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::hodograph {
namespace {

using analysis::WindVector;

constexpr double kCaptionText = LetterSize(Type::Note);
constexpr double kPanelText = LetterSize(Type::Label);
constexpr double kLegendStep = kLineStep;
constexpr double kPanelMargin = Px(4);
constexpr double kLegendLine = Px(44);  // a legend's sample of a line
constexpr double kLegendGap = Px(10);
constexpr double kRingMargin = 1.09;  // of the frame around the outer ring, with its label
constexpr double kHandle = 160;       // how near to a storm vector's head the pointer takes hold
constexpr double kWindHandle = 90;    // how near to a wind the pointer takes hold

bool StormFrame(const Canvas& canvas) {
  const HodoOrigin origin = canvas.Small ? canvas.Set().HodoGridOrigin : canvas.In.Window.Frame;
  return origin == HodoOrigin::Storm && canvas.In.Storm().Chosen().has_value();
}

bool ShowsStorm(const Canvas& canvas) {
  return !canvas.In.Window.NoSMplot && (!canvas.Small || canvas.Set().PlotStormVector);
}

// What of a profile the box beside the diagram shows.
std::vector<ProfileWind> OfBox(const HodographInput& input, std::vector<ProfileWind> profile) {
  if (input.Set.HodoDepthMode == HodoDepth::Limit) return profile;
  return BelowLimit(std::move(profile), 1000 * kBandTopsKm.back());
}

// Beside the diagram only what the diagram compares with.
std::vector<ComparedWinds> ShownComparisons(const Canvas& canvas) {
  std::vector<ComparedWinds> shown = canvas.In.Compared;
  if (canvas.Small) {
    std::erase_if(shown, [](const ComparedWinds& c) { return !c.DiagramInk; });
    for (ComparedWinds& compared : shown) {
      compared.Winds = OfBox(canvas.In, std::move(compared.Winds));
    }
    return shown;
  }
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
    const auto vector = PropagationVector(canvas.In.Results);
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
    return {.Step = RingStep(ShownIn(frame.Width() / 2 / canvas.At.Scale, units)), .Units = units};
  }
  if (fixed) {
    const double limit = canvas.In.Window.RingLimit;
    canvas.At = CenteredOn(frame, reference, limit * kRingMargin);
    return {
        .Step = RingStep(ShownIn(limit, units)), .Outer = ShownIn(limit, units), .Units = units};
  }
  if (canvas.Set().HodoPlace == HodoLocation::Centered) {
    const double step = RingStep(std::max(ShownIn(fastest, units), ShownIn(10, units)));
    const double outer = step * std::max(2.0, std::ceil(ShownIn(fastest, units) / step - 1e-9));
    canvas.At = CenteredOn(frame, reference, KnotsOf(outer, units) * kRingMargin);
    return {.Step = step, .Outer = outer, .Units = units};
  }
  canvas.At = FittedTo(frame, reference, extent);
  return {.Step = RingStep(ShownIn(frame.Width() / 2 / canvas.At.Scale, units)), .Units = units};
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

void DrawComparisons(Canvas& canvas) {
  for (const ComparedWinds& compared : ShownComparisons(canvas)) {
    std::vector<Point> points;
    for (const ProfileWind& wind : compared.Winds) {
      points.push_back(canvas.At.ToPoint(wind.Vector));
    }
    Pen pen =
        canvas.Colors
            .Compared[static_cast<std::size_t>(compared.Slot - 1) % canvas.Colors.Compared.size()];
    if (!canvas.Set().HodoInvert) pen.Ink = compared.DiagramInk.value_or(pen.Ink);
    DrawLine(canvas, "comparison", points, pen);
    canvas.Legend.push_back(
        {"#" + Shortest(compared.Slot) + " - " + CutTitle(compared.Title, 32), pen});
  }
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

/// The page's regions.
struct Places {
  Rect Title{};
  Rect Plot{};
  std::optional<Rect> Captions{};
  std::optional<Rect> Panel{};
  std::optional<Rect> Legend{};
  std::string LeftOut{};
};

// Station left, the diagram's name right of it where both find room.
void DrawTitle(Canvas& canvas, const Rect& place) {
  constexpr std::string_view kName = "Hodograph";
  const double size = LetterSize(Type::Title);
  const double y = (place.Top + place.Bottom) / 2;
  const double name = TextWidth(kName, size);
  const double gap = Px(20);
  const FittedTitle title = FitTitle(canvas.In.Sounding.StationTitle, place.Width());
  const bool hasBoth =
      title.Size == size && TextWidth(title.Text, size, true) + gap + name <= place.Width();
  DrawText(canvas, "title", {place.Left, y}, title.Text, title.Size, AnchorX::Left, true);
  if (hasBoth) {
    DrawText(canvas, "diagram name", {place.Right, y}, std::string(kName), size, AnchorX::Right);
  }
}

// What stands under the plot, or over it: what rings and numbers mean, relative to what, and what
// found no room.
void DrawCaptions(Canvas& canvas, const Rings& rings, const Rect& place,
                  const std::string& leftOut) {
  const bool knots = canvas.Set().Speed == SpeedUnits::Knots;
  const double first = place.Top + place.Height() / 4;
  const double second = place.Bottom - place.Height() / 4;
  const std::string step = "Rings every " + Shortest(rings.Step) + (knots ? " kts" : " m/s");
  const std::string frame = StormFrame(canvas) ? " Storm" : "Ground";
  DrawText(canvas, "axis caption", {place.Left, first}, frame, kCaptionText);
  DrawText(canvas, "axis caption", {place.Left, second}, "Relative", kCaptionText);
  double left = place.Left + TextWidth("Relative", kCaptionText) + Px(16);
  const double wide = TextWidth(step, kCaptionText);
  if (left + wide > place.Right) return;
  DrawText(canvas, "range caption", {place.Right, first}, step, kCaptionText, AnchorX::Right);
  const double room = place.Right - wide - Px(16) - left;
  constexpr std::string_view kNumbers = "Numbers on the trace: km above ground";
  if (TextWidth(kNumbers, kCaptionText) <= room) {
    DrawText(canvas, "height caption", {left, first}, std::string(kNumbers), kCaptionText);
  }
  const std::string missing = Elided(leftOut, kCaptionText, place.Right - left);
  if (!missing.empty()) {
    DrawText(canvas, "left out", {place.Right, second}, missing, kCaptionText, AnchorX::Right);
  }
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

double PanelWidth(const std::vector<PanelLine>& lines) {
  double width = 0;
  for (const PanelLine& line : lines) {
    width = std::max(width, TextWidth(line.Text, kPanelText, false, Face::Mono));
  }
  return width + 2 * kPanelMargin;
}

double PanelHeight(std::size_t lines) {
  return kLineStep * static_cast<double>(lines) + 2 * kPanelMargin;
}

void DrawPanel(Canvas& canvas, const std::vector<PanelLine>& lines, const Rect& place) {
  const Inks inks = InksFor(canvas.Set(), canvas.Set().HodoAnalInvert);
  const Rect box{place.Left, place.Top, place.Right, place.Top + PanelHeight(lines.size())};
  canvas.Page.Add("panel", Area{.Rings = {{{box.Left, box.Top},
                                           {box.Right, box.Top},
                                           {box.Right, box.Bottom},
                                           {box.Left, box.Bottom}}},
                                .Fill = {inks.Paper, FillStyle::Plain},
                                .Stroke = inks.Ring});
  double y = box.Top + kPanelMargin + kLineStep / 2;
  for (const PanelLine& line : lines) {
    canvas.Page.Add("panel line", Label{.At = {box.Left + kPanelMargin, y},
                                        .Text = line.Text,
                                        .Size = kPanelText,
                                        .Font = Face::Mono,
                                        .Ink = inks.Ink});
    if (!line.Spot.empty()) {
      canvas.Page.AddHotSpot(
          {{box.Left, y - kLineStep / 2, box.Right, y + kLineStep / 2}, "panel", line.Spot});
    }
    y += kLineStep;
  }
}

// All entries of the legend: what was drawn over the trace, its frame, and its colours.
std::vector<LegendItem> LegendItems(const Canvas& canvas, const std::vector<ProfileWind>& winds) {
  std::vector<LegendItem> items = canvas.Legend;
  items.push_back({StormFrame(canvas) ? "Storm-Relative Winds" : "Ground-Relative Winds", {}});
  if (canvas.In.Storm().ChosenIsManual) items.push_back({"Storm motion: manual", {}});
  const int lowest = winds.empty() ? 0 : BandOf(winds.front().Height);
  const int highest = winds.empty() || canvas.In.Window.SkipPlot ? -1 : BandOf(winds.back().Height);
  for (int band = lowest; band <= highest; ++band) {
    const auto index = static_cast<std::size_t>(band);
    items.push_back({"  " + std::string(kBandNames[index]), canvas.Colors.Band[index]});
  }
  return items;
}

// As many entries as there is room for, in columns where the region is wide.
void DrawLegend(Canvas& canvas, const std::vector<LegendItem>& items, const Rect& place) {
  double widest = 0;
  for (const LegendItem& item : items) {
    widest = std::max(widest, TextWidth(item.Text, kCaptionText));
  }
  const double column = kLegendLine + kLegendGap + widest + Px(16);
  const auto perColumn =
      static_cast<std::size_t>(std::max(1.0, std::floor((place.Height() + 1e-6) / kLegendStep)));
  for (std::size_t i = 0; i < items.size(); ++i) {
    const LegendItem& item = items[i];
    const double left = place.Left + column * static_cast<double>(i / perColumn);
    const double y = place.Top + (static_cast<double>(i % perColumn) + 0.5) * kLegendStep;
    if (left + column - Px(16) > place.Right) return;
    const bool hasLine = item.Stroke.Width > 0;
    if (item.Square) {
      DrawSquare(canvas, "legend square", {left + kLegendLine / 2, y}, item.Stroke);
    } else if (hasLine) {
      canvas.Page.Add("legend line", Polyline{.Points = {{left, y}, {left + kLegendLine, y}},
                                              .Stroke = item.Stroke});
    }
    DrawText(canvas, "legend", {hasLine ? left + kLegendLine + kLegendGap : left, y}, item.Text,
             kCaptionText);
  }
}

// The page cut for what this hodograph shows.
Places PlaceRegions(const HodographInput& input, const Surface& surface,
                    const std::vector<PanelLine>& panel, std::size_t legend) {
  std::vector<RegionRow> rows = {
      {.Name = "title", .At = Place::Above, .LeastHeight = Px(26), .Priority = 1},
      {.Name = "plot", .At = Place::Main, .LeastWidth = Px(200), .LeastHeight = Px(200)},
      {.Name = "captions",
       .At = input.Window.CaptionAtTop ? Place::Above : Place::Under,
       .LeastHeight = Px(30),
       .Priority = 2}};
  const double width = PanelWidth(panel);
  if (!input.Window.Float) {
    rows.push_back({.Name = "panel",
                    .At = Place::Side,
                    .LeastWidth = width,
                    .LeastHeight = PanelHeight(panel.size()),
                    .Priority = 3,
                    .Caption = "analysis",
                    .Elsewhere = "FLOAT"});
  }
  rows.push_back({.Name = "legend",
                  .At = Place::Side,
                  .LeastWidth = input.Window.Float ? Px(180) : width,
                  .LeastHeight = kLegendStep * std::min(static_cast<double>(legend), 7.0),
                  .Priority = 4,
                  .Stretch = 1,
                  .Caption = "legend",
                  .Elsewhere = "a larger window"});
  const PageLayout layout = CutPage(surface, rows);
  Places places{.Plot = *layout.Find("plot"), .LeftOut = LeftOutText(layout)};
  const auto region = [&layout](std::string_view name) -> std::optional<Rect> {
    const Rect* where = layout.Find(name);
    return where == nullptr ? std::nullopt : std::optional(*where);
  };
  places.Title = region("title").value_or(Rect{});
  places.Captions = region("captions");
  places.Panel = region("panel");
  places.Legend = region("legend");
  return places;
}

void DrawRemark(Canvas& canvas, const std::vector<ProfileWind>& winds) {
  const std::string remark = Remark(winds);
  if (remark.empty()) return;
  const Rect& frame = canvas.At.Frame;
  const double size = LetterSize(Type::Value);
  canvas.Page.Add("remark", Label{.At = {(frame.Left + frame.Right) / 2, frame.Bottom - Px(24)},
                                  .Text = Elided(remark, size, frame.Width()),
                                  .Across = AnchorX::Center,
                                  .Size = size,
                                  .Ink = canvas.Colors.Ink,
                                  .Halo = canvas.Colors.Paper});
}

// The winds of the small hodograph: as deep as the options' limit, without one as deep as the
// weather, since those above would leave it no room.
std::vector<ProfileWind> BoxWinds(const HodographInput& input) {
  return OfBox(input, WindProfile(input.Sounding, input.Set));
}

// The colours of the trace, along the lower edge of the small hodograph.
void DrawBandNames(Canvas& canvas, const std::vector<ProfileWind>& winds) {
  const Rect& frame = canvas.At.Frame;
  const double size = LetterSize(Type::Note);
  const double y = frame.Bottom - Px(9);
  double x = frame.Left + Px(6);
  const double unit = TextWidth("km", size);
  for (int band = 0; band <= BandOf(winds.back().Height); ++band) {
    const auto index = static_cast<std::size_t>(band);
    const std::string_view name = kBandNames[index];
    const std::string text(name.substr(0, name.rfind(' ')));
    const double width = TextWidth(text, size, true);
    if (x + width + Px(8) + unit > frame.Right) return;
    canvas.Room.Take({x, y - size / 2, x + width, y + size / 2});
    canvas.Names.emplace_back("band name", Label{.At = {x, y},
                                                 .Text = text,
                                                 .Size = size,
                                                 .Ink = canvas.Colors.Band[index].Ink,
                                                 .Bold = true,
                                                 .Halo = canvas.Colors.Paper});
    x += width + Px(8);
  }
  canvas.Room.Take({x, y - size / 2, x + unit, y + size / 2});
  canvas.Names.emplace_back("band name", Label{.At = {x, y},
                                               .Text = "km",
                                               .Size = size,
                                               .Ink = canvas.Colors.Faint,
                                               .Halo = canvas.Colors.Paper});
}

}  // namespace

HodographPlot PlotHodograph(const HodographInput& input, const Surface& surface) {
  constexpr std::size_t kUsualLegend = 10;
  HodographPlot plot;
  const Inks inks = InksFor(input.Set, input.Set.HodoInvert);
  const std::vector<PanelLine> panel = Broken(AnalysisPanel(input));
  const Places places = PlaceRegions(input, surface, panel, kUsualLegend + input.Compared.size());
  plot.Page = Picture(surface.Width, surface.Height, inks.Paper);
  plot.Winds = WindProfile(input.Sounding, input.Set);
  Canvas canvas{.In = input, .Page = plot.Page, .Colors = inks, .Room = LabelRoom(places.Plot)};
  const Rings rings = PlaceRings(canvas, places.Plot, plot.Winds);
  DrawRings(plot.Page, canvas.At, rings, inks, AvoidTrace(canvas, Smoothed(plot.Winds)),
            canvas.Room);
  if (ShowsStorm(canvas)) DrawStormVectors(canvas);
  if (input.Window.HelicityContours) DrawHelicityContours(canvas);
  if (input.Window.MbeVector) DrawPropagationVector(canvas);
  DrawMeanWinds(canvas);
  DrawShearLayer(canvas);
  DrawComparisons(canvas);
  if (!input.Window.SkipPlot) {
    DrawTrace(canvas, plot.Winds);
    DrawHeightMarks(canvas, Smoothed(plot.Winds));
  }
  DrawNames(canvas);
  DrawFrameLine(canvas);
  if (places.Title.Width() > 0) DrawTitle(canvas, places.Title);
  if (places.Captions) DrawCaptions(canvas, rings, *places.Captions, places.LeftOut);
  DrawRemark(canvas, plot.Winds);
  if (places.Panel) DrawPanel(canvas, panel, *places.Panel);
  if (places.Legend) DrawLegend(canvas, LegendItems(canvas, plot.Winds), *places.Legend);
  plot.Mapping = canvas.At;
  plot.StormRelative = StormFrame(canvas);
  plot.HasTrace = !input.Window.SkipPlot;
  if (ShowsStorm(canvas) && input.Storm().Chosen()) plot.Storm = input.Storm().Chosen()->Motion;
  return plot;
}

void DrawHodographBox(Picture& page, const Rect& region, const HodographInput& input) {
  const std::vector<ProfileWind> winds = BoxWinds(input);
  constexpr double kLeastSide = Px(60);  // under it nothing could be told
  if (winds.empty() || std::min(region.Width(), region.Height()) < kLeastSide) return;
  Inks inks = InksFor(input.Set, input.Set.HodoInvert);
  inks.Frame.Width = kUnitsPerPixel;
  page.Add("paper", Area{.Rings = {{{region.Left, region.Top},
                                    {region.Right, region.Top},
                                    {region.Right, region.Bottom},
                                    {region.Left, region.Bottom}}},
                         .Fill = {inks.Paper}});
  Canvas canvas{
      .In = input, .Page = page, .Colors = inks, .Room = LabelRoom(region), .Small = true};
  Rings rings = PlaceRings(canvas, region, winds);
  rings.LabelOnce = true;
  DrawBandNames(canvas, winds);
  if (ShowsStorm(canvas)) AvoidStormVectors(canvas);
  DrawRings(page, canvas.At, rings, inks, AvoidTrace(canvas, Smoothed(winds)), canvas.Room);
  if (ShowsStorm(canvas)) {
    DrawStormVectors(canvas);
    AvoidMeanWind(canvas);
  }
  DrawComparisons(canvas);
  DrawTrace(canvas, winds);
  DrawHeightMarks(canvas, Smoothed(winds));
  // The heights choose their places first: a name of two letters finds one further off.
  if (ShowsStorm(canvas)) DrawMeanWinds(canvas);
  DrawNames(canvas);
  DrawFrameLine(canvas);
}

std::optional<PageBox> HodographBox(const HodographInput& input) {
  if (BoxWinds(input).empty()) return std::nullopt;
  return PageBox{"hodograph", [input](Picture& page, const Rect& region) {
                   DrawHodographBox(page, region, input);
                 }};
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

CursorBox ReadHodograph(const HodographPlot& plot, Point at, const DisplaySettings& options) {
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
