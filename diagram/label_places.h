// Places for texts on the diagram: what stands on the page already says where there is room, so
// that every label asks the same way and none has to know of the others.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "diagram/plot_state.h"
#include "picture/label_room.h"

namespace vexa::diagram {

/// The rectangle that a text covers, near enough for keeping texts apart.
Rect TextPlace(Point at, std::string_view text, double size, AnchorX across);

/// The frame of the diagram with the texts that stand in it, and with the traces and lines that
/// texts keep off where they can.
LabelRoom RoomOn(const Plot& plot);

/// A line across the frame, interrupted where texts stand in it.
void DrawBesideTexts(Plot& plot, std::string_view tag, const std::vector<Point>& line,
                     const Pen& pen);

/// Where traces and levels already drawn run through a place: rectangles around their pieces in it.
std::vector<Rect> LinesWithin(const Plot& plot, const Rect& place);

/// The nearest place to the wanted one with room for a text, off the lines where there is such a
/// place; the text may move a little up or down, and across only away from its anchor's side. The
/// place is taken. Empty where everything is full.
std::optional<Point> TakePlace(LabelRoom& room, Point wanted, std::string_view text, double size,
                               AnchorX across);

/// The straight line from what a text belongs to up to a gap before the text.
struct LeaderOf {
  Point From{};
  double Gap = 0;
};

/// The same off the lines alone and near the wanted place; with a leader from the right edge, where
/// that crosses no other text and no trace.
std::optional<Point> TakePlaceNear(LabelRoom& room, Point wanted, std::string_view text,
                                   double size, AnchorX across,
                                   std::optional<LeaderOf> leader = std::nullopt);

}  // namespace vexa::diagram
