// The rows of the catalogue, form by form.
#pragma once

#include <vector>

#include "config/options.h"
#include "config/setting_row.h"

namespace vexa {

using OptionRow = SettingRow<Options>;

std::vector<OptionRow> ProgramRows();
std::vector<OptionRow> DiagramRows();
std::vector<OptionRow> SystemRows();

}  // namespace vexa
