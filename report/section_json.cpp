#include "report/section_json.h"

#include <cmath>
#include <vector>

#include "core/numbers.h"
#include "core/shown_values.h"
#include "report/values.h"

namespace vexa::report {
namespace {

using crosssection::Column;
using crosssection::FieldAnalysis;
using crosssection::SectionKind;

Json ColumnJson(const Column& column) {
  const SoundingRecord& sounding = column.Sounding;
  Json json;
  json["station"] = std::string(Trim(sounding.StationTitle));
  json["file"] = column.Source;
  json["x"] = Number(Rounded(column.X, 3));
  json["latitude"] = column.HasPosition() ? Number(Rounded(sounding.LatSigned, 4)) : Json(nullptr);
  json["longitude"] = column.HasPosition() ? Number(Rounded(sounding.LonSigned, 4)) : Json(nullptr);
  json["elevation"] = sounding.ElevUnknown ? Json(nullptr) : Json(sounding.ElevM);
  json["time"] = WordsJson(IsoTimeText(sounding.Time));
  json["interpolated"] = column.IsInterpolated;
  return json;
}

Json FieldJson(const FieldAnalysis& analysis, const crosssection::FieldContext& context) {
  const crosssection::GridX& grid = analysis.Grid;
  Json json;
  json["code"] = analysis.Field->Code;
  json["title"] = std::string(Trim(TitleOf(*analysis.Field, context)));
  json["unit"] = UnitOf(*analysis.Field, context);
  const bool isCategory = analysis.Field->Kind == crosssection::FieldKind::Category;
  json["interval"] = isCategory ? Json(nullptr) : Number(analysis.Interval);
  Json rows = Json::array();
  for (int row = 1; row <= grid.Rows(); ++row) {
    Json values = Json::array();
    for (int column = 1; column <= grid.Columns(); ++column) {
      values.push_back(grid.Has(column, row)
                           ? Number(Rounded(static_cast<double>(grid(column, row)), 4))
                           : Json(nullptr));
    }
    rows.push_back(std::move(values));
  }
  json["values"] = std::move(rows);
  return json;
}

}  // namespace

Json SectionJson(const crosssection::Section& section, const crosssection::SectionOptions& options,
                 std::span<const FieldAnalysis> fields) {
  Json json;
  json["kind"] = section.Kind == SectionKind::Time ? "time" : "distance";
  json["direction"] =
      section.Direction == crosssection::SectionDirection::Reverse ? "reverse" : "forward";
  json["bearing"] =
      section.Kind == SectionKind::Time ? Json(nullptr) : Number(Rounded(section.Bearing(), 2));
  json["columns"] = Json::array();
  for (const Column& column : section.Columns) json["columns"].push_back(ColumnJson(column));
  if (fields.empty()) return json;
  const crosssection::GridX& grid = fields.front().Grid;
  const crosssection::VerticalAxis& axis = fields.front().Axis;
  json["x unit"] = section.Kind == SectionKind::Time ? "hours" : "km";
  for (int column = 1; column <= grid.Columns(); ++column) {
    const double x =
        section.Columns.front().X + section.RangeX() * (column - 1) / (grid.Columns() - 1);
    json["x"].push_back(Number(Rounded(x, 3)));
  }
  const bool isPress = axis.Scale == crosssection::SectionScale::Pressure;
  json["vertical"] = isPress                           ? "pressure (hPa)"
                     : axis.Heights == HeightMode::Agl ? "height above ground (m)"
                                                       : "height (m)";
  for (int row = 1; row <= grid.Rows(); ++row) {
    const double at = axis.Bottom + (axis.Top - axis.Bottom) * (row - 1) / (grid.Rows() - 1);
    json["rows"].push_back(Number(Rounded(isPress ? std::exp(-at) : at, 3)));
  }
  const crosssection::FieldContext context = ContextOf(section, options);
  json["fields"] = Json::array();
  for (const FieldAnalysis& field : fields) json["fields"].push_back(FieldJson(field, context));
  return json;
}

}  // namespace vexa::report
