#include "diagram/analysis_marks.h"

#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::diagram {
namespace {

constexpr double kMarkGap = 150;

// " m " or " ft " behind a whole height above ground.
std::string AglText(const Plot& plot, double height, bool feet) {
  const double agl = height - plot.Sounding().ElevM;
  return Mask(feet ? FeetFromMeters(agl) : agl, "####0") + (feet ? " ft " : " m ") + "AGL";
}

}  // namespace

void DrawInversions(Plot& plot) {
  if (!plot.Set().AutoAnalyses) return;
  const bool feet = plot.Units.Feet();
  const double x = plot.At.Frame().Left + 60;
  for (const analysis::Inversion& inversion : plot.Results().Inversions) {
    if (!plot.InRange(inversion.Base.Press)) continue;
    const double base = plot.At.YOf(inversion.Base.Press);
    const double top = std::max(plot.At.YOf(inversion.Top.Press), plot.At.Frame().Top);
    const Pen pen{plot.Inks.InversionMark, 26, LineStyle::Solid};
    DrawSegment(plot.Page, "inversion", {x, base}, {x, top}, pen);
    plot.LeftMarks.Add(
        {base, std::string(Text(inversion.Kind)) + " " + AglText(plot, inversion.Base.Height, feet),
         "inversion label", plot.Inks.InversionMark});
    plot.Page.AddHotSpot({{x - 60, top - 20, x + 60, base + 20},
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
    const double y = plot.At.YOf(press);
    DrawSegment(plot.Page, "front", {frame.Right - 900, y}, {frame.Right, y},
                {ink, 26, LineStyle::Solid});
    plot.RightMarks.Add({y,
                         std::string(front.Cold ? "Cold" : "Warm") + " Front " +
                             Mask(FeetFromMeters(ShownHeight(plot, front.Height)), "####0") +
                             " ft ",
                         "front label", ink});
  }
}

void DrawLayerMarks(Plot& plot) {
  const double x = plot.At.Frame().Left + 130;
  for (const LayerMark& layer : plot.In.Layers) {
    const double base = analysis::GetPRESS(plot.Results().Levels, layer.BaseHeight);
    const double top = analysis::GetPRESS(plot.Results().Levels, layer.TopHeight);
    if (!HasHeight(base) || !plot.InRange(base)) continue;
    const double topY =
        HasHeight(top) && plot.InRange(top) ? plot.At.YOf(top) : plot.At.Frame().Top;
    DrawSegment(plot.Page, "layer", {x, plot.At.YOf(base)}, {x, topY},
                {plot.Inks.LayerMark, 26, LineStyle::Solid});
    plot.LeftMarks.Add(
        {(plot.At.YOf(base) + topY) / 2, layer.Text, "layer label", plot.Inks.LayerMark});
  }
}

void DrawParcelLevels(Plot& plot) {
  if (!plot.Set().AutoAnalyses) return;
  const analysis::AnalysisResults& results = plot.Results();
  const analysis::ParcelAscent& parcel = results.Chosen();
  const Rect& frame = plot.At.Frame();
  const auto mark = [&](std::string_view name, const analysis::LevelPoint& level) {
    if (!level.Exists() || !plot.InRange(level.Press)) return;
    const double y = plot.At.YOf(level.Press);
    DrawSegment(plot.Page, "parcel level", {frame.Right - 150, y}, {frame.Right, y},
                {plot.Inks.ParcelMark, 20, LineStyle::Solid});
    plot.RightMarks.Add({y,
                         std::string(name) + " " + Mask(level.Press, "###0") + PressureUnit(plot),
                         "parcel level label", plot.Inks.ParcelMark});
  };
  const bool convective = results.Mode == analysis::LiftMode::Ccl;
  if (!convective) {
    mark("LCL", parcel.Condensation);
    mark("LFC", parcel.FreeLevel);
  }
  mark("CCL", results.ConvectiveCondensation);
  mark("EL", parcel.Equilibrium);
  if (plot.Set().MplDisplay) mark("MPL", parcel.MaximumParcel);
}

void DrawMarkColumns(Plot& plot) {
  const Rect& frame = plot.At.Frame();
  const auto write = [&](MarkColumn& column, double bottom, double edge, double text,
                         AnchorX across) {
    for (const Mark& mark : column.Arrange(frame.Top + kMarkGap / 2, bottom, kMarkGap)) {
      if (std::abs(mark.PlacedY - mark.Y) > kMarkGap / 3) {
        DrawSegment(plot.Page, "leader", {edge, mark.Y}, {text, mark.PlacedY},
                    {mark.Ink, 8, LineStyle::Solid});
      }
      const double gap = across == AnchorX::Left ? 25 : -25;
      DrawTextOver(plot, mark.Tag, {text + gap, mark.PlacedY}, mark.Text, mark.Ink, kMarkText,
                   across);
    }
  };
  // The surface line has its own label on the left.
  const analysis::SurfaceState& surface = plot.Results().Surface;
  double ground = frame.Bottom;
  if (surface.Exists && plot.InRange(surface.Press)) ground = plot.At.YOf(surface.Press);
  const bool labelOnLine = frame.Bottom - ground < kMarkGap * 1.2;
  write(plot.LeftMarks, ground - (labelOnLine ? 1.7 : 0.7) * kMarkGap, frame.Left + 60,
        frame.Left + 190, AnchorX::Left);
  write(plot.RightMarks, frame.Bottom - kMarkGap / 2, frame.Right - 60, frame.Right - 190,
        AnchorX::Right);
}

}  // namespace vexa::diagram
