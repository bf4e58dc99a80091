#include "crosssection/section_grid.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/standard_atmosphere.h"
#include "core/markers.h"
#include "core/numbers.h"

namespace vexa::crosssection {
namespace {

constexpr double kLeastFilled = 0.25;  // of the nodes
constexpr double kOftenDry = 300;      // hPa; dew points above are missing as a rule
constexpr double kScaleFoot = 500;     // m, to which the foot of a height scale is rounded down

struct PlacedColumn {
  const Column* Of = nullptr;
  double X = 0;
};

std::vector<PlacedColumn> PlacesOf(const Section& section) {
  std::vector<PlacedColumn> places;
  for (const Column& column : section.Columns) {
    if (places.empty() || column.X > places.back().X) places.push_back({&column, column.X});
  }
  return places;
}

double RowCoordinate(const VerticalAxis& axis, int row, int rows) {
  return axis.Bottom + (axis.Top - axis.Bottom) * (row - 1) / (rows - 1);
}

double ColumnX(const Section& section, int column, int columns) {
  return section.Columns.front().X + section.RangeX() * (column - 1) / (columns - 1);
}

GridX ContouredGrid(const Section& section, const FieldRow& field, const FieldContext& context,
                    const VerticalAxis& axis, const GridSize& size) {
  GridX grid(size.Columns, size.Rows);
  const std::vector<PlacedColumn> places = PlacesOf(section);
  std::vector<std::vector<float>> values;
  for (const PlacedColumn& place : places) {
    values.push_back(
        RowValues(field.Profile(*place.Of, context), place.Of->Ground(), axis, size.Rows));
  }
  std::size_t left = 0;
  for (int column = 1; column <= size.Columns; ++column) {
    const double x = ColumnX(section, column, size.Columns);
    while (left + 2 < places.size() && x >= places[left + 1].X) ++left;
    const double share =
        std::clamp((x - places[left].X) / (places[left + 1].X - places[left].X), 0.0, 1.0);
    for (int row = 1; row <= size.Rows; ++row) {
      const auto at = static_cast<std::size_t>(row - 1);
      const double from = values[left][at];
      const double to = values[left + 1][at];
      // At a column the other one has no say, whether it has a value or not.
      const double mixed = share == 0 ? from : share == 1 ? to : from + (to - from) * share;
      grid(column, row) = static_cast<float>(mixed);
    }
  }
  return grid;
}

GridX ClassGrid(const Section& section, const FieldRow& field, const VerticalAxis& axis,
                const GridSize& size) {
  GridX grid(size.Columns, size.Rows);
  const std::vector<PlacedColumn> places = PlacesOf(section);
  std::vector<std::vector<ClassLayer>> layers;
  for (const PlacedColumn& place : places) layers.push_back(field.Layers(*place.Of));
  std::size_t near = 0;
  for (int column = 1; column <= size.Columns; ++column) {
    const double x = ColumnX(section, column, size.Columns);
    while (near + 1 < places.size() && places[near + 1].X - x < x - places[near].X) ++near;
    const Column& of = *places[near].Of;
    if (of.Levels.Count() == 0) continue;
    const double low = axis.Of(of.Levels.Press(1), of.Levels.Height(1), of.Ground());
    const double high = axis.Of(of.Levels.Press.Top(), of.Levels.Height.Top(), of.Ground());
    for (int row = 1; row <= size.Rows; ++row) {
      const double at = RowCoordinate(axis, row, size.Rows);
      if (at < low || at > high) continue;
      int found = 0;
      for (const ClassLayer& layer : layers[near]) {
        if (at >= axis.Of(layer.Base, of.Ground()) && at <= axis.Of(layer.Top, of.Ground())) {
          found = std::max(found, layer.Class);
        }
      }
      grid(column, row) = static_cast<float>(found);
    }
  }
  return grid;
}

std::string UpperText(const SectionOptions& options) {
  const double height = analysis::IsaHeight(options.UpperLimit);
  switch (options.Scale) {
    case SectionScale::Pressure:
      return Shortest(options.UpperLimit) + " mb";
    case SectionScale::Kilometers:
      return Mask(height / 1000, "##0.0") + " km";
    case SectionScale::Feet:
      return Mask(height / 304.8, "##0.0") + " ft (x1000)";
  }
  return {};
}

Box Warning(std::vector<std::string> lines) {
  Box box{.Title = "Warning . . .", .Buttons = BoxButtons::OkCancel, .WhenSilent = Answer::Ok};
  for (const std::string& line : lines) box.Text += (box.Text.empty() ? "" : "\n") + line;
  return box;
}

bool HasWinds(const Column& column) {
  for (int i = 1; i <= column.Sounding.NumWindLevels(); ++i) {
    if (column.Sounding.HasWind(i)) return true;
  }
  return false;
}

// Whether the highest of a column's levels lies below the top of the diagram.
bool EndsBelow(const Column& column, const VerticalAxis& axis, double press, double height) {
  constexpr double kSlack = 0.02;  // of the diagram: a level that close counts as its top
  return axis.Share(axis.Of(press, height, column.Ground())) < 1 - kSlack;
}

bool WindsEndBelow(const Column& column, const VerticalAxis& axis) {
  for (int i = column.Sounding.NumWindLevels(); i >= 1; --i) {
    if (!column.Sounding.HasWind(i)) continue;
    const double height = column.Sounding.WindHgt(i);
    const double press = analysis::GetPRESS(column.Levels, height);
    return HasHeight(press) && EndsBelow(column, axis, press, height);
  }
  return false;
}

bool LacksDewpoints(const Column& column, const SectionOptions& options) {
  const double from = std::max(kOftenDry, options.UpperLimit);
  for (int i = 1; i <= column.Levels.Count(); ++i) {
    if (column.Levels.Press(i) >= from && NotAvailable(column.Levels.Dewpt(i))) return true;
  }
  return false;
}

}  // namespace

double VerticalAxis::Of(double press, double height, double ground) const {
  if (Scale == SectionScale::Pressure) return -std::log(std::max(press, 1e-3));
  return Heights == HeightMode::Agl ? height - ground : height;
}

VerticalAxis AxisOf(const Section& section, const SectionOptions& options) {
  VerticalAxis axis{.Scale = options.Scale, .Heights = options.Heights};
  if (options.Scale == SectionScale::Pressure) {
    axis.Bottom = -std::log(kBottomPress);
    axis.Top = -std::log(options.UpperLimit);
    return axis;
  }
  if (options.Heights == HeightMode::Msl && !section.Columns.empty()) {
    const auto lowest = std::ranges::min_element(section.Columns, {}, &Column::Ground);
    axis.Bottom = std::floor(lowest->Ground() / kScaleFoot) * kScaleFoot;
  }
  axis.Top = std::max(axis.Bottom + kScaleFoot, analysis::IsaHeight(options.UpperLimit));
  return axis;
}

std::vector<float> RowValues(const ProfileOf& profile, double ground, const VerticalAxis& axis,
                             int rows) {
  std::vector<float> values(static_cast<std::size_t>(rows), kNoValue);
  if (profile.empty()) return values;
  const auto at = [&](std::size_t i) {
    return axis.Of(profile[i].Press, profile[i].Height, ground);
  };
  std::size_t upper = 0;
  for (int row = 1; row <= rows; ++row) {
    const double wanted = RowCoordinate(axis, row, rows);
    while (upper < profile.size() && at(upper) < wanted) ++upper;
    if (upper == profile.size()) break;
    float& value = values[static_cast<std::size_t>(row - 1)];
    const ProfilePoint& above = profile[upper];
    if (at(upper) == wanted) {
      if (!IsMissing(above.Value)) value = static_cast<float>(above.Value);
      continue;
    }
    if (upper == 0) continue;
    const ProfilePoint& below = profile[upper - 1];
    if (IsMissing(below.Value) || IsMissing(above.Value)) continue;
    const double share = (wanted - at(upper - 1)) / (at(upper) - at(upper - 1));
    value = static_cast<float>(below.Value + (above.Value - below.Value) * share);
  }
  return values;
}

GridX GridOf(const Section& section, const FieldRow& field, const SectionOptions& options,
             const VerticalAxis& axis) {
  const GridSize size = SizeOf(options.Resolution);
  return field.Kind == FieldKind::Category
             ? ClassGrid(section, field, axis, size)
             : ContouredGrid(section, field, ContextOf(section, options), axis, size);
}

GridX CarriedUnderGround(const Section& section, const FieldRow& field,
                         const SectionOptions& options, const VerticalAxis& axis, GridX grid) {
  const std::vector<PlacedColumn> places = PlacesOf(section);
  if (places.size() < 2 || grid.Rows() < 3) return grid;
  const FieldContext context = ContextOf(section, options);
  const double step = (axis.Top - axis.Bottom) / (grid.Rows() - 1);
  std::vector<double> grounds;
  std::vector<std::vector<float>> values;
  for (const PlacedColumn& place : places) {
    const analysis::LevelProfile& levels = place.Of->Levels;
    const double ground = place.Of->Ground();
    const double press = levels.Count() > 0 ? levels.Press(1) : analysis::IsaPressure(ground);
    grounds.push_back(axis.Of(press, ground, ground));
    values.push_back(RowValues(field.Profile(*place.Of, context), ground, axis, grid.Rows()));
  }
  std::size_t left = 0;
  for (int column = 1; column <= grid.Columns(); ++column) {
    const double x = ColumnX(section, column, grid.Columns());
    while (left + 2 < places.size() && x >= places[left + 1].X) ++left;
    const double share = (x - places[left].X) / (places[left + 1].X - places[left].X);
    const double ground = grounds[left] + (grounds[left + 1] - grounds[left]) * share;
    const double higher = std::max(grounds[left], grounds[left + 1]);
    int lowest = 1;
    while (lowest <= grid.Rows() && !grid.Has(column, lowest)) ++lowest;
    // What is missing above both grounds is no matter of the ground.
    if (lowest >= grid.Rows() || !grid.Has(column, lowest + 1) ||
        RowCoordinate(axis, lowest, grid.Rows()) > higher + 1.5 * step) {
      continue;
    }
    for (int row = lowest - 1; row >= 1; --row) {
      if (RowCoordinate(axis, row, grid.Rows()) < ground - step) break;
      // As the values of the station fall that stands lower, else as they fall right above.
      const auto at = static_cast<std::size_t>(row - 1);
      const std::vector<float>& low = values[std::isnan(values[left][at]) ? left + 1 : left];
      const float below = low[at];
      const float above = low[at + 1];
      grid(column, row) = std::isnan(below) || std::isnan(above)
                              ? 2 * grid(column, row + 1) - grid(column, row + 2)
                              : grid(column, row + 1) + below - above;
    }
  }
  return grid;
}

std::vector<std::string> InsufficientData(const SectionOptions& options) {
  return {"Insufficient data available for this diagram/grid size.",
          "Try one or more of the following ...",
          "-  Reduce the analysis interval (if option exists for this data)",
          "-  Lower the upper " + std::string(Word(options.Scale)) +
              " level as much as possible (Diagram Options, Tab 1)",
          "   (Expand the lower layer of interest as much possible.)",
          "-  Increase the grid matrix resolution (Diagram Options, Tab 3)",
          "-  Reduce the number of smoothing passes (Diagram Options, Tab 3)"};
}

Outcome<FieldAnalysis> AnalyzeField(const Section& section, const FieldRow& field,
                                    const SectionOptions& options,
                                    const IntervalSettings& intervals) {
  if (!(section.RangeX() > 0)) {
    return Fault{kFaultNonStandard, "AnalyzeField", std::string(kNoRange)};
  }
  FieldAnalysis analysis{.Field = &field, .Axis = AxisOf(section, options)};
  analysis.Grid = GridOf(section, field, options, analysis.Axis);
  if (field.Kind == FieldKind::Category) {
    if (analysis.Grid.Filled() < kLeastFilled) {
      analysis.Refusal = InsufficientData(options);
    } else if (!(analysis.Grid.Range().Most > 0)) {
      analysis.Refusal = {std::string(kNothingPlotted)};
    }
    return analysis;
  }
  analysis.Grid = Smoothed(std::move(analysis.Grid), options.SmoothingPasses);
  analysis.Drawn = options.Terrain
                       ? CarriedUnderGround(section, field, options, analysis.Axis, analysis.Grid)
                       : analysis.Grid;
  const FieldContext context = ContextOf(section, options);
  const ContourLevels levels = LevelsFor(analysis.Grid.Range(), intervals.Of(field, context));
  analysis.Interval = levels.Interval;
  if (analysis.Grid.Filled() < kLeastFilled) {
    analysis.Refusal = InsufficientData(options);
    return analysis;
  }
  if (levels.Levels.empty()) {
    analysis.Refusal = {std::string(kNothingPlotted)};
    return analysis;
  }
  for (const double level : levels.Levels) {
    analysis.Contours.push_back(TraceContour(analysis.Drawn, level, levels.Interval));
    if (!options.SubIsolines) continue;
    analysis.Between.push_back(
        TraceContour(analysis.Drawn, level + levels.Interval / 2, levels.Interval));
  }
  if (field.Code == "TMP") {
    analysis.Freezing = TraceContour(analysis.Drawn, FreezingIn(options.Temp), levels.Interval);
  }
  if (options.MarkExtrema) analysis.Extrema = FindExtrema(analysis.Grid, levels.Interval);
  return analysis;
}

Box CreationError(std::string_view reason) {
  return {.Title = "Creation error ...",
          .Text = "VEXA encountered an unexpected error.\n" + std::string(reason)};
}

std::vector<Box> ChecksFor(const Section& section, const FieldRow& field,
                           const SectionOptions& options) {
  std::vector<Box> boxes;
  const VerticalAxis axis = AxisOf(section, options);
  const std::vector<Column>& columns = section.Columns;
  const auto any = [&](auto asks) { return std::ranges::any_of(columns, asks); };
  if (field.Needs == FieldNeeds::Winds) {
    if (any([](const Column& column) { return !HasWinds(column); })) {
      boxes.push_back(
          Warning({"One or more soundings have no wind data.", "Results will not be reliable."}));
    } else if (any([&](const Column& column) { return WindsEndBelow(column, axis); })) {
      boxes.push_back(Warning({"Not all soundings have upper-level wind data.",
                               "Results will be limited in those regions.",
                               "Adjust the diagram (F8) to avoid this restriction."}));
    }
    return boxes;
  }
  if (any([](const Column& column) { return column.Levels.Count() == 0; })) {
    boxes.push_back(Warning({"One or more soundings have no temperature data.",
                             "Results will not be reliable in those regions."}));
  } else if (any([&](const Column& column) {
               return EndsBelow(column, axis, column.Levels.Press.Top(),
                                column.Levels.Height.Top());
             })) {
    boxes.push_back(
        Warning({"Not all soundings have temperature data to " + UpperText(options) + ".",
                 "Results will be limited in those regions.",
                 "Adjust the diagram (F8) to avoid this restriction."}));
  }
  if (field.Needs == FieldNeeds::Dewpoints &&
      any([&](const Column& column) { return LacksDewpoints(column, options); })) {
    boxes.push_back(Warning({"One or more data levels have missing dewpoints.",
                             "Results will not be reliable in those regions."}));
  }
  return boxes;
}

}  // namespace vexa::crosssection
