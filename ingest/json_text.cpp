#include "ingest/json_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace vexa::ingest {
namespace {

constexpr std::string_view kNan = "NaN";

// The text with null for NaN, outside of its strings.
std::string WithNulls(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  bool inString = false;
  std::size_t done = 0;
  while (done < text.size()) {
    // What stands before the next byte that matters goes over as one piece.
    const std::size_t at = std::min(text.find_first_of(inString ? "\"\\" : "\"N", done), text.size());
    plain += text.substr(done, at - done);
    done = at;
    if (done == text.size()) break;
    const std::string_view rest = text.substr(done);
    const bool isNan = !inString && rest.starts_with(kNan);
    const std::string_view token = rest.substr(0, isNan ? kNan.size() : rest[0] == '\\' ? 2 : 1);
    if (rest[0] == '"') inString = !inString;
    plain += isNan ? "null" : token;
    done += token.size();
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
  // Most texts have none, and need no copy.
  const bool hasNan = source.Bytes().find(kNan) != std::string::npos;
  const std::string plain = hasNan ? WithNulls(source.Bytes()) : std::string();
  const std::string_view text = hasNan ? std::string_view(plain) : source.Bytes();
  try {
    into = nlohmann::json::parse(text);
    return std::nullopt;
  } catch (const nlohmann::json::parse_error& thrown) {
    // The byte last read, counted from 1, ends the line where it is a line end.
    const std::string_view before = text.substr(0, std::max<std::size_t>(thrown.byte, 1) - 1);
    const int line = static_cast<int>(std::ranges::count(before, '\n')) + 1;
    return Fault{kFaultEndOfFile, "ReadJson", AtLine(source, line, ReasonOf(thrown))};
  } catch (const nlohmann::json::exception& thrown) {
    return Fault{kFaultEndOfFile, "ReadJson", source.Name() + ": " + ReasonOf(thrown)};
  }
}

}  // namespace vexa::ingest
