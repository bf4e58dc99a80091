// The intervals of the isolines: the usual ones, those the user set (`IntervalSet`), and the levels
// that follow for a field's range. Kept in a settings file of their own.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "crosssection/fields.h"
#include "crosssection/grid.h"

namespace vexa::crosssection {

/// Intervals by field code, in the unit that is shown; fields without an entry keep the usual one.
struct IntervalSettings {
  std::map<std::string, double, std::less<>> Chosen{};
  double Of(const FieldRow& field, const FieldContext& context) const;
  bool operator==(const IntervalSettings&) const = default;
};

inline constexpr int kMostLevels = 60;

/// An interval as a user typed it; fault 380 for anything but a number above 0.
Outcome<double> IntervalFrom(std::string_view text);

struct ContourLevels {
  double Interval = 0;           // as it is drawn, doubled until there are no more than kMostLevels
  std::vector<double> Levels{};  // its multiples within the range, rising
};
ContourLevels LevelsFor(const GridX::Extent& range, double interval);

/// "VEXA56+.XXI".
std::string IntervalFile();
std::string Write(const IntervalSettings& intervals);
/// What a file says; rows that name no field or no interval are passed over.
IntervalSettings ReadIntervals(const std::string& text);

}  // namespace vexa::crosssection
