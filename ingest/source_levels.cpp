#include "ingest/source_levels.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "ingest/wind_heights.h"

namespace vexa::ingest {
namespace {

struct ElementRow {
  std::string_view Plural;
  std::string_view Unit;
};

// In the order of Element.
constexpr std::array<ElementRow, kElements> kElementRows = {{
    {"Pressures", "hPa"},
    {"Heights", "m"},
    {"Temperatures", "C"},
    {"Dew points", "C"},
    {"Wind directions", "degrees"},
    {"Wind speeds", "knots"},
}};

constexpr double kMarkers[] = {-9999, 9999, 99999, -99999, -999, 999};
constexpr double kMarkerTolerance = 0.005;
constexpr double kSameHeight = 0.5;      // m, of heights that were rounded
constexpr double kDewptTolerance = 0.1;  // °C above the temperature that rounding explains

bool IsMarkerText(std::string_view field) {
  if (!field.empty() && field.back() >= '0' && field.back() <= '9') return false;
  if (field.find_first_not_of('/') == std::string_view::npos ||
      field.find_first_not_of('*') == std::string_view::npos ||
      field.find_first_not_of('-') == std::string_view::npos) {
    return true;
  }
  constexpr std::string_view kTexts[] = {"m", "nan", "null", "n/a"};
  std::string lower(field);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return std::ranges::find(kTexts, std::string_view(lower)) != std::end(kTexts);
}

std::string Counted(std::string_view what, int count) {
  return std::string(what) + ": " + Shortest(count);
}

bool HasWind(const SourceLevel& level) {
  return level.Spd && (level.Dir || *level.Spd == 0);
}

void SortByPressure(std::vector<SourceLevel>& levels) {
  const auto isLower = [](const SourceLevel& a, const SourceLevel& b) {
    return a.Press.value_or(0) > b.Press.value_or(0);
  };
  if (!std::ranges::is_sorted(levels, isLower)) std::ranges::stable_sort(levels, isLower);
}

}  // namespace

double Scale::Shifted(double scaled) const {
  constexpr int kDecimals = 4;
  return Rounded(scaled + Plus, kDecimals);
}

std::vector<std::string> Refusals::Notes() const {
  std::vector<std::string> notes;
  for (std::size_t i = 0; i < kElements; ++i) {
    if (counts_[i] == 0) continue;
    const ElementRow& row = kElementRows[i];
    const ElementRange& range = kElementRanges[i];
    notes.push_back(Counted(std::string(row.Plural) + " outside " + Shortest(range.Least) + " to " +
                                Shortest(range.Most) + ' ' + std::string(row.Unit) + ", left out",
                            counts_[i]));
  }
  return notes;
}

bool ReadElement(std::string_view field, Element element, Refusals& refusals,
                 std::optional<double>& into, const Scale& scale) {
  into.reset();
  const std::string_view text = Trim(field);
  if (IsMarkerText(text)) return true;
  const std::optional<double> number = ParseNumber(text);
  if (!number) return false;
  ReadElement(*number, element, refusals, into, scale);
  return true;
}

void Refuse(double number, Element element, Refusals& refusals) {
  const bool isMarker = std::ranges::any_of(
      kMarkers, [number](double marker) { return std::fabs(number - marker) <= kMarkerTolerance; });
  if (!isMarker) refusals.Add(element);
}

void TakeElement(double value, Element element, Refusals& refusals, std::optional<double>& into) {
  if (IsPossible(value, element)) {
    into = value;
  } else {
    refusals.Add(element);
  }
}

std::optional<double> KnotsPer(std::string_view unit) {
  const std::string_view text = Trim(unit);
  for (const std::string_view knots : {"knot", "knots", "kt", "kts"}) {
    if (text == knots) return 1.0;
  }
  if (text == "m/s") return kMsToKnot;
  return std::nullopt;
}

SourceLevel* SurfaceLevel(std::vector<SourceLevel>& levels) {
  SourceLevel* surface = nullptr;
  for (SourceLevel& level : levels) {
    if (!level.Temp || !level.Press) continue;
    if (surface == nullptr || *level.Press > *surface->Press) surface = &level;
  }
  return surface;
}

HeightFinder FinderOf(const std::vector<SourceLevel>& levels) {
  HeightFinder heights;
  std::vector<double> press, temp, dewpt;
  for (const SourceLevel& level : levels) {
    if (!level.Press) continue;
    if (level.Height) heights.AddKnown(*level.Press, *level.Height);
    if (!level.Temp || (!press.empty() && press.back() == *level.Press)) continue;
    press.push_back(*level.Press);
    temp.push_back(*level.Temp);
    dewpt.push_back(level.Dewpt.value_or(kMissing));
  }
  heights.SetTemperatures(std::move(press), std::move(temp), std::move(dewpt));
  return heights;
}

std::optional<double> FittingGround(std::vector<SourceLevel> levels) {
  const SourceLevel* surface = SurfaceLevel(levels);
  if (surface == nullptr) return std::nullopt;
  const double press = *surface->Press;
  SortByPressure(levels);
  HeightFinder heights = FinderOf(levels);
  if (!heights.KnowsAny()) return std::nullopt;
  return heights.At(press);
}

void SettleGround(double fitting, std::optional<double>& ground, std::vector<std::string>& notes,
                  double most) {
  const double rounded = std::round(fitting);
  if (ground && std::fabs(rounded - *ground) > most) {
    notes.push_back("The elevation of " + Shortest(*ground) +
                    " m does not fit the heights that are given; it was not used.");
    ground.reset();
  }
  if (ground) return;
  ground = rounded;
  notes.push_back("The elevation is not known; " + Shortest(rounded) +
                  " m fits the heights that are given.");
}

namespace {

/// What was changed or left out on the way into the record.
struct FillCounts {
  int LoweredDewpts = 0, Repeated = 0, RepeatedWinds = 0, ComputedHeights = 0;
};

void LowerDewpts(std::vector<SourceLevel>& levels, FillCounts& counts) {
  for (SourceLevel& level : levels) {
    if (level.Temp && level.Dewpt && *level.Dewpt > *level.Temp) {
      if (*level.Dewpt > *level.Temp + kDewptTolerance) ++counts.LoweredDewpts;
      level.Dewpt = level.Temp;
    }
  }
}

void FillTemps(const std::vector<SourceLevel>& levels, SoundingRecord& into, FillCounts& counts) {
  for (const SourceLevel& level : levels) {
    if (!level.Press || !level.Temp) continue;
    if (!into.Press.Empty() && into.Press.Top() == *level.Press) {
      if (into.Temp.Top() != *level.Temp) ++counts.Repeated;  // what says the same is no loss
      continue;
    }
    into.AddTemp(*level.Press, *level.Temp, level.Dewpt.value_or(kMissing));
  }
}

// Winds by height, rising as they nearly always come: only those out of this order are put into a
// tree, whatever their number.
class WindLadder {
 public:
  /// The wind that stands within kSameHeight of a height, else null and the new one is taken.
  const SourceLevel* Put(double height, const SourceLevel& level) {
    const bool isAbove = rising_.empty() || rising_.back().first < height - kSameHeight;
    if (isAbove && sorted_.empty()) {
      rising_.emplace_back(height, &level);
      return nullptr;
    }
    if (sorted_.empty()) sorted_.insert(rising_.begin(), rising_.end());
    const auto near = sorted_.lower_bound(height - kSameHeight);
    if (near != sorted_.end() && near->first <= height + kSameHeight) return near->second;
    sorted_.emplace_hint(near, height, &level);
    return nullptr;
  }

