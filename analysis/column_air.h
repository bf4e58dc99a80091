// Moist air for loops over columns: formulas of moist_air.h without a branch or a call.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "analysis/column_math.h"
#include "analysis/moist_air.h"
#include "analysis/vapor_table.h"
#include "core/units.h"

namespace vexa::analysis {

/// What Condense gives.
inline double CondensedTemp(double temp, double dewpt) {
  const double depression = temp - dewpt;
  return temp - depression * (1.2185 + 0.001278 * temp +
                              depression * (-0.00219 + 1.173e-5 * depression - 5.2e-6 * temp));
}

/// What VirtualTemp gives.
inline double VirtualTempOf(double temp, double mixingRatio) {
  return (temp + kKelvinOffset) * (1 + mixingRatio / kEpsilon) / (1 + mixingRatio) - kKelvinOffset;
}

/// Vapour pressures from the table over one reference. A loop takes it by value: what it refers to
/// is then known not to change.
class ColumnVapor {
 public:
  explicit ColumnVapor(SaturationOver over)
      : rungs_(VaporTable().Rungs.data()),
        toIce_(over == SaturationOver::Ice ? VaporLadders::kRungs : 0) {}

  struct Point {
    double Pressure = 0;  // hPa
    double Slope = 0;     // hPa/K
  };

  /// At a temperature in °C, which is also given in K and lies on the ladder.
  Point At(double temp, double tempK) const {
    const double place = PlaceOf(tempK);
    const int rung = static_cast<int>(place);
    return PointOf(AboveRung(rungs_[rung + (temp <= 0 ? toIce_ : 0)], place - rung));
  }

  /// The rungs below the temperatures of a block, taken apart into columns.
  struct Block {
    static constexpr std::size_t kCount = 32;
    using Column = std::array<double, kCount>;

    alignas(64) Column Shares;
    alignas(64) Column Pressures;
    alignas(64) Column Slopes;
    alignas(64) Column Bends;
    alignas(64) Column Twists;

    Point At(std::size_t i) const {
      return PointOf(AboveRung({Pressures[i], Slopes[i], Bends[i], Twists[i]}, Shares[i]));
    }
  };

  /// Finds them, of temperatures in K that lie on the ladder. Every rung is read as a whole, which
  /// a loop that reads number by number never does.
  VEXA_INLINE void Find(const Block::Column& tempsK, Block& into) const {
    std::array<std::int32_t, Block::kCount> rungs;
    for (std::size_t i = 0; i < Block::kCount; ++i) {
      const double place = PlaceOf(tempsK[i]);
      const int rung = static_cast<int>(place);
      into.Shares[i] = place - rung;
      rungs[i] = rung + (tempsK[i] <= kKelvinOffset ? toIce_ : 0);
    }
    for (std::size_t i = 0; i < Block::kCount; i += 4) {
      const Four four = {rungs_ + rungs[i], rungs_ + rungs[i + 1], rungs_ + rungs[i + 2],
                         rungs_ + rungs[i + 3]};
      Turn(four, 0, &into.Pressures[i], &into.Slopes[i]);
      Turn(four, 2, &into.Bends[i], &into.Twists[i]);
    }
  }

 private:
  static double PlaceOf(double tempK) {
    return (tempK - VaporLadders::kColdest) / VaporLadders::kRung;
  }
  static Point PointOf(const VaporRise& at) {
    return {at.Pressure, at.Slope / VaporLadders::kRung};
  }

  using Four = std::array<const VaporRung*, 4>;

  // Two neighbouring numbers of four rungs, from the given one on, into a column of each.
  VEXA_INLINE static void Turn(const Four& rungs, std::size_t from, double* firsts,
                               double* seconds) {
    using Pair = double __attribute__((vector_size(2 * sizeof(double))));
    using Lanes = double __attribute__((vector_size(4 * sizeof(double))));
    const auto pair = [&](std::size_t i) {
      Pair read;
      std::memcpy(&read, reinterpret_cast<const double*>(rungs[i]) + from, sizeof(Pair));
      return read;
    };
    const Lanes even = __builtin_shufflevector(pair(0), pair(2), 0, 1, 2, 3);
    const Lanes odd = __builtin_shufflevector(pair(1), pair(3), 0, 1, 2, 3);
    const Lanes first = __builtin_shufflevector(even, odd, 0, 4, 2, 6);
    const Lanes second = __builtin_shufflevector(even, odd, 1, 5, 3, 7);
    std::memcpy(firsts, &first, sizeof(Lanes));
    std::memcpy(seconds, &second, sizeof(Lanes));
  }

  const VaporRung* rungs_;
  int toIce_;
};

}  // namespace vexa::analysis
