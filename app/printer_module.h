// What the module of the printers has for the program: one function, found by its name.
#pragma once

#include "app/printer.h"

/// The platform's printer of first choice, which the caller owns; null where there is none.
extern "C" vexa::Printer* VexaPrinter();
