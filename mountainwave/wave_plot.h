// The wave diagram: the air that streams over the ridges, up- and downdraughts shaded, with the
// wind across the ridge and the Scorer parameter as profiles at its side.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "config/display_settings.h"
#include "mountainwave/wave_listing.h"
#include "mountainwave/wave_mapping.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::mountainwave {

/// What a diagram is drawn from.
struct WavePlotInput {
  WaveSource From;
  const analysis::LevelProfile& Levels;  // for heights by pressure
  const DisplaySettings& Look;           // screen colour
  bool RotorHints = true;
};

/// The options with which the selected wave can be seen: the upper limit is lowered to a pressure
/// above its interface, the length becomes that of its own. The same where it can be.
WaveOptions AdjustedTo(const WavePlotInput& input);
inline constexpr std::string_view kAdjusted =
    "Diagram will be adjusted so selected Wave can be viewed.";

struct WavePlot {
  Picture Page{};
  WaveMapping At{};
};

/// The diagram's page.
WavePlot PlotWaves(const WavePlotInput& input, const Surface& surface);

/// What the pointer reads: "Vertical velocity 2.3 m/s, 4.1 km downstream, 3000 m"; empty outside
/// the diagram.
std::string ReadWaves(const WavePlotInput& input, const WaveMapping& at, Point place);

}  // namespace vexa::mountainwave
