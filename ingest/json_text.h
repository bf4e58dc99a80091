// A strict reader of JSON texts, with one liberty: NaN counts as null, because services write it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "core/fault.h"
#include "core/source_text.h"

namespace vexa::ingest {

struct JsonValue;
using JsonArray = std::vector<JsonValue>;
using JsonObject = std::vector<std::pair<std::string, JsonValue>>;

struct JsonValue {
  std::variant<std::monostate, bool, double, std::string, JsonArray, JsonObject> Held{};

  /// Empty for another kind of value.
  std::optional<double> Number() const;
  const std::string* Text() const { return std::get_if<std::string>(&Held); }
  const JsonArray* Array() const { return std::get_if<JsonArray>(&Held); }
  /// The member of an object; null for other values and where there is none.
  const JsonValue* Member(std::string_view name) const;
};

/// Reads a whole text. Fault 62 names the line and what was wrong with it; deeper nesting than 64
/// is refused.
Outcome<JsonValue> ReadJson(const SourceText& source);

}  // namespace vexa::ingest
