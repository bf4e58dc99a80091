#include "analysis/interpolate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>

#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/moist_air.h"
#include "analysis/pressure_grid.h"
#include "analysis/standard_atmosphere.h"
#include "analysis/working_wind.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kEqualPressures = 0.001;    // ln p difference of levels with one pressure
constexpr double kDeepestBelowGround = 500;  // m that GetPRESS goes on below the lowest level
constexpr double kWindBelowLowest = 100;     // m below the lowest wind that it still serves
constexpr double kWindAboveHighest = 2;      // m above the highest: heights are rounded

// The two neighbouring levels between which a value lies; Low == High at a level.
struct Bracket {
  std::size_t Low = 0;
  std::size_t High = 0;
};

// What std::lower_bound finds, in steps that follow the same way for every value: which half it
// is that goes on cannot be foretold.
template <class Before>
std::size_t LowerBound(const std::vector<double>& values, double wanted, Before before) {
  const double* base = values.data();
  std::size_t count = values.size();
  if (count == 0) return 0;
  while (count > 1) {
    const std::size_t half = count / 2;
    base += before(base[half - 1], wanted) ? half : 0;
    count -= half;
  }
  return static_cast<std::size_t>(base - values.data()) + (before(*base, wanted) ? 1 : 0);
}

// The bracket of a value in an ordered array, by halving. Should the order be broken, as in a
// sounding that its check complained about, and halving miss, the levels are scanned upward.
//
// isOrdered  known to be in order: nothing is to be scanned
template <class Before>
std::optional<Bracket> FindBracket(const std::vector<double>& values, double wanted, Before before,
                                   bool isOrdered) {
  const auto bracketEndingAt = [&](std::size_t at) -> std::optional<Bracket> {
    if (values[at] == wanted) return Bracket{at, at};
    if (at > 0 && before(values[at - 1], wanted) && before(wanted, values[at])) {
      return Bracket{at - 1, at};
    }
    return std::nullopt;
  };
  const std::size_t found = LowerBound(values, wanted, before);
  if (found < values.size()) {
    if (const auto bracket = bracketEndingAt(found)) return bracket;
  }
  if (isOrdered || std::is_sorted(values.begin(), values.end(), before)) return std::nullopt;
  for (std::size_t at = 0; at < values.size(); ++at) {
    if (const auto bracket = bracketEndingAt(at)) return bracket;
  }
  return std::nullopt;
}

// The winds about a height among levels of which some may have none; empty outside.
template <class HasWind>
std::optional<Bracket> WindsAbout(const std::vector<double>& heights, double height,
                                  HasWind hasWind, bool isOrdered) {
  if (heights.empty() || !std::isfinite(height)) return std::nullopt;
  std::size_t lowest = 0;
  while (lowest < heights.size() && !hasWind(lowest)) ++lowest;
  if (lowest == heights.size()) return std::nullopt;
  std::size_t highest = heights.size() - 1;
  while (!hasWind(highest)) --highest;
  if (height < heights[lowest]) {
    if (heights[lowest] - height > kWindBelowLowest) return std::nullopt;
    return Bracket{lowest, lowest};
  }
  if (height > heights[highest] && height <= heights[highest] + kWindAboveHighest) {
    return Bracket{highest, highest};
  }
  std::optional<Bracket> bracket = FindBracket(heights, height, std::less<>{}, isOrdered);
  if (!bracket) return std::nullopt;
  // Levels without a wind are none: the winds about them are neighbours.
  while (bracket->Low > lowest && !hasWind(bracket->Low)) --bracket->Low;
  while (bracket->High + 1 < heights.size() && !hasWind(bracket->High)) ++bracket->High;
  if (!hasWind(bracket->Low) || !hasWind(bracket->High)) return std::nullopt;
  return bracket;
}

// What Components gives, many at a time.
template <class Number>
inline __attribute__((always_inline)) void TurnSome(const Number* dirs, const Number* spds,
                                                    std::size_t count, WindVector* vectors) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < count; ++i) {
    const SinCos turned = ColumnSinCos(Radians(static_cast<double>(dirs[i])));
    const auto speed = static_cast<double>(spds[i]);
    vectors[i] = {speed * turned.Sin, speed * turned.Cos};
  }
}

