#include "ingest/igra.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "ingest/decode_block.h"
#include "ingest/source_columns.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kIgraTag = "IGRA";

// Columns first to last, counted from 1 as in the archive's description.
std::string_view Columns(std::string_view line, std::size_t first, std::size_t last) {
  return first <= line.size() ? line.substr(first - 1, last - first + 1) : std::string_view();
}

int Whole(std::string_view line, std::size_t first, std::size_t last, int otherwise) {
  return ParseWhole(Columns(line, first, last)).value_or(otherwise);
}

bool IsHeader(std::string_view line) {
  constexpr int kFirstYear = 1900, kLastYear = 2100;
  if (!line.starts_with('#')) return false;
  const std::string_view id = Columns(line, 2, 12);
  const int year = Whole(line, 14, 17, 0);
  return id.size() == 11 && id.find(' ') == id.npos && year >= kFirstYear && year <= kLastYear;
}

// A header of the data file names its sources, one of the derived file has numbers only.
bool IsDerived(std::string_view header) {
  const std::string_view sources = Columns(header, 38, 54);
  return std::ranges::none_of(sources, [](char c) { return c >= 'a' && c <= 'z'; });
}

SourceHeading ReadHeader(std::string_view line) {
  SourceHeading heading;
  const std::string_view id = Columns(line, 2, 12);
  constexpr std::size_t kNetwork = 2;
  if (id[kNetwork] == 'M') heading.Station.Number = ParseWhole(id.substr(6)).value_or(0);
  if (heading.Station.Number == 0) heading.Station.Letters = id;
  constexpr int kUnknownHour = 99;
  int hour = Whole(line, 25, 26, kUnknownHour);
  if (hour == kUnknownHour) hour = Whole(line, 28, 29, kUnknownHour);
  heading.Time =
      MakeTime(Whole(line, 14, 17, 0), Whole(line, 19, 20, 0), Whole(line, 22, 23, 0), hour)
          .value_or(ObservationTime{});
  constexpr double kUnits = 10000;
  const std::optional<double> lat = ParseNumber(Columns(line, 56, 62));
  const std::optional<double> lon = ParseNumber(Columns(line, 64, 71));
  if (lat && lon) {
    heading.Lat = *lat / kUnits;
    heading.Lon = *lon / kUnits;
  }
  return heading;
}

std::vector<SoundingBlock> IgraBlocks(const SourceText& source) {
  std::vector<SoundingBlock> blocks;
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = source.Line(line);
    if (!IsHeader(text)) continue;
    if (!blocks.empty()) blocks.back().EndRow = line;
    blocks.push_back({ReadHeader(text), line + 1, source.LineCount() + 1});
  }
  return blocks;
}

struct IgraField {
  std::size_t First, Last;  // columns
  Quantity What;
  Scale ToOurs;
};
constexpr std::array kIgraFields = {
    IgraField{10, 15, Quantity::Press, {.Over = 100}},
    IgraField{17, 21, Quantity::Height, {}},
    IgraField{23, 27, Quantity::Temp, {.Over = 10}},
    IgraField{29, 33, Quantity::Humidity, {.Over = 10}},
    IgraField{35, 39, Quantity::Depression, {.Over = 10}},
    IgraField{41, 45, Quantity::Direction, {}},
    IgraField{47, 51, Quantity::Speed, {.Times = kMsToKnot, .Over = 10}},
};

constexpr std::array<QuantityColumn, kIgraFields.size()> PlanOfIgraFields() {
  std::array<QuantityColumn, kIgraFields.size()> plan;
  for (std::size_t i = 0; i < plan.size(); ++i) {
    plan[i] = {.Column = i, .What = kIgraFields[i].What, .ToOurs = kIgraFields[i].ToOurs};
  }
  return plan;
}

std::optional<std::string> ReadLevel(std::string_view line, Refusals& refused, SourceLevel& into) {
  static constexpr std::array kPlan = PlanOfIgraFields();
  std::array<std::string_view, kIgraFields.size()> texts;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string_view text = Trim(Columns(line, kIgraFields[i].First, kIgraFields[i].Last));
    // Not observed, and removed by the archive's checks.
    const bool isMissing = text == "-9999" || text == "-8888";
    if (!isMissing) texts[i] = text;
  }
  return ReadRow(texts, kPlan, refused, into);
}

Outcome<SourceSounding> ReadIgraBlock(const SourceText& source, const SoundingBlock& block) {
  SourceSounding sounding{.Heading = block.Heading};
  const int announced = Whole(source.Line(block.FirstRow - 1), 33, 36, 0);
  const int end = std::min(block.EndRow, block.FirstRow + std::max(0, announced));
  constexpr std::size_t kRowWidth = 51;
  int rows = 0;
  sounding.Levels.reserve(static_cast<std::size_t>(std::max(0, end - block.FirstRow)));
  for (int line = block.FirstRow; line < end; ++line) {
    const std::string_view text = source.Line(line);
    if (Trim(text).empty() || (MayBeCutOff(source, line) && text.size() < kRowWidth)) continue;
    ++rows;
    SourceLevel level;
    if (const std::optional<std::string> bad = ReadLevel(text, sounding.Refused, level)) {
      return Fault{kFaultEndOfFile, "DecodeIgra",
                   AtLine(source, line, '"' + *bad + "\" is not a number")};
    }
    sounding.Levels.push_back(level);
  }
  if (rows < announced) {
    sounding.Notes.push_back("The heading announces " + Shortest(announced) + " levels, " +
                             Shortest(rows) + " are there.");
  }
  return sounding;
}

}  // namespace

bool IsIgra(const SourceText& source) {
  constexpr int kMostBlankLines = 20;
  for (int line = 1; line <= std::min(source.LineCount(), kMostBlankLines); ++line) {
    if (!Trim(source.Line(line)).empty()) return IsHeader(source.Line(line));
  }
  return false;
}

std::vector<SourceEntry> ListIgra(const SourceText& source) {
  return EntriesUnderHeadings(IgraBlocks(source));
}

std::optional<Fault> DecodeIgra(const SourceText& source, LoadContext& context,
                                SoundingRecord& into) {
  const auto read = [](const SourceText& text,
                       const SoundingBlock& block) -> Outcome<SourceSounding> {
    if (!IsDerived(text.Line(block.FirstRow - 1))) return ReadIgraBlock(text, block);
    return Fault{kFaultNonStandard, "DecodeIgra",
                 text.Name() + ": holds the archive's derived parameters, not its soundings"};
  };
  return DecodeBlock(source, context, into, IgraBlocks, read, kIgraTag);
}

}  // namespace vexa::ingest
