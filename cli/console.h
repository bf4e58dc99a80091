// What a command has around it: two sinks, so that tests read what users see, and the toolkit where
// the program was built with it.
#pragma once

#include <functional>
#include <string_view>

namespace vexa::cli {

class Toolkit;

struct Console {
  std::function<void(std::string_view)> Out;
  std::function<void(std::string_view)> Err;
  Toolkit* Tools = nullptr;
};

inline constexpr int kExitOk = 0;
inline constexpr int kExitInputFailed = 1;
inline constexpr int kExitUsage = 2;

}  // namespace vexa::cli
