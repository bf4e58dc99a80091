// Arithmetic for columns of numbers: logarithm, exponential and the ratio's logarithm without a
// branch or a call, so that a loop over them is done several numbers at a time.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>

// Compiles a function also for processors with wide and very wide registers, and takes the one that
// fits when the program is loaded. Every element is computed as it stands and nothing is fused, so
// the digits are the same.
#if defined(__x86_64__) && defined(__ELF__) && defined(__GNUC__) && !defined(__clang__) && \
    defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__)
#define VEXA_WIDE __attribute__((target_clones("arch=x86-64-v4", "avx2", "default")))
#else
#define VEXA_WIDE
#endif

// A part of such functions: it becomes what they are, wherever they are compiled for.
#if defined(__GNUC__)
#define VEXA_INLINE inline __attribute__((always_inline))
#else
#define VEXA_INLINE inline
#endif

// Before a loop whose elements depend on no other: what it writes is nothing that it reads.
#if defined(__GNUC__) && !defined(__clang__)
#define VEXA_INDEPENDENT _Pragma("GCC ivdep")
#else
#define VEXA_INDEPENDENT
#endif

namespace vexa::analysis {

// ln 2 in two parts, of which the first has zeros at its end: whole multiples of it are exact.
inline constexpr double kLn2High = 0x1.62e42feep-1;
inline constexpr double kLn2Low = 0x1.a39ef35793c76p-33;

template <std::size_t kCount>
using Coefficients = std::array<double, kCount>;

VEXA_INLINE double PolynomialOf(double, const Coefficients<1>& all) {
  return all[0];
}

template <std::size_t kCount>
VEXA_INLINE double PolynomialOf(double x, const Coefficients<kCount>& all) {
  Coefficients<(kCount + 1) / 2> pairs;
  for (std::size_t i = 0; i + 1 < kCount; i += 2) pairs[i / 2] = all[i] + all[i + 1] * x;
  if constexpr (kCount % 2 == 1) pairs.back() = all.back();
  return PolynomialOf(x * x, pairs);
}

/// c0 + c1 x + c2 x² … in pairs, and pairs of these: a column waits for its longest chain of sums,
/// which this keeps short.
template <class... Terms>
VEXA_INLINE double Polynomial(double x, Terms... coefficients) {
  return PolynomialOf(x, Coefficients<sizeof...(coefficients)>{coefficients...});
}

/// 2 artanh(s) - 2 s, for |s| < 0.18: what a logarithm is beside its first term. The polynomial is
/// the nearest over that range, to 1e-17 of the logarithm; a Taylor series takes ten terms.
VEXA_INLINE double ArtanhRest(double s) {
  const double z = s * s;
  return Polynomial(z, 0.6666666666666673, 0.3999999999981964, 0.28571428660360426,
                    0.22222205803102535, 0.18183258393797846, 0.15320044808038014,
                    0.1475385652066615) *
         (z * s);
}

/// ln(a / b) of numbers that are not far apart: a / b from 0.7 to 1.43.
VEXA_INLINE double LogOfRatio(double a, double b) {
  const double s = (a - b) / (a + b);
  return 2 * s + ArtanhRest(s);
}

/// The same of numbers that are near each other: a / b from 0.87 to 1.15.
VEXA_INLINE double LogOfNearRatio(double a, double b) {
  const double s = (a - b) / (a + b);
  const double z = s * s;
  const double rest = Polynomial(z, 0.6666666666666675, 0.3999999999912471, 0.2857142999983892,
                                 0.2222140679235685, 0.1837158787177681);
  return 2 * s + rest * (z * s);
}

/// ln x of a positive number that is not denormal, to the last place or the one before it.
VEXA_INLINE double ColumnLog(double x) {
  constexpr std::uint64_t kHalfRoot = 0x3fe6a09e667f3bcd;  // the bits of sqrt(1/2)
  constexpr std::uint64_t kOne = 0x3ff0000000000000;
  constexpr std::uint64_t kWhole = 0x4330000000000000;  // 2^52: its low bits count from 0
  // x = 2^k m, m from sqrt(1/2) to sqrt(2).
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const std::uint64_t power = (bits - kHalfRoot + kOne) >> 52;  // k + 1023
  const double k = std::bit_cast<double>(power | kWhole) - (0x1p52 + 1023);
  const auto m = std::bit_cast<double>(bits - (power << 52) + kOne);
  const double f = m - 1;
  const double s = f / (2 + f);
  const double half = 0.5 * f * f;
  // 2 s = f - s f, and s f = half - s half.
  return k * kLn2High - ((half - (s * half + ArtanhRest(s) + k * kLn2Low)) - f);
}

/// (e to the x - 1 - x) / x², for |x| < 0.35: the nearest polynomial, to 2e-17 of e to the x.
VEXA_INLINE double ExpRest(double x) {
  return Polynomial(x, 0.5, 1.0 / 6, 0.04166666666662068, 0.008333333333329796,
                    0.0013888888918918907, 0.00019841269864364933, 2.4801518672268355e-05,
                    2.7557266442353424e-06, 2.7621324269313687e-07, 2.5101335854788522e-08);
}

/// e to the x - 1, for |x| < 0.35.
VEXA_INLINE double ColumnExpm1(double x) {
  return ExpRest(x) * (x * x) + x;
}

/// e to the x for |x| < 700, to the last place or the one before it.
VEXA_INLINE double ColumnExp(double x) {
  constexpr double kRounder = 0x1.8p52;
  // x = n ln 2 + r, |r| < 0.35.
  const double shifted = x * std::numbers::log2e + kRounder;
  const double n = shifted - kRounder;
  const double r = (x - n * kLn2High) - n * kLn2Low;
  const double power = ExpRest(r) * (r * r) + r + 1;
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(power) +
                               (std::bit_cast<std::uint64_t>(shifted) << 52));
}

