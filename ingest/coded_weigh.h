// How far a temperature of a coded message is off, by all that speaks of it: the lines on which
// mandatory levels lie between significant ones, the heights, and the levels around it.
#pragma once

#include <cstddef>
#include <vector>

#include "ingest/coded_air.h"

namespace vexa::ingest {

/// By how much one temperature would have to be changed, were it the only wrong one.
struct Misfit {
  double Off = 0;        // °C that it is too warm
  double Certainty = 0;  // the same in its standard errors
};

/// Of each temperature of a profile (HeldAir::Profile) the error that explains best what does not
/// fit, by least squares: mandatory levels off their lines, bends at the level and its neighbours,
/// and heights that leave the hydrostatic ones by a step, which are rounded to 1 m or 10 m and grow
/// uncertain with the layer (after Collins, J. Atmos. Oceanic Technol. 15, 1998, who judges by the
/// joint residuals of heights and temperatures). Heights alone do not say which temperature it is:
/// none where the others bear out less than a fifth. The standard errors are those of the reports
/// of sixty stations.
std::vector<Misfit> WeighTemps(const HeldAir& air, const std::vector<std::size_t>& profile);

}  // namespace vexa::ingest
