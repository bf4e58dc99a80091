#include "ingest/fsl.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "ingest/decode_block.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kFslTag = "FSL";
constexpr std::size_t kFieldWidth = 7;
constexpr int kMostFslHeading = 100;

std::string_view Field(std::string_view line, std::size_t index) {
  const std::size_t begin = index * kFieldWidth;
  return begin < line.size() ? line.substr(begin, kFieldWidth) : std::string_view();
}

// "254     12      1      DEC    2021", or a model's name in place of 254.
std::optional<ObservationTime> TypeLine(std::string_view line) {
  const std::string_view type = FirstWord(line);
  const bool isModel = !type.empty() && type.front() >= 'A' && type.front() <= 'Z';
  if (!isModel && type != "254") return std::nullopt;
  const std::vector<std::string_view> words = Tokens(line);
  if (words.size() != 5 || words[4].size() != 4) return std::nullopt;
  return MakeTime(ParseWhole(words[4]).value_or(0), MonthNumber(words[3]),
                  ParseWhole(words[2]).value_or(0), ParseWhole(words[1]).value_or(-1));
}

// A number with two decimals and perhaps a hemisphere: takes it off the text.
std::optional<double> TakeDegrees(std::string_view& text, bool& hasLetter) {
  const std::size_t begin = text.find_first_not_of(' ');
  const std::size_t point = text.find('.');
  constexpr std::size_t kDecimals = 2;
  if (begin == text.npos || point == text.npos || point + kDecimals >= text.size()) {
    return std::nullopt;
  }
  std::optional<double> degrees = ParseNumber(text.substr(begin, point + 1 + kDecimals - begin));
  text.remove_prefix(point + 1 + kDecimals);
  const char letter = text.empty() ? ' ' : text.front();
  hasLetter = std::string_view("NSEW").find(letter) != std::string_view::npos;
  if (hasLetter) text.remove_prefix(1);
  if (degrees && (letter == 'S' || letter == 'W')) degrees = -*degrees;
  return degrees;
}

// "1  23062  72641  43.05  89.31    261": the fields behind the WMO number differ by a column
// between sources and may touch. Without letters west is positive.
void ReadStationLine(std::string_view line, SourceHeading& heading) {
  constexpr int kNone = 99999;
  const int number = ParseWhole(Field(line, 2)).value_or(0);
  heading.Station.Number = number == kNone ? 0 : number;
  std::string_view rest =
      line.size() > 3 * kFieldWidth ? line.substr(3 * kFieldWidth) : std::string_view();
  bool latLetter = false, lonLetter = false;
  heading.Lat = TakeDegrees(rest, latLetter);
  heading.Lon = TakeDegrees(rest, lonLetter);
  if (heading.Lon && !lonLetter) heading.Lon = -*heading.Lon;
  const std::vector<std::string_view> words = Tokens(rest);
  if (!words.empty()) heading.Elevation = ParseNumber(words.front());
}

void ReadNameLine(std::string_view line, SourceHeading& heading) {
  const std::vector<std::string_view> words = Tokens(line);
  if (words.size() < 2) return;
  const bool isPoint = words[1].find(',') != std::string_view::npos;
  const bool isLetters = words[1].front() >= 'A' && words[1].front() <= 'Z';
  if (isPoint) heading.Station.Name = words[1];
  if (isLetters && words[1] != words.back()) heading.Station.Letters = words[1];
}

std::vector<SoundingBlock> FslBlocks(const SourceText& source) {
  std::vector<SoundingBlock> blocks;
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = source.Line(line);
    if (const std::optional<ObservationTime> time = TypeLine(text)) {
      if (!blocks.empty()) blocks.back().EndRow = line;
      blocks.push_back({.FirstRow = line + 1, .EndRow = source.LineCount() + 1});
      blocks.back().Heading.Time = *time;
    } else if (!blocks.empty()) {
      const std::string_view type = Trim(Field(text, 0));
      if (type == "1") ReadStationLine(text, blocks.back().Heading);
      if (type == "3") ReadNameLine(text, blocks.back().Heading);
    }
  }
  return blocks;
}

// Speeds are whole knots or tenths of a metre per second.
std::optional<Scale> SpeedScale(std::string_view nameLine) {
  const std::vector<std::string_view> words = Tokens(nameLine);
  if (words.empty()) return std::nullopt;
  if (words.back() == "kt") return Scale{};
  if (words.back() == "ms") return Scale{.Times = kMsToKnot, .Over = 10};
  return std::nullopt;
}

