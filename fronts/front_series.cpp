#include "fronts/front_series.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "fronts/front_plot.h"
#include "hodograph/compass.h"
#include "hodograph/inks.h"
#include "picture/layout.h"
#include "picture/plot_page.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::fronts {
namespace {

constexpr double kSeriesNote = LetterSize(Type::Note);
constexpr double kLeastTop = 6000;  // m above the station
constexpr double kBarWidth = Px(14);

void Sort(std::vector<FrontMoment>& moments) {
  std::ranges::stable_sort(moments, {}, &FrontMoment::Hours);
}

std::string Height(double meters, const DisplaySettings& set) {
  return Mask(ShownIn(meters, set.GpmUnits), "####0");
}

std::string AdvectionText(const FrontLayer& zone) {
  return (zone.IsWarm() ? "+" : "") + Mask(zone.AdvectionCph, "##0.0") +
         " \xC2\xB0"
         "C/h";
}

std::string MotionText(const Front& front, const DisplaySettings& set) {
  if (front.IsQuasiStationary()) return "Quasi-stationary";
  const bool knots = set.Speed == SpeedUnits::Knots;
  return Mask(ShownIn(front.Speed, set.Speed), knots ? "##0" : "##0.0") +
         (knots ? " kts " : " m/s ") + std::string(hodograph::CompassName(ToWhole(front.Motion)));
}

struct Axes {
  Rect Frame{};
  double Hours = 1;  // across
  double Top = kLeastTop;

  double X(double hours) const {
    constexpr double kMargin = Px(40);
    return Frame.Left + kMargin + hours / Hours * (Frame.Width() - 2 * kMargin);
  }
  double Y(double meters) const { return Frame.Bottom - meters / Top * Frame.Height(); }
};

Axes AxesFor(const std::vector<FrontMoment>& moments, const Rect& frame) {
  constexpr double kStep = 1000;
  Axes axes{.Frame = frame, .Hours = std::max(1.0, moments.back().Hours)};
  for (const FrontMoment& moment : moments) {
    if (moment.Found) axes.Top = std::max(axes.Top, moment.Found->Zone.Whole.Top);
  }
  axes.Top = std::ceil(axes.Top / kStep) * kStep;
  return axes;
}

struct SeriesPage : PlotPage {
  SeriesPage(const DisplaySettings& set, const Surface& surface)
      : PlotPage(surface, hodograph::InksFor(set, set.HodoInvert)),
        Set(set),
        Colors(hodograph::InksFor(set, set.HodoInvert)),
        Inks(FrontInksFor(set, set.HodoInvert)) {}

  const DisplaySettings& Set;
  hodograph::Inks Colors;
  FrontInks Inks;
};

void DrawHeightAxis(SeriesPage& page, const Axes& axes) {
  const Rect& frame = axes.Frame;
  const bool isFeet = page.Set.GpmUnits == LengthUnits::Feet;
  const double step = isFeet ? 5000 : 1000;
  const double top = ShownIn(axes.Top, page.Set.GpmUnits);
  for (double height = 0; height <= top + 1; height += step) {
    const double y = axes.Y(isFeet ? MetersFromFeet(height) : height);
    page.Line("height line", {{frame.Left, y}, {frame.Right, y}}, page.Colors.Ring);
    page.Text("height", {frame.Left - Px(5), y}, Mask(height, "####0"), kSeriesNote,
              AnchorX::Right);
  }
  page.Text("height unit", {frame.Left - Px(5), frame.Top - Px(12)},
            std::string(UnitWord(page.Set.GpmUnits)) + " AGL", kSeriesNote, AnchorX::Right);
}

// Times as many as find room, with the first and every day's change told by their own texts.
void DrawTimes(SeriesPage& page, const Axes& axes, const std::vector<FrontMoment>& moments) {
  double free = axes.Frame.Left - Px(40);
  for (const FrontMoment& moment : moments) {
    const double x = axes.X(moment.Hours);
    page.Line("time", {{x, axes.Frame.Top}, {x, axes.Frame.Bottom + Px(4)}}, page.Colors.Ring);
    const double half = TextWidth(moment.Time, kSeriesNote) / 2;
    if (x - half < free || x + half > page.Page.Width()) continue;
    page.Text("time label", {x, axes.Frame.Bottom + Px(14)}, moment.Time, kSeriesNote,
              AnchorX::Center);
    free = x + half + Px(8);
  }
}

void DrawBar(SeriesPage& page, const Axes& axes, const FrontMoment& moment) {
  const double x = axes.X(moment.Hours);
  if (!moment.Found) {
    page.Text("no front", {x, axes.Frame.Bottom - Px(10)}, "none", kSeriesNote, AnchorX::Center);
    return;
  }
  const Front& front = *moment.Found;
  const FrontLayer& zone = front.Zone.Whole;
  const Rect bar{x - kBarWidth / 2, axes.Y(zone.Top), x + kBarWidth / 2, axes.Y(zone.Base)};
  page.Page.Add("front", Area{.Rings = {OutlineOf(bar)},
                              .Fill = {page.Inks.Of(front.IsWarm()), FillStyle::Plain}});
  page.Page.AddHotSpot({bar, "front",
                        moment.Time + ": " + std::string(Text(front.Kind)) + ", " +
                            Height(zone.Base, page.Set) + "-" + Height(zone.Top, page.Set) + " " +
                            std::string(UnitWord(page.Set.GpmUnits)) + " AGL, " +
                            AdvectionText(zone) + ", " + MotionText(front, page.Set)});
}

// Neighbours of one kind are joined: the same front, as far as its height can tell.
void JoinFronts(SeriesPage& page, const Axes& axes, const std::vector<FrontMoment>& moments) {
  for (std::size_t i = 0; i + 1 < moments.size(); ++i) {
    const auto &one = moments[i].Found, &next = moments[i + 1].Found;
    if (!one || !next || one->IsWarm() != next->IsWarm()) continue;
    page.Line("front height",
              {{axes.X(moments[i].Hours), axes.Y(one->Zone.Whole.Top)},
               {axes.X(moments[i + 1].Hours), axes.Y(next->Zone.Whole.Top)}},
              {page.Inks.Of(one->IsWarm()), Px(2), LineStyle::Solid});
  }
}

// Beside each bar where no other stands: kind and advection, each on a line.
void DrawNames(SeriesPage& page, const Axes& axes, const std::vector<FrontMoment>& moments) {
  double free = 0;
  for (const FrontMoment& moment : moments) {
    if (!moment.Found) continue;
    const FrontLayer& zone = moment.Found->Zone.Whole;
    const std::string kind(Text(moment.Found->Kind));
    const std::string lines[] = {kind.substr(0, kind.rfind(' ')), AdvectionText(zone),
                                 MotionText(*moment.Found, page.Set)};
    double width = 0;
    for (const std::string& line : lines) width = std::max(width, TextWidth(line, kSeriesNote));
    const double left = axes.X(moment.Hours) - width / 2;
    if (left < free || left + width > axes.Frame.Right) continue;
    // Above the bar, or below one that reaches the frame's upper edge.
    constexpr double kStep = Px(14);
    const double top = axes.Y(zone.Top) - Px(8) - 2 * kStep;
    double y = top > axes.Frame.Top + kStep ? top : axes.Y(zone.Base) + Px(10);
    for (const std::string& line : lines) {
      page.Text("front name", {left + width / 2, y}, line, kSeriesNote, AnchorX::Center);
      y += kStep;
    }
    free = left + width + Px(8);
  }
}

}  // namespace

