#include "analysis/level_listing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "analysis/column_air.h"
#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/moist_air.h"
#include "analysis/profile_walk.h"
#include "analysis/standard_atmosphere.h"
#include "analysis/vapor_table.h"
#include "core/markers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kDryAbove = 300;  // hPa
constexpr double kModifiedPerMeter = 0.157;
constexpr double kContrailPress = 500;     // hPa
constexpr double kContrailFactor = 0.040;  // g/(kg K), low-bypass engines
constexpr double kLeastGradient = 0.053;   // Pa/K, where the threshold formula ends

// The columns of a listing that rest on one level each, and what they rest on.
struct AirColumns {
  std::size_t Count;
  const double* Press;
  const double* Height;
  const double* Temp;
  const double* Theta;
  const double* MixingRatio;
  double* Refractivity;
  double* Modified;
  double* Potential;
};

inline double RefractivityOfAir(double press, double tempK, double vapor) {
  return 77.6 / tempK * (press + 4810 * vapor / tempK);
}

// Without a mixing ratio air is dry high up and unknown below.
VEXA_WIDE void FillAir(AirColumns air) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < air.Count; ++i) {
    const double press = air.Press[i];
    const double mixing = air.MixingRatio[i];
    const bool isMoist = mixing < kMissing - 1;
    const bool isKnown = (press > 0) & (isMoist | (press < kDryAbove));
    // Three quotients by one division, which takes longer than all products here.
    const double moist = isMoist ? kEpsilon + mixing : 1;
    const double tempK = air.Temp[i] + kKelvinOffset, theta = air.Theta[i];
    const double all = 1 / (moist * tempK * theta);
    const double share = isMoist ? mixing * (all * tempK * theta) : 0;  // of vapour in the pressure
    const double perTemp = all * moist * theta, perTheta = all * moist * tempK;
    const double refractivity = 77.6 * perTemp * (press + 4810 * share * press * perTemp);
    const double potential =
        77.6 * perTheta * (kReferencePress + 4810 * share * kReferencePress * perTheta);
    air.Refractivity[i] = isKnown ? refractivity : kMissing;
    air.Modified[i] = isKnown ? refractivity + kModifiedPerMeter * air.Height[i] : kMissing;
    air.Potential[i] = isKnown ? potential : kMissing;
  }
}

// Further columns, of which the last rests on the level below too.
struct ListedColumns {
  std::size_t Count;
  const double* Press;
  const double* Height;
  const double* VirtualTemp;
  const double* Refractivity;
  double* Density;
  double* Gradient;
};

VEXA_WIDE void FillDensities(ListedColumns listed) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < listed.Count; ++i) {
    const double tempK = listed.VirtualTemp[i] + kKelvinOffset;
    const double density = 100 * listed.Press[i] / (kDryGasConstant * tempK);
    listed.Density[i] = listed.Press[i] > 0 ? (tempK > 0 ? density : 0) : kMissing;
  }
}

VEXA_WIDE void FillGradients(ListedColumns listed) {
  VEXA_INDEPENDENT
  for (std::size_t i = 1; i < listed.Count; ++i) {
    const double depth = listed.Height[i] - listed.Height[i - 1];
    const double low = listed.Refractivity[i - 1], high = listed.Refractivity[i];
    const bool isKnown = (listed.Press[i] > 0) & (listed.Height[i] > listed.Height[i - 1]) &
                         IsThere(low) & IsThere(high);
    listed.Gradient[i] = isKnown ? (high - low) / depth * 1000 : kMissing;
  }
}

// Heights above those of the standard atmosphere, which stand in their place before.
VEXA_WIDE void ToDifferences(const double* pressures, const double* heights, std::size_t count,
                             double* standards) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < count; ++i) {
    const double difference = heights[i] - standards[i];
    const bool isKnown = (pressures[i] > 0) & (standards[i] < kNotReached);
    standards[i] = isKnown ? difference : kMissing;
  }
}

// Slope of the mixing line, Pa/K, and the threshold of saturated air, °C.
struct MixingLine {
  double Slope = 0;
  double Saturated = kMissing;
};

inline double SlopeAt(double press) {
  return kContrailFactor * 1e-3 * 100 / kEpsilon * press;
}

// By the logarithm of what the slope is above the least.
inline double SaturatedThreshold(double log) {
  return -46.46 + 9.43 * log + 0.720 * log * log;
}

