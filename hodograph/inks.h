// The hodograph's colours and pens by what they draw, on white or on black.
#pragma once

#include <array>

#include "config/view_settings.h"
#include "hodograph/wind_profile.h"
#include "picture/picture.h"
#include "picture/shapes.h"

namespace vexa::hodograph {

struct Inks : PaperAndInk {
  Color Faint{};
  Pen Frame{};
  Pen Ring{};
  Pen OuterRing{};
  Pen Axis{};
  std::array<Pen, kBands> Band{};  // the trace by height above ground
  Pen ChosenStorm{};
  Pen OtherStorm{};
  Pen MeanWind{};
  Pen Shear{};
  Pen Propagation{};
  Pen Helicity{};
  std::array<Pen, 2> Compared{};
  Pen Ground{};  // grid, shadow and drops of the trajectory
  Pen North{};
};

/// Paper by the screen colour; inverted, the other one.
Inks InksFor(const ViewSettings& options, bool inverted);

}  // namespace vexa::hodograph
