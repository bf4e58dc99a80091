#include "analysis/column_math.h"

#include <cstring>

namespace vexa::analysis {
namespace {

// Four numbers that are added at a time.
using FourLanes = double __attribute__((vector_size(4 * sizeof(double))));

enum class Sign { Any, Positive, Negative };

// Those of four values that have a sign, added to their sums.
template <Sign sign>
VEXA_INLINE void AddTo(FourLanes& sums, const double* values, std::size_t count = 4) {
  FourLanes lanes{};
  std::memcpy(&lanes, values, count * sizeof(double));
  if constexpr (sign == Sign::Any) {
    sums += lanes;
  } else if constexpr (sign == Sign::Positive) {
    sums += lanes > 0.0 ? lanes : FourLanes{};
  } else {
    sums += lanes < 0.0 ? lanes : FourLanes{};
  }
}

// Sixteen sums side by side: as many as keep a processor busy while one of them is added to.
template <Sign sign>
VEXA_INLINE double SumOver(const double* values, std::size_t from, std::size_t to) {
  FourLanes a{}, b{}, c{}, d{};
  std::size_t i = from;
  for (; i + 16 <= to; i += 16) {
    AddTo<sign>(a, values + i);
    AddTo<sign>(b, values + i + 4);
    AddTo<sign>(c, values + i + 8);
    AddTo<sign>(d, values + i + 12);
  }
  for (; i + 4 <= to; i += 4) AddTo<sign>(a, values + i);
  if (i < to) AddTo<sign>(b, values + i, to - i);
  const FourLanes sum = (a + b) + (c + d);
  return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}

}  // namespace

// Four at a time, so that one sum in four waits for the one before it.
void SumUp(double start, double* values, std::size_t count) {
  double below = start;
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const double two = values[i] + values[i + 1];
    const double three = two + values[i + 2];
    const double four = three + values[i + 3];
    values[i] += below;
    values[i + 1] = below + two;
    values[i + 2] = below + three;
    values[i + 3] = below + four;
    below = values[i + 3];
  }
  for (; i < count; ++i) {
    below += values[i];
    values[i] = below;
  }
}

VEXA_WIDE double SumOfAll(const double* values, std::size_t from, std::size_t to) {
  return SumOver<Sign::Any>(values, from, to);
}

VEXA_WIDE double PositiveSum(const double* values, std::size_t from, std::size_t to) {
  return SumOver<Sign::Positive>(values, from, to);
}

VEXA_WIDE double NegativeSum(const double* values, std::size_t from, std::size_t to) {
  return SumOver<Sign::Negative>(values, from, to);
}

}  // namespace vexa::analysis
