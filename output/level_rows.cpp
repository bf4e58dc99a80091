#include "output/level_rows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "analysis/moist_air.h"
#include "analysis/turbulence.h"
#include "core/level_filter.h"
#include "core/units.h"

namespace vexa::output {
namespace {

using analysis::AnalysisResults;
using analysis::LevelProfile;

constexpr double kNearMeters = 5;
constexpr double kLeastNear = 15;     // m
constexpr double kGroundOffset = 30;  // m: more is no difference of two elevations
constexpr double kNearShare = 0.005;  // of the height above the ground
constexpr double kGramsPerKilogram = 1000;

// A row and the levels that it was made of, 0 for none.
struct Joined {
  LevelRow Row{};
  int TempLevel = 0;
  int WindLevel = 0;
};

std::optional<double> Given(double value) {
  return NotAvailable(value) ? std::nullopt : std::optional(value);
}

template <class T>
std::optional<double> At(const Levels<T>& values, int level) {
  return level <= values.Count() ? Given(values(level)) : std::nullopt;
}

LevelRow TempRow(const AnalysisResults& results, int level) {
  const LevelProfile& levels = results.Levels;
  const analysis::LevelListing& listing = results.Layers.Listing;
  LevelRow row{.Press = levels.Press(level), .Height = levels.Height(level)};
  row.Temp = Given(levels.Temp(level));
  row.Dewpt = Given(levels.Dewpt(level));
  row.Theta = Given(levels.Theta(level));
  row.ThetaE = Given(levels.ThetaE(level));
  row.Humidity = Given(levels.RelHumidity(level));
  row.MixingRatio = Given(levels.MixingRatio(level));
  if (row.MixingRatio) *row.MixingRatio *= kGramsPerKilogram;
  row.VirtualTemp = Given(levels.VirtualTemp(level));
  row.WetBulb = Given(levels.WetBulb(level));
  row.Water = At(listing.WaterBelow, level);
  row.Density = At(listing.Density, level);
  return row;
}

// Number of the temperature level nearest to a height; 0 without any.
int NearestLevel(const LevelProfile& levels, double height) {
  const std::vector<double>& heights = levels.Height.Values();
  if (heights.empty()) return 0;
  const auto above = std::ranges::lower_bound(heights, height);
  if (above == heights.end()) return levels.Count();
  const auto index = static_cast<int>(above - heights.begin());
  if (index == 0) return 1;
  const bool isBelowNearer = height - levels.Height(index) <= levels.Height(index + 1) - height;
  return isBelowNearer ? index : index + 1;
}

double Tolerance(const LevelProfile& levels, double height) {
  return std::max(kLeastNear, kNearMeters + kNearShare * (height - levels.Height(1)));
}

// Which wind stands at each temperature level, 0 for none. Both profiles rise, so the winds keep
// their order; of several at one level those below step down where there is room, else the nearest
// stays.
class WindPlaces {
 public:
  WindPlaces(const SoundingRecord& sounding, const LevelProfile& levels)
      : sounding_(sounding),
        levels_(levels),
        winds_(static_cast<std::size_t>(levels.Count()) + 1, 0) {
    if (sounding.NumWindLevels() == 0 || levels.Count() == 0) return;
    // A source's heights may begin at another elevation of the station than the sounding does; or
    // there is no wind on the ground, and the first one stands at a level above it.
    const double offset = sounding.WindHgt(1) - levels.Height(1);
    const bool isNear = offset != 0 && std::fabs(offset) <= kGroundOffset;
    if (isNear && OnLevels(offset) >= OnLevels(0)) offset_ = offset;
    for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
      if (sounding.HasWind(i)) Place(i);
    }
  }
  const std::vector<int>& Winds() const { return winds_; }

 private:
  // How many winds stand at a level within the rounding when their heights lie so much too high.
  int OnLevels(double offset) const {
    constexpr double kRounding = 0.5;  // m
    int count = 0;
    for (int i = 1; i <= sounding_.NumWindLevels(); ++i) {
      const double height = sounding_.WindHgt(i) - offset;
      const int nearest = NearestLevel(levels_, height);
      if (!sounding_.HasWind(i) || nearest == 0) continue;
      if (std::fabs(levels_.Height(nearest) - height) <= kRounding) ++count;
    }
    return count;
  }

  int& At(int level) { return winds_[static_cast<std::size_t>(level)]; }
  double HeightOf(int wind) const { return sounding_.WindHgt(wind) - offset_; }
  double Distance(int level, int wind) const {
    return std::fabs(levels_.Height(level) - HeightOf(wind));
  }
  bool Fits(int level, int wind) const {
    return Distance(level, wind) <= Tolerance(levels_, HeightOf(wind));
  }

  void Place(int wind) {
    const int nearest = NearestLevel(levels_, HeightOf(wind));
    if (nearest == 0) return;
    if (nearest > last_) return Put(nearest, wind);
    const bool fitsAbove = last_ < levels_.Count() && Fits(last_ + 1, wind);
    const std::optional<double> stepping = CostOfStepping();
    const double above = fitsAbove ? Distance(last_ + 1, wind) : 0;
    const bool fitsHere = Fits(last_, wind);
    if (stepping && fitsHere && (!fitsAbove || *stepping + Distance(last_, wind) <= above)) {
      StepDown();
      At(last_) = wind;
    } else if (fitsAbove) {
      Put(last_ + 1, wind);
    } else if (fitsHere && Distance(last_, wind) < Distance(last_, At(last_))) {
      At(last_) = wind;
    }
  }

  void Put(int level, int wind) {
    if (!Fits(level, wind)) return;
    At(level) = wind;
    last_ = level;
  }

