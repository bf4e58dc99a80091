#include "program/sounding_loop.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "program/commands.h"
#include "program/listed_soundings.h"

namespace vexa {
namespace {

// Loads a listed sounding without a box; false when it cannot be read or fails its check, and the
// sounding before is in work again then.
bool LoadQuietly(Program& program, std::size_t index) {
  CurrentSounding before = program.Current;
  bool good = false;
  {
    const Silenced quiet(program.Current);
    good = LoadListed(program, index) && program.Current.QcFault == 0;
  }
  if (!good) program.Current = std::move(before);
  return good;
}

}  // namespace

bool CanLoop(const Program& program) {
  return program.Listed.size() > 1;
}

Changes StartLoop(Program& program) {
  if (!CanLoop(program) || program.View.Looping) return {};
  ViewState& view = program.View;
  view.Looping = true;
  view.Mode = diagram::MultiMode::Single;
  program.Others.clear();
  if (program.Set.LoopNoRescaling && program.Plot) view.LoopScale = program.Plot->Mapping.Whole();
  return {.View = true};
}

Changes StepLoop(Program& program) {
  if (!program.View.Looping) return {};
  if (!CanLoop(program)) return StopLoop(program);
  const std::size_t count = program.Listed.size();
  if (!program.Set.SkipLoop) {
    const Silenced quiet(program.Current);  // nobody attends to boxes while pictures pass
    const Changes changes = SequenceSounding(program, (program.ListedNow + 1) % count);
    const bool refused = !program.Gate.IsOpen();  // another command runs: at the next tick
    if (changes.Any() || refused) return changes;
    program.Notices.push_back(
        "The loop ended: " + ListedText(program, (program.ListedNow + 1) % count) +
        " cannot be shown.");
    return StopLoop(program);
  }
  const auto pass = program.Gate.Enter();
  if (!pass) return {};
  for (std::size_t step = 1; step < count; ++step) {
    const std::size_t index = (program.ListedNow + step) % count;
    if (!LoadQuietly(program, index)) continue;
    program.ListedNow = index;
    NoteHeader(program);
    return {.Sounding = true};
  }
  return StopLoop(program);
}

Changes StopLoop(Program& program) {
  if (!program.View.Looping) return {};
  program.View.Looping = false;
  program.View.LoopScale.reset();
  return {.View = true};
}

Changes StepListed(Program& program, int step) {
  const auto next = static_cast<std::ptrdiff_t>(program.ListedNow) + step;
  if (next < 0) return {};
  return SequenceSounding(program, static_cast<std::size_t>(next));
}

}  // namespace vexa
