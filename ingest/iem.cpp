#include "ingest/iem.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/json_text.h"
#include "ingest/source_columns.h"

namespace vexa::ingest {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kIemTag = "IEM";
constexpr std::string_view kTableHeading = "station,validUTC,levelcode";

SourceHeading HeadingOf(std::string_view station, std::string_view time) {
  SourceHeading heading;
  heading.Station.Letters = station;
  heading.Time = ParseIsoTime(time).value_or(ObservationTime{});
  return heading;
}

SourceHeading HeadingOf(const Json& profile) {
  const auto text = [&profile](const char* name) {
    const auto member = profile.find(name);
    return member != profile.end() && member->is_string() ? member->get<std::string>()
                                                          : std::string();
  };
  return HeadingOf(text("station"), text("valid"));
}

// The profiles of a document, or the fault of its text. A document without any has none.
Outcome<Json> ProfilesOf(const SourceText& source) {
  Json document;
  if (std::optional<Fault> fault = ReadJson(source, document)) return *fault;
  const auto profiles = document.find("profiles");
  if (profiles == document.end() || !profiles->is_array()) return Json::array();
  return std::move(*profiles);
}

// A number goes the way of every other source's text, so that the same limits hold. Gives what
// cannot be read.
std::optional<std::string> ReadLevel(const Json& row, Refusals& refused, SourceLevel& into) {
  struct Key {
    const char* Name;
    Element What;
    std::optional<double> SourceLevel::*Into;
  };
  static constexpr Key kKeys[] = {{"pres", Element::Press, &SourceLevel::Press},
                                  {"hght", Element::Height, &SourceLevel::Height},
                                  {"tmpc", Element::Temp, &SourceLevel::Temp},
                                  {"dwpc", Element::Dewpt, &SourceLevel::Dewpt},
                                  {"drct", Element::Direction, &SourceLevel::Dir},
                                  {"sknt", Element::Speed, &SourceLevel::Spd}};
  for (const Key& key : kKeys) {
    const auto value = row.find(key.Name);
    if (value == row.end()) continue;
    const std::string field = value->is_string()   ? value->get<std::string>()
                              : value->is_number() ? Shortest(value->get<double>())
                                                   : std::string();
    if (!ReadElement(field, key.What, refused, into.*key.Into)) {
      return std::string(key.Name) + " \"" + field + '"';
    }
  }
  return std::nullopt;
}

Outcome<SourceSounding> ReadProfile(const SourceText& source, const Json& profile) {
  SourceSounding sounding{.Heading = HeadingOf(profile)};
  const auto rows = profile.find("profile");
  if (rows == profile.end() || !rows->is_array()) {
    return Fault{kFaultEndOfFile, "DecodeIemJson", source.Name() + ": a profile without levels"};
  }
  for (const Json& row : *rows) {
    SourceLevel level;
    if (const std::optional<std::string> bad = ReadLevel(row, sounding.Refused, level)) {
      return Fault{kFaultEndOfFile, "DecodeIemJson",
                   source.Name() + ", level " +
                       Shortest(static_cast<int>(sounding.Levels.size()) + 1) + ": " + *bad +
                       " is not a number"};
    }
    sounding.Levels.push_back(level);
  }
  return sounding;
}

using Soundings = std::vector<Outcome<SourceSounding>>;

Outcome<Soundings> ReadProfiles(const SourceText& source) {
  const Outcome<Json> profiles = ProfilesOf(source);
  if (!profiles) return profiles.Error();
  Soundings soundings;
  for (const Json& profile : profiles.Value()) soundings.push_back(ReadProfile(source, profile));
  return soundings;
}

struct TableRow {
  std::vector<std::string_view> Fields;
  int Line = 0;
};

struct TableGroup {
  SourceHeading Heading{};
  std::string_view Station{}, Valid{};
  std::vector<TableRow> Rows{};
};

int FindTable(const SourceText& source) {
  constexpr int kMostHeadingLines = 20;
  for (int line = 1; line <= std::min(source.LineCount(), kMostHeadingLines); ++line) {
    if (source.Line(line).starts_with(kTableHeading)) return line;
  }
  return 0;
}

std::vector<TableGroup> GroupsOf(const SourceText& source) {
  std::vector<TableGroup> groups;
  const int heading = FindTable(source);
  for (int line = heading + 1; heading != 0 && line <= source.LineCount(); ++line) {
    TableRow row{SplitFields(source.Line(line), ','), line};
    if (row.Fields.size() < 3) continue;
    if (groups.empty() || groups.back().Station != row.Fields[0] ||
        groups.back().Valid != row.Fields[1]) {
      groups.push_back({HeadingOf(row.Fields[0], row.Fields[1]), row.Fields[0], row.Fields[1]});
    }
    groups.back().Rows.push_back(std::move(row));
  }
  return groups;
}

}  // namespace

bool IsIemJson(const SourceText& source) {
  return Trim(source.Bytes()).starts_with('{') &&
         source.Bytes().find("\"profiles\"") != std::string::npos;
}

std::vector<SourceEntry> ListIemJson(const SourceText& source) {
  const Outcome<Json> profiles = ProfilesOf(source);
  std::vector<SoundingBlock> blocks;
  if (profiles) {
    for (const Json& profile : profiles.Value()) blocks.push_back({.Heading = HeadingOf(profile)});
  }
  return Entries(blocks);
}

std::optional<Fault> DecodeIemJson(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into) {
  const Outcome<Soundings>& soundings = Kept(context, source, ReadProfiles);
  if (!soundings) return soundings.Error();
  const Outcome<std::size_t> index = ChooseSounding(soundings.Value().size(), source, context);
  if (!index) return index.Error();
  const Outcome<SourceSounding>& sounding = soundings.Value()[index.Value()];
  if (!sounding) return sounding.Error();
  FillRecord(sounding.Value(), source.Name(), context, into);
  into.DataFormat = kIemTag;
  return std::nullopt;
}

bool IsIemTable(const SourceText& source) {
  return FindTable(source) != 0;
}

std::vector<SourceEntry> ListIemTable(const SourceText& source) {
  std::vector<SoundingBlock> blocks;
  for (const TableGroup& group : GroupsOf(source)) blocks.push_back({.Heading = group.Heading});
  return Entries(blocks);
}

std::optional<Fault> DecodeIemTable(const SourceText& source, LoadContext& context,
                                    SoundingRecord& into) {
  const std::vector<TableGroup>& groups = Kept(context, source, GroupsOf);
  const Outcome<std::size_t> index = ChooseSounding(groups.size(), source, context);
  if (!index) return index.Error();
  const TableGroup& group = groups[index.Value()];
  const std::vector<std::string_view> names = SplitFields(source.Line(FindTable(source)), ',');
  const std::vector<QuantityColumn> plan = PlanColumns(names);
  SourceSounding sounding{.Heading = group.Heading};
  for (const TableRow& row : group.Rows) {
    if (MayBeCutOff(source, row.Line) && row.Fields.size() < names.size()) {
      sounding.Notes.push_back("The last row is cut off and was left out.");
      continue;
    }
    SourceLevel level;
    if (const std::optional<std::string> bad = ReadRow(row.Fields, plan, sounding.Refused, level)) {
      return Fault{kFaultEndOfFile, "DecodeIemTable",
                   AtLine(source, row.Line, '"' + *bad + "\" is not a number")};
    }
    sounding.Levels.push_back(level);
  }
  FillRecord(std::move(sounding), source.Name(), context, into);
  into.DataFormat = kIemTag;
  return std::nullopt;
}

}  // namespace vexa::ingest
