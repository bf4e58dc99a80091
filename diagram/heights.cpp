#include "diagram/heights.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "analysis/interpolate.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "diagram/grid.h"
#include "diagram/label_places.h"
#include "picture/clip.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

std::string_view ModeText(const Plot& plot) {
  return plot.Set().Heights == HeightMode::Agl ? "AGL" : "msl";
}

// Pressure of a height above sea level where the sounding has one; kNone outside it.
double PressOf(const Plot& plot, double height) {
  if (plot.Results().Levels.Count() < 2) return kNone;
  const double press = analysis::GetPRESS(plot.Results().Levels, height);
  return HasHeight(press) ? press : kNone;
}

std::string QnhText(const Plot& plot) {
  const double qnh = plot.Results().Surface.Qnh;
  if (plot.Set().Pressure == PressureUnits::InHg) {
    return "QNH = " + Mask(qnh * kInHgPerHpa, "#0.00") + " in Hg";
  }
  return "QNH = " + Mask(qnh, "###0.0") + PressureUnit(plot);
}

std::string SurfaceText(const Plot& plot) {
  const analysis::SurfaceState& surface = plot.Results().Surface;
  const auto height = [&plot](double meters) { return LengthText(meters, plot.Units.Height); };
  std::string text = "Stn Elev:";
  text += plot.Sounding().ElevUnknown ? " --" : " " + height(plot.Sounding().ElevM);
  if (HasHeight(surface.DensityAltitude)) {
    text += "   DA: " + height(surface.DensityAltitude);
    if (!NotAvailable(surface.IsaDeviation)) {
      text += std::string(", ISA") + (surface.IsaDeviation < 0 ? "" : "+") +
              Mask(surface.IsaDeviation, "##0.0");
    }
    if (surface.Estimated) text += " Est";
  }
  if (plot.Set().ShowQnh && !NotAvailable(surface.Qnh - 1000) && !plot.Sounding().ElevUnknown) {
    text += "   " + QnhText(plot);
  }
  return text;
}

/// A unit of the scale at the right edge.
struct ScaleUnit {
  HeightScale Scale;
  std::string_view Head;
  double Meters;      // of one step
  int Shown;          // what a step counts as
  int LabelledEvery;  // so many steps
};

const ScaleUnit kScaleUnits[] = {
    {HeightScale::Feet, " FT(x1000)", MetersFromFeet(1000), 1, 2},
    {HeightScale::Kilometers, "   KM", 1000, 1, 1},
    {HeightScale::Meters, "MT", 1000, 1000, 1},
    {HeightScale::Miles, "MILE", kMetersPerMile, 1, 1},
};

const ScaleUnit& ScaleUnitOf(HeightScale scale) {
  const auto found = std::ranges::find(kScaleUnits, scale, &ScaleUnit::Scale);
  return found == std::end(kScaleUnits) ? kScaleUnits[0] : *found;
}

// A line across the frame that leaves room for its mark at the right edge.
void DrawHorizontal(Plot& plot, std::string_view tag, double press, const Pen& pen) {
  Rect room = plot.At.Frame();
  const double edge = room.Right;
  room.Right -= plot.Where.MarkRoom;
  for (std::vector<Point>& piece : ClipPolyline(Isobar(plot.At, press), room)) {
    DrawBesideTexts(plot, tag, piece, pen);
  }
  const std::optional<double> y = RightEdgeY(plot.At, press);
  if (!y) return;
  DrawSegment(plot.Page, tag, {edge - 150, *y}, {edge, *y}, {pen.Ink, pen.Width, LineStyle::Solid});
}

}  // namespace

void DrawSurfaceLine(Plot& plot) {
  const analysis::SurfaceState& surface = plot.Results().Surface;
  if (!plot.Set().SurfaceLine || !surface.Exists || !plot.InRange(surface.Press)) return;
  const Rect& frame = plot.At.Frame();
  const std::vector<Point> line = Isobar(plot.At, surface.Press);
  if (plot.Set().ShadeGround) {
    std::vector<Point> ground = line;
    ground.push_back({frame.Right + 2000, frame.Bottom + 2000});
    ground.push_back({frame.Left - 2000, frame.Bottom + 2000});
    plot.Page.Add("ground", Area{.Rings = {ClipPolygon(ground, frame)}, .Fill = plot.Inks.Ground});
  }
  DrawInFrame(plot, "surface line", line, plot.Inks.Surface);
}

void DrawSurfaceLabel(Plot& plot) {
  const analysis::SurfaceState& surface = plot.Results().Surface;
  if (!plot.Set().SurfaceLine || !surface.Exists || !plot.InRange(surface.Press)) return;
  const Rect& frame = plot.At.Frame();
  // Under the axis, where no trace runs: the ground may be thin and the air above it full.
  double room = plot.Where.Find("diagram")->Right - frame.Left;
  if (plot.Where.Find("marks") == nullptr) room -= plot.Where.CaptionReach;
  const std::string text = Elided(SurfaceText(plot), kMarkText, room);
  DrawText(plot.Page, "surface label", {frame.Left, plot.Where.CaptionY}, text,
           plot.Inks.Surface.Ink, kMarkText);
}