MixingLine MixingLineAt(double press) {
  MixingLine line{.Slope = SlopeAt(press)};
  if (line.Slope <= kLeastGradient) return line;
  line.Saturated = SaturatedThreshold(std::log(line.Slope - kLeastGradient));
  return line;
}

// Saturation vapour pressure, Pa.
double WaterVaporAt(double temp) {
  return 100 * TabledSatVapor(temp, SaturationOver::Water);
}

// Positive where air is too warm for a contrail: rises with the temperature, 0 at the threshold.
//
// lineVapor   at the saturated threshold, Pa
double Excess(const MixingLine& line, double lineVapor, double temp, double share) {
  return temp - line.Saturated + (lineVapor - share * WaterVaporAt(temp)) / line.Slope;
}

// Levels whose excess is wanted.
struct ContrailColumns {
  std::size_t Count;
  const double* Press;
  const double* Temp;
  const double* RelHumidity;  // %
  double Humidity;            // % where none is known
  double* Excess;
};

// A summand that makes what is out of the ordinary not a number: a loop keeps no branch of it.
inline double OddUnless(bool isOrdinary) {
  return isOrdinary ? 0 : std::numeric_limits<double>::quiet_NaN();
}

// MixingLineAt, then Excess with the vapour pressures from the table; not a number where the air is
// not that of a stratosphere.
VEXA_WIDE void FillExcesses(ContrailColumns air, ColumnVapor table) {
  constexpr double kColdest = 125, kWarmest = 395;  // K, on the ladder
  constexpr double kLeastRise = 1e-6;               // Pa/K
  constexpr double kMostHumid = 900;                // %
  const double given = air.Humidity;
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < air.Count; ++i) {
    const double slope = SlopeAt(air.Press[i]);
    const double rise = std::max(slope - kLeastGradient, kLeastRise);
    const double threshold = SaturatedThreshold(ColumnLog(rise));
    const double lineK = threshold + kKelvinOffset;
    const double lineOnLadder = std::min(std::max(kColdest, lineK), kWarmest);
    const double temp = air.Temp[i];
    const double tempK = temp + kKelvinOffset;
    const double tempOnLadder = std::min(std::max(kColdest, tempK), kWarmest);
    const double atLine = 100 * table.At(threshold, lineOnLadder).Pressure;
    const double atTemp = 100 * table.At(temp, tempOnLadder).Pressure;
    const double observed = air.RelHumidity[i];
    const double humidity = observed < kMostHumid ? observed : given;
    const double share = std::min(humidity * 0.01, 1.0);
    const double above = temp - threshold;
    const double vapor = (atLine - share * atTemp) / slope;
    const double counts = (share < 1 ? 1.0 : 0.0) * (above < 0 ? 1.0 : 0.0);
    const double odd = OddUnless(rise > kLeastRise) + OddUnless(lineK == lineOnLadder) +
                       OddUnless(tempK == tempOnLadder) +
                       OddUnless((observed < kMostHumid) | (observed == kMissing));
    air.Excess[i] = above + counts * vapor + odd;
  }
}

// The excess of each level, worked out for some levels at a time when one of them is asked for.
class ExcessColumn {
 public:
  ExcessColumn(const LevelProfile& levels, double humidity)
      : levels_(levels), count_(levels.Press.Values().size()), humidity_(humidity) {}

  bool Knows(int level) const { return PlaceOf(level) - from_ < known_; }

  double At(int level) {
    if (!Knows(level)) Fill(PlaceOf(level));
    const double excess = excesses_[PlaceOf(level) - from_];
    return std::isnan(excess) ? Guarded(level) : excess;
  }

  // Where a level is the first of some that are surely all too warm, the last of them; else 0.
  int EndOfWarm(int level) const {
    for (const std::size_t count : {8 * kAtATime, kAtATime}) {
      if (IsWarmThroughout(PlaceOf(level), count)) return level + static_cast<int>(count) - 1;
    }
    return 0;
  }

 private:
  static constexpr std::size_t kAtATime = 16;

  static std::size_t PlaceOf(int level) { return static_cast<std::size_t>(level) - 1; }

