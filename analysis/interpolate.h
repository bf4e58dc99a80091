// Values of the sounding between its levels: the four named routines with their markers and
// roundings, and the typed outcome that the program computes with inside.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "analysis/level_profile.h"
#include "core/sounding_record.h"

namespace vexa::analysis {

enum class Found { Value, Missing, Outside };

/// A value, or why there is none.
struct Sample {
  double Value = 0;
  Found State = Found::Outside;
  bool Ok() const { return State == Found::Value; }
};

/// Quantity codes of GetTEMP.
enum class Quantity {
  Temp = 1,         // °C
  Dewpt = 2,        // °C
  WetBulb = 3,      // °C
  ThetaE = 4,       // K
  Theta = 5,        // K
  VirtualTemp = 6,  // °C
  MixingRatio = 7,  // kg/kg inside, g/kg from GetTEMP
  RelHumidity = 8,  // %
  Height = 9,       // m
  ParcelTemp = 10   // °C, by whole hPa on the lifted parcel's path
};

/// A quantity at a pressure, linear in ln p between the bracketing levels, not rounded.
Sample SampleAt(const LevelProfile& levels, double press, Quantity quantity);

/// Where a pressure lies among the levels: whoever reads several quantities there finds it once.
class PressurePlace {
 public:
  PressurePlace() = default;
  PressurePlace(const LevelProfile& levels, double press);

  /// What SampleAt gives at the pressure, of the same levels.
  Sample Read(const LevelProfile& levels, Quantity quantity) const;

 private:
  enum class Where { Outside, AtLevel, Between, WithoutPress };
  Where where_ = Where::Outside;
  std::size_t low_ = 0;
  std::size_t high_ = 0;
  double depth_ = 0;  // ln p above the lower level, negative
  double span_ = 0;   // that of the upper one
};

/// The same for the caller outside: rounded, 999.9 where SampleAt has no value.
///
/// press       hPa
/// parcelTemps parcel temperatures at whole hPa, first at the pressure parcelStart, falling by
///             1 hPa; only quantity 10 reads them
/// returns     °C, K, g/kg, % or m by quantity; 999.9 (kMissing) without a value
double GetTEMP(const LevelProfile& levels, double press, Quantity quantity);
double GetTEMP(const LevelProfile& levels, const PressurePlace& place, Quantity quantity);
double GetTEMP(const std::vector<double>& parcelTemps, int parcelStart, double press);

/// What a height loses where it is kept to the tenth of a metre, as those of winds are.
inline constexpr double kHeightRounding = 0.05;  // m

/// Pressure at a height, linear in ln p between the two levels that bracket it. Below the surface
/// the lowest layer is continued by at most 500 m; fewer than two levels use the standard
/// atmosphere. A height that rounding has put above the highest level is that level's.
///
/// height   m above mean sea level
/// returns  hPa; kNotReached (99999) above the highest level
double GetPRESS(const LevelProfile& levels, double height);

/// Height at a pressure in feet, one decimal; kNone (-999) outside the sounding.
double GetHeight(const LevelProfile& levels, double press);

/// Height at a pressure, m; 1000 hPa below the ground is where the standard lapse of 6.5 K/km, from
/// the surface virtual temperature, puts it, as in the reduction to sea level.
Sample HeightAt(const LevelProfile& levels, double press);
Sample HeightAt(const LevelProfile& levels, const PressurePlace& place, double press);

struct Wind {
  double Dir = 0;  // degrees the wind blows from
  double Spd = 0;  // knots
};

struct WindVector {
  double U = 0;  // kt
  double V = 0;
};

inline WindVector Minus(const WindVector& a, const WindVector& b) {
  return {a.U - b.U, a.V - b.V};
}

/// Its speed, kt. Winds are far from where squares run over.
inline double LengthOf(const WindVector& vector) {
  return std::sqrt(vector.U * vector.U + vector.V * vector.V);
}

struct WindSample {
  Wind Value{};
  Found State = Found::Outside;
  bool Ok() const { return State == Found::Value; }
};

/// Wind at a height in m above sea level: components linear in height between the bracketing wind
/// levels; the lowest wind serves up to 100 m below itself, the highest up to 2 m above. Not
/// rounded.
WindSample WindAtHeight(const SoundingRecord& sounding, double height);

/// The winds of a sounding that were observed, from below: turned into components once for all that
/// computes with them.
struct WindProfile {
  std::vector<double> Heights{};      // m above sea level
  std::vector<WindVector> Vectors{};  // kt
  bool IsOrdered = false;             // heights rise

  std::size_t Count() const { return Heights.size(); }
};

/// highest  m; winds behind the first one above it are left out
WindProfile DeriveWinds(const SoundingRecord& sounding,
                        double highest = std::numeric_limits<double>::infinity());

/// The components of WindAtHeight; empty where it has none.
std::optional<WindVector> VectorAtHeight(const WindProfile& winds, double height);

/// Wind at a pressure, direction in whole degrees and speed in tenths of a knot; both 999.9
/// outside the wind levels.
Wind GetWIND(const SoundingRecord& sounding, const LevelProfile& levels, double press);

/// u = s·sin(d/57.29578), v = s·cos(d/57.29578), d the direction the wind blows from.
WindVector Components(const Wind& wind);
Wind FromComponents(const WindVector& vector);  // direction in (0, 360]; calm is 360/0

}  // namespace vexa::analysis
