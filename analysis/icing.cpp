#include "analysis/icing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "analysis/column_scan.h"
#include "analysis/exact.h"
#include "analysis/profile_walk.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

constexpr double kColdestIcing = -30;  // °C

struct Corner {
  double X;
  double Y;
};

// Linear between the corners, constant beyond them.
double Along(std::span<const Corner> corners, double x) {
  if (x <= corners.front().X) return corners.front().Y;
  for (std::size_t i = 1; i < corners.size(); ++i) {
    if (x > corners[i].X) continue;
    const double share = (x - corners[i - 1].X) / (corners[i].X - corners[i - 1].X);
    return corners[i - 1].Y + share * (corners[i].Y - corners[i - 1].Y);
  }
  return corners.back().Y;
}

// Median drop diameter, µm, by cloud type.
double DropDiameter(CloudType type) {
  constexpr double kMicrons[] = {0, 12, 10, 18, 12, 18, 10, 10, 10, 10, 25};
  return kMicrons[static_cast<std::size_t>(type)];
}

// Liquid water that makes icing severe, g/m³, by drop diameter.
double SevereWater(CloudType type) {
  constexpr Corner kLimits[] = {{10, 2.50}, {15, 1.30}, {20, 0.85},
                                {30, 0.65}, {40, 0.55}, {50, 0.50}};
  return Along(kLimits, DropDiameter(type));
}

// What freezing leaves liquid.
double UnfrozenShare(CloudFamily family, double temp) {
  if (family == CloudFamily::Cumuliform) return temp >= -40 ? 1 : 0;
  constexpr Corner kShares[] = {{-30, 0}, {-10, 1}};
  return Along(kShares, temp);
}

Intensity IcingOf(double water, double severe, double temp) {
  if (!(water > 0) || temp > 0 || temp <= kColdestIcing) return Intensity::None;
  if (water < 0.1 * severe) return Intensity::Trace;
  if (water < 0.5 * severe) return Intensity::Light;
  if (water < severe) return temp > -5 ? Intensity::Light : Intensity::Moderate;
  if (temp <= -5) return Intensity::Severe;
  return temp <= -3 ? Intensity::Moderate : Intensity::Light;
}

// Words of every class with every kind of ice, so that layers can point at them.
enum class Ice { Rime, Mixed, Clear };
std::string_view IceWord(Intensity intensity, Ice ice) {
  constexpr std::array<std::array<std::string_view, 3>, 4> kWords = {{
      {"TRC RIME", "TRC MIXED", "TRC CLEAR"},
      {"LGT RIME", "LGT MIXED", "LGT CLEAR"},
      {"MDT RIME", "MDT MIXED", "MDT CLEAR"},
      {"SVR RIME", "SVR MIXED", "SVR CLEAR"},
  }};
  const auto word = [&](std::size_t row) { return kWords[row][static_cast<std::size_t>(ice)]; };
  switch (intensity) {
    case Intensity::Trace:
      return word(0);
    case Intensity::Light:
      return word(1);
    case Intensity::Moderate:
      return word(2);
    case Intensity::Severe:
      return word(3);
    default:
      return "";
  }
}

Ice KindOf(CloudFamily family, double temp, bool freezingRain) {
  if (family == CloudFamily::Cumuliform) {
    if (temp > -9) return Ice::Clear;
    return temp > -15 ? Ice::Mixed : Ice::Rime;
  }
  return freezingRain && temp >= -2 ? Ice::Mixed : Ice::Rime;
}

// Rain that falls out of a warm moist layer into the freezing air below it: the heights between
// which it freezes, empty when the ground is warm or nothing falls.
struct FreezingRain {
  double Top = kNone;
  bool At(double height, double temp) const { return HasHeight(Top) && height < Top && temp <= 0; }
};

FreezingRain FindFreezingRain(const LevelProfile& levels) {
  constexpr double kMoist = 3;  // °C of depression
  FreezingRain rain;
  const std::vector<double>& temps = levels.Temp.Values();
  // Up from frozen air to air that is not: the highest such place that is moist.
  for (std::size_t at = 0; at < temps.size();) {
    const std::size_t frozen = FirstNotAbove(temps.data(), at, temps.size(), 0);
    at = FirstAbove(temps.data(), frozen, temps.size(), 0);
    if (at == temps.size()) break;
    const int i = static_cast<int>(at) + 1;
    const bool hasDewpt = !NotAvailable(levels.Dewpt(i));
    if (hasDewpt && Exact(levels.Temp(i) - levels.Dewpt(i)) <= kMoist) rain.Top = levels.Height(i);
  }
  return rain;
}

