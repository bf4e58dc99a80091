#include "program/hodograph_commands.h"

#include "core/error_report.h"
#include "core/units.h"
#include "hodograph/wind_table.h"

namespace vexa {
namespace {

void Tell(Program& program, const std::optional<Fault>& fault) {
  if (fault) ErrorReport(program.Current, *fault);
}

}  // namespace

hodograph::HodographInput HodographOf(const Program& program) {
  return {.Sounding = program.Current.Record,
          .Results = program.Results,
          .Set = program.Set,
          .Window = program.Hodograph,
          .Compared = program.Compared};
}

Changes EnterStormMotion(Program& program, analysis::Wind motion) {
  const Options before = program.Set;
  program.Set = DraftStorm(program, motion).Set;
  return {.Options = program.Set != before};
}

Changes SetMotionMode(Program& program, Scaling mode) {
  if (mode == Scaling::Auto) program.Hodograph.Hold = false;
  if (program.Set.MotionMode == mode) return {};
  program.Set.MotionMode = mode;
  return {.Options = true};
}

Changes ChooseMover(Program& program, StormMover mover) {
  if (program.Set.Mover == mover) return {};
  program.Set.Mover = mover;
  return {.Options = true};
}

Changes HoldStormMotion(Program& program, bool hold) {
  if (program.Hodograph.Hold == hold) return {};
  if (!hold) return SetMotionMode(program, Scaling::Auto);
  const std::optional<analysis::Mover>& chosen = program.Results.Storm.Chosen();
  if (!chosen) return {};
  program.Hodograph.Hold = true;
  return EnterStormMotion(program, analysis::FromComponents(chosen->Motion));
}

StormDraft DraftStorm(const Program& program, analysis::Wind motion) {
  StormDraft draft{.Set = program.Set};
  draft.Set.MotionMode = Scaling::Manual;
  draft.Set.ManualMotionDir = Wrap360(motion.Dir);
  draft.Set.ManualMotionSpd = motion.Spd;
  draft.Storm = analysis::AnalyseStormMotion(program.Current.Record, draft.Set);
  return draft;
}

void LoadCompared(Program& program) {
  std::vector<Fault> faults;
  program.Compared = hodograph::LoadComparisons(program.Where.Root, faults);
  for (const Fault& fault : faults) ErrorReport(program.Current, fault);
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
  const hodograph::WindTable table = hodograph::ListWinds(HodographOf(program));
  Tell(program, hodograph::SaveListings(program.Where.Root, program.Current.Record,
                                        hodograph::TableText(table)));
}

}  // namespace vexa
