// The trace of the winds on a hodograph: its line by bands of height, the marks of whole
// kilometres, and the frame around it.
#pragma once

#include <vector>

#include "hodograph/vectors.h"

namespace vexa::hodograph {

/// Where the trace runs, in steps short enough that no text fits between; texts keep off it.
std::vector<Point> AvoidTrace(Canvas& canvas, const std::vector<ProfileWind>& winds);

/// The winds joined, each band of height in its own pen.
void DrawTrace(Canvas& canvas, const std::vector<ProfileWind>& winds);

/// A dot at every whole kilometre, at every third one further up, with its number where there is
/// room.
void DrawHeightMarks(Canvas& canvas, const std::vector<ProfileWind>& winds);

void DrawFrameLine(Canvas& canvas);

}  // namespace vexa::hodograph
