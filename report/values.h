// What the three forms of the report share: values as they are written, or none.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "analysis/analysis.h"
#include "core/sounding_record.h"

namespace vexa::report {

// Decimals of what is written: finer than any instrument, coarser than rounding noise.
inline constexpr int kPressDecimals = 2;
inline constexpr int kHeightDecimals = 1;
inline constexpr int kTempDecimals = 2;
inline constexpr int kEnergyDecimals = 1;
inline constexpr int kIndexDecimals = 3;

struct LiftName {
  analysis::LiftType Type;
  std::string_view Name;
};
inline constexpr LiftName kLifts[] = {{analysis::LiftType::Surface, "surface"},
                                      {analysis::LiftType::MeanLayer, "mean layer"},
                                      {analysis::LiftType::MostUnstable, "most unstable"}};

std::optional<double> Value(double value, int decimals);
std::optional<double> Height(double height);
std::optional<double> Pressure(double press);
/// An energy counts only where there was a parcel to lift.
std::optional<double> Energy(const analysis::ParcelAscent& ascent,
                             double analysis::ParcelAscent::*energy);
/// An index says itself whether it exists: some are large, such as heights and ventilation.
std::optional<double> IndexNumber(const analysis::IndexValue& index);
bool HasPosition(const SoundingRecord& record);

}  // namespace vexa::report
