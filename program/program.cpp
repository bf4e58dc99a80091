#include "program/program.h"

#include <cassert>
#include <utility>

#include "core/data_checks.h"
#include "core/error_report.h"
#include "core/numbers.h"
#include "diagram/title_text.h"
#include "program/commands.h"
#include "program/displays.h"
#include "program/edit_commands.h"
#include "program/hodograph_commands.h"
#include "program/listed_soundings.h"
#include "program/menu.h"
#include "program/settings_commands.h"
#include "program/sounding_loop.h"
#include "program/view_commands.h"

namespace vexa {
namespace {

constexpr std::string_view kProgramTitle = "VEXA  -  ";

Progress ProgressOf(Program& program) {
  return program.Current.Ask == nullptr ? Progress() : Progress(*program.Current.Ask);
}

// Runs one command behind the closed gate; what was not foreseen ends in the error reporter.
template <class Body>
Changes Behind(Program& program, std::string_view procedure, Body&& body) {
  const auto pass = program.Gate.Enter();
  if (!pass) return {};
  Changes changes;
  const std::optional<Fault> fault = Guarded(procedure, [&]() -> std::optional<Fault> {
    changes = body();
    return {};
  });
  if (fault) program.Doc.Report(*fault);
  return changes;
}

// DCAPE lowers a parcel from every level; with thousands of levels that takes noticeable time.
void HintAtDcape(Program& program) {
  constexpr int kMany = 1000;
  if (program.DcapeHinted || program.Set.Dcape != DcapeMode::Best ||
      program.Doc.Record().NumTempLevels() < kMany) {
    return;
  }
  program.DcapeHinted = true;
  program.Notices.push_back(
      "DCAPE can be configured for faster simple calculations  (F9 - Tab 3).");
}

void WarnOfTephigram(Program& program) {
  if (program.TephigramWarned || program.Plot->Warning.empty()) return;
  program.TephigramWarned = true;
  if (program.Current.Ask == nullptr) return;
  program.Current.Ask->Ask(Box{.Title = std::string(kErrorBoxTitle),
                               .Text = program.Plot->Warning,
                               .Icon = BoxIcon::Information});
}

// The cross stays at its temperature and pressure, which the new axes may put elsewhere.
void TakePlot(Program& program, diagram::SoundingPlot plot) {
  PageCursor& cursor = program.View.Cursor;
  if (program.Plot && cursor.At) {
    const diagram::DiagramCoordinates there = program.Plot->Mapping.ToCoordinates(*cursor.At);
    cursor.At = plot.Mapping.ToPoint(there.Temp, there.Press);
  }
  program.Plot = std::move(plot);
}

}  // namespace

Changes RunCommand(Program& program, const MenuRow& entry) {
  return Behind(program, "RunCommand", [&]() -> Changes {
    if (entry.Does.Run != nullptr) return entry.Does.Run(program);
    if (const DisplayRow* display = FindDisplay(program.DisplayTable, entry.Does.Display)) {
      OpenDisplay(program, *display);
    }
    if (!entry.Does.Layout.empty()) return ChooseLayout(program, entry.Does.Layout);
    return {};
  });
}

Changes RunCommand(Program& program, std::string_view entry) {
  const std::vector<MenuRow> tree = MenuTree(program.DisplayTable);
  const MenuRow* row = FindEntry(tree, entry);
  assert(row != nullptr);
  return row == nullptr ? Changes{} : RunCommand(program, *row);
}

bool Refresh(Program& program, Changes changes) {
  if (!changes.Any()) return true;
  const auto pass = program.Gate.Enter();
  if (!pass) return false;
  bool finished = false;
  const std::optional<Fault> fault = Guarded("Refresh", [&]() -> std::optional<Fault> {
    const Document::Computed computed =
        program.Doc.Analyse(program.Set, program.Adiabats, ProgressOf(program));
    if (computed == Document::Computed::Everything) HintAtDcape(program);
    if (auto told = FollowCatalogue(program)) program.Notices.push_back(std::move(*told));
    std::optional<diagram::SoundingPlot> plot =
        PlotShown(program, program.Set, program.View.On, ProgressOf(program));
    if (!plot) return {};
    TakePlot(program, std::move(*plot));
    finished = true;
    return {};
  });
  if (fault) program.Doc.Report(*fault);
  if (finished) WarnOfTephigram(program);
  return finished;
}

bool ComposeFor(Program& program, const Surface& on) {
  program.View.On = on;
  const bool fits = !program.Plot || (program.Plot->Page.Width() == on.Width &&
                                      program.Plot->Page.Height() == on.Height);
  if (fits || !program.Gate.IsOpen()) return false;
  std::optional<diagram::SoundingPlot> plot = PlotShown(program, program.Set, on);
  if (!plot) return false;
  TakePlot(program, std::move(*plot));
  return true;
}

Changes OpenSoundings(Program& program, const std::vector<std::filesystem::path>& paths) {
  return Behind(program, "OpenSoundings", [&] { return commands::LoadFirst(program, paths); });
}

Changes OpenSounding(Program& program, const std::filesystem::path& path, int index) {
  return Behind(program, "OpenSounding", [&] { return commands::LoadAt(program, path, index); });
}

Changes StepThrough(Program& program, std::vector<SoundingSet::Member> soundings) {
  if (soundings.empty()) return {};
  const bool isEmpty = program.Current.FileName.empty();
  if (!isEmpty) {
    const SoundingSet::Member inWork{.File = program.Current.FilePath(),
                                     .Index = program.Doc.IndexInFile()};
    std::erase_if(soundings, [&](const SoundingSet::Member& one) {
      return one.File == inWork.File && one.Index == inWork.Index;
    });
    soundings.insert(soundings.begin(), inWork);
  }
  return Behind(program, "StepThrough", [&]() -> Changes {
    const SoundingSet::Member first = soundings.front();
    const Changes changes =
        isEmpty ? commands::LoadAt(program, first.File, first.Index) : Changes{.View = true};
    if (changes.Any()) ListSoundings(program, SoundingSet(std::move(soundings)));
    return changes;
  });
}

Changes OverlayThese(Program& program, const std::vector<SoundingSet::Member>& soundings) {
  return Behind(program, "OverlayThese",
                [&] { return commands::OverlayMembers(program, soundings); });
}

Changes OpenText(Program& program, const std::string& text) {
  return Behind(program, "OpenText", [&] { return commands::LoadText(program, text); });
}

Changes SequenceSounding(Program& program, std::size_t index) {
  if (index >= program.Listed.Size() || index == program.Listed.Now()) return {};
  return Behind(program, "SequenceSounding", [&]() -> Changes {
    const auto leave = commands::MayLeaveSounding(program);
    return {.Sounding = leave && LoadListed(program, *leave, index)};
  });
}

std::string SoundingBanner(const Program& program) {
  if (program.Current.FileName.empty()) return "VEXA";
  std::string text(kProgramTitle);
  text += program.Current.Record.StationTitle.empty()
              ? program.Current.FileName
              : diagram::SoundingTitle(program.Current.Record, program.Set);
  if (program.View.Mode == diagram::MultiMode::Compare) text += "  -  Sounding Comparison";
  if (program.View.Mode == diagram::MultiMode::Overlay) text += "  -  Sounding Overlay";
  if (program.Listed.Size() > 1) {
    text += "  (" + Shortest(static_cast<int>(program.Listed.Now()) + 1) + "/" +
            Shortest(static_cast<int>(program.Listed.Size())) + ")";
  }
  if (program.Doc.IsAltered()) text += " *";  // edits that are not saved
  return text;
}

std::string FaultIndicator(const Program& program) {
  return std::string(QcText(program.Current.QcFault));
}

std::string TakeNotices(Program& program) {
  std::string text;
  for (const std::string& notice : std::exchange(program.Notices, {})) text += notice + "  ";
  return text;
}

std::string LoadRemarks(const Program& program, std::string_view between) {
  std::string text;
  for (const std::string& note : program.Current.LoadNotes) {
    if (text.ends_with('.')) text.pop_back();
    if (!text.empty()) text += between;
    text += note;
  }
  return text;
}

}  // namespace vexa
