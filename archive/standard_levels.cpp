#include "archive/standard_levels.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "analysis/interpolate.h"

namespace vexa::archive {
namespace {

constexpr double kTenths = 10;  // to the unit
constexpr std::int16_t kNoTenths = std::numeric_limits<std::int16_t>::min();
constexpr std::optional<double> StandardLevel::*kQuantities[] = {
    &StandardLevel::Temp, &StandardLevel::Dewpt, &StandardLevel::U, &StandardLevel::V};
constexpr std::size_t kBytes = kStandardPress.size() * std::size(kQuantities) * 2;

std::optional<double> At(const analysis::LevelProfile& levels, double press,
                         analysis::Quantity quantity) {
  const analysis::Sample sample = analysis::SampleAt(levels, press, quantity);
  return sample.Ok() ? std::optional(sample.Value) : std::nullopt;
}

}  // namespace

StandardLevels LevelsOf(const analysis::AnalysisResults& results) {
  StandardLevels all;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const double press = kStandardPress[i];
    StandardLevel& level = all[i];
    level.Temp = At(results.Levels, press, analysis::Quantity::Temp);
    level.Dewpt = At(results.Levels, press, analysis::Quantity::Dewpt);
    const std::optional<double> height = At(results.Levels, press, analysis::Quantity::Height);
    if (!height) continue;
    const auto wind = analysis::VectorAtHeight(results.Winds, *height);
    if (!wind) continue;
    level.U = wind->U;
    level.V = wind->V;
  }
  return all;
}

std::string Packed(const StandardLevels& levels) {
  std::string bytes;
  bytes.reserve(kBytes);
  for (const StandardLevel& level : levels) {
    for (const auto quantity : kQuantities) {
      constexpr double kLargest = std::numeric_limits<std::int16_t>::max();
      const std::optional<double>& value = level.*quantity;
      const bool fits = value && std::fabs(*value * kTenths) <= kLargest;
      const auto steps = static_cast<std::uint16_t>(
          fits ? static_cast<std::int16_t>(std::lround(*value * kTenths)) : kNoTenths);
      bytes += static_cast<char>(steps & 0xff);
      bytes += static_cast<char>(steps >> 8);
    }
  }
  return bytes;
}

StandardLevels Unpacked(std::string_view bytes) {
  StandardLevels levels;
  if (bytes.size() != kBytes) return levels;
  std::size_t at = 0;
  for (StandardLevel& level : levels) {
    for (const auto quantity : kQuantities) {
      const unsigned low = static_cast<unsigned char>(bytes[at]);
      const unsigned high = static_cast<unsigned char>(bytes[at + 1]);
      const auto steps = static_cast<std::int16_t>(static_cast<std::uint16_t>(low | high << 8));
      if (steps != kNoTenths) level.*quantity = steps / kTenths;
      at += 2;
    }
  }
  return levels;
}

}  // namespace vexa::archive
