#include "analysis/column_math.h"

#include <algorithm>
#include <array>

namespace vexa::analysis {
namespace {

// In four strands, which a processor adds side by side.
template <class Term>
inline double SumOver(const double* values, std::size_t from, std::size_t to, Term term) {
  std::array<double, 4> strands{};
  std::size_t i = from;
  for (; i + 4 <= to; i += 4) {
    for (std::size_t k = 0; k < 4; ++k) strands[k] += term(values[i + k]);
  }
  for (; i < to; ++i) strands[0] += term(values[i]);
  return (strands[0] + strands[1]) + (strands[2] + strands[3]);
}

}  // namespace

VEXA_WIDE double PositiveSum(const double* values, std::size_t from, std::size_t to) {
  return SumOver(values, from, to, [](double value) { return std::max(value, 0.0); });
}

VEXA_WIDE double NegativeSum(const double* values, std::size_t from, std::size_t to) {
  return SumOver(values, from, to, [](double value) { return std::min(value, 0.0); });
}

}  // namespace vexa::analysis
