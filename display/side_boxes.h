// The boxes of values beside the diagram, by the names of the regions that its layouts give them:
// parcels, storm motion, indices, layers for the forecaster; clouds, thermals, icing and inversions
// for the pilot.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "display/shown_texts.h"
#include "picture/layout.h"

namespace vexa::display {

struct SideBox {
  std::string_view Name{};  // of its region
  SheetBlock (*Fill)(const Shown& shown) = nullptr;
};

std::span<const SideBox> SideBoxes();

/// All of them for the results of a sounding, which must last until they are drawn; each is filled
/// when it is.
std::vector<PageBox> PageBoxes(const Shown& shown);

}  // namespace vexa::display