void ICAOlabels(Plot& plot) {
  const ViewSettings& set = plot.Set();
  if (!set.IcaoLine) return;
  const Rect& frame = plot.At.Frame();
  std::vector<Point> curve;
  for (double height = -300; height < 80000; height += 250) {
    const double press = analysis::IsaPressure(height);
    if (press < plot.At.TopPress() * 0.98) break;
    curve.push_back(plot.At.ToPoint(analysis::IsaTemp(height), press));
  }
  DrawInFrame(plot, "standard atmosphere", curve, plot.Inks.StandardAtmosphere);

  int every = 0;
  switch (set.IcaoLabelling) {
    case IcaoLabels::None:
      return;
    case IcaoLabels::One:
      every = 1;
      break;
    case IcaoLabels::Every5:
      every = 5;
      break;
    case IcaoLabels::Every10:
      every = 10;
      break;
  }
  const bool feet =
      set.RightScale != HeightScale::Kilometers && set.RightScale != HeightScale::Meters;
  for (int n = 0; n < 200; n += every) {
    const double height = feet ? MetersFromFeet(n * 1000.0) : n * 1000.0;
    const double press = analysis::IsaPressure(height);
    if (!HasHeight(press) || press < plot.At.TopPress()) break;
    const Point at = plot.At.ToPoint(analysis::IsaTemp(height), press);
    if (!frame.Contains(at)) continue;
    plot.Page.Add("standard atmosphere",
                  Circle{.Center = at, .Radius = 22, .Fill = {plot.Inks.StandardAtmosphere.Ink}});
    DrawTextOver(plot, "ISA label", {at.X + 70, at.Y},
                 "ISA " + Mask(n, "##0") + (feet ? "" : " km"), plot.Inks.StandardAtmosphere.Ink,
                 kSmallText);
  }
}

void DrawHeightAxis(Plot& plot) {
  const ViewSettings& set = plot.Set();
  if (set.YGridUnits == GridUnits::Mb) return;
  const Rect& frame = plot.At.Frame();
  const bool feet = set.YGridUnits == GridUnits::Feet;
  const double unit = feet ? MetersFromFeet(1000) : 1000;
  const double base = set.Heights == HeightMode::Agl ? plot.Sounding().ElevM : 0;
  DrawTextOver(plot, "height axis", {frame.Left + 40, frame.Top + 90},
               std::string(feet ? "FT (x1000) " : "KM ") + std::string(ModeText(plot)),
               plot.Inks.Faint, kSmallText);
  const LabelRoom room = RoomOn(plot);
  for (int n = 0; n * unit < 80000; n += std::max(set.YGridInterval, 1)) {
    const double press = PressOf(plot, n * unit + base);
    if (press == kNone || !plot.InRange(press)) continue;
    const std::vector<Point> line = Isobar(plot.At, press);
    DrawInFrame(plot, "height line", line, plot.Inks.MandatoryIsobar);
    const std::optional<double> y = LeftEdgeY(plot.At, press);
    if (!y || *y - frame.Top < 200) continue;
    // A line that the surface's label hides is told by its neighbours.
    const Point at{frame.Left + 40, *y};
    const std::string text = Mask(n, "##0");
    if (!room.IsFree(TextPlace(at, text, kSmallText, AnchorX::Left))) continue;
    DrawTextOver(plot, "height axis", at, text, plot.Inks.Ink, kSmallText);
  }
}

void DrawLeadingHeights(Plot& plot) {
  const Rect& frame = plot.At.Frame();
  const bool feet = plot.Units.Height == LengthUnits::Feet;
  const double base = plot.Set().Heights == HeightMode::Agl ? plot.Sounding().ElevM : 0;
  const double step = feet ? 1000 : 500;
  const double unit = feet ? MetersFromFeet(step) : step;
  DrawText(plot.Page, "height axis", {plot.Where.PressLabelX, frame.Top - 300},
           std::string(feet ? "ft " : "m ") + std::string(ModeText(plot)), plot.Inks.Ink,
           kSmallText, AnchorX::Right);
  double last = 1e9;
  for (int n = 0; n < 200; ++n) {
    const double press = PressOf(plot, n * unit + base);
    if (press == kNone || !plot.InRange(press)) continue;
    DrawInFrame(plot, "height line", Isobar(plot.At, press), plot.Inks.Isobar);
    const std::optional<double> y = LeftEdgeY(plot.At, press);
    if (!y || last - *y < 1.2 * kAxisText) continue;
    last = *y;
    DrawText(plot.Page, "height axis", {plot.Where.PressLabelX, *y}, Mask(n * step, "####0"),
             plot.Inks.Ink, kAxisText, AnchorX::Right);
  }
}

