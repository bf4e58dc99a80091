#include "crosssection/intervals.h"

#include <cmath>

#include "config/system_file.h"
#include "core/numbers.h"

namespace vexa::crosssection {

double IntervalSettings::Of(const FieldRow& field, const FieldContext& context) const {
  const auto chosen = Chosen.find(field.Code);
  return chosen == Chosen.end() ? UsualInterval(field, context) : chosen->second;
}

Outcome<double> IntervalFrom(std::string_view text) {
  const std::optional<double> number = ParseNumber(text);
  if (!number || !(*number > 0) || *number > 1e6) {
    return Fault{kFaultInvalidValue, "IntervalFrom",
                 "\"" + std::string(text) + "\" is no interval; it must be a number above 0"};
  }
  return *number;
}

ContourLevels LevelsFor(const GridX::Extent& range, double interval) {
  ContourLevels levels{.Interval = interval};
  if (!range.Exists() || !(interval > 0)) return levels;
  const auto count = [&] {
    return std::floor(range.Most / levels.Interval) - std::ceil(range.Least / levels.Interval) + 1;
  };
  while (count() > kMostLevels) levels.Interval *= 2;
  const double first = std::ceil(range.Least / levels.Interval);
  for (int i = 0; i < count(); ++i) levels.Levels.push_back((first + i) * levels.Interval);
  return levels;
}

std::string IntervalFile() {
  return std::string(kSystemTag) + ".XXI";
}

std::string Write(const IntervalSettings& intervals) {
  RecordWriter writer;
  writer.Text(kSystemHeader);
  writer.EndRecord();
  for (const auto& [code, interval] : intervals.Chosen) {
    writer.Text(code).Number(interval);
    writer.EndRecord();
  }
  return writer.Take();
}

IntervalSettings ReadIntervals(const std::string& text) {
  IntervalSettings intervals;
  RecordReader reader(text, {});
  if (!reader.Text("header")) return intervals;
  while (!reader.AtEnd()) {
    const Outcome<std::string> code = reader.Text("field");
    const Outcome<double> interval = code ? reader.Number("interval") : Outcome<double>(Fault{});
    if (!interval) break;
    if (FindField(code.Value()) != nullptr && interval.Value() > 0) {
      intervals.Chosen[code.Value()] = interval.Value();
    }
  }
  return intervals;
}

}  // namespace vexa::crosssection
