// The columns of a section: its soundings, each with what was computed of it once, in their order
// along a line of stations or in time.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/adiabat_table.h"
#include "analysis/analysis.h"
#include "core/great_circle.h"
#include "core/sounding_record.h"

namespace vexa::crosssection {

enum class SectionKind { Distance, Time };
enum class SectionDirection { Forward, Reverse };

constexpr auto Words(SectionKind) {
  return std::to_array<std::string_view>({"DISTANCE", "TIME"});
}
constexpr auto Words(SectionDirection) {
  return std::to_array<std::string_view>({"FORWARD", "REVERSE"});
}

/// A value of a column at a height.
struct ProfilePoint {
  double Height = 0;  // m above mean sea level
  double Press = 0;   // hPa
  double Value = 0;   // kMissing: none
};
using ProfileOf = std::vector<ProfilePoint>;

struct Column {
  SoundingRecord Sounding{};
  std::string Source{};         // the file that it came from
  bool IsInterpolated = false;  // between its neighbours
  int Order = 0;                // in which the soundings were given
  double X = 0;                 // km along the section, or hours since the earliest

  // Computed once.
  analysis::LevelProfile Levels{};
  analysis::LayerResults Layers{};
  std::vector<analysis::LevelPoint> Tropopauses{};
  std::vector<analysis::LevelPoint> FreezingLevels{};
  ProfileOf Water{};                        // liquid water of its clouds, g/m³
  std::vector<analysis::AirLayer> Waves{};  // turbulence of mountain waves, from whoever knows it

  double Ground() const { return Levels.Count() > 0 ? Levels.Height(1) : Sounding.ElevM; }
  bool HasPosition() const { return !Sounding.LatHemi.empty() && !Sounding.LonHemi.empty(); }
};

/// A sounding as a column. The table of adiabats is kept from one to the next.
Column ColumnOf(SoundingRecord sounding, std::string source, const AnalysisSettings& set,
                analysis::AdiabatTable& adiabats);

using vexa::DistanceKm;
using vexa::HoursBetween;
using vexa::InitialBearing;

/// A place in degrees beside a line between two others: how far along it from its begin, and how
/// far from it or, beyond its ends, from these; km.
struct GlobePlace {
  double Lat = 0, Lon = 0;
};
struct LinePlace {
  double AlongKm = 0;
  double BesideKm = 0;
};
LinePlace PlaceOnLine(const GlobePlace& from, const GlobePlace& to, const GlobePlace& at);

/// A section: its columns in their order with their places.
struct Section {
  SectionKind Kind = SectionKind::Distance;
  SectionDirection Direction = SectionDirection::Forward;
  std::string Name{};  // of its dataset; empty: none
  std::vector<Column> Columns{};

  /// From the first to the last place; 0 where all share one.
  double RangeX() const { return Columns.empty() ? 0 : Columns.back().X - Columns.front().X; }
  /// Direction from the first column to the last, degrees; 360 for a section in time.
  double Bearing() const;
};

inline constexpr std::size_t kLeastColumns = 2;
inline constexpr std::size_t kMostColumns = 1000;

/// Orders columns and gives them their places. Along a line: by the first principal axis of the
/// stations, beginning at the end where the first of them stands, cumulated from station to
/// station. In time: hours since the earliest. REVERSE mirrors the places.
void Arrange(Section& section);

/// Turns a section round.
void FlipTime(Section& section);

/// Why no section can be made of these columns, a sentence; empty when it can.
std::string WhyNoSection(const Section& section);
/// What is odd about it and told beside it, each a sentence.
std::vector<std::string> SectionRemarks(const Section& section);

/// The sounding half-way, or at another share, between two: levels of both below one another, with
/// T, Td and the components of the wind linear at equal pressure. The ground lies between theirs,
/// and so does the pressure there.
SoundingRecord Interpolated(const Column& left, const Column& right, double share = 0.5);

/// Puts an interpolated column between all neighbours ("Automatic Sounding Interpolation").
void InterpolateSoundings(Section& section, const AnalysisSettings& set,
                          analysis::AdiabatTable& adiabats);

/// "07-14/1800Z" for labels; empty when not known.
std::string TimeText(const ObservationTime& time);
/// What stands under the axis for a column: the letters or number of its station, or its time.
std::string ShortName(const Column& column, SectionKind kind);

}  // namespace vexa::crosssection
