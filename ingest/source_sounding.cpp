#include "ingest/source_sounding.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/no_such_sounding.h"
#include "core/numbers.h"
#include "ingest/decoder.h"

namespace vexa::ingest {

namespace {

// Of the rows at the lowest pressure, of which a sonde has several, the last of the highest ones.
std::vector<SourceLevel>::iterator HighestOf(std::vector<SourceLevel>& levels) {
  auto top = std::ranges::min_element(levels, {}, [](const SourceLevel& level) {
    constexpr double kNone = 1e6;  // above every pressure
    return level.Press.value_or(kNone);
  });
  for (auto row = top; row != levels.end() && row->Press == top->Press; ++row) {
    if (row->Height.value_or(0) >= top->Height.value_or(0)) top = row;
  }
  return top;
}

}  // namespace

std::vector<SourceEntry> Entries(const std::vector<SoundingBlock>& blocks) {
  std::vector<SourceEntry> entries;
  entries.reserve(blocks.size());
  for (const SoundingBlock& block : blocks) {
    entries.push_back({Caption(block.Heading.Station, block.Heading.Time), block.Heading.Station,
                       block.Heading.Time});
  }
  return entries;
}

std::vector<SourceEntry> EntriesUnderHeadings(const std::vector<SoundingBlock>& blocks) {
  std::vector<SourceEntry> entries = Entries(blocks);
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    entries[i].FirstLine = blocks[i].FirstRow - 1;
    entries[i].EndLine = blocks[i].EndRow;
  }
  return entries;
}

Outcome<std::size_t> ChooseSounding(std::size_t count, const SourceText& source,
                                    LoadContext& context) {
  const auto index = static_cast<std::size_t>(context.Index);
  context.Count = std::max(1, static_cast<int>(count));
  if (count == 0) {
    return Fault{kFaultEndOfFile, "ChooseSounding", source.Name() + ": no sounding in it"};
  }
  if (context.Index < 0 || index >= count) {
    return NoSuchSounding("ChooseSounding", source.Name(), static_cast<int>(count), context.Index);
  }
  return index;
}

bool MayBeCutOff(const SourceText& source, int line) {
  return line == source.LineCount() && !source.Bytes().ends_with('\n');
}

void KeepAscent(std::vector<SourceLevel>& levels, std::vector<std::string>& notes) {
  if (levels.empty()) return;
  auto top = HighestOf(levels);
  if (!top->Press) return;
  if (levels.end() - top > top - levels.begin() + 1) {
    std::ranges::reverse(levels);
    top = HighestOf(levels);
  }
  const auto descent = levels.end() - top - 1;
  levels.erase(top + 1, levels.end());

  // On the ground the pressure hardly changes; from the last such row on the balloon rises.
  constexpr double kOnGround = 0.2;  // hPa
  constexpr std::ptrdiff_t kFewest = 5;
  const auto onGround = [&](const SourceLevel& level) {
    return level.Press && *level.Press >= *levels.front().Press - kOnGround;
  };
  std::ptrdiff_t ground = 0;
  if (levels.front().Press) {
    const auto release = std::ranges::find_if_not(levels, onGround);
    ground = std::max<std::ptrdiff_t>(0, release - levels.begin() - 1);
    if (ground < kFewest) ground = 0;
    levels.erase(levels.begin(), levels.begin() + ground);
  }
  const auto note = [&notes](std::string_view what, std::ptrdiff_t count) {
    if (count > 0) {
      notes.push_back(std::string(what) + ", left out: " + Shortest(static_cast<int>(count)));
    }
  };
  note("Rows before the release", ground);
  note("Rows after the highest point", descent);
}

void LocateStation(SourceHeading& heading, LoadContext& context) {
  StationName& name = heading.Station;
  if (context.Stations == nullptr) return;
  const bool hasPosition = heading.Lat && heading.Lon;
  const Station* station = name.Number != 0 ? context.Stations->Find(name.Number)
                                            : StationOfLetters(*context.Stations, name.Letters);
  if (station == nullptr) {
    if (hasPosition || name.Number == 0) return;
    // Asked twice by decoders that need the ground before they fill the record.
    std::string note = "Station " + Mask(name.Number, "00000") +
                       " is not in the station list; its position is not known.";
    if (std::ranges::find(context.Notes, note) == context.Notes.end()) {
      context.Notes.push_back(std::move(note));
    }
    return;
  }
  if (name.Letters.empty() && name.Name.empty()) {
    name.Letters = station->Ident;
    name.Name = station->Name;
    if (!station->Region.empty()) name.Name += (name.Name.empty() ? "" : ", ") + station->Region;
  }
  const bool takesElevation = !heading.Elevation && !station->ElevUnknown;
  if (takesElevation) heading.Elevation = station->ElevM;
  if (!hasPosition) {
    heading.Lat = station->LatSigned();
    heading.Lon = station->LonSigned();
    context.Notes.push_back(takesElevation ? "Position and elevation are those of the station list."
                                           : "The position is that of the station list.");
  } else if (takesElevation) {
    context.Notes.push_back("The elevation is that of the station list.");
  }
}

void FillRecord(SourceSounding sounding, std::string_view sourceName, LoadContext& context,
                SoundingRecord& into) {
  SourceHeading& heading = sounding.Heading;
  constexpr double kLowest = -500, kHighest = 9000;  // m; beyond them a marker
  const bool isGiven =
      heading.Elevation && *heading.Elevation >= kLowest && *heading.Elevation <= kHighest;
  SourceLevel* surface = SurfaceLevel(sounding.Levels);
  if (!isGiven) heading.Elevation = surface == nullptr ? std::nullopt : surface->Height;
  const bool isKnown = heading.Elevation.has_value();
  if (!IsPosition(heading.Lat, heading.Lon)) heading.Lat = heading.Lon = std::nullopt;
  LocateStation(heading, context);
  if (const auto fitting = isKnown ? std::nullopt : FittingGround(sounding.Levels)) {
    SettleGround(*fitting, heading.Elevation, context.Notes);
  }
  // Both profiles begin at the ground.
  if (surface != nullptr && !surface->Height) surface->Height = heading.Elevation;
  into.WmoNumber = heading.Station.Number;
  into.Time = heading.Time;
  const std::string caption = Caption(heading.Station, heading.Time);
  into.StationTitle = caption.empty() ? CutTitle(sourceName) : caption;
  SetPosition(into, heading.Lat, heading.Lon);
  if (heading.Elevation) {
    SetElevation(into, ToWhole(*heading.Elevation));
  } else {
    SetElevationUnknown(into);
  }
  FillProfiles(std::move(sounding.Levels), into, context.Notes);
  for (std::string& note : sounding.Notes) context.Notes.push_back(std::move(note));
  for (std::string& note : sounding.Refused.Notes()) context.Notes.push_back(std::move(note));
}

}  // namespace vexa::ingest