VEXA_WIDE void Turn(const double* dirs, const double* spds, std::size_t count,
                    WindVector* vectors) {
  TurnSome(dirs, spds, count, vectors);
}

VEXA_WIDE void Turn(const float* dirs, const float* spds, std::size_t count, WindVector* vectors) {
  TurnSome(dirs, spds, count, vectors);
}

// Some at a time, so that none is written before it is known.
template <class Number>
std::vector<WindVector> TurnWinds(const Number* dirs, const Number* spds, std::size_t count) {
  constexpr std::size_t kAtATime = 256;
  std::array<WindVector, kAtATime> some;
  std::vector<WindVector> vectors;
  vectors.reserve(count);
  for (std::size_t from = 0; from < count; from += kAtATime) {
    const std::size_t part = std::min(count - from, kAtATime);
    Turn(dirs + from, spds + from, part, some.data());
    vectors.insert(vectors.end(), some.data(), some.data() + part);
  }
  return vectors;
}

// Whether every level has a wind and no value is near a marker: so it is of nearly every sounding.
VEXA_WIDE bool HasWindThroughout(const double* heights, const double* dirs, const double* spds,
                                 std::size_t count) {
  constexpr double kLow = -998, kHighest = 99998, kHigh = 999;
  std::uint64_t others = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const bool isThere = (heights[i] > kLow) & (heights[i] < kHighest) & (dirs[i] > kLow) &
                         (dirs[i] < kHigh) & (spds[i] > kLow) & (spds[i] < kHigh);
    others |= isThere ? 0 : 1;
  }
  return others == 0;
}

// Components between two winds, linear in height.
WindVector WindBetween(const WindVector& lower, const WindVector& upper, const Bracket& bracket,
                       const std::vector<double>& heights, double height) {
  const double share =
      (height - heights[bracket.Low]) / (heights[bracket.High] - heights[bracket.Low]);
  return {lower.U + share * (upper.U - lower.U), lower.V + share * (upper.V - lower.V)};
}

const Levels<double>* ArrayOf(const LevelProfile& levels, Quantity quantity) {
  switch (quantity) {
    case Quantity::Temp:
      return &levels.Temp;
    case Quantity::Dewpt:
      return &levels.Dewpt;
    case Quantity::WetBulb:
      return &levels.WetBulb;
    case Quantity::ThetaE:
      return &levels.ThetaE;
    case Quantity::Theta:
      return &levels.Theta;
    case Quantity::VirtualTemp:
      return &levels.VirtualTemp;
    case Quantity::MixingRatio:
      return &levels.MixingRatio;
    case Quantity::RelHumidity:
      return &levels.RelHumidity;
    case Quantity::Height:
      return &levels.Height;
    case Quantity::ParcelTemp:
      return nullptr;
  }
  return nullptr;
}

// ln p of a level, as it was taken when the levels were derived.
double LogPressAt(const LevelProfile& levels, std::size_t at) {
  const std::vector<double>& logs = levels.LogPress.Values();
  return at < logs.size() ? logs[at] : std::log(levels.Press.Values()[at]);
}

// Most pressures that are asked for are whole.
double LogOf(double press) {
  const int whole = press <= kGridBottom ? static_cast<int>(press) : 0;
  return whole > 0 && whole == press ? WholeHpa().Log[GridIndex(whole)] : std::log(press);
}

// 9999 m and 999.9 m are heights like any other: only the other quantities can be missing.
bool MissingAt(Quantity quantity, double value) {
  return quantity == Quantity::Height ? !std::isfinite(value) : NotAvailable(value);
}

}  // namespace

PressurePlace::PressurePlace(const LevelProfile& levels, double press) {
  if (!(press > 0)) return;
  const std::vector<double>& pressures = levels.Press.Values();
  const auto bracket = FindBracket(pressures, press, std::greater<>{}, levels.PressFalls);
  if (!bracket) return;
  low_ = bracket->Low;
  high_ = bracket->High;
  where_ = low_ == high_ ? Where::AtLevel : Where::Between;
  if (where_ == Where::AtLevel) return;
  if (!(pressures[high_] > 0)) {
    where_ = Where::WithoutPress;
    return;
  }
  const double lowLog = LogPressAt(levels, low_);
  depth_ = LogOf(press) - lowLog;
  span_ =
      pressures[low_] == pressures[high_] ? kEqualPressures : LogPressAt(levels, high_) - lowLog;
}

