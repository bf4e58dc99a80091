// A page of labelled values in blocks, as the weather displays show them: described as data, drawn
// as a picture.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/options.h"
#include "picture/picture.h"

namespace vexa::display {

/// How much a value wants to be seen: the steps of the severe-weather table.
enum class Stress { None, First, Second, Third };

/// Yellow, orange, red; transparent for none.
Color StressColor(Stress stress);

struct SheetRow {
  std::string Label{};
  std::string Value{};
  std::string Note{};  // beside the value: a height, a reason
  Stress Step = Stress::None;
  std::string Index{};  // trimmed panel label whose explanation the pointer asks for
};

struct SheetBlock {
  std::string Heading{};
  std::vector<SheetRow> Rows{};
};

struct Sheet {
  std::string Title{};
  std::string Subtitle{};
  std::vector<SheetBlock> Blocks{};
};

/// The sheet on a page of its own, its blocks in as many columns as keep the page near the shape of
/// a screen; paper by the screen colour. Steps carry a sign of their own beside their colour.
Picture DrawSheet(const Sheet& sheet, const Options& options);

/// Height of the values' letters on that page, drawing units.
inline constexpr double kSheetText = 130;

/// Kind of the hot spots of rows that stand for an index.
inline constexpr std::string_view kIndexSpot = "index";

}  // namespace vexa::display
