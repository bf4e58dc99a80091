// One station of the locator file, and its fields as a user types them: each is checked for
// itself, so that an editor can speak at the field that is wrong.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/fault.h"

namespace vexa {

struct Station {
  int Number = 0;       // WMO block and station number, five digits
  std::string Ident{};  // call sign or letters; may be empty
  std::string Name{};
  std::string Region{};  // state or country; may be empty
  int ElevM = 0;         // m above mean sea level
  bool ElevUnknown = false;
  double Lat = 0;  // degrees, magnitude
  std::string LatHemi = "N";
  double Lon = 0;  // degrees, magnitude
  std::string LonHemi = "E";

  double LatSigned() const { return LatHemi == "S" ? -Lat : Lat; }
  double LonSigned() const { return LonHemi == "W" ? -Lon : Lon; }
  bool operator==(const Station&) const = default;
};

inline constexpr int kEndOfStations = 99999;  // the number that closes the file

/// The fields in the order of the file.
enum class StationField {
  Number,
  Ident,
  Name,
  Region,
  Elevation,
  Latitude,
  LatHemi,
  Longitude,
  LonHemi
};
inline constexpr int kStationFields = 9;

/// "Station number", "Latitude" and so on, for captions and faults.
std::string_view Text(StationField field);

/// A station's fields as texts, by StationField.
using StationTexts = std::array<std::string, kStationFields>;

/// The fields as an editor shows them: five digits, four decimals, -999 for an unknown elevation.
StationTexts TextsOf(const Station& station);

/// Fault 380 with "field: reason" when a typed text is no value for the field.
std::optional<Fault> CheckStationField(StationField field, std::string_view text);

/// A station from typed texts; the fault of the first field that is wrong.
Outcome<Station> StationFrom(const StationTexts& texts);

/// The same without the checks: what is no number becomes 0.
Station UncheckedStation(const StationTexts& texts);

/// The shortest name of a station that a sounding's title gives, for maps and axes: of
/// "72357 - OUN - Norman, OK  00Z" it is "OUN", of "Vienna/Hohe Warte" "Vienna".
///
/// most  characters; empty where the title says nothing
std::string ShortStationName(std::string_view title, int most = 14);

/// The WMO number in front of a sounding's title: of "72357 - OUN - Norman" it is 72357; 0 without
/// one.
int StationNumberInTitle(std::string_view title);

/// "03772 - EGLL - LONDON, UNITED KINGDOM": the title of a sounding of this station. What the file
/// leaves empty is left out with its separator.
std::string StationCaption(const Station& station);

}  // namespace vexa