  void Fill(std::size_t from) {
    from_ = from;
    known_ = std::min(count_ - from, kAtATime);
    FillExcesses({.Count = known_,
                  .Press = levels_.Press.Values().data() + from,
                  .Temp = levels_.Temp.Values().data() + from,
                  .RelHumidity = levels_.RelHumidity.Values().data() + from,
                  .Humidity = humidity_,
                  .Excess = excesses_.data()},
                 ColumnVapor(SaturationOver::Water));
  }

  // Whether even the coldest temperature, the highest pressure and the most humidity of some levels
  // together would be too warm: less of the latter two, and more warmth, only raise the excess.
  bool IsWarmThroughout(std::size_t from, std::size_t count) const {
    constexpr double kLeastRise = 0.002;  // Pa/K, from which on the threshold rises with pressure
    if (!levels_.PressFalls || from + count > count_) return false;
    const double* pressures = levels_.Press.Values().data() + from;
    const double rise = SlopeAt(pressures[count - 1]) - kLeastGradient;
    if (!(pressures[0] <= kContrailPress) || !(rise > kLeastRise)) return false;
    const double coldest = LeastOf(levels_.Temp.Values().data(), from, from + count);
    const double mostHumid = MostOf(levels_.RelHumidity.Values().data(), from, from + count);
    // Where some are unknown, their marker stands for more than any air has.
    const double share = std::min(std::max(mostHumid, humidity_) / 100, 1.0);
    return ExcessOf(MixingLineAt(pressures[0]), coldest, share) > 0;
  }

  double Guarded(int level) const {
    const MixingLine line = MixingLineAt(levels_.Press(level));
    if (NotAvailable(line.Saturated)) return 1.0;
    const double observed = levels_.RelHumidity(level);
    const double share = std::min((NotAvailable(observed) ? humidity_ : observed) / 100, 1.0);
    return ExcessOf(line, levels_.Temp(level), share);
  }

  // Warmer than saturated air may be, the mixing line lies above the vapour curve throughout.
  static double ExcessOf(const MixingLine& line, double temp, double share) {
    const bool isTooWarm = share >= 1 || temp >= line.Saturated;
    return isTooWarm ? temp - line.Saturated
                     : Excess(line, WaterVaporAt(line.Saturated), temp, share);
  }

  const LevelProfile& levels_;
  std::size_t count_;
  double humidity_;  // %, where none is known
  std::array<double, kAtATime> excesses_{};
  std::size_t from_ = 0;   // level of the first of them, from 0
  std::size_t known_ = 0;  // how many of them
};

}  // namespace

double RefractivityOf(double press, double temp, double vapor) {
  return RefractivityOfAir(press, temp + kKelvinOffset, vapor);
}

LevelListing ListLevels(const LevelProfile& levels) {
  LevelListing listing;
  for (Levels<double>* array :
       {&listing.Density, &listing.DValue, &listing.Refractivity, &listing.Modified,
        &listing.Potential, &listing.Gradient, &listing.WaterBelow}) {
    array->Resize(levels.Count(), kMissing);
  }
  const double* pressures = levels.Press.Values().data();
  const double* heights = levels.Height.Values().data();
  const double* logs = levels.LogPress.Values().data();
  const double* mixings = levels.MixingRatio.Values().data();
  double* refractivities = listing.Refractivity.Values().data();
  const auto count = static_cast<std::size_t>(levels.Count());
  FillAir({.Count = count,
           .Press = pressures,
           .Height = heights,
           .Temp = levels.Temp.Values().data(),
           .Theta = levels.Theta.Values().data(),
           .MixingRatio = mixings,
           .Refractivity = refractivities,
           .Modified = listing.Modified.Values().data(),
           .Potential = listing.Potential.Values().data()});
  const ListedColumns listed{.Count = count,
                             .Press = pressures,
                             .Height = heights,
                             .VirtualTemp = levels.VirtualTemp.Values().data(),
                             .Refractivity = refractivities,
                             .Density = listing.Density.Values().data(),
                             .Gradient = listing.Gradient.Values().data()};
  FillDensities(listed);
  FillGradients(listed);
  double* differences = listing.DValue.Values().data();
  FillIsaHeights(pressures, logs, count, differences);
  ToDifferences(pressures, heights, count, differences);
  double* waters = listing.WaterBelow.Values().data();
  double water = 0;  // mm
  for (std::size_t i = 0; i < count; ++i) {
    const double press = pressures[i];
    if (!(press > 0)) continue;
    if (NotAvailable(mixings[i])) break;
    if (i > 0) {
      water += (mixings[i - 1] + mixings[i]) / 2 * (pressures[i - 1] - press) * 100 / kGravity;
    }
    waters[i] = water;
  }
  return listing;
}

