#include "core/key_lines.h"

#include <algorithm>

#include "core/numbers.h"
#include "core/source_text.h"

namespace vexa {
namespace {

std::string KeyOf(std::string_view line) {
  line = Trim(line);
  const std::size_t equals = line.find('=');
  if (line.starts_with('#') || equals == std::string_view::npos) return {};
  return std::string(Trim(line.substr(0, equals)));
}

}  // namespace

KeyLines::KeyLines(std::string_view text) {
  if (text.find("\r\n") != std::string_view::npos) lineEnd_ = "\r\n";
  const SourceText source({}, std::string(text));
  for (int i = 1; i <= source.LineCount(); ++i) lines_.emplace_back(source.Line(i));
}

std::vector<KeyLines::Entry> KeyLines::Entries() const {
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const std::string_view line = Trim(lines_[i]);
    if (line.empty() || line.starts_with('#')) continue;
    const std::size_t equals = std::min(line.find('='), line.size());
    entries.push_back({.Line = static_cast<int>(i) + 1,
                       .Key = KeyOf(line),
                       .Value = std::string(Trim(line.substr(std::min(equals + 1, line.size())))),
                       .Whole = std::string(line)});
  }
  return entries;
}

void KeyLines::Set(std::string_view key, std::string_view value) {
  std::string line = std::string(key) + " = " + std::string(value);
  std::ranges::replace_if(line, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  const auto last =
      std::find_if(lines_.rbegin(), lines_.rend(),
                   [key](const std::string& candidate) { return KeyOf(candidate) == key; });
  if (last == lines_.rend()) {
    lines_.push_back(std::move(line));
  } else {
    *last = std::move(line);
  }
}

std::string KeyLines::Text() const {
  std::string text;
  for (const std::string& line : lines_) text += line + lineEnd_;
  return text;
}

}  // namespace vexa
