#include "analysis/parcel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kColdestParcel =
    -120;                              // °C, where LiftSat gives up and keeps its last temperature
constexpr double kLeastCin = -99999;   // J/kg
constexpr double kHailBaseTemp = -10;  // °C
constexpr double kHailTopTemp = -30;   // °C

// Virtual temperatures are rounded to three decimals. Adding and taking away 1.5 · 2^52 rounds to
// a whole number in two operations that the compiler can do for several values at once.
inline double ToThousandths(double value) {
  constexpr double kRounder = 6755399441055744.0;
  return (value * 1000 + kRounder - kRounder) * 0.001;
}

// Virtual temperatures as they are shown. Only that is rounded: thousandths on one side of a
// comparison alone would make air warmer than itself.
VEXA_WIDE void FillShown(const double* virtuals, std::size_t count, double* shown) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < count; ++i) shown[i] = ToThousandths(virtuals[i]);
}

// What the parcel gains up to each step, J/kg.
VEXA_WIDE void FillIncrements(const double* parcel, const double* environment, const double* logs,
                              std::size_t count, double* increments) {
  increments[0] = 0;
  VEXA_INDEPENDENT
  for (std::size_t i = 1; i < count; ++i) {
    const double below = parcel[i - 1] - environment[i - 1];
    const double here = parcel[i] - environment[i];
    increments[i] = -kDryGasConstant * ((below + here) / 2) * (logs[i] - logs[i - 1]);
  }
}

// How many of the first values remain when those at the end that are not above others are left out.
VEXA_WIDE std::size_t CountToLastAbove(const double* values, const double* others,
                                       std::size_t count) {
  const auto isSo = [=](std::size_t i) { return values[i] - others[i] > 0; };
  while (count >= kScannedAtATime && !HasAny(count - kScannedAtATime, isSo)) {
    count -= kScannedAtATime;
  }
  while (count > 0 && !isSo(count - 1)) --count;
  return count;
}

VEXA_WIDE void Narrow(const double* from, std::size_t count, float* to) {
  for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<float>(from[i]);
}

// A column's values at every stride-th place, from its first on: those themselves, or a copy of
// them where some are left out.
const double* Thinned(const double* column, std::size_t stride, std::size_t count,
                      std::vector<double>& copy) {
  if (stride == 1) return column;
  copy.resize(count);
  for (std::size_t i = 0; i < count; ++i) copy[i] = column[i * stride];
  return copy.data();
}

}  // namespace

LiftSettings LiftSettingsOf(const AnalysisSettings& options, double depthTopPress) {
  return {.Over = options.Saturation,
          .Virtual = options.CapeTempBase == TempBase::Virtual,
          .Step = std::max(options.CapeInterval, 1),
          .DepthTopPress = depthTopPress,
          .ElLowerLimit = options.ElLowerLimit,
          .FindMaximum = options.MplDisplay};
}

struct ParcelLifter::Source {
  double Theta = 0;        // K, of the dry ascent
  double ThetaE = 0;       // K, of the saturated ascent
  double MixingRatio = 0;  // kg/kg, below condensation; for virtual temperatures alone
  CondensationPoint Condensation{};
  PressurePlace Place{};  // of the condensation
};

ParcelLifter::ParcelLifter(const LevelProfile& levels, const PressureGrid& grid,
                           const LiftSettings& settings, AdiabatTable* table)
    : levels_(levels), grid_(grid), settings_(settings), table_(table) {}

double ParcelLifter::PressAt(std::size_t step) const {
  return first_ - settings_.Step * static_cast<double>(step);
}

double ParcelLifter::LogPressAt(std::size_t step) const {
  return WholeHpa().Log[GridIndex(first_) + step * static_cast<std::size_t>(settings_.Step)];
}

// Number of steps of the path at pressures not less than this one.
std::size_t ParcelLifter::StepsDownTo(double press) const {
  const double steps = std::floor((first_ - press) / settings_.Step) + 1;
  return static_cast<std::size_t>(std::clamp(steps, 0.0, static_cast<double>(steps_)));
}

// Pressure at which the difference vanishes between a point below, given by ln p and difference,
// and a step; linear in ln p.
double ParcelLifter::Crossing(double lowLog, double low, std::size_t step) const {
  const double high = Difference(step);
  return std::exp(lowLog + (LogPressAt(step) - lowLog) * low / (low - high));
}

