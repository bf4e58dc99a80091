// The station locator file VEXA.STN: read and checked at start-up, looked into whenever a sounding
// names its station by number only, written by the station editor, and brought up to date when its
// positions still stand in degrees and minutes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/current_sounding.h"
#include "core/fault.h"
#include "core/files.h"
#include "core/interaction.h"
#include "core/sounding_record.h"
#include "core/station_list.h"

namespace vexa {

inline constexpr std::string_view kStationFileName = "VEXA.STN";
inline constexpr std::string_view kStationBackupName = "VEXASTN.BAK";

enum class StationTrouble { None, Header, Format, Sequence, Quadrant, EndOfFile };

/// The first thing wrong with a locator file.
struct StationFinding {
  StationTrouble Kind = StationTrouble::None;
  int Number = 0;        // station at or before which it lies; 0 ahead of the first
  std::string Detail{};  // file, line and reason
};

struct StationReading {
  StationList List{};
  StationFinding Finding{};
};

/// Reads a locator file's text. Free lines head it up to the first that begins with a digit; among
/// them must stand the two markers. What follows is read field by field up to the number 99999.
/// After a fault in a record the reading goes on with the next line; the line of the fault is kept
/// in the list as it stands. Of equal numbers the first is the station.
StationReading ReadStations(std::string_view text, std::string_view name);

/// A list as the text of a locator file, positions with four decimals, with the lines that are no
/// stations where they stood.
std::string WriteStations(const StationList& list);

/// The warning that tells the user what is wrong with the locator file, and where.
Box StationBox(const StationFinding& finding);

/// Start-up validation: reads the file of the root folder and tells the user of its first fault;
/// the status text is then "error". A file that cannot be read is reported as such and gives an
/// empty list.
Status LoadStations(CurrentSounding& current, const std::filesystem::path& root, StationList& into);

/// Writes the list to the root folder. Faults as of SaveUserFile.
[[nodiscard]] std::optional<Fault> SaveStations(const std::filesystem::path& root,
                                                const StationList& list,
                                                FileOps& ops = SystemFileOps());

/// Station lookup: when the list has the number, sets the record's elevation, position and title
/// and gives true; else the record stays as it was. The elevation in feet is a whole number here.
bool FindStation(const StationList& list, int number, SoundingRecord& record);

/// True for a list whose positions stand in degrees.minutes: its header does not say that they are
/// decimal degrees, and no position has minutes beyond 59.
bool NeedsConversion(const StationList& list);

/// The list with positions of degrees.minutes turned into decimal degrees, rounded to four
/// decimals, and with a header that says so.
StationList ConvertStations(const StationList& list);

/// Asks the user and converts the file of the root folder; the old one stays beside it under
/// VEXASTN.BAK. Status::Ok when nothing had to be done or all went well, with the new list in
/// `list`; Status::Error when the user declines or a file cannot be written: `list` and the file
/// stay as they were.
///
/// list  what LoadStations has read without a fault
Status ConvertStationFile(CurrentSounding& current, const std::filesystem::path& root,
                          StationList& list, FileOps& ops = SystemFileOps());

}  // namespace vexa
