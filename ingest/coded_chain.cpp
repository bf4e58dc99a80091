#include "ingest/coded_chain.h"

namespace vexa::ingest {
namespace {

// Of each value the length of the longest selection that ends with it and falls, or rises.
std::vector<std::size_t> LengthsTo(const std::vector<double>& values, bool isRising, double slack) {
  std::vector<std::size_t> lengths(values.size(), 1);
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      const bool goesOn = isRising ? values[i] > values[k] - slack : values[i] < values[k] + slack;
      if (goesOn) lengths[i] = std::max(lengths[i], lengths[k] + 1);
    }
  }
  return lengths;
}

}  // namespace

std::vector<bool> CertainlyFalling(const std::vector<double>& values, double slack) {
  const std::vector<std::size_t> before = LengthsTo(values, false, slack);
  std::vector<std::size_t> behind =
      LengthsTo(std::vector<double>(values.rbegin(), values.rend()), true, slack);
  std::ranges::reverse(behind);
  std::size_t longest = 0;
  for (const std::size_t length : before) longest = std::max(longest, length);
  // A value's place in a longest selection is its length before; one that has its place to itself
  // is in all of them.
  std::vector<int> rivals(longest + 1, 0);
  const auto isInOne = [&](std::size_t i) { return before[i] + behind[i] == longest + 1; };
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (isInOne(i)) ++rivals[before[i]];
  }
  std::vector<bool> kept(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    kept[i] = isInOne(i) && rivals[before[i]] == 1;
  }
  return kept;
}

}  // namespace vexa::ingest
