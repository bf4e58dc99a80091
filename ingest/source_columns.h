// Tables that name their columns: which column holds which quantity in which unit, and rows read
// by that plan. Humidity and depression become dew points, wind components become winds.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ingest/source_levels.h"

namespace vexa::ingest {

enum class Quantity {
  Press,
  Height,
  Temp,
  Dewpt,
  Depression,
  Humidity,
  Direction,
  Speed,
  East,
  North
};
inline constexpr std::size_t kQuantities = 10;

/// What a column holds and how its numbers become ours.
struct QuantityColumn {
  std::size_t Column = 0;
  Quantity What = Quantity::Press;
  Scale ToOurs{};
  bool HasUnit = false;  // the source states it
};

/// A quantity by the names that sources use, "TMPC", "geopotential height", "wspd"; letters count,
/// nothing else. Empty for any other name.
std::optional<Quantity> QuantityNamed(std::string_view name);

/// Plans one column from a name such as "temperature_C" or "Press (hPa)", or from name and unit.
/// Without a unit: hPa, m, °C, %, degrees, knots. Empty when the name is not one of ours or the
/// unit is not one of the quantity's.
std::optional<QuantityColumn> PlanColumn(std::size_t column, std::string_view name,
                                         std::string_view unit = {});

/// Plans all columns that are ours; of several with the same quantity the first counts.
std::vector<QuantityColumn> PlanColumns(std::span<const std::string_view> names,
                                        std::span<const std::string_view> units = {});

bool Holds(std::span<const QuantityColumn> plan, Quantity what);

/// A word of a row, with the number that it is where it is one as nearly all are.
struct RowWord {
  std::string_view Text{};
  std::optional<double> Number{};
};

/// The words between blanks and tabs, into a vector that is used again for the next line.
void TakeWords(std::string_view line, std::vector<RowWord>& words);

/// Reads one row. Empty on success, else the field that is neither a number nor a marker of a
/// missing value. A row with fewer fields misses the last ones.
std::optional<std::string> ReadRow(std::span<const std::string_view> fields,
                                   std::span<const QuantityColumn> plan, Refusals& refused,
                                   SourceLevel& into);
std::optional<std::string> ReadRow(std::span<const RowWord> words,
                                   std::span<const QuantityColumn> plan, Refusals& refused,
                                   SourceLevel& into);

/// Dew point in °C from temperature in °C and relative humidity in % over water; empty for a
/// humidity of 0 or less. Above 100 % counts as saturated.
std::optional<double> DewptFromHumidity(double temp, double humidity);

/// Fields of a line between separators, blanks around them gone; empty fields stay.
std::vector<std::string_view> SplitFields(std::string_view line, char separator);

}  // namespace vexa::ingest
