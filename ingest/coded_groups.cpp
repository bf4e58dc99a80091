#include "ingest/coded_groups.h"

#include <algorithm>

namespace vexa::ingest {
namespace {

constexpr double kFastest = 300;  // knots
constexpr double kHottest = 60;   // °C

}  // namespace

bool IsGroup(std::string_view group) {
  return group.size() == 5 && group.find_first_not_of("0123456789/") == std::string_view::npos;
}

std::optional<int> Figures(std::string_view group, std::size_t from, std::size_t count) {
  if (from + count > group.size()) return std::nullopt;
  int value = 0;
  for (const char c : group.substr(from, count)) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

std::optional<GroupTemp> ReadTempGroup(std::string_view group) {
  if (!IsGroup(group)) return std::nullopt;
  GroupTemp read;
  const std::optional<int> tenths = Figures(group, 0, 3);
  if (!tenths) return group.starts_with('/') ? std::optional(read) : std::nullopt;
  const int signedTenths = *tenths % 2 == 0 ? *tenths : -*tenths;
  read.Temp = signedTenths / 10.0;
  if (*read.Temp > kHottest) return std::nullopt;
  const std::optional<int> coded = Figures(group, 3, 2);
  constexpr int kLastTenths = 50, kFirstWhole = 56;
  if (coded && *coded <= kLastTenths) {
    read.Dewpt = (signedTenths - *coded) / 10.0;
  } else if (coded && *coded >= kFirstWhole) {
    read.Dewpt = (signedTenths - (*coded - kLastTenths) * 10) / 10.0;
  }
  return read;
}

std::optional<GroupWind> ReadWindGroup(std::string_view group, double toKnots) {
  if (!IsGroup(group)) return std::nullopt;
  GroupWind read;
  const std::optional<int> tens = Figures(group, 0, 2), coded = Figures(group, 2, 3);
  constexpr int kMostTens = 36, kFiveDegrees = 500;
  if (tens && *tens > kMostTens) return std::nullopt;
  if (!coded) return read;
  const bool addsFive = *coded >= kFiveDegrees;
  const double speed = (addsFive ? *coded - kFiveDegrees : *coded) * toKnots;
  if (speed > kFastest) return std::nullopt;
  if (!tens) return read;
  const int direction = *tens * 10 + (addsFive ? 5 : 0);
  read.Dir = direction > 360 ? direction - 360 : direction;
  read.Spd = speed;
  return read;
}

}  // namespace vexa::ingest
