#include "hodograph/trace.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>

#include "core/numbers.h"
#include "hodograph/rings.h"
#include "picture/shapes.h"
#include "picture/text_width.h"

namespace vexa::hodograph {
namespace {

using analysis::WindVector;

constexpr int kEveryKm = 12;       // a height mark for each, up to here
constexpr double kSpotReach = 60;  // around a level of the trace

std::string LevelText(const ProfileWind& wind, const DisplaySettings& options) {
  const bool knots = options.Speed == SpeedUnits::Knots;
  return Mask(wind.Height / 1000, "#0.0") +
         " km: " + WindText(wind.Vector, options, knots ? "##0" : "##0.0", knots ? " kts" : " m/s");
}

}  // namespace

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

void DrawTrace(Canvas& canvas, const std::vector<ProfileWind>& winds) {
  for (const TracePiece& piece : CutAtBands(Smoothed(winds))) {
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

void DrawHeightMarks(Canvas& canvas, const std::vector<ProfileWind>& winds) {
  if (winds.size() < 2) {
    for (const ProfileWind& wind : winds) {
      canvas.Page.Add("height mark", Circle{.Center = canvas.At.ToPoint(wind.Vector),
                                            .Radius = 50,
                                            .Fill = {canvas.Colors.Band[0].Ink}});
    }
    return;
  }
  const double radius = canvas.Small ? Px(2.5) : Px(3);
  const double size = LetterSize(Type::Note);
  for (int km = 1; km <= 60; ++km) {
    if ((canvas.Small || km > kEveryKm) && km % 3 != 0 && km != 1) continue;
    const std::optional<WindVector> wind = WindAt(winds, km * 1000);
    if (!wind) continue;
    const Point at = canvas.At.ToPoint(*wind);
    if (!canvas.At.Frame.Contains(at)) continue;
    const Pen& pen = canvas.Colors.Band[static_cast<std::size_t>(BandOf(km * 1000))];
    canvas.Page.Add("height mark", Circle{.Center = at,
                                          .Radius = radius,
                                          .Fill = {canvas.Colors.Paper},
                                          .Stroke = {pen.Ink, Px(1.4), LineStyle::Solid}});
    const std::string text = Shortest(km);
    const double width = TextWidth(text, size, true) + kNameGap;
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

void DrawFrameLine(Canvas& canvas) {
  const Rect& f = canvas.At.Frame;
  canvas.Page.Add("frame", Polyline{.Points = OutlineOf(f), .Stroke = canvas.Colors.Frame});
}

}  // namespace vexa::hodograph
