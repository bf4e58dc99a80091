// The data levels of a sounding as exports and listings show them: temperature and wind levels
// brought together by height, each with what was observed there and what follows from it.
#pragma once

#include <optional>
#include <vector>

#include "analysis/analysis.h"
#include "core/sounding_record.h"

namespace vexa::output {

/// One level. What was not observed, or cannot be computed there, is empty.
struct LevelRow {
  double Press = 0;                     // hPa
  double Height = 0;                    // m above mean sea level
  std::optional<double> Temp{};         // °C
  std::optional<double> Dewpt{};        // °C
  std::optional<double> Dir{};          // degrees the wind blows from
  std::optional<double> Spd{};          // kt
  std::optional<double> Theta{};        // K
  std::optional<double> ThetaE{};       // K
  std::optional<double> Humidity{};     // %
  std::optional<double> MixingRatio{};  // g/kg
  std::optional<double> Water{};        // mm from the ground to the level
  std::optional<double> Density{};      // kg/m³
  std::optional<double> VirtualTemp{};  // °C
  std::optional<double> WetBulb{};      // °C
  std::optional<double> Shear{};        // kt per 1000 ft from the wind below
  std::optional<double> Richardson{};   // of the same layer; 999 without shear

  bool operator==(const LevelRow&) const = default;
};

/// Number of the wind that belongs to each temperature level by its number, 0 for none; entry 0
/// stands for no level.
std::vector<int> WindsOfLevels(const SoundingRecord& sounding,
                               const analysis::AnalysisResults& results);

/// Every level in the order of height. A wind belongs to the temperature level nearest to it when
/// both lie within 15 m, or 5 m plus half a per cent of their height above the ground: heights that
/// a source reports and those that follow from its temperatures differ by as much, besides the
/// difference between the lowest of both. Winds keep their order; where two are nearest to one
/// level the lower steps down if it can. Other winds are levels of their own, above the highest
/// temperature with the pressure of an isothermal continuation; winds that no pressure can be found
/// for are left out.
std::vector<LevelRow> IntegrateLevels(const SoundingRecord& sounding,
                                      const analysis::AnalysisResults& results);

/// The levels that tell the whole profile: those with a temperature or a wind that thinning keeps.
std::vector<LevelRow> SignificantLevels(const SoundingRecord& sounding,
                                        const analysis::AnalysisResults& results);

}  // namespace vexa::output