// A point of the path: the parcel's dry-bulb temperature there, from the whole hPa about it.
LevelPoint ParcelLifter::PointAt(double press) const {
  LevelPoint point{.Press = press};
  const Sample height = SampleAt(levels_, press, Quantity::Height);
  if (height.Ok()) point.Height = height.Value;
  const std::vector<double>& temps = *path_;
  const double place = std::clamp(first_ - press, 0.0, static_cast<double>(temps.size() - 1));
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, temps.size() - 1);
  point.Temp = temps[below] + (temps[above] - temps[below]) * (place - static_cast<double>(below));
  return point;
}

void ParcelLifter::LiftForced(const ParcelStart& start, ParcelAscent& into) {
  CondensationPoint condensation;
  if (start.Exists() && !NotAvailable(start.Temp) && !NotAvailable(start.Dewpt)) {
    condensation.Temp = Condense(start.Temp, std::min(start.Dewpt, start.Temp));
    condensation.Press = LclPressure(start.Press, start.Temp, condensation.Temp);
  }
  Lift(start, condensation, LiftMode::Lfc, into);
}

void ParcelLifter::LiftConvective(const ParcelStart& start, const CondensationPoint& condensation,
                                  ParcelAscent& into) {
  Lift(start, condensation, LiftMode::Ccl, into);
}

void ParcelLifter::Lift(const ParcelStart& start, const CondensationPoint& condensation,
                        LiftMode mode, ParcelAscent& into) {
  // Emptied but for its arrays, which the path writes over.
  ParcelAscent empty;
  empty.ParcelTemps.swap(into.ParcelTemps);
  empty.EnvTemps.swap(into.EnvTemps);
  empty.Increments.swap(into.Increments);
  into = std::move(empty);
  const auto withoutPath = [&] {
    into.ParcelTemps.clear();
    into.EnvTemps.clear();
    into.Increments.clear();
  };

  if (!start.Exists() || !condensation.Exists()) return withoutPath();
  const Source source{
      .Theta = DryTheta(start.Press, start.Temp),
      .ThetaE = ThetaPoint(condensation.Press, condensation.Temp, settings_.Over).ThetaE,
      .MixingRatio =
          settings_.Virtual ? ThetaPoint(start.Press, start.Dewpt, settings_.Over).MixingRatio : 0,
      .Condensation = condensation,
      .Place = PressurePlace(levels_, condensation.Press)};
  if (!(source.Theta > 0) || !(source.ThetaE > 0)) return withoutPath();  // 0 is no value

  into.Start = start;
  into.Step = settings_.Step;
  into.Condensation = {.Press = condensation.Press, .Temp = condensation.Temp};
  const Sample height = source.Place.Read(levels_, Quantity::Height);
  if (height.Ok()) into.Condensation.Height = height.Value;

  first_ = grid_.Empty() || !(start.Press >= grid_.Top)
               ? 0
               : static_cast<int>(std::min<double>(start.Press, grid_.Bottom));
  into.FirstPress = first_;
  if (first_ < grid_.Top) return withoutPath();
  // A path that is compared and shown as it is goes where it will be shown.
  const bool isShown = !settings_.Virtual && settings_.Step == 1;
  FillPath(source, isShown ? into.ParcelTemps : temps_);
  FillSteps(into);
  FindFreeLayer(source, mode, into);
  // No layer cools upward faster than a dry adiabat from the sounding's end, and no parcel gets
  // warmer than its equivalent potential temperature: between the two lies what could still come.
  into.IsOpen = !into.Equilibrium.Exists() && source.ThetaE > levels_.Theta.Top();
  into.IsOpenDepth = into.IsOpen && settings_.DepthTopPress == kNotReached;
  Integrate(into);
}

