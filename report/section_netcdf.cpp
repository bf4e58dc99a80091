#include "report/section_netcdf.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "core/markers.h"
#include "core/numbers.h"
#include "report/netcdf_file.h"

namespace vexa::report {

#if VEXA_NETCDF

namespace {

using crosssection::Column;
using crosssection::FieldAnalysis;
using crosssection::FieldKind;
using crosssection::Section;
using crosssection::SectionKind;
using crosssection::SectionScale;

// What the conventions call a field, and its unit where ours is none of theirs.
struct StandardRow {
  std::string_view Code;
  std::string_view Name;
  std::string_view Unit{};
};

constexpr StandardRow kStandard[] = {
    {"TMP", "air_temperature"},
    {"PT", "air_potential_temperature", "K"},
    {"EPT", "air_equivalent_potential_temperature", "K"},
    {"WET", "wet_bulb_temperature"},
    {"DPD", "dew_point_depression"},
    {"RH", "relative_humidity", "%"},
    {"MIX", "humidity_mixing_ratio", "g kg-1"},
    {"LWC", "mass_concentration_of_cloud_liquid_water_in_air", "g m-3"},
    {"REFN", "", "1"},
    {"REFK", "", "1"},
    {"DEN", "air_density", "kg m-3"},
    {"DVAL", "", "m"},
    {"WND", "wind_speed"},
    {"UWND", "eastward_wind"},
    {"VWND", "northward_wind"},
};

double At(int index, int count, double from, double to) {
  return from + (to - from) * (index - 1) / (count - 1);
}

// The hours of a section in time run on whatever way it is turned.
double HoursOf(const Section& section, double x) {
  const bool isReverse = section.Direction == crosssection::SectionDirection::Reverse;
  return isReverse ? section.RangeX() - x : x;
}

std::string HoursSince(const Section& section) {
  const auto earliest = std::ranges::min_element(
      section.Columns, {}, [&](const Column& column) { return HoursOf(section, column.X); });
  const ObservationTime& time = earliest->Sounding.Time;
  return "hours since " + Mask(time.Year, "0000") + "-" + Mask(time.Month, "00") + "-" +
         Mask(time.Day, "00") + " " + Mask(time.Hour, "00") + ":" + Mask(time.Minute, "00") + ":00";
}

// The value of a section's columns at a place between them, linear in x.
template <class Value>
double Between(const Section& section, double x, Value value) {
  std::size_t right = 1;
  while (right + 1 < section.Columns.size() && section.Columns[right].X < x) ++right;
  const Column& from = section.Columns[right - 1];
  const Column& to = section.Columns[right];
  if (!from.HasPosition() || !to.HasPosition()) return static_cast<double>(NC_FILL_FLOAT);
  const double share = to.X > from.X ? (x - from.X) / (to.X - from.X) : 0;
  return value(from) + std::remainder(value(to) - value(from), 360.0) * std::clamp(share, 0.0, 1.0);
}

double LatOf(const Column& column) {
  return column.Sounding.LatSigned;
}
double LonOf(const Column& column) {
  return column.Sounding.LonSigned;
}

class SectionFile {
 public:
  SectionFile(const Section& section, const crosssection::SectionOptions& options,
              std::span<const FieldAnalysis> fields)
      : section_(section),
        fields_(fields),
        context_(ContextOf(section, options)),
        axis_(fields.front().Axis),
        columns_(fields.front().Grid.Columns()),
        rows_(fields.front().Grid.Rows()) {}

