// Searches along columns: most levels are not what a search is for, and are passed over many at a
// time. All count from 0 and give the end where nothing is found; what is not a number is neither
// above nor below a limit.
#pragma once

#include <cstddef>

namespace vexa::analysis {

/// The first place in [from, end) whose value is so.
std::size_t FirstAbove(const double* values, std::size_t from, std::size_t end, double limit);
std::size_t FirstNotAbove(const double* values, std::size_t from, std::size_t end, double limit);
std::size_t FirstBelow(const double* values, std::size_t from, std::size_t end, double limit);
std::size_t FirstNotBelow(const double* values, std::size_t from, std::size_t end, double limit);

/// The first place in [from, end - 1) whose value is less than the next one.
std::size_t FirstRise(const double* values, std::size_t from, std::size_t end);

/// How many of the first values remain when those at the end that are below a limit, or no
/// numbers, are left out.
std::size_t CountToLastNotBelow(const double* values, std::size_t count, double limit);

/// The least and the largest value in [from, end), of those that are numbers; without any, positive
/// and negative infinity.
double LeastOf(const double* values, std::size_t from, std::size_t end);
double MostOf(const double* values, std::size_t from, std::size_t end);

}  // namespace vexa::analysis
