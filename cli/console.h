// What a command has around it: two sinks, so that tests read what users see, and the toolkit where
// the program was built with it, and the displays that can be drawn.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "program/display_row.h"

namespace vexa::cli {

class Toolkit;

struct Console {
  std::function<void(std::string_view)> Out;
  std::function<void(std::string_view)> Err;
  Toolkit* Tools = nullptr;
  std::span<const DisplayRow> Displays = AllDisplays();
};

inline constexpr int kExitOk = 0;
inline constexpr int kExitInputFailed = 1;
inline constexpr int kExitUsage = 2;

}  // namespace vexa::cli
