#include "hodograph/vectors.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/index_table.h"
#include "analysis/shown_units.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "hodograph/rings.h"
#include "picture/clip.h"
#include "picture/surface.h"
#include "picture/text_width.h"

namespace vexa::hodograph {
namespace {

using analysis::WindVector;

constexpr double kHead = 190;   // length of an arrow's head
constexpr double kSquare = 45;  // half the side of a mean wind's
constexpr double kMarkText = LetterSize(Type::Note);

// The side of an arrow's head that lies ahead of it.
Point Ahead(const WindVector& vector) {
  const double length = std::hypot(vector.U, vector.V);
  return length > 0 ? Point{-vector.U / length, vector.V / length} : Point{1, 0};
}

std::string_view UnitOf(const DisplaySettings& options) {
  return options.Speed == SpeedUnits::Knots ? " kts" : " m/s";
}

void AvoidVector(Canvas& canvas, const WindVector& motion) {
  canvas.Room.AvoidLine({canvas.At.ToPoint({}), canvas.At.ToPoint(motion)}, 30);
}

void DrawMover(Canvas& canvas, bool right, bool chosen) {
  const analysis::StormMotionResults& storm = canvas.In.Storm();
  const std::optional<analysis::Mover>& mover = right ? storm.Right : storm.Left;
  if (!mover) return;
  const std::string_view name = right ? "RM" : "LM";
  const Pen& pen = chosen ? canvas.Colors.ChosenStorm : canvas.Colors.OtherStorm;
  const std::string_view tag = chosen ? "storm vector" : "other storm vector";
  DrawArrow(canvas, tag, {}, mover->Motion, pen);
  DrawName(canvas, tag, mover->Motion, std::string(name), pen.Ink, Ahead(mover->Motion));
  AvoidVector(canvas, mover->Motion);
  canvas.Legend.push_back({"Storm Vector (" + std::string(name) + ")", pen});
  AddSpot(canvas, tag, mover->Motion,
          "Storm Vector (" + std::string(name) +
              "): " + WindText(mover->Motion, canvas.Set(), "##0.0", UnitOf(canvas.Set())));
}

void DrawMeanWind(Canvas& canvas, const std::optional<WindVector>& mean, std::string_view layer) {
  if (!mean) return;
  const Point at = canvas.At.ToPoint(*mean);
  if (!canvas.At.Frame.Contains(at)) return;
  DrawSquare(canvas, "mean wind", at, canvas.Colors.MeanWind);
  constexpr double kBesideSquare = 90;
  const std::string name = canvas.Small ? "MW" : "MW " + std::string(layer);
  DrawName(canvas, "mean wind", *mean, name, canvas.Colors.MeanWind.Ink, {1, 0}, kBesideSquare);
  AddSpot(canvas, "mean wind", *mean,
          "Mean wind " + std::string(layer) +
              " km: " + WindText(*mean, canvas.Set(), "##0.0", UnitOf(canvas.Set())));
}

}  // namespace

std::string WindText(const WindVector& wind, const DisplaySettings& options, std::string_view mask,
                     std::string_view unit) {
  const analysis::Wind from = analysis::FromComponents(wind);
  return analysis::DirectionText(from.Dir) + "/" + Mask(ShownIn(from.Spd, options.Speed), mask) +
         std::string(unit);
}

void DrawLine(Canvas& canvas, std::string_view tag, const std::vector<Point>& points,
              const Pen& pen) {
  for (std::vector<Point>& piece : ClipPolyline(points, canvas.At.Frame)) {
    canvas.Page.Add(tag, Polyline{.Points = std::move(piece), .Stroke = pen});
  }
}

void DrawArrow(Canvas& canvas, std::string_view tag, const WindVector& from, const WindVector& to,
               const Pen& pen) {
  const Point tail = canvas.At.ToPoint(from);
  const Point head = canvas.At.ToPoint(to);
  DrawLine(canvas, tag, {tail, head}, pen);
  const double length = std::hypot(head.X - tail.X, head.Y - tail.Y);
  if (length < 1 || !canvas.At.Frame.Contains(head)) return;
  const double size = std::min(canvas.Small ? 0.7 * kHead : kHead, 0.6 * length);
  const Point along{(head.X - tail.X) / length, (head.Y - tail.Y) / length};
  const Point back{head.X - size * along.X, head.Y - size * along.Y};
  const Point side{0.4 * size * along.Y, -0.4 * size * along.X};
  canvas.Page.Add(
      tag,
      Area{
          .Rings = {{head, {back.X + side.X, back.Y + side.Y}, {back.X - side.X, back.Y - side.Y}}},
          .Fill = {pen.Ink, FillStyle::Plain}});
}

void DrawName(Canvas& canvas, std::string_view tag, const WindVector& at, std::string text,
              Color ink, Point prefer, double gap) {
  const double size = kMarkText;
  const double width = TextWidth(text, size, true) + kNameGap;
  const Point from = canvas.At.ToPoint(at);
  const auto place = canvas.Room.Beside(from, width, size, gap, prefer, FarthestName(canvas));
  if (!place) return;
  DrawLeader(canvas, from, *place, width, size, ink);
  canvas.Names.emplace_back(tag, Label{.At = *place,
                                       .Text = std::move(text),
                                       .Across = AnchorX::Center,
                                       .Size = size,
                                       .Ink = ink,
                                       .Bold = true,
                                       .Halo = canvas.Colors.Paper});
}

void AddSpot(Canvas& canvas, std::string_view tag, const WindVector& wind, std::string text) {
  constexpr double kReach = 90;
  const Point at = canvas.At.ToPoint(wind);
  if (!canvas.At.Frame.Contains(at)) return;
  canvas.Page.AddHotSpot({{at.X - kReach, at.Y - kReach, at.X + kReach, at.Y + kReach},
                          std::string(tag),
                          std::move(text)});
}

double FarthestName(const Canvas& canvas) {
  return canvas.Small ? 5 : 12;
}

void DrawLeader(Canvas& canvas, Point at, Point middle, double width, double height, Color ink) {
  constexpr double kFar = 150;
  const Point end{std::clamp(at.X, middle.X - width / 2, middle.X + width / 2),
                  std::clamp(at.Y, middle.Y - height / 2, middle.Y + height / 2)};
  if (std::hypot(end.X - at.X, end.Y - at.Y) < kFar) return;
  canvas.Room.TakeLeader(at, end);
  canvas.Page.Add("leader", Polyline{.Points = {at, end}, .Stroke = {ink, 7, LineStyle::Solid}});
}

void DrawSquare(Canvas& canvas, std::string_view tag, Point at, const Pen& pen) {
  canvas.Page.Add(tag, Area{.Rings = {{{at.X - kSquare, at.Y - kSquare},
                                       {at.X + kSquare, at.Y - kSquare},
                                       {at.X + kSquare, at.Y + kSquare},
                                       {at.X - kSquare, at.Y + kSquare}}},
                            .Fill = {canvas.Colors.Paper, FillStyle::Plain},
                            .Stroke = pen});
}

void DrawStormVectors(Canvas& canvas) {
  const bool rightFirst = canvas.In.Storm().RightIsChosen;
  DrawMover(canvas, rightFirst, true);
  DrawMover(canvas, !rightFirst, false);
}

void AvoidStormVectors(Canvas& canvas) {
  for (const auto* mover : {&canvas.In.Storm().Right, &canvas.In.Storm().Left}) {
    if (*mover) AvoidVector(canvas, (*mover)->Motion);
  }
}

void AvoidMeanWind(Canvas& canvas) {
  const std::optional<WindVector>& mean = canvas.In.Storm().Mean6km;
  if (mean) canvas.Room.Avoid(canvas.At.ToPoint(*mean), kSquare + kUnitsPerPixel);
}

void DrawMeanWinds(Canvas& canvas) {
  const analysis::StormMotionResults& storm = canvas.In.Storm();
  DrawMeanWind(canvas, storm.Mean6km, "0-6");
  if (canvas.Small) return;
  DrawMeanWind(canvas, storm.MeanHalfKm, "0-0.5");
  if (storm.Mean6km || storm.MeanHalfKm) {
    canvas.Legend.push_back({"Mean Wind (MW, km)", canvas.Colors.MeanWind, true});
  }
}

void DrawShearLayer(Canvas& canvas) {
  const double depthKm = canvas.Set().ShearXLayerTopKm;
  const std::optional<LayerEnds> ends =
      EndsOfLayer(WindProfile(canvas.In.Sounding, {}), depthKm * 1000);
  if (!ends) return;
  DrawLine(canvas, "shear layer", {canvas.At.ToPoint(ends->Low), canvas.At.ToPoint(ends->High)},
           canvas.Colors.Shear);
  canvas.Legend.push_back({"Shear (0-" + Shortest(depthKm) + "km)", canvas.Colors.Shear});
}

std::optional<WindVector> PropagationVector(const analysis::AnalysisResults& results) {
  const analysis::IndexValue* index =
      analysis::IndexOf(results, *analysis::FindIndex("MBE Vector"));
  if (index == nullptr || !index->Direction) return std::nullopt;
  return analysis::Components({*index->Direction, index->Value});
}

void DrawPropagationVector(Canvas& canvas) {
  const std::optional<WindVector> vector = PropagationVector(canvas.In.Results);
  if (!vector) return;
  DrawArrow(canvas, "MBE vector", {}, *vector, canvas.Colors.Propagation);
  DrawName(canvas, "MBE vector", *vector, "MBE", canvas.Colors.Propagation.Ink, Ahead(*vector));
  canvas.Legend.push_back({"MBE Vector", canvas.Colors.Propagation});
  AddSpot(canvas, "MBE vector", *vector,
          "MBE Vector: " + WindText(*vector, canvas.Set(), "##0.0", UnitOf(canvas.Set())));
}

void DrawNames(Canvas& canvas) {
  for (auto& [tag, label] : canvas.Names) canvas.Page.Add(tag, std::move(label));
  canvas.Names.clear();
}

void DrawHelicityContours(Canvas& canvas) {
  constexpr double kDepth = 3000;
  constexpr double kUnit = 100;  // kt, to find the slopes of a function that is linear in motion
  const double ground = canvas.In.Sounding.ElevM;
  const auto helicity = [&](const WindVector& motion) {
    return analysis::StormRelativeHelicity(canvas.In.Sounding, ground, kDepth, motion);
  };
  const double atRest = helicity({});
  if (atRest == kNone) return;
  const double perU = (helicity({kUnit, 0}) - atRest) / kUnit;
  const double perV = (helicity({0, kUnit}) - atRest) / kUnit;
  const double slope = std::hypot(perU, perV);  // m²/s² per knot
  if (slope < 1e-6) return;
  const Rect& frame = canvas.At.Frame;
  const double reach = std::hypot(frame.Width(), frame.Height()) / canvas.At.Scale;
  bool drawn = false;
  for (int value = -1000; value <= 1000; value += std::abs(value + 25) < 300 ? 50 : 100) {
    // The line's point nearest to the reference wind, and both ways along it from there.
    const WindVector& from = canvas.At.Reference;
    const double off = (value - atRest - perU * from.U - perV * from.V) / slope;
    const WindVector foot{from.U + off * perU / slope, from.V + off * perV / slope};
    const std::vector<Point> line = {
        canvas.At.ToPoint({foot.U - reach * perV / slope, foot.V + reach * perU / slope}),
        canvas.At.ToPoint({foot.U + reach * perV / slope, foot.V - reach * perU / slope})};
    for (const std::vector<Point>& piece : ClipPolyline(line, frame)) {
      canvas.Page.Add("helicity contour",
                      Polyline{.Points = piece, .Stroke = canvas.Colors.Helicity});
      drawn = true;
      const Point end = piece.front().Y < piece.back().Y ? piece.front() : piece.back();
      DrawName(canvas, "helicity label",
               canvas.At.ToWind({std::clamp(end.X, frame.Left + 200, frame.Right - 200),
                                 std::clamp(end.Y, frame.Top + 120, frame.Bottom - 120)}),
               Shortest(value), canvas.Colors.Helicity.Ink);
    }
  }
  if (drawn) canvas.Legend.push_back({"Helicity Contours", canvas.Colors.Helicity});
}

}  // namespace vexa::hodograph
