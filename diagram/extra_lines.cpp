#include "diagram/extra_lines.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "analysis/interpolate.h"
#include "analysis/level_listing.h"
#include "analysis/moist_air.h"
#include "analysis/shown_units.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "diagram/grid.h"
#include "diagram/label_places.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

constexpr double kLineWidth = 26;
constexpr double kContrailBottom = 500;   // hPa: engines leave no trails in the warm air below
constexpr double kPressStep = 10;         // hPa between the points of a curve
constexpr double kCorrectionZero = 0.25;  // of the frame's width, where the correction is none
constexpr double kUnitsPerMeter = 2;      // drawing units for a metre of correction
constexpr double kHeadDown = 90;          // of the line's name below the top of the frame

// Colours of the sixteen by number; the menu names the first two.
constexpr int kPurple = 5;
constexpr int kGreen = 2;
constexpr int kRed = 12;

// The name of a line beside its topmost point inside the frame.
void NameLine(Plot& plot, std::string_view tag, const std::vector<Point>& line,
              const std::string& name, Color ink) {
  const Rect& frame = plot.At.Frame();
  const Point* highest = nullptr;
  for (const Point& at : line) {
    if (at.X < frame.Left + 100 || at.X > frame.Right - 100) continue;
    if (at.Y < frame.Top + 120 || at.Y > frame.Bottom - 60) continue;
    if (highest == nullptr || at.Y < highest->Y) highest = &at;
  }
  if (highest == nullptr) return;
  // To the right, or to the left of a line that leaves no room there for it and for the marks.
  LabelRoom room = RoomOn(plot);
  const double end = highest->X + 80 + TextWidth(name, kMarkText);
  const bool right = end < frame.Right - plot.Where.MarkRoom;
  const AnchorX across = right ? AnchorX::Left : AnchorX::Right;
  const Point wanted{highest->X + (right ? 80 : -80), highest->Y};
  const std::optional<Point> place = TakePlace(room, wanted, name, kMarkText, across);
  if (!place) return;
  DrawTextOver(plot, std::string(tag) + " label", *place, name, ink, kMarkText, across);
}

void DrawCurve(Plot& plot, std::string_view tag, const std::vector<Point>& line, int color,
               const std::string& name) {
  if (line.size() < 2) return;
  const Pen pen{LegibleColor(plot.Inks, color), kLineWidth, LineStyle::Solid};
  DrawInFrame(plot, tag, line, pen);
  NameLine(plot, tag, line, name, pen.Ink);
}

void DrawHeightCorrection(Plot& plot) {
  const Rect& frame = plot.At.Frame();
  const Pen pen{LegibleColor(plot.Inks, kPurple), kLineWidth, LineStyle::Solid};
  const double zero = frame.Left + kCorrectionZero * frame.Width();
  std::vector<Point> line;
  const analysis::LevelProfile& levels = plot.Results().Levels;
  if (levels.Count() < 2) return;
  const double bottom = std::min(levels.Press(1), plot.At.BottomPress());
  const double top = std::max(levels.Press.Top(), plot.At.TopPress());
  const double headBottom = frame.Top + kHeadDown + kSmallText;
  double lastLabel = 1e9;
  for (double press = bottom; press >= top;) {
    const auto correction = HeightCorrectionAt(plot, press);
    if (correction)
      line.push_back({zero + *correction * kUnitsPerMeter, plot.At.IsobarY(press, zero)});
    if (correction && IsMandatory(press) && lastLabel - line.back().Y > 1.2 * kSmallText &&
        line.back().Y > headBottom && frame.Contains(line.back())) {
      lastLabel = line.back().Y;
      DrawTextOver(plot, "height correction value", {line.back().X + 60, line.back().Y},
                   (*correction < 0 ? "" : "+") + LengthText(*correction, plot.Units.Height),
                   pen.Ink, kSmallText);
    }
    const double next = std::ceil(press / kPressStep - 1) * kPressStep;  // whole tens of hPa
    press = press > top && next < top ? top : next;
  }
  DrawInFrame(plot, "height correction zero", {{zero, frame.Top}, {zero, frame.Bottom}},
              {pen.Ink, 8, LineStyle::Dash});
  DrawInFrame(plot, "height correction", line, pen);
  DrawTextOver(plot, "height correction label", {zero + 40, frame.Top + kHeadDown},
               "Height correction", pen.Ink, kSmallText);
}

void DrawContrail(Plot& plot) {
  std::vector<Point> line;
  for (double press = std::min(kContrailBottom, plot.At.BottomPress()); press >= plot.At.TopPress();
       press -= kPressStep / 2) {
    const double temp = analysis::ContrailTemp(press, plot.Set().ContrailRh);
    if (!IsMissing(temp)) line.push_back(plot.At.ToPoint(temp, press));
  }
  DrawCurve(plot, "contrail", line, kGreen,
            "Contrails, RH " + Mask(plot.Set().ContrailRh, "##0") + "%");
}

// What surface air follows when it is heated to the day's temperature, as far as thermals reach.
void DrawThermal(Plot& plot) {
  const analysis::SoaringResults& soaring = plot.Results().Soaring;
  const analysis::SurfaceState& surface = plot.Results().Surface;
  if (!surface.Exists || NotAvailable(soaring.MaxTemp) || !soaring.ThermalTop.Exists()) return;
  const double theta = analysis::DryTheta(surface.Press, soaring.MaxTemp);
  std::vector<Point> line;
  const double top = soaring.ThermalTop.Press;
  for (double press = surface.Press; press > top; press -= kPressStep) {
    line.push_back(plot.At.ToPoint(analysis::DryAdiabatTemp(theta, press), press));
  }
  line.push_back(plot.At.ToPoint(analysis::DryAdiabatTemp(theta, top), top));
  DrawCurve(plot, "soaring", line, kRed,
            "Thermals to " + ShownHeightText(plot, soaring.ThermalTop.Height) + " at " +
                analysis::TempText(soaring.MaxTemp, plot.Set().TempGridUnits));
}

}  // namespace

std::optional<double> HeightCorrectionAt(const Plot& plot, double press) {
  const analysis::Sample height =
      analysis::SampleAt(plot.Results().Levels, press, analysis::Quantity::Height);
  const double standard = analysis::IsaHeight(press);
  if (!height.Ok() || !HasHeight(standard)) return std::nullopt;
  return height.Value - standard;
}

void DrawExtraLines(Plot& plot) {
  const ExtraLines& lines = plot.In.Lines;
  if (lines.HeightCorrection) DrawHeightCorrection(plot);
  if (lines.Contrail) DrawContrail(plot);
  if (lines.Soaring) DrawThermal(plot);
}

}  // namespace vexa::diagram
