// What is usual at a sounding's station in its part of the year and at its time of the day: how its
// indices lie among those of many ascents, and how temperature, dew point and wind speed are
// spread at fixed pressures. Plain values; where they come from the diagram does not know.
#pragma once

#include <optional>
#include <vector>

#include "analysis/index_table.h"

namespace vexa::diagram {

/// 10th, 50th and 90th percentile.
struct UsualBand {
  double Low = 0;
  double Median = 0;
  double High = 0;
};

struct UsualLevel {
  double Press = 0;                  // hPa
  std::optional<UsualBand> Temp{};   // °C
  std::optional<UsualBand> Dewpt{};  // °C
  std::optional<UsualBand> Speed{};  // kt
};

/// The place of a value among the others, from 1 to 99.
struct UsualRank {
  const analysis::IndexRow* Index = nullptr;
  int Percentile = 0;
};

struct Usual {
  std::vector<UsualRank> Ranks{};    // of the indices that have a value and enough others
  std::vector<UsualLevel> Levels{};  // from the ground up

  /// Null where nothing is known of it.
  const UsualRank* Find(const analysis::IndexRow& index) const {
    for (const UsualRank& rank : Ranks) {
      if (rank.Index == &index) return &rank;
    }
    return nullptr;
  }
};

}  // namespace vexa::diagram
