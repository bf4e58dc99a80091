// What every JSON text of the program has in common: members in the order in which they are put in,
// numbers rounded before that, nothing that is not a number as a number. For .cpp files only, and
// for few: the library's header takes its time.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <string_view>
#include <vector>

#include "core/data_checks.h"

namespace vexa::report {

using Json = nlohmann::ordered_json;

/// null for an absent value and for one that is not finite; a whole number without a fraction.
Json Number(std::optional<double> value);
Json Numbers(const std::vector<std::optional<double>>& values);

/// null in place of no words.
Json WordsJson(std::string_view words);

/// What the check of the data found: number, text and level; null for nothing.
Json FindingJson(const QcFinding& finding);

/// What one command found of a sounding, under the names of file and station and the finding.
Json FoundJson(std::string_view file, std::string_view station, const QcFinding& finding,
               const Json& found);

/// The text of it, indented, without a line end. Bytes that are not UTF-8 become U+FFFD.
std::string JsonText(const Json& json);

}  // namespace vexa::report
