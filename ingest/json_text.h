// JSON texts of services, read by the library with one liberty: NaN counts as null, because
// services write it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>

#include "core/fault.h"
#include "core/source_text.h"

namespace vexa::ingest {

/// Reads a whole text. Fault 62 names the line and what is wrong with it.
std::optional<Fault> ReadJson(const SourceText& source, nlohmann::json& into);

}  // namespace vexa::ingest
