// Gusts that thunderstorms bring down, and hail.
#include <algorithm>
#include <cmath>
#include <optional>

#include "analysis/column_scan.h"
#include "analysis/hail_table.h"
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

double InflowTemp(In& in) {
  return InflowOf(in).Temp;
}

// How much warmer the inflow is at 600 hPa than the air there.
double FirstExcess(In& in) {
  const Inflow inflow = InflowOf(in);
  const double aloft = in.Temp(600);
  if (in.Failed()) return 0;
  return in.Note("T1", LiftSat(inflow.ThetaE, 600, in.Set().Saturation).Temp - aloft, "C");
}

double GustOf(double excess) {
  return excess > 0 ? 13 * std::sqrt(excess) : 0;
}

// The gust of air that also brings down what it is colder by at the ground, on the wind of the low
// layers.
double SecondSpeed(In& in) {
  constexpr double kLowWindTop = 1524;                     // m: 5000 ft
  constexpr double kSteerBottom = 3048, kSteerTop = 4267;  // m: 10000 and 14000 ft
  const double first = in.Part(FirstExcess);
  const double temp = in.Part(InflowTemp);
  const double second = in.Note("T2", temp - in.Note("DownRush-T", in.Part(DownRush), "C"), "C");
  const WindVector low = in.MeanWind(0, kLowWindTop);
  const double carried = in.Note("mean wind 0-5000 ft", std::hypot(low.U, low.V), "kt") / 3;
  const WindVector steering = in.MeanWind(kSteerBottom, kSteerTop);
  if (in.Keeps()) in.Note("gusts come from", FromComponents(steering).Dir, "deg");
  return carried + GustOf((first + second) / 2);
}

// Lowest crossing of a temperature, hPa, linear in ln p.
std::optional<double> LowestCrossing(const LevelProfile& levels, const Levels<double>& temps,
                                     double wanted) {
  const std::vector<double>& all = temps.Values();
  const std::size_t warm = FirstAbove(all.data(), 0, all.size(), wanted);
  const std::size_t cold = FirstNotAbove(all.data(), warm, all.size(), wanted);
  if (cold == all.size()) return std::nullopt;
  constexpr double kHighest = 999, kLowest = -998;  // short of the markers
  const bool isLikeNone = FirstNotBelow(all.data(), 0, cold + 1, kHighest) <= cold ||
                          FirstNotAbove(all.data(), 0, cold + 1, kLowest) <= cold;
  if (isLikeNone && std::any_of(all.data(), all.data() + cold + 1, NotAvailable)) {
    return std::nullopt;
  }
  const int i = static_cast<int>(cold);
  const double share = (wanted - temps(i)) / (temps(i + 1) - temps(i));
  return levels.Press(i) * std::pow(levels.Press(i + 1) / levels.Press(i), share);
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
  return GustOf(in.Part(FirstExcess));
}

double SecondGust(In& in) {
  return in.Part(SecondSpeed);
}

double LargerGust(In& in) {
  const double first = in.Note("T1 gust", GustOf(in.Part(FirstExcess)), "kt");
  const double second = in.Note("T2 gust", in.Part(SecondSpeed), "kt");
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
  const int size = HailDiameter(in.Note("warmth of the cloud", cloud, "C"),
                                in.Note("dry descent", descent, "C"));
  if (size == 0) return 0;
  const double zero = in.Note("wet-bulb zero", WetBulbZero(in), "m AGL");
  if (in.Failed()) return 0;
  return AfterMelting(size, zero) / 25.4;
}

}  // namespace vexa::analysis::formula
