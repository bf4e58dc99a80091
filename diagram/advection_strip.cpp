#include "diagram/advection_strip.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "core/numbers.h"
#include "picture/text_width.h"

namespace vexa::diagram {
namespace {

constexpr double kLeastScale = 1;  // °C an hour at the column's edges, at least
constexpr std::string_view kCaption = "Advection";
constexpr std::string_view kUnit =
    "\xC2\xB0"
    "C/h";

// A whole number of °C an hour that holds every bar.
double ScaleOf(const std::vector<AdvectionBar>& bars) {
  double most = kLeastScale;
  for (const AdvectionBar& bar : bars) most = std::max(most, std::fabs(bar.Cph));
  return std::ceil(most);
}

std::string Signed(double cph) {
  return (cph > 0 ? "+" : "") + Mask(cph, "##0.0");
}

Color Shade(Color ink) {
  ink.Alpha = 110;
  return ink;
}

}  // namespace

void DrawAdvectionStrip(Plot& plot) {
  const Rect* region = plot.Where.Find(kAdvectionRegion);
  if (region == nullptr) return;
  const Rect column{region->Left, plot.Where.Frame.Top, region->Right, plot.Where.Frame.Bottom};
  const double middle = (column.Left + column.Right) / 2;
  const double scale = ScaleOf(plot.In.Advection);
  const double perCph = column.Width() / 2 / scale;
  const auto text = [&](std::string_view tag, double y, std::string_view what, AnchorX across,
                        double x, Color ink) {
    DrawText(plot.Page, tag, {x, y}, Elided(what, kSmallText, column.Width()), ink, kSmallText,
             across);
  };
  text("advection caption", column.Top - 26 * kUnitsPerPixel, kCaption, AnchorX::Center, middle,
       plot.Inks.Ink);
  text("advection unit", column.Top - 12 * kUnitsPerPixel, kUnit, AnchorX::Center, middle,
       plot.Inks.Ink);
  for (const AdvectionBar& bar : plot.In.Advection) {
    // A layer that the diagram cuts is shown as far as it reaches.
    if (bar.TopPress > plot.At.BottomPress() || bar.BasePress < plot.At.TopPress()) continue;
    const std::optional<double> base = RightEdgeY(plot.At, bar.BasePress);
    const std::optional<double> top = RightEdgeY(plot.At, bar.TopPress);
    // The isobars of a tephigram may pass the right edge above or below the frame.
    if (!base && !top) continue;
    const double low = std::min(base.value_or(column.Bottom), column.Bottom);
    const double high = std::max(top.value_or(column.Top), column.Top);
    if (low <= high) continue;
    const double end = middle + perCph * bar.Cph;
    const Color ink = bar.Cph > 0 ? plot.Inks.WarmFront : plot.Inks.ColdFront;
    plot.Page.Add("advection",
                  Area{.Rings = {{{middle, low}, {end, low}, {end, high}, {middle, high}}},
                       .Fill = {Shade(ink), FillStyle::Plain},
                       .Stroke = {ink, 6, LineStyle::Solid}});
    const Rect spot{column.Left, high, column.Right, low};
    plot.Page.AddHotSpot({spot, "advection",
                          std::string(bar.Cph > 0 ? "Warm" : "Cold") + " advection " +
                              Signed(bar.Cph) + " " + std::string(kUnit) + ", " +
                              Mask(bar.BasePress, "###0") + " to " + Mask(bar.TopPress, "###0") +
                              PressureUnit(plot)});
    if (low - high < kSmallText) continue;
    text("advection value", (low + high) / 2, Signed(bar.Cph),
         bar.Cph > 0 ? AnchorX::Right : AnchorX::Left,
         bar.Cph > 0 ? middle - 3 * kUnitsPerPixel : middle + 3 * kUnitsPerPixel, plot.Inks.Ink);
  }
  DrawSegment(plot.Page, "advection axis", {middle, column.Top}, {middle, column.Bottom},
              plot.Inks.Frame);
  for (const bool isRight : {false, true}) {
    const double x = isRight ? column.Right : column.Left;
    DrawSegment(plot.Page, "advection edge", {x, column.Top}, {x, column.Bottom}, plot.Inks.Isobar);
    text("advection scale", column.Bottom + 10 * kUnitsPerPixel,
         (isRight ? "+" : "-") + Mask(scale, "##0"), isRight ? AnchorX::Right : AnchorX::Left, x,
         plot.Inks.Faint);
  }
}

}  // namespace vexa::diagram
