#include "program/sounding_loop.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "program/commands.h"
#include "program/edit_commands.h"
#include "program/listed_soundings.h"

namespace vexa {
namespace {

// Takes a listed sounding without a box; false when it cannot be read or its check found something,
// and the sounding before stays in work then.
bool TakeQuietly(Program& program, Document::Leave leave, std::size_t index) {
  const Silenced quiet = program.Doc.Quiet();
  const Outcome<SharedSounding> listed = program.Listed.Get(index, PolicyOf(program));
  if (!listed || listed.Value()->Finding().Number != 0) return false;
  TakeListed(program, leave, index, *listed.Value());
  return true;
}

}  // namespace

bool CanLoop(const Program& program) {
  return program.Listed.Size() > 1;
}

Changes StartLoop(Program& program) {
  if (!CanLoop(program) || program.View.Looping) return {};
  const auto leave = commands::MayLeaveSounding(program);
  if (!leave) return {};
  const bool changed = program.Doc.ForgetEdits(*leave);
  ViewState& view = program.View;
  view.Looping = true;
  view.Mode = diagram::MultiMode::Single;
  program.Others.clear();
  if (program.Set.System.LoopNoRescaling && program.Plot)
    view.LoopScale = program.Plot->Mapping.Whole();
  return {.Sounding = changed, .View = true};
}

Changes StepLoop(Program& program) {
  if (!program.View.Looping) return {};
  if (!CanLoop(program)) return StopLoop(program);
  const auto pass = program.Gate.Enter();
  if (!pass) return {};  // another command runs: at the next tick
  const auto leave = program.Doc.LeaveUnaltered();
  if (!leave) {
    program.Notices.push_back("The loop stopped: " + program.Current.FileName + " was changed.");
    return StopLoop(program);
  }
  const std::size_t count = program.Listed.Size();
  if (!program.Set.System.SkipLoop) {
    const Silenced quiet = program.Doc.Quiet();  // nobody attends to boxes while pictures pass
    const std::size_t next = (program.Listed.Now() + 1) % count;
    if (LoadListed(program, *leave, next)) return {.Sounding = true};
    program.Notices.push_back("The loop ended: " + ListedText(program, next) + " cannot be shown.");
    return StopLoop(program);
  }
  for (std::size_t step = 1; step < count; ++step) {
    if (TakeQuietly(program, *leave, (program.Listed.Now() + step) % count)) {
      return {.Sounding = true};
    }
  }
  return StopLoop(program);
}

Changes StopLoop(Program& program) {
  if (!program.View.Looping) return {};
  program.View.Looping = false;
  program.View.LoopScale.reset();
  return {.View = true};
}

namespace {

Changes Step(Program& program, int step) {
  const auto count = static_cast<std::ptrdiff_t>(program.Listed.Size());
  std::ptrdiff_t next = static_cast<std::ptrdiff_t>(program.Listed.Now()) + step;
  if (step == 0 || next < 0 || next >= count) return {};
  const auto leave = commands::MayLeaveSounding(program);
  if (!leave) return {};
  // What cannot be read is told and stepped over, or it would block the way for good.
  for (; next >= 0 && next < count; next += step) {
    const auto member = static_cast<std::size_t>(next);
    if (LoadListed(program, *leave, member)) return {.Sounding = true};
    if (program.Current.StatusText == Text(Status::QcCancel)) return {};
    program.Notices.push_back(ListedText(program, member) + " cannot be shown.");
  }
  return {.View = true};
}

}  // namespace

Changes StepBack(Program& program) {
  return Step(program, -1);
}

Changes StepForward(Program& program) {
  return Step(program, 1);
}

Changes StepListed(Program& program, int step) {
  const auto pass = program.Gate.Enter();
  return pass ? Step(program, step) : Changes{};
}

}  // namespace vexa
