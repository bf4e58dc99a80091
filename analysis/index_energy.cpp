// Indices of energy, shear and storm-relative wind.
#include <algorithm>
#include <cmath>
#include <optional>

#include "analysis/index_formulas.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/working_wind.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis::formula {
double Sweat(In& in) {
  const double moisture = 12 * std::max(in.Dewpt(850), 0.0);
  const double totals = 20 * std::max(in.Note("TT", TotalTotals(in), "C") - 49, 0.0);
  // A wind comes from its components, even at a level of its own: 210 degrees as 209.999998.
  const auto exact = [](const Wind& wind) {
    constexpr int kDecimals = 3;
    return Wind{Rounded(wind.Dir, kDecimals), Rounded(wind.Spd, kDecimals)};
  };
  const Wind low = exact(in.WindAt(850));
  const Wind high = exact(in.WindAt(500));
  const bool turns = low.Dir >= 130 && low.Dir <= 250 && high.Dir >= 210 && high.Dir <= 310 &&
                     high.Dir > low.Dir && low.Spd >= 15 && high.Spd >= 15;
  const double shear = turns ? 125 * (std::sin(Radians(high.Dir - low.Dir)) + 0.2) : 0;
  in.Note("shear term", shear, "");
  return moisture + totals + 2 * low.Spd + high.Spd + shear;
}

double BulkRichardson(In& in) {
  const double shear = in.BrnShear();
  if (!in.Failed() && shear < 1e-9) in.Fail("there is no shear");
  return in.Failed() ? 0 : in.Cape() / shear;
}

double BulkShear(In& in) {
  return in.BrnShear();
}

double EnergyHelicity(In& in) {
  return in.Cape() * in.Helicity(in.Set().EhiDepthKm) / 160000;
}

double Supercell(In& in) {
  const ParcelAscent& parcel = in.Results().Ascent(LiftType::MostUnstable);
  if (!parcel.Start.Exists()) return in.Fail("no parcel to lift");
  const double cape = in.CapeOf(parcel, "most unstable CAPE");
  return cape / 1000 * (in.Helicity(3) / 100) * (in.BrnShear() / 40);
}

double Craven(In& in) {
  const ParcelAscent& parcel = in.Results().Ascent(LiftType::MeanLayer);
  if (!parcel.Start.Exists()) return in.Fail("no mean-layer parcel");
  const auto& shear = in.Results().Storm.Shear6km;
  if (!shear) return in.Fail("the winds do not cover 0-6 km");
  const double shearMs = in.Note("shear 0-6 km", kKnotToMs * std::hypot(shear->U, shear->V), "m/s");
  return in.CapeOf(parcel, "mean-layer CAPE") * shearMs / 1000;
}

// The pair of winds that straddles the layer's top counts whole: keep.
double VorticityGeneration(In& in) {
  const double depth = in.Set().VgpDepthKm * 1000;
  if (!(depth > 0)) return in.Fail("the layer has no depth");
  in.NeedWinds(depth);
  if (in.Failed()) return 0;
  const WindProfile& winds = in.Results().Winds;
  double sum = 0;  // kt
  for (std::size_t i = 1; i < winds.Count(); ++i) {
    if (winds.Heights[i - 1] - in.Sounding().ElevM > depth) break;
    const WindVector& here = winds.Vectors[i];
    const WindVector& below = winds.Vectors[i - 1];
    sum += LengthOf(Minus(here, below));
  }
  return in.Note("mean shear", kKnotToMsPlot * sum / depth * 1000, "1/1000 s") / 1000 *
         std::sqrt(in.Cape());
}

double NormalizedCape(In& in) {
  const ParcelAscent& parcel = in.Results().Chosen();
  if (!parcel.FreeLevel.Exists() || !parcel.Equilibrium.Exists()) {
    return in.Fail("the parcel is never free");
  }
  if (parcel.IsCut) return in.Fail("the sounding ends below the EL");
  const double depth =
      in.Note("EL minus LFC", parcel.Equilibrium.Height - parcel.FreeLevel.Height, "m");
  if (!(depth > 0)) return in.Fail("LFC and EL coincide");
  return in.Cape() / depth;
}

double MaximumUpdraft(In& in) {
  return std::sqrt(2 * in.Cape());
}

double CapStrength(In& in) {
  const ParcelAscent& parcel = in.Results().Chosen();
  if (!parcel.FreeLevel.Exists()) return in.Fail("the parcel is never free");
  double cap = 0;
  for (std::size_t i = 0; i < parcel.ParcelTemps.size(); ++i) {
    if (parcel.FirstPress - parcel.Step * static_cast<double>(i) < parcel.FreeLevel.Press) break;
    cap = std::max(cap, parcel.EnvTemps[i] - parcel.ParcelTemps[i]);
  }
  return cap;
}

