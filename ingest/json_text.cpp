#include "ingest/json_text.h"

#include <algorithm>
#include <charconv>

#include "core/numbers.h"

namespace vexa::ingest {
namespace {

constexpr int kDeepest = 64;

void AppendUtf8(unsigned code, std::string& text) {
  const auto byte = [&text](unsigned value) { text += static_cast<char>(value); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0 | (code >> 6));
    byte(0x80 | (code & 0x3F));
  } else {
    byte(0xE0 | (code >> 12));
    byte(0x80 | ((code >> 6) & 0x3F));
    byte(0x80 | (code & 0x3F));
  }
}

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  bool ReadAll(JsonValue& into) {
    if (!ReadValue(into, 0)) return false;
    SkipBlanks();
    return at_ == text_.size() || Fail("text behind the end");
  }

  std::size_t At() const { return std::min(at_, text_.size()); }
  const std::string& Reason() const { return reason_; }

 private:
  bool Fail(std::string_view reason) {
    if (reason_.empty()) reason_ = reason;
    return false;
  }
  void SkipBlanks() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }
  bool Take(char expected) {
    SkipBlanks();
    if (at_ >= text_.size() || text_[at_] != expected) return false;
    ++at_;
    return true;
  }
  bool TakeWord(std::string_view word) {
    if (!text_.substr(at_).starts_with(word)) return false;
    at_ += word.size();
    return true;
  }

  bool ReadValue(JsonValue& into, int depth) {
    if (depth > kDeepest) return Fail("nested too deeply");
    SkipBlanks();
    if (at_ >= text_.size()) return Fail("the text ends early");
    if (text_[at_] == '{') return ReadObject(into, depth);
    if (text_[at_] == '[') return ReadArray(into, depth);
    if (text_[at_] == '"') return ReadString(into.Held.emplace<std::string>());
    if (TakeWord("null") || TakeWord("NaN")) return true;
    if (TakeWord("true")) {
      into.Held = true;
      return true;
    }
    if (TakeWord("false")) {
      into.Held = false;
      return true;
    }
    return ReadNumber(into);
  }

  bool ReadNumber(JsonValue& into) {
    const std::size_t end = std::min(text_.find_first_not_of("+-.0123456789eE", at_), text_.size());
    const std::optional<double> number = ParseNumber(text_.substr(at_, end - at_));
    if (!number) return Fail("a value was expected");
    into.Held = *number;
    at_ = end;
    return true;
  }

  bool ReadObject(JsonValue& into, int depth) {
    JsonObject members;
    ++at_;
    if (!Take('}')) {
      do {
        SkipBlanks();
        JsonObject::value_type member{std::string(), JsonValue{}};
        if (at_ >= text_.size() || text_[at_] != '"') return Fail("a name was expected");
        if (!ReadString(member.first)) return false;
        if (!Take(':')) return Fail("a colon was expected");
        if (!ReadValue(member.second, depth + 1)) return false;
        members.push_back(std::move(member));
      } while (Take(','));
      if (!Take('}')) return Fail("a comma or a closing brace was expected");
    }
    into.Held = std::move(members);
    return true;
  }

  bool ReadArray(JsonValue& into, int depth) {
    JsonArray values;
    ++at_;
    if (!Take(']')) {
      do {
        if (!ReadValue(values.emplace_back(), depth + 1)) return false;
      } while (Take(','));
      if (!Take(']')) return Fail("a comma or a closing bracket was expected");
    }
    into.Held = std::move(values);
    return true;
  }

  bool ReadString(std::string& into) {
    ++at_;
    while (at_ < text_.size() && text_[at_] != '"') {
      const char c = text_[at_++];
      if (static_cast<unsigned char>(c) < ' ') return Fail("a line ends inside a text");
      if (c != '\\') {
        into += c;
      } else if (!ReadEscape(into)) {
        return false;
      }
    }
    if (at_ >= text_.size()) return Fail("a text is not closed");
    ++at_;
    return true;
  }

  bool ReadEscape(std::string& into) {
    if (at_ >= text_.size()) return Fail("a text is not closed");
    constexpr std::string_view kEscapes = "\"\\/bfnrt", kMeant = "\"\\/\b\f\n\r\t";
    const char c = text_[at_++];
    if (const std::size_t which = kEscapes.find(c); which != kEscapes.npos) {
      into += kMeant[which];
      return true;
    }
    constexpr std::size_t kFigures = 4;
    const std::string_view figures = text_.substr(at_, kFigures);
    unsigned code = 0;
    const char* end = figures.data() + figures.size();
    const auto read = std::from_chars(figures.data(), end, code, 16);
    if (c != 'u' || figures.size() != kFigures || read.ptr != end) return Fail("a strange escape");
    AppendUtf8(code, into);
    at_ += kFigures;
    return true;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string reason_{};
};

}  // namespace

std::optional<double> JsonValue::Number() const {
  const double* number = std::get_if<double>(&Held);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

const JsonValue* JsonValue::Member(std::string_view name) const {
  const JsonObject* members = std::get_if<JsonObject>(&Held);
  if (members == nullptr) return nullptr;
  const auto found = std::ranges::find(*members, name, &JsonObject::value_type::first);
  return found == members->end() ? nullptr : &found->second;
}

Outcome<JsonValue> ReadJson(const SourceText& source) {
  Parser parser(source.Bytes());
  JsonValue value;
  if (parser.ReadAll(value)) return value;
  const std::string_view before = std::string_view(source.Bytes()).substr(0, parser.At());
  const int line = static_cast<int>(std::ranges::count(before, '\n')) + 1;
  return Fault{kFaultEndOfFile, "ReadJson", AtLine(source, line, parser.Reason())};
}

}  // namespace vexa::ingest