  Outcome<std::string> Make() {
    file_.Text(NC_GLOBAL, "Conventions", "CF-1.8");
    file_.Text(NC_GLOBAL, "title", section_.Name.empty() ? "Cross-section" : section_.Name);
    file_.Text(NC_GLOBAL, "source", "upper-air soundings, linear between levels and stations");
    xDimension_ = file_.Dimension("x", static_cast<std::size_t>(columns_));
    zDimension_ = file_.Dimension("z", static_cast<std::size_t>(rows_));
    Across();
    Upward();
    Positions();
    Stations();
    for (const FieldAnalysis& field : fields_) Field(field);
    file_.EndDefinitions();
    for (const auto& [variable, values] : numbers_) file_.Put(variable, values);
    for (const auto& [variable, values] : grids_) file_.Put(variable, values);
    file_.Put(names_, namesText_);
    return file_.Close();
  }

 private:
  double X(int column) const {
    const double from = section_.Columns.front().X;
    return At(column, columns_, from, from + section_.RangeX());
  }
  template <class Value>
  std::vector<double> OfColumns(Value value) const {
    std::vector<double> values;
    for (int column = 1; column <= columns_; ++column) values.push_back(value(X(column)));
    return values;
  }
  template <class Value>
  std::vector<double> OfStations(Value value) const {
    std::vector<double> values;
    for (const Column& column : section_.Columns) values.push_back(value(column));
    return values;
  }
  int Numbers(std::string_view name, const std::vector<int>& dimensions,
              std::vector<double> values) {
    const int variable = file_.Variable(name, NC_DOUBLE, dimensions);
    numbers_.emplace_back(variable, std::move(values));
    return variable;
  }

  void Across() {
    const bool isTime = section_.Kind == SectionKind::Time;
    const int x =
        Numbers("x", {xDimension_},
                OfColumns([&](double at) { return isTime ? HoursOf(section_, at) : at; }));
    file_.Text(x, "long_name", isTime ? "time" : "distance along the section");
    file_.Text(x, "units", isTime ? HoursSince(section_) : "km");
    if (isTime) {
      file_.Text(x, "standard_name", "time");
      file_.Text(x, "calendar", "standard");
      file_.Text(x, "axis", "T");
    } else {
      file_.Text(x, "axis", "X");
    }
  }

  void Upward() {
    std::vector<double> values;
    const bool isPress = axis_.Scale == SectionScale::Pressure;
    for (int row = 1; row <= rows_; ++row) {
      const double at = At(row, rows_, axis_.Bottom, axis_.Top);
      values.push_back(isPress ? std::exp(-at) : at);
    }
    const int z = Numbers("z", {zDimension_}, std::move(values));
    const bool isAgl = axis_.Heights == HeightMode::Agl;
    file_.Text(z, "standard_name", isPress ? "air_pressure" : isAgl ? "height" : "altitude");
    file_.Text(z, "units", isPress ? "hPa" : "m");
    file_.Text(z, "positive", isPress ? "down" : "up");
    file_.Text(z, "axis", "Z");
  }

  void Place(int variable, bool isLat) {
    file_.Text(variable, "standard_name", isLat ? "latitude" : "longitude");
    file_.Text(variable, "units", isLat ? "degrees_north" : "degrees_east");
  }

  void Positions() {
    const auto of = [&](double (*value)(const Column&)) {
      return OfColumns([&](double x) { return Between(section_, x, value); });
    };
    Place(Numbers("lat", {xDimension_}, of(LatOf)), true);
    Place(Numbers("lon", {xDimension_}, of(LonOf)), false);
  }

