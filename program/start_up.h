// What happens between the start of the process and the first picture, in its fixed order.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "program/program.h"

namespace vexa {

struct StartArguments {
  std::optional<std::string> Root{};      // --root
  std::filesystem::path ProgramFolder{};  // where the program stands
};

/// Runs the stages of the start; afterwards the main window may open. Faults are told to the user,
/// and the start goes on: a sounding can be looked at without any folder of the program's own.
void StartUp(Program& program, const StartArguments& arguments);

}  // namespace vexa
