// What a forecast is made under, and the checks of what a user types for it: a bad entry gets its
// box and the value before it stays.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/interaction.h"

namespace vexa::forecast {

/// From the station's own winds, or from the soundings upwind.
enum class ForecastMode { Single, Multi };
/// How far up a change of the surface temperature spreads: not at all, or through one, two or all
/// three thirds of the boundary layer.
enum class Spread { None, Low, Medium, High };

constexpr auto Words(ForecastMode) {
  return std::to_array<std::string_view>({"Single", "Multi"});
}
constexpr auto Words(Spread) {
  return std::to_array<std::string_view>({"None", "Low", "Medium", "High"});
}

struct ForecastSettings {
  ForecastMode Mode = ForecastMode::Multi;
  bool UsesMain = true;
  double MainDepth = 3000;  // m above ground
  bool UsesBoundary = true;
  double BoundaryDepth = 1000;  // m above ground
  double RadiusKm = 600;
  int Percentage = 100;      // of the speed of the layer's wind
  double SurfaceChange = 0;  // °C per hour
  Spread SurfaceSpread = Spread::Medium;
  std::string SearchFolder{};  // where soundings are looked for; empty: beside the sounding
  bool AutoSave = false;
  std::string SaveFolder{};  // of a series; empty: the program's
  bool operator==(const ForecastSettings&) const = default;

  /// Depth of a layer in use, m; 0 when it is not.
  double MainInUse() const { return UsesMain ? MainDepth : 0; }
  double BoundaryInUse() const { return UsesBoundary ? BoundaryDepth : 0; }
};

/// The file that keeps them in the program's folder, its text, and what a text says.
std::string ForecastSettingsFile();
std::string Write(const ForecastSettings& settings);
ForecastSettings ReadForecastSettings(const std::string& text);

inline constexpr double kMostDepth = 5000;                      // m above ground
inline constexpr double kLeastRadius = 20, kMostRadius = 2000;  // km
inline constexpr int kLeastPercentage = 1, kMostPercentage = 100;

/// Takes a typed value; the box that refuses it when it is none or out of range.
[[nodiscard]] std::optional<Box> EnterDepth(std::string_view text, double& into);
[[nodiscard]] std::optional<Box> EnterRadius(std::string_view text, double& into);
[[nodiscard]] std::optional<Box> EnterPercentage(std::string_view text, int& into);
[[nodiscard]] std::optional<Box> EnterSurfaceChange(std::string_view text, double& into);

}  // namespace vexa::forecast
