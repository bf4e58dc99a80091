// What the steps of one plot share: the input, the page as it grows, the mapping, the inks and the
// mark columns, with the few ways in which all of them put lines and texts on the page.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "diagram/mapping.h"
#include "diagram/mark_column.h"
#include "diagram/palette.h"
#include "diagram/sounding_plot.h"
#include "picture/label_room.h"
#include "picture/layout.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::diagram {

inline constexpr double kAxisText = LetterSize(Type::Label);
inline constexpr double kSmallText = LetterSize(Type::Note);
inline constexpr double kMarkText = LetterSize(Type::Note);

/// Of the ticks that tell the height of a mark, at the frame's right edge inside.
inline constexpr double kTickReach = 150;

/// Where the parts of the page stand, drawing units.
struct Places {
  PageLayout Page{};
  LayoutDefaults Asks{};    // of the layout
  Rect Frame{};             // of the diagram
  double PressLabelX = 0;   // right ends of the pressures
  double HeightLabelX = 0;  // right ends of the heights of pressure levels
  bool HasHeights = false;  // there is room for those
  double CaptionY = 0;      // of what stands under the axis: the ground's values, the winds' ratio
  double CaptionReach = 0;  // of the latter beyond the winds' column, to the left
  double MarkRoom = 0;      // at the frame's right edge inside, for marks without a gutter

  const Rect* Find(std::string_view region) const { return Page.Find(region); }
};

/// The units that the page shows, with the label of the winds.
struct ShownUnits {
  LengthUnits Height = LengthUnits::Meter;
  SpeedUnits Speed = SpeedUnits::Knots;
  std::string_view SpeedLabel = "kts";
};

struct Plot {
  const PlotInput& In;
  Picture Page{};
  Places Where{};
  DiagramMapping At{};
  Palette Inks{};
  ShownUnits Units{};
  LabelRoom GridLabels{Rect{}};  // the frame with the labels of the grid
  MarkColumn Marks{};            // in the gutter, without one inside the frame at its right edge
  std::vector<std::vector<Point>> MixingRatios{};  // lines of the grid, whole
  std::string Warning{};

  const DisplaySettings& Set() const { return In.Set; }
  const SoundingRecord& Sounding() const { return In.Sounding; }
  const analysis::AnalysisResults& Results() const { return In.Results; }
  /// Whether the diagram has the pressure. One that comes from the height of a level on its last
  /// isobar may lie beyond it by the height's rounding.
  bool InRange(double press) const {
    constexpr double kRounding = 1e-5;  // of the pressure: 0.05 m in the coldest air
    return press <= At.BottomPress() * (1 + kRounding) && press >= At.TopPress() * (1 - kRounding);
  }
  /// Further soundings are drawn beside this one.
  bool HasOthers() const { return In.Mode == MultiMode::Overlay || In.Mode == MultiMode::Compare; }
};

/// A text at a position; the one way in which labels come onto the page.
void DrawText(Picture& page, std::string_view tag, Point at, std::string text, Color ink,
              double size = kAxisText, AnchorX across = AnchorX::Left,
              AnchorY down = AnchorY::Middle);
/// The same with the paper's colour around the letters, for texts over lines.
void DrawTextOver(Plot& plot, std::string_view tag, Point at, std::string text, Color ink,
                  double size = kMarkText, AnchorX across = AnchorX::Left,
                  AnchorY down = AnchorY::Middle);
/// One straight line.
void DrawSegment(Picture& page, std::string_view tag, Point from, Point to, const Pen& pen);
/// A line cut at the frame of the diagram.
void DrawInFrame(Plot& plot, std::string_view tag, const std::vector<Point>& points,
                 const Pen& pen);

/// Where a pressure's isobar enters the frame on the left and leaves it on the right. On the
/// tephigram isobars are curves; elsewhere both ends have the same height.
std::vector<Point> Isobar(const DiagramMapping& at, double press);

/// Where a pressure's isobar meets the left or the right edge of the frame; empty where it does
/// not. What is told at an edge stands there: the winds and the height scale at the right one.
std::optional<double> LeftEdgeY(const DiagramMapping& at, double press);
std::optional<double> RightEdgeY(const DiagramMapping& at, double press);

/// How far a thinned line may lie off the whole one: a sixth of a pixel, a twentieth of a
/// millimetre in print.
inline constexpr double kThinnedNear = 2;

/// A height above sea level as the settings show it: relative to the station under "AGL".
double ShownHeight(const Plot& plot, double height);
/// " mb" or " hPa", to stand behind a pressure.
std::string PressureUnit(const Plot& plot);
/// The same as a text with its unit, and with " AGL" where it is above ground.
std::string ShownHeightText(const Plot& plot, double height);
/// "1457 m" or "4780 ft" by the unit, rounded to whole ones.
std::string HeightText(double height, LengthUnits units);

}  // namespace vexa::diagram
