// Composite parameters of severe storms, and the energy of parcels that they are made of.
#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <string>

#include "analysis/column_air.h"
#include "analysis/column_math.h"
#include "analysis/column_scan.h"
#include "analysis/index_formulas.h"
#include "analysis/inflow_winds.h"
#include "analysis/interpolate.h"
#include "analysis/layers.h"
#include "analysis/moist_air.h"
#include "analysis/vapor_table.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis::formula {
namespace {

const ParcelAscent& Forced(const In& in, LiftType type) {
  return in.Results().Forced[static_cast<std::size_t>(type)];
}

double ForcedCape(In& in, LiftType type, std::string_view name) {
  const ParcelAscent& parcel = Forced(in, type);
  if (!parcel.Start.Exists()) return in.Fail("no parcel to lift");
  return in.CapeOf(parcel, name);
}

// 1 below 1000 m above ground, 0 from 2000 m on.
double LclTerm(In& in, const ParcelAscent& parcel) {
  if (parcel.Condensation.Height == kNone) return in.Fail("the LCL lies outside the sounding");
  const double height = in.Note("LCL", parcel.Condensation.Height - in.Levels().Height(1), "m AGL");
  return std::clamp((2000 - height) / 1000, 0.0, 1.0);
}

// In 20 m/s: 0 below 12.5 m/s, 1.5 from 30 m/s on.
double TornadoShearTerm(double shearMs) {
  return shearMs < 12.5 ? 0 : std::min(shearMs, 30.0) / 20;
}

double DeepShear(In& in) {
  const auto& shear = in.Results().Storm.Shear6km;
  if (!shear) return in.Fail("the winds do not cover 0-6 km");
  return in.Note("shear 0-6 km", kKnotToMs * std::hypot(shear->U, shear->V), "m/s");
}

// Whether a composite of the effective layer is 0 for want of one: air that is stable throughout
// feeds no storm, which is an answer.
bool NothingFeeds(In& in) {
  const ParcelAscent& parcel = Forced(in, LiftType::MostUnstable);
  if (in.Results().Effective.Exists() || !parcel.HasAnswer(&ParcelAscent::CapeTotal)) return false;
  in.Setting("effective layer", "none");
  return true;
}

double EffectiveShearMs(In& in) {
  return in.Note("effective shear", kKnotToMs * EffectiveShear(in), "m/s");
}

// Positive buoyancy of a parcel's path in the lowest 3 km.
double LowCape(In& in, const ParcelAscent& parcel) {
  constexpr double kDepth = 3000;  // m
  if (!parcel.Start.Exists()) return in.Fail("no parcel to lift");
  const double top = GetPRESS(in.Levels(), in.Levels().Height(1) + kDepth);
  if (!HasHeight(top)) return in.Fail("the sounding ends below 3 km above ground");
  in.Note("3 km above ground", top, "hPa");
  if (!parcel.FreeLevel.Exists() || !parcel.Equilibrium.Exists()) return 0;
  // The steps above the free level that are not above the layer.
  const auto stepsTo = [&parcel](double press) {
    return std::floor((parcel.FirstPress - press) / parcel.Step);
  };
  const auto most = static_cast<double>(parcel.Increments.size());
  const auto from = static_cast<std::size_t>(std::max(stepsTo(parcel.FreeLevel.Press) + 1, 1.0));
  const auto end = static_cast<std::size_t>(std::clamp(stepsTo(top) + 1, 0.0, most));
  double sum = 0;
  for (std::size_t i = from; i < end; ++i) sum += std::max<double>(parcel.Increments[i], 0);
  return sum;
}

}  // namespace

double TornadoFixed(In& in) {
  const ParcelAscent& parcel = Forced(in, LiftType::Surface);
  const double cape = ForcedCape(in, LiftType::Surface, "surface CAPE");
  if (in.Failed()) return 0;
  return cape / 1500 * LclTerm(in, parcel) * (in.Helicity(1) / 150) *
         TornadoShearTerm(DeepShear(in));
}

