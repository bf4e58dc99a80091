#include "diagram/plot_state.h"

#include <utility>

#include "analysis/index_table.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "picture/clip.h"

namespace vexa::diagram {

void DrawText(Picture& page, std::string_view tag, Point at, std::string text, Color ink,
              double size, AnchorX across, AnchorY down) {
  page.Add(tag, Label{.At = at,
                      .Text = std::move(text),
                      .Across = across,
                      .Down = down,
                      .Size = size,
                      .Ink = ink});
}

void DrawTextOver(Plot& plot, std::string_view tag, Point at, std::string text, Color ink,
                  double size, AnchorX across, AnchorY down) {
  plot.Page.Add(tag, Label{.At = at,
                           .Text = std::move(text),
                           .Across = across,
                           .Down = down,
                           .Size = size,
                           .Ink = ink,
                           .Halo = plot.Inks.Paper});
}

void DrawSegment(Picture& page, std::string_view tag, Point from, Point to, const Pen& pen) {
  page.Add(tag, Polyline{.Points = {from, to}, .Stroke = pen});
}

void DrawInFrame(Plot& plot, std::string_view tag, const std::vector<Point>& points,
                 const Pen& pen) {
  for (std::vector<Point>& piece : ClipPolyline(points, plot.At.Frame())) {
    plot.Page.Add(tag, Polyline{.Points = std::move(piece), .Stroke = pen});
  }
}

std::vector<Point> Isobar(const DiagramMapping& at, double press) {
  const Rect& frame = at.Frame();
  if (at.Type() != DiagramType::Tephigram) {
    const double y = at.YOf(press);
    return {{frame.Left, y}, {frame.Right, y}};
  }
  std::vector<Point> points;
  const double span = at.TempMax() - at.TempMin();
  for (double temp = at.TempMin() - 1.5 * span; temp <= at.TempMax() + span;
       temp += at.IsZoomed() ? 1 : 4) {
    if (temp > -kKelvinOffset + 40) points.push_back(at.ToPoint(temp, press));
  }
  return points;
}

namespace {

std::optional<double> EdgeY(const DiagramMapping& at, double press, double x) {
  const Rect& frame = at.Frame();
  const double y = at.IsobarY(press, x);
  if (y < frame.Top - 1 || y > frame.Bottom + 1) return std::nullopt;
  return y;
}

}  // namespace

std::optional<double> LeftEdgeY(const DiagramMapping& at, double press) {
  return EdgeY(at, press, at.Frame().Left);
}

std::optional<double> RightEdgeY(const DiagramMapping& at, double press) {
  return EdgeY(at, press, at.Frame().Right);
}

double ShownHeight(const Plot& plot, double height) {
  return plot.Set().Heights == HeightMode::Agl ? height - plot.Sounding().ElevM : height;
}

std::string ShownHeightText(const Plot& plot, double height) {
  return HeightText(ShownHeight(plot, height), plot.Units.Height) +
         (plot.Set().Heights == HeightMode::Agl ? " AGL" : "");
}

std::string PressureUnit(const Plot& plot) {
  return " " + std::string(analysis::PressureWord(plot.Set().Pressure));
}

std::string HeightText(double height, LengthUnits units) {
  return LengthText(height, units);
}

}  // namespace vexa::diagram
