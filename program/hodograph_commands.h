// What the hodograph's controls do: the storm motion and its mover, holding it, and the slots of
// the comparison. Everything that depends on the motion follows through Refresh.
#pragma once

#include <vector>

#include "hodograph/hodograph_plot.h"
#include "program/program.h"

namespace vexa {

/// What the hodograph keeps while the program runs.
struct HodographState {
  std::vector<hodograph::ComparedWinds> Compared{};  // kept for comparison
};

/// The hodograph of the sounding in work under the window's settings.
hodograph::HodographInput HodographOf(const Program& program);
/// The same under other options than the program's own.
hodograph::HodographInput HodographOf(const Program& program, const Options& set);

/// A motion entered by hand replaces the chosen mover's; direction from which, knots.
Changes EnterStormMotion(Program& program, analysis::Wind motion);
Changes SetMotionMode(Program& program, Scaling mode);
Changes ChooseMover(Program& program, StormMover mover);

/// Held, the chosen mover's present motion stays while the data change: it becomes a motion
/// entered by hand. When it is no longer held, motions are computed again.
Changes HoldStormMotion(Program& program, bool hold);

/// A motion that was entered ends with its sounding unless it is held.
void EndStormMotion(Program& program);

/// What was entered for the storm's motion, to come back to when a drag is given up.
struct StormEntry {
  Scaling Mode = Scaling::Auto;
  analysis::Wind Motion{};
  bool Hold = false;
};
StormEntry EntryOf(const Program& program);
Changes TakeBack(Program& program, const StormEntry& entry);

/// Reads the comparison slots from their files, tells of those that cannot be read.
void LoadCompared(Program& program);
/// Keeps the winds of the sounding in work in a slot, or empties the slot.
void KeepCompared(Program& program, int slot);
void EmptyCompared(Program& program, int slot);

/// Writes the winds and the wind table of the sounding in work to their files.
void SaveWindListings(Program& program);

}  // namespace vexa
