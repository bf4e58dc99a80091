// Indices of the air near the ground: comfort, fog, fire weather, and the moisture of the column.
#include <algorithm>
#include <cmath>

#include "analysis/column_scan.h"
#include "analysis/exact.h"
#include "analysis/index_formulas.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis::formula {
double WindChill(In& in) {
  const double temp = FahrenheitFromCelsius(in.SurfaceTemp());
  const double speed = in.SurfaceWind().Spd * 1.15155;  // mph
  const double chill =
      speed <= 4 ? temp
                 : 91.4 + 0.0817 * (3.71 * std::sqrt(speed) + 5.81 - 0.25 * speed) * (temp - 91.4);
  return (chill - 32) / 1.8;
}

double HumidityIndex(In& in) {
  const double temp = in.SurfaceTemp();
  in.SurfaceDewpt();
  if (in.Failed()) return 0;
  const double wetBulb = in.Note("surface Tw", in.Levels().WetBulb(1), "C");
  return 0.4 * (FahrenheitFromCelsius(temp) + FahrenheitFromCelsius(wetBulb)) + 15;
}

double FogPoint(In& in) {
  const ParcelAscent& parcel = in.Results().Forced[0];
  const double surface = in.SurfacePress();
  if (!parcel.Condensation.Exists()) return in.Fail("no surface parcel");
  const double press = in.Note("LCL", parcel.Condensation.Press, "hPa");
  const Sample dewpt = SampleAt(in.Levels(), press, Quantity::Dewpt);
  if (!dewpt.Ok()) return in.Fail("no dew point at the LCL");
  const SaturationOver over = in.Set().Saturation;
  const double mixing = ThetaPoint(press, dewpt.Value, over).MixingRatio;
  return DewpointFromMixingRatio(surface, mixing, over);
}

double FogThreat(In& in) {
  return in.Note("DownRush-T", in.Part(DownRush), "C") - in.Note("fog point", FogPoint(in), "C");
}

double FogStability(In& in) {
  return 4 * in.SurfaceTemp() - 2 * (in.Temp(850) + in.SurfaceDewpt()) + in.WindAt(850).Spd;
}

namespace {

// One variant of the Haines index: two differences, each with the limits of its middle class.
struct HainesVariant {
  std::string_view Name;
  double Bottom, Top;  // hPa of the lapse term
  double Moist;        // hPa of the depression
  double LapseSome, LapseMuch;
  double DrySome, DryMuch;
};
constexpr HainesVariant kLowHaines = {"low", 950, 850, 850, 4, 8, 6, 10};
constexpr HainesVariant kMidHaines = {"middle", 850, 700, 850, 6, 11, 6, 13};
constexpr HainesVariant kHighHaines = {"high", 700, 500, 700, 18, 22, 15, 21};

// By elevation, and the next higher variant where the ground lies above the lowest level.
const HainesVariant& VariantFor(double elevationFt, double surface) {
  const HainesVariant* variant = &kHighHaines;
  if (elevationFt < 1000) {
    variant = &kLowHaines;
  } else if (elevationFt <= 3000) {
    variant = &kMidHaines;
  }
  if (variant == &kLowHaines && surface < kLowHaines.Bottom) variant = &kMidHaines;
  if (variant == &kMidHaines && surface < kMidHaines.Bottom) variant = &kHighHaines;
  return *variant;
}

double ClassOf(double difference, double some, double much) {
  const double value = Exact(difference);
  if (value < some) return 1;
  return value < much ? 2 : 3;
}

}  // namespace

double Haines(In& in) {
  const HainesVariant& variant = VariantFor(in.Sounding().ElevFt, in.SurfacePress());
  in.Setting("variant", variant.Name);
  const double lapse = in.Temp(variant.Bottom) - in.Temp(variant.Top);
  const double depression = in.Temp(variant.Moist) - in.Dewpt(variant.Moist);
  const double stability =
      in.Note("stability term", ClassOf(lapse, variant.LapseSome, variant.LapseMuch), "");
  return stability +
         in.Note("moisture term", ClassOf(depression, variant.DrySome, variant.DryMuch), "");
}

