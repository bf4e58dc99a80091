// Menu commands that put the display elsewhere: an image file, the clipboard, paper. They need the
// toolkit, so they stand here and not among the program's commands.
#pragma once

#include <QSize>

#include "program/program.h"

class QWidget;

namespace vexa {

/// Carries out a command of these; false for any other.
bool RunOutputCommand(Program& program, Command command, QWidget* window, QSize displaySize);

}  // namespace vexa
