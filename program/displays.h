// The displays that show the analysis of the current sounding in a window of their own: a row each
// with the command that opens it, its name and the picture it shows.
#pragma once

#include <span>
#include <string_view>

#include "display/sheet.h"
#include "program/program.h"

namespace vexa {

struct DisplayRow {
  Command Opens = Command::None;
  std::string_view Name{};   // of the window
  std::string_view Title{};  // of the window
  display::Sheet (*Fill)(const Program&) = nullptr;
};

std::span<const DisplayRow> Displays();

/// The display that a command opens; null for other commands.
const DisplayRow* DisplayOf(Command command);

/// Its picture of the current sounding.
Picture DrawDisplay(const DisplayRow& row, const Program& program);

/// The file in which the arrangement of the severe-weather table is kept between sessions.
std::filesystem::path SevereTablePath(const Program& program);

/// Restores that arrangement where there is one; a fault keeps the published one and is told.
void LoadSevereTable(Program& program);

}  // namespace vexa