double TornadoEffective(In& in) {
  if (NothingFeeds(in)) return 0;
  const ParcelAscent& parcel = Forced(in, LiftType::MeanLayer);
  const double cape = ForcedCape(in, LiftType::MeanLayer, "mean-layer CAPE");
  if (in.Failed()) return 0;
  const double base = in.Note("effective base", EffectiveBase(in), "m AGL");
  if (base > 0) return 0;  // air from above the ground makes no tornado
  const double cin = in.Note("mean-layer CIN", parcel.CinTotal, "J/kg");
  const double helicity = in.Note("effective helicity", EffectiveHelicity(in), "m2/s2");
  return cape / 1500 * LclTerm(in, parcel) * (helicity / 150) *
         TornadoShearTerm(EffectiveShearMs(in)) * std::clamp((200 + cin) / 150, 0.0, 1.0);
}

double SupercellEffective(In& in) {
  if (NothingFeeds(in)) return 0;
  const double cape = ForcedCape(in, LiftType::MostUnstable, "most unstable CAPE");
  if (in.Failed()) return 0;
  const double cin =
      in.Note("most unstable CIN", Forced(in, LiftType::MostUnstable).CinTotal, "J/kg");
  const double helicity = in.Note("effective helicity", EffectiveHelicity(in), "m2/s2");
  const double shear = EffectiveShearMs(in);
  const double shearTerm = shear < 10 ? 0 : std::min(shear, 20.0) / 20;
  return cape / 1000 * (helicity / 50) * shearTerm * (cin > -40 ? 1 : -40 / cin);
}

double SignificantHail(In& in) {
  const ParcelAscent& parcel = Forced(in, LiftType::MostUnstable);
  const double cape = ForcedCape(in, LiftType::MostUnstable, "most unstable CAPE");
  if (in.Failed()) return 0;
  const double mixing = in.Note(
      "mixing ratio of the parcel",
      1000 * ThetaPoint(parcel.Start.Press, parcel.Start.Dewpt, in.Set().Saturation).MixingRatio,
      "g/kg");
  const double lapse = in.Note("lapse rate 700-500", LapseRate(in), "C/km");
  const double aloft = std::min(in.Temp(500), -5.5);
  const double shear = std::clamp(DeepShear(in), 7.0, 27.0);
  const double freezing = in.FreezesWithWarmBelow() ? in.FreezingHeight() : 0;
  double hail = cape * std::clamp(mixing, 11.0, 13.6) * lapse * -aloft * shear / 42e6;
  if (cape < 1300) hail *= cape / 1300;
  if (lapse < 5.8) hail *= lapse / 5.8;
  if (freezing < 2400) hail *= freezing / 2400;
  return hail;
}

double DerechoComposite(In& in) {
  const double cape = ForcedCape(in, LiftType::MostUnstable, "most unstable CAPE");
  const double downdraft = in.Note("DCAPE", DowndraftCape(in), "J/kg");
  const double shear = DeepShear(in) / kKnotToMs;
  const auto& mean = in.Results().Storm.Mean6km;
  if (!mean) return in.Fail("the winds do not stand for 0-6 km");
  const double speed = in.Note("mean wind 0-6 km", std::hypot(mean->U, mean->V), "kt");
  return downdraft / 980 * (cape / 2000) * (shear / 20) * (speed / 16);
}

double LowCapeSurface(In& in) {
  return LowCape(in, Forced(in, LiftType::Surface));
}
double LowCapeMeanLayer(In& in) {
  return LowCape(in, Forced(in, LiftType::MeanLayer));
}
double LowCapeMostUnstable(In& in) {
  return LowCape(in, Forced(in, LiftType::MostUnstable));
}

double EnhancedStretching(In& in) {
  const ParcelAscent& parcel = Forced(in, LiftType::MeanLayer);
  if (parcel.Start.Exists() && !parcel.HasAnswer(&ParcelAscent::CapeTotal)) {
    return in.Fail(std::string(kOpenCape));
  }
  const double low = in.Note("mean-layer CAPE 0-3 km", LowCape(in, parcel), "J/kg");
  const double lapse = in.Note("lapse rate 0-3 km", LapseLow(in), "C/km");
  const double cape = in.Note("mean-layer CAPE", parcel.CapeTotal, "J/kg");
  if (cape < 250 || lapse < 7) return 0;
  return low / 50 * (lapse - 7);
}

