#include "ingest/json_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>

namespace vexa::ingest {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kNan = "NaN";

// The text with null for NaN, outside of its strings.
std::string WithNulls(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  bool inString = false;
  std::size_t done = 0;
  while (done < text.size()) {
    // What stands before the next byte that matters goes over as one piece.
    const std::size_t at =
        std::min(text.find_first_of(inString ? "\"\\" : "\"N", done), text.size());
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
std::string ReasonOf(const Json::exception& thrown) {
  constexpr std::size_t kMostBytes = 200;  // it repeats the text that it stumbled over
  std::string_view reason = thrown.what();
  if (const std::size_t end = reason.find("] "); end != reason.npos) reason.remove_prefix(end + 2);
  if (reason.starts_with("parse error")) {
    const std::size_t colon = reason.find(": ");
    if (colon != reason.npos) reason.remove_prefix(colon + 2);
  }
  return std::string(reason.substr(0, kMostBytes));
}

// Hands on what the library tells, and keeps what it finds wrong.
class Teller {
 public:
  explicit Teller(JsonEvents& into) : into_(into) {}

  bool null() { return Told(&JsonEvents::Other); }
  bool boolean(bool) { return Told(&JsonEvents::Other); }
  bool number_integer(Json::number_integer_t value) { return TellNumber(value); }
  bool number_unsigned(Json::number_unsigned_t value) { return TellNumber(value); }
  bool number_float(double value, const std::string&) { return TellNumber(value); }
  bool string(std::string& value) { return Told(&JsonEvents::Text, value); }
  bool binary(Json::binary_t&) { return true; }  // not in a text
  bool start_object(std::size_t) { return Told(&JsonEvents::Begin, JsonEvents::Inside::Object); }
  bool start_array(std::size_t) { return Told(&JsonEvents::Begin, JsonEvents::Inside::Array); }
  bool end_object() { return Told(&JsonEvents::End); }
  bool end_array() { return Told(&JsonEvents::End); }
  bool key(std::string& name) { return Told(&JsonEvents::Name, name); }

  bool parse_error(std::size_t byte, const std::string&, const Json::exception& thrown) {
    Reason = ReasonOf(thrown);
    if (dynamic_cast<const Json::parse_error*>(&thrown) != nullptr) Byte = byte;
    return false;
  }

  std::string Reason{};
  std::optional<std::size_t>
      Byte{};  // the one last read, counted from 1, where the text is no JSON

 private:
  template <class Tell, class... Values>
  bool Told(Tell tell, Values&&... values) {
    (into_.*tell)(std::forward<Values>(values)...);
    return true;
  }
  template <class Value>
  bool TellNumber(Value value) {
    return Told(&JsonEvents::Number, static_cast<double>(value));
  }

  JsonEvents& into_;
};

}  // namespace

std::optional<Fault> ReadJson(const SourceText& source, JsonEvents& into) {
  // Most texts have none, and need no copy.
  const bool hasNan = source.Bytes().find(kNan) != std::string::npos;
  const std::string plain = hasNan ? WithNulls(source.Bytes()) : std::string();
  const std::string_view text = hasNan ? std::string_view(plain) : source.Bytes();
  Teller teller(into);
  if (Json::sax_parse(text, &teller)) return std::nullopt;
  if (!teller.Byte) {
    return Fault{kFaultEndOfFile, "ReadJson", source.Name() + ": " + teller.Reason};
  }
  // The byte ends its line where it is a line end.
  const std::string_view before = text.substr(0, std::max<std::size_t>(*teller.Byte, 1) - 1);
  const int line = static_cast<int>(std::ranges::count(before, '\n')) + 1;
  return Fault{kFaultEndOfFile, "ReadJson", AtLine(source, line, teller.Reason)};
}

}  // namespace vexa::ingest
