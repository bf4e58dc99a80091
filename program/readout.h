// What the pointer reads off the diagram: the grid values under it, by the mapping that placed the
// picture, and the sounding's own values at its pressure.
#pragma once

#include <string>
#include <string_view>

#include "picture/picture.h"
#include "program/program.h"

namespace vexa {

struct Readout {
  std::string Grid{};      // "700 mb   -3.2 C"
  std::string Sounding{};  // "Temp:-5.1 C  Td:-9.8 C"
  std::string Spot{};      // what stands under the pointer: a wind, an inversion, an index
  std::string Tip{};       // how an index came about, on several lines
};

/// How the index of a trimmed panel label came about, and how usual its value is where a catalogue
/// tells; empty for a label that is none.
std::string HotInfo(const Program& program, std::string_view label);

/// Temperature and dew point as the cursor tells them, in the unit of the diagram's axis:
/// "Temp:-5.1 C  Td:-9.8 C"; "--" for what there is not.
std::string TempsText(double temp, double dewpt, TempUnits units);
/// A wind of so many knots in the unit of the options: "240/25 kts", "240/12.9 m/s".
std::string WindText(const analysis::Wind& wind, SpeedUnits units);

/// The grid's own values at a place: "700 mb   -3.2 C   PT 299.1 K".
std::string CursorGridData(const Options& set, const diagram::DiagramCoordinates& at);

/// The sounding's temperature and dew point at a pressure: "Temp:-5.1 C  Td:-9.8 C".
std::string CursorDataVexa(const Program& program, double press);

/// The readout at a position of the page. Grid and sounding are empty outside the diagram's frame
/// and each when its option is off; values that the sounding lacks read "--". The spot is empty
/// where nothing of its own stands.
Readout ReadDiagram(const Program& program, Point at);

}  // namespace vexa
