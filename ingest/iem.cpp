#include "ingest/iem.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/json_text.h"
#include "ingest/source_columns.h"

namespace vexa::ingest {
namespace {

constexpr std::string_view kIemTag = "IEM";
constexpr std::string_view kTableHeading = "station,validUTC,levelcode";

SourceHeading HeadingOf(std::string_view station, std::string_view time) {
  SourceHeading heading;
  heading.Station.Letters = station;
  heading.Time = ParseIsoTime(time).value_or(ObservationTime{});
  return heading;
}

struct Profile {
  SourceSounding Sounding{};
  std::optional<Fault> Failed{};
};
using Profiles = std::vector<Profile>;

// Takes the profiles out of a document: {"profiles": [{"station", "valid", "profile":
// [{"pres"...}]}]}. Of a name that comes more than once the last counts; what else a document holds
// is passed over.
class ProfileTaker : public JsonEvents {
 public:
  explicit ProfileTaker(const SourceText& source) : source_(source) {}

  void Begin(Inside what) override {
    const bool leadsOn = within_ == depth_ && LeadsOn(what);
    if (!leadsOn) Value({});
    ++depth_;
    if (!leadsOn) return;
    ++within_;
    if (within_ == kProfiles) profiles_.clear();
    if (within_ == kProfile) {
      profiles_.push_back({.Failed = WithoutLevels()});
      station_.clear();
      valid_.clear();
    }
    if (within_ == kLevels) profiles_.back() = {};
    if (within_ == kLevel) fields_ = {};
  }
  void End() override {
    if (within_ == depth_) {
      if (within_ == kLevel) TakeLevel();
      if (within_ == kProfile) profiles_.back().Sounding.Heading = HeadingOf(station_, valid_);
      --within_;
    }
    --depth_;
  }
  void Name(std::string& name) override {
    if (within_ == depth_) name_.swap(name);
  }
  void Number(double value) override { Value({.Number = value}); }
  void Text(std::string& value) override { Value({.Text = std::move(value)}); }
  void Other() override { Value({}); }

  Profiles Take() { return std::move(profiles_); }

 private:
  // How deep the containers lie that lead to the levels.
  enum Depth { kOutside, kDocument, kProfiles, kProfile, kLevels, kLevel };

  struct Field {
    std::string Text{};
    std::optional<double> Number{};
  };
  struct Key {
    std::string_view Name;
    Element What;
    std::optional<double> SourceLevel::*Into;
  };
  static constexpr Key kKeys[] = {{"pres", Element::Press, &SourceLevel::Press},
                                  {"hght", Element::Height, &SourceLevel::Height},
                                  {"tmpc", Element::Temp, &SourceLevel::Temp},
                                  {"dwpc", Element::Dewpt, &SourceLevel::Dewpt},
                                  {"drct", Element::Direction, &SourceLevel::Dir},
                                  {"sknt", Element::Speed, &SourceLevel::Spd}};

  bool LeadsOn(Inside what) const {
    const bool isArray = what == Inside::Array;
    switch (within_) {
      case kOutside:
      case kProfiles:
      case kLevels:
        return !isArray;
      case kDocument:
        return isArray && name_ == "profiles";
      case kProfile:
        return isArray && name_ == "profile";
      default:
        return false;
    }
  }

  // A value that leads no further, perhaps in the place of one that would.
  void Value(Field value) {
    if (within_ != depth_) return;
    switch (within_) {
      case kDocument:
        if (name_ == "profiles") profiles_.clear();
        break;
      case kProfiles:
        profiles_.push_back({.Failed = WithoutLevels()});
        break;
      case kProfile:
        if (name_ == "station") {
          station_ = std::move(value.Text);
        } else if (name_ == "valid") {
          valid_ = std::move(value.Text);
        } else if (name_ == "profile") {
          profiles_.back() = {.Failed = WithoutLevels()};
        }
        break;
      case kLevels:
        fields_ = {};
        TakeLevel();
        break;
      case kLevel:
        if (const auto* key = std::ranges::find(kKeys, name_, &Key::Name); key != std::end(kKeys)) {
          fields_[static_cast<std::size_t>(key - kKeys)] = std::move(value);
        }
        break;
      default:
        break;
    }
  }

  Fault WithoutLevels() const {
    return {kFaultEndOfFile, "DecodeIemJson", source_.Name() + ": a profile without levels"};
  }

  void TakeLevel() {
    Profile& profile = profiles_.back();
    if (profile.Failed) return;
    SourceSounding& sounding = profile.Sounding;
    SourceLevel level;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      const Field& field = fields_[i];
      std::optional<double>& into = level.*kKeys[i].Into;
      if (field.Number) {
        ReadElement(*field.Number, kKeys[i].What, sounding.Refused, into);
      } else if (!ReadElement(field.Text, kKeys[i].What, sounding.Refused, into)) {
        profile.Failed = Fault{
            kFaultEndOfFile, "DecodeIemJson",
            source_.Name() + ", level " + Shortest(static_cast<int>(sounding.Levels.size()) + 1) +
                ": " + std::string(kKeys[i].Name) + " \"" + field.Text + "\" is not a number"};
        return;
      }
    }
    sounding.Levels.push_back(level);
  }

  const SourceText& source_;
  Profiles profiles_{};
  std::string name_{}, station_{}, valid_{};
  std::array<Field, std::size(kKeys)> fields_{};
  int depth_ = kOutside;   // containers that are open
  int within_ = kOutside;  // of them those that lead to the levels
};

Outcome<Profiles> ReadProfiles(const SourceText& source) {
  ProfileTaker taker(source);
  if (std::optional<Fault> fault = ReadJson(source, taker)) return *fault;
  return taker.Take();
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
  const Outcome<Profiles> profiles = ReadProfiles(source);
  std::vector<SoundingBlock> blocks;
  if (profiles) {
    for (const Profile& profile : profiles.Value()) {
      blocks.push_back({.Heading = profile.Sounding.Heading});
    }
  }
  return Entries(blocks);
}

std::optional<Fault> DecodeIemJson(const SourceText& source, LoadContext& context,
                                   SoundingRecord& into) {
  const Outcome<Profiles>& profiles = Kept(context, source, ReadProfiles);
  if (!profiles) return profiles.Error();
  const Outcome<std::size_t> index = ChooseSounding(profiles.Value().size(), source, context);
  if (!index) return index.Error();
  const Profile& profile = profiles.Value()[index.Value()];
  if (profile.Failed) return profile.Failed;
  FillRecord(profile.Sounding, source.Name(), context, into);
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
