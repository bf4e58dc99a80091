// A page under way: lines and texts as plots put them down, letters on a halo of the paper so that
// no line crosses them.
#pragma once

#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "picture/picture.h"
#include "picture/shapes.h"
#include "picture/surface.h"

namespace vexa {

class PlotPage {
 public:
  PlotPage(const Surface& on, const PaperAndInk& colors)
      : Page(on.Width, on.Height, colors.Paper), ink_(colors.Ink) {}

  void Line(std::string_view tag, std::vector<Point> points, const Pen& pen) {
    Page.Add(tag, Polyline{.Points = std::move(points), .Stroke = pen});
  }
  void Text(std::string_view tag, Point at, std::string text, double size, AnchorX across,
            Color ink, bool bold = false, AnchorY down = AnchorY::Middle) {
    Page.Add(tag, Label{.At = at,
                        .Text = std::move(text),
                        .Across = across,
                        .Down = down,
                        .Size = size,
                        .Ink = ink,
                        .Bold = bold,
                        .Halo = Page.Paper()});
  }
  /// In the page's own ink.
  void Text(std::string_view tag, Point at, std::string text, double size,
            AnchorX across = AnchorX::Left, bool bold = false) {
    Text(tag, at, std::move(text), size, across, ink_, bold);
  }

  Picture Page;

 private:
  Color ink_;
};

/// A step of 1, 2 or 5 times a power of ten of which at most so many fit into a range.
inline double RoundStep(double range, double most) {
  const double step = std::pow(10, std::floor(std::log10(range / most)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (range / (step * factor) <= most) return step * factor;
  }
  return step * 10;
}

}  // namespace vexa
