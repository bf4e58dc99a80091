#include "ingest/coded_part.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "ingest/coded_groups.h"
#include "ingest/coded_pilot.h"
#include "ingest/coded_remarks.h"

namespace vexa::ingest {
namespace {

struct MandatoryLevel {
  std::string_view Code;
  double Press;
  char WindTop;  // the header's figure when this is the highest level with a wind
};

constexpr MandatoryLevel kLower[] = {{"00", 1000, '0'}, {"92", 925, '9'}, {"85", 850, '8'},
                                     {"70", 700, '7'},  {"50", 500, '5'}, {"40", 400, '4'},
                                     {"30", 300, '3'},  {"25", 250, '2'}, {"20", 200, '2'},
                                     {"15", 150, '1'},  {"10", 100, '1'}};
constexpr MandatoryLevel kUpper[] = {
    {"70", 70, '7'}, {"50", 50, '5'}, {"30", 30, '3'}, {"20", 20, '2'}, {"10", 10, '1'},
    {"07", 7, ' '},  {"05", 5, ' '},  {"03", 3, ' '},  {"02", 2, ' '},  {"01", 1, ' '}};

bool IsPlainText(std::string_view group) {
  return group.size() >= 2 &&
         std::ranges::all_of(group, [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool SameValues(const CodedLevel& a, const CodedLevel& b) {
  return a.Values.Temp == b.Values.Temp && a.Values.Dewpt == b.Values.Dewpt &&
         a.Values.Dir == b.Values.Dir && a.Values.Spd == b.Values.Spd;
}

class Reader {
 public:
  explicit Reader(const CodedReport& report)
      : report_(report), toKnots_(report.InKnots ? 1 : kMsToKnot) {}

  CodedPart Read() {
    const bool hasMandatory = report_.Letter() == 'A' || report_.Letter() == 'C';
    if (report_.IsPilot()) {
      ReadPilot(report_, toKnots_, part_);
    } else if (hasMandatory) {
      ReadMandatory();
    } else {
      ReadSignificant();
    }
    for (CodedLevel& level : part_.Levels) level.Part = report_.Letter();
    for (const std::string& note : report_.Notes) Note(note);
    part_.Remarks = RemarksIn(report_.Groups);
    return std::move(part_);
  }

 private:
  std::string_view At(std::size_t index) const {
    return index < report_.Groups.size() ? std::string_view(report_.Groups[index])
                                         : std::string_view();
  }
  bool Ends(std::size_t index) const {
    return index >= report_.Groups.size() || IsSectionMark(At(index)) || IsPlainText(At(index));
  }
  void Note(const std::string& text) { part_.Notes.push_back(report_.Name() + ": " + text + '.'); }
  void Skipped(std::string_view groups) {
    Note("group " + std::string(groups) + " is garbled and was skipped");
  }

  // Pressure of a tropopause or wind maximum: whole hPa in part A, tenths in part C.
  std::optional<double> SpecialPress(std::string_view group) const {
    const std::optional<int> figures = Figures(group, 2, 3);
    if (!figures || *figures == 0) return std::nullopt;
    return report_.IsAloft() ? *figures / 10.0 : *figures;
  }

  void TakeTemp(std::string_view group, CodedLevel& level) {
    const std::optional<GroupTemp> temp = ReadTempGroup(group);
    if (!temp) return Skipped(group);
    level.Values.Temp = temp->Temp;
    level.Values.Dewpt = temp->Dewpt;
    if (group.ends_with('/') && Figures(group, 3, 1)) Skipped(group.substr(3));
  }

  bool TakeWind(std::string_view group, CodedLevel& level) {
    const std::optional<GroupWind> wind = ReadWindGroup(group, toKnots_);
    if (!wind) return false;
    level.Values.Dir = wind->Dir;
    level.Values.Spd = wind->Spd;
    return true;
  }

  void ReadMandatory() {
    std::size_t at = 0;
    if (!report_.IsAloft()) at = ReadSurface();
    while (!Ends(at)) {
      const std::string_view group = At(at);
      if (!IsGroup(group)) {
        Skipped(group);
        ++at;
      } else if (group == "88999" || group == "77999" || group == "66999") {
        ++at;
      } else if (group.starts_with("88")) {
        at = ReadTropopause(at);
      } else if (group.starts_with("77") || group.starts_with("66")) {
        at = ReadMaximumWind(at);
      } else {
        at = ReadMandatoryLevel(at);
      }
    }
    if (IsPlainText(At(at))) {
      std::string words;
      for (; at < report_.Groups.size(); ++at)
        words += (words.empty() ? "" : " ") + report_.Groups[at];
      Note("says \"" + words + '"');
    }
  }

  std::size_t ReadSurface() {
    const std::string_view group = At(0);
    std::optional<int> figures = Figures(group, 2, 3);
    const bool isSurface = IsGroup(group) && group.starts_with("99");
    constexpr int kLeastMistaken = 850;  // as metres these would be far below the sea
    const bool isMistaken = IsGroup(group) && group.starts_with("00") && figures &&
                            *figures >= kLeastMistaken && ReadTempGroup(At(1)) &&
                            ReadWindGroup(At(2), toKnots_);
    if (!isSurface && !isMistaken) return 0;
    if (isMistaken) Note("group " + std::string(group) + " was taken as the surface");
    CodedLevel level{.Kind = LevelKind::Surface};
    constexpr int kOver1000 = 500;
    if (figures) level.Values.Press = *figures < kOver1000 ? *figures + 1000 : *figures;
    if (!Ends(1)) TakeTemp(At(1), level);
    const bool hasWind = !Ends(2) && TakeWind(At(2), level);
    if (level.Values.Press) part_.Levels.push_back(level);
    return hasWind ? 3 : 2;
  }

  std::size_t ReadTropopause(std::size_t at) {
    CodedLevel level{.Kind = LevelKind::Tropopause};
    level.Values.Press = SpecialPress(At(at));
    // Three groups, whatever they look like: -77.1 is 771 too.
    if (at + 1 < report_.Groups.size()) TakeTemp(At(at + 1), level);
    if (at + 2 < report_.Groups.size() && !TakeWind(At(at + 2), level)) Skipped(At(at + 2));
    if (level.Values.Press) {
      part_.Levels.push_back(level);
    } else {
      Skipped(At(at));
    }
    return at + 3;
  }

  std::size_t ReadMaximumWind(std::size_t at) {
    CodedLevel level{.Kind = LevelKind::MaximumWind};
    level.Values.Press = SpecialPress(At(at));
    if (!level.Values.Press || !TakeWind(At(at + 1), level)) {
      Skipped(At(at));
      return at + 1;
    }
    part_.Levels.push_back(level);
    const bool hasShear =
        IsGroup(At(at + 2)) && At(at + 2).starts_with('4') && At(at + 2) != "41414";
    return at + (hasShear ? 3 : 2);
  }

  std::size_t ReadMandatoryLevel(std::size_t at) {
    const std::span<const MandatoryLevel> table =
        report_.IsAloft() ? std::span<const MandatoryLevel>(kUpper) : kLower;
    const std::string_view group = At(at);
    const auto found = std::ranges::find_if(table.subspan(next_), [&](const MandatoryLevel& row) {
      return group.starts_with(row.Code);
    });
    if (found == table.subspan(next_).end()) {
      Skipped(group);
      return at + 1;
    }
    next_ = static_cast<std::size_t>(&*found - table.data()) + 1;
    CodedLevel level{.Kind = LevelKind::Mandatory};
    level.Values.Press = found->Press;
    level.HeightGroup = group;
    level.HeightFigures = Figures(group, 2, 3);
    if (!level.HeightFigures && !group.ends_with("///")) Skipped(group);
    ++at;
    if (!Ends(at)) TakeTemp(At(at++), level);
    if (!Ends(at) && IsWindOf(*found, table, At(at))) {
      TakeWind(At(at), level);
      ++at;
    }
    part_.Levels.push_back(level);
    return at;
  }

  // A group behind a temperature may be the level's wind or already the next level: the header
  // says up to where there are winds, not always truly.
  bool IsWindOf(const MandatoryLevel& level, std::span<const MandatoryLevel> table,
                std::string_view group) const {
    if (!IsGroup(group)) return false;
    if (group == "/////") return true;
    if (!ReadWindGroup(group, toKnots_)) return false;
    const auto top = std::ranges::find_if(table.rbegin(), table.rend(), [&](const auto& row) {
      return row.WindTop == report_.WindTop;
    });
    const bool isSaid = top != table.rend() &&
                        (level.Press >= top->Press || (report_.IsAloft() && top->Press == 10));
    if (isSaid) return true;
    return next_ >= table.size() || !group.starts_with(table[next_].Code);
  }

  void ReadSignificant() {
    std::size_t at = 0;
    bool inWinds = false;
    std::vector<CodedLevel> temps, winds;
    while (at < report_.Groups.size()) {
      const std::string_view group = At(at);
      if (group == "21212") {
        inWinds = true;
        ++at;
        continue;
      }
      if (Ends(at)) break;
      at = inWinds ? ReadPair(at, winds, true) : ReadPair(at, temps, false);
    }
    KeepFalling(temps);
    KeepFalling(winds);
    std::ranges::move(temps, std::back_inserter(part_.Levels));
    std::ranges::move(winds, std::back_inserter(part_.Levels));
  }

  std::size_t ReadPair(std::size_t at, std::vector<CodedLevel>& into, bool isWind) {
    const std::string_view group = At(at);
    if (!IsGroup(group) || group[0] != group[1] || group[0] == '/') {
      Skipped(group);
      return at + 1;
    }
    CodedLevel level{.Kind = group.starts_with("00") && !report_.IsAloft() ? LevelKind::Surface
                                                                           : LevelKind::Significant,
                     .HeightGroup = std::string(group)};
    const std::optional<int> figures = Figures(group, 2, 3);
    if (!figures) {
      if (!group.ends_with("///")) Skipped(group);
      return at + 2;
    }
    if (report_.IsAloft()) {
      level.Values.Press = *figures / 10.0;
    } else {
      level.Values.Press = *figures < 100 ? *figures + 1000 : *figures;
    }
    if (at + 1 >= report_.Groups.size()) return at + 1;
    const std::string_view value = At(at + 1);
    const bool isRead = isWind ? TakeWind(value, level) : ReadTempGroup(value).has_value();
    if (!isRead) {
      Skipped(std::string(group) + ' ' + std::string(value));
      return IsSectionMark(value) || value == "21212" ? at + 1 : at + 2;
    }
    if (!isWind) TakeTemp(value, level);
    if (*level.Values.Press > 0) into.push_back(level);
    return at + 2;
  }

  // Where the pressure does not fall one of two groups is garbled: the earlier one when the rest
  // goes on above it, else the later one.
  void KeepFalling(std::vector<CodedLevel>& levels) {
    for (std::size_t i = 1; i < levels.size();) {
      const double before = *levels[i - 1].Values.Press, here = *levels[i].Values.Press;
      if (here < before) {
        ++i;
        continue;
      }
      const bool fitsWithoutEarlier = i < 2 ? i == 1 && levels[0].Kind != LevelKind::Surface
                                            : here < *levels[i - 2].Values.Press;
      const bool restIsAboveEarlier =
          i + 1 < levels.size() && *levels[i + 1].Values.Press >= before;
      const std::size_t bad = fitsWithoutEarlier && restIsAboveEarlier ? i - 1 : i;
      if (here != before || bad != i) {
        Note("the pressure of " + levels[bad].HeightGroup + " is out of order; it was skipped");
      } else if (!SameValues(levels[i], levels[i - 1])) {
        Note("the pressure of " + levels[bad].HeightGroup + " is repeated; it was skipped");
      }
      levels.erase(levels.begin() + static_cast<std::ptrdiff_t>(bad));
      i = std::max<std::size_t>(1, bad);
    }
  }

  const CodedReport& report_;
  double toKnots_;
  std::size_t next_ = 0;  // of the mandatory levels
  CodedPart part_{};
};

}  // namespace

CodedPart ReadPart(const CodedReport& report) {
  return Reader(report).Read();
}

}  // namespace vexa::ingest