namespace {

constexpr double kHeatCapacity = 1005;  // J/(kg K), of dry air
constexpr double kVaporHeat = 2.501e6;  // J/kg

// Levels and what their air's energy is made of, all from the ground up.
struct EnergyColumns {
  const double* Press;        // hPa
  const double* Temp;         // °C
  const double* Height;       // m
  const double* MixingRatio;  // kg/kg
  double Ground;              // m
};

inline double DryEnergy(const EnergyColumns& air, std::size_t i) {
  return kHeatCapacity * (air.Temp[i] + kKelvinOffset) + kGravity * (air.Height[i] - air.Ground);
}

// Moist static energy, J/kg; a level without a dew point is taken as dry.
VEXA_WIDE void FillEnergies(EnergyColumns air, std::size_t count, double* energies) {
  VEXA_INDEPENDENT
  for (std::size_t i = 0; i < count; ++i) {
    const double mixing = air.MixingRatio[i] < kMissing - 1 ? air.MixingRatio[i] : 0;
    energies[i] = DryEnergy(air, i) + kVaporHeat * (mixing / (1 + mixing));
  }
}

// Trapezoids of a column over height from each level below; the first has none.
VEXA_WIDE void FillTrapezoids(const double* values, const double* heights, std::size_t count,
                              double* areas) {
  if (count > 0) areas[0] = 0;
  VEXA_INDEPENDENT
  for (std::size_t i = 1; i < count; ++i) {
    areas[i] = (values[i - 1] + values[i]) / 2 * (heights[i] - heights[i - 1]);
  }
}

// Buoyancy, m/s², that saturated air would have with the energy of all air below it.
//
// energies, areas   of the levels, the latter summed from the ground
VEXA_WIDE void FillPulls(EnergyColumns air, ColumnVapor table, const double* energies,
                         const double* areas, std::size_t from, std::size_t end, double* pulls) {
  constexpr double kColdest = 125, kWarmest = 395;  // K, on the ladder
  constexpr std::size_t kAtATime = ColumnVapor::Block::kCount;
  ColumnVapor::Block rungs;
  ColumnVapor::Block::Column tempsK;
  for (; from < end; from += kAtATime) {
    const std::size_t count = std::min(end - from, kAtATime);
    if (count < kAtATime) tempsK.fill(kColdest);
    for (std::size_t k = 0; k < count; ++k) {
      tempsK[k] = std::min(std::max(kColdest, air.Temp[from + k] + kKelvinOffset), kWarmest);
    }
    table.Find(tempsK, rungs);
    VEXA_INDEPENDENT
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t i = from + k;
      const double vapor = rungs.At(k).Pressure;
      const double dry = air.Press[i] - vapor;
      const double share = dry > 0 ? kEpsilon * vapor / (dry + kEpsilon * vapor) : 0;
      const double saturated = DryEnergy(air, i) + kVaporHeat * share;
      const double depth = air.Height[i] - air.Ground;
      const double mean = depth > 0 ? areas[i] / depth : energies[i];
      pulls[i] = kGravity / kHeatCapacity / tempsK[k] * (saturated - mean);
    }
  }
}