  void Stations() {
    std::size_t longest = 1;
    for (const Column& column : section_.Columns) {
      longest = std::max(longest, Trim(column.Sounding.StationTitle).size());
    }
    const int station = file_.Dimension("station", section_.Columns.size());
    const int letters = file_.Dimension("letters", longest);
    names_ = file_.Variable("station_name", NC_CHAR, {station, letters});
    file_.Text(names_, "long_name", "sounding");
    for (const Column& column : section_.Columns) {
      std::string name(Trim(column.Sounding.StationTitle));
      name.resize(longest, ' ');
      namesText_ += name;
    }
    const auto known = [](double (*value)(const Column&)) {
      return [value](const Column& column) {
        return column.HasPosition() ? value(column) : static_cast<double>(NC_FILL_FLOAT);
      };
    };
    Place(Numbers("station_lat", {station}, OfStations(known(LatOf))), true);
    Place(Numbers("station_lon", {station}, OfStations(known(LonOf))), false);
    const int ground = Numbers("station_altitude", {station},
                               OfStations([](const Column& column) { return column.Ground(); }));
    file_.Text(ground, "standard_name", "surface_altitude");
    file_.Text(ground, "units", "m");
    const bool isTime = section_.Kind == SectionKind::Time;
    const int x = Numbers("station_x", {station}, OfStations([&](const Column& column) {
                            return isTime ? HoursOf(section_, column.X) : column.X;
                          }));
    file_.Text(x, "long_name", "place of the sounding along x");
    file_.Text(x, "units", isTime ? HoursSince(section_) : "km");
  }

  void Field(const FieldAnalysis& field) {
    const int variable = file_.Variable(field.Field->Code, NC_FLOAT, {zDimension_, xDimension_});
    file_.Fill(variable);
    const std::string title = TitleOf(*field.Field, context_);
    file_.Text(variable, "long_name", Trim(title.substr(0, title.find('('))));
    file_.Text(variable, "coordinates", "lat lon");
    const auto standard =
        std::ranges::find(kStandard, std::string_view(field.Field->Code), &StandardRow::Code);
    const std::string unit = UnitOf(*field.Field, context_);
    if (standard != std::end(kStandard)) {
      file_.Text(variable, "standard_name", standard->Name);
      file_.Text(variable, "units", standard->Unit.empty() ? UdUnit(unit) : standard->Unit);
    } else if (field.Field->Kind == FieldKind::Contoured) {
      file_.Text(variable, "units", UdUnit(unit));
    } else {
      Classes(variable, field.Field->Code);
    }
    if (field.Field->Code == "XWND") {
      file_.Text(variable, "comment",
                 "across the direction of " + Mask(context_.Bearing, "000") +
                     " degrees, from left to right positive");
    }
    std::vector<float> values = field.Grid.Values();
    for (float& value : values) {
      if (std::isnan(value)) value = NC_FILL_FLOAT;
    }
    grids_.emplace_back(variable, std::move(values));
  }

  void Classes(int variable, std::string_view code) {
    if (code == "CLDS") return file_.Flags(variable, {0, 1, 2, 3}, "none SCT BKN OVC");
    if (code == "TRAIL") return file_.Flags(variable, {0, 1}, "none CP");
    if (code == "DUCT") return file_.Flags(variable, {0, 1}, "none DL");
    file_.Flags(variable, {0, 1, 2, 3, 4, 5, 6, 7, 8}, "none TRC LGT L-M MDT M-S SVR S-X XTR");
  }

  const Section& section_;
  std::span<const FieldAnalysis> fields_;
  crosssection::FieldContext context_;
  crosssection::VerticalAxis axis_;
  int columns_;
  int rows_;
  NetcdfFile file_{"section"};
  int xDimension_ = -1;
  int zDimension_ = -1;
  int names_ = -1;
  std::string namesText_{};
  std::vector<std::pair<int, std::vector<double>>> numbers_{};
  std::vector<std::pair<int, std::vector<float>>> grids_{};
};

}  // namespace

Outcome<std::string> SectionNetcdf(const crosssection::Section& section,
                                   const crosssection::SectionOptions& options,
                                   std::span<const FieldAnalysis> fields) {
  if (fields.empty() || section.Columns.size() < 2) {
    return Fault{kFaultNonStandard, "SectionNetcdf", "there is no field to write"};
  }
  return SectionFile(section, options, fields).Make();
}

#else

Outcome<std::string> SectionNetcdf(const crosssection::Section&,
                                   const crosssection::SectionOptions&,
                                   std::span<const crosssection::FieldAnalysis>) {
  return WithoutNetcdf();
}

#endif

}  // namespace vexa::report