double WetMicroburst(In& in) {
  return in.Cape() * in.Part(MicroburstContrast) / 1000;
}

double HelicityLowest(In& in) {
  return in.Helicity(1);
}
double HelicityMiddle(In& in) {
  return in.Helicity(2);
}
double HelicityDeep(In& in) {
  return in.Helicity(3);
}

double ShearToX(In& in) {
  const double depth = in.Note("layer top", in.Set().ShearXLayerTopKm * 1000, "m AGL");
  const SoundingRecord& sounding = in.Sounding();
  const Wind surface = in.SurfaceWind();
  const WindSample top = WindAtHeight(sounding, sounding.ElevM + depth);
  if (!top.Ok()) return in.Fail("the winds end below the layer's top");
  in.Note("wind direction at the top", top.Value.Dir, "deg");
  in.Note("wind speed at the top", top.Value.Spd, "kt");
  const WindVector low = Components(surface);
  const WindVector high = Components(top.Value);
  return std::hypot(high.U - low.U, high.V - low.V);
}

namespace {

double OfChosen(In& in, double ParcelAscent::*energy) {
  const ParcelAscent& parcel = in.Results().Chosen();
  if (!parcel.Start.Exists()) return in.Fail("no parcel to lift");
  in.Setting("lift type", Text(in.Results().ChosenLift));
  in.Setting("lift mode", Word(in.Set().BaseLevel));
  in.Setting("temperature base", Word(in.Set().CapeTempBase));
  in.Note("starts at", parcel.Start.Press, "hPa");
  if (!parcel.HasAnswer(energy)) return in.Fail(std::string(kOpenCape));
  if (!parcel.Equilibrium.Exists()) in.Setting("the parcel is nowhere free", kNoCape);
  if (parcel.IsBound(energy)) in.SayBound();
  return parcel.*energy;
}

}  // namespace

double CapeTotal(In& in) {
  return OfChosen(in, &ParcelAscent::CapeTotal);
}
double CapePlusOnly(In& in) {
  return OfChosen(in, &ParcelAscent::CapePlusOnly);
}
double CinTotal(In& in) {
  return OfChosen(in, &ParcelAscent::CinTotal);
}
double CapeHail(In& in) {
  return OfChosen(in, &ParcelAscent::CapeHail);
}
double CapeToX(In& in) {
  in.Note("layer top", in.Set().CapeDepthKm, "km AGL");
  return OfChosen(in, &ParcelAscent::CapeDepth);
}

double DowndraftCape(In& in) {
  const Downdraft& descent = in.Results().Descent;
  if (NotAvailable(descent.Energy)) return in.Fail("no dew point below 6 km");
  in.Setting("mode", Word(in.Set().Dcape));
  in.Note("starts at", descent.Source.Press, "hPa");
  in.Note("reaches the ground with", descent.SurfaceTemp, "C");
  return descent.Energy;
}

// Winds of four mandatory levels against the low-level jet. Where 850 hPa lies below the ground the
// strongest wind of the lowest 1500 m stands for its wind.
double MesoscaleVector(In& in) {
  Wind jet;
  if (in.SurfacePress() < 850) {
    const SoundingRecord& sounding = in.Sounding();
    for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
      if (!sounding.HasWind(i)) continue;
      if (sounding.WindHgt(i) - sounding.ElevM > 1500) break;
      const Wind wind = WorkingWind(sounding, i);
      if (wind.Spd > jet.Spd) jet = wind;
    }
    if (!(jet.Spd > 0)) return in.Fail("no winds in the lowest 1500 m");
    in.Note("low-level jet direction", jet.Dir, "deg");
    in.Note("low-level jet speed", jet.Spd, "kt");
  } else {
    jet = in.WindAt(850);
  }
  const WindVector low = Components(jet);
  WindVector cloud = low;
  for (const double press : {700.0, 500.0, 300.0}) {
    const WindVector wind = Components(in.WindAt(press));
    cloud.U += wind.U;
    cloud.V += wind.V;
  }
  const Wind moves = FromComponents({cloud.U / 4 - low.U, cloud.V / 4 - low.V});
  in.Note("propagates from", moves.Dir, "deg");
  in.SayDirection(moves.Dir);
  return moves.Spd;
}

double Wind200(In& in) {
  return in.WindAt(200).Spd;
}
double Wind500(In& in) {
  return in.WindAt(500).Spd;
}
double Wind850(In& in) {
  return in.WindAt(850).Spd;
}

}  // namespace vexa::analysis::formula
