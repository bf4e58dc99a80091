#include "ingest/coded_part.h"

#include <algorithm>
#include <utility>

#include "core/numbers.h"
#include "core/units.h"
#include "ingest/coded_chain.h"
#include "ingest/coded_groups.h"
#include "ingest/coded_judge.h"
#include "ingest/coded_mandatory.h"
#include "ingest/coded_pilot.h"
#include "ingest/coded_remarks.h"
#include "ingest/coded_significant.h"

namespace vexa::ingest {
namespace {

constexpr std::size_t kBehind = 4;  // groups behind the last that may be asked for

bool IsPlainText(std::string_view group) {
  return group.size() >= 2 &&
         std::ranges::all_of(group, [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool SameValues(const CodedLevel& a, const CodedLevel& b) {
  return a.Values.Temp == b.Values.Temp && a.Values.Dewpt == b.Values.Dewpt &&
         a.Values.Dir == b.Values.Dir && a.Values.Spd == b.Values.Spd;
}

// Of a level one way up, whichever way its place is given.
double Depth(const CodedLevel& level) {
  return level.Values.Press ? *level.Values.Press : -level.Values.Height.value_or(0);
}

std::string PlaceOf(const CodedLevel& level) {
  return level.Values.Press ? Shortest(*level.Values.Press) + " hPa"
                            : Shortest(level.Values.Height.value_or(0)) + " m";
}

}  // namespace

PartReader::PartReader(const CodedReport& report, CodedPart& into) : report_(report), part_(into) {
  constexpr double kDoubled = 0.5;
  const double toKnots = report.InKnots ? 1 : kMsToKnot;
  for (std::size_t i = 0; i < Count(); ++i) {
    skipped_.push_back(skipped_.back() + (IsDoubled(i) ? kDoubled : 1));
    temps_.push_back(ReadTempGroup(At(i)));
    winds_.push_back(ReadWindGroup(At(i), toKnots));
  }
  temps_.resize(Count() + kBehind);
  winds_.resize(Count() + kBehind);
}

bool PartReader::IsTempOf(std::optional<double> press, std::size_t index) const {
  const std::optional<GroupTemp>& temp = TempAt(index);
  return temp && (!temp->Temp || !press || IsPossibleTemp(*press, *temp->Temp));
}

bool PartReader::IsMark(std::size_t index) const {
  return IsSectionMark(At(index)) || IsPlainText(At(index));
}

void PartReader::Skipped(std::size_t begin, std::size_t end) {
  if (begin >= end) return;
  std::string groups;
  for (std::size_t i = begin; i < end; ++i) {
    groups += (groups.empty() ? "" : " ") + std::string(At(i));
  }
  Skipped(groups);
}

bool PartReader::TakeTemp(std::size_t index, CodedLevel& level) {
  if (!IsTempOf(level.Values.Press, index)) return false;
  level.Values.Temp = TempAt(index)->Temp;
  level.Values.Dewpt = TempAt(index)->Dewpt;
  if (At(index).ends_with('/') && Figures(At(index), 3, 1)) Skipped(At(index).substr(3));
  return true;
}

bool PartReader::TakeWind(std::size_t index, CodedLevel& level) const {
  const std::optional<GroupWind>& wind = WindAt(index);
  if (!wind) return false;
  level.Values.Dir = wind->Dir;
  level.Values.Spd = wind->Spd;
  return true;
}

void PartReader::AddOrdered(std::vector<CodedLevel> levels, double slack) {
  for (std::size_t i = 1; i < levels.size();) {
    if (Depth(levels[i]) != Depth(levels[i - 1])) {
      ++i;
      continue;
    }
    if (!SameValues(levels[i], levels[i - 1])) {
      Note("a level at " + PlaceOf(levels[i]) + " is repeated; it was skipped");
    }
    levels.erase(levels.begin() + static_cast<std::ptrdiff_t>(i));
  }
  std::vector<double> depths;
  for (const CodedLevel& level : levels) depths.push_back(Depth(level));
  const std::vector<bool> kept = CertainlyFalling(depths, slack);
  for (std::size_t i = 0; i < levels.size(); ++i) {
    if (kept[i]) {
      part_.Levels.push_back(std::move(levels[i]));
    } else {
      Note("the level at " + PlaceOf(levels[i]) + " is out of order; it was skipped");
      if (i + 1 < levels.size()) levels[i + 1].IsBehindGap = true;
    }
  }
}

CodedPart ReadPart(const CodedReport& report) {
  CodedPart part;
  if (report.IsPilot()) {
    ReadPilot(report, part);
  } else if (report.Letter() == 'A' || report.Letter() == 'C') {
    ReadMandatoryLevels(report, part);
  } else {
    ReadSignificantLevels(report, part);
  }
  for (CodedLevel& level : part.Levels) level.Part = report.Letter();
  part.Garbled = static_cast<int>(part.Notes.size());
  for (const std::string& note : report.Notes) {
    part.Notes.push_back(report.Name() + ": " + note + '.');
  }
  part.Remarks = RemarksIn(report.Groups, part.End);
  return part;
}

}  // namespace vexa::ingest
