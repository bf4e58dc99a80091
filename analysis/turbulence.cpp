#include "analysis/turbulence.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "analysis/column_scan.h"
#include "analysis/moist_air.h"
#include "analysis/profile_walk.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kBeyondShare = 0.005;    // of the depth of the sounding
constexpr double kBoundaryLayer = 609.6;  // m: 2000 ft
constexpr double kHighLevel = 12192;      // m: 40000 ft
constexpr double kLeastLowPair = 15.24;   // m: 50 ft
constexpr double kNoShearRichardson = 999;
constexpr double kLapseJump = 10;  // °C per km

struct Step {
  double From;  // kt per 1000 ft or 100 ft, or m/s
  Intensity Class;
};

Intensity Graded(std::span<const Step> steps, double value) {
  Intensity grade = Intensity::None;
  for (const Step& step : steps) {
    if (value >= step.From) grade = step.Class;
  }
  return grade;
}

constexpr Step kUsaf[] = {{3, Intensity::Light},    {5, Intensity::LightModerate},
                          {6, Intensity::Moderate}, {9, Intensity::ModerateSevere},
                          {10, Intensity::Severe},  {15, Intensity::Extreme}};
constexpr Step kFaa[] = {{4, Intensity::Light},
                         {6, Intensity::Moderate},
                         {9, Intensity::ModerateSevere},
                         {12, Intensity::Severe}};
constexpr Step kLowShear[] = {
    {2, Intensity::Light}, {5, Intensity::Moderate}, {9, Intensity::ModerateSevere}};
constexpr double kSevereLowShear = 12;  // more than this

Intensity Lowered(Intensity grade) {
  switch (grade) {
    case Intensity::Moderate:
      return Intensity::Light;
    case Intensity::ModerateSevere:
      return Intensity::Moderate;
    case Intensity::Severe:
      return Intensity::ModerateSevere;
    default:
      return Intensity::None;
  }
}

Intensity RaisedCat(Intensity grade) {
  switch (grade) {
    case Intensity::Light:
      return Intensity::LightModerate;
    case Intensity::Moderate:
      return Intensity::ModerateSevere;
    case Intensity::ModerateSevere:
      return Intensity::Severe;
    default:
      return grade;
  }
}

Intensity HighCatOf(const WindPair& pair) {
  if (pair.Shear >= 8 && pair.Richardson < 0.5) return Intensity::Severe;
  if (pair.Shear >= 5 && pair.Richardson < 1) return Intensity::Moderate;
  return pair.Shear >= 3 && pair.Richardson < 2 ? Intensity::Light : Intensity::None;
}

Intensity RaisedHighCat(Intensity grade) {
  switch (grade) {
    case Intensity::None:
      return Intensity::Light;
    case Intensity::Light:
      return Intensity::Moderate;
    default:
      return Intensity::Severe;
  }
}

// Neighbouring pairs of one class become one layer.
void Append(std::vector<AirLayer>& layers, const WindPair& pair, Intensity grade,
            std::string_view word, double value) {
  if (grade == Intensity::None) return;
  if (!layers.empty() && layers.back().Class == grade && layers.back().Word == word &&
      layers.back().Top.Height == pair.Low.Height) {
    layers.back().Top = pair.High.Point();
    layers.back().Value = std::max(layers.back().Value, value);
    return;
  }
  layers.push_back({pair.Low.Point(), pair.High.Point(), grade, word, value});
}

}  // namespace

