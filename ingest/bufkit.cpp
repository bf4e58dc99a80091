#include "ingest/bufkit.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/decode_block.h"
#include "ingest/source_columns.h"
#include "ingest/source_levels.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kBufkitTag = "FCST";
constexpr int kMostBufkitHeading = 20;

// The value behind "NAME =", empty when another name follows at once.
std::string_view BufkitValue(std::string_view line, std::string_view name) {
  const std::vector<std::string_view> words = Tokens(line);
  for (std::size_t i = 0; i + 2 < words.size(); ++i) {
    if (words[i] != name || words[i + 1] != "=") continue;
    const bool isName = i + 3 < words.size() && words[i + 3] == "=";
    return isName ? std::string_view() : words[i + 2];
  }
  return {};
}

int FindNames(const SourceText& source) {
  for (int line = 1; line <= std::min(source.LineCount(), kMostBufkitHeading); ++line) {
    if (source.Line(line).starts_with("SNPARM")) return line;
  }
  return 0;
}

// "SNPARM = PRES;TMPC;...;HGHT"
std::vector<std::string_view> NamesOf(const SourceText& source) {
  const int line = FindNames(source);
  if (line == 0) return {};
  const std::string_view text = source.Line(line);
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return {};
  return SplitFields(text.substr(equals + 1), ';');
}

void ReadStation(std::string_view line, SourceHeading& heading) {
  heading.Station.Letters = BufkitValue(line, "STID");
  const std::string_view number = BufkitValue(line, "STNM");
  // The WMO number times ten, or a number of the producer's own.
  constexpr std::size_t kFigures = 6;
  if (number.size() == kFigures && number.ends_with('0')) {
    heading.Station.Number = ParseWhole(number.substr(0, kFigures - 1)).value_or(0);
  }
  heading.Time = ParseCompactTime(BufkitValue(line, "TIME")).value_or(ObservationTime{});
}

std::vector<SoundingBlock> BufkitBlocks(const SourceText& source) {
  std::vector<SoundingBlock> blocks;
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = source.Line(line);
    if (text.starts_with("STID")) {
      if (!blocks.empty() && blocks.back().EndRow == 0) blocks.back().EndRow = line;
      blocks.push_back({.FirstRow = line + 1});
      ReadStation(text, blocks.back().Heading);
    } else if (!blocks.empty() && text.starts_with("SLAT")) {
      SourceHeading& heading = blocks.back().Heading;
      heading.Lat = ParseNumber(BufkitValue(text, "SLAT"));
      heading.Lon = ParseNumber(BufkitValue(text, "SLON"));
      heading.Elevation = ParseNumber(BufkitValue(text, "SELV"));
    } else if (!blocks.empty() && blocks.back().EndRow == 0 && text.starts_with("STN ")) {
      blocks.back().EndRow = line;  // the surface values of all times follow
    }
  }
  if (!blocks.empty() && blocks.back().EndRow == 0) blocks.back().EndRow = source.LineCount() + 1;
  return blocks;
}

// Line behind the column names, which may be wrapped; 0 when they are not there.
int FindFirstRow(const SourceText& source, const SoundingBlock& block,
                 const std::vector<std::string_view>& names) {
  for (int line = block.FirstRow; line < block.EndRow; ++line) {
    const std::vector<std::string_view> words = Tokens(source.Line(line));
    if (words.size() < 2 || words[0] != names[0] || words[1] != names[1]) continue;
    std::size_t found = words.size();
    while (found < names.size() && ++line < block.EndRow) {
      found += Tokens(source.Line(line)).size();
    }
    return line + 1;
  }
  return 0;
}

// The lowest level of a model floats some metres above its ground. Here the profile begins on the
// ground: as the ground the level keeps all heights above the sea.
void TakeLowestLevelAsGround(SourceSounding& sounding) {
  const SourceLevel* lowest = SurfaceLevel(sounding.Levels);
  std::optional<double>& elevation = sounding.Heading.Elevation;
  if (lowest == nullptr || !lowest->Height || !elevation || *lowest->Height == *elevation) return;
  sounding.Notes.push_back("The model's ground lies at " + Mask(*elevation, "###0") +
                           " m; its lowest level, at " + Mask(*lowest->Height, "###0") +
                           " m, stands for it.");
  elevation = lowest->Height;
}

// Numbers follow each other, a level's values wrapped as the names are.
Outcome<SourceSounding> ReadBufkitBlock(const SourceText& source, const SoundingBlock& block) {
  SourceSounding sounding{.Heading = block.Heading};
  const std::vector<std::string_view> names = NamesOf(source);
  const std::vector<QuantityColumn> plan = PlanColumns(names);
  const int first = names.size() < 2 ? 0 : FindFirstRow(source, block, names);
  if (first == 0 || !Holds(plan, Quantity::Press)) {
    return Fault{kFaultEndOfFile, "DecodeBufkit",
                 AtLine(source, block.FirstRow, "no column names of the profile")};
  }
  std::vector<std::string_view> values;
  for (int line = first; line < block.EndRow; ++line) {
    if (Trim(source.Line(line)).empty()) continue;
    for (const std::string_view word : Tokens(source.Line(line))) values.push_back(word);
    if (values.size() < names.size()) continue;
    SourceLevel level;
    if (const std::optional<std::string> bad = ReadRow(values, plan, sounding.Refused, level)) {
      return Fault{kFaultEndOfFile, "DecodeBufkit",
                   AtLine(source, line, '"' + *bad + "\" is not a number")};
    }
    const bool isCutOff = MayBeCutOff(source, line);
    if (isCutOff) break;
    sounding.Levels.push_back(level);
    values.clear();
  }
  if (!values.empty()) sounding.Notes.push_back("The last level is cut off and was left out.");
  TakeLowestLevelAsGround(sounding);
  return sounding;
}

}  // namespace

bool IsBufkit(const SourceText& source) {
  return FindNames(source) != 0;
}

std::vector<SourceEntry> ListBufkit(const SourceText& source) {
  return EntriesUnderHeadings(BufkitBlocks(source));
}

std::optional<Fault> DecodeBufkit(const SourceText& source, LoadContext& context,
                                  SoundingRecord& into) {
  return DecodeBlock(source, context, into, BufkitBlocks, ReadBufkitBlock, kBufkitTag);
}

}  // namespace vexa::ingest
