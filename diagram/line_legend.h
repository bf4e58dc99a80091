// The legend for those who learn to read the diagram: every line and area on it with a sample and a
// sentence on what it says.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/display_settings.h"
#include "diagram/palette.h"
#include "picture/layout.h"

namespace vexa::diagram {

/// What a line of the legend stands for.
struct LegendEntry {
  std::string_view Name;
  std::string_view Sentence;
  Pen Stroke{};   // of a line
  Brush Fill{};   // of an area
  Brush Hatch{};  // over it
};

/// The entries of what the options put on the diagram, the most telling first.
std::vector<LegendEntry> LegendEntries(const DisplaySettings& options);

/// The legend as a box for the region "lines". Entries that find no room leave from the end, and
/// the heading says where to read on.
PageBox LineLegendBox(const DisplaySettings& options);

}  // namespace vexa::diagram
