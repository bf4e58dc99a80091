#include "program/hodograph_commands.h"

#include <algorithm>

#include "config/catalogue.h"
#include "core/error_report.h"
#include "core/numbers.h"
#include "core/units.h"
#include "diagram/palette.h"
#include "hodograph/wind_table.h"
#include "program/front_displays.h"

namespace vexa {
namespace {

void Tell(Program& program, const std::optional<Fault>& fault) {
  if (fault) program.Doc.Report(*fault);
}

// As the settings take it: tenths of a degree from 1 to 360.
double EnteredDirection(double degrees) {
  const RowInfo& takes = *FindOption("Manual storm direction");
  const double direction = Rounded(Wrap360(degrees), 1);
  return direction < takes.Least / 2 ? takes.Most : std::max(direction, takes.Least);
}

// The hodographs kept for comparison; while the diagram compares, its second sounding in place of
// the second of them.
std::vector<hodograph::ComparedWinds> ComparedOf(const Program& program, const Options& set) {
  std::vector<hodograph::ComparedWinds> compared = program.Displays.Of<HodographState>().Compared;
  if (program.View.Mode != diagram::MultiMode::Compare || program.Others.empty()) return compared;
  constexpr int kSecond = 2;
  std::erase_if(compared, [](const hodograph::ComparedWinds& one) { return one.Slot == kSecond; });
  const SoundingRecord& second = program.Others.front()->Record();
  compared.push_back({.Slot = kSecond,
                      .Title = second.StationTitle,
                      .Winds = hodograph::WindProfile(second, set),
                      .DiagramInk = diagram::OverlayPen(diagram::PaletteFor(set), 1).Ink});
  return compared;
}

}  // namespace

hodograph::HodographInput HodographOf(const Program& program) {
  return HodographOf(program, program.Set);
}

hodograph::HodographInput HodographOf(const Program& program, const Options& set) {
  return {.Sounding = program.Current.Record,
          .Results = program.Results,
          .Set = set,
          .Window = program.Settings.Hodograph,
          .Compared = ComparedOf(program, set),
          .FrontNormal = FrontNormal(program)};
}

Changes EnterStormMotion(Program& program, analysis::Wind motion) {
  const RowInfo& speeds = *FindOption("Manual storm speed");
  const Options before = program.Set;
  program.Set.MotionMode = Scaling::Manual;
  program.Set.ManualMotionDir = EnteredDirection(motion.Dir);
  program.Set.ManualMotionSpd = std::clamp(Rounded(motion.Spd, 2), speeds.Least, speeds.Most);
  return {.View = program.Set != before};
}

Changes SetMotionMode(Program& program, Scaling mode) {
  if (mode == Scaling::Auto) program.Settings.Hodograph.Hold = false;
  if (program.Set.MotionMode == mode) return {};
  program.Set.MotionMode = mode;
  return {.View = true};
}

Changes ChooseMover(Program& program, StormMover mover) {
  if (program.Set.Mover == mover) return {};
  program.Set.Mover = mover;
  return {.View = true};
}

Changes HoldStormMotion(Program& program, bool hold) {
  if (program.Settings.Hodograph.Hold == hold) return {};
  if (!hold) return SetMotionMode(program, Scaling::Auto);
  const std::optional<analysis::Mover>& chosen = program.Results.Storm.Chosen();
  if (!chosen) return {};
  program.Settings.Hodograph.Hold = true;
  return EnterStormMotion(program, analysis::FromComponents(chosen->Motion));
}

void EndStormMotion(Program& program) {
  if (!program.Settings.Hodograph.Hold) program.Set.MotionMode = Scaling::Auto;
}

StormEntry EntryOf(const Program& program) {
  return {program.Set.MotionMode,
          {program.Set.ManualMotionDir, program.Set.ManualMotionSpd},
          program.Settings.Hodograph.Hold};
}

Changes TakeBack(Program& program, const StormEntry& entry) {
  const Options before = program.Set;
  program.Set.MotionMode = entry.Mode;
  program.Set.ManualMotionDir = entry.Motion.Dir;
  program.Set.ManualMotionSpd = entry.Motion.Spd;
  program.Settings.Hodograph.Hold = entry.Hold;
  return {.View = program.Set != before};
}

void LoadCompared(Program& program) {
  if (program.Where.Root.empty()) return;
  std::vector<Fault> faults;
  program.Displays.Of<HodographState>().Compared =
      hodograph::LoadComparisons(program.Where.Root, faults);
  for (const Fault& fault : faults) program.Doc.Report(fault);
}

void KeepCompared(Program& program, int slot) {
  Tell(program, hodograph::KeepComparison(program.Where.Root, slot, program.Current.Record));
  LoadCompared(program);
}

void EmptyCompared(Program& program, int slot) {
  Tell(program, hodograph::EmptyComparison(program.Where.Root, slot));
  LoadCompared(program);
}

void SaveWindListings(Program& program) {
  if (program.Where.Root.empty()) return;
  const hodograph::WindTable table = hodograph::ListWinds(HodographOf(program, program.Set));
  Tell(program, hodograph::SaveListings(program.Where.Root, program.Current.Record,
                                        hodograph::TableText(table)));
}

}  // namespace vexa
