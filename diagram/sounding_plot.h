// The plot pipeline: one routine draws the whole thermodynamic diagram from the sounding, its
// analysis and the options, step by step with its status texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/analysis.h"
#include "config/display_settings.h"
#include "core/interaction.h"
#include "core/sounding_record.h"
#include "diagram/mapping.h"
#include "diagram/usual.h"
#include "picture/label_room.h"
#include "picture/page_layouts.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::diagram {

enum class MultiMode { Single, Overlay, Compare, Loop };

/// A further sounding drawn on the same grid.
struct OverlaySounding {
  const SoundingRecord* Sounding = nullptr;
  const analysis::AnalysisResults* Results = nullptr;  // of a compared one; null: not analysed
  bool IsFaint = false;  // it stands back behind the first, which was made of it
};

/// A frontal zone, marked from base to top and labelled at its top. Of several one is the front;
/// the others have no label.
struct FrontMark {
  bool Cold = false;
  double Height = 0;      // of its top, m above mean sea level
  double BaseHeight = 0;  // 0: marked by a line at its top alone
  bool IsFront = true;
  std::string Info{};  // what the pointer reads there
};

/// Advection of temperature in a layer, for the strip beside the diagram.
struct AdvectionBar {
  double BasePress = 0;  // hPa
  double TopPress = 0;
  double Cph = 0;  // °C an hour, warm positive
};

/// A layer that another analysis wants marked, mountain waves for one.
struct LayerMark {
  std::string Text{};
  double BaseHeight = 0;  // m above mean sea level
  double TopHeight = 0;
};

/// Lines that the Compare menu puts over the diagram.
struct ExtraLines {
  bool PressHeights = true;       // heights of the mandatory levels beside their pressures
  bool HeightCorrection = false;  // purple
  bool Contrail = false;          // green
  bool Soaring = false;
  bool operator==(const ExtraLines&) const = default;
};

/// The region of that strip; a layout may have it.
inline constexpr std::string_view kAdvectionRegion = "advection";

/// The temperature grid of a page with what it was made from: it changes only with the settings,
/// the axes and the size. The page's ground is its lines.
struct GridDrawn {
  DisplaySettings Set{};
  DiagramMapping At{};
  LabelRoom Labels{Rect{}};                        // where its labels stand
  std::vector<std::vector<Point>> MixingRatios{};  // its lines whole, in the order of their values
};

struct SoundingPlot;

struct PlotInput {
  const SoundingRecord& Sounding;
  const analysis::AnalysisResults& Results;
  const DisplaySettings& Set;
  Surface On;  // what the page is composed for
  MultiMode Mode = MultiMode::Single;
  std::vector<OverlaySounding> Others{};
  std::vector<FrontMark> Fronts{};
  std::vector<AdvectionBar> Advection{};
  std::vector<LayerMark> Layers{};
  const LayoutRow* Layout = nullptr;      // null: the diagram's own
  std::vector<PageBox> Boxes{};           // side boxes that other folders fill
  std::string Configuration{};            // caption of the active configuration
  std::optional<double> LoopHoldTime{};   // s, while a loop runs
  Scaling OthersScaling = Scaling::Auto;  // Auto: the axes make room for every sounding
  const SoundingRecord* Reference = nullptr;
  const Usual* Spread = nullptr;  // what is usual here, where it is known
  ExtraLines Lines{};
  std::optional<Rect> Zoom{};  // part of the diagram's frame that fills it, in shares of it
  /// Drawn by this mapping as long as it is of the right type, not by one of the sounding's own.
  const DiagramMapping* Scale = nullptr;
  const SoundingPlot* Before = nullptr;  // a page whose grid is taken where it would be the same
};

struct SoundingPlot {
  Picture Page{};
  DiagramMapping Mapping{};
  PageLayout Layout{};              // where the regions of the page stand and what is left out
  std::string Warning{};            // what the user is to be told about this diagram type, or empty
  std::optional<GridDrawn> Grid{};  // of one sounding alone
};

/// Draws the sounding; empty when the user stopped the work.
std::optional<SoundingPlot> PlotSounding(const PlotInput& input, Progress progress = {});

}  // namespace vexa::diagram
