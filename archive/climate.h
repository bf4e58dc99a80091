// What is usual: how every index, and temperature, dew point and wind at fixed pressures, are
// spread at a station in one part of the year and at one time of the day.
//
// Percentiles are linear between the ordered values: that of p stands at place 1 + (n - 1) p/100 of
// n (Hyndman and Fan 1996, definition 7). The percentile of a value is its mean rank: the share of
// smaller values and half of the equal ones. Soundings in which the check of the data finds fault
// are left out, and there is nothing of fewer values than a stated number.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "archive/catalogue.h"
#include "archive/standard_levels.h"
#include "core/sounding_record.h"

namespace vexa::archive {

inline constexpr int kLeastSample = 30;

struct ClimateRequest {
  int Station = 0;                 // WMO number
  std::optional<int> Month{};      // 1 to 12
  std::optional<int> DayOfYear{};  // 1 to 366, of a leap year; wins over the month
  int WindowDays = 15;             // to each side of the day
  std::optional<int> Hour{};       // UTC; ascents within an hour of it
  int LeastSample = kLeastSample;
  std::string Settings{};  // fingerprint: those analysed under others are left out; empty: all
  bool operator==(const ClimateRequest&) const = default;
};

/// 1 to 366 in a leap year, so that every date keeps its number; 0 for no date.
int DayOfYear(int month, int day);

/// Values in their order.
class Distribution {
 public:
  Distribution() = default;
  explicit Distribution(std::vector<float> values);
  int Count() const { return static_cast<int>(sorted_.size()); }
  /// percent  from 0 to 100; of no values there is none
  double Percentile(double percent) const;
  /// From 0 to 100.
  double RankOf(double value) const;
  const std::vector<float>& Sorted() const { return sorted_; }

 private:
  std::vector<float> sorted_{};
};

struct IndexClimate {
  const Column* Index = nullptr;
  Distribution Values{};
};

/// 10th, 50th and 90th percentile.
using Band = std::array<double, 3>;

struct LevelClimate {
  std::optional<Band> Temp{};   // °C
  std::optional<Band> Dewpt{};  // °C
  std::optional<Band> Speed{};  // kt
};

struct Climate {
  ClimateRequest Of{};
  int Ascents = 0;
  int UnderOthers = 0;  // left out, since they were analysed under other settings
  int FirstYear = 0, LastYear = 0;
  std::vector<IndexClimate> Indices{};  // those with enough values, in the order of the columns
  std::array<LevelClimate, kStandardPress.size()> Levels{};

  const Distribution* Find(const Column& index) const;
  /// "1,240 June ascents, 1973-2024".
  std::string SampleText() const;
};

Outcome<Climate> ClimateOf(Catalogue& catalogue, const ClimateRequest& request);

/// Where a sounding belongs; of one without a number or a time there is nowhere.
std::optional<ClimateRequest> RequestFor(const SoundingRecord& sounding);

/// A rank in whole percent: no value lies at the very ends of a sample.
int ShownRank(double rank);

/// "97th of 1,240 June ascents, 1973-2024".
std::string RankText(double rank, int count, const Climate& climate);

}  // namespace vexa::archive