void DrawHeightScale(Plot& plot) {
  const ViewSettings& set = plot.Set();
  if (set.RightScale == HeightScale::None) return;
  const Rect& frame = plot.At.Frame();
  const ScaleUnit& scale = ScaleUnitOf(set.RightScale);
  DrawText(plot.Page, "height scale head", {plot.Where.Find("diagram")->Right, frame.Top - 300},
           std::string(scale.Head), plot.Inks.Ink, kSmallText, AnchorX::Right);
  DrawText(plot.Page, "height scale head", {frame.Right + 60, frame.Top - 156},
           std::string(ModeText(plot)), plot.Inks.Faint, kSmallText);
  const double base = set.Heights == HeightMode::Agl ? plot.Sounding().ElevM : 0;
  double lastLabel = 1e9;
  for (int n = 0; n * scale.Meters < 90000; ++n) {
    const double press = PressOf(plot, n * scale.Meters + base);
    if (press == kNone) {
      if (n * scale.Meters + base > plot.Sounding().ElevM) break;
      continue;
    }
    if (press < plot.At.TopPress()) break;
    if (press > plot.At.BottomPress()) continue;
    const std::optional<double> y = RightEdgeY(plot.At, press);
    if (!y) continue;
    const bool labelled = n % scale.LabelledEvery == 0 && lastLabel - *y > 1.1 * kSmallText;
    DrawSegment(plot.Page, "height scale", {frame.Right, *y},
                {frame.Right + (labelled ? 80 : 45), *y}, plot.Inks.HeightAxis);
    if (!labelled) continue;
    lastLabel = *y;
    DrawText(plot.Page, "height scale label", {frame.Right + 120, *y},
             Mask(n * scale.Shown, "####0"), plot.Inks.Ink, kSmallText);
  }
}

void DrawFreezingAndTropopause(Plot& plot) {
  const auto mark = [&](std::string_view tag, const analysis::LevelPoint& level,
                        std::string_view name, const Pen& pen) {
    if (!level.Exists() || !plot.InRange(level.Press)) return;
    DrawHorizontal(plot, tag, level.Press, pen);
    if (const auto y = RightEdgeY(plot.At, level.Press)) {
      plot.Marks.Add({*y, std::string(name) + " " + ShownHeightText(plot, level.Height),
                      std::string(tag) + " label", pen.Ink, 0, std::string(name)});
    }
  };
  if (plot.Set().FreezeLine) {
    for (const analysis::LevelPoint& level : plot.Results().FreezingLevels) {
      mark("freezing level", level, "FRZG", plot.Inks.Freezing);
    }
  }
  if (plot.Set().TropoLine) {
    for (const analysis::LevelPoint& level : plot.Results().Tropopauses) {
      mark("tropopause", level, "TROP", plot.Inks.Tropopause);
    }
  }
}

void DrawCustomLines(Plot& plot) {
  int number = 0;
  for (const CustomLine& line : plot.Set().CustomLines) {
    ++number;
    if (!line.Plot) continue;
    const double press = PressOf(plot, line.Height);
    if (press == kNone || !plot.InRange(press)) continue;
    constexpr std::array kStyles = {LineStyle::Solid, LineStyle::Dash, LineStyle::Dots};
    const Pen pen{LegibleColor(plot.Inks, line.ColorIndex), 16,
                  kStyles[static_cast<std::size_t>(line.Style)]};
    DrawHorizontal(plot, "custom line", press, pen);
    const std::optional<double> y = RightEdgeY(plot.At, press);
    if (line.ShowLabel && y) {
      plot.Marks.Add({*y, "#" + Shortest(number) + " " + ShownHeightText(plot, line.Height),
                      "custom line label", pen.Ink, 0, "#" + Shortest(number)});
    }
  }
}

void PrsHgtLabel(Plot& plot, bool stopShort) {
  const Rect& frame = plot.At.Frame();
  DrawText(plot.Page, "pressure height head", {plot.Where.HeightLabelX, frame.Top - 300}, "Hgt",
           plot.Inks.Faint, kSmallText, AnchorX::Right);
  DrawText(plot.Page, "pressure height head", {plot.Where.HeightLabelX, frame.Top - 156},
           std::string(ModeText(plot)), plot.Inks.Faint, kSmallText, AnchorX::Right);
  double lastY = 1e9;
  for (int press = 1000; press >= 10; press -= press > 100 ? 25 : 10) {
    if (!IsMandatory(press) || press < plot.At.TopPress()) continue;
    if (stopShort && press <= plot.At.TopPress()) break;
    const analysis::Sample height =
        analysis::SampleAt(plot.Results().Levels, press, analysis::Quantity::Height);
    const std::optional<double> y = LeftEdgeY(plot.At, press);
    if (!height.Ok() || !y || lastY - *y < 1.1 * kSmallText) continue;
    lastY = *y;
    DrawText(plot.Page, "pressure height label", {plot.Where.HeightLabelX, *y},
             LengthText(ShownHeight(plot, height.Value), plot.Units.Height) + " ", plot.Inks.Faint,
             kSmallText, AnchorX::Right);
  }
}

}  // namespace vexa::diagram
