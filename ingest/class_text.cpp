#include "ingest/class_text.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/decode_block.h"
#include "ingest/source_columns.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kClassTextTag = "CLASS";
constexpr int kMostClassTextHeading = 60;

bool IsOpening(std::string_view line) {
  return line.starts_with("Data Type:") || line.starts_with("Data Type/Direction:");
}

bool IsDashes(std::string_view line) {
  const std::vector<std::string_view> words = Tokens(line);
  return words.size() >= 6 && std::ranges::all_of(words, [](std::string_view word) {
           return word.find_first_not_of('-') == std::string_view::npos;
         });
}

// Behind the label, whose brackets may hold colons too.
std::string_view Value(std::string_view line) {
  const std::size_t colon = line.find(':');
  return colon == std::string_view::npos ? line : Trim(line.substr(colon + 1));
}

std::optional<ObservationTime> TimeIn(std::string_view value) {
  return ParseIsoTime(value);
}

// "106 37.38'W, 35 02.29'N, -106.623, 35.038, 1619.0" and, in the later form,
// "101 22.24'W -101.370695, 39 21.45'N 39.357463, 1036.00": of the plain numbers the last three.
void ReadLocation(std::string_view value, SourceHeading& heading) {
  std::string text(value);
  std::ranges::replace(text, ',', ' ');
  std::vector<double> plain;
  bool isMinutes = false;
  for (const std::string_view word : Tokens(text)) {
    const std::optional<double> number = ParseNumber(word);
    if (!number) {
      // "37.38'W" with the degrees ahead of it
      isMinutes = word.find('\'') != std::string_view::npos;
      if (isMinutes && !plain.empty()) plain.pop_back();
    } else {
      plain.push_back(*number);
    }
  }
  if (plain.size() < 3) return;
  heading.Lon = plain[plain.size() - 3];
  heading.Lat = plain[plain.size() - 2];
  heading.Elevation = plain.back();
}

// "KABQ Albuquerque, NM / 72365". Without the number, as in "IOP 18 - CI", the first word need not
// be the letters of a station.
void ReadSite(std::string_view value, StationName& station) {
  const std::size_t slash = value.rfind('/');
  std::string_view name = Trim(value.substr(0, slash));
  if (slash != std::string_view::npos) {
    const std::string_view number = Trim(value.substr(slash + 1));
    if (number.size() == 5) station.Number = ParseWhole(number).value_or(0);
  }
  const std::string_view first = name.substr(0, name.find(' '));
  const bool isLetters = station.Number != 0 && first.size() >= 3 && first.size() <= 4 &&
                         std::ranges::all_of(first, [](char c) { return c >= 'A' && c <= 'Z'; });
  if (isLetters) {
    station.Letters = first;
    name = Trim(name.substr(first.size()));
  }
  station.Name = name;
}

struct ClassBlock {
  SoundingBlock Place{};
  std::optional<ObservationTime> Nominal{}, Release{};
};

void ReadLabel(std::string_view line, ClassBlock& block) {
  const auto starts = [line](std::string_view label) { return line.starts_with(label); };
  const std::string_view value = Value(line);
  if (starts("Release Site") || starts("Launch Site")) {
    ReadSite(value, block.Place.Heading.Station);
  } else if (starts("Release Location") || starts("Launch Location")) {
    ReadLocation(value, block.Place.Heading);
  } else if (starts("Nominal Release Time")) {
    block.Nominal = TimeIn(value);
  } else if (starts("UTC Release Time") || starts("UTC Launch Time")) {
    block.Release = TimeIn(value);
  }
}

