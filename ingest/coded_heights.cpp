#include "ingest/coded_heights.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

#include "core/markers.h"
#include "core/numbers.h"

namespace vexa::ingest {
namespace {

void SetTemperatures(const std::vector<CodedLevel>& levels, HeightFinder& heights) {
  std::map<double, const SourceLevel*, std::greater<>> byPress;
  for (const CodedLevel& level : levels) {
    if (level.Values.Press && level.Values.Temp) {
      byPress.try_emplace(*level.Values.Press, &level.Values);
    }
  }
  std::vector<double> press, temp, dewpt;
  for (const auto& [pressure, values] : byPress) {
    press.push_back(pressure);
    temp.push_back(*values->Temp);
    // Impossibly moist is as good as unknown.
    const bool isMoist = values->Dewpt && *values->Dewpt <= *values->Temp;
    dewpt.push_back(isMoist ? *values->Dewpt : kMissing);
  }
  heights.SetTemperatures(std::move(press), std::move(temp), std::move(dewpt));
}

// Of the heights that three figures can stand for the nearest to an expected one.
double Nearest(double press, int figures, double expected) {
  constexpr double kLowestInDecametres = 500, kBelowSea = 500;
  if (press == 1000) return figures >= kBelowSea ? kBelowSea - figures : figures;
  const bool isDecametres = press <= kLowestInDecametres;
  const double shown = isDecametres ? figures * 10.0 : figures;
  const double cycle = isDecametres ? 10000 : 1000;
  return shown + cycle * std::round((expected - shown) / cycle);
}

// The ground's height takes its place among the mandatory levels.
HeightFinder WithGround(std::vector<CodedLevel>& levels, double ground) {
  std::map<double, double, std::greater<>> known;
  for (CodedLevel& level : levels) {
    const bool isGround = level.Kind == LevelKind::Surface && level.Values.Temp;
    if (isGround) level.Values.Height = ground;
    if (!level.Values.Press || !level.Values.Height) continue;
    if (isGround || level.Kind == LevelKind::Mandatory) {
      known.try_emplace(*level.Values.Press, *level.Values.Height);
    }
  }
  HeightFinder heights;
  SetTemperatures(levels, heights);
  for (const auto& [press, height] : known) heights.AddKnown(press, height);
  return heights;
}

}  // namespace

HeightFinder RestoreHeights(std::vector<CodedLevel>& levels, std::optional<double>& ground,
                            std::vector<std::string>& notes) {
  HeightFinder heights;
  SetTemperatures(levels, heights);
  std::vector<CodedLevel*> mandatory;
  for (CodedLevel& level : levels) {
    if (level.Kind == LevelKind::Mandatory && level.HeightFigures) mandatory.push_back(&level);
  }
  std::ranges::stable_sort(mandatory, std::greater{},
                           [](const CodedLevel* level) { return *level->Values.Press; });
  bool isFirst = true;
  for (CodedLevel* level : mandatory) {
    const double press = *level->Values.Press;
    const double expected = heights.At(press);
    const double height = Nearest(press, *level->HeightFigures, expected);
    // Without a level below, the expectation itself knows nothing of the day's pressure, and below
    // the ground nothing of the temperature.
    if (!isFirst && level->Values.Temp && std::fabs(height - expected) > kDoubtfulHeight) {
      notes.push_back("The height of group " + level->HeightGroup +
                      " does not fit the levels below; it was left out.");
      continue;
    }
    level->Values.Height = height;
    heights.AddKnown(press, height);
    isFirst = false;
  }
  const auto surface = std::ranges::find_if(levels, [](const CodedLevel& level) {
    return level.Kind == LevelKind::Surface && level.Values.Temp && level.Values.Press;
  });
  if (surface == levels.end()) return heights;
  // Without a mandatory level there is nothing that the ground could contradict or fit.
  if (isFirst) return ground ? WithGround(levels, *ground) : heights;
  SettleGround(heights.At(*surface->Values.Press), ground, notes);
  return WithGround(levels, *ground);
}

}  // namespace vexa::ingest
