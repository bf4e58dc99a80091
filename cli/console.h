// Where a command writes: two sinks, so that tests read what users see.
#pragma once

#include <functional>
#include <string_view>

namespace vexa::cli {

struct Console {
  std::function<void(std::string_view)> Out;
  std::function<void(std::string_view)> Err;
};

inline constexpr int kExitOk = 0;
inline constexpr int kExitInputFailed = 1;
inline constexpr int kExitUsage = 2;

}  // namespace vexa::cli
