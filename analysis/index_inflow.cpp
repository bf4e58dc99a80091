// The air that storms draw in: the effective layer, its winds, and how the wind turns near the
// ground.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "analysis/effective_layer.h"
#include "analysis/index_formulas.h"
#include "analysis/inflow_winds.h"
#include "analysis/interpolate.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis::formula {
namespace {

const ParcelAscent& MostUnstable(const In& in) {
  return in.Results().Forced[static_cast<std::size_t>(LiftType::MostUnstable)];
}

// The effective layer with the level that is asked for, m above ground.
double EffectiveLevel(In& in, LevelPoint EffectiveLayer::*level, std::string_view name) {
  const EffectiveLayer& layer = NeedEffectiveLayer(in);
  if (in.Failed()) return 0;
  in.Note(name, (layer.*level).Press, "hPa");
  return (layer.*level).Height - in.Levels().Height(1);
}

// A wind that was found, its speed told with its direction; fails without it.
double ToldWind(In& in, const std::optional<WindVector>& vector, std::string_view layer) {
  if (!vector) return in.Fail("the winds do not reach through the layer " + std::string(layer));
  const Wind wind = FromComponents(*vector);
  in.Note("from", wind.Dir, "deg");
  in.SayDirection(wind.Dir);
  return wind.Spd;
}

double ShareTurning(In& in, double depth) {
  const Mover& mover = in.ChosenMover();
  if (in.Failed()) return 0;
  const double ground = in.Sounding().ElevM;
  const auto share =
      StreamwiseShare(WindsBetween(in.Results().Winds, ground, ground + depth), mover.Motion);
  if (!share) return in.Fail("no shear between winds of the layer");
  return 100 * *share;
}

}  // namespace

const EffectiveLayer& NeedEffectiveLayer(In& in) {
  const EffectiveLayer& layer = in.Results().Effective;
  const ParcelAscent& parcel = MostUnstable(in);
  if (!parcel.HasAnswer(&ParcelAscent::CapeTotal)) {
    in.Fail(parcel.Start.Exists() ? std::string(kOpenCape) : "no parcel to lift");
  } else if (!layer.Exists()) {
    in.Fail("no level has CAPE of 100 J/kg with CIN of -250 J/kg at most");
  }
  static const std::string kLeastCape = Mask(kFeedingCape, "##0") + " J/kg";
  static const std::string kLeastCin = Mask(kFeedingCin, "##0") + " J/kg";
  in.Setting("CAPE of a level at least", kLeastCape);
  in.Setting("CIN of a level not below", kLeastCin);
  in.Setting("temperature base", Word(in.Set().CapeTempBase));
  return layer;
}

double EffectiveBase(In& in) {
  return EffectiveLevel(in, &EffectiveLayer::Base, "base at");
}
double EffectiveTop(In& in) {
  return EffectiveLevel(in, &EffectiveLayer::Top, "top at");
}

double EffectiveHelicity(In& in) {
  const EffectiveLayer& layer = NeedEffectiveLayer(in);
  in.ChosenMover();
  if (in.Failed()) return 0;
  in.Note("base", EffectiveBase(in), "m AGL");
  in.Note("top", EffectiveTop(in), "m AGL");
  if (!layer.HasDepth()) return in.Fail("the effective layer is one level and has no depth");
  const double helicity = in.Results().Inflow.EffectiveHelicity;
  if (helicity == kNone) return in.Fail("the winds do not reach through the effective layer");
  return helicity;
}

double EffectiveShear(In& in) {
  const EffectiveLayer& layer = NeedEffectiveLayer(in);
  if (in.Failed()) return 0;
  const ParcelAscent& parcel = MostUnstable(in);
  if (!parcel.Equilibrium.Exists() || parcel.IsCut) {
    return in.Fail("the sounding ends below the EL");
  }
  const double ground = in.Levels().Height(1);
  in.Note("base", layer.Base.Height - ground, "m AGL");
  in.Note("half way to the EL", (layer.Base.Height + parcel.Equilibrium.Height) / 2 - ground,
          "m AGL");
  const auto& shear = in.Results().Inflow.EffectiveShear;
  if (!shear) return in.Fail("the winds do not reach half way to the EL");
  return std::hypot(shear->U, shear->V);
}

