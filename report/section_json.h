// The grid of a section's fields as JSON and as rows of text.
#pragma once

#include <span>
#include <string>

#include "crosssection/section_grid.h"
#include "report/json.h"

namespace vexa::report {

/// Columns, scales and, for each field, its grid from the lowest row up; null without a value.
Json SectionJson(const crosssection::Section& section, const crosssection::SectionOptions& options,
                 std::span<const crosssection::FieldAnalysis> fields);

}  // namespace vexa::report
