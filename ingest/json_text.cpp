#include "ingest/json_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace vexa::ingest {
namespace {

// The text with null for NaN, outside of its strings.
std::string WithNulls(std::string_view text) {
  constexpr std::string_view kNan = "NaN";
  std::string plain;
  plain.reserve(text.size());
  bool inString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!inString && text.substr(i).starts_with(kNan)) {
      plain += "null";
      i += kNan.size() - 1;
      continue;
    }
    plain += text[i];
    if (text[i] == '"') inString = !inString;
    if (inString && text[i] == '\\' && i + 1 < text.size()) plain += text[++i];
  }
  return plain;
}

// What the library says, without the name of its exception and the place, which we name ourselves.
std::string ReasonOf(const nlohmann::json::exception& thrown) {
  constexpr std::size_t kMostBytes = 200;  // it repeats the text that it stumbled over
  std::string_view reason = thrown.what();
  if (const std::size_t end = reason.find("] "); end != reason.npos) reason.remove_prefix(end + 2);
  if (reason.starts_with("parse error")) {
    const std::size_t colon = reason.find(": ");
    if (colon != reason.npos) reason.remove_prefix(colon + 2);
  }
  return std::string(reason.substr(0, kMostBytes));
}

}  // namespace

std::optional<Fault> ReadJson(const SourceText& source, nlohmann::json& into) {
  const std::string text = WithNulls(source.Bytes());
  try {
    into = nlohmann::json::parse(text);
    return std::nullopt;
  } catch (const nlohmann::json::parse_error& thrown) {
    // The byte last read, counted from 1, ends the line where it is a line end.
    const std::string_view before =
        std::string_view(text).substr(0, std::max<std::size_t>(thrown.byte, 1) - 1);
    const int line = static_cast<int>(std::ranges::count(before, '\n')) + 1;
    return Fault{kFaultEndOfFile, "ReadJson", AtLine(source, line, ReasonOf(thrown))};
  } catch (const nlohmann::json::exception& thrown) {
    return Fault{kFaultEndOfFile, "ReadJson", source.Name() + ": " + ReasonOf(thrown)};
  }
}

}  // namespace vexa::ingest
