// The boxes of the diagram's page: what the layouts' regions hold beside the diagram itself.
#pragma once

#include <vector>

#include "config/options.h"
#include "picture/layout.h"
#include "program/program.h"

namespace vexa {

/// The small hodograph, the legend of all lines and the side boxes of the sounding in work under
/// these options, which must last until the boxes are drawn.
std::vector<PageBox> PageBoxesOf(const Program& program, const Options& set);

}  // namespace vexa
