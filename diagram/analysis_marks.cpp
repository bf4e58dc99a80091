#include "diagram/analysis_marks.h"

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "diagram/label_places.h"

namespace vexa::diagram {
namespace {

constexpr double kMarkGap = 150;

// " m " or " ft " behind a whole height above ground.
std::string AglText(const Plot& plot, double height, bool feet) {
  const double agl = height - plot.Sounding().ElevM;
  return Mask(feet ? FeetFromMeters(agl) : agl, "####0") + (feet ? " ft " : " m ") + "AGL";
}

// A bar at the left edge from one pressure up to another. On a wide tephigram the lower isobars
// enter the frame through its lower edge: a bar that starts there stands as far in.
struct LeftBar {
  double X = 0;
  double BaseY = 0;
  double TopY = 0;
};

LeftBar PlaceBar(const Plot& plot, double base, double top, double aside) {
  constexpr double kStep = 100;
  const Rect& frame = plot.At.Frame();
  LeftBar bar{.X = frame.Left + aside};
  while (plot.At.IsobarY(base, bar.X) > frame.Bottom && bar.X + kStep < frame.Right) {
    bar.X += kStep;
  }
  bar.BaseY = plot.At.IsobarY(base, bar.X);
  bar.TopY = std::max(plot.At.IsobarY(std::max(top, plot.At.TopPress()), bar.X), frame.Top);
  return bar;
}

// The bars of stability take the very edge.
double BarAside(const Plot& plot) {
  return plot.Set().StabilityBars ? 170 : 60;
}

bool Shows(const Plot& plot, const LeftBar& bar) {
  return bar.BaseY <= plot.At.Frame().Bottom && bar.BaseY >= plot.At.Frame().Top;
}

}  // namespace

void DrawInversions(Plot& plot) {
  if (!plot.Set().AutoAnalyses) return;
  const bool feet = plot.Units.Feet();
  for (const analysis::Inversion& inversion : plot.Results().Inversions) {
    if (!plot.InRange(inversion.Base.Press)) continue;
    const LeftBar bar = PlaceBar(plot, inversion.Base.Press, inversion.Top.Press, BarAside(plot));
    if (!Shows(plot, bar)) continue;
    const Pen pen{plot.Inks.InversionMark, 26, LineStyle::Solid};
    DrawSegment(plot.Page, "inversion", {bar.X, bar.BaseY}, {bar.X, bar.TopY}, pen);
    plot.LeftMarks.Add(
        {bar.BaseY,
         std::string(Text(inversion.Kind)) + " " + AglText(plot, inversion.Base.Height, feet),
         "inversion label", plot.Inks.InversionMark, bar.X});
    plot.Page.AddHotSpot({{bar.X - 60, bar.TopY - 20, bar.X + 60, bar.BaseY + 20},
                          "inversion",
                          std::string(Text(inversion.Kind)) + " " +
                              Mask(inversion.Base.Press, "###0.#") + " to " +
                              Mask(inversion.Top.Press, "###0.#") + PressureUnit(plot)});
  }
}

void DrawFronts(Plot& plot) {
  const Rect& frame = plot.At.Frame();
  for (const FrontMark& front : plot.In.Fronts) {
    const double press = analysis::GetPRESS(plot.Results().Levels, front.Height);
    if (!HasHeight(press) || !plot.InRange(press)) continue;
    const Color ink = front.Cold ? plot.Inks.ColdFront : plot.Inks.WarmFront;
    const std::optional<double> y = RightEdgeY(plot.At, press);
    if (!y) continue;
    DrawSegment(plot.Page, "front", {frame.Right - 900, *y}, {frame.Right, *y},
                {ink, 26, LineStyle::Solid});
    plot.RightMarks.Add({*y,
                         std::string(front.Cold ? "Cold" : "Warm") + " Front " +
                             Mask(FeetFromMeters(ShownHeight(plot, front.Height)), "####0") +
                             " ft ",
                         "front label", ink});
  }
}

void DrawLayerMarks(Plot& plot) {
  for (const LayerMark& layer : plot.In.Layers) {
    const double base = analysis::GetPRESS(plot.Results().Levels, layer.BaseHeight);
    const double top = analysis::GetPRESS(plot.Results().Levels, layer.TopHeight);
    if (!HasHeight(base) || !plot.InRange(base)) continue;
    const LeftBar bar = PlaceBar(plot, base, HasHeight(top) ? top : 0, BarAside(plot) + 70);
    if (!Shows(plot, bar)) continue;
    DrawSegment(plot.Page, "layer", {bar.X, bar.BaseY}, {bar.X, bar.TopY},
                {plot.Inks.LayerMark, 26, LineStyle::Solid});
    plot.LeftMarks.Add(
        {(bar.BaseY + bar.TopY) / 2, layer.Text, "layer label", plot.Inks.LayerMark, bar.X});
  }
}

void DrawParcelLevels(Plot& plot) {
  if (!plot.Set().AutoAnalyses) return;
  const analysis::AnalysisResults& results = plot.Results();
  const analysis::ParcelAscent& parcel = results.Chosen();
  const Rect& frame = plot.At.Frame();
  const auto mark = [&](std::string_view name, const analysis::LevelPoint& level,
                        bool isCut = false) {
    if (!level.Exists() || !plot.InRange(level.Press)) return;
    const std::optional<double> y = RightEdgeY(plot.At, level.Press);
    if (!y) return;
    DrawSegment(plot.Page, "parcel level", {frame.Right - 150, *y}, {frame.Right, *y},
                {plot.Inks.ParcelMark, 20, LineStyle::Solid});
    plot.RightMarks.Add({*y,
                         std::string(name) + (isCut ? " above " : " ") + Mask(level.Press, "###0") +
                             PressureUnit(plot),
                         "parcel level label", plot.Inks.ParcelMark});
  };
  const bool convective = results.Mode == analysis::LiftMode::Ccl;
  if (!convective) {
    mark("LCL", parcel.Condensation);
    mark("LFC", parcel.FreeLevel);
  }
  mark("CCL", results.ConvectiveCondensation);
  mark("EL", parcel.Equilibrium, parcel.IsCut);
  if (plot.Set().MplDisplay) mark("MPL", parcel.MaximumParcel);
}

void DrawMarkColumns(Plot& plot) {
  const Rect& frame = plot.At.Frame();
  LabelRoom room = RoomOn(plot);
  const auto write = [&](MarkColumn& column, double bottom, double edge, double text,
                         AnchorX across) {
    const double gap = across == AnchorX::Left ? 25 : -25;
    for (const Mark& mark : column.Arrange(frame.Top + kMarkGap / 2, bottom, kMarkGap)) {
      const Point at = TakePlace(room, {text + gap, mark.PlacedY}, mark.Text, kMarkText, across);
      const double from = mark.X.value_or(edge);
      if (std::abs(at.Y - mark.Y) > kMarkGap / 3 || std::abs(at.X - gap - from) > kMarkGap) {
        DrawSegment(plot.Page, "leader", {from, mark.Y}, {at.X - gap, at.Y},
                    {mark.Ink, 8, LineStyle::Solid});
      }
      DrawTextOver(plot, mark.Tag, at, mark.Text, mark.Ink, kMarkText, across);
    }
  };
  // The surface line has its own label on the left.
  const analysis::SurfaceState& surface = plot.Results().Surface;
  double ground = frame.Bottom;
  if (surface.Exists && plot.InRange(surface.Press)) {
    ground = LeftEdgeY(plot.At, surface.Press).value_or(ground);
  }
  const bool labelOnLine = frame.Bottom - ground < kMarkGap * 1.2;
  write(plot.LeftMarks, ground - (labelOnLine ? 1.7 : 0.7) * kMarkGap, frame.Left + BarAside(plot),
        frame.Left + BarAside(plot) + 130, AnchorX::Left);
  write(plot.RightMarks, frame.Bottom - kMarkGap / 2, frame.Right - 60, frame.Right - 190,
        AnchorX::Right);
}

}  // namespace vexa::diagram
