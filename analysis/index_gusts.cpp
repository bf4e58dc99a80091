// Gusts that thunderstorms bring down, and hail.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "analysis/index_formulas.h"
#include "analysis/moist_air.h"
#include "analysis/parcel_source.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis::formula {
namespace {

// The air that storms draw in: the surface parcel under a low inversion, else the surface warmed as
// far as the 850 hPa air allows.
struct Inflow {
  double Temp = 0;    // °C
  double ThetaE = 0;  // K
};

Inflow InflowOf(In& in) {
  constexpr double kInversionDepth = 200;  // hPa above the ground
  constexpr double kLid = 850;             // hPa
  Inflow inflow{in.SurfaceTemp(), 0};
  const double surface = in.SurfacePress();
  const double dewpt = in.SurfaceDewpt();
  if (in.Failed()) return inflow;
  const SaturationOver over = in.Set().Saturation;
  const auto& inversions = in.Results().Inversions;
  const bool capped = std::ranges::any_of(inversions, [&](const Inversion& inversion) {
    return inversion.Top.Press >= surface - kInversionDepth;
  });
  if (capped || surface <= kLid) {
    inflow.ThetaE = in.Levels().ThetaE(1);
    return inflow;
  }
  const double mixing = ThetaPoint(surface, dewpt, over).MixingRatio;
  const double warmed =
      (in.Temp(kLid) + kKelvinOffset) * std::pow(surface / kLid, kPoisson) - kKelvinOffset;
  if (in.Failed()) return inflow;
  const double warmDewpt = DewpointFromMixingRatio(surface, mixing, over);
  inflow.ThetaE = LevelThetaE(surface, warmed, warmDewpt, over);
  inflow.Temp = std::max(inflow.Temp, in.Note("Tmax", warmed, "C"));
  return inflow;
}

// How much warmer the inflow is at 600 hPa than the air there.
double FirstMethod(In& in, const Inflow& inflow) {
  const double aloft = in.Temp(600);
  if (in.Failed()) return 0;
  return in.Note("T1", LiftSat(inflow.ThetaE, 600, in.Set().Saturation).Temp - aloft, "C");
}

double GustOf(double excess) {
  return excess > 0 ? 13 * std::sqrt(excess) : 0;
}

// The gust of air that also brings down what it is colder by at the ground, on the wind of the low
// layers.
double SecondMethod(In& in, const Inflow& inflow, double first) {
  constexpr double kLowWindTop = 1524;                     // m: 5000 ft
  constexpr double kSteerBottom = 3048, kSteerTop = 4267;  // m: 10000 and 14000 ft
  const double second = in.Note("T2", inflow.Temp - in.Note("DownRush-T", DownRush(in), "C"), "C");
  const WindVector low = in.MeanWind(0, kLowWindTop);
  const double carried = in.Note("mean wind 0-5000 ft", std::hypot(low.U, low.V), "kt") / 3;
  const WindVector steering = in.MeanWind(kSteerBottom, kSteerTop);
  in.Note("gusts come from", FromComponents(steering).Dir, "deg");
  return carried + GustOf((first + second) / 2);
}

constexpr std::size_t kHailRows = 26;
constexpr std::size_t kColumns = 10;
// Diameter, mm, by the warmth of the cloud at -5 °C in half degrees and the depth of dry descent to
// the condensation level in steps of 5 °C.
constexpr std::array<std::array<int, kColumns>, kHailRows> kHail = {{
    {0, 0, 0, 2, 2, 5, 5, 5, 5, 5},
    {0, 0, 0, 2, 5, 5, 5, 5, 10, 10},
    {0, 0, 2, 2, 5, 5, 10, 10, 15, 15},
    {0, 0, 2, 2, 5, 10, 15, 15, 20, 20},
    {0, 0, 2, 2, 10, 15, 20, 20, 20, 20},
    {0, 2, 2, 5, 15, 20, 20, 20, 25, 25},
    {0, 2, 5, 10, 20, 20, 25, 25, 30, 30},
    {2, 2, 10, 15, 20, 25, 30, 30, 35, 35},
    {2, 5, 10, 20, 25, 30, 35, 35, 40, 40},
    {2, 5, 15, 20, 30, 35, 40, 40, 45, 45},
    {2, 5, 15, 20, 30, 40, 40, 40, 45, 50},
    {2, 10, 20, 25, 35, 40, 45, 45, 50, 50},
    {5, 10, 20, 25, 40, 40, 45, 50, 55, 55},
    {5, 15, 20, 30, 40, 45, 50, 55, 60, 60},
    {5, 15, 25, 30, 40, 45, 55, 60, 60, 65},
    {5, 15, 25, 35, 40, 50, 55, 60, 65, 75},
    {10, 15, 25, 35, 45, 50, 60, 65, 70, 80},
    {10, 15, 25, 40, 45, 55, 60, 70, 80, 85},
    {10, 15, 30, 40, 45, 55, 65, 75, 85, 90},
    {10, 20, 30, 40, 50, 60, 70, 80, 90, 100},
    {10, 20, 30, 40, 50, 60, 70, 80, 95, 105},
    {10, 20, 35, 45, 50, 60, 75, 85, 100, 110},
    {10, 20, 35, 45, 50, 60, 75, 90, 105, 115},
    {15, 25, 35, 45, 50, 65, 80, 100, 110, 120},
    {15, 25, 35, 45, 55, 65, 80, 100, 110, 120},
    {15, 25, 35, 50, 55, 65, 80, 100, 110, 120},
}};

// What melting leaves: by the wet-bulb zero in m above ground and the size class.
constexpr std::array<double, 7> kSizeClasses = {5, 10, 20, 25, 50, 75, 100};  // mm, below
struct Melting {
  double From;  // m
  std::array<int, 8> Size;
};
constexpr Melting kMelting[] = {
    {3350, {0, 5, 10, 15, 25, 50, 65, 75}}, {3550, {0, 0, 5, 10, 20, 20, 25, 30}},
    {3750, {0, 0, 0, 5, 10, 15, 15, 15}},   {3950, {0, 0, 0, 0, 5, 10, 10, 10}},
    {4150, {0, 0, 0, 0, 0, 0, 5, 5}},       {4400, {0, 0, 0, 0, 0, 0, 0, 0}},
};

int Melted(int size, double wetBulbZero) {
  std::size_t sizeClass = 0;
  while (sizeClass < kSizeClasses.size() && size >= kSizeClasses[sizeClass]) ++sizeClass;
  int left = size;
  for (const Melting& row : kMelting) {
    if (wetBulbZero >= row.From) left = row.Size[sizeClass];
  }
  return left;
}

// Lowest crossing of a temperature, hPa, linear in ln p.
std::optional<double> LowestCrossing(const LevelProfile& levels, const Levels<double>& temps,
                                     double wanted) {
  for (int i = 1; i < levels.Count(); ++i) {
    if (NotAvailable(temps(i)) || NotAvailable(temps(i + 1))) return std::nullopt;
    if (temps(i) <= wanted || temps(i + 1) > wanted) continue;
    const double share = (wanted - temps(i)) / (temps(i + 1) - temps(i));
    return levels.Press(i) * std::pow(levels.Press(i + 1) / levels.Press(i), share);
  }
  return std::nullopt;
}

}  // namespace

