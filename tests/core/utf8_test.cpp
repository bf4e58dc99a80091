// Byte sequences from RFC 3629, section 3 and 10, and from table 3-7 of the Unicode standard.
#include "core/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace vexa {
namespace {

TEST(Utf8, WhatIsACharacterAndWhatIsNot) {
  struct Case {
    const char* About;
    std::string_view Text;
    std::size_t Length;
  };
  using namespace std::string_view_literals;
  const Case cases[] = {
      {"nothing", "", 0},
      {"a letter", "A\xC3", 1},
      {"U+0000", "\0"sv, 1},
      {"U+0080, the first of two bytes", "\xC2\x80", 2},
      {"an umlaut", "\xC3\xBC", 2},
      {"U+0800, the first of three bytes", "\xE0\xA0\x80", 3},
      {"U+D7FF, the last before the surrogates", "\xED\x9F\xBF", 3},
      {"U+E000, the first behind them", "\xEE\x80\x80", 3},
      {"U+1F600", "\xF0\x9F\x98\x80", 4},
      {"U+10FFFF, the last", "\xF4\x8F\xBF\xBF", 4},
      {"U+D800, the first surrogate", "\xED\xA0\x80", 0},
      {"the last surrogate", "\xED\xBF\xBF", 0},
      {"overlong: a slash in two bytes", "\xC0\xAF", 0},
      {"overlong: a slash in three bytes", "\xE0\x80\xAF", 0},
      {"overlong: U+07FF in three bytes", "\xE0\x9F\xBF", 0},
      {"overlong: U+FFFF in four bytes", "\xF0\x8F\xBF\xBF", 0},
      {"beyond the last", "\xF4\x90\x80\x80", 0},
      {"a lead that is none", "\xF5\x80\x80\x80", 0},
      {"a continuation alone", "\x80", 0},
      {"Latin-1",
       "\xFC"
       "r",
       0},
      {"a lead where another byte should follow", "\xC3\xC3", 0},
      {"cut", "\xF0\x9F\x98", 0},
  };
  for (const Case& c : cases) EXPECT_EQ(Utf8Length(c.Text), c.Length) << c.About;
}

TEST(Utf8, NumbersBecomeCharacters) {
  for (const auto& [code, bytes] : {std::pair{U'A', "A"},
                                    {U'\u00FC', "\xC3\xBC"},
                                    {U'\u20AC', "\xE2\x82\xAC"},
                                    {U'\U0001F600', "\xF0\x9F\x98\x80"},
                                    {char32_t{0x10000}, "\xF0\x90\x80\x80"},
                                    {char32_t{0xD83D}, "\xEF\xBF\xBD"},
                                    {char32_t{0x110000}, "\xEF\xBF\xBD"}}) {
    std::string text;
    AppendUtf8(code, text);
    EXPECT_EQ(text, bytes);
  }
}

}  // namespace
}  // namespace vexa