// What air loses in buoyancy by mixing with the mean of all air below it, m²/s²: from the free
// level to the EL the saturated static energy at a height minus the mean of the air's own. Air that
// would gain loses nothing.
double DilutionPotential(const LevelProfile& levels, SaturationOver over, double free, double end) {
  const std::vector<double>& heights = levels.Height.Values();
  const EnergyColumns air{.Press = levels.Press.Values().data(),
                          .Temp = levels.Temp.Values().data(),
                          .Height = heights.data(),
                          .MixingRatio = levels.MixingRatio.Values().data(),
                          .Ground = heights.front()};
  // The level that is not below the EL, and the one below the first above the free level.
  const std::size_t last =
      std::min(FirstNotBelow(heights.data(), 0, heights.size(), end), heights.size() - 1);
  const std::size_t above = FirstAbove(heights.data(), 0, last, free);
  const std::size_t first = above > 0 ? above - 1 : 0;
  const std::size_t count = last + 1;
  const auto scratch = std::make_unique_for_overwrite<double[]>(3 * count);
  double* energies = scratch.get();
  double* areas = energies + count;
  double* pulls = areas + count;
  FillEnergies(air, count, energies);
  FillTrapezoids(energies, heights.data(), count, areas);
  SumUp(0, areas, count);
  FillPulls(air, ColumnVapor(over), energies, areas, first, count, pulls);
  // Layers that lie between both levels as a whole, then what does of the lowest and the highest.
  double* parts = areas;
  FillTrapezoids(pulls + first, heights.data() + first, count - first, parts);
  const auto cut = [&](std::size_t i) {
    const double depth = heights[i] - heights[i - 1];
    const double from = std::max(heights[i - 1], free);
    const double to = std::min(heights[i], end);
    if (!(to > from && depth > 0)) return 0.0;
    const auto at = [&](double z) {
      return pulls[i - 1] + (pulls[i] - pulls[i - 1]) * (z - heights[i - 1]) / depth;
    };
    return (at(from) + at(to)) / 2 * (to - from);
  };
  if (last <= first) return 0;
  const std::size_t whole = first + 2;  // the first that is not the lowest
  double sum = cut(first + 1);
  if (last >= whole) sum += SumOfAll(parts, whole - first, last - first) + cut(last);
  return std::max(sum, 0.0);
}

}  // namespace

double EntrainedEnergy(double cape, double dilution, double inflowMs, double depth) {
  constexpr double kMixingLength = 120;  // m
  constexpr double kPrandtl = 1.0 / 3;
  constexpr double kKarmanSquared = 0.18;
  constexpr double kMeanToPeak = 0.8;  // updraft, mean over its width to its peak
  constexpr double kInflowToUpdraft = 1.1;
  const double psi = kKarmanSquared * std::pow(kMeanToPeak * std::numbers::pi, 2) * kMixingLength /
                     (4 * kPrandtl * kInflowToUpdraft * kInflowToUpdraft * depth);
  const double kinetic = inflowMs * inflowMs / 2;
  const double a = psi / kinetic;
  const double b = 1 + psi + a * dilution;
  const double mixed = (std::sqrt(b * b + 4 * a * (cape - psi * dilution)) - b) / (2 * a);
  return std::max(kinetic + mixed, 0.0);
}

double EntrainingCape(In& in) {
  constexpr double kInflowDepth = 1000;  // m
  const ParcelAscent& parcel = Forced(in, LiftType::MostUnstable);
  const double cape = ForcedCape(in, LiftType::MostUnstable, "most unstable CAPE");
  if (in.Failed() || !parcel.Equilibrium.Exists()) return 0;
  if (parcel.IsCut) return in.Fail("the sounding ends below the EL");
  const Mover& mover = in.ChosenMover();
  const double ground = in.Levels().Height(1);
  const std::vector<WindPoint> winds =
      WindsBetween(in.Results().Winds, ground, ground + kInflowDepth);
  if (winds.empty()) in.Fail("the winds do not cover 0-1 km");
  if (in.Failed()) return 0;
  const double inflow = in.Note("storm-relative wind 0-1 km",
                                kKnotToMs * MeanRelativeSpeed(winds, mover.Motion), "m/s");
  const double depth = in.Note("EL", parcel.Equilibrium.Height - ground, "m AGL");
  const double dilution =
      in.Note("dilution potential",
              DilutionPotential(in.Levels(), in.Set().Saturation, parcel.FreeLevel.Height,
                                parcel.Equilibrium.Height),
              "J/kg");
  return EntrainedEnergy(cape, dilution, inflow, depth);
}

}  // namespace vexa::analysis::formula
