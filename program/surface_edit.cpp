#include "program/surface_edit.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/level_profile.h"
#include "analysis/moist_air.h"
#include "analysis/parcel_source.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/record_edits.h"

namespace vexa {
namespace {

constexpr double kThinnest = 1;  // hPa from the layer's top to a level that serves as it

// Linear in ln p between two levels.
double Between(double lower, double upper, double share) {
  return IsMissing(lower) || IsMissing(upper) ? kMissing : lower + share * (upper - lower);
}

// Where a dry adiabat that is warmer than the sounding at one level and colder at the next meets
// it, as a share of ln p between them.
double Crossing(const SoundingRecord& record, int below, double theta) {
  const double low = std::log(record.Press(below));
  const double span = std::log(record.Press(below + 1)) - low;
  double from = 0;
  double to = 1;
  for (int i = 0; i < 50; ++i) {
    const double share = (from + to) / 2;
    const double air = Between(record.Temp(below), record.Temp(below + 1), share);
    const double lifted = analysis::DryAdiabatTemp(theta, std::exp(low + share * span));
    (lifted > air ? from : to) = share;
  }
  return (from + to) / 2;
}

}  // namespace

std::optional<SurfaceValues> SurfaceOf(const SoundingRecord& record) {
  if (record.NumTempLevels() < 1) return std::nullopt;
  SurfaceValues values{record.Temp(1), record.Dewpt(1), {}, {}};
  if (record.NumWindLevels() > 0 && record.HasWind(1)) {
    values.Dir = record.WindDir(1);
    values.Spd = record.WindSpd(1);
  }
  return values;
}

std::optional<Fault> SetSurface(SoundingRecord& record, const SurfaceValues& to) {
  SoundingRecord changed = record;
  if (auto fault = ChangeTempLevel(changed, 1, {record.Press(1), to.Temp, to.Dewpt})) return fault;
  if (to.Dir && to.Spd && record.NumWindLevels() > 0) {
    const WindLevel wind{record.WindHgt(1), *to.Dir, *to.Spd};
    if (auto fault = ChangeWindLevel(changed, 1, wind)) return fault;
  }
  record = std::move(changed);
  return std::nullopt;
}

bool HotMix(SoundingRecord& record, const Options& options) {
  if (record.NumTempLevels() < 2) return false;
  const double theta = analysis::DryTheta(record.Press(1), record.Temp(1));
  int inside = 1;  // the highest level of the layer
  while (inside < record.NumTempLevels() &&
         analysis::DryAdiabatTemp(theta, record.Press(inside + 1)) > record.Temp(inside + 1)) {
    ++inside;
  }
  if (inside == record.NumTempLevels()) return false;
  if (inside == 1) return false;
  const double share = Crossing(record, inside, theta);
  const double top =
      record.Press(inside) * std::pow(record.Press(inside + 1) / record.Press(inside), share);
  const double airTop = Between(record.Temp(inside), record.Temp(inside + 1), share);
  const double dewTop = Between(record.Dewpt(inside), record.Dewpt(inside + 1), share);
  const double depth = record.Press(1) - top;
  const analysis::LayerMean mean =
      analysis::MeanOfLowestLayer(analysis::DeriveLevels(record, options), depth);
  const auto moisture = [&](double press, double temp, double dewpt) {
    if (NotAvailable(mean.MixingRatio) || IsMissing(dewpt)) return dewpt;
    return std::min(temp,
                    analysis::DewpointFromMixingRatio(press, mean.MixingRatio, options.Saturation));
  };
  const bool apart =
      record.Press(inside) - top > kThinnest && top - record.Press(inside + 1) > kThinnest;
  for (int level = 1; level <= inside; ++level) {
    const double press = record.Press(level);
    if (level > 1) record.Temp(level) = analysis::DryAdiabatTemp(theta, press);
    record.Dewpt(level) = moisture(press, record.Temp(level), record.Dewpt(level));
  }
  if (apart) {
    // Refused only where a level stands already.
    (void)AddTempLevel(record,
                       {top, airTop, IsMissing(dewTop) ? dewTop : std::min(dewTop, airTop)});
  }
  return true;
}

}  // namespace vexa
