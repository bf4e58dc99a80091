// The rows of the catalogue, form by form. Each names the part of the options that it belongs to:
// AnalysisSettings when a change makes analyses stale, ViewSettings when only pictures are.
#pragma once

#include <concepts>
#include <vector>

#include "config/options.h"
#include "config/setting_row.h"

namespace vexa {

using OptionRow = SettingRow<Options>;

template <class Part>
requires std::derived_from<Options, Part>
struct TableOf<Part> {
  using Struct = Options;
};

std::vector<OptionRow> ProgramRows();
std::vector<OptionRow> DiagramRows();
std::vector<OptionRow> SystemRows();

}  // namespace vexa
