#include "core/data_checks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "core/markers.h"
#include "core/numbers.h"
#include "core/record_edits.h"

namespace vexa {
namespace {

constexpr double kHighestTemp = 70;  // °C
constexpr int kHighestElevM = 6000;  // m
constexpr double kFullCircle = 360;  // degrees

// Takes the levels of one array by their 0-based numbers.
template <class T>
void Reorder(Levels<T>& levels, const std::vector<std::size_t>& order) {
  std::vector<T> taken;
  taken.reserve(order.size());
  for (const std::size_t i : order) taken.push_back(levels.Values()[i]);
  levels.Values() = std::move(taken);
}

// Whether `keep` accepts every level and none comes before the one below it.
template <class Keep, class Before>
bool IsInOrder(int count, Keep keep, Before before) {
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    if (!keep(i) || (i > 0 && before(i, i - 1))) return false;
  }
  return true;
}

// Numbers of the levels that `keep` accepts, ordered by `before`.
template <class Keep, class Before>
std::vector<std::size_t> Ordered(int count, Keep keep, Before before) {
  std::vector<std::size_t> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::erase_if(order, [&keep](std::size_t i) { return !keep(i); });
  std::ranges::stable_sort(order, before);
  return order;
}

void ReorderTemps(SoundingRecord& record, const std::vector<std::size_t>& order) {
  Reorder(record.Temp, order);
  Reorder(record.Dewpt, order);
  Reorder(record.Press, order);
}

// Working winds that cover the wind levels move along.
Status ReorderWinds(SoundingRecord& record, const std::vector<std::size_t>& order) {
  const bool covered = record.HasWorkWinds();
  if (covered) {
    Reorder(record.WorkWindDir, order);
    Reorder(record.WorkWindSpd, order);
  }
  Reorder(record.WindSpd, order);
  Reorder(record.WindDir, order);
  Reorder(record.WindHgt, order);
  return covered ? Status::YesHeights : Status::NoHeights;
}

// Directions beyond the circle are fault 3, speeds below 0 fault 4.
template <class T>
QcFinding CheckWinds(const Levels<T>& dir, const Levels<T>& spd) {
  for (int i = 1; i <= std::min(dir.Count(), spd.Count()); ++i) {
    if (dir(i) > static_cast<T>(kFullCircle)) return {3, i};
    if (spd(i) < 0) return {4, i};
  }
  return {};
}

}  // namespace

void PressureDupe(SoundingRecord& record) {
  const std::vector<double>& press = record.Press.Values();
  if (std::ranges::adjacent_find(press) == press.end()) return;
  std::vector<std::size_t> order;
  order.reserve(press.size());
  for (std::size_t i = 0; i < press.size(); ++i) {
    if (i + 1 == press.size() || press[i] != press[i + 1]) order.push_back(i);
  }
  Reorder(record.Temp, order);
  Reorder(record.Dewpt, order);
  Reorder(record.Press, order);
}

Status SortData(SoundingRecord& record) {
  const std::vector<double>& press = record.Press.Values();
  const auto hasPress = [&](std::size_t i) { return press[i] != 0; };
  const auto falls = [&](std::size_t a, std::size_t b) { return press[a] > press[b]; };
  const int temps = record.NumTempLevels();
  if (!IsInOrder(temps, hasPress, falls)) ReorderTemps(record, Ordered(temps, hasPress, falls));
  const std::vector<double>& height = record.WindHgt.Values();
  const std::vector<double>& direction = record.WindDir.Values();
  const auto hasWind = [&](std::size_t i) { return direction[i] != 0; };
  const auto rises = [&](std::size_t a, std::size_t b) { return height[a] < height[b]; };
  const int winds = record.NumWindLevels();
  if (IsInOrder(winds, hasWind, rises)) {
    return record.HasWorkWinds() ? Status::YesHeights : Status::NoHeights;
  }
  return ReorderWinds(record, Ordered(winds, hasWind, rises));
}

