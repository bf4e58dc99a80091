// What is drawn over the trace: storm vectors, mean winds, the shear of the layer, the propagation
// vector and lines of equal helicity. Each adds itself to the legend.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "hodograph/hodograph_plot.h"
#include "hodograph/inks.h"
#include "picture/label_room.h"
#include "picture/surface.h"

namespace vexa::hodograph {

struct LegendItem {
  std::string Text{};
  Pen Stroke{};
  bool Square = false;  // shown as the square that it is, not as a line
};

/// What the steps of one hodograph share.
struct Canvas {
  const HodographInput& In;
  Picture& Page;
  HodographMapping At{};
  Inks Colors{};
  LabelRoom Room{{}};
  std::vector<LegendItem> Legend{};
  std::vector<std::pair<std::string, Label>> Names{};  // by tag, for over all lines
  bool Small = false;

  const DisplaySettings& Set() const { return In.Set; }
};

/// "245/21 kts": whole degrees, and the speed in the options' unit by a mask.
std::string WindText(const analysis::WindVector& wind, const DisplaySettings& options,
                     std::string_view mask, std::string_view unit);

void DrawLine(Canvas& canvas, std::string_view tag, const std::vector<Point>& points,
              const Pen& pen);

/// From one wind to another, with a head at the second.
void DrawArrow(Canvas& canvas, std::string_view tag, const analysis::WindVector& from,
               const analysis::WindVector& to, const Pen& pen);

/// A text beside a wind where there is room, on the preferred side if it can be; drawn with the
/// other names.
void DrawName(Canvas& canvas, std::string_view tag, const analysis::WindVector& at,
              std::string text, Color ink, Point prefer = {1, 0}, double gap = 45);

/// What the pointer reads at a wind.
void AddSpot(Canvas& canvas, std::string_view tag, const analysis::WindVector& wind,
             std::string text);

inline constexpr double kNameGap = 4 * kUnitsPerPixel;  // between two texts side by side

/// How many gaps a text may stand away from its point; a line leads there from the point.
double FarthestName(const Canvas& canvas);
/// That line, where a text stands clearly away from its point.
void DrawLeader(Canvas& canvas, Point at, Point middle, double width, double height, Color ink);

/// The mark of a mean wind.
void DrawSquare(Canvas& canvas, std::string_view tag, Point at, const Pen& pen);

/// The movers with their heads at their motions; the chosen one first, so that it leads the legend.
void DrawStormVectors(Canvas& canvas);
/// Keeps texts that are written before them off their lines.
void AvoidStormVectors(Canvas& canvas);
void DrawMeanWinds(Canvas& canvas);
/// Keeps texts that are written before it off the square of the deep layer's mean wind.
void AvoidMeanWind(Canvas& canvas);
void DrawShearLayer(Canvas& canvas);
/// The index of the propagation of mesoscale elements as a vector; empty where there is none.
std::optional<analysis::WindVector> PropagationVector(const analysis::AnalysisResults& results);
void DrawPropagationVector(Canvas& canvas);

/// Puts the names of what was drawn over all lines.
void DrawNames(Canvas& canvas);

/// Helicity of the lowest 3 km as it would be for every motion: straight lines, every 50 m²/s² up
/// to 300 and every 100 above.
void DrawHelicityContours(Canvas& canvas);

}  // namespace vexa::hodograph
