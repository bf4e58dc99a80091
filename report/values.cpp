#include "report/values.h"

#include "core/markers.h"
#include "core/numbers.h"

namespace vexa::report {

using analysis::ParcelAscent;

std::optional<double> Value(double value, int decimals) {
  if (NotAvailable(value)) return std::nullopt;
  return Rounded(value, decimals);
}

std::optional<double> Height(double height) {
  if (!HasHeight(height)) return std::nullopt;
  return Rounded(height, kHeightDecimals);
}

std::optional<double> Pressure(double press) {
  if (!HasHeight(press) || press <= 0) return std::nullopt;
  return Rounded(press, kPressDecimals);
}

std::optional<double> Energy(const ParcelAscent& ascent, double ParcelAscent::*energy) {
  if (!ascent.HasAnswer(energy)) return std::nullopt;
  return Rounded(ascent.*energy, kEnergyDecimals);
}

std::optional<double> IndexNumber(const analysis::IndexValue& index) {
  if (!index.Exists()) return std::nullopt;
  return Rounded(index.Value, kIndexDecimals);
}

bool HasPosition(const SoundingRecord& record) {
  return !record.LatHemi.empty() && !record.LonHemi.empty();
}

}  // namespace vexa::report