double HelicityHalfKm(In& in) {
  return in.Helicity(0.5);
}

double CriticalAngle(In& in) {
  constexpr double kTop = 500;  // m above ground
  const Mover& mover = in.ChosenMover();
  const WindVector ground = Components(in.SurfaceWind());
  const auto high = VectorAtHeight(in.Results().Winds, in.Sounding().ElevM + kTop);
  if (!high) in.Fail("the winds end below 500 m");
  if (in.Failed()) return 0;
  const WindVector shear{high->U - ground.U, high->V - ground.V};
  const WindVector inflow{mover.Motion.U - ground.U, mover.Motion.V - ground.V};
  const double product = std::hypot(shear.U, shear.V) * std::hypot(inflow.U, inflow.V);
  if (product < 1e-9) return in.Fail("there is no shear or no inflow");
  const double cosine = (shear.U * inflow.U + shear.V * inflow.V) / product;
  return std::acos(std::clamp(cosine, -1.0, 1.0)) * 180 / std::numbers::pi;
}

double StreamwiseHalfKm(In& in) {
  return ShareTurning(in, 500);
}
double StreamwiseKm(In& in) {
  return ShareTurning(in, 1000);
}
double StreamwiseDeep(In& in) {
  return ShareTurning(in, 3000);
}

double EffectiveWind(In& in) {
  const EffectiveLayer& layer = NeedEffectiveLayer(in);
  if (!in.Failed() && !layer.HasDepth()) {
    in.Fail("the effective layer is one level and has no depth");
  }
  return in.Failed() ? 0 : ToldWind(in, in.Results().Inflow.EffectiveMean, "that feeds the storm");
}

double CloudWind(In& in) {
  const ParcelAscent& parcel = MostUnstable(in);
  if (!parcel.Equilibrium.Exists()) return in.Fail("the most unstable parcel is never free");
  if (parcel.IsCut) return in.Fail("the sounding ends below the EL");
  in.Note("LCL", parcel.Condensation.Press, "hPa");
  in.Note("EL", parcel.Equilibrium.Press, "hPa");
  return ToldWind(in, in.Results().Inflow.CloudMean, "LCL-EL");
}

namespace {

// The propagation opposite to the low winds, on the mean wind once or, where outflow runs ahead of
// the storms, twice.
double CorfidiVector(In& in, double timesMean) {
  const InflowWinds& inflow = in.Results().Inflow;
  if (!inflow.DeepMean) return in.Fail("the winds do not reach from 850 to 300 hPa");
  if (!inflow.LowMean) return in.Fail("the winds do not reach from the ground to 1500 m");
  const auto note = [&](std::string_view name, const WindVector& vector) {
    const Wind wind = FromComponents(vector);
    in.Note(std::string(name) + " direction", wind.Dir, "deg");
    in.Note(std::string(name) + " speed", wind.Spd, "kt");
  };
  if (in.Keeps()) {
    note("mean 850-300 hPa", *inflow.DeepMean);
    note("mean 0-1.5 km", *inflow.LowMean);
  }
  const WindVector moves{timesMean * inflow.DeepMean->U - inflow.LowMean->U,
                         timesMean * inflow.DeepMean->V - inflow.LowMean->V};
  return ToldWind(in, moves, "");
}

}  // namespace

double CorfidiUpshear(In& in) {
  return CorfidiVector(in, 1);
}
double CorfidiDownshear(In& in) {
  return CorfidiVector(in, 2);
}

}  // namespace vexa::analysis::formula
