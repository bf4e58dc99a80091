// Dragging winds on the hodograph: its points are the sounding's winds while it shows them relative
// to the ground.
#pragma once

#include <optional>

#include "hodograph/hodograph_plot.h"
#include "program/level_drag.h"

namespace vexa {

/// The wind level, from 1, whose point can be taken hold of within a distance, drawing units, of a
/// place on the hodograph's page; none where only interpolated winds are near.
std::optional<int> WindLevelAt(const Program& program, const hodograph::HodographPlot& plot,
                               Point at, double within);

/// Takes hold of the wind there. Relative to the storm winds cannot be dragged: the user is told
/// so.
std::optional<LevelDrag> BeginWindDrag(Program& program, const hodograph::HodographPlot& plot,
                                       Point at, double within);

}  // namespace vexa