const CloudDeck* DeckAt(const std::vector<CloudDeck>& clouds, double height) {
  const auto found = std::ranges::find_if(clouds, [height](const CloudDeck& deck) {
    return height >= deck.Base.Height && height <= deck.Top.Height;
  });
  return found == clouds.end() ? nullptr : &*found;
}

struct Rule {
  double Coldest;     // °C, exclusive; the warmest is that of the row before it
  double Depression;  // °C
  Intensity Stable, Unstable;
  Ice StableIce, UnstableIce;
};
constexpr double kColdestRule = -22;
constexpr Rule kRules[] = {
    {-8, 1, Intensity::Light, Intensity::Moderate, Ice::Rime, Ice::Clear},
    {-8, 2, Intensity::Trace, Intensity::Light, Ice::Rime, Ice::Clear},
    {-16, 1, Intensity::Moderate, Intensity::Moderate, Ice::Rime, Ice::Mixed},
    {-16, 3, Intensity::Light, Intensity::Light, Ice::Rime, Ice::Mixed},
    {-23, 4, Intensity::Light, Intensity::Light, Ice::Rime, Ice::Rime},
};

Intensity Raised(Intensity intensity) {
  switch (intensity) {
    case Intensity::Trace:
      return Intensity::Light;
    case Intensity::Light:
      return Intensity::Moderate;
    case Intensity::Moderate:
      return Intensity::Severe;
    default:
      return intensity;
  }
}

// The band of a temperature: rows of kRules with the same coldest limit belong together.
const Rule* RuleFor(double temp, double depression) {
  if (temp > 0 || temp < kColdestRule) return nullptr;
  double band = 0;
  for (const Rule& rule : kRules) {
    if (band == 0 && temp > rule.Coldest) band = rule.Coldest;
    if (rule.Coldest == band && depression <= rule.Depression) return &rule;
  }
  return nullptr;
}

ClassedPoint RuleAt(const AirPoint& air, const std::vector<CloudDeck>& clouds,
                    const FreezingRain& rain) {
  ClassedPoint point{.At = air};
  if (rain.At(air.Height, air.Temp)) {
    point.Class = Intensity::Severe;
    point.Word = IceWord(Intensity::Severe, Ice::Clear);
    return point;
  }
  if (!air.HasDewpt()) return point;
  const Rule* rule = RuleFor(air.Temp, Exact(air.Temp - air.Dewpt));
  if (rule == nullptr) return point;
  constexpr double kSteep = 2 / 0.3048;  // °C per km: 2 °C in 1000 ft
  const bool unstable = air.Lapse > kSteep;
  point.Class = unstable ? rule->Unstable : rule->Stable;
  const CloudDeck* deck = DeckAt(clouds, air.Height);
  if (deck != nullptr && deck->Type == CloudType::CB) point.Class = Raised(point.Class);
  point.Word = IceWord(point.Class, unstable ? rule->UnstableIce : rule->StableIce);
  return point;
}

// The height range whose temperatures lie between two limits, from the profile's levels.
struct HeightRange {
  double Low = 0;
  double High = -1;
};
HeightRange RangeOf(const LevelProfile& levels, double coldest) {
  HeightRange range{levels.Height(1), levels.Height(1) - 1};
  const std::vector<double>& temps = levels.Temp.Values();
  // Of the levels up to the highest that is warm enough.
  const std::size_t count = CountToLastNotBelow(temps.data(), temps.size(), coldest);
  if (count > 0) range.High = levels.Height(std::min(static_cast<int>(count) + 1, levels.Count()));
  return range;
}

constexpr double kLeastCarbTemp = -15;

// Zones from the innermost: the warmest temperature of each by dew point.
constexpr Corner kSeriousAnyPower[] = {{0, 5}, {5, 12.5}, {10, 15}, {15, 15}};
constexpr Corner kModerateCruise[] = {{-3, -3}, {0, 9}, {5, 18}, {10, 21}, {15, 21}, {20, 20}};
constexpr Corner kSeriousDescent[] = {{-7, -7}, {-5, 1},  {-3, 8},  {0, 16},
                                      {5, 23},  {10, 27}, {15, 29}, {20, 28}};
