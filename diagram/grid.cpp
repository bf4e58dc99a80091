#include "diagram/grid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "diagram/label_places.h"
#include "picture/clip.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

constexpr std::array kMandatory = {1000, 925, 850, 700, 500, 400, 300, 250,
                                   200,  150, 100, 70,  50,  30,  20,  10};

// g/kg. The tephigram's tradition has more lines than fit the narrower moist corner of the others.
constexpr double kMixingRatios[] = {0.1, 0.2, 0.4, 0.7, 1,  1.5, 2,  3,  4,
                                    6,   8,   10,  13,  16, 20,  25, 30, 36};
constexpr double kTephigramMixingRatios[] = {0.2, 0.4, 0.6, 0.8, 1,  1.5, 2,  2.5, 3,  4,  5,  6, 7,
                                             8,   9,   10,  12,  15, 16,  20, 25,  28, 30, 35, 36};

constexpr double kIceTemp = -20;  // °C, drawn stronger: ice grows between here and freezing

constexpr double kSatFirst = -32;  // °C, wet-bulb potential temperatures
constexpr double kSatLast = 40;
constexpr double kSatStep = 4;
constexpr double kAxisRow = 144;  // below the frame
constexpr double kSecondAxisRow = 336;
constexpr double kMixingRow = 96;   // above the lower edge
constexpr double kMixingTop = 400;  // hPa: the lines end here, moisture above is not read off them

// Pressures at which curves are evaluated, bottom to top.
std::vector<double> CurvePressures(double bottom, double top, double step) {
  std::vector<double> pressures;
  for (double press = bottom; press > top; press -= press > 150 ? step : step / 4) {
    pressures.push_back(press);
  }
  pressures.push_back(top);
  return pressures;
}

double FromGridUnits(double value, TempUnits units) {
  switch (units) {
    case TempUnits::Celsius:
      return value;
    case TempUnits::Fahrenheit:
      return (value - 32) / 1.8;
    case TempUnits::Kelvin:
      return value - kKelvinOffset;
  }
  return value;
}

// The other scale of the two that forecasters read: Fahrenheit, unless it is the first.
TempUnits SecondUnits(TempUnits first) {
  return first == TempUnits::Fahrenheit ? TempUnits::Celsius : TempUnits::Fahrenheit;
}

std::string_view UnitText(TempUnits units) {
  switch (units) {
    case TempUnits::Celsius:
      return "C";
    case TempUnits::Fahrenheit:
      return "F";
    case TempUnits::Kelvin:
      return "K";
  }
  return "C";
}

struct TempSpan {
  double Coldest = 0;
  double Warmest = 0;
};

// The coldest and warmest temperature that the frame shows anywhere.
TempSpan ShownTemps(const DiagramMapping& at) {
  const Rect& frame = at.Frame();
  const double corners[] = {at.ToCoordinates({frame.Left, frame.Top}).Temp,
                            at.ToCoordinates({frame.Left, frame.Bottom}).Temp,
                            at.ToCoordinates({frame.Right, frame.Top}).Temp,
                            at.ToCoordinates({frame.Right, frame.Bottom}).Temp};
  return {*std::ranges::min_element(corners), *std::ranges::max_element(corners)};
}

// An isotherm from below the frame's lower edge to the top pressure.
std::vector<Point> IsothermLine(const DiagramMapping& at, double temp) {
  return {at.ToPoint(temp, at.BottomPress() * 1.3), at.ToPoint(temp, at.TopPress())};
}

// Where a line crosses a height of the page; empty when it does not.
std::optional<double> CrossingX(const std::vector<Point>& line, double y) {
  for (std::size_t i = 1; i < line.size(); ++i) {
    const Point& a = line[i - 1];
    const Point& b = line[i];
    if ((a.Y - y) * (b.Y - y) <= 0 && a.Y != b.Y) {
      return a.X + (y - a.Y) / (b.Y - a.Y) * (b.X - a.X);
    }
  }
  return std::nullopt;
}

