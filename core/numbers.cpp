#include "core/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace vexa {
namespace {

// Long enough for every finite double without an exponent.
constexpr std::size_t kLongestFixed = 1100;

template <class T>
std::string Fixed(T value) {
  if (!std::isfinite(value)) return "0";
  if (value == 0) return "0";  // no -0
  std::array<char, kLongestFixed> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return std::string(text.data(), end.ptr);
}

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f';
}

// A number as nearly all files have it, "-12.3": its digits as a whole number over a power of ten.
// Both are exact in a double, so that their quotient is the nearest number, as from_chars gives it.
std::optional<double> PlainDecimal(std::string_view text) {
  constexpr std::size_t kMostDigits = 15;
  static constexpr std::array<double, kMostDigits + 1> kPowers = {
      1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool isNegative = !text.empty() && text.front() == '-';
  if (isNegative) text.remove_prefix(1);
  std::int64_t digits = 0;
  std::size_t count = 0;
  std::size_t decimals = 0;
  bool isFraction = false;
  for (const char c : text) {
    if (c == '.' && !isFraction) {
      isFraction = true;
      continue;
    }
    if (c < '0' || c > '9' || ++count > kMostDigits) return std::nullopt;
    digits = 10 * digits + (c - '0');
    decimals += isFraction ? 1 : 0;
  }
  if (count == 0) return std::nullopt;
  const double size = static_cast<double>(digits) / kPowers[decimals];
  return isNegative ? -size : size;
}

// Adds one to a row of decimal digits, growing it when all are nines.
void Increment(std::string& digits) {
  for (std::size_t i = digits.size(); i-- > 0;) {
    if (digits[i] != '9') {
      ++digits[i];
      return;
    }
    digits[i] = '0';
  }
  digits.insert(digits.begin(), '1');
}

}  // namespace

std::string Shortest(double value) {
  return Fixed(value);
}
std::string Shortest(float value) {
  return Fixed(value);
}
std::string Shortest(int value) {
  return std::to_string(value);
}

std::string Brief(double value) {
  constexpr std::size_t kLongest = 16;
  std::string text = Shortest(value);
  if (text.size() <= kLongest || !std::isfinite(value)) return text;
  std::array<char, kLongestFixed> figures{};
  const auto end = std::to_chars(figures.data(), figures.data() + figures.size(), value,
                                 std::chars_format::general, 6);
  return std::string(figures.data(), end.ptr);
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<double> ParseNumber(std::string_view text) {
  text = Trim(text);
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) return std::nullopt;
  }
  if (text.empty()) return std::nullopt;
  if (const std::optional<double> plain = PlainDecimal(text)) return plain;
  std::string fortran;  // 1.5D+02 of older archives
  if (text.find_first_of("dD") != std::string_view::npos) {
    fortran = text;
    std::ranges::replace_if(
        fortran, [](char c) { return c == 'd' || c == 'D'; }, 'e');
    text = fortran;
  }
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::optional<int> ParseWhole(std::string_view text) {
  const std::optional<double> value = ParseNumber(text);
  if (!value || *value != std::trunc(*value)) return std::nullopt;
  if (std::fabs(*value) > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<int>(*value);
}

int ToWhole(double value) {
  if (std::isnan(value)) return 0;
  const double limited = std::clamp(value, static_cast<double>(std::numeric_limits<int>::min()),
                                    static_cast<double>(std::numeric_limits<int>::max()));
  const double lower = std::floor(limited);
  const double fraction = limited - lower;
  const auto whole = static_cast<std::int64_t>(lower);
  const bool up = fraction > 0.5 || (fraction == 0.5 && whole % 2 != 0);
  return static_cast<int>(whole + (up ? 1 : 0));
}

double Rounded(double value, int decimals) {
  static constexpr std::array<double, 7> kPowers = {1, 10, 100, 1e3, 1e4, 1e5, 1e6};
  const double scale = kPowers[static_cast<std::size_t>(std::clamp(decimals, 0, 6))];
  const double scaled = value * scale;
  return (scaled < 0 ? -std::floor(-scaled + 0.5) : std::floor(scaled + 0.5)) / scale;
}

std::string Mask(double value, std::string_view mask) {
  if (!std::isfinite(value)) return {};
  const std::size_t point = mask.find('.');
  const std::string_view wholeMask = mask.substr(0, point);
  const std::string_view fractionMask =
      point == std::string_view::npos ? std::string_view{} : mask.substr(point + 1);
  const auto leastWhole = static_cast<std::size_t>(std::ranges::count(wholeMask, '0'));
  const auto leastFraction = static_cast<std::size_t>(std::ranges::count(fractionMask, '0'));
  const std::size_t mostFraction = fractionMask.size();

  const std::string shortest = Fixed(std::fabs(value));
  const std::size_t stop = shortest.find('.');
  std::string digits = shortest.substr(0, stop);
  std::string fraction = stop == std::string::npos ? std::string{} : shortest.substr(stop + 1);
  const bool up = fraction.size() > mostFraction && fraction[mostFraction] >= '5';
  fraction.resize(mostFraction, '0');
  digits += fraction;
  if (up) Increment(digits);
  std::string whole = digits.substr(0, digits.size() - mostFraction);
  fraction = digits.substr(digits.size() - mostFraction);

  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));
  if (whole.size() < leastWhole) whole.insert(0, leastWhole - whole.size(), '0');
  while (fraction.size() > leastFraction && fraction.back() == '0') fraction.pop_back();

  const bool isZero = digits.find_first_not_of('0') == std::string::npos;
  std::string text = value < 0 && !isZero ? "-" : "";
  text += whole;
  if (!fraction.empty()) text += '.' + fraction;
  return text;
}

std::string PadLeft(std::string_view text, int width) {
  const auto wanted = static_cast<std::size_t>(std::max(width, 0));
  return std::string(wanted > text.size() ? wanted - text.size() : 0, ' ') + std::string(text);
}

std::string PadRight(std::string_view text, int width) {
  std::string padded(text);
  if (width > 0 && padded.size() < static_cast<std::size_t>(width)) {
    padded.resize(static_cast<std::size_t>(width), ' ');
  }
  return padded;
}

}  // namespace vexa
