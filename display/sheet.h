// A page of labelled values in blocks, as the weather displays show them: composed for the surface
// that it goes to.
#pragma once

#include <string>
#include <vector>

#include "config/view_settings.h"
#include "display/block.h"
#include "picture/picture.h"
#include "picture/surface.h"

namespace vexa::display {

struct Sheet {
  std::string Title{};
  std::string Subtitle{};
  std::vector<SheetBlock> Blocks{};
};

/// The sheet on a page of the surface's size, its blocks in as many columns as it needs and in
/// letters as large as there is room for. On a screen a page that cannot hold all its rows is
/// higher than the surface and is scrolled; elsewhere the last rows leave and a line says so.
Picture DrawSheet(const Sheet& sheet, const ViewSettings& options, const Surface& surface);

}  // namespace vexa::display
