// Every setting of the program, with its default: one plain value, of which the window, the command
// line and the tests have a copy. Its three parts differ in what a change makes stale: analyses and
// pictures, pictures alone, or neither. Functions ask for the part that they read.
#pragma once

#include "config/display_settings.h"
#include "config/system_options.h"

namespace vexa {

struct Options : DisplaySettings {
  SystemOptions System{};
  bool operator==(const Options&) const = default;
};

}  // namespace vexa
