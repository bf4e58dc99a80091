#include "analysis/standard_atmosphere.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/moist_air.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kIsaGasConstant = 287.05287;  // J/(kg K)
constexpr double kIsaKelvinOffset = 273.15;    // K: 15 °C is 288.15 K
constexpr double kIsaTop = 80000;              // m
constexpr double kSeaLevelPress = 1013.25;     // hPa
constexpr double kSeaLevelTempK = 288.15;      // K
constexpr double kSeaLevelDensity = 1.225;     // kg/m³
constexpr double kTroposphereLapse = 0.0065;   // K/m
constexpr double kDensityExponent = 0.234969;  // of the troposphere's density law

struct IsaLayer {
  double Base;   // m, geopotential
  double TempK;  // K at the base
  double Slope;  // K/m
  double Press;  // hPa at the base
  double LogPress = 0;
};

double LayerPressure(const IsaLayer& layer, double height) {
  const double rise = height - layer.Base;
  if (layer.Slope == 0) {
    return layer.Press * std::exp(-kGravity * rise / (kIsaGasConstant * layer.TempK));
  }
  return layer.Press * std::pow(1 + layer.Slope * rise / layer.TempK,
                                -kGravity / (kIsaGasConstant * layer.Slope));
}

struct IsaTable {
  std::array<IsaLayer, 7> Layers;
  double TopPress;  // hPa
};

const IsaTable& Isa() {
  static const IsaTable kTable = [] {
    IsaTable table{{{{0, kSeaLevelTempK, -kTroposphereLapse, kSeaLevelPress, 0},
                     {11000, 216.65, 0, 0, 0},
                     {20000, 216.65, 0.0010, 0, 0},
                     {32000, 228.65, 0.0028, 0, 0},
                     {47000, 270.65, 0, 0, 0},
                     {51000, 270.65, -0.0028, 0, 0},
                     {71000, 214.65, -0.0020, 0, 0}}},
                   0};
    for (std::size_t i = 1; i < table.Layers.size(); ++i) {
      table.Layers[i].Press = LayerPressure(table.Layers[i - 1], table.Layers[i].Base);
    }
    for (IsaLayer& layer : table.Layers) layer.LogPress = std::log(layer.Press);
    table.TopPress = LayerPressure(table.Layers.back(), kIsaTop);
    return table;
  }();
  return kTable;
}

// The layer of a height; the lowest one for heights below the sea.
const IsaLayer& LayerOf(double height) {
  const auto& layers = Isa().Layers;
  const auto above = std::find_if(layers.begin() + 1, layers.end(),
                                  [&](const IsaLayer& layer) { return layer.Base > height; });
  return *(above - 1);
}

// IsaHeight of logarithms of pressures that lie in one layer.
VEXA_WIDE void FillLayerHeights(IsaLayer layer, const double* logs, std::size_t count,
                                double* heights) {
  const double perDepth = layer.Slope == 0 ? 0 : layer.TempK / layer.Slope;
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < count; ++i) {
    const double depth = kIsaGasConstant / kGravity * (layer.LogPress - logs[i]);
    const double sloping = perDepth * ColumnExpm1(layer.Slope * depth);
    heights[i] = layer.Base + (layer.Slope == 0 ? layer.TempK * depth : sloping);
  }
}

// The first place from one on whose pressure does not lie in a layer.
VEXA_WIDE std::size_t EndOfLayer(const double* pressures, std::size_t from, std::size_t count,
                                 double least, double most) {
  return FirstThat(from, count, [=](std::size_t i) {
    return !((pressures[i] > least) & (pressures[i] <= most));
  });
}

}  // namespace

double IsaPressure(double height) {
  if (!(height <= kIsaTop) || !std::isfinite(height)) return kNotReached;
  return LayerPressure(LayerOf(height), height);
}

double IsaHeight(double press) {
  return IsaHeight(press, press > 0 ? std::log(press) : 0);
}

double IsaHeight(double press, double logPress) {
  if (!(press >= Isa().TopPress) || !std::isfinite(press)) return kNotReached;
  const auto& layers = Isa().Layers;
  const auto above = std::find_if(layers.begin() + 1, layers.end(),
                                  [&](const IsaLayer& next) { return next.Press < press; });
  const IsaLayer& layer = *(above - 1);
  const double depth = kIsaGasConstant / kGravity * (layer.LogPress - logPress);
  if (layer.Slope == 0) return layer.Base + layer.TempK * depth;
  return layer.Base + layer.TempK / layer.Slope * std::expm1(layer.Slope * depth);
}

void FillIsaHeights(const double* pressures, const double* logs, std::size_t count,
                    double* heights) {
  constexpr double kHighest = 3000;  // hPa, to which the lowest layer's exponential is near 1
  const auto& layers = Isa().Layers;
  for (std::size_t i = 0; i < count;) {
    const double press = pressures[i];
    if (!(press >= Isa().TopPress && press < kHighest)) {
      heights[i] = IsaHeight(press, logs[i]);
      ++i;
      continue;
    }
    const auto above = std::find_if(layers.begin() + 1, layers.end(),
                                    [&](const IsaLayer& next) { return next.Press < press; });
    const double least = above == layers.end() ? Isa().TopPress : above->Press;
    const double most = above - 1 == layers.begin() ? kHighest : (above - 1)->Press;
    const std::size_t end = EndOfLayer(pressures, i + 1, count, least, most);
    FillLayerHeights(*(above - 1), logs + i, end - i, heights + i);
    i = end;
  }
}

double IsaTemp(double height) {
  if (!(height <= kIsaTop) || !std::isfinite(height)) return kMissing;
  const IsaLayer& layer = LayerOf(height);
  return layer.TempK + layer.Slope * (height - layer.Base) - kIsaKelvinOffset;
}

double Qnh(double stationPress, double stationHeight) {
  const double altitude = IsaHeight(stationPress);
  if (!HasHeight(altitude)) return kNone;
  const double press = IsaPressure(altitude - stationHeight);
  return press == kNotReached ? kNone : press;
}

double DensityAltitude(double density) {
  return kSeaLevelTempK / kTroposphereLapse *
         (1 - std::pow(std::max(density, 0.0) / kSeaLevelDensity, kDensityExponent));
}

double AirDensity(double press, double virtualTemp) {
  const double tempK = virtualTemp + kKelvinOffset;
  return tempK > 0 ? 100 * press / (kDryGasConstant * tempK) : 0;
}

}  // namespace vexa::analysis