// FirstRow is the line behind the dashes; a block without them has no rows.
std::vector<ClassBlock> ClassBlocks(const SourceText& source) {
  std::vector<ClassBlock> blocks;
  bool inHeading = false;
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = source.Line(line);
    if (IsOpening(text)) {
      if (!blocks.empty()) blocks.back().Place.EndRow = line;
      blocks.push_back({.Place = {.EndRow = source.LineCount() + 1}});
      inHeading = true;
    } else if (inHeading && IsDashes(text)) {
      blocks.back().Place.FirstRow = line + 1;
      inHeading = false;
    } else if (inHeading) {
      ReadLabel(text, blocks.back());
    }
  }
  for (ClassBlock& block : blocks) {
    const std::optional<ObservationTime>& time = block.Nominal ? block.Nominal : block.Release;
    block.Place.Heading.Time = time.value_or(ObservationTime{});
  }
  return blocks;
}

// Values stand flush right under the dashes, without a blank in between where they are widest.
std::vector<std::string_view> Cut(std::string_view line, std::string_view dashes) {
  std::vector<std::string_view> fields;
  std::size_t begin = 0;
  for (const std::string_view dash : Tokens(dashes)) {
    const auto end = static_cast<std::size_t>(dash.data() - dashes.data()) + dash.size();
    fields.push_back(begin < line.size() ? Trim(line.substr(begin, end - begin))
                                         : std::string_view());
    begin = end;
  }
  return fields;
}

Outcome<SourceSounding> ReadBlock(const SourceText& source, const ClassBlock& block) {
  const SoundingBlock& place = block.Place;
  SourceSounding sounding{.Heading = place.Heading};
  if (place.FirstRow < 4) {
    return Fault{kFaultEndOfFile, "DecodeClassText", source.Name() + ": a heading without rows"};
  }
  const std::string_view dashes = source.Line(place.FirstRow - 1);
  const std::vector<QuantityColumn> plan = PlanColumns(
      Cut(source.Line(place.FirstRow - 3), dashes), Cut(source.Line(place.FirstRow - 2), dashes));
  if (!Holds(plan, Quantity::Press)) {
    return Fault{kFaultNonStandard, "DecodeClassText",
                 AtLine(source, place.FirstRow - 3, "no column of pressures")};
  }
  for (int line = place.FirstRow; line < place.EndRow; ++line) {
    const std::string_view text = source.Line(line);
    if (Trim(text).empty()) continue;
    if (MayBeCutOff(source, line) && text.size() < dashes.size()) {
      sounding.Notes.push_back("The last row is cut off and was left out.");
      continue;
    }
    SourceLevel level;
    if (const std::optional<std::string> bad =
            ReadRow(Cut(text, dashes), plan, sounding.Refused, level)) {
      return Fault{kFaultEndOfFile, "DecodeClassText",
                   AtLine(source, line, '"' + *bad + "\" is not a number")};
    }
    sounding.Levels.push_back(level);
  }
  KeepAscent(sounding.Levels, sounding.Notes);
  if (block.Release && block.Release != place.Heading.Time) {
    sounding.Notes.push_back("Released at " + Mask(block.Release->Hour, "00") +
                             Mask(block.Release->Minute, "00") + "Z on day " +
                             Mask(block.Release->Day, "00") + '.');
  }
  return sounding;
}

}  // namespace

bool IsClassText(const SourceText& source) {
  bool isOpened = false;
  for (int line = 1; line <= std::min(source.LineCount(), kMostClassTextHeading); ++line) {
    const std::string_view text = source.Line(line);
    if (!isOpened && !Trim(text).empty() && !IsOpening(text)) return false;
    isOpened = isOpened || IsOpening(text);
    if (isOpened && IsDashes(text)) return true;
  }
  return false;
}

std::vector<SourceEntry> ListClassText(const SourceText& source) {
  std::vector<SoundingBlock> places;
  for (ClassBlock& block : ClassBlocks(source)) places.push_back(std::move(block.Place));
  return Entries(places);
}

std::optional<Fault> DecodeClassText(const SourceText& source, LoadContext& context,
                                     SoundingRecord& into) {
  return DecodeBlock(source, context, into, ClassBlocks, ReadBlock, kClassTextTag);
}

}  // namespace vexa::ingest