struct SinCos {
  double Sin = 0;
  double Cos = 0;
};

/// Sine and cosine of an angle in radians, |x| < 1e5, to the last place or the one before it.
VEXA_INLINE SinCos ColumnSinCos(double x) {
  constexpr double kRounder = 0x1.8p52;
  constexpr double kQuarterHigh = 0x1.921fb544p+0;  // a quarter turn, as ln 2 above
  constexpr double kQuarterLow = 0x1.0b4611a626331p-34;
  // x = n quarter turns + r, |r| < 0.79.
  const double shifted = x * (2 / std::numbers::pi) + kRounder;
  const double n = shifted - kRounder;
  const double r = (x - n * kQuarterHigh) - n * kQuarterLow;
  const double z = r * r;
  const double sine = Polynomial(z, -1.0 / 6, 1.0 / 120, -1.0 / 5040, 1.0 / 362880, -1.0 / 39916800,
                                 1.0 / 6227020800, -1.0 / 1307674368000) *
                          (z * r) +
                      r;
  const double cosine = Polynomial(z, 1.0 / 24, -1.0 / 720, 1.0 / 40320, -1.0 / 3628800,
                                   1.0 / 479001600, -1.0 / 87178291200, 1.0 / 20922789888000) *
                            (z * z) -
                        0.5 * z + 1;
  // Odd quarters change them over, and each has two of the four in which it is negative.
  const auto quarter = std::bit_cast<std::uint64_t>(shifted);
  const bool isOdd = (quarter & 1) != 0;
  const auto signedBy = [](double value, std::uint64_t turns) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) ^ ((turns & 2) << 62));
  };
  return {signedBy(isOdd ? cosine : sine, quarter), signedBy(isOdd ? sine : cosine, quarter + 1)};
}

/// Each value becomes the sum of a start and all values up to it.
void SumUp(double start, double* values, std::size_t count);

/// Sum of the values in [from, to).
double SumOfAll(const double* values, std::size_t from, std::size_t to);

/// Sums of the values above and below zero in [from, to).
double PositiveSum(const double* values, std::size_t from, std::size_t to);
double NegativeSum(const double* values, std::size_t from, std::size_t to);

}  // namespace vexa::analysis
