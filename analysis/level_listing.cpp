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

// Some levels next to each other, and what is listed of them.
struct ListedColumns {
  std::size_t Count;
  const double* Press;
  const double* Height;
  const double* Temp;
  const double* Theta;
  const double* VirtualTemp;
  const double* MixingRatio;
  double* Density;
  double* DValue;
  double* Refractivity;
  double* Modified;
  double* Potential;
  double* Gradient;
};

inline double RefractivityOfAir(double press, double tempK, double vapor) {
  return 77.6 / tempK * (press + 4810 * vapor / tempK);
}

// What rests on one level each. Without a mixing ratio air is dry high up and unknown below.
VEXA_WIDE void FillAir(ListedColumns air) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < air.Count; ++i) {
    const double press = air.Press[i];
    const double mixing = air.MixingRatio[i];
    const bool hasPress = press > 0;
    const bool isMoist = mixing < kMissing - 1;
    const bool isKnown = hasPress & (isMoist | (press < kDryAbove));
    // Four quotients by one division, which takes longer than all products here.
    const double moist = isMoist ? kEpsilon + mixing : 1;
    const double tempK = air.Temp[i] + kKelvinOffset, theta = air.Theta[i];
    const double virtualK = air.VirtualTemp[i] + kKelvinOffset;
    const double temps = tempK * theta, others = moist * virtualK;
    const double all = 1 / (temps * others);
    const double share = isMoist ? mixing * (all * temps * virtualK) : 0;  // of vapour in the press
    const double perTemp = all * others * theta, perTheta = all * others * tempK;
    const double refractivity = 77.6 * perTemp * (press + 4810 * share * press * perTemp);
    const double potential =
        77.6 * perTheta * (kReferencePress + 4810 * share * kReferencePress * perTheta);
    const double density = 100 / kDryGasConstant * press * (all * temps * moist);
    air.Density[i] = hasPress ? (virtualK > 0 ? density : 0) : kMissing;
    air.Refractivity[i] = isKnown ? refractivity : kMissing;
    air.Modified[i] = isKnown ? refractivity + kModifiedPerMeter * air.Height[i] : kMissing;
    air.Potential[i] = isKnown ? potential : kMissing;
  }
}

// Gradients from the level below to each.
//
// first   0, or 1 where none is below that
VEXA_WIDE void FillGradients(ListedColumns air, std::ptrdiff_t first) {
  const auto count = static_cast<std::ptrdiff_t>(air.Count);
  if (first > 0) air.Gradient[0] = kMissing;
  VEXA_INDEPENDENT
  for (std::ptrdiff_t i = first; i < count; ++i) {
    const double depth = air.Height[i] - air.Height[i - 1];
    const double low = air.Refractivity[i - 1], high = air.Refractivity[i];
    const bool isKnown =
        (air.Press[i] > 0) & (air.Height[i] > air.Height[i - 1]) & IsThere(low) & IsThere(high);
    air.Gradient[i] = isKnown ? (high - low) / depth * 1000 : kMissing;
  }
}

// Heights above those of the standard atmosphere, which stand in their place before.
VEXA_WIDE void ToDifferences(ListedColumns air) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < air.Count; ++i) {
    const double standard = air.DValue[i];
    const double difference = air.Height[i] - standard;
    const bool isKnown = (air.Press[i] > 0) & (standard < kNotReached);
    air.DValue[i] = isKnown ? difference : kMissing;
  }
}

// mm from each level but the last to the next.
VEXA_WIDE void FillWater(const double* pressures, const double* mixings, std::size_t count,
                         double* waters) {
  VEXA_INDEPENDENT
  for (std::size_t i = 1; i < count; ++i) {
    waters[i] =
        (mixings[i - 1] + mixings[i]) * (pressures[i - 1] - pressures[i]) * (100 / kGravity / 2);
  }
}

VEXA_WIDE std::size_t CountMoist(const double* pressures, const double* mixings,
                                 std::size_t count) {
  return FirstThat(0, count,
                   [=](std::size_t i) { return !((pressures[i] > 0) & IsThere(mixings[i])); });
}

// From the ground to each level; up to the first without a dew point.
Levels<double> WaterBelow(const LevelProfile& levels) {
  const double* pressures = levels.Press.Values().data();
  const double* mixings = levels.MixingRatio.Values().data();
  const auto count = static_cast<std::size_t>(levels.Count());
  const std::size_t moist = CountMoist(pressures, mixings, count);
  Levels<double> below;
  std::vector<double>& waters = below.Values();
  waters.resize(moist);
  FillWater(pressures, mixings, moist, waters.data());
  SumUp(0, waters.data(), moist);
  waters.resize(count, kMissing);
  // Levels without pressure may have others above them.
  double water = moist > 0 ? waters[moist - 1] : 0;
  for (std::size_t i = moist; i < count; ++i) {
    const double press = pressures[i];
    if (!(press > 0)) continue;
    if (NotAvailable(mixings[i])) break;
    if (i > 0) {
      water += (mixings[i - 1] + mixings[i]) * (pressures[i - 1] - press) * (100 / kGravity / 2);
    }
    waters[i] = water;
  }
  return below;
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
  // So many that what one step leaves is still at hand for the next.
  constexpr std::size_t kAtATime = 256;
  using Part = std::array<double, kAtATime>;
  struct Parts {
    Part Density, DValue, Modified, Potential, Gradient;
    std::array<double, 1 + kAtATime> Refractivity;  // the first is that of the level below
  } parts;
  parts.Refractivity[kAtATime] = kMissing;
  const auto count = static_cast<std::size_t>(levels.Count());
  LevelListing listing;
  for (Levels<double>* column : {&listing.Density, &listing.DValue, &listing.Refractivity,
                                 &listing.Modified, &listing.Potential, &listing.Gradient}) {
    column->Values().reserve(count);
  }
  for (std::size_t from = 0; from < count; from += kAtATime) {
    const std::size_t some = std::min(count - from, kAtATime);
    const auto at = [from](const Levels<double>& column) { return column.Values().data() + from; };
    parts.Refractivity[0] = parts.Refractivity[kAtATime];
    const ListedColumns listed{.Count = some,
                               .Press = at(levels.Press),
                               .Height = at(levels.Height),
                               .Temp = at(levels.Temp),
                               .Theta = at(levels.Theta),
                               .VirtualTemp = at(levels.VirtualTemp),
                               .MixingRatio = at(levels.MixingRatio),
                               .Density = parts.Density.data(),
                               .DValue = parts.DValue.data(),
                               .Refractivity = parts.Refractivity.data() + 1,
                               .Modified = parts.Modified.data(),
                               .Potential = parts.Potential.data(),
                               .Gradient = parts.Gradient.data()};
    FillAir(listed);
    FillGradients(listed, from == 0 ? 1 : 0);
    FillIsaHeights(listed.Press, at(levels.LogPress), some, listed.DValue);
    ToDifferences(listed);
    const auto add = [some](Levels<double>& column, const double* part) {
      column.Values().insert(column.Values().end(), part, part + some);
    };
    add(listing.Density, listed.Density);
    add(listing.DValue, listed.DValue);
    add(listing.Refractivity, listed.Refractivity);
    add(listing.Modified, listed.Modified);
    add(listing.Potential, listed.Potential);
    add(listing.Gradient, listed.Gradient);
  }
  listing.WaterBelow = WaterBelow(levels);
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
