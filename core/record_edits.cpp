#include "core/record_edits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "core/markers.h"
#include "core/numbers.h"

namespace vexa {
namespace {

struct Range {
  std::string_view Field;
  double Least;
  double Most;
};

// What a radiosonde can meet; temperature's and direction's upper limits are the data check's.
constexpr Range kPress{"pressure", 0.01, 1100};  // hPa
constexpr Range kTemp{"temperature", -150, 70};  // °C
constexpr Range kDewpt{"dew point", -200, 70};   // °C
constexpr Range kHeight{"height", 0, 80000};     // m
constexpr Range kDir{"direction", 0, 360};       // degrees
constexpr Range kSpd{"speed", 0, 500};           // knots
constexpr Range kBase{"base", 0, 1000};          // hundreds of feet
constexpr std::array<std::string_view, 8> kCloudTypes = {"ST", "SC", "NS", "CU",
                                                         "CB", "AC", "AS", "CI"};

// The edit that checks: what it edits and its name as a fault gives it.
struct Place {
  std::string_view Procedure;
  std::string_view Kind;  // "Level", "Wind level", "Cloud layer"
  int Level = 0;          // 0: one that is to be added

  Fault Refuse(std::string_view field, std::string_view reason) const {
    std::string detail = std::string(Kind) + (Level == 0 ? " (new)" : ' ' + Shortest(Level));
    if (!field.empty()) detail += ", " + std::string(field);
    return Fault{kFaultInvalidValue, std::string(Procedure), detail + ": " + std::string(reason)};
  }
};

using Checked = std::optional<Fault>;

bool IsWithin(const Range& range, double value) {
  return value >= range.Least && value <= range.Most;
}

Checked CheckRange(const Place& place, const Range& range, double value) {
  if (IsWithin(range, value)) return std::nullopt;
  const std::string shown = std::isfinite(value) ? Brief(value) : "no number";
  return place.Refuse(range.Field, shown + " lies outside " + Shortest(range.Least) + " to " +
                                       Shortest(range.Most));
}

Checked CheckLevel(const Place& place, int count) {
  if (place.Level >= 1 && place.Level <= count) return std::nullopt;
  return place.Refuse("", count == 0 ? "there is none" : "there are " + Shortest(count));
}

Checked FirstOf(std::initializer_list<Checked> checks) {
  for (const Checked& check : checks) {
    if (check) return check;
  }
  return std::nullopt;
}

// That a value keeps the order of the levels; `before(a, b)` says that level a stands below b. The
// words say how it should lie to the level below and to the level above.
template <class Before>
Checked CheckNeighbours(const Place& place, const Levels<double>& values, std::string_view field,
                        double value, Before before, std::string_view toBelow,
                        std::string_view toAbove) {
  const auto refuse = [&](std::string_view word, int neighbour) {
    return place.Refuse(field, Brief(value) + " is not " + std::string(word) + " the " +
                                   Shortest(values(neighbour)) + " of level " +
                                   Shortest(neighbour));
  };
  if (place.Level > 1 && !before(values(place.Level - 1), value)) {
    return refuse(toBelow, place.Level - 1);
  }
  if (place.Level < values.Count() && !before(value, values(place.Level + 1))) {
    return refuse(toAbove, place.Level + 1);
  }
  return std::nullopt;
}

Checked CheckTemp(const Place& place, const TempLevel& level) {
  if (Checked fault =
          FirstOf({CheckRange(place, kPress, level.Press), CheckRange(place, kTemp, level.Temp)})) {
    return fault;
  }
  if (IsMissing(level.Dewpt)) return std::nullopt;
  if (Checked fault = CheckRange(place, kDewpt, level.Dewpt)) return fault;
  if (level.Dewpt <= level.Temp) return std::nullopt;
  return place.Refuse(
      kDewpt.Field, Brief(level.Dewpt) + " is above the temperature of " + Shortest(level.Temp));
}

Checked CheckWind(const Place& place, const WindLevel& level) {
  if (Checked fault =
          FirstOf({CheckRange(place, kHeight, level.Height), CheckRange(place, kDir, level.Dir),
                   CheckRange(place, kSpd, level.Spd)})) {
    return fault;
  }
  if (level.Dir > 0) return std::nullopt;
  return place.Refuse(kDir.Field, "0 means no wind at all, north is 360");
}

Checked CheckCloud(const Place& place, const CloudLayer& layer) {
  if (std::ranges::find(kCloudTypes, layer.Type) == kCloudTypes.end()) {
    return place.Refuse("type", "\"" + layer.Type + "\" is none of ST SC NS CU CB AC AS CI");
  }
  if (Checked fault = CheckRange(place, kBase, layer.Base)) return fault;
  if (Trim(layer.Top).empty()) return std::nullopt;
  const std::optional<double> top = ParseNumber(layer.Top);
  if (!top) return place.Refuse("top", "\"" + layer.Top + "\" is no number");
  if (*top >= layer.Base) return std::nullopt;
  return place.Refuse("top", Brief(*top) + " is below the base of " + Shortest(layer.Base));
}

// Where a value belongs among others in order, 1-based: behind all that stand before it.
template <class Before>
int PlaceFor(const Levels<double>& values, double value, Before before) {
  int level = 1;
  while (level <= values.Count() && before(values(level), value)) ++level;
  return level;
}

template <class T>
void InsertAt(Levels<T>& levels, int level, T value) {
  auto& values = levels.Values();
  values.insert(values.begin() + (level - 1), std::move(value));
}

constexpr std::greater<> kFalls{};
constexpr std::less<> kRises{};

}  // namespace

bool IsPossible(const TempLevel& level) {
  constexpr double kTooWarm = 200;  // what the data check tells of, not what nothing can have
  return (level.Press == 0 || IsWithin(kPress, level.Press)) && level.Temp >= kTemp.Least &&
         level.Temp <= kTooWarm &&
         (IsMissing(level.Dewpt) || (level.Dewpt >= kDewpt.Least && level.Dewpt <= kTooWarm));
}

bool IsPossible(const WindLevel& level) {
  constexpr double kMostDir = 999;
  return level.Height <= kHeight.Most && level.Height >= -kHeight.Most && level.Dir >= kDir.Least &&
         (IsMissing(level.Dir) || level.Dir <= kMostDir) && level.Spd >= -kSpd.Most &&
         (IsMissing(level.Spd) || level.Spd <= kSpd.Most);
}

bool IsPossible(const CloudLayer& layer) {
  return IsWithin(kBase, layer.Base);
}

std::optional<Fault> ChangeTempLevel(SoundingRecord& record, int level, const TempLevel& to) {
  const Place place{"ChangeTempLevel", "Level", level};
  if (Checked fault = CheckLevel(place, record.NumTempLevels())) return fault;
  if (Checked fault =
          FirstOf({CheckTemp(place, to), CheckNeighbours(place, record.Press, kPress.Field,
                                                         to.Press, kFalls, "below", "above")})) {
    return fault;
  }
  record.Press(level) = to.Press;
  record.Temp(level) = to.Temp;
  record.Dewpt(level) = to.Dewpt;
  return std::nullopt;
}

Outcome<int> AddTempLevel(SoundingRecord& record, const TempLevel& added) {
  const Place place{"AddTempLevel", "Level"};
  if (Checked fault = CheckTemp(place, added)) return *fault;
  const int level = PlaceFor(record.Press, added.Press, kFalls);
  if (level <= record.NumTempLevels() && record.Press(level) == added.Press) {
    return place.Refuse(kPress.Field,
                        Shortest(added.Press) + " is already that of level " + Shortest(level));
  }
  InsertAt(record.Press, level, added.Press);
  InsertAt(record.Temp, level, added.Temp);
  InsertAt(record.Dewpt, level, added.Dewpt);
  return level;
}

std::optional<Fault> DeleteTempLevel(SoundingRecord& record, int level) {
  const Place place{"DeleteTempLevel", "Level", level};
  if (Checked fault = CheckLevel(place, record.NumTempLevels())) return fault;
  if (record.NumTempLevels() <= 2) {
    Fault fault = place.Refuse("", "fewer than two levels would be left");
    fault.Number = kFaultTooFewLevels;
    return fault;
  }
  record.Press.Erase(level);
  record.Temp.Erase(level);
  record.Dewpt.Erase(level);
  return std::nullopt;
}

std::optional<Fault> ChangeWindLevel(SoundingRecord& record, int level, const WindLevel& to) {
  const Place place{"ChangeWindLevel", "Wind level", level};
  if (Checked fault = CheckLevel(place, record.NumWindLevels())) return fault;
  if (Checked fault =
          FirstOf({CheckWind(place, to), CheckNeighbours(place, record.WindHgt, kHeight.Field,
                                                         to.Height, kRises, "above", "below")})) {
    return fault;
  }
  if (record.HasWorkWinds()) {
    record.WorkWindDir(level) = static_cast<float>(to.Dir);
    record.WorkWindSpd(level) = static_cast<float>(to.Spd);
  }
  record.WindHgt(level) = to.Height;
  record.WindDir(level) = to.Dir;
  record.WindSpd(level) = to.Spd;
  return std::nullopt;
}

Outcome<int> AddWindLevel(SoundingRecord& record, const WindLevel& added) {
  const Place place{"AddWindLevel", "Wind level"};
  if (Checked fault = CheckWind(place, added)) return *fault;
  const int level = PlaceFor(record.WindHgt, added.Height, kRises);
  if (level <= record.NumWindLevels() && record.WindHgt(level) == added.Height) {
    return place.Refuse(kHeight.Field,
                        Shortest(added.Height) + " is already that of level " + Shortest(level));
  }
  if (record.NumWindLevels() == 0 || record.HasWorkWinds()) {
    InsertAt(record.WorkWindDir, level, static_cast<float>(added.Dir));
    InsertAt(record.WorkWindSpd, level, static_cast<float>(added.Spd));
  }
  InsertAt(record.WindHgt, level, added.Height);
  InsertAt(record.WindDir, level, added.Dir);
  InsertAt(record.WindSpd, level, added.Spd);
  return level;
}

std::optional<Fault> DeleteWindLevel(SoundingRecord& record, int level) {
  const Place place{"DeleteWindLevel", "Wind level", level};
  if (Checked fault = CheckLevel(place, record.NumWindLevels())) return fault;
  if (record.HasWorkWinds()) {
    record.WorkWindDir.Erase(level);
    record.WorkWindSpd.Erase(level);
  }
  record.WindHgt.Erase(level);
  record.WindDir.Erase(level);
  record.WindSpd.Erase(level);
  return std::nullopt;
}

std::optional<Fault> ChangeCloudLayer(SoundingRecord& record, int layer, const CloudLayer& to) {
  const Place place{"ChangeCloudLayer", "Cloud layer", layer};
  if (Checked fault = CheckLevel(place, record.NumCloudLayers())) return fault;
  if (Checked fault = CheckCloud(place, to)) return fault;
  record.Clouds(layer) = to;
  return std::nullopt;
}

Outcome<int> AddCloudLayer(SoundingRecord& record, const CloudLayer& added) {
  if (Checked fault = CheckCloud({"AddCloudLayer", "Cloud layer"}, added)) return *fault;
  int layer = 1;
  while (layer <= record.NumCloudLayers() && record.Clouds(layer).Base <= added.Base) ++layer;
  InsertAt(record.Clouds, layer, added);
  return layer;
}

std::optional<Fault> DeleteCloudLayer(SoundingRecord& record, int layer) {
  const Place place{"DeleteCloudLayer", "Cloud layer", layer};
  if (Checked fault = CheckLevel(place, record.NumCloudLayers())) return fault;
  record.Clouds.Erase(layer);
  return std::nullopt;
}

}  // namespace vexa
