#include "forecast/forecast_settings.h"

#include <cmath>
#include <string>

#include "core/numbers.h"

namespace vexa::forecast {
namespace {

constexpr std::string_view kRangeTitle = "Data range error";

Box RangeBox(std::string_view text) {
  return {.Title = std::string(kRangeTitle), .Text = std::string(text)};
}

bool TakeWithin(std::string_view text, double least, double most, double& into) {
  const std::optional<double> value = ParseNumber(text);
  if (!value || *value < least || *value > most) return false;
  into = *value;
  return true;
}

}  // namespace

std::optional<Box> EnterDepth(std::string_view text, double& into) {
  if (TakeWithin(text, 0, kMostDepth, into)) return std::nullopt;
  return RangeBox("Range is 0 to 5000 meters, AGL.");
}

std::optional<Box> EnterRadius(std::string_view text, double& into) {
  if (TakeWithin(text, kLeastRadius, kMostRadius, into)) return std::nullopt;
  return RangeBox("Range is 20 to 2000 km.");
}

std::optional<Box> EnterPercentage(std::string_view text, int& into) {
  const std::optional<int> value = ParseWhole(text);
  if (!value) return RangeBox("Only integer values are allowed.");
  if (*value < kLeastPercentage || *value > kMostPercentage) {
    return RangeBox("Range is 1% to 100%");
  }
  into = *value;
  return std::nullopt;
}

std::optional<Box> EnterSurfaceChange(std::string_view text, double& into) {
  constexpr double kMostChange = 20;  // °C per hour: more is a slip of the keys
  if (TakeWithin(text, -kMostChange, kMostChange, into)) return std::nullopt;
  return Box{.Title = "Bad", .Text = "Invalid data"};
}

}  // namespace vexa::forecast
