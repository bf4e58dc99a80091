// The column of winds at the right of the diagram, each at its pressure, thinned where they would
// stand on each other.
#pragma once

#include <vector>

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// How far a symbol reaches above and below, page positions.
struct Reach {
  double Top = 0;
  double Bottom = 0;
};

/// Every how many winds one is drawn: the ratio of the options, or, where that is 0, the smallest
/// number that leaves three of four symbols clear of the others, in the middle or beside it.
///
/// reaches   of the winds' symbols, lowest wind first
/// hasLanes  symbols may step aside
int WindRatio(const std::vector<Reach>& reaches, int option, bool hasLanes);

/// However much is thinned, the lowest and the strongest wind and those of mandatory levels stay.
void DrawWindColumn(Plot& plot);

}  // namespace vexa::diagram
