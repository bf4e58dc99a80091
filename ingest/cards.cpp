#include "ingest/cards.h"

#include <algorithm>
#include <string>

#include "core/numbers.h"

namespace vexa::ingest {
namespace {

constexpr std::size_t kHeadWidth = 108;

std::string_view FirstLine(const SourceText& source) {
  for (int line = 1; line <= source.LineCount(); ++line) {
    if (!Trim(source.Line(line)).empty()) return source.Line(line);
  }
  return {};
}

// The time of a heading of 108 characters, '#' first; empty for any other line.
std::optional<ObservationTime> HeadTime(std::string_view line) {
  if (line.size() < kHeadWidth || line.front() != '#') return std::nullopt;
  const auto part = [line](std::size_t from, std::size_t count) {
    return ParseWhole(Trim(line.substr(from, count))).value_or(-1);
  };
  constexpr int kUnknownHour = 99;
  const int hour = part(46, 2);
  if (part(105, 3) < 0) return std::nullopt;
  return MakeTime(part(38, 4), part(42, 2), part(44, 2), hour == kUnknownHour ? 0 : hour);
}

}  // namespace

bool IsCards(const SourceText& source) {
  return HeadTime(FirstLine(source)).has_value();
}

std::optional<Fault> DecodeCards(const SourceText& source, LoadContext&, SoundingRecord&) {
  const std::string_view head = FirstLine(source);
  StationName station{.Number = ParseWhole(Trim(head.substr(1, 6))).value_or(0)};
  station.Name = Trim(head.substr(8, 8));
  return Fault{kFaultNonStandard, "DecodeCards",
               source.Name() + ": a CARDS record of " +
                   Caption(station, HeadTime(head).value_or(ObservationTime{})) +
                   "; how its levels are laid out is not known"};
}

}  // namespace vexa::ingest