class Block {
 public:
  Block(const SourceText& source, const SoundingBlock& block) : source_(source), block_(block) {}

  Outcome<SourceSounding> Read() {
    SourceSounding sounding{.Heading = block_.Heading};
    const Scale press = PressScale();
    std::optional<Scale> speed;
    std::optional<double> ground;
    for (int line = block_.FirstRow; line < block_.EndRow; ++line) {
      const std::string_view text = source_.Line(line);
      const std::string_view type = Trim(Field(text, 0));
      if (type == "3") speed = SpeedScale(text);
      if (!IsData(type)) continue;
      if (!speed) {
        return Fault{kFaultNonStandard, "DecodeFsl",
                     AtLine(source_, line, "the unit of the wind is not known")};
      }
      if (MayBeCutOff(source_, line) && text.size() < kFieldWidth * kFields) {
        sounding.Notes.push_back("The last row is cut off and was left out.");
        continue;
      }
      SourceLevel level;
      if (const std::optional<std::string_view> bad =
              ReadData(text, press, *speed, sounding.Refused, level)) {
        return Fault{kFaultEndOfFile, "DecodeFsl",
                     AtLine(source_, line, '"' + std::string(*bad) + "\" is not a number")};
      }
      if (type == "9" && !ground) ground = level.Height;
      sounding.Levels.push_back(level);
    }
    // Winds by height may begin below a high station.
    const auto isBelow = [&](const SourceLevel& level) {
      return ground && !level.Temp && level.Height && *level.Height < *ground;
    };
    std::erase_if(sounding.Levels, isBelow);
    // The ground of a model is not that of the station it is named after.
    if (ground) sounding.Heading.Elevation = ground;
    return sounding;
  }

 private:
  static constexpr std::size_t kFields = 7;

  static bool IsData(std::string_view type) {
    return type.size() == 1 && type[0] >= '4' && type[0] <= '9';
  }

  // Older files have whole hPa, newer ones tenths.
  Scale PressScale() const {
    constexpr double kMostWhole = 1100, kMissing = 30000;
    double largest = 0;
    for (int line = block_.FirstRow; line < block_.EndRow; ++line) {
      const std::string_view text = source_.Line(line);
      if (!IsData(Trim(Field(text, 0)))) continue;
      const double value = ParseNumber(Field(text, 1)).value_or(0);
      if (value < kMissing) largest = std::max(largest, value);
    }
    return {.Over = largest > kMostWhole ? 10.0 : 1.0};
  }

  // The field that is no number, if any.
  static std::optional<std::string_view> ReadData(std::string_view line, Scale press, Scale speed,
                                                  Refusals& refused, SourceLevel& into) {
    constexpr Scale kTenths{.Over = 10};
    struct Column {
      Element What;
      std::optional<double> SourceLevel::*Into;
      Scale ToOurs;
    };
    const Column columns[] = {{Element::Press, &SourceLevel::Press, press},
                              {Element::Height, &SourceLevel::Height, {}},
                              {Element::Temp, &SourceLevel::Temp, kTenths},
                              {Element::Dewpt, &SourceLevel::Dewpt, kTenths},
                              {Element::Direction, &SourceLevel::Dir, {}},
                              {Element::Speed, &SourceLevel::Spd, speed}};
    for (std::size_t i = 0; i < std::size(columns); ++i) {
      const std::string_view field = Trim(Field(line, i + 1));
      if (field == "32767") continue;  // missing in old files
      if (!ReadElement(field, columns[i].What, refused, into.*columns[i].Into, columns[i].ToOurs)) {
        return field;
      }
    }
    return std::nullopt;
  }

  const SourceText& source_;
  const SoundingBlock& block_;
};

}  // namespace

bool IsFsl(const SourceText& source) {
  const int last = std::min(source.LineCount() - 1, kMostFslHeading);
  for (int line = 1; line <= last; ++line) {
    if (!TypeLine(source.Line(line))) continue;
    const std::string_view next = Trim(Field(source.Line(line + 1), 0));
    if (next == "1" || next == "CAPE") return true;
  }
  return false;
}

std::vector<SourceEntry> ListFsl(const SourceText& source) {
  return EntriesUnderHeadings(FslBlocks(source));
}

std::optional<Fault> DecodeFsl(const SourceText& source, LoadContext& context,
                               SoundingRecord& into) {
  const auto read = [](const SourceText& text, const SoundingBlock& block) {
    return Block(text, block).Read();
  };
  return DecodeBlock(source, context, into, FslBlocks, read, kFslTag);
}

}  // namespace vexa::ingest
