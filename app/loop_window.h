// The dialog of the loop's options, from which it is started.
#pragma once

#include "program/program.h"

class QWidget;

namespace vexa {

/// Asks for the options and keeps them; true when the loop is to start.
bool EditLoop(Program& program, QWidget* parent);

}  // namespace vexa