// Labels of one axis, left to right or back: none stands on the one before it.
class AxisLabels {
 public:
  bool TakesPlace(double x, std::string_view text, double size) {
    const double half = TextWidth(text, size) / 2 + 2 * kUnitsPerPixel;
    if (x - half < right_ && x + half > left_) return false;
    left_ = x - half;
    right_ = x + half;
    return true;
  }

 private:
  double left_ = 0;
  double right_ = 0;
};

void LabelIsotherm(Plot& plot, double temp, TempUnits units, double y, bool top,
                   AxisLabels& labels) {
  const Rect& frame = plot.At.Frame();
  const std::optional<double> x =
      CrossingX(IsothermLine(plot.At, temp), top ? frame.Top + 1 : frame.Bottom);
  const std::string text = Mask(ShownIn(temp, units), "###0");
  const double size = top ? kSmallText : kAxisText;
  // The unit of pressures and the head of the height scale stand beside the upper labels.
  const double left = frame.Left - 1 + (top ? TextWidth(text, size) / 2 : 0);
  const double right = frame.Right + 1 - (top ? 20 * kUnitsPerPixel : 0);
  if (!x || *x < left || *x > right) return;
  if (!labels.TakesPlace(*x, text, size)) return;
  DrawText(plot.Page, "temperature label", {*x, y}, text, plot.Inks.Ink, size, AnchorX::Center);
}

// A label of the grid, where none stands yet, a digit apart from the next one on its line; further
// rows above it are tried. One that finds no place is told by its neighbours.
void DrawGridLabel(Plot& plot, std::string_view tag, Point at, const std::string& text, Color ink,
                   int rows = 1) {
  const double digit = TextWidth("0", kSmallText);
  for (int row = 0; row < rows; ++row) {
    const Point there{at.X, at.Y - row * kSmallText};
    const Rect place = TextPlace(there, text, kSmallText, AnchorX::Center);
    if (!plot.GridLabels.IsFree(place)) continue;
    plot.GridLabels.Take({place.Left - digit, place.Top, place.Right + digit, place.Bottom});
    DrawTextOver(plot, tag, there, text, ink, kSmallText, AnchorX::Center);
    return;
  }
}

// One family's reference line: drawn and labelled only where its option says so.
void DrawReference(Plot& plot, std::string_view tag, const ReferenceLine& line,
                   const std::vector<Point>& points, Pen pen, const std::string& label) {
  if (line.Plot) {
    pen.Width *= 2.5;
    DrawInFrame(plot, tag, points, pen);
  }
  if (!line.ShowLabel) return;
  const Rect& frame = plot.At.Frame();
  for (double y = frame.Top + 0.45 * frame.Height(); y < frame.Bottom; y += 200) {
    const std::optional<double> x = CrossingX(points, y);
    if (!x || *x < frame.Left + 200 || *x > frame.Right - 200) continue;
    DrawTextOver(plot, tag, {*x, y}, label, pen.Ink, kMarkText, AnchorX::Center);
    return;
  }
}

std::vector<Point> DryAdiabat(const DiagramMapping& at, double theta) {
  std::vector<Point> points;
  for (const double press : CurvePressures(at.BottomPress(), at.TopPress(), 25)) {
    points.push_back(at.ToPoint(analysis::DryAdiabatTemp(theta, press), press));
  }
  return points;
}

std::vector<Point> SaturationAdiabat(const DiagramMapping& at, double wetTheta,
                                     SaturationOver over) {
  const double thetaE = analysis::ThetaPoint(analysis::kReferencePress, wetTheta, over).ThetaE;
  std::vector<Point> points;
  for (const double press : CurvePressures(at.BottomPress(), std::max(at.TopPress(), 150.0), 30)) {
    const analysis::LiftSatResult lifted = analysis::LiftSat(thetaE, press, over);
    if (lifted.Failed) break;
    points.push_back(at.ToPoint(lifted.Temp, press));
  }
  return points;
}

