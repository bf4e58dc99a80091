// What the exchange formats have in common below their layouts: fields that hold a value, a marker
// for "missing" or rubbish; rows with any of six elements; and the one way from such rows to the
// two profiles of a sounding. A decoder reads its rows into SourceLevels and calls FillProfiles.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/sounding_record.h"
#include "ingest/height_finder.h"

namespace vexa::ingest {

enum class Element { Press, Height, Temp, Dewpt, Direction, Speed };
inline constexpr std::size_t kElements = 6;

/// Counts values that no atmosphere has and that were therefore left out, by element.
class Refusals {
 public:
  void Add(Element element) { ++counts_[static_cast<std::size_t>(element)]; }
  /// "Temperatures outside -120 to 60 C, left out: 2" and so on; empty when there were none.
  std::vector<std::string> Notes() const;

 private:
  std::array<int, kElements> counts_{};
};

/// What any atmosphere has of an element. A pressure of 0 is none either.
struct ElementRange {
  double Least = 0;
  double Most = 0;
};
inline constexpr std::array<ElementRange, kElements> kElementRanges = {
    {{0, 1100}, {-500, 60000}, {-120, 60}, {-150, 60}, {0, 360}, {0, 300}}};

inline bool IsPossible(double value, Element element) {
  const ElementRange& range = kElementRanges[static_cast<std::size_t>(element)];
  return value >= range.Least && value <= range.Most && !(element == Element::Press && value == 0);
}

/// A row of a source; any element may be missing.
struct SourceLevel {
  std::optional<double> Press{};   // hPa
  std::optional<double> Height{};  // m above mean sea level
  std::optional<double> Temp{};    // °C
  std::optional<double> Dewpt{};   // °C
  std::optional<double> Dir{};  // degrees, as the source has it: calm and north not yet told apart
  std::optional<double> Spd{};  // knots
};

/// value * Times / Over + Plus. Tenths are divided by 10 and not multiplied by 0.1, so that 184
/// tenths are 18.4 to the last bit; sums are rounded to 0.0001.
struct Scale {
  double Times = 1;
  double Over = 1;
  double Plus = 0;

  double operator()(double value) const {
    const double scaled = Over == 1 ? value * Times : value * Times / Over;
    return Plus == 0 ? scaled : Shifted(scaled);
  }
  double Shifted(double scaled) const;  // by Plus
};

/// Reads one field. A value outside its element's range is missing: silently when it is a usual
/// marker (-9999, 9999, 99999, -999, 999, within 0.005), else counted as refused. A marker that
/// lies in the range, 999 hPa or 9999 m, is a value.
///
/// field  blank, slashes, asterisks, "M", "NaN", "null" are missing
/// scale  turns the source's unit into ours
/// returns false when the field is neither a number nor a marker
[[nodiscard]] bool ReadElement(std::string_view field, Element element, Refusals& refusals,
                               std::optional<double>& into, const Scale& scale = {});

/// Counts a number that is no value of its element, unless it is a marker.
void Refuse(double number, Element element, Refusals& refusals);

/// The same as ReadElement of a field that is this number.
inline void ReadElement(double number, Element element, Refusals& refusals,
                        std::optional<double>& into, const Scale& scale = {}) {
  const double value = scale(number);
  if (IsPossible(value, element)) {
    into = value;
    return;
  }
  into.reset();
  Refuse(number, element, refusals);
}

/// Takes a value in our unit unless it lies outside its element's range, which is counted.
void TakeElement(double value, Element element, Refusals& refusals, std::optional<double>& into);

/// Factor from a unit as sources spell it ("knot", "kt", "kts", "knots", "m/s") to knots; empty
/// for any other.
std::optional<double> KnotsPer(std::string_view unit);

inline constexpr double kDoubtfulHeight = 300;  // m by which a height may miss what is expected

/// What rows in the order of falling pressure tell of heights: those that are given, and the
/// temperatures in between.
HeightFinder FinderOf(const std::vector<SourceLevel>& levels);

/// The row on the ground: the lowest that has a temperature; null without any.
SourceLevel* SurfaceLevel(std::vector<SourceLevel>& levels);

/// Height in m of the row on the ground by the heights that other rows give and the air in between;
/// empty where none gives one.
std::optional<double> FittingGround(std::vector<SourceLevel> levels);

/// Keeps an elevation that misses the fitting height by no more than so many metres, else takes
/// this one; notes say so.
void SettleGround(double fitting, std::optional<double>& ground, std::vector<std::string>& notes,
                  double most = kDoubtfulHeight);

/// Fills both profiles from the rows in any order. Rows without temperature and wind are below the
/// ground and are dropped; of temperatures at the same pressure, or winds of the same height, the
/// first counts; a dew point above the temperature becomes the temperature; a calm wind is 360
/// degrees at 0 knots and a wind from 0 degrees comes from 360. A wind at a pressure gets the
/// height that the profile has there, see WindHeights.
///
/// into   has its elevation

/// notes  gets a sentence for whatever was changed, worked out or left out
void FillProfiles(std::vector<SourceLevel> levels, SoundingRecord& into,
                  std::vector<std::string>& notes);

}  // namespace vexa::ingest
