#include "core/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "core/plain_number.h"

namespace vexa {
namespace {

TEST(Numbers, WhatIsWrittenReadsBackTheSame) {
  std::mt19937 random(1999);
  std::uniform_real_distribution<double> digits(-1, 1);
  std::uniform_int_distribution<int> exponent(-12, 12);
  for (int i = 0; i < 20000; ++i) {
    const double value = digits(random) * std::pow(10.0, exponent(random));
    EXPECT_EQ(ParseNumber(Shortest(value)), value);
    EXPECT_EQ(Shortest(value).find_first_of("eE,"), std::string::npos);
  }
  EXPECT_EQ(Shortest(-56.3), "-56.3");
  EXPECT_EQ(Shortest(999.9F), "999.9");
  EXPECT_EQ(Shortest(-0.0), "0");
  EXPECT_EQ(Shortest(1e22), "10000000000000000000000");
}

TEST(Numbers, OnlyAWholeFieldIsANumber) {
  EXPECT_EQ(ParseNumber(" +1.5D+02\r"), 150);
  EXPECT_EQ(ParseNumber("-.5"), -0.5);
  EXPECT_EQ(ParseNumber("5."), 5);
  EXPECT_EQ(ParseNumber("-0012.50"), -12.5);
  // One digit more than a double holds exactly: to the nearest, here the even one.
  EXPECT_EQ(ParseNumber("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(ParseNumber("0.30000000000000001"), 0.3);
  for (const char* text : {"", " ", "1,5", "12x", "nan", "inf", "1e999", "--1", "+-1", "0x10",
                           "1 2", ".", "-", "+", "-.", "1.2.3", "5..", "1-2"}) {
    EXPECT_FALSE(ParseNumber(text)) << text;
  }
  EXPECT_EQ(ParseWhole("48.0"), 48);
  EXPECT_FALSE(ParseWhole("48.5"));
  EXPECT_EQ(ParseWhole("2147483647"), 2147483647);
  EXPECT_FALSE(ParseWhole("2147483648"));
}

// Digits, full stops and what ends a number, near and beyond the lengths that are read at once; the
// library's own reading of the same text is what is right.
TEST(Numbers, AnyTextReadsAsTheLibraryReadsIt) {
  constexpr std::string_view kFigures = "0123456789012345678901234567890123456789.";
  constexpr std::string_view kOthers = "-+ ,/:;eEx\xB1";
  std::mt19937 random(5);
  const auto oneOf = [&random](std::string_view characters) {
    return characters[random() % characters.size()];
  };
  int plain = 0, read = 0;
  for (int i = 0; i < 100000; ++i) {
    std::string text(random() % 3 == 0 ? "-" : "");
    for (auto rest = 1 + random() % 17; rest > 0; --rest) text += oneOf(kFigures);
    if (random() % 2 == 0) text.insert(random() % (text.size() + 1), 1, oneOf(kOthers));
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    double front = 0;
    const auto known = std::from_chars(begin, end, front, std::chars_format::fixed);
    const auto digits =
        std::count_if(begin, known.ptr, [](char c) { return c != '.' && c != '-'; });
    const bool isPlain = known.ec == std::errc{} && digits <= 15;
    const char* at = begin;
    const std::optional<double> number = TakePlainNumber(at, end);
    ASSERT_EQ(number, isPlain ? std::optional(front) : std::nullopt) << text;
    ASSERT_EQ(at, isPlain ? known.ptr : begin) << text;
    plain += isPlain ? 1 : 0;
    if (text.find_first_of("+ eEx") != text.npos) continue;  // blanks, signs and exponents
    const bool isWhole = known.ec == std::errc{} && known.ptr == end;
    ASSERT_EQ(ParseNumber(text), isWhole ? std::optional(front) : std::nullopt) << text;
    read += isWhole ? 1 : 0;
  }
  EXPECT_GT(plain, 50000);
  EXPECT_GT(read, 30000);
}

TEST(Numbers, TheTwoRoundingsDifferInHalves) {
  struct Case {
    double Value;
    int Whole;
    const char* Shown;
  };
  const Case cases[] = {{0.5, 0, "1"},    {1.5, 2, "2"},    {2.5, 2, "3"},   {-0.5, 0, "-1"},
                        {-1.5, -2, "-2"}, {-2.5, -2, "-3"}, {2.4999, 2, "2"}};
  for (const Case& c : cases) {
    EXPECT_EQ(ToWhole(c.Value), c.Whole) << c.Value;
    EXPECT_EQ(Mask(c.Value, "##0"), c.Shown) << c.Value;
  }
  EXPECT_EQ(ToWhole(1e12), std::numeric_limits<int>::max());
}

// Halves away from zero; more than six decimals are six.
TEST(Numbers, RoundedToDecimals) {
  const struct {
    double Value;
    int Decimals;
    double Rounded;
  } cases[] = {{2.4, 0, 2},       {2.5, 0, 3},       {-2.5, 0, -3},        {-2.4, 0, -2},
               {1.25, 1, 1.3},    {-1.25, 1, -1.3},  {0.125, 2, 0.13},     {0.0625, 3, 0.063},
               {1e-4, 3, 0},      {0.00004, 4, 0},   {0.00006, 4, 0.0001}, {1.5e-5, 5, 2e-5},
               {1.4e-6, 6, 1e-6}, {1.6e-6, 9, 2e-6}, {31.4, -1, 31}};
  for (const auto& c : cases) {
    EXPECT_DOUBLE_EQ(Rounded(c.Value, c.Decimals), c.Rounded) << c.Value << ' ' << c.Decimals;
  }
}

TEST(Numbers, MaskRoundsTheDecimalTextAndPads) {
  struct Case {
    double Value;
    const char *Pattern, *Text;
  };
  const Case cases[] = {
      {1.005, "0.00", "1.01"},  // 1.00499999999999989… in binary, but shown as 1.005
      {-0.04, "##0.0", "0.0"},
      {999.96, "##0.0", "1000.0"},
      {7, "00000", "00007"},
      {0.25, "#.##", ".25"},
      {3, "0.##", "3"},
      {12345.678, "0.0", "12345.7"},
      {0, "#.#", ""},
      {-0.006, "0.00", "-0.01"},
      {0.4989, "0", "0"},
      {0.5011, "0", "1"},
      {2.5, "0", "3"},
      {0.0625, "0.0000000", "0.0625000"},
      // about the size from which the digits are looked at one by one
      {99999999999.6, "0", "100000000000"},
      {100000000000.6, "0", "100000000001"},
      {9999999.99996, "0.0000", "10000000.0000"},
      {98765432.12345, "0.0000", "98765432.1235"},
      {123456789012.5, "0.##", "123456789012.5"},
      {1e20, "0", "100000000000000000000"},
  };
  for (const Case& c : cases) EXPECT_EQ(Mask(c.Value, c.Pattern), c.Text) << c.Pattern;
}

TEST(Numbers, InColumns) {
  const struct {
    int Width;
    const char *Left, *Right;
  } cases[] = {{-1, "12", "12"}, {2, "12", "12"}, {3, " 12", "12 "}};
  for (const auto& c : cases) {
    EXPECT_EQ(PadLeft("12", c.Width), c.Left) << c.Width;
    EXPECT_EQ(PadRight("12", c.Width), c.Right) << c.Width;
  }
  EXPECT_EQ(PadLeft("", 0), "");
  EXPECT_EQ(Brief(1234567890.12345), "1234567890.12345");
  EXPECT_EQ(Brief(12345678901.12345), "1.23457e+10");
  EXPECT_EQ(Brief(1e300), "1e+300");
  EXPECT_EQ(ToWhole(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace
}  // namespace vexa
