#include <algorithm>
#include <cmath>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "fronts/front_page.h"
#include "hodograph/rings.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::fronts {
namespace {

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
std::vector<NormalWind> ShownNormals(const FrontPage& page, const Front& front) {
  std::vector<NormalWind> shown;
  for (const NormalWind& wind : front.Normals) {
    if (wind.Height > Depth(page) || !HasHeight(wind.Press) || wind.Press <= 0) continue;
    if (!shown.empty() && wind.Press >= shown.back().Press) continue;
    shown.push_back(wind);
  }
  return shown;
}

void DrawProfileGrid(FrontPage& page, const ProfileAxes& axes) {
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
void DrawJump(FrontPage& page, const ProfileAxes& axes, const std::vector<NormalWind>& winds) {
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

}  // namespace

void DrawProfile(FrontPage& page, const Rect& region) {
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
  DrawFrame(page, frame, "profile frame");
  for (std::size_t i = 0; i < page.In.Fronts.Layers.size(); ++i) {
    const FrontLayer& layer = page.In.Fronts.Layers[i];
    const double low = axes.Y(layer.BasePress), high = axes.Y(layer.TopPress);
    if (high < frame.Top || low > frame.Bottom) continue;
    page.Plot.Layers.push_back({{frame.Left, high, frame.Right, low}, i});
  }
}

}  // namespace vexa::fronts
