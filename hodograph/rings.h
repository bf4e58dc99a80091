// The rings of equal speed: their step, their labels, and the axes through their centre.
#pragma once

#include <vector>

#include "core/choices.h"
#include "hodograph/inks.h"
#include "hodograph/mapping.h"
#include "picture/label_room.h"
#include "picture/surface.h"

namespace vexa::hodograph {

/// Labels of rings are measured in these: 25 for one digit, 45 for two, 65 for three, so that a
/// digit of the label's size is about 20 wide.
inline constexpr double kRingText = LetterSize(Type::Note);
inline constexpr double kDisplayUnit = 0.032 * kRingText;  // drawing units

/// A whole step in the display unit that gives about five rings up to a speed.
double RingStep(double speed);

/// How far to the left of its ring a label begins, display units.
double RingLabelShift(double value);

struct Rings {
  double Step = 10;  // display unit
  double Outer = 0;  // display unit; 0: as far as the frame reaches
  SpeedUnits Units = SpeedUnits::Knots;
  bool LabelOnce = false;  // one ring alone, with its unit: "20 kts"
};

/// Draws axes and rings; the labels stand on the half axis that has room and is least crossed by
/// the trace.
///
/// trace  places along it, page positions
void DrawRings(Picture& page, const HodographMapping& at, const Rings& rings, const Inks& inks,
               const std::vector<Point>& trace, LabelRoom& room);

/// A speed in the display unit in knots; ShownIn is the way there.
double KnotsOf(double shown, SpeedUnits units);

}  // namespace vexa::hodograph
