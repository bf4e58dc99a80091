// The levels of one report: parts A and C with the mandatory levels, B and D with the significant
// ones, and the winds by height of PILOT reports. Groups that make no sense are skipped and named.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ingest/coded_groups.h"
#include "ingest/coded_report.h"
#include "ingest/source_levels.h"

namespace vexa::ingest {

enum class LevelKind { Surface, Mandatory, Tropopause, MaximumWind, Significant, PilotWind };

struct CodedLevel {
  LevelKind Kind = LevelKind::Significant;
  /// Heights are those that the message states in full; mandatory levels have HeightFigures.
  SourceLevel Values{};
  std::string HeightGroup{};           // "85383"
  std::optional<int> HeightFigures{};  // last three figures of metres, from 500 hPa up decametres
  bool IsAtSurface = false;            // a PILOT wind whose height is the ground's
  bool IsDoubtful = false;             // a group is missing or too many beside its temperature
  bool IsBehindGap = false;            // of part B or D: levels below it were lost or not observed
  char Part = 'A';

  /// Part B or D: the temperatures between which the profile runs straight.
  bool IsFine() const { return Part == 'B' || Part == 'D'; }
};

struct CodedPart {
  std::vector<CodedLevel> Levels{};
  std::vector<std::string> Notes{};
  std::vector<std::string> Remarks{};  // what the message says of the ascent
  std::size_t End = 0;                 // of the groups, behind the levels
  int Garbled = 0;                     // notes that tell of groups that are
};

CodedPart ReadPart(const CodedReport& report);

inline constexpr std::string_view kNotObserved = "/////";

/// A report's groups, for those who read them, with the part that they fill.
class PartReader {
 public:
  PartReader(const CodedReport& report, CodedPart& into);

 protected:
  /// Empty behind the last.
  std::string_view At(std::size_t index) const {
    return index < report_.Groups.size() ? std::string_view(report_.Groups[index])
                                         : std::string_view();
  }
  std::size_t Count() const { return report_.Groups.size(); }
  /// A mark of the sections behind the levels, or words.
  bool IsMark(std::size_t index) const;
  /// A group that stands there twice, one behind the other.
  bool IsDoubled(std::size_t index) const {
    return At(index) != kNotObserved &&
           (At(index) == At(index + 1) || (index > 0 && At(index) == At(index - 1)));
  }
  /// What it costs to leave a group unexplained.
  double CostOfSkipping(std::size_t index) const { return CostOfSkipping(index, index + 1); }
  double CostOfSkipping(std::size_t begin, std::size_t end) const {
    return skipped_[end] - skipped_[begin];
  }

  /// The group as a temperature and as a wind, where it can be one.
  const std::optional<GroupTemp>& TempAt(std::size_t index) const { return temps_[index]; }
  const std::optional<GroupWind>& WindAt(std::size_t index) const { return winds_[index]; }
  /// The same where the atmosphere may have this temperature at a pressure, which need not be
  /// known.
  bool IsTempOf(std::optional<double> press, std::size_t index) const;

  void Note(const std::string& text) { part_.Notes.push_back(report_.Name() + ": " + text + '.'); }
  void Skipped(std::string_view groups) {
    Note("group " + std::string(groups) + " is garbled and was skipped");
  }
  void Skipped(std::size_t begin, std::size_t end);

  /// The level gets the group's temperature or wind; false for a group that is none.
  bool TakeTemp(std::size_t index, CodedLevel& level);
  bool TakeWind(std::size_t index, CodedLevel& level) const;
  /// Adds what rises from level to level and names the rest.
  ///
  /// slack  m by which a height may lie below the one before, where two units meet
  void AddOrdered(std::vector<CodedLevel> levels, double slack = 0);

  const CodedReport& report_;
  CodedPart& part_;

 private:
  std::vector<std::optional<GroupTemp>> temps_{};  // empty behind the last group
  std::vector<std::optional<GroupWind>> winds_{};
  std::vector<double> skipped_ = {0};  // what it costs to skip all groups up to one
};

}  // namespace vexa::ingest
