// How to find one's way again behind a group that is damaged, missing or twice there: of all the
// ways to read a row of groups the one is taken that leaves the least unexplained. And what to keep
// of values that should rise or fall without exception.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace vexa::ingest {

inline constexpr double kImpossible = std::numeric_limits<double>::infinity();

/// The cheapest way from the first place to the last of places in a row, each step forward.
///
/// cost     double(from, to) of going on at one place behind another without those in between;
///          kImpossible where that cannot be
/// returns  the places passed, both ends among them; the ends alone when there is no way
template <class CostOf>
std::vector<std::size_t> CheapestChain(std::size_t places, CostOf&& cost) {
  constexpr std::size_t kFarthest = 24;  // places passed over at most
  struct Way {
    double Cost = kImpossible;
    std::size_t From = 0;
  };
  if (places < 2) return {};
  std::vector<Way> ways(places);
  ways[0].Cost = 0;
  for (std::size_t from = 0; from + 1 < places; ++from) {
    if (ways[from].Cost == kImpossible) continue;
    for (std::size_t to = from + 1; to < std::min(places, from + kFarthest + 2); ++to) {
      const double sum = ways[from].Cost + cost(from, to);
      if (sum < ways[to].Cost) ways[to] = {sum, from};
    }
  }
  std::vector<std::size_t> chain = {places - 1};
  if (ways[places - 1].Cost == kImpossible) return {0, places - 1};
  while (chain.back() != 0) chain.push_back(ways[chain.back()].From);
  std::ranges::reverse(chain);
  return chain;
}

/// Marks the values that every longest falling selection of them holds. The others are out of
/// order, or one of two of which either may be the wrong one.
///
/// slack  by which a value may exceed the one before
std::vector<bool> CertainlyFalling(const std::vector<double>& values, double slack = 0);

}  // namespace vexa::ingest
