#include "report/json.h"

#include <cmath>

#include "core/numbers.h"

namespace vexa::report {
namespace {

// Length of the UTF-8 sequence that begins here; 0 when it is none.
std::size_t SequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 0;
  }
  return length;
}

}  // namespace

std::string JsonQuoted(std::string_view text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string quoted = "\"";
  while (!text.empty()) {
    const std::size_t length = SequenceLength(text);
    if (length == 0) {
      quoted += "\xEF\xBF\xBD";
      text.remove_prefix(1);
      continue;
    }
    const char c = text.front();
    if (length > 1) {
      quoted += text.substr(0, length);
    } else if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      quoted += "\\u00";
      quoted += kHex[static_cast<unsigned char>(c) >> 4];
      quoted += kHex[static_cast<unsigned char>(c) & 15];
    } else {
      quoted += c;
    }
    text.remove_prefix(length);
  }
  return quoted + '"';
}

void JsonWriter::NewLine() {
  text_ += '\n';
  text_.append(2 * hasElements_.size(), ' ');
}

// Puts the comma and the line end before an element where they belong.
void JsonWriter::Element() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (hasElements_.empty()) return;
  if (hasElements_.back()) text_ += ',';
  hasElements_.back() = true;
  NewLine();
}

JsonWriter& JsonWriter::BeginObject() {
  Element();
  text_ += '{';
  hasElements_.push_back(false);
  return *this;
}

JsonWriter& JsonWriter::BeginArray() {
  Element();
  text_ += '[';
  hasElements_.push_back(false);
  return *this;
}

JsonWriter& JsonWriter::EndObject() {
  const bool any = hasElements_.back();
  hasElements_.pop_back();
  if (any) NewLine();
  text_ += '}';
  return *this;
}

JsonWriter& JsonWriter::EndArray() {
  const bool any = hasElements_.back();
  hasElements_.pop_back();
  if (any) NewLine();
  text_ += ']';
  return *this;
}

JsonWriter& JsonWriter::Key(std::string_view name) {
  Element();
  text_ += JsonQuoted(name) + ": ";
  afterKey_ = true;
  return *this;
}

JsonWriter& JsonWriter::Text(std::string_view value) {
  Element();
  text_ += JsonQuoted(value);
  return *this;
}

JsonWriter& JsonWriter::Number(std::optional<double> value) {
  Element();
  text_ += value && std::isfinite(*value) ? Shortest(*value) : "null";
  return *this;
}

JsonWriter& JsonWriter::Bool(bool value) {
  Element();
  text_ += value ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::Null() {
  return Number(std::nullopt);
}

JsonWriter& JsonWriter::Numbers(const std::vector<std::optional<double>>& values) {
  Element();
  text_ += '[';
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text_ += ", ";
    text_ += values[i] && std::isfinite(*values[i]) ? Shortest(*values[i]) : "null";
  }
  text_ += ']';
  return *this;
}

}  // namespace vexa::report
