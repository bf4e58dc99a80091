// How the diagram is looked at: enlarged or whole, alone or with other soundings, with which lines
// over it, and where the cursor stands. Kept for a session that is cut off, and no longer.
#pragma once

#include <optional>

#include "diagram/sounding_plot.h"
#include "sounding/analysed_sounding.h"

namespace vexa {

/// Where the cursor stands on the page; that it is locked on a level belongs to the sounding.
struct PageCursor {
  std::optional<Point> At{};       // a free cursor; beside the frame while zoomed away
  std::optional<Rect> Choosing{};  // region being chosen
};

struct ViewState {
  diagram::MultiMode Mode = diagram::MultiMode::Single;  // Single, Overlay or Compare
  std::optional<Rect> Zoom{};             // part of the frame that fills it, in shares of it
  Surface On = ImageSurface(1600, 1200);  // what the window gives the diagram
  const LayoutRow* Layout = nullptr;      // of the diagram's page; null: the first of the table
  diagram::ExtraLines Lines{};
  SharedSounding Reference{};  // once it has been read
  bool ShowsReference = false;
  PageCursor Cursor{};

  bool Looping = false;
  std::optional<diagram::DiagramMapping> LoopScale{};  // axes that a loop keeps
};

}  // namespace vexa
