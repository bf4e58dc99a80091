// The analysis beside the hodograph, line by line: storm motion and its method, the energies and
// shears that depend on it.
#pragma once

#include <string>
#include <vector>

#include "hodograph/hodograph_plot.h"

namespace vexa::hodograph {

struct PanelLine {
  std::string Text{};
  std::string Spot{};  // what the pointer reads there; may be empty
};

/// The lines in their fixed order. A value that could not be computed reads "--".
std::vector<PanelLine> AnalysisPanel(const HodographInput& input);

}  // namespace vexa::hodograph
