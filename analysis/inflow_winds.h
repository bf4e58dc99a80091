// Winds of layers between any two heights, with those at their ends interpolated, and the winds
// that decide what a storm draws in and where its parts move.
#pragma once

#include <optional>
#include <vector>

#include "analysis/analysis.h"

namespace vexa::analysis {

struct WindPoint {
  double Height = 0;  // m above sea level
  WindVector Wind{};  // kt, components point where it comes from
};

/// The winds from a bottom to a top in m above sea level, both ends interpolated. Empty where an
/// end has no wind or two neighbours are further apart than kWidestWindGap.
std::vector<WindPoint> WindsBetween(const WindProfile& winds, double bottom, double top);

/// Helicity of winds relative to a motion, m²/s²; 0 of fewer than two.
double HelicityOf(const std::vector<WindPoint>& winds, const WindVector& motion);

/// The share of the winds' horizontal vorticity that points along the air that flows in relative to
/// a motion: 1 where all of it does, -1 where all points against it, 0 where it lies across.
/// Davies-Jones (1984), J. Atmos. Sci. 41, 2991. Empty without shear.
std::optional<double> StreamwiseShare(const std::vector<WindPoint>& winds,
                                      const WindVector& motion);

/// Mean speed of winds relative to a motion, kt, weighted by height.
double MeanRelativeSpeed(const std::vector<WindPoint>& winds, const WindVector& motion);

InflowWinds FindInflowWinds(const AnalysisResults& results);

}  // namespace vexa::analysis
