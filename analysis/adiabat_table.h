// Saturated adiabats at every whole hPa, solved once and blended ever after: the ascent of a
// parcel becomes four columns of numbers and their weights. Columns are filled when a parcel first
// asks for them, so a table costs nothing at the start.
#pragma once

#include <array>
#include <vector>

#include "analysis/saturated_point.h"

namespace vexa::analysis {

/// Temperature of the saturated adiabat at whole hPa, solved by marching Newton steps; within
/// 1e-5 K of LiftSat wherever that has a solution, and colder than its end of -120 °C where that
/// gives up.
///
/// thetaE        K, positive
/// bottom, top   hPa, kGridBottom >= bottom >= top >= 1
/// temps         °C, entry bottom - p for p
/// virtualTemps  °C of the saturated air, or null
void SolveAdiabat(double thetaE, SaturationOver over, int bottom, int top, double* temps,
                  double* virtualTemps);

class AdiabatTable {
 public:
  /// What SolveAdiabat gives, blended from four neighbouring columns: within 0.0005 K of it.
  /// Equivalent potential temperatures beyond the ladder are solved instead.
  void Blend(double thetaE, SaturationOver over, int bottom, int top, double* temps,
             double* virtualTemps);

 private:
  static constexpr double kFirstRung = 200;  // K
  static constexpr double kRungHeight = 2;   // K
  static constexpr int kRungs = 151;         // up to 500 K

  struct Column {
    std::vector<double> Temps{};         // °C at kGridBottom … 1 hPa
    std::vector<double> VirtualTemps{};  // °C
  };
  struct Weighted;

  const Column& At(VaporFormula formula, int rung);
  Weighted Neighbours(VaporFormula formula, double thetaE);

  // One set for each formula, each smooth through 0 °C: a blend across the kink between water and
  // ice would be off by tenths of a degree.
  std::array<std::vector<Column>, 2> columns_{};
};

}  // namespace vexa::analysis
