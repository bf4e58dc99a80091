// The layouts of the diagram's page to choose from: which regions each has and what it asks of the
// diagram. The menu and the command line walk this table.
#pragma once

#include <span>
#include <string_view>

#include "picture/layout.h"

namespace vexa {

/// What a layout asks of the diagram where the options leave it open.
struct LayoutDefaults {
  double Depth = 0;           // m above the ground that the diagram shows; 0 shows all
  bool HeightsFirst = false;  // the axis at the left tells heights before pressures
  bool WindNumbers = false;   // "240/12" beside the winds
  bool FullLegend = false;    // every line of the picture has an entry
};

struct LayoutRow {
  std::string_view Name;     // as the command line and the settings file have it
  std::string_view Caption;  // as the menu has it
  std::string_view Hint;
  std::span<const RegionRow> Regions;
  LayoutDefaults Defaults{};
};

std::span<const LayoutRow> PageLayouts();

/// The layout of this name; null when there is none.
const LayoutRow* FindLayout(std::string_view name);

}  // namespace vexa
