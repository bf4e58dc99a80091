// Indices of stability and moisture, read at fixed pressures.
#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/column_scan.h"
#include "analysis/exact.h"
#include "analysis/index_formulas.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis::formula {
namespace {

// Temperature of the chosen parcel at a pressure, dry below its condensation level.
double ParcelTempAt(In& in, double press) {
  const ParcelAscent& parcel = in.Results().Chosen();
  if (!parcel.Start.Exists() || !parcel.Condensation.Exists()) return in.Fail("no parcel to lift");
  if (press > parcel.Start.Press) return in.Fail("the parcel starts above that level");
  const SaturationOver over = in.Set().Saturation;
  const LevelPoint& lcl = parcel.Condensation;
  const double temp =
      press <= lcl.Press
          ? LiftSat(ThetaPoint(lcl.Press, lcl.Temp, over).ThetaE, press, over).Temp
          : DryAdiabatTemp(ThetaPoint(parcel.Start.Press, parcel.Start.Temp, over).Theta, press);
  in.Setting("lift type", Text(in.Results().ChosenLift));
  return in.Note("parcel T " + Mask(press, "###0") + " hPa", temp, "C");
}

double ParcelTempAt500(In& in) {
  return ParcelTempAt(in, 500);
}

struct Extremes {
  double Least = std::numeric_limits<double>::infinity();
  double Most = -std::numeric_limits<double>::infinity();
};

// Of the values in [from, end) that are positive and there.
Extremes ExtremesOf(const double* values, std::size_t from, std::size_t end) {
  constexpr double kNearMarkers = 999;
  const Extremes all{LeastOf(values, from, end), MostOf(values, from, end)};
  if (all.Least > 0 && all.Most < kNearMarkers) return all;
  Extremes found;
  for (std::size_t i = from; i < end; ++i) {
    if (!(values[i] > 0) || NotAvailable(values[i])) continue;
    found.Least = std::min(found.Least, values[i]);
    found.Most = std::max(found.Most, values[i]);
  }
  return found;
}

using Search = std::size_t (*)(const double*, std::size_t, std::size_t, double);

// θe, K, of the first levels that have one, of those on one side of a pressure: what the searches
// tell where they begin and where they end.
Extremes ThetaEsOf(const LevelProfile& levels, std::size_t count, double press, Search begin,
                   Search end) {
  const double* pressures = levels.Press.Values().data();
  Extremes found;
  for (std::size_t i = begin(pressures, 0, count, press); i < count;) {
    const std::size_t behind = end(pressures, i, count, press);
    const Extremes run = ExtremesOf(levels.ThetaE.Values().data(), i, behind);
    found.Least = std::min(found.Least, run.Least);
    found.Most = std::max(found.Most, run.Most);
    i = begin(pressures, behind, count, press);
  }
  return found;
}

}  // namespace

double VerticalTotals(In& in) {
  return in.Temp(850) - in.Temp(500);
}

double CrossTotals(In& in) {
  return in.Dewpt(850) - in.Temp(500);
}

double TotalTotals(In& in) {
  return in.Temp(850) + in.Dewpt(850) - 2 * in.Temp(500);
}

double KIndex(In& in) {
  return (in.Temp(850) - in.Temp(500)) + in.Dewpt(850) - (in.Temp(700) - in.Dewpt(700));
}

double LiftedIndex(In& in) {
  return in.Temp(500) - in.Part(ParcelTempAt500);
}

double Showalter(In& in) {
  const double temp = in.Temp(850);
  const double dewpt = in.Dewpt(850);
  const double environment = in.Temp(500);
  if (in.Failed()) return 0;
  const SaturationOver over = in.Set().Saturation;
  const double thetaE = LevelThetaE(850, temp, std::min(dewpt, temp), over);
  return environment - in.Note("850 hPa parcel at 500 hPa", LiftSat(thetaE, 500, over).Temp, "C");
}

double SIndex(In& in) {
  const double vertical = Exact(VerticalTotals(in));
  double term = 6;
  if (vertical >= 25) {
    term = 0;
  } else if (vertical > 22) {
    term = 2;
  }
  return TotalTotals(in) - (in.Temp(700) - in.Dewpt(700)) - in.Note("A", term, "");
}

// The saturated adiabat through the wet bulb at 850 hPa, followed down to 1000 hPa; also the
// wet-bulb potential temperature of the Jefferson index.
double DownRush(In& in) {
  const double wetBulb = in.WetBulb(850);
  if (in.Failed()) return 0;
  const SaturationOver over = in.Set().Saturation;
  const double thetaE = ThetaPoint(850, wetBulb, over).ThetaE;
  return LiftSat(thetaE, kReferencePress, over).Temp;
}

double Jefferson(In& in) {
  return 1.6 * in.Note("DownRush-T", in.Part(DownRush), "C") - in.Temp(500) -
         0.5 * (in.Temp(700) - in.Dewpt(700)) - 8;
}

