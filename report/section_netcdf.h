// The grid of a section's fields as a netCDF file after the CF conventions.
#pragma once

#include <span>
#include <string>

#include "core/fault.h"
#include "crosssection/section_grid.h"

namespace vexa::report {

/// The bytes of the file: the grids over height and distance or time, the position of every grid
/// column, and the soundings. A fault where the program was built without the netCDF library.
Outcome<std::string> SectionNetcdf(const crosssection::Section& section,
                                   const crosssection::SectionOptions& options,
                                   std::span<const crosssection::FieldAnalysis> fields);

}  // namespace vexa::report
