// Parcel ascent: lifts one parcel through the sounding and integrates its buoyancy. The path it
// leaves behind is drawn by the diagram and summed into CAPE and CIN here, so that the shaded area
// and the number always agree.
#pragma once

#include <cstddef>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "analysis/level_profile.h"
#include "analysis/pressure_grid.h"

namespace vexa::analysis {

/// What the options decide about an ascent.
struct LiftSettings {
  SaturationOver Over = SaturationOver::Water;
  bool Virtual = false;                // compare virtual temperatures
  int Step = 1;                        // hPa
  double DepthTopPress = kNotReached;  // hPa, top of "CAPE 0-x km"
  double ElLowerLimit = 1050;          // hPa; an EL below it is none
  bool FindMaximum = true;             // whether the MPL is wanted
};

LiftSettings LiftSettingsOf(const AnalysisSettings& options, double depthTopPress);

/// A condensation point: pressure in hPa and temperature in °C.
struct CondensationPoint {
  double Press = kNone;
  double Temp = kMissing;
  bool Exists() const { return Press != kNone; }
};

/// Lifts parcels through one sounding, whose levels and grid it refers to. Working arrays are kept
/// between ascents, and so are those of the ascent that is written over.
class ParcelLifter {
 public:
  /// table  blended instead of solving each ascent; null solves
  ParcelLifter(const LevelProfile& levels, const PressureGrid& grid, const LiftSettings& settings,
               AdiabatTable* table = nullptr);

  /// Forced lift: dry to the parcel's own condensation level, saturated above, free at the LFC.
  void LiftForced(const ParcelStart& start, ParcelAscent& into);

  /// Free convection: from the heated surface to a condensation level that was found on the
  /// sounding, saturated and free above it.
  void LiftConvective(const ParcelStart& start, const CondensationPoint& condensation,
                      ParcelAscent& into);

 private:
  struct Source;  // what the ascent needs to know of its parcel

  void Lift(const ParcelStart& start, const CondensationPoint& condensation, LiftMode mode,
            ParcelAscent& into);
  void FillPath(const Source& source, std::vector<double>& path);
  void FillSteps(ParcelAscent& into);
  double CondensationDifference(const Source& source) const;
  double Difference(std::size_t step) const { return parcel_[step] - environment_[step]; }
  void FindFreeLayer(const Source& source, LiftMode mode, ParcelAscent& into);
  void Integrate(ParcelAscent& into);
  void MarkHailZone(std::size_t end, ParcelAscent& into) const;
  void FindMaximum(std::size_t end, ParcelAscent& into) const;

  double PressAt(std::size_t step) const;
  double LogPressAt(std::size_t step) const;
  std::size_t StepsDownTo(double press) const;
  double Crossing(double lowLog, double low, std::size_t step) const;
  LevelPoint PointAt(double press) const;

  const LevelProfile& levels_;
  const PressureGrid& grid_;
  LiftSettings settings_;
  AdiabatTable* table_;

  int first_ = 0;                              // hPa, where the path starts
  const std::vector<double>* path_ = nullptr;  // °C, parcel at every whole hPa, dry bulb
  std::vector<double> temps_{};                // the path where it is not shown as it is
  std::vector<double> virtuals_{};             // °C, the same, virtual
  std::size_t steps_ = 0;                      // of the path, each of so many hPa
  const double* parcel_ = nullptr;             // °C at each step, as compared …
  const double* environment_ = nullptr;        // °C … with this
  std::vector<double> thinParcel_{}, thinEnvironment_{}, thinLogs_{};  // of steps beyond 1 hPa
  std::vector<double> increments_{};  // J/kg at each step; the first is 0
};

}  // namespace vexa::analysis
