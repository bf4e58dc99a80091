#include "ingest/avaps.h"

#include <algorithm>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "ingest/source_columns.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kAvapsTag = "DROPSONDE";
constexpr std::string_view kMark = "AVAPS-";
constexpr std::string_view kAttributes = "*** Sounding Attributes File ***";
constexpr double kAdaption = 10;  // s after the release

std::string_view FirstText(const SourceText& source) {
  for (int line = 1; line <= source.LineCount(); ++line) {
    if (const std::string_view text = Trim(source.Line(line)); !text.empty()) return text;
  }
  return {};
}

// "144745.25" as seconds of the day.
std::optional<double> SecondsOf(std::string_view text) {
  const std::optional<double> time = ParseNumber(text);
  if (!time || *time < 0 || *time > 240000) return std::nullopt;
  const int whole = static_cast<int>(*time);
  return whole / 10000 * 3600 + whole / 100 % 100 * 60 + whole % 100 + (*time - whole);
}

// Launch time and position stand behind the data.
void ReadAvapsLabel(std::string_view line, SourceHeading& heading) {
  const std::size_t colon = line.find("):");
  if (colon == std::string_view::npos) return;
  const std::string_view value = Trim(line.substr(colon + 2));
  if (line.find("Launch Time (y,m,d,h,m,s)") != std::string_view::npos) {
    heading.Time = ParseIsoTime(value).value_or(ObservationTime{});
  } else if (line.find("Pre-launch Obs (lon,lat,alt)") != std::string_view::npos) {
    const std::vector<std::string_view> words = Tokens(value);
    if (words.size() < 3) return;
    heading.Lon = ParseNumber(words[0]);
    heading.Lat = ParseNumber(words[2]);
  }
}

// "AVAPS-D02 S00 sonde yymmdd hhmmss.ss P T RH dir spd vert lon lat alt sats RH1 RH2 sats err alt"
constexpr std::size_t kFields = 20;
constexpr std::size_t kStatus = 1, kTime = 4;

constexpr std::size_t kTemp = 6;
constexpr QuantityColumn kPlan[] = {
    {5, Quantity::Press},     {kTemp, Quantity::Temp},           {7, Quantity::Humidity},
    {8, Quantity::Direction}, {9, Quantity::Speed, {kMsToKnot}}, {19, Quantity::Height}};
constexpr double kNoTemp = 99;

class AvapsRows {
 public:
  explicit AvapsRows(const SourceText& source) : source_(source) {}

  std::optional<Fault> Read(SourceSounding& into) {
    for (int line = 1; line <= source_.LineCount(); ++line) {
      const std::string_view text = source_.Line(line);
      if (text.starts_with("AVAPS-T")) ReadAvapsLabel(text, into.Heading);
    }
    for (int line = 1; line <= source_.LineCount(); ++line) {
      if (!source_.Line(line).starts_with("AVAPS-D")) continue;
      if (std::optional<Fault> fault = ReadLine(line, into)) return fault;
    }
    return std::nullopt;
  }

 private:
  std::optional<Fault> ReadLine(int line, SourceSounding& into) {
    std::vector<std::string_view> fields = Tokens(source_.Line(line));
    if (fields.size() < 2 || fields[kStatus].front() != 'S') return std::nullopt;
    const auto fault = [&](const std::string& reason) {
      return Fault{kFaultEndOfFile, "DecodeAvaps", AtLine(source_, line, reason)};
    };
    if (MayBeCutOff(source_, line)) {
      into.Notes.push_back("The last row is cut off and was left out.");
      return std::nullopt;
    }
    if (fields.size() < kFields) return fault("a row needs twenty values");
    const std::optional<double> seconds = SecondsOf(fields[kTime]);
    if (!seconds) return fault('"' + std::string(fields[kTime]) + "\" is not a time");
    if (!release_) release_ = *seconds;
    if (ParseNumber(fields[kTemp]) == kNoTemp) fields[kTemp] = {};
    SourceLevel level;
    if (const auto bad = ReadRow(fields, kPlan, into.Refused, level)) {
      return fault('"' + *bad + "\" is not a number");
    }
    if (*seconds - *release_ < kAdaption) return std::nullopt;
    // The status tells bad sensors (first figure) from bad winds (second).
    const std::string_view status = fields[kStatus];
    if (status.size() > 1 && status[1] != '0')
      level = {.Height = level.Height, .Dir = level.Dir, .Spd = level.Spd};
    if (status.size() > 2 && status[2] != '0') level.Spd.reset();
    into.Levels.push_back(level);
    return std::nullopt;
  }

  const SourceText& source_;
  std::optional<double> release_{};
};

}  // namespace

bool IsAvaps(const SourceText& source) {
  const std::string_view first = FirstText(source);
  return first.starts_with(kMark) || first.starts_with(kAttributes);
}

std::optional<Fault> DecodeAvaps(const SourceText& source, LoadContext& context,
                                 SoundingRecord& into) {
  if (FirstText(source).starts_with(kAttributes)) {
    return Fault{kFaultEndOfFile, "DecodeAvaps",
                 source.Name() + ": describes a sounding; its levels are in the file named D..."};
  }
  SourceSounding sounding;
  std::optional<Fault> fault = AvapsRows(source).Read(sounding);
  if (fault) return fault;
  sounding.Heading.Station.Name = "Dropsonde";
  FillRecord(std::move(sounding), source.Name(), context, into);
  into.DataFormat = kAvapsTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
