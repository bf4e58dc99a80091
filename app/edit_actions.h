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

/// Opens the editor of the decoded data at what the user wants to correct after a load, if
/// anything.
void OpenCorrection(Program& program, QWidget* window, const std::function<void(Changes)>& show);

}  // namespace vexa
