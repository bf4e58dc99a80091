// The catalogue of options: a row for each, in the order of the settings report. Reading, writing,
// the report, the dialogs and the command line walk this table; none of them names an option.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "config/option_rows.h"
#include "config/options.h"
#include "config/setting_row.h"
#include "core/fault.h"

namespace vexa {

std::span<const OptionRow> Catalogue();

/// The row of a key, compared without regard to case; null when there is none.
const OptionRow* FindOption(std::string_view key);

/// Sets one option as a user does: with it change the options that follow from it. False when the
/// row does not take the text; nothing changes then.
[[nodiscard]] bool ChangeOption(Options& options, const OptionRow& row, std::string_view text);

/// Sets one option from "KEY=VALUE". Fault 380 names the key or the words and range it takes.
[[nodiscard]] std::optional<Fault> SetOption(Options& options, std::string_view assignment);

/// What must hold between options that are each within their range: the bottom of the steering
/// layer lies below its top, Temp MAX between Temp MIN + 40 and 60. Fault 380 says which does not.
[[nodiscard]] std::optional<Fault> CheckOptions(const Options& options);

/// Gives the options of each broken rule their defaults; a sentence for each.
std::vector<std::string> RepairOptions(Options& options);

}  // namespace vexa
