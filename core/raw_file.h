// The native sounding file: header, temperature rows, wind rows, cloud rows and up to two
// supplementary records of one sounding, as comma-separated text. The quick variant carries the
// file name ahead of all and one spare text. The text is read and written by pure functions; the
// named routines put files, message boxes and the sounding in work around them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/current_sounding.h"
#include "core/fault.h"
#include "core/files.h"
#include "core/interaction.h"
#include "core/sounding_record.h"

namespace vexa {

inline constexpr std::string_view kRawTag = "RAW";
inline constexpr std::string_view kProgramFileTag = "VEXA 5.7";
inline constexpr double kFirstVersionWithClouds = 2.12;  // older files have no cloud line and rows
inline constexpr int kMaxDosLevels = 48;

enum class RawVariant { Plain, Quick };

/// A wind row that was refused for its negative height.
struct RefusedWind {
  int Row = 0;  // among the wind rows, 1-based
  double Height = 0;
};

/// Version in a file tag, the number in its last four characters: "VEXA 5.7" is 5.7. 0 when there
/// is none.
double RawFileVersion(std::string_view fileTag);

/// Which native variant a text looks like by its first fields, a damaged one too; empty when it is
/// something else.
std::optional<RawVariant> RecogniseRaw(std::string_view text);

/// Reads a native file's text into a record that ClearData has emptied. On damage the fault names
/// the line and the reason, and the record keeps the whole levels read so far.
///
/// name  of the file, for the fault's detail
/// refused  gets the wind rows left out for their height
std::optional<Fault> ReadRaw(std::string_view text, std::string_view name, RawVariant variant,
                             SoundingRecord& into, std::vector<RefusedWind>& refused);

/// A record as the text of a native file. Positions in decimal degrees are converted to
/// degrees.minutes-seconds, to the second; a record without a tag, or with one too old for the
/// cloud line that is always written, gets the program's own; "DOS" files end at 48 levels of each
/// kind. Behind the last record a line says how many winds lie below sea level, if any: so they are
/// read again, whereas a negative height without that line is refused.
///
/// quickName  file name that the quick variant carries
std::string WriteRaw(const SoundingRecord& record, RawVariant variant = RawVariant::Plain,
                     std::string_view quickName = {});

/// The box that tells of a refused wind row.
Box WindHeightBox(const RefusedWind& refused);

/// Loads the file in work. The record is cleared first and keeps what was read before a fault.
Status LoadRAW(CurrentSounding& current);

/// Saves the sounding over the file in work; the old file survives any fault, and a damaged one
/// stays beside it as NAME.bak.
Status SaveRAW(CurrentSounding& current, FileOps& ops = SystemFileOps());

/// The same against the quick folder. Fewer than 2 temperature levels are refused with a box.
Status LoadRAWquick(CurrentSounding& current, std::string_view name);
Status SaveRAWquick(CurrentSounding& current, std::string_view name,
                    FileOps& ops = SystemFileOps());

}  // namespace vexa