double MixingHeight(In& in) {
  const LevelProfile& levels = in.Levels();
  if (levels.Count() < 2) return in.Fail("fewer than 2 levels");
  const double theta = in.Note("surface theta", levels.Theta(1), "K");
  constexpr std::string_view kNever = "the air is never potentially warmer than at the ground";
  const std::vector<double>& thetas = levels.Theta.Values();
  const std::size_t above = FirstAbove(thetas.data(), 1, thetas.size(), theta);
  if (above == thetas.size()) return in.Fail(std::string(kNever));
  if (above == 1) return 0;
  const auto low = static_cast<int>(above);
  const double share = (theta - thetas[above - 1]) / (thetas[above] - thetas[above - 1]);
  const double press =
      levels.Press(low) * std::pow(levels.Press(low + 1) / levels.Press(low), share);
  const Sample height = SampleAt(levels, press, Quantity::Height);
  if (!height.Ok()) return in.Fail(std::string(kNever));
  in.Note("top of mixing", press, "hPa");
  return height.Value - levels.Height(1);
}

double VentIndex(In& in) {
  const double height = in.Note("mixing height", MixingHeight(in), "m");
  if (in.Failed() || height == 0) return 0;
  const Wind transport = FromComponents(in.MeanWind(0, height));
  in.Note("transport wind from", transport.Dir, "deg");
  return height * in.Note("transport wind", transport.Spd, "kt") * kKnotToMs;
}

namespace {

// ∫ value dln p from the ground to 500 hPa over its length, by trapezoids over the levels that have
// a dew point; both ends must.
template <class ValueAt>
double MeanTo500(In& in, Quantity first, Quantity second, ValueAt valueAt) {
  constexpr double kTop = 500;  // hPa
  const LevelProfile& levels = in.Levels();
  const double surface = in.SurfacePress();
  in.SurfaceDewpt();
  const Sample one = SampleAt(levels, kTop, first);
  const Sample two = SampleAt(levels, kTop, second);
  if (in.Failed()) return 0;
  if (!(surface > kTop)) return in.Fail("the surface lies above 500 hPa");
  if (!one.Ok() || !two.Ok()) return in.Fail("no dew point at 500 hPa");
  double sum = 0;
  const double* pressures = levels.Press.Values().data();
  const double* logs = levels.LogPress.Values().data();
  const double* dewpts = levels.Dewpt.Values().data();
  double lastLog = logs[0];
  double last = valueAt(0);
  const auto add = [&](double log, double value) {
    sum += (last + value) / 2 * (lastLog - log);
    lastLog = log;
    last = value;
  };
  const std::size_t count = levels.Press.Values().size();
  for (std::size_t i = 1; i < count && pressures[i] > kTop; ++i) {
    if (!NotAvailable(dewpts[i])) add(logs[i], valueAt(i));
  }
  add(std::log(kTop), first == second ? one.Value : one.Value - two.Value);
  return sum / std::log(surface / kTop);
}

}  // namespace

double MeanHumidity(In& in) {
  const double* humidities = in.Levels().RelHumidity.Values().data();
  return MeanTo500(in, Quantity::RelHumidity, Quantity::RelHumidity,
                   [=](std::size_t i) { return humidities[i]; });
}
double MeanDepression(In& in) {
  const double* temps = in.Levels().Temp.Values().data();
  const double* dewpts = in.Levels().Dewpt.Values().data();
  return MeanTo500(in, Quantity::Temp, Quantity::Dewpt,
                   [=](std::size_t i) { return temps[i] - dewpts[i]; });
}

// cm of liquid from the ground to the highest dew point, at most 300 hPa.
double PrecipitableWater(In& in) {
  constexpr double kTop = 300;  // hPa
  const LevelProfile& levels = in.Levels();
  in.SurfaceDewpt();
  if (in.Failed()) return 0;
  if (levels.Count() < 2) return in.Fail("fewer than 2 levels");
  double sum = 0;
  double lastPress = levels.Press(1);
  double last = levels.MixingRatio(1);
  const auto add = [&](double press, double mixing) {
    sum += (last + mixing) / 2 * (lastPress - press) * 100 / kGravity;
    lastPress = press;
    last = mixing;
  };
  for (int i = 2; i <= levels.Count() && levels.Press(i) >= kTop; ++i) {
    if (!NotAvailable(levels.MixingRatio(i))) add(levels.Press(i), levels.MixingRatio(i));
  }
  const Sample end = SampleAt(levels, kTop, Quantity::MixingRatio);
  if (end.Ok() && lastPress > kTop) add(kTop, end.Value);
  if (lastPress == levels.Press(1)) return in.Fail("no dew points above the ground");
  in.Note("up to", lastPress, "hPa");
  return sum / 10;
}

double SurfaceDewpoint(In& in) {
  return in.SurfaceDewpt();
}
double Dewpoint850(In& in) {
  return in.Dewpt(850);
}

}  // namespace vexa::analysis::formula
