#include "analysis/column_scan.h"

#include <cstring>
#include <limits>

#include "analysis/column_math.h"

namespace vexa::analysis {
namespace {

enum class Extreme { Least, Most };

// Eight numbers at a time.
using Lanes = double __attribute__((vector_size(8 * sizeof(double))));

template <Extreme extreme>
inline __attribute__((always_inline)) double ExtremeOf(const double* values, std::size_t from,
                                                       std::size_t end) {
  constexpr bool isLeast = extreme == Extreme::Least;
  constexpr double kStart = (isLeast ? 1 : -1) * std::numeric_limits<double>::infinity();
  const auto beats = [](double a, double b) { return isLeast ? a < b : a > b; };
  Lanes found = kStart + Lanes{};
  std::size_t i = from;
  for (; i + 8 <= end; i += 8) {
    Lanes lanes;
    std::memcpy(&lanes, values + i, sizeof lanes);
    found = (isLeast ? lanes < found : lanes > found) ? lanes : found;
  }
  double first = kStart;
  for (int k = 0; k < 8; ++k) first = beats(found[k], first) ? found[k] : first;
  for (; i < end; ++i) first = beats(values[i], first) ? values[i] : first;
  return first;
}

}  // namespace

VEXA_WIDE double LeastOf(const double* values, std::size_t from, std::size_t end) {
  return ExtremeOf<Extreme::Least>(values, from, end);
}

VEXA_WIDE double MostOf(const double* values, std::size_t from, std::size_t end) {
  return ExtremeOf<Extreme::Most>(values, from, end);
}

VEXA_WIDE std::size_t FirstAbove(const double* values, std::size_t from, std::size_t end,
                                 double limit) {
  return FirstThat(from, end, [=](std::size_t i) { return values[i] > limit; });
}

VEXA_WIDE std::size_t FirstNotAbove(const double* values, std::size_t from, std::size_t end,
                                    double limit) {
  return FirstThat(from, end, [=](std::size_t i) { return !(values[i] > limit); });
}

VEXA_WIDE std::size_t FirstBelow(const double* values, std::size_t from, std::size_t end,
                                 double limit) {
  return FirstThat(from, end, [=](std::size_t i) { return values[i] < limit; });
}

VEXA_WIDE std::size_t FirstNotBelow(const double* values, std::size_t from, std::size_t end,
                                    double limit) {
  return FirstThat(from, end, [=](std::size_t i) { return !(values[i] < limit); });
}

VEXA_WIDE std::size_t FirstRise(const double* values, std::size_t from, std::size_t end) {
  if (from + 1 >= end) return end;
  const std::size_t found =
      FirstThat(from, end - 1, [=](std::size_t i) { return values[i] < values[i + 1]; });
  return found == end - 1 ? end : found;
}

VEXA_WIDE bool HasFall(const double* values, std::size_t count) {
  const auto falls = [=](std::size_t i) { return values[i] > values[i + 1]; };
  return count > 1 && FirstThat(0, count - 1, falls) < count - 1;
}

VEXA_WIDE std::size_t FirstSlowFall(const double* values, const double* along, std::size_t from,
                                    std::size_t end, double rate) {
  if (from + 1 >= end) return end;
  const std::size_t found = FirstThat(from, end - 1, [=](std::size_t i) {
    return values[i] - values[i + 1] <= rate * (along[i + 1] - along[i]);
  });
  return found == end - 1 ? end : found;
}

VEXA_WIDE std::size_t FirstFastFall(const double* values, const double* along, std::size_t from,
                                    std::size_t end, double rate) {
  if (from + 1 >= end) return end;
  const std::size_t found = FirstThat(from, end - 1, [=](std::size_t i) {
    return values[i] - values[i + 1] > rate * (along[i + 1] - along[i]);
  });
  return found == end - 1 ? end : found;
}

VEXA_WIDE std::size_t CountToLastNotBelow(const double* values, std::size_t count, double limit) {
  const auto isSo = [=](std::size_t i) { return values[i] >= limit; };
  while (count >= kScannedAtATime && !HasAny(count - kScannedAtATime, isSo)) {
    count -= kScannedAtATime;
  }
  while (count > 0 && !isSo(count - 1)) --count;
  return count;
}

}  // namespace vexa::analysis
