#include "core/data_checks.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

#include "core/markers.h"
#include "core/numbers.h"

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

// Numbers of the levels that `keep` accepts, ordered by `before`.
template <class Keep, class Before>
std::vector<std::size_t> Ordered(int count, Keep keep, Before before) {
  std::vector<std::size_t> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::erase_if(order, [&keep](std::size_t i) { return !keep(i); });
  std::ranges::stable_sort(order, before);
  return order;
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
  std::vector<std::size_t> order;
  order.reserve(press.size());
  for (std::size_t i = 0; i < press.size(); ++i) {
    if (i + 1 == press.size() || press[i] != press[i + 1]) order.push_back(i);
  }
  if (order.size() == press.size()) return;
  Reorder(record.Temp, order);
  Reorder(record.Dewpt, order);
  Reorder(record.Press, order);
}

Status SortData(SoundingRecord& record) {
  const std::vector<double>& press = record.Press.Values();
  const std::vector<std::size_t> temps = Ordered(
      record.NumTempLevels(), [&](std::size_t i) { return press[i] != 0; },
      [&](std::size_t a, std::size_t b) { return press[a] > press[b]; });
  Reorder(record.Temp, temps);
  Reorder(record.Dewpt, temps);
  Reorder(record.Press, temps);

  const int windLevels = record.NumWindLevels();
  const bool covered = windLevels > 0 && record.WorkWindDir.Count() == windLevels &&
                       record.WorkWindSpd.Count() == windLevels;
  const std::vector<double>& height = record.WindHgt.Values();
  const std::vector<double>& direction = record.WindDir.Values();
  const std::vector<std::size_t> winds = Ordered(
      windLevels, [&](std::size_t i) { return direction[i] != 0; },
      [&](std::size_t a, std::size_t b) { return height[a] < height[b]; });
  if (covered) {
    Reorder(record.WorkWindDir, winds);
    Reorder(record.WorkWindSpd, winds);
  }
  Reorder(record.WindSpd, winds);
  Reorder(record.WindDir, winds);
  Reorder(record.WindHgt, winds);
  return covered ? Status::YesHeights : Status::NoHeights;
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