// The parcel's temperatures at every hPa from the first to the top.
void ParcelLifter::FillPath(const Source& source, std::vector<double>& path) {
  const auto count = static_cast<std::size_t>(first_ - grid_.Top) + 1;
  const std::size_t offset = GridIndex(first_);
  const WholePressures& whole = WholeHpa();
  path.resize(count);
  path_ = &path;
  if (settings_.Virtual) virtuals_.resize(count);

  // Dry while p > condensation pressure.
  const double dryDepth = std::ceil(first_ - source.Condensation.Press);
  const auto dry = static_cast<std::size_t>(std::clamp(dryDepth, 0.0, static_cast<double>(count)));
  for (std::size_t i = 0; i < dry; ++i) {
    path[i] = source.Theta * whole.Poisson[offset + i] - kKelvinOffset;
  }
  if (settings_.Virtual) {
    // VirtualTemp with its mixing ratio taken out of the loop.
    const double moist = 1 + source.MixingRatio / kEpsilon;
    const double total = 1 + source.MixingRatio;
    const double* temps = path.data();
    double* virtuals = virtuals_.data();
    for (std::size_t i = 0; i < dry; ++i) {
      virtuals[i] = (temps[i] + kKelvinOffset) * moist / total - kKelvinOffset;
    }
  }
  if (dry < count) {
    const int bottom = first_ - static_cast<int>(dry);
    double* virtuals = settings_.Virtual ? virtuals_.data() + dry : nullptr;
    double* temps = path.data() + dry;
    if (table_ != nullptr) {
      table_->Blend(source.ThetaE, settings_.Over, bottom, grid_.Top, temps, virtuals);
    } else {
      SolveAdiabat(source.ThetaE, settings_.Over, bottom, grid_.Top, temps, virtuals);
    }
  }
  const auto cold = std::partition_point(path.begin(), path.end(),
                                         [](double temp) { return temp > kColdestParcel; });
  std::fill(cold, path.end(), kColdestParcel);
  if (!settings_.Virtual) return;
  for (double& temp : virtuals_) temp = std::max(temp, kColdestParcel);
}

// Parcel and surroundings, step by step.
void ParcelLifter::FillSteps(ParcelAscent& into) {
  const bool isVirtual = settings_.Virtual;
  const std::vector<double>& parcel = isVirtual ? virtuals_ : *path_;
  const double* environment =
      (isVirtual ? grid_.VirtualTemp : grid_.Temp).data() + (grid_.Bottom - first_);
  const auto stride = static_cast<std::size_t>(settings_.Step);
  steps_ = (parcel.size() - 1) / stride + 1;
  parcel_ = Thinned(parcel.data(), stride, steps_, thinParcel_);
  environment_ = Thinned(environment, stride, steps_, thinEnvironment_);
  into.EnvTemps.assign(environment_, environment_ + steps_);
  if (isVirtual) {
    into.ParcelTemps.resize(steps_);
    FillShown(parcel_, steps_, into.ParcelTemps.data());
  } else if (path_ != &into.ParcelTemps) {
    into.ParcelTemps.assign(parcel_, parcel_ + steps_);
  }
}

// Below this the parcel is as warm as its surroundings: what is left is rounding.
constexpr double kNoDifference = 1e-5;  // K

double WithoutRounding(double difference) {
  return std::fabs(difference) < kNoDifference ? 0 : difference;
}

// Parcel minus environment at the condensation level itself, which lies between two steps.
double ParcelLifter::CondensationDifference(const Source& source) const {
  const CondensationPoint& at = source.Condensation;
  const Sample environment =
      source.Place.Read(levels_, settings_.Virtual ? Quantity::VirtualTemp : Quantity::Temp);
  if (!environment.Ok()) return 0;
  if (!settings_.Virtual) return WithoutRounding(at.Temp - environment.Value);
  const double mixing = ThetaPoint(at.Press, at.Temp, settings_.Over).MixingRatio;
  return WithoutRounding(VirtualTemp(at.Temp, mixing) - environment.Value);
}

// Free level and equilibrium level, by one pass from the condensation level to the top.
void ParcelLifter::FindFreeLayer(const Source& source, LiftMode mode, ParcelAscent& into) {
  const std::size_t steps = steps_;
  const double condensation = source.Condensation.Press;
  const std::size_t from = StepsDownTo(condensation);  // first step above it
  const double baseLog = std::log(condensation);
  double base = CondensationDifference(source);
  std::size_t free = from;  // first step above the free level

  if (mode == LiftMode::Ccl) {
    // The level was found where the parcel's temperature is the sounding's own.
    if (!settings_.Virtual) base = 0;
    into.FreeLevel = into.Condensation;
  } else if (base > 0) {
    into.FreeLevel = into.Condensation;
  } else {
    while (free < steps && !(Difference(free) > 0)) ++free;
    if (free == steps) return;
    into.FreeLevel =
        PointAt(free == from ? Crossing(baseLog, base, free)
                             : Crossing(LogPressAt(free - 1), Difference(free - 1), free));
  }

  // First step above the last one where the parcel is warmer.
  const std::size_t above =
      free + CountToLastAbove(parcel_ + free, environment_ + free, steps - free);
  double press = kNone;
  if (above == steps && steps > free) {
    press = levels_.Press.Top();  // still warmer at the top
  } else if (above > free) {
    press = Crossing(LogPressAt(above - 1), Difference(above - 1), above);
  } else if (base > 0 && above < steps) {
    press = Crossing(baseLog, base, above);
  }
  if (press == kNone || press > settings_.ElLowerLimit) return;
  into.Equilibrium = PointAt(press);
  into.IsCut = above == steps && steps > free;
  into.IsDepthCut = into.IsCut && settings_.DepthTopPress == kNotReached;
}

