// Dragging a point of the temperature or dew-point trace, or a wind, on the diagram. The sounding
// follows the pointer; letting go makes the whole movement one edit that can be undone, taking back
// leaves no trace of it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "program/program.h"

namespace vexa {

enum class Dragged { Temp, Dewpt, Wind };

struct Grip {
  Dragged What = Dragged::Temp;
  int Level = 0;  // temperature or wind level from 1
  bool operator==(const Grip&) const = default;
};

/// What can be taken hold of within a distance, drawing units, of a place on the page. Where
/// temperature and dew point coincide it is the temperature.
std::optional<Grip> CursorTTorTD(const Program& program, Point at, double within);

class LevelDrag {
 public:
  /// from  where on the page the button went down
  LevelDrag(const Program& program, Grip grip, Point from);

  /// Brings the level where the pointer is. Temperature and dew point keep their pressure; a dew
  /// point never exceeds its temperature: it stops there, or is taken along. A wind's arrow
  /// moves with the pointer, a knot for each kUnitsPerKnot.
  Changes Move(Program& program, Point to);
  /// Brings the level's wind to one of its own, in whole degrees and knots.
  Changes SetWind(Program& program, const analysis::WindVector& wind);
  /// The sounding as it was before.
  Changes TakeBack(Program& program);
  /// Remembers the edit, "drag temperature of level 17".
  void Finish(Program& program);

  /// What the level is now, for the status line.
  std::string Text(const Program& program) const;

  static constexpr double kUnitsPerKnot = 12;

 private:
  Grip grip_;
  Point from_;
  SoundingRecord before_;
};

}  // namespace vexa
