#include "core/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "core/number_mask.h"
#include "core/plain_number.h"

namespace vexa {
namespace {

// Long enough for every finite double without an exponent.
constexpr std::size_t kLongestFixed = 1100;

template <class T>
std::string Fixed(T value) {
  if (!std::isfinite(value)) return "0";
  if (value == 0) return "0";            // no -0
  std::array<char, kLongestFixed> text;  // not emptied: it is long
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return std::string(text.data(), end.ptr);
}

bool IsBlank(char c) {
  return c <= ' ' && (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f');
}

// The number that a whole text is, where it is a plain one.
std::optional<double> PlainDecimal(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const std::optional<double> number = TakePlainNumber(at, end);
  return at == end ? number : std::nullopt;
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

// The value in units of its last decimal. Nothing where it is large, or so near the middle between
// two that its decimal digits must tell which way it is rounded.
std::optional<std::uint64_t> NearestUnits(double size, std::size_t decimals) {
  static constexpr std::array<double, 7> kPowers = {1, 10, 100, 1e3, 1e4, 1e5, 1e6};
  constexpr double kMost = 1e11;     // up to it products are off by less than kUnclear
  constexpr double kUnclear = 1e-3;  // of a unit
  if (decimals >= kPowers.size()) return std::nullopt;
  const double units = size * kPowers[decimals];
  if (!(units < kMost)) return std::nullopt;
  const auto below = static_cast<std::int64_t>(units);
  const double rest = units - static_cast<double>(below);
  if (std::fabs(rest - 0.5) < kUnclear) return std::nullopt;
  return static_cast<std::uint64_t>(below + (rest > 0.5 ? 1 : 0));
}

// The digits of the shortest decimal form, rounded to so many decimals, without the full stop.
std::string RoundedDigits(double size, std::size_t decimals) {
  const std::string shortest = Fixed(size);
  const std::size_t stop = shortest.find('.');
  std::string digits = shortest.substr(0, stop);
  std::string fraction = stop == std::string::npos ? std::string{} : shortest.substr(stop + 1);
  const bool up = fraction.size() > decimals && fraction[decimals] >= '5';
  fraction.resize(decimals, '0');
  digits += fraction;
  if (up) Increment(digits);
  return digits;
}

// Digits, of which the last are decimals, as the mask wants them.
std::string Masked(std::string_view digits, const MaskFigures& figures, bool isNegative) {
  std::string_view whole = digits.substr(0, digits.size() - figures.MostFraction);
  std::string_view fraction = digits.substr(whole.size());
  const bool isZero = std::ranges::all_of(digits, [](char c) { return c == '0'; });
  while (!whole.empty() && whole.front() == '0') whole.remove_prefix(1);
  while (fraction.size() > figures.LeastFraction && fraction.back() == '0') {
    fraction.remove_suffix(1);
  }
  std::string text;
  if (isNegative && !isZero) text += '-';
  if (whole.size() < figures.LeastWhole) text.append(figures.LeastWhole - whole.size(), '0');
  text += whole;
  if (!fraction.empty()) (text += '.') += fraction;
  return text;
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
  std::array<char, kLongestFixed> figures;
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
  if (const std::optional<double> plain = PlainDecimal(text)) return plain;
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
  std::string text;
  AppendMasked(text, value, MaskFigures(mask));
  return text;
}

void AppendMasked(std::string& text, double value, const MaskFigures& figures) {
  if (!std::isfinite(value)) return;
  constexpr std::size_t kMostWhole = 20;  // figures that there is room for
  const double size = std::fabs(value);
  const std::optional<std::uint64_t> units = NearestUnits(size, figures.MostFraction);
  if (!units || figures.LeastWhole > kMostWhole) {
    text += Masked(RoundedDigits(size, figures.MostFraction), figures, value < 0);
    return;
  }
  // From the right.
  std::array<char, 2 * kMostWhole> shown;
  char* const end = shown.data() + shown.size();
  char* at = end;
  std::uint64_t rest = *units;
  const auto put = [&] {
    *--at = static_cast<char>('0' + rest % 10);
    rest /= 10;
  };
  std::size_t decimals = figures.MostFraction;
  for (; decimals > figures.LeastFraction && rest % 10 == 0; --decimals) rest /= 10;
  for (std::size_t i = 0; i < decimals; ++i) put();
  if (decimals > 0) *--at = '.';
  for (std::size_t i = 0; rest > 0 || i < figures.LeastWhole; ++i) put();
  if (value < 0 && *units != 0) *--at = '-';
  text.append(at, static_cast<std::size_t>(end - at));
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
