// One sounding as a decoder reads it from its source: heading and rows, before they become a
// record. Files that hold many are cut into blocks, which the user chooses from by their headings.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fault.h"
#include "core/sounding_record.h"
#include "core/source_text.h"
#include "ingest/source_header.h"
#include "ingest/source_levels.h"

namespace vexa::ingest {

struct LoadContext;

/// What a user chooses a sounding of a file by.
struct SourceEntry {
  std::string Title{};
  StationName Station{};
  ObservationTime Time{};
  int FirstLine = 0;  // of its text in the file; 0 where its lines are not known
  int EndLine = 0;    // behind the last
};

struct SourceHeading {
  StationName Station{};
  ObservationTime Time{};
  std::optional<double> Lat{}, Lon{};  // degrees, north and east positive
  std::optional<double> Elevation{};   // m above mean sea level
};

struct SourceSounding {
  SourceHeading Heading{};
  std::vector<SourceLevel> Levels{};
  Refusals Refused{};
  std::vector<std::string> Notes{};
};

/// A sounding's place in its file.
struct SoundingBlock {
  SourceHeading Heading{};
  int FirstRow = 0;  // line of the first data row, or of the heading that leads to it
  int EndRow = 0;    // line behind the last
};

std::vector<SourceEntry> Entries(const std::vector<SoundingBlock>& blocks);

/// The same with the lines of each: for blocks that begin behind a heading of one line.
std::vector<SourceEntry> EntriesUnderHeadings(const std::vector<SoundingBlock>& blocks);

/// The chosen one of so many soundings; notes that there were others. Fault 62 when the file holds
/// none, 63 when not that many.
Outcome<std::size_t> ChooseSounding(std::size_t count, const SourceText& source,
                                    LoadContext& context);

/// True for a last line without its end, which may have lost figures.
bool MayBeCutOff(const SourceText& source, int line);

/// Rows of an instrument in the order of time become one ascent: what was measured before the
/// release and after the highest point goes, and a descent is turned round. Notes what went.
void KeepAscent(std::vector<SourceLevel>& levels, std::vector<std::string>& notes);

/// Station lookup: a heading with a number only gets letters and name from the station list; one
/// without a position gets that too, and the elevation where it has none of its own, with a note.
/// One without a number gets a position by its letters, where a single station has them. Without a
/// list, or when the list lacks the station, nothing changes.
void LocateStation(SourceHeading& heading, LoadContext& context);

/// Makes the record: header, both profiles, notes. The elevation is the heading's, else the height
/// of the lowest row with a temperature, else the station list's.
void FillRecord(SourceSounding sounding, std::string_view sourceName, LoadContext& context,
                SoundingRecord& into);

}  // namespace vexa::ingest
