// One wind as a symbol: a barb with feathers and pennants, a flag, or the circle of a calm. Sizes
// in drawing units by the size word.
#pragma once

#include "analysis/interpolate.h"
#include "config/view_settings.h"
#include "core/sounding_record.h"
#include "picture/picture.h"

namespace vexa::diagram {

/// The four whole-number sizes of a size word. The rows are not proportional to one another.
struct WindSymbolSize {
  int Feather = 0;  // length of a full feather
  int Dot = 0;      // radius of the dot at the foot
  int Shaft = 0;    // length of the shaft
  int Spacing = 0;  // between feathers along the shaft, and the width of a pennant
};
WindSymbolSize SizeOf(WindSize size);

/// Feathers lean outwards by this many degrees from the shaft's far end.
inline constexpr double kFeatherAngle = 65;

/// A wind's speed in whole units of the setting: knots, or metres per second to a tenth by the
/// factor of the wind symbols.
double ShownSpeed(double knots, SpeedUnits units);

/// How many symbols of each kind stand for a speed: pennants of 50, feathers of 10 and half
/// feathers of 5 kt (25, 5 and 2.5 m/s), to the nearest half feather.
struct FeatherCount {
  int Pennants = 0;
  int Feathers = 0;
  int Halves = 0;
};
FeatherCount CountFeathers(double knots, SpeedUnits units);

/// The options with a sounding's own hemisphere where it goes by latitude.
ViewSettings SymbolOptions(const ViewSettings& options, const SoundingRecord& sounding);

/// True where feathers stand to the right of the shaft seen from its foot: as in the northern
/// hemisphere, or as the feathers option says.
bool FeathersOnRight(const ViewSettings& options);

/// How far a symbol reaches from its foot to each side.
Rect SymbolExtent(const analysis::Wind& wind, const ViewSettings& options);

/// Draws the symbol with its foot at a point.
void DrawWindSymbol(Picture& page, Point foot, const analysis::Wind& wind,
                    const ViewSettings& options, const Pen& pen);

}  // namespace vexa::diagram
