// The controls of the trajectory in three dimensions: how it is turned, the unit of its distances
// and the pointer to the north.
#pragma once

#include <span>

#include "program/display_row.h"

namespace vexa {

std::span<const ControlRow> HodogramControls();

/// Turns the view by a drag of the mouse, in pixels.
void TurnHodogram(Program& program, double right, double down);

}  // namespace vexa
