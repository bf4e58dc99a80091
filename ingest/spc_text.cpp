#include "ingest/spc_text.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/source_header.h"
#include "ingest/source_levels.h"
#include "ingest/source_sounding.h"

namespace vexa::ingest {
namespace {

constexpr int kMostSpcTextHeading = 400;
constexpr std::string_view kSpcTextTag = "SPC";
constexpr std::string_view kTitleMark = "%TITLE%", kDataMark = "%RAW%";

// Line that holds nothing but a mark such as %RAW%, 0 when there is none.
int FindMark(const SourceText& source, std::string_view mark) {
  const int last = std::min(source.LineCount(), kMostSpcTextHeading);
  for (int line = 1; line <= last; ++line) {
    if (Trim(source.Line(line)) == mark) return line;
  }
  return 0;
}

// "OAX   140616/1900 41.32,-96.37": station, time, position; each may be lacking, and without a
// time the whole line is the station's name.
void ReadTitle(std::string_view line, SourceHeading& heading) {
  const std::vector<std::string_view> words = Tokens(line);
  std::string_view before = line;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::optional<ObservationTime> time = ParseCompactTime(words[i]);
    if (!time) continue;
    heading.Time = *time;
    before = line.substr(0, static_cast<std::size_t>(words[i].data() - line.data()));
    std::string position;
    for (std::size_t k = i + 1; k < words.size(); ++k) position += words[k];
    const std::size_t comma = position.find(',');
    if (comma != std::string::npos) {
      heading.Lat = ParseNumber(std::string_view(position).substr(0, comma));
      heading.Lon = ParseNumber(std::string_view(position).substr(comma + 1));
    }
    break;
  }
  const std::string_view name = Trim(before);
  constexpr std::size_t kFigures = 5, kMostLetters = 4;
  if (name.size() == kFigures) heading.Station.Number = ParseWhole(name).value_or(0);
  if (heading.Station.Number > 0) return;
  heading.Station.Number = 0;
  const bool isWord = name.find(' ') == std::string_view::npos;
  (isWord && name.size() <= kMostLetters ? heading.Station.Letters : heading.Station.Name) = name;
}

struct Rows {
  std::vector<SourceLevel> Levels{};
  Refusals Refused{};
  bool LostLastRow = false;
};

std::optional<Fault> ReadRow(const SourceText& source, int line, Rows& rows) {
  struct Field {
    Element What;
    std::optional<double> SourceLevel::*Into;
  };
  static constexpr std::array<Field, 6> kFields = {{{Element::Press, &SourceLevel::Press},
                                                    {Element::Height, &SourceLevel::Height},
                                                    {Element::Temp, &SourceLevel::Temp},
                                                    {Element::Dewpt, &SourceLevel::Dewpt},
                                                    {Element::Direction, &SourceLevel::Dir},
                                                    {Element::Speed, &SourceLevel::Spd}}};
  const auto fault = [&](const std::string& reason) {
    return Fault{kFaultEndOfFile, "DecodeSpcText", AtLine(source, line, reason)};
  };
  std::string_view row = source.Line(line);
  const bool isLast = line == source.LineCount() && !source.Bytes().ends_with('\n');
  const bool isWhole = std::ranges::count(row, ',') >= static_cast<int>(kFields.size()) - 1;
  if (isLast || !isWhole) {
    // Without %END% behind it the last row may have lost digits.
    rows.LostLastRow = isLast;
    return isLast ? std::nullopt : std::optional(fault("a row needs six values"));
  }
  SourceLevel level;
  for (const Field& field : kFields) {
    const std::size_t comma = std::min(row.find(','), row.size());
    const std::string_view text = Trim(row.substr(0, comma));
    if (!ReadElement(text, field.What, rows.Refused, level.*field.Into)) {
      return fault('"' + std::string(text) + "\" is not a number");
    }
    row.remove_prefix(std::min(comma + 1, row.size()));
  }
  rows.Levels.push_back(level);
  return std::nullopt;
}

}  // namespace

bool IsSpcText(const SourceText& source) {
  const int last = std::min(source.LineCount(), kMostSpcTextHeading);
  for (int line = 1; line <= last; ++line) {
    const std::string_view text = source.Line(line);
    if (text.find('%') == std::string_view::npos) continue;
    if (Trim(text) == kTitleMark || Trim(text) == kDataMark) return true;
  }
  return false;
}

std::vector<int> SpcTextBeginnings(const SourceText& source) {
  std::vector<int> beginnings;
  int title = 0;
  for (int line = 1; line <= source.LineCount(); ++line) {
    const std::string_view text = Trim(source.Line(line));
    if (text == kTitleMark) title = line;
    if (text != kDataMark) continue;
    beginnings.push_back(title > 0 ? title : line);
    title = 0;
  }
  return beginnings;
}

std::optional<Fault> DecodeSpcText(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into) {
  const int title = FindMark(source, kTitleMark);
  const int raw = FindMark(source, kDataMark);
  SourceSounding sounding;
  const int headingEnd = raw == 0 ? source.LineCount() + 1 : raw;
  for (int line = title + 1; title != 0 && line < headingEnd; ++line) {
    if (Trim(source.Line(line)).empty()) continue;
    ReadTitle(source.Line(line), sounding.Heading);
    break;
  }
  if (raw == 0) {
    return Fault{kFaultEndOfFile, "DecodeSpcText",
                 AtLine(source, source.LineCount(), "the data end before %RAW%")};
  }

  Rows rows;
  std::optional<Fault> fault;
  bool ended = false;
  for (int line = raw + 1; line <= source.LineCount() && !ended && !fault; ++line) {
    const std::string_view text = Trim(source.Line(line));
    ended = text == "%END%";
    if (!ended && !text.empty()) fault = ReadRow(source, line, rows);
  }

  sounding.Levels = std::move(rows.Levels);
  sounding.Refused = rows.Refused;
  if (!ended) {
    sounding.Notes.push_back(rows.LostLastRow
                                 ? "The last row is cut off and was left out; %END% is missing."
                                 : "%END% is missing.");
  }
  FillRecord(std::move(sounding), source.Name(), context, into);
  if (fault) return fault;
  into.DataFormat = kSpcTextTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