std::vector<WindPair> PairWinds(const WindProfile& winds, const LevelProfile& levels,
                                double leastThickness, double highest) {
  std::vector<WindPair> pairs;
  if (levels.Count() < 2) return pairs;
  const double bottom = levels.Height(1);
  const double top = levels.Height.Top();
  // The last wind may stand a little above the last temperature, whose height is worked out.
  const double reach = top + kBeyondShare * (top - bottom);
  constexpr double kRounding = 0.01;  // m
  constexpr double kNoLimit = 1e9;
  const bool isAllLow = winds.IsOrdered && winds.Count() > 0 && winds.Heights.back() <= highest;
  const std::size_t end = isAllLow ? winds.Count()
                                   : FirstAbove(winds.Heights.data(), 0, winds.Count(), highest);
  const double most = leastThickness > 0 ? (reach - bottom) / leastThickness + 1 : kNoLimit;
  pairs.reserve(std::min(end, static_cast<std::size_t>(std::min(std::max(0.0, most), kNoLimit))));
  ProfileWalk walk(levels);
  AirPoint low;
  WindVector lowWind;
  bool begun = false;
  for (std::size_t i = 0; i < end; ++i) {
    const double height = winds.Heights[i];
    if (height < bottom || height > reach) continue;
    if (begun && !(height - low.Height >= std::max(leastThickness, 1e-6))) {
      const double near = std::min(low.Height + leastThickness - kRounding, highest);
      while (i + 1 < winds.Count() && winds.Heights[i + 1] < near) ++i;
      continue;
    }
    AirPoint high = walk.At(std::min(height, top));
    high.Height = height;
    const WindVector& wind = winds.Vectors[i];
    if (begun) {
      const double depth = high.Height - low.Height;
      WindPair pair{.Low = low, .High = high};
      pair.Difference = LengthOf(Minus(wind, lowWind));
      pair.Shear = pair.Difference / (depth / MetersFromFeet(1000));
      pair.Lapse = (low.Temp - high.Temp) / depth * 1000;
      const double perSecond = pair.Difference * kKnotToMs / depth;
      const double stability =
          kGravity / ((low.Theta + high.Theta) / 2) * (high.Theta - low.Theta) / depth;
      pair.Richardson = perSecond < 1e-9 ? kNoShearRichardson : stability / (perSecond * perSecond);
      pairs.push_back(pair);
    }
    low = high;
    lowWind = wind;
    begun = true;
  }
  return pairs;
}

Intensity CatOf(CatType type, double shear, double richardson) {
  if (type == CatType::Usaf) return Graded(kUsaf, shear);
  const Intensity grade = Graded(kFaa, shear);
  if (richardson > 1) return Lowered(grade);
  return richardson < 0.25 ? RaisedCat(grade) : grade;
}

std::vector<AirLayer> FindCat(const std::vector<WindPair>& pairs, double ground, CatType type) {
  std::vector<AirLayer> layers;
  for (const WindPair& pair : pairs) {
    if (pair.Low.Height < ground + kBoundaryLayer) continue;
    const Intensity grade = CatOf(type, pair.Shear, pair.Richardson);
    Append(layers, pair, grade, Text(grade), pair.Shear);
  }
  return layers;
}

std::vector<AirLayer> FindHighCat(const std::vector<WindPair>& pairs,
                                  const std::vector<LevelPoint>& tropopauses) {
  const double from =
      tropopauses.empty() ? kHighLevel : std::min(kHighLevel, tropopauses.front().Height);
  std::vector<AirLayer> layers;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const WindPair& pair = pairs[i];
    if (pair.Low.Height < from) continue;
    Intensity grade = HighCatOf(pair);
    const bool jumps = i + 1 < pairs.size() &&
                       std::fabs(pairs[i + 1].Lapse - pair.Lapse) >= kLapseJump && pair.Shear >= 3;
    if (jumps) grade = RaisedHighCat(grade);
    Append(layers, pair, grade, Text(grade), pair.Shear);
  }
  return layers;
}

std::vector<AirLayer> FindLowShear(const std::vector<WindPair>& pairs, double ground) {
  std::vector<AirLayer> layers;
  for (const WindPair& pair : pairs) {
    if (pair.High.Height > ground + kLowShearDepth) break;
    const double depth = pair.High.Height - pair.Low.Height;
    if (depth < kLeastLowPair) continue;
    const double perHundredFeet = pair.Difference / (depth / MetersFromFeet(100));
    const Intensity grade =
        perHundredFeet > kSevereLowShear ? Intensity::Severe : Graded(kLowShear, perHundredFeet);
    // Strong stands where turbulence has moderate to severe.
    const std::string_view word = grade == Intensity::ModerateSevere ? "STR" : Text(grade);
    Append(layers, pair, grade, word, perHundredFeet);
  }
  return layers;
}

WaveWord WaveTurbulence(double verticalSpeed) {
  struct Row {
    double From;
    WaveWord Word;
  };
  constexpr Row kRows[] = {
      {0.5, {Intensity::Light, "LGT", "LIGHT"}},
      {1.25, {Intensity::LightModerate, "L-M", "LT-MD"}},
      {1.75, {Intensity::Moderate, "MDT", "MODRT"}},
      {2.5, {Intensity::ModerateSevere, "M-S", "MD-SV"}},
      {3.0, {Intensity::Severe, "SVR", "SEVER"}},
      {5.0, {Intensity::SevereExtreme, "S-X", "S-X"}},
      {7.0, {Intensity::Extreme, "XTR", "STRNG"}},
  };
  WaveWord word;
  for (const Row& row : kRows) {
    if (std::fabs(verticalSpeed) >= row.From) word = row.Word;
  }
  return word;
}

}  // namespace vexa::analysis
