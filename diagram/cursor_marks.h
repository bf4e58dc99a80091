// What the pointer leaves over a finished diagram: the cursor where it was placed, the level that
// it is locked to, the region that is being chosen. A page of its own with transparent paper, so
// that moving the cursor draws nothing else.
#pragma once

#include <optional>
#include <string>

#include "core/sounding_record.h"
#include "diagram/mapping.h"
#include "picture/picture.h"

namespace vexa::diagram {

struct CursorState {
  std::optional<Point> At{};       // a free cursor, on the page; beside the frame while zoomed away
  std::optional<int> Level{};      // a locked one: temperature level from 1
  std::optional<Rect> Choosing{};  // region being chosen, on the page
  std::string Text{};              // written beside the locked level
};

/// under  the page that they lie over
Picture CursorMarks(const Picture& under, const DiagramMapping& mapping,
                    const SoundingRecord& sounding, const CursorState& cursor, Color ink,
                    Color paper);

/// The temperature level whose isobar is the nearest to a place on the page; empty without levels.
std::optional<int> NearestLevel(const DiagramMapping& mapping, const SoundingRecord& sounding,
                                Point at);

/// Parts of the diagram to enlarge are told in shares of its frame, 0 to 1.
///
/// A part in the proportions of the frame around one that was chosen on the page; inside the frame,
/// and no smaller than a twentieth of it.
Rect ZoomRegion(const DiagramMapping& mapping, const Rect& chosen);

/// The part shown enlarged or reduced by a factor about a place on the page that stays where it
/// is; empty when the whole diagram is shown again.
std::optional<Rect> ZoomAbout(const DiagramMapping& mapping, Point fixed, double factor);

/// The part shown moved by a distance on the page, as far as the frame reaches.
Rect PanBy(const DiagramMapping& mapping, double dx, double dy);

}  // namespace vexa::diagram
