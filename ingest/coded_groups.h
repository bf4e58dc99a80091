// The five-figure groups of coded upper-air messages: temperatures with their depression, winds
// with the five degrees hidden in the speed, and figures with slashes for what was not observed.
#pragma once

#include <optional>
#include <string_view>

namespace vexa::ingest {

/// Five characters, each a figure or a slash.
bool IsGroup(std::string_view group);

/// The figures of a group from a place on; empty where one is no figure.
std::optional<int> Figures(std::string_view group, std::size_t from, std::size_t count);

struct GroupTemp {
  std::optional<double> Temp{}, Dewpt{};  // °C
};

/// "22212": 22.2 °C with a depression of 1.2; an odd tenth is below zero; "//" and "/////" are
/// missing. Empty for a group that can be no temperature: garbled, or hotter than 60 °C.
std::optional<GroupTemp> ReadTempGroup(std::string_view group);

struct GroupWind {
  std::optional<double> Dir{}, Spd{};  // degrees, knots
};

/// "24601": 245 degrees, 101; slashes are missing. Empty for a group that can be no wind: a
/// direction beyond 360 or more than 300 knots.
///
/// toKnots  factor of the message's unit
std::optional<GroupWind> ReadWindGroup(std::string_view group, double toKnots);

}  // namespace vexa::ingest