std::vector<Point> MixingRatioLine(const DiagramMapping& at, double gramsPerKg,
                                   SaturationOver over) {
  std::vector<Point> points;
  for (const double press :
       CurvePressures(at.BottomPress(), std::max(at.TopPress(), kMixingTop), 50)) {
    points.push_back(
        at.ToPoint(analysis::DewpointFromMixingRatio(press, gramsPerKg / 1000, over), press));
  }
  return points;
}

std::span<const double> MixingRatiosOf(const Plot& plot) {
  if (plot.At.Type() == DiagramType::Tephigram) return kTephigramMixingRatios;
  return kMixingRatios;
}

// At the lower edge, above the line of the ground where that runs through there.
double MixingLabelY(const Plot& plot) {
  const Rect& frame = plot.At.Frame();
  const double low = frame.Bottom - kMixingRow;
  const analysis::SurfaceState& surface = plot.Results().Surface;
  if (!plot.Set().SurfaceLine || !surface.Exists) return low;
  const double ground = LeftEdgeY(plot.At, surface.Press).value_or(frame.Top);
  return std::fabs(ground - low) < kMixingRow ? ground - kMixingRow : low;
}

// High up the lines crowd together, so they stand further apart there.
double DryStep(double theta) {
  return theta < 400 ? 10 : theta < 600 ? 20 : 50;
}

void DrawPressureLine(Plot& plot, double press) {
  DrawInFrame(plot, "pressure line", Isobar(plot.At, press),
              IsMandatory(press) ? plot.Inks.MandatoryIsobar : plot.Inks.Isobar);
}

}  // namespace

std::span<const int> MandatoryPressures() {
  return kMandatory;
}

bool IsMandatory(double press) {
  return std::ranges::find(kMandatory, press) != kMandatory.end();
}

void DrawIsotherms(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  const Rect& frame = plot.At.Frame();
  const TempSpan shown = ShownTemps(plot.At);
  const int step = std::max(set.TempGridInterval, 1);
  const bool drawn = plot.At.Type() != DiagramType::Emagram || set.EmagramTempLines;

  const auto each = [&](TempUnits units, auto&& use) {
    const int first = static_cast<int>(std::ceil(ShownIn(shown.Coldest, units) / step)) * step;
    for (int value = first; value <= ShownIn(shown.Warmest, units); value += step) {
      use(FromGridUnits(value, units));
    }
  };
  AxisLabels below;
  AxisLabels above;
  AxisLabels second;
  each(set.TempGridUnits, [&](double temp) {
    const auto is = [temp](double value) { return std::fabs(temp - value) < 0.01; };
    Pen marked = plot.Inks.ZeroIsotherm;
    if (is(kIceTemp)) marked.Width /= 2;
    if (drawn) {
      DrawInFrame(plot, "isotherm", IsothermLine(plot.At, temp),
                  is(0) || is(kIceTemp) ? marked : plot.Inks.Isotherm);
    }
    LabelIsotherm(plot, temp, set.TempGridUnits, frame.Bottom + kAxisRow, false, below);
    if (plot.At.Type() != DiagramType::Emagram) {
      LabelIsotherm(plot, temp, set.TempGridUnits, frame.Top - 108, true, above);
    }
  });
  if (set.TempDualScale) {
    const TempUnits other = SecondUnits(set.TempGridUnits);
    each(other, [&](double temp) {
      LabelIsotherm(plot, temp, other, frame.Bottom + kSecondAxisRow, false, second);
    });
  }
}

void DrawTemperatureUnits(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  const Rect& frame = plot.At.Frame();
  const auto write = [&](TempUnits units, double below) {
    DrawText(plot.Page, "temperature unit", {frame.Right + 168, frame.Bottom + below},
             std::string(UnitText(units)), plot.Inks.Ink);
  };
  write(set.TempGridUnits, kAxisRow);
  if (set.TempDualScale) write(SecondUnits(set.TempGridUnits), kSecondAxisRow);
}

