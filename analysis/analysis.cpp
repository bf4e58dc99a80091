#include "analysis/analysis.h"

#include <cmath>

#include "analysis/adiabat_table.h"
#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "analysis/layers.h"
#include "analysis/moist_air.h"
#include "analysis/parcel.h"
#include "analysis/parcel_source.h"
#include "analysis/pressure_grid.h"
#include "analysis/standard_atmosphere.h"
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

void LiftAll(const Options& options, AdiabatTable* table, AnalysisResults& results) {
  const LevelProfile& levels = results.Levels;
  const PressureGrid grid = MakePressureGrid(levels);
  ParcelLifter lifter(levels, grid, LiftSettingsOf(options, results.CapeDepthTopPress), table);

  const LayerMean mean = MeanOfLowestLayer(levels, options.CclMeanLayer);
  const auto forced = [&](LiftType type) -> ParcelAscent& {
    return results.Lifts[static_cast<std::size_t>(type)].Forced;
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
  ParcelAscent convective;
  lifter.LiftConvective({surface, results.ConvectiveTemp, dewpt}, ccl, convective);
  for (LiftAnalysis& lift : results.Lifts) lift.Convective = convective;
}

AnalysisResults AnalyseWith(const SoundingRecord& sounding, const Options& options,
                            AdiabatTable* table) {
  AnalysisResults results;
  results.ChosenLift = TypeOf(options.Lpl);
  results.Mode = options.BaseLevel == CapeBase::Ccl ? LiftMode::Ccl : LiftMode::Lfc;
  results.Levels = DeriveLevels(sounding, options);
  results.Surface = SurfaceOf(sounding, results.Levels);
  results.Storm = AnalyseStormMotion(sounding, options);
  if (results.Levels.Count() == 0) {
    results.Indices = ComputeIndices(sounding, results, options);
    return results;
  }

  const double ground = results.Levels.Height(1);
  results.CapeDepthTopPress = GetPRESS(results.Levels, ground + options.CapeDepthKm * 1000);
  LiftAll(options, table, results);
  results.Tropopauses = FindTropopauses(results.Levels);
  results.Inversions = FindInversions(results.Levels, results.Tropopauses);
  results.FreezingLevels = FindFreezingLevels(results.Levels);
  results.Indices = ComputeIndices(sounding, results, options);
  return results;
}

}  // namespace

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

std::string_view Text(InversionKind kind) {
  switch (kind) {
    case InversionKind::Radiation:
      return "Radiation Inv.";
    case InversionKind::Frontal:
      return "Frontal Inv.";
    case InversionKind::Subsidence:
      return "Subsidence Inv.";
    case InversionKind::Tropopause:
      return "Trop Inv.";
    case InversionKind::Unknown:
      return "Unknown Inv.";
  }
  return "";
}

AnalysisResults Analyse(const SoundingRecord& sounding, const Options& options, Progress) {
  return AnalyseWith(sounding, options, nullptr);
}

AnalysisResults Analyse(const SoundingRecord& sounding, const Options& options,
                        AdiabatTable& table) {
  return AnalyseWith(sounding, options, &table);
}

}  // namespace vexa::analysis
