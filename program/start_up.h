// What happens between the start of the process and the first picture, in its fixed order.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "program/program.h"

namespace vexa {

struct StartArguments {
  std::optional<std::string> Root{};      // --root
  std::filesystem::path ProgramFolder{};  // where the program stands
  int ScreenWidth = 0;                    // pixels; 0: not known
  int ScreenHeight = 0;
  /// Told of each stage's mark, "AA" to "PP", when the stage is done.
  std::function<void(std::string_view mark)> Done{};
};

inline constexpr std::string_view kHelpFile = "VEXA.HLP";
inline constexpr std::string_view kStartPicture = "VEXA57.BMP";
inline constexpr std::string_view kPictureStage = "BB";  // the start-up picture may be shown
inline constexpr std::string_view kFontStage = "GG";     // the fonts may be chosen

/// Runs the stages of the start; afterwards the main window may open. Faults are told to the user,
/// and the start goes on: a sounding can be looked at without any folder of the program's own.
/// All settings are read; what was wrong with their files is in the notices.
void StartUp(Program& program, const StartArguments& arguments);

/// Loads the sounding that is marked for it; nothing changes when none is.
Changes AutoLoadCode(Program& program);

}  // namespace vexa