constexpr Corner kLightAnyPower[] = {{-14, -14}, {-10, -1.5}, {-7, 6}, {-5, 10},
                                     {-3, 14},   {0, 19.5},   {5, 27}, {10, 32},
                                     {15, 35},   {20, 36},    {25, 36}};
struct Zone {
  std::span<const Corner> Limit;
  Intensity Class;
};
constexpr Zone kZones[] = {{kSeriousAnyPower, Intensity::Severe},
                           {kModerateCruise, Intensity::ModerateSevere},
                           {kSeriousDescent, Intensity::Moderate},
                           {kLightAnyPower, Intensity::Light}};

}  // namespace

CloudWater::CloudWater(const CloudDeck& deck, SaturationOver over)
    : family_(FamilyOf(deck.Type)),
      baseHeight_(deck.Base.Height),
      air_(deck.Base.Press, deck.Base.Temp, over) {}

double CloudWater::At(double press, double height, double temp) const {
  const double mixed = EntrainmentFactor(family_, (height - baseHeight_) / 1000);
  const double liquid = UnfrozenShare(family_, temp);
  if (mixed == 0 || liquid == 0) return 0;
  return std::max(air_.Water(press), 0.0) * mixed * liquid;
}

std::vector<AirLayer> SmithFeddesIcing(const LevelProfile& levels,
                                       const std::vector<CloudDeck>& clouds, SaturationOver over) {
  const FreezingRain rain = FindFreezingRain(levels);
  std::vector<ClassedPoint> points;
  ProfileWalk walk(levels);
  for (const CloudDeck& deck : clouds) {
    const CloudFamily family = FamilyOf(deck.Type);
    if (family == CloudFamily::Cirriform || family == CloudFamily::None) continue;
    if (deck.Base.Temp <= kColdestIcing && deck.Top.Temp <= kColdestIcing) continue;
    const double severe = SevereWater(deck.Type);
    const CloudWater cloud(deck, over);
    const std::vector<double> heights = SampleHeights(levels, deck.Base.Height, deck.Top.Height);
    points.reserve(points.size() + heights.size() + 1);
    for (const double height : heights) {
      const AirPoint air = walk.At(height);
      ClassedPoint point{.At = air};
      if (air.Temp <= 0 && air.Temp > kColdestIcing) {
        const double water = cloud.At(air.Press(), air.Height, air.Temp);
        point.Class = IcingOf(water, severe, air.Temp);
        point.Word = IceWord(point.Class, KindOf(family, air.Temp, HasHeight(rain.Top)));
        point.Value = water;
      }
      points.push_back(point);
    }
    if (!points.empty()) points.push_back({points.back().At, Intensity::None});
  }
  return JoinRuns(points);
}

std::vector<AirLayer> RuleIcing(const LevelProfile& levels, const std::vector<CloudDeck>& clouds) {
  if (levels.Count() < 2) return {};
  const FreezingRain rain = FindFreezingRain(levels);
  const HeightRange range = RangeOf(levels, kColdestRule);
  std::vector<ClassedPoint> points;
  ProfileWalk walk(levels);
  for (const double height : SampleHeights(levels, range.Low, range.High)) {
    points.push_back(RuleAt(walk.At(height), clouds, rain));
  }
  return JoinRuns(points);
}

Intensity CarburettorIcing(double temp, double dewpt) {
  if (temp < kLeastCarbTemp || dewpt > temp) return Intensity::None;
  for (const Zone& zone : kZones) {
    const bool inColumns = dewpt >= zone.Limit.front().X && dewpt <= zone.Limit.back().X;
    if (inColumns && temp <= Along(zone.Limit, dewpt)) return zone.Class;
  }
  return Intensity::None;
}

std::vector<AirLayer> FindCarburettorIcing(const LevelProfile& levels) {
  if (levels.Count() < 2) return {};
  const HeightRange range = RangeOf(levels, kLeastCarbTemp);
  std::vector<ClassedPoint> points;
  ProfileWalk walk(levels);
  const std::vector<double> heights = SampleHeights(levels, range.Low, range.High);
  points.reserve(heights.size());
  for (const double height : heights) {
    const AirPoint air = walk.At(height);
    const Intensity risk = air.HasDewpt()
                               ? CarburettorIcing(air.Temp, std::min(air.Dewpt, air.Temp))
                               : Intensity::None;
    points.push_back({air, risk, Text(risk)});
  }
  return JoinRuns(points);
}

}  // namespace vexa::analysis
