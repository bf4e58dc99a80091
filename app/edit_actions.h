// The editors that menu entries open over the main window. An editor works on a copy; what it gives
// back becomes a step of the history.
#pragma once

#include <functional>
#include <span>

#include "app/window_table.h"
#include "program/program.h"

class QWidget;

namespace vexa {

std::span<const WindowRow> EditorWindows();

/// Takes an edit that only the native format keeps. Whoever has loaded another one is asked, and
/// then for a name. False when the user does not want it.
bool TakeIntoNative(Program& program, SoundingRecord edited,
                    const std::function<void(Changes)>& show);

/// Opens the editor of the decoded data at what the user wants to correct after a load, if
/// anything.
void OpenCorrection(Program& program, QWidget* window, const std::function<void(Changes)>& show);

}  // namespace vexa
