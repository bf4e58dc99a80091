#include "program/readout.h"

#include <string_view>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "analysis/shown_units.h"
#include "core/numbers.h"
#include "core/shown_values.h"
#include "core/units.h"
#include "diagram/panel.h"

namespace vexa {
namespace {

constexpr std::string_view kCursorMask = "#0.0";

std::string PotentialText(const diagram::DiagramCoordinates& at, const Options& set) {
  const double theta = analysis::ThetaPoint(at.Press, at.Temp, set.Saturation).Theta;
  return set.PtUnits == PotentialTempUnits::Kelvin
             ? Mask(theta, kCursorMask) + " K"
             : Mask(theta - kKelvinOffset, kCursorMask) + " C";
}

}  // namespace

std::string HotInfo(const Program& program, std::string_view label) {
  const analysis::IndexRow* row = analysis::FindIndex(label);
  if (row == nullptr) return {};
  return analysis::Explain(*row, program.Current.Record, program.Results, program.Set) +
         program.Usual.Hint(*row, program.Results,
                            analysis::UnitsOf(program.Set, program.Current.Record.ElevM));
}

std::string CursorGridData(const Options& set, const diagram::DiagramCoordinates& at) {
  return Mask(at.Press, "###0") + " " + std::string(analysis::PressureWord(set.Pressure)) + "   " +
         analysis::TempText(at.Temp, set.TempGridUnits) + "   PT " + PotentialText(at, set);
}

std::string TempsText(double temp, double dewpt, TempUnits units) {
  return "Temp:" + analysis::TempText(temp, units) + "  Td:" + analysis::TempText(dewpt, units);
}

std::string WindText(const analysis::Wind& wind, SpeedUnits units) {
  const std::string from = analysis::ThreeDigits(wind.Dir) + "/";
  return units == SpeedUnits::Knots ? from + Mask(wind.Spd, "##0") + " kts"
                                    : from + Mask(ShownIn(wind.Spd, units), "##0.0") + " m/s";
}

std::string CursorDataVexa(const Program& program, double press) {
  const analysis::LevelProfile& levels = program.Results.Levels;
  return TempsText(analysis::GetTEMP(levels, press, analysis::Quantity::Temp),
                   analysis::GetTEMP(levels, press, analysis::Quantity::Dewpt),
                   program.Set.TempGridUnits);
}

Readout ReadDiagram(const Program& program, Point at) {
  Readout readout;
  if (!program.Plot) return readout;
  for (const HotSpot& spot : program.Plot->Page.HotSpots()) {
    if (!spot.Where.Contains(at)) continue;
    readout.Spot = spot.Text;
    if (spot.Tag != diagram::kIndexSpot) continue;
    readout.Tip = HotInfo(program, spot.Text);
    readout.Spot = readout.Tip.substr(0, readout.Tip.find('\n'));
  }
  if (!program.Plot->Mapping.Frame().Contains(at)) return readout;
  const diagram::DiagramCoordinates under = program.Plot->Mapping.ToCoordinates(at);
  if (program.Set.CursorGrid && program.Set.System.CursorGrid) {
    readout.Grid = CursorGridData(program.Set, under);
  }
  const bool readsData = program.Set.CursorSounding && program.Set.System.CursorData;
  if (readsData && program.Results.Levels.Count() > 0) {
    readout.Sounding = CursorDataVexa(program, under.Press);
  }
  return readout;
}

}  // namespace vexa
