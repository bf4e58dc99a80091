// Capital and small letters. Only those of ASCII change: the files that are read know no code page,
// and the locale that a window system sets must not decide what a word means.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace vexa {

constexpr char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

inline std::string Lower(std::string_view text) {
  std::string letters(text);
  for (char& c : letters) c = Lower(c);
  return letters;
}

inline std::string Upper(std::string_view text) {
  std::string letters(text);
  for (char& c : letters) c = Upper(c);
  return letters;
}

/// Whether two texts are the same but for the case of their letters.
constexpr bool SameText(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char one, char other) { return Lower(one) == Lower(other); });
}

}  // namespace vexa
