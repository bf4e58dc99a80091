// The file of the program folder in which the arrangement of the severe-weather table is kept.
#pragma once

#include <filesystem>

#include "program/program.h"

namespace vexa {

std::filesystem::path SevereTablePath(const Program& program);

/// Restores that arrangement where there is one; a fault keeps the published one and is told.
void LoadSevereTable(Program& program);

}  // namespace vexa
