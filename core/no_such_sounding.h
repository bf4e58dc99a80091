// A number beyond a file's last sounding: no damage of the file.
#pragma once

#include <string>
#include <string_view>

#include "core/fault.h"
#include "core/numbers.h"

namespace vexa {

inline constexpr int kFaultNoSuchSounding = 63;

/// Says how many soundings a file holds and which was asked for.
///
/// index  of the one that was asked for, from 0
inline Fault NoSuchSounding(std::string_view procedure, const std::string& name, int held,
                            int index) {
  return {kFaultNoSuchSounding, std::string(procedure),
          name + ": it holds " + Shortest(held) + (held == 1 ? " sounding" : " soundings") +
              ", number " + Shortest(index + 1) + " was asked for",
          name};
}

}  // namespace vexa