void ParcelLifter::Integrate(ParcelAscent& into) {
  const auto stride = static_cast<std::size_t>(settings_.Step);
  const double* logs =
      Thinned(WholeHpa().Log.data() + GridIndex(first_), stride, steps_, thinLogs_);
  increments_.resize(steps_);
  const double* increments = increments_.data();
  FillIncrements(parcel_, environment_, logs, steps_, increments_.data());

  const bool hasEnd = into.Equilibrium.Exists();
  const std::size_t end = hasEnd ? StepsDownTo(std::floor(into.Equilibrium.Press)) : steps_;
  MarkHailZone(end, into);
  into.Increments.resize(end);
  Narrow(increments, end, into.Increments.data());
  if (!hasEnd) return;  // all totals stay 0

  // Steps with p < free level, of which those with p >= layer top lie in the 0-x km layer.
  const std::size_t free =
      std::clamp<std::size_t>(StepsDownTo(into.FreeLevel.Press), 1, std::max<std::size_t>(end, 1));
  const std::size_t deep =
      settings_.DepthTopPress == kNotReached
          ? end
          : std::clamp(StepsDownTo(settings_.DepthTopPress), free, std::max(free, end));
  into.CapeDepth = PositiveSum(increments, free, deep);
  into.CapeTotal = into.CapeDepth + PositiveSum(increments, deep, end);
  into.CapePlusOnly = PositiveSum(increments, 1, free) + into.CapeTotal;
  into.CinTotal = NegativeSum(increments, 1, end);
  if (into.HailBasePress != kNone) {
    const std::size_t hailFrom = StepsDownTo(into.HailBasePress) - 1;
    const std::size_t hailTo = into.HailTopPress == kNone ? end : StepsDownTo(into.HailTopPress);
    into.CapeHail = PositiveSum(increments, hailFrom, hailTo);
  }

  if (into.CapeTotal == 0) into.CinTotal = 0;
  into.CinTotal = std::max(into.CinTotal, kLeastCin);
  if (settings_.FindMaximum && into.CapeTotal > 0) FindMaximum(end, into);
}

// The first steps at which the parcel is -10 °C and -30 °C or colder in an environment below 0 °C.
void ParcelLifter::MarkHailZone(std::size_t end, ParcelAscent& into) const {
  const auto stride = static_cast<std::size_t>(settings_.Step);
  const double* environment = grid_.Temp.data() + (grid_.Bottom - first_);
  const auto mark = [&](double temp) {
    const auto found = std::partition_point(path_->begin(), path_->end(),
                                            [&](double value) { return value > temp; });
    const auto whole = static_cast<std::size_t>(found - path_->begin());
    std::size_t step = (whole + stride - 1) / stride;
    while (step < end && !(environment[step * stride] < 0)) ++step;
    return step < end ? PressAt(step) : kNone;
  };
  into.HailBasePress = mark(kHailBaseTemp);
  into.HailTopPress = mark(kHailTopTemp);
}

// Where the rising parcel has spent its energy: from the equilibrium level up the negative
// increments are taken off CAPE until nothing is left.
void ParcelLifter::FindMaximum(std::size_t end, ParcelAscent& into) const {
  double energy = into.CapeTotal;
  for (std::size_t i = end; i < steps_; ++i) {
    energy += std::min(increments_[i], 0.0);
    if (energy <= 0) {
      into.MaximumParcel = PointAt(PressAt(i));
      return;
    }
  }
}

}  // namespace vexa::analysis
