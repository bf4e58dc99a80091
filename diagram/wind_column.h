// The column of winds at the right of the diagram, each at its pressure, thinned where they would
// stand on each other.
#pragma once

#include <cstddef>
#include <vector>

#include "diagram/plot_state.h"

namespace vexa::diagram {

/// How far a symbol reaches above and below, page positions.
struct Reach {
  double Top = 0;
  double Bottom = 0;
};

/// Which winds are drawn on the one axis: every n-th of the options and those that stay, or, where
/// the options say 0, those that stay and all that stand clear of the ones already chosen. A wind
/// that stays gives way only to another one in its very place, nine tenths behind it.
///
/// reaches  of the winds' symbols, lowest wind first
/// stays    the winds that are looked for by name, the most important first
std::vector<bool> ChooseWinds(const std::vector<Reach>& reaches,
                              const std::vector<std::size_t>& stays, int option);

/// The lowest and the strongest wind and those of mandatory levels are looked for by name.
void DrawWindColumn(Plot& plot);

}  // namespace vexa::diagram
