#include "analysis/analysis.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "analysis/adiabat_table.h"
#include "analysis/clouds.h"
#include "analysis/column_math.h"
#include "analysis/downdraft.h"
#include "analysis/effective_layer.h"
#include "analysis/icing.h"
#include "analysis/index_table.h"
#include "analysis/inflow_winds.h"
#include "analysis/interpolate.h"
#include "analysis/layers.h"
#include "analysis/level_listing.h"
#include "analysis/moist_air.h"
#include "analysis/parcel.h"
#include "analysis/parcel_source.h"
#include "analysis/pressure_grid.h"
#include "analysis/soaring.h"
#include "analysis/standard_atmosphere.h"
#include "analysis/turbulence.h"
#include "analysis/winter.h"
#include "core/numbers.h"
#include "core/units.h"

namespace vexa::analysis {
namespace {

SurfaceState SurfaceOf(const SoundingRecord& sounding, const LevelProfile& levels) {
  SurfaceState surface;
  if (levels.Count() == 0 || !(levels.Press(1) > 0)) return surface;
  surface.Exists = true;
  surface.Press = levels.Press(1);
  if (!sounding.ElevUnknown) surface.Qnh = Qnh(surface.Press, sounding.ElevM);
  const double altitude = IsaHeight(surface.Press);
  if (HasHeight(altitude)) surface.PressureAltitude = altitude;
  surface.DensityAltitude = DensityAltitude(AirDensity(surface.Press, levels.VirtualTemp(1)));
  const double standard = IsaTemp(altitude);
  if (!IsMissing(standard)) surface.IsaDeviation = levels.Temp(1) - standard;
  surface.Estimated = sounding.ElevUnknown || NotAvailable(levels.Dewpt(1));
  return surface;
}

LiftType TypeOf(LiftSource source) {
  switch (source) {
    case LiftSource::Surface:
      return LiftType::Surface;
    case LiftSource::LowerLayer:
      return LiftType::MeanLayer;
    case LiftSource::MostUnstable:
      return LiftType::MostUnstable;
  }
  return LiftType::MostUnstable;
}

// Lifts every level within the search depth; the one with the most CAPE wins, θe decides when none
// has any.
ParcelStart MultiLift(const LevelProfile& levels, double depth, ParcelLifter& lifter) {
  ParcelStart best = MostUnstableParcel(levels, depth);
  double most = 0;
  ParcelAscent trial;
  for (const ParcelStart& start : CandidateParcels(levels, depth)) {
    lifter.LiftForced(start, trial);
    if (trial.CapeTotal > most) {
      most = trial.CapeTotal;
      best = start;
    }
  }
  return best;
}

void LiftAll(const AnalysisSettings& options, const PressureGrid& grid, AdiabatTable* table,
             AnalysisResults& results) {
  const LevelProfile& levels = results.Levels;
  ParcelLifter lifter(levels, grid, LiftSettingsOf(options, results.CapeDepthTopPress), table);

  const LayerMean mean = MeanOfLowestLayer(levels, options.CclMeanLayer);
  const auto forced = [&](LiftType type) -> ParcelAscent& {
    return results.Forced[static_cast<std::size_t>(type)];
  };
  lifter.LiftForced(SurfaceParcel(levels), forced(LiftType::Surface));
  lifter.LiftForced(MeanLayerParcel(levels, mean, options.Saturation), forced(LiftType::MeanLayer));
  const ParcelStart mostUnstable = options.MultiLift
                                       ? MultiLift(levels, options.SearchDepth, lifter)
                                       : MostUnstableParcel(levels, options.SearchDepth);
  if (mostUnstable == forced(LiftType::Surface).Start) {
    forced(LiftType::MostUnstable) = forced(LiftType::Surface);
  } else {
    lifter.LiftForced(mostUnstable, forced(LiftType::MostUnstable));
  }

  // Free convection starts from the mixed layer's moisture whatever the lift type.
  if (NotAvailable(mean.MixingRatio)) return;
  results.MeanLayerMixingRatio = mean.MixingRatio;
  const CondensationPoint ccl =
      FindConvectiveCondensation(levels, grid, mean.MixingRatio, options.Saturation);
  if (!ccl.Exists()) return;
  const double surface = levels.Press(1);
  const double cclTheta = (ccl.Temp + kKelvinOffset) * std::pow(surface / ccl.Press, kPoisson);
  results.ConvectiveTemp = cclTheta - kKelvinOffset;
  const Sample height = SampleAt(levels, ccl.Press, Quantity::Height);
  results.ConvectiveCondensation = {ccl.Press, height.Ok() ? height.Value : kNone, ccl.Temp};
  const double dewpt = DewpointFromMixingRatio(surface, mean.MixingRatio, options.Saturation);
  if (NotAvailable(dewpt)) return;
  lifter.LiftConvective({surface, results.ConvectiveTemp, dewpt}, ccl, results.Convective);
}

LayerResults FindLayers(const SoundingRecord& sounding, const AnalysisResults& results,
                        const AnalysisSettings& options) {
  constexpr double kNormalizedPair = 304.8;  // m: 1000 ft
  constexpr double kLapseDepth = 3000;       // m
  const LevelProfile& levels = results.Levels;
  const double ground = levels.Height(1);
  LayerResults layers;
  layers.Mixed = FindMixedLayer(results.Winds, levels);
  layers.LapseRate3km = MeanLapseRate(levels, ground, ground + kLapseDepth);
  layers.Clouds = FindClouds(sounding, results, options);
  layers.Icing = options.Ice == IceType::SmithFeddes
                     ? SmithFeddesIcing(levels, layers.Clouds, options.Saturation)
                     : RuleIcing(levels, layers.Clouds);
  const std::vector<WindPair> pairs =
      PairWinds(results.Winds, levels, options.ShearNormalization ? kNormalizedPair : 0);
  layers.Turbulence = FindCat(pairs, ground, options.Cat);
  layers.HighTurbulence = FindHighCat(pairs, results.Tropopauses);
  layers.LowShear = FindLowShear(options.ShearNormalization
                                     ? PairWinds(results.Winds, levels, 0, ground + kLowShearDepth)
                                     : pairs,
                                 ground);
  layers.Contrails = FindContrails(levels, options.ContrailRh);
  layers.Lightning = FindLightning(levels, layers.Clouds);
  layers.CarbIcing = FindCarburettorIcing(levels);
  layers.Listing = ListLevels(levels);
  layers.Ducts = FindDucts(levels, layers.Listing, options.DuctingThreshold);
  return layers;
}

bool Finite(const LevelPoint& level) {
  return std::isfinite(level.Press) && std::isfinite(level.Height) && std::isfinite(level.Temp);
}

// An exponent of ones, which only what is not finite has, carries into the highest bit.
VEXA_WIDE bool IsAllFinite(const double* values, std::size_t count) {
  constexpr std::uint64_t kExponent = 0x7FF0000000000000, kLastOne = 0x0010000000000000;
  std::uint64_t carried = 0;
  for (std::size_t i = 0; i < count; ++i) {
    carried |= (std::bit_cast<std::uint64_t>(values[i]) & kExponent) + kLastOne;
  }
  return (carried >> 63) == 0;
}

// Levels that no atmosphere has, colder than absolute zero or without pressure, lead formulas out
// of their range: what comes of them becomes a marker here, in one place.
void DropNonsense(AnalysisResults& results) {
  const auto mark = [](double& value, double marker) {
    if (!std::isfinite(value)) value = marker;
  };
  LayerResults& layers = results.Layers;
  for (auto* found : {&layers.Icing, &layers.Turbulence, &layers.HighTurbulence, &layers.LowShear,
                      &layers.Contrails, &layers.Lightning, &layers.CarbIcing}) {
    std::erase_if(*found, [](const AirLayer& layer) {
      return !Finite(layer.Base) || !Finite(layer.Top) || !std::isfinite(layer.Value);
    });
  }
  std::erase_if(layers.Clouds,
                [](const CloudDeck& deck) { return !Finite(deck.Base) || !Finite(deck.Top); });
  std::erase_if(layers.Ducts, [](const Duct& duct) {
    return !Finite(duct.Base) || !Finite(duct.Top) || !std::isfinite(duct.DuctBase);
  });
  LevelListing& listing = layers.Listing;
  for (auto* column : {&listing.Density, &listing.DValue, &listing.Refractivity, &listing.Modified,
                       &listing.Potential, &listing.Gradient, &listing.WaterBelow,
                       &results.Soaring.ThermalIndex}) {
    if (IsAllFinite(column->Values().data(), column->Values().size())) continue;
    for (double& value : column->Values()) mark(value, kMissing);
  }
  WinterResults& winter = results.Winter;
  mark(layers.LapseRate3km, kNone);
  for (double* area : {&winter.WarmArea, &winter.ColdArea, &winter.SurfaceWarmArea}) {
    mark(*area, 0);
  }
  for (double* value : {&winter.SnowRatio, &winter.SnowSquall, &winter.Thickness1000to500,
                        &winter.Thickness1000to850, &winter.Thickness850to700,
                        &results.Descent.Energy, &results.Soaring.Lift}) {
    mark(*value, kNone);
  }
  mark(results.Descent.SurfaceTemp, kMissing);
  mark(results.Soaring.TriggerTemp, kMissing);
  for (LevelPoint* level :
       {&results.Soaring.ThermalTop, &results.Soaring.PilotLevel, &results.Soaring.CloudBase,
        &results.Descent.Source, &results.Effective.Base, &results.Effective.Top}) {
    if (!Finite(*level)) *level = {};
  }
}

}  // namespace

AnalysisResults Analyse(const SoundingRecord& sounding, const AnalysisSettings& options,
                        AdiabatTable& table, Progress progress) {
  AnalysisResults results;
  results.ChosenLift = TypeOf(options.Lpl);
  results.Mode = options.BaseLevel == CapeBase::Ccl ? LiftMode::Ccl : LiftMode::Lfc;
  results.Levels = DeriveLevels(sounding, options);
  results.Surface = SurfaceOf(sounding, results.Levels);
  results.Winds = DeriveWinds(sounding);
  results.Storm = AnalyseStormMotion(sounding, results.Winds, options);
  if (results.Levels.Count() == 0) {
    results.Indices = ComputeIndices(sounding, results, options);
    return results;
  }

  const double ground = results.Levels.Height(1);
  results.CapeDepthTopPress = GetPRESS(results.Levels, ground + options.CapeDepthKm * 1000);
  const PressureGrid grid = MakePressureGrid(results.Levels);
  LiftAll(options, grid, &table, results);
  results.Effective =
      FindEffectiveLayer(results.Levels, grid, options,
                         results.Forced[static_cast<std::size_t>(LiftType::MostUnstable)], table);
  results.Inflow = FindInflowWinds(results);
  if (options.Dcape == DcapeMode::Best) progress.Begin("Calculating DCAPE . . .");
  results.Descent = FindDowndraft(results.Levels, grid, options, table);
  results.Tropopauses = FindTropopauses(results.Levels);
  results.Inversions = FindInversions(results.Levels, results.Tropopauses);
  results.FreezingLevels = FindFreezingLevels(results.Levels);
  results.Layers = FindLayers(sounding, results, options);
  results.Winter = AnalyseWinter(results);
  results.Soaring = AnalyseSoaring(results, options);
  DropNonsense(results);
  results.Indices = ComputeIndices(sounding, results, options);
  return results;
}

bool ParcelAscent::IsBound(double ParcelAscent::*energy) const {
  if (energy == &ParcelAscent::CapeDepth) return IsDepthCut;
  if (energy == &ParcelAscent::CapeHail) return IsCut && HailTopPress == kNone;
  return IsCut && (energy == &ParcelAscent::CapeTotal || energy == &ParcelAscent::CapePlusOnly);
}

bool ParcelAscent::HasAnswer(double ParcelAscent::*energy) const {
  return Start.Exists() && !(energy == &ParcelAscent::CapeDepth ? IsOpenDepth : IsOpen);
}

std::string_view CapeMarker(const ParcelAscent& ascent) {
  if (!ascent.Start.Exists() || ascent.Equilibrium.Exists()) return "";
  return ascent.IsOpen ? kOpenCape : kNoCape;
}

std::string EnergyText(const ParcelAscent& ascent, double ParcelAscent::*energy) {
  if (!ascent.HasAnswer(energy)) return "--";
  return (ascent.IsBound(energy) ? ">" : "") + Mask(ascent.*energy, "####0");
}

std::string ElText(const ParcelAscent& ascent, std::string_view mask) {
  if (!ascent.Equilibrium.Exists()) return "--";
  return (ascent.IsCut ? "above " : "") + Mask(ascent.Equilibrium.Press, mask);
}

std::string_view Text(LiftType type) {
  switch (type) {
    case LiftType::Surface:
      return "Surface Base";
    case LiftType::MeanLayer:
      return "Mean Layer";
    case LiftType::MostUnstable:
      return "MostUnstable";
  }
  return "";
}

AnalysisResults Analyse(const SoundingRecord& sounding, const AnalysisSettings& options,
                        Progress progress) {
  AdiabatTable table;
  return Analyse(sounding, options, table, progress);
}

void FollowStormMotion(const SoundingRecord& sounding, const AnalysisSettings& options,
                       AnalysisResults& results) {
  results.Storm = AnalyseStormMotion(sounding, results.Winds, options);
  results.Inflow = FindInflowWinds(results);
  results.Indices = ComputeIndices(sounding, results, options);
}

}  // namespace vexa::analysis
