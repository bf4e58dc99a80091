// The air through which parcels go that start at its levels, and how they are compared with it:
// what the downdraft and the effective layer share.
#pragma once

#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/analysis_settings.h"
#include "analysis/level_profile.h"
#include "analysis/pressure_grid.h"

namespace vexa::analysis {

/// Refers to the levels, their grid and the table of saturated adiabats.
struct ParcelAir {
  ParcelAir(const LevelProfile& levels, const PressureGrid& grid, const AnalysisSettings& options,
            AdiabatTable& table)
      : Levels(levels),
        Grid(grid),
        Table(table),
        Over(options.Saturation),
        IsVirtual(options.CapeTempBase == TempBase::Virtual) {}

  /// The grid's temperatures with which parcels are compared, °C.
  const std::vector<double>& Environment() const {
    return IsVirtual ? Grid.VirtualTemp : Grid.Temp;
  }

  /// The same of the levels.
  const std::vector<double>& LevelEnvironment() const {
    return (IsVirtual ? Levels.VirtualTemp : Levels.Temp).Values();
  }

  const LevelProfile& Levels;
  const PressureGrid& Grid;
  AdiabatTable& Table;
  SaturationOver Over;
  bool IsVirtual;
};

}  // namespace vexa::analysis
