// The mountains that a wave is computed for: one ridge, or two in a row, as the user names them or
// a file gives them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/sounding_record.h"
#include "mountainwave/wave_units.h"

namespace vexa::mountainwave {

struct Ridge {
  double HeightFt = 0;     // crest above mean sea level
  double HalfWidthNm = 0;  // windward, at mid-elevation
  double Axis = 0;         // degrees along which the ridge runs; 0: any, disregarded
  bool operator==(const Ridge&) const = default;
};

/// The seven values of a mountain file's record.
struct MountainParameters {
  Ridge First{};
  double DistanceNm = 0;  // between the ridges; 0: there is one only
  Ridge Second{};
  bool HasSecond() const { return DistanceNm > 0; }
  bool operator==(const MountainParameters&) const = default;
};

/// Which mountains: those of a site, or the default mountain, 1 km high and as wide as makes the
/// wave strongest.
using Site = std::optional<MountainParameters>;

inline constexpr double kDefaultRelief = 1000;  // m above the station

/// The mountains that a native file's supplementary records carry; none where their height is 0.
Site MountainsOf(const SoundingRecord& sounding);

/// Puts mountains there, or takes them away.
void StoreMountains(SoundingRecord& sounding, const Site& site);

/// Why seven values are no mountains; empty when they are.
std::string_view WhyNoMountains(const MountainParameters& mountains);

/// Seven values as they are typed, in the units of the form; the distance and what follows it for
/// two mountains only.
struct MountainEntry {
  double Height = 0, HalfWidth = 0, Axis = 0;
  bool HasSecond = false;
  double Distance = 0;
  double Height2 = 0, HalfWidth2 = 0, Axis2 = 0;
};

/// What may be entered, ends included.
struct EntryRange {
  double Least = 0, Most = 0;
};
EntryRange HeightRange(LengthUnits units);      // 100 - 32,000 ft; 35 - 9,700 m
EntryRange HalfWidthRange(WaveDistance units);  // 0.1 - 50.0 nm; 0.2 - 90.0 km; 0.2 - 55.0 mi
EntryRange AxisRange();                         // 0 - 360
EntryRange DistanceRange(WaveDistance units);   // 1 - 500 nm; 2 - 900 km; 2 - 550 mi

/// The lines shown while a box has the focus.
std::vector<std::string> HeightPrompt(LengthUnits units);
std::vector<std::string> HalfWidthPrompt(WaveDistance units);
std::vector<std::string> AxisPrompt();
std::vector<std::string> DistancePrompt(WaveDistance units);

inline constexpr std::string_view kOutOfRange = "Data is out of range.";

/// The name of the first value out of its range, "Mountain #1 - Height"; empty when all are good.
std::string_view OutOfRange(const MountainEntry& entry, const WaveUnits& units);

/// An entry that is in its ranges, in feet and nautical miles.
MountainParameters FromEntry(const MountainEntry& entry, const WaveUnits& units);
MountainEntry ToEntry(const MountainParameters& mountains, const WaveUnits& units);

/// "Mountain height must be greater than the sounding station elevation." is the text of a box of
/// the title "Warning ..." for such a height.
bool IsBelowStation(double heightFt, const SoundingRecord& sounding);
inline constexpr std::string_view kBelowStation =
    "Mountain height must be greater than the\nsounding station elevation.";

}  // namespace vexa::mountainwave