double WetBulbZero(In& in) {
  const LevelProfile& levels = in.Levels();
  in.SurfaceDewpt();
  if (in.Failed()) return 0;
  if (levels.WetBulb(1) <= 0) return 0;
  const std::optional<double> press = LowestCrossing(levels, levels.WetBulb, 0);
  if (!press) return in.Fail("the wet bulb does not pass 0 C where dew points are known");
  const Sample height = SampleAt(levels, in.Note("Tw = 0 C at", *press, "hPa"), Quantity::Height);
  return height.Ok() ? height.Value - levels.Height(1) : in.Fail("no height at the wet-bulb zero");
}

double FirstGust(In& in) {
  return GustOf(FirstMethod(in, InflowOf(in)));
}

double SecondGust(In& in) {
  const Inflow inflow = InflowOf(in);
  return SecondMethod(in, inflow, FirstMethod(in, inflow));
}

double LargerGust(In& in) {
  const Inflow inflow = InflowOf(in);
  const double excess = FirstMethod(in, inflow);
  const double first = in.Note("T1 gust", GustOf(excess), "kt");
  const double second = in.Note("T2 gust", SecondMethod(in, inflow, excess), "kt");
  in.SayBoth(first, second);
  return std::max(first, second);
}

double WindexGust(In& in) {
  constexpr double kLowLayer = 1000;  // m
  const double meltingKm = in.FreezingHeight() / 1000;
  const double surfaceTemp = in.SurfaceTemp();
  if (in.Failed()) return 0;
  if (!(meltingKm > 0)) return in.Fail("the freezing level lies on the ground");
  const LevelProfile& levels = in.Levels();
  const double layerTop = GetPRESS(levels, levels.Height(1) + kLowLayer);
  if (!HasHeight(layerTop)) return in.Fail("the sounding ends below 1 km");
  const double low = MeanOfLowestLayer(levels, levels.Press(1) - layerTop).MixingRatio;
  if (NotAvailable(low)) return in.Fail("no dew points in the lowest 1 km");
  const double meltingPress = GetPRESS(levels, levels.Height(1) + meltingKm * 1000);
  const double lowMixing = in.Note("mean w of the lowest 1 km", low * 1000, "g/kg");
  const Sample melting = SampleAt(levels, meltingPress, Quantity::MixingRatio);
  if (!melting.Ok()) return in.Fail("no dew point at the melting level");
  const double highMixing = in.Note("w at the melting level", melting.Value * 1000, "g/kg");
  const double lapse = in.Note("lapse to the melting level", surfaceTemp / meltingKm, "C/km");
  const double moist = std::min(lowMixing / 12, 1.0);
  const double radicand = lapse * lapse - 30 + lowMixing - 2 * highMixing;
  return radicand > 0 ? 5 * std::sqrt(meltingKm * moist * radicand) : 0;
}

