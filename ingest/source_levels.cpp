#include "ingest/source_levels.h"

#include <algorithm>
#include <cmath>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/units.h"
#include "ingest/height_finder.h"

namespace vexa::ingest {
namespace {

struct ElementRow {
  std::string_view Plural;
  std::string_view Unit;
  double Least;
  double Most;
};

// In the order of Element. A pressure of 0 is refused too.
constexpr std::array<ElementRow, kElements> kElementRows = {{
    {"Pressures", "hPa", 0, 1100},
    {"Heights", "m", -500, 60000},
    {"Temperatures", "C", -120, 60},
    {"Dew points", "C", -150, 60},
    {"Wind directions", "degrees", 0, 360},
    {"Wind speeds", "knots", 0, 300},
}};

constexpr double kMarkers[] = {-9999, 9999, 99999, -99999, -999, 999};
constexpr double kMarkerTolerance = 0.005;
constexpr double kDewptTolerance = 0.1;  // °C above the temperature that rounding explains

bool IsMarkerText(std::string_view field) {
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

bool IsPossible(double value, Element element) {
  const ElementRow& row = kElementRows[static_cast<std::size_t>(element)];
  return value >= row.Least && value <= row.Most && !(element == Element::Press && value == 0);
}

bool HasWind(const SourceLevel& level) {
  return level.Spd && (level.Dir || *level.Spd == 0);
}

}  // namespace

double Scale::operator()(double value) const {
  constexpr int kDecimals = 4;
  const double scaled = value * Times / Over;
  return Plus == 0 ? scaled : Rounded(scaled + Plus, kDecimals);
}

std::vector<std::string> Refusals::Notes() const {
  std::vector<std::string> notes;
  for (std::size_t i = 0; i < kElements; ++i) {
    if (counts_[i] == 0) continue;
    const ElementRow& row = kElementRows[i];
    notes.push_back(Counted(std::string(row.Plural) + " outside " + Shortest(row.Least) + " to " +
                                Shortest(row.Most) + ' ' + std::string(row.Unit) + ", left out",
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
  const double value = scale(*number);
  if (IsPossible(value, element)) {
    into = value;
    return true;
  }
  const bool isMarker = std::ranges::any_of(kMarkers, [&number](double marker) {
    return std::fabs(*number - marker) <= kMarkerTolerance;
  });
  if (!isMarker) refusals.Add(element);
  return true;
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

std::optional<double> SurfaceHeight(const std::vector<SourceLevel>& levels) {
  const SourceLevel* surface = nullptr;
  for (const SourceLevel& level : levels) {
    if (!level.Temp || !level.Press) continue;
    if (surface == nullptr || *level.Press > *surface->Press) surface = &level;
  }
  return surface == nullptr ? std::nullopt : surface->Height;
}

void FillProfiles(std::vector<SourceLevel> levels, SoundingRecord& into,
                  std::vector<std::string>& notes) {
  std::erase_if(levels, [](const SourceLevel& level) { return !level.Temp && !HasWind(level); });
  int loweredDewpts = 0;
  for (SourceLevel& level : levels) {
    if (level.Temp && level.Dewpt && *level.Dewpt > *level.Temp) {
      if (*level.Dewpt > *level.Temp + kDewptTolerance) ++loweredDewpts;
      level.Dewpt = level.Temp;
    }
  }
  std::ranges::stable_sort(levels, [](const SourceLevel& a, const SourceLevel& b) {
    return a.Press.value_or(0) > b.Press.value_or(0);
  });

  HeightFinder heights;
  for (const SourceLevel& level : levels) {
    if (!level.Press) continue;
    if (level.Temp && (into.Press.Empty() || into.Press.Top() != *level.Press)) {
      into.AddTemp(*level.Press, *level.Temp, level.Dewpt.value_or(kMissing));
    }
    if (level.Height) heights.AddKnown(*level.Press, *level.Height);
  }
  heights.SetTemperatures(into.Press.Values(), into.Temp.Values(), into.Dewpt.Values());

  struct Wind {
    double Height, Dir, Spd;
  };
  std::vector<Wind> winds;
  int computedHeights = 0;
  std::optional<double> pressBefore;
  for (const SourceLevel& level : levels) {
    if (!HasWind(level) || (!level.Height && !level.Press)) continue;
    if (level.Press && level.Press == pressBefore) continue;
    pressBefore = level.Press;
    if (!level.Height) ++computedHeights;
    const bool isCalm = *level.Spd == 0;
    const double direction = isCalm || *level.Dir == 0 ? 360 : *level.Dir;
    winds.push_back(
        {level.Height ? *level.Height : heights.At(*level.Press), direction, *level.Spd});
  }
  std::ranges::stable_sort(winds, {}, &Wind::Height);
  for (const Wind& wind : winds) {
    if (!into.WindHgt.Empty() && into.WindHgt.Top() == wind.Height) continue;
    into.AddWind(wind.Height, wind.Dir, wind.Spd);
  }

  if (loweredDewpts > 0) {
    notes.push_back(Counted("Dew points above the temperature, lowered to it", loweredDewpts));
  }
  if (computedHeights > 0) {
    notes.push_back(
        Counted(heights.UsedStandardAtmosphere()
                    ? "Winds whose height was computed, partly in the standard atmosphere"
                    : "Winds whose height was computed",
                computedHeights));
  }
}

}  // namespace vexa::ingest
