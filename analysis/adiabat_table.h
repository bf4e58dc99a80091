// Saturated adiabats at every whole hPa, solved once and blended ever after: the ascent of a
// parcel becomes four columns of numbers and their weights. Columns are filled when a parcel first
// asks for them, so a table costs nothing at the start.
#pragma once

#include <array>
#include <memory>
#include <optional>
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

/// A piece of a saturated adiabat between two whole pressures.
struct AdiabatPiece {
  double Bottom = 0;  // °C, at the higher pressure
  double Second = 0;  // °C, one hPa above it
  double Top = 0;     // °C
  double Area = 0;    // K; sum of trapezoids of temperature over -ln p, from the second to the top
};

class AdiabatTable {
 private:
  struct Column {
    std::vector<double> Temps{};         // °C at kGridBottom … 1 hPa
    std::vector<double> VirtualTemps{};  // °C
    std::vector<double> Areas{};         // K; trapezoids of Temps over -ln p from kGridBottom up
    std::vector<double> VirtualAreas{};  // K
  };

  // Four columns and the weights of the cubic through them.
  struct Weighted {
    std::array<const Column*, 4> Columns{};
    std::array<double, 4> Weights{};

    double At(std::vector<double> Column::*array, std::size_t i) const {
      return Weights[0] * (Columns[0]->*array)[i] + Weights[1] * (Columns[1]->*array)[i] +
             Weights[2] * (Columns[2]->*array)[i] + Weights[3] * (Columns[3]->*array)[i];
    }
    std::size_t FirstFrozen(std::size_t from, std::size_t to) const;
    void Sum(std::vector<double> Column::*array, std::size_t first, std::size_t count,
             double* out) const;
  };

 public:
  /// What SolveAdiabat gives, blended from four neighbouring columns: within 0.0005 K of it.
  /// Equivalent potential temperatures beyond the ladder are solved instead.
  void Blend(double thetaE, SaturationOver over, int bottom, int top, double* temps,
             double* virtualTemps);

  /// One adiabat that is read by whoever walks up it: at each pressure the sum of four columns by
  /// their weights, which gives what Blend gives. Refers to the table.
  class Adiabat {
   public:
    struct Columns {
      std::array<const double*, 4> Temps{};  // °C, from the pressure that was asked for upward
      std::array<double, 4> Weights{};
      int Top = 1;  // hPa, up to which they hold
    };
    Columns From(int press) const;

   private:
    friend class AdiabatTable;
    Columns water_{};
    Columns ice_{};
    int frozen_ = 0;  // hPa, from which upward those of ice hold
    std::shared_ptr<const std::vector<double>> solved_{};  // beyond the ladder
  };

  /// isVirtual   virtual temperatures of the saturated air instead of its temperatures
  Adiabat Along(double thetaE, SaturationOver over, bool isVirtual);

  /// Pieces of adiabats that begin at one pressure. Refers to the table.
  class Pieces {
   public:
    /// bottom      hPa, at most kGridBottom
    /// isVirtual   virtual temperatures of the saturated air instead of its temperatures
    Pieces(AdiabatTable& table, SaturationOver over, int bottom, bool isVirtual)
        : table_(table), over_(over), bottom_(bottom), isVirtual_(isVirtual) {}

    /// The piece of the adiabat that Blend gives, without walking along it: its area is a
    /// difference of sums that each column keeps. Takes as long for one hPa as for a thousand.
    /// Empty for an equivalent potential temperature beyond the ladder.
    ///
    /// top   hPa, bottom > top >= 1
    std::optional<AdiabatPiece> Up(double thetaE, int top);

   private:
    void Take(int rung);
    AdiabatPiece ThroughIce(double thetaE, int top) const;

    AdiabatTable& table_;
    SaturationOver over_;
    int bottom_;
    bool isVirtual_;
    // The columns about the latest adiabat, with what they have where all pieces begin: the next
    // one's are often the same.
    int rung_ = -1;
    std::array<const double*, 4> temps_{}, areas_{};
    std::array<double, 4> bottoms_{}, seconds_{}, starts_{};
  };

 private:
  static constexpr double kFirstRung = 200;  // K
  static constexpr double kRungHeight = 2;   // K
  static constexpr int kRungs = 151;         // up to 500 K

  const Column& At(VaporFormula formula, int rung);
  void Fill(VaporFormula formula, int rung);
  Weighted Neighbours(VaporFormula formula, double thetaE);
  static bool IsOnLadder(double thetaE);

  struct Rung {
    int Number = 0;
    double Share = 0;  // 0 … 1, of the way to the next
  };
  static Rung RungBelow(double thetaE);

  // One set for each formula, each smooth through 0 °C: a blend across the kink between water and
  // ice would be off by tenths of a degree.
  std::array<std::vector<Column>, 2> columns_{};
  // The rung whose neighbours were last asked for: the next parcel's are often the same.
  std::array<int, 2> latest_ = {-1, -1};
};

}  // namespace vexa::analysis