Sample PressurePlace::Read(const LevelProfile& levels, Quantity quantity) const {
  const Levels<double>* array = ArrayOf(levels, quantity);
  if (array == nullptr || where_ == Where::Outside) return {};
  const double low = array->Values()[low_];
  const double high = array->Values()[high_];
  if (MissingAt(quantity, low) || MissingAt(quantity, high)) return {0, Found::Missing};
  if (where_ == Where::AtLevel) return {low, Found::Value};
  if (where_ == Where::WithoutPress) return {};
  return {low + (high - low) * depth_ / span_, Found::Value};
}

Sample SampleAt(const LevelProfile& levels, double press, Quantity quantity) {
  return PressurePlace(levels, press).Read(levels, quantity);
}

double GetTEMP(const LevelProfile& levels, double press, Quantity quantity) {
  return GetTEMP(levels, PressurePlace(levels, press), quantity);
}

double GetTEMP(const LevelProfile& levels, const PressurePlace& place, Quantity quantity) {
  const Sample sample = place.Read(levels, quantity);
  if (!sample.Ok()) return kMissing;
  switch (quantity) {
    case Quantity::MixingRatio:
      return Rounded(sample.Value * 1000, 3);
    case Quantity::RelHumidity:
    case Quantity::Height:
      return Rounded(sample.Value, 1);
    default:
      return Rounded(sample.Value, 2);
  }
}

double GetTEMP(const std::vector<double>& parcelTemps, int parcelStart, double press) {
  const double step = parcelStart - ToWhole(press);
  if (!(step >= 0) || step >= static_cast<double>(parcelTemps.size())) return kMissing;
  const double temp = parcelTemps[static_cast<std::size_t>(step)];
  return NotAvailable(temp) ? kMissing : Rounded(temp, 1);
}

double GetPRESS(const LevelProfile& levels, double height) {
  if (levels.Count() < 2) return IsaPressure(height);
  if (!std::isfinite(height)) return kNotReached;
  const std::vector<double>& heights = levels.Height.Values();
  const std::vector<double>& pressures = levels.Press.Values();
  Bracket bracket{0, 1};
  if (height < heights.front()) {
    if (heights.front() - height > kDeepestBelowGround) return kNotReached;
  } else if (levels.HeightRises && height > heights.back() &&
             height <= heights.back() + kHeightRounding) {
    return pressures.back();
  } else {
    const auto found = FindBracket(heights, height, std::less<>{}, levels.HeightRises);
    if (!found) return kNotReached;
    bracket = *found;
  }
  if (bracket.Low == bracket.High) return pressures[bracket.Low];
  const double lowPress = pressures[bracket.Low];
  const double highPress = pressures[bracket.High];
  const double depth = heights[bracket.High] - heights[bracket.Low];
  if (!(lowPress > 0) || !(highPress > 0) || depth == 0) return kNotReached;
  const double share = (height - heights[bracket.Low]) / depth;
  const double lowLog = LogPressAt(levels, bracket.Low);
  return std::exp(lowLog + share * (LogPressAt(levels, bracket.High) - lowLog));
}

double GetHeight(const LevelProfile& levels, double press) {
  const Sample height = SampleAt(levels, press, Quantity::Height);
  return height.Ok() ? Rounded(FeetFromMeters(height.Value), 1) : kNone;
}

Sample HeightAt(const LevelProfile& levels, double press) {
  return HeightAt(levels, PressurePlace(levels, press), press);
}

Sample HeightAt(const LevelProfile& levels, const PressurePlace& place, double press) {
  const Sample height = place.Read(levels, Quantity::Height);
  if (height.Ok() || press != kReferencePress || levels.Count() == 0 || press < levels.Press(1)) {
    return height;
  }
  constexpr double kStandardLapse = 0.0065;  // K/m
  const double a = kDryGasConstant / kGravity * std::log(press / levels.Press(1));
  const double surfaceK = levels.VirtualTemp(1) + kKelvinOffset;
  return {levels.Height(1) - a * surfaceK / (1 - 0.5 * kStandardLapse * a), Found::Value};
}

