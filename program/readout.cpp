#include "program/readout.h"

#include <string_view>

#include "analysis/index_table.h"
#include "analysis/interpolate.h"
#include "analysis/moist_air.h"
#include "core/numbers.h"
#include "core/units.h"
#include "diagram/panel.h"

namespace vexa {
namespace {

constexpr std::string_view kCursorMask = "#0.0";
constexpr std::string_view kNoValue = "--";

std::string TempText(double temp, TempUnits units) {
  switch (units) {
    case TempUnits::Fahrenheit:
      return Mask(FahrenheitFromCelsius(temp), kCursorMask);
    case TempUnits::Kelvin:
      return Mask(temp + kKelvinOffset, kCursorMask);
    case TempUnits::Celsius:
      break;
  }
  return Mask(temp, kCursorMask);
}

std::string PotentialText(const diagram::DiagramCoordinates& at, const Options& set) {
  const double theta = analysis::ThetaPoint(at.Press, at.Temp, set.Saturation).Theta;
  return set.PtUnits == PotentialTempUnits::Kelvin
             ? Mask(theta, kCursorMask) + " K"
             : Mask(theta - kKelvinOffset, kCursorMask) + " C";
}

std::string SampleText(const Program& program, double press, analysis::Quantity quantity) {
  const double value = analysis::GetTEMP(program.Results.Levels, press, quantity);
  return NotAvailable(value) ? std::string(kNoValue) : TempText(value, program.Set.TempGridUnits);
}

}  // namespace

std::string HotInfo(const Program& program, std::string_view label) {
  const analysis::IndexRow* row = analysis::FindIndex(label);
  if (row == nullptr) return {};
  return analysis::Explain(*row, program.Current.Record, program.Results, program.Set);
}

std::string CursorGridData(const Options& set, const diagram::DiagramCoordinates& at) {
  return Mask(at.Press, "###0") + " " + std::string(analysis::PressureWord(set.Pressure)) + "   " +
         TempText(at.Temp, set.TempGridUnits) + ' ' + std::string(Word(set.TempGridUnits)) +
         "   PT " + PotentialText(at, set);
}

std::string CursorDataVexa(const Program& program, double press) {
  return "Temp:" + SampleText(program, press, analysis::Quantity::Temp) +
         "  Td:" + SampleText(program, press, analysis::Quantity::Dewpt);
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
