#include "mountainwave/mountain_file.h"

#include <algorithm>
#include <array>

#include "core/files.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/record_text.h"
#include "core/source_text.h"
#include "core/units.h"

namespace vexa::mountainwave {
namespace {

constexpr int kHeadingLines = 18;
constexpr std::string_view kHeadingMark = "NOTE:";
constexpr std::size_t kUnitColumn = 10;  // counted from 1

// Takes the next line off a text; none at its end.
std::optional<std::string_view> TakeLine(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  if (line.ends_with('\r')) line.remove_suffix(1);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

struct Heading {
  int Lines = 0;
  bool IsEnglish = true;
};

// Takes the heading off a text; none when the text ends in it.
std::optional<Heading> TakeHeading(std::string_view& text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::array<std::string_view, kHeadingLines + 4> lines{};
  Heading heading;
  const auto take = [&](int until) {
    for (; heading.Lines < until; ++heading.Lines) {
      const auto line = TakeLine(text);
      if (!line) return false;
      lines[static_cast<std::size_t>(heading.Lines)] = *line;
    }
    return true;
  };
  if (!take(kHeadingLines)) return std::nullopt;
  if (!lines[kHeadingLines - 1].starts_with(kHeadingMark)) return heading;
  if (!take(kHeadingLines + 4)) return std::nullopt;
  const std::string_view units = lines[kHeadingLines + 2];
  heading.IsEnglish = units.size() >= kUnitColumn && Trim(units.substr(kUnitColumn - 1)) == "feet";
  return heading;
}

MountainParameters FromMetric(MountainParameters mountains) {
  for (Ridge* ridge : {&mountains.First, &mountains.Second}) {
    ridge->HeightFt /= kMetersPerFoot;
    ridge->HalfWidthNm /= kKmPerNauticalMile;
  }
  mountains.DistanceNm /= kKmPerNauticalMile;
  return mountains;
}

}  // namespace

MountainLookup FindMountains(std::string_view text, std::string_view name, int station) {
  const auto heading = TakeHeading(text);
  if (!heading) {
    return {.Wrong =
                Fault{kFaultEndOfFile, "FindMountains", AtLine(name, 1, "ends in its heading")}};
  }
  if (station == 0) return {};
  RecordReader fields(text, name);
  const auto wrongAt = [&](int line, std::string_view reason) {
    return MountainLookup{.Wrong = Fault{kFaultEndOfFile, "FindMountains",
                                         AtLine(name, heading->Lines + line, reason)}};
  };
  for (;;) {
    const int line = fields.Where().Line;
    if (fields.AtEnd()) return wrongAt(line, "ends without the station number 99999");
    const Outcome<RecordField> first = fields.Next("the station number");
    const auto number = first ? ParseWhole(first.Value().Text) : std::nullopt;
    if (!number) return wrongAt(line, "no station number stands where one should");
    if (*number == static_cast<int>(kNotReached)) return {};
    std::array<double, 7> values{};
    for (double& value : values) {
      const int at = fields.Where().Line;
      const Outcome<RecordField> field = fields.Next("a value");
      const auto parsed = field ? ParseNumber(field.Value().Text) : std::nullopt;
      if (!parsed)
        return wrongAt(at, "station " + Shortest(*number) + " lacks one of its seven numbers");
      value = *parsed;
    }
    if (*number != station && station != kEveryStation) continue;
    MountainParameters mountains{.First = {values[0], values[1], values[2]},
                                 .DistanceNm = values[3],
                                 .Second = {values[4], values[5], values[6]}};
    if (const std::string_view objection = WhyNoMountains(mountains); !objection.empty()) {
      return wrongAt(line, "station " + Shortest(*number) + ": " + std::string(objection));
    }
    if (station == kEveryStation) continue;
    return {.Found = heading->IsEnglish ? mountains : FromMetric(mountains)};
  }
}

MountainLookup FindMountains(const std::filesystem::path& file, int station) {
  const Outcome<std::string> text = ReadFile(file);
  if (!text) return {.Wrong = text.Error()};
  return FindMountains(text.Value(), TextFromPath(file.filename()), station);
}

Box MountainFileBox(const Fault& wrong) {
  if (wrong.Number == kFaultFileNotFound) return {.Text = std::string(kMountainFileMissing)};
  return {.Title = "VEXA data file problem",
          .Text =
              "There is a problem with the VEXA.MTN mountain parameter file.  \n"
              "Reload original file from the distribution CD, or correct \n"
              "the record below. The help tells what a record holds.\n" +
              wrong.Detail};
}

int StationOf(const SoundingRecord& sounding) {
  constexpr std::size_t kFigures = 5;
  if (sounding.WmoNumber != 0) return sounding.WmoNumber;
  const std::string_view title = sounding.StationTitle;
  const std::size_t end = std::min(title.find_first_not_of("0123456789"), title.size());
  const bool isNumber = end == kFigures && (end == title.size() || title[end] == ' ');
  return isNumber ? ParseWhole(title.substr(0, end)).value_or(0) : 0;
}

Site SiteOf(const SoundingRecord& sounding, const std::filesystem::path& file) {
  if (Site own = MountainsOf(sounding)) return own;
  const int station = StationOf(sounding);
  if (station == 0 || file.empty()) return std::nullopt;
  return FindMountains(file, station).Found;
}

}  // namespace vexa::mountainwave
