// A block of labelled values as weather displays and side boxes show it: described as data, drawn
// into a region with its numbers aligned on their decimal points. What finds no room leaves, the
// least important first, and the heading says where it is told instead.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "config/view_settings.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::display {

/// How much a value wants to be seen: the steps of the severe-weather table.
enum class Stress { None, First, Second, Third };

/// Yellow, orange, red; transparent for none.
Color StressColor(Stress stress);

struct SheetValue {
  std::string Text{};  // with its unit, unless the whole row has one
  Stress Step = Stress::None;
};

struct SheetRow {
  std::string Label{};
  std::string Value{};
  std::string Note{};  // behind the values: a unit, a height, a reason
  Stress Step = Stress::None;
  std::string Index{};             // trimmed panel label whose explanation the pointer asks for
  std::vector<SheetValue> More{};  // further values, in the columns of the block
  int Rank = 0;                    // the largest leave first
};

struct SheetBlock {
  std::string Heading{};
  std::vector<SheetRow> Rows{};
  std::vector<std::string> Columns{};  // captions over the values
  bool Flows = false;                  // its rows stand side by side where the region is wide
  std::string Elsewhere{};             // where rows that found no room are told: "F4"
};

struct BlockInks {
  Color Paper{};
  Color Ink{};
  Color Faint{};
  Color Rule{};
};

/// By the screen colour, as all displays have it.
BlockInks BlockInksFor(const ViewSettings& options);

/// Width that a block wants so that nothing of it is cut, and how many lines it has, at letters so
/// many times the usual size.
double WidthOf(const SheetBlock& block, double scale = 1);
double LinesOf(const SheetBlock& block);

/// Draws a block from the top left corner of a region; gives the labels of what found no room.
std::vector<std::string> DrawBlock(Picture& page, const Rect& region, const SheetBlock& block,
                                   const BlockInks& inks, double scale = 1);

/// Kind of the hot spots of rows that stand for an index.
inline constexpr std::string_view kIndexSpot = "index";

}  // namespace vexa::display
