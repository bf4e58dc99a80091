// The column of winds at the right of the diagram, each at its pressure, thinned where they would
// stand on each other.
#pragma once

#include <vector>

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// Every how many winds one is drawn: the ratio of the options, or, where that is 0, the smallest
/// number that leaves nine of ten neighbours at least a symbol apart.
///
/// places  vertical places of the winds on the page, any order
int WindRatio(const std::vector<double>& places, int option, double apart);

void DrawWindColumn(Plot& plot);

}  // namespace vexa::diagram