double HailSize(In& in) {
  constexpr double kLevel = -5;  // °C
  const AnalysisResults& results = in.Results();
  const LevelProfile& levels = in.Levels();
  const ParcelAscent& parcel = results.Chosen();
  if (!parcel.Start.Exists()) return in.Fail("no parcel to lift");
  if (!parcel.HasAnswer(&ParcelAscent::CapeTotal)) return in.Fail(std::string(kOpenCape));
  const double cape = in.Note("CAPE total", parcel.CapeTotal, "J/kg");
  const LevelPoint& ccl = results.ConvectiveCondensation;
  if (!ccl.Exists()) return in.Fail("the mixed layer's moisture never saturates");
  const std::optional<double> press = LowestCrossing(levels, levels.Temp, kLevel);
  if (!press) return in.Fail("the sounding does not pass -5 C");
  in.Note("CCL", ccl.Press, "hPa");
  in.Note("-5 C at", *press, "hPa");
  if (!(cape > 0) || ccl.Temp <= kLevel || *press >= ccl.Press) return 0;
  const SaturationOver over = in.Set().Saturation;
  const double cloud =
      LiftSat(ThetaPoint(ccl.Press, ccl.Temp, over).ThetaE, *press, over).Temp - kLevel;
  const double descent =
      (kLevel + kKelvinOffset) * std::pow(ccl.Press / *press, kPoisson) - kKelvinOffset - kLevel;
  const int row = std::min(ToWhole(2 * in.Note("warmth of the cloud", cloud, "C")), 25);
  const int column = std::min(ToWhole(in.Note("dry descent", descent, "C") / 5), 10);
  if (row < 0 || column < 1) return 0;
  const int size = kHail[static_cast<std::size_t>(row)][static_cast<std::size_t>(column) - 1];
  const double zero = in.Note("wet-bulb zero", WetBulbZero(in), "m AGL");
  if (in.Failed()) return 0;
  return Melted(size, zero) / 25.4;
}

}  // namespace vexa::analysis::formula
