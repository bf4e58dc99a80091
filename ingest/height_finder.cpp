#include "ingest/height_finder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>

#include "analysis/moist_air.h"
#include "analysis/standard_atmosphere.h"
#include "analysis/vapor_table.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::ingest {
namespace {

constexpr double kLongestStep = 0.02;  // in ln p, some 150 m

double StandardTempK(double press) {
  const double height = analysis::IsaHeight(press);
  constexpr double kHighest = 80000;  // m, where the standard atmosphere ends
  return analysis::IsaTemp(HasHeight(height) ? height : kHighest) + kKelvinOffset;
}

// Index of the level at or below a ln p in falling order, so that the next is above it.
template <class Values, class Projection>
std::size_t LowerOf(const Values& values, double logPress, Projection projection) {
  const auto above = std::ranges::upper_bound(values, logPress, std::greater{}, projection);
  const auto index = static_cast<std::size_t>(above - values.begin());
  return std::clamp<std::size_t>(index, 1, values.size() - 1) - 1;
}

double MixingRatio(double press, double dewpt) {
  const double vapor = analysis::TabledSatVapor(dewpt, SaturationOver::Water);
  return vapor == press ? 0 : analysis::kEpsilon * vapor / (press - vapor);
}

double OnLine(double at, double x0, double x1, double y0, double y1) {
  return y0 + (y1 - y0) * (at - x0) / (x1 - x0);
}

}  // namespace

void HeightFinder::AddKnown(double press, double height) {
  const double logPress = std::log(press);
  if (known_.empty() || logPress < known_.back().LogPress) known_.push_back({logPress, height});
}

void HeightFinder::SetTemperatures(std::vector<double> press, std::vector<double> temp,
                                   std::vector<double> dewpt) {
  logPress_.clear();
  virtualTempK_.clear();
  for (std::size_t i = 0; i < press.size(); ++i) {
    const double mixing = IsMissing(dewpt[i]) ? 0 : MixingRatio(press[i], dewpt[i]);
    logPress_.push_back(std::log(press[i]));
    virtualTempK_.push_back(analysis::VirtualTemp(temp[i], std::max(mixing, 0.0)) + kKelvinOffset);
  }
}

double HeightFinder::VirtualTempK(double logPress) {
  if (logPress_.size() < 2 || logPress > logPress_.front() || logPress < logPress_.back()) {
    usedStandardAtmosphere_ = true;
    return StandardTempK(std::exp(logPress));
  }
  const std::size_t i = LowerOf(logPress_, logPress, std::identity{});
  return OnLine(logPress, logPress_[i], logPress_[i + 1], virtualTempK_[i], virtualTempK_[i + 1]);
}

double HeightFinder::ThicknessTo(double fromLogPress, double toLogPress) {
  const int steps =
      std::max(1, static_cast<int>(std::ceil(std::fabs(toLogPress - fromLogPress) / kLongestStep)));
  const double step = (toLogPress - fromLogPress) / steps;
  double thickness = 0;
  for (int i = 0; i < steps; ++i) {
    thickness -= analysis::kDryGasConstant / analysis::kGravity *
                 VirtualTempK(fromLogPress + (i + 0.5) * step) * step;
  }
  return thickness;
}

double HeightFinder::At(double press) {
  const double logPress = std::log(press);
  if (known_.empty()) return ThicknessTo(std::log(analysis::IsaPressure(0)), logPress);
  const Known& lowest = known_.front();
  const Known& highest = known_.back();
  if (logPress > lowest.LogPress) return lowest.Height + ThicknessTo(lowest.LogPress, logPress);
  if (logPress < highest.LogPress) return highest.Height + ThicknessTo(highest.LogPress, logPress);
  if (known_.size() == 1) return lowest.Height;
  const std::size_t i = LowerOf(known_, logPress, &Known::LogPress);
  return OnLine(logPress, known_[i].LogPress, known_[i + 1].LogPress, known_[i].Height,
                 known_[i + 1].Height);
}

}  // namespace vexa::ingest
