// Rows that show a level of the chosen parcel or of the sounding.
#include <algorithm>

#include "analysis/index_formulas.h"
#include "core/numbers.h"

namespace vexa::analysis::formula {
namespace {

const ParcelAscent& Forced(In& in) {
  return in.Results().Forced[static_cast<std::size_t>(in.Results().ChosenLift)];
}

// Height of a level above the sea, with its pressure and temperature among the inputs.
double HeightOf(In& in, const LevelPoint& level, std::string_view why) {
  if (!level.Exists() || !HasHeight(level.Height)) return in.Fail(std::string(why));
  in.Note("pressure", level.Press, "hPa");
  if (!NotAvailable(level.Temp)) in.Note("temperature", level.Temp, "C");
  return level.Height;
}

constexpr std::string_view kNeverFree = "the parcel is never warmer than its surroundings";
constexpr std::string_view kNoParcel = "no parcel to lift";

double EquilibriumHeight(In& in, const ParcelAscent& parcel) {
  if (parcel.IsCut) in.SayBound();
  return HeightOf(in, parcel.Equilibrium, kNeverFree);
}

}  // namespace

double LiftModeShown(In& in) {
  in.Say(std::string(Word(in.Set().BaseLevel)));
  return 0;
}
double LiftTypeShown(In& in) {
  in.Say(std::string(Text(in.Results().ChosenLift)));
  return 0;
}
double TempBaseShown(In& in) {
  in.Say(in.Set().CapeTempBase == TempBase::Virtual ? "Virtual" : "DryBulb");
  return 0;
}

double LiftLevel(In& in) {
  const ParcelStart& start = in.Results().Chosen().Start;
  if (!start.Exists()) return in.Fail("no level with a dew point to lift from");
  in.Note("temperature", start.Temp, "C");
  in.Note("dew point", start.Dewpt, "C");
  return start.Press;
}

double MplPressure(In& in) {
  const LevelPoint& level = in.Results().Chosen().MaximumParcel;
  if (!in.Set().MplDisplay) return in.Fail("the MPL is switched off");
  return level.Exists() ? level.Press : in.Fail("the sounding ends below it, or there is no CAPE");
}
double MplHeight(In& in) {
  if (!in.Set().MplDisplay) return in.Fail("the MPL is switched off");
  return HeightOf(in, in.Results().Chosen().MaximumParcel,
                  "the sounding ends below it, or there is no CAPE");
}

double StationElevation(In& in) {
  if (in.Sounding().ElevUnknown) return in.Fail("the sounding does not give it");
  return in.Sounding().ElevM;
}

double TropopauseLevel(In& in) {
  const std::vector<LevelPoint>& found = in.Results().Tropopauses;
  if (found.empty()) return in.Fail("no layer above 500 hPa is stable enough");
  in.Note("tropopauses", static_cast<double>(found.size()), "");
  return HeightOf(in, found.front(), "");
}

double FreezingLevelShown(In& in) {
  const LevelProfile& levels = in.Levels();
  if (levels.Count() == 0) return in.Fail("the sounding has no levels");
  // Ground at 0 C is a level of its own; from colder ground on, all of the air is frozen.
  if (levels.Temp(1) <= 0 && !in.FreezesWithWarmBelow()) {
    if (levels.Temp(1) < 0) in.Say("surface");
    return levels.Height(1);
  }
  return in.FreezingHeight() + in.Note("ground", levels.Height(1), "m");
}

double CclElHeight(In& in) {
  return EquilibriumHeight(in, in.Results().Convective);
}
double LfcElHeight(In& in) {
  return EquilibriumHeight(in, Forced(in));
}
double LfcHeight(In& in) {
  return HeightOf(in, Forced(in).FreeLevel, kNeverFree);
}
double LfcPressure(In& in) {
  const LevelPoint& level = Forced(in).FreeLevel;
  return level.Exists() ? level.Press : in.Fail(std::string(kNeverFree));
}
double CclHeight(In& in) {
  return HeightOf(in, in.Results().ConvectiveCondensation,
                  "the mixed layer's moisture never saturates");
}
double LclHeight(In& in) {
  return HeightOf(in, Forced(in).Condensation, kNoParcel);
}

double LfcAboveLcl(In& in) {
  const double lfc = LfcHeight(in);
  const double lcl = LclHeight(in);
  return in.Note("LFC", lfc, "m") - in.Note("LCL", lcl, "m");
}

// The part of the cloud that is warmer than freezing.
double WarmCloudDepth(In& in) {
  const double lcl = LclHeight(in);
  if (in.Failed()) return 0;
  const LevelProfile& levels = in.Levels();
  const double lclAboveGround = in.Note("LCL", lcl - levels.Height(1), "m AGL");
  in.Note("temperature at the LCL", Forced(in).Condensation.Temp, "C");
  if (Forced(in).Condensation.Temp <= 0 || levels.Temp(1) <= 0) return 0;
  return std::max(in.FreezingHeight() - lclAboveGround, 0.0);
}

double ConvectiveTemp(In& in) {
  if (NotAvailable(in.Results().ConvectiveTemp)) {
    return in.Fail("the mixed layer's moisture never saturates");
  }
  in.Note("CCL", in.Results().ConvectiveCondensation.Press, "hPa");
  return in.Results().ConvectiveTemp;
}

double DensityAltitudeShown(In& in) {
  const SurfaceState& surface = in.Results().Surface;
  if (!HasHeight(surface.DensityAltitude)) return in.Fail("the sounding has no levels");
  if (surface.Estimated) in.Setting("estimated", "elevation or surface dew point unknown");
  return surface.DensityAltitude;
}

}  // namespace vexa::analysis::formula