void DrawDryAdiabats(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  const Rect& frame = plot.At.Frame();
  const bool tephigram = plot.At.Type() == DiagramType::Tephigram;
  const auto theta = [&](Point corner) {
    const DiagramCoordinates at = plot.At.ToCoordinates(corner);
    return analysis::ThetaPoint(at.Press, at.Temp).Theta;
  };
  if (set.DryAdiabats || tephigram) {
    const double coldest = theta({frame.Left, frame.Bottom});
    const double warmest = theta({frame.Right, frame.Top});
    for (double value = std::floor(coldest / 10) * 10; value <= std::min(warmest, 1200.0);
         value += DryStep(value)) {
      const std::vector<Point> line = DryAdiabat(plot.At, value);
      DrawInFrame(plot, tephigram ? "isentrope" : "dry adiabat", line, plot.Inks.DryAdiabat);
      const bool labelled = tephigram ? value >= 240 && value <= 330 : set.DryLabel;
      if (!labelled) continue;
      // Labelled where the line meets a height that traces seldom reach, else at the left edge.
      const double y = frame.Top + (tephigram ? 0.78 : 0.3) * frame.Height();
      std::optional<double> x = CrossingX(line, y);
      Point where{x.value_or(0), y};
      if (!x || *x < frame.Left + 150 || *x > frame.Right - 150) {
        const auto inside = std::ranges::find_if(line, [&](Point p) {
          return p.X > frame.Left + 150 && p.X < frame.Right - 150 && p.Y > frame.Top + 100 &&
                 p.Y < frame.Bottom - 100;
        });
        if (inside == line.end()) continue;
        where = *inside;
      }
      DrawGridLabel(plot, tephigram ? "isentrope label" : "dry label", where,
                    Mask(value, "##0") + (tephigram ? "\u00B0" : ""), plot.Inks.DryAdiabat.Ink);
    }
  }
  DrawReference(plot, "dry reference", set.DryRef, DryAdiabat(plot.At, set.DryRef.Value),
                plot.Inks.DryAdiabat, Mask(set.DryRef.Value, "##0.#") + " K");
}

void DrawSaturationAdiabats(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  const Rect& frame = plot.At.Frame();
  if (set.SatAdiabats) {
    for (double value = kSatFirst; value <= kSatLast; value += kSatStep) {
      const std::vector<Point> line = SaturationAdiabat(plot.At, value, set.Saturation);
      DrawInFrame(plot, "saturation adiabat", line, plot.Inks.SatAdiabat);
      if (!set.SatLabel) continue;
      const double y = frame.Top + 0.4 * frame.Height();
      const std::optional<double> x = CrossingX(line, y);
      if (!x || *x < frame.Left + 150 || *x > frame.Right - 150) continue;
      DrawGridLabel(plot, "saturation label", {*x, y}, Mask(value, "##0"),
                    plot.Inks.SatAdiabat.Ink);
    }
  }
  if (set.SatRef.Plot || set.SatRef.ShowLabel) {
    DrawReference(plot, "saturation reference", set.SatRef,
                  SaturationAdiabat(plot.At, set.SatRef.Value, set.Saturation),
                  plot.Inks.SatAdiabat, Mask(set.SatRef.Value, "##0.#") + " C");
  }
}

void DrawMixingRatioLines(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  if (set.MixingLines) {
    for (const double value : MixingRatiosOf(plot)) {
      plot.MixingRatios.push_back(MixingRatioLine(plot.At, value, set.Saturation));
      DrawInFrame(plot, "mixing ratio line", plot.MixingRatios.back(), plot.Inks.MixingRatio);
    }
  }
  if (set.MixRef.Plot || set.MixRef.ShowLabel) {
    DrawReference(plot, "mixing ratio reference", set.MixRef,
                  MixingRatioLine(plot.At, set.MixRef.Value, set.Saturation), plot.Inks.MixingRatio,
                  Mask(set.MixRef.Value, "#0.#") + " g/kg");
  }
}

