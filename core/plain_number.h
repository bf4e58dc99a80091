// Plain decimal numbers, "-12.3", as nearly all fields of nearly all files have them. They are read
// where they stand, before it is known where their field ends.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

// The compiler finds it too long to be put where it is called; there are two such places, which are
// most of the work on a long file.
#if defined(__GNUC__)
#define VEXA_IN_PLACE inline __attribute__((always_inline))
#else
#define VEXA_IN_PLACE inline
#endif

namespace vexa {

/// Digits as a whole number, and how many of them stand behind the full stop.
struct PlainFigures {
  std::uint64_t Digits = 0;
  std::ptrdiff_t Count = 0;
  std::ptrdiff_t Decimals = 0;
  const char* End = nullptr;  // behind them
};

/// Goes through the digits one by one; too many of them wrap.
PlainFigures FiguresAt(const char* at, const char* end);

/// The same of the eight characters from a place on, all at once, for numbers that end before the
/// last of them; Count is 0 where there is none or it is longer.
VEXA_IN_PLACE PlainFigures FiguresOfEight(const char* at) {
  constexpr std::uint64_t kEach = 0x0101010101010101;  // times what each character is to get
  std::uint64_t eight = 0;                             // the first character in the lowest bits
  std::memcpy(&eight, at, sizeof eight);
  eight ^= '0' * kEach;  // the worth of each digit
  // The highest bit of those that are more than 9.
  std::uint64_t others = (((eight & 0x7F * kEach) + 0x76 * kEach) | eight) & 0x80 * kEach;
  if (others == 0) return {};
  const int whole = std::countr_zero(others) / 8;
  int count = whole, length = whole;
  if (at[whole] == '.') {
    others &= others - 1;
    if (others == 0) return {};
    length = std::countr_zero(others) / 8;
    count = length - 1;
    const std::uint64_t ahead = (std::uint64_t{1} << (8 * whole)) - 1;
    eight = (eight & ahead) | ((eight >> 8) & ~ahead);
  }
  if (count == 0) return {};
  // Zeros ahead make them eight digits: pairs, then fours, then all become one number.
  eight <<= 8 * (8 - count);
  eight = eight * 10 + (eight >> 8);
  constexpr std::uint64_t kPairs = 0x000000FF000000FF;
  eight = (eight & kPairs) * (100 + (std::uint64_t{1000000} << 32)) +
          ((eight >> 16) & kPairs) * (1 + (std::uint64_t{10000} << 32));
  return {.Digits = eight >> 32, .Count = count, .Decimals = count - whole, .End = at + length};
}

/// The number at the front of a text: perhaps a minus, then up to 15 digits with at most one full
/// stop. Leaves `at` behind it; where there is no such number, nothing is given and `at` stays.
///
/// Its digits are a whole number over a power of ten. Both are exact in a double, so that their
/// quotient is the nearest number, as from_chars gives it.
VEXA_IN_PLACE std::optional<double> TakePlainNumber(const char*& at, const char* end) {
  constexpr std::ptrdiff_t kMostDigits = 15;
  static constexpr std::array<double, kMostDigits + 1> kPowers = {
      1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool isNegative = at != end && *at == '-';
  const char* const begin = isNegative ? at + 1 : at;
  PlainFigures figures;
  if (std::endian::native == std::endian::little && end - begin >= 8) {
    figures = FiguresOfEight(begin);
  }
  if (figures.Count == 0) figures = FiguresAt(begin, end);
  if (figures.Count == 0 || figures.Count > kMostDigits) return std::nullopt;
  at = figures.End;
  const double size = static_cast<double>(static_cast<std::int64_t>(figures.Digits)) /
                      kPowers[static_cast<std::size_t>(figures.Decimals)];
  return isNegative ? -size : size;
}

}  // namespace vexa
