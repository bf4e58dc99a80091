// The display of fronts: the hodograph with the frontal layer, the thermal wind of every layer and
// the motion of the front, beside it the profile of the normal wind, the table of layers, what is
// said of the front, and the settings in force.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "fronts/front_analysis.h"
#include "hodograph/hodograph_plot.h"

namespace vexa::fronts {

struct FrontPlotInput {
  hodograph::HodographInput Winds;  // the sounding, the options, and the settings of fronts
  const FrontResults& Fronts;
  bool IsHeld = false;    // the front is kept while the data change
  bool IsChosen = false;  // its layer was chosen by hand
};

/// A place of the page that stands for one of the analysed layers: its row, its thermal wind, its
/// part of the profile.
struct LayerPlace {
  Rect Where{};
  std::size_t Layer = 0;
};

struct FrontPlot {
  Picture Page{};
  hodograph::HodographMapping Mapping{};
  std::vector<LayerPlace> Layers{};
};

FrontPlot PlotFronts(const FrontPlotInput& input, const Surface& surface);

/// The layer at a place of the page, the smallest place first where several lie over one another;
/// none elsewhere.
std::optional<std::size_t> LayerAt(const FrontPlot& plot, Point at);

/// Warm and cold on the paper of these options.
struct FrontInks {
  Color Warm{};
  Color Cold{};
  Color Of(bool isWarm) const { return isWarm ? Warm : Cold; }
};
FrontInks FrontInksFor(const ViewSettings& options, bool inverted);

}  // namespace vexa::fronts