  // How much farther from their levels the winds of the run that ends at the last one taken would
  // stand a level lower; empty where they cannot.
  std::optional<double> CostOfStepping() {
    double cost = 0;
    for (int level = last_; level >= 1; --level) {
      const int wind = At(level);
      if (wind == 0) return cost;
      if (level == 1 || !Fits(level - 1, wind)) return std::nullopt;
      cost += Distance(level - 1, wind) - Distance(level, wind);
    }
    return std::nullopt;
  }

  void StepDown() {
    int free = last_;
    while (At(free) != 0) --free;
    for (; free < last_; ++free) At(free) = At(free + 1);
  }

  const SoundingRecord& sounding_;
  const LevelProfile& levels_;
  std::vector<int> winds_;
  double offset_ = 0;
  int last_ = 0;  // highest level that is taken
};

// Pressure at a height, beyond the highest level in air of its virtual temperature.
std::optional<double> PressureAt(const LevelProfile& levels, double height) {
  const double press = analysis::GetPRESS(levels, height);
  if (press != kNotReached) return press > 0 ? std::optional(press) : std::nullopt;
  if (levels.Count() == 0 || height < levels.Height.Top()) return std::nullopt;
  const double tempK = levels.VirtualTemp.Top() + kKelvinOffset;
  if (!(tempK > 0)) return std::nullopt;
  const double scale = analysis::kDryGasConstant * tempK / analysis::kGravity;
  return levels.Press.Top() * std::exp(-(height - levels.Height.Top()) / scale);
}

void PutShear(const SoundingRecord& sounding, const AnalysisResults& results,
              std::vector<Joined>& rows) {
  constexpr double kSameHeight = 1e-6;  // m
  const std::vector<analysis::WindPair> pairs =
      analysis::PairWinds(results.Winds, results.Levels, 0);
  for (Joined& joined : rows) {
    if (joined.WindLevel == 0) continue;
    const double height = sounding.WindHgt(joined.WindLevel);
    const auto pair = std::ranges::lower_bound(
        pairs, height - kSameHeight, {},
        [](const analysis::WindPair& candidate) { return candidate.High.Height; });
    if (pair == pairs.end() || pair->High.Height > height + kSameHeight) continue;
    joined.Row.Shear = pair->Shear;
    joined.Row.Richardson = pair->Richardson;
  }
}

// Rows are large: their order is found first, so that each moves once.
void SortByHeight(std::vector<Joined>& rows) {
  const auto height = [](const Joined& joined) { return joined.Row.Height; };
  if (std::ranges::is_sorted(rows, {}, height)) return;
  std::vector<const Joined*> order;
  order.reserve(rows.size());
  for (const Joined& row : rows) order.push_back(&row);
  std::ranges::stable_sort(order, {}, [&height](const Joined* row) { return height(*row); });
  std::vector<Joined> sorted;
  sorted.reserve(rows.size());
  for (const Joined* row : order) sorted.push_back(*row);
  rows = std::move(sorted);
}

std::vector<Joined> Join(const SoundingRecord& sounding, const AnalysisResults& results) {
  const LevelProfile& levels = results.Levels;
  const WindPlaces places(sounding, levels);
  const std::vector<int>& winds = places.Winds();
  std::vector<bool> isPlaced(static_cast<std::size_t>(sounding.NumWindLevels()) + 1, false);
  std::vector<Joined> rows;
  rows.reserve(winds.size() + isPlaced.size());
  const auto put = [&](Joined& row, int wind) {
    row.WindLevel = wind;
    row.Row.Dir = sounding.WindDir(wind);
    row.Row.Spd = sounding.WindSpd(wind);
    isPlaced[static_cast<std::size_t>(wind)] = true;
  };
  for (int i = 1; i <= levels.Count(); ++i) {
    Joined row{.Row = TempRow(results, i), .TempLevel = i};
    if (const int wind = winds[static_cast<std::size_t>(i)]; wind != 0) put(row, wind);
    rows.push_back(row);
  }
  for (int i = 1; i <= sounding.NumWindLevels(); ++i) {
    if (isPlaced[static_cast<std::size_t>(i)] || !sounding.HasWind(i)) continue;
    const std::optional<double> press = PressureAt(levels, sounding.WindHgt(i));
    if (!press) continue;
    Joined row{.Row = {.Press = *press, .Height = sounding.WindHgt(i)}};
    put(row, i);
    rows.push_back(row);
  }
  SortByHeight(rows);
  PutShear(sounding, results, rows);
  return rows;
}

}  // namespace

std::vector<int> WindsOfLevels(const SoundingRecord& sounding, const AnalysisResults& results) {
  return WindPlaces(sounding, results.Levels).Winds();
}

std::vector<LevelRow> IntegrateLevels(const SoundingRecord& sounding,
                                      const AnalysisResults& results) {
  const std::vector<Joined> joinedRows = Join(sounding, results);
  std::vector<LevelRow> rows;
  rows.reserve(joinedRows.size());
  for (const Joined& joined : joinedRows) rows.push_back(joined.Row);
  return rows;
}

std::vector<LevelRow> SignificantLevels(const SoundingRecord& sounding,
                                        const AnalysisResults& results) {
  const SoundingRecord thinned = FilterLevels(sounding);
  const auto holds = [](const std::vector<double>& values, double value) {
    return std::ranges::find(values, value) != values.end();
  };
  std::vector<LevelRow> rows;
  for (const Joined& joined : Join(sounding, results)) {
    const bool keepsTemp = joined.TempLevel != 0 && holds(thinned.Press.Values(), joined.Row.Press);
    const bool keepsWind = joined.WindLevel != 0 &&
                           holds(thinned.WindHgt.Values(), sounding.WindHgt(joined.WindLevel));
    if (keepsTemp || keepsWind) rows.push_back(joined.Row);
  }
  return rows;
}

}  // namespace vexa::output