  template <class Use>
  void ForEach(const Use& use) const {
    const auto all = [&use](const auto& winds) {
      for (const auto& [height, level] : winds) use(height, *level);
    };
    sorted_.empty() ? all(rising_) : all(sorted_);
  }

 private:
  std::vector<std::pair<double, const SourceLevel*>> rising_{};
  std::map<double, const SourceLevel*> sorted_{};  // all of them, once one did not rise
};

// Winds have levels of their own: a row whose pressure repeats has a wind all the same.
void FillWinds(const std::vector<SourceLevel>& levels, WindHeights& heights, SoundingRecord& into,
               FillCounts& counts) {
  WindLadder winds;
  for (const SourceLevel& level : levels) {
    if (!HasWind(level) || (!level.Height && !level.Press)) continue;
    if (const SourceLevel* other = winds.Put(heights.Of(level), level)) {
      if (other->Dir != level.Dir || other->Spd != level.Spd) ++counts.RepeatedWinds;
    } else if (!level.Height) {
      ++counts.ComputedHeights;
    }
  }
  winds.ForEach([&into](double height, const SourceLevel& level) {
    const bool isNorth = *level.Spd == 0 || *level.Dir == 0;
    into.AddWind(height, isNorth ? 360 : *level.Dir, *level.Spd);
  });
}

// Room for both profiles at once.
void MakeRoom(std::size_t levels, SoundingRecord& into) {
  for (Levels<double>* values :
       {&into.Press, &into.Temp, &into.Dewpt, &into.WindHgt, &into.WindDir, &into.WindSpd}) {
    values->Values().reserve(levels);
  }
  into.WorkWindDir.Values().reserve(levels);
  into.WorkWindSpd.Values().reserve(levels);
}

}  // namespace

void FillProfiles(std::vector<SourceLevel> levels, SoundingRecord& into,
                  std::vector<std::string>& notes) {
  std::erase_if(levels, [](const SourceLevel& level) { return !level.Temp && !HasWind(level); });
  FillCounts counts;
  LowerDewpts(levels, counts);
  SortByPressure(levels);
  MakeRoom(levels.size(), into);
  FillTemps(levels, into, counts);
  WindHeights heights(into, levels);
  FillWinds(levels, heights, into, counts);

  const auto note = [&notes](std::string_view what, int count) {
    if (count > 0) notes.push_back(Counted(what, count));
  };
  note("Dew points above the temperature, lowered to it", counts.LoweredDewpts);
  note("Temperatures at the pressure of the one before, left out", counts.Repeated);
  note("Winds at the height of another, left out", counts.RepeatedWinds);
  note(heights.UsedStandardAtmosphere()
           ? "Winds whose height was computed, partly in the standard atmosphere"
           : "Winds whose height was computed",
       counts.ComputedHeights);
  if (std::string differences = heights.Differences(); !differences.empty()) {
    notes.push_back(std::move(differences));
  }
}

}  // namespace vexa::ingest
