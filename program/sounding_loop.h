// The loop, a movie of the soundings that were opened together. The window's clock calls StepLoop
// when a picture's hold time is over.
#pragma once

#include "program/program.h"

namespace vexa {

/// Whether there is anything to loop through.
bool CanLoop(const Program& program);

/// Begins with the sounding in work. With the option not to rescale, its axes are kept.
Changes StartLoop(Program& program);

/// Loads the next sounding of the list, after the last the first. With the option to skip, those
/// that cannot be read or fail their check are passed over; without it a file that cannot be read
/// ends the loop with its message.
Changes StepLoop(Program& program);

Changes StopLoop(Program& program);

/// The bodies of the menu's entries that step, behind the closed gate.
Changes StepBack(Program& program);
Changes StepForward(Program& program);

/// Steps through the listed soundings by hand: 1 forward, -1 back. Nothing beyond the ends.
Changes StepListed(Program& program, int step);

}  // namespace vexa
