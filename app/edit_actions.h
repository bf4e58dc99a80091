// Menu commands that open an editor over the main window. An editor works on a copy; what it gives
// back becomes a step of the history.
#pragma once

#include <functional>

#include "program/program.h"

class QWidget;

namespace vexa {

/// Opens the editor of a command of these; false for any other. Nothing opens while a command runs
/// and, but for new soundings and stations, without a sounding.
///
/// show  draws what an accepted edit made stale
bool RunEditCommand(Program& program, Command command, QWidget* window,
                    const std::function<void(Changes)>& show);

/// Opens the editor of the decoded data at what the user wants to correct after a load, if
/// anything.
void OpenCorrection(Program& program, QWidget* window, const std::function<void(Changes)>& show);

}  // namespace vexa