Picture PlotFrontSeries(std::vector<FrontMoment> moments, const std::string& station,
                        const DisplaySettings& set, const Surface& surface) {
  SeriesPage page(set, surface);
  const RegionRow rows[] = {
      {.Name = "title", .At = Place::Above, .LeastHeight = Px(26), .Priority = 1},
      {.Name = "plot", .At = Place::Main, .LeastWidth = Px(200), .LeastHeight = Px(150)},
      {.Name = "captions", .At = Place::Under, .LeastHeight = Px(18), .Priority = 2}};
  const PageLayout layout = CutPage(surface, rows);
  if (const Rect* title = layout.Find("title")) {
    const double size = LetterSize(Type::Title);
    page.Text("title", {title->Left, (title->Top + title->Bottom) / 2},
              Elided(station + ": front height in time", size, title->Width(), true), size,
              AnchorX::Left, true);
  }
  const Rect& region = *layout.Find("plot");
  Sort(moments);
  if (moments.empty()) return std::move(page.Page);
  const Rect frame{region.Left + Px(48), region.Top + Px(20), region.Right - Px(6),
                   region.Bottom - Px(24)};
  const Axes axes = AxesFor(moments, frame);
  DrawHeightAxis(page, axes);
  DrawTimes(page, axes, moments);
  JoinFronts(page, axes, moments);
  for (const FrontMoment& moment : moments) DrawBar(page, axes, moment);
  DrawNames(page, axes, moments);
  page.Line("frame", OutlineOf(frame), page.Colors.Frame);
  if (const Rect* captions = layout.Find("captions")) {
    page.Text("caption", {captions->Left, (captions->Top + captions->Bottom) / 2},
              Elided("Bars: frontal zone over the station, red warm, blue cold; joined where the "
                     "next sounding has the same kind",
                     kSeriesNote, captions->Width()),
              kSeriesNote);
  }
  return std::move(page.Page);
}

std::vector<std::string> ListFrontSeries(std::vector<FrontMoment> moments,
                                         const DisplaySettings& set) {
  Sort(moments);
  std::vector<std::string> lines = {
      PadRight("Time", 16) + PadRight("Front", 24) + PadLeft("Base", 7) + PadLeft("Top", 7) + " " +
      std::string(UnitWord(set.GpmUnits)) + " AGL   Advection   Motion"};
  for (const FrontMoment& moment : moments) {
    std::string line = PadRight(moment.Time, 16);
    if (!moment.Found) {
      lines.push_back(line + "none");
      continue;
    }
    const FrontLayer& zone = moment.Found->Zone.Whole;
    line += PadRight(Text(moment.Found->Kind), 24) + PadLeft(Height(zone.Base, set), 7) +
            PadLeft(Height(zone.Top, set), 7) + PadLeft(AdvectionText(zone), 20) + "   ";
    lines.push_back(line + MotionText(*moment.Found, set));
  }
  return lines;
}

}  // namespace vexa::fronts
