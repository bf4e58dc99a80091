// From columns to a grid: a field's values on the rows of the chosen vertical scale, linear between
// a column's levels and between neighbouring columns, and what is asked and said before it is
// drawn.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/interaction.h"
#include "crosssection/fields.h"
#include "crosssection/grid.h"
#include "crosssection/intervals.h"
#include "crosssection/isolines.h"

namespace vexa::crosssection {

/// The vertical scale: a coordinate that rises upward, in which rows are evenly spaced: metres, or
/// the negative logarithm of the pressure.
struct VerticalAxis {
  SectionScale Scale = SectionScale::Pressure;
  HeightMode Heights = HeightMode::Msl;
  double Bottom = 0;
  double Top = 1;

  /// ground  m above the sea, which heights above ground count from
  double Of(double press, double height, double ground) const;
  double Of(const analysis::LevelPoint& at, double ground) const {
    return Of(at.Press, at.Height, ground);
  }
  /// Share of the way from the bottom to the top.
  double Share(double coordinate) const { return (coordinate - Bottom) / (Top - Bottom); }
};

inline constexpr double kBottomPress = 1050;  // hPa, where the pressure scale begins

VerticalAxis AxisOf(const Section& section, const SectionOptions& options);

/// A column's values on so many rows, kNoValue below its ground, above its top and where one of the
/// levels around a row has none.
std::vector<float> RowValues(const ProfileOf& profile, double ground, const VerticalAxis& axis,
                             int rows);

/// A field on the grid, not smoothed; a category field by its classes, 0 for none. Of columns that
/// share a place the first counts.
GridX GridOf(const Section& section, const FieldRow& field, const SectionOptions& options,
             const VerticalAxis& axis);

/// A grid whose lowest values go on to the row next beneath the ground between the stations, which
/// covers it: colours and lines then reach the ground. Values change downward as those of the
/// station that stands lower do.
GridX CarriedUnderGround(const Section& section, const FieldRow& field,
                         const SectionOptions& options, const VerticalAxis& axis, GridX grid);

/// A field ready to be drawn.
struct FieldAnalysis {
  const FieldRow* Field = nullptr;
  VerticalAxis Axis{};
  GridX Grid{};                     // smoothed
  GridX Drawn{};                    // the same, carried on to the row under the ground
  double Interval = 0;              // as drawn
  std::vector<Contour> Contours{};  // of rising levels
  std::vector<Contour> Between{};   // half-way, when asked for
  std::optional<Contour> Freezing{};
  std::vector<Extremum> Extrema{};
  std::vector<std::string> Refusal{};  // lines that stand in place of the field
};

/// Fault 2000 with "DataRange = 0" for a section without extent.
Outcome<FieldAnalysis> AnalyzeField(const Section& section, const FieldRow& field,
                                    const SectionOptions& options,
                                    const IntervalSettings& intervals);

/// "Insufficient data available for this diagram/grid size." with what may be tried.
std::vector<std::string> InsufficientData(const SectionOptions& options);
inline constexpr std::string_view kNothingPlotted = "Data found but not plotted ...";
inline constexpr std::string_view kNoRange = "DataRange = 0";

/// The box that tells of such a fault: "Creation error ...".
Box CreationError(std::string_view reason);

/// What is to be asked before a field is drawn, in order; each can be cancelled.
std::vector<Box> ChecksFor(const Section& section, const FieldRow& field,
                           const SectionOptions& options);

}  // namespace vexa::crosssection
