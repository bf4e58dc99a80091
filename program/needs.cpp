#include "program/needs.h"

namespace vexa {
namespace {

bool HasTemps(const Program& program) {
  return program.Current.Record.NumTempLevels() > 0;
}
bool HasWinds(const Program& program) {
  return program.Current.Record.NumWindLevels() > 0;
}
bool ShowsOthers(const Program& program, diagram::MultiMode mode) {
  return program.View.Mode == mode && !program.Others.empty();
}

}  // namespace

std::string_view NeedsSounding(const Program& program) {
  if (HasTemps(program)) return {};
  return HasWinds(program) ? "needs a sounding with temperatures" : "needs a sounding";
}

std::string_view NeedsLevels(const Program& program) {
  return HasTemps(program) || HasWinds(program) ? "" : "needs a sounding";
}

std::string_view NeedsUndo(const Program& program) {
  return program.Doc.History().CanUndo() ? "" : "needs a change of the sounding";
}

std::string_view NeedsRedo(const Program& program) {
  return program.Doc.History().CanRedo() ? "" : "needs a change that was taken back";
}

std::string_view NeedsAltered(const Program& program) {
  return program.Doc.CanRestore() ? "" : "needs a sounding that was changed";
}

std::string_view NeedsSeveral(const Program& program) {
  if (!HasTemps(program)) return NeedsSounding(program);
  const bool hasOthers = program.Listed.Size() > 1 || !program.Others.empty();
  return hasOthers ? "" : "needs a list of several soundings";
}

std::string_view NeedsEarlier(const Program& program) {
  return program.Listed.Size() > 1 && program.Listed.Now() > 0 ? ""
                                                               : "needs an earlier one in the list";
}

std::string_view NeedsLater(const Program& program) {
  return program.Listed.Now() + 1 < program.Listed.Size() ? "" : "needs a later one in the list";
}

std::string_view NeedsZoom(const Program& program) {
  return program.View.Zoom ? "" : "needs an enlarged diagram";
}

std::string_view NeedsOverlay(const Program& program) {
  return HasTemps(program) && ShowsOthers(program, diagram::MultiMode::Overlay)
             ? ""
             : "needs an overlay of several soundings";
}

std::string_view NeedsComparison(const Program& program) {
  return HasTemps(program) && ShowsOthers(program, diagram::MultiMode::Compare)
             ? ""
             : "needs a comparison of two soundings";
}

}  // namespace vexa