WindSample WindAtHeight(const SoundingRecord& sounding, double height) {
  const std::vector<double>& heights = sounding.WindHgt.Values();
  const auto hasWind = [&](std::size_t i) { return sounding.HasWind(static_cast<int>(i) + 1); };
  const auto windAt = [&](std::size_t i) { return WorkingWind(sounding, static_cast<int>(i) + 1); };
  const std::optional<Bracket> bracket = WindsAbout(heights, height, hasWind, false);
  if (!bracket) return {};
  const Wind low = windAt(bracket->Low);
  if (bracket->Low == bracket->High) return {low, Found::Value};
  const WindVector vector =
      WindBetween(Components(low), Components(windAt(bracket->High)), *bracket, heights, height);
  return {FromComponents(vector), Found::Value};
}

WindProfile DeriveWinds(const SoundingRecord& sounding, double highest) {
  const std::vector<double>& heights = sounding.WindHgt.Values();
  const std::size_t count = heights.size();
  if (sounding.WindDir.Values().size() < count || sounding.WindSpd.Values().size() < count) {
    throw std::out_of_range("wind arrays of different lengths");
  }
  const double* observedDirs = sounding.WindDir.Values().data();
  const double* observedSpds = sounding.WindSpd.Values().data();
  const bool isWorking = sounding.HasWorkWinds();
  const std::vector<float>& workDirs = sounding.WorkWindDir.Values();
  const std::vector<float>& workSpds = sounding.WorkWindSpd.Values();
  WindProfile winds;
  if (HasWindThroughout(heights.data(), observedDirs, observedSpds, count) &&
      !(highest < kNotReached)) {
    winds.Heights = heights;
    winds.Vectors = isWorking ? TurnWinds(workDirs.data(), workSpds.data(), count)
                              : TurnWinds(observedDirs, observedSpds, count);
  } else {
    std::vector<double> dirs, spds;
    dirs.reserve(count);
    spds.reserve(count);
    winds.Heights.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const double height = heights[i];
      if (!HasHeight(height) || NotAvailable(observedDirs[i]) || NotAvailable(observedSpds[i])) {
        continue;
      }
      winds.Heights.push_back(height);
      dirs.push_back(isWorking ? static_cast<double>(workDirs[i]) : observedDirs[i]);
      spds.push_back(isWorking ? static_cast<double>(workSpds[i]) : observedSpds[i]);
      if (height > highest) break;
    }
    winds.Vectors = TurnWinds(dirs.data(), spds.data(), dirs.size());
  }
  winds.IsOrdered = !HasFall(winds.Heights.data(), winds.Heights.size());
  return winds;
}

std::optional<WindVector> VectorAtHeight(const WindProfile& winds, double height) {
  constexpr auto kObserved = [](std::size_t) { return true; };
  const auto bracket = WindsAbout(winds.Heights, height, kObserved, winds.IsOrdered);
  if (!bracket) return std::nullopt;
  const WindVector& low = winds.Vectors[bracket->Low];
  if (bracket->Low == bracket->High) return low;
  return WindBetween(low, winds.Vectors[bracket->High], *bracket, winds.Heights, height);
}

Wind GetWIND(const SoundingRecord& sounding, const LevelProfile& levels, double press) {
  const Sample height = SampleAt(levels, press, Quantity::Height);
  if (!height.Ok()) return {kMissing, kMissing};
  const WindSample sample = WindAtHeight(sounding, height.Value);
  if (!sample.Ok()) return {kMissing, kMissing};
  const double dir = Rounded(sample.Value.Dir, 0);
  return {dir == 0 ? 360 : dir, Rounded(sample.Value.Spd, 1)};
}

WindVector Components(const Wind& wind) {
  return {wind.Spd * std::sin(Radians(wind.Dir)), wind.Spd * std::cos(Radians(wind.Dir))};
}

Wind FromComponents(const WindVector& vector) {
  const double speed = std::hypot(vector.U, vector.V);
  if (speed == 0) return {360, 0};
  return {Wrap360(std::atan2(vector.U, vector.V) * kDegPerRadian), speed};
}

}  // namespace vexa::analysis
