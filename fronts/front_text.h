// Fronts as text: the table of layers, the characterisation of the front, the status block of the
// settings, and the account of what was a candidate and what each layer missed.
#pragma once

#include <string>
#include <vector>

#include "config/display_settings.h"
#include "config/window_settings.h"
#include "fronts/front_analysis.h"

namespace vexa::fronts {

/// What texts are made from.
struct FrontSource {
  const FrontResults& Fronts;
  const FrontSettings& Front;
  const DisplaySettings& Set;  // units of pressure, height and speed
  DistanceUnits Distance = DistanceUnits::Kilometers;
};

/// The layers, lowest first, under their heading of three lines; at last what the star says.
std::vector<std::string> LayerTable(const FrontSource& from);

/// "Front character: " and what follows, or that there is none.
std::vector<std::string> Characterisation(const FrontSource& from);

/// The settings in force.
std::vector<std::string> StatusBlock(const FrontSource& from);

/// How the values of the front came about, or what the layers and zones missed, for beside the
/// picture.
std::vector<std::string> Reasons(const FrontSource& from);

/// Which layers and zones were candidates, which threshold each other one missed, and how the
/// values of the front came about.
std::vector<std::string> ExplainFronts(const FrontSource& from);

/// "No Fronts Found", on the plot.
inline constexpr std::string_view kNoFrontsFound = "No Fronts Found";
/// Heading of the side profile.
inline constexpr std::string_view kProfileHeading = "PRS  -  Vn";

}  // namespace vexa::fronts
