// The fields of a section, a row each: what it is called, what it needs, its usual interval and how
// a column's values come about. A field is added by a function and a row.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "crosssection/column.h"
#include "crosssection/section_options.h"

namespace vexa::crosssection {

/// Contoured fields have values, category fields classes by layers.
enum class FieldKind { Contoured, Category };
enum class FieldNeeds { Temperatures, Dewpoints, Winds };
/// How a field is coloured: from little to much, or both ways from 0.
enum class FieldColors { Rising, Signed };
/// What the unit in the title and of the interval depends on.
enum class FieldUnit { Fixed, Temperature, Difference, Speed, Water };

/// What values and titles depend on beside the column.
struct FieldContext {
  TempUnits Temp = TempUnits::Celsius;
  SpeedUnits Speed = SpeedUnits::Knots;
  SizeUnits Water = SizeUnits::Centimeters;
  double Bearing = 360;  // of the section, degrees
};
FieldContext ContextOf(const Section& section, const SectionOptions& options);

/// A layer of one class in a column.
struct ClassLayer {
  analysis::LevelPoint Base{};
  analysis::LevelPoint Top{};
  int Class = 0;            // from 1
  std::string_view Word{};  // as it is written in its box, " MDT "
};

struct FieldRow {
  std::string_view Code;    // "TMP"
  std::string_view Button;  // "Temp"
  std::string_view Short;   // of narrow buttons; the same where there is no other
  std::string_view Title;   // over the diagram, up to the unit
  FieldKind Kind = FieldKind::Contoured;
  FieldNeeds Needs = FieldNeeds::Temperatures;
  FieldUnit Unit = FieldUnit::Fixed;
  std::string_view UnitText{};  // of a fixed unit; empty: the title is whole
  double Interval = 0;          // in the first unit: C, kt, cm
  std::string_view Mask = "####0";
  FieldColors Colors = FieldColors::Rising;
  bool IsMoisture = false;                                             // dotted on request
  ProfileOf (*Profile)(const Column&, const FieldContext&) = nullptr;  // in the unit of the context
  std::vector<ClassLayer> (*Layers)(const Column&) = nullptr;
};

std::span<const FieldRow> Fields();
/// The field of a code in any letters' case; null when there is none.
const FieldRow* FindField(std::string_view code);

/// "Temperature (C) ", "Cross-Wind (knots) {wrt 267}  ".
std::string TitleOf(const FieldRow& field, const FieldContext& context);
std::string UnitOf(const FieldRow& field, const FieldContext& context);
/// The field's usual interval in the unit of the context.
double UsualInterval(const FieldRow& field, const FieldContext& context);
/// 0 C in the unit of the context, for fields of temperature.
double FreezingIn(TempUnits units);

}  // namespace vexa::crosssection