// Labels stand at the lower edge where no trace runs, on the tephigram above the lines' ends: at
// their top pressure or, where the frame ends before, at its right edge or below the numbers of its
// upper one.
void DrawMixingRatioLabels(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  if (!set.MixingLines || !set.WetLabel) return;
  constexpr int kRows = 5;
  const Rect& frame = plot.At.Frame();
  const bool tephigram = plot.At.Type() == DiagramType::Tephigram;
  const Color ink = LegibleColor(plot.Inks, set.WetColor);
  const double low = MixingLabelY(plot);
  // The ticks of the marks stand at the right edge.
  const double beforeTicks = frame.Right - kTickReach - kSmallText;
  const Rect inside{frame.Left + 80, frame.Top + 200, beforeTicks, frame.Bottom};
  const double half = kSmallText / 2;
  const std::vector<Rect> lines =
      LinesWithin(plot, {frame.Left, low - half, frame.Right, low + half});
  const auto isOffLines = [&](double x, const std::string& text) {
    const Rect place = TextPlace({x, low}, text, kSmallText, AnchorX::Center);
    return std::ranges::none_of(lines, [&](const Rect& line) {
      return place.Left < line.Right && line.Left < place.Right;
    });
  };
  const std::span<const double> values = MixingRatiosOf(plot);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double value = values[i];
    const std::vector<Point>& line = plot.MixingRatios[i];
    const std::string text =
        value < 1 || value != std::floor(value) ? Mask(value, "0.0#") : Mask(value, "#0");
    if (!tephigram) {
      const std::optional<double> x = CrossingX(line, low);
      if (x && *x < beforeTicks && isOffLines(*x, text)) {
        DrawGridLabel(plot, "mixing ratio label", {*x, low}, text, ink);
      }
      continue;
    }
    const std::vector<std::vector<Point>> pieces = ClipPolyline(line, inside);
    if (pieces.empty()) continue;
    const Point end = pieces.back().back();
    DrawGridLabel(plot, "mixing ratio label", {end.X, end.Y - 70}, text, ink, kRows);
  }
}

void DrawPressureLines(Plot& plot) {
  const DisplaySettings& set = plot.Set();
  const Rect& frame = plot.At.Frame();
  const double top = plot.At.TopPress();
  // Where heights lead, pressures stand behind them as far as there is room.
  const bool leads = !plot.Where.Asks.HeightsFirst;
  const bool isTold = leads || plot.Where.HasHeights;
  const double labelX = leads ? plot.Where.PressLabelX : plot.Where.HeightLabelX;
  const Color ink = leads ? plot.Inks.Ink : plot.Inks.Faint;
  if (isTold) {
    DrawText(plot.Page, "pressure unit", {labelX, frame.Top - 144},
             set.Pressure == PressureUnits::Hpa ? "hPa" : "MB", ink, kAxisText, AnchorX::Right);
  }
  const bool inPressure = set.YGridUnits == GridUnits::Mb;
  int step = inPressure ? std::max(set.YGridInterval, 10) : 100;
  // An enlarged part keeps about as many lines as the whole.
  while (plot.At.IsZoomed() && step > 5 && (plot.At.BottomPress() - top) / step < 5) step /= 2;
  std::vector<int> pressures;
  // The bottom line first; above it whole multiples of the interval.
  for (int press = static_cast<int>(plot.At.BottomPress()); press > 0 && press >= top;) {
    pressures.push_back(press);
    const int interval = press > 100 ? step : std::min(step, 10);
    press = (press - 1) / interval * interval;
  }
  if (set.AllMandatoryLines) {
    for (const int press : kMandatory) {
      if (press >= top && std::ranges::find(pressures, press) == pressures.end()) {
        pressures.push_back(press);
      }
    }
    std::ranges::sort(pressures, std::greater<>());
  }
  double lastY = 1e9;
  for (const int press : pressures) {
    DrawPressureLine(plot, press);
    const std::optional<double> y = LeftEdgeY(plot.At, press);
    if (!y || !isTold || lastY - *y < 0.95 * kAxisText) continue;
    lastY = *y;
    DrawText(plot.Page, "pressure label", {labelX, *y}, Mask(press, "###0"), ink, kAxisText,
             AnchorX::Right);
  }
}

}  // namespace vexa::diagram
