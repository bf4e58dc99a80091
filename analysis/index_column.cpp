// Lapse rates and moisture of layers.
#include <algorithm>
#include <cmath>
#include <functional>

#include "analysis/index_formulas.h"
#include "analysis/interpolate.h"
#include "analysis/layers.h"
#include "analysis/moist_air.h"
#include "core/numbers.h"

namespace vexa::analysis::formula {
namespace {

// Between two pressures.
double LapseByPressure(In& in, double low, double high, double (In::*temp)(double)) {
  const double rise = (in.Height(high) - in.Height(low)) / 1000;
  if (in.Failed()) return 0;
  if (!(rise > 0)) return in.Fail("no height between the two levels");
  return ((in.*temp)(low) - (in.*temp)(high)) / rise;
}

// Between two heights above ground.
double LapseByHeight(In& in, double low, double high, Quantity quantity) {
  if (in.Levels().Count() == 0) return in.Fail("the sounding has no levels");
  const double ground = in.Levels().Height(1);
  const double rate = MeanLapseRate(in.Levels(), ground + low, ground + high, quantity);
  if (NotAvailable(rate)) {
    return in.Fail("the sounding ends below " + Mask(high, "####0") + " m above ground");
  }
  return rate;
}

// cm of liquid between two pressures; the ground where the lower one lies beneath it.
double WaterBetween(In& in, double bottom, double top) {
  const LevelProfile& levels = in.Levels();
  const double low = std::min(bottom, in.SurfacePress());
  if (in.Failed()) return 0;
  if (!(low > top)) return in.Fail("the layer lies below the ground");
  const Sample first = SampleAt(levels, low, Quantity::MixingRatio);
  const Sample last = SampleAt(levels, top, Quantity::MixingRatio);
  if (!first.Ok() || !last.Ok()) return in.Fail("no dew point at an end of the layer");
  double sum = 0;
  double pressBelow = low;
  double below = first.Value;
  const auto add = [&](double press, double mixing) {
    sum += (below + mixing) / 2 * (pressBelow - press) * 100 / kGravity;
    pressBelow = press;
    below = mixing;
  };
  const std::vector<double>& pressures = levels.Press.Values();
  const double* mixings = levels.MixingRatio.Values().data();
  std::size_t from = 0;
  if (levels.PressFalls) {
    const auto above = std::ranges::upper_bound(pressures, low, std::greater<>{});
    from = static_cast<std::size_t>(above - pressures.begin());
  }
  for (std::size_t i = from; i < pressures.size() && pressures[i] > top; ++i) {
    if (pressures[i] < low && !NotAvailable(mixings[i])) add(pressures[i], mixings[i]);
  }
  add(top, last.Value);
  in.Note("from", low, "hPa");
  return sum / 10;
}

}  // namespace

double LapseLow(In& in) {
  return LapseByHeight(in, 0, 3000, Quantity::Temp);
}
double LapseLowVirtual(In& in) {
  return LapseByHeight(in, 0, 3000, Quantity::VirtualTemp);
}
double LapseMiddle(In& in) {
  return LapseByHeight(in, 3000, 6000, Quantity::Temp);
}
double LapseMiddleVirtual(In& in) {
  return LapseByHeight(in, 3000, 6000, Quantity::VirtualTemp);
}
double LapseDeep(In& in) {
  return LapseByPressure(in, 850, 500, &In::Temp);
}
double LapseDeepVirtual(In& in) {
  return LapseByPressure(in, 850, 500, &In::VirtualTemp);
}
double LapseHighVirtual(In& in) {
  return LapseByPressure(in, 700, 500, &In::VirtualTemp);
}

double MeanMixingRatio(In& in) {
  const double mean = in.Results().MeanLayerMixingRatio;
  if (NotAvailable(mean)) return in.Fail("no dew point at an end of the mean layer");
  in.Note("depth of the layer", in.Set().CclMeanLayer, "hPa");
  return mean * 1000;
}

double WaterLowest(In& in) {
  if (in.SurfacePress() <= 850) in.Fail("the ground lies above 850 hPa");
  return WaterBetween(in, in.SurfacePress(), 850);
}
double WaterLow(In& in) {
  return WaterBetween(in, 850, 700);
}
double WaterMiddle(In& in) {
  return WaterBetween(in, 700, 500);
}
double WaterHigh(In& in) {
  return WaterBetween(in, 500, 300);
}

}  // namespace vexa::analysis::formula