double Thompson(In& in) {
  return KIndex(in) - in.Note("LI", LiftedIndex(in), "C");
}

double DeepConvective(In& in) {
  return in.Temp(850) + in.Dewpt(850) - in.Note("LI", LiftedIndex(in), "C");
}

// A missing 1000 hPa level lies below the ground: the lowest level stands in for it.
double KoIndex(In& in) {
  double bottom = GetTEMP(in.Levels(), 1000, Quantity::ThetaE);
  if (!NotAvailable(bottom)) {
    in.Note("theta-e 1000 hPa", bottom, "K");
  } else if (in.Levels().Count() > 0 && !NotAvailable(in.Levels().ThetaE(1))) {
    bottom = in.Note("theta-e of the lowest level", in.Levels().ThetaE(1), "K");
  } else {
    return in.Fail("no dew point at the lowest level");
  }
  const double at850 = in.ThetaE(850);
  return (in.ThetaE(500) + in.ThetaE(700)) / 2 - (bottom + at850) / 2;
}

double TqIndex(In& in) {
  return in.Temp(850) + in.Dewpt(850) - 1.7 * in.Temp(700);
}

double Boydens(In& in) {
  if (in.SurfacePress() < 700) in.Fail("the surface lies above 700 hPa");
  const double thickness = in.Height(700) - in.Height(1000);
  if (thickness == 0) in.Fail("no thickness of 1000 to 700 hPa");
  return thickness / 10 - in.Temp(700) - 200;
}

double GoesHmi(In& in) {
  const double rise = (in.Height(670) - in.Height(850)) / 1000;
  if (!(rise > 0)) return in.Fail("no height between 850 and 670 hPa");
  const double lapse = in.Note("lapse 850-670 hPa", (in.Temp(850) - in.Temp(670)) / rise, "C/km");
  return ToWhole(lapse + (in.Temp(850) - in.Dewpt(850)) - (in.Temp(670) - in.Dewpt(670)));
}

double DeltaThetaE(In& in) {
  const LevelProfile& levels = in.Levels();
  if (levels.Count() < 2) return in.Fail("fewer than 2 levels");
  if (!(levels.Press.Top() < 500)) return in.Fail("the sounding ends below 500 hPa");
  const std::vector<double>& pressures = levels.Press.Values();
  const std::size_t count = FirstBelow(pressures.data(), 0, pressures.size(), 100);
  double most = std::max(ThetaEsOf(levels, count, 850, FirstAbove, FirstNotAbove).Most, 0.0);
  double least = std::min(ThetaEsOf(levels, count, 660, FirstBelow, FirstNotBelow).Least, 1000.0);
  const double at850 = GetTEMP(levels, 850, Quantity::ThetaE);
  const double at660 = GetTEMP(levels, 660, Quantity::ThetaE);
  if (!NotAvailable(at850)) most = std::max(most, at850);
  if (!NotAvailable(at660)) least = std::min(least, at660);
  if (most == 0 || least == 1000) return in.Fail("no dew points below 850 or above 660 hPa");
  in.Note("largest theta-e below 850 hPa", most, "K");
  in.Note("smallest theta-e above 660 hPa", least, "K");
  return (most - least) / 30;
}

double LapseRate(In& in) {
  const double rise = (in.Height(500) - in.Height(700)) / 1000;
  if (!(rise > 0)) return in.Fail("no height between 700 and 500 hPa");
  return (in.Temp(700) - in.Temp(500)) / rise;
}

// Largest θe of the lowest 150 hPa minus the smallest between 650 and 500 hPa.
double MicroburstContrast(In& in) {
  const double surface = in.SurfacePress();
  const LevelProfile& levels = in.Levels();
  const std::vector<double>& pressures = levels.Press.Values();
  const std::size_t count = FirstBelow(pressures.data(), 0, pressures.size(), 500);
  double most =
      std::max(ThetaEsOf(levels, count, surface - 150, FirstNotBelow, FirstBelow).Most, 0.0);
  double least = std::min(ThetaEsOf(levels, count, 650, FirstNotAbove, FirstAbove).Least, 1e9);
  const auto take = [&](double press, double thetaE) {
    if (NotAvailable(thetaE)) return;
    if (press >= surface - 150) most = std::max(most, thetaE);
    if (press <= 650 && press >= 500) least = std::min(least, thetaE);
  };
  for (const double press : {surface - 150, 650.0, 500.0}) {
    const Sample at = SampleAt(levels, press, Quantity::ThetaE);
    if (at.Ok()) take(press, at.Value);
  }
  if (most == 0 || least == 1e9) {
    return in.Fail("no dew points near the ground or between 650 and 500 hPa");
  }
  in.Note("largest theta-e of the lowest 150 hPa", most, "K");
  in.Note("smallest theta-e of 650-500 hPa", least, "K");
  return most - least;
}

double MicroburstDay(In& in) {
  return in.Part(MicroburstContrast) / 30;
}

}  // namespace vexa::analysis::formula
