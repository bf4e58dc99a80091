#include "program/hodograph_drag.h"

#include <cmath>

namespace vexa {
namespace {

constexpr double kSameHeight = 0.5;  // m

constexpr std::string_view kStormRelative =
    "Wind vectors are not interactive on this screen.\n\n"
    "Interactive winds are only functional with the Ground-Relative Mode,\n"
    "However, the Storm-Motion vector (when plotted) is interactive.";

std::optional<int> LevelAtHeight(const SoundingRecord& record, double aboveGround) {
  for (int level = 1; level <= record.NumWindLevels(); ++level) {
    const double apart = record.WindHgt(level) - record.ElevM - aboveGround;
    if (std::fabs(apart) < kSameHeight) return level;
  }
  return std::nullopt;
}

}  // namespace

std::optional<int> WindLevelAt(const Program& program, const hodograph::HodographPlot& plot,
                               Point at, double within) {
  std::optional<int> nearest;
  double least = within;
  for (const hodograph::ProfileWind& wind : plot.Winds) {
    if (!wind.Observed) continue;
    const Point here = plot.Mapping.ToPoint(wind.Vector);
    const double apart = std::hypot(here.X - at.X, here.Y - at.Y);
    if (apart > least) continue;
    const std::optional<int> level = LevelAtHeight(program.Current.Record, wind.Height);
    if (!level) continue;
    nearest = level;
    least = apart;
  }
  return nearest;
}

std::optional<LevelDrag> BeginWindDrag(Program& program, const hodograph::HodographPlot& plot,
                                       Point at, double within) {
  const std::optional<int> level = WindLevelAt(program, plot, at, within);
  if (!level || !program.Gate.IsOpen()) return std::nullopt;
  if (!plot.StormRelative) return LevelDrag(program, {Dragged::Wind, *level}, at);
  if (program.Current.Ask != nullptr) {
    program.Current.Ask->Ask({.Title = "Storm-Relative Wind Mode ...",
                              .Text = std::string(kStormRelative),
                              .Icon = BoxIcon::Information});
  }
  return std::nullopt;
}

}  // namespace vexa
