// The hodograph as a picture: the winds of a sounding as vectors from a common origin, with storm
// motions, mean winds and shear, beside its analysis panel. The same drawing without panel and
// legend is the small hodograph of the diagram's page.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis.h"
#include "config/display_settings.h"
#include "config/window_settings.h"
#include "core/sounding_record.h"
#include "hodograph/comparison.h"
#include "hodograph/mapping.h"
#include "hodograph/wind_profile.h"
#include "picture/layout.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::hodograph {

struct HodographInput {
  const SoundingRecord& Sounding;
  const analysis::AnalysisResults& Results;
  const DisplaySettings& Set;
  HodographSettings Window{};
  std::vector<ComparedWinds> Compared{};   // at most kComparisonSlots
  std::optional<HodographMapping> Keep{};  // the mapping to keep while the storm vector is dragged
  std::optional<double> FrontNormal{};     // degrees into which the wind's normal part counts

  const analysis::StormMotionResults& Storm() const { return Results.Storm; }
};

struct HodographPlot {
  Picture Page{};
  HodographMapping Mapping{};
  std::vector<ProfileWind> Winds{};             // of the trace
  std::optional<analysis::WindVector> Storm{};  // the chosen mover, where it is drawn
  bool StormRelative = false;
  bool HasTrace = true;
};

/// The hodograph's page for a surface: plot, analysis panel, legend and captions in their regions.
HodographPlot PlotHodograph(const HodographInput& input, const Surface& surface);

/// The small hodograph of the diagram's page, drawn into a region of it after the options of its
/// own. Nothing without any wind.
void DrawHodographBox(Picture& page, const Rect& region, const HodographInput& input);

/// The same as a box for the region "hodograph"; empty without any wind. It draws from what the
/// input refers to, which must last as long.
std::optional<PageBox> HodographBox(const HodographInput& input);

/// True near enough to the head of the chosen storm vector to take hold of it.
bool HitsStormVector(const HodographPlot& plot, Point at);

/// The sounding's wind near enough to take hold of, nearest first; empty without a trace.
std::optional<ProfileWind> FindWind(const HodographPlot& plot, Point at);

/// The two lines of the cursor's box: the pointer's place as a wind, and the sounding's wind that
/// is drawn nearest to it, with its height above ground. Empty outside the plot.
struct CursorBox {
  std::string Cursor{};
  std::string Wind{};
};
CursorBox ReadHodograph(const HodographPlot& plot, Point at, const DisplaySettings& options);

}  // namespace vexa::hodograph