std::vector<Duct> FindDucts(const LevelProfile& levels, const LevelListing& listing,
                            double threshold) {
  std::vector<Duct> ducts;
  const std::vector<double>& gradients = listing.Gradient.Values();
  const auto nextFrom = [&](std::size_t at) {
    return FirstNotAbove(gradients.data(), at, gradients.size(), threshold);
  };
  for (std::size_t at = nextFrom(1); at < gradients.size(); at = nextFrom(at + 1)) {
    const int i = static_cast<int>(at) + 1;
    const double gradient = gradients[at];
    if (IsMissing(gradient)) continue;  // -2000 N/km is a gradient
    if (!ducts.empty() && ducts.back().Top.Height == levels.Height(i - 1)) {
      ducts.back().Top = PointOf(levels, i);
      ducts.back().Gradient = std::min(ducts.back().Gradient, gradient);
    } else {
      ducts.push_back(
          {.Base = PointOf(levels, i - 1), .Top = PointOf(levels, i), .Gradient = gradient});
    }
  }
  for (Duct& duct : ducts) {
    int top = 1;
    while (levels.Height(top) < duct.Top.Height) ++top;
    const double wanted = listing.Modified(top);
    duct.DuctBase = levels.Height(1);
    duct.OnSurface = true;
    for (int i = top - 1; i >= 1; --i) {
      const double modified = listing.Modified(i);
      if (NotAvailable(modified)) break;
      if (modified > wanted) continue;
      const double above = listing.Modified(i + 1);
      const double share = above > modified ? (wanted - modified) / (above - modified) : 0;
      duct.DuctBase = levels.Height(i) + share * (levels.Height(i + 1) - levels.Height(i));
      duct.OnSurface = i == 1 && share == 0;
      break;
    }
  }
  return ducts;
}

double ContrailTemp(double press, double humidity) {
  const MixingLine line = MixingLineAt(press);
  if (NotAvailable(line.Saturated)) return kMissing;
  const double share = humidity / 100;
  if (share >= 1) return line.Saturated;
  const double vapor = WaterVaporAt(line.Saturated);
  double low = line.Saturated - vapor / line.Slope - 1;
  double high = line.Saturated;
  while (high - low > 1e-4) {
    const double middle = (low + high) / 2;
    (Excess(line, vapor, middle, share) > 0 ? high : low) = middle;
  }
  return (low + high) / 2;
}

std::vector<AirLayer> FindContrails(const LevelProfile& levels, double humidity) {
  std::vector<AirLayer> layers;
  const std::vector<double>& pressures = levels.Press.Values();
  // The first level that counts: nearly always all above it do.
  const std::size_t first = FirstNotAbove(pressures.data(), 0, pressures.size(), kContrailPress);
  ExcessColumn excesses(levels, humidity);
  bool isInside = false;
  for (int i = static_cast<int>(first) + 1; i <= levels.Count(); ++i) {
    if (!isInside && !excesses.Knows(i)) {
      if (const int last = excesses.EndOfWarm(i); last > i) {
        i = last;
        continue;
      }
    }
    if (levels.Press(i) > kContrailPress) continue;
    const bool isFirst = i == 1 || levels.Press(i - 1) > kContrailPress;
    const double excess = excesses.At(i);
    const bool wasInside = isInside && !isFirst;
    isInside = excess <= 0;
    if (!isInside && !wasInside) continue;
    const LevelPoint here = PointOf(levels, i);
    const auto crossing = [&] {
      ProfileWalk walk(levels);
      const double low = levels.Height(i - 1);
      const double below = excesses.At(i - 1);
      return walk.At(low + (here.Height - low) * below / (below - excess)).Point();
    };
    if (isInside) {
      if (!wasInside) {
        layers.push_back({isFirst ? here : crossing(), here, Intensity::Light, " CP ", -excess});
      }
      layers.back().Top = here;
      layers.back().Value = std::max(layers.back().Value, -excess);
    } else {
      layers.back().Top = crossing();
    }
  }
  return layers;
}

}  // namespace vexa::analysis
