// Fronts in time: the heights of the fronts that several soundings of one station show, one behind
// the other, so that a front is seen to come down to the station or to rise away from it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "config/display_settings.h"
#include "fronts/front_analysis.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::fronts {

/// What one sounding tells.
struct FrontMoment {
  double Hours = 0;     // since the first
  std::string Time{};   // "12Z 06 Feb"
  std::string Title{};  // of the sounding
  std::optional<Front> Found{};
};

/// The moments by time, lowest first; heights over the station in the options' unit.
Picture PlotFrontSeries(std::vector<FrontMoment> moments, const std::string& station,
                        const DisplaySettings& set, const Surface& surface);

/// The same as text, a line for each.
std::vector<std::string> ListFrontSeries(std::vector<FrontMoment> moments,
                                         const DisplaySettings& set);

}  // namespace vexa::fronts