namespace {

bool AsTheyStand(std::size_t a, std::size_t b) {
  return a < b;
}

void NoteLeftOut(std::string_view what, int count, const std::string& first,
                 std::vector<std::string>& notes) {
  if (count == 0) return;
  notes.push_back(std::string(what) + " with impossible values, left out: " + Shortest(count) +
                  "; the first: " + first + '.');
}

void KeepPossibleTemps(SoundingRecord& record, std::vector<std::string>& notes) {
  std::string first;
  const auto isPossible = [&](std::size_t i) {
    const TempLevel level{record.Press.Values()[i], record.Temp.Values()[i],
                          record.Dewpt.Values()[i]};
    if (IsPossible(level)) return true;
    if (first.empty()) {
      first =
          Brief(level.Press) + " hPa, " + Brief(level.Temp) + " and " + Brief(level.Dewpt) + " C";
    }
    return false;
  };
  const int temps = record.NumTempLevels();
  if (!IsInOrder(temps, isPossible, AsTheyStand)) {
    ReorderTemps(record, Ordered(temps, isPossible, AsTheyStand));
  }
  NoteLeftOut("Temperature levels", temps - record.NumTempLevels(), first, notes);
}

void KeepPossibleWinds(SoundingRecord& record, std::vector<std::string>& notes) {
  std::string first;
  const auto isPossible = [&](std::size_t i) {
    const WindLevel level{record.WindHgt.Values()[i], record.WindDir.Values()[i],
                          record.WindSpd.Values()[i]};
    if (IsPossible(level)) return true;
    if (first.empty()) {
      first = Brief(level.Height) + " m, " + Brief(level.Dir) + " degrees, " + Brief(level.Spd) +
              " knots";
    }
    return false;
  };
  const int winds = record.NumWindLevels();
  if (!IsInOrder(winds, isPossible, AsTheyStand)) {
    ReorderWinds(record, Ordered(winds, isPossible, AsTheyStand));
  }
  NoteLeftOut("Winds", winds - record.NumWindLevels(), first, notes);
}

void KeepPossibleClouds(SoundingRecord& record, std::vector<std::string>& notes) {
  const auto layers = std::erase_if(record.Clouds.Values(),
                                    [](const CloudLayer& layer) { return !IsPossible(layer); });
  if (layers == 0) return;
  notes.push_back(
      "Cloud layers with impossible bases, left out: " + Shortest(static_cast<int>(layers)) + '.');
}

void KeepPossibleExtras(SoundingRecord& record, std::vector<std::string>& notes) {
  constexpr double kMostExtra = 1e6;  // their first value is a height in feet
  const auto isWild = [](double value) { return !(std::fabs(value) <= kMostExtra); };
  if (std::ranges::none_of(record.ExtraRecord1, isWild) &&
      std::ranges::none_of(record.ExtraRecord2, isWild)) {
    return;
  }
  record.ExtraRecord1 = {};
  record.ExtraRecord2 = {};
  notes.emplace_back("Supplementary values that are impossible were left out.");
}

void KeepPossibleElevation(SoundingRecord& record, std::vector<std::string>& notes) {
  constexpr int kLowestElevM = -500, kHighestPossibleM = 9000;
  if (record.ElevUnknown || (record.ElevM >= kLowestElevM && record.ElevM <= kHighestPossibleM)) {
    return;
  }
  // The record holds the largest whole number for whatever was larger.
  constexpr int kMostToldM = 1000000;
  const bool isTold = record.ElevM > -kMostToldM && record.ElevM < kMostToldM;
  notes.push_back("The elevation" + (isTold ? " of " + Shortest(record.ElevM) + " m" : "") +
                  " is impossible.");
  SetElevationUnknown(record);
}

}  // namespace

std::vector<std::string> KeepPossible(SoundingRecord& record) {
  std::vector<std::string> notes;
  KeepPossibleTemps(record, notes);
  KeepPossibleWinds(record, notes);
  KeepPossibleClouds(record, notes);
  KeepPossibleExtras(record, notes);
  KeepPossibleElevation(record, notes);
  return notes;
}

std::string_view QcText(int number) {
  static constexpr std::array<std::string_view, 9> kTexts = {
      "",
      "Pressures are vertically inconsistent.",
      "Height values are vertically inconsistent.",
      "Wind direction is greater than 360 degrees.",
      "Wind speed value is less then 0 knots.",
      "T/Td relationship is inconsistent.",
      "Temperature is greater than 70C.",
      "Elevation is greater than 6000 meters.",
      "Surface level is missing or garbled.",
  };
  const auto index = static_cast<std::size_t>(std::max(number, 0));
  return index < kTexts.size() ? kTexts[index] : kTexts[0];
}

std::string FindingText(const QcFinding& finding) {
  std::string text(QcText(finding.Number));
  if (finding.Number != 0 && finding.Level != 0) text += " Level " + Shortest(finding.Level) + '.';
  return text;
}

std::string DoubtText(const QcFinding& finding) {
  return "the data are doubtful: " + FindingText(finding);
}

QcFinding CheckRecord(const SoundingRecord& record) {
  if (record.ElevM > kHighestElevM) return {7, 0};
  for (int i = 1; i < record.NumTempLevels(); ++i) {
    if (record.Press(i) <= record.Press(i + 1)) return {1, i};
  }
  for (int i = 1; i <= record.NumTempLevels(); ++i) {
    if (record.Temp(i) > kHighestTemp) return {6, i};
    if (!IsMissing(record.Dewpt(i)) && record.Temp(i) < record.Dewpt(i)) return {5, i};
  }
  if (record.DataFormat == "RAW") {
    for (int i = 1; i < record.NumWindLevels(); ++i) {
      if (record.WindHgt(i) >= record.WindHgt(i + 1)) return {2, i};
    }
  }
  QcFinding found = CheckWinds(record.WindDir, record.WindSpd);
  if (found.Number == 0) found = CheckWinds(record.WorkWindDir, record.WorkWindSpd);
  if (found.Number != 0) return found;
  // A level added beneath is the surface that was lacking.
  const bool lacksSurface =
      record.NumTempLevels() > 0 && record.Press(1) <= record.SurfaceLostBelow;
  return lacksSurface ? QcFinding{8, 1} : QcFinding{};
}

Status DataQC(CurrentSounding& current, bool checkingOff) {
  if (checkingOff) return Status::Ok;
  const ProcedureScope here(current, "DataQC");
  const auto leave = [&current](Status status) {
    current.StatusText = Text(status);
    return status;
  };
  current.QcFault = 0;
  const QcFinding found = CheckRecord(current.Record);
  if (found.Number == 0) return leave(Status::Ok);
  if (current.TolerateOrderOnce && (found.Number == 1 || found.Number == 2)) {
    current.TolerateOrderOnce = false;
    return leave(Status::Ok);
  }
  current.QcFault = found.Number;
  if (current.Ask == nullptr || current.Ask->Unattended()) return leave(Status::QcError);

  const Answer answer = current.Ask->Ask(
      Box{.Title = "Data Error",
          .Text = std::string(QcText(found.Number)) + "\nError is at or adjacent to Data Level: " +
                  Shortest(found.Level) + "\nClick OK to correct the error.",
          .Buttons = BoxButtons::OkCancel});
  return leave(answer == Answer::Cancel ? Status::QcCancel : Status::QcError);
}

}  // namespace vexa
