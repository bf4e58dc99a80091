#include "ingest/td6201.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "ingest/decode_block.h"
#include "ingest/source_columns.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kTd6201Tag = "TD6201";
constexpr std::size_t kHead = 32, kLevel = 36;

bool AllFigures(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// "3515N" and "09712W", degrees and minutes.
std::optional<double> Degrees(std::string_view figures, char letter, std::string_view letters) {
  if (letters.find(letter) == std::string_view::npos || !AllFigures(figures)) return std::nullopt;
  const int coded = ParseWhole(figures).value_or(0);
  constexpr int kMinutes = 60;
  if (coded % 100 >= kMinutes) return std::nullopt;
  const double degrees = coded / 100 + coded % 100 / double{kMinutes};
  return letter == letters.back() ? -degrees : degrees;
}

// "00013967" "3524N" "09736W" "1965060312" "040": empty for any other line.
std::optional<SourceHeading> ReadHead(std::string_view line) {
  if (line.size() < kHead) return std::nullopt;
  const std::string_view id = Trim(line.substr(0, 8)), date = line.substr(19, 10);
  if (id.empty() || id.find(' ') != id.npos || !AllFigures(date)) return std::nullopt;
  SourceHeading heading;
  heading.Lat = Degrees(line.substr(8, 4), line[12], "NS");
  heading.Lon = Degrees(line.substr(13, 5), line[18], "EW");
  const auto part = [date](std::size_t from, std::size_t count) {
    return ParseWhole(date.substr(from, count)).value_or(-1);
  };
  const auto time = MakeTime(part(0, 4), part(4, 2), part(6, 2), part(8, 2));
  if (!heading.Lat || !heading.Lon || !time || !AllFigures(Trim(line.substr(29, 3)))) {
    return std::nullopt;
  }
  heading.Time = *time;
  // Numbers of the weather service, not of the WMO: nothing to look up.
  heading.Station.Letters = id.substr(std::min(id.find_first_not_of('0'), id.size() - 1));
  return heading;
}

std::vector<SoundingBlock> BlocksOf(const SourceText& source) {
  std::vector<SoundingBlock> blocks;
  for (int line = 1; line <= source.LineCount(); ++line) {
    std::optional<SourceHeading> heading = ReadHead(source.Line(line));
    if (!heading) continue;
    if (!blocks.empty()) blocks.back().EndRow = line;
    blocks.push_back({std::move(*heading), line, source.LineCount() + 1});
  }
  return blocks;
}

// Missing values are nines through the whole field, but for the place of a sign: "  9" is a nine
// and "  9999" in the six figures of a height are 9999 m.
bool IsMissingField(std::string_view field, bool isSigned) {
  if (Trim(field).empty()) return true;
  if (isSigned && (field.front() == '-' || field.front() == ' ')) field.remove_prefix(1);
  return field.find_first_not_of('9') == std::string_view::npos;
}

std::optional<std::string> ReadTd6201Level(std::string_view text, Refusals& refused, SourceLevel& into) {
  struct Field {
    std::size_t First, Width;
    Quantity What;
    Scale ToOurs;
    bool IsSigned = false;
  };
  // Behind a figure for the quality and four for the time.
  static constexpr Field kFields[] = {
      {5, 5, Quantity::Press, {.Over = 10}},
      {10, 6, Quantity::Height, {}, true},
      {16, 4, Quantity::Temp, {.Over = 10}, true},
      {20, 3, Quantity::Humidity, {}},
      {23, 3, Quantity::Direction, {}},
      {26, 3, Quantity::Speed, {kMsToKnot}},
  };
  std::vector<std::string_view> fields;
  std::vector<QuantityColumn> plan;
  for (const Field& field : kFields) {
    const std::string_view value = text.substr(field.First, field.Width);
    plan.push_back({fields.size(), field.What, field.ToOurs});
    fields.push_back(IsMissingField(value, field.IsSigned) ? std::string_view() : value);
  }
  return ReadRow(fields, plan, refused, into);
}

Outcome<SourceSounding> ReadBlock(const SourceText& source, const SoundingBlock& block) {
  SourceSounding sounding{.Heading = block.Heading};
  const int announced = ParseWhole(Trim(source.Line(block.FirstRow).substr(29, 3))).value_or(0);
  std::string levels(source.Line(block.FirstRow).substr(kHead));
  for (int line = block.FirstRow + 1; line < block.EndRow; ++line) levels += source.Line(line);
  int read = 0;
  for (std::size_t at = 0; read < announced && at + kLevel <= levels.size(); at += kLevel) {
    const std::string_view text = std::string_view(levels).substr(at, kLevel);
    SourceLevel level;
    if (const std::optional<std::string> bad = ReadTd6201Level(text, sounding.Refused, level)) {
      return Fault{kFaultEndOfFile, "DecodeTd6201",
                   AtLine(source, block.FirstRow,
                          "level " + Shortest(read + 1) + ": \"" + *bad + "\" is not a number")};
    }
    sounding.Levels.push_back(level);
    ++read;
  }
  if (read < announced) {
    sounding.Notes.push_back("The heading announces " + Shortest(announced) + " levels, " +
                             Shortest(read) + " are there.");
  }
  return sounding;
}

}  // namespace

bool IsTd6201(const SourceText& source) {
  constexpr int kMostBlankLines = 20;
  for (int line = 1; line <= std::min(source.LineCount(), kMostBlankLines); ++line) {
    if (!Trim(source.Line(line)).empty()) return ReadHead(source.Line(line)).has_value();
  }
  return false;
}

std::vector<SourceEntry> ListTd6201(const SourceText& source) {
  return Entries(BlocksOf(source));
}

std::optional<Fault> DecodeTd6201(const SourceText& source, LoadContext& context,
                                  SoundingRecord& into) {
  return DecodeBlock(source, context, into, BlocksOf, ReadBlock, kTd6201Tag);
}

}  // namespace vexa::ingest
