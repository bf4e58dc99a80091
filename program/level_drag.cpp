#include "program/level_drag.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/interpolate.h"
#include "core/markers.h"
#include "core/numbers.h"
#include "core/record_edits.h"
#include "core/shown_values.h"
#include "program/readout.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

constexpr double kMostWind = 250;  // knots that a drag may reach

double Apart(Point a, Point b) {
  return std::hypot(a.X - b.X, a.Y - b.Y);
}

// The level whose symbol's hot spot contains a place; only the winds that are drawn have one.
std::optional<int> WindAt(const Program& program, Point at) {
  const SoundingRecord& record = program.Current.Record;
  const diagram::DiagramMapping& mapping = program.Plot->Mapping;
  for (const HotSpot& spot : program.Plot->Page.HotSpots()) {
    if (spot.Tag != "wind" || !spot.Where.Contains(at)) continue;
    const double middle = (spot.Where.Top + spot.Where.Bottom) / 2;
    std::optional<int> nearest;
    double least = 0;
    for (int level = 1; level <= record.NumWindLevels(); ++level) {
      if (!record.HasWind(level)) continue;
      const double press = analysis::GetPRESS(program.Results.Levels, record.WindHgt(level));
      if (!HasHeight(press)) continue;
      const double apart = std::fabs(mapping.IsobarY(press, mapping.Frame().Right) - middle);
      if (nearest && apart >= least) continue;
      nearest = level;
      least = apart;
    }
    return nearest;
  }
  return std::nullopt;
}

// The temperature at which a pressure's point stands at a place across the page. On the tephigram
// the place is not quite linear in temperature, hence the repetition.
double TempAcross(const diagram::DiagramMapping& mapping, double press, double start, double x) {
  double temp = start;
  for (int i = 0; i < 4; ++i) {
    const double here = mapping.ToPoint(temp, press).X;
    const double perDegree = mapping.ToPoint(temp + 1, press).X - here;
    temp += (x - here) / perDegree;
  }
  return std::round(temp * 10) / 10;
}

std::optional<Fault> MoveTemp(SoundingRecord& record, Grip grip, double temp) {
  TempLevel to{record.Press(grip.Level), record.Temp(grip.Level), record.Dewpt(grip.Level)};
  if (grip.What == Dragged::Temp) {
    to.Temp = temp;
    if (!IsMissing(to.Dewpt)) to.Dewpt = std::min(to.Dewpt, temp);
  } else {
    to.Dewpt = std::min(temp, to.Temp);
  }
  return ChangeTempLevel(record, grip.Level, to);
}

std::optional<Fault> PutWind(SoundingRecord& record, int level, const analysis::WindVector& arrow) {
  const analysis::Wind wind = analysis::FromComponents(arrow);
  const double dir = std::round(wind.Dir);
  return ChangeWindLevel(
      record, level,
      {record.WindHgt(level), dir < 1 ? 360 : dir, std::min(std::round(wind.Spd), kMostWind)});
}

std::optional<Fault> MoveWind(SoundingRecord& record, int level, double dx, double dy) {
  // The arrow points to where the wind comes from: up the page is north.
  analysis::WindVector arrow = analysis::Components({record.WindDir(level), record.WindSpd(level)});
  arrow.U += dx / LevelDrag::kUnitsPerKnot;
  arrow.V -= dy / LevelDrag::kUnitsPerKnot;
  return PutWind(record, level, arrow);
}

std::string_view NameOf(Dragged what) {
  return what == Dragged::Temp ? "temperature" : what == Dragged::Dewpt ? "dew point" : "wind";
}

}  // namespace

std::optional<Grip> CursorTTorTD(const Program& program, Point at, double within) {
  if (!program.Plot || program.View.Looping) return std::nullopt;
  const diagram::DiagramMapping& mapping = program.Plot->Mapping;
  if (!mapping.Frame().Contains(at)) {
    const auto wind = WindAt(program, at);
    return wind ? std::optional<Grip>({Dragged::Wind, *wind}) : std::nullopt;
  }
  const SoundingRecord& record = program.Current.Record;
  std::optional<Grip> nearest;
  double least = within;
  const auto consider = [&](Dragged what, int level, double temp) {
    if (IsMissing(temp) || !(record.Press(level) > 0)) return;
    const double apart = Apart(mapping.ToPoint(temp, record.Press(level)), at);
    if (apart > least || (nearest && apart == least)) return;
    nearest = Grip{what, level};
    least = apart;
  };
  for (int level = 1; level <= record.NumTempLevels(); ++level) {
    consider(Dragged::Temp, level, record.Temp(level));
    consider(Dragged::Dewpt, level, record.Dewpt(level));
  }
  return nearest;
}

LevelDrag::LevelDrag(const Program& program, Grip grip, Point from)
    : grip_(grip), from_(from), before_(program.Current.Record) {}

Changes LevelDrag::Move(Program& program, Point to) {
  if (!program.Plot || !program.Gate.IsOpen()) return {};
  SoundingRecord moved = before_;
  const int level = grip_.Level;
  std::optional<Fault> fault;
  if (grip_.What == Dragged::Wind) {
    fault = MoveWind(moved, level, to.X - from_.X, to.Y - from_.Y);
  } else {
    const diagram::DiagramMapping& mapping = program.Plot->Mapping;
    const double was = grip_.What == Dragged::Temp ? before_.Temp(level) : before_.Dewpt(level);
    fault = MoveTemp(moved, grip_, TempAcross(mapping, before_.Press(level), was, to.X));
  }
  if (fault || moved == program.Current.Record) return {};
  program.Doc.Try(std::move(moved));
  return {.Sounding = true};
}

Changes LevelDrag::SetWind(Program& program, const analysis::WindVector& wind) {
  if (!program.Gate.IsOpen()) return {};
  SoundingRecord moved = before_;
  if (PutWind(moved, grip_.Level, wind) || moved == program.Current.Record) return {};
  program.Doc.Try(std::move(moved));
  return {.Sounding = true};
}

Changes LevelDrag::TakeBack(Program& program) {
  return {.Sounding = program.Doc.TakeBack()};
}

void LevelDrag::Finish(Program& program) {
  program.Doc.Keep("drag " + std::string(NameOf(grip_.What)) + " of level " +
                   Shortest(grip_.Level));
}

std::string LevelDrag::Text(const Program& program) const {
  const SoundingRecord& record = program.Current.Record;
  if (grip_.What != Dragged::Wind) return CursorDataLabels(program, grip_.Level);
  const double height = record.WindHgt(grip_.Level);
  return LengthText(height, program.Set.GpmUnits) + "  " +
         WindText({record.WindDir(grip_.Level), record.WindSpd(grip_.Level)}, program.Set.Speed);
}

}  // namespace vexa
