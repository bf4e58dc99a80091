#include "analysis/column_math.h"

#include <cstring>

namespace vexa::analysis {
namespace {

// Four numbers that are added at a time.
using Lanes = double __attribute__((vector_size(4 * sizeof(double))));

enum class Sign { Positive, Negative };

// Those of four values that have a sign, added to their sums.
template <Sign sign>
inline __attribute__((always_inline)) void AddTo(Lanes& sums, const double* values,
                                                 std::size_t count = 4) {
  Lanes lanes{};
  std::memcpy(&lanes, values, count * sizeof(double));
  if constexpr (sign == Sign::Positive) {
    sums += lanes > 0.0 ? lanes : Lanes{};
  } else {
    sums += lanes < 0.0 ? lanes : Lanes{};
  }
}

// Sixteen sums side by side: as many as keep a processor busy while one of them is added to.
template <Sign sign>
inline __attribute__((always_inline)) double SumOver(const double* values, std::size_t from,
                                                     std::size_t to) {
  Lanes a{}, b{}, c{}, d{};
  std::size_t i = from;
  for (; i + 16 <= to; i += 16) {
    AddTo<sign>(a, values + i);
    AddTo<sign>(b, values + i + 4);
    AddTo<sign>(c, values + i + 8);
    AddTo<sign>(d, values + i + 12);
  }
  for (; i + 4 <= to; i += 4) AddTo<sign>(a, values + i);
  if (i < to) AddTo<sign>(b, values + i, to - i);
  const Lanes sum = (a + b) + (c + d);
  return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}

}  // namespace

VEXA_WIDE double PositiveSum(const double* values, std::size_t from, std::size_t to) {
  return SumOver<Sign::Positive>(values, from, to);
}

VEXA_WIDE double NegativeSum(const double* values, std::size_t from, std::size_t to) {
  return SumOver<Sign::Negative>(values, from, to);
}

}  // namespace vexa::analysis
