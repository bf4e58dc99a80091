// One sounding: a header and two independent profiles, temperature levels on pressure and wind
// levels on height, with the cloud-layer table that its user drew up. A plain value: the current
// sounding, every overlay, section column and forecast step is one of these.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/levels.h"

namespace vexa {

/// A position's magnitude split for the degrees-minutes-seconds notation.
struct AngleParts {
  std::string Degrees = "0";
  std::string Minutes = "00";
  std::string Seconds = "00";
  bool operator==(const AngleParts&) const = default;
};

/// One row of the cloud-layer table.
struct CloudLayer {
  std::string Type{};  // "ST", "SC", "NS", "CU", "CB", "AC", "AS", "CI"
  double Base = 0;     // hundreds of feet
  std::string Top{};
  int Code = 0;
  bool operator==(const CloudLayer&) const = default;
};

/// When the sounding was made, UTC, where its source says so.
struct ObservationTime {
  int Year = 0;  // 0: not known
  int Month = 0;
  int Day = 0;
  int Hour = 0;
  int Minute = 0;
  bool Known() const { return Year != 0; }
  bool operator==(const ObservationTime&) const = default;
};

struct SoundingRecord {
  // Header, in the order of the native file.
  std::string FileTag{};       // "VEXA 5.7": program word, blank, file version
  std::string StationTitle{};  // caption, at most kMaxTitle characters after loading
  double LatValue = 0;         // degrees or degrees.minutes-seconds, not negative
  std::string LatHemi{};       // "N" or "S"
  float LonValue = 0;          // as LatValue
  std::string LonHemi{};       // "E" or "W"
  double LatSigned = 0;        // decimal degrees, north positive
  double LonSigned = 0;        // decimal degrees, east positive
  AngleParts LatParts{};
  AngleParts LonParts{};
  std::string LatLonNotation = "dms";  // "dms" or "dec"
  int ElevM = 0;                       // metres above mean sea level; set by SetElevation
  double ElevFt = 0;
  bool ElevUnknown = false;
  std::string DataFormat{};   // "RAW", "CODED", "FSL", …: the format it was loaded from
  std::string FileFlavour{};  // "DOS" or "Windows"
  std::string CloudMode = "AUTO";
  std::string CloudOption = "AUTO";
  int NumExtraRecords = 0;                         // 0, 1 or 2
  std::array<double, 3> ExtraRecord1 = {0, 0, 0};  // first value: feet, 0 = not given
  std::array<double, 4> ExtraRecord2 = {0, 0, 0, 0};
  bool ExtraRecordsPresent = false;

  // Known from the source, not kept by the native file.
  int WmoNumber = 0;  // 0: none
  ObservationTime Time{};
  /// Where the source's own surface level could not be used: the pressure of the lowest level that
  /// took its place, hPa; else 0.
  double SurfaceLostBelow = 0;

  // Temperature levels, pressure falling.
  Levels<double> Press{};  // hPa
  Levels<double> Temp{};   // °C
  Levels<double> Dewpt{};  // °C, kMissing where not observed

  // Wind levels, height rising.
  Levels<double> WindHgt{};  // m above mean sea level
  Levels<double> WindDir{};  // degrees the wind blows from; 360 north, never 0
  Levels<double> WindSpd{};  // knots

  Levels<CloudLayer> Clouds{};

  // The winds as the analysis uses them; they come with AddWind and go with their levels.
  Levels<float> WorkWindDir{};
  Levels<float> WorkWindSpd{};

  int NumTempLevels() const { return Press.Count(); }
  int NumWindLevels() const { return WindHgt.Count(); }
  int NumCloudLayers() const { return Clouds.Count(); }

  /// South of the equator, where it turns the other way round; not where no position is known.
  bool IsSouthern() const { return LatHemi == "S"; }

  /// Whether a wind level has a wind: a marker in its height, direction or speed stands for none.
  bool HasWind(int level) const;
  /// Whether the working winds cover all wind levels.
  bool HasWorkWinds() const;

  void AddTemp(double press, double temp, double dewpt);
  /// A wind level with its working wind.
  void AddWind(double height, double direction, double speed);

  bool operator==(const SoundingRecord&) const = default;
};

inline constexpr int kMaxTitle = 54;

/// Puts every header field, level, cloud and working array back to its empty state. Every loader
/// begins with it.
void ClearData(SoundingRecord& record);

/// A caption cut to the characters that a title may have; a character of several bytes stays whole.
std::string CutTitle(std::string_view text, int most = kMaxTitle);

/// Sets ElevM and with it ElevFt; clears ElevUnknown.
void SetElevation(SoundingRecord& record, int elevM);

/// Marks the elevation as not given: ElevM and ElevFt become 0.
void SetElevationUnknown(SoundingRecord& record);

/// Sets the position from signed decimal degrees: magnitudes, hemispheres and notation "dec".
void SetDecimalPosition(SoundingRecord& record, double latSigned, double lonSigned);

/// Splits LatValue and LonValue, written degrees.minutes-seconds, into their parts and sets the
/// signed decimal degrees from them. A minutes or seconds part of one digit is completed with a
/// trailing 0 (35.5 is 35 degrees 50 minutes); an absent part keeps its default.
void ParseLatLon(SoundingRecord& record);

/// The parts of one magnitude written as degrees.mmss, by the rule of ParseLatLon.
AngleParts SplitAngle(std::string_view magnitude);

/// Decimal degrees of the parts; 0 for parts that are not numbers.
double DecimalDegrees(const AngleParts& parts);

}  // namespace vexa
