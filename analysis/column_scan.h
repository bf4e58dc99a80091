// Searches along columns: most levels are not what a search is for, and are passed over many at a
// time. All count from 0 and give the end where nothing is found; what is not a number is neither
// above nor below a limit.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "core/markers.h"

namespace vexa::analysis {

/// What NotAvailable denies, without a branch.
inline bool IsThere(double value) {
  return (value > -998.5) & (value < 9998) & !(std::fabs(value - kMissing) < 0.05);
}

inline constexpr std::size_t kScannedAtATime = 32;

/// Whether any of so many places from one on is so.
template <class IsSo>
inline __attribute__((always_inline)) bool HasAny(std::size_t from, const IsSo& isSo) {
  std::uint64_t any = 0;
  for (std::size_t i = from; i < from + kScannedAtATime; ++i) any |= isSo(i) ? 1 : 0;
  return any != 0;
}

/// The first place in [from, end) that is so, for searches of one's own in a function that is
/// VEXA_WIDE.
template <class IsSo>
inline __attribute__((always_inline)) std::size_t FirstThat(std::size_t from, std::size_t end,
                                                            const IsSo& isSo) {
  std::size_t i = from;
  while (i + kScannedAtATime <= end && !HasAny(i, isSo)) i += kScannedAtATime;
  while (i < end && !isSo(i)) ++i;
  return i;
}

/// The first place in [from, end) whose value is so.
std::size_t FirstAbove(const double* values, std::size_t from, std::size_t end, double limit);
std::size_t FirstNotAbove(const double* values, std::size_t from, std::size_t end, double limit);
std::size_t FirstBelow(const double* values, std::size_t from, std::size_t end, double limit);
std::size_t FirstNotBelow(const double* values, std::size_t from, std::size_t end, double limit);

/// The first place in [from, end - 1) whose value is less than the next one.
std::size_t FirstRise(const double* values, std::size_t from, std::size_t end);

/// Whether any value is greater than the next one.
bool HasFall(const double* values, std::size_t count);

/// The first place in [from, end - 1) from which on to the next the values fall by at most, or by
/// more than, a rate times the rise of another column.
std::size_t FirstSlowFall(const double* values, const double* along, std::size_t from,
                          std::size_t end, double rate);
std::size_t FirstFastFall(const double* values, const double* along, std::size_t from,
                          std::size_t end, double rate);

/// How many of the first values remain when those at the end that are below a limit, or no
/// numbers, are left out.
std::size_t CountToLastNotBelow(const double* values, std::size_t count, double limit);

/// The least and the largest value in [from, end), of those that are numbers; without any, positive
/// and negative infinity.
double LeastOf(const double* values, std::size_t from, std::size_t end);
double MostOf(const double* values, std::size_t from, std::size_t end);

}  // namespace vexa::analysis
